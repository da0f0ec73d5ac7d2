// Random trees through the serializer and back. The seeds are fixed: a failure comes again.
#include <cstdint>
#include <fstream>
#include <iterator>
#include <list>
#include <memory>
#include <random>

#include "KyStreamBench.h"

namespace
{
// Random trees of every value type and bit pattern. Numbers live outside their parameters, so that bit patterns of
// floating-point numbers need not pass through a register.
class KyCRandomTree
{
public:
  KyCRandomTree(KyCErrorListPool& pool, unsigned int seed, unsigned int nodes) : m_pool(pool), m_random(seed)
  {
    std::vector<KyCComposite*> made;
    for (unsigned int n = 0; n < nodes; ++n)
    {
      KyCComposite* const parent = made.empty() ? nullptr : made[below(static_cast<std::uint32_t>(made.size()))];
      made.push_back(addNode(pool, parent, number(), number(), text().c_str()));
      addParameters(*made.back());
    }
    m_root.reset(made.front());
  }

  const KyCComposite* root() const { return m_root.get(); }

private:
  std::uint32_t bits() { return static_cast<std::uint32_t>(m_random()); }
  std::uint32_t below(std::uint32_t limit) { return bits() % limit; }
  // As many bits as it happens: small numbers are as likely as large ones.
  std::uint32_t number() { return bits() >> below(32); }

  std::string text()
  {
    static const char* const common[] = {"", "width", "range", "FIFO size", "serial number"};
    if (below(4) != 0) return common[below(5)];
    std::string made;
    for (std::uint32_t n = below(300); n != 0; --n)
      made += static_cast<char>(1 + below(255));
    return made;
  }

  template <typename T>
  KyCParam* makeNumber(unsigned int id, const char* description, unsigned int flags, std::list<T>& values)
  {
    values.push_back(T{});
    KyCParam* const parameter = new (m_pool) KyCParam(m_pool, id, description, flags, T{}, &values.back());
    const std::uint64_t pattern = std::uint64_t{bits()} << 32 | bits();
    std::memcpy(&values.back(), &pattern, sizeof(T));
    return parameter;
  }

  KyCParam* makeParameter(unsigned int id, const char* description, unsigned int flags)
  {
    switch (below(12))
    {
      case 0:
        return makeNumber(id, description, flags, m_int8);
      case 1:
        return makeNumber(id, description, flags, m_int16);
      case 2:
        return makeNumber(id, description, flags, m_int32);
      case 3:
        return makeNumber(id, description, flags, m_long64);
      case 4:
        return makeNumber(id, description, flags, m_uint8);
      case 5:
        return makeNumber(id, description, flags, m_uint16);
      case 6:
        return makeNumber(id, description, flags, m_uint32);
      case 7:
        return makeNumber(id, description, flags, m_ulong64);
      case 8:
        return makeNumber(id, description, flags, m_float32);
      case 9:
        return makeNumber(id, description, flags, m_float64);
      case 10:
      {
        std::string value = text();
        if (below(4) == 0) value += '\0';
        return new (m_pool) KyCParam(m_pool, id, description, flags,
                                     KyCString(value.data(), static_cast<unsigned int>(value.size())), nullptr);
      }
      default:
        return new (m_pool)
            KyCParam(m_pool, id, description, flags, KyCVersion(number(), number(), number(), number()), nullptr);
    }
  }

  void addParameters(KyCComposite& node)
  {
    unsigned int id = 0;
    for (std::uint32_t count = below(6); count != 0; --count)
    {
      id += 1 + (number() >> 4);
      const std::string description = text();
      node.addParameter(m_pool, makeParameter(id, description.c_str(), below(2) != 0 ? KyCParam::FLAG_CUSTOM : 0u));
    }
  }

