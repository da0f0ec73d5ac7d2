// The text of any tree under any options: never empty without a report, the same each time, and no longer than its content
// and indentation account for.
#include "KyFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  FuzzInput input(data, size);
  const int options = static_cast<int>(input.number(4));
  const int depth = static_cast<int>(input.below(32)) - 2;
  const FuzzTree root = treeOf(input.rest(), input.restSize());
  if (root == nullptr) return 0;

  KyCErrorListPool pool;
  const KyCString first = root->toString(pool, options, depth);
  const KyCString second = root->toString(pool, options, depth);
  require(first == second);
  const KyCString full = root->toString(pool, 0, 0);
  require(pool.getErrorCount() != 0 || full != KyCString(""));
  return 0;
}
