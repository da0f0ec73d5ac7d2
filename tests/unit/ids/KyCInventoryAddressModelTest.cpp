// Long random sequences of operations, each compared with a model that is written to be obviously right.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "inventory/KyCInventoryAddress.h"

namespace
{
using TModel = std::vector<std::pair<unsigned int, unsigned int>>;

TModel modelOf(const KyCInventoryAddress& address)
{
  TModel model;
  for (unsigned int n = 0; n < address.getLength(); ++n)
    model.emplace_back(address.getElements()[n].id, address.getElements()[n].index);
  return model;
}

TModel range(const TModel& model, std::size_t from, std::size_t to)
{
  TModel part;
  for (std::size_t n = from; n < to; ++n)
    part.push_back(model[n]);
  return part;
}

TModel joined(TModel head, const TModel& tail)
{
  for (const auto& element : TModel(tail))
    head.push_back(element);
  return head;
}

std::size_t sharedLength(const TModel& a, const TModel& b)
{
  std::size_t n = 0;
  while (n < a.size() && n < b.size() && a[n] == b[n])
    ++n;
  return n;
}

// An address and what it should be.
struct KyPair
{
  KyCInventoryAddress address;
  TModel model;
};

class KyAddressModel
{
public:
  explicit KyAddressModel(unsigned int seed) : m_random(seed), m_pairs(6) {}

  // One random change of one address, told in words for a failing check.
  std::string change()
  {
    KyPair& a = pick();
    KyPair& b = pick();    // may be the same one
    switch (number(12))
    {
      case 0:
        return a.address = b.address, a.model = TModel(b.model), "copy";
      case 1:
        return a.address.append(b.address), a.model = joined(a.model, b.model), "append";
      case 2:
        return join(a, b), "join";
      case 3:
        return a.address.clear(), a.model.clear(), "clear";
      case 4:
        return a.address.resize(number(9)), "resize";
      case 5:
        return cutSuffix(a, number(4)), "removeSuffixElements";
      case 6:
        return cutPrefix(a, b), "removePrefix";
      case 7:
        return setIndex(a, number(3)), "index";
      case 8:
        return sub(a), "getSubAddress";
      case 9:
        return head(a), "getHeadAddress";
      case 10:
        return move(a, b), "move";
      default:
        return set(a, number(3), number(3)), "one element";
    }
  }

  void check() const
  {
    for (const KyPair& a : m_pairs)
    {
      checkQueries(a);
      for (const KyPair& b : m_pairs)
        checkComparisons(a, b);
    }
  }

private:
  unsigned int number(unsigned int limit) { return static_cast<unsigned int>(m_random() % limit); }
  KyPair& pick() { return m_pairs[number(static_cast<unsigned int>(m_pairs.size()))]; }

  static void join(KyPair& a, const KyPair& b)
  {
    const TModel model = joined(a.model, b.model);
    a.address = a.address / b.address;
    a.model = model;
    limitLength(a);
  }

  // Doubling must not go on for ever.
  static void limitLength(KyPair& a)
  {
    if (a.model.size() > 40) cutSuffix(a, static_cast<unsigned int>(a.model.size()) - 2);
  }

  static void cutSuffix(KyPair& a, unsigned int count)
  {
    const std::size_t left = count < a.model.size() ? a.model.size() - count : 0;
    EXPECT_EQ(a.address.removeSuffixElements(count), static_cast<int>(left));
    a.model = range(a.model, 0, left);
  }

  static void cutPrefix(KyPair& a, const KyPair& b)
  {
    const std::size_t shared = sharedLength(a.model, b.model);
    a.address.removePrefix(b.address);
    a.model = range(a.model, shared, a.model.size());
  }

  static void setIndex(KyPair& a, unsigned int index)
  {
    a.address = a.address[index];
    if (!a.model.empty()) a.model.back().second = index;
  }

  static void sub(KyPair& a)
  {
    a.address = a.address.getSubAddress();
    a.model = a.model.size() < 2 ? TModel() : range(a.model, 1, a.model.size());
  }

  static void head(KyPair& a)
  {
    a.address = a.address.getHeadAddress();
    a.model = a.model.size() < 2 ? TModel() : range(a.model, 0, a.model.size() - 1);
  }

  static void move(KyPair& a, KyPair& b)
  {
    if (&a == &b) return;
    a.address = std::move(b.address);
    a.model = b.model;
    b.model.clear();
  }

  static void set(KyPair& a, unsigned int id, unsigned int index)
  {
    a.address = KyCInventoryAddress(id, index);
    a.model = {{id, index}};
  }

  static void checkQueries(const KyPair& a)
  {
    ASSERT_EQ(modelOf(a.address), a.model);
    const bool empty = a.model.empty();
    EXPECT_EQ(a.address.isEmpty(), empty);
    EXPECT_EQ(a.address.isSingleElement(), a.model.size() == 1);
    EXPECT_EQ(a.address.getCategory(), empty ? 0 : a.model.back().first);
    EXPECT_EQ(a.address.getIndex(), empty ? 0 : a.model.back().second);
    EXPECT_EQ(modelOf(a.address.getFirstElement()), empty ? TModel() : TModel{a.model.front()});
    EXPECT_EQ(modelOf(a.address.getLastElement()), empty ? TModel() : TModel{a.model.back()});
  }

  static void checkComparisons(const KyPair& a, const KyPair& b)
  {
    EXPECT_EQ(a.address == b.address, a.model == b.model);
    EXPECT_EQ(a.address != b.address, a.model != b.model);
    const bool isPrefix = b.model.size() < a.model.size() && sharedLength(a.model, b.model) == b.model.size();
    EXPECT_EQ(a.address.isPrefix(b.address), isPrefix);
  }

  std::mt19937 m_random;
  std::vector<KyPair> m_pairs;
};
}    // namespace

TEST(KyCInventoryAddressModel, randomOperationsGiveWhatTheModelGives)
{
  for (unsigned int seed = 1; seed <= 8; ++seed)
  {
    KyAddressModel model(seed);
    for (int step = 0; step < 1000; ++step)
    {
      const std::string change = model.change();
      model.check();
      ASSERT_FALSE(HasFailure()) << "seed " << seed << ", step " << step << ": " << change;
    }
  }
}
