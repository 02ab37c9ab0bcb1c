#include "universal/toolchain/confine/report.h"

#include "universal/toolchain/confine/decimal.h"

namespace tolvane::confine::Report {

namespace {

constexpr int notConfined = 125;

void say(std::string_view text) {
  while (!text.empty()) {
    const Kernel::Answer count = Kernel::call(SYS_write, descriptor, text.data(), text.size());
    if (count < 0) {
      return;  // nobody listens any more
    }
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace

void fail(int error, std::string_view what) {
  say(Decimal(static_cast<unsigned>(error)).text());
  say(" ");
  say(what);
  Kernel::exit(notConfined);
}

void check(Kernel::Answer answer, std::string_view what) {
  if (answer < 0) {
    fail(static_cast<int>(-answer), what);
  }
}

void engineStarts() {
  say(started);
  say(Decimal(static_cast<unsigned>(Kernel::call(SYS_getpgid, 0))).text());
  say("\n");
}

}  // namespace tolvane::confine::Report
