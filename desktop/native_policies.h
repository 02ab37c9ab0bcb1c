#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/desktop/geometry.h"
#include "platform/desktop/path.h"

/// Where the palette goes and what shape it has. Pure; screen coordinates in points, origin
/// bottom-left, y up.
namespace tolvane::NativePolicies {

/// @param accessibilityFrame with the origin at the top-left corner of the primary screen, y down,
/// so that its `y` is that of the top edge.
/// @param primaryScreenTop the greatest y of the primary screen's frame.
[[nodiscard]] Rectangle appKitFrame(const Rectangle& accessibilityFrame, double primaryScreenTop);

/// A square around the middle of the file, or around the pointer, pushed into the visible area less
/// a margin of 8 and made as small as that; at least 1×1.
[[nodiscard]] Rectangle radialFrame(Point pointer,
                                    const Rectangle& visible,
                                    double diameter,
                                    const std::optional<Rectangle>& fileFrame);

/// Next to the file, or to the pointer: to the right where there is room, else to the left, else
/// (of a file) below or above. Pushed into the visible area less a margin of 12 and made as small
/// as that; at least 1×1.
[[nodiscard]] Rectangle paletteFrame(Point pointer,
                                     const Rectangle& visible,
                                     double height,
                                     double width,
                                     const std::optional<Rectangle>& fileFrame);

/// The backdrop of the action wheel: one wedge with rounded corners an action, the first one
/// straight up, the others following clockwise; and that of the controls in its middle. In the
/// view's own coordinates, y up.
/// @param count below 1 the path is empty. Wedges are left out where the gap between them leaves
/// nothing of them (180 actions and more) or the view has no room for a ring (28 points and less).
[[nodiscard]] Path wheelMaterialPath(Size size, std::int64_t count);

/// Shift and the secondary button, in the file manager.
[[nodiscard]] bool shouldOfferPointerPalette(const std::optional<std::string>& bundle,
                                             bool shift,
                                             bool secondaryDown);

}  // namespace tolvane::NativePolicies
