// KyHostTopology.cpp: see KyHostTopology.h.
#include "KyHostTopology.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include "KyHostMessages.h"
#include "KyTopologyTrial.h"

namespace
{
std::string reasonText(int reason) { return std::generic_category().message(reason != 0 ? reason : EINVAL); }

void reportFile(KyCErrorListPool& pool, unsigned int code, const char* function, const char* path, int reason)
{
  pool.setError(code, __LINE__, function, "%s%s", path, reasonText(reason).c_str());
}

void reportHwloc(KyCErrorListPool& pool, const char* function, const char* failed)
{
  pool.setError(KY_HOST_MSG_HWLOC_FAILED, __LINE__, function, "%s%s", failed, reasonText(errno).c_str());
}

// Reads to the end of a stream and closes it. hwloc's own reading would take "-" and network addresses for names too, and
// knows no limit.
bool readWhole(KyCErrorListPool& pool, std::FILE* stream, const char* function, const char* name, std::string& content)
{
  const auto closeFile = [](std::FILE* file) { std::fclose(file); };
  const std::unique_ptr<std::FILE, decltype(closeFile)> file(stream, closeFile);
  if (file == nullptr)
  {
    reportFile(pool, KY_HOST_MSG_CANNOT_OPEN, function, name, errno);
    return false;
  }
  char block[16 * 1024];
  std::size_t count = 0;
  errno = 0;
  while ((count = std::fread(block, 1, sizeof block, file.get())) != 0)
  {
    content.append(block, count);
    if (content.size() <= KyCHostTopology::MAX_FILE) continue;
    pool.setError(KY_HOST_MSG_TOO_LARGE, __LINE__, function, "%s%u", name, KyCHostTopology::MAX_FILE);
    return false;
  }
  if (std::ferror(file.get()) == 0) return true;
  reportFile(pool, KY_HOST_MSG_CANNOT_READ, function, name, errno);
  return false;
}

// A stream of its own: closing it leaves the caller's descriptor open.
std::FILE* openCopyOf(int descriptor)
{
  const int copy = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  std::FILE* const stream = copy < 0 ? nullptr : ::fdopen(copy, "rb");
  const int reason = errno;
  if (stream == nullptr && copy >= 0) ::close(copy);
  errno = reason;
  return stream;
}

hwloc_obj_t firstOf(hwloc_obj_t a, hwloc_obj_t b, hwloc_obj_t c, hwloc_obj_t d)
{
  return a != nullptr ? a : b != nullptr ? b : c != nullptr ? c : d;
}

// The parent's child behind this one, when the parent's four lists of children count as one.
hwloc_obj_t nextSibling(hwloc_obj_t object)
{
  const hwloc_obj_t parent = object->parent;
  if (object->next_sibling != nullptr || parent == nullptr) return object->next_sibling;
  if (hwloc_obj_type_is_normal(object->type))
    return firstOf(parent->memory_first_child, parent->io_first_child, parent->misc_first_child, nullptr);
  if (hwloc_obj_type_is_memory(object->type))
    return firstOf(parent->io_first_child, parent->misc_first_child, nullptr, nullptr);
  return hwloc_obj_type_is_io(object->type) ? parent->misc_first_child : nullptr;
}
}    // namespace

hwloc_obj_t nextTopologyObject(hwloc_obj_t object)
{
  const hwloc_obj_t child =
      firstOf(object->first_child, object->memory_first_child, object->io_first_child, object->misc_first_child);
  if (child != nullptr) return child;
  for (; object != nullptr; object = object->parent)
    if (const hwloc_obj_t sibling = nextSibling(object)) return sibling;
  return nullptr;
}

KyCHostTopology::~KyCHostTopology()
{
  if (m_topology != nullptr) hwloc_topology_destroy(m_topology);
}

hwloc_topology_t KyCHostTopology::create()
{
  hwloc_topology_t topology = nullptr;
  if (hwloc_topology_init(&topology) != 0) return nullptr;
  // What this process may not use is part of the machine all the same.
  if (hwloc_topology_set_flags(topology, HWLOC_TOPOLOGY_FLAG_INCLUDE_DISALLOWED) == 0 &&
      hwloc_topology_set_all_types_filter(topology, HWLOC_TYPE_FILTER_KEEP_ALL) == 0)
    return topology;
  hwloc_topology_destroy(topology);
  return nullptr;
}

bool KyCHostTopology::init(KyCErrorListPool& pool, const char* function)
{
  errno = 0;
  m_topology = create();
  if (m_topology == nullptr) reportHwloc(pool, function, "hwloc_topology_init");
  return m_topology != nullptr;
}

bool KyCHostTopology::load(KyCErrorListPool& pool, const char* function)
{
  errno = 0;
  if (hwloc_topology_load(m_topology) == 0) return true;
  reportHwloc(pool, function, "hwloc_topology_load");
  return false;
}

bool KyCHostTopology::loadMachine(KyCErrorListPool& pool)
{
  if (!init(pool, "scanMachine") || !load(pool, "scanMachine")) return false;
  if (hwloc_topology_is_thissystem(m_topology) != 0) return true;
  pool.setError(KY_HOST_MSG_OTHER_MACHINE, __LINE__, "scanMachine", nullptr);
  return false;
}

bool KyCHostTopology::loadFile(KyCErrorListPool& pool, const char* path)
{
  errno = 0;
  return loadXml(pool, std::fopen(path, "rbe"), "scanTopologyFile", path);
}

bool KyCHostTopology::loadStream(KyCErrorListPool& pool, int descriptor, const char* name)
{
  errno = 0;
  return loadXml(pool, openCopyOf(descriptor), "scanTopologyStream", name);
}

bool KyCHostTopology::loadXml(KyCErrorListPool& pool, std::FILE* stream, const char* function, const char* name)
{
  std::string xml;
  if (!readWhole(pool, stream, function, name, xml)) return false;
  const KyTopologyTrial trial = tryTopology(xml);
  if (trial == KyTopologyTrial::NOT_RUN)
  {
    reportFile(pool, KY_HOST_MSG_CANNOT_READ, function, name, errno);
    return false;
  }
  if (trial == KyTopologyTrial::READABLE && init(pool, function) &&
      hwloc_topology_set_xmlbuffer(m_topology, xml.c_str(), static_cast<int>(xml.size() + 1)) == 0 &&
      hwloc_topology_load(m_topology) == 0)
    return true;
  if (trial == KyTopologyTrial::REFUSED || m_topology != nullptr)
    pool.setError(KY_HOST_MSG_NO_TOPOLOGY, __LINE__, function, "%s", name);
  return false;
}

bool KyCHostTopology::loadSynthetic(KyCErrorListPool& pool, const char* description)
{
  if (!init(pool, "loadSynthetic")) return false;
  errno = 0;
  if (hwloc_topology_set_synthetic(m_topology, description) == 0) return load(pool, "loadSynthetic");
  reportHwloc(pool, "loadSynthetic", "hwloc_topology_set_synthetic");
  return false;
}
