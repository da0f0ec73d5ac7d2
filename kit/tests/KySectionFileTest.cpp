// Trees in files.
#include "inventorykit/KySectionFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include "support/KyFiles.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
class KySectionFile : public ::testing::Test
{
protected:
  std::string section(const std::string& text)
  {
    KySampleTree sample(text);
    return sectionOf(m_pool, sample.root());
  }
  std::string differenceOf(const std::string& path, const std::string& text)
  {
    const TreePointer tree = readTree(m_pool, path);
    return tree ? KyTreeDifference(*tree, KySampleTree(text).root()) : "no tree";
  }

  KyTemporaryFolder m_folder;
  KyTestPool m_pool;
};
}    // namespace

TEST_F(KySectionFile, whatIsWrittenReadsBackEqual)
{
  KySampleTree sample("ROOT/BOARD[2] SIZE=1");
  EXPECT_TRUE(writeTree(m_pool, m_folder.path("a"), sample.root(), Overwrite::NO));
  EXPECT_EQ(differenceOf(m_folder.path("a"), "ROOT/BOARD[2] SIZE=1"), "");
}

TEST_F(KySectionFile, anExistingFileIsLeftAloneUnlessToldOtherwise)
{
  KySampleTree sample("ROOT");
  const std::string path = m_folder.write("a", "mine");
  EXPECT_FALSE(writeTree(m_pool, path, sample.root(), Overwrite::NO));
  EXPECT_REPORTS(m_pool, {0x1500006, "mayWrite", path + " exists already."});
  EXPECT_EQ(contentOf(path), "mine");
  EXPECT_TRUE(writeTree(m_pool, path, sample.root(), Overwrite::YES));
  EXPECT_EQ(differenceOf(path, "ROOT"), "");
}

TEST_F(KySectionFile, replacingKeepsWhatStandsAroundTheSection)
{
  KySampleTree sample("ROOT/BOARD[2] SIZE=2");
  const std::string changed = sectionOf(m_pool, sample.root());
  const std::string old = section("ROOT/BOARD[2] SIZE=1; BOARD[2] NAME=\"a longer tree\"");
  const std::string atEnd = m_folder.write("end", "firmware" + old);
  const std::string atStart = m_folder.write("start", old + "firmware that is longer than a trailer");
  EXPECT_TRUE(replaceTree(m_pool, atEnd, sample.root()));
  EXPECT_EQ(contentOf(atEnd), "firmware" + changed);
  EXPECT_TRUE(replaceTree(m_pool, atStart, sample.root()));
  EXPECT_EQ(contentOf(atStart), changed + "firmware that is longer than a trailer");
}

TEST_F(KySectionFile, aSectionWithoutItsHeaderOrTrailerIsReplacedToo)
{
  KySampleTree sample("ROOT/BOARD[2] SIZE=2");
  const std::string changed = sectionOf(m_pool, sample.root());
  const std::string old = section("ROOT");
  const std::string noHeader = m_folder.write("a", old.substr(24));
  const std::string noTrailer = m_folder.write("b", old.substr(0, old.size() - 24));
  EXPECT_TRUE(replaceTree(m_pool, noHeader, sample.root()));
  EXPECT_EQ(contentOf(noHeader), changed);
  EXPECT_TRUE(replaceTree(m_pool, noTrailer, sample.root()));
  EXPECT_EQ(contentOf(noTrailer), changed);
}

TEST_F(KySectionFile, replacingWithoutASectionIsReportedAndTheFileStays)
{
  KySampleTree sample("ROOT");
  const std::string path = m_folder.write("a", "no section in here, but more than a header");
  EXPECT_FALSE(replaceTree(m_pool, path, sample.root()));
  EXPECT_REPORTS(
      m_pool, {0x1500002, "replaceTree", path + " holds no inventory section, neither at its end nor at its start."});
  EXPECT_EQ(contentOf(path), "no section in here, but more than a header");
}

TEST_F(KySectionFile, whatCannotBeReadIsReported)
{
  EXPECT_EQ(readTree(m_pool, m_folder.path()), nullptr);
  EXPECT_REPORTS(m_pool, {0x1500001, "readBytes", m_folder.path() + " is a folder."});
  EXPECT_EQ(readTree(m_pool, m_folder.write("a", "x")), nullptr);
  EXPECT_REPORTS(m_pool, {0x1500002, "readTree",
                          m_folder.path("a") + " holds no inventory section, neither at its end nor at its start."});
  std::string bytes;
  EXPECT_FALSE(readBytes(m_pool, m_folder.path("none"), bytes));
  EXPECT_REPORTS(m_pool,
                 {0x1500000, "readBytes", "Cannot read " + m_folder.path("none") + ": No such file or directory."});
}

TEST_F(KySectionFile, modeAndLinkAreKept)
{
  KySampleTree sample("ROOT");
  const std::string path = m_folder.write("a", section("ROOT/BOARD[2]"));
  ASSERT_EQ(::chmod(path.c_str(), 0604), 0);
  ASSERT_EQ(::symlink("a", m_folder.path("link").c_str()), 0);
  EXPECT_TRUE(replaceTree(m_pool, m_folder.path("link"), sample.root()));
  struct stat status = {};
  ASSERT_EQ(::lstat(m_folder.path("link").c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0604u);
  EXPECT_EQ(differenceOf(path, "ROOT"), "");
}

TEST_F(KySectionFile, whatCannotBeWrittenIsReportedAndNothingIsLeftBehind)
{
  const std::string folder = m_folder.path("none");
  EXPECT_FALSE(writeBytes(m_pool, folder + "/a", "x", Overwrite::NO));
  EXPECT_REPORTS(m_pool, {0x1500003, "writeBytes", "Cannot write " + folder + "/a: No such file or directory."});
  EXPECT_FALSE(writeBytes(m_pool, m_folder.path(), "x", Overwrite::YES));
  EXPECT_REPORTS(m_pool, {0x1500003, "writeBytes", "Cannot write " + m_folder.path() + ": Is a directory."});
  ASSERT_EQ(::symlink("gone", m_folder.path("link").c_str()), 0);
  EXPECT_FALSE(writeBytes(m_pool, m_folder.path("link"), "x", Overwrite::YES));
  EXPECT_REPORTS(m_pool, {0x1500004, "writeBytes",
                          "Cannot write " + m_folder.path("link") + ": it is a link that leads to no file."});
  EXPECT_FALSE(writeBytes(m_pool, "/dev/full", "x", Overwrite::NO));
  EXPECT_REPORTS(m_pool, {0x1500003, "writeBytes", "Cannot write /dev/full: No space left on device."});
}
