#include "inventory/KyCInventoryItemFactory.h"

#include "base/KyMessageCodes.h"
#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyCInventoryBinDeSerializer.h"
#include "inventory/KyCInventoryBinSerializer.h"
#include "tree/KyInventoryAccess.h"

namespace
{
// The one refusal after which the child has another owner.
constexpr int ATTACH_HAS_PARENT = -3;
}    // namespace

KyCInventoryItemFactory::KyCInventoryItemFactory(KyCErrorListPool& pool) : KyCCompositeFactory(pool) {}

KyCInventoryItemFactory::~KyCInventoryItemFactory() = default;

KyCComposite* KyCInventoryItemFactory::createComposite(KyCErrorListPool& pool, unsigned int classId,
                                                       unsigned int unitId, const char* description,
                                                       KyCComposite* parent)
{
  KyCInventoryItem* const item = new (pool) KyCInventoryItem(pool, KyCInventoryAddress(classId, unitId), description);
  KyCComposite* const node = KyInventoryAccess::toComposite(item);
  if (parent == nullptr) return node;

  const int result = parent->attach(node);    // refuses a null one, too
  if (result == 0) return node;
  if (result != ATTACH_HAS_PARENT) delete item;
  pool.setError(KY_MSG_CANNOT_ATTACH_COMPOSITE, __LINE__, "createComposite", "%d", result);
  return nullptr;
}

void KyCInventoryItemFactory::serialize(KyCErrorListPool& pool, KyCBuffer* buffer, const KyCInventoryItem* root)
{
  unsigned int errors = pool.getErrorCount();
  KyCInventoryBinSerializer serializer(pool);
  if (pool.getErrorCount() != errors)
  {
    pool.setError(KY_MSG_CANNOT_CREATE_SERIALIZER, __LINE__, "serialize", nullptr);
    return;
  }
  setBinarySerializer(pool, &serializer);
  errors = pool.getErrorCount();
  KyCCompositeFactory::serialize(pool, KyInventoryAccess::toComposite(root), 0, buffer);
  if (pool.getErrorCount() != errors) pool.setError(KY_MSG_CANNOT_SERIALIZE_TREE, __LINE__, "serialize", nullptr);
  setBinarySerializer(pool, nullptr);
}

void KyCInventoryItemFactory::deserialize(KyCErrorListPool& pool, KyCInventoryItem*& root, KyCBuffer* buffer)
{
  unsigned int errors = pool.getErrorCount();
  KyCInventoryBinDeSerializer deserializer(pool);
  if (pool.getErrorCount() != errors)
  {
    pool.setError(KY_MSG_CANNOT_CREATE_SERIALIZER, __LINE__, "deserialize", nullptr);    // this one, see the header
    return;
  }
  setBinaryDeserializer(pool, &deserializer);
  errors = pool.getErrorCount();
  root = KyInventoryAccess::toItem(KyCCompositeFactory::deserialize(pool, nullptr, buffer));
  if (pool.getErrorCount() != errors) pool.setError(KY_MSG_CANNOT_DESERIALIZE_TREE, __LINE__, "deserialize", nullptr);
  setBinaryDeserializer(pool, nullptr);
}

void KyCInventoryItemFactory::serializeInventoryParameter(KyCErrorListPool& pool, KyCBuffer* buffer,
                                                          const KyCInventoryParameter* parameter)
{
  unsigned int errors = pool.getErrorCount();
  KyCInventoryBinSerializer serializer(pool);
  if (pool.getErrorCount() != errors)
  {
    pool.setError(KY_MSG_CANNOT_CREATE_SERIALIZER, __LINE__, "serializeInventoryParameter", nullptr);
    return;
  }
  setBinarySerializer(pool, &serializer);
  errors = pool.getErrorCount();
  serializeParameter(pool, buffer, KyInventoryAccess::toParam(parameter));
  if (pool.getErrorCount() != errors)
    pool.setError(KY_MSG_CANNOT_SERIALIZE_PARAMETER, __LINE__, "serializeInventoryParameter", nullptr);
  setBinarySerializer(pool, nullptr);
}

void KyCInventoryItemFactory::deserializeInventoryParameter(KyCErrorListPool& pool, KyCInventoryParameter*& parameter,
                                                            KyCBuffer* buffer)
{
  unsigned int errors = pool.getErrorCount();
  KyCInventoryBinDeSerializer deserializer(pool);
  if (pool.getErrorCount() != errors)
  {
    pool.setError(KY_MSG_CANNOT_CREATE_DESERIALIZER, __LINE__, "deserializeInventoryParameter", nullptr);
    return;
  }
  setBinaryDeserializer(pool, &deserializer);
  errors = pool.getErrorCount();
  KyCParam* result = nullptr;
  deserializeParameter(pool, result, buffer);
  parameter = KyInventoryAccess::toParameter(result);
  if (pool.getErrorCount() != errors)
    pool.setError(KY_MSG_CANNOT_DESERIALIZE_PARAMETER, __LINE__, "deserializeInventoryParameter", nullptr);
  setBinaryDeserializer(pool, nullptr);
}
