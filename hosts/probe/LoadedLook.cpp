#include "hosts/probe/LoadedLook.h"

#include "hosts/probe/OwnFile.h"
#include "hosts/probe/module/Module.h"

#include <dlfcn.h>

#include <cstdio>

namespace probe {

namespace {

/// Stays loaded: some of FFmpeg's libraries do not bear being taken away again.
ModuleLook* load() {
  void* const module = dlopen(ownFile("quillop-look.so").c_str(), RTLD_LAZY | RTLD_LOCAL);
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
