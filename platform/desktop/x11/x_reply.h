#pragma once

#include <cstdlib>
#include <memory>

namespace tolvane {

struct FreeReply {
  void operator()(void* reply) const {
    std::free(reply);  // NOLINT(cppcoreguidelines-no-malloc): XCB hands replies over so
  }
};

/// An answer of the X server, or one of its errors or events; null when there is none.
template <typename Reply>
using XReply = std::unique_ptr<Reply, FreeReply>;

}  // namespace tolvane
