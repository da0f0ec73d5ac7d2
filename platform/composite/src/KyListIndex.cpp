// KyListIndex.cpp: records, hash tables and heaps of a list index.
#include "KyListIndex.h"

#include <cstring>
#include <new>

namespace
{

constexpr std::uint32_t FIRST_CAPACITY = 32;
constexpr std::uint32_t LARGEST_CAPACITY = 0x40000000u;    // record numbers, table sizes and NONE stay apart

// The finalizer of SplitMix64: every bit of the number decides about every bit of the result.
std::uint64_t mix(std::uint64_t number) noexcept
{
  number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9u;
  number = (number ^ number >> 27) * 0x94D049BB133111EBu;
  return number ^ number >> 31;
}

}    // namespace

// ---- Hash tables ----

// At most two thirds of the slots are in use.
bool KyCListIndex::TTable::resize(std::uint32_t recordCapacity) noexcept
{
  std::uint32_t size = 2;
  while (size < recordCapacity + recordCapacity / 2)
    size *= 2;
  if (slots == nullptr || size != mask + 1)
  {
    std::uint32_t* const fresh = new (std::nothrow) std::uint32_t[size];
    if (fresh == nullptr) return false;
    delete[] slots;
    slots = fresh;
    mask = size - 1;
  }
  clear();
  return true;
}

void KyCListIndex::TTable::clear() noexcept
{
  std::memset(slots, 0xFF, (std::size_t{mask} + 1) * sizeof(std::uint32_t));
}

void KyCListIndex::TTable::drop() noexcept
{
  delete[] slots;
  slots = nullptr;
}

std::uint32_t KyCListIndex::hashEntry(const void* entry) const noexcept
{
  return static_cast<std::uint32_t>(mix(reinterpret_cast<std::uintptr_t>(entry)));
}

std::uint32_t KyCListIndex::entrySlot(const void* entry) const noexcept
{
  std::uint32_t slot = hashEntry(entry) & m_byEntry.mask;
  while (m_byEntry.slots[slot] != NONE && m_entries[m_byEntry.slots[slot]] != entry)
    slot = (slot + 1) & m_byEntry.mask;
  return slot;
}

// Frees the slot of a key and moves those behind it up that could not be reached across it any more.
void KyCListIndex::eraseKeySlot(std::uint32_t slot) noexcept
{
  std::uint32_t* const slots = m_byKey.slots;
  const std::uint32_t mask = m_byKey.mask;
  for (std::uint32_t probe = (slot + 1) & mask; slots[probe] != NONE; probe = (probe + 1) & mask)
  {
    const std::uint32_t home = hashKey(m_records[slots[probe]].key) & mask;
    if (((probe - home) & mask) < ((probe - slot) & mask)) continue;    // its home is behind the free slot
    slots[slot] = slots[probe];
    slot = probe;
  }
  slots[slot] = NONE;
}

// ---- Heaps of records with one key: the smallest record number is the root ----

// Joins two heaps. Result: the root of both.
std::uint32_t KyCListIndex::link(std::uint32_t a, std::uint32_t b) noexcept
{
  const std::uint32_t upper = a < b ? a : b;
  const std::uint32_t lower = a < b ? b : a;
  const std::uint32_t sibling = m_records[upper].child;
  m_records[lower].next = sibling;
  m_records[lower].back = upper;
  if (sibling != NONE) m_records[sibling].back = lower;
  m_records[upper].child = lower;
  return upper;
}

// Joins a row of siblings, whose parent is gone, into one heap: in pairs on the way there, into one on the way back.
// Result: its root; NONE for an empty row.
std::uint32_t KyCListIndex::linkChildren(std::uint32_t first) noexcept
{
  std::uint32_t pairs = NONE;    // the last pair first
  while (first != NONE)
  {
    std::uint32_t pair = first;
    const std::uint32_t second = m_records[first].next;
    first = NONE;
    if (second != NONE)
    {
      first = m_records[second].next;
      pair = link(pair, second);
    }
    m_records[pair].next = pairs;
    pairs = pair;
  }

  std::uint32_t root = NONE;
  while (pairs != NONE)
  {
    const std::uint32_t pair = pairs;
    pairs = m_records[pair].next;
    m_records[pair].next = NONE;
    m_records[pair].back = NONE;
    root = root == NONE ? pair : link(root, pair);
  }
  return root;
}

