// KyFuzz.h: what the fuzz targets share.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "inventory/KyInventoryTree.h"

// Ends the run, and keeps the input, when the condition does not hold.
inline void require(bool condition)
{
  if (!condition) std::abort();
}

// The input, taken from its front bit by bit; zeros behind its end.
class FuzzInput
{
public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : m_data(data), m_left(size) {}

  unsigned int number(unsigned int bytes)
  {
    unsigned int value = 0;
    while (bytes-- > 0)
      value = value << 8 | next();
    return value;
  }
  unsigned int below(unsigned int limit) { return number(1) % limit; }
  bool isEmpty() const { return m_left == 0; }

  const std::uint8_t* rest() const { return m_data; }
  unsigned int restSize() const { return static_cast<unsigned int>(m_left); }
  std::string restAsText() const { return std::string(reinterpret_cast<const char*>(m_data), m_left); }

private:
  std::uint8_t next()
  {
    if (m_left == 0) return 0;
    --m_left;
    return *m_data++;
  }

  const std::uint8_t* m_data;
  std::size_t m_left;
};

using FuzzTree = std::unique_ptr<KyCInventoryItem>;

// The tree of a memory block, with what the reading promises: a tree and no report, or reports and no tree, or neither.
inline FuzzTree treeOf(const std::uint8_t* data, std::size_t size)
{
  KyCErrorListPool pool;
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, data, static_cast<unsigned int>(size), root);
  require(root == nullptr || pool.getErrorCount() == 0);
  return FuzzTree(root);
}

// The section of a tree; storing what was read never fails.
inline std::string sectionOf(KyCInventoryItem& root)
{
  KyCErrorListPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  require(pool.getErrorCount() == 0);
  return std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}
