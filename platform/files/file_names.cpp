#include "platform/files/file_names.h"

#include <algorithm>
#include <charconv>

namespace tolvane::FileNames {

namespace {

/// Where the extension's dot stands in `name`; npos when there is no extension.
std::size_t extensionDot(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  const bool starts = dot != std::string::npos && dot != 0 && dot + 1 != name.size();
  return starts ? dot : std::string::npos;
}

/// Undoes percent escapes; a percent sign that starts none stays.
std::string unescaped(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    unsigned code = 0;
    const char* digits = text.data() + 1;
    if (text.size() > 2 && text.front() == '%' &&
        std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2) {
      result += static_cast<char>(code);
      text.remove_prefix(3);
    } else {
      result += text.front();
      text.remove_prefix(1);
    }
  }
  return result;
}

/// Independent of the locale, unlike std::tolower.
char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

char raised(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

}  // namespace

std::string extension(const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  const std::size_t dot = extensionDot(name);
  return dot == std::string::npos ? "" : name.substr(dot + 1);
}

std::string lowerExtension(const std::filesystem::path& path) {
  return lower(extension(path));
}

std::string stem(const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  return name.substr(0, extensionDot(name));
}

bool isAddress(std::string_view text) {
  const std::size_t colon = text.find("://");
  if (colon == std::string_view::npos || colon == 0) {
    return false;
  }
  const std::string scheme = lower(text.substr(0, colon));
  const auto isLetter = [](char sign) { return sign >= 'a' && sign <= 'z'; };
  // RFC 3986, section 3.1.
  return isLetter(scheme.front()) &&
         std::all_of(scheme.begin(), scheme.end(), [&isLetter](char sign) {
           return isLetter(sign) || (sign >= '0' && sign <= '9') ||
                  std::string_view("+-.").find(sign) != std::string_view::npos;
         });
}

std::optional<std::string> localPath(std::string_view address) {
  for (const std::string_view start : {"file:///", "file://localhost/"}) {
    if (lower(address.substr(0, start.size())) == start) {
      return unescaped(address.substr(start.size() - 1));
    }
  }
  return std::nullopt;
}

std::string localAddress(const std::filesystem::path& path) {
  // RFC 3986, section 2.3: the signs that never need an escape.
  constexpr std::string_view unreserved = "-._~";
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string address = "file://";
  for (const char sign : path.string()) {
    const auto code = static_cast<unsigned char>(sign);
    const char letter = lowered(sign);
    if ((letter >= 'a' && letter <= 'z') || (sign >= '0' && sign <= '9') || sign == '/' ||
        unreserved.find(sign) != std::string_view::npos) {
      address += sign;
    } else {
      address += {'%', digits[code >> 4U], digits[code & 0xFU]};
    }
  }
  return address;
}

std::filesystem::path handedOver(std::string_view word, const std::filesystem::path& folder) {
  if (const auto path = localPath(word)) {
    return *path;
  }
  return isAddress(word) ? std::filesystem::path(word) : folder / word;
}

std::string lower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lowered);
  return result;
}

std::string upper(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), raised);
  return result;
}

}  // namespace tolvane::FileNames
