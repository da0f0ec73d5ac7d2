// KyTopologyTrial.cpp: see KyTopologyTrial.h.
#include "KyTopologyTrial.h"

#include <fcntl.h>
#include <hwloc.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "KyHostTopology.h"

namespace
{
constexpr rlim_t CPU_SECONDS = 20;
constexpr int WALL_MILLISECONDS = 60 * 1000;

// A crash in here is an answer, not an event: the program's own handlers and core files stay out of it.
void makeCrashesQuiet()
{
  for (const int number : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGXCPU})
    signal(number, SIG_DFL);
  const rlimit noCore = {0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  const rlimit cpu = {CPU_SECONDS, CPU_SECONDS};
  setrlimit(RLIMIT_CPU, &cpu);
}

// Critical complaints of hwloc are boxes of stars with "* hwloc ..." in them.
bool holdsComplaint(int chatter)
{
  char text[4096];
  const ssize_t count = pread(chatter, text, sizeof text, 0);
  return count > 0 && std::string(text, static_cast<std::size_t>(count)).find("* hwloc ") != std::string::npos;
}

bool loads(const std::string& xml)
{
  const hwloc_topology_t topology = KyCHostTopology::create();
  if (topology == nullptr) return false;
  const bool loaded = hwloc_topology_set_xmlbuffer(topology, xml.c_str(), static_cast<int>(xml.size() + 1)) == 0 &&
                      hwloc_topology_load(topology) == 0;
  if (loaded) hwloc_topology_check(topology);
  hwloc_topology_destroy(topology);
  return loaded;
}

[[noreturn]] void runChild(const std::string& xml, int answer)
{
  makeCrashesQuiet();
  const int chatter = memfd_create("topology", MFD_CLOEXEC);
  if (chatter >= 0)
  {
    dup2(chatter, STDOUT_FILENO);
    dup2(chatter, STDERR_FILENO);
  }
  const bool readable = loads(xml) && !(chatter >= 0 && holdsComplaint(chatter));
  if (readable && write(answer, "+", 1) != 1) _exit(1);
  _exit(0);    // the parent's exit handlers are not ours to run
}

// Whether the child's one byte arrives; a dead child closes the pipe.
bool awaitAnswer(int answer)
{
  pollfd waiting = {answer, POLLIN, 0};
  int ready = 0;
  do
    ready = poll(&waiting, 1, WALL_MILLISECONDS);
  while (ready < 0 && errno == EINTR);
  char byte = 0;
  return ready > 0 && read(answer, &byte, 1) == 1 && byte == '+';
}
}    // namespace

KyTopologyTrial tryTopology(const std::string& xml)
{
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) return KyTopologyTrial::NOT_RUN;
  const pid_t child = fork();
  if (child < 0)
  {
    const int reason = errno;
    close(ends[0]);
    close(ends[1]);
    errno = reason;
    return KyTopologyTrial::NOT_RUN;
  }
  if (child == 0)
  {
    close(ends[0]);
    runChild(xml, ends[1]);
  }
  close(ends[1]);
  const bool readable = awaitAnswer(ends[0]);
  close(ends[0]);
  if (!readable) kill(child, SIGKILL);    // it may not come to an end by itself; not yet reaped, so the id is still its
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR)
  {
  }
  return readable ? KyTopologyTrial::READABLE : KyTopologyTrial::REFUSED;
}
