#pragma once

#include "platform/files/descriptor.h"

namespace tolvane {

/// Tells that a library gives the process up: by abort(), which C libraries call when an allocation
/// fails, by the trap by which GLib does the same, or by a crash, for libraries that do not look
/// whether one has failed. Nothing can go on in that thread; it is held up for some seconds, so
/// that another one can clear up and end the process. One object at a time.
class AbortNotice {
 public:
  /// @throws PlatformError
  AbortNotice();
  ~AbortNotice();
  AbortNotice(const AbortNotice&) = delete;
  AbortNotice& operator=(const AbortNotice&) = delete;

  /// Readable once it has happened.
  [[nodiscard]] int descriptor() const { return event_.number(); }
  [[nodiscard]] bool hasCome() const;

 private:
  Descriptor event_;
};

}  // namespace tolvane
