#include "KyNaNBits.h"

#include "KyOwnPool.h"
#include "composite/KyCBinSerializer.h"
#include "composite/KyCBuffer.h"
#include "compositefactory/KyCCompositeFactory.h"

namespace KyNInventoryKit
{
// The value is the last thing that the base library's serializer writes of a parameter, the highest byte first.
std::uint64_t storedBits(const KyCInventoryParameter& parameter)
{
  KyCErrorListPool pool;
  KyCBuffer buffer(pool);
  KyCBinSerializer serializer(pool);
  KyCCompositeFactory factory(pool);
  factory.setBinarySerializer(pool, &serializer);
  factory.serializeParameter(pool, &buffer, (const KyCParam*)&parameter);
  kyThrowIfOutOfMemory(pool);
  const unsigned int size = parameter.getType() == KyCParam::TYPE_FLOAT32 ? 4 : 8;
  std::uint64_t bits = 0;
  for (unsigned int n = size; n > 0 && buffer.getWritePosition() >= size; --n)
    bits = bits << 8 | buffer.getStorage()[buffer.getWritePosition() - n];
  return bits;
}
}    // namespace KyNInventoryKit
