// Times the desktop host in the session that it runs in, which must have nothing else in it.
//
// usage: desktop_driver cold ROUNDS HOST FILE    the host is started with a file
//        desktop_driver key ROUNDS HOST          the shortcut is pressed
//        desktop_driver selected ROUNDS HOST     the same, with files selected in front
//          Print a line a round: milliseconds until a pixel of the palette is on the screen.
//        desktop_driver rest SECONDS HOST
//          Prints the megabytes resident and the clock ticks of processor time that the host takes
//          at rest, after the palette was up once.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
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

/// Of the root window.
struct Spot {
  std::int16_t x;
  std::int16_t y;
};

class Screen {
 public:
  Screen() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0) {
      throw std::runtime_error("There is no X server.");
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
  }

  void movePointer(const Spot& spot) {
    send(XCB_MOTION_NOTIFY, 0, spot.x, spot.y);
    flush();
  }

  /// Presses keys by their physical codes and lets go of them.
  void press(const std::vector<std::uint8_t>& keys) {
    for (const std::uint8_t key : keys) {
      send(XCB_KEY_PRESS, key, 0, 0);
    }
    std::for_each(
        keys.rbegin(), keys.rend(), [this](std::uint8_t key) { send(XCB_KEY_RELEASE, key, 0, 0); });
    flush();
  }

  [[nodiscard]] std::uint32_t pixel(const Spot& spot) {
    const auto request = xcb_get_image(connection_.get(),
                                       XCB_IMAGE_FORMAT_Z_PIXMAP,
                                       root_,
                                       spot.x,
                                       spot.y,
                                       1,
                                       1,
                                       ~std::uint32_t{0});
    const std::unique_ptr<xcb_get_image_reply_t, Free> reply(
        xcb_get_image_reply(connection_.get(), request, nullptr));
    if (!reply) {
      throw std::runtime_error("The screen cannot be read.");
    }
    return *reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get()));
  }

  /// The corner of the window that has the focus.
  [[nodiscard]] Spot focusCorner() {
    const std::unique_ptr<xcb_get_input_focus_reply_t, Free> focus(xcb_get_input_focus_reply(
        connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
    const auto request =
        xcb_translate_coordinates(connection_.get(), focus ? focus->focus : root_, root_, 0, 0);
    const std::unique_ptr<xcb_translate_coordinates_reply_t, Free> reply(
        xcb_translate_coordinates_reply(connection_.get(), request, nullptr));
    if (!reply) {
      throw std::runtime_error("No window has the focus.");
    }
    return {reply->dst_x, reply->dst_y};
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

// The palette stands right and below the pointer, if not beside a file.
constexpr Spot pointer = {500, 400};
constexpr Spot besidePointer = {540, 440};

/// A pixel that the palette covers, and what is seen there without it.
struct Mark {
  Spot spot;
  std::uint32_t bare;
};

Mark markAt(Screen& screen, const Spot& spot) {
  return {spot, screen.pixel(spot)};
}

/// @return the moment at which the palette is (not) seen at the mark.
Clock::time_point waitFor(Screen& screen, const Mark& mark, bool isUp) {
  const Clock::time_point limit = Clock::now() + 10s;
  while ((screen.pixel(mark.spot) != mark.bare) != isUp) {
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
  const Mark mark = markAt(screen, besidePointer);
  for (int round = 0; round < rounds; ++round) {
    {
      const Clock::time_point start = Clock::now();
      const Host running({host, file});
      print(waitFor(screen, mark, true) - start);
    }
    waitFor(screen, mark, false);
  }
}

constexpr std::uint8_t control = 37;
constexpr std::uint8_t alt = 64;
constexpr std::uint8_t letterC = 54;
constexpr std::uint8_t escape = 9;

void dismiss(Screen& screen, const Mark& mark) {
  std::this_thread::sleep_for(300ms);  // the palette has the focus and has faded in
  screen.press({escape});
  waitFor(screen, mark, false);
  std::this_thread::sleep_for(200ms);
}

/// Until the host has its shortcut.
void awaitShortcut(Screen& screen, const Mark& mark) {
  std::this_thread::sleep_for(1s);
  screen.press({control, alt, letterC});
  waitFor(screen, mark, true);
  dismiss(screen, mark);
}

void timePresses(Screen& screen, int rounds, const Mark& mark) {
  for (int round = 0; round < rounds; ++round) {
    const Clock::time_point start = Clock::now();
    screen.press({control, alt, letterC});
    print(waitFor(screen, mark, true) - start);
    dismiss(screen, mark);
  }
}

void timeShortcut(Screen& screen, int rounds, const std::string& host) {
  const Mark mark = markAt(screen, besidePointer);
  const Host running({host});
  awaitShortcut(screen, mark);
  timePresses(screen, rounds, mark);
}

Spot movedBy(const Spot& spot, int x, int y) {
  return {static_cast<std::int16_t>(spot.x + x), static_cast<std::int16_t>(spot.y + y)};
}

/// Opens the palette once, to see where it stands.
/// @return its corner; nullopt when it found no selected files.
std::optional<Spot> cornerWithFiles(Screen& screen) {
  screen.press({control, alt, letterC});
  std::this_thread::sleep_for(2s);
  const Spot corner = screen.focusCorner();
  const Spot rightWedge = movedBy(corner, 400, 230);  // only a palette with files is that wide
  const std::uint32_t seen = screen.pixel(rightWedge);
  screen.press({escape});
  std::this_thread::sleep_for(1s);
  return screen.pixel(rightWedge) != seen ? std::optional(corner) : std::nullopt;
}

void timeSelection(Screen& screen, int rounds, const std::string& host) {
  const Host running({host});
  std::this_thread::sleep_for(1s);
  std::optional<Spot> corner;
  constexpr int attempts = 5;  // a file manager may take its time to be accessible
  for (int attempt = 0; attempt < attempts && !corner; ++attempt) {
    corner = cornerWithFiles(screen);
  }
  if (!corner) {
    throw std::runtime_error("The palette finds no selected files.");
  }
  const Spot leftWedge = movedBy(*corner, 60, 230);
  timePresses(screen, rounds, markAt(screen, leftWedge));
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
  const Mark mark = markAt(screen, besidePointer);
  const Host running({host});
  awaitShortcut(screen, mark);
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
    screen.movePointer(pointer);
    if (what == "cold") {
      timeColdStarts(screen, number, arguments.at(2), arguments.at(3));
    } else if (what == "key") {
      timeShortcut(screen, number, arguments.at(2));
    } else if (what == "selected") {
      timeSelection(screen, number, arguments.at(2));
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
