// Builds a tree, stores it as a section, reads it back and prints it.
#include <cstdio>
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;
int main()
{
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  root.createParameter(pool, BOARD[2] / IOCHANNEL[1] / VOLTAGE_MAX, 10.0, "V", true, 1);
  KyCBuffer section(pool);
  KyCInventoryData::generateInventorySection(pool, section, &root);
  KyCInventoryItem* copy = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, section.getStorage(), section.getWritePosition(), copy);
  if (copy != nullptr) std::fputs(copy->toString(pool, 0, 0).c_str(), stdout);
  delete copy;
}
