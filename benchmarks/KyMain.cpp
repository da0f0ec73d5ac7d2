// Measures every operation of every system on every size, interleaved, and prints the medians.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "KyBlockCount.h"
#include "KyGrowth.h"
#include "KyMeasure.h"
#include "KyProcesses.h"
#include "KyReport.h"

namespace
{
const char* const s_usage =
    "usage: ky_bench [--json] [--sizes SML] [--only OPERATION,...] [--repetitions N] [--ours] [--no-growth] "
    "[--help]\n\n"
    "Measures this project's library beside its peers and limits, all in one process and interleaved, and prints the\n"
    "medians as a table, with the ratio of ours to each; behind it, how the cost of each operation grows with the "
    "size, the\n"
    "width and the depth of a tree, on this library alone.\n\n"
    "  --json           a JSON array of {\"operation\", \"size\", \"system\", \"unit\", \"median\"} instead\n"
    "  --sizes SML      S: 4 boards of 16 channels, M: 20 of 100, L: 100 of 1000; default: SM\n"
    "  --only LIST      these operations alone: build,store,extract_mem,extract_file,lookup,set,dump,copy,merge,link,\n"
    "                   apply,destroy,heap,section_bytes; in the table also allocations,load,start; without growth\n"
    "  --repetitions N  at least 7 for figures that are to be compared; default: 7\n"
    "  --ours           without the peers and limits\n"
    "  --no-growth      without the trees that grow\n\n"
    "Peers and limits: pugixml; protobuf (heap), protobuf_arena, protobuf_map (map fields); malloc (plain structs, "
    "one\n"
    "block a node), memcpy (of the bytes). Only in the table: blocks of the heap; loading and unloading the library, "
    "beside\n"
    "four empty libraries; the tool from start to end for one get, beside a program that does nothing.\n";

struct Arguments
{
  bool isJson = false;
  bool isAlone = false;
  bool isGrowthWanted = true;
  bool isBlocksOnly = false;    // of ky_bench_blocks, which measureBlocks runs
  bool isHelpWanted = false;
  std::string sizes = "SM";
  std::string only;
  unsigned int repetitions = 7;
};

bool parse(int argc, char** argv, Arguments& arguments)
{
  for (int n = 1; n < argc; ++n)
  {
    const std::string word = argv[n];
    const bool hasValue = n + 1 < argc;
    if (word == "--json")
      arguments.isJson = true;
    else if (word == "--ours")
      arguments.isAlone = true;
    else if (word == "--blocks" && kyBlocksInUse != nullptr)
      arguments.isBlocksOnly = true;
    else if (word == "--help" || word == "-h")
      arguments.isHelpWanted = true;
    else if (word == "--no-growth")
      arguments.isGrowthWanted = false;
    else if (word == "--sizes" && hasValue)
      arguments.sizes = argv[++n];
    else if (word == "--only" && hasValue)
      arguments.only = std::string(",") + argv[++n] + ",";
    else if (word == "--repetitions" && hasValue)
      arguments.repetitions = static_cast<unsigned int>(std::max(1, std::atoi(argv[++n])));
    else
      return false;
  }
  return true;
}

std::vector<Rack> makeRacks(const std::string& sizes)
{
  std::vector<Rack> racks;
  racks.reserve(3);    // systems remember racks by their address
  if (sizes.find('S') != std::string::npos) racks.emplace_back("S", 4, 16);
  if (sizes.find('M') != std::string::npos) racks.emplace_back("M", 20, 100);
  if (sizes.find('L') != std::string::npos) racks.emplace_back("L", 100, 1000);
  return racks;
}

Systems makeSystems(bool isAlone)
{
  Systems systems;
  systems.push_back(makeOurs());
  if (isAlone) return systems;
#ifdef KY_HAVE_PEERS
  systems.push_back(makePugixml());
  systems.push_back(makeProtobuf());
  systems.push_back(makeProtobufArena());
  systems.push_back(makeProtobufMap());
#endif
  systems.push_back(makeLimit());
  systems.push_back(makeBytes());
  return systems;
}
}    // namespace

int main(int argc, char** argv)
{
  Arguments arguments;
  if (!parse(argc, argv, arguments))
  {
    std::fputs(s_usage, stderr);
    return 2;
  }
  if (arguments.isHelpWanted)
  {
    std::fputs(s_usage, stdout);
    return 0;
  }
  const auto isWanted = [&](const char* operation)
  { return arguments.only.empty() || arguments.only.find("," + std::string(operation) + ",") != std::string::npos; };

  const std::vector<Rack> racks = makeRacks(arguments.sizes);
  const Systems systems = makeSystems(arguments.isAlone);
  std::vector<Row> rows;
  if (arguments.isBlocksOnly)
  {
    for (const Rack& rack : racks)
      measureBlocksInUse(systems, rack, rows);
    for (const Row& row : rows)
      std::printf("%s %s %.4f\n", row.size.c_str(), row.system.c_str(), row.median);
    return 0;
  }
  for (const Rack& rack : racks)
  {
    for (const OperationName& operation : OPERATIONS)
      if (isWanted(operation.name)) measureOperation(systems, rack, operation, arguments.repetitions, rows);
    if (isWanted("heap")) measureHeap(systems, rack, rows);
    if (isWanted("section_bytes")) measureSection(systems, rack, rows);
  }
  if (arguments.isJson)
  {
    printJson(rows);
    return 0;
  }
  if (isWanted("allocations")) measureBlocks(arguments.sizes, arguments.isAlone, rows);
  if (isWanted("load")) measureLoad(arguments.repetitions, rows);
  if (isWanted("start")) measureStart(arguments.repetitions, rows);
  printTable(rows);
  if (arguments.isGrowthWanted && arguments.only.empty()) printGrowth(arguments.repetitions);
  return 0;
}
