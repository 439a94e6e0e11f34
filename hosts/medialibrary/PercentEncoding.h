#pragma once

#include <string>
#include <string_view>

namespace medialibrary {

/// `bytes` with everything but ASCII letters, digits and the characters in `marks` percent-encoded (RFC 3986, 2.1).
std::string percentEncoded(std::string_view bytes, std::string_view marks);

/// The bytes that `text` stands for. A percent sign without two digits after it stands for itself.
std::string percentDecoded(std::string_view text);

}  // namespace medialibrary
