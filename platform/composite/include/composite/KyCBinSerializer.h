// KyCBinSerializer.h: writes a composite tree into a buffer.
#pragma once

#include "composite/KyCBuffer.h"
#include "composite/KyCComposite.h"
#include "composite/KyCParam.h"

class KyCTextTable;

class KY_COMPOSITE_API KyCBinSerializer
{
 public:
  explicit KyCBinSerializer(KyCErrorListPool& pool);    // allocates from the pool; failure is recorded there
  KyCBinSerializer(const KyCBinSerializer&) = delete;
  KyCBinSerializer& operator=(const KyCBinSerializer&) = delete;

  // Virtual operations, in slot order; called by KyCCompositeFactory while it walks a tree.
  virtual ~KyCBinSerializer();
  virtual void CompositeStart(KyCErrorListPool& pool, const KyCComposite* composite);
  virtual void CompositeEnd(KyCErrorListPool& pool, const KyCComposite* composite);
  virtual void CompositeParameter(KyCErrorListPool& pool, const KyCParam* parameter);
  virtual void handleCustomParameter(KyCErrorListPool& pool, const KyCParam* parameter);    // base: does nothing

  KyCBuffer* getBuffer() const noexcept { return m_buffer; }    // null outside a serialization

 private:
  friend class KyCCompositeFactory;
  void begin(KyCErrorListPool& pool, KyCBuffer* buffer);    // stream version byte, forgets the texts of the last stream
  void end() noexcept;

  KyCBuffer* m_buffer = nullptr;
  KyCTextTable* m_texts = nullptr;    // texts written so far, with their numbers
  unsigned int m_depth = 0;
};
