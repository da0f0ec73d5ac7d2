#include "KyProcesses.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "inventory/KyInventoryTree.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr const char* s_file = "/tmp/ky-bench-start.kyinv";

// What a program of ours prints.
std::string outputOf(const std::string& command)
{
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  char part[4096];
  for (std::size_t size; (size = std::fread(part, 1, sizeof part, pipe)) > 0;)
    output.append(part, size);
  if (pclose(pipe) != 0) std::abort();
  return output;
}

void measureLoadOf(const char* system, const std::string& library, std::vector<Row>& rows)
{
  const std::string output = outputOf(std::string(KY_LOADER) + " " + library + " 1000");
  double load = 0, unload = 0;
  if (std::sscanf(output.c_str(), "%lf %lf", &load, &unload) != 2) std::abort();
  rows.push_back({"load", "library", system, "us", load});
  rows.push_back({"unload", "library", system, "us", unload});
}

// Seconds of the processor that a program takes from its start to its end, system calls included. What it prints goes
// nowhere.
double timeOfProgram(std::vector<const char*> words)
{
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  int status = -1;
  struct rusage usage;
  if (posix_spawn(&process, words[0], &actions, nullptr, const_cast<char**>(words.data()), environ) != 0 ||
      wait4(process, &status, 0, &usage) != process || status != 0)
    std::abort();
  posix_spawn_file_actions_destroy(&actions);
  const auto seconds = [](const struct timeval& time)
  { return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void writeTree()
{
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  root.createParameter<long long>(pool, BOARD[2] / IOCHANNEL[3] / SIZE64, 64, "V", false, 0);
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  std::FILE* const file = std::fopen(s_file, "wb");
  const std::size_t size = buffer.getWritePosition();
  if (file == nullptr || std::fwrite(buffer.getStorage(), 1, size, file) != size) std::abort();
  std::fclose(file);
}
}    // namespace

void measureBlocks(const std::string& sizes, bool isAlone, std::vector<Row>& rows)
{
  const std::string output =
      outputOf(std::string(KY_BLOCK_COUNTER) + " --blocks --sizes " + sizes + (isAlone ? " --ours" : ""));
  const char* line = output.c_str();
  char size[32], system[32];
  double blocks = 0;
  for (int length = 0; std::sscanf(line, "%31s %31s %lf\n%n", size, system, &blocks, &length) == 3; line += length)
    rows.push_back({"allocations", size, system, "blocks/param", blocks});
}

void measureLoad(unsigned int repetitions, std::vector<Row>& rows)
{
  std::vector<Row> measured;
  for (unsigned int k = 0; k < repetitions; ++k)
  {
    measureLoadOf("ours", KY_LIBRARY, measured);
    measureLoadOf("empty", KY_EMPTY_LIBRARY, measured);
  }
  for (const char* const operation : {"load", "unload"})
  {
    for (const char* const system : {"ours", "empty"})
    {
      std::vector<double> values;
      for (const Row& row : measured)
        if (row.operation == operation && row.system == system) values.push_back(row.median);
      rows.push_back({operation, "library", system, "us", median(values)});
    }
  }
}

void measureStart(unsigned int repetitions, std::vector<Row>& rows)
{
#ifdef KY_TOOL
  writeTree();
  std::vector<double> tool;
  std::vector<double> nothing;
  for (unsigned int k = 0; k < 30 * repetitions; ++k)
  {
    tool.push_back(timeOfProgram({KY_TOOL, "get", s_file, "BOARD[2]/IOCHANNEL[3]/SIZE64"}));
    nothing.push_back(timeOfProgram({KY_NOTHING}));
  }
  std::remove(s_file);
  rows.push_back({"start", "one get", "ours", "us", median(tool) * 1e6});
  rows.push_back({"start", "one get", "nothing", "us", median(nothing) * 1e6});
#else
  static_cast<void>(repetitions);
  static_cast<void>(rows);
#endif
}
