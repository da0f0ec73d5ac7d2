// KyCTextTable.h: the texts written to a stream so far, each with the number that names it from then on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

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
  // As find, for a text whose memory outlives the serialization: as many bytes as have once been read there may be read
  // again without looking for their end first.
  std::uint32_t findLasting(const unsigned char* storage, std::uint32_t size, const char* text) noexcept
  {
    const TSeen* seen = seenPair(text);
    if (seen->text != text && (++seen)->text != text) return find(storage, size, text);
    const TEntry& entry = m_entries[seen->position];
    const bool isHeld = entry.length <= size && entry.offset <= size - entry.length;
    if (!isHeld || text[entry.length] != '\0' || !areEqual(storage + entry.offset, text, entry.length))
      return find(storage, size, text);
    m_lastHash = entry.hash;
    return seen->position;
  }
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

  // Names are short: a call of memcmp costs more than they do.
  static bool areEqual(const unsigned char* a, const char* b, std::uint32_t length) noexcept
  {
    constexpr std::uint32_t WORD = 8;
    std::uint64_t wordOfA;
    std::uint64_t wordOfB;
    if (length < WORD)
    {
      for (std::uint32_t n = 0; n < length; ++n)
        if (a[n] != static_cast<unsigned char>(b[n])) return false;
      return true;
    }
    for (std::uint32_t n = 0;;)
    {
      std::memcpy(&wordOfA, a + n, WORD);
      std::memcpy(&wordOfB, b + n, WORD);
      if (wordOfA != wordOfB) return false;
      n += WORD;
      if (n >= length) return true;
      if (n > length - WORD) n = length - WORD;    // the last word overlaps the one before
    }
  }

  static std::uint32_t hashOf(const char* text) noexcept;
  // The first one of the text's pair of places: literals lie close together, and two that meet do not push each other
  // out.
  TSeen* seenPair(const char* text) noexcept
  {
    const std::uint32_t address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(text));
    return m_seen + ((address * 0x9E3779B9u >> 8) & mask() & ~1u);
  }
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
