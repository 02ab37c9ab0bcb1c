#pragma once

namespace tolvane::confine {

/// Takes root's rights over the machine away, for good: mounts, devices, the clock, other
/// processes, ... What root may do with files stays. Does nothing to an ordinary user, who has
/// none.
void giveUpRights();

}  // namespace tolvane::confine
