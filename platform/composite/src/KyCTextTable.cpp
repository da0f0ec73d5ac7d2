#include "KyCTextTable.h"

#include <cstring>

#include "errorhandling/KyNPoolAllocator.h"

namespace
{
// As many pairs of places for the texts found last: three that share one push each other out.
constexpr std::uint32_t FIRST_CAPACITY = 128;
}    // namespace

KyCTextTable::KyCTextTable(KyCErrorListPool& pool) noexcept { grow(pool); }

KyCTextTable::~KyCTextTable()
{
  KyNPoolAllocator::release(m_entries);
  KyNPoolAllocator::release(m_seen);
}

// Starts small again: a small stream behind a large one does not pay for wiping a large table.
void KyCTextTable::clear() noexcept
{
  m_count = 0;
  layOut(m_seen, FIRST_CAPACITY);
}

// FNV-1a; the texts are short, and bounded probing keeps texts made to collide from costing more than being repeated.
std::uint32_t KyCTextTable::hashOf(const char* text) noexcept
{
  std::uint32_t hash = 2166136261u;
  for (; *text != '\0'; ++text)
    hash = (hash ^ static_cast<unsigned char>(*text)) * 16777619u;
  return hash ^ hash >> 15;
}

void KyCTextTable::remember(const char* text, std::uint32_t position) noexcept
{
  TSeen* const pair = seenPair(text);
  pair[1] = pair[0];
  pair[0] = {text, position};
}

bool KyCTextTable::isText(std::uint32_t position, const unsigned char* storage, std::uint32_t size,
                          const char* text) const noexcept
{
  const TEntry& entry = m_entries[position];
  if (entry.length > size || entry.offset > size - entry.length) return false;    // a hook has emptied the buffer
  const char* const known = reinterpret_cast<const char*>(storage + entry.offset);
  return std::strncmp(known, text, entry.length) == 0 && text[entry.length] == '\0';
}

std::uint32_t KyCTextTable::find(const unsigned char* storage, std::uint32_t size, const char* text) noexcept
{
  const TSeen* const pair = seenPair(text);
  for (const TSeen* seen = pair; seen != pair + 2; ++seen)
  {
    if (seen->text != text || !isText(seen->position, storage, size, text)) continue;
    m_lastHash = m_entries[seen->position].hash;
    return seen->position;
  }

  m_lastHash = hashOf(text);
  for (std::uint32_t probe = 0; probe < MAX_PROBES; ++probe)
  {
    const std::uint32_t slot = m_slots[(m_lastHash + probe) & mask()];
    if (slot == 0) return NOT_FOUND;
    if (m_entries[slot - 1].hash == m_lastHash && isText(slot - 1, storage, size, text))
    {
      remember(text, slot - 1);
      return slot - 1;
    }
  }
  return NOT_FOUND;
}

bool KyCTextTable::add(KyCErrorListPool& pool, const char* text, std::uint32_t offset, std::uint32_t length) noexcept
{
  if (m_count == m_capacity && !grow(pool)) return false;
  m_entries[m_count] = {offset, length, m_lastHash};
  insertSlot(m_count);
  remember(text, m_count);
  ++m_count;
  return true;
}

void KyCTextTable::insertSlot(std::uint32_t position) noexcept
{
  for (std::uint32_t probe = 0; probe < MAX_PROBES; ++probe)
  {
    std::uint32_t& slot = m_slots[(m_entries[position].hash + probe) & mask()];
    if (slot != 0) continue;
    slot = position + 1;
    return;
  }
}

// No size overflows: a text takes at least 3 bytes of a stream below 2^32 bytes, so 2^31 entries are enough for any; and
// where addresses have 32 bits, memory is exhausted long before.
bool KyCTextTable::grow(KyCErrorListPool& pool) noexcept
{
  const std::uint32_t capacity = m_capacity == 0 ? FIRST_CAPACITY : m_capacity * 2;
  void* const block = KyNPoolAllocator::allocate(pool, std::size_t{capacity} * 2 * (sizeof(TSeen) + sizeof *m_slots));
  if (block == nullptr) return false;
  void* const entries = KyNPoolAllocator::reallocate(pool, m_entries, capacity * sizeof(TEntry));
  if (entries == nullptr)
  {
    KyNPoolAllocator::release(block);
    return false;
  }
  KyNPoolAllocator::release(m_seen);
  m_entries = static_cast<TEntry*>(entries);
  layOut(block, capacity);
  for (std::uint32_t position = 0; position < m_count; ++position)
    insertSlot(position);
  return true;
}

// The block is large enough for the capacity; everything in it is free afterwards.
void KyCTextTable::layOut(void* block, std::uint32_t capacity) noexcept
{
  const std::size_t count = std::size_t{capacity} * 2;
  std::memset(block, 0, count * (sizeof(TSeen) + sizeof *m_slots));
  m_seen = static_cast<TSeen*>(block);
  m_slots = reinterpret_cast<std::uint32_t*>(m_seen + count);
  m_capacity = capacity;
}
