#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "bridge/method_table.h"
#include "desktop/desktop_services.h"

namespace tolvane {

/// The palette's stages and the open panels. Main thread only. A panel that closes when this object
/// is gone is not answered.
class PaletteMessages : public std::enable_shared_from_this<PaletteMessages> {
 public:
  using Files = std::vector<std::filesystem::path>;

  /// @param services not owned; outlives this object.
  /// @param filesChosen takes the files of a confirmed open panel; not called when this object is
  /// gone.
  PaletteMessages(const DesktopServices& services, std::function<void(Files)> filesChosen)
      : services_(services), filesChosen_(std::move(filesChosen)) {}

  /// "presentation", "hide", "chooseFiles" and "chooseFolder".
  void addMethods(MethodTable& table);

 private:
  void present(const Value::Map& arguments) const;
  /// Keeps the palette from being dismissed until the panel that is asked for next has closed.
  /// @param take what to do with the choice, and to answer the call with.
  /// @return what the panel is to call then; shows the palette again.
  template <typename Chosen>
  std::function<void(std::optional<Chosen>)> afterPanel(
      const MethodReply& reply, std::function<Value(const std::optional<Chosen>&)> take) const;
  void chooseFiles(const MethodReply& reply) const;
  void chooseFolder(const MethodReply& reply) const;

  const DesktopServices& services_;
  std::function<void(Files)> filesChosen_;
};

}  // namespace tolvane
