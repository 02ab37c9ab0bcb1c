#include "desktop/native_policies.h"

#include <cmath>
#include <numbers>

#include "platform/desktop/front_application.h"

namespace tolvane {

namespace {

constexpr double fileGap = 12;  // between a file's frame and the palette

// Unlike those of the library these answer the second number when the first is not a number.
double smaller(double first, double second) {
  return first < second ? first : second;
}
double larger(double first, double second) {
  return first > second ? first : second;
}

Rectangle pushedInto(const Rectangle& area, Point corner, Size size) {
  return {larger(area.minX(), smaller(area.maxX() - size.width, corner.x)),
          larger(area.minY(), smaller(area.maxY() - size.height, corner.y)),
          size.width,
          size.height};
}

Point cornerBesidePointer(Point pointer, const Rectangle& area, Size size) {
  constexpr double sideGap = 14;
  constexpr double topAbovePointer = 24;
  const double right = pointer.x + sideGap;
  const bool fits = area.maxX() >= right + size.width;
  return {fits ? right : pointer.x - size.width - sideGap,
          pointer.y - size.height + topAbovePointer};
}

Point cornerBesideFile(const Rectangle& file, const Rectangle& area, Size size) {
  double x = file.maxX() + fileGap;
  if (area.maxX() < x + size.width) {
    x = file.minX() - size.width - fileGap;
  }
  if (x >= area.minX()) {
    return {x, file.maxY() - size.height + fileGap};
  }
  const double below = file.minY() - size.height - fileGap;
  return {file.midX() - size.width / 2, below < area.minY() ? file.maxY() + fileGap : below};
}

// The look of the wheel, which the interface draws on. Lengths in points, angles in radians.
constexpr double wheelMargin = 14;   // around the ring
constexpr double innerPart = 0.218;  // of the view's shorter side: the ring's inner radius
constexpr double wedgeGap = 0.035;   // between two wedges
constexpr double wedgeCorner = 10;   // radius

/// A ring that is cut into wedges. Angles in radians, lengths in points.
struct Wheel {
  Point centre;
  double outer = 0;  // radius
  double inner = 0;  // radius

  [[nodiscard]] Point at(double radius, double angle) const {
    return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
  }

  void addWedge(Path& path, double start, double end) const {
    const double outerCorner = wedgeCorner / outer;
    const double innerCorner = wedgeCorner / inner;
    path.moveTo(at(outer, start + outerCorner));
    path.arc(centre, outer, start + outerCorner, end - outerCorner, Path::Turn::counterClockwise);
    path.quadraticTo(at(outer - wedgeCorner, end), at(outer, end));
    path.lineTo(at(inner + wedgeCorner, end));
    path.quadraticTo(at(inner, end - innerCorner), at(inner, end));
    path.arc(centre, inner, end - innerCorner, start + innerCorner, Path::Turn::clockwise);
    path.quadraticTo(at(inner + wedgeCorner, start), at(inner, start));
    path.lineTo(at(outer - wedgeCorner, start));
    path.quadraticTo(at(outer, start + outerCorner), at(outer, start));
    path.close();
  }

  void addWedges(Path& path, std::int64_t count) const {
    const double step = 2 * std::numbers::pi / static_cast<double>(count);
    if (step <= wedgeGap || outer <= 0) {
      return;
    }
    const double first = -std::numbers::pi / 2 - step / 2;
    for (std::int64_t wedge = 0; wedge < count; ++wedge) {
      const double start = first + static_cast<double>(wedge) * step + wedgeGap / 2;
      addWedge(path, start, start + step - wedgeGap);
    }
  }

  void addControls(Path& path) const {
    path.addRoundedRectangle({centre.x - 72, centre.y + 28, 144, 40}, 12);
    constexpr double radius = 12;
    for (const double offset : {-45.0, -15.0, 15.0, 45.0}) {
      path.addCircle({centre.x + offset, centre.y - 73 + radius}, radius);
    }
  }
};

}  // namespace

Rectangle NativePolicies::appKitFrame(const Rectangle& accessibilityFrame,
                                      double primaryScreenTop) {
  return {accessibilityFrame.minX(),
          primaryScreenTop - accessibilityFrame.maxY(),
          accessibilityFrame.width,
          accessibilityFrame.height};
}

Rectangle NativePolicies::radialFrame(Point pointer,
                                      const Rectangle& visible,
                                      double diameter,
                                      const std::optional<Rectangle>& fileFrame) {
  const Rectangle area = visible.insetBy(8);
  const Point centre = fileFrame ? fileFrame->middle() : pointer;
  const double side = larger(smaller(smaller(area.height, area.width), diameter), 1);
  return pushedInto(area, {centre.x - side / 2, centre.y - side / 2}, {side, side});
}

Rectangle NativePolicies::paletteFrame(Point pointer,
                                       const Rectangle& visible,
                                       double height,
                                       double width,
                                       const std::optional<Rectangle>& fileFrame) {
  const Rectangle area = visible.insetBy(12);
  const Size size{larger(smaller(area.width, width), 1), larger(smaller(area.height, height), 1)};
  const Point corner = fileFrame ? cornerBesideFile(*fileFrame, area, size)
                                 : cornerBesidePointer(pointer, area, size);
  return pushedInto(area, corner, size);
}

Path NativePolicies::wheelMaterialPath(Size size, std::int64_t count) {
  Path path;
  if (count < 1) {
    return path;
  }
  const double side = smaller(size.width, size.height);
  const Wheel wheel{{size.width / 2, size.height / 2}, side / 2 - wheelMargin, side * innerPart};
  wheel.addWedges(path, count);
  wheel.addControls(path);
  return path.flipped(size.height);
}

bool NativePolicies::shouldOfferPointerPalette(const std::optional<std::string>& bundle,
                                               bool shift,
                                               bool secondaryDown) {
  return bundle == fileManagerBundle && shift && secondaryDown;
}

}  // namespace tolvane
