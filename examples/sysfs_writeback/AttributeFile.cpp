// Reading and writing attribute files.
#include "AttributeFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "Messages.h"

namespace
{
// A file descriptor that closes itself. It waits for nobody: a FIFO in an attribute's place has nothing to read, or is
// refused where nobody reads it.
class OpenFile
{
public:
  OpenFile(const std::string& path, int flags)
      : m_descriptor(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
  {
  }
  ~OpenFile()
  {
    if (m_descriptor >= 0) close(m_descriptor);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  operator int() const { return m_descriptor; }

private:
  int m_descriptor;
};
}    // namespace

bool readAttribute(KyCErrorListPool& pool, const AttributeFile& file, std::string& value)
{
  const OpenFile descriptor(file.path, O_RDONLY);
  if (descriptor < 0)
  {
    pool.setError(MSG_CANNOT_OPEN, __LINE__, "readAttribute", "%s%s", file.shown.c_str(), std::strerror(errno));
    return false;
  }
  char bytes[4096];    // the kernel gives one page at most
  const ssize_t length = read(descriptor, bytes, sizeof bytes);
  if (length < 0)
  {
    pool.setError(MSG_CANNOT_READ, __LINE__, "readAttribute", "%s%s", file.shown.c_str(), std::strerror(errno));
    return false;
  }
  std::string line(bytes, static_cast<std::size_t>(length));
  line.erase(std::min(line.find('\n'), line.size()));
  line.erase(line.find_last_not_of(" \t\r") + 1);
  value = line;
  return true;
}

bool readAttribute(KyCErrorListPool& pool, const AttributeFile& file, unsigned int& value)
{
  std::string text;
  if (!readAttribute(pool, file, text)) return false;
  if (parseNumber(text, value)) return true;
  pool.setError(MSG_NO_NUMBER, __LINE__, "readAttribute", "%s%s", file.shown.c_str(), text.c_str());
  return false;
}

bool writeAttribute(KyCErrorListPool& pool, const AttributeFile& file, const std::string& value)
{
  const OpenFile descriptor(file.path, O_WRONLY);
  if (descriptor < 0)
  {
    pool.setError(MSG_CANNOT_OPEN, __LINE__, "writeAttribute", "%s%s", file.shown.c_str(), std::strerror(errno));
    return false;
  }
  const std::string line = value + '\n';
  const ssize_t written = write(descriptor, line.data(), line.size());
  if (written != static_cast<ssize_t>(line.size()))
  {
    pool.setError(MSG_CANNOT_WRITE, __LINE__, "writeAttribute", "%s%s%s", value.c_str(), file.shown.c_str(),
                  written < 0 ? std::strerror(errno) : "only a part was taken");
    return false;
  }
  std::string taken;
  if (!readAttribute(pool, file, taken)) return false;
  if (taken == value) return true;
  pool.setError(MSG_NOT_TAKEN, __LINE__, "writeAttribute", "%s%s%s", file.shown.c_str(), value.c_str(), taken.c_str());
  return false;
}

bool parseNumber(const std::string& text, unsigned int& number)
{
  const char* const end = text.data() + text.size();
  unsigned int parsed = 0;
  const std::from_chars_result result = std::from_chars(text.data(), end, parsed);
  if (result.ec != std::errc() || result.ptr != end) return false;
  number = parsed;
  return true;
}

AttributeFile* AttributeFiles::add(const KyCInventoryParameter* parameter, const AttributeFile& file)
{
  return &(m_files[parameter] = file);
}

const AttributeFile* AttributeFiles::find(const KyCInventoryParameter* parameter) const
{
  const auto found = m_files.find(parameter);
  return found != m_files.end() ? &found->second : nullptr;
}
