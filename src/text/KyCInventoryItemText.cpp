// The dump of a tree: the walk, and the ways in.
#include "base/KyMessageCodes.h"
#include "text/KyCTreeWriter.h"

bool KyCInventoryItem::writeIndentToStream(int depth, MyStream& stream) const
{
  return KyCDumpOutput::TPieces(stream, false).indent(depth);
}

bool KyCInventoryItem::writeToStream(KyCErrorListPool& pool, int options, int depth, MyStream& stream) const
{
  KyCTreeWriter writer(pool, options, stream, stream.m_print);
  const bool written = writer.writeTree(*this, depth);
  return writer.finish() && written;
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
