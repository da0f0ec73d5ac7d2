#include "inventory/KyCInventoryItemFactory.h"

#include <string>

#include "compositefactory/KyCCompositeFactory.h"
#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyNInventoryIDs.h"
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KyStoredBytes.h"
#include "unit/persistence/KyTreeText.h"

namespace
{
using namespace KyNInventoryIDs;

// Big enough to make a new buffer grow, with items of two levels.
KyItemPtr sampleTree(KyCErrorListPool& pool)
{
  KyItemPtr root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  root->createParameter<KyCString>(pool, NAME, KyCString("a system with a name of some length"), "", false, 1);
  for (unsigned int board = 1; board <= 40; ++board)
  {
    const KyCInventoryAddress address = BOARD[board];
    root->createParameter<int>(pool, address / SIZE, static_cast<int>(board), "kB", board % 2 == 0, board);
    root->createParameter<KyCVersion>(pool, address / VERSION, KyCVersion(board, 2, 3, 4), "", false, 0);
    root->createParameter<KyCString>(pool, address / IOCHANNEL[2] / NAME, KyCString("channel"), "", true, 7);
  }
  return root;
}

// A tree of the base library: its parameter is no inventory parameter.
KyBytes storedTreeOfPlainParameter(KyCErrorListPool& pool)
{
  KyCComposite root(pool, 1, 1, "ROOT");
  root.addParameter(pool, new KyCParam(pool, 3, "NAME", 0u, 5, nullptr));
  KyCBuffer buffer(pool);
  KyCCompositeFactory factory(pool);
  KyCBinSerializer serializer(pool);
  factory.setBinarySerializer(pool, &serializer);
  factory.serialize(pool, &root, 0, &buffer);
  factory.setBinarySerializer(pool, nullptr);
  return bytesOf(buffer);
}

KyBytes storedPlainParameter(KyCErrorListPool& pool)
{
  const KyCParam parameter(pool, 3, "NAME", 0u, 5, nullptr);
  KyCBuffer buffer(pool);
  KyCCompositeFactory factory(pool);
  KyCBinSerializer serializer(pool);
  factory.setBinarySerializer(pool, &serializer);
  factory.serializeParameter(pool, &buffer, &parameter);
  factory.setBinarySerializer(pool, nullptr);
  return bytesOf(buffer);
}

// Runs an operation again and again, each time with another pool allocation failing, until none is left to fail. `run`
// is given the pool and what to call when its preparations are done. Every failing run has the allocator's report first.
template <typename TRun>
std::vector<std::vector<KyReport>> reportsOfEveryFailingAllocation(const TRun& run)
{
  std::vector<std::vector<KyReport>> all;
  for (unsigned int n = 0;; ++n)
  {
    KyTestPool pool;
    run(pool, [n] { KyNPoolAllocator::failAfter(n); });
    KyNPoolAllocator::reset();
    const std::vector<KyReport> reports = pool.takeReports();
    if (reports.empty()) return all;
    EXPECT_TRUE(sameReports({reports.front()}, {allocatorOutOfMemory()})) << n;
    all.push_back(reports);
  }
}

bool endsWith(const std::vector<KyReport>& reports, const KyReport& last)
{
  return !reports.empty() && sameReports({reports.back()}, {last});
}
}    // namespace

// --- createComposite ----------------------------------------------------------------------------------------------------

TEST(KyCInventoryItemFactory, createCompositeWithoutParentGivesAFreeItem)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  const KyItemPtr item(asItem(factory.createComposite(pool, 48, 5, "a board", nullptr)));
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->getID(), KyCInventoryAddress(48, 5));
  EXPECT_STREQ(item->getDescription(), "a board");
  EXPECT_EQ(item->getParent(), nullptr);
  EXPECT_EQ(item->getNext(), nullptr);
  EXPECT_EQ(item->getFirstSubItem(), nullptr);
}

TEST(KyCInventoryItemFactory, createCompositeAttachesBehindTheLastChild)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  const KyItemPtr root(asItem(factory.createComposite(pool, 1, 1, "ROOT", nullptr)));
  KyCInventoryItem* const first = asItem(factory.createComposite(pool, 48, 2, "", asComposite(root.get())));
  KyCInventoryItem* const second = asItem(factory.createComposite(pool, 48, 1, "", asComposite(root.get())));
  EXPECT_EQ(root->getFirstSubItem(), first);
  EXPECT_EQ(first->getNext(), second);
  EXPECT_EQ(second->getNext(), nullptr);
  EXPECT_EQ(second->getParent(), root.get());
}

