// KyIUpdater.h: what a user hangs on an update element; the library keeps it and destroys it, and calls nothing of it.
#pragma once

#include "inventory/KyInventoryTreeApi.h"

namespace KyNInventoryItem
{
// The root of everything that the inventory destroys without knowing its class. No data, no operation.
class KY_INVENTORY_API KyCVirtualClass
{
public:
  KyCVirtualClass() = default;
  KyCVirtualClass(const KyCVirtualClass&) = default;
  KyCVirtualClass& operator=(const KyCVirtualClass&) = default;
  virtual ~KyCVirtualClass();
};
}    // namespace KyNInventoryItem

// Derive from it, hang an object of the derived class on an UPDATE_ELEMENT item with KyCInventoryItem::setUpdater and
// find it again with KyCInventoryItem::getUpdater: the pointer that comes out is the one that went in.
//
// Ownership: the item's, from a successful setUpdater on; it is destroyed with the item, exactly once, whatever its
//            class. Threads: the user's business; the library only destroys it, on the thread that deletes the item.
class KY_INVENTORY_API KyIUpdater : public KyNInventoryItem::KyCVirtualClass
{
public:
  KyIUpdater() = default;
  KyIUpdater(const KyIUpdater&) = default;
  KyIUpdater& operator=(const KyIUpdater&) = default;
  ~KyIUpdater() override;
};
