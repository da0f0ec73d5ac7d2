// What the dump asks of the C allocator, and what it does when that says no. Linked with --wrap for malloc and realloc
// against the library's objects, so that both calls of the library come here first.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "KyDumpTest.h"
#include "errorhandling/KyNPoolAllocator.h"

using MyStream = KyCInventoryItem::MyStream;

extern "C" void* __real_malloc(std::size_t size);
extern "C" void* __real_realloc(void* block, std::size_t size);

namespace
{
struct TRequest
{
  bool growing;    // realloc; otherwise malloc
  std::size_t size;
  bool operator==(const TRequest& other) const { return growing == other.growing && size == other.size; }
};

std::ostream& operator<<(std::ostream& out, const TRequest& request)
{
  return out << (request.growing ? "realloc(" : "malloc(") << request.size << ")";
}

// Watches the library's requests while it lives, and refuses all from the n-th on (counted from 0).
class KyWatchedAllocator
{
public:
  explicit KyWatchedAllocator(std::size_t refuseFrom = SIZE_MAX) : m_refuseFrom(refuseFrom) { s_active = this; }
  ~KyWatchedAllocator() { s_active = nullptr; }
  KyWatchedAllocator(const KyWatchedAllocator&) = delete;
  KyWatchedAllocator& operator=(const KyWatchedAllocator&) = delete;

  // True when the request may be served. The watcher's own bookkeeping is not watched.
  static bool ask(bool growing, std::size_t size)
  {
    KyWatchedAllocator* const watcher = s_active;
    if (watcher == nullptr) return true;
    s_active = nullptr;
    const bool isCounted = watcher->counts(growing, size);
    if (isCounted) watcher->m_requests.push_back({growing, size});
    s_active = watcher;
    return !isCounted || watcher->m_requests.size() <= watcher->m_refuseFrom;
  }

  // Only growths count, and of these the ones for texts of another length than this one. A block grows by the text's length and 1024.
  //
  //   capacity   bytes that the block has now
  void passOver(std::size_t textLength, std::size_t capacity)
  {
    m_passedOver = textLength;
    m_capacity = capacity;
  }

  const std::vector<TRequest>& requests() const { return m_requests; }
  bool hasRefused() const { return m_requests.size() > m_refuseFrom; }

private:
  bool counts(bool growing, std::size_t size)
  {
    if (m_passedOver == 0) return true;
    if (!growing) return false;
    const std::size_t grown = size - m_capacity;
    m_capacity = size;
    return grown != m_passedOver + 1024;
  }

  static KyWatchedAllocator* s_active;
  std::size_t m_refuseFrom;
  std::size_t m_passedOver = 0;    // a text's length; 0: none
  std::size_t m_capacity = 0;
  std::vector<TRequest> m_requests;
};

KyWatchedAllocator* KyWatchedAllocator::s_active = nullptr;

constexpr const char* cannotGenerate =
    "Internal error. Kyrel Support information: Cannot generate string representation of inventory tree.";
}    // namespace

extern "C" void* __wrap_malloc(std::size_t size)
{
  return KyWatchedAllocator::ask(false, size) ? __real_malloc(size) : nullptr;
}

extern "C" void* __wrap_realloc(void* block, std::size_t size)
{
  return KyWatchedAllocator::ask(true, size) ? __real_realloc(block, size) : nullptr;
}

