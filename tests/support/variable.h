#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace tolvane::support {

/// Sets a variable of the environment; the old value is back afterwards. For tests in which no
/// other thread runs by then.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
        old != nullptr) {
      old_ = old;
    }
    set(value);
  }
  ~Variable() { set(old_ ? old_->c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  void set(const char* value) const {
    if (value != nullptr) {
      ::setenv(name_, value, 1);  // NOLINT(concurrency-mt-unsafe)
    } else {
      ::unsetenv(name_);  // NOLINT(concurrency-mt-unsafe)
    }
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

}  // namespace tolvane::support
