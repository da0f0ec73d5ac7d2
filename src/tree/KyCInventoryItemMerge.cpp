// Folding one tree into another: mergeTree.

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "tree/KyFrameStack.h"
#include "tree/KyPlaceText.h"

namespace
{
constexpr unsigned int FLAG_PARAMETERS = 1;

// One level of the merge: what is left of a source item, and the target item that it goes into.
struct TMergeLevel
{
  KyCInventoryItem* target;
  KyCInventoryItem* source;
  unsigned int errorsBefore;    // the pool's count when this level began: a grown one is a failure to the level above
};

using TLevels = KyFrameStack<TMergeLevel>;

void reportCannotMerge(KyCErrorListPool& pool)
{
  pool.setError(KY_MSG_CANNOT_MERGE_TREE, __LINE__, "mergeTree", nullptr);
}

// Moves the parameters that the target lacks; the others stay in the source and go with it.
void moveParameters(KyCErrorListPool& pool, KyCInventoryItem& target, KyCInventoryItem& source)
{
  KyCInventoryParameter* next = nullptr;
  for (KyCInventoryParameter* parameter = source.getParameterByOrdinalNumber(0); parameter != nullptr; parameter = next)
  {
    next = parameter->getNext();
    if (target.getParameter(parameter->getID()) != nullptr) continue;
    parameter->detach();
    if (target.addParameter(pool, KyNInventoryIDs::THIS_NODE, parameter) == nullptr)
    {
      reportCannotMerge(pool);
      delete parameter;
    }
  }
}

bool enterLevel(KyCErrorListPool& pool, TLevels& levels, KyCInventoryItem& target, KyCInventoryItem& source,
                unsigned int flags)
{
  const unsigned int errorsBefore = pool.getErrorCount();
  if (!levels.push(pool, {&target, &source, errorsBefore})) return false;
  if ((flags & FLAG_PARAMETERS) != 0) moveParameters(pool, target, source);
  return true;
}

// Settles a sub-item that was taken out of the source, or opens the level that will. False when it can do neither; the
// sub-item is destroyed then.
bool mergeSubItem(KyCErrorListPool& pool, TLevels& levels, KyCInventoryItem& target, KyCInventoryItem* subItem,
                  unsigned int flags)
{
  const KyCInventoryAddress id = subItem->getID();
  KyCInventoryItem* const counterpart = target.getItem(id);
  if (counterpart != nullptr && enterLevel(pool, levels, *counterpart, *subItem, flags)) return true;
  if (counterpart == nullptr && target.getParameter(id) != nullptr)
  {
    pool.setError(KY_MSG_ID_ALREADY_EXISTS, __LINE__, "mergeTree", "%s%s", KyPlaceText(id).c_str(),
                  KyItemPlace(target).c_str());
    return true;    // given up on purpose: in neither tree, and not destroyed
  }
  if (counterpart == nullptr && target.addItem(KyNInventoryIDs::THIS_NODE, subItem) != nullptr) return true;
  delete subItem;
  return false;
}

// Every open level fails: each reports, and what is left of its source goes.
void giveUp(KyCErrorListPool& pool, TLevels& levels)
{
  while (!levels.isEmpty())
  {
    reportCannotMerge(pool);
    delete levels.top().source;
    levels.pop();
  }
}

// The levels stand for the calls that a recursive merge would have open.
void mergeLevels(KyCErrorListPool& pool, KyCInventoryItem& target, KyCInventoryItem& source, unsigned int flags)
{
  TLevels levels;
  enterLevel(pool, levels, target, source, flags);    // the first levels need no memory
  while (!levels.isEmpty())
  {
    const TMergeLevel level = levels.top();
    KyCInventoryItem* const subItem = level.source->getFirstSubItem();
    bool failed = false;
    if (subItem != nullptr)
    {
      subItem->detach();
      failed = !mergeSubItem(pool, levels, *level.target, subItem, flags);
    }
    else
    {
      delete level.source;
      levels.pop();
      failed = pool.getErrorCount() != level.errorsBefore;
    }
    if (failed) giveUp(pool, levels);
  }
}
}    // namespace

void KyCInventoryItem::mergeTree(KyCErrorListPool& pool, KyCInventoryItem*& target, KyCInventoryItem*& source,
                                 unsigned int flags)
{
  if (target == nullptr)
    target = source;
  else if (source != nullptr && target != source)
    mergeLevels(pool, *target, *source, flags);
  source = nullptr;
}
