#include "KyGrowth.h"

#include <algorithm>
#include <chrono>
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
using Build = Tree (*)(unsigned int n);

Tree buildWide(unsigned int n)
{
  KyCErrorListPool pool;
  Tree root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  for (unsigned int index = 1; index <= n; ++index)
    root->createParameter<int>(pool, BOARD[index] / SIZE, 1, nullptr, false, 0);
  if (pool.getErrorCount() != 0) std::abort();
  return root;
}

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

std::vector<unsigned char> store(KyCInventoryItem& root)
{
  KyCErrorListPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  if (pool.getErrorCount() != 0) std::abort();
  return std::vector<unsigned char>(buffer.getStorage(), buffer.getStorage() + buffer.getWritePosition());
}

double seconds(const std::function<void()>& work)
{
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct Growing
{
  const char* name;
  // Times the operation on a tree of n items; what it needs before is not in the time.
  double (*time)(Build build, unsigned int n);
};

double timeBuild(Build build, unsigned int n)
{
  Tree tree;
  return seconds([&] { tree = build(n); });
}
double timeDestroy(Build build, unsigned int n)
{
  Tree tree = build(n);
  return seconds([&] { tree.reset(); });
}
double timeStore(Build build, unsigned int n)
{
  const Tree tree = build(n);
  return seconds([&] { store(*tree); });
}
double timeExtract(Build build, unsigned int n)
{
  const std::vector<unsigned char> bytes = store(*build(n));
  KyCErrorListPool pool;
  KyCInventoryItem* root = nullptr;
  const double time = seconds(
      [&] {
        KyCInventoryData::extractInventoryTreeFromMem(pool, bytes.data(), static_cast<unsigned int>(bytes.size()),
                                                      root);
      });
  delete root;
  return time;
}
double timeDump(Build build, unsigned int n)
{
  const Tree tree = build(n);
  KyCErrorListPool pool;
  return seconds([&] { keep(tree->toString(pool, 0, -5000).c_str()); });    // not indented: that grows with the depth
}
double timeCopy(Build build, unsigned int n)
{
  const Tree tree = build(n);
  KyCErrorListPool pool;
  KyCInventoryItem* copy = nullptr;
  const double time = seconds([&] { tree->copyTree(pool, copy); });
  delete copy;
  return time;
}
double timeMerge(Build build, unsigned int n)
{
  Tree half = build(n / 2);
  KyCInventoryItem* target = half.get();
  KyCInventoryItem* source = build(n).release();
  KyCErrorListPool pool;
  return seconds([&] { KyCInventoryItem::mergeTree(pool, target, source, 1); });
}
double timeLink(Build build, unsigned int n)
{
  const Tree tree = build(n);
  KyCErrorListPool pool;
  return seconds([&] { tree->linkSharedData(pool, nullptr); });
}

constexpr Growing s_operations[] = {{"build", timeBuild},         {"destroy", timeDestroy}, {"store", timeStore},
                                    {"extract_mem", timeExtract}, {"dump", timeDump},       {"copy", timeCopy},
                                    {"merge", timeMerge},         {"link", timeLink}};

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

void printShape(const char* name, Build build, const std::vector<unsigned int>& sizes, unsigned int repetitions)
{
  std::printf("\n%-14s", name);
  for (const unsigned int n : sizes)
    std::printf(" %9u", n);
  std::printf("  exponent   (ns an item)\n");
  for (const Growing& operation : s_operations)
  {
    std::vector<double> counts;
    std::vector<double> times;
    std::printf("%-14s", operation.name);
    for (const unsigned int n : sizes)
    {
      std::vector<double> repeated;
      for (unsigned int k = 0; k < repetitions * (n < 5000 ? 5 : 1); ++k)
        repeated.push_back(operation.time(build, n));
      counts.push_back(n);
      times.push_back(median(repeated));
      std::printf(" %9.1f", times.back() / n * 1e9);
    }
    std::printf("  %8.2f\n", exponentOf(counts, times));
  }
}

// A look-up among n siblings, at random.
void printLookUps(const std::vector<unsigned int>& sizes, unsigned int repetitions)
{
  std::printf("%-14s", "lookup");
  for (const unsigned int n : sizes)
  {
    const Tree tree = buildWide(n);
    std::mt19937 random(3);
    std::vector<KyCInventoryAddress> addresses;
    for (unsigned int k = 0; k < 20000; ++k)
      addresses.push_back(BOARD[1 + static_cast<unsigned int>(random() % n)] / SIZE);
    KyCErrorListPool pool;
    std::vector<double> repeated;
    for (unsigned int k = 0; k < repetitions; ++k)
    {
      int sum = 0;
      repeated.push_back(seconds(
          [&]
          {
            for (const KyCInventoryAddress& address : addresses)
              sum += tree->getValue<int>(pool, address);
          }));
      keep(sum);
    }
    std::printf(" %9.1f", median(repeated) / static_cast<double>(addresses.size()) * 1e9);
  }
  std::printf("             (ns a look-up)\n");
}
}    // namespace

void printGrowth(unsigned int repetitions)
{
  const std::vector<unsigned int> wide = {10, 100, 1000, 10000, 100000};
  printShape("WIDE", buildWide, wide, repetitions);
  printLookUps(wide, repetitions);
  printShape("DEEP", buildDeep, {10, 64, 512, 4096}, repetitions);
}
