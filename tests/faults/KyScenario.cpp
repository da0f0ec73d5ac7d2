#include "faults/KyScenario.h"

#include <cstring>
#include <vector>

using namespace KyNInventoryIDs;

namespace
{
bool keepsValue(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }

bool refreshes(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  static const KyCString text("refreshed by its update method");
  parameter->setValue<KyCString>(pool, text);
  return true;
}

class KyTestUpdater : public KyIUpdater
{
};

void createEveryType(KyCErrorListPool& pool, KyCInventoryItem& item)
{
  const char* const unit = "a unit of more than six characters";
  item.createParameter<signed char>(pool, GAIN, -1, "", false, 1);
  item.createParameter<short>(pool, SIZE, -2, "mV", true, 2);
  item.createParameter<int>(pool, OFFSET, -3, unit, true, 3);
  item.createParameter<long long>(pool, BAUDRATE_MIN, -4, unit, false, 4);
  item.createParameter<unsigned char>(pool, VALID, 5, unit, false, 5);
  item.createParameter<unsigned short>(pool, ACTIVE, 6, unit, false, 6);
  item.createParameter<unsigned int>(pool, SLOT_COUNT, 7, unit, false, 7);
  item.createParameter<unsigned long long>(pool, BAUDRATE_MAX, 8, unit, false, 8);
  item.createParameter<float>(pool, VOLTAGE_MIN, 9.5f, "V", false, 9);
  item.createParameter<double>(pool, VOLTAGE_MAX, 10.25, "V", false, 10);
  item.createParameter<KyCString>(pool, NAME, KyCString("a text of more than six characters"), nullptr, false, 11);
  item.createParameter<KyCVersion>(pool, VERSION, KyCVersion(1, 2, 3, 4), nullptr, false, 12);
}

KyCInventoryItem* makeTree(KyCErrorListPool& pool)
{
  auto* const root = new KyCInventoryItem(pool, ROOT, "a root with a description of its own");
  createEveryType(pool, *root->addPath(pool, BOARD));
  createEveryType(pool, *root->addPath(pool, SHARED_DATA[3] / IOCHANNEL));
  root->createParameter<unsigned int>(pool, BOARD[2] / SHARED_DATA_INDEX, 3u, nullptr, false, 0);
  root->addPath(pool, BOARD[2] / IOCHANNEL);
  root->addPath(pool, UPDATE_ELEMENT[2]);
  root->addPath(pool, UPDATE_ELEMENT)->setUpdater(pool, new KyTestUpdater);
  for (unsigned int n = 2; n < 12; ++n)
    root->createParameter<int>(pool, DEVICE / IOCHANNEL[n] / SIZE, static_cast<int>(n), nullptr, false, 0);
  KyCInventoryParameter* const written = root->getParameter(BOARD / NAME);
  written->setCheckAndWriteMethod(pool, keepsValue, keepsValue, BOARD / DEVICE / NAME, nullptr);
  written->setDesignatedValue<KyCString>(pool, KyCString("a pending text of more than six"));
  KyCInventoryParameter* const version = root->getParameter(BOARD / VERSION);
  version->setCheckAndWriteMethod(pool, keepsValue, keepsValue, BOARD, nullptr);
  version->setDesignatedValue<KyCVersion>(pool, KyCVersion(5, 6, 7, 8));
  root->getParameter(SHARED_DATA[3] / IOCHANNEL / NAME)->setUpdateMethod(pool, refreshes);
  return root;
}

KyCErrorListPool& masterList() { return KyCErrorManager::getSingleton()->getMasterErrorList(); }

void append(std::string& text, const KyCBuffer& buffer)
{
  text.append(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
  text += '|';
}

// The tree as it is stored: whoever can store it and read it back has walked all of it.
void append(std::string& text, KyCInventoryItem* tree)
{
  if (tree == nullptr)
  {
    text += "none|";
    return;
  }
  KyCErrorListPool pool;
  KyCBuffer first(pool);
  KyCInventoryData::generateInventorySection(pool, first, tree);
  KyCInventoryItem* again = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, first.getStorage(), first.getWritePosition(), again);
  EXPECT_EQ(pool.getErrorCount(), 0u);
  EXPECT_NE(again, nullptr);
  if (again == nullptr) return;
  KyCBuffer second(pool);
  KyCInventoryData::generateInventorySection(pool, second, again);
  EXPECT_EQ(first.getWritePosition(), second.getWritePosition());
  EXPECT_EQ(std::memcmp(first.getStorage(), second.getStorage(), first.getWritePosition()), 0);
  delete again;
  append(text, first);
  text += tree->toString(pool, 0, 0).c_str();
  text += '|';
}

// All that an operation can have changed.
std::string outcomeOf(KyScene& scene)
{
  std::string text;
  append(text, scene.tree.get());
  append(text, scene.made.get());
  append(text, scene.section);
  append(text, scene.buffer);
  if (scene.free != nullptr)
  {
    KyCErrorListPool pool;
    text += scene.free->getDescription();
    text += scene.free->getUnit();
    text += std::to_string(scene.free->getType());
  }
  text += scene.text.c_str();
  text += '|';
  text += scene.address.toString().c_str();
  return text + '|' + scene.result;
}

enum class Fail
{
  ONCE,
  FOR_EVER,
  POOL_ONCE,
  NEVER
};

const char* nameOf(Fail fail)
{
  const char* const names[] = {"once", "for ever", "in the pool allocator", "never"};
  return names[static_cast<int>(fail)];
}

// Whether one of the next n pool allocations still fails: the failure that was ordered has not happened.
bool isStillToCome(unsigned int n)
{
  KyCErrorListPool pool;
  for (unsigned int taken = 0; taken < n && pool.getErrorCount() == 0; ++taken)
    ::operator delete(::operator new(1, pool));
  KyNPoolAllocator::reset();
  return pool.getErrorCount() != 0;
}

void order(Fail fail, unsigned int n)
{
  if (fail == Fail::POOL_ONCE)
    KyNPoolAllocator::failAfter(n - 1);
  else if (fail != Fail::NEVER)
    KyFaultyHeap::arm(n, fail == Fail::ONCE ? KyFaultyHeap::ONCE : KyFaultyHeap::FOR_EVER);
}

bool wasHit(Fail fail, unsigned int n)
{
  if (fail == Fail::POOL_ONCE) return !isStillToCome(n);
  return KyFaultyHeap::disarm();
}

bool isOutOfMemoryReported(const KyCErrorList& list)
{
  for (unsigned int entry = 0; entry < list.getEntryCount(); ++entry)
    if (list.getEntry(entry).code == 0x1000000 && std::strcmp(list.getEntry(entry).text, "Out of memory.") == 0)
      return true;
  return false;
}

struct TRun
{
  bool isHit = false;
  bool hasThrown = false;
  bool isTold = false;
  bool isPoolTold = false;    // "Out of memory." is among the reports
  std::string outcome;
};

TRun runOnce(const KyScenario& scenario, Fail fail, unsigned int n)
{
  TRun run;
  KyScene scene;
  EXPECT_EQ(scene.quiet.getErrorCount(), 0u);
  const unsigned int masterBefore = masterList().getErrorCount();
  const unsigned int sentBefore = KySilentListener::s_outOfMemory;
  bool isDone = false;
  order(fail, n);
  try
  {
    isDone = scenario.operate(scene);
  }
  catch (const std::bad_alloc&)
  {
    run.hasThrown = true;
  }
  run.isHit = wasHit(fail, n);
  const bool isTreeWithReports = isDone && scene.made != nullptr && scene.pool.getErrorCount() != 0;
  EXPECT_TRUE(scenario.isMadeAnyway || !isTreeWithReports);
  const unsigned int masterAfter = masterList().getErrorCount();
  run.isTold = run.hasThrown || !isDone || scene.pool.getErrorCount() != 0 || masterAfter != masterBefore;
  run.isPoolTold = isOutOfMemoryReported(scene.pool) || isOutOfMemoryReported(scene.quiet) ||
                   isOutOfMemoryReported(masterList()) || KySilentListener::s_outOfMemory != sentBefore;
  run.outcome = outcomeOf(scene);
  return run;
}

// The blocks that a run leaves behind. A text of the outcome is the caller's.
TRun runAndCount(const KyScenario& scenario, Fail fail, unsigned int n)
{
  const std::size_t before = KyFaultyHeap::liveBlocks();
  TRun run = runOnce(scenario, fail, n);
  const std::size_t ofOutcome = run.outcome.capacity() > 15 ? 1 : 0;
  EXPECT_EQ(KyFaultyHeap::liveBlocks(), before + ofOutcome) << "blocks stay";
  return run;
}

bool mayThrow(const KyScenario& scenario, Fail fail)
{
  return scenario.leave == KyScenario::MAY_THROW_FOR_ANY ||
         (scenario.leave == KyScenario::MAY_THROW && fail != Fail::POOL_ONCE);
}

KyFailures runAll(const KyScenario& scenario, Fail fail, const std::string& expected)
{
  KyFailures failures;
  for (unsigned int n = 1;; n = kyNextFailure(n))
  {
    SCOPED_TRACE(std::string(scenario.name) + ", allocation " + std::to_string(n) + " fails " + nameOf(fail));
    const TRun run = runAndCount(scenario, fail, n);
    EXPECT_TRUE(run.isTold || run.outcome == expected) << "not told";
    if (!run.isHit) return failures;
    ++failures.runs;
    if (run.hasThrown) ++failures.thrown;
    EXPECT_TRUE(!run.hasThrown || mayThrow(scenario, fail));
    EXPECT_TRUE(fail != Fail::POOL_ONCE || run.isPoolTold || run.hasThrown) << "no report of the pool allocator";
    if (::testing::Test::HasFailure()) return failures;
  }
}
}    // namespace

