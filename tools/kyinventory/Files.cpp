#include "Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "Progress.h"
#include "Terminal.h"

using KyNInventoryKit::Overwrite;

namespace
{
// Writing to a pipe that was read to its end may wait for ever.
bool isPipeOrDevice(const std::string& path)
{
  struct stat file = {};
  return ::stat(path.c_str(), &file) == 0 && !S_ISREG(file.st_mode) && !S_ISDIR(file.st_mode);
}

bool isSameFile(const struct stat& a, const struct stat& b) { return a.st_dev == b.st_dev && a.st_ino == b.st_ino; }

// Some file systems lock only what is open for writing.
bool hasLocked(int file, const std::string& path)
{
  const auto lock = [](int any)
  {
    while (::flock(any, LOCK_EX) != 0)
      if (errno != EINTR) return false;
    return true;
  };
  if (lock(file)) return true;
  const int writable = errno == EBADF ? ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK) : -1;
  return writable >= 0 && lock(writable) && ::dup3(writable, file, O_CLOEXEC) >= 0 && ::close(writable) == 0;
}

// Waits until nobody else changes the file, and locks it; gives what is open for that, -1 when nothing is. Whoever had it
// before has put another file in the place of the one that was waited for. A file system without locks is no reason not to
// change a file.
int waitForLock(const std::string& path)
{
  const Progress progress("waiting for " + path);
  for (;;)
  {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0 || !hasLocked(file, path)) return file;
    struct stat locked = {};
    struct stat named = {};
    const bool isThere = ::fstat(file, &locked) == 0 && ::stat(path.c_str(), &named) == 0;
    if (!isThere || isSameFile(locked, named)) return file;
    ::close(file);
  }
}

// Sections and images are no text: a terminal would obey what is in them.
bool isForTerminal(const TargetOptions& target) { return target.output == "-" && ::isatty(STDOUT_FILENO) != 0; }

constexpr unsigned int codeCannotOpen = 0x1300001;

// As reading reports it, with the system's reason: the library's own report of a file that cannot be opened has none.
void complainOfReading(const std::string& path, const KyCErrorListPool& pool)
{
  KyCErrorListPool reasons;
  std::string ignored;
  const bool isWithoutReason = pool.getEntryCount() != 0 && pool.getEntry(0).code == codeCannotOpen;
  const bool isExplained = isWithoutReason && !KyNInventoryKit::readBytes(reasons, path, ignored);
  complainAbout(inputName(path), isExplained ? reasons : pool);
}

Overwrite overwriteOf(const TargetOptions& target) { return target.isForced ? Overwrite::YES : Overwrite::NO; }

int told(const KyCErrorListPool& pool, const std::string& path, bool isDone)
{
  complainAbout(path == "-" ? "standard output" : path, pool);
  return isDone ? EXIT_OK : EXIT_OUTPUT;
}
}    // namespace

CLI::Validator notEmpty()
{
  return CLI::Validator([](const std::string& text) { return std::string(text.empty() ? "must not be empty" : ""); },
                        "");
}

const char* const s_emptyAddress = "must not be empty; \".\" is the root item";

CLI::Validator notEmptyAddress()
{
  return CLI::Validator([](const std::string& text) { return std::string(text.empty() ? s_emptyAddress : ""); }, "");
}

std::string inputName(const std::string& path) { return path == "-" ? "standard input" : path; }

bool isInputTwice(const std::vector<std::string>& paths)
{
  const bool isTwice = std::count(paths.begin(), paths.end(), "-") > 1;
  if (isTwice) complain("standard input can stand for one file only");
  return isTwice;
}

bool isWriteProtected(const std::string& path)
{
  return ::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0 &&
         ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0;
}

TreePointer readTreeFile(const std::string& path)
{
  KyCErrorListPool pool;
  TreePointer tree;
  {
    const Progress progress("reading " + inputName(path));
    tree = KyNInventoryKit::readTree(pool, path);
  }
  complainOfReading(path, pool);
  return tree;
}

CLI::Option* addTargetOptions(CLI::App& command, TargetOptions& target, const std::string& meaning)
{
  CLI::Option* const output =
      command.add_option("-o,--output", target.output, meaning)->check(notEmpty())->type_name("FILE");
  command.add_flag("--force", target.isForced, "Let -o write over an existing file");
  return output;
}

bool isOutputAnInput(const std::vector<std::string>& inputs, const TargetOptions& target)
{
  struct stat output = {};
  struct stat input = {};
  if (target.output.empty() || target.output == "-" || ::stat(target.output.c_str(), &output) != 0) return false;
  for (const std::string& path : inputs)
  {
    const bool isThere = (path == "-" ? ::fstat(STDIN_FILENO, &input) : ::stat(path.c_str(), &input)) == 0;
    if (!isThere || !S_ISREG(input.st_mode) || !isSameFile(input, output)) continue;
    complain(target.output + ": is an input as well; name another file with -o");
    return true;
  }
  return false;
}

bool mayStore(const std::string& input, const TargetOptions& target, Lock lock)
{
  if (isForTerminal(target))
  {
    complain("standard output is a terminal, and the result is binary; redirect it, or name a file with -o");
    return false;
  }
  if (input == "-" && target.output.empty())
  {
    complain("standard input cannot be changed in place; name a file with -o");
    return false;
  }
  if (target.output.empty() && !input.empty() && isPipeOrDevice(input))
  {
    complain(input + ": only ordinary files are changed in place; name a file with -o");
    return false;
  }
  if (target.output.empty() && !input.empty() && isWriteProtected(input))
  {
    complain(input + ": is write-protected; name a file with -o");
    return false;
  }
  KyCErrorListPool pool;
  if (!target.output.empty() && !KyNInventoryKit::mayWrite(pool, target.output, overwriteOf(target)))
  {
    complain(target.output + ": exists already; --force writes over it");
    return false;
  }
  if (lock == Lock::NOW) lockForChange(input, target);
  return true;
}

ChangeLock::ChangeLock(const std::string& path) : m_file(waitForLock(path)) {}

ChangeLock::~ChangeLock()
{
  if (m_file >= 0) ::close(m_file);
}

// It stays until the program ends: what is read from now on is what will be replaced.
void lockForChange(const std::string& input, const TargetOptions& target)
{
  if (target.output.empty() && !input.empty()) waitForLock(input);
}

int exitCodeOfRefusal(const std::string& input, const TargetOptions& target)
{
  return (input == "-" && target.output.empty()) || isForTerminal(target) ? EXIT_USAGE : EXIT_OUTPUT;
}

int storeTree(const std::string& input, KyCInventoryItem& tree, const TargetOptions& target)
{
  KyCErrorListPool pool;
  const std::string& path = target.output.empty() ? input : target.output;
  const Progress progress("storing " + (path == "-" ? "standard output" : path));
  const bool isDone = target.output.empty() ? KyNInventoryKit::replaceTree(pool, path, tree)
                                            : KyNInventoryKit::writeTree(pool, path, tree, overwriteOf(target));
  return told(pool, path, isDone);
}

int storeBytes(const std::string& input, const std::string& bytes, const TargetOptions& target)
{
  KyCErrorListPool pool;
  const bool isInPlace = target.output.empty();
  const std::string& path = isInPlace ? input : target.output;
  const Progress progress("storing " + (path == "-" ? "standard output" : path));
  const bool isDone = KyNInventoryKit::writeBytes(pool, path, bytes, isInPlace ? Overwrite::YES : overwriteOf(target));
  return told(pool, path, isDone);
}

bool isReadableAgain(const std::string& path)
{
  struct stat file = {};
  return path != "-" && ::stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode);
}
