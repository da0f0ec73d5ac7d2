// The examples of docs/threads.md, compiled and run. Each block of code on that page stands here, letter by letter.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "errorhandling/KyErrorHandling.h"
#include "inventory/KyInventoryTree.h"
#include "support/KyFiles.h"

using namespace KyNInventoryIDs;

namespace
{
unsigned int countBoards(const std::string& path)
{
  KyCErrorListPool pool;    // this thread's own
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
  const std::unique_ptr<KyCInventoryItem> tree(root);
  unsigned int boards = 0;
  if (tree == nullptr) return boards;
  while (tree->getItem(BOARD[boards + 1]) != nullptr)
    ++boards;
  return boards;
}

void countInTwoThreads(const std::string& pathA, const std::string& pathB, unsigned int (&boards)[2])
{
  std::thread a([&] { boards[0] = countBoards(pathA); });
  std::thread b([&] { boards[1] = countBoards(pathB); });
  a.join();
  b.join();
}

class SharedInventory
{
public:
  explicit SharedInventory(std::unique_ptr<KyCInventoryItem> root) : m_root(std::move(root)) {}

  int voltage(unsigned int channel)
  {
    const std::lock_guard<std::mutex> lock(m_mutex);    // for reading, too
    KyCErrorListPool pool;
    return m_root->getValue<int>(pool, ANALOG_OUT[channel] / VALUE);
  }

  void setVoltage(unsigned int channel, int millivolts)
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    KyCErrorListPool pool;
    m_root->setValue(pool, ANALOG_OUT[channel] / VALUE, millivolts);
  }

  std::unique_ptr<KyCInventoryItem> copy()
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    KyCErrorListPool pool;
    KyCInventoryItem* copy = nullptr;
    m_root->copyTree(pool, copy);
    return std::unique_ptr<KyCInventoryItem>(copy);
  }

private:
  std::mutex m_mutex;
  std::unique_ptr<KyCInventoryItem> m_root;
};

std::unique_ptr<KyCInventoryItem> scanInTheBackground()
{
  std::unique_ptr<KyCInventoryItem> tree;
  std::thread scanner(
      [&tree]
      {
        KyCErrorListPool pool;
        tree = std::make_unique<KyCInventoryItem>(pool, ROOT, "ROOT");
        tree->createParameter(pool, BOARD / SIZE, 4096, "kB", false, 1);
      });
  scanner.join();    // from here on the tree is this thread's
  return tree;
}

std::vector<std::unique_ptr<KyCErrorListPool>> readAll(const std::vector<std::string>& paths)
{
  std::vector<std::unique_ptr<KyCErrorListPool>> pools;
  std::vector<std::thread> threads;
  for (const std::string& path : paths)
  {
    pools.push_back(std::make_unique<KyCErrorListPool>());
    threads.emplace_back(
        [&pool = *pools.back(), &path]
        {
          KyCInventoryItem* root = nullptr;
          KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
          delete root;
        });
  }
  for (std::thread& thread : threads)
    thread.join();
  return pools;    // to be read now, in the order of the paths
}

class Log : public KyIErrorListener
{
public:
  void onError(const KyErrorEntry& entry) override { m_lines.emplace_back(entry.text); }
  void onWarning(const KyErrorEntry& entry) override { m_lines.emplace_back(entry.text); }
  const std::vector<std::string>& lines() const { return m_lines; }

private:
  std::vector<std::string> m_lines;    // no lock: the manager calls for one thread at a time
};

std::vector<std::string> linesOf(void (*work)())
{
  Log log;
  KyIErrorListener* const before = KyCErrorManager::getSingleton()->setListener(&log);
  std::thread a(work);
  std::thread b(work);
  a.join();
  b.join();
  KyCErrorManager::getSingleton()->setListener(before);    // from here on nobody calls the log any more
  return log.lines();
}

std::mutex renaming;

void rename(KyCInventoryItem& item, const KyCInventoryAddress& id)
{
  const std::lock_guard<std::mutex> lock(renaming);
  item.setID(id);    // reports into the master error list, which is everybody's
  KyCErrorManager& manager = *KyCErrorManager::getSingleton();
  manager.sendErrorList(manager.getMasterErrorList(), 0);
}

bool writeVoltage(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  static std::mutex bus;
  const std::lock_guard<std::mutex> lock(bus);    // two trees, two threads, one piece of hardware
  int* const converter = static_cast<int*>(parameter->getCustomPointer());
  *converter = parameter->getDesignatedValue<int>(pool);
  return true;
}

