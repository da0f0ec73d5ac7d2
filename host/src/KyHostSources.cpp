// KyHostSources.cpp: see KyHostSources.h.
#include "KyHostSources.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <memory>
#include <new>

namespace
{
// The names in a folder, in no order, hidden ones left out.
std::vector<std::string> entriesOf(const std::string& path)
{
  const auto closeFolder = [](DIR* open) { closedir(open); };
  const std::unique_ptr<DIR, decltype(closeFolder)> folder(opendir(path.c_str()), closeFolder);
  std::vector<std::string> names;
  if (folder == nullptr)
  {
    if (errno == ENOMEM) throw std::bad_alloc();    // a folder that is there must not seem to be missing
    return names;
  }
  unsigned int seen = 0;
  for (const dirent* found = readdir(folder.get()); found != nullptr && seen < KyHostSources::MAX_ENTRIES;
       found = readdir(folder.get()))
  {
    ++seen;
    if (found->d_name[0] != '.') names.emplace_back(found->d_name);
  }
  return names;
}

// An open file, closed at the end.
class KyOpenFile
{
public:
  explicit KyOpenFile(const std::string& path) : m_file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {}
  ~KyOpenFile()
  {
    if (m_file >= 0) close(m_file);
  }
  KyOpenFile(const KyOpenFile&) = delete;
  KyOpenFile& operator=(const KyOpenFile&) = delete;

  int handle() const { return m_file; }

private:
  const int m_file;
};
}    // namespace

std::string KyHostSources::readFile(const std::string& path)
{
  std::string content;
  readFile(path, MAX_FILE, content);
  return content;
}

int KyHostSources::readFile(const std::string& path, std::size_t most, std::string& content)
{
  content.clear();
  const KyOpenFile file(path);
  if (file.handle() < 0) return errno;
  struct stat status = {};
  int failure = fstat(file.handle(), &status) != 0 ? errno : S_ISDIR(status.st_mode) ? EISDIR : 0;
  if (failure == 0 && !S_ISREG(status.st_mode)) failure = EINVAL;
  char block[4096];
  while (failure == 0 && content.size() < most)
  {
    const ssize_t count = read(file.handle(), block, std::min(sizeof block, most - content.size()));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) failure = errno;
    if (count <= 0) break;
    content.append(block, static_cast<std::size_t>(count));
  }
  return failure;
}

std::vector<std::string> KyHostSources::sysFoldersWith(const std::string& folder, const char* entry) const
{
  const std::string path = sysRoot + "/" + folder;
  std::vector<std::string> names;
  for (const std::string& name : entriesOf(path))
  {
    struct stat status = {};
    if (stat((path + "/" + name + "/" + entry).c_str(), &status) == 0) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<unsigned int> KyHostSources::sysNumbersOf(const std::string& folder, const std::string& prefix,
                                                      const std::string& suffix) const
{
  std::vector<unsigned int> numbers;
  for (const std::string& name : entriesOf(sysRoot + "/" + folder))
  {
    if (name.size() <= prefix.size() + suffix.size() || name.compare(0, prefix.size(), prefix) != 0) continue;
    const char* const first = name.data() + prefix.size();
    const char* const last = name.data() + name.size() - suffix.size();
    unsigned int number = 0;
    const auto [end, error] = std::from_chars(first, last, number);
    if (error == std::errc() && end == last && suffix == last) numbers.push_back(number);
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}
