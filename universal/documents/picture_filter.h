#pragma once

#include <string>
#include <string_view>

namespace tolvane::UniversalEngine {

/// Whether pictures that are named by a path inside the document's folder stay. They belong to the
/// document when it is a container (docx, odt, epub), else they are files of this machine.
enum class RelativePictures { kept, dropped };

/// A filter for pandoc, in Lua, that leaves in a document only the pictures that it holds itself.
/// Of the others their descriptions stay.
/// @param ownPrefix pictures whose names begin with it stay, too, unless it is empty; holds neither
/// quotes nor backslashes.
[[nodiscard]] std::string pictureFilter(RelativePictures relative, std::string_view ownPrefix);

}  // namespace tolvane::UniversalEngine
