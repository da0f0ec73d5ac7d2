// KyStoredBytes.h: byte strings, stored records and stored trees for the tests of this folder.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "inventory/KyCInventoryData.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryItemFactory.h"
#include "inventory/KyCInventoryParameter.h"
#include "support/KyTestPool.h"

using KyBytes = std::vector<unsigned char>;
using KyItemPtr = std::unique_ptr<KyCInventoryItem>;
using KyParameterPtr = std::unique_ptr<KyCInventoryParameter>;

inline KyBytes operator+(KyBytes head, const KyBytes& tail)
{
  head.insert(head.end(), tail.begin(), tail.end());
  return head;
}

inline KyBytes bytesOf(const KyCBuffer& buffer)
{
  return KyBytes(buffer.getStorage(), buffer.getStorage() + buffer.getWritePosition());
}

inline KyBytes bytesOf(const std::string& text) { return KyBytes(text.begin(), text.end()); }

inline const KyBytes FIVE_BYTES = {'d', 'a', 't', 'a', '!'};    // data for a section

inline KyBytes lastBytes(const KyBytes& bytes, std::size_t count)
{
  return KyBytes(bytes.end() - static_cast<std::ptrdiff_t>(std::min(count, bytes.size())), bytes.end());
}

inline KyBytes firstBytes(const KyBytes& bytes, std::size_t count)
{
  return KyBytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(std::min(count, bytes.size())));
}

// Where the bytes of `part` stand in `bytes`, when they stand there exactly once; a failed test otherwise.
inline std::size_t onlyPlaceOf(const KyBytes& part, const KyBytes& bytes)
{
  const auto first = std::search(bytes.begin(), bytes.end(), part.begin(), part.end());
  EXPECT_NE(first, bytes.end()) << "not in these bytes";
  if (first == bytes.end()) return 0;
  EXPECT_EQ(std::search(first + 1, bytes.end(), part.begin(), part.end()), bytes.end()) << "more than once";
  return static_cast<std::size_t>(first - bytes.begin());
}

inline KyBytes big32(unsigned int value)
{
  return {static_cast<unsigned char>(value >> 24), static_cast<unsigned char>(value >> 16),
          static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
}

// --- Stored records -----------------------------------------------------------------------------------------------------

const KyBytes MARKS = {'I', 'N', 'V', 'E', 0x55, 0x4B, 0x59, 0xAA};

struct KySizes
{
  unsigned int headerSize = 24;
  unsigned int dataSize = 0;
  unsigned int trailerSize = 24;
  unsigned int version = 1;
};

inline KySizes sizesOf(unsigned int dataSize, unsigned int headerSize = 24, unsigned int trailerSize = 24)
{
  KySizes sizes;
  sizes.dataSize = dataSize;
  sizes.headerSize = headerSize;
  sizes.trailerSize = trailerSize;
  return sizes;
}

inline KyBytes headerBytes(const KySizes& sizes)
{
  return MARKS + big32(sizes.version) + big32(sizes.headerSize) + big32(sizes.dataSize) + big32(sizes.trailerSize);
}

inline KyBytes trailerBytes(const KySizes& sizes)
{
  return big32(sizes.headerSize) + big32(sizes.dataSize) + big32(sizes.trailerSize) + big32(sizes.version) + MARKS;
}

template <typename TRecord>
TRecord recordOf(const KyBytes& bytes)
{
  TRecord record;
  EXPECT_EQ(bytes.size(), sizeof record);
  std::memcpy(&record, bytes.data(), sizeof record);
  return record;
}

inline KyBytes sectionAround(const KyBytes& data)
{
  KySizes sizes;
  sizes.dataSize = static_cast<unsigned int>(data.size());
  return headerBytes(sizes) + data + trailerBytes(sizes);
}

// --- Trees and parameters to and from bytes; any report on the way fails the test ------------------------------------------

inline void put(KyCErrorListPool& pool, KyCBuffer& buffer, const KyBytes& bytes)
{
  buffer.writeBuffer(pool, bytes.data(), static_cast<unsigned int>(bytes.size()), 1, -1);
}

inline KyBytes storedTree(const KyCInventoryItem* root)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  factory.serialize(pool, &buffer, root);
  return bytesOf(buffer);
}

inline KyBytes storedParameter(const KyCInventoryParameter& parameter)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  factory.serializeInventoryParameter(pool, &buffer, &parameter);
  return bytesOf(buffer);
}

inline KyBytes storedSection(KyCInventoryItem* root)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, root);
  return bytesOf(buffer);
}

// The same backwards, with the reports in the given pool. What extracting hands out starts poisoned.
inline KyItemPtr readTree(KyCErrorListPool& pool, const KyBytes& bytes)
{
  KyCBuffer buffer(pool);
  put(pool, buffer, bytes);
  KyCInventoryItemFactory factory(pool);
  KyCInventoryItem* root = nullptr;
  factory.deserialize(pool, root, &buffer);
  return KyItemPtr(root);
}

inline KyParameterPtr readParameter(KyCErrorListPool& pool, const KyBytes& bytes)
{
  KyCBuffer buffer(pool);
  put(pool, buffer, bytes);
  KyCInventoryItemFactory factory(pool);
  KyCInventoryParameter* parameter = nullptr;
  factory.deserializeInventoryParameter(pool, parameter, &buffer);
  return KyParameterPtr(parameter);
}

// What the factory and the deserializer hand out, as the class it is of.
inline KyCInventoryItem* asItem(KyCComposite* node) { return (KyCInventoryItem*)node; }
inline KyCInventoryParameter* asParameter(KyCParam* param) { return (KyCInventoryParameter*)param; }
inline KyCComposite* asComposite(KyCInventoryItem* item) { return (KyCComposite*)item; }

inline KyItemPtr extractFromMemory(KyCErrorListPool& pool, const KyBytes& block)
{
  KyCInventoryItem poison(pool, KyCInventoryAddress(1), "");
  KyCInventoryItem* root = &poison;
  KyCInventoryData::extractInventoryTreeFromMem(pool, block.data(), static_cast<unsigned int>(block.size()), root);
  EXPECT_NE(root, &poison) << "root was not set";
  return KyItemPtr(root);
}

inline KyItemPtr extractFromFile(KyCErrorListPool& pool, const std::string& path)
{
  KyCInventoryItem poison(pool, KyCInventoryAddress(1), "");
  KyCInventoryItem* root = &poison;
  KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
  EXPECT_NE(root, &poison) << "root was not set";
  return KyItemPtr(root);
}
