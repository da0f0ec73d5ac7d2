// Growing a tree: addPath, addParameter, setID, createParameter.

#include "base/KyErrorManagerAccess.h"
#include "base/KyMessageCodes.h"
#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "tree/KyHangParameter.h"
#include "tree/KyInventoryAccess.h"
#include "tree/KyPlaceText.h"
#include "tree/KyTypeTraits.h"

namespace
{
using TElement = KyCInventoryAddress::TElement;

void reportNotPredefined(KyCErrorListPool& pool, unsigned int line, const char* function, const KyCInventoryAddress& id)
{
  pool.setError(KY_MSG_ID_NOT_PREDEFINED, line, function, "%s", KyPlaceText(id).c_str());
}

void reportAlreadyExists(KyCErrorListPool& pool, unsigned int line, const char* function, const KyCInventoryAddress& id,
                         const KyCInventoryItem& place)
{
  pool.setError(KY_MSG_ID_ALREADY_EXISTS, line, function, "%s%s", KyPlaceText(id).c_str(), KyItemPlace(place).c_str());
}

// A free item that may take its place below the parent, which has no sub-item of this ID; null: reported.
KyCInventoryItem* createSubItem(KyCErrorListPool& pool, const KyCInventoryItem& parent, const KyCInventoryAddress& id)
{
  if (parent.getParameter(id) != nullptr)
  {
    reportAlreadyExists(pool, __LINE__, "addPath", id, parent);
    return nullptr;
  }
  const char* const name = id.getCategoryNameCStr();
  if (*name == '\0')
  {
    reportNotPredefined(pool, __LINE__, "addPath", id);
    return nullptr;
  }
  const unsigned int errorCount = pool.getErrorCount();
  KyCInventoryItem* const item = new (pool) KyCInventoryItem(pool, id, name);
  if (item != nullptr && pool.getErrorCount() == errorCount) return item;
  delete item;
  return nullptr;
}

// Where a path has led to. `loose` is the root of what hangs nowhere, because a friend's sub-item kept it from being
// added; null, as nearly always, when all of the path is part of the tree.
struct TPathEnd
{
  KyCInventoryItem* item;
  KyCInventoryItem* loose;
};

// Goes on behind the items of a path that are there: the first one is missing, and a new item has none below it.
TPathEnd createPath(KyCErrorListPool& pool, KyCInventoryItem* item, const TElement* path, const TElement* end)
{
  KyCInventoryItem* loose = nullptr;
  for (; path != end; ++path)
  {
    KyCInventoryItem* const next = createSubItem(pool, *item, KyCInventoryAddress(path->id, path->index));
    if (next == nullptr)
    {
      delete loose;    // nobody could reach it
      return {nullptr, nullptr};
    }
    if (KyInventoryAccess::getFriend(*item) == nullptr)
      KyInventoryAccess::attachUnseenItem(*item, next);
    else
      item->addItem(KyNInventoryIDs::THIS_NODE, next);
    if (next->getParent() == nullptr) loose = next;
    item = next;
  }
  return {item, loose};
}

// Finds or creates the items of the path. On failure the item is null, and nothing is loose any more.
inline TPathEnd followPath(KyCErrorListPool& pool, KyCInventoryItem& start, const TElement* path, unsigned int length)
{
  const TElement* const end = path + length;
  KyCInventoryItem* item = &start;
  for (; path != end; ++path)
  {
    KyCInventoryItem* const next = KyInventoryAccess::findSubItem(*item, *path);
    if (next == nullptr) return createPath(pool, item, path, end);
    item = next;
  }
  return {item, nullptr};
}

// The part of createParameter before the parameter is made; the item is null on failure, and the name is the ID's.
TPathEnd findParameterPlace(KyCErrorListPool& pool, KyCInventoryItem& start, const KyCInventoryAddress& address,
                            const char*& name)
{
  if (address.isEmpty())
  {
    pool.setError(KY_MSG_EMPTY_ADDRESS, __LINE__, "createParameter", nullptr);
    return {nullptr, nullptr};
  }
  const TPathEnd place = followPath(pool, start, address.getElements(), address.getLength() - 1);
  if (place.item == nullptr)
  {
    pool.setError(KY_MSG_CANNOT_FIND_OR_CREATE_PATH, __LINE__, "createParameter", nullptr);
    return place;
  }
  name = KyNInventoryIDs::Map.get(address.getCategory());
  if (name != nullptr && *name != '\0') return place;
  reportNotPredefined(pool, __LINE__, "createParameter", address.getLastElement());
  delete place.loose;
  return {nullptr, nullptr};
}

// The end of createParameter when the parameter was not made (the count has grown then) or cannot be hung up.
KyCInventoryParameter* giveParameterUp(KyCErrorListPool& pool, const TPathEnd& place, const char* name,
                                       KyCInventoryParameter* parameter)
{
  pool.setError(KY_MSG_CANNOT_CREATE_PARAMETER, __LINE__, "createParameter", "%s", name);
  delete parameter;
  delete place.loose;
  return nullptr;
}
}    // namespace