TEST(KyCInventoryItemFactory, createCompositeTakesANullDescriptionAsEmpty)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  const KyItemPtr item(asItem(factory.createComposite(pool, 1, 1, nullptr, nullptr)));
  ASSERT_NE(item, nullptr);
  EXPECT_STREQ(item->getDescription(), "");
}

TEST(KyCInventoryItemFactory, createCompositeWithoutMemoryGivesANullRootWithoutAReportOfItsOwn)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(factory.createComposite(pool, 1, 1, "ROOT", nullptr), nullptr);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory());
}

TEST(KyCInventoryItemFactory, createCompositeWithoutMemoryBelowAParentReportsTheRefusedNullChild)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  KyCInventoryItem root(pool, ROOT, "ROOT");
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(factory.createComposite(pool, 48, 1, "BOARD", asComposite(&root)), nullptr);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotAttach("-1"));
  EXPECT_EQ(root.getFirstSubItem(), nullptr);
}

TEST(KyCInventoryItemFactory, createCompositeLeavesErrorsOfTheItemsConstructorUnexamined)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  KyNPoolAllocator::failAfter(1);    // the item has its block, its description has none
  const KyItemPtr item(asItem(factory.createComposite(pool, 1, 1, "no registered name", nullptr)));
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory());
  ASSERT_NE(item, nullptr);
  EXPECT_STREQ(item->getDescription(), "");
}

// --- Trees --------------------------------------------------------------------------------------------------------------

TEST(KyCInventoryItemFactory, treeReadsBackAsItWasStored)
{
  KyTestPool pool;
  const KyItemPtr stored = sampleTree(pool);
  const KyBytes bytes = storedTree(stored.get());
  const KyItemPtr read = readTree(pool, bytes);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(treeText(read.get()), treeText(stored.get()));
  EXPECT_EQ(storedTree(read.get()), bytes);
}

TEST(KyCInventoryItemFactory, deserializeCreatesTheRootThroughCreateCompositeWithoutAnyAttach)
{
  struct Watching : KyCInventoryItemFactory
  {
    using KyCInventoryItemFactory::KyCInventoryItemFactory;
    KyCComposite* createComposite(KyCErrorListPool& p, unsigned int classId, unsigned int unitId, const char* text,
                                  KyCComposite* parent) override
    {
      parents.push_back(parent);
      return KyCInventoryItemFactory::createComposite(p, classId, unitId, text, parent);
    }
    std::vector<KyCComposite*> parents;
  };
  KyTestPool pool;
  KyCInventoryItem tree(pool, ROOT, "ROOT");
  tree.addPath(pool, BOARD[2]);
  KyCBuffer buffer(pool);
  put(pool, buffer, storedTree(&tree));
  Watching factory(pool);
  KyCInventoryItem* root = nullptr;
  factory.deserialize(pool, root, &buffer);
  const KyItemPtr owner(root);
  ASSERT_EQ(factory.parents.size(), 2u);
  EXPECT_EQ(factory.parents[0], nullptr);
  EXPECT_EQ(factory.parents[1], asComposite(root));
}

TEST(KyCInventoryItemFactory, idIsStoredAsClassAndUnitId)
{
  KyTestPool pool;
  const KyCInventoryItem item(pool, KyCInventoryAddress(0xFFFFFFFF, 0), "");
  const KyItemPtr read = readTree(pool, storedTree(&item));
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->getID().getCategory(), 0xFFFFFFFFu);
  EXPECT_EQ(read->getID().getIndex(), 0u);
}

TEST(KyCInventoryItemFactory, nullRootStoresNothingAndIsNoError) { EXPECT_EQ(storedTree(nullptr), KyBytes()); }

TEST(KyCInventoryItemFactory, serializeAppendsBehindWhatTheBufferHolds)
{
  KyTestPool pool;
  const KyCInventoryItem root(pool, ROOT, "ROOT");
  KyCBuffer buffer(pool);
  put(pool, buffer, {1, 2, 3});
  KyCInventoryItemFactory factory(pool);
  factory.serialize(pool, &buffer, &root);
  EXPECT_EQ(bytesOf(buffer), (KyBytes{1, 2, 3}) + storedTree(&root));
}

