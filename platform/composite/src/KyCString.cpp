// KyCString.cpp: where the text of a string lives and how it is shared.
#include "composite/KyCString.h"

#include <charconv>
#include <cstdlib>
#include <new>

#include "KyCompositeMessages.h"
#include "errorhandling/KyNPoolAllocator.h"

// ---- The shared block ----

bool KyCString::fitsAddressSpace(std::uint64_t capacity) noexcept
{
  return capacity <= 0xFFFFFFFFu && capacity < SIZE_MAX - sizeof(TBlock);
}

KyCString::TBlock* KyCString::startBlock(void* memory, unsigned int capacity) noexcept
{
  TBlock* const block = new (memory) TBlock;
  block->references.store(1, std::memory_order_relaxed);
  block->length = 0;
  block->capacity = capacity;
  return block;
}

KyCString::TBlock* KyCString::newBlock(std::uint64_t capacity)
{
  if (!fitsAddressSpace(capacity)) throw std::bad_alloc();
  void* const memory = ::operator new(sizeof(TBlock) + static_cast<std::size_t>(capacity) + 1);
  return startBlock(memory, static_cast<unsigned int>(capacity));
}

void KyCString::release() noexcept
{
  TBlock* const old = block();
  // Who holds the only reference needs no locked instruction: nobody else can make another one meanwhile.
  if (old->isShared() && old->references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  const bool isTakenOver = old->capacity == 0;
  old->~TBlock();
  if (isTakenOver)
    std::free(old);
  else
    ::operator delete(old);
}

// ---- Storing a text ----

unsigned int KyCString::textLength(const char* text)
{
  if (text == nullptr) return 0;
  const std::size_t length = std::strlen(text);
  if (length > 0xFFFFFFFFu) throw std::bad_alloc();
  return static_cast<unsigned int>(length);
}

std::uint64_t KyCString::blockBits(TBlock* block) noexcept { return reinterpret_cast<std::uintptr_t>(block); }

// For a string that is still empty.
void KyCString::create(const char* text, unsigned int length)
{
  if (length <= INLINE_CAPACITY)
    m_bits = packInline(text, length);
  else
    adopt(newBlock(length), text, length);
}

// Stores the text where no new block is needed for it; false when one is.
bool KyCString::storeInPlace(const char* text, unsigned int length) noexcept
{
  if (length <= INLINE_CAPACITY)
  {
    const std::uint64_t bits = packInline(text, length);    // the text may be in the block released next
    if (!isInline()) release();
    m_bits = bits;
    return true;
  }
  if (isInline() || block()->isShared() || length > block()->capacity) return false;
  std::memmove(block()->text(), text, length);    // the text may be part of the block
  block()->text()[length] = '\0';
  block()->length = length;
  return true;
}

// Puts the text into a fresh block and makes it this string's own.
void KyCString::adopt(TBlock* fresh, const char* text, unsigned int length) noexcept
{
  std::memcpy(fresh->text(), text, length);
  fresh->text()[length] = '\0';
  fresh->length = length;
  if (!isInline()) release();
  m_bits = blockBits(fresh);
}

// NOLINTNEXTLINE(cert-oop54-cpp): the assignment to itself is looked after by the order of the steps
KyCString& KyCString::operator=(const KyCString& other) noexcept
{
  const std::uint64_t bits = other.m_bits;
  if (!other.isInline()) other.share();    // first, for the assignment to itself
  if (!isInline()) release();
  m_bits = bits;
  return *this;
}

KyCString& KyCString::operator=(KyCString&& other) noexcept
{
  if (this == &other) return *this;
  if (!isInline()) release();
  m_bits = other.m_bits;
  other.m_bits = emptyBits();
  return *this;
}

KyCString& KyCString::operator=(const char* text)
{
  const unsigned int length = textLength(text);
  if (!storeInPlace(text, length)) adopt(newBlock(length), text, length);
  return *this;
}

bool KyCString::assignSlow(KyCErrorListPool& pool, const char* text, unsigned int length) noexcept
{
  if (text == nullptr) length = 0;
  if (storeInPlace(text, length)) return true;
  if (!fitsAddressSpace(length))
  {
    pool.setError(KY_MSG_TEXT_TOO_LONG, __LINE__, "assign", "%u", length);
    return false;
  }
  void* const memory = ::operator new (sizeof(TBlock) + std::size_t{length} + 1, pool);
  if (memory == nullptr) return false;
  adopt(startBlock(memory, length), text, length);
  return true;
}

// A capacity of 0 has the block replaced, never written to, by whatever changes the text.
bool KyCString::takeOver(char*& buffer, unsigned int length) noexcept
{
  if (length <= INLINE_CAPACITY)
  {
    storeInPlace(buffer, length);
    std::free(buffer);
    buffer = nullptr;
    return true;
  }
  if (!fitsAddressSpace(length)) return false;
  void* const memory = std::realloc(buffer, sizeof(TBlock) + std::size_t{length} + 1);
  if (memory == nullptr) return false;
  buffer = nullptr;
  char* const text = static_cast<char*>(memory) + sizeof(TBlock);
  std::memmove(text, memory, length);
  text[length] = '\0';
  TBlock* const block = startBlock(memory, 0);
  block->length = length;
  if (!isInline()) release();
  m_bits = blockBits(block);
  return true;
}

// ---- Appending ----

// The tail may be part of this string: the old block is released, or the inline text overwritten, only when the tail
// has been copied.
void KyCString::append(const char* tail, unsigned int tailLength)
{
  if (tailLength == 0) return;
  const unsigned int oldLength = length();
  const std::uint64_t total = std::uint64_t{oldLength} + tailLength;
  if (total <= INLINE_CAPACITY)
  {
    char both[INLINE_CAPACITY];
    std::memcpy(both, c_str(), oldLength);
    std::memcpy(both + oldLength, tail, tailLength);
    const std::uint64_t bits = packInline(both, static_cast<unsigned int>(total));
    if (!isInline()) release();
    m_bits = bits;
    return;
  }

  if (isInline() || block()->isShared() || total > block()->capacity)
  {
    const std::uint64_t grown = std::uint64_t{oldLength} + oldLength / 2 + 8;
    TBlock* const fresh = newBlock(total > grown || !fitsAddressSpace(grown) ? total : grown);
    std::memcpy(fresh->text(), c_str(), oldLength);
    std::memcpy(fresh->text() + oldLength, tail, tailLength);
    if (!isInline()) release();
    m_bits = blockBits(fresh);
  }
  else
  {
    std::memmove(block()->text() + oldLength, tail, tailLength);
  }
  block()->text()[total] = '\0';
  block()->length = static_cast<unsigned int>(total);
}

KyCString& KyCString::operator+=(const KyCString& tail)
{
  append(tail.c_str(), tail.length());
  return *this;
}

KyCString& KyCString::operator+=(const char* tail)
{
  append(tail, textLength(tail));
  return *this;
}

KyCString& KyCString::operator+=(unsigned int number)
{
  char digits[10];
  const std::to_chars_result end = std::to_chars(digits, digits + sizeof(digits), number);
  append(digits, static_cast<unsigned int>(end.ptr - digits));
  return *this;
}

// A new string of exactly the size needed.
KyCString KyCString::joined(const char* tail, unsigned int tailLength) const
{
  if (tailLength == 0) return *this;
  KyCString result;
  const std::uint64_t total = std::uint64_t{length()} + tailLength;
  if (total > INLINE_CAPACITY)
    result.adopt(newBlock(total), c_str(), length());
  else
    result = *this;
  result.append(tail, tailLength);
  return result;
}

KyCString KyCString::operator+(const char* tail) const { return joined(tail, textLength(tail)); }

KyCString KyCString::operator+(const KyCString& tail) const { return joined(tail.c_str(), tail.length()); }

// ---- Comparing ----

bool KyCString::operator==(const KyCString& other) const noexcept
{
  if (m_bits == other.m_bits) return true;
  if (isInline() && other.isInline()) return false;
  return length() == other.length() && std::memcmp(c_str(), other.c_str(), length()) == 0;
}

bool KyCString::operator<(const KyCString& other) const noexcept
{
  const unsigned int shorter = length() < other.length() ? length() : other.length();
  const int order = std::memcmp(c_str(), other.c_str(), shorter);
  return order != 0 ? order < 0 : length() < other.length();
}

int KyCString::strcmp(const char* a, const char* b)
{
  return std::strcmp(a != nullptr ? a : "", b != nullptr ? b : "");
}

const char* KyCString::strstr(const char* text, const char* part)
{
  return std::strstr(text != nullptr ? text : "", part != nullptr ? part : "");
}
unsigned int KyCString::strlen(const char* text)
{
  return text != nullptr ? static_cast<unsigned int>(std::strlen(text)) : 0;
}
