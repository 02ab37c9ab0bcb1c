#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include <QApplication>
#include <QFile>

#include "app/app_delegate.h"
#include "app/termination_signals.h"
#include "platform/desktop/qt/desktop_bus_name.h"
#include "platform/files/file_names.h"

namespace {

using Files = tolvane::DesktopBusName::Files;

/// The palette is small: drawn by the processor it is there sooner than any graphics driver.
void drawWithoutGraphicsDriver() {
  constexpr int keepTheUsersChoice = 0;
  ::setenv("QT_QUICK_BACKEND", "software", keepTheUsersChoice);
}

Files filesIn(const QStringList& words) {
  Files files;
  for (const QString& word : words.mid(1)) {
    const std::string text = QFile::encodeName(word).toStdString();
    files.push_back(std::filesystem::absolute(tolvane::FileNames::localPath(text).value_or(text)));
  }
  return files;
}

int run(QApplication& application, tolvane::TerminationSignals& signals) {
  const Files files = filesIn(QApplication::arguments());
  tolvane::AppDelegate delegate;
  tolvane::DesktopBusName busName;
  const bool isFirst =
      busName.claim({[&delegate] { delegate.openPalette(); },
                     [&delegate](Files handed) { delegate.open(std::move(handed)); }});
  if (!isFirst) {
    tolvane::DesktopBusName::handOver(files);
    return EXIT_SUCCESS;
  }
  delegate.applicationDidFinishLaunching();
  signals.listen([&delegate] { delegate.applicationShouldTerminate(); });
  if (!files.empty()) {
    delegate.open(files);
  }
  return application.exec();
}

}  // namespace

int main(int count, char** words) {
  std::signal(SIGPIPE, SIG_IGN);
  drawWithoutGraphicsDriver();
  try {
    tolvane::TerminationSignals signals;
    QApplication application(count, words);
    QApplication::setApplicationName("tolvane");
    QGuiApplication::setDesktopFileName("app.tolvane");
    return run(application, signals);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
}
