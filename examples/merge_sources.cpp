// Makes one tree of two: what the boards say of themselves, and what the configuration of the rack knows of them.
#include <cstdio>
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

int main()
{
  KyCErrorListPool pool;
  KyCInventoryItem* found = new (pool) KyCInventoryItem(pool, ROOT, "ROOT");
  found->createParameter(pool, BOARD[1] / SERIAL_NUMBER, KyCString("AO-0117"), "", false, 1);
  found->createParameter(pool, BOARD[1] / NAME, KyCString("Analog output"), "", false, 1);

  KyCInventoryItem* configured = new (pool) KyCInventoryItem(pool, ROOT, "ROOT");
  configured->createParameter(pool, BOARD[1] / NAME, KyCString("Brakes"), "", true, 1);
  configured->createParameter(pool, BOARD[1] / LOCATION, KyCString("left door"), "", true, 1);
  configured->createParameter(pool, BOARD[2] / NAME, KyCString("Spare"), "", true, 1);

  // What both have stays as the target has it; the rest is moved, nothing is copied. The source is gone afterwards.
  constexpr unsigned int withParameters = 1;
  KyCInventoryItem::mergeTree(pool, found, configured, withParameters);
  std::printf("source: %s\n", configured == nullptr ? "taken over" : "still there");

  constexpr int idAndValue = KyCInventoryItem::MyStream::PLAIN | KyCInventoryItem::MyStream::PARAMETER_NO_TYPE |
                             KyCInventoryItem::MyStream::NO_MODIFIABLE | KyCInventoryItem::MyStream::NO_RELEVANCE;
  std::fputs(found->toString(pool, idAndValue, 0).c_str(), stdout);
  delete found;
  return pool.getErrorCount() == 0 ? 0 : 1;
}
