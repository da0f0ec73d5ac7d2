#include "inventory/KyCInventoryBinDeSerializer.h"

#include <cstring>

#include "base/KyMessageCodes.h"
#include "errorhandling/KyNPoolAllocator.h"
#include "persistence/KyBigEndian.h"
#include "persistence/KyInventorySection.h"
#include "tree/KyInventoryAccess.h"

KyCInventoryBinDeSerializer::KyCInventoryBinDeSerializer(KyCErrorListPool& pool) : KyCBinDeserializer(pool)
{
  // A plain parameter in a damaged stream would hang in the tree and be taken for an inventory parameter.
  m_customParametersOnly = true;
}

KyCInventoryBinDeSerializer::~KyCInventoryBinDeSerializer() = default;

KyCParam* KyCInventoryBinDeSerializer::createCustomParameter(KyCErrorListPool& pool, unsigned int id, unsigned int type,
                                                             const char* description)
{
  return KyInventoryAccess::toParam(KyInventoryAccess::newParameter(pool, id, description, type));
}

void KyCInventoryBinDeSerializer::handleCustomParameter(KyCErrorListPool& pool, KyCParam* parameter)
{
  KyCInventoryParameter& target = *KyInventoryAccess::toParameter(parameter);
  if (!readWhole(pool, target)) readFields(pool, target);
}

// All at once when all of it is there, and sound; false: nothing was read.
bool KyCInventoryBinDeSerializer::readWhole(KyCErrorListPool& pool, KyCInventoryParameter& target)
{
  constexpr unsigned int FIXED_SIZE = 6;    // what there is but the unit's characters
  const unsigned char* const bytes = getUnread();
  const unsigned int count = getUnreadCount();
  if (count < FIXED_SIZE || bytes[0] > KY_STORED_UNIT_LIMIT || count - FIXED_SIZE < bytes[0]) return false;

  const unsigned int unitLength = bytes[0];
  const char* const unit = reinterpret_cast<const char*>(bytes + 1);
  unsigned int length = 0;
  while (length < unitLength && unit[length] != '\0')
    ++length;
  KyInventoryAccess::setUnit(pool, target, unit, length);
  KyInventoryAccess::setFlags(target, bytes[1 + unitLength] != 0, kyLoadBig32(bytes + 2 + unitLength));
  advance(FIXED_SIZE + unitLength);
  return true;
}

void KyCInventoryBinDeSerializer::readFields(KyCErrorListPool& pool, KyCInventoryParameter& target)
{
  // A read that fails leaves its target alone, so everything starts with the value that then counts.
  unsigned char unitLength = 0;
  m_buffer->readBuffer(pool, &unitLength, sizeof unitLength, 0, -1);
  if (unitLength > KY_STORED_UNIT_LIMIT)
  {
    pool.setError(KY_MSG_UNIT_TOO_LONG, __LINE__, "handleCustomParameter", "%d",
                  static_cast<int>(KY_STORED_UNIT_LIMIT));
    return;
  }

  char unit[KY_STORED_UNIT_LIMIT + 1];
  std::memset(unit, 0, unitLength + 1u);
  if (unitLength != 0) m_buffer->readBuffer(pool, unit, unitLength, 1, -1);
  KyInventoryAccess::setUnit(pool, target, unit, KyCString::strlen(unit));

  unsigned char modifiable = 0;
  m_buffer->readBuffer(pool, &modifiable, sizeof modifiable, 0, -1);
  target.setModifiableFlag(modifiable != 0);

  unsigned int relevance = 0;
  m_buffer->readBuffer(pool, &relevance, sizeof relevance, 0, -1);
  target.setRelevance(relevance);
}
