// Independent trees in several threads at once, each thread with a pool of its own: the whole life of a tree, and what all
// threads share behind it: the error manager with its listener, tables and lists, the IDs, texts, and files.
//
// A plain build sees wrong results; the thread sanitizer sees every access that is not in order.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "inventory/KyInventoryTree.h"
#include "support/KyFiles.h"
#include "support/KyRecordingListener.h"
#include "support/KyTestPool.h"
#include "threads/KyThreads.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr unsigned int THREADS = 4;
constexpr unsigned int ROUNDS = 10;

using KyItemPtr = std::unique_ptr<KyCInventoryItem>;

bool isBelowHundred(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return parameter->getDesignatedValue<int>(pool) < 100;
}

bool write(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  *static_cast<int*>(parameter->getCustomPointer()) = parameter->getDesignatedValue<int>(pool);
  return true;
}

bool count(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  parameter->setValue(pool, parameter->getValue<unsigned int>(pool) + 1);
  return true;
}

// Twenty boards with some of every kind of parameter: enough siblings for the index that look-ups make.
KyItemPtr build(KyCErrorListPool& pool, const KyCString& name)
{
  KyItemPtr root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  for (unsigned int n = 1; n <= 20; ++n)
  {
    root->createParameter(pool, BOARD[n] / SIZE, static_cast<int>(n), "kB", false, 1);
    root->createParameter(pool, BOARD[n] / NAME, name, "", true, 2);
    root->createParameter(pool, BOARD[n] / VERSION, KyCVersion(1, 2, 3, n), "", false, 3);
    root->createParameter(pool, BOARD[n] / VOLTAGE_MAX, 0.25 * n, "V", false, 4);
  }
  KyNInventoryTree::addUpdateElementParameters(root->addPath(pool, UPDATE_ELEMENT), pool, 1, 2, name, 3, name, true,
                                               false, 4, 5);
  return root;
}

void share(KyCErrorListPool& pool, KyCInventoryItem& root)
{
  root.createParameter(pool, SHARED_DATA[2] / BIT_WIDTH, 16, "bit", false, 1);
  root.createParameter(pool, BOARD[1] / SHARED_DATA_INDEX, 2u, "", false, 1);
  root.createParameter(pool, BOARD[2] / SHARED_DATA_INDEX, 9u, "", false, 1);    // there is none: a warning
  root.linkSharedData(pool, nullptr);
  EXPECT_EQ(root.getValue<int>(pool, BOARD[1] / BIT_WIDTH), 16);
}

void writeBack(KyCErrorListPool& pool, KyCInventoryItem& root)
{
  int hardware = 0;
  KyCInventoryParameter* const size = root.getParameter(BOARD[3] / SIZE);
  size->setCheckAndWriteMethod(pool, isBelowHundred, write, THIS_NODE, &hardware);
  root.createParameter(pool, BOARD[3] / COUNT, 0u, "", false, 0)->setUpdateMethod(pool, count);
  size->setDesignatedValue(pool, 77);
  root.check(pool, &root);
  root.apply(pool, &root);
  root.updateParameters(pool, &root);
  EXPECT_EQ(hardware, 77);
  EXPECT_EQ(root.getValue<int>(pool, BOARD[3] / SIZE), 77);
  EXPECT_EQ(root.getValue<unsigned int>(pool, BOARD[3] / COUNT), 1u);
}

KyItemPtr copyOf(KyCErrorListPool& pool, const KyCInventoryItem& root)
{
  KyCInventoryItem* copy = nullptr;
  root.copyTree(pool, copy);
  return KyItemPtr(copy);
}

void mergeInto(KyCErrorListPool& pool, KyItemPtr& target, KyItemPtr source)
{
  KyCInventoryItem* merged = target.release();
  KyCInventoryItem* used = source.release();
  KyCInventoryItem::mergeTree(pool, merged, used, 1);
  target.reset(merged);
}

std::string sectionOf(KyCErrorListPool& pool, KyCInventoryItem& root)
{
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  return std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}

