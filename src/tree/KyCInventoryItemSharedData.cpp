// Linking items to the shared data that they refer to: linkSharedData.

#include "base/KyErrorManagerAccess.h"
#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "tree/KyInventoryAccess.h"
#include "tree/KyPlaceText.h"

using KyNInventoryIDs::SHARED_DATA;
using KyNInventoryIDs::SHARED_DATA_INDEX;

namespace
{
void warn(unsigned int code, unsigned int line, const KyCInventoryItem& item, const KyCInventoryAddress& other)
{
  kyErrorManager().sendWarning(code, line, "linkSharedData", "%s%s", KyPlaceText(item).c_str(),
                               KyPlaceText(other).c_str());
}

bool isSharedData(const KyCInventoryItem& item)
{
  return KyInventoryAccess::getClassId(item) == SHARED_DATA.getCategory();
}

// The functions below tell whether to go on below the item.

// Links an item that uses shared data, or that lies inside one that does.
bool link(KyCInventoryItem& item, KyCInventoryItem& shared)
{
  if (isSharedData(item))
  {
    warn(KY_MSG_SHARED_DATA_MUTUAL_REFERENCE, __LINE__, item, SHARED_DATA_INDEX);
    return false;
  }
  KyInventoryAccess::setFriend(item, &shared);
  return true;
}

// Outside all users of shared data. An item that refers to a sibling is a user from here on.
bool linkOutside(KyCErrorListPool& pool, KyCInventoryItem& parent, KyCInventoryItem& item, KyCInventoryItem*& user)
{
  if (item.getParameter(SHARED_DATA_INDEX) == nullptr) return !isSharedData(item);
  const KyCInventoryAddress sharedID = SHARED_DATA[item.getValue<unsigned int>(pool, SHARED_DATA_INDEX)];
  KyCInventoryItem* const shared = parent.getItem(sharedID);
  if (shared == nullptr)
  {
    warn(KY_MSG_SHARED_DATA_ITEM_MISSING, __LINE__, item, sharedID);
    return false;
  }
  if (!link(item, *shared)) return false;
  user = &item;
  return true;
}

// Inside a user, an item goes with the one of its ID and index below what its parent is linked to.
bool linkInside(KyCInventoryItem& parent, KyCInventoryItem& item)
{
  if (item.getParameter(SHARED_DATA_INDEX) != nullptr)
    warn(KY_MSG_SHARED_DATA_NESTED_REFERENCE, __LINE__, item, SHARED_DATA_INDEX);
  KyCInventoryItem* const shared = KyInventoryAccess::getFriend(parent)->getItem(item.getID());
  return shared != nullptr && link(item, *shared);
}

// All items below the top, each before its sub-items. The user is the outermost linked item around the current one, null
// outside of all.
void linkBelow(KyCErrorListPool& pool, KyCInventoryItem& top, KyCInventoryItem* user)
{
  KyCInventoryItem* parent = &top;
  KyCInventoryItem* item = top.getFirstSubItem();
  const auto leaveItem = [&]()
  {
    if (user == item) user = nullptr;
  };
  while (item != nullptr)
  {
    const bool goOnBelow = user != nullptr ? linkInside(*parent, *item) : linkOutside(pool, *parent, *item, user);
    if (goOnBelow && item->getFirstSubItem() != nullptr)
    {
      parent = item;
      item = item->getFirstSubItem();
      continue;
    }
    leaveItem();
    while (item->getNext() == nullptr && parent != &top)
    {
      item = parent;
      parent = item->getParent();
      leaveItem();
    }
    item = item->getNext();
  }
}
}    // namespace

void KyCInventoryItem::linkSharedData(KyCErrorListPool& pool, KyCInventoryItem* sharedItem)
{
  if (sharedItem == nullptr)
  {
    if (!isSharedData(*this)) linkBelow(pool, *this, nullptr);
  }
  else if (link(*this, *sharedItem))
    linkBelow(pool, *this, this);
}

void KyCInventoryItem::linkSharedData(KyCInventoryItem* sharedItem)
{
  KyCErrorManager& manager = kyErrorManager();
  KyCErrorListPool* const pool = manager.createErrorList(0, 1, 20, 5, 300);
  KyCErrorListPool spare;    // with no memory for a list; what it receives is dropped just the same
  linkSharedData(pool != nullptr ? *pool : spare, sharedItem);
  if (pool != nullptr) manager.deleteErrorList(*pool);
}
