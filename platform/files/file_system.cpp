#include "platform/files/file_system.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "platform/files/descriptor.h"
#include "platform/files/platform_error.h"
#include "platform/files/tree_removal.h"

namespace tolvane::FileSystem {

namespace {

namespace fs = std::filesystem;

/// Some file systems tell only here that they are full.
void closeWritten(Descriptor& file, const fs::path& path) {
  if (::close(file.release()) != 0) {
    throw PlatformError::fromErrno("write", path, errno);
  }
}

Descriptor openedForReading(const fs::path& path) {
  // Not to be kept waiting by a pipe that took the file's place.
  const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (number < 0) {
    throw PlatformError::fromErrno("open", path, errno);
  }
  return Descriptor(number);
}

struct stat statusOf(const Descriptor& file, const fs::path& path) {
  struct stat status = {};
  if (::fstat(file.number(), &status) != 0) {
    throw PlatformError::fromErrno("read", path, errno);
  }
  return status;
}

/// @return how many bytes were read; fewer than `size` only at the end of the file.
std::size_t readInto(const Descriptor& file,
                     const fs::path& path,
                     std::uint8_t* buffer,
                     std::size_t size) {
  std::size_t filled = 0;
  while (filled < size) {
    const ssize_t count = ::read(file.number(), buffer + filled, size - filled);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      throw PlatformError::fromErrno("read", path, errno);
    }
    if (count == 0) {
      break;
    }
    filled += static_cast<std::size_t>(count);
  }
  return filled;
}

void writeAll(const Descriptor& file, const fs::path& path, BytesView bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file.number(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      throw PlatformError::fromErrno("write", path, errno);
    }
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

}  // namespace

fs::path resolved(const fs::path& path) {
  // The system's calls would end the name there and reach another file.
  if (const std::size_t end = path.native().find('\0'); end != std::string::npos) {
    throw PlatformError::fromErrno("read", path.native().substr(0, end), EINVAL);
  }
  std::error_code ignored;
  const fs::path absolute = fs::absolute(path, ignored);
  fs::path result = fs::weakly_canonical(absolute, ignored);
  if (ignored) {
    result = absolute.lexically_normal();
  }
  // "folder/" names the folder; its last component would otherwise be empty.
  return result.has_filename() || !result.has_relative_path() ? result : result.parent_path();
}

Attributes attributes(const fs::path& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0) {
    throw PlatformError::fromErrno("read", path, errno);
  }
  return {S_ISREG(status.st_mode),
          S_ISDIR(status.st_mode),
          static_cast<std::uint64_t>(std::max<off_t>(status.st_size, 0))};
}

bool isWritable(const fs::path& folder) {
  return ::access(folder.c_str(), W_OK) == 0;
}

bool isExecutableFile(const fs::path& path) {
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(path.c_str(), X_OK) == 0;
}

Bytes readPrefix(const fs::path& path, std::size_t limit) {
  const Descriptor file = openedForReading(path);
  const struct stat status = statusOf(file, path);
  if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
    throw PlatformError("Could not read " + path.string() + ": it is no regular file.");
  }
  const auto size = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
  // One byte more than the size said, so that the end of the file is met (files of the kernel say 0
  // whatever they hold), and the error of a folder, whose size may be 0.
  std::size_t wanted = std::min(std::max(size + 1, std::size_t{4096}), limit);
  Bytes buffer;
  while (buffer.size() < wanted) {
    const std::size_t filled = buffer.size();
    buffer.resize(wanted);
    const std::size_t count = readInto(file, path, buffer.data() + filled, wanted - filled);
    buffer.resize(filled + count);
    if (buffer.size() < wanted) {
      break;
    }
    wanted += std::min(wanted, limit - wanted);
  }
  return buffer;
}

Bytes readAll(const fs::path& path) {
  return readPrefix(path, SIZE_MAX);
}

void writeAtomically(const fs::path& path, BytesView bytes) {
  writeAtomically(path, bytes, path);
}

void writeAtomically(const fs::path& path, BytesView bytes, const fs::path& shownAs) {
  // A name of its own: whatever else stands in the folder is not ours to write to or remove.
  const fs::path temporary = path.parent_path() / ("." + newUuid() + ".part");
  Descriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file.isOpen()) {
    throw PlatformError::fromErrno("write", shownAs, errno);
  }
  try {
    writeAll(file, shownAs, bytes);
    closeWritten(file, shownAs);
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
      throw PlatformError::fromErrno("write", shownAs, errno);
    }
  } catch (...) {
    removeQuietly(temporary);
    throw;
  }
}

void append(const fs::path& path, BytesView bytes) {
  Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
  if (!file.isOpen()) {
    throw PlatformError::fromErrno("write", path, errno);
  }
  writeAll(file, path, bytes);
  closeWritten(file, path);
}

void createDirectory(const fs::path& path, unsigned mode) {
  if (::mkdir(path.c_str(), mode) != 0) {
    throw PlatformError::fromErrno("create", path, errno);
  }
  if (::chmod(path.c_str(), mode) != 0) {
    const int code = errno;
    ::rmdir(path.c_str());
    throw PlatformError::fromErrno("create", path, code);
  }
}

void move(const fs::path& from, const fs::path& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) {
    throw PlatformError::fromErrno("move", from, errno);
  }
}

void copy(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
  if (error) {
    throw PlatformError::fromErrno("copy", from, error.value());
  }
}

void removeQuietly(const fs::path& path) noexcept {
  if (::unlink(path.c_str()) != 0) {
    removeTreeQuietly(path);
  }
}

std::string newUuid() {
  std::array<std::uint8_t, 16> random = {};
  if (::getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(random.size())) {
    throw PlatformError::fromErrno("make a random name", "", errno);
  }
  random[6] = static_cast<std::uint8_t>((random[6] & 0x0F) | 0x40);  // version 4, RFC 9562
  random[8] = static_cast<std::uint8_t>((random[8] & 0x3F) | 0x80);  // variant 1
  std::string text;
  for (std::size_t index = 0; index < random.size(); ++index) {
    if (index == 4 || index == 6 || index == 8 || index == 10) {
      text += '-';
    }
    constexpr std::string_view digits = "0123456789ABCDEF";
    text += digits[random[index] >> 4];
    text += digits[random[index] & 0x0F];
  }
  return text;
}

}  // namespace tolvane::FileSystem
