#include "KyFormatParts.h"

#include <algorithm>
#include <charconv>

namespace KyNInventoryKit
{
TextPlace placeOf(const std::string& text, std::size_t offset)
{
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text.size()));
  const auto line = std::count(text.begin(), end, '\n');
  std::size_t start = static_cast<std::size_t>(end - text.begin());
  while (start > 0 && text[start - 1] != '\n')
    --start;
  return {static_cast<unsigned int>(line) + 1,
          static_cast<unsigned int>(static_cast<std::size_t>(end - text.begin()) - start) + 1};
}

std::string addressForPeople(const std::string& text)
{
  constexpr std::size_t s_longest = 200;
  constexpr std::size_t s_end = 80;
  if (text.empty()) return "root item";
  return text.size() <= s_longest ? text : text.substr(0, s_end) + "..." + text.substr(text.size() - s_end);
}

bool readNumber(const std::string& text, unsigned int& number)
{
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number);
  return error == std::errc() && end == last;
}
}    // namespace KyNInventoryKit