TEST(KyCInventoryItemFactory, twoTreesInOneBufferAreReadOneAfterTheOther)
{
  KyTestPool pool;
  KyCInventoryItem first(pool, ROOT, "ROOT");
  first.createParameter<int>(pool, SIZE, 1, "", false, 0);
  const KyCInventoryItem second(pool, BOARD[3], "BOARD");
  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  factory.serialize(pool, &buffer, &first);
  factory.serialize(pool, &buffer, &second);

  KyCInventoryItem* root = nullptr;
  factory.deserialize(pool, root, &buffer);
  const KyItemPtr firstRead(root);
  factory.deserialize(pool, root, &buffer);
  const KyItemPtr secondRead(root);
  EXPECT_EQ(treeText(firstRead.get()), treeText(&first));
  EXPECT_EQ(treeText(secondRead.get()), treeText(&second));
  EXPECT_EQ(buffer.getReadPosition(), buffer.getWritePosition());
}

TEST(KyCInventoryItemFactory, serializeWithoutMemoryForTheSerializerWritesNothing)
{
  KyTestPool pool;
  const KyCInventoryItem root(pool, ROOT, "ROOT");
  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  KyNPoolAllocator::failAfter(0);
  factory.serialize(pool, &buffer, &root);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotCreateSerializer("serialize"));
  EXPECT_EQ(buffer.getWritePosition(), 0u);
}

TEST(KyCInventoryItemFactory, serializeReportsBehindEveryFailingAllocation)
{
  KyTestPool treePool;
  const KyItemPtr root = sampleTree(treePool);
  const KyBytes whole = storedTree(root.get());
  bool partialStreamSeen = false;
  const auto all = reportsOfEveryFailingAllocation(
      [&](KyTestPool& pool, const auto& startFailing)
      {
        KyCBuffer buffer(pool);
        KyCInventoryItemFactory factory(pool);
        startFailing();
        factory.serialize(pool, &buffer, root.get());
        if (buffer.getWritePosition() != 0 && pool.getErrorCount() != 0)
        {
          partialStreamSeen = true;
          EXPECT_EQ(bytesOf(buffer), firstBytes(whole, buffer.getWritePosition()));
        }
      });
  unsigned int constructing = 0;
  unsigned int writing = 0;
  for (const std::vector<KyReport>& reports : all)
  {
    if (endsWith(reports, cannotCreateSerializer("serialize"))) ++constructing;
    if (endsWith(reports, cannotSerializeTree())) ++writing;
  }
  EXPECT_GE(constructing, 1u);
  EXPECT_GE(writing, 1u);
  EXPECT_EQ(constructing + writing, all.size());
  EXPECT_TRUE(partialStreamSeen);
}

TEST(KyCInventoryItemFactory, deserializeWithoutMemoryForTheDeserializerNamesTheSerializerAndLeavesRootKeptOnPurpose)
{
  KyTestPool pool;
  KyCInventoryItem tree(pool, ROOT, "ROOT");
  KyCBuffer buffer(pool);
  put(pool, buffer, storedTree(&tree));
  KyCInventoryItemFactory factory(pool);
  KyCInventoryItem* root = &tree;
  KyNPoolAllocator::failAfter(0);
  factory.deserialize(pool, root, &buffer);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotCreateSerializer("deserialize"));
  EXPECT_EQ(root, &tree);
  EXPECT_EQ(buffer.getReadPosition(), 0u);
}

TEST(KyCInventoryItemFactory, deserializeReportsBehindEveryFailingAllocation)
{
  KyTestPool treePool;
  const KyBytes bytes = storedTree(sampleTree(treePool).get());
  const auto all = reportsOfEveryFailingAllocation(
      [&](KyTestPool& pool, const auto& startFailing)
      {
        KyCBuffer copy(pool);
        put(pool, copy, bytes);
        KyCInventoryItemFactory factory(pool);
        KyCInventoryItem* root = nullptr;
        startFailing();
        factory.deserialize(pool, root, &copy);
        delete root;    // whole or partial, it is ours
      });
  unsigned int constructing = 0;
  unsigned int reading = 0;
  for (const std::vector<KyReport>& reports : all)
  {
    if (endsWith(reports, cannotCreateSerializer("deserialize"))) ++constructing;
    if (endsWith(reports, cannotDeserializeTree())) ++reading;
  }
  EXPECT_GE(constructing, 1u);
  EXPECT_GE(reading, 1u);
  EXPECT_EQ(constructing + reading, all.size());
}

