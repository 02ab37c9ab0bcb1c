#pragma once

#include <memory>

#include "bridge/desktop_services.h"
#include "bridge/method_table.h"

namespace tolvane {

/// The palette's stages and the open panels. Main thread only. A panel that closes when this object
/// is gone is not answered.
class PaletteMessages : public std::enable_shared_from_this<PaletteMessages> {
 public:
  /// @param services not owned; outlives this object.
  explicit PaletteMessages(const DesktopServices& services) : services_(services) {}

  /// "presentation", "hide", "chooseFiles" and "chooseFolder".
  void addMethods(MethodTable& table);

 private:
  void present(const Value::Map& arguments) const;
  void chooseFiles(const MethodReply& reply) const;
  void chooseFolder(const MethodReply& reply) const;

  const DesktopServices& services_;
};

}  // namespace tolvane
