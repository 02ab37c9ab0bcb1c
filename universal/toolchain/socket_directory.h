#pragma once

#include "platform/files/transient_folder.h"
#include "universal/toolchain/confinement.h"

namespace tolvane {

/// The folder "/tmp/tv-<8 characters>" (mode 0700) in which the office suite makes its local
/// sockets, whose names have room for about 100 characters. It goes with this object; what a killed
/// process left of them goes with the next one.
class SocketDirectory {
 public:
  /// @throws PlatformError when the folder cannot be created.
  SocketDirectory();

  /// Lets the office suite use the folder: names it in front of the arguments and shows it in the
  /// place of the system's folder for temporary files, the only one where the suite on Linux looks.
  /// @throws ConversionFailure when every such folder holds something that the engine needs.
  void addTo(ConfinedEngine& engine) const;

 private:
  TransientFolder folder_;
};

}  // namespace tolvane
