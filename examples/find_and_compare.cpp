// Finds values by pattern and condition, compares two trees, and carries the changes over as a patch.
#include <cstdio>
#include <string>
#include "inventory/KyInventoryTree.h"
#include "inventorykit/KyInventoryKit.h"
using namespace KyNInventoryIDs;
using namespace KyNInventoryKit;

TreePointer rackWithThreeChannels(KyCErrorListPool& pool)
{
  TreePointer rack(new (pool) KyCInventoryItem(pool, ROOT, "ROOT"));    // deletes the tree when it goes
  for (unsigned int channel = 1; channel <= 3; ++channel)
    rack->createParameter(pool, BOARD[2] / IOCHANNEL[channel] / VOLTAGE_MAX, 4.0 * channel, "V", true, 1);
  return rack;
}

int main()
{
  KyCErrorListPool pool;
  const TreePointer before = rackWithThreeChannels(pool);
  const TreePointer after = rackWithThreeChannels(pool);
  after->setValue(pool, BOARD[2] / IOCHANNEL[3] / VOLTAGE_MAX, 10.0);
  after->createParameter(pool, BOARD[2] / SERIAL_NUMBER, KyCString("AO-0117"), "", false, 0);

  // As `kyinventory find`: where to look, and what must be true there.
  Query query;
  if (!readPattern(pool, "**/VOLTAGE_MAX", query) || !readCondition(pool, ". > 5", query)) return 1;
  AddressTexts addresses;
  for (const Node& node : find(*after, query))
    std::printf("%s = %s %s\n", addresses.of(node).c_str(), valueText(*node.parameter).c_str(),
                node.parameter->getUnit());

  // As `kyinventory diff`: a difference looks into both trees as long as it lives.
  const Difference difference = compareTrees(*before, *after);
  for (const Change& change : difference.changes())
    std::printf("%s: %s\n", difference.addressOf(change).c_str(), changeText(change).c_str());

  // As `kyinventory patch`: the same changes for another tree, all of them or none.
  Patch patch;
  TreePointer other = rackWithThreeChannels(pool);
  const bool isPatched = readPatch(pool, differenceToJson(difference), "changes", patch) &&
                         applyPatch(pool, other, patch, PatchDirection::FORWARD);
  std::printf("%s\n", isPatched && firstDifference(*other, *after).empty() ? "patched: equal" : "not equal");
  return pool.getErrorCount() == 0 ? 0 : 1;
}