KyItemPtr treeOf(KyCErrorListPool& pool, const std::string& section)
{
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, reinterpret_cast<const unsigned char*>(section.data()),
                                                static_cast<unsigned int>(section.size()), root);
  return KyItemPtr(root);
}

KyItemPtr treeOfFile(KyCErrorListPool& pool, const std::string& path)
{
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
  return KyItemPtr(root);
}

void provokeReports(KyCInventoryItem& root)
{
  KyTestPool pool;
  root.getValue<int>(pool, BOARD[1] / SERIAL_NUMBER);
  root.addPath(pool, KyCInventoryAddress(4000000000u));
  KyCErrorManager::getSingleton()->sendErrorList(pool, 0);    // to the one listener of all threads
}

// The whole life of a tree. Gives its text and its stored form, which are the same in every thread.
std::string live(const KyCString& name, const std::string& path)
{
  KyTestPool pool;
  KyItemPtr root = build(pool, name);
  share(pool, *root);
  writeBack(pool, *root);
  const KyItemPtr copy = copyOf(pool, *root);
  KyItemPtr other = build(pool, name);
  other->createParameter(pool, CPU[7] / FREQUENCY, 1000u, "Hz", false, 0);
  mergeInto(pool, root, std::move(other));
  EXPECT_EQ(root->getValue<unsigned int>(pool, CPU[7] / FREQUENCY), 1000u);
  root->getItem(BOARD[5])->setID(BOARD[50]);
  const KyItemPtr detached(root->getItem(BOARD[6]));
  detached->detach();
  const std::unique_ptr<KyCInventoryParameter> alone(detached->detachParameter(SIZE.getCategory()));
  EXPECT_EQ(alone->getValue<int>(pool), 6);

  const std::string section = sectionOf(pool, *root);
  EXPECT_EQ(sectionOf(pool, *treeOf(pool, section)), section);
  EXPECT_EQ(sectionOf(pool, *treeOfFile(pool, path)).substr(0, 4), "INVE");
  KyCInventoryAddress address;
  address.readFromString(root->getItem(BOARD[50])->getAddress().toString());
  EXPECT_TRUE(address == BOARD[50]);
  provokeReports(*root);
  return section + root->toString(pool, 0, 0).c_str() + copy->toString(pool, 0x80, 0).c_str();
}

// A message table of a thread's own.
class KyOwnTable
{
public:
  explicit KyOwnTable(unsigned int number) : m_table{s_messages, s_boundaries, 1, 0x7000000u + number * 0x10000u}
  {
    KyCErrorManager::getSingleton()->_registerMessages(&m_table);
  }
  ~KyOwnTable() { KyCErrorManager::getSingleton()->_unregisterMessages(&m_table); }
  KyOwnTable(const KyOwnTable&) = delete;
  KyOwnTable& operator=(const KyOwnTable&) = delete;
  unsigned int code() const { return m_table.codeBase; }

private:
  static constexpr const char* s_messages[] = {"Thread %1."};
  static constexpr unsigned int s_boundaries[] = {0, 1};
  const KyResText m_table;
};

// Counts what it hears. The manager calls it for one thread at a time, so it needs no lock of its own.
class KyCounter : public KyIErrorListener
{
public:
  void onError(const KyErrorEntry&) override { ++m_heard; }
  void onWarning(const KyErrorEntry&) override { ++m_heard; }
  unsigned int m_heard = 0;
};
}    // namespace

TEST(KyThreads, liveTheWholeLivesOfTreesAtOnce)
{
  const KyTemporaryFolder folder;
  const KyCString name("a text that is too long to live inside the string, so that all trees share it");
  std::string path;
  {
    KyTestPool pool;
    path = folder.write("tree.kyinv", sectionOf(pool, *build(pool, name)));
  }
  KyRecordingListener listener;
  std::vector<std::string> results(THREADS);
  inThreads(THREADS,
            [&](unsigned int n)
            {
              results[n] = live(name, path);
              for (unsigned int round = 1; round < ROUNDS; ++round)
                EXPECT_EQ(live(name, path), results[n]);
            });
  for (const std::string& result : results)
    EXPECT_EQ(result, results[0]);
  const std::vector<KyReport> errors = listener.takeReports();
  const std::vector<KyReport> warnings = listener.takeWarnings();
  EXPECT_EQ(errors.size(), 2u * THREADS * ROUNDS);
  EXPECT_EQ(warnings.size(), THREADS * ROUNDS);
  for (const KyReport& warning : warnings)
    EXPECT_EQ(warning.code, 0x1300815u);
}

