// Measures every operation of every system on every size, interleaved, and prints the medians.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "KyGrowth.h"
#include "KyMeasure.h"
#include "KyReport.h"

namespace
{
const char* const s_usage =
    "usage: ky_bench [--json] [--sizes SML] [--only OPERATION,...] [--repetitions N] [--ours] [--no-growth]\n\n"
    "Measures this project's library beside its peers and limits, all in one process and interleaved, and prints the\n"
    "medians as a table, or as a JSON array of {\"operation\", \"size\", \"system\", \"unit\", \"median\"}.\n\n"
    "  --sizes SML      S: 4 boards of 16 channels, M: 20 of 100, L: 100 of 1000; default: SM\n"
    "  --only LIST      these operations alone: build,store,extract_mem,extract_file,lookup,set,dump,copy,merge,link,\n"
    "                   apply,destroy,heap,section_bytes\n"
    "  --repetitions N  at least 7 for figures that are to be compared; default: 7\n"
    "  --ours           without the peers\n"
    "  --no-growth      without the trees that grow in width and depth\n";

struct Arguments
{
  bool isJson = false;
  bool isAlone = false;
  bool isGrowthWanted = true;
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
  const auto isWanted = [&](const char* operation)
  { return arguments.only.empty() || arguments.only.find("," + std::string(operation) + ",") != std::string::npos; };

  const std::vector<Rack> racks = makeRacks(arguments.sizes);
  const Systems systems = makeSystems(arguments.isAlone);
  std::vector<Row> rows;
  for (const Rack& rack : racks)
  {
    for (const OperationName& operation : OPERATIONS)
      if (isWanted(operation.name)) measureOperation(systems, rack, operation, arguments.repetitions, rows);
    if (isWanted("heap")) measureHeap(systems, rack, rows);
    if (isWanted("section_bytes")) measureSection(systems, rack, rows);
  }
  if (arguments.isJson)
    printJson(rows);
  else
    printTable(rows);
  if (!arguments.isJson && arguments.isGrowthWanted && arguments.only.empty()) printGrowth(arguments.repetitions);
  return 0;
}
