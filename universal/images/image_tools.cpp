#include "universal/images/image_tools.h"

#include <algorithm>
#include <array>
#include <optional>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"
#include "platform/fonts/font_finder.h"
#include "platform/images/image_decoder.h"
#include "universal/images/image.h"
#include "universal/job/arguments.h"
#include "universal/job/option_readers.h"
#include "universal/job/rectangle.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

struct Request {
  const fs::path& input;
  const Value::Map& options;
  const JobContext& context;

  /// A length or a place in pixels, up to the longest side of a picture.
  [[nodiscard]] std::int64_t pixels(const char* key,
                                    std::int64_t fallback,
                                    std::int64_t minimum) const {
    return integer(options, key, fallback, minimum, Limits::maxImageSide);
  }
};

/// @return the rectangle that the options ask for, which lies in the picture as the user sees it.
Rectangle fittingRectangle(const Request& request) {
  const Rectangle area = rectangle(request.options, 1);
  const std::optional<ImageHeader> upright = headerOf(normalized(request.input, request.context));
  if (!upright || !area.fitsInto(upright->width, upright->height)) {
    throw ConversionFailure::message(
        "The rectangle must fit within the oriented image's width and height.");
  }
  return area;
}

std::string pair(std::int64_t first, const char* between, std::int64_t second) {
  return std::to_string(first) + between + std::to_string(second);
}

Arguments compress(const Request& /*request*/) {
  return {"-strip"};
}

Arguments background(const Request& request) {
  return {"-background", color(request.options), "-alpha", "remove", "-alpha", "off"};
}

Arguments crop(const Request& request) {
  const Rectangle area = fittingRectangle(request);
  return {"-crop", pair(area.width, "x", area.height) + "+" + pair(area.x, "+", area.y), "+repage"};
}

Arguments redact(const Request& request) {
  const Rectangle area = fittingRectangle(request);
  const std::string corner = pair(area.x, ",", area.y);
  const std::string opposite = pair(area.x + area.width - 1, ",", area.y + area.height - 1);
  return {"-fill", "black", "-draw", "rectangle " + corner + " " + opposite};
}

Arguments edit(const Request& request) {
  const std::int64_t side = request.pixels("maxDimension", 1600, Limits::minRequestedSide);
  const std::int64_t rotation = request.pixels("rotation", 0, 0);
  constexpr std::int64_t quarterTurn = 90;
  constexpr std::int64_t fullTurn = 360;
  if (rotation % quarterTurn != 0 || rotation >= fullTurn) {
    throw ConversionFailure::message("Choose a quarter-turn rotation.");
  }
  return {"-rotate", std::to_string(rotation), "-resize", pair(side, "x", side) + ">"};
}

std::string annotationText(const Value::Map& options) {
  const std::string* chosen = valueAt(options, "text").text();
  std::string text = chosen != nullptr ? *chosen : "Note";
  const auto characters = std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;  // the first byte of a character
  });
  constexpr std::ptrdiff_t maxCharacters = 2000;
  // ImageMagick takes what follows an at-sign for the name of a file with the text.
  if (characters > maxCharacters || text.starts_with('@')) {
    throw ConversionFailure::message(
        "Keep annotations below 2,000 characters and start with literal text.");
  }
  return text;
}

/// Text as ImageMagick wants it so that it draws what was typed: percent signs start properties of
/// the picture, backslashes and ampersands other characters. A text with a control character would
/// be drawn as hexadecimal digits.
std::string literally(std::string_view text) {
  std::string literal;
  for (const char letter : text) {
    if (letter == '%' || letter == '\\') {
      literal.append(2, letter);
    } else if (letter == '&') {
      literal += "&amp;";
    } else if (static_cast<unsigned char>(letter) >= ' ' || letter == '\n' || letter == '\t') {
      literal += letter;
    }
  }
  return literal;
}

fs::path annotationFont(std::string_view text) {
  if (std::optional<fs::path> font = fontFinder().find("Helvetica", text)) {
    return *std::move(font);
  }
  throw ConversionFailure::message(
      "No font is installed. Install fonts-urw-base35 to annotate images.");
}

Arguments annotate(const Request& request) {
  const std::string text = annotationText(request.options);
  const std::int64_t x = request.pixels("x", 20, 0);
  const std::int64_t y = request.pixels("y", 20, 0);
  const std::string fill = color(request.options);
  return {"-font",
          annotationFont(text).string(),
          "-fill",
          fill,
          "-pointsize",
          "32",
          "-gravity",
          "NorthWest",
          "-annotate",
          "+" + pair(x, "+", y),
          literally(text)};
}

struct Tool {
  std::string_view id;
  Arguments (*arguments)(const Request&);
};

constexpr std::array<Tool, 6> tools = {{{"compress", compress},
                                        {"background", background},
                                        {"crop", crop},
                                        {"redact", redact},
                                        {"edit", edit},
                                        {"annotate", annotate}}};

std::string extensionFor(std::string_view id, const fs::path& input) {
  const std::string extension = FileNames::lowerExtension(input);
  const bool isJpeg = extension == "jpg" || extension == "jpeg";
  return id == "compress" && isJpeg ? "jpg" : "png";
}

}  // namespace

fs::path imageTool(const FileInfo& info,
                   std::string_view id,
                   const Value::Map& options,
                   const JobContext& context) {
  const auto* const tool = std::find_if(
      tools.begin(), tools.end(), [&](const Tool& candidate) { return candidate.id == id; });
  if (tool == tools.end()) {
    throw ConversionFailure::message("This image tool is unavailable.");
  }
  fs::path output =
      context.workspace / ("result-" + std::string(id) + "." + extensionFor(id, info.url));
  image(info.url, output, tool->arguments({info.url, options, context}), options, context);
  return output;
}

}  // namespace tolvane::UniversalEngine
