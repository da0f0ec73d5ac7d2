#include "inventorykit/KyAddressText.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "KyKitMessages.h"
#include "KyNearest.h"
#include "KyShownText.h"
#include "inventory/KyNInventoryIDs.h"

namespace KyNInventoryKit
{
namespace
{
using NamesToIDs = std::unordered_map<std::string_view, unsigned int>;

NamesToIDs makeNamesToIDs()
{
  NamesToIDs ids;
  const unsigned int count = KyNInventoryIDs::Map.getCount();
  ids.reserve(count);
  for (unsigned int id = 0; id < count; ++id)
    ids.emplace(KyNInventoryIDs::Map.get(id), id);    // of two of one name the first counts, as in the library
  return ids;
}

// Reads the text of one address from its start; the first thing that is wrong is reported and ends it.
class Reader
{
public:
  Reader(KyCErrorListPool& pool, const char* function, const std::string& text, std::size_t start = 0)
      : m_pool(pool), m_function(function), m_text(text), m_at(start)
  {
  }

  bool read(KyCInventoryAddress& address)
  {
    std::vector<KyCInventoryAddress> parts;    // in front of the address, each longer than the one behind it
    for (;;)
    {
      KyCInventoryAddress::TElement element = {0, 1};
      if (!readID(element.id) || !readIndex(element.index)) return false;
      address.append(KyCInventoryAddress(element.id, element.index));
      if (m_at == m_text.size()) break;
      if (m_text[m_at] != '/') return expected("\"/\" or \"[\"");
      ++m_at;
      if (address.getLength() == PART_LENGTH) putBehind(parts, address);
    }
    while (!parts.empty())
      takeInFront(parts, address);
    return true;
  }

private:
  // An address takes a new array for each element that is appended. So a long one is put together from parts, of which only
  // those of about one length are joined: each element is copied as often as the number of elements can be halved.
  static constexpr unsigned int PART_LENGTH = 64;

  static void putBehind(std::vector<KyCInventoryAddress>& parts, KyCInventoryAddress& address)
  {
    while (!parts.empty() && parts.back().getLength() <= address.getLength())
      takeInFront(parts, address);
    parts.emplace_back();
    std::swap(parts.back(), address);
  }

  static void takeInFront(std::vector<KyCInventoryAddress>& parts, KyCInventoryAddress& address)
  {
    parts.back().append(address);
    address = std::move(parts.back());
    parts.pop_back();
  }

  static bool isNamePart(char c)
  {
    return c == '_' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
  }

  bool readID(unsigned int& id)
  {
    const std::size_t start = m_at;
    while (m_at < m_text.size() && isNamePart(m_text[m_at]))
      ++m_at;
    if (m_at == start) return expected("the name of an ID");
    const std::string token = m_text.substr(start, m_at - start);
    if (token[0] < '0' || token[0] > '9') return readName(token, id);
    if (toNumber(token, id)) return true;
    m_at = start;
    return expected("an ID from 0 to 4294967295");
  }

  bool readName(const std::string& name, unsigned int& id)
  {
    if (findID(name, id)) return true;
    m_pool.setError(KY_KIT_MSG_NO_SUCH_ID, __LINE__, m_function, "%s%s", shortenedText(name).c_str(),
                    didYouMean(nearestNames(name, 3)).c_str());
    return false;
  }

  bool readIndex(unsigned int& index)
  {
    if (m_at == m_text.size() || m_text[m_at] != '[') return true;
    const std::size_t start = ++m_at;
    const std::size_t end = m_text.find(']', start);
    if (end == std::string::npos || !toNumber(m_text.substr(start, end - start), index))
    {
      return expected("an index from 0 to 4294967295 and \"]\"");
    }
    m_at = end + 1;
    return true;
  }

  // As the C language writes numbers: 31, 0x1F, 037.
  static bool toNumber(const std::string& text, unsigned int& number)
  {
    const bool isHex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const bool isOctal = !isHex && text.size() > 1 && text[0] == '0';
    const char* const first = text.data() + (isHex ? 2 : 0);
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(first, last, number, isHex ? 16 : isOctal ? 8 : 10);
    return error == std::errc() && end == last && first != last;
  }

  bool expected(const char* what)
  {
    const std::string reason = std::string(what) + " is expected at character " + std::to_string(m_at + 1);
    m_pool.setError(KY_KIT_MSG_NO_ADDRESS, __LINE__, m_function, "%s%s", shortenedText(m_text).c_str(), reason.c_str());
    return false;
  }

  KyCErrorListPool& m_pool;
  const char* m_function;
  const std::string& m_text;
  std::size_t m_at;
};
}    // namespace

bool findID(const std::string& name, unsigned int& id)
{
  static const NamesToIDs ids = makeNamesToIDs();
  const auto found = ids.find(name);
  if (found == ids.end()) return false;
  id = found->second;
  return true;
}

unsigned int idOfName(const std::string& name)
{
  unsigned int id = 0;
  return findID(name, id) ? id : 0;
}

std::vector<std::string> nearestOf(const std::string& name, const std::vector<std::string>& candidates,
                                   unsigned int count)
{
  const std::string wanted = upperCase(name);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& candidate : candidates)
  {
    const std::size_t distance = nameDistance(wanted, upperCase(candidate));
    if (distance != NOT_NEAR) near.emplace_back(distance, candidate);
  }
  std::sort(near.begin(), near.end());
  near.erase(std::unique(near.begin(), near.end()), near.end());    // two IDs may have one name
  std::vector<std::string> names;
  if (near.empty()) return names;
  // Beside one that differs in a letter, nobody looks for one that differs in three.
  const std::size_t best = near.front().first;
  const std::size_t farthest = farthestByLetters(wanted);
  const std::size_t last = best == 0 ? 0 : best > farthest ? near.back().first : std::min(best + 1, farthest);
  for (std::size_t n = 0; n < near.size() && names.size() < count && near[n].first <= last; ++n)
    names.push_back(near[n].second);
  return names;
}

std::vector<std::string> nearestNames(const std::string& name, unsigned int count)
{
  std::vector<std::string> candidates;
  for (unsigned int id = 0; id < KyNInventoryIDs::Map.getCount(); ++id)
    candidates.emplace_back(KyNInventoryIDs::Map.get(id));
  return nearestOf(name, candidates, count);
}

bool readAddress(KyCErrorListPool& pool, const std::string& text, KyCInventoryAddress& address)
{
  address.clear();
  if (text.empty() || text == "." || text == "/") return true;
  if (Reader(pool, "readAddress", text, text[0] == '/' ? 1 : 0).read(address)) return true;
  address.clear();
  return false;
}

bool readElement(KyCErrorListPool& pool, const std::string& text, KyCInventoryAddress& element)
{
  element.clear();
  const bool isRead = text.empty() || text == "." || Reader(pool, "readElement", text).read(element);
  if (isRead && element.isSingleElement()) return true;
  if (isRead) pool.setError(KY_KIT_MSG_NOT_ONE_ELEMENT, __LINE__, "readElement", "%s", text.c_str());
  element.clear();
  return false;
}

std::string addressText(const KyCInventoryAddress& address)
{
  return address.isEmpty() ? "." : address.toString().c_str();
}
}    // namespace KyNInventoryKit
