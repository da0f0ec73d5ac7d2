// KyReplacements.h: many texts to be found in others, and what stands for each.
#pragma once

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace KyNInventoryKit
{
class KyReplacements
{
public:
  // Texts of fewer bytes are not sought.
  static constexpr std::size_t s_shortest = 3;

  // Adds a text; of two that are the same but for upper and lower case the first counts. One that is too short, or a number
  // of less than five digits, is passed over.
  //
  //   where   ALONE: only where no letter or digit stands right beside it
  enum class Where
  {
    ANYWHERE,
    ALONE
  };
  void add(std::string_view original, const std::string& replacement, Where where = Where::ANYWHERE);

  // To be called once, between adding and looking.
  void finish();

  // The replacement of exactly this text; null when there is none.
  const std::string* of(std::string_view text) const;

  // The longest original that begins at this place and counts there (see KyAnonymize.h), and its length; null for none.
  //
  //   lower   the text in lower case
  // Cost:     constant where no original begins in the same three bytes, otherwise the bytes that agree, each with a search
  //           among the originals.
  const std::string* longestAt(std::string_view lower, std::size_t at, std::size_t& length) const;

private:
  struct Entry
  {
    std::string original;    // in lower case
    std::string replacement;
    Where where;
  };

  static std::uint16_t prefixOf(std::string_view text);
  static bool counts(std::string_view lower, std::size_t at, const Entry& entry);

  std::vector<Entry> m_entries;    // once finished: in order, each original once
  std::bitset<0x10000> m_prefixes;
};
}    // namespace KyNInventoryKit
