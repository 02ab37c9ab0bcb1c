#pragma once

#include <string>

namespace tolvane {

/// Appends one code point in UTF-8. What is no code point, surrogates included, becomes U+FFFD.
void appendUtf8(char32_t codePoint, std::string& text);

/// UTF-8 out of UTF-16 units that come one at a time: pairs are joined, a lone surrogate becomes
/// U+FFFD.
class Utf16Joiner {
 public:
  /// @param text receives the UTF-8; not owned, outlives this object.
  explicit Utf16Joiner(std::string& text) : text_(text) {}

  void append(char16_t unit);
  /// Ends a run of units: a high surrogate that still waits for its other half is a lone one.
  void finish();

  [[nodiscard]] bool hasMetLoneSurrogate() const { return hasMetLoneSurrogate_; }

 private:
  void replace();

  std::string& text_;
  char16_t high_ = 0;
  bool hasMetLoneSurrogate_ = false;
};

}  // namespace tolvane
