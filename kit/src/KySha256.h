// KySha256.h: the SHA-256 digest of FIPS 180-4.
//
// A file of our own because the libraries that have it (libcrypto, libmd, nettle) are packaged for one word size alone,
// the C library has none that takes plain data, and asking the kernel fails where its interface is closed.
#pragma once

#include <string>
#include <string_view>

namespace KyNInventoryKit
{
// 64 hexadecimal digits in lower case, as sha256sum prints them.
std::string kySha256(std::string_view bytes);
}    // namespace KyNInventoryKit
