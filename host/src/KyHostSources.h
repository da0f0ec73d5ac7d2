// KyHostSources.h: reads small files of the running machine, or of folders that stand in for it.
#pragma once

#include <string>
#include <vector>

// Where the running machine's own files lie. Tests put folders of their own in place of them.
struct KyHostSources
{
  std::string sysRoot = "/sys";
  std::string procRoot = "/proc";
  std::string etcRoot = "/etc";

  // The start of a regular file, at most MAX_FILE bytes; empty when it cannot be read. Never blocks on a pipe.
  static constexpr std::size_t MAX_FILE = std::size_t{64} * 1024;
  static std::string readFile(const std::string& path);
  // As above, at most `most` bytes into content. 0, or the system's error number when the file cannot be read to that
  // point; content is then what came before.
  static int readFile(const std::string& path, std::size_t most, std::string& content);

  std::string sysFile(const std::string& path) const { return readFile(sysRoot + "/" + path); }
  std::string procFile(const std::string& path) const { return readFile(procRoot + "/" + path); }
  std::string etcFile(const std::string& path) const { return readFile(etcRoot + "/" + path); }

  // The names in a folder below sysRoot that have an entry of the given name in them, sorted; at most MAX_ENTRIES are
  // looked at. /sys shows a "device" below those block devices and network interfaces that hardware stands behind.
  static constexpr unsigned int MAX_ENTRIES = 65536;
  std::vector<std::string> sysFoldersWith(const std::string& folder, const char* entry) const;

  // The numbers n of the entries named prefix + n + suffix in a folder below sysRoot, in rising order; at most
  // MAX_ENTRIES entries are looked at.
  std::vector<unsigned int> sysNumbersOf(const std::string& folder, const std::string& prefix,
                                         const std::string& suffix) const;
};
