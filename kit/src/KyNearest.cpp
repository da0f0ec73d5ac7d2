#include "KyNearest.h"

#include <algorithm>
#include <cctype>

namespace KyNInventoryKit
{
std::string upperCase(std::string text)
{
  for (char& c : text)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::size_t editDistance(const std::string& a, const std::string& b)
{
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> above(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t n = 0; n <= b.size(); ++n)
    row[n] = n;
  for (std::size_t m = 1; m <= a.size(); ++m)
  {
    before.swap(above);
    above.swap(row);
    row[0] = m;
    for (std::size_t n = 1; n <= b.size(); ++n)
    {
      row[n] = std::min({above[n] + 1, row[n - 1] + 1, above[n - 1] + (a[m - 1] == b[n - 1] ? 0 : 1)});
      if (m > 1 && n > 1 && a[m - 1] == b[n - 2] && a[m - 2] == b[n - 1]) row[n] = std::min(row[n], before[n - 2] + 1);
    }
  }
  return row[b.size()];
}

std::size_t farthestByLetters(const std::string& wanted) { return std::max<std::size_t>(1, wanted.size() / 4); }

std::size_t nameDistance(const std::string& wanted, const std::string& candidate)
{
  constexpr std::size_t shortestBeginning = 3;
  const std::size_t farthest = farthestByLetters(wanted);
  const std::size_t shorter = std::min(wanted.size(), candidate.size());
  const std::size_t difference = std::max(wanted.size(), candidate.size()) - shorter;
  const std::size_t distance = difference > farthest ? NOT_NEAR : editDistance(wanted, candidate);
  if (distance <= farthest && distance < wanted.size()) return distance;
  const bool isBeginning = shorter >= shortestBeginning && wanted.compare(0, shorter, candidate, 0, shorter) == 0;
  return isBeginning ? farthest + difference : NOT_NEAR;
}

std::string didYouMean(const std::vector<std::string>& names)
{
  std::string text;
  for (std::size_t n = 0; n < names.size(); ++n)
  {
    text += n == 0 ? " Did you mean " : n + 1 == names.size() ? " or " : ", ";
    text += names[n];
  }
  return names.empty() ? text : text + "?";
}
}    // namespace KyNInventoryKit
