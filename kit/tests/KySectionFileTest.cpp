// Trees in files.
#include "inventorykit/KySectionFile.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <functional>

#include "KySectionBytes.h"
#include "inventorykit/KyCheck.h"
#include "inventorykit/KyInspect.h"
#include "support/KyFiles.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "threads/KyThreads.h"

using namespace KyNInventoryKit;

namespace
{
std::string s_watchedFile;
std::string s_flushes;      // "f" or "d" for a file or a folder, and what the watched file held by then
int s_signalAtFlush = 0;    // what the process gets then; 0: nothing
std::atomic<unsigned int> s_umaskCalls{0};
}    // namespace

// These stand in front of the system's.
extern "C" __attribute__((visibility("default"))) mode_t umask(mode_t mask) noexcept
{
  ++s_umaskCalls;
  return static_cast<mode_t>(::syscall(SYS_umask, mask));
}
extern "C" __attribute__((visibility("default"))) int fsync(int file)
{
  struct stat status = {};
  if (!s_watchedFile.empty() && ::fstat(file, &status) == 0)
    s_flushes += (S_ISDIR(status.st_mode) ? "d:" : "f:") + contentOf(s_watchedFile) + " ";
  if (s_signalAtFlush != 0) ::kill(::getpid(), s_signalAtFlush);
  return static_cast<int>(::syscall(SYS_fsync, file));
}

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

  std::vector<std::string> filesIn(const std::string& folder)
  {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

  KyTemporaryFolder m_folder;
  KyTestPool m_pool;
};

using Names = std::vector<std::string>;

// What a function gives that runs in a process of its own: it may change the user, limits and what is mounted.
std::string inAnotherProcess(const std::function<std::string()>& function)
{
  int ends[2];
  if (::pipe(ends) != 0) return "no pipe";
  const pid_t process = ::fork();
  if (process == 0)
  {
    const std::string text = function();
    const bool isWritten = ::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::_exit(isWritten ? 0 : 1);
  }
  ::close(ends[1]);
  std::string text;
  char block[4096];
  for (ssize_t got = 0; (got = ::read(ends[0], block, sizeof(block))) > 0;)
    text.append(block, static_cast<std::size_t>(got));
  ::close(ends[0]);
  int status = 0;
  ::waitpid(process, &status, 0);
  return text;
}

// "done", or the first report.
std::string written(const std::string& path, const std::string& bytes)
{
  KyCErrorListPool pool;
  if (writeBytes(pool, path, bytes, Overwrite::YES)) return "done";
  return pool.getEntryCount() != 0 ? pool.getEntry(0).text : "no report";
}

// In a process of its own: nothing that is mounted from now on is seen by others.
bool mayMount()
{
  const int flags = ::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
  return ::unshare(flags) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}
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

