#pragma once

#include <string>
#include <string_view>

namespace medialibrary {

/// `bytes` with everything but ASCII letters, digits and the characters in `marks` percent-encoded (RFC 3986, 2.1).
std::string percentEncoded(std::string_view bytes, std::string_view marks);

}  // namespace medialibrary
