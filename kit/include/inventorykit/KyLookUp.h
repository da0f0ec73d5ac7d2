// KyLookUp.h: what an address names, and what it may have been meant to name.
//
//   #include "inventorykit/KyValueText.h"
//
//   const KyNInventoryKit::Node node = KyNInventoryKit::lookUp(pool, *tree, address);    // or a report names the nearest ones
//   if (node.parameter != nullptr) std::puts(KyNInventoryKit::valueText(*node.parameter).c_str());
#pragma once

#include <string>
#include <vector>

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
// An item, or a parameter of it. Borrowed from the tree.
struct Node
{
  KyCInventoryItem* item = nullptr;              // null: nothing
  KyCInventoryParameter* parameter = nullptr;    // null: the item itself
};

// What an address names, relative to top. A parameter has no index: an address whose last element has another index
// than 1 names an item alone. Where an item and a parameter share an ID, the parameter is taken; of several siblings of
// one ID and index the first.
//
// Result:     nothing when there is none; the empty address names top.
KY_INVENTORYKIT_API Node lookUp(KyCInventoryItem& top, const KyCInventoryAddress& address);

// Errors:     0x1504000  there is none; the report names the last item on the way that exists, what it does not have,
//                        and what it has that is nearest
KY_INVENTORYKIT_API Node lookUp(KyCErrorListPool& pool, KyCInventoryItem& top, const KyCInventoryAddress& address);

// For an address that names nothing: the addresses of what exists at the point where its way ends, the nearest first,
// at most `count`. Near is the same ID with another index, and then a name that differs in at most every fourth letter;
// where there is neither, a name that begins with the one asked for, or the other way round. Nothing else is named.
//
// Cost:       linear in what there is at that point.
KY_INVENTORYKIT_API std::vector<std::string> nearestExisting(KyCInventoryItem& top, const KyCInventoryAddress& address,
                                                             unsigned int count);

// The addresses of nodes as texts, faster than one by one where neighbours share an item; "." is the root item.
class KY_INVENTORYKIT_API AddressTexts
{
public:
  // The text holds until the next call. Nodes are told apart by their place in memory: a tree must not change
  // meanwhile.
  const std::string& of(const Node& node);

private:
  const KyCInventoryItem* m_item = nullptr;
  std::size_t m_itemLength = 0;    // of the item's own address in the text
  std::string m_text;
};
}    // namespace KyNInventoryKit
