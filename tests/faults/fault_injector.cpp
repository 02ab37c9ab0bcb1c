// Preloaded into the program under test: makes one call of a function of the C library fail.
//
// TOLVANE_FAULT="mkdir 2 28" fails the second call of mkdir with the error 28. With the number 0
// nothing fails, and the file that TOLVANE_FAULT_COUNT names gets a byte a call. Only the program
// whose path TOLVANE_FAULT_PROGRAM is, is disturbed: engines inherit the environment. Reading and
// writing of the standard streams is left alone, for the sentence that is looked for goes there.

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// What the environment asks for.
struct Fault {
  std::array<char, 32> function = {};
  int number = 0;
  int error = 0;
  int count = -1;  ///< descriptor of the file that counts
  bool isWanted = false;

  // NOLINTBEGIN(concurrency-mt-unsafe): nothing changes the environment
  Fault() {
    std::array<char, PATH_MAX> program = {};
    const ssize_t length = ::readlink("/proc/self/exe", program.data(), program.size() - 1);
    const char* wanted = std::getenv("TOLVANE_FAULT_PROGRAM");
    const char* fault = std::getenv("TOLVANE_FAULT");
    isWanted = length > 0 && wanted != nullptr && fault != nullptr &&
               std::strcmp(program.data(), wanted) == 0 &&
               std::sscanf(fault, "%31s %d %d", function.data(), &number, &error) == 3;
    const char* file = std::getenv("TOLVANE_FAULT_COUNT");
    if (isWanted && number == 0 && file != nullptr) {
      constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
      count = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, file, flags, 0600));
    }
  }
  // NOLINTEND(concurrency-mt-unsafe)
};

const Fault& fault() {
  static const Fault once;
  return once;
}

std::atomic<int> calls = 0;

/// @return whether this call is the one that has to fail; errno is set then.
bool fails(std::string_view function) {
  if (!fault().isWanted || function != fault().function.data()) {
    return false;
  }
  if (fault().count >= 0) {
    static_cast<void>(::syscall(SYS_write, fault().count, "x", 1));
  }
  if (++calls != fault().number) {
    return false;
  }
  errno = fault().error;
  return true;
}

/// The C library's own function.
template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// Whether reading or writing can fail: it can on files and pipes, not where threads wake each
/// other.
bool mayFail(int descriptor) {
  struct stat status = {};
  return descriptor > STDERR_FILENO &&
         next<int(int, struct stat*)>("fstat")(descriptor, &status) == 0 &&
         (S_ISREG(status.st_mode) || S_ISFIFO(status.st_mode));
}

/// The third argument of open is there only when a file may be made.
mode_t modeOf(int flags, va_list arguments) {
  const bool makes = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return makes ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

// The C library calls its parameters by names of its own.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return fails("open") ? -1 : next<int(const char*, int, mode_t)>("open")(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return fails("openat")
             ? -1
             : next<int(int, const char*, int, mode_t)>("openat")(folder, path, flags, mode);
}

ssize_t read(int descriptor, void* to, size_t size) {
  const bool isFault = mayFail(descriptor) && fails("read");
  return isFault ? -1 : next<ssize_t(int, void*, size_t)>("read")(descriptor, to, size);
}

ssize_t write(int descriptor, const void* from, size_t size) {
  const bool isFault = mayFail(descriptor) && fails("write");
  return isFault ? -1 : next<ssize_t(int, const void*, size_t)>("write")(descriptor, from, size);
}

int mkdir(const char* path, mode_t mode) noexcept {
  return fails("mkdir") ? -1 : next<int(const char*, mode_t)>("mkdir")(path, mode);
}

int mkdirat(int folder, const char* path, mode_t mode) noexcept {
  return fails("mkdir") ? -1 : next<int(int, const char*, mode_t)>("mkdirat")(folder, path, mode);
}

int link(const char* from, const char* to) noexcept {
  return fails("link") ? -1 : next<int(const char*, const char*)>("link")(from, to);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  return fails("link") ? -1
                       : next<int(int, const char*, int, const char*, int)>("linkat")(
                             fromFolder, from, toFolder, to, flags);
}

int rename(const char* from, const char* to) noexcept {
  return fails("rename") ? -1 : next<int(const char*, const char*)>("rename")(from, to);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
  return fails("rename") ? -1
                         : next<int(int, const char*, int, const char*)>("renameat")(
                               fromFolder, from, toFolder, to);
}

int fstat(int descriptor, struct stat* to) noexcept {
  return fails("fstat") ? -1 : next<int(int, struct stat*)>("fstat")(descriptor, to);
}

int fsync(int descriptor) {
  return fails("fsync") ? -1 : next<int(int)>("fsync")(descriptor);
}

int pipe2(int* ends, int flags) noexcept {
  return fails("pipe2") ? -1 : next<int(int*, int)>("pipe2")(ends, flags);
}

#pragma GCC diagnostic ignored "-Wshadow"  // a type has the same name
int flock(int descriptor, int operation) noexcept {
  return fails("flock") ? -1 : next<int(int, int)>("flock")(descriptor, operation);
}

void* mmap(
    void* at, size_t size, int protection, int flags, int descriptor, off_t offset) noexcept {
  return fails("mmap") ? MAP_FAILED
                       : next<void*(void*, size_t, int, int, int, off_t)>("mmap")(
                             at, size, protection, flags, descriptor, offset);
}

/// Answers with its error instead of leaving it in errno.
int posix_spawn(pid_t* process,
                const char* program,
                const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes,
                char* const* words,
                char* const* environment) {
  return fails("posix_spawn") ? fault().error
                              : next<decltype(posix_spawn)>("posix_spawn")(
                                    process, program, actions, attributes, words, environment);
}

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
