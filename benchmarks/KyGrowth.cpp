#include "KyGrowth.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "KyMeasure.h"
#include "inventory/KyInventoryTree.h"

using namespace KyNInventoryIDs;

namespace
{
using Tree = std::unique_ptr<KyCInventoryItem>;

// A kind of tree that comes in any size.
struct Shape
{
  const char* name;
  Tree (*build)(unsigned int n);
  // The n-th parameter of the tree of this size.
  KyCInventoryAddress (*address)(unsigned int size, unsigned int n);
  std::vector<unsigned int> sizes;
};

Tree buildWide(unsigned int n)
{
  KyCErrorListPool pool;
  Tree root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  for (unsigned int index = 1; index <= n; ++index)
    root->createParameter<int>(pool, BOARD[index] / SIZE, 1, nullptr, false, 0);
  if (pool.getErrorCount() != 0) std::abort();
  return root;
}

KyCInventoryAddress addressInWide(unsigned int, unsigned int n) { return BOARD[n] / SIZE; }

Tree buildDeep(unsigned int n)
{
  KyCErrorListPool pool;
  Tree root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  KyCInventoryItem* item = root.get();
  for (unsigned int level = 1; level < n; ++level)
  {
    item = item->addPath(pool, BOARD);
    item->createParameter<int>(pool, SIZE, 1, nullptr, false, 0);
  }
  if (pool.getErrorCount() != 0) std::abort();
  return root;
}

KyCInventoryAddress addressInDeep(unsigned int size, unsigned int)
{
  KyCInventoryAddress address;
  for (unsigned int level = 1; level < size; ++level)
    address.append(BOARD);
  return address / SIZE;
}

constexpr const char* s_file = "/tmp/ky-bench-growth.kyinv";

std::vector<unsigned char> store(KyCInventoryItem& root)
{
  KyCErrorListPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  if (pool.getErrorCount() != 0) std::abort();
  return std::vector<unsigned char>(buffer.getStorage(), buffer.getStorage() + buffer.getWritePosition());
}

// Each times the operation on a tree of n items; what it needs before is not in the time.
double timeBuild(const Shape& shape, unsigned int n)
{
  Tree tree;
  return timeOf([&] { tree = shape.build(n); });
}
double timeDestroy(const Shape& shape, unsigned int n)
{
  Tree tree = shape.build(n);
  return timeOf([&] { tree.reset(); });
}
double timeStore(const Shape& shape, unsigned int n)
{
  const Tree tree = shape.build(n);
  return timeOf([&] { store(*tree); });
}
double timeExtractMem(const Shape& shape, unsigned int n)
{
  const std::vector<unsigned char> bytes = store(*shape.build(n));
  KyCErrorListPool pool;
  KyCInventoryItem* root = nullptr;
  const auto size = static_cast<unsigned int>(bytes.size());
  const double time = timeOf([&] { KyCInventoryData::extractInventoryTreeFromMem(pool, bytes.data(), size, root); });
  if (root == nullptr) std::abort();
  delete root;
  return time;
}
double timeExtractFile(const Shape& shape, unsigned int n)
{
  const std::vector<unsigned char> bytes = store(*shape.build(n));
  std::FILE* const file = std::fopen(s_file, "wb");
  if (file == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) std::abort();
  std::fclose(file);
  KyCErrorListPool pool;
  KyCInventoryItem* root = nullptr;
  const double time = timeOf([&] { KyCInventoryData::extractInventoryTreeFromFile(pool, s_file, root); });
  std::remove(s_file);
  if (root == nullptr) std::abort();
  delete root;
  return time;
}
double timeDump(const Shape& shape, unsigned int n)
{
  const Tree tree = shape.build(n);
  KyCErrorListPool pool;
  return timeOf([&] { keep(tree->toString(pool, 0, -5000).c_str()); });    // not indented: that grows with the depth
}
double timeCopy(const Shape& shape, unsigned int n)
{
  const Tree tree = shape.build(n);
  KyCErrorListPool pool;
  KyCInventoryItem* copy = nullptr;
  const double time = timeOf([&] { tree->copyTree(pool, copy); });
  delete copy;
  return time;
}
double timeMerge(const Shape& shape, unsigned int n)
{
  Tree half = shape.build(n / 2);
  KyCInventoryItem* target = half.get();
  KyCInventoryItem* source = shape.build(n).release();
  KyCErrorListPool pool;
  return timeOf([&] { KyCInventoryItem::mergeTree(pool, target, source, 1); });
}
double timeLink(const Shape& shape, unsigned int n)
{
  const Tree tree = shape.build(n);
  KyCErrorListPool pool;
  return timeOf([&] { tree->linkSharedData(pool, nullptr); });
}

bool acceptAll(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }

double timeApply(const Shape& shape, unsigned int n)
{
  const Tree tree = shape.build(n);
  KyCErrorListPool pool;
  for (KyCInventoryItem* item = tree.get(); item != nullptr;
       item = item->getFirstSubItem() != nullptr ? item->getFirstSubItem() : item->getNext())
  {
    KyCInventoryParameter* const parameter = item->getParameterByOrdinalNumber(0);
    if (parameter == nullptr) continue;
    parameter->setCheckAndWriteMethod(pool, acceptAll, acceptAll, THIS_NODE, nullptr);
    parameter->setDesignatedValue<int>(pool, 2);
  }
  const double time = timeOf(
      [&]
      {
        tree->check(pool, nullptr);
        tree->apply(pool, nullptr);
      });
  if (pool.getErrorCount() != 0) std::abort();
  return time;
}

// The time of one, at random.
double timeAccess(const Shape& shape, unsigned int n,
                  const std::function<void(KyCInventoryItem&, const KyCInventoryAddress&)>& access)
{
  const Tree tree = shape.build(n);
  std::mt19937 random(3);
  std::vector<KyCInventoryAddress> addresses;
  const unsigned int count = shape.address == addressInDeep ? 20 : 20000;
  for (unsigned int k = 0; k < count; ++k)
    addresses.push_back(shape.address(n, 1 + static_cast<unsigned int>(random() % n)));
  const double time = timeOf(
      [&]
      {
        for (const KyCInventoryAddress& address : addresses)
          access(*tree, address);
      });
  return time / count;
}
double timeLookUp(const Shape& shape, unsigned int n)
{
  KyCErrorListPool pool;
  return timeAccess(shape, n,
                    [&](KyCInventoryItem& root, const KyCInventoryAddress& address)
                    { keep(root.getValue<int>(pool, address)); });
}
double timeSet(const Shape& shape, unsigned int n)
{
  KyCErrorListPool pool;
  return timeAccess(shape, n,
                    [&](KyCInventoryItem& root, const KyCInventoryAddress& address)
                    { root.setValue<int>(pool, address, 7); });
}

struct Growing
{
  const char* name;
  double (*time)(const Shape& shape, unsigned int n);
  bool isOfOne;    // the time is that of one look-up, not of the whole tree
};
constexpr Growing s_operations[] = {
    {"build", timeBuild, false},
    {"store", timeStore, false},
    {"extract_mem", timeExtractMem, false},
    {"extract_file", timeExtractFile, false},
    {"lookup", timeLookUp, true},
    {"set", timeSet, true},
    {"dump", timeDump, false},
    {"copy", timeCopy, false},
    {"merge", timeMerge, false},
    {"link", timeLink, false},
    {"apply", timeApply, false},
    {"destroy", timeDestroy, false},
};

// The slope of log(time) over log(n).
double exponentOf(const std::vector<double>& n, const std::vector<double>& time)
{
  double sumX = 0, sumY = 0, sumXX = 0, sumXY = 0;
  for (std::size_t k = 0; k < n.size(); ++k)
  {
    const double x = std::log(n[k]);
    const double y = std::log(time[k]);
    sumX += x;
    sumY += y;
    sumXX += x * x;
    sumXY += x * y;
  }
  const double count = static_cast<double>(n.size());
  return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
}

void printHead(const char* name, const std::vector<unsigned int>& sizes, const char* unit)
{
  std::printf("\n%-14s", name);
  for (const unsigned int n : sizes)
    std::printf(" %9u", n);
  std::printf("  exponent   (%s)\n", unit);
}

// `time` is of the operation, not of one unit.
void printLine(const char* name, const std::vector<double>& n, const std::vector<double>& perUnit,
               const std::vector<double>& time)
{
  std::printf("%-14s", name);
  for (const double value : perUnit)
    std::printf(" %9.1f", value * 1e9);
  std::printf("  %8.2f\n", exponentOf(n, time));
  std::fflush(stdout);
}

void printShape(const Shape& shape, unsigned int repetitions)
{
  printHead(shape.name, shape.sizes, "ns an item; lookup, set: ns");
  for (const Growing& operation : s_operations)
  {
    std::vector<double> counts;
    std::vector<double> perUnit;
    std::vector<double> times;
    for (const unsigned int n : shape.sizes)
    {
      std::vector<double> repeated;
      for (unsigned int k = 0; k < repetitions * (n < 5000 ? 5 : 1); ++k)
        repeated.push_back(operation.time(shape, n));
      counts.push_back(n);
      times.push_back(median(repeated));
      perUnit.push_back(operation.isOfOne ? times.back() : times.back() / n);
    }
    printLine(operation.name, counts, perUnit, times);
  }
}

void printRacks(unsigned int repetitions)
{
  const std::vector<Rack> racks = {Rack("S", 4, 16), Rack("M", 20, 100), Rack("L", 100, 1000)};
  std::vector<unsigned int> sizes;
  for (const Rack& rack : racks)
    sizes.push_back(rack.parameterCount());
  printHead("S, M, L", sizes, "ns a parameter; lookup, set: ns; dump: ns a byte");
  const std::unique_ptr<System> ours = makeOurs();
  for (const OperationName& operation : OPERATIONS)
  {
    std::vector<double> counts;
    std::vector<double> perUnit;
    std::vector<double> times;
    const bool isOfOne = operation.operation == Operation::LOOKUP || operation.operation == Operation::SET;
    for (const Rack& rack : racks)
    {
      const std::optional<Measure> measure = ours->measure(operation.operation, rack);
      if (!measure) continue;
      std::vector<double> repeated;
      const unsigned int count = rack.parameterCount() > 100000 ? std::min(repetitions, 3u) : repetitions;
      for (unsigned int k = 0; k < count; ++k)
        repeated.push_back(timeOfUnit(*measure));
      counts.push_back(rack.parameterCount());
      perUnit.push_back(median(repeated));
      times.push_back(isOfOne ? perUnit.back() : perUnit.back() * counts.back());
    }
    printLine(operation.name, counts, perUnit, times);
  }
}
}    // namespace

void printGrowth(unsigned int repetitions)
{
  std::printf(
      "\nHow cost grows: time = a * n^exponent, of the whole operation or of one look-up. n log n shows as 1.1 to "
      "1.2.\n");
  printRacks(repetitions);
  printShape({"WIDE", buildWide, addressInWide, {10, 100, 1000, 10000, 100000}}, repetitions);
  printShape({"DEEP", buildDeep, addressInDeep, {10, 64, 512, 4096}}, repetitions);
}