TEST(KyCInventoryItemFactory, damagedStreamReportsAndHandsOutWhatWasRead)
{
  KyTestPool pool;
  KyCInventoryItem tree(pool, ROOT, "ROOT");
  tree.createParameter<int>(pool, BOARD[1] / SIZE, 4096, "kB", false, 5);
  tree.addPath(pool, BOARD[2]);
  const KyBytes bytes = storedTree(&tree);
  const KyItemPtr root = readTree(pool, firstBytes(bytes, bytes.size() - 1));    // the root's end is missing
  const std::vector<KyReport> reports = pool.takeReports();
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_EQ(reports[0].code, 0x1101807u);
  EXPECT_TRUE(endsWith(reports, cannotDeserializeTree()));
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->getValue<int>(pool, BOARD[1] / SIZE), 4096);
  EXPECT_NE(root->getItem(BOARD[2]), nullptr);
}

TEST(KyCInventoryItemFactory, emptyBufferReportsAndSetsRootToNull)
{
  KyTestPool pool;
  KyCInventoryItem poison(pool, ROOT, "ROOT");
  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  KyCInventoryItem* root = &poison;
  factory.deserialize(pool, root, &buffer);
  EXPECT_EQ(root, nullptr);
  EXPECT_TRUE(endsWith(pool.takeReports(), cannotDeserializeTree()));
}

TEST(KyCInventoryItemFactory, tooLongAUnitInATreeReportsUnitThenTree)
{
  KyTestPool pool;
  KyCInventoryItem tree(pool, ROOT, "ROOT");
  tree.createParameter<int>(pool, SIZE, 1, "", false, 0xDEADBEEF);
  KyBytes bytes = storedTree(&tree);
  const std::size_t unitLength = onlyPlaceOf({0x00, 0x00, 0xDE, 0xAD, 0xBE, 0xEF}, bytes);
  bytes[unitLength] = 101;
  const KyItemPtr root = readTree(pool, bytes);
  EXPECT_REPORTS(pool, unitTooLong(), cannotDeserializeTree());
}

TEST(KyCInventoryItemFactory, plainParametersOfTheBaseLibraryAreRefused)
{
  KyTestPool pool;
  const KyBytes bytes = storedTreeOfPlainParameter(pool);
  const KyItemPtr root = readTree(pool, bytes);
  EXPECT_TRUE(endsWith(pool.takeReports(), cannotDeserializeTree()));
  ASSERT_NE(root, nullptr);    // read before the parameter
  EXPECT_EQ(root->getParameterByOrdinalNumber(0), nullptr);
}

TEST(KyCInventoryItemFactory, serializerIsUninstalledAfterSuccessAndAfterFailure)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  for (bool fail : {false, true})
  {
    if (fail)
      for (int n = 0; n < 10000; ++n)
        root.addItem({}, new KyCInventoryItem(pool, BOARD[static_cast<unsigned>(n)], ""));
    KyNPoolAllocator::failAfter(fail ? 2 : 0xFFFFFFFF);
    factory.serialize(pool, &buffer, &root);
    KyNPoolAllocator::reset();
    EXPECT_EQ(!pool.takeReports().empty(), fail);

    const unsigned int held = buffer.getWritePosition();
    factory.KyCCompositeFactory::serialize(pool, asComposite(&root), 0, &buffer);
    EXPECT_FALSE(pool.takeReports().empty());    // nothing is installed any more
    EXPECT_EQ(buffer.getWritePosition(), held);
  }
}

TEST(KyCInventoryItemFactory, exceptionOfAnOverridePassesThroughAndTheNextCallWorks)
{
  struct Throwing : KyCInventoryItemFactory
  {
    using KyCInventoryItemFactory::KyCInventoryItemFactory;
    KyCComposite* createComposite(KyCErrorListPool& p, unsigned int classId, unsigned int unitId, const char* text,
                                  KyCComposite* parent) override
    {
      if (throws) throw 5;
      return KyCInventoryItemFactory::createComposite(p, classId, unitId, text, parent);
    }
    bool throws = true;
  };
  KyTestPool pool;
  const KyItemPtr tree = sampleTree(pool);
  const KyBytes bytes = storedTree(tree.get());
  Throwing factory(pool);
  KyCInventoryItem* root = nullptr;
  KyCBuffer buffer(pool);
  put(pool, buffer, bytes);
  EXPECT_THROW(factory.deserialize(pool, root, &buffer), int);
  EXPECT_EQ(root, nullptr);

  factory.throws = false;
  buffer.reset();
  put(pool, buffer, bytes);
  factory.deserialize(pool, root, &buffer);
  const KyItemPtr owner(root);
  EXPECT_EQ(treeText(root), treeText(tree.get()));
}

