// Any text as a difference, applied to a tree: wholly or not at all. And two trees from the input: their difference leads
// from one to the other and back.
#include <cstring>

#include "KyFuzz.h"
#include "inventorykit/KyDiff.h"
#include "inventorykit/KyPatch.h"

using namespace KyNInventoryIDs;
using KyNInventoryKit::PatchDirection;
using KyNInventoryKit::TreePointer;

namespace
{
// Small, and with something of what a patch can be about.
TreePointer target()
{
  KyCErrorListPool pool;
  TreePointer root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  root->createParameter(pool, BOARD[2] / SIZE, 4u, "B", true, 1);
  root->createParameter(pool, BOARD[2] / NAME, KyCString("AI"), "", false, 2);
  root->createParameter(pool, BOARD[2] / IOCHANNEL[1] / VOLTAGE_MAX, 10.0, "V", true, 1);
  return root;
}

void applyText(const std::string& text)
{
  KyCErrorListPool pool;
  KyNInventoryKit::Patch patch;
  if (!KyNInventoryKit::readPatch(pool, text, "input", patch)) return require(pool.getErrorCount() != 0);
  for (const PatchDirection direction : {PatchDirection::FORWARD, PatchDirection::REVERSE})
  {
    KyCErrorListPool reports;
    TreePointer tree = target();
    const std::string before = sectionOf(*tree);
    const bool mayApply = KyNInventoryKit::checkPatch(reports, *tree, patch, direction);
    require(sectionOf(*tree) == before && mayApply == (reports.getErrorCount() == 0));
    KyCErrorListPool more;
    require(KyNInventoryKit::applyPatch(more, tree, patch, direction) == mayApply);
    if (!mayApply) require(sectionOf(*tree) == before);
  }
}

TreePointer copyOf(const KyCInventoryItem& tree)
{
  KyCErrorListPool pool;
  KyCInventoryItem* copy = nullptr;
  tree.copyTree(pool, copy);
  require(pool.getErrorCount() == 0);
  return TreePointer(copy);
}

// What is stored of the trees is the same afterwards, order included.
void thereAndBack(const KyCInventoryItem& before, const KyCInventoryItem& after)
{
  const std::string json = KyNInventoryKit::differenceToJson(KyNInventoryKit::compareTrees(before, after));
  KyCErrorListPool pool;
  KyNInventoryKit::Patch patch;
  require(KyNInventoryKit::readPatch(pool, json, "difference", patch));
  TreePointer tree = copyOf(before);
  require(KyNInventoryKit::applyPatch(pool, tree, patch, PatchDirection::FORWARD));
  require(sectionOf(*tree) == sectionOf(*copyOf(after)));
  require(KyNInventoryKit::applyPatch(pool, tree, patch, PatchDirection::REVERSE));
  require(sectionOf(*tree) == sectionOf(*copyOf(before)));
}

// Twice the same tree from one input, the second one after some changes.
void changeTree(KyCInventoryItem& tree, FuzzInput& input)
{
  static const KyCInventoryAddress* const ids[] = {&BOARD, &CPU, &SIZE, &NAME};
  for (unsigned int n = input.below(16); n > 0; --n)
  {
    KyCErrorListPool pool;
    const KyCInventoryAddress item = (*ids[input.below(2)])[1 + input.below(3)];
    const KyCInventoryAddress& parameter = *ids[2 + input.below(2)];
    if (input.below(4) == 0)
    {
      const TreePointer removed(tree.getItem(item) == &tree ? nullptr : tree.getItem(item));
      if (removed != nullptr) removed->detach();
    }
    else if (KyCInventoryParameter* const found = tree.getParameter(item / parameter))
      found->setValue<int>(pool, static_cast<int>(input.number(2)));
    else
      tree.createParameter(pool, item / parameter, static_cast<int>(input.number(1)), "", false, 1);
  }
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  FuzzInput input(data, size);
  if (size != 0 && data[0] == '{')
  {
    applyText(input.restAsText());
    return 0;
  }
  const TreePointer before = target();
  const TreePointer after = target();
  changeTree(*before, input);
  changeTree(*after, input);
  thereAndBack(*before, *after);
  return 0;
}
