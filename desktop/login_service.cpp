#include "desktop/login_service.h"

namespace tolvane {

void LoginService::setEnabled(bool on) {
  if (on) {
    registration_.registerApplication();
  } else {
    registration_.unregisterApplication();
  }
}

}  // namespace tolvane
