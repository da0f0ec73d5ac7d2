// KyCBuffer.h: a growable byte buffer with a read and a write position.
#pragma once

#include "composite/KyCompositeApi.h"
#include "errorhandling/KyCErrorListPool.h"

class KY_COMPOSITE_API KyCBuffer
{
 public:
  explicit KyCBuffer(KyCErrorListPool& pool);    // allocates its first storage from the pool; failure is recorded there
  ~KyCBuffer();
  KyCBuffer(const KyCBuffer&) = delete;
  KyCBuffer& operator=(const KyCBuffer&) = delete;

  void reset() noexcept;
  void allocateBuffer(KyCErrorListPool& pool, unsigned int size);
  void incrementWritePointer(KyCErrorListPool& pool, unsigned int n);

  // flag 0: one scalar of 1, 2, 4 or 8 bytes, stored in big-endian byte order; flag 1: a byte string.
  void writeBuffer(KyCErrorListPool& pool, const void* src, unsigned int size, unsigned int flag, int position);
  void readBuffer(KyCErrorListPool& pool, void* dst, unsigned int size, unsigned int flag, int position);

  unsigned char* getStorage() const noexcept { return m_storage; }
  unsigned int getWritePosition() const noexcept { return m_writePosition; }
  unsigned int getReadPosition() const noexcept { return m_readPosition; }

 private:
  unsigned char* m_storage = nullptr;
  unsigned int m_capacity = 0;
  unsigned int m_writePosition = 0;
  unsigned int m_readPosition = 0;
};
