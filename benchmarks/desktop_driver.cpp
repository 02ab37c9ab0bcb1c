// Times the desktop host in the session that it runs in, which must have nothing else in it.
//
// usage: desktop_driver cold ROUNDS HOST FILE    the host is started with a file
//        desktop_driver key ROUNDS HOST          the shortcut is pressed
//          Print a line a round: milliseconds until a pixel of the palette is on the screen.
//        desktop_driver rest SECONDS HOST
//          Prints the megabytes resident and the clock ticks of processor time that the host takes
//          at rest, after the palette was up once.

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using Words = std::vector<std::string>;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

class Screen {
 public:
  Screen() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0) {
      throw std::runtime_error("There is no X server.");
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
  }

  void movePointer(std::int16_t x, std::int16_t y) {
    send(XCB_MOTION_NOTIFY, 0, x, y);
    flush();
  }

  /// Presses keys by their physical codes and lets go of them.
  void press(const std::vector<std::uint8_t>& keys) {
    for (const std::uint8_t key : keys) {
      send(XCB_KEY_PRESS, key, 0, 0);
    }
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
      send(XCB_KEY_RELEASE, *key, 0, 0);
    }
    flush();
  }

  [[nodiscard]] std::uint32_t pixel(std::int16_t x, std::int16_t y) {
    const auto request = xcb_get_image(
        connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, root_, x, y, 1, 1, ~std::uint32_t{0});
    const std::unique_ptr<xcb_get_image_reply_t, Free> reply(
        xcb_get_image_reply(connection_.get(), request, nullptr));
    if (!reply) {
      throw std::runtime_error("The screen cannot be read.");
    }
    return *reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get()));
  }

 private:
  void send(std::uint8_t type, std::uint8_t detail, std::int16_t x, std::int16_t y) {
    xcb_test_fake_input(connection_.get(), type, detail, XCB_CURRENT_TIME, root_, x, y, 0);
  }
  void flush() { xcb_flush(connection_.get()); }

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_window_t root_ = 0;
};

/// Ended with this object.
class Host {
 public:
  explicit Host(Words words) {
    std::vector<char*> pointers;
    for (std::string& word : words) {
      pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    if (::posix_spawn(&process_, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0) {
      throw std::runtime_error("The host does not start.");
    }
  }
  ~Host() {
    ::kill(process_, SIGTERM);
    ::waitpid(process_, nullptr, 0);
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  [[nodiscard]] pid_t process() const { return process_; }

 private:
  pid_t process_ = 0;
};

// The palette stands right and below the pointer.
constexpr std::int16_t pointerX = 500;
constexpr std::int16_t pointerY = 400;
constexpr std::int16_t paletteX = pointerX + 40;
constexpr std::int16_t paletteY = pointerY + 40;

/// @return the moment at which the palette's pixel is (not) the bare screen's.
Clock::time_point waitFor(Screen& screen, std::uint32_t bare, bool isUp) {
  const Clock::time_point limit = Clock::now() + 10s;
  while ((screen.pixel(paletteX, paletteY) != bare) != isUp) {
    if (Clock::now() > limit) {
      throw std::runtime_error(isUp ? "The palette does not come." : "The palette stays.");
    }
    std::this_thread::sleep_for(200us);
  }
  return Clock::now();
}

void print(Clock::duration time) {
  std::printf("%.3f\n", Milliseconds(time).count());
}

void timeColdStarts(Screen& screen, int rounds, const std::string& host, const std::string& file) {
  const std::uint32_t bare = screen.pixel(paletteX, paletteY);
  for (int round = 0; round < rounds; ++round) {
    {
      const Clock::time_point start = Clock::now();
      const Host running({host, file});
      print(waitFor(screen, bare, true) - start);
    }
    waitFor(screen, bare, false);
  }
}

constexpr std::uint8_t control = 37;
constexpr std::uint8_t alt = 64;
constexpr std::uint8_t letterC = 54;
constexpr std::uint8_t escape = 9;

void dismiss(Screen& screen, std::uint32_t bare) {
  std::this_thread::sleep_for(300ms);  // the palette has the focus and has faded in
  screen.press({escape});
  waitFor(screen, bare, false);
  std::this_thread::sleep_for(200ms);
}

/// Until the host has its shortcut.
void awaitShortcut(Screen& screen, std::uint32_t bare) {
  std::this_thread::sleep_for(1s);
  screen.press({control, alt, letterC});
  waitFor(screen, bare, true);
  dismiss(screen, bare);
}

void timeShortcut(Screen& screen, int rounds, const std::string& host) {
  const std::uint32_t bare = screen.pixel(paletteX, paletteY);
  const Host running({host});
  awaitShortcut(screen, bare);
  for (int round = 0; round < rounds; ++round) {
    const Clock::time_point start = Clock::now();
    screen.press({control, alt, letterC});
    print(waitFor(screen, bare, true) - start);
    dismiss(screen, bare);
  }
}

std::vector<std::string> fieldsOf(const std::string& file) {
  std::ifstream stream(file);
  return {std::istream_iterator<std::string>(stream), {}};
}

/// User and system time. From /proc/PID/stat, counted behind the name, which holds no space here.
long ticksOf(pid_t process) {
  const std::vector<std::string> fields = fieldsOf("/proc/" + std::to_string(process) + "/stat");
  return std::stol(fields.at(13)) + std::stol(fields.at(14));
}

double residentMegabytes(pid_t process) {
  const long pages = std::stol(fieldsOf("/proc/" + std::to_string(process) + "/statm").at(1));
  return static_cast<double>(pages * ::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

void measureRest(Screen& screen, int seconds, const std::string& host) {
  const std::uint32_t bare = screen.pixel(paletteX, paletteY);
  const Host running({host});
  awaitShortcut(screen, bare);
  std::this_thread::sleep_for(2s);
  const long before = ticksOf(running.process());
  std::this_thread::sleep_for(std::chrono::seconds(seconds));
  std::printf(
      "%.1f %ld\n", residentMegabytes(running.process()), ticksOf(running.process()) - before);
}

}  // namespace

int main(int count, char** words) {
  try {
    const std::vector<std::string> arguments(words + 1, words + count);
    const std::string& what = arguments.at(0);
    const int number = std::stoi(arguments.at(1));
    Screen screen;
    screen.movePointer(pointerX, pointerY);
    if (what == "cold") {
      timeColdStarts(screen, number, arguments.at(2), arguments.at(3));
    } else if (what == "key") {
      timeShortcut(screen, number, arguments.at(2));
    } else if (what == "rest") {
      measureRest(screen, number, arguments.at(2));
    } else {
      throw std::runtime_error("Unknown: " + what);
    }
    return EXIT_SUCCESS;
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "desktop_driver: %s\n", problem.what());
    return EXIT_FAILURE;
  }
}
