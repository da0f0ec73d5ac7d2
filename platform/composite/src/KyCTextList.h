// KyCTextList.h: the texts read from a stream so far, by number.
#pragma once

#include <cstddef>
#include <cstdint>

#include "errorhandling/KyCErrorListPool.h"

// Belongs to a deserializer. Holds a NUL-terminated copy of each text, all of them in one block, so it never takes more
// than a few times the bytes that the stream spent on them.
class KyCTextList
{
public:
  explicit KyCTextList(KyCErrorListPool& pool) noexcept;    // failure is recorded in the pool
  ~KyCTextList();
  KyCTextList(const KyCTextList&) = delete;
  KyCTextList& operator=(const KyCTextList&) = delete;

  void clear() noexcept;
  std::uint32_t getCount() const noexcept { return m_count; }

  // Texts and lengths (bytes, without the NUL) by position, 0 .. getCount()-1. A text pointer holds until the next add().
  const char* getText(std::uint32_t position) const noexcept { return m_bytes + m_starts[position]; }
  std::uint32_t getLength(std::uint32_t position) const noexcept
  {
    const std::size_t end = position + 1 == m_count ? m_byteCount : m_starts[position + 1];
    return static_cast<std::uint32_t>(end - m_starts[position] - 1);
  }

  // Copies the text; null, with "Out of memory." in the pool, when that fails.
  const char* add(KyCErrorListPool& pool, const unsigned char* text, std::uint32_t length) noexcept;

private:
  bool reserveBytes(KyCErrorListPool& pool, std::size_t size) noexcept;
  bool reserveStarts(KyCErrorListPool& pool, std::uint32_t count) noexcept;

  char* m_bytes = nullptr;
  std::size_t m_byteCapacity = 0;
  std::size_t m_byteCount = 0;
  std::size_t* m_starts = nullptr;    // of each text in m_bytes
  std::uint32_t m_startCapacity = 0;
  std::uint32_t m_count = 0;
};
