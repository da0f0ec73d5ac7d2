// Control characters as text.
#include "Printable.h"

namespace
{
// The length of the control character that stands here; 0: none.
std::size_t controlLength(const std::string& text, std::size_t at)
{
  const auto byteAt = [&](std::size_t n) { return n < text.size() ? static_cast<unsigned char>(text[n]) : 0u; };
  const unsigned int first = byteAt(at);
  if (first < 0x20 || first == 0x7F) return 1;
  return first == 0xC2 && byteAt(at + 1) >= 0x80 && byteAt(at + 1) <= 0x9F ? 2 : 0;
}
}    // namespace

std::string printable(const std::string& text)
{
  const char* const digits = "0123456789ABCDEF";
  std::string result;
  std::size_t n = 0;
  while (n < text.size())
  {
    const std::size_t controls = controlLength(text, n);
    if (controls == 0) result += text[n++];
    for (const std::size_t end = n + controls; n < end; ++n)
    {
      const unsigned int byte = static_cast<unsigned char>(text[n]);
      result += {'\\', 'x', digits[byte / 16], digits[byte % 16]};
    }
  }
  return result;
}
