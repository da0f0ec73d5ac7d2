// KySubtreeWalk.h: the walk that the operations on whole subtrees share.
#pragma once

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"

// Calls visit(parameter) for every parameter of the subtree: children before parents, sub-items in list order, the
// parameters of an item by ordinal number. Shared data is not visited.
//
// The next parameter is looked up by its number after each call and no iterator is held across it. So what is called may
// add items and parameters and may take others away, the item of the parameter that it is called for as well (the walk then
// goes on at its parent), but neither that parameter itself nor the items farther up.
template <typename Visit>
void kyForEachParameterBelow(KyCInventoryItem& top, Visit visit)
{
  const auto deepestFirst = [](KyCInventoryItem* item)
  {
    while (item->getFirstSubItem() != nullptr)
      item = item->getFirstSubItem();
    return item;
  };
  for (KyCInventoryItem* item = deepestFirst(&top);;)
  {
    KyCInventoryItem* const parent = item->getParent();
    KyCInventoryParameter* parameter = nullptr;
    for (unsigned int n = 0; (parameter = item->getParameterByOrdinalNumber(n)) != nullptr; ++n)
      visit(*parameter);
    if (item == &top || parent == nullptr) return;
    // An item that has left its place has no siblings there any more: its parent is next.
    KyCInventoryItem* const next = item->getParent() == parent ? item->getNext() : nullptr;
    item = next != nullptr ? deepestFirst(next) : parent;
  }
}
