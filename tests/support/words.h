#pragma once

#include <cstddef>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::support {

/// The words of a line, such as the arguments of a command without blanks inside any of them.
inline std::vector<std::string> words(const std::string& line) {
  std::istringstream stream(line);
  return {std::istream_iterator<std::string>(stream), {}};
}

/// The text as often as `count` says.
inline std::string repeated(std::string_view text, std::size_t count) {
  std::string all;
  while (count-- > 0) {
    all += text;
  }
  return all;
}

}  // namespace tolvane::support
