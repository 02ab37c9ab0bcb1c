#pragma once

#include <array>
#include <memory>
#include <string>

#include "platform/files/bytes.h"

namespace tolvane {

/// Decoder of one Windows or Macintosh code page. Opening the first one of a process takes
/// milliseconds (the tables are loaded), decoding is cheap: keep it. Not to be shared by threads.
class CodePage {
 public:
  static constexpr int windowsLatin = 1252;
  static constexpr int macRoman = 10000;
  static constexpr int latin1 = 28591;  // ISO 8859-1

  /// @param number such as 1252, 932, 10000 or 65001 (UTF-8); unknown numbers stand for 1252.
  explicit CodePage(int number);
  ~CodePage();
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;

  /// Appends what the bytes say, as UTF-8. A malformed sequence gives U+FFFD.
  void append(BytesView bytes, std::string& text) const;

 private:
  struct Converter;

  void fillCharacters();

  std::unique_ptr<Converter> converter_;
  bool hasSingleBytes_ = false;
  std::array<std::string, 256> characters_;  // of each byte; filled when hasSingleBytes_
};

}  // namespace tolvane
