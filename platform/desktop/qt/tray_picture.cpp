#include "platform/desktop/qt/tray_picture.h"

#include <array>

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tolvane {

namespace {

struct Sheet {
  double height;  // of its middle, in parts of the picture
  const char* colour;
};

// From the lowest to the topmost, so that each covers the one below.
constexpr std::array<Sheet, 3> sheets = {{{0.68, "#7c5cd6"}, {0.50, "#4f7fe0"}, {0.32, "#35b4d8"}}};

/// A square that lies flat, seen from its corner.
QPainterPath square(double middleX, double middleY, double size) {
  constexpr double reach = 0.44;  // from the middle to the left and right corners
  constexpr double depth = 0.23;  // to the other two
  QPainterPath path;
  path.moveTo(middleX - reach * size, middleY);
  path.lineTo(middleX, middleY - depth * size);
  path.lineTo(middleX + reach * size, middleY);
  path.lineTo(middleX, middleY + depth * size);
  path.closeSubpath();
  return path;
}

QPixmap picture(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  const double edge = size / 22.0;
  for (const Sheet& sheet : sheets) {
    const QPainterPath path = square(size / 2.0, sheet.height * size, size);
    painter.setPen(QPen(Qt::white, edge, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(QColor(sheet.colour));
    painter.drawPath(path);
  }
  return pixmap;
}

}  // namespace

QIcon trayPicture() {
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64}) {
    icon.addPixmap(picture(size));
  }
  return icon;
}

}  // namespace tolvane
