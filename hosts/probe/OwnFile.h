#pragma once

#include <string>

namespace probe {

/// The path of a file of the program's own, which it starts or loads: beside the program in the build, among the
/// system's other auxiliary files once installed, found from where the program lies itself.
std::string ownFile(const std::string& name);

}  // namespace probe
