#pragma once

#include <optional>
#include <string>

namespace tolvane {

/// A small store of texts that outlives the process. Main thread only.
class UserDefaults {
 public:
  UserDefaults() = default;
  virtual ~UserDefaults() = default;
  UserDefaults(const UserDefaults&) = delete;
  UserDefaults& operator=(const UserDefaults&) = delete;

  [[nodiscard]] virtual std::optional<std::string> text(const std::string& key) const = 0;
  /// Never fails for the caller: a text that cannot be stored is kept for this process.
  virtual void setText(const std::string& key, const std::string& text) = 0;
};

}  // namespace tolvane
