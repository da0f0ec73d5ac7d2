// KyCString.h: an owned, NUL-terminated character string of 8 bytes.
//
//   KyCString name("board ");
//   name += 12u;                          // "board 12"
//   const KyCString copy = name;          // shares the text; whoever changes it first gets a text of its own
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>    // also takes away what the C header may have made a macro of: strcmp, strstr, strlen

#include "composite/KyCompositeApi.h"
#include "errorhandling/KyCErrorListPool.h"

// A value type. Up to 6 characters live inside the object; longer text lives in one shared, reference-counted block
// that copies share and that is copied before it is changed. Texts are bytes: nothing here knows an encoding, and a
// text may hold NUL characters. Every text given may be part of the string that is being changed.
//
// Out of memory: a constructor, assignment or operator that needs a new block throws std::bad_alloc and leaves its
// object as it was; those marked noexcept, copying and moving among them, never need one. assign() reports instead.
//
// Threads: two threads may use two strings at once, also when these share a text. One string is used by one thread at a
// time.
class KY_COMPOSITE_API KyCString
{
public:
  // The empty string.
  KyCString() noexcept : m_bits(emptyBits()) {}
  // A copy of a NUL-terminated text; null gives the empty string.
  KyCString(const char* text) : m_bits(emptyBits()) { create(text, textLength(text)); }
  // A copy of exactly `length` characters, which need no NUL behind them and may have some among them. A null text gives
  // the empty string.
  KyCString(const char* text, unsigned int length) : m_bits(emptyBits()) { create(text, text != nullptr ? length : 0); }
  // Shares the text of the other one. Cost: constant.
  KyCString(const KyCString& other) noexcept : m_bits(other.m_bits)
  {
    if (!isInline()) share();
  }
  // Takes the text of the other one, which is empty afterwards.
  KyCString(KyCString&& other) noexcept : m_bits(other.m_bits) { other.m_bits = emptyBits(); }
  ~KyCString()
  {
    if (!isInline()) release();
  }

  KyCString& operator=(const KyCString& other) noexcept;
  KyCString& operator=(KyCString&& other) noexcept;
  KyCString& operator=(const char* text);    // null: empty

  // As the assignment of a text of exactly `length` characters, but without throwing.
  //
  // Result:     true; false when it failed, and the string is as it was.
  // Errors:     "Out of memory." of the pool allocator
  //             0x01100000  the length does not fit into the address space
  // A null text is taken as empty; length is then ignored.
  bool assign(KyCErrorListPool& pool, const char* text, unsigned int length) noexcept
  {
    if (!isInline() || length > INLINE_CAPACITY || text == nullptr) return assignSlow(pool, text, length);
    m_bits = packInline(text, length);
    return true;
  }

  // Makes a text that was collected with std::malloc and std::realloc this string's own, without a second block.
  //
  //   buffer   from std::malloc; its first `length` characters are the text
  //
  // Result:     true; the string owns the memory and buffer is null. False when realloc could not make room for the
  //             string's own 16 bytes and the NUL, or the length does not fit into the address space; then nothing has
  //             changed.
  // Cost:       one realloc and one memmove of the text.
  bool takeOver(char*& buffer, unsigned int length) noexcept;

  // The text with a NUL behind it; never null. The pointer holds until the string is changed, assigned, moved or
  // destroyed.
  const char* c_str() const noexcept { return isInline() ? inlineText() : block()->text(); }
  // In characters, the closing NUL not counted.
  unsigned int length() const noexcept { return isInline() ? inlineLength() : block()->length; }
  bool isEmpty() const noexcept { return length() == 0; }

  // Append a text or the number in decimal. Cost: appending again and again is linear in the length reached.
  KyCString& operator+=(const KyCString& tail);
  KyCString& operator+=(const char* tail);    // null: nothing
  KyCString& operator+=(unsigned int number);
  KyCString operator+(const char* tail) const;
  KyCString operator+(const KyCString& tail) const;

