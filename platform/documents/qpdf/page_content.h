#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

#include "platform/documents/qpdf/page_geometry.h"

namespace tolvane {

/// Follows the content of a page for as long as all that it can show is one picture. Text in the
/// rendering mode that paints nothing, marks, and settings without effect on a picture may stand
/// beside it; the first operator that may do anything else ends the parsing.
class PageContent : public QPDFObjectHandle::ParserCallbacks {
 public:
  using Matrix = std::array<double, 6>;  ///< the operands of "cm"

  struct Picture {
    QPDFObjectHandle object;
    PageGeometry::Box box;  ///< where the page shows it, upright and not mirrored
  };

  /// @param page its area: content that is clipped to less is another case.
  PageContent(QPDFObjectHandle resources, const PageGeometry::Box& page);

  void handleObject(QPDFObjectHandle object) override;
  void handleEOF() override { isComplete_ = true; }

  /// @return nullopt when the page shows nothing or, perhaps, more.
  [[nodiscard]] std::optional<Picture> onlyPicture() const;

 private:
  struct State {
    Matrix matrix = {1, 0, 0, 1, 0, 0};
    bool paintsText = true;
  };

  [[nodiscard]] bool follow(const std::string& operation);
  [[nodiscard]] bool followState(const std::string& operation);
  [[nodiscard]] bool restore();
  [[nodiscard]] bool transform();
  [[nodiscard]] bool show();
  [[nodiscard]] bool appliesPlainState();
  [[nodiscard]] bool outlinesPage() const;
  [[nodiscard]] std::optional<std::vector<double>> numbers(std::size_t count) const;
  /// The entry of a kind of resources that the only operand names.
  [[nodiscard]] QPDFObjectHandle resource(const char* kind);

  QPDFObjectHandle resources_;
  PageGeometry::Box page_;
  std::vector<QPDFObjectHandle> operands_;
  State state_;
  std::vector<State> saved_;
  std::optional<Picture> picture_;
  bool isComplete_ = false;
};

/// Whether one area reaches to the other's edges or beyond, give or take half a pixel of a page
/// that is painted with two pixels to the point.
[[nodiscard]] bool covers(const PageGeometry::Box& area, const PageGeometry::Box& other);

}  // namespace tolvane
