#include "platform/files/descriptor.h"

#include <unistd.h>

namespace tolvane {

Descriptor::~Descriptor() {
  if (number_ >= 0) {
    ::close(number_);
  }
}

}  // namespace tolvane
