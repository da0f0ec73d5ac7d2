#include "KyFileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <new>
#include <vector>

#include "KyKitMessages.h"

namespace KyNInventoryKit
{
namespace
{
constexpr const char* s_function = "writeBytes";

bool cannotWrite(KyCErrorListPool& pool, const std::string& path, int reason)
{
  pool.setError(KY_KIT_MSG_CANNOT_WRITE, __LINE__, s_function, "%s%s", path.c_str(), std::strerror(reason));
  return false;
}

bool writeAll(int file, const std::string& bytes)
{
  const char* next = bytes.data();
  std::size_t left = bytes.size();
  while (left > 0)
  {
    const ssize_t written = ::write(file, next, left);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    next += written;
    left -= static_cast<std::size_t>(written);
  }
  return true;
}

// The file that a path finally leads to, so that a link stays a link when its file is replaced.
std::string resolved(const std::string& path)
{
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
  if (real == nullptr && errno == ENOMEM) throw std::bad_alloc();    // or a link would be taken for what it leads to
  return real != nullptr ? real.get() : path;
}

void flushFolderOf(const std::string& path)
{
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;
  ::fsync(file);    // some file systems cannot; the file itself is on the disk already
  ::close(file);
}

// A name of this beginning in the same folder, however long the target's own is; the X stand for what is to be another.
std::string patternBeside(const std::string& path)
{
  constexpr std::size_t s_longest = NAME_MAX - 7;
  const std::size_t name = path.rfind('/') + 1;    // 0 when there is no folder
  std::string pattern = path;
  if (path.size() - name > s_longest)
  {
    std::size_t end = name + s_longest;
    while (end > name && (static_cast<unsigned char>(path[end]) & 0xC0) == 0x80)
      --end;    // not inside of a character
    pattern.resize(end);
  }
  return pattern + ".XXXXXX";
}

// Other numbers for every call of every thread and process. Nothing depends on their being secret: what is there already
// is not opened.
unsigned long long nextNumber()
{
  static std::atomic<unsigned long long> s_calls{0};
  timespec now = {};
  ::clock_gettime(CLOCK_REALTIME, &now);
  const auto time =
      static_cast<unsigned long long>(now.tv_sec) * 1000000000ULL + static_cast<unsigned long long>(now.tv_nsec);
  return (time ^ static_cast<unsigned long long>(::getpid()) << 32) + ++s_calls * 0x9E3779B97F4A7C15ULL;
}

// Makes a file under a name that the pattern becomes; -1 when it cannot be had. The kernel takes the umask from the mode:
// asking for the umask would set it, for all threads.
int makeFile(std::vector<char>& pattern, mode_t mode)
{
  constexpr char s_letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  for (unsigned int tries = 0; tries < 1000; ++tries)
  {
    unsigned long long number = nextNumber();
    for (auto letter = pattern.end() - 7; letter != pattern.end() - 1; ++letter, number /= 36)
      *letter = s_letters[number % 36];
    const int file = ::open(pattern.data(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file >= 0 || errno != EEXIST) return file;
  }
  return -1;
}

// Holds the signals back that would end the program and leave a temporary file behind. Writing beyond the limit for files is
// a failure like others here, and sends no signal.
class SignalsHeldBack
{
public:
  SignalsHeldBack()
  {
    sigset_t held;
    sigemptyset(&held);
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXFSZ})
      sigaddset(&held, number);
    m_isHeld = ::pthread_sigmask(SIG_BLOCK, &held, &m_before) == 0;
    m_isLimitOurs = m_isHeld && sigismember(&m_before, SIGXFSZ) == 0;
  }
  ~SignalsHeldBack()
  {
    sigset_t limit;
    sigemptyset(&limit);
    sigaddset(&limit, SIGXFSZ);
    const timespec atOnce = {};
    if (m_isLimitOurs) ::sigtimedwait(&limit, nullptr, &atOnce);
    if (m_isHeld) ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
  }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

private:
  sigset_t m_before;
  bool m_isHeld = false;
  bool m_isLimitOurs = false;
};

// The new file beside the old one; it is gone again at the end unless it has taken the old one's place.
class TemporaryFile
{
public:
  // The mode is that of a new file, before the umask.
  TemporaryFile(KyCErrorListPool& pool, const std::string& target, mode_t mode) : m_pool(pool), m_target(target)
  {
    const std::string pattern = patternBeside(target);
    m_path.assign(pattern.begin(), pattern.end());
    m_path.push_back('\0');
    m_file = makeFile(m_path, mode);
    m_isThere = m_file >= 0;
    if (!m_isThere) cannotWrite(pool, target, errno);
  }
  ~TemporaryFile()
  {
    if (m_file >= 0) ::close(m_file);
    if (m_isThere) ::unlink(m_path.data());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool isOpen() const { return m_file >= 0; }

  // Changing the owner may clear mode bits, so the mode comes last.
  bool takeAttributes(const struct stat& old)
  {
    struct stat own = {};
    const bool isSameOwner = ::fstat(m_file, &own) == 0 && own.st_uid == old.st_uid && own.st_gid == old.st_gid;
    if (!isSameOwner && ::fchown(m_file, old.st_uid, old.st_gid) != 0)
    {
      m_pool.setError(KY_KIT_MSG_CANNOT_KEEP_OWNER, __LINE__, s_function, "%s%s", m_target.c_str(),
                      std::strerror(errno));
      return false;
    }
    if (!takeExtendedAttributes()) return false;
    return ::fchmod(m_file, old.st_mode & 07777) == 0 || cannotWrite(m_pool, m_target, errno);
  }

  bool store(const std::string& bytes)
  {
    return (writeAll(m_file, bytes) && ::fsync(m_file) == 0) || cannotWrite(m_pool, m_target, errno);
  }

  bool takePlaceOfTarget()
  {
    const bool isClosed = ::close(m_file) == 0;
    const int reason = errno;
    m_file = -1;
    if (!isClosed) return cannotWrite(m_pool, m_target, reason);
    if (::rename(m_path.data(), m_target.c_str()) != 0) return cannotWrite(m_pool, m_target, errno);
    m_isThere = false;
    flushFolderOf(m_target);
    return true;
  }

private:
  // What a file system refuses is left out, but not who else may read the file.
  bool takeExtendedAttributes()
  {
    const ssize_t size = ::listxattr(m_target.c_str(), nullptr, 0);
    if (size <= 0) return true;
    std::vector<char> names(static_cast<std::size_t>(size));
    const ssize_t length = ::listxattr(m_target.c_str(), names.data(), names.size());
    for (ssize_t at = 0; at < length; at += static_cast<ssize_t>(std::strlen(&names[static_cast<std::size_t>(at)])) + 1)
    {
      const char* const name = &names[static_cast<std::size_t>(at)];
      const bool isAccessList = std::strncmp(name, "system.posix_acl_", 17) == 0;
      if (!takeExtendedAttribute(name) && isAccessList) return cannotWrite(m_pool, m_target, errno);
    }
    return true;
  }

  bool takeExtendedAttribute(const char* name)
  {
    const ssize_t size = ::getxattr(m_target.c_str(), name, nullptr, 0);
    if (size < 0) return false;
    std::vector<char> value(static_cast<std::size_t>(size));
    const ssize_t length = ::getxattr(m_target.c_str(), name, value.data(), value.size());
    return length >= 0 && ::fsetxattr(m_file, name, value.data(), static_cast<std::size_t>(length), 0) == 0;
  }

  const SignalsHeldBack m_signals;    // first: back in force when the file is gone
  KyCErrorListPool& m_pool;
  const std::string& m_target;
  std::vector<char> m_path;
  int m_file = -1;
  bool m_isThere = false;    // under its own name
};

bool writeThrough(KyCErrorListPool& pool, const std::string& path, const std::string& bytes)
{
  const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (file < 0) return cannotWrite(pool, path, errno);
  const bool isStored = writeAll(file, bytes);
  const int reason = errno;
  const bool isClosed = ::close(file) == 0;
  return (isStored && isClosed) || cannotWrite(pool, path, isStored ? errno : reason);
}
}    // namespace

bool replaceFile(KyCErrorListPool& pool, const std::string& givenPath, const std::string& bytes)
{
  if (givenPath == "-") return writeAll(STDOUT_FILENO, bytes) || cannotWrite(pool, "standard output", errno);

  const std::string path = resolved(givenPath);
  struct stat existing = {};
  const bool exists = ::stat(path.c_str(), &existing) == 0;
  struct stat link = {};
  if (!exists && ::lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode))
  {
    // A new file in its place would take the link away.
    pool.setError(KY_KIT_MSG_DANGLING_LINK, __LINE__, s_function, "%s", path.c_str());
    return false;
  }
  if (exists && S_ISDIR(existing.st_mode)) return cannotWrite(pool, path, EISDIR);
  if (exists && !S_ISREG(existing.st_mode) && !S_ISCHR(existing.st_mode) && !S_ISFIFO(existing.st_mode))
  {
    pool.setError(KY_KIT_MSG_NO_ORDINARY_FILE, __LINE__, s_function, "%s", path.c_str());
    return false;
  }
  if (exists && !S_ISREG(existing.st_mode)) return writeThrough(pool, path, bytes);

  TemporaryFile file(pool, path, exists ? 0600 : 0666);    // nobody reads in it what the old one does not show
  if (!file.isOpen()) return false;
  return (!exists || file.takeAttributes(existing)) && file.store(bytes) && file.takePlaceOfTarget();
}
}    // namespace KyNInventoryKit
