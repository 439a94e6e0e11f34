#include "hosts/probe/LoadedLook.h"

#include "hosts/probe/module/Module.h"

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace probe {

namespace {

/// Beside the program in the build, with the system's other auxiliary files once installed.
std::string moduleFile() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path beside = program.parent_path() / "quillop-look.so";
  if (std::filesystem::exists(beside, error)) return beside.string();
  return (program.parent_path().parent_path() / "libexec/quillop/quillop-look.so").string();
}

/// Stays loaded: some of FFmpeg's libraries do not bear being taken away again.
ModuleLook* load() {
  void* const module = dlopen(moduleFile().c_str(), RTLD_LAZY | RTLD_LOCAL);
  void* const found = module ? dlsym(module, moduleLookName) : nullptr;
  if (!found) std::fprintf(stderr, "Files cannot be looked into: %s\n", dlerror());
  return reinterpret_cast<ModuleLook*>(found);
}

}  // namespace

host::MediaFacts loadedLook(const std::string& path, double deadlineSeconds) {
  static ModuleLook* const look = load();
  host::MediaFacts facts;
  if (look) look(path, deadlineSeconds, facts);
  return facts;
}

}  // namespace probe