KyScene::KyScene()
    : tree(makeTree(quiet)),
      other(makeTree(quiet)),
      free(new KyCInventoryParameter(quiet, SERIAL_NUMBER, "a description of its own",
                                     KyCString("a text of more than six"), "mV", true, 1)),
      section(quiet),
      buffer(quiet)
{
  KyCInventoryData::generateInventorySection(quiet, section, tree.get());
  other->createParameter<int>(quiet, BOARD[5] / IOCHANNEL / SIZE, 1, nullptr, false, 0);
  other->createParameter<int>(quiet, BOARD[2] / IOCHANNEL / SIZE, 1, nullptr, false, 0);
}

KyScene::~KyScene() { KyCErrorManager::getSingleton()->sendErrorList(masterList(), 0); }

unsigned int kyNextFailure(unsigned int n)
{
  static const char* const wish = std::getenv("KY_FAULTS");
  const bool isAll = wish != nullptr && std::strcmp(wish, "all") == 0;
  return isAll || n < 64 ? n + 1 : n + n / 8;
}

KyFailures kyRunWithEveryFailure(const KyScenario& scenario)
{
  SCOPED_TRACE(scenario.name);
  runOnce(scenario, Fail::NEVER, 0);    // what is made on first use stays
  const TRun whole = runAndCount(scenario, Fail::NEVER, 0);
  EXPECT_FALSE(whole.isTold) << "fails without a failure";
  KyFailures failures;
  if (whole.isTold) return failures;
  for (const Fail fail : {Fail::ONCE, Fail::FOR_EVER, Fail::POOL_ONCE})
    failures += runAll(scenario, fail, whole.outcome);
  EXPECT_TRUE(!KY_HAS_WHOLE_HEAP || scenario.leave == KyScenario::NOTHING_MORE || failures.thrown != 0)
      << "never throws";
  return failures;
}
