// KyFarBuffer.h: a buffer with room behind 2 GiB, where positions are negative as int. Pages that nothing is written to
// take no memory.
//
//   if (const char* const reason = kyReserveFar(pool, buffer, size)) GTEST_SKIP() << reason;
#pragma once

#include "composite/KyCBuffer.h"
#include "support/KyTestPool.h"

// Why there can be no such buffer here; null when the room is there.
inline const char* kyReserveFar([[maybe_unused]] KyTestPool& pool, [[maybe_unused]] KyCBuffer& buffer,
                                [[maybe_unused]] unsigned int size)
{
  if (sizeof(void*) == 4) return "no room for it in the address space";
#if defined(__SANITIZE_ADDRESS__)
  return "the sanitizer takes a byte for every eight";
#else
  buffer.allocateBuffer(pool, size);
  return pool.takeReports().empty() ? nullptr : "no address space";
#endif
}
