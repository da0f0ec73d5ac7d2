// Any bytes as a file with a section in it, read through its name and at both ends of the open file: a tree and no report,
// or reports and no tree, or neither; and the tree that a memory block of the same bytes gives.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>

#include "KyFuzz.h"

namespace
{
FuzzTree treeOfFile(const char* path)
{
  KyCErrorListPool pool;
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromFile(pool, path, root);
  require(root == nullptr || pool.getErrorCount() == 0);
  return FuzzTree(root);
}

using ReadData = unsigned int (*)(KyCErrorListPool&, std::FILE*, KyCBuffer&);

// From wherever the file stands.
void readData(std::FILE* file, long position, ReadData read, std::size_t size)
{
  KyCErrorListPool pool;
  KyCBuffer buffer(pool);
  require(std::fseek(file, position, SEEK_SET) == 0);
  const unsigned int count = read(pool, file, buffer);
  require(count == 0 || (pool.getErrorCount() == 0 && count == buffer.getWritePosition() && count <= size));
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  FuzzInput input(data, size);
  const unsigned int offset = input.number(2);
  static const int file = ::memfd_create("fuzz", 0);
  require(file >= 0 && ::ftruncate(file, 0) == 0);
  require(::pwrite(file, input.rest(), input.restSize(), 0) == static_cast<ssize_t>(input.restSize()));

  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const FuzzTree fromFile = treeOfFile(path.c_str());
  const FuzzTree fromMemory = treeOf(input.rest(), input.restSize());
  if (fromMemory != nullptr) require(fromFile != nullptr && sectionOf(*fromFile) == sectionOf(*fromMemory));

  std::FILE* const stream = std::fopen(path.c_str(), "rb");
  require(stream != nullptr);
  readData(stream, static_cast<long>(offset), KyCInventoryData::readInventoryDataHeaderFromFile, size);
  readData(stream, static_cast<long>(offset), KyCInventoryData::readInventoryDataTrailerFromFile, size);
  std::fclose(stream);
  return 0;
}
