#pragma once

namespace tolvane {

/// Whether an application is launched at login.
enum class LoginStatus { notRegistered, enabled, requiresApproval, notFound };

}  // namespace tolvane
