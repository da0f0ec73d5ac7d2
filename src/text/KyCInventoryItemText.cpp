// The dump of a tree: the walk, and the ways in.
#include "base/KyMessageCodes.h"
#include "text/KyCTreeWriter.h"

bool KyCInventoryItem::writeIndentToStream(int depth, MyStream& stream) const { return writeIndent(depth, stream); }

// One turn of the loop writes the start of an item, goes down to its first sub-item if there is one, and otherwise
// writes closing lines on the way up until a sibling is next. The item that was asked for ends the walk: its own
// siblings are not reached. No recursion: the depth of the tree is the data's, the stack is not.
bool KyCInventoryItem::writeToStream(KyCErrorListPool& pool, int options, int depth, MyStream& stream) const
{
  KyCTreeWriter writer(pool, options, stream);
  const KyCInventoryItem* item = this;
  long long level = 0;    // of the item below this one, in units of depth
  for (;;)
  {
    const int itemDepth = deeperBy(depth, level);
    if (!writer.writeItemHead(item->getID(), item->getDescription(), itemDepth)) return false;
    if (!writer.writeParameters(*item, itemDepth)) return false;
    const KyCInventoryItem* next = item->getFirstSubItem();
    if (next != nullptr) level += writer.getStep();
    while (next == nullptr)
    {
      if (!writer.writeItemEnd(deeperBy(depth, level))) return false;
      if (item == this) return true;
      next = item->getNext();
      if (next != nullptr) break;
      item = item->getParent();
      level -= writer.getStep();
    }
    item = next;
  }
}

KyCString KyCInventoryItem::toString(KyCErrorListPool& pool, int options, int depth) const
{
  MyStream stream(false);
  KyCString text;
  if (!writeToStream(pool, options, depth, stream) || !stream.takeString(pool, text))
  {
    pool.setError(KY_MSG_CANNOT_GENERATE_STRING, __LINE__, "toString", nullptr);
    return KyCString();
  }
  return text;
}

void KyCInventoryItem::printTree(KyCErrorListPool& pool, int options, int depth) const
{
  MyStream stream(true);
  writeToStream(pool, options, depth, stream);
}
