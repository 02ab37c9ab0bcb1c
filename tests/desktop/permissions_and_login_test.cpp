#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/login_service.h"
#include "desktop/permission_coordinator.h"
#include "platform/files/platform_error.h"
#include "tests/support/desktop_fakes.h"

namespace tolvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FakeSystemSettings final : public SystemSettings {
 public:
  [[nodiscard]] std::string privacyLink() const override { return link; }
  void open(const std::string& opened) override { links.push_back(opened); }

  std::string link = "settings://privacy";
  std::vector<std::string> links;
};

class PermissionTest : public testing::Test {
 protected:
  support::FakePermissions permissions_;
  FakeSystemSettings settings_;
  PermissionCoordinator coordinator_{permissions_, settings_};
};

TEST_F(PermissionTest, TellsEachStateWithoutAsking) {
  const auto flags = [this] {
    const PermissionState state = coordinator_.state();
    return std::vector<bool>{
        state.accessibility, state.inputMonitoring, state.reduceMotion, state.reduceTransparency};
  };
  EXPECT_THAT(flags(), ElementsAre(false, false, false, false));
  permissions_.canListen = true;
  EXPECT_THAT(flags(), ElementsAre(false, true, false, false));
  permissions_.reduceMotion = true;
  EXPECT_THAT(flags(), ElementsAre(false, true, true, false));
  permissions_.reduceTransparency = true;
  coordinator_.requestAccessibility();
  EXPECT_THAT(flags(), ElementsAre(true, true, true, true));
  EXPECT_EQ(permissions_.inputRequests, 0);
}

TEST_F(PermissionTest, OpensTheSettingsOfKnownSectionsOnly) {
  for (const char* section :
       {"Accessibility", "InputMonitoring", "Automation", "automation", "", "Camera"}) {
    coordinator_.open(section);
  }
  EXPECT_THAT(settings_.links,
              ElementsAre("settings://privacy?Privacy_Accessibility",
                          "settings://privacy?Privacy_ListenEvent",
                          "settings://privacy?Privacy_Automation"));
}

TEST_F(PermissionTest, OpensNothingWhereTheDesktopHasNoSuchSettings) {
  settings_.link = "";
  coordinator_.open("Accessibility");
  EXPECT_THAT(settings_.links, IsEmpty());
}

class FakeRegistration final : public LoginRegistration {
 public:
  void registerApplication() override { current = LoginStatus::enabled; }
  void unregisterApplication() override { throw PlatformError("Could not remove a: denied."); }
  [[nodiscard]] LoginStatus status() const override { return current; }

  LoginStatus current = LoginStatus::notRegistered;
};

TEST(LoginService, RegistersAndPassesFailuresOn) {
  FakeRegistration registration;
  LoginService login(registration);
  EXPECT_EQ(login.status(), LoginStatus::notRegistered);
  login.setEnabled(true);
  EXPECT_EQ(login.status(), LoginStatus::enabled);
  EXPECT_THROW(login.setEnabled(false), PlatformError);
  registration.current = LoginStatus::requiresApproval;
  EXPECT_EQ(login.status(), LoginStatus::requiresApproval);
  registration.current = LoginStatus::notFound;
  EXPECT_EQ(login.status(), LoginStatus::notFound);
}

}  // namespace
}  // namespace tolvane
