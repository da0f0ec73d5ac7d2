#include "inventorykit/KyTree.h"

#include <cmath>
#include <cstring>

#include "KyNaNBits.h"
#include "KyValueTypes.h"

namespace KyNInventoryKit
{
namespace
{
// The item behind the subtree of this one.
template <typename Item>
Item* itemBeside(Item& item, const KyCInventoryItem& top)
{
  Item* at = &item;
  while (at != &top && at->getNext() == nullptr)
    at = at->getParent();
  return at == &top ? nullptr : at->getNext();
}

const char* parameterDifference(const KyCInventoryParameter* a, const KyCInventoryParameter* b)
{
  if (a == nullptr || b == nullptr) return a == b ? nullptr : "number of parameters";
  if (a->getID() != b->getID()) return "ID";
  if (std::strcmp(a->getDescription(), b->getDescription()) != 0) return "description";
  if (a->getType() != b->getType()) return "type";
  if (std::strcmp(a->getUnit(), b->getUnit()) != 0) return "unit";
  if (a->isModifiable() != b->isModifiable()) return "modifiable flag";
  if (a->getRelevance() != b->getRelevance()) return "relevance";
  return sameValue(*a, *b) ? nullptr : "value";
}

std::string place(const KyCInventoryAddress& address, const char* what)
{
  const KyCString text = address.toString();
  return std::string(text.isEmpty() ? "root item" : text.c_str()) + ": " + what;
}

// The item itself and its parameters, not its sub-items.
std::string itemDifference(const KyCInventoryItem& a, const KyCInventoryItem& b)
{
  if (a.getID() != b.getID()) return place(a.getAddress(), "ID");
  if (std::strcmp(a.getDescription(), b.getDescription()) != 0) return place(a.getAddress(), "description");
  const KyCInventoryParameter* parameterA = a.getParameterByOrdinalNumber(0);
  const KyCInventoryParameter* parameterB = b.getParameterByOrdinalNumber(0);
  for (;; parameterA = parameterA->getNext(), parameterB = parameterB->getNext())
  {
    const char* difference = parameterDifference(parameterA, parameterB);
    if (difference != nullptr)
    {
      return place(parameterA != nullptr ? parameterA->getAddress() : a.getAddress(), difference);
    }
    if (parameterA == nullptr) return {};
  }
}
}    // namespace

const KyCInventoryItem* nextItem(const KyCInventoryItem& item, const KyCInventoryItem& top)
{
  return item.getFirstSubItem() != nullptr ? item.getFirstSubItem() : itemBeside(item, top);
}

KyCInventoryItem* nextItem(KyCInventoryItem& item, const KyCInventoryItem& top)
{
  return item.getFirstSubItem() != nullptr ? item.getFirstSubItem() : itemBeside(item, top);
}

KyCInventoryItem* nextItemBeside(KyCInventoryItem& item, const KyCInventoryItem& top) { return itemBeside(item, top); }

TreeSize measure(const KyCInventoryItem& top)
{
  TreeSize size;
  unsigned int level = 1;
  const KyCInventoryItem* item = &top;
  for (;;)
  {
    ++size.items;
    if (level > size.depth) size.depth = level;
    for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
      ++size.parameters;
    if (item->getFirstSubItem() != nullptr)
    {
      item = item->getFirstSubItem();
      ++level;
      continue;
    }
    for (; item != &top && item->getNext() == nullptr; --level)
      item = item->getParent();
    if (item == &top) return size;
    item = item->getNext();
  }
}

bool sameValue(const KyCInventoryParameter& a, const KyCInventoryParameter& b)
{
  if (a.getType() != b.getType()) return false;
  bool isSame = true;    // of two parameters that have no value
  visitType(a.getType(),
            [&](auto type)
            {
              using T = typename decltype(type)::Type;
              KyCErrorListPool pool;
              const T valueA = a.getValue<T>(pool);
              const T valueB = b.getValue<T>(pool);
              // NOLINTBEGIN(bugprone-suspicious-memory-comparison,cert-exp42-c,cert-flp37-c): 0.0 is not -0.0 here
              if constexpr (std::is_floating_point_v<T>)
                isSame = std::isnan(valueA) && std::isnan(valueB) ? storedBits(a) == storedBits(b)
                                                                  : std::memcmp(&valueA, &valueB, sizeof(T)) == 0;
              else
                isSame = valueA == valueB;
              // NOLINTEND(bugprone-suspicious-memory-comparison,cert-exp42-c,cert-flp37-c)
            });
  return isSame;
}

std::string firstDifference(const KyCInventoryItem& rootA, const KyCInventoryItem& rootB)
{
  const KyCInventoryItem* a = &rootA;
  const KyCInventoryItem* b = &rootB;
  for (;;)
  {
    std::string difference = itemDifference(*a, *b);
    if (!difference.empty()) return difference;
    if ((a->getFirstSubItem() == nullptr) != (b->getFirstSubItem() == nullptr))
    {
      return place(a->getAddress(), "number of sub-items");
    }
    if (a->getFirstSubItem() != nullptr)
    {
      a = a->getFirstSubItem();
      b = b->getFirstSubItem();
      continue;
    }
    while (a != &rootA && a->getNext() == nullptr && b->getNext() == nullptr)
    {
      a = a->getParent();
      b = b->getParent();
    }
    if (a == &rootA) return {};
    if ((a->getNext() == nullptr) != (b->getNext() == nullptr))
    {
      return place(a->getParent()->getAddress(), "number of sub-items");
    }
    a = a->getNext();
    b = b->getNext();
  }
}
}    // namespace KyNInventoryKit
