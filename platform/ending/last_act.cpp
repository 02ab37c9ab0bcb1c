#include "platform/ending/last_act.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <utility>
#include <vector>

namespace tolvane {

namespace {

struct Register {
  std::mutex lock;
  std::vector<const LastAct*> living;  // the newest last
};

Register& all() {
  // Never destroyed: threads may still look into it while the process ends.
  static auto* const acts = new Register;
  return *acts;
}

}  // namespace

LastAct::LastAct(std::function<void()> act) : act_(std::move(act)) {
  const std::lock_guard guard(all().lock);
  all().living.push_back(this);
}

LastAct::~LastAct() {
  const std::lock_guard guard(all().lock);
  std::erase(all().living, this);
}

void LastAct::performAll() noexcept {
  all().lock.lock();
  for (auto act = all().living.rbegin(); act != all().living.rend(); ++act) {
    try {
      (*act)->act_();
    } catch (const std::exception&) {
      // The others are performed all the same.
    }
  }
}

}  // namespace tolvane
