#pragma once

#include <dirent.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/descriptor.h"

namespace tolvane {

/// Finds a folder below `root` as OpenFolder::openBelow does, also one that is closed to its owner.
/// @return the folder as a place only (O_PATH); none, and errno, when it cannot be reached.
[[nodiscard]] Descriptor folderBelow(int root, const std::string& path);

/// An open folder, whose entries are read one by one. One thread at a time.
class OpenFolder {
 public:
  struct Entry {
    const char* name;  ///< until the next one is read
    bool isFolder;     ///< a link to one is none
  };

  /// @param parent an open folder, or AT_FDCWD. A link at the end of the path is not followed.
  /// @return nullopt, and errno, when it cannot be opened.
  [[nodiscard]] static std::optional<OpenFolder> open(int parent, const char* path);
  /// Follows no link on the way either, and enters no mount: what it opens lies below `root`
  /// whatever is renamed meanwhile.
  /// @param path relative, without "..", of any length; "." for the root itself.
  [[nodiscard]] static std::optional<OpenFolder> openBelow(int root, const std::string& path);

  [[nodiscard]] int descriptor() const { return ::dirfd(stream_.get()); }
  /// @return nullopt after the last one. "." and ".." are left out.
  [[nodiscard]] std::optional<Entry> next();

 private:
  struct Close {
    void operator()(DIR* stream) const { ::closedir(stream); }
  };

  explicit OpenFolder(DIR* stream) : stream_(stream) {}

  static std::optional<OpenFolder> of(int descriptor);

  std::unique_ptr<DIR, Close> stream_;
};

/// The folders of a tree, each before those in it. Opens one at a time beside the root, because
/// archives can nest folders deeper than a process may have files open.
class FolderWalk {
 public:
  /// @param root an open folder; outlives this object.
  explicit FolderWalk(int root) : root_(root) {}

  /// The path of the next folder from the root, "." for itself; nullopt after the last one.
  [[nodiscard]] std::optional<std::string> next();
  [[nodiscard]] std::optional<OpenFolder> open(const std::string& path) const;
  /// Takes a folder that was met in the folder `path` into the walk.
  void add(const std::string& path, const char* name);

 private:
  int root_;
  std::vector<std::string> pending_ = {"."};
};

}  // namespace tolvane
