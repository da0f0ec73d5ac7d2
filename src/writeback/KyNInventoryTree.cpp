// Free functions on trees.

#include "inventory/KyNInventoryTree.h"

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"

void KyNInventoryTree::addUpdateElementParameters(KyCInventoryItem* item, KyCErrorListPool& pool, unsigned int id,
                                                  unsigned int configuration, const KyCString& name,
                                                  unsigned int typeId, const KyCString& boardType, bool valid,
                                                  bool active, unsigned int hwCompatibilityId,
                                                  unsigned int swCompatibilityId)
{
  const auto add = [&](const KyCInventoryAddress& address, const auto& value)
  { item->createParameter(pool, address, value, nullptr, false, 2); };

  add(KyNInventoryIDs::ID, id);
  add(KyNInventoryIDs::CONFIGURATION, configuration);
  add(KyNInventoryIDs::NAME, name);
  add(KyNInventoryIDs::TYPE_ID, typeId);
  add(KyNInventoryIDs::BOARD_TYPE, boardType);
  add(KyNInventoryIDs::VALID, static_cast<unsigned char>(valid));
  add(KyNInventoryIDs::ACTIVE, static_cast<unsigned char>(active));
  if (hwCompatibilityId != 0) add(KyNInventoryIDs::HW_COMPATIBILITY_ID, hwCompatibilityId);
  if (swCompatibilityId != 0) add(KyNInventoryIDs::SW_COMPATIBILITY_ID, swCompatibilityId);
}
