#include "inventorykit/KyEdit.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "KyEditMessages.h"
#include "KyKitMessages.h"
#include "KyNewItems.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyLookUp.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
void removeNewItems(KyCInventoryItem& top, const KyCInventoryAddress& address, unsigned int known)
{
  KyCInventoryAddress first = address;
  if (known + 1 >= address.getLength()) return;    // no item is new
  first.removeSuffixElements(address.getLength() - known - 1);
  KyCInventoryItem* const item = top.getItem(first);
  if (item == nullptr) return;
  item->detach();
  delete item;
}

unsigned int countKnownItems(KyCInventoryItem& top, const KyCInventoryAddress& address)
{
  KyCInventoryItem* item = &top;
  unsigned int known = 0;
  for (; known < address.getLength(); ++known)
  {
    const KyCInventoryAddress::TElement& element = address.getElements()[known];
    item = item->getItem(KyCInventoryAddress(element.id, element.index));
    if (item == nullptr) break;
  }
  return known;
}

namespace
{
constexpr std::size_t s_longestUnit = 100;    // bytes that are stored

// ---- Parameters ----

std::string textOf(const std::optional<std::string>& text) { return text.value_or(std::string()); }

bool isStorable(KyCErrorListPool& pool, const ParameterChange& change)
{
  if (!change.unit || change.unit->size() <= s_longestUnit) return true;
  pool.setError(KY_EDIT_MSG_UNIT_TOO_LONG, __LINE__, "changeParameter", "%s%zu", change.unit->c_str(), s_longestUnit);
  return false;
}

KyCInventoryParameter* createWholly(KyCErrorListPool& pool, KyCInventoryItem& top, const KyCInventoryAddress& address,
                                    const ParameterChange& change)
{
  const unsigned int errorCount = pool.getErrorCount();
  const unsigned int known = countKnownItems(top, address);
  KyCInventoryParameter* const parameter =
      createParameter(pool, top, address, change.createType, textOf(change.value), textOf(change.unit).c_str(),
                      change.isModifiable.value_or(false), change.relevance.value_or(0));
  if (pool.getErrorCount() == errorCount) return parameter;
  removeNewItems(top, address, known);
  return nullptr;
}

bool hasType(KyCErrorListPool& pool, const KyCInventoryParameter& parameter, const KyCInventoryAddress& address,
             unsigned int type)
{
  if (type == 0 || parameter.getType() == type) return true;
  KyCErrorListPool ignored;
  const KyCInventoryParameter asked(ignored, parameter.getID(), "", type);
  pool.setError(KY_EDIT_MSG_OTHER_TYPE, __LINE__, "changeParameter", "%s%s%s", addressText(address).c_str(),
                parameter.getTypeAsCString(), asked.getTypeAsCString());
  return false;
}

// ---- Removing ----

// Everything that an address names, however many siblings share it. Looks through the siblings of an item once,
// whatever the number of addresses.
class NodesByAddress
{
public:
  std::vector<Node> all(KyCInventoryItem& top, const KyCInventoryAddress& address)
  {
    std::vector<Node> nodes;
    KyCInventoryItem* const parent = top.getItem(address.getHeadAddress());
    if (parent == nullptr) return nodes;
    const auto found = ownOf(*parent).equal_range({address.getCategory(), address.getIndex()});
    for (auto node = found.first; node != found.second; ++node)
      nodes.push_back(node->second);
    return nodes;
  }

private:
  using Own = std::multimap<std::pair<unsigned int, unsigned int>, Node>;

  const Own& ownOf(KyCInventoryItem& item)
  {
    const auto [entry, isNew] = m_known.emplace(&item, Own());
    if (!isNew) return entry->second;
    for (KyCInventoryParameter* p = item.getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
      entry->second.insert({{p->getID().getCategory(), 1}, {&item, p}});
    for (KyCInventoryItem* sub = item.getFirstSubItem(); sub != nullptr; sub = sub->getNext())
      entry->second.insert({{sub->getID().getCategory(), sub->getID().getIndex()}, {sub, nullptr}});
    return entry->second;
  }

  std::map<const KyCInventoryItem*, Own> m_known;
};

// What is to be removed: parameters by their items and IDs, items with their levels.
class Removal
{
public:
  void add(const Node& node, unsigned int level)
  {
    if (node.parameter != nullptr)
      m_parameters.insert({node.item, node.parameter->getID().getCategory()});
    else
      m_items.insert({level, node.item});
  }

