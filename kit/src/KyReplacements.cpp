#include "KyReplacements.h"

#include <algorithm>

#include "KyPseudonyms.h"

namespace KyNInventoryKit
{
namespace
{
constexpr std::size_t s_shortestNumber = 5;
constexpr std::size_t s_shortestAnywhere = 6;    // shorter ones count where they stand alone

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isWord(char c) { return isDigit(c) || (c >= 'a' && c <= 'z'); }
bool isNumber(std::string_view text) { return std::all_of(text.begin(), text.end(), isDigit); }

// The byte of a text at a position; bytes before and behind all others where it has ended, for `order`.
int byteAt(const std::string& text, std::size_t at)
{
  return at < text.size() ? static_cast<unsigned char>(text[at]) : -1;
}
}    // namespace

std::uint16_t KyReplacements::prefixOf(std::string_view text)
{
  const auto byte = [&](std::size_t n) { return static_cast<unsigned int>(static_cast<unsigned char>(text[n])); };
  return static_cast<std::uint16_t>((byte(0) * 31 + byte(1)) * 31 + byte(2));
}

void KyReplacements::add(std::string_view original, const std::string& replacement, Where where)
{
  if (original.size() < (isNumber(original) ? s_shortestNumber : s_shortest)) return;
  m_entries.push_back({lowerCase(original), replacement, where});
}

void KyReplacements::finish()
{
  std::stable_sort(m_entries.begin(), m_entries.end(),
                   [](const Entry& a, const Entry& b) { return a.original < b.original; });
  for (std::size_t n = m_entries.size(); n-- > 1;)
    if (m_entries[n].where == Where::ANYWHERE && m_entries[n].original == m_entries[n - 1].original)
      m_entries[n - 1].where = Where::ANYWHERE;
  m_entries.erase(std::unique(m_entries.begin(), m_entries.end(),
                              [](const Entry& a, const Entry& b) { return a.original == b.original; }),
                  m_entries.end());
  for (const Entry& entry : m_entries)
    m_prefixes.set(prefixOf(entry.original));
}

const std::string* KyReplacements::of(std::string_view text) const
{
  const std::string lower = lowerCase(text);
  const auto entry = std::lower_bound(m_entries.begin(), m_entries.end(), lower,
                                      [](const Entry& a, const std::string& b) { return a.original < b; });
  return entry != m_entries.end() && entry->original == lower ? &entry->replacement : nullptr;
}

bool KyReplacements::counts(std::string_view lower, std::size_t at, const Entry& entry)
{
  const std::string& original = entry.original;
  const char before = at > 0 ? lower[at - 1] : ' ';
  const char behind = at + original.size() < lower.size() ? lower[at + original.size()] : ' ';
  if (entry.where == Where::ALONE || original.size() < s_shortestAnywhere) return !isWord(before) && !isWord(behind);
  return !isNumber(original) || (!isDigit(before) && !isDigit(behind));
}

// Narrows the originals to those that agree with the text in one more byte, until none is left.
const std::string* KyReplacements::longestAt(std::string_view lower, std::size_t at, std::size_t& length) const
{
  if (lower.size() - at < s_shortest || !m_prefixes.test(prefixOf(lower.substr(at)))) return nullptr;
  const std::string* longest = nullptr;
  auto first = m_entries.begin();
  auto last = m_entries.end();
  for (std::size_t depth = 0; first != last && at + depth < lower.size(); ++depth)
  {
    const int wanted = static_cast<unsigned char>(lower[at + depth]);
    first = std::lower_bound(first, last, wanted,
                             [&](const Entry& entry, int byte) { return byteAt(entry.original, depth) < byte; });
    last = std::upper_bound(first, last, wanted,
                            [&](int byte, const Entry& entry) { return byte < byteAt(entry.original, depth); });
    if (first == last || first->original.size() != depth + 1 || !counts(lower, at, *first)) continue;
    longest = &first->replacement;
    length = depth + 1;
  }
  return longest;
}
}    // namespace KyNInventoryKit
