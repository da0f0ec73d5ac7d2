// Keeps once what many boards have in common, and finds it below each of them.
#include <cstdio>
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

int main()
{
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");

  // What a board of this type is like, and two boards of the type.
  root.createParameter(pool, SHARED_DATA[7] / NAME, KyCString("Analog output"), "", false, 1);
  root.createParameter(pool, SHARED_DATA[7] / IOCHANNEL[1] / VOLTAGE_MAX, 10.0, "V", false, 1);
  for (unsigned int slot = 1; slot <= 2; ++slot)
  {
    root.createParameter(pool, BOARD[slot] / SHARED_DATA_INDEX, 7u, "", false, 1);
    root.createParameter(pool, BOARD[slot] / IOCHANNEL[1] / GAIN, 1.0 * slot, "", true, 1);
  }
  root.linkSharedData(pool, nullptr);    // once, after building or reading: links are not stored

  for (unsigned int slot = 1; slot <= 2; ++slot)
  {
    const KyCInventoryAddress channel = BOARD[slot] / IOCHANNEL[1];
    std::printf("%s %u: gain %g, up to %g V\n", root.getValue<const char*>(pool, BOARD[slot] / NAME), slot,
                root.getValue<double>(pool, channel / GAIN), root.getValue<double>(pool, channel / VOLTAGE_MAX));
  }
  return pool.getErrorCount() == 0 ? 0 : 1;
}
