#include "platform/typesetting/pango/line_layout.h"
#include "platform/typesetting/pango/pdf_file.h"
#include "platform/typesetting/typesetter.h"

namespace tolvane {

namespace {

class PangoTextPages : public TextPages {
 public:
  PangoTextPages(std::string_view text, const PageStyle& style, const std::filesystem::path& to)
      : style_(style),
        lines_(text, style.width - 2 * style.inset, style.font),
        file_(to, style.width, style.height) {}

  void addPage() override {
    const double height = style_.height - 2 * style_.inset;
    double top = 0;
    while (!lines_.atEnd()) {
      const TextLine line = lines_.next();
      const bool isFirst = top == 0;  // which has its place even where it does not fit
      if (!isFirst && (line.startsPage || top + line.height > height)) {
        break;
      }
      cairo_move_to(file_.context(), style_.inset + line.left, style_.inset + top + line.baseline);
      draw(line);
      lines_.take();
      top += line.height;
    }
    file_.endPage();
  }

  bool isComplete() const override { return lines_.atEnd(); }
  void finish() override { file_.finish(); }

 private:
  void draw(const TextLine& line) {
    if (line.glyphs != nullptr) {
      pango_cairo_show_glyph_item(file_.context(), line.text, line.glyphs);
    } else {
      pango_cairo_show_layout_line(file_.context(), line.line);
    }
  }

  PageStyle style_;
  LineLayout lines_;
  PdfFile file_;
};

class PangoTypesetter : public Typesetter {
 public:
  std::unique_ptr<TextPages> open(std::string_view text,
                                  const PageStyle& style,
                                  const std::filesystem::path& to) override {
    return std::make_unique<PangoTextPages>(text, style, to);
  }
};

}  // namespace

}  // namespace tolvane

/// What the module loader calls. The typesetter lives as long as the process.
extern "C" __attribute__((visibility("default"))) void* tolvaneTypesetter() {
  static tolvane::PangoTypesetter found;
  return static_cast<tolvane::Typesetter*>(&found);
}
