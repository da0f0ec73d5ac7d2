// Any bytes as a memory block with a section in it: a tree and no report, or reports and no tree, or neither; and what
// was read can be stored again and reads back to the same bytes.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "inventory/KyInventoryTree.h"

namespace
{
void require(bool condition)
{
  if (!condition) std::abort();
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  KyCErrorListPool pool;
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, data, static_cast<unsigned int>(size), root);
  require(root == nullptr || pool.getErrorCount() == 0);
  if (root == nullptr) return 0;

  KyCBuffer first(pool);
  KyCInventoryData::generateInventorySection(pool, first, root);
  require(pool.getErrorCount() == 0);
  KyCInventoryItem* again = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, first.getStorage(), first.getWritePosition(), again);
  require(again != nullptr);
  KyCBuffer second(pool);
  KyCInventoryData::generateInventorySection(pool, second, again);
  require(first.getWritePosition() == second.getWritePosition() &&
          std::memcmp(first.getStorage(), second.getStorage(), first.getWritePosition()) == 0);
  delete again;
  delete root;
  return 0;
}