TEST(KyThreads, useTheErrorManagerForTheFirstTimeAtOnce)
{
  std::vector<KyCErrorManager*> managers(THREADS);
  inThreads(THREADS, [&](unsigned int n) { managers[n] = KyCErrorManager::getSingleton(); });
  for (const KyCErrorManager* manager : managers)
    EXPECT_EQ(manager, managers[0]);
}

TEST(KyThreads, makeAndDeleteListsAndRegisterTablesAtOnce)
{
  inThreads(THREADS,
            [](unsigned int n)
            {
              KyCErrorManager& manager = *KyCErrorManager::getSingleton();
              for (unsigned int round = 0; round < 50 * ROUNDS; ++round)
              {
                const KyOwnTable table(n);
                KyCErrorListPool* const list = manager.createErrorList(0, 1, 20, 5, 300);
                list->setError(table.code(), __LINE__, "test", "%u", n);
                EXPECT_EQ(list->getEntry(0).text, "Thread " + std::to_string(n) + ".");
                manager.deleteErrorList(*list);
              }
            });
}

TEST(KyThreads, replaceTheListenerWhileOthersReport)
{
  KyCounter counters[THREADS];
  KyCErrorManager& manager = *KyCErrorManager::getSingleton();
  KyCounter first;
  KyIErrorListener* const before = manager.setListener(&first);
  inThreads(THREADS,
            [&](unsigned int n)
            {
              for (unsigned int round = 0; round < 50 * ROUNDS; ++round)
              {
                if (n % 2 == 0) manager.setListener(&counters[n]);
                manager.sendWarning(0x7000000, __LINE__, "test", nullptr);
                KyCErrorListPool pool;
                pool.setError(0x7000000, __LINE__, "test", nullptr);
                manager.sendErrorList(pool, 0);
              }
            });
  manager.setListener(before);
  unsigned int heard = first.m_heard;
  for (const KyCounter& counter : counters)
    heard += counter.m_heard;
  EXPECT_EQ(heard, 2 * THREADS * 50 * ROUNDS);
}

TEST(KyThreads, storeOneTreeThatNobodyChanges)
{
  KyTestPool pool;
  const KyItemPtr root = build(pool, "shared");
  const std::string section = sectionOf(pool, *root);
  inThreads(THREADS,
            [&](unsigned int)
            {
              KyTestPool own;
              for (unsigned int round = 0; round < ROUNDS; ++round)
                EXPECT_EQ(sectionOf(own, *root), section);
            });
}

TEST(KyThreads, shareTextsAddressesAndNames)
{
  const KyCString text("one text of many threads, each with a copy of its own");
  const KyCInventoryAddress address = BOARD[3] / IOCHANNEL[2] / SERIAL_NUMBER;
  inThreads(THREADS,
            [&](unsigned int n)
            {
              for (unsigned int round = 0; round < 50 * ROUNDS; ++round)
              {
                KyCString copy(text);
                const KyCString other = copy;
                copy += n;
                EXPECT_EQ(copy.length(), other.length() + 1);
                EXPECT_STREQ(address.toString().c_str(), "BOARD[3]/IOCHANNEL[2]/SERIAL_NUMBER");
                EXPECT_TRUE(address.getHeadAddress() / SERIAL_NUMBER == address);
                EXPECT_STREQ(Map.get(SIZE.getCategory()), "SIZE");
              }
            });
  EXPECT_EQ(text.length(), 53u);
}
