#include "inventorykit/KyFind.h"

#include <utility>

#include "KyCondition.h"
#include "KyPattern.h"

namespace KyNInventoryKit
{
namespace
{
// Walks over a tree with the pattern's places for each item on the way down.
class Search
{
public:
  Search(KyCInventoryItem& top, const Query& query) : m_top(top), m_query(query) {}

  std::vector<Node> run()
  {
    if (m_query.pattern) push(m_query.pattern->start());
    for (KyCInventoryItem* item = &m_top; item != nullptr; item = nextItem(*item))
      visit(*item);
    return std::move(m_found);
  }

private:
  void push(const PatternPlaces& places)
  {
    m_levels.push_back(m_places.size());
    m_places.insert(m_places.end(), places.begin(), places.end());
  }

  void pop()
  {
    m_places.resize(m_levels.back());
    m_levels.pop_back();
  }

  // Where the places of the item on top lead by way of a sub-item or parameter.
  const PatternPlaces& follow(const KyCInventoryAddress& id)
  {
    m_next.clear();
    const std::size_t first = m_levels.back();
    m_query.pattern->follow(m_places.data() + first, static_cast<unsigned int>(m_places.size() - first),
                            id.getCategory(), id.getIndex(), m_next);
    return m_next;
  }

  bool hasPlaces() const { return !m_query.pattern || m_places.size() != m_levels.back(); }

  void visit(KyCInventoryItem& item)
  {
    if (m_query.findsItems && (!m_query.pattern || isMatchOnTop())) add({&item, nullptr});
    if (!m_query.findsParameters || !hasPlaces()) return;
    for (KyCInventoryParameter* p = item.getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
      if (!m_query.pattern || m_query.pattern->isMatch(follow(p->getID()))) add({&item, p});
  }

  bool isMatchOnTop()
  {
    const PatternPlaces places(m_places.begin() + static_cast<std::ptrdiff_t>(m_levels.back()), m_places.end());
    return m_query.pattern->isMatch(places);
  }

  void add(const Node& node)
  {
    if (!m_query.condition || m_query.condition->isTrueOf(node)) m_found.push_back(node);
  }

  // The item that follows in the order of the tree, without what is below items that no match goes through.
  KyCInventoryItem* nextItem(KyCInventoryItem& item)
  {
    KyCInventoryItem* at = hasPlaces() ? item.getFirstSubItem() : nullptr;
    if (at == nullptr) at = besideOrAbove(item);
    if (at == nullptr || !m_query.pattern) return at;
    push(follow(at->getID()));
    return at;
  }

  // Leaves the item, and those above it that have no next one.
  KyCInventoryItem* besideOrAbove(KyCInventoryItem& item)
  {
    KyCInventoryItem* at = &item;
    for (; at != &m_top; at = at->getParent())
    {
      if (m_query.pattern) pop();
      if (at->getNext() != nullptr) return at->getNext();
    }
    return nullptr;
  }

  KyCInventoryItem& m_top;
  const Query& m_query;
  std::vector<Node> m_found;
  PatternPlaces m_places;               // of all items from the top to the present one, one behind the other
  std::vector<std::size_t> m_levels;    // where those of each item begin
  PatternPlaces m_next;
};
}    // namespace

bool readPattern(KyCErrorListPool& pool, const std::string& text, Query& query)
{
  auto pattern = std::make_shared<Pattern>();
  if (!pattern->read(pool, text)) return false;
  query.pattern = std::move(pattern);
  return true;
}

bool readCondition(KyCErrorListPool& pool, const std::string& text, Query& query)
{
  auto condition = std::make_shared<Condition>();
  if (!condition->read(pool, text)) return false;
  query.condition = std::move(condition);
  return true;
}

std::vector<Node> find(KyCInventoryItem& top, const Query& query) { return Search(top, query).run(); }
}    // namespace KyNInventoryKit
