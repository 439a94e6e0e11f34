#pragma once

#include <string_view>

/// Writes one line to the process's standard output, at once. Main thread.
/// Never fails: a closed standard output loses the line and nothing else.
void print(std::string_view line);

/// Stops the app: writes `reason` to standard error and aborts. For absences that the code takes for granted.
[[noreturn]] void fatalError(std::string_view reason);
