// KyHostSources.cpp: see KyHostSources.h.
#include "KyHostSources.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

std::string KyHostSources::readFile(const std::string& path)
{
  const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return std::string();
  std::string content;
  struct stat status = {};
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode))
  {
    char block[4096];
    while (content.size() < MAX_FILE)
    {
      const ssize_t count = read(file, block, std::min(sizeof block, MAX_FILE - content.size()));
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) break;
      content.append(block, static_cast<std::size_t>(count));
    }
  }
  close(file);
  return content;
}

std::vector<std::string> KyHostSources::sysFoldersWith(const std::string& folder, const char* entry) const
{
  const std::string path = sysRoot + "/" + folder;
  std::vector<std::string> names;
  DIR* const directory = opendir(path.c_str());
  if (directory == nullptr) return names;
  unsigned int seen = 0;
  for (const dirent* found = readdir(directory); found != nullptr && seen < MAX_ENTRIES; found = readdir(directory))
  {
    ++seen;
    const std::string name = found->d_name;
    struct stat status = {};
    if (name.front() != '.' && stat((path + "/" + name + "/" + entry).c_str(), &status) == 0) names.push_back(name);
  }
  closedir(directory);
  std::sort(names.begin(), names.end());
  return names;
}
