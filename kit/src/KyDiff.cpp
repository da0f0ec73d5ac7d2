#include "inventorykit/KyDiff.h"

#include <cstring>

#include "KySiblings.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
namespace
{
constexpr std::size_t s_none = static_cast<std::size_t>(-1);

bool isSameText(const char* a, const char* b) { return a == b || std::strcmp(a, b) == 0; }

bool isSameParameter(const KyCInventoryParameter& a, const KyCInventoryParameter& b)
{
  return a.getRelevance() == b.getRelevance() && a.isModifiable() == b.isModifiable() &&
         isSameText(a.getUnit(), b.getUnit()) && isSameText(a.getDescription(), b.getDescription()) && sameValue(a, b);
}

bool isSameName(const KyCInventoryItem& a, const KyCInventoryItem& b)
{
  return idOf(a) == idOf(b) && indexOf(a) == indexOf(b);
}
bool isSameName(const KyCInventoryParameter& a, const KyCInventoryParameter& b) { return idOf(a) == idOf(b); }

// Whether two lists have the same names in the same order. Then place and name pair them alike.
template <typename Node>
bool areInStep(const Node* a, const Node* b)
{
  for (; a != nullptr && b != nullptr; a = a->getNext(), b = b->getNext())
    if (!isSameName(*a, *b)) return false;
  return a == b;
}

// A node of the old list, of the new one, or of both; with the siblings in front of it.
template <typename Node>
struct Pair
{
  const Node* before = nullptr;
  const Node* after = nullptr;
  const Node* previousBefore = nullptr;
  const Node* previousAfter = nullptr;
  bool isMoved = false;
};

// Pairs up two lists of siblings that are not in step.
template <typename Node>
class Pairing
{
public:
  Pairing(const KyCInventoryItem& before, const KyCInventoryItem& after)
      : m_before(namedNodes<Node>(before)), m_after(namedNodes<Node>(after)), m_partners(m_after.size(), s_none)
  {
  }

  std::vector<Pair<Node>> pairs()
  {
    findPartners();
    findStaying();
    std::vector<Pair<Node>> result;
    result.reserve(m_after.size());
    std::size_t next = nextStaying(0);
    addRemoved(0, oldPlace(next), result);
    for (std::size_t n = 0; n < m_after.size(); ++n)
    {
      result.push_back(pairAt(n));
      if (n != next) continue;
      next = nextStaying(n + 1);
      addRemoved(m_partners[n] + 1, oldPlace(next), result);
    }
    return result;
  }

private:
  static std::vector<std::size_t> sorted(const std::vector<NamedNode<Node>>& nodes)
  {
    std::vector<std::size_t> order(nodes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&nodes](std::size_t a, std::size_t b) { return nodes[a].name < nodes[b].name; });
    return order;
  }

  void findPartners()
  {
    m_hasPartner.assign(m_before.size(), false);
    const std::vector<std::size_t> before = sorted(m_before);
    const std::vector<std::size_t> after = sorted(m_after);
    std::size_t a = 0;
    for (const std::size_t b : after)
    {
      while (a < before.size() && m_before[before[a]].name < m_after[b].name)
        ++a;
      if (a == before.size()) return;
      if (m_before[before[a]].name != m_after[b].name) continue;
      m_partners[b] = before[a];
      m_hasPartner[before[a]] = true;
    }
  }

  // The longest part of the pairs that is in the same order on both sides stays; the others have moved.
  void findStaying()
  {
    m_isStaying.assign(m_after.size(), false);
    std::vector<std::size_t> ends;    // of length n + 1: the pair whose old place is the foremost
    std::vector<std::size_t> previous(m_after.size(), s_none);
    for (std::size_t n = 0; n < m_after.size(); ++n)
    {
      if (m_partners[n] == s_none) continue;
      const auto end = std::lower_bound(ends.begin(), ends.end(), m_partners[n],
                                        [this](std::size_t a, std::size_t place) { return m_partners[a] < place; });
      if (end != ends.begin()) previous[n] = *(end - 1);
      if (end == ends.end())
        ends.push_back(n);
      else
        *end = n;
    }
    for (std::size_t n = ends.empty() ? s_none : ends.back(); n != s_none; n = previous[n])
      m_isStaying[n] = true;
  }

