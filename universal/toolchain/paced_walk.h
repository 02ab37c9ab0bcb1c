#pragma once

#include <chrono>
#include <filesystem>
#include <functional>

#include "platform/files/folder_walk.h"

namespace tolvane {

/// Looks through a tree while another process writes it. To be called again and again; walks only
/// now and then, so that walking takes about a twentieth of the time.
class PacedWalk {
 public:
  /// Called for each entry, from its folder, because finding each from the root takes the kernel
  /// twice as long. What it throws ends the walk and is passed on.
  using Visit = std::function<void(const OpenFolder& folder, const OpenFolder::Entry& entry)>;

  explicit PacedWalk(std::filesystem::path root);

  /// @return whether it has walked. Folders that have gone or are closed are passed over.
  bool operator()(const Visit& visit);

 private:
  void walk(const Visit& visit) const;

  std::filesystem::path root_;
  std::chrono::steady_clock::time_point next_;
};

}  // namespace tolvane
