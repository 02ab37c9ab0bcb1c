#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include <QApplication>
#include <QFile>

#include "app/app_delegate.h"
#include "app/termination_signals.h"
#include "platform/desktop/qt/desktop_bus_name.h"
#include "platform/desktop/x11/x_server.h"
#include "platform/files/file_names.h"
#include "platform/process/activation.h"

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

/// @param words files; none: the host only shows up.
Request requestIn(const QStringList& words, const tolvane::Activation& activation) {
  Request request = {std::nullopt, activation};
  if (!words.empty()) {
    std::error_code ignored;  // a folder that is gone leaves the others' paths as they are
    const auto folder = std::filesystem::current_path(ignored);
    request.files.emplace();
    for (const QString& word : words) {
      request.files->push_back(
          tolvane::FileNames::handedOver(QFile::encodeName(word).toStdString(), folder));
    }
  }
  return request;
}

int run(QApplication& application,
        tolvane::TerminationSignals& signals,
        const tolvane::Activation& activation) {
  const Request request = requestIn(QApplication::arguments().mid(1), activation);
  tolvane::AppDelegate delegate;
  tolvane::DesktopBusName busName;
  if (!busName.claim([&delegate](const Request& later) { delegate.follow(later); })) {
    tolvane::DesktopBusName::handOver(request);
    return EXIT_SUCCESS;
  }
  delegate.applicationDidFinishLaunching();
  signals.listen([&delegate] { delegate.applicationShouldTerminate(); });
  if (request.files) {
    delegate.follow(request);
  }
  return application.exec();
}

}  // namespace

int main(int count, char** words) {
  std::signal(SIGPIPE, SIG_IGN);
  drawWithoutGraphicsDriver();
  try {
    useXServer();
    tolvane::TerminationSignals signals;
    const auto activation = tolvane::Activation::ofThisProcess();
    QApplication application(count, words);
    QApplication::setApplicationName("tolvane");
    QGuiApplication::setDesktopFileName("app.tolvane");
    return run(application, signals, activation);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
}
