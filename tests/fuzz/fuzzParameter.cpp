// Any bytes as the stream of one parameter: what is read without a report is stored to bytes that read back the same.
#include "KyFuzz.h"

namespace
{
using Parameter = std::unique_ptr<KyCInventoryParameter>;

Parameter read(KyCErrorListPool& pool, const void* data, std::size_t size)
{
  KyCBuffer buffer(pool);
  buffer.writeBuffer(pool, data, static_cast<unsigned int>(size), 1, -1);
  KyCInventoryItemFactory factory(pool);
  KyCInventoryParameter* parameter = nullptr;
  factory.deserializeInventoryParameter(pool, parameter, &buffer);
  return Parameter(parameter);
}

std::string stored(const KyCInventoryParameter& parameter)
{
  KyCErrorListPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  factory.serializeInventoryParameter(pool, &buffer, &parameter);
  require(pool.getErrorCount() == 0);
  return std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  KyCErrorListPool pool;
  const Parameter parameter = read(pool, data, size);
  if (pool.getErrorCount() != 0) return 0;
  require(parameter != nullptr);
  const std::string first = stored(*parameter);
  const Parameter again = read(pool, first.data(), first.size());
  require(pool.getErrorCount() == 0 && again != nullptr && stored(*again) == first);
  return 0;
}
