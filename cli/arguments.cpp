#include "cli/arguments.h"

#include <map>

#include "platform/files/file_names.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

void requireName(const std::string& word) {
  if (word.empty()) {
    throw UsageError("A file name is empty.");
  }
}

fs::path absolutePath(const std::string& word) {
  requireName(word);
  return fs::absolute(word);
}

/// "PDF" and ".pdf" mean "pdf"; a compressed TAR file is offered as "gz", a JPEG as "jpg".
std::string targetNamed(const std::string& word) {
  static const std::map<std::string, std::string> otherNames = {
      {"tar.gz", "gz"}, {"tgz", "gz"}, {"jpeg", "jpg"}, {"tif", "tiff"}, {"markdown", "md"}};
  const std::string name = FileNames::lower(word.substr(word.starts_with('.') ? 1 : 0));
  const auto other = otherNames.find(name);
  return other != otherNames.end() ? other->second : name;
}

/// Reads `--name VALUE` and `--name=VALUE`.
class OptionReader {
 public:
  OptionReader(Arguments& arguments, const Words& words) : arguments_(arguments), words_(words) {}

  /// @param index of the option; moved to its value when that is a word of its own.
  void read(std::size_t& index) {
    const std::string& word = words_[index];
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    if (bool* flag = flagNamed(name); flag != nullptr && equals == std::string::npos) {
      *flag = true;
    } else if (name == "--out") {
      arguments_.out = absolutePath(value(name, equals, index));
    } else if (name == "--to") {
      arguments_.to = targetNamed(value(name, equals, index));
    } else if (name == "--set") {
      readSetting(value(name, equals, index));
    } else {
      throw UsageError("There is no option " + word + ".");
    }
  }

 private:
  bool* flagNamed(const std::string& name) {
    const std::map<std::string, bool*> flags = {{"--json", &arguments_.json},
                                                {"--quiet", &arguments_.quiet},
                                                {"--help", &arguments_.help},
                                                {"-h", &arguments_.help},
                                                {"--version", &arguments_.version}};
    const auto found = flags.find(name);
    return found != flags.end() ? found->second : nullptr;
  }

  std::string value(const std::string& name, std::size_t equals, std::size_t& index) {
    if (equals != std::string::npos) {
      return words_[index].substr(equals + 1);
    }
    if (index + 1 == words_.size()) {
      throw UsageError("The option " + name + " needs a value.");
    }
    return words_[++index];
  }

  void readSetting(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
      throw UsageError("Write --set KEY=VALUE, not --set " + text + ".");
    }
    arguments_.settings.emplace_back(text.substr(0, equals), text.substr(equals + 1));
  }

  Arguments& arguments_;
  const Words& words_;
};

}  // namespace

Arguments Arguments::parse(const Words& words) {
  Arguments arguments;
  OptionReader options(arguments, words);
  bool optionsEnded = false;
  Words plain;
  for (std::size_t index = 0; index < words.size(); ++index) {
    const std::string& word = words[index];
    if (optionsEnded || word.size() < 2 || word.front() != '-') {
      plain.push_back(word);
    } else if (word == "--") {
      optionsEnded = true;
    } else {
      options.read(index);
    }
  }
  if (!plain.empty()) {
    arguments.command = plain.front();
    arguments.operands.assign(plain.begin() + 1, plain.end());
  }
  return arguments;
}

Words namedFiles(const Arguments& arguments, std::size_t first) {
  if (arguments.operands.size() <= first) {
    throw UsageError("Name at least one file.");
  }
  std::error_code ignored;  // a folder that is gone leaves the others' paths as they are
  const fs::path folder = fs::current_path(ignored);
  Words files;
  for (std::size_t index = first; index < arguments.operands.size(); ++index) {
    const std::string& operand = arguments.operands[index];
    requireName(operand);
    files.push_back(FileNames::handedOver(operand, folder));
  }
  return files;
}

}  // namespace tolvane
