#pragma once

#include <exception>
#include <string>

namespace tolvane::support {

/// Runs `action` and returns what the exception that it throws says; "(no failure)" when it throws
/// none.
template <typename Action>
std::string failureText(const Action& action) {
  try {
    static_cast<void>(action());
  } catch (const std::exception& error) {
    return error.what();
  }
  return "(no failure)";
}

}  // namespace tolvane::support
