#include "inventorykit/KyLookUp.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

#include "KyEditMessages.h"
#include "KyNearest.h"
#include "inventorykit/KyAddressText.h"

namespace KyNInventoryKit
{
namespace
{
// How far an address leads: the last item that exists, its address, and the first element that it does not have.
struct WayEnd
{
  KyCInventoryItem* item;
  KyCInventoryAddress address;
  KyCInventoryAddress missing;
  bool isLast;    // the missing element is the address's last one, so that it may have been meant for a parameter
};

WayEnd endOfWay(KyCInventoryItem& top, const KyCInventoryAddress& address)
{
  WayEnd end = {&top, {}, {}, false};
  unsigned int length = 0;
  for (; length < address.getLength(); ++length)
  {
    const KyCInventoryAddress::TElement& element = address.getElements()[length];
    end.missing = KyCInventoryAddress(element.id, element.index);
    KyCInventoryItem* const next = end.item->getItem(end.missing);
    if (next == nullptr) break;
    end.item = next;
  }
  end.address = address;
  end.address.removeSuffixElements(address.getLength() - length);
  end.isLast = length + 1 == address.getLength();
  return end;
}

// Ranks what an item has, and what is near, by its distance from an element that it does not have.
class NearestFinder
{
public:
  explicit NearestFinder(const KyCInventoryAddress& wanted)
      : m_wanted(wanted), m_name(upperCase(wanted.getCategoryNameCStr()))
  {
  }

  void add(const KyCInventoryAddress& candidate)
  {
    const unsigned int index = candidate.getIndex();
    const unsigned int wanted = m_wanted.getIndex();
    const std::size_t distance = distanceTo(candidate);
    if (distance == NOT_NEAR) return;
    m_candidates.emplace_back(distance, index > wanted ? index - wanted : wanted - index, m_candidates.size(),
                              candidate);
  }

  std::vector<std::string> nearest(const KyCInventoryAddress& place, unsigned int count)
  {
    // Siblings that share an address are told once; there may be some among the first ones.
    const std::size_t enough = std::min<std::size_t>(m_candidates.size(), 8 * std::size_t{count});
    // cppcheck-suppress containerOutOfBounds ; no more than there are
    const auto end = m_candidates.begin() + static_cast<std::ptrdiff_t>(enough);
    std::partial_sort(m_candidates.begin(), end, m_candidates.end(),
                      [](const Candidate& a, const Candidate& b)
                      {
                        return std::tie(std::get<0>(a), std::get<1>(a), std::get<2>(a)) <
                               std::tie(std::get<0>(b), std::get<1>(b), std::get<2>(b));
                      });
    std::vector<std::string> texts;
    if (m_candidates.empty()) return texts;
    // What is near by its beginning alone is told where nothing is nearer.
    const std::size_t byLetters = 1 + farthestByLetters(m_name);
    const std::size_t last = std::get<0>(m_candidates.front()) <= byLetters ? byLetters : NOT_NEAR;
    for (auto candidate = m_candidates.begin(); candidate != end && texts.size() < count; ++candidate)
    {
      if (std::get<0>(*candidate) > last) break;
      std::string text = addressText(place / std::get<3>(*candidate));
      if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.push_back(std::move(text));
    }
    return texts;
  }

private:
  using Candidate = std::tuple<std::size_t, unsigned int, std::size_t, KyCInventoryAddress>;

  // Siblings share few IDs: each is compared once.
  std::size_t distanceTo(const KyCInventoryAddress& candidate)
  {
    const unsigned int id = candidate.getCategory();
    if (id == m_wanted.getCategory()) return 0;
    const auto [known, isNew] = m_distances.emplace(id, 0);
    if (!isNew) return known->second;
    const std::size_t distance = nameDistance(m_name, upperCase(candidate.getCategoryNameCStr()));
    known->second = distance == NOT_NEAR ? NOT_NEAR : 1 + distance;
    return known->second;
  }

  const KyCInventoryAddress m_wanted;
  const std::string m_name;
  std::unordered_map<unsigned int, std::size_t> m_distances;
  std::vector<Candidate> m_candidates;
};

std::vector<std::string> nearestAt(const WayEnd& end, unsigned int count)
{
  NearestFinder finder(end.missing);
  if (end.isLast)
  {
    for (const KyCInventoryParameter* p = end.item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
      finder.add(p->getID());
  }
  for (const KyCInventoryItem* sub = end.item->getFirstSubItem(); sub != nullptr; sub = sub->getNext())
    finder.add(sub->getID());
  return finder.nearest(end.address, count);
}
}    // namespace

Node lookUp(KyCInventoryItem& top, const KyCInventoryAddress& address)
{
  KyCInventoryParameter* const parameter = address.getIndex() == 1 ? top.getParameter(address) : nullptr;
  if (parameter != nullptr) return {parameter->getParent(), parameter};
  return {top.getItem(address), nullptr};
}

Node lookUp(KyCErrorListPool& pool, KyCInventoryItem& top, const KyCInventoryAddress& address)
{
  const Node node = lookUp(top, address);
  if (node.item != nullptr) return node;
  const WayEnd end = endOfWay(top, address);
  const std::string place = end.address.isEmpty() ? "the root item" : addressText(end.address);
  pool.setError(KY_EDIT_MSG_DOES_NOT_EXIST, __LINE__, "lookUp", "%s%s%s%s", addressText(address).c_str(), place.c_str(),
                addressText(end.missing).c_str(), didYouMean(nearestAt(end, 3)).c_str());
  return node;
}

std::vector<std::string> nearestExisting(KyCInventoryItem& top, const KyCInventoryAddress& address, unsigned int count)
{
  return nearestAt(endOfWay(top, address), count);
}

const std::string& AddressTexts::of(const Node& node)
{
  if (node.item != m_item)
  {
    m_item = node.item;
    m_text = m_item->getAddress().toString().c_str();
    m_itemLength = m_text.size();
  }
  m_text.resize(m_itemLength);
  if (node.parameter != nullptr)
  {
    if (m_itemLength != 0) m_text += '/';
    m_text += node.parameter->getID().toString().c_str();
  }
  else if (m_itemLength == 0)
  {
    m_text = ".";
  }
  return m_text;
}
}    // namespace KyNInventoryKit
