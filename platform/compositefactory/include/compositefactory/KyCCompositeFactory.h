// KyCCompositeFactory.h: creates composites and drives the (de)serializers.
#pragma once

#include "composite/KyCBinDeserializer.h"
#include "composite/KyCBinSerializer.h"
#include "composite/KyCBuffer.h"
#include "composite/KyCComposite.h"
#include "compositefactory/KyCompositeFactoryApi.h"

class KY_COMPOSITEFACTORY_API KyCCompositeFactory
{
 public:
  explicit KyCCompositeFactory(KyCErrorListPool& pool);    // allocates from the pool; failure is recorded there
  KyCCompositeFactory(const KyCCompositeFactory&) = delete;
  KyCCompositeFactory& operator=(const KyCCompositeFactory&) = delete;

  // Virtual operations, in slot order.
  virtual ~KyCCompositeFactory();
  virtual KyCComposite* createComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId,
                                        const char* description, KyCComposite* parent);
  virtual bool createLibrary(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, const char* path);
  virtual bool createLibrary(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId);
  virtual KyCString searchLibOnFilesystem(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId) const;

  void setBinarySerializer(KyCErrorListPool& pool, KyCBinSerializer* serializer);
  void setBinaryDeserializer(KyCErrorListPool& pool, KyCBinDeserializer* deserializer);
  void serialize(KyCErrorListPool& pool, const KyCComposite* root, unsigned int options, KyCBuffer* buffer);
  KyCComposite* deserialize(KyCErrorListPool& pool, KyCComposite* parent, KyCBuffer* buffer);
  void serializeParameter(KyCErrorListPool& pool, KyCBuffer* buffer, const KyCParam* parameter);
  void deserializeParameter(KyCErrorListPool& pool, KyCParam*& parameter, KyCBuffer* buffer);
};
