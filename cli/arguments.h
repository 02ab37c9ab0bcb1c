#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tolvane {

/// The command line cannot be understood; what() says why in one sentence.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command line, taken apart.
struct Arguments {
  std::string command;  ///< first word that is no option; empty when there is none
  std::vector<std::string> operands;
  std::optional<std::filesystem::path> out;
  std::string to;  ///< what to convert to, in lower case; empty when it was not said
  std::vector<std::pair<std::string, std::string>> settings;  ///< of --set, in order
  bool json = false;
  bool quiet = false;
  bool help = false;
  bool version = false;

  /// @param words without the program's name. Options may stand anywhere; "--" ends them.
  /// @throws UsageError
  [[nodiscard]] static Arguments parse(const std::vector<std::string>& words);
};

/// Absolute paths of the files named on the command line, which are the operands from `first` on.
/// Addresses of files on this machine ("file:///...") are taken apart, others left as they are.
/// @throws UsageError when there is none, or one is empty.
[[nodiscard]] std::vector<std::string> namedFiles(const Arguments& arguments, std::size_t first);

}  // namespace tolvane
