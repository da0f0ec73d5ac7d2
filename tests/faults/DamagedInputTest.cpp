// DamagedInputTest.cpp: sections with every damage of one kind: cut off anywhere, any bit changed, two of them spliced. From
// memory and from a file there comes a tree and no report, or reports and no tree, or neither; and no more memory is taken
// than the multiple of the input's size that docs/limits.md names.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "faults/KyScenario.h"

using namespace KyNInventoryIDs;

namespace
{
// What reading may take at once: this many bytes for each of the input, and a little for the readers themselves (a file
// stream has a buffer).
constexpr std::size_t s_multiple = 128;
constexpr std::size_t s_besides = 16384;

std::size_t s_highest = 0;    // most bytes for a byte of the input, of what stands above s_besides

bool isAllWanted()
{
  const char* const wish = std::getenv("KY_FAULTS");
  return wish != nullptr && std::strcmp(wish, "all") == 0;
}

// The scene's tree has every value type, units, shared data and items in items; descriptions of its own are in it, too.
std::string storedScene(bool isOther)
{
  KyScene scene;
  KyCInventoryItem* const tree = isOther ? scene.other.get() : scene.tree.get();
  KyCBuffer buffer(scene.quiet);
  KyCInventoryData::generateInventorySection(scene.quiet, buffer, tree);
  return std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}

class DamagedInput : public ::testing::Test
{
protected:
  void SetUp() override { m_file = std::tmpfile(); }
  void TearDown() override { std::fclose(m_file); }

  // From memory, and when asked from a file as well.
  void read(const std::string& bytes, bool fromFile)
  {
    if (fromFile) readFile(bytes);
    KyCErrorListPool pool;
    KyCInventoryItem* root = nullptr;
    const std::size_t start = KyFaultyHeap::startPeak();
    KyCInventoryData::extractInventoryTreeFromMem(pool, reinterpret_cast<const unsigned char*>(bytes.data()),
                                                  static_cast<unsigned int>(bytes.size()), root);
    check(pool, root, bytes.size(), KyFaultyHeap::peakSince(start));
  }

private:
  void readFile(const std::string& bytes)
  {
    std::rewind(m_file);
    std::fwrite(bytes.data(), 1, bytes.size(), m_file);
    std::fflush(m_file);
    ASSERT_EQ(::ftruncate(::fileno(m_file), static_cast<off_t>(bytes.size())), 0);
    const std::string path = "/proc/self/fd/" + std::to_string(::fileno(m_file));
    KyCErrorListPool pool;
    KyCInventoryItem* root = nullptr;
    const std::size_t start = KyFaultyHeap::startPeak();
    KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
    check(pool, root, bytes.size(), KyFaultyHeap::peakSince(start));
  }

  static void check(const KyCErrorListPool& pool, KyCInventoryItem* root, std::size_t size, std::size_t peak)
  {
    const std::unique_ptr<KyCInventoryItem> owner(root);
    EXPECT_TRUE(root == nullptr || pool.getErrorCount() == 0) << "a tree and reports";
    EXPECT_LE(peak, s_besides + s_multiple * size);
    if (peak > s_besides && size != 0) s_highest = std::max(s_highest, (peak - s_besides) / size);
    if (root == nullptr) return;
    KyCErrorListPool walk;
    KyCBuffer again(walk);
    KyCInventoryData::generateInventorySection(walk, again, root);
    EXPECT_EQ(walk.getErrorCount(), 0u) << "what was read cannot be stored";
  }

  std::FILE* m_file = nullptr;
};
}    // namespace

TEST_F(DamagedInput, everyTruncationAtEitherEnd)
{
  const std::string section = storedScene(false);
  for (std::size_t size = 0; size <= section.size(); ++size)
  {
    SCOPED_TRACE(size);
    read(section.substr(0, size), true);
    read(section.substr(section.size() - size), true);
    if (HasFailure()) return;
  }
}

TEST_F(DamagedInput, everyBitChanged)
{
  std::string section = storedScene(false);
  for (std::size_t bit = 0; bit < 8 * section.size(); ++bit)
  {
    SCOPED_TRACE(bit);
    const char kept = section[bit / 8];
    section[bit / 8] = static_cast<char>(kept ^ (1 << bit % 8));
    read(section, bit % 8 == 0 || isAllWanted());
    section[bit / 8] = kept;
    if (HasFailure()) return;
  }
}

// The front of one and the end of another, at every pair of places; in CI, at some of them.
TEST_F(DamagedInput, splicesOfTwoSections)
{
  const std::string a = storedScene(false);
  const std::string b = storedScene(true);
  const std::size_t step = isAllWanted() ? 1 : 37;
  for (std::size_t front = 0; front <= a.size(); front += step)
    for (std::size_t end = 0; end <= b.size(); end += step)
    {
      SCOPED_TRACE(std::to_string(front) + ", " + std::to_string(end));
      read(a.substr(0, front) + b.substr(end), false);
      if (HasFailure()) return;
    }
}

// The sizes in header and trailer fit again, so that what is spliced is read as a tree.
TEST_F(DamagedInput, splicesOfTwoTreesInOneSection)
{
  const std::string a = storedScene(false);
  const std::string b = storedScene(true);
  const std::size_t step = isAllWanted() ? 1 : 31;
  for (std::size_t front = 24; front + 24 <= a.size(); front += step)
    for (std::size_t end = 24; end + 24 <= b.size(); end += step)
    {
      SCOPED_TRACE(std::to_string(front) + ", " + std::to_string(end));
      const std::string tree = a.substr(24, front - 24) + b.substr(end, b.size() - 24 - end);
      KyCErrorListPool pool;
      KyCBuffer buffer(pool);
      const auto size = static_cast<unsigned int>(tree.size());
      KyCInventoryData::writeHeader(pool, buffer, size, 0xFFFFFFFF);
      buffer.writeBuffer(pool, tree.data(), size, 1, -1);
      KyCInventoryData::writeTrailer(pool, buffer, size);
      read(std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition()), false);
      if (HasFailure()) return;
    }
}

// What makes the most of its bytes: many small items, and a long text that is named again and again.
TEST_F(DamagedInput, theDensestInputTakesNoMoreThanTheMultiple)
{
  for (const std::size_t length : {std::size_t{0}, std::size_t{300}, std::size_t{3000}})
  {
    const std::string description(length, 'x');
    KyCErrorListPool pool;
    KyCInventoryItem root(pool, ROOT, "");
    for (unsigned int n = 0; n < 3000; ++n)
      root.addItem(THIS_NODE, new KyCInventoryItem(pool, KyCInventoryAddress(1, n), description.c_str()));
    KyCBuffer buffer(pool);
    KyCInventoryData::generateInventorySection(pool, buffer, &root);
    ASSERT_EQ(pool.getErrorCount(), 0u);
    read(std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition()), true);
  }
  std::printf("at most %zu bytes for one of the input\n", s_highest);
}
