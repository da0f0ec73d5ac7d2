// Any text as an address, as programs and as people write them: what was read prints to a text that reads back the same.
#include "KyFuzz.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyFind.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  const std::string text(reinterpret_cast<const char*>(data), size);
  KyCInventoryAddress address;
  address.readFromString(KyCString(text.c_str()));
  KyCInventoryAddress again;
  again.readFromString(address.toString());
  require(address == again);

  KyCErrorListPool pool;
  KyCInventoryAddress typed;
  const bool isRead = KyNInventoryKit::readAddress(pool, text, typed);
  require(isRead == (pool.getErrorCount() == 0));
  KyCInventoryAddress typedAgain;
  if (isRead)
    require(KyNInventoryKit::readAddress(pool, KyNInventoryKit::addressText(typed), typedAgain) && typed == typedAgain);

  KyCErrorListPool reports;
  KyNInventoryKit::Query query;
  require(KyNInventoryKit::readPattern(reports, text, query) == (reports.getErrorCount() == 0));
  KyCErrorListPool more;
  require(KyNInventoryKit::readCondition(more, text, query) == (more.getErrorCount() == 0));
  return 0;
}
