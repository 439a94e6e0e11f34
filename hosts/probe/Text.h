#pragma once

#include <string>
#include <string_view>

namespace probe {

/// `bytes` as one line of text to be shown: valid UTF-8, each byte that is none replaced by U+FFFD; control
/// characters become blanks; no blanks at either end.
std::string lineOfText(std::string_view bytes);

}  // namespace probe
