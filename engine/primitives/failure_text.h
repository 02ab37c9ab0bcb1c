#pragma once

#include <exception>
#include <string>

/// What is said of a failure that reached the boundary of a job.
namespace tolvane::FailureText {

/// @return the failure's own sentence; one for what the C++ library throws when memory or threads
/// are short, whose own words are names of types and functions.
[[nodiscard]] std::string of(const std::exception& failure);

}  // namespace tolvane::FailureText