  KyCErrorListPool& m_pool;
  std::mt19937 m_random;
  std::list<signed char> m_int8;
  std::list<short> m_int16;
  std::list<int> m_int32;
  std::list<long long> m_long64;
  std::list<unsigned char> m_uint8;
  std::list<unsigned short> m_uint16;
  std::list<unsigned int> m_uint32;
  std::list<unsigned long long> m_ulong64;
  std::list<float> m_float32;
  std::list<double> m_float64;
  std::unique_ptr<KyCComposite> m_root;    // goes first: its parameters look at the values
};

// The slow twin: compares two trees by their public faces. Values by their stored bytes, which other tests know.
void expectSameNode(KyCErrorListPool& pool, const KyCComposite& a, const KyCComposite& b)
{
  EXPECT_EQ(a.getClassId(), b.getClassId());
  EXPECT_EQ(a.getUnitId(), b.getUnitId());
  EXPECT_STREQ(a.getDescription(), b.getDescription());
  KyStreamBench bench(pool);
  for (unsigned int n = 0;; ++n)
  {
    const KyCParam* const left = a.getParameterByIndex(n);
    const KyCParam* const right = b.getParameterByIndex(n);
    ASSERT_EQ(left == nullptr, right == nullptr);
    if (left == nullptr) break;
    EXPECT_EQ(left->getId(), right->getId());
    EXPECT_EQ(left->getType(), right->getType());
    EXPECT_EQ(left->isCustom(), right->isCustom());
    EXPECT_STREQ(left->getDescription(), right->getDescription());
    EXPECT_EQ(bench.store(*left), bench.store(*right));
  }
}

void expectSameTree(KyCErrorListPool& pool, const KyCComposite* a, const KyCComposite* b)
{
  std::vector<std::pair<const KyCComposite*, const KyCComposite*>> open = {{a, b}};
  while (!open.empty())
  {
    const auto [left, right] = open.back();
    open.pop_back();
    ASSERT_NE(left, nullptr);
    ASSERT_NE(right, nullptr);
    expectSameNode(pool, *left, *right);
    const KyCComposite* leftChild = left->getChild();
    const KyCComposite* rightChild = right->getChild();
    for (; leftChild != nullptr && rightChild != nullptr;
         leftChild = leftChild->getSibling(), rightChild = rightChild->getSibling())
      open.push_back({leftChild, rightChild});
    EXPECT_EQ(leftChild, rightChild);    // both null
  }
}
}    // namespace

TEST(KyCBinRoundTrip, randomTreesComeBackAndAreStoredAsTheSameBytes)
{
  for (unsigned int seed = 1; seed <= 200; ++seed)
  {
    SCOPED_TRACE(seed);
    KyTestPool pool;
    const KyCRandomTree tree(pool, seed, 1 + seed % 60);
    KyStreamBench bench(pool);
    bench.store(tree.root());
    const KyBytes bytes = bytesOf(bench.buffer);
    const std::unique_ptr<KyCComposite> back(bench.factory.deserialize(pool, nullptr, &bench.buffer));
    EXPECT_EQ(bench.buffer.getReadPosition(), bytes.size());
    expectSameTree(pool, tree.root(), back.get());
    EXPECT_EQ(bench.store(back.get()), hexOf(bytes));
  }
}

// The file was written once and stays as it is: streams of version 1 have to be readable for ever.
TEST(KyCBinRoundTrip, goldenFileReadsBackAndIsStoredAsTheSameBytes)
{
  std::ifstream file(KY_SOURCE_DIR "/platform/composite/tests/golden/every-type-version-1.hex");
  const std::string hex((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const KyBytes bytes = bytesOf(hex);
  ASSERT_FALSE(bytes.empty());
  KyTestPool pool;
  KyStreamBench bench(pool);
  const std::unique_ptr<KyCComposite> tree(bench.read(bytes));
  const std::unique_ptr<KyCComposite> sample(makeSampleTree(pool));
  expectSameTree(pool, sample.get(), tree.get());
  EXPECT_EQ(bench.store(tree.get()), hexOf(bytes));
}

TEST(KyCBinRoundTrip, randomBytesNeverCrashAndNeverPassUnreported)
{
  KyTestPool pool;
  std::mt19937 random(1);
  for (unsigned int round = 0; round < 20000; ++round)
  {
    KyBytes bytes = {0x01, 0x01};
    for (std::uint32_t n = static_cast<std::uint32_t>(random() % 60); n != 0; --n)
    {
      // Mostly bytes that mean something.
      const std::uint32_t kind = static_cast<std::uint32_t>(random() % 4);
      const std::uint32_t any = static_cast<std::uint32_t>(random());
      bytes.push_back(static_cast<unsigned char>(kind == 0 ? any : kind == 1 ? 0x10 + any % 12 : any % 5));
    }
    KyStreamBench bench(pool);
    const std::unique_ptr<KyCComposite> tree(bench.read(bytes));
    const std::size_t reports = pool.takeReports().size();
    EXPECT_LE(reports, 1u) << hexOf(bytes);
    EXPECT_TRUE(tree != nullptr || reports == 1) << hexOf(bytes);
  }
}

TEST(KyCBinRoundTrip, wideTreesAreReadInReasonableTime)
{
  KyTestPool pool;
  KyCComposite root(pool, 1, 1, "");
  for (unsigned int n = 0; n < 100000; ++n)
    addNode(pool, &root, 2, n, "PORT");
  for (unsigned int n = 0; n < 100000; ++n)
    root.addParameter(pool, new (pool) KyCParam(pool, n, "width", KyCParam::FLAG_STATIC_DESCRIPTION, 1, nullptr));
  KyStreamBench bench(pool);
  bench.factory.serialize(pool, &root, 0, &bench.buffer);
  const KyBytes bytes = bytesOf(bench.buffer);
  const std::unique_ptr<KyCComposite> back(bench.factory.deserialize(pool, nullptr, &bench.buffer));
  bench.buffer.reset();
  bench.factory.serialize(pool, back.get(), 0, &bench.buffer);
  EXPECT_EQ(bytes, bytesOf(bench.buffer));
}
