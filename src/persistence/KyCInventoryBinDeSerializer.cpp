#include "inventory/KyCInventoryBinDeSerializer.h"

#include <cstring>

#include "base/KyMessageCodes.h"
#include "errorhandling/KyNPoolAllocator.h"
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
