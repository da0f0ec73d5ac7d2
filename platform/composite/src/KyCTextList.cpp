#include "KyCTextList.h"

#include <cstring>

#include "errorhandling/KyNPoolAllocator.h"

namespace
{
constexpr std::size_t FIRST_BYTES = 1024;
constexpr std::uint32_t FIRST_STARTS = 64;
}    // namespace

KyCTextList::KyCTextList(KyCErrorListPool& pool) noexcept
{
  if (reserveBytes(pool, 1)) reserveStarts(pool, 1);
}

KyCTextList::~KyCTextList()
{
  KyNPoolAllocator::release(m_bytes);
  KyNPoolAllocator::release(m_starts);
}

void KyCTextList::clear() noexcept
{
  m_byteCount = 0;
  m_count = 0;
}

const char* KyCTextList::add(KyCErrorListPool& pool, const unsigned char* text, std::uint32_t length) noexcept
{
  if (!reserveBytes(pool, m_byteCount + length + 1) || !reserveStarts(pool, m_count + 1)) return nullptr;
  char* const copy = m_bytes + m_byteCount;
  std::memcpy(copy, text, length);
  copy[length] = '\0';
  m_starts[m_count] = m_byteCount;
  m_byteCount += std::size_t{length} + 1;
  ++m_count;
  return copy;
}

// Both grow by doubling; no overflow, because everything kept here was read from a buffer that fits the memory.
bool KyCTextList::reserveBytes(KyCErrorListPool& pool, std::size_t size) noexcept
{
  if (size <= m_byteCapacity) return true;
  std::size_t capacity = m_byteCapacity == 0 ? FIRST_BYTES : m_byteCapacity * 2;
  if (capacity < size) capacity = size;
  void* const bytes = KyNPoolAllocator::reallocate(pool, m_bytes, capacity);
  if (bytes == nullptr) return false;
  m_bytes = static_cast<char*>(bytes);
  m_byteCapacity = capacity;
  return true;
}

bool KyCTextList::reserveStarts(KyCErrorListPool& pool, std::uint32_t count) noexcept
{
  if (count <= m_startCapacity) return true;
  const std::uint32_t capacity = m_startCapacity == 0 ? FIRST_STARTS : m_startCapacity * 2;
  void* const starts = KyNPoolAllocator::reallocate(pool, m_starts, capacity * sizeof *m_starts);
  if (starts == nullptr) return false;
  m_starts = static_cast<std::size_t*>(starts);
  m_startCapacity = capacity;
  return true;
}
