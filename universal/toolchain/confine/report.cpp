#include "universal/toolchain/confine/report.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>

namespace tolvane::confine::Report {

namespace {

constexpr int notConfined = 125;

void say(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count < 0) {
      return;  // nobody listens any more
    }
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace

void fail(std::string_view what) {
  const char* reason = ::strerrordesc_np(errno);
  say(std::string(what) + ": " + (reason == nullptr ? "unknown error" : reason));
  ::_exit(notConfined);
}

void check(long result, std::string_view what) {
  if (result < 0) {
    fail(what);
  }
}

void engineStarts() {
  say(started + std::to_string(::getpgrp()) + '\n');
}

}  // namespace tolvane::confine::Report
