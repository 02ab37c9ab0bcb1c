#include "platform/desktop/qt/soft_shadow.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <QPainter>
#include <QPainterPath>

namespace tolvane {

namespace {

constexpr int radius = 2;  // of the blur, in pixels
constexpr int rounds = 3;  // as many averages in a row come close to a bell curve
constexpr int drop = 6;    // points that the light comes from above
static_assert(radius * rounds * SoftShadow::reduction + drop <= SoftShadow::reach);

/// Replaces each pixel of a row, or column, by the mean of its neighbours and itself.
/// @param step from one pixel to the next.
void average(uchar* first, qsizetype count, qsizetype step, std::vector<uchar>& copy) {
  constexpr int width = 2 * radius + 1;
  copy.assign(static_cast<std::size_t>(count + 2 * radius), 0);  // nothing beyond both ends
  for (qsizetype at = 0; at < count; ++at) {
    copy[static_cast<std::size_t>(at) + radius] = first[at * step];
  }
  int sum = 0;
  for (std::size_t at = 0; at < copy.size(); ++at) {
    sum += copy[at];
    if (at + 1 >= width) {
      first[static_cast<qsizetype>(at + 1 - width) * step] = static_cast<uchar>(sum / width);
      sum -= copy[at + 1 - width];
    }
  }
}

void blur(QImage& image) {
  std::vector<uchar> copy;
  const qsizetype line = image.bytesPerLine();
  for (int round = 0; round < rounds; ++round) {
    for (int row = 0; row < image.height(); ++row) {
      average(image.bits() + row * line, image.width(), 1, copy);
    }
    for (int column = 0; column < image.width(); ++column) {
      average(image.bits() + column, image.height(), line, copy);
    }
  }
}

}  // namespace

QImage SoftShadow::of(const QPainterPath& shape, QSize size) {
  constexpr int darkness = 110;  // of 255, under the middle of a large shape
  QImage image((size.width() + SoftShadow::reduction - 1) / SoftShadow::reduction,
               (size.height() + SoftShadow::reduction - 1) / SoftShadow::reduction,
               QImage::Format_Alpha8);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(1.0 / SoftShadow::reduction, 1.0 / SoftShadow::reduction);
  painter.translate(0, drop);
  painter.fillPath(shape, QColor(0, 0, 0, darkness));
  painter.end();
  blur(image);
  return image;
}

}  // namespace tolvane
