#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/files/bytes.h"

/// The file-system calls that the engines need. Each throws PlatformError with the system's words.
namespace tolvane::FileSystem {

struct Attributes {
  bool isRegularFile = false;
  bool isDirectory = false;
  std::uint64_t size = 0;
};

/// Made absolute, "." and ".." removed, symbolic links followed. A path that does not exist is only
/// standardized: reading it is what fails. @throws PlatformError when it holds a NUL.
[[nodiscard]] std::filesystem::path resolved(const std::filesystem::path& path);

/// Of what the path leads to, links followed.
[[nodiscard]] Attributes attributes(const std::filesystem::path& path);

[[nodiscard]] bool isWritable(const std::filesystem::path& folder);
/// @return whether the path leads to a regular file that this process may execute.
[[nodiscard]] bool isExecutableFile(const std::filesystem::path& path);

/// The first `limit` bytes of a regular file, fewer if it is shorter.
[[nodiscard]] Bytes readPrefix(const std::filesystem::path& path, std::size_t limit);
[[nodiscard]] Bytes readAll(const std::filesystem::path& path);

/// Writes through a temporary sibling and a rename, so that `path` either holds all of `bytes` or
/// is as it was.
void writeAtomically(const std::filesystem::path& path, BytesView bytes);
/// @param shownAs what failures call the file, when its path means nothing to the user.
void writeAtomically(const std::filesystem::path& path,
                     BytesView bytes,
                     const std::filesystem::path& shownAs);

/// Adds the bytes to the end of a file, which is made when it is missing.
void append(const std::filesystem::path& path, BytesView bytes);

/// Permission bits of a folder that nobody but its owner enters.
inline constexpr unsigned ownerOnly = 0700;

/// Creates one folder, without its parents, with the given permission bits exactly (umask set
/// aside).
void createDirectory(const std::filesystem::path& path, unsigned mode);

/// Renames a file within its file system; replaces a file of that name.
void move(const std::filesystem::path& from, const std::filesystem::path& to);

/// Copies a file with its permissions, also to another file system; replaces a file of that name.
void copy(const std::filesystem::path& from, const std::filesystem::path& to);

/// Removes a file or a whole tree; whatever cannot be removed is left.
void removeQuietly(const std::filesystem::path& path) noexcept;

/// A random (version 4) UUID in upper case with hyphens, 36 characters.
[[nodiscard]] std::string newUuid();

}  // namespace tolvane::FileSystem
