#include "platform/text/rich_text_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

#include "platform/text/rich_text.h"

namespace tolvane {

namespace {

constexpr std::string_view signature = "{\\rtf";
constexpr std::size_t maxDepth = 10'000;

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

constexpr std::array<bool, 256> runEnds() {
  std::array<bool, 256> ends = {};
  for (const char end : {'\\', '{', '}', '\r', '\n'}) {
    ends[static_cast<unsigned char>(end)] = true;
  }
  return ends;
}

}  // namespace

RichTextReader::RichTextReader(std::string_view rtf) : rtf_(rtf), joiner_(text_) {}

std::optional<std::string> RichTextReader::read() {
  if (!rtf_.starts_with(signature)) {
    return std::nullopt;
  }
  do {
    switch (rtf_[position_]) {
      case '{':
        ++position_;
        if (!openGroup()) {
          return std::nullopt;
        }
        break;
      case '}':
        ++position_;
        closeGroup();
        break;
      case '\\':
        ++position_;
        control();
        break;
      case '\r':
      case '\n':
        ++position_;
        break;
      default:
        run();
    }
  } while (position_ < rtf_.size() && !outerGroups_.empty());
  decodeHeldBytes();
  joiner_.finish();
  return std::move(text_);
}

bool RichTextReader::openGroup() {
  outerGroups_.push_back(group_);
  isStarred_ = false;
  fallback_ = 0;
  return outerGroups_.size() <= maxDepth;
}

void RichTextReader::closeGroup() {
  group_ = outerGroups_.back();
  outerGroups_.pop_back();
  isStarred_ = false;
  fallback_ = 0;
}

void RichTextReader::control() {
  if (position_ == rtf_.size()) {
    return;
  }
  if (isLetter(rtf_[position_])) {
    controlWord();
  } else {
    controlSymbol(rtf_[position_++]);
  }
}

void RichTextReader::controlWord() {
  const auto* const begin = rtf_.begin() + position_;
  const auto* const end = std::find_if_not(begin, rtf_.end(), isLetter);
  const std::string_view name(begin, end);
  position_ += name.size();
  const Parameter number = parameter();

  const Word* const word = wordNamed(name);
  const bool isStarred = std::exchange(isStarred_, false);
  // A special character may stand in for a Unicode escape; any other word ends the stand-in.
  if (word == nullptr || word->act != &RichTextReader::character) {
    fallback_ = 0;
  }
  if (word != nullptr) {
    (this->*word->act)(word->value, number);
  } else if (isStarred) {
    group_.skip = Skip::everything;
  }
}

/// The number after a word and the one blank that ends both. Numbers beyond an int are damage.
RichTextReader::Parameter RichTextReader::parameter() {
  Parameter parameter;
  const char* const begin = rtf_.data() + position_;
  const char* const end = rtf_.data() + rtf_.size();
  const auto [stop, error] = std::from_chars(begin, end, parameter.number);
  parameter.isPresent = stop != begin && error == std::errc();
  position_ += static_cast<std::size_t>(stop - begin);
  if (position_ < rtf_.size() && rtf_[position_] == ' ') {
    ++position_;
  }
  return parameter;
}

void RichTextReader::controlSymbol(char symbol) {
  switch (symbol) {
    case '\'':
      return hexadecimalByte();
    case '*':
      isStarred_ = true;
      return;
    case '\r':
    case '\n':
      return lineEnd(0, {});
    case '\t':
      return character('\t', {});
    case '~':
      return character(0x00A0, {});  // no-break space
    case '_':
      return character(0x2011, {});  // no-break hyphen
    case '-':
      return character(0x00AD, {});  // optional hyphen
    case '{':
    case '}':
    case '\\':
      return appendRun({&symbol, 1}, Content::ascii);
    default:
      return;
  }
}

void RichTextReader::hexadecimalByte() {
  const std::string_view digits = rtf_.substr(position_, 2);
  position_ += digits.size();
  std::uint8_t byte = 0;
  const auto [stop, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
  if (digits.size() == 2 && error == std::errc() && stop == digits.data() + digits.size()) {
    const char content = static_cast<char>(byte);
    appendRun({&content, 1}, Content::anyBytes);
  }
}

void RichTextReader::run() {
  static constexpr std::array<bool, 256> ends = runEnds();
  const std::size_t start = position_;
  unsigned char seen = 0;
  while (position_ < rtf_.size() && !ends[static_cast<unsigned char>(rtf_[position_])]) {
    seen |= static_cast<unsigned char>(rtf_[position_]);
    ++position_;
  }
  appendRun(rtf_.substr(start, position_ - start), seen < 128 ? Content::ascii : Content::anyBytes);
}

void RichTextReader::appendRun(std::string_view bytes, Content content) {
  const std::size_t dropped = std::min(static_cast<std::size_t>(fallback_), bytes.size());
  fallback_ -= static_cast<int>(dropped);
  bytes.remove_prefix(dropped);
  if (bytes.empty() || isSilent()) {
    return;
  }
  joiner_.finish();
  if (content == Content::ascii && heldBytes_.empty()) {
    text_ += bytes;
  } else {
    holdBytes(bytes);
  }
}

void RichTextReader::holdBytes(std::string_view bytes) {
  const int codePage = fonts_.codePageOf(group_.font);
  if (codePage != heldCodePage_) {
    decodeHeldBytes();
    heldCodePage_ = codePage;
  }
  heldBytes_ += bytes;
}

void RichTextReader::decodeHeldBytes() {
  if (heldBytes_.empty()) {
    return;
  }
  const auto [found, isNew] = codePages_.try_emplace(heldCodePage_, heldCodePage_);
  found->second.append(asBytes(heldBytes_), text_);
  heldBytes_.clear();
}

void RichTextReader::appendCharacter(char32_t codePoint) {
  if (!isSilent()) {
    decodeHeldBytes();
    joiner_.finish();
    appendUtf8(codePoint, text_);
  }
}

/// Whether the next character only stands in for a Unicode escape that was read.
bool RichTextReader::isFallback() {
  const bool isFallback = fallback_ > 0;
  fallback_ -= isFallback ? 1 : 0;
  return isFallback;
}

void RichTextReader::character(int codePoint, Parameter /*parameter*/) {
  if (!isFallback()) {
    appendCharacter(static_cast<char32_t>(codePoint));
  }
}

void RichTextReader::lineEnd(int /*value*/, Parameter /*parameter*/) {
  appendCharacter('\n');
}

/// The number is a signed 16-bit unit; some writers put the unit unsigned, or a whole code point.
void RichTextReader::unicode(int /*value*/, Parameter parameter) {
  fallback_ = group_.fallbackLength;
  if (isSilent() || !parameter.isPresent) {
    return;
  }
  if (parameter.number > 0xFFFF) {
    appendCharacter(static_cast<char32_t>(parameter.number));
    return;
  }
  decodeHeldBytes();
  joiner_.append(static_cast<char16_t>(parameter.number));
}

void RichTextReader::fallbackLength(int /*value*/, Parameter parameter) {
  group_.fallbackLength = parameter.isPresent ? std::max(parameter.number, 0) : 1;
}

void RichTextReader::skipDestination(int /*value*/, Parameter /*parameter*/) {
  group_.skip = Skip::everything;
}

/// For destinations that are starred, so that old readers skip them, and yet hold text.
void RichTextReader::keepDestination(int /*value*/, Parameter /*parameter*/) {}

void RichTextReader::alternatives(int /*value*/, Parameter /*parameter*/) {
  group_.skip = std::max(group_.skip, Skip::alternatives);
}

void RichTextReader::unicodeAlternative(int /*value*/, Parameter /*parameter*/) {
  if (group_.skip == Skip::alternatives) {
    group_.skip = Skip::nothing;
  }
}

void RichTextReader::fontTable(int /*value*/, Parameter /*parameter*/) {
  group_.isFontTable = true;
  group_.skip = Skip::everything;
}

void RichTextReader::font(int /*value*/, Parameter parameter) {
  if (group_.isFontTable) {
    fonts_.define(parameter.number);
  } else {
    group_.font = parameter.number;
  }
}

void RichTextReader::fontCharset(int /*value*/, Parameter parameter) {
  if (group_.isFontTable) {
    fonts_.setCharset(parameter.number);
  }
}

void RichTextReader::fontCodePage(int /*value*/, Parameter parameter) {
  if (group_.isFontTable) {
    fonts_.setCodePage(parameter.number);
  }
}

void RichTextReader::defaultFont(int /*value*/, Parameter parameter) {
  fonts_.setDefaultFont(parameter.number);
}

void RichTextReader::documentCodePage(int value, Parameter /*parameter*/) {
  fonts_.setDocumentCodePage(value);
}

void RichTextReader::ansiCodePage(int /*value*/, Parameter parameter) {
  if (parameter.number > 0) {
    fonts_.setDocumentCodePage(parameter.number);
  }
}

void RichTextReader::hidden(int /*value*/, Parameter parameter) {
  group_.isHidden = !parameter.isPresent || parameter.number != 0;
}

void RichTextReader::plain(int /*value*/, Parameter /*parameter*/) {
  group_.isHidden = false;
  group_.font = RichTextFonts::noFont;
}

/// Raw bytes follow, which may look like anything.
void RichTextReader::binary(int /*value*/, Parameter parameter) {
  const auto length = static_cast<std::size_t>(std::max(parameter.number, 0));
  position_ += std::min(length, rtf_.size() - position_);
}

std::optional<std::string> RichText::plainText(std::string_view rtf) {
  return RichTextReader(rtf).read();
}

}  // namespace tolvane
