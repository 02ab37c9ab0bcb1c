#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <QApplication>
#include <QFontMetricsF>

#include "app/app_delegate.h"
#include "app/termination_signals.h"
#include "platform/desktop/qt/desktop_bus_name.h"
#include "platform/desktop/x11/x_server.h"
#include "platform/files/file_names.h"
#include "platform/process/activation.h"
#include "platform/process/desktop_host.h"

namespace {

using Request = tolvane::DesktopBusName::Request;

/// On a Wayland desktop too: only there can a program place its windows and see which is in front.
void useXServer() {
  constexpr int keepTheUsersChoice = 0;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there is no other thread yet
  ::setenv("QT_QPA_PLATFORM", "xcb", keepTheUsersChoice);
  tolvane::XServer::requireReachable();
}

/// The palette is small: drawn by the processor it is there sooner than any graphics driver.
void drawWithoutGraphicsDriver() {
  constexpr int keepTheUsersChoice = 0;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there is no other thread yet
  ::setenv("QT_QUICK_BACKEND", "software", keepTheUsersChoice);
}

/// Finding a font takes some ten milliseconds the first time: spent beside the main thread, which
/// loads the interface meanwhile.
std::jthread lookForFont() {
  return std::jthread([] { QFontMetricsF(QFont()).horizontalAdvance("tolvane"); });
}

/// @param words files; none, or showWord alone: what is selected.
Request requestIn(const std::vector<std::string>& words, const tolvane::Activation& activation) {
  Request request = {std::nullopt, activation};
  if (words.empty() || words == std::vector<std::string>{tolvane::DesktopHost::showWord}) {
    return request;
  }
  std::error_code ignored;  // a folder that is gone leaves the others' paths as they are
  const auto folder = std::filesystem::current_path(ignored);
  request.files.emplace();
  for (const std::string& word : words) {
    request.files->push_back(tolvane::FileNames::handedOver(word, folder));
  }
  return request;
}

/// @param words what the user wants to see; none: the tray icon, and of a host that runs already
/// its palette.
int run(const std::vector<std::string>& words,
        tolvane::TerminationSignals& signals,
        const tolvane::Activation& activation) {
  const Request request = requestIn(words, activation);
  tolvane::AppDelegate delegate(signals);
  tolvane::DesktopBusName busName;
  if (!busName.claim([&delegate](const Request& later) { delegate.follow(later); })) {
    tolvane::DesktopBusName::handOver(request);
    return EXIT_SUCCESS;
  }
  const std::jthread font = lookForFont();
  delegate.applicationDidFinishLaunching();
  signals.listen([&delegate] { delegate.applicationShouldTerminate(); });
  if (!words.empty()) {
    delegate.follow(request);
  }
  return QApplication::exec();
}

}  // namespace

int main(int count, char** words) {
  // Both show as failed writes.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  drawWithoutGraphicsDriver();
  try {
    useXServer();
    tolvane::TerminationSignals signals;
    const auto activation = tolvane::Activation::ofThisProcess();
    QApplication application(count, words);
    QApplication::setApplicationName("tolvane");
    QGuiApplication::setDesktopFileName("app.tolvane");
    // Qt has taken its own options out of the words; what it makes of the others is text, which not
    // every name is.
    return run({words + 1, words + count}, signals, activation);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
}