  // Parameters before items, and items before those that they are in.
  void carryOut()
  {
    for (const auto& [item, id] : m_parameters)
      while (KyCInventoryParameter* parameter = item->detachParameter(id))
        delete parameter;
    for (auto item = m_items.rbegin(); item != m_items.rend(); ++item)
    {
      item->second->detach();
      delete item->second;
    }
  }

private:
  std::set<std::pair<KyCInventoryItem*, unsigned int>> m_parameters;
  std::set<std::pair<unsigned int, KyCInventoryItem*>> m_items;
};

bool collect(KyCErrorListPool& pool, KyCInventoryItem& top, const KyCInventoryAddress& address, Ambiguity ambiguity,
             NodesByAddress& known, Removal& removal)
{
  if (address.isEmpty())
  {
    pool.setError(KY_EDIT_MSG_ROOT_STAYS, __LINE__, "removeNodes", nullptr);
    return false;
  }
  const std::vector<Node> nodes = known.all(top, address);
  if (nodes.empty())
  {
    lookUp(pool, top, address);    // reports what is near
    return false;
  }
  if (nodes.size() > 1 && ambiguity == Ambiguity::REFUSED)
  {
    pool.setError(KY_EDIT_MSG_NAMES_SEVERAL, __LINE__, "removeNodes", "%s%zu", addressText(address).c_str(),
                  nodes.size());
    return false;
  }
  for (const Node& node : nodes)
    removal.add(node, address.getLength());
  return true;
}

// ---- Renaming ----

bool isPredefined(KyCErrorListPool& pool, const KyCInventoryAddress& id)
{
  if (!id.isSingleElement())
  {
    pool.setError(KY_KIT_MSG_NOT_ONE_ELEMENT, __LINE__, "renameItem", "%s", addressText(id).c_str());
    return false;
  }
  const unsigned int number = id.getCategory();
  if (KyNInventoryIDs::Map.get(number) != nullptr) return true;
  pool.setError(KY_KIT_MSG_NO_SUCH_ID, __LINE__, "renameItem", "%s%s", std::to_string(number).c_str(), "");
  return false;
}

bool isFree(KyCErrorListPool& pool, KyCInventoryItem& parent, const KyCInventoryAddress& address,
            const KyCInventoryAddress& id)
{
  if (parent.getItem(id) == nullptr && parent.getParameter(id) == nullptr) return true;
  const KyCInventoryAddress place = parent.getAddress();
  pool.setError(KY_EDIT_MSG_ID_TAKEN, __LINE__, "renameItem", "%s%s%s", addressText(address).c_str(),
                addressText(id).c_str(), place.isEmpty() ? "the root item" : addressText(place).c_str());
  return false;
}
}    // namespace

KyCInventoryParameter* changeParameter(KyCErrorListPool& pool, KyCInventoryItem& top,
                                       const KyCInventoryAddress& address, const ParameterChange& change)
{
  if (!isStorable(pool, change)) return nullptr;
  const Node node = lookUp(top, address);
  const bool isCreated = node.item == nullptr && change.createType != 0;
  if (node.parameter == nullptr && (node.item != nullptr || (isCreated && address.getIndex() != 1)))
  {
    pool.setError(KY_EDIT_MSG_IS_ITEM, __LINE__, "changeParameter", "%s", addressText(address).c_str());
    return nullptr;
  }
  if (isCreated) return createWholly(pool, top, address, change);
  if (node.parameter == nullptr)
  {
    lookUp(pool, top, address);    // reports what is near
    return nullptr;
  }
  KyCInventoryParameter& parameter = *node.parameter;
  if (!hasType(pool, parameter, address, change.createType)) return nullptr;
  if (change.value && !setValueText(pool, parameter, *change.value)) return nullptr;
  if (change.unit) parameter.setUnit(change.unit->c_str());
  if (change.isModifiable) parameter.setModifiableFlag(*change.isModifiable);
  if (change.relevance) parameter.setRelevance(*change.relevance);
  // cppcheck-suppress returnDanglingLifetime ; the tree's, not the node's
  return &parameter;
}

bool removeNodes(KyCErrorListPool& pool, KyCInventoryItem& top, const std::vector<KyCInventoryAddress>& addresses,
                 Ambiguity ambiguity)
{
  NodesByAddress known;
  Removal removal;
  bool isWhole = true;
  for (const KyCInventoryAddress& address : addresses)
    isWhole = collect(pool, top, address, ambiguity, known, removal) && isWhole;
  if (isWhole) removal.carryOut();
  return isWhole;
}

bool renameItem(KyCErrorListPool& pool, KyCInventoryItem& top, const KyCInventoryAddress& address,
                const KyCInventoryAddress& id)
{
  if (!isPredefined(pool, id)) return false;
  KyCInventoryItem* const item = top.getItem(address);
  if (item == nullptr)
  {
    const bool isParameter = lookUp(pool, top, address).parameter != nullptr;
    if (isParameter)
      pool.setError(KY_EDIT_MSG_IS_PARAMETER, __LINE__, "renameItem", "%s", addressText(address).c_str());
    return false;
  }
  if (item->getID() == id) return true;
  if (item->getParent() != nullptr && !isFree(pool, *item->getParent(), address, id)) return false;
  item->setID(id);
  return true;
}
}    // namespace KyNInventoryKit
