#pragma once

#include <string>

namespace tolvane {

/// The desktop's own settings. Main thread only.
class SystemSettings {
 public:
  SystemSettings() = default;
  virtual ~SystemSettings() = default;
  SystemSettings(const SystemSettings&) = delete;
  SystemSettings& operator=(const SystemSettings&) = delete;

  /// The address of the privacy settings ("scheme://..."), without an anchor; empty when the
  /// desktop has none.
  [[nodiscard]] virtual std::string privacyLink() const = 0;
  /// Opens a link that begins with privacyLink() and may end with "?" and an anchor:
  /// Privacy_Accessibility, Privacy_ListenEvent or Privacy_Automation. Returns at once; does what
  /// it can and reports nothing.
  virtual void open(const std::string& link) = 0;
};

}  // namespace tolvane
