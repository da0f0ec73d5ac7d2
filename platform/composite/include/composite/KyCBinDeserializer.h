// KyCBinDeserializer.h: reads a composite tree from a buffer.
#pragma once

#include "composite/KyCBuffer.h"
#include "composite/KyCComposite.h"
#include "composite/KyCParam.h"

class KyCTextList;

class KY_COMPOSITE_API KyCBinDeserializer
{
 public:
  explicit KyCBinDeserializer(KyCErrorListPool& pool);    // allocates from the pool; failure is recorded there
  KyCBinDeserializer(const KyCBinDeserializer&) = delete;
  KyCBinDeserializer& operator=(const KyCBinDeserializer&) = delete;

  // Virtual operations, in slot order; called by KyCCompositeFactory, each when the record of that kind is next in the
  // buffer.
  virtual ~KyCBinDeserializer();
  virtual void CompositeStart(KyCErrorListPool& pool);
  virtual void CompositeEnd(KyCErrorListPool& pool);
  virtual void CompositeParameter(KyCErrorListPool& pool);
  virtual KyCParam* createCustomParameter(KyCErrorListPool& pool, unsigned int id, unsigned int type, const char* description);
  virtual void handleCustomParameter(KyCErrorListPool& pool, KyCParam* parameter);    // base: does nothing

 protected:
  KyCBuffer* m_buffer = nullptr;    // being read; null outside a deserialization

 private:
  friend class KyCCompositeFactory;
  // What the factory needs while it drives: the kind of the next record, and what the last record said.
  enum class TRecord { START, PARAMETER, END, DAMAGED };
  void begin(KyCErrorListPool& pool, KyCBuffer* buffer);
  TRecord nextRecord(KyCErrorListPool& pool);
  void end() noexcept;

  KyCTextList* m_texts = nullptr;           // texts read so far, by number
  unsigned int m_classId = 0;               // of the last CompositeStart
  unsigned int m_unitId = 0;
  const char* m_description = "";
  KyCParam* m_parameter = nullptr;          // of the last CompositeParameter; the factory takes it
  unsigned int m_depth = 0;
};
