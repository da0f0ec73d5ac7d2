// KyCBuffer.h: a growable byte buffer with a read and a write position.
//
//   KyCBuffer buffer(pool);
//   const unsigned int number = 7;
//   buffer.writeBuffer(pool, &number, 4, 0, -1);    // appends 00 00 00 07
//   unsigned int back = 0;
//   buffer.readBuffer(pool, &back, 4, 0, -1);       // 7
#pragma once

#include <cstdint>
#include <cstring>

#include "composite/KyCompositeApi.h"
#include "errorhandling/KyCErrorListPool.h"

// Owns its storage. Holds the bytes 0 .. write position - 1, at most 4294967295. An operation that fails reports and
// changes nothing: no byte, no position, no target. A buffer whose first storage could not be had works as soon as memory
// is there.
//
// Threads: one buffer is used by one thread at a time.
class KY_COMPOSITE_API KyCBuffer
{
public:
  // An empty buffer with a small first storage.
  // Errors: "Out of memory." of the pool allocator.
  explicit KyCBuffer(KyCErrorListPool& pool) noexcept;
  ~KyCBuffer();
  KyCBuffer(const KyCBuffer&) = delete;
  KyCBuffer& operator=(const KyCBuffer&) = delete;

  // Empties the buffer: both positions go back to 0. The storage is kept.
  void reset() noexcept { m_writePosition = m_readPosition = 0; }

  // Makes at least `size` bytes writable from the write position on. The storage may move.
  //
  // Errors:  "Out of memory." of the pool allocator
  //          0x01100001  more than 4294967295 bytes in all
  // Cost:    growing again and again is linear in the size reached.
  void allocateBuffer(KyCErrorListPool& pool, unsigned int size) noexcept;

  // Advances the write position by `n` bytes, which the caller has written into the storage at the write position.
  // Errors: 0x01100008  fewer bytes are allocated.
  void incrementWritePointer(KyCErrorListPool& pool, unsigned int n) noexcept;

  // Stores `size` bytes.
  //
  //   flag      0  one scalar of 1, 2, 4 or 8 bytes as the machine holds it; stored in big-endian byte order
  //             1  a byte string, stored as it is; may be a part of this buffer
  //   position  -1  appends at the write position and advances it
  //             any other, taken as unsigned: overwrites bytes held, counted from the start; the positions stay. -2 is
  //             4294967294, and a place in a buffer that holds as much
  //
  // Errors:  "Out of memory." of the pool allocator
  //          0x01100001  more than 4294967295 bytes in all
  //          0x01100002  a null source for more than 0 bytes
  //          0x01100003  another flag
  //          0x01100004  a scalar of another size, 0 included
  //          0x01100005  a position below -1, and so many bytes are not held
  //          0x01100006  the bytes at the position are not all held
  void writeBuffer(KyCErrorListPool& pool, const void* src, unsigned int size, unsigned int flag, int position) noexcept
  {
    // The short path of storing: one small scalar at the end.
    if (flag == 0 && position == -1 && src != nullptr && m_capacity - m_writePosition >= size)
    {
      unsigned char* const to = m_storage + m_writePosition;
      const unsigned char* const from = static_cast<const unsigned char*>(src);
      if (size == 1)
      {
        to[0] = from[0];
        m_writePosition += 1;
        return;
      }
      if (size == 4)
      {
        std::uint32_t value;
        std::memcpy(&value, from, 4);
        to[0] = static_cast<unsigned char>(value >> 24);
        to[1] = static_cast<unsigned char>(value >> 16);
        to[2] = static_cast<unsigned char>(value >> 8);
        to[3] = static_cast<unsigned char>(value);
        m_writePosition += 4;
        return;
      }
    }
    // And a few bytes as they are.
    if (flag == 1 && position == -1 && src != nullptr && size - 1 < SHORT && m_capacity - m_writePosition >= size)
    {
      const unsigned char* const from = static_cast<const unsigned char*>(src);
      for (unsigned int n = 0; n < size; ++n)
        m_storage[m_writePosition + n] = from[n];
      m_writePosition += size;
      return;
    }
    writeBufferSlow(pool, src, size, flag, position);
  }

  // Reads what writeBuffer stored: `size` bytes with the same flag.
  //
  //   position  -1  reads at the read position and advances it
  //             any other, taken as unsigned: reads there, counted from the start; the positions stay
  //
  // Errors:  0x01100002  a null target for more than 0 bytes
  //          0x01100003  a flag other than 0 and 1
  //          0x01100004  a scalar of another size than 1, 2, 4 or 8
  //          0x01100005  a position below -1, and so many bytes are not held
  //          0x01100007  fewer bytes are held there
  void readBuffer(KyCErrorListPool& pool, void* dst, unsigned int size, unsigned int flag, int position) noexcept
  {
    // The short path of reading: one small scalar at the read position.
    if (flag == 0 && position == -1 && dst != nullptr && m_writePosition - m_readPosition >= size)
    {
      const unsigned char* const from = m_storage + m_readPosition;
      if (size == 1)
      {
        *static_cast<unsigned char*>(dst) = from[0];
        m_readPosition += 1;
        return;
      }
      if (size == 4)
      {
        const std::uint32_t value = std::uint32_t{from[0]} << 24 | std::uint32_t{from[1]} << 16 |
                                    std::uint32_t{from[2]} << 8 | std::uint32_t{from[3]};
        std::memcpy(dst, &value, 4);
        m_readPosition += 4;
        return;
      }
    }
    if (flag == 1 && position == -1 && dst != nullptr && size - 1 < SHORT && m_writePosition - m_readPosition >= size)
    {
      unsigned char* const to = static_cast<unsigned char*>(dst);
      for (unsigned int n = 0; n < size; ++n)
        to[n] = m_storage[m_readPosition + n];
      m_readPosition += size;
      return;
    }
    readBufferSlow(pool, dst, size, flag, position);
  }

  // The storage: null only when no memory was to be had yet. Holds until the next call that makes the buffer grow.
  unsigned char* getStorage() const noexcept { return m_storage; }
  unsigned int getWritePosition() const noexcept { return m_writePosition; }    // the number of bytes held
  unsigned int getReadPosition() const noexcept { return m_readPosition; }

private:
  static constexpr unsigned int SHORT = 8;    // bytes that take less than a call
  friend class KyCBinSerializer;              // write and read whole records in place
  friend class KyCBinDeserializer;
  bool checkArguments(KyCErrorListPool& pool, const char* function, const void* bytes, unsigned int size,
                      unsigned int flag, int position) const noexcept;
  void writeBufferSlow(KyCErrorListPool& pool, const void* src, unsigned int size, unsigned int flag,
                       int position) noexcept;
  void readBufferSlow(KyCErrorListPool& pool, void* dst, unsigned int size, unsigned int flag, int position) noexcept;
  bool makeRoom(KyCErrorListPool& pool, unsigned int size, const char* function) noexcept;
  void append(KyCErrorListPool& pool, const unsigned char* src, unsigned int size, unsigned int flag) noexcept;

  unsigned char* m_storage = nullptr;
  unsigned int m_capacity = 0;
  unsigned int m_writePosition = 0;
  unsigned int m_readPosition = 0;    // never beyond the write position
};