namespace
{
std::string text(std::size_t length) { return std::string(length, 'x'); }

TEST(MyStreamMemory, theFirstBlockHas1024Bytes)
{
  const KyWatchedAllocator watcher;
  const MyStream stream(false);
  EXPECT_EQ(watcher.requests(), (std::vector<TRequest>{{false, 1024}}));
}

TEST(MyStreamMemory, printModeHasNoBlock)
{
  const KyWatchedAllocator watcher;
  const MyStream stream(true);
  EXPECT_EQ(watcher.requests(), (std::vector<TRequest>{}));
}

TEST(MyStreamMemory, aTextThatJustFitsDoesNotGrowTheBlock)
{
  const std::string whole = text(1024);
  const KyWatchedAllocator watcher;
  MyStream stream(false);
  EXPECT_TRUE(stream.write(whole.c_str()));
  EXPECT_TRUE(stream.write(""));
  EXPECT_EQ(watcher.requests(), (std::vector<TRequest>{{false, 1024}}));
}

TEST(MyStreamMemory, growsByTheTextsLengthAnd1024)
{
  const std::string most = text(1000);
  const std::string more = text(30);
  const std::string filling = text(1048);
  const KyWatchedAllocator watcher;
  MyStream stream(false);
  EXPECT_TRUE(stream.write(most.c_str()));       // 24 bytes are free
  EXPECT_TRUE(stream.write(more.c_str()));       // 1024 + 30 + 1024
  EXPECT_TRUE(stream.write(filling.c_str()));    // fills it: 1030 + 1048
  EXPECT_TRUE(stream.write("x"));                // 2078 + 1 + 1024
  EXPECT_EQ(watcher.requests(), (std::vector<TRequest>{{false, 1024}, {true, 2078}, {true, 3103}}));
}

TEST(MyStreamMemory, withoutTheFirstBlockEveryWriteFails)
{
  const KyWatchedAllocator watcher(0);
  MyStream stream(false);
  EXPECT_FALSE(stream.write("text"));
  EXPECT_FALSE(stream.write(""));
  EXPECT_FALSE(stream.writef("%u", 1u));
  EXPECT_TRUE(stream.getString().isEmpty());
  EXPECT_EQ(watcher.requests(), (std::vector<TRequest>{{false, 1024}}));
}

TEST(MyStreamMemory, aBufferThatCouldNotGrowIsGivenUpForGood)
{
  const std::string whole = text(1024);
  MyStream stream(false);
  EXPECT_TRUE(stream.write(whole.c_str()));
  {
    const KyWatchedAllocator watcher(0);
    EXPECT_FALSE(stream.write("x"));
    EXPECT_EQ(watcher.requests(), (std::vector<TRequest>{{true, 2049}}));
  }
  EXPECT_TRUE(stream.getString().isEmpty());
  EXPECT_FALSE(stream.write("x")) << "although there is memory again";
  EXPECT_FALSE(stream.write(""));
  EXPECT_FALSE(stream.writef("%u", 1u));
  EXPECT_TRUE(stream.getString().isEmpty());
}

class DumpMemory : public KyDumpTest
{
};

TEST_F(DumpMemory, indentationStopsAtTheFirstFailedWrite)
{
  MyStream stream(false);
  EXPECT_TRUE(stream.write(text(1020).c_str()));
  const KyWatchedAllocator watcher(0);
  EXPECT_FALSE(root.writeIndentToStream(1000, stream));
  EXPECT_EQ(watcher.requests(), (std::vector<TRequest>{{true, 1024 + 4 + 1024}}));
}

TEST_F(DumpMemory, renderingStopsAtTheFirstFailedWrite)
{
  for (unsigned int n = 1; n <= 100; ++n)
    root.addPath(pool, KyNInventoryIDs::BOARD[n]);
  const KyWatchedAllocator watcher(1);    // the first block is granted, its growth is not
  MyStream stream(false);
  EXPECT_FALSE(root.writeToStream(pool, 0, 0, stream));
  EXPECT_EQ(watcher.requests().size(), 2u);
  EXPECT_TRUE(stream.getString().isEmpty());
  EXPECT_NO_REPORTS(pool);
}

TEST_F(DumpMemory, toStringReportsAndIsEmptyWhicheverAllocationFails)
{
  for (unsigned int n = 1; n <= 20; ++n)
  {
    root.createParameter<KyCString>(pool, KyNInventoryIDs::BOARD[n] / KyNInventoryIDs::NAME, "a\n<b>", "V", true, n);
  }
  const std::string whole = dump(0);
  EXPECT_GT(whole.length(), 4096u);
  bool refused = true;
  for (std::size_t n = 0; refused; ++n)
  {
    KyCString result("untouched");
    {
      const KyWatchedAllocator watcher(n);
      result = root.toString(pool, 0, 0);
      refused = watcher.hasRefused();
    }
    SCOPED_TRACE(n);
    if (refused)
    {
      EXPECT_REPORTS(pool, {0x1300810, "toString", cannotGenerate});
      EXPECT_TRUE(result.isEmpty());
    }
    EXPECT_TRUE(refused || whole == result.c_str());
  }
}

// What every kind of line needs: a value that is known beforehand, one of several lines, one that is escaped, one of an
// unknown type; units; an index; an item within the item.
void fillWithEveryKindOfLine(DumpMemory& test, KyCInventoryItem& item)
{
  test.addParameter(item, KyNInventoryIDs::SIZE, "SIZE", -5, "mV", true, 3);
  test.addParameter(item, KyNInventoryIDs::NAME, "NAME", KyCString("plain"));
  test.addParameter(item, KyNInventoryIDs::LOCATION, "LOCATION", KyCString("a\n<b>\nc"));
  test.addParameter(item, KyNInventoryIDs::STATUS, "STATUS", KyCString("<up>"));
  test.addParameter(item, KyCInventoryAddress(70000u), "no name of its own", 1u);
  auto* const unknown = new KyCInventoryParameter(test.pool, KyNInventoryIDs::OFFSET, "OFFSET", 0x999u);
  ASSERT_EQ(item.addParameter(test.pool, KyNInventoryIDs::THIS_NODE, unknown), &item);
  test.addItem(item, KyNInventoryIDs::BOARD[2], "BOARD");
}

constexpr int optionSets[] = {0, MyStream::PLAIN, MyStream::ITEM_DESCRIPTION | MyStream::PARAMETER_DESCRIPTION,
                              MyStream::PLAIN | MyStream::ITEM_DESCRIPTION | MyStream::PARAMETER_DESCRIPTION,
                              MyStream::NO_VALUE | MyStream::ID_AS_NUMBER | MyStream::INDEX_WITH_DOT};

// Lines are collected in a segment of 8 KiB. Whichever line finds it full, the dump ends there.
TEST_F(DumpMemory, renderingStopsAtWhicheverLineTheBufferCannotGrow)
{
  for (const int options : optionSets)
  {
    for (unsigned int length = 6800; length <= 8200; ++length)
    {
      KyCInventoryItem item(pool, KyNInventoryIDs::ROOT, "ROOT");
      addParameter(item, KyNInventoryIDs::GAIN, "GAIN", 1, text(length).c_str());
      fillWithEveryKindOfLine(*this, item);
      MyStream stream(false);
      bool written = true;
      bool refused = false;
      {
        const KyWatchedAllocator watcher(0);
        written = item.writeToStream(pool, options, 0, stream);
        refused = watcher.hasRefused();
      }
      ASSERT_TRUE(refused && !written) << options << " " << length;
      ASSERT_TRUE(stream.getString().isEmpty());
      pool.takeReports();    // of the value that has no type, where it stands before the failure
    }
  }
}

// So deep that no line has room in the segment: every blank and every mark is a write of its own, and each mark is the one
// for which the buffer cannot grow.
TEST_F(DumpMemory, renderingStopsAtWhicheverMarkTheBufferCannotGrow)
{
  constexpr int depth = 2100;
  constexpr std::size_t blankLength = 4;
#ifdef __SANITIZE_ADDRESS__
  constexpr unsigned int step = 5;    // it takes twenty times longer
#else
  constexpr unsigned int step = 1;
#endif
  fillWithEveryKindOfLine(*this, root);
  const int descriptions = MyStream::ITEM_DESCRIPTION | MyStream::PARAMETER_DESCRIPTION;
  unsigned int failures = 0;
  for (unsigned int room = 0; room < 1024; room += step)
  {
    const int options = room % 8 == 0 ? MyStream::PLAIN | descriptions : descriptions;
    bool refused = true;
    for (std::size_t n = 0; refused; ++n)
    {
      MyStream stream(false);
      ASSERT_TRUE(stream.write(text(1024 - room).c_str()));
      bool written = false;
      {
        KyWatchedAllocator watcher(n);
        watcher.passOver(blankLength, 1024);
        written = root.writeToStream(pool, options, depth, stream);
        refused = watcher.hasRefused();
      }
      ASSERT_EQ(written, !refused) << room << " " << n;
      ASSERT_EQ(stream.getString().isEmpty(), refused);
      failures += refused ? 1 : 0;
      pool.takeReports();
    }
  }
  EXPECT_GT(failures, 300u / step);
}

TEST_F(DumpMemory, toStringWithoutABlockReportsAlsoWhenThereIsNothingToWrite)
{
  KyCString result("untouched");
  {
    const KyWatchedAllocator watcher(0);
    result = root.toString(pool, MyStream::NO_ITEM_LINES | MyStream::NO_PARAMETERS, 0);
  }
  EXPECT_REPORTS(pool, {0x1300810, "toString", cannotGenerate});
  EXPECT_TRUE(result.isEmpty());
}

TEST_F(DumpMemory, toStringReportsBehindTheBaseLibraryWhenTheFinishedStringFails)
{
  KyNPoolAllocator::failAfter(0);
  const KyCString result = root.toString(pool, 0, 0);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, {0x1000000, "", "Out of memory."}, {0x1300810, "toString", cannotGenerate});
  EXPECT_TRUE(result.isEmpty());
}

