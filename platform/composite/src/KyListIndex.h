// KyListIndex.h: finds the entries of a long list by key and by place.
#pragma once

#include <cstddef>
#include <cstdint>

// Made beside a linked list that has grown long, and told of everything that happens to the list: entries appended at
// its end, removed anywhere, given another key in place. Answers like a walk of the list from its start would:
//
//   findFirst     the first entry with a key, however many have it     near-constant cost
//   predecessor   the entry before another one                         near-constant cost
//   at            the n-th entry                                       constant; near-constant when walked after removals
//
// Changes cost near-constant time, too; logarithmic among entries of one key. The keys may come from a hostile file:
// the hash is keyed with an address, and entries with one key do not share a probe sequence.
//
// How it is built. Each entry of the list has a record; records stand in list order, since entries are only appended, so
// "first in list order" is "smallest record number". Records of removed entries stay behind as gaps until there are more
// gaps than entries. Records with one key form a pairing heap with the smallest number at its root, and a hash table leads
// from the key to the root. A second table, from the entry's address to its record, is only made when an entry that is
// not the first of its key is to be found.
//
// No operation throws. Memory comes from operator new (nothrow). Where a change returns false there was none: the index
// is of no use any more and its owner drops it.
class KyCListIndex
{
public:
  KyCListIndex() noexcept;
  ~KyCListIndex();
  KyCListIndex(const KyCListIndex&) = delete;
  KyCListIndex& operator=(const KyCListIndex&) = delete;

  // Room for that many entries; false when there is no memory for it.
  bool reserve(unsigned int count) noexcept;

  bool append(void* entry, std::uint64_t key) noexcept;
  void remove(const void* entry, std::uint64_t key) noexcept;
  void changeKey(const void* entry, std::uint64_t oldKey, std::uint64_t newKey) noexcept;

  void* findFirst(std::uint64_t key) const noexcept    // null when none has the key
  {
    const std::uint32_t root = m_byKey.slots[keySlot(key)];
    return root != NONE ? m_entries[root] : nullptr;
  }
  // Where numbers count up from 1 in list order, as indexes of siblings mostly do, the entry of a number stands at its
  // place: eight bytes to read, and no hash table. Null when there is none at the place, or when entries have shared a key;
  // otherwise it is the first with its key, whatever that is. Ask the entry itself.
  void* guess(std::uint32_t number) const noexcept
  {
    return number - 1 < m_recordCount && !m_hasTwins ? m_entries[number - 1] : nullptr;
  }
  void* predecessor(const void* entry, std::uint64_t key) noexcept;    // null for the first entry
  void* at(unsigned int place) noexcept;                               // from 0; null beyond the end
  unsigned int count() const noexcept { return m_recordCount - m_gapCount; }

private:
  static constexpr std::uint32_t NONE = 0xFFFFFFFFu;

  struct TRecord
  {
    std::uint64_t key;
    std::uint32_t child;    // in the heap: first child
    std::uint32_t next;     // in the heap: next sibling
    std::uint32_t
        back;    // in the heap: previous sibling, or the parent; NONE at the root. In a gap: a record before it,
                 // with nothing but gaps between the two
  };

  // Open addressing with linear probing; a slot holds a record number or NONE.
  struct TTable
  {
    std::uint32_t* slots = nullptr;
    std::uint32_t mask = 0;

    ~TTable() { delete[] slots; }
    bool resize(std::uint32_t recordCapacity) noexcept;
    void clear() noexcept;
    void drop() noexcept;
  };

  // Multiplication by a secret odd number, then by a fixed one: the upper bits of both depend on the whole key.
  std::uint32_t hashKey(std::uint64_t key) const noexcept
  {
    const std::uint64_t hash = key * m_multiplier;
    return static_cast<std::uint32_t>(((hash ^ hash >> 32) * 0x9E3779B97F4A7C15u) >> 32);
  }
  std::uint32_t hashEntry(const void* entry) const noexcept;
  // The slot of the key's heap, or the free one where it belongs.
  std::uint32_t keySlot(std::uint64_t key) const noexcept
  {
    std::uint32_t slot = hashKey(key) & m_byKey.mask;
    while (m_byKey.slots[slot] != NONE && m_records[m_byKey.slots[slot]].key != key)
      slot = (slot + 1) & m_byKey.mask;
    return slot;
  }
  std::uint32_t entrySlot(const void* entry) const noexcept;
  void eraseKeySlot(std::uint32_t slot) noexcept;

  bool isGap(std::uint32_t record) const noexcept { return m_entries[record] == nullptr; }
  std::uint32_t recordOf(const void* entry, std::uint64_t key) noexcept;
  bool buildEntryTable() noexcept;
  std::uint32_t liveBefore(std::uint32_t record) noexcept;
  void makeGap(std::uint32_t record) noexcept;
  bool makeRoom() noexcept;
  void closeGaps() noexcept;
  void fillKeyTable() noexcept;

  std::uint32_t link(std::uint32_t a, std::uint32_t b) noexcept;
  std::uint32_t linkChildren(std::uint32_t first) noexcept;
  void enterHeap(std::uint32_t record) noexcept;
  void leaveHeap(std::uint32_t record) noexcept;

  bool moveCursor(std::uint32_t place) noexcept;

  TRecord* m_records = nullptr;
  void** m_entries = nullptr;         // of each record, in the same block; null: a gap
  std::uint32_t m_recordCount = 0;    // gaps included
  std::uint32_t m_recordCapacity = 0;
  std::uint32_t m_gapCount = 0;
  TTable m_byKey;                      // roots of the heaps
  TTable m_byEntry;                    // all entries, or no slots
  std::uint64_t m_multiplier;          // odd
  std::uint32_t m_cursorRecord = 0;    // any record, and how many entries stand before it
  std::uint32_t m_cursorPlace = 0;
  std::uint32_t m_cursorSteps = 0;    // gone since the gaps were closed
  bool m_hasTwins = false;            // two entries have shared a key since then
};

// The indexes of one node. Most nodes have none and spend one null pointer on them.
struct KyCNodeIndexes
{
  KyCListIndex* children = nullptr;
  KyCListIndex* parameters = nullptr;

  KyCNodeIndexes() noexcept = default;
  KyCNodeIndexes(const KyCNodeIndexes&) = delete;
  KyCNodeIndexes& operator=(const KyCNodeIndexes&) = delete;
  ~KyCNodeIndexes()
  {
    delete children;
    delete parameters;
  }
};
