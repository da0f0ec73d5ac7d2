// Creating composites and driving the serializers. The bytes of streams: tests of KyCBinSerializer, KyCBinDeserializer.
#include "compositefactory/KyCCompositeFactory.h"

#include <memory>
#include <string>

#include "support/KyTestPool.h"

namespace
{
using KyTree = std::unique_ptr<KyCComposite>;

// A composite (1, 1) with a child (2, 5).
constexpr unsigned char STREAM[] = {0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x02, 0x05, 0x01, 0x02, 0x02};

class KyStreamBuffer : public KyCBuffer
{
public:
  explicit KyStreamBuffer(KyCErrorListPool& pool) : KyCBuffer(pool) { writeBuffer(pool, STREAM, sizeof STREAM, 1, -1); }
};
}    // namespace

// ---- Creating ----

TEST(KyCCompositeFactory, createCompositeMakesAFreeOneWithoutAParent)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  const KyTree made(factory.createComposite(pool, 7, 8, "text", nullptr));
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->getClassId(), 7u);
  EXPECT_EQ(made->getUnitId(), 8u);
  EXPECT_STREQ(made->getDescription(), "text");
  EXPECT_EQ(made->getParent(), nullptr);
}

TEST(KyCCompositeFactory, createCompositeAttachesToTheParent)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  KyCComposite parent(pool, 1, 1, "");
  KyCComposite* const made = factory.createComposite(pool, 7, 8, nullptr, &parent);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(parent.getChild(), made);
  EXPECT_STREQ(made->getDescription(), "");
}

TEST(KyCCompositeFactory, createCompositeWithoutMemoryGivesNullAndReports)
{
  for (unsigned int n = 0; n < 2; ++n)    // the node, its description
  {
    KyTestPool pool;
    KyCCompositeFactory factory(pool);
    KyCComposite parent(pool, 1, 1, "");
    KyNPoolAllocator::failAfter(n);
    EXPECT_EQ(factory.createComposite(pool, 7, 8, "text", &parent), nullptr);
    KyNPoolAllocator::reset();
    EXPECT_EQ(parent.getChild(), nullptr);
    EXPECT_REPORTS(pool, {0x01000000, "", "Out of memory."},
                   {0x01200800, "createComposite", "Composite (7, 8) cannot be created."});
  }
}

TEST(KyCCompositeFactory, constructionWithoutMemoryIsReported)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(0);
  KyCCompositeFactory factory(pool);
  KyNPoolAllocator::reset();
  EXPECT_EQ(pool.takeReports().size(), 1u);
  const KyTree made(factory.createComposite(pool, 7, 8, "text", nullptr));    // all but libraries works
  EXPECT_NE(made, nullptr);
  const KyReport notReady = {0x01201000, "", "The factory was not constructed completely."};
  EXPECT_FALSE(factory.createLibrary(pool, 7, 0, "./x.so"));
  EXPECT_REPORTS(pool, notReady);
  EXPECT_FALSE(factory.createLibrary(pool, 7, 0));
  EXPECT_REPORTS(pool, notReady);
  EXPECT_FALSE(factory.addLibraryFolder(pool, "."));
  EXPECT_REPORTS(pool, notReady);
}

// ---- Misuse ----

TEST(KyCCompositeFactory, storingWithoutASerializerIsReported)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  KyCBuffer buffer(pool);
  const KyCComposite root(pool, 1, 1, "");
  const KyCParam parameter(pool, 1, "", KyCParam::TYPE_INT8);
  factory.serialize(pool, &root, 0, &buffer);
  EXPECT_REPORTS(pool, {0x01200000, "serialize", "No binary serializer is installed."});
  factory.serializeParameter(pool, &buffer, &parameter);
  EXPECT_REPORTS(pool, {0x01200000, "serializeParameter", "No binary serializer is installed."});
  EXPECT_EQ(buffer.getWritePosition(), 0u);
}

TEST(KyCCompositeFactory, readingWithoutADeserializerIsReported)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  KyStreamBuffer buffer(pool);
  EXPECT_EQ(factory.deserialize(pool, nullptr, &buffer), nullptr);
  EXPECT_REPORTS(pool, {0x01200001, "deserialize", "No binary deserializer is installed."});
  KyCParam sentinel(pool, 1, "", KyCParam::TYPE_INT8);
  KyCParam* parameter = &sentinel;
  factory.deserializeParameter(pool, parameter, &buffer);
  EXPECT_EQ(parameter, nullptr);
  EXPECT_REPORTS(pool, {0x01200001, "deserializeParameter", "No binary deserializer is installed."});
}

