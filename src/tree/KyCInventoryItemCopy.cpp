// Deep copies of a subtree: copyTree.

#include <new>

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "tree/KyFrameStack.h"
#include "tree/KyHangParameter.h"
#include "tree/KyPlaceText.h"

namespace
{
// One level of the copy: an item whose sub-items are being copied. Its copy is hung up when they are done.
struct TCopyLevel
{
  const KyCInventoryItem* original;
  KyCInventoryItem* copy;
  unsigned int errorsBefore;    // the pool's count before this item was begun: a grown one is a failure to the parent
};

using TLevels = KyFrameStack<TCopyLevel>;

void reportCannotCopySubtree(KyCErrorListPool& pool)
{
  pool.setError(KY_MSG_CANNOT_COPY_SUBTREE, __LINE__, "copyTree", nullptr);
}

// The item alone; null: reported.
KyCInventoryItem* copyItem(KyCErrorListPool& pool, const KyCInventoryItem& original)
{
  const unsigned int errorCount = pool.getErrorCount();
  auto* const copy = new (std::nothrow) KyCInventoryItem(pool, original.getID(), original.getDescription());
  if (copy != nullptr && pool.getErrorCount() == errorCount) return copy;
  pool.setError(KY_MSG_CANNOT_ALLOCATE_ITEM, __LINE__, "copyTree", nullptr);
  delete copy;
  return nullptr;
}

// The copy constructor has no pool to report to: it throws when memory runs out.
KyCInventoryParameter* copyParameter(const KyCInventoryParameter& original)
{
  try
  {
    return new KyCInventoryParameter(original);
  }
  catch (const std::bad_alloc&)
  {
    return nullptr;
  }
}

void copyParameters(KyCErrorListPool& pool, const KyCInventoryItem& original, KyCInventoryItem& copy)
{
  for (const KyCInventoryParameter* parameter = original.getParameterByOrdinalNumber(0); parameter != nullptr;
       parameter = parameter->getNext())
  {
    KyCInventoryParameter* const made = copyParameter(*parameter);
    if (made != nullptr && kyHangParameter(pool, copy, made)) continue;
    pool.setError(KY_MSG_CANNOT_HOOK_PARAMETER, __LINE__, "copyTree", nullptr);
    delete made;
  }
}

bool beginSubItem(KyCErrorListPool& pool, TLevels& levels, const KyCInventoryItem& original)
{
  const unsigned int errorsBefore = pool.getErrorCount();
  KyCInventoryItem* const copy = copyItem(pool, original);
  if (copy != nullptr && levels.push(pool, {&original, copy, errorsBefore}))
  {
    copyParameters(pool, original, *copy);
    return true;
  }
  delete copy;
  reportCannotCopySubtree(pool);
  return false;
}

void finishSubItem(KyCErrorListPool& pool, KyCInventoryItem& parent, const TCopyLevel& level)
{
  if (pool.getErrorCount() != level.errorsBefore) reportCannotCopySubtree(pool);
  if (parent.addItem(KyNInventoryIDs::THIS_NODE, level.copy) != nullptr) return;
  pool.setError(KY_MSG_CANNOT_ADD_ITEM, __LINE__, "copyTree", "%s%s", KyPlaceText(level.copy->getID()).c_str(),
                KyPlaceText(parent.getID()).c_str());
  delete level.copy;
}
}    // namespace

void KyCInventoryItem::copyTree(KyCErrorListPool& pool, KyCInventoryItem*& copy) const
{
  copy = copyItem(pool, *this);
  if (copy == nullptr) return;
  copyParameters(pool, *this, *copy);

  TLevels levels;
  const KyCInventoryItem* next = getFirstSubItem();
  while (next != nullptr || !levels.isEmpty())
  {
    if (next != nullptr)
    {
      next = beginSubItem(pool, levels, *next) ? next->getFirstSubItem() : next->getNext();
      continue;
    }
    const TCopyLevel done = levels.top();
    levels.pop();
    finishSubItem(pool, levels.isEmpty() ? *copy : *levels.top().copy, done);
    next = done.original->getNext();
  }
}
