// KyCCompositeFactoryStream.cpp: drives the serializers over a tree. Both walks follow the links of the tree itself, so
// they take the same little stack for any depth and no memory for any number of nodes.
#include "KyCompositeFactoryMessages.h"
#include "compositefactory/KyCCompositeFactory.h"

// Ends a stream on every way out, also when an exception of a hook passes through.
template <typename TVisitor>
class KyCCompositeFactory::TStream
{
public:
  template <typename... TArguments>
  TStream(TVisitor& visitor, KyCErrorListPool& pool, KyCBuffer* buffer, TArguments... arguments)
      : m_visitor(visitor), m_isOpen(visitor.begin(pool, buffer, arguments...))
  {
  }
  ~TStream()
  {
    if (m_isOpen) m_visitor.end();
  }
  TStream(const TStream&) = delete;
  TStream& operator=(const TStream&) = delete;

  bool isOpen() const noexcept { return m_isOpen; }

private:
  TVisitor& m_visitor;
  bool m_isOpen;
};

void KyCCompositeFactory::setBinarySerializer(KyCErrorListPool&, KyCBinSerializer* serializer)
{
  m_serializer = serializer;
}

void KyCCompositeFactory::setBinaryDeserializer(KyCErrorListPool&, KyCBinDeserializer* deserializer)
{
  m_deserializer = deserializer;
}

// ---- Storing ----

bool KyCCompositeFactory::canStore(KyCErrorListPool& pool, const KyCBuffer* buffer, const char* function) const
{
  if (m_serializer == nullptr)
    pool.setError(KY_MSG_NO_SERIALIZER, __LINE__, function, nullptr);
  else if (buffer == nullptr)
    pool.setError(KY_MSG_NO_BUFFER, __LINE__, function, nullptr);
  else
    return true;
  return false;
}

void KyCCompositeFactory::serialize(KyCErrorListPool& pool, const KyCComposite* root, unsigned int, KyCBuffer* buffer)
{
  if (!canStore(pool, buffer, "serialize") || root == nullptr) return;
  KyCBinSerializer& serializer = *m_serializer;
  const TStream<KyCBinSerializer> stream(serializer, pool, buffer);
  if (stream.isOpen()) storeTree(pool, serializer, root);
}

void KyCCompositeFactory::storeTree(KyCErrorListPool& pool, KyCBinSerializer& serializer, const KyCComposite* root)
{
  const unsigned int errors = pool.getErrorCount();
  const KyCComposite* node = root;
  storeNode(pool, serializer, node);
  while (pool.getErrorCount() == errors)
  {
    const KyCComposite* next = node->getChild();
    while (next == nullptr)
    {
      serializer.CompositeEnd(pool, node);
      if (node == root || pool.getErrorCount() != errors) return;
      next = node->getSibling();
      if (next == nullptr) node = node->getParent();
    }
    node = next;
    storeNode(pool, serializer, node);
  }
}

// What stands in front of a node's children. Stops at the first report.
void KyCCompositeFactory::storeNode(KyCErrorListPool& pool, KyCBinSerializer& serializer, const KyCComposite* node)
{
  const unsigned int errors = pool.getErrorCount();
  serializer.CompositeStart(pool, node);
  const KyCParam* parameter = node->getParameterByIndex(0);
  while (parameter != nullptr && pool.getErrorCount() == errors)
  {
    serializer.CompositeParameter(pool, parameter);
    parameter = KyCBinSerializer::nextParameter(parameter);
  }
}

void KyCCompositeFactory::serializeParameter(KyCErrorListPool& pool, KyCBuffer* buffer, const KyCParam* parameter)
{
  if (!canStore(pool, buffer, "serializeParameter")) return;
  if (parameter == nullptr)
  {
    pool.setError(KY_MSG_NO_PARAMETER, __LINE__, "serializeParameter", nullptr);
    return;
  }
  KyCBinSerializer& serializer = *m_serializer;
  const TStream<KyCBinSerializer> stream(serializer, pool, buffer);
  if (stream.isOpen()) serializer.CompositeParameter(pool, parameter);
}