  // By bytes, as unsigned numbers; a text stands before its own continuations.
  bool operator==(const KyCString& other) const noexcept;
  bool operator!=(const KyCString& other) const noexcept { return !(*this == other); }
  bool operator<(const KyCString& other) const noexcept;

  // As the C functions of these names, with a null text taken as empty.
  static int strcmp(const char* a, const char* b);
  static const char* strstr(const char* text, const char* part);
  static unsigned int strlen(const char* text);

private:
  // Head of the shared block; the text with its NUL stands behind it.
  struct TBlock
  {
    std::atomic<std::size_t> references;
    unsigned int length;
    unsigned int capacity;    // characters there is room for, the NUL not counted; 0: a block from malloc, for one text

    char* text() noexcept { return reinterpret_cast<char*>(this + 1); }
    const char* text() const noexcept { return reinterpret_cast<const char*>(this + 1); }
    bool isShared() const noexcept { return references.load(std::memory_order_acquire) != 1; }
  };

  static constexpr unsigned int INLINE_CAPACITY = 6;

  // The low-order byte of m_bits tells where the text is: odd, and the text is in the other seven bytes, its length in
  // the upper bits of that byte; even, and m_bits is the address of the block, which malloc aligns. Unused inline bytes
  // are zero, so equal short texts have equal bits.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  static constexpr unsigned int TAG_BYTE = 7;
  static constexpr unsigned int TEXT_BYTE = 0;
#else
  static constexpr unsigned int TAG_BYTE = 0;
  static constexpr unsigned int TEXT_BYTE = 1;
#endif

  static constexpr std::uint64_t emptyBits() noexcept { return 1; }
  bool isInline() const noexcept { return (m_inline[TAG_BYTE] & 1u) != 0; }
  unsigned int inlineLength() const noexcept { return static_cast<unsigned int>(m_inline[TAG_BYTE]) >> 1; }
  const char* inlineText() const noexcept { return reinterpret_cast<const char*>(m_inline) + TEXT_BYTE; }
  // NOLINTNEXTLINE(performance-no-int-to-ptr): text and pointer share 8 bytes on both word sizes
  TBlock* block() const noexcept { return reinterpret_cast<TBlock*>(static_cast<std::uintptr_t>(m_bits)); }
  void share() const noexcept { block()->references.fetch_add(1, std::memory_order_relaxed); }
  void release() noexcept;

  static unsigned int textLength(const char* text);
  // Characters are gathered in a register: bytes that are written one by one are slow to read back as one number.
  static std::uint64_t packInline(const char* text, unsigned int length) noexcept
  {
    std::uint64_t bits = std::uint64_t{length << 1 | 1u} << shiftOfByte(TAG_BYTE);
    for (unsigned int n = 0; n < length; ++n)    // at most 6: less than a call costs
      bits |= std::uint64_t{static_cast<unsigned char>(text[n])} << shiftOfByte(TEXT_BYTE + n);
    return bits;
  }
  static constexpr unsigned int shiftOfByte(unsigned int place) noexcept
  {
    return 8 * (TAG_BYTE == 0 ? place : 7 - place);
  }
  static std::uint64_t blockBits(TBlock* block) noexcept;
  static bool fitsAddressSpace(std::uint64_t capacity) noexcept;
  static TBlock* newBlock(std::uint64_t capacity);
  static TBlock* startBlock(void* memory, unsigned int capacity) noexcept;
  void create(const char* text, unsigned int length);
  bool storeInPlace(const char* text, unsigned int length) noexcept;
  bool assignSlow(KyCErrorListPool& pool, const char* text, unsigned int length) noexcept;
  void adopt(TBlock* block, const char* text, unsigned int length) noexcept;
  void append(const char* tail, unsigned int tailLength);
  KyCString joined(const char* tail, unsigned int tailLength) const;

  union
  {
    std::uint64_t m_bits;
    unsigned char m_inline[8];
  };
};

static_assert(sizeof(KyCString) == 8, "a string is 8 bytes on every platform");