TEST_F(DumpMemory, aLongDumpIsHeldOnce)
{
  const std::string value(100000, 'x');
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, value.c_str(), "", false, 0);
  KyNPoolAllocator::failAfter(0);    // nothing is asked for
  const KyCString result = root.toString(pool, 0, 0);
  KyNPoolAllocator::reset();
  EXPECT_GT(result.length(), 100000u);
  EXPECT_NO_REPORTS(pool);
}

TEST_F(DumpMemory, nothingIsReportedBehindTheWriteThatFails)
{
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, text(1000).c_str(), "", false, 0);
  auto* unknown = new KyCInventoryParameter(pool, KyNInventoryIDs::SIZE, "SIZE", 0x999u);
  ASSERT_EQ(root.addParameter(pool, KyNInventoryIDs::THIS_NODE, unknown), &root);
  ASSERT_EQ(pool.takeReports().size(), 0u);
  MyStream stream(false);
  {
    const KyWatchedAllocator watcher(0);
    EXPECT_FALSE(root.writeToStream(pool, 0, 0, stream));
  }
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(stream.getString().isEmpty());
}

TEST_F(DumpMemory, aStreamKeepsWhatStandsBeforeAValueThatCannotBeCopied)
{
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "<value>", "", false, 0);
  MyStream stream(false);
  {
    const KyWatchedAllocator watcher(0);
    EXPECT_FALSE(root.writeToStream(pool, 0, 0, stream));
  }
  EXPECT_STREQ(stream.getString().c_str(),
               "<ITEM ID=\"ROOT\">\n"
               "    <PARAM ID=\"NAME\" Type=\"String\">\n"
               "        <VALUE>");
  EXPECT_NO_REPORTS(pool);
}

TEST_F(DumpMemory, printTreeReportsNothingWhenAValueCannotBeCopied)
{
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "value", "", false, 0);
  const KyWatchedAllocator watcher(0);
  MyStream stream(true);
  EXPECT_FALSE(root.writeToStream(pool, 0x80 | 0x10 | 0x1 | 0xB000, 0, stream));
  EXPECT_NO_REPORTS(pool);
}
}    // namespace
