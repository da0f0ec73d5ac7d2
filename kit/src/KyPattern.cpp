#include "KyPattern.h"

#include <algorithm>
#include <charconv>

#include "KyEditMessages.h"
#include "KyGlob.h"
#include "KyKitMessages.h"
#include "KyNearest.h"
#include "KyShownText.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"

namespace KyNInventoryKit
{
// Reads the text of a pattern from its start; the first thing that is wrong is reported and ends it.
class PatternReader
{
public:
  PatternReader(KyCErrorListPool& pool, const std::string& text)
      : m_pool(pool), m_text(text), m_at(text[0] == '/' ? 1 : 0)    // from the root, as patterns are anyway
  {
  }

  bool read(std::vector<Pattern::Element>& elements)
  {
    for (;;)
    {
      Pattern::Element element;
      if (!readElement(element)) return false;
      // Several "**" in a row mean no more than one.
      if (!element.isAnyNumber || elements.empty() || !elements.back().isAnyNumber)
      {
        elements.push_back(std::move(element));
      }
      if (m_at == m_text.size()) return true;
      if (m_text[m_at] != '/') return expected("\"/\" or \"[\"");
      ++m_at;
    }
  }

private:
  static bool isFormPart(char c)
  {
    return c == '_' || c == '*' || c == '?' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           (c >= '0' && c <= '9');
  }

  bool readElement(Pattern::Element& element)
  {
    const std::size_t start = m_at;
    while (m_at < m_text.size() && isFormPart(m_text[m_at]))
      ++m_at;
    if (m_at == start) return expected("the name of an ID, with * or ? perhaps,");
    element.form = m_text.substr(start, m_at - start);
    element.isAnyNumber = element.form == "**";
    if (element.isAnyNumber) return true;
    if (!readForm(element)) return false;
    return m_at == m_text.size() || m_text[m_at] != '[' || readIndices(element);
  }

  bool readForm(Pattern::Element& element)
  {
    if (!hasWildcard(element.form)) return readID(element);
    const unsigned int count = KyNInventoryIDs::Map.getCount();
    element.names.resize(count);
    bool isAny = isFormOfNumber(element.form);
    for (unsigned int id = 0; id < count; ++id)
    {
      element.names[id] = globMatches(element.form, KyNInventoryIDs::Map.get(id));
      isAny = isAny || element.names[id];
    }
    if (!isAny)
      m_pool.setError(KY_EDIT_MSG_NO_ID_MATCHES, __LINE__, "readPattern", "%s", shortenedText(element.form).c_str());
    return isAny;
  }

  static bool isFormOfNumber(const std::string& form)
  {
    return form.find_first_not_of("0123456789*?") == std::string::npos;
  }

  bool readID(Pattern::Element& element)
  {
    if (element.form[0] < '0' || element.form[0] > '9')
    {
      element.isOneID = findID(element.form, element.id);
      if (element.isOneID) return true;
      m_pool.setError(KY_KIT_MSG_NO_SUCH_ID, __LINE__, "readPattern", "%s%s", shortenedText(element.form).c_str(),
                      didYouMean(nearestNames(element.form, 3)).c_str());
      return false;
    }
    KyCErrorListPool ignored;
    KyCInventoryAddress address;
    if (readAddress(ignored, element.form, address))    // the numbers that addresses know: 31, 0x1F, 037
    {
      element.isOneID = true;
      element.id = address.getCategory();
      return true;
    }
    m_at -= element.form.size();
    return expected("an ID from 0 to 4294967295");
  }

  // "[*]", "[2]", "[1,3,5-7]"
  bool readIndices(Pattern::Element& element)
  {
    ++m_at;
    if (m_text.compare(m_at, 2, "*]") == 0)
    {
      m_at += 2;
      return true;
    }
    for (;;)
    {
      std::pair<unsigned int, unsigned int> range;
      if (!readNumber(range.first)) return false;
      range.second = range.first;
      if (isNext('-') && (!readNumber(range.second) || range.second < range.first))
      {
        return expected("an index that is not below the first one of its range");
      }
      element.indices.push_back(range);
      if (isNext(']')) break;
      if (!isNext(',')) return expected("\"]\", \",\" or \"-\"");
    }
    join(element.indices);
    return true;
  }

  bool isNext(char c)
  {
    if (m_at == m_text.size() || m_text[m_at] != c) return false;
    ++m_at;
    return true;
  }

  bool readNumber(unsigned int& number)
  {
    const char* const last = m_text.data() + m_text.size();
    const auto [end, error] = std::from_chars(m_text.data() + m_at, last, number);
    if (error != std::errc()) return expected("an index from 0 to 4294967295");
    m_at = static_cast<std::size_t>(end - m_text.data());
    return true;
  }

  // Makes overlapping ranges one, and orders them.
  static void join(std::vector<std::pair<unsigned int, unsigned int>>& ranges)
  {
    std::sort(ranges.begin(), ranges.end());
    std::size_t last = 0;
    for (std::size_t n = 1; n < ranges.size(); ++n)
    {
      if (ranges[n].first <= ranges[last].second)
        ranges[last].second = std::max(ranges[last].second, ranges[n].second);
      else
        ranges[++last] = ranges[n];
    }
    ranges.resize(last + 1);
  }

  bool expected(const char* what)
  {
    if (m_isReported) return false;
    m_isReported = true;
    const std::string reason = std::string(what) + " is expected at character " + std::to_string(m_at + 1);
    m_pool.setError(KY_EDIT_MSG_NOT_A_PATTERN, __LINE__, "readPattern", "%s%s", shortenedText(m_text).c_str(),
                    reason.c_str());
    return false;
  }

  KyCErrorListPool& m_pool;
  const std::string& m_text;
  std::size_t m_at;
  bool m_isReported = false;
};

bool Pattern::read(KyCErrorListPool& pool, const std::string& text)
{
  if (text.empty() || text == "." || text == "/") return true;
  return PatternReader(pool, text).read(m_elements);
}

PatternPlaces Pattern::start() const
{
  PatternPlaces places;
  add(places, 0);
  return places;
}

// Places are added in rising order, but for those behind a "**", which may be there already.
void Pattern::add(PatternPlaces& places, unsigned int place) const
{
  if (!places.empty() && places.back() >= place) return;
  places.push_back(place);
  if (place < m_elements.size() && m_elements[place].isAnyNumber) places.push_back(place + 1);
}

bool Pattern::matches(const Element& element, unsigned int id, unsigned int index)
{
  const bool isNamed = id < KyNInventoryIDs::Map.getCount();
  const bool isID = element.isOneID ? element.id == id
                    : isNamed       ? bool{element.names[id]}
                                    : globMatches(element.form, std::to_string(id));
  if (!isID || element.indices.empty()) return isID;
  const auto range = std::lower_bound(element.indices.begin(), element.indices.end(), index,
                                      [](const auto& known, unsigned int wanted) { return known.second < wanted; });
  return range != element.indices.end() && range->first <= index;
}

void Pattern::follow(const unsigned int* places, unsigned int count, unsigned int id, unsigned int index,
                     PatternPlaces& next) const
{
  for (unsigned int n = 0; n < count; ++n)
  {
    const unsigned int place = places[n];
    if (place == m_elements.size()) continue;
    const Element& element = m_elements[place];
    if (element.isAnyNumber)
      add(next, place);
    else if (matches(element, id, index))
      add(next, place + 1);
  }
}
}    // namespace KyNInventoryKit