  std::size_t nextStaying(std::size_t n) const
  {
    while (n < m_after.size() && !m_isStaying[n])
      ++n;
    return n;
  }
  std::size_t oldPlace(std::size_t n) const { return n < m_after.size() ? m_partners[n] : m_before.size(); }

  Pair<Node> pairAt(std::size_t n) const
  {
    Pair<Node> pair;
    pair.after = m_after[n].node;
    pair.previousAfter = n == 0 ? nullptr : m_after[n - 1].node;
    const std::size_t old = m_partners[n];
    if (old == s_none) return pair;
    pair.before = m_before[old].node;
    pair.previousBefore = old == 0 ? nullptr : m_before[old - 1].node;
    pair.isMoved = !m_isStaying[n];
    return pair;
  }

  void addRemoved(std::size_t first, std::size_t last, std::vector<Pair<Node>>& result) const
  {
    for (std::size_t n = first; n < last; ++n)
    {
      if (m_hasPartner[n]) continue;
      Pair<Node> pair;
      pair.before = m_before[n].node;
      pair.previousBefore = n == 0 ? nullptr : m_before[n - 1].node;
      result.push_back(pair);
    }
  }

  std::vector<NamedNode<Node>> m_before;
  std::vector<NamedNode<Node>> m_after;
  std::vector<std::size_t> m_partners;    // of the new ones
  std::vector<bool> m_hasPartner;         // of the old ones
  std::vector<bool> m_isStaying;          // of the new ones
};

// Sub-items that are being walked over: two lists in step, one list alone, or pairs.
struct Walk
{
  Pair<KyCInventoryItem> next;
  std::vector<Pair<KyCInventoryItem>> pairs;
  std::size_t at = 0;
  bool isInStep = true;
};

bool takeNext(Walk& walk, Pair<KyCInventoryItem>& pair)
{
  if (!walk.isInStep)
  {
    if (walk.at == walk.pairs.size()) return false;
    pair = walk.pairs[walk.at++];
    return true;
  }
  pair = walk.next;
  if (pair.before == nullptr && pair.after == nullptr) return false;
  walk.next.previousBefore = pair.before;
  walk.next.previousAfter = pair.after;
  walk.next.before = pair.before != nullptr ? pair.before->getNext() : nullptr;
  walk.next.after = pair.after != nullptr ? pair.after->getNext() : nullptr;
  return true;
}
}    // namespace

// Walks over both trees at once.
class TreeComparison
{
public:
  Difference run(const KyCInventoryItem& before, const KyCInventoryItem& after)
  {
    Pair<KyCInventoryItem> pair;
    pair.before = &before;
    pair.after = &after;
    compareItems(pair);
    open(pair);
    while (!m_open.empty())
    {
      if (!takeNext(m_open.back(), pair))
      {
        m_open.pop_back();
        continue;
      }
      compareItems(pair);
      open(pair);
    }
    return std::move(m_difference);
  }

private:
  void open(const Pair<KyCInventoryItem>& parents)
  {
    Walk walk;
    walk.next.before = parents.before != nullptr ? parents.before->getFirstSubItem() : nullptr;
    walk.next.after = parents.after != nullptr ? parents.after->getFirstSubItem() : nullptr;
    if (walk.next.before == nullptr && walk.next.after == nullptr) return;
    walk.isInStep =
        parents.before == nullptr || parents.after == nullptr || areInStep(walk.next.before, walk.next.after);
    if (!walk.isInStep) walk.pairs = Pairing<KyCInventoryItem>(*parents.before, *parents.after).pairs();
    m_open.push_back(std::move(walk));
  }