TEST(KyCCompositeFactory, nullUninstallsTheVisitors)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  KyCBinSerializer serializer(pool);
  KyCBinDeserializer deserializer(pool);
  KyStreamBuffer buffer(pool);
  const KyCComposite root(pool, 1, 1, "");
  factory.setBinarySerializer(pool, &serializer);
  factory.setBinarySerializer(pool, nullptr);
  factory.serialize(pool, &root, 0, &buffer);
  EXPECT_REPORTS(pool, {0x01200000, "serialize", ""});
  factory.setBinaryDeserializer(pool, &deserializer);
  factory.setBinaryDeserializer(pool, nullptr);
  EXPECT_EQ(factory.deserialize(pool, nullptr, &buffer), nullptr);
  EXPECT_REPORTS(pool, {0x01200001, "deserialize", ""});
}

TEST(KyCCompositeFactory, nullBufferIsReported)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  KyCBinSerializer serializer(pool);
  KyCBinDeserializer deserializer(pool);
  factory.setBinarySerializer(pool, &serializer);
  factory.setBinaryDeserializer(pool, &deserializer);
  const KyCComposite root(pool, 1, 1, "");
  const KyCParam stored(pool, 1, "", KyCParam::TYPE_INT8);
  KyCParam* read = nullptr;
  factory.serialize(pool, &root, 0, nullptr);
  EXPECT_REPORTS(pool, {0x01200002, "serialize", "No buffer was given."});
  factory.serializeParameter(pool, nullptr, &stored);
  EXPECT_REPORTS(pool, {0x01200002, "serializeParameter", "No buffer was given."});
  EXPECT_EQ(factory.deserialize(pool, nullptr, nullptr), nullptr);
  EXPECT_REPORTS(pool, {0x01200002, "deserialize", "No buffer was given."});
  factory.deserializeParameter(pool, read, nullptr);
  EXPECT_REPORTS(pool, {0x01200002, "deserializeParameter", "No buffer was given."});
}

TEST(KyCCompositeFactory, nullParameterWritesNothingAndIsReported)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  KyCBinSerializer serializer(pool);
  KyCBuffer buffer(pool);
  factory.setBinarySerializer(pool, &serializer);
  factory.serializeParameter(pool, &buffer, nullptr);
  EXPECT_EQ(buffer.getWritePosition(), 0u);
  EXPECT_REPORTS(pool, {0x01200003, "serializeParameter", "No parameter was given."});
}

// ---- Overrides ----

namespace
{
// Creates nodes as the test wants them.
class KyCTestFactory : public KyCCompositeFactory
{
public:
  using KyCCompositeFactory::KyCCompositeFactory;
  KyCComposite* createComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId,
                                const char* description, KyCComposite* parent) override
  {
    calls += "(" + std::to_string(classId) + "," + std::to_string(unitId) + "," +
             (parent != nullptr ? std::to_string(parent->getClassId()) : "-") + ")";
    if (classId == giveNullFor) return nullptr;
    if (classId == reportFor) pool.setError(1, 1, "override", nullptr);
    if (classId == reportFor && giveNullWithReport) return nullptr;
    if (classId == detachedFor)
      return free = KyCCompositeFactory::createComposite(pool, classId, unitId, description, nullptr);
    return KyCCompositeFactory::createComposite(pool, classId, unitId, description, parent);
  }
  std::string calls;
  unsigned int giveNullFor = 0;
  unsigned int reportFor = 0;
  bool giveNullWithReport = false;
  unsigned int detachedFor = 0;
  KyCComposite* free = nullptr;
};

class KyTestReader
{
public:
  explicit KyTestReader(KyCErrorListPool& pool) : factory(pool), m_pool(pool), m_deserializer(pool), m_buffer(pool)
  {
    factory.setBinaryDeserializer(pool, &m_deserializer);
  }
  KyCComposite* read(KyCComposite* parent = nullptr) { return factory.deserialize(m_pool, parent, &m_buffer); }
  KyCTestFactory factory;

private:
  KyCErrorListPool& m_pool;
  KyCBinDeserializer m_deserializer;
  KyStreamBuffer m_buffer;
};
}    // namespace

TEST(KyCCompositeFactory, deserializeCreatesEveryNodeThroughCreateComposite)
{
  KyTestPool pool;
  KyTestReader reader(pool);
  const KyTree tree(reader.read());
  EXPECT_EQ(reader.factory.calls, "(1,1,-)(2,5,1)");
}

TEST(KyCCompositeFactory, nullFromCreateCompositeEndsTheReadingWithAReport)
{
  KyTestPool pool;
  KyTestReader reader(pool);
  reader.factory.giveNullFor = 2;
  const KyTree tree(reader.read());
  EXPECT_REPORTS(pool, {0x01200800, "deserialize", "Composite (2, 5) cannot be created."});
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->getChild(), nullptr);
}

