// KyCVersion.cpp: versions as text, and their order.
#include "composite/KyCVersion.h"

#include <charconv>
#include <cstring>
#include <tuple>

#include "KyVersionText.h"

unsigned int formatVersion(const KyCVersion& version, char (&buffer)[KY_VERSION_TEXT_SIZE]) noexcept
{
  const unsigned int numbers[] = {version.getMajor(), version.getMinor(), version.getMaintenance(), version.getBuild()};
  char* end = buffer;
  for (const unsigned int number : numbers)
  {
    if (end != buffer) *end++ = '.';
    end = std::to_chars(end, buffer + sizeof(buffer), number).ptr;
  }
  return static_cast<unsigned int>(end - buffer);
}

KyCString KyCVersion::toString() const
{
  char buffer[KY_VERSION_TEXT_SIZE];
  const unsigned int length = formatVersion(*this, buffer);
  return KyCString(buffer, length);
}

bool KyCVersion::fromString(const char* text) noexcept
{
  if (text == nullptr) return false;
  const char* const end = text + std::strlen(text);
  unsigned int numbers[4] = {};
  for (unsigned int n = 0; n < 4; ++n)
  {
    // For an unsigned number it takes digits alone: no sign, no space.
    const std::from_chars_result read = std::from_chars(text, end, numbers[n]);
    if (read.ec != std::errc()) return false;
    if (read.ptr == end)
    {
      *this = KyCVersion(numbers[0], numbers[1], numbers[2], numbers[3]);
      return true;
    }
    if (*read.ptr != '.') return false;
    text = read.ptr + 1;
  }
  return false;    // a fifth number
}

namespace
{

std::tuple<unsigned int, unsigned int, unsigned int, unsigned int> numbersOf(const KyCVersion& version) noexcept
{
  return {version.getMajor(), version.getMinor(), version.getMaintenance(), version.getBuild()};
}

}    // namespace

bool operator==(const KyCVersion& a, const KyCVersion& b) noexcept { return numbersOf(a) == numbersOf(b); }
bool operator!=(const KyCVersion& a, const KyCVersion& b) noexcept { return numbersOf(a) != numbersOf(b); }
bool operator<(const KyCVersion& a, const KyCVersion& b) noexcept { return numbersOf(a) < numbersOf(b); }
bool operator<=(const KyCVersion& a, const KyCVersion& b) noexcept { return numbersOf(a) <= numbersOf(b); }
bool operator>(const KyCVersion& a, const KyCVersion& b) noexcept { return numbersOf(a) > numbersOf(b); }
bool operator>=(const KyCVersion& a, const KyCVersion& b) noexcept { return numbersOf(a) >= numbersOf(b); }