// ---- Reading ----

bool KyCCompositeFactory::canRead(KyCErrorListPool& pool, const KyCBuffer* buffer, const char* function) const
{
  if (m_deserializer == nullptr)
    pool.setError(KY_MSG_NO_DESERIALIZER, __LINE__, function, nullptr);
  else if (buffer == nullptr)
    pool.setError(KY_MSG_NO_BUFFER, __LINE__, function, nullptr);
  else
    return true;
  return false;
}

KyCComposite* KyCCompositeFactory::deserialize(KyCErrorListPool& pool, KyCComposite* parent, KyCBuffer* buffer)
{
  if (!canRead(pool, buffer, "deserialize")) return nullptr;
  KyCBinDeserializer& deserializer = *m_deserializer;
  const TStream<KyCBinDeserializer> stream(deserializer, pool, buffer, TRecord::START);
  return stream.isOpen() ? readTree(pool, deserializer, parent) : nullptr;
}

KyCComposite* KyCCompositeFactory::readTree(KyCErrorListPool& pool, KyCBinDeserializer& deserializer,
                                            KyCComposite* parent)
{
  const unsigned int errors = pool.getErrorCount();
  KyCComposite* root = nullptr;
  KyCComposite* node = nullptr;    // the one that is open
  while (pool.getErrorCount() == errors)
  {
    switch (deserializer.nextRecord(pool))
    {
      case TRecord::START:
        node = readNode(pool, deserializer, node != nullptr ? node : parent);
        if (root == nullptr) root = node;
        break;
      case TRecord::PARAMETER:
        readParameter(pool, deserializer, *node);
        break;
      case TRecord::END:
        deserializer.CompositeEnd(pool);
        if (node == root) return root;
        node = node->getParent();
        break;
      case TRecord::DAMAGED:
        break;
    }
  }
  return root;
}

// The new node; null, with a report, when there is none that the reading can go on with.
KyCComposite* KyCCompositeFactory::readNode(KyCErrorListPool& pool, KyCBinDeserializer& deserializer,
                                            KyCComposite* parent)
{
  const unsigned int errors = pool.getErrorCount();
  deserializer.CompositeStart(pool);
  if (pool.getErrorCount() != errors) return nullptr;
  const unsigned int classId = deserializer.m_classId;
  const unsigned int unitId = deserializer.m_unitId;
  KyCComposite* const node = createComposite(pool, classId, unitId, deserializer.m_description, parent);
  if (node == nullptr)
  {
    if (pool.getErrorCount() == errors)
      pool.setError(KY_MSG_CANNOT_CREATE, __LINE__, "deserialize", "%u%u", classId, unitId);
  }
  else if (parent != nullptr && node->getParent() != parent)
    pool.setError(KY_MSG_NOT_ATTACHED, __LINE__, "deserialize", "%u%u", classId, unitId);
  return node;
}

void KyCCompositeFactory::readParameter(KyCErrorListPool& pool, KyCBinDeserializer& deserializer, KyCComposite& node)
{
  deserializer.CompositeParameter(pool);
  KyCParam* const parameter = deserializer.takeParameter();
  if (parameter == nullptr) return;
  node.addParameter(pool, parameter);
  if (!KyCBinDeserializer::hasOwner(*parameter)) delete parameter;
}

void KyCCompositeFactory::deserializeParameter(KyCErrorListPool& pool, KyCParam*& parameter, KyCBuffer* buffer)
{
  parameter = nullptr;
  if (!canRead(pool, buffer, "deserializeParameter")) return;
  KyCBinDeserializer& deserializer = *m_deserializer;
  const TStream<KyCBinDeserializer> stream(deserializer, pool, buffer, TRecord::PARAMETER);
  if (!stream.isOpen() || deserializer.nextRecord(pool) != TRecord::PARAMETER) return;
  deserializer.CompositeParameter(pool);
  parameter = deserializer.takeParameter();
}
