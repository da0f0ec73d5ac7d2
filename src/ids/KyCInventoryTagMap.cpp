#include "inventory/KyCInventoryTagMap.h"

#include <algorithm>
#include <new>

#include "base/KyErrorManagerAccess.h"
#include "base/KyMessageCodes.h"
#include "errorhandling/KyNPoolAllocator.h"

namespace
{
constexpr unsigned int FIRST_CAPACITY = 1024;
constexpr unsigned int MAX_CAPACITY = 0x1FFFFFFF;    // pointers of 4 bytes whose size fits an address space of 2 GiB
}    // namespace

// False: no memory, which is reported, and nothing has changed.
bool KyCInventoryTagMap::grow(KyCErrorListPool& pool, const char* name)
{
  const unsigned int capacity = m_capacity == 0 ? FIRST_CAPACITY : 2 * m_capacity;
  if (capacity > MAX_CAPACITY) throw std::bad_array_new_length();
  const char** const names = new (pool) const char*[capacity];
  if (names == nullptr)
  {
    pool.setError(KY_MSG_CANNOT_ALLOCATE_ID, __LINE__, "add", "%s", name);
    return false;
  }
  std::copy_n(m_names, m_count, names);
  delete[] m_names;
  m_names = names;
  m_capacity = capacity;
  return true;
}

unsigned int KyCInventoryTagMap::add(unsigned int index, const char* name)
{
  KyCErrorManager& manager = kyErrorManager();
  KyCErrorListPool& pool = manager.getMasterErrorList();
  if (m_count < m_capacity || grow(pool, name))
  {
    if (index != m_count) pool.setError(KY_MSG_INVALID_ID_CATEGORY, __LINE__, "add", "%s", name);
    m_names[m_count++] = name;
  }
  manager.sendErrorList(pool, 0);
  return index;
}