  // The items themselves and their parameters.
  void compareItems(const Pair<KyCInventoryItem>& pair)
  {
    Change change;
    change.before.item = pair.before;
    change.before.previousItem = pair.previousBefore;
    change.after.item = pair.after;
    change.after.previousItem = pair.previousAfter;
    const bool isSame = pair.before != nullptr && pair.after != nullptr && isSameName(*pair.before, *pair.after) &&
                        isSameText(pair.before->getDescription(), pair.after->getDescription());
    record(change, pair, isSame);
    compareParameterLists(change);
  }

  void compareParameterLists(const Change& items)
  {
    const KyCInventoryItem* const before = items.before.item;
    const KyCInventoryItem* const after = items.after.item;
    Pair<KyCInventoryParameter> pair;
    pair.before = before != nullptr ? before->getParameterByOrdinalNumber(0) : nullptr;
    pair.after = after != nullptr ? after->getParameterByOrdinalNumber(0) : nullptr;
    if (before != nullptr && after != nullptr && !areInStep(pair.before, pair.after))
    {
      for (const Pair<KyCInventoryParameter>& parameters : Pairing<KyCInventoryParameter>(*before, *after).pairs())
        compareParameters(items, parameters);
      return;
    }
    while (pair.before != nullptr || pair.after != nullptr)
    {
      compareParameters(items, pair);
      pair.previousBefore = pair.before;
      pair.previousAfter = pair.after;
      if (pair.before != nullptr) pair.before = pair.before->getNext();
      if (pair.after != nullptr) pair.after = pair.after->getNext();
    }
  }

  void compareParameters(const Change& items, const Pair<KyCInventoryParameter>& pair)
  {
    const bool isSame = pair.before != nullptr && pair.after != nullptr && isSameParameter(*pair.before, *pair.after);
    if (isSame && !pair.isMoved) return;
    Change change;
    if (pair.before != nullptr) change.before = {items.before.item, pair.before, nullptr, pair.previousBefore};
    if (pair.after != nullptr) change.after = {items.after.item, pair.after, nullptr, pair.previousAfter};
    record(change, pair, isSame);
  }

  template <typename Node>
  void record(Change change, const Pair<Node>& pair, bool isSame)
  {
    if (!isSame)
    {
      change.kind = pair.before == nullptr  ? ChangeKind::ADDED
                    : pair.after == nullptr ? ChangeKind::REMOVED
                                            : ChangeKind::CHANGED;
      m_difference.add(change);
    }
    if (!pair.isMoved) return;
    change.kind = ChangeKind::MOVED;
    m_difference.add(change);
  }

  Difference m_difference;
  std::vector<Walk> m_open;
};

Difference::Difference() : m_numbers(std::make_unique<SiblingNumbers>()) {}
Difference::~Difference() = default;
Difference::Difference(Difference&& other) noexcept = default;
Difference& Difference::operator=(Difference&& other) noexcept = default;

bool Difference::isEqual() const
{
  return m_items.added + m_items.removed + m_items.changed + m_parameters.added + m_parameters.removed +
             m_parameters.changed ==
         0;
}

void Difference::add(const Change& change)
{
  ChangeCounts& counts = change.isOfParameter() ? m_parameters : m_items;
  switch (change.kind)
  {
    case ChangeKind::ADDED:
      ++counts.added;
      break;
    case ChangeKind::REMOVED:
      ++counts.removed;
      break;
    case ChangeKind::CHANGED:
      ++counts.changed;
      break;
    case ChangeKind::MOVED:
      ++counts.moved;
      break;
  }
  m_changes.push_back(change);
}

std::string Difference::addressOf(const Change& change) const
{
  const ChangeSide& side = change.kind == ChangeKind::REMOVED ? change.before : change.after;
  return side.parameter != nullptr ? m_numbers->addressOf(*side.parameter) : m_numbers->addressOf(*side.item);
}

std::string Difference::nameOf(const KyCInventoryItem& item) const { return siblingText(m_numbers->nameOf(item)); }

std::string Difference::nameOf(const KyCInventoryParameter& parameter) const
{
  return siblingText(m_numbers->nameOf(parameter));
}

Difference compareTrees(const KyCInventoryItem& before, const KyCInventoryItem& after)
{
  return TreeComparison().run(before, after);
}
}    // namespace KyNInventoryKit