// For a record that is in no heap, by its key.
void KyCListIndex::enterHeap(std::uint32_t record) noexcept
{
  TRecord& entered = m_records[record];
  entered.child = entered.next = entered.back = NONE;
  std::uint32_t& root = m_byKey.slots[keySlot(entered.key)];
  if (root != NONE) m_hasTwins = true;
  root = root == NONE ? record : link(root, record);
}

void KyCListIndex::leaveHeap(std::uint32_t record) noexcept
{
  const TRecord left = m_records[record];
  const std::uint32_t below = linkChildren(left.child);
  if (left.back == NONE)    // the root
  {
    const std::uint32_t slot = keySlot(left.key);
    if (below != NONE)
      m_byKey.slots[slot] = below;
    else
      eraseKeySlot(slot);
    return;
  }

  TRecord& back = m_records[left.back];
  (back.child == record ? back.child : back.next) = left.next;
  if (left.next != NONE) m_records[left.next].back = left.back;
  if (below != NONE) link(m_byKey.slots[keySlot(left.key)], below);    // the root stays: it is smaller than all
}

// ---- Records ----

KyCListIndex::KyCListIndex() noexcept
    : m_multiplier(mix(mix(reinterpret_cast<std::uintptr_t>(this)) ^ reinterpret_cast<std::uintptr_t>(&mix)) | 1)
{
}

KyCListIndex::~KyCListIndex() { ::operator delete(m_records); }

bool KyCListIndex::reserve(unsigned int count) noexcept
{
  if (count > LARGEST_CAPACITY) return false;
  if (count < FIRST_CAPACITY) count = FIRST_CAPACITY;
  const std::uint64_t size = std::uint64_t{count} * (sizeof(void*) + sizeof(TRecord));
  void* const block = size <= SIZE_MAX ? ::operator new(static_cast<std::size_t>(size), std::nothrow) : nullptr;
  if (block == nullptr) return false;
  if (!m_byKey.resize(count))
  {
    ::operator delete(block);
    return false;
  }
  TRecord* const records = static_cast<TRecord*>(block);
  void** const entries = reinterpret_cast<void**>(records + count);
  if (m_recordCount != 0)
  {
    std::memcpy(entries, m_entries, m_recordCount * sizeof(void*));
    std::memcpy(records, m_records, m_recordCount * sizeof(TRecord));
  }
  ::operator delete(m_records);
  m_entries = entries;
  m_records = records;
  m_recordCapacity = count;
  m_byEntry.drop();    // too small now; made again when needed
  fillKeyTable();
  return true;
}

// Enters the roots into the empty table.
void KyCListIndex::fillKeyTable() noexcept
{
  for (std::uint32_t record = 0; record < m_recordCount; ++record)
  {
    if (!isGap(record) && m_records[record].back == NONE) m_byKey.slots[keySlot(m_records[record].key)] = record;
  }
}

// Room for one more record. Cost: constant on average, since as many appends or removals pass until the next time.
bool KyCListIndex::makeRoom() noexcept
{
  if (m_recordCount < m_recordCapacity) return true;
  if (m_gapCount >= m_recordCapacity / 4)
  {
    closeGaps();
    return true;
  }
  return reserve(m_recordCapacity + m_recordCapacity / 2);
}

void KyCListIndex::closeGaps() noexcept
{
  m_byKey.clear();
  m_byEntry.drop();
  const std::uint32_t oldCount = m_recordCount;
  m_recordCount = m_gapCount = 0;
  m_hasTwins = false;
  m_cursorRecord = m_cursorPlace = m_cursorSteps = 0;
  for (std::uint32_t record = 0; record < oldCount; ++record)
  {
    if (isGap(record)) continue;
    m_entries[m_recordCount] = m_entries[record];
    m_records[m_recordCount] = m_records[record];
    enterHeap(m_recordCount++);
  }
}