TEST(KyCCompositeFactory, nullForTheRootGivesNull)
{
  KyTestPool pool;
  KyTestReader reader(pool);
  reader.factory.giveNullFor = 1;
  EXPECT_EQ(reader.read(), nullptr);
  EXPECT_REPORTS(pool, {0x01200800, "deserialize", "Composite (1, 1) cannot be created."});
}

TEST(KyCCompositeFactory, reportOfCreateCompositeIsNotRepeated)
{
  KyTestPool pool;
  KyTestReader reader(pool);
  reader.factory.reportFor = 2;
  reader.factory.giveNullWithReport = true;
  const KyTree tree(reader.read());
  EXPECT_REPORTS(pool, {1, "override", ""});
}

TEST(KyCCompositeFactory, rootCreatedWithAReportIsReturnedAndNothingBelowItIsRead)
{
  KyTestPool pool;
  class KyCLateReporter : public KyCTestFactory
  {
  public:
    using KyCTestFactory::KyCTestFactory;
    KyCComposite* createComposite(KyCErrorListPool& given, unsigned int classId, unsigned int unitId,
                                  const char* description, KyCComposite* parent) override
    {
      KyCComposite* const made = KyCTestFactory::createComposite(given, classId, unitId, description, parent);
      given.setError(1, 1, "late", nullptr);
      return made;
    }
  };
  KyCLateReporter factory(pool);
  KyCBinDeserializer deserializer(pool);
  KyStreamBuffer buffer(pool);
  factory.setBinaryDeserializer(pool, &deserializer);
  const KyTree tree(factory.deserialize(pool, nullptr, &buffer));
  EXPECT_REPORTS(pool, {1, "late", ""});
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->getChild(), nullptr);
}

TEST(KyCCompositeFactory, nodeThatHangsElsewhereEndsTheReadingWithAReport)
{
  KyTestPool pool;
  KyTestReader reader(pool);
  reader.factory.detachedFor = 2;
  const KyTree tree(reader.read());
  const KyTree left(reader.factory.free);    // the override's business
  EXPECT_REPORTS(
      pool, {0x01200802, "deserialize", "Composite (2, 5) was created, but not below the composite it belongs to."});
  EXPECT_EQ(tree->getChild(), nullptr);
}

TEST(KyCCompositeFactory, operationsStandInTheirSlots)
{
  using TSlot = void (*)();
  using TCreate = KyCComposite* (*)(KyCCompositeFactory*, KyCErrorListPool&, unsigned int, unsigned int, const char*,
                                    KyCComposite*);
  using TLibrary = bool (*)(KyCCompositeFactory*, KyCErrorListPool&, unsigned int, unsigned int, const char*);
  using TFoundLibrary = bool (*)(KyCCompositeFactory*, KyCErrorListPool&, unsigned int, unsigned int);
  using TSearch = KyCString (*)(const KyCCompositeFactory*, KyCErrorListPool&, unsigned int, unsigned int);
  struct KyCSlots : KyCCompositeFactory
  {
    using KyCCompositeFactory::KyCCompositeFactory;
    KyCComposite* createComposite(KyCErrorListPool&, unsigned int, unsigned int, const char*, KyCComposite*) override
    {
      calls += "create ";
      return nullptr;
    }
    bool createLibrary(KyCErrorListPool&, unsigned int, unsigned int, const char*) override
    {
      calls += "library ";
      return true;
    }
    bool createLibrary(KyCErrorListPool&, unsigned int, unsigned int) override
    {
      calls += "found ";
      return true;
    }
    KyCString searchLibOnFilesystem(KyCErrorListPool&, unsigned int, unsigned int) const override { return "path"; }
    std::string calls;
  };

  KyTestPool pool;
  KyCSlots slots(pool);
  const TSlot* const table = *reinterpret_cast<TSlot**>(&slots);    // 0 and 1 are the destructors
  EXPECT_EQ(reinterpret_cast<TCreate>(table[2])(&slots, pool, 1, 1, "", nullptr), nullptr);
  EXPECT_TRUE(reinterpret_cast<TLibrary>(table[3])(&slots, pool, 1, 1, ""));
  EXPECT_TRUE(reinterpret_cast<TFoundLibrary>(table[4])(&slots, pool, 1, 1));
  EXPECT_STREQ(reinterpret_cast<TSearch>(table[5])(&slots, pool, 1, 1).c_str(), "path");
  EXPECT_EQ(slots.calls, "create library found ");
}
