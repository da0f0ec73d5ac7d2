// KyCTextTable.h: the texts written to a stream so far, each with the number that names it from then on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "errorhandling/KyCErrorListPool.h"

// Belongs to a serializer. It keeps no text of its own: a text is known by its place in the buffer that holds the
// stream, so it does not matter how long the composites and parameters live.
//
// Finding a text costs one comparison when the same pointer was asked for before, which is the usual case because most
// descriptions are literals; else one hash over the text.
class KyCTextTable
{
public:
  static constexpr std::uint32_t NOT_FOUND = 0xFFFFFFFFu;

  explicit KyCTextTable(KyCErrorListPool& pool) noexcept;    // failure is recorded in the pool
  ~KyCTextTable();
  KyCTextTable(const KyCTextTable&) = delete;
  KyCTextTable& operator=(const KyCTextTable&) = delete;

  void clear() noexcept;

  // Position (from 0) of the text among those added; NOT_FOUND when it is not known. storage and size: the buffer.
  std::uint32_t find(const unsigned char* storage, std::uint32_t size, const char* text) noexcept;
  // Length in bytes of a text that find() gave.
  std::uint32_t lengthOf(std::uint32_t position) const noexcept { return m_entries[position].length; }
  // Gives the next number to the text that find() was asked for last and that now stands at offset in the buffer.
  // False, with a report, when there is no memory for it.
  bool add(KyCErrorListPool& pool, const char* text, std::uint32_t offset, std::uint32_t length) noexcept;

private:
  struct TEntry
  {
    std::uint32_t offset;
    std::uint32_t length;
    std::uint32_t hash;
  };
  struct TSeen
  {
    const char* text;
    std::uint32_t position;
  };

  static constexpr std::uint32_t MAX_PROBES = 64;    // a text without a free slot in reach is just written again

  static std::uint32_t hashOf(const char* text) noexcept;
  TSeen* seenPair(const char* text) noexcept;
  void remember(const char* text, std::uint32_t position) noexcept;
  bool isText(std::uint32_t position, const unsigned char* storage, std::uint32_t size,
              const char* text) const noexcept;
  void insertSlot(std::uint32_t position) noexcept;
  bool grow(KyCErrorListPool& pool) noexcept;
  void layOut(void* block, std::uint32_t capacity) noexcept;
  std::uint32_t mask() const noexcept { return m_capacity * 2 - 1; }

  TEntry* m_entries = nullptr;
  TSeen* m_seen =
      nullptr;    // by pointer: the last two texts asked for at each pair of places; twice as many as entries
  std::uint32_t* m_slots =
      nullptr;    // by hash, open addressing: position + 1, 0 when free; behind m_seen in its block
  std::uint32_t m_count = 0;
  std::uint32_t m_capacity = 0;    // entries; power of two
  std::uint32_t m_lastHash = 0;    // of the text that find() was asked for last
};
