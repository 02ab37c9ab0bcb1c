#include "platform/desktop/x11/user_action.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tolvane {

namespace {

/// Milliseconds after which window managers take a start for failed.
constexpr XTime longestStart = 30'000;

std::optional<XTime> timeIn(std::string_view startupId) {
  constexpr std::string_view mark = "_TIME";
  const std::size_t at = startupId.rfind(mark);
  if (at == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view digits = startupId.substr(at + mark.size());
  const char* const end = digits.data() + digits.size();
  XTime time = 0;
  const auto read = std::from_chars(digits.data(), end, time);
  return read.ec == std::errc() && read.ptr == end ? std::optional(time) : std::nullopt;
}

}  // namespace

UserAction::UserAction(XServer& server, const std::string& startupId) : server_(server) {
  const auto time = timeIn(startupId);
  // The difference is right also when the server's time has wrapped around; what is to come counts
  // as long ago.
  if (time && server.now() - *time <= longestStart) {
    server_.setUserTime(time);
  }
}

UserAction::~UserAction() {
  server_.setUserTime(std::nullopt);
}

}  // namespace tolvane