TEST_F(KySectionFile, aDamagedHeaderOrTrailerIsNotLeftBesideANewSection)
{
  KySampleTree sample("ROOT/BOARD[2] SIZE=2");
  std::string damaged = section("ROOT");
  damaged[11] = '\x09';
  const std::string atEnd = m_folder.write("end", "firmware" + damaged);
  EXPECT_FALSE(replaceTree(m_pool, atEnd, sample.root()));
  EXPECT_REPORTS(m_pool, {0x1502805, "replaceTree",
                          atEnd + " stays as it is: at byte 8, where the header of its section must be, stands one of "
                                  "version 9."});
  EXPECT_EQ(contentOf(atEnd), "firmware" + damaged);

  damaged = section("ROOT");
  damaged[damaged.size() - 9] = '\x09';
  const std::string atStart = m_folder.write("start", damaged + "firmware that is longer than a trailer");
  EXPECT_FALSE(replaceTree(m_pool, atStart, sample.root()));
  EXPECT_REPORTS(m_pool,
                 {0x1502805, "replaceTree",
                  atStart + " stays as it is: at byte 35, where the trailer of its section must be, stands one of "
                            "version 9."});
  EXPECT_EQ(contentOf(atStart), damaged + "firmware that is longer than a trailer");
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

// ---- Which section ----

TEST_F(KySectionFile, aDamagedEndKeepsTheSectionAtTheStartFromBeingReadAndReplaced)
{
  SectionSizes wrongVersion = {0};
  wrongVersion.version = 2;
  SectionSizes tooLong = {100000};
  for (const SectionSizes& sizes : {wrongVersion, tooLong})
  {
    const std::string bytes = section("ROOT/BOARD[2]") + "firmware" + trailerOf(sizes);
    const std::string path = m_folder.write("a", bytes);
    KyCErrorListPool pool;
    SectionPlace place;
    EXPECT_FALSE(findSection(pool, bytes, place));
    EXPECT_EQ(pool.getErrorCount(), 1u);
    EXPECT_EQ(readTreeFromBytes(pool, bytes, "a"), nullptr);
    EXPECT_EQ(readTree(pool, path), nullptr);
    EXPECT_FALSE(replaceTree(pool, path, KySampleTree("ROOT").root()));
    EXPECT_EQ(contentOf(path), bytes);
  }
}

TEST_F(KySectionFile, anEmptySectionAtTheEndLeavesTheOneAtTheStartToBeRead)
{
  const std::string old = section("ROOT/BOARD[2] SIZE=1");
  const std::string rest = "firmware" + sectionOfData("");
  const std::string path = m_folder.write("a", old + rest);
  const TreePointer fromBytes = readTreeFromBytes(m_pool, old + rest, "a");
  ASSERT_NE(fromBytes, nullptr);
  EXPECT_EQ(KyTreeDifference(*fromBytes, KySampleTree("ROOT/BOARD[2] SIZE=1").root()), "");
  EXPECT_EQ(differenceOf(path, "ROOT/BOARD[2] SIZE=1"), "");

  SectionPlace place;
  EXPECT_TRUE(findSection(m_pool, old + rest, place));
  EXPECT_EQ(place.begin, 0u);
  EXPECT_EQ(place.end, old.size());
  EXPECT_FALSE(place.isAtEnd);
  Inspection inspection;
  EXPECT_TRUE(inspectBytes(m_pool, old + rest, "a", SectionEnd::READ, inspection));
  EXPECT_EQ(inspection.end, old.size());
  EXPECT_EQ(checkBytes(old + rest, "a", CheckOptions()).errors, 0u);

  KySampleTree sample("ROOT/BOARD[2] SIZE=2");
  EXPECT_TRUE(replaceTree(m_pool, path, sample.root()));
  EXPECT_EQ(contentOf(path), sectionOf(m_pool, sample.root()) + rest);
}

// What is read from the start may even reach into the empty section behind it.
TEST_F(KySectionFile, dataAtTheStartMayReachToTheEndOfTheFile)
{
  const SectionSizes sizes = {sampleStream.size() + 24};
  const std::string bytes = headerOf(sizes) + sampleStream + trailerOf({0});
  const std::string path = m_folder.write("a", bytes);
  EXPECT_NE(readTree(m_pool, path), nullptr);
  EXPECT_NE(readTreeFromBytes(m_pool, bytes, "a"), nullptr);
}

TEST_F(KySectionFile, emptySectionsAloneGiveNoTreeAndMayBeReplaced)
{
  const std::string empty = sectionOfData("");
  for (const std::string& bytes : {empty, empty + "firmware" + empty, "firmware" + empty})
  {
    const std::string path = m_folder.write("a", bytes);
    EXPECT_EQ(readTree(m_pool, path), nullptr);
    EXPECT_REPORTS(m_pool,
                   {0x1500002, "readTree", path + " holds no inventory section, neither at its end nor at its start."});
    EXPECT_EQ(readTreeFromBytes(m_pool, bytes, path), nullptr);
    EXPECT_REPORTS(m_pool,
                   {0x1500002, "readTree", path + " holds no inventory section, neither at its end nor at its start."});
    SectionPlace place;
    EXPECT_TRUE(findSection(m_pool, bytes, place));
    EXPECT_EQ(place.begin, bytes.size() - empty.size());
    EXPECT_TRUE(replaceTree(m_pool, path, KySampleTree("ROOT").root()));
    EXPECT_EQ(contentOf(path), bytes.substr(0, bytes.size() - empty.size()) + section("ROOT"));
  }
}

TEST_F(KySectionFile, anEmptyEndAndADamagedStartGiveNoTree)
{
  SectionSizes wrongVersion = {5};
  wrongVersion.version = 2;
  const std::string bytes = headerOf(wrongVersion) + "firmware" + sectionOfData("");
  const std::string path = m_folder.write("a", bytes);
  KyCErrorListPool pool;
  SectionPlace place;
  EXPECT_FALSE(findSection(pool, bytes, place));
  EXPECT_EQ(readTreeFromBytes(pool, bytes, "a"), nullptr);
  EXPECT_EQ(readTree(pool, path), nullptr);
  EXPECT_FALSE(replaceTree(pool, path, KySampleTree("ROOT").root()));
  EXPECT_EQ(contentOf(path), bytes);
}

TEST_F(KySectionFile, aSectionThatCannotBeReadWholeIsNotWrittenOver)
{
  const std::string bytes = "firmware" + sectionOfData(sampleStream.substr(0, sampleStream.size() - 1));
  const std::string path = m_folder.write("a", bytes);
  KyCErrorListPool pool;
  EXPECT_FALSE(replaceTree(pool, path, KySampleTree("ROOT").root()));
  EXPECT_GT(pool.getErrorCount(), 0u);
  EXPECT_EQ(contentOf(path), bytes);
}

// ---- How a file is replaced ----

TEST_F(KySectionFile, whatIsNoOrdinaryFileIsNotReplaced)
{
  const std::string pipe = m_folder.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  KySampleTree sample("ROOT");
  EXPECT_FALSE(replaceTree(m_pool, pipe, sample.root()));
  EXPECT_REPORTS(m_pool, {0x1500009, "replaceTree", "Cannot replace " + pipe + ": it is no ordinary file."});
  ASSERT_EQ(::symlink("pipe", m_folder.path("link").c_str()), 0);
  EXPECT_FALSE(replaceTree(m_pool, m_folder.path("link"), sample.root()));
  EXPECT_REPORTS(m_pool,
                 {0x1500009, "replaceTree", "Cannot replace " + m_folder.path("link") + ": it is no ordinary file."});
  EXPECT_FALSE(replaceTree(m_pool, "/dev/null", sample.root()));
  EXPECT_REPORTS(m_pool, {0x1500009, "replaceTree", "Cannot replace /dev/null: it is no ordinary file."});
  EXPECT_FALSE(replaceTree(m_pool, m_folder.path(), sample.root()));
  EXPECT_REPORTS(m_pool, {0x1500001, "readBytes", m_folder.path() + " is a folder."});
  struct stat status = {};
  EXPECT_TRUE(::lstat(pipe.c_str(), &status) == 0 && S_ISFIFO(status.st_mode));
  EXPECT_TRUE(::stat("/dev/null", &status) == 0 && S_ISCHR(status.st_mode));
  EXPECT_EQ(filesIn(m_folder.path()), (Names{"link", "pipe"}));
}

TEST_F(KySectionFile, bytesGoToPipesAndTerminalsAsTheyAre)
{
  const std::string pipe = m_folder.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  EXPECT_TRUE(writeBytes(m_pool, pipe, "bytes", Overwrite::NO));
  char got[16];
  EXPECT_EQ(::read(reader, got, sizeof(got)), 5);
  ::close(reader);
  EXPECT_TRUE(writeBytes(m_pool, "/dev/null", "bytes", Overwrite::NO));
  struct stat status = {};
  EXPECT_TRUE(::lstat(pipe.c_str(), &status) == 0 && S_ISFIFO(status.st_mode));
}

TEST_F(KySectionFile, theNewFileIsFlushedBeforeItTakesTheNameAndTheFolderBehind)
{
  s_watchedFile = m_folder.write("a", "old");
  s_flushes.clear();
  EXPECT_TRUE(writeBytes(m_pool, s_watchedFile, "new", Overwrite::YES));
  s_watchedFile.clear();
  EXPECT_EQ(s_flushes, "f:old d:new ");
}

TEST_F(KySectionFile, aFileOfTheLongestNameIsReplaced)
{
  const std::string ascii = m_folder.write(std::string(255, 'n'), "old");
  std::string letters = "n";
  for (int n = 0; n < 127; ++n)
    letters += "\xC3\xA9";
  const std::string other = m_folder.write(letters, "old");
  EXPECT_TRUE(writeBytes(m_pool, ascii, "new", Overwrite::YES));
  EXPECT_EQ(contentOf(ascii), "new");
  EXPECT_TRUE(writeBytes(m_pool, other, "new", Overwrite::YES));
  EXPECT_EQ(contentOf(other), "new");
  EXPECT_EQ(filesIn(m_folder.path()).size(), 2u);
}

TEST_F(KySectionFile, aNewFileHasTheModeThatTheUmaskLeaves)
{
  const auto under = [&](mode_t mask)
  {
    ::umask(mask);
    const std::string path = m_folder.path("a");
    ::unlink(path.c_str());
    struct stat status = {};
    const std::string outcome = written(path, "new");
    ::stat(path.c_str(), &status);
    return outcome + (::umask(mask) == mask ? " " : " and the umask is another ") +
           std::to_string(status.st_mode & 07777);
  };
  EXPECT_EQ(inAnotherProcess([&] { return under(0027); }), "done " + std::to_string(0640));
  EXPECT_EQ(inAnotherProcess([&] { return under(0); }), "done " + std::to_string(0666));
  EXPECT_EQ(filesIn(m_folder.path()), Names{"a"});
}

TEST_F(KySectionFile, threadsThatWriteFilesLeaveTheUmaskAlone)
{
  const mode_t before = ::umask(022);
  s_umaskCalls = 0;
  std::atomic<unsigned int> wrong{0};
  inThreads(4,
            [&](unsigned int n)
            {
              const std::string path = m_folder.path(std::to_string(n));
              for (unsigned int round = 0; round < 10; ++round)
              {
                ::unlink(path.c_str());
                struct stat status = {};
                const bool isRight = written(path, "x") == "done" && ::stat(path.c_str(), &status) == 0 &&
                                     (status.st_mode & 07777) == 0644;
                wrong += isRight ? 0 : 1;
              }
            });
  EXPECT_EQ(wrong, 0u);
  EXPECT_EQ(s_umaskCalls, 0u) << "asking for it sets it, for all threads";
  EXPECT_EQ(::umask(before), 022u);
}

TEST_F(KySectionFile, extendedAttributesAreKept)
{
  const std::string path = m_folder.write("a", "old");
  if (::setxattr(path.c_str(), "user.origin", "lab 7", 5, 0) != 0) GTEST_SKIP() << "no extended attributes here";
  EXPECT_TRUE(writeBytes(m_pool, path, "new", Overwrite::YES));
  EXPECT_EQ(contentOf(path), "new");
  char value[16];
  EXPECT_EQ(::getxattr(path.c_str(), "user.origin", value, sizeof(value)), 5);
}

TEST_F(KySectionFile, theAccessListIsKept)
{
  const std::string path = m_folder.write("a", "old");
  // Version 2; the owner rw, user 1 r, the group r, at most rw, others nothing. Little endian.
  const std::string list =
      bytesOfHex("02000000 01000600FFFFFFFF 0200040001000000 04000400FFFFFFFF 10000600FFFFFFFF 20000000FFFFFFFF");
  if (::setxattr(path.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) != 0)
    GTEST_SKIP() << "no access lists here";
  EXPECT_TRUE(writeBytes(m_pool, path, "new", Overwrite::YES));
  std::string kept(64, ' ');
  const ssize_t size = ::getxattr(path.c_str(), "system.posix_acl_access", kept.data(), kept.size());
  EXPECT_EQ(kept.substr(0, size > 0 ? static_cast<std::size_t>(size) : 0), list);
}

TEST_F(KySectionFile, theOwnerIsKept)
{
  if (::geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  const std::string path = m_folder.write("a", "old");
  ASSERT_EQ(::chown(path.c_str(), 1234, 4321), 0);
  ASSERT_EQ(::chmod(path.c_str(), 04751), 0);
  EXPECT_TRUE(writeBytes(m_pool, path, "new", Overwrite::YES));
  struct stat status = {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1234u);
  EXPECT_EQ(status.st_gid, 4321u);
  EXPECT_EQ(status.st_mode & 07777, 04751u);
}

TEST_F(KySectionFile, anOwnerThatCannotBeKeptIsReportedAndNothingIsLeftBehind)
{
  if (::geteuid() != 0) GTEST_SKIP() << "only root makes files of others";
  const std::string path = m_folder.write("a", "old");
  ASSERT_EQ(::chmod(m_folder.path().c_str(), 0777), 0);
  EXPECT_EQ(inAnotherProcess([&] { return ::setuid(65534) == 0 ? written(path, "new") : "still root"; }),
            "Cannot write " + path + ": its owner cannot be kept: Operation not permitted.");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(filesIn(m_folder.path()), Names{"a"});
}

TEST_F(KySectionFile, aFolderThatTakesNoNewFilesIsReported)
{
  const std::string path = m_folder.write("a", "old");
  ASSERT_EQ(::chmod(m_folder.path().c_str(), 0555), 0);
  const auto asOrdinaryUser = [&]
  { return ::geteuid() != 0 || ::setuid(65534) == 0 ? written(path, "new") : "still root"; };
  EXPECT_EQ(inAnotherProcess(asOrdinaryUser), "Cannot write " + path + ": Permission denied.");
  ASSERT_EQ(::chmod(m_folder.path().c_str(), 0755), 0);
  EXPECT_EQ(contentOf(path), "old");
}

TEST_F(KySectionFile, aFileThatMayNotGrowStaysAsItWas)
{
  const std::string path = m_folder.write("a", "old");
  const auto limited = [&]
  {
    const rlimit limit = {100, 100};
    std::signal(SIGXFSZ, SIG_IGN);
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 ? written(path, std::string(1000, 'x')) : "no limit";
  };
  EXPECT_EQ(inAnotherProcess(limited), "Cannot write " + path + ": File too large.");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(filesIn(m_folder.path()), Names{"a"});
}

TEST_F(KySectionFile, aFileThatMayNotGrowIsReportedAlsoWhereTheSignalForItEndsPrograms)
{
  const std::string path = m_folder.write("a", "old");
  const auto limited = [&]
  {
    const rlimit limit = {100, 100};
    std::signal(SIGXFSZ, SIG_DFL);
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 ? written(path, std::string(1000, 'x')) : "no limit";
  };
  EXPECT_EQ(inAnotherProcess(limited), "Cannot write " + path + ": File too large.");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(filesIn(m_folder.path()), Names{"a"});
}

TEST_F(KySectionFile, signalsThatEndTheProgramWaitUntilTheFileIsReplaced)
{
  for (const int number : {SIGHUP, SIGINT, SIGTERM})
  {
    const std::string path = m_folder.write("a", "old");
    const auto interrupted = [&]
    {
      std::signal(number, SIG_DFL);
      s_signalAtFlush = number;
      return written(path, "new");
    };
    EXPECT_EQ(inAnotherProcess(interrupted), "") << "ends behind the replacement";
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(filesIn(m_folder.path()), Names{"a"});
  }
}

TEST_F(KySectionFile, aFullDiskLeavesTheOldFileAndNothingElse)
{
  const std::string disk = m_folder.path();
  const auto onSmallDisk = [&]() -> std::string
  {
    if (!mayMount() || ::mount("none", disk.c_str(), "tmpfs", 0, "size=64k") != 0) return "skip";
    const std::string first = written(disk + "/a", "old");
    const std::string second = written(disk + "/a", std::string(1000000, 'x'));
    std::string all = first + "\n" + second + "\n" + contentOf(disk + "/a");
    for (const std::string& name : filesIn(disk))
      all += "\n" + name;
    return all;
  };
  const std::string outcome = inAnotherProcess(onSmallDisk);
  if (outcome == "skip") GTEST_SKIP() << "no disk can be mounted here";
  EXPECT_EQ(outcome, "done\nCannot write " + disk + "/a: No space left on device.\nold\na");
}

TEST_F(KySectionFile, aNameThatCannotBeTakenLeavesTheOldFileAndNothingElse)
{
  const std::string path = m_folder.write("a", "old");
  const auto behindMount = [&]() -> std::string
  {
    if (!mayMount() || ::mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) != 0) return "skip";
    return written(path, "new");
  };
  const std::string outcome = inAnotherProcess(behindMount);
  if (outcome == "skip") GTEST_SKIP() << "nothing can be mounted here";
  EXPECT_EQ(outcome, "Cannot write " + path + ": Device or resource busy.");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(filesIn(m_folder.path()), Names{"a"});
}
