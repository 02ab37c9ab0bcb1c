#pragma once

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/types.h>

#include "tests/support/eventually.h"
#include "tests/support/pdf_builder.h"

/// A job that does not notice that it is cancelled, and how programs with such a job are ended.
namespace tolvane::support {

/// A page that takes minutes to paint, inside a library that cannot be asked to stop.
inline void writeStubbornPdf(const std::filesystem::path& file) {
  constexpr int firstForm = 6;
  constexpr int levels = 9;
  PdfBuilder builder;
  builder.page({.drawing = "/F Do", .entries = "/Resources << /XObject << /F 6 0 R >> >>"});
  const std::string form = "<< /Type /XObject /Subtype /Form /BBox [0 0 500 500] ";
  for (int number = firstForm; number < firstForm + levels; ++number) {
    builder.object(form + "/Resources << /XObject << /F " + std::to_string(number + 1) +
                   " 0 R >> >> /Length 60 >>\nstream\n" +
                   "/F Do /F Do /F Do /F Do /F Do /F Do /F Do /F Do /F Do /F Do \nendstream");
  }
  builder.object(form + "/Length 19 >>\nstream\n0 0 m 500 500 l S  \nendstream");
  builder.write(file);
}

/// Processor time that a process took, in hundredths of a second.
inline long ticksOf(pid_t process) {
  std::string word;
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  constexpr int userTime = 14;
  for (int field = 1; field <= userTime; ++field) {
    file >> word;
  }
  return word.empty() ? 0 : std::stol(word);
}

/// @return whether the process comes to paint, once its job has begun.
[[nodiscard]] inline bool eventuallyPaints(pid_t process) {
  const long before = ticksOf(process);
  constexpr long many = 30;  // what comes before painting takes one or two
  return eventually([&] { return ticksOf(process) - before >= many; });
}

/// Hexadecimal digits; empty when the process has gone.
inline std::string pendingSignals(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/status");
  for (std::string word; file >> word;) {
    if (word == "ShdPnd:") {
      file >> word;
      return word;
    }
  }
  return {};
}

/// Sends a signal. @return whether the process takes it.
[[nodiscard]] inline bool eventuallyTakes(pid_t process, int signal) {
  ::kill(process, signal);
  return eventually(
      [&] { return pendingSignals(process).find_first_not_of('0') == std::string::npos; });
}

}  // namespace tolvane::support
