#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace tolvane::support {

/// A program that runs beside the test and is ended with it.
class Program {
 public:
  explicit Program(std::vector<std::string> words);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  [[nodiscard]] pid_t process() const { return process_; }
  void signal(int number) const;
  /// Waits until it ends. @return its exit status; -1 when a signal ended it.
  int wait();

 private:
  pid_t process_;  // 0 when it has ended
};

/// The desktop host, started; it has its shortcut.
class Host : public Program {
 public:
  Host();
};

/// Runs a command of the shell. @return what it printed, without the last line end.
std::string output(const std::string& command);
inline void xdotool(const std::string& words) {
  output("xdotool " + words);
}

/// The title of the window with the focus.
[[nodiscard]] std::string activeWindow();
/// "460x460"; empty while the palette is not on the screen.
[[nodiscard]] std::string paletteSize();
[[nodiscard]] bool isPaletteVisible();
inline constexpr const char* hostName = "app.tolvane.Desktop";
/// Whether the name has an owner on the session bus.
[[nodiscard]] bool isOnBus(const std::string& name);
[[nodiscard]] bool eventuallyActive(const std::string& title);

/// A session with another window, which has the focus, and the pointer away from it.
class SessionTest : public ::testing::Test {
 protected:
  void SetUp() override;

  TemporaryFolder folder_;
  Program other_{{"xterm", "-geometry", "60x20+900+550", "-T", "other"}};
};

}  // namespace tolvane::support
