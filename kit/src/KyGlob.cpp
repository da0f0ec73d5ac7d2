#include "KyGlob.h"

namespace KyNInventoryKit
{
bool hasWildcard(std::string_view pattern) { return pattern.find_first_of("*?") != std::string_view::npos; }

bool globMatches(std::string_view pattern, std::string_view text)
{
  std::size_t p = 0;
  std::size_t star =
      std::string_view::npos;    // the last "*" so far; what it stands for is extended when the rest fails
  std::size_t starEnd = 0;       // where the text goes on behind it
  for (std::size_t t = 0; t < text.size();)
  {
    if (p < pattern.size() && pattern[p] == '*')
    {
      star = p++;
      starEnd = t;
    }
    else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t]))
    {
      ++p;
      ++t;
    }
    else if (star != std::string_view::npos)
    {
      p = star + 1;
      t = ++starEnd;
    }
    else
    {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*')
    ++p;
  return p == pattern.size();
}
}    // namespace KyNInventoryKit
