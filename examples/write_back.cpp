// Designates two voltages, of which one is vetoed and the other one is written and adopted.
#include <cstdio>
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

bool checkVoltage(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return parameter->getDesignatedValue<int>(pool) <= 5000;
}

bool writeVoltage(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  int* const converter = static_cast<int*>(parameter->getCustomPointer());
  *converter = parameter->getDesignatedValue<int>(pool);
  return true;
}

int main()
{
  int converters[2] = {0, 0};    // stand for the hardware
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  for (unsigned int n = 1; n <= 2; ++n)
  {
    KyCInventoryParameter* const voltage = root.createParameter(pool, ANALOG_OUT[n] / VALUE, 0, "mV", true, 0);
    if (voltage != nullptr)
      voltage->setCheckAndWriteMethod(pool, checkVoltage, writeVoltage, THIS_NODE, &converters[n - 1]);
  }
  root.getParameter(ANALOG_OUT[1] / VALUE)->setDesignatedValue(pool, 3300);
  root.getParameter(ANALOG_OUT[2] / VALUE)->setDesignatedValue(pool, 9000);
  root.check(pool, &root);
  root.apply(pool, &root);

  std::printf("hardware %d %d, tree %d %d\n", converters[0], converters[1],
              root.getValue<int>(pool, ANALOG_OUT[1] / VALUE), root.getValue<int>(pool, ANALOG_OUT[2] / VALUE));
  for (unsigned int n = 0; n < pool.getEntryCount(); ++n)
    std::printf("0x%X %s: %s\n", pool.getEntry(n).code, pool.getEntry(n).function, pool.getEntry(n).text);
}
