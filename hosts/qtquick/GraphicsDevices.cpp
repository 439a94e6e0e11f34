#include "hosts/qtquick/GraphicsDevices.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace qtquick {

namespace {

/// What the names begin with: of the kernel's own drivers, of those for NVIDIA's processors (desktop, Tegra), of
/// those for Mali, Adreno and PowerVR, of the paravirtual one of WSL.
constexpr std::array<std::string_view, 8> beginnings{"dri",  "nvidia", "nvhost", "nvmap",
                                                     "mali", "kgsl",   "pvr",    "dxg"};

}  // namespace

bool hasGraphicsDevice(const std::string& folder) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (std::any_of(beginnings.begin(), beginnings.end(), [&](auto each) { return name.starts_with(each); }))
      return true;
  }
  return static_cast<bool>(error);  // one that cannot be looked into may have anything
}

}  // namespace qtquick
