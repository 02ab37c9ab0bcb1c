#include "platform/modules/module_loader.h"

#include <array>
#include <dlfcn.h>
#include <filesystem>
#include <system_error>

#include "platform/files/platform_error.h"

namespace tolvane::ModuleLoader {

namespace {

namespace fs = std::filesystem;

fs::path moduleFile(const std::string& name) {
  std::error_code ignored;  // without /proc the component is not found
  const fs::path program = fs::read_symlink("/proc/self/exe", ignored).parent_path();
  const std::array<fs::path, 2> folders = {program / "modules", program / "../lib/tolvane"};
  for (const fs::path& folder : folders) {
    fs::path file = folder / (name + ".so");
    if (fs::exists(file, ignored)) {
      return file;
    }
  }
  throw PlatformError("The component " + name + " is missing. Install tolvane again.");
}

}  // namespace

void* load(const std::string& name, const char* symbol) {
  using EntryPoint = void* (*)();
  void* module = ::dlopen(moduleFile(name).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    throw PlatformError(
        ::dlerror());  // NOLINT(concurrency-mt-unsafe): its text is per thread in glibc
  }
  void* found = ::dlsym(module, symbol);
  if (found == nullptr) {
    throw PlatformError(::dlerror());  // NOLINT(concurrency-mt-unsafe)
  }
  return reinterpret_cast<EntryPoint>(found)();
}

}  // namespace tolvane::ModuleLoader
