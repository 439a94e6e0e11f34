#include "hosts/probe/OwnFile.h"

#include <filesystem>
#include <system_error>

namespace probe {

std::string ownFile(const std::string& name) {
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  const auto beside = folder / name;
  if (std::filesystem::exists(beside, error)) return beside.string();
  return (folder / QUILLOP_LIBEXEC_FROM_PROGRAM "/quillop" / name).lexically_normal().string();
}

}  // namespace probe
