#pragma once

#include <QIcon>

namespace tolvane {

/// The picture of the tray: three squares in a stack, in the sizes that trays ask for. Legible on
/// light and on dark panels.
[[nodiscard]] QIcon trayPicture();

}  // namespace tolvane
