// Numbers in a dump have the very form that the base library's parameters give their values.
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include "KyDumpTest.h"
#include "tree/KyInventoryAccess.h"

class DumpNumber : public KyDumpTest
{
public:
  template <typename T>
  void expectTheParametersOwnForm(const T& value)
  {
    KyCInventoryParameter* const parameter = parameterOf(value);
    parameter->setValue<T>(pool, value);
    const KyCString text = KyInventoryAccess::toParam(parameter)->getValueAsString(pool);
    const int valueLineOnly = 0x1 | 0x10 | 0x80 | 0x1000 | 0x2000 | 0x8000 | 0x20000 | 0x40000 | 0x80000;
    const KyCString dumped = root.toString(pool, valueLineOnly, 0);
    ASSERT_EQ(std::string(dumped.c_str()), std::string(text.c_str()) + "\n");
  }

  template <typename TNumber, typename TBits>
  static TNumber ofBits(TBits bits)
  {
    static_assert(sizeof(TNumber) == sizeof(TBits), "a pattern for all of it");
    TNumber number;
    std::memcpy(&number, &bits, sizeof(number));
    return number;
  }

  template <typename T>
  void checkIntegers()
  {
    expectTheParametersOwnForm(std::numeric_limits<T>::min());
    expectTheParametersOwnForm(std::numeric_limits<T>::max());
    for (unsigned int shift = 0; shift < 8 * sizeof(T); ++shift)
    {
      const unsigned long long power = 1ull << shift;
      expectTheParametersOwnForm(static_cast<T>(power));
      expectTheParametersOwnForm(static_cast<T>(power - 1));
      expectTheParametersOwnForm(static_cast<T>(~power));
    }
    unsigned long long ten = 1;
    for (unsigned int digits = 0; digits < 20; ++digits, ten *= 10)
    {
      expectTheParametersOwnForm(static_cast<T>(ten));
      expectTheParametersOwnForm(static_cast<T>(ten - 1));
      expectTheParametersOwnForm(static_cast<T>(0 - ten));
    }
  }

private:
  template <typename T>
  KyCInventoryParameter* parameterOf(const T& value)
  {
    KyCInventoryParameter* const there = root.getParameter(KyNInventoryIDs::SIZE);
    return there != nullptr ? there : addParameter(root, KyNInventoryIDs::SIZE, "SIZE", value);
  }
};

TEST_F(DumpNumber, signedCharHasTheParametersOwnForm) { checkIntegers<signed char>(); }
TEST_F(DumpNumber, shortHasTheParametersOwnForm) { checkIntegers<short>(); }
TEST_F(DumpNumber, intHasTheParametersOwnForm) { checkIntegers<int>(); }
TEST_F(DumpNumber, longLongHasTheParametersOwnForm) { checkIntegers<long long>(); }
TEST_F(DumpNumber, unsignedCharHasTheParametersOwnForm) { checkIntegers<unsigned char>(); }
TEST_F(DumpNumber, unsignedShortHasTheParametersOwnForm) { checkIntegers<unsigned short>(); }
TEST_F(DumpNumber, unsignedIntHasTheParametersOwnForm) { checkIntegers<unsigned int>(); }
TEST_F(DumpNumber, unsignedLongLongHasTheParametersOwnForm) { checkIntegers<unsigned long long>(); }

// Every exponent with the mantissas at its ends, infinities and both kinds of NaN among them; then any pattern.
TEST_F(DumpNumber, floatHasTheParametersOwnForm)
{
  for (std::uint32_t top = 0; top < 0x200; ++top)
  {
    for (const std::uint32_t mantissa : {0u, 1u, 2u, 0x200001u, 0x400000u, 0x7FFFFEu, 0x7FFFFFu})
      expectTheParametersOwnForm(ofBits<float>(top << 23 | mantissa));
  }
  std::mt19937 random(1);
  for (unsigned int n = 0; n < 100000; ++n)
    expectTheParametersOwnForm(ofBits<float>(static_cast<std::uint32_t>(random())));
}

TEST_F(DumpNumber, doubleHasTheParametersOwnForm)
{
  for (std::uint64_t top = 0; top < 0x1000; ++top)
  {
    for (const std::uint64_t mantissa : {0ull, 1ull, 0x4000000000001ull, 0x8000000000000ull, 0xFFFFFFFFFFFFFull})
      expectTheParametersOwnForm(ofBits<double>(top << 52 | mantissa));
  }
  std::mt19937_64 random(1);
  for (unsigned int n = 0; n < 100000; ++n)
    expectTheParametersOwnForm(ofBits<double>(static_cast<std::uint64_t>(random())));
}

TEST_F(DumpNumber, shortDecimalsHaveTheParametersOwnForm)
{
  for (int n = -20000; n <= 20000; ++n)
    expectTheParametersOwnForm(n / 1000.0);
}

TEST_F(DumpNumber, versionHasTheParametersOwnForm)
{
  const unsigned int most = std::numeric_limits<unsigned int>::max();
  expectTheParametersOwnForm(KyCVersion());
  expectTheParametersOwnForm(KyCVersion(1, 20, 300, 4000));
  expectTheParametersOwnForm(KyCVersion(most, most, most, most));
}
