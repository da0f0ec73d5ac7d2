// KyCInventoryDataExtract.cpp: from a section to a tree.
#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryData.h"
#include "inventory/KyCInventoryItemFactory.h"

namespace
{
// Where a section comes from, and how failures are reported there.
struct FileSource
{
  const char* path;

  static constexpr const char* FUNCTION = "extractInventoryTreeFromFile";
  void read(KyCErrorListPool& pool, KyCBuffer& buffer) const
  {
    KyCInventoryData::readInventoryDataFromFile(pool, path, buffer);
  }
  void reportDamage(KyCErrorListPool& pool) const
  {
    pool.setError(KY_MSG_CANNOT_DESERIALIZE_FROM_FILE, __LINE__, FUNCTION, "%s", path);
  }
};

struct MemorySource
{
  const unsigned char* block;
  unsigned int length;

  static constexpr const char* FUNCTION = "extractInventoryTreeFromMem";
  void read(KyCErrorListPool& pool, KyCBuffer& buffer) const
  {
    KyCInventoryData::readInventoryDataFromMem(pool, block, length, buffer);
  }
  void reportDamage(KyCErrorListPool& pool) const
  {
    pool.setError(KY_MSG_CANNOT_DESERIALIZE_FROM_MEMORY, __LINE__, FUNCTION, nullptr);
  }
};

template <typename TSource>
void extractTree(KyCErrorListPool& pool, const TSource& source, KyCInventoryItem*& root)
{
  root = nullptr;
  unsigned int errors = pool.getErrorCount();
  KyCBuffer buffer(pool);
  if (pool.getErrorCount() != errors)
  {
    pool.setError(KY_MSG_CANNOT_CREATE_BUFFER, __LINE__, TSource::FUNCTION, nullptr);
    return;
  }

  errors = pool.getErrorCount();
  source.read(pool, buffer);
  if (pool.getErrorCount() != errors || buffer.getWritePosition() == 0) return;

  errors = pool.getErrorCount();
  KyCInventoryItemFactory factory(pool);
  if (pool.getErrorCount() != errors)
  {
    pool.setError(KY_MSG_CANNOT_CREATE_ITEM_FACTORY, __LINE__, TSource::FUNCTION, nullptr);
    return;
  }

  errors = pool.getErrorCount();
  factory.deserialize(pool, root, &buffer);
  if (pool.getErrorCount() == errors) return;
  delete root;
  root = nullptr;
  source.reportDamage(pool);
}
}    // namespace

void KyCInventoryData::extractInventoryTreeFromFile(KyCErrorListPool& pool, const char* path, KyCInventoryItem*& root)
{
  extractTree(pool, FileSource{path != nullptr ? path : ""}, root);
}

void KyCInventoryData::extractInventoryTreeFromMem(KyCErrorListPool& pool, const unsigned char* block,
                                                   unsigned int length, KyCInventoryItem*& root)
{
  extractTree(pool, MemorySource{block, length}, root);
}