bool kyHangSeenParameter(KyCErrorListPool& pool, KyCInventoryItem& item, KyCInventoryParameter* parameter)
{
  const unsigned int id = KyInventoryAccess::getId(*parameter);
  const bool isIdUnused = !KyInventoryAccess::mayHave(item, id) && KyInventoryAccess::getFriend(item) == nullptr;
  if (!isIdUnused && item.getItem(id) != nullptr)
  {
    reportAlreadyExists(pool, __LINE__, "addParameter", id, item);
    return false;
  }
  const unsigned int errorCount = pool.getErrorCount();
  KyInventoryAccess::addParameter(pool, item, parameter);
  if (pool.getErrorCount() == errorCount) return true;

  pool.setError(KY_MSG_CANNOT_ADD_PARAMETER, __LINE__, "addParameter", "%s%s",
                KyPlaceText(KyCInventoryAddress(id)).c_str(), KyItemPlace(item).c_str());
  return false;
}

KyCInventoryItem* KyCInventoryItem::addPath(KyCErrorListPool& pool, const KyCInventoryAddress& path)
{
  return followPath(pool, *this, path.getElements(), path.getLength()).item;
}

KyCInventoryItem* KyCInventoryItem::addParameter(KyCErrorListPool& pool, const KyCInventoryAddress& path,
                                                 KyCInventoryParameter* parameter)
{
  KyCInventoryItem* const item = addItem(path, nullptr);
  if (item == nullptr || parameter == nullptr) return item;

  return kyHangParameter(pool, *item, parameter) ? item : nullptr;
}

void KyCInventoryItem::setID(const KyCInventoryAddress& id)
{
  KyCErrorListPool& pool = kyErrorManager().getMasterErrorList();
  if (!id.isSingleElement())
  {
    pool.setError(KY_MSG_ID_NOT_ONE_ELEMENT, __LINE__, "setID", "%s", KyPlaceText(id).c_str());
    return;
  }
  if (*id.getCategoryNameCStr() == '\0')
  {
    reportNotPredefined(pool, __LINE__, "setID", id);
    return;
  }
  KyCInventoryItem* const parent = getParent();
  if (parent != nullptr)
  {
    const KyCInventoryItem* const item = parent->getItem(id);
    if ((item != nullptr && item != this) || parent->getParameter(id) != nullptr)
      pool.setError(KY_MSG_ID_ALREADY_EXISTS_AT_PARENT, __LINE__, "setID", "%s%s", KyPlaceText(id).c_str(),
                    KyItemPlace(*this).c_str());
  }
  // A conflict is told, not prevented.
  setIds(id.getCategory(), id.getIndex());
  setStaticDescription(id.getCategoryNameCStr());
}

template <typename T, typename>
KyCInventoryParameter* KyCInventoryItem::createParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address,
                                                         const T& value, const char* unit, bool modifiable,
                                                         unsigned int relevance)
{
  const char* name = nullptr;
  const TPathEnd place = findParameterPlace(pool, *this, address, name);
  if (place.item == nullptr) return nullptr;

  const unsigned int errorCount = pool.getErrorCount();
  KyCInventoryParameter* const parameter =
      KyInventoryAccess::newNamedParameter(pool, address.getCategory(), name, value, unit, modifiable, relevance);
  const bool isMade = parameter != nullptr && pool.getErrorCount() == errorCount;
  if (isMade && kyHangParameter(pool, *place.item, parameter)) return parameter;
  return giveParameterUp(pool, place, name, parameter);
}

#define KY_INSTANTIATE(T)                                                                \
  template KY_INVENTORY_API KyCInventoryParameter* KyCInventoryItem::createParameter<T>( \
      KyCErrorListPool&, const KyCInventoryAddress&, const T&, const char*, bool, unsigned int);
KY_FOR_EACH_VALUE_TYPE(KY_INSTANTIATE)
