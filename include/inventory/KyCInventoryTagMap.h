// KyCInventoryTagMap.h: gives the ID of an address element its name.
#pragma once

#include "inventory/KyInventoryTreeApi.h"

class KyCErrorListPool;

// A list of names, read by position: the position is the ID. The one that counts is KyNInventoryIDs::Map, filled with
// the predefined IDs while the library is loaded and only read afterwards.
//
// A map owns its list but not the names: they must outlive it. Two threads may read a map at the same time, while nobody
// adds to it. One lock has to cover all calls of add in the program, those on different maps too: every call sends the
// master error list, which is one for the whole program and has no lock.
class KY_INVENTORY_API KyCInventoryTagMap
{
public:
  KyCInventoryTagMap() noexcept : m_names(nullptr), m_capacity(0), m_count(0) {}
  ~KyCInventoryTagMap() { delete[] m_names; }
  KyCInventoryTagMap(const KyCInventoryTagMap&) = delete;
  KyCInventoryTagMap& operator=(const KyCInventoryTagMap&) = delete;

  // Appends a name.
  //
  //   index       the position that the caller takes the name to get: getCount()
  //   name        borrowed until the map is destroyed; not null
  //
  // Result:     index, unchanged, whatever happens.
  // Errors:     0x1301800  no memory for a longer list (behind the allocator's own report); the name is not stored
  //             0x1301801  index is not the next position
  //             Both go to the master error list, which is sent to the error manager at the end of every call.
  //             std::bad_array_new_length for a list of more than 0x1FFFFFFF names.
  // Kept on purpose: with a wrong index the name is stored all the same, at the next position.
  // Cost:       the list has room for 1024 names at first and is doubled when it is full.
  unsigned int add(unsigned int index, const char* name);

  // Result:     the name at this position; null beyond the end.
  const char* get(unsigned int index) const noexcept { return index < m_count ? m_names[index] : nullptr; }

  // Result:     the number of names.
  unsigned int getCount() const noexcept { return m_count; }

private:
  friend struct KyTagMapAccess;    // adds the predefined IDs while the library is loaded

  bool grow(KyCErrorListPool& pool, const char* name);

  const char** m_names;
  unsigned int m_capacity;
  unsigned int m_count;
};