bool KyCListIndex::append(void* entry, std::uint64_t key) noexcept
{
  if (!makeRoom()) return false;
  const std::uint32_t record = m_recordCount++;
  m_entries[record] = entry;
  m_records[record].key = key;
  enterHeap(record);
  if (m_byEntry.slots != nullptr) m_byEntry.slots[entrySlot(entry)] = record;
  return true;
}

void KyCListIndex::makeGap(std::uint32_t record) noexcept
{
  m_entries[record] = nullptr;
  m_records[record].back = record == 0 ? NONE : record - 1;
  ++m_gapCount;
}

void KyCListIndex::remove(const void* entry, std::uint64_t key) noexcept
{
  const std::uint32_t record = recordOf(entry, key);
  leaveHeap(record);
  makeGap(record);
  if (record < m_cursorRecord) --m_cursorPlace;
  if (m_gapCount > count()) closeGaps();
}

void KyCListIndex::changeKey(const void* entry, std::uint64_t oldKey, std::uint64_t newKey) noexcept
{
  const std::uint32_t record = recordOf(entry, oldKey);
  leaveHeap(record);
  m_records[record].key = newKey;
  enterHeap(record);
}

// ---- Finding ----

// The record of an entry of the list.
std::uint32_t KyCListIndex::recordOf(const void* entry, std::uint64_t key) noexcept
{
  const std::uint32_t root = m_byKey.slots[keySlot(key)];
  if (root != NONE && m_entries[root] == entry) return root;
  if (m_byEntry.slots != nullptr || buildEntryTable()) return m_byEntry.slots[entrySlot(entry)];
  std::uint32_t record = 0;    // no memory for the table
  while (m_entries[record] != entry)
    ++record;
  return record;
}

bool KyCListIndex::buildEntryTable() noexcept
{
  if (!m_byEntry.resize(m_recordCapacity)) return false;
  for (std::uint32_t record = 0; record < m_recordCount; ++record)
  {
    if (!isGap(record)) m_byEntry.slots[entrySlot(m_entries[record])] = record;
  }
  return true;
}

// The last record before this one that is no gap; NONE when there is none. Shortens the way for the next time.
std::uint32_t KyCListIndex::liveBefore(std::uint32_t record) noexcept
{
  if (record == 0) return NONE;
  std::uint32_t before = record - 1;
  while (before != NONE && isGap(before))
  {
    const std::uint32_t farther = m_records[before].back;
    if (farther != NONE && isGap(farther)) m_records[before].back = m_records[farther].back;
    before = m_records[before].back;
  }
  return before;
}

void* KyCListIndex::predecessor(const void* entry, std::uint64_t key) noexcept
{
  const std::uint32_t before = liveBefore(recordOf(entry, key));
  return before != NONE ? m_entries[before] : nullptr;
}

// Without gaps the place is the record number. With gaps the cursor walks from where it was last; once it has gone as many
// steps as closing the gaps takes, they are closed.
void* KyCListIndex::at(unsigned int place) noexcept
{
  if (place >= count()) return nullptr;
  if (m_gapCount != 0 && !moveCursor(place)) closeGaps();
  return m_entries[m_gapCount != 0 ? m_cursorRecord : place];
}

// Moves the cursor to the entry at a place of the list; false when that takes too long.
bool KyCListIndex::moveCursor(std::uint32_t place) noexcept
{
  if (place < m_cursorPlace / 2) m_cursorRecord = m_cursorPlace = 0;
  while (m_cursorPlace != place || isGap(m_cursorRecord))
  {
    if (++m_cursorSteps > m_recordCount) return false;
    if (m_cursorPlace > place)
    {
      --m_cursorRecord;
      if (!isGap(m_cursorRecord)) --m_cursorPlace;
    }
    else
    {
      if (!isGap(m_cursorRecord)) ++m_cursorPlace;
      ++m_cursorRecord;
    }
  }
  return true;
}
