#pragma once

#include <string>

#include "platform/desktop/accessibility/accessible_questions.h"

struct _GVariant;  // NOLINT(bugprone-reserved-identifier): so the library calls it

/// Questions and answers as the messages that stand for them on the bus.
namespace tolvane::AccessibilityMessages {

struct Message {
  bool isOfSession = false;  ///< for the session bus, not the accessibility bus
  std::string bus;
  std::string path;
  const char* interface = "";
  const char* method = "";
  ::_GVariant* arguments = nullptr;  ///< floating: the call takes it
};

[[nodiscard]] Message message(const AccessibleQuestion& question);

/// @return unanswered when the reply has another form than the question wants.
[[nodiscard]] AccessibleAnswer answer(Ask ask, ::_GVariant& reply);

}  // namespace tolvane::AccessibilityMessages
