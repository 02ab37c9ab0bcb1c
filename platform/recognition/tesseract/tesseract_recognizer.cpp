#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <omp.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tesseract/baseapi.h>
#include <tesseract/ocrclass.h>
#include <tesseract/resultiterator.h>

#include "platform/files/platform_error.h"
#include "platform/images/grey_detection.h"
#include "platform/images/image_encoder.h"
#include "platform/images/image_limits.h"
#include "platform/images/pixel_loops.h"
#include "platform/recognition/text_recognizer.h"

namespace tolvane {

namespace {

using Engine = tesseract::TessBaseAPI;

/// Scripts, page orientation and equations have data files beside those of the languages; vertical
/// writing is loaded by the language that it belongs to.
bool isLanguage(const std::string& name) {
  return name != "osd" && name != "equ" && name != "snum" && name.find('/') == std::string::npos &&
         !name.ends_with("_vert");
}

std::unique_ptr<Engine> startedEngine(const std::string& languages) {
  auto engine = std::make_unique<Engine>();
  engine->SetVariable("debug_file", "/dev/null");  // else it writes to standard error
  if (engine->Init(nullptr, languages.c_str(), tesseract::OEM_LSTM_ONLY) != 0) {
    return nullptr;
  }
  engine->SetPageSegMode(tesseract::PSM_AUTO);
  return engine;
}

/// Knows every installed language, English first.
std::unique_ptr<Engine> completeEngine() {
  std::unique_ptr<Engine> english = startedEngine("eng");
  if (!english) {
    throw PlatformError(
        "Text recognition has no language data. Install the package tesseract-ocr-eng.");
  }
  std::vector<std::string> names;
  english->GetAvailableLanguagesAsVector(&names);
  std::sort(names.begin(), names.end());
  std::string languages = "eng";
  for (const std::string& name : names) {
    if (name != "eng" && isLanguage(name)) {
      languages += '+' + name;
    }
  }
  std::unique_ptr<Engine> complete = languages == "eng" ? nullptr : startedEngine(languages);
  return complete ? std::move(complete) : std::move(english);
}

/// Grey or rgb, which is what the engine takes. What is grey becomes grey: the engine looks at each
/// component of the other.
Bitmap readable(const Bitmap& picture) {
  requirePixels(picture);
  if (picture.layout != PixelLayout::bgrx) {
    return ImageEncoder::flattened(picture);
  }
  const std::size_t pixels = picture.pixels.size() / sizeof(std::uint32_t);
  const PixelLayout layout = isGrey(picture) ? PixelLayout::grey : PixelLayout::rgb;
  Bitmap converted{picture.width, picture.height, layout, {}};
  converted.pixels.resize(converted.stride() * static_cast<std::size_t>(converted.height));
  if (layout == PixelLayout::grey) {
    PixelLoops::greyFromBgrx(converted.pixels.data(), picture.pixels.data(), pixels);
  } else {
    PixelLoops::rgbFromBgrx(converted.pixels.data(), picture.pixels.data(), pixels);
  }
  return converted;
}

std::string trimmed(std::string_view text) {
  const std::size_t end = text.find_last_not_of(" \t\r\n");
  return end == std::string_view::npos ? std::string() : std::string(text.substr(0, end + 1));
}

std::vector<std::string> foundLines(Engine& engine) {
  std::vector<std::string> lines;
  const std::unique_ptr<tesseract::ResultIterator> result(engine.GetIterator());
  if (!result) {
    return lines;
  }
  do {
    const std::unique_ptr<char[]> text(result->GetUTF8Text(tesseract::RIL_TEXTLINE));
    std::string line = trimmed(text ? text.get() : "");
    if (!line.empty()) {
      lines.push_back(std::move(line));
    }
  } while (result->Next(tesseract::RIL_TEXTLINE));
  return lines;
}

/// Lets the engine ask whether to go on.
class StopSign {
 public:
  explicit StopSign(const std::function<bool()>& isStopped) : isStopped_(isStopped) {
    if (isStopped_) {
      monitor_.cancel = &StopSign::ask;
      monitor_.cancel_this = this;
    }
  }
  ~StopSign() = default;
  StopSign(const StopSign&) = delete;
  StopSign& operator=(const StopSign&) = delete;

  [[nodiscard]] tesseract::ETEXT_DESC* monitor() { return &monitor_; }
  /// Whether the engine was told to stop.
  [[nodiscard]] bool isUp() const { return isUp_; }

 private:
  static bool ask(void* self, int /*words*/) {
    auto& sign = *static_cast<StopSign*>(self);
    sign.isUp_ = sign.isUp_ || sign.isStopped_();
    return sign.isUp_;
  }

  const std::function<bool()>& isStopped_;
  bool isUp_ = false;
  tesseract::ETEXT_DESC monitor_;
};

/// Engines that wait for work. They stay, because starting one takes longer than a short page.
class EnginePool {
 public:
  std::unique_ptr<Engine> take() {
    // Held while an engine starts, too: its settings go through variables of the process.
    const std::lock_guard guard(lock_);
    if (idle_.empty()) {
      return completeEngine();
    }
    std::unique_ptr<Engine> engine = std::move(idle_.back());
    idle_.pop_back();
    return engine;
  }

  void giveBack(std::unique_ptr<Engine> engine) {
    engine->Clear();
    const std::lock_guard guard(lock_);
    idle_.push_back(std::move(engine));
  }

 private:
  std::mutex lock_;
  std::vector<std::unique_ptr<Engine>> idle_;
};

class TesseractRecognizer final : public TextRecognizer {
 public:
  std::vector<std::string> lines(const Bitmap& picture,
                                 int dotsPerInch,
                                 const std::function<bool()>& isStopped) override {
    // Its matrices are so small that sharing them between threads takes several times as long. It
    // asks for a number of threads itself, so that only the depth can be limited; the setting holds
    // for the calling thread.
    omp_set_max_active_levels(0);
    const Bitmap input = readable(picture);
    std::unique_ptr<Engine> engine = engines_.take();
    engine->SetImage(input.pixels.data(),
                     input.width,
                     input.height,
                     bytesPerPixel(input.layout),
                     static_cast<int>(input.stride()));
    engine->SetSourceResolution(dotsPerInch);
    StopSign stop(isStopped);
    const bool recognized = engine->Recognize(stop.monitor()) == 0 && !stop.isUp();
    std::vector<std::string> lines = recognized ? foundLines(*engine) : std::vector<std::string>();
    engines_.giveBack(std::move(engine));
    if (!recognized && !stop.isUp()) {
      throw PlatformError("The text of the page could not be recognized.");
    }
    return lines;
  }

 private:
  EnginePool engines_;
};

}  // namespace

}  // namespace tolvane

extern "C" __attribute__((visibility("default"))) void* tolvaneTextRecognizer() {
  static tolvane::TesseractRecognizer recognizer;
  return static_cast<tolvane::TextRecognizer*>(&recognizer);
}
