#pragma once

#include <string>

#include "platform/documents/poppler/page_characters.h"

namespace tolvane {

/// The text of a page in reading order. Characters that stand apart are parted by a space, cells of
/// one row by a tab, rows by a line feed.
[[nodiscard]] std::string textOf(const PageCharacters& characters);

}  // namespace tolvane
