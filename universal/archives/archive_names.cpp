#include "universal/archives/archive_names.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>

#include "platform/files/bytes.h"
#include "platform/files/folder_walk.h"
#include "platform/files/platform_error.h"
#include "platform/text/text_encoding.h"

namespace tolvane {

namespace {

constexpr int dosPage = 437;
constexpr int japanesePage = 932;

bool isUtf8(std::string_view name) {
  return TextEncoding::isUtf8(asBytes(name));
}

/// The letters of western languages in the code page of DOS.
bool isDosLetter(unsigned char byte) {
  constexpr unsigned char sharpS = 0xE1;
  return (byte >= 0x80 && byte <= 0x9A) || (byte >= 0xA0 && byte <= 0xA5) || byte == sharpS;
}

/// Characters of well-formed UTF-8.
std::u32string charactersOf(std::string_view text) {
  std::u32string characters;
  for (const char byte : text) {
    const auto bits = static_cast<unsigned char>(byte);
    if ((bits & 0xC0U) == 0x80U) {
      characters.back() = (characters.back() << 6U) | (bits & 0x3FU);
    } else {
      const unsigned lead = bits < 0x80U ? 0x7FU : bits < 0xE0U ? 0x1FU : bits < 0xF0U ? 0x0FU : 7U;
      characters += bits & lead;
    }
  }
  return characters;
}

bool isKatakana(char32_t character) {
  return character >= 0x30A0 && character <= 0x30FF;
}

/// Kana, also narrow, and Chinese characters.
bool isJapanese(char32_t character) {
  return (character >= 0x3040 && character <= 0x30FF) || character == 0x3005 ||
         (character >= 0x4E00 && character <= 0x9FFF) ||
         (character >= 0xFF66 && character <= 0xFF9F);
}

/// What speaks for and against the Japanese code page. Nearly every pair of bytes is a character in
/// it, but those of a western name stand alone between Latin letters.
class Evidence {
 public:
  void add(std::string_view name, const CodePage& japanese) {
    std::string decoded;
    japanese.append(asBytes(name), decoded);
    isValid_ = isValid_ && decoded.find("\uFFFD") == std::string::npos;
    weigh(charactersOf(decoded));
    weighBytes(name);
  }

  [[nodiscard]] bool isForJapanese() const {
    return isValid_ && joined_ > alone_ && (hasSigns_ || hasKatakana_ || longestRun_ > 2);
  }

 private:
  void weigh(const std::u32string& characters) {
    for (std::size_t at = 0; at < characters.size(); ++at) {
      const char32_t previous = at > 0 ? characters[at - 1] : U' ';
      const char32_t next = at + 1 < characters.size() ? characters[at + 1] : U' ';
      if (isJapanese(characters[at]) && (isJapanese(previous) || isJapanese(next))) {
        ++joined_;
      } else if (characters[at] >= 0x80) {
        ++alone_;
      }
      hasKatakana_ = hasKatakana_ || (isKatakana(characters[at]) && isKatakana(next));
    }
  }

  void weighBytes(std::string_view name) {
    int run = 0;
    unsigned char previous = 0;
    for (const char character : name) {
      const auto byte = static_cast<unsigned char>(character);
      run = byte >= 0x80 ? run + 1 : 0;
      longestRun_ = std::max(longestRun_, run);
      // A backslash is no part of a name, but of many Japanese characters.
      const bool isSign = byte >= 0x80 ? !isDosLetter(byte) : byte == '\\' && previous >= 0x80;
      hasSigns_ = hasSigns_ || isSign;
      previous = byte;
    }
  }

  bool isValid_ = true;
  bool hasSigns_ = false;     // bytes that are no letters for DOS
  bool hasKatakana_ = false;  // two in a row; each is a letter and any character for DOS
  int longestRun_ = 0;        // of bytes beyond ASCII
  int joined_ = 0;            // Japanese characters side by side
  int alone_ = 0;
};

struct Rename {
  std::string from;
  std::string to;
};

}  // namespace

ArchiveNames::ArchiveNames(const std::vector<std::string_view>& names) {
  if (std::all_of(names.begin(), names.end(), isUtf8)) {
    return;
  }
  codePage_ = std::make_unique<CodePage>(japanesePage);
  Evidence evidence;
  for (const std::string_view name : names) {
    if (!isUtf8(name)) {
      evidence.add(name, *codePage_);
    }
  }
  if (!evidence.isForJapanese()) {
    codePage_ = std::make_unique<CodePage>(dosPage);
  }
}

std::string ArchiveNames::readable(std::string_view name) const {
  if (!codePage_ || isUtf8(name)) {
    return std::string(name);
  }
  std::string text;
  codePage_->append(asBytes(name), text);
  return text;
}

void ArchiveNames::applyTo(const std::filesystem::path& root,
                           const CancellationToken& token) const {
  const auto top = codePage_ ? OpenFolder::open(AT_FDCWD, root.c_str()) : std::nullopt;
  if (!top) {
    return;
  }
  FolderWalk walk(top->descriptor());
  while (const auto path = walk.next()) {
    auto folder = walk.open(*path);
    std::vector<Rename> renames;  // afterwards, so that nothing is met twice
    while (const auto item = folder ? folder->next() : std::nullopt) {
      token.check();
      Rename rename = {item->name, readable(item->name)};
      if (item->isFolder) {
        walk.add(*path, rename.to.c_str());
      }
      if (rename.from != rename.to) {
        renames.push_back(std::move(rename));
      }
    }
    for (const auto& [from, to] : renames) {
      const int descriptor = folder->descriptor();
      if (::renameat2(descriptor, from.c_str(), descriptor, to.c_str(), RENAME_NOREPLACE) != 0) {
        throw PlatformError::fromErrno("rename to", to, errno);
      }
    }
  }
}

}  // namespace tolvane
