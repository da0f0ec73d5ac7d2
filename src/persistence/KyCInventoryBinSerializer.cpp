#include "inventory/KyCInventoryBinSerializer.h"

#include <algorithm>

#include "persistence/KyBigEndian.h"
#include "persistence/KyInventorySection.h"
#include "tree/KyInventoryAccess.h"

namespace
{
// Reduced to 8 bits before it is limited, see the header.
unsigned char storedUnitLength(const KyCString& unit)
{
  return static_cast<unsigned char>(std::min(unit.length() & 0xFFu, KY_STORED_UNIT_LIMIT));
}
}    // namespace

KyCInventoryBinSerializer::KyCInventoryBinSerializer(KyCErrorListPool& pool) : KyCBinSerializer(pool) {}

KyCInventoryBinSerializer::~KyCInventoryBinSerializer() = default;

void KyCInventoryBinSerializer::handleCustomParameter(KyCErrorListPool& pool, const KyCParam* parameter)
{
  const KyCInventoryParameter& source = *KyInventoryAccess::toParameter(parameter);
  const KyCString& unit = KyInventoryAccess::getUnit(source);    // given as a C text, always: no NUL is in it
  const unsigned int unitLength = storedUnitLength(unit);
  constexpr unsigned int FIXED_SIZE = 6;    // what there is but the unit's characters
  unsigned char* to = roomFor(FIXED_SIZE + unitLength);
  if (to == nullptr) return writeFields(pool, source);

  *to++ = static_cast<unsigned char>(unitLength);
  if (unitLength != 0)
  {
    const char* const text = unit.c_str();
    unsigned int n = 0;
    do    // mostly less than a call costs
      *to++ = static_cast<unsigned char>(text[n]);
    while (++n < unitLength);
  }
  *to++ = KyInventoryAccess::isModifiable(source) ? 0xFF : 0x00;
  kyStoreBig32(to, KyInventoryAccess::getRelevance(source));
  advanceBy(FIXED_SIZE + unitLength);
}

// One by one, where the buffer has to grow.
void KyCInventoryBinSerializer::writeFields(KyCErrorListPool& pool, const KyCInventoryParameter& source)
{
  const KyCString& unit = KyInventoryAccess::getUnit(source);
  const unsigned char unitLength = storedUnitLength(unit);
  const unsigned char modifiable = source.isModifiable() ? 0xFF : 0x00;
  const unsigned int relevance = source.getRelevance();

  KyCBuffer& buffer = *getBuffer();
  buffer.writeBuffer(pool, &unitLength, sizeof unitLength, 0, -1);
  if (unitLength != 0) buffer.writeBuffer(pool, unit.c_str(), unitLength, 1, -1);
  buffer.writeBuffer(pool, &modifiable, sizeof modifiable, 0, -1);
  buffer.writeBuffer(pool, &relevance, sizeof relevance, 0, -1);
}