// --- They do what the page says ------------------------------------------------------------------------------------------

std::unique_ptr<KyCInventoryItem> treeWithVoltages()
{
  KyCErrorListPool pool;
  auto root = std::make_unique<KyCInventoryItem>(pool, ROOT, "ROOT");
  root->createParameter(pool, ANALOG_OUT[1] / VALUE, 0, "mV", true, 1);
  root->addPath(pool, BOARD[1]);
  root->addPath(pool, BOARD[2]);
  return root;
}

std::string fileWithTwoBoards(const KyTemporaryFolder& folder)
{
  KyCErrorListPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, treeWithVoltages().get());
  return folder.write("two.kyinv",
                      std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition()));
}

// Sends one warning: the shared data item is not there.
void linkWrongly()
{
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  root.createParameter(pool, BOARD / SHARED_DATA_INDEX, 5u, "", false, 0);
  root.linkSharedData(pool, nullptr);
}
}    // namespace

TEST(KyThreadRules, aTreeOfItsOwnForEachThread)
{
  const KyTemporaryFolder folder;
  const std::string path = fileWithTwoBoards(folder);
  unsigned int boards[2] = {};
  countInTwoThreads(path, path, boards);
  EXPECT_EQ(boards[0], 2u);
  EXPECT_EQ(boards[1], 2u);
}

TEST(KyThreadRules, oneTreeBehindALock)
{
  SharedInventory inventory(treeWithVoltages());
  std::thread writer(
      [&]
      {
        for (int n = 1; n <= 100; ++n)
          inventory.setVoltage(1, n);
      });
  std::thread reader(
      [&]
      {
        for (int n = 1; n <= 100; ++n)
          EXPECT_LE(inventory.voltage(1), 100);
      });
  std::thread copier([&] { EXPECT_NE(inventory.copy(), nullptr); });
  writer.join();
  reader.join();
  copier.join();
  EXPECT_EQ(inventory.voltage(1), 100);
}

TEST(KyThreadRules, aTreeThatIsHandedOver)
{
  KyCErrorListPool pool;
  EXPECT_EQ(scanInTheBackground()->getValue<int>(pool, BOARD / SIZE), 4096);
}

TEST(KyThreadRules, aPoolForEachThread)
{
  const KyTemporaryFolder folder;
  const auto pools = readAll({folder.path("missing"), fileWithTwoBoards(folder)});
  EXPECT_EQ(pools[0]->getErrorCount() > 0, true);
  EXPECT_EQ(pools[1]->getErrorCount(), 0u);
}

TEST(KyThreadRules, oneListenerForAllThreads) { EXPECT_EQ(linesOf(linkWrongly).size(), 2u); }

TEST(KyThreadRules, theMasterErrorListBehindALock)
{
  const auto lines = linesOf(
      []
      {
        const auto root = treeWithVoltages();
        rename(*root->getItem(BOARD[1]), BOARD[2]);
      });
  EXPECT_EQ(lines.size(), 2u);
}

TEST(KyThreadRules, methodsThatShareTheirHardware)
{
  int converter = 0;
  const auto set = [&converter]
  {
    KyCErrorListPool pool;
    const auto root = treeWithVoltages();
    KyCInventoryParameter* const voltage = root->getParameter(ANALOG_OUT[1] / VALUE);
    voltage->setCheckAndWriteMethod(pool, nullptr, writeVoltage, THIS_NODE, &converter);
    voltage->setDesignatedValue(pool, 3300);
    root->apply(pool, root.get());
  };
  std::thread a(set);
  std::thread b(set);
  a.join();
  b.join();
  EXPECT_EQ(converter, 3300);
}

TEST(KyThreadRules, standOnThePage)
{
  const std::string source = contentOf(KY_SOURCE_DIR "/tests/threads/KyThreadRulesTest.cpp");
  std::istringstream page(contentOf(KY_SOURCE_DIR "/docs/threads.md"));
  std::string block;
  unsigned int blocks = 0;
  bool isInside = false;
  for (std::string line; std::getline(page, line);)
  {
    if (line.rfind("```", 0) == 0)
    {
      if (isInside)
      {
        ++blocks;
        EXPECT_NE(source.find("\n" + block), std::string::npos) << block;
      }
      isInside = line == "```cpp";
      block.clear();
    }
    else if (isInside)
      block += line + "\n";
  }
  EXPECT_EQ(blocks, 7u);
}
