#include "inventory/KyCInventoryAddress.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace
{
using TElement = KyCInventoryAddress::TElement;

// No memory can hold so many elements.
unsigned int sumOfLengths(unsigned int a, unsigned int b)
{
  if (b > UINT32_MAX - a) throw std::bad_alloc();
  return a + b;
}

void copyElements(TElement* to, const TElement* from, unsigned int count) noexcept
{
  if (count > 2)
  {
    std::memcpy(to, from, count * sizeof(TElement));
    return;
  }
  if (count > 0) to[0] = from[0];    // nearly always; less than a call costs
  if (count > 1) to[1] = from[1];
}
}    // namespace

// Room for exactly this many elements on the heap, or for one inline. False: no memory, and nothing has changed.
bool KyCInventoryAddress::reserve(unsigned int count) noexcept
{
  const std::uint64_t wanted = std::uint64_t{count} * sizeof(TElement);
  const auto size = static_cast<std::size_t>(wanted);
  if (size != wanted) return false;
  if (ownsHeapArray())
  {
    void* const block = std::realloc(m_elements, size);
    if (block == nullptr) return false;
    m_elements = static_cast<TElement*>(block);
  }
  else if (count > 1)
  {
    void* const block = std::malloc(size);
    if (block == nullptr) return false;
    m_elements = static_cast<TElement*>(block);
    m_elements[0] = m_inline;
  }
  return true;
}

void KyCInventoryAddress::resize(unsigned int count)
{
  // Never below the elements in use, and never to 0 bytes, which realloc would take for a free.
  if (!reserve(std::max({count, m_length, 1u}))) throw std::bad_alloc();
}

void KyCInventoryAddress::appendSlow(const KyCInventoryAddress& tail)
{
  const unsigned int tailLength = tail.m_length;    // the tail may be this address
  const unsigned int length = sumOfLengths(m_length, tailLength);
  resize(length);
  copyElements(m_elements + m_length, tail.m_elements, tailLength);
  m_length = length;
}

// Never null.
KyCInventoryAddress::TElement* KyCInventoryAddress::newElements(unsigned int count)
{
  const std::uint64_t size = std::uint64_t{count} * sizeof(TElement);
  void* const block = size <= SIZE_MAX ? std::malloc(static_cast<std::size_t>(size)) : nullptr;
  if (block == nullptr) throw std::bad_alloc();
  return static_cast<TElement*>(block);
}

// Two lists of elements as one address, in one allocation.
KyCInventoryAddress KyCInventoryAddress::joined(const TElement* head, unsigned int headLength, const TElement* tail,
                                                unsigned int tailLength)
{
  KyCInventoryAddress result;
  const unsigned int length = sumOfLengths(headLength, tailLength);
  if (length > 1) result.m_elements = newElements(length);
  copyElements(result.m_elements, head, headLength);
  copyElements(result.m_elements + headLength, tail, tailLength);
  result.m_length = length;
  return result;
}

KyCInventoryAddress KyCInventoryAddress::getSubAddress() const
{
  return m_length < 2 ? KyCInventoryAddress() : joined(m_elements + 1, m_length - 1, nullptr, 0);
}

KyCInventoryAddress KyCInventoryAddress::getHeadAddress() const
{
  return m_length < 2 ? KyCInventoryAddress() : joined(m_elements, m_length - 1, nullptr, 0);
}

KyCInventoryAddress KyCInventoryAddress::operator/(const KyCInventoryAddress& tail) const
{
  return joined(m_elements, m_length, tail.m_elements, tail.m_length);
}

void KyCInventoryAddress::removePrefix(const KyCInventoryAddress& prefix) noexcept
{
  const unsigned int limit = std::min(m_length, prefix.m_length);
  unsigned int shared = 0;
  while (shared < limit && sameElements(m_elements + shared, prefix.m_elements + shared, 1))
    ++shared;
  if (shared == 0) return;
  m_length -= shared;
  std::memmove(m_elements, m_elements + shared, m_length * sizeof(TElement));
}

int KyCInventoryAddress::removeSuffixElements(unsigned int count) noexcept
{
  m_length -= std::min(count, m_length);
  return static_cast<int>(m_length);
}
