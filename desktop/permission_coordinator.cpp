#include "desktop/permission_coordinator.h"

#include <map>

#include "platform/files/file_names.h"

namespace tolvane {

namespace {

const std::map<std::string, std::string>& anchors() {
  static const std::map<std::string, std::string> bySection = {
      {"Accessibility", "Privacy_Accessibility"},
      {"InputMonitoring", "Privacy_ListenEvent"},
      {"Automation", "Privacy_Automation"}};
  return bySection;
}

}  // namespace

PermissionState PermissionCoordinator::state() const {
  return {permissions_.isTrustedForAccessibility(),
          permissions_.canListenToInput(),
          permissions_.reducesMotion(),
          permissions_.reducesTransparency()};
}

void PermissionCoordinator::open(const std::string& section) {
  const auto anchor = anchors().find(section);
  if (anchor == anchors().end()) {
    return;
  }
  const std::string link = settings_.privacyLink() + "?" + anchor->second;
  if (FileNames::isAddress(link)) {
    settings_.open(link);
  }
}

}  // namespace tolvane
