// KyCBuffer.cpp: growing, and the general path of writing and reading.
#include "composite/KyCBuffer.h"

#include <functional>

#include "KyCompositeMessages.h"
#include "errorhandling/KyNPoolAllocator.h"

namespace
{

constexpr unsigned int FIRST_CAPACITY = 128;
constexpr unsigned int LARGEST_CAPACITY = 0xFFFFFFFFu;
constexpr unsigned int FLAG_SCALAR = 0;
constexpr unsigned int FLAG_BYTES = 1;

constexpr bool isScalarSize(unsigned int size) noexcept { return size == 1 || size == 2 || size == 4 || size == 8; }

// From the machine's byte order to the stored one and back.
void copyScalar(unsigned char* to, const unsigned char* from, unsigned int size) noexcept
{
  unsigned char copy[8];    // a scalar may be overwritten by itself
  for (unsigned int n = 0; n < size; ++n)
  {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    copy[n] = from[n];
#else
    copy[n] = from[size - 1 - n];
#endif
  }
  // cppcheck-suppress uninitvar ; as many bytes as the loop has filled
  std::memcpy(to, copy, size);
}

void copyBytes(unsigned char* to, const unsigned char* from, unsigned int size, unsigned int flag) noexcept
{
  if (flag == FLAG_SCALAR)
    copyScalar(to, from, size);
  else if (size != 0)
    std::memmove(to, from, size);
}

}    // namespace

KyCBuffer::KyCBuffer(KyCErrorListPool& pool) noexcept
    : m_storage(static_cast<unsigned char*>(KyNPoolAllocator::allocate(pool, FIRST_CAPACITY)))
{
  if (m_storage != nullptr) m_capacity = FIRST_CAPACITY;
}

KyCBuffer::~KyCBuffer() { KyNPoolAllocator::release(m_storage); }

// ---- Room ----

bool KyCBuffer::makeRoom(KyCErrorListPool& pool, unsigned int size, const char* function) noexcept
{
  if (size <= m_capacity - m_writePosition) return true;
  if (size > LARGEST_CAPACITY - m_writePosition)
  {
    pool.setError(KY_MSG_BUFFER_TOO_LARGE, __LINE__, function, "%u%u", m_writePosition, size);
    return false;
  }
  const unsigned int needed = m_writePosition + size;
  std::uint64_t capacity = std::uint64_t{m_capacity} + m_capacity / 2;
  if (capacity < FIRST_CAPACITY) capacity = FIRST_CAPACITY;
  if (capacity < needed) capacity = needed;
  if (capacity > LARGEST_CAPACITY) capacity = LARGEST_CAPACITY;

  const std::size_t bytes = static_cast<std::size_t>(capacity);
  void* const storage = m_storage == nullptr ? KyNPoolAllocator::allocate(pool, bytes)
                                             : KyNPoolAllocator::reallocate(pool, m_storage, bytes);
  if (storage == nullptr) return false;
  m_storage = static_cast<unsigned char*>(storage);
  m_capacity = static_cast<unsigned int>(capacity);
  return true;
}

void KyCBuffer::allocateBuffer(KyCErrorListPool& pool, unsigned int size) noexcept
{
  makeRoom(pool, size, "allocateBuffer");
}

void KyCBuffer::incrementWritePointer(KyCErrorListPool& pool, unsigned int n) noexcept
{
  if (n > m_capacity - m_writePosition)
  {
    pool.setError(KY_MSG_BUFFER_INCREMENT, __LINE__, "incrementWritePointer", "%u%u%u", m_writePosition, n, m_capacity);
    return;
  }
  m_writePosition += n;
}

// ---- Writing and reading ----

bool KyCBuffer::checkArguments(KyCErrorListPool& pool, const char* function, const void* bytes, unsigned int size,
                               unsigned int flag, int position) const noexcept
{
  if (flag != FLAG_SCALAR && flag != FLAG_BYTES)
    pool.setError(KY_MSG_BUFFER_FLAG, __LINE__, function, "%u", flag);
  else if (flag == FLAG_SCALAR && !isScalarSize(size))
    pool.setError(KY_MSG_BUFFER_SCALAR, __LINE__, function, "%u", size);
  else if (position < -1 && static_cast<unsigned int>(position) > m_writePosition)
    pool.setError(KY_MSG_BUFFER_POSITION, __LINE__, function, "%d", position);
  else if (bytes == nullptr && size != 0)
    pool.setError(KY_MSG_BUFFER_NULL, __LINE__, function, "%u", size);
  else
    return true;
  return false;
}

void KyCBuffer::append(KyCErrorListPool& pool, const unsigned char* src, unsigned int size, unsigned int flag) noexcept
{
  // A source inside the storage moves with it.
  const std::less<const unsigned char*> before;
  const bool isInside = m_storage != nullptr && !before(src, m_storage) && before(src, m_storage + m_capacity);
  const std::size_t offset = isInside ? static_cast<std::size_t>(src - m_storage) : 0;
  if (!makeRoom(pool, size, "writeBuffer")) return;
  copyBytes(m_storage + m_writePosition, isInside ? m_storage + offset : src, size, flag);
  m_writePosition += size;
}

void KyCBuffer::writeBufferSlow(KyCErrorListPool& pool, const void* src, unsigned int size, unsigned int flag,
                                int position) noexcept
{
  if (!checkArguments(pool, "writeBuffer", src, size, flag, position)) return;
  const unsigned char* const from = static_cast<const unsigned char*>(src);
  if (position == -1)
  {
    append(pool, from, size, flag);
    return;
  }
  const unsigned int at = static_cast<unsigned int>(position);
  if (at > m_writePosition || size > m_writePosition - at)
  {
    pool.setError(KY_MSG_BUFFER_WRITE, __LINE__, "writeBuffer", "%u%u%u", size, at, m_writePosition);
    return;
  }
  if (size != 0) copyBytes(m_storage + at, from, size, flag);
}

void KyCBuffer::readBufferSlow(KyCErrorListPool& pool, void* dst, unsigned int size, unsigned int flag,
                               int position) noexcept
{
  if (!checkArguments(pool, "readBuffer", dst, size, flag, position)) return;
  const unsigned int at = position == -1 ? m_readPosition : static_cast<unsigned int>(position);
  if (at > m_writePosition || size > m_writePosition - at)
  {
    pool.setError(KY_MSG_BUFFER_READ, __LINE__, "readBuffer", "%u%u%u", size, at, m_writePosition);
    return;
  }
  if (size != 0) copyBytes(static_cast<unsigned char*>(dst), m_storage + at, size, flag);
  if (position == -1) m_readPosition += size;
}
