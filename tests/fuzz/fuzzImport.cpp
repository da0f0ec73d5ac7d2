// Any bytes as the text of a tree: a tree and no report, or reports and no tree; and what was read comes back from JSON, and
// from mark-up where this build reads it, to the same text.
#include "KyFuzz.h"
#include "inventorykit/KyFormats.h"

namespace
{
using KyNInventoryKit::Format;

void requireRoundTrip(const KyCInventoryItem& tree, Format format)
{
  KyCErrorListPool pool;
  std::string first;
  std::string second;
  require(KyNInventoryKit::exportTree(pool, tree, format, first));
  const KyNInventoryKit::TreePointer again = KyNInventoryKit::importTree(pool, first, format);
  constexpr unsigned int noMarkup = 0x1505005;
  if (again == nullptr && pool.getEntry(0).code == noMarkup) return;
  require(again != nullptr && pool.getErrorCount() == 0);
  require(KyNInventoryKit::exportTree(pool, *again, format, second) && first == second);
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (const Format format : {Format::JSON, Format::JSON_LINES, Format::MARKUP})
  {
    KyCErrorListPool pool;
    const KyNInventoryKit::TreePointer tree = KyNInventoryKit::importTree(pool, text, format);
    require((tree == nullptr) == (pool.getErrorCount() != 0));
    if (tree == nullptr) continue;
    requireRoundTrip(*tree, Format::JSON);
    requireRoundTrip(*tree, Format::MARKUP);
  }
  return 0;
}
