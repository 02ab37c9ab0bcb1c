#include "tests/desktop_host/session.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/eventually.h"

namespace tolvane::support {

Program::Program(std::vector<std::string> words) : process_(0) {
  std::vector<char*> pointers;
  for (std::string& word : words) {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);
  EXPECT_EQ(::posix_spawnp(&process_, pointers[0], nullptr, nullptr, pointers.data(), environ), 0);
}

Program::~Program() {
  if (process_ > 0) {
    signal(SIGTERM);
    wait();
  }
}

void Program::signal(int number) const {
  ::kill(process_, number);
}

int Program::wait() {
  int status = 0;
  const bool hasEnded =
      eventually([&] { return ::waitpid(process_, &status, WNOHANG) == process_; });
  if (!hasEnded) {
    ADD_FAILURE() << "The program does not end.";
    ::kill(process_, SIGKILL);
    ::waitpid(process_, &status, 0);
  }
  process_ = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string output(const std::string& command) {
  struct Close {
    void operator()(std::FILE* file) const { ::pclose(file); }
  };
  const std::unique_ptr<std::FILE, Close> pipe(::popen((command + " 2>&1").c_str(), "r"));
  std::string text;
  std::array<char, 4096> buffer = {};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) {
    text.append(buffer.data(), count);
  }
  if (text.ends_with('\n')) {
    text.pop_back();
  }
  return text;
}

std::string activeWindow() {
  return output("xdotool getactivewindow getwindowname");
}

std::string paletteSize() {
  // Without the room for the shadow that the window has around the palette where it is blended.
  return output(
      "id=$(xdotool search --onlyvisible --name '^tolvane$' 2>/dev/null | tail -1); "
      "[ -z \"$id\" ] || { eval \"$(xdotool getwindowgeometry --shell $id)\"; "
      "side=$(xprop -id $id _GTK_FRAME_EXTENTS | sed -n 's/.*= \\([0-9]*\\),.*/\\1/p'); "
      "echo $((WIDTH - 2 * ${side:-0}))x$((HEIGHT - 2 * ${side:-0})); }");
}

bool isPaletteVisible() {
  return !paletteSize().empty();
}

bool isOnBus(const std::string& name) {
  return output(
             "gdbus call --session -d org.freedesktop.DBus -o / "
             "-m org.freedesktop.DBus.NameHasOwner " +
             name) == "(true,)";
}

bool eventuallyActive(const std::string& title) {
  return eventually([&title] { return activeWindow() == title; });
}

void SessionTest::SetUp() {
  ASSERT_TRUE(eventuallyActive("other"));
  xdotool("mousemove 500 400");
}

Host::Host() : Program({TOLVANE_DESKTOP}) {
  // Written when the shortcut is registered.
  const char* const home = std::getenv("XDG_CONFIG_HOME");  // NOLINT(concurrency-mt-unsafe)
  const std::string settings = std::string(home) + "/tolvane/settings.json";
  EXPECT_TRUE(eventually([&settings] { return ::access(settings.c_str(), F_OK) == 0; }));
}

}  // namespace tolvane::support
