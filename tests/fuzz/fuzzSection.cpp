// Any bytes as a memory block with a section in it: a tree and no report, or reports and no tree, or neither; and what
// was read can be stored again and reads back to the same bytes.
#include "KyFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  const FuzzTree root = treeOf(data, size);
  if (root == nullptr) return 0;
  const std::string first = sectionOf(*root);
  const FuzzTree again = treeOf(reinterpret_cast<const std::uint8_t*>(first.data()), first.size());
  require(again != nullptr && sectionOf(*again) == first);
  return 0;
}