// --- Parameters ---------------------------------------------------------------------------------------------------------

TEST(KyCInventoryItemFactory, parameterReadsBackFree)
{
  KyTestPool pool;
  const KyCInventoryParameter stored(pool, VOLTAGE_MIN, "VOLTAGE_MIN", -2.5, "V", true, 12);
  const KyBytes bytes = storedParameter(stored);
  const KyParameterPtr read = readParameter(pool, bytes);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(parameterText(pool, *read), parameterText(pool, stored));
  EXPECT_EQ(read->getParent(), nullptr);
  EXPECT_EQ(storedParameter(*read), bytes);
}

TEST(KyCInventoryItemFactory, serializeParameterWithoutMemoryForTheSerializerWritesNothing)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, SIZE, "SIZE", 1, "", false, 0);
  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  KyNPoolAllocator::failAfter(0);
  factory.serializeInventoryParameter(pool, &buffer, &parameter);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotCreateSerializer("serializeInventoryParameter"));
  EXPECT_EQ(buffer.getWritePosition(), 0u);
}

TEST(KyCInventoryItemFactory, serializeParameterReportsBehindEveryFailingAllocation)
{
  KyTestPool parameterPool;
  const KyCInventoryParameter parameter(parameterPool, NAME, "NAME", KyCString(std::string(5000, 'x').c_str()), "",
                                        false, 0);
  const auto all = reportsOfEveryFailingAllocation(
      [&](KyTestPool& pool, const auto& startFailing)
      {
        KyCBuffer buffer(pool);
        KyCInventoryItemFactory factory(pool);
        startFailing();
        factory.serializeInventoryParameter(pool, &buffer, &parameter);
      });
  unsigned int constructing = 0;
  unsigned int writing = 0;
  for (const std::vector<KyReport>& reports : all)
  {
    if (endsWith(reports, cannotCreateSerializer("serializeInventoryParameter"))) ++constructing;
    if (endsWith(reports, cannotSerializeParameter())) ++writing;
  }
  EXPECT_GE(constructing, 1u);
  EXPECT_GE(writing, 1u);
  EXPECT_EQ(constructing + writing, all.size());
}

TEST(KyCInventoryItemFactory, deserializeParameterWithoutMemoryForTheDeserializerNamesItAndLeavesTheResult)
{
  KyTestPool pool;
  KyCInventoryParameter stored(pool, SIZE, "SIZE", 1, "", false, 0);
  KyCBuffer buffer(pool);
  put(pool, buffer, storedParameter(stored));
  KyCInventoryItemFactory factory(pool);
  KyCInventoryParameter* parameter = &stored;
  KyNPoolAllocator::failAfter(0);
  factory.deserializeInventoryParameter(pool, parameter, &buffer);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotCreateDeserializer());
  EXPECT_EQ(parameter, &stored);
  EXPECT_EQ(buffer.getReadPosition(), 0u);
}

TEST(KyCInventoryItemFactory, damagedParameterReportsAndSetsTheResult)
{
  KyTestPool pool;
  KyCInventoryParameter poison(pool, SIZE, "SIZE", 1, "", false, 0);
  KyCBuffer buffer(pool);
  put(pool, buffer, {0xEE, 0xEE});
  KyCInventoryItemFactory factory(pool);
  KyCInventoryParameter* parameter = &poison;
  factory.deserializeInventoryParameter(pool, parameter, &buffer);
  EXPECT_EQ(parameter, nullptr);
  const std::vector<KyReport> reports = pool.takeReports();
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_TRUE(endsWith(reports, cannotDeserializeParameter()));
}

TEST(KyCInventoryItemFactory, plainParameterOfTheBaseLibraryIsRefused)
{
  KyTestPool pool;
  const KyBytes bytes = storedPlainParameter(pool);
  const KyParameterPtr parameter = readParameter(pool, bytes);
  EXPECT_EQ(parameter, nullptr);
  EXPECT_TRUE(endsWith(pool.takeReports(), cannotDeserializeParameter()));
}
