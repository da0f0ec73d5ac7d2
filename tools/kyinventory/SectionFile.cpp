#include "SectionFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "SameTree.h"
#include "Terminal.h"
#include "composite/KyCBuffer.h"
#include "inventory/KyCInventoryData.h"

namespace
{
bool failed(const std::string& path, const char* what)
{
  complain(path + ": " + what + ": " + std::strerror(errno));
  return false;
}

bool writeAll(int file, const unsigned char* bytes, std::size_t size)
{
  while (size > 0)
  {
    const ssize_t written = ::write(file, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

// The file that a path finally leads to, so that a link stays a link when its file is replaced.
std::string resolved(const std::string& path)
{
  char* real = ::realpath(path.c_str(), nullptr);
  if (real == nullptr) return path;
  const std::string result = real;
  std::free(real);
  return result;
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

bool replaceFile(const std::string& path, mode_t mode, const unsigned char* bytes, std::size_t size)
{
  std::string pattern = path + ".XXXXXX";
  std::vector<char> temporary(pattern.begin(), pattern.end());
  temporary.push_back('\0');
  const int file = ::mkostemp(temporary.data(), O_CLOEXEC);
  if (file < 0) return failed(path, "cannot create a temporary file beside it");

  const bool stored = writeAll(file, bytes, size) && ::fchmod(file, mode) == 0 && ::fsync(file) == 0;
  int reason = errno;
  const bool closed = ::close(file) == 0;
  if (stored && !closed) reason = errno;
  if (stored && closed && ::rename(temporary.data(), path.c_str()) == 0)
  {
    flushFolderOf(path);
    return true;
  }
  if (stored && closed) reason = errno;
  ::unlink(temporary.data());
  errno = reason;
  return failed(path, "cannot be written");
}

bool writeBytes(const std::string& givenPath, const unsigned char* bytes, std::size_t size)
{
  if (givenPath == "-") return writeAll(STDOUT_FILENO, bytes, size) || failed("standard output", "cannot be written");

  const std::string path = resolved(givenPath);
  struct stat existing = {};
  const bool exists = ::stat(path.c_str(), &existing) == 0;
  struct stat link = {};
  if (!exists && ::lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode))
  {
    complain(path + ": is a link that leads to no file");    // a new file in its place would take the link away
    return false;
  }
  if (!exists || S_ISREG(existing.st_mode))
  {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return replaceFile(path, exists ? existing.st_mode & 07777 : 0666 & ~mask, bytes, size);
  }
  const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);    // a device or a pipe: nothing to replace
  if (file < 0) return failed(path, "cannot be opened for writing");
  const bool stored = writeAll(file, bytes, size);
  const int reason = errno;
  const bool closed = ::close(file) == 0;
  if (!stored) errno = reason;
  return (stored && closed) || failed(path, "cannot be written");
}

// Whether the stored bytes give the tree again. A file that would not is worse than none.
bool readsBackEqual(const std::string& path, const KyCBuffer& section, const KyCInventoryItem& root)
{
  KyCErrorListPool pool;
  KyCInventoryItem* stored = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, section.getStorage(), section.getWritePosition(), stored);
  const TreePointer tree(stored);
  complainAbout(path, pool);
  const std::string difference = tree ? firstDifference(root, *tree) : "root item: tree";
  if (difference.empty()) return true;
  complain(path + ": not written: would not read back equal at " + difference);
  return false;
}
}    // namespace

TreePointer readSectionFile(const std::string& path)
{
  struct stat file = {};
  if (::stat(path.c_str(), &file) == 0 && S_ISDIR(file.st_mode))
  {
    complain(path + ": is a folder");
    return nullptr;
  }
  KyCErrorListPool pool;
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
  TreePointer tree(root);
  complainAbout(path, pool);
  if (!tree && pool.getErrorCount() == 0)
  {
    complain(path + ": holds no inventory section, neither at its end nor at its start");
  }
  return tree;
}

bool writeSectionFile(const std::string& path, KyCInventoryItem& root)
{
  KyCErrorListPool pool;
  KyCBuffer buffer(pool);
  if (pool.getErrorCount() == 0) KyCInventoryData::generateInventorySection(pool, buffer, &root);
  if (pool.getErrorCount() != 0)
  {
    complainAbout(path, pool);
    return false;
  }
  return readsBackEqual(path, buffer, root) && writeBytes(path, buffer.getStorage(), buffer.getWritePosition());
}

bool isReadableAgain(const std::string& path)
{
  struct stat file = {};
  return path != "-" && ::stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode);
}
