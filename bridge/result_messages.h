#pragma once

#include "bridge/method_table.h"
#include "desktop/desktop_services.h"

namespace tolvane {

/// "reveal", "open" and "copyPath": what the interface does with the results of a job. Main thread
/// only.
namespace ResultMessages {
/// @param services not owned; outlives the table.
void addMethods(MethodTable& table, const DesktopServices& services);
}  // namespace ResultMessages

}  // namespace tolvane
