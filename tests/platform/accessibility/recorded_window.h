#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/desktop/accessibility/accessible_questions.h"

namespace tolvane::support {

/// A file manager as it was recorded, which answers as it did then. It showed /tmp/HOME/files,
/// where HOME stands for the user's home. Tests change the public members.
class RecordedWindow final : public AccessibleQuestions {
 public:
  static constexpr std::int64_t process = 4711;

  /// @param name of a file in trees/, without ".json".
  /// @param home a folder in /tmp.
  RecordedWindow(const std::string& name, const std::filesystem::path& home);

  std::vector<AccessibleAnswer> ask(const std::vector<AccessibleQuestion>& questions,
                                    Deadline deadline) override;

  /// The first element with that key and value, depth first; the test fails when there is none.
  nlohmann::json& element(const std::string& key, const nlohmann::json& value);

  nlohmann::json application;
  std::map<std::string, std::vector<std::string>> openWindows;
  bool confirmsLocations = true;
  std::set<Ask> unanswered;  ///< what its own elements leave unanswered until the deadline
  int extentsAsked = 0;      ///< how often

 private:
  [[nodiscard]] AccessibleAnswer answerOfSession(const AccessibleQuestion& question) const;
};

}  // namespace tolvane::support
