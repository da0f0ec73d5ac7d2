// KyRandomTree.h: trees of every type and extreme value, the same for the same seed everywhere.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "inventory/KyNInventoryIDs.h"
#include "unit/persistence/KyStoredBytes.h"

// Bit patterns that are lost first when a number takes a detour: zeros, denormals, infinities, quiet and signalling NaNs.
constexpr std::uint32_t FLOAT_PATTERNS[] = {0x00000000, 0x80000000, 0x00000001, 0x807FFFFF, 0x00800000,
                                            0x7F7FFFFF, 0x7F800000, 0xFF800000, 0x7FC00000, 0xFFC12345,
                                            0x7FFFFFFF, 0x7FA00001, 0xFF800001, 0x3F800000, 0xC2F6E979};
constexpr std::uint64_t DOUBLE_PATTERNS[] = {
    0x0000000000000000, 0x8000000000000000, 0x0000000000000001, 0x800FFFFFFFFFFFFF, 0x0010000000000000,
    0x7FEFFFFFFFFFFFFF, 0x7FF0000000000000, 0xFFF0000000000000, 0x7FF8000000000000, 0xFFF8123456789ABC,
    0x7FFFFFFFFFFFFFFF, 0x7FF4000000000001, 0xFFF0000000000001, 0x3FF0000000000000, 0x3FB999999999999A};

template <typename TTo, typename TFrom>
void copyBits(TTo& to, const TFrom& from)
{
  static_assert(sizeof to == sizeof from, "same size");
  std::memcpy(&to, &from, sizeof to);
}

// Every random number is drawn in a statement of its own: the order of a call's arguments is the compiler's.
class KyRandomTree
{
public:
  explicit KyRandomTree(unsigned int seed) : m_random(seed) {}

  KyItemPtr make(KyCErrorListPool& pool, unsigned int items)
  {
    KyItemPtr root(makeItem(pool));
    std::vector<KyCInventoryItem*> all = {root.get()};
    for (unsigned int n = 1; n < items; ++n)
    {
      KyCInventoryItem* const parent = all[below(static_cast<unsigned int>(all.size()))];
      KyItemPtr item(makeItem(pool));
      if (parent->addItem(KyCInventoryAddress(), item.get()) == nullptr) continue;    // its ID is taken
      all.push_back(item.release());
    }
    return root;
  }

private:
  std::uint32_t next() { return static_cast<std::uint32_t>(m_random()); }
  unsigned int below(unsigned int limit) { return next() % limit; }
  std::uint64_t next64() { return std::uint64_t{next()} << 32 | next(); }

  KyCInventoryItem* makeItem(KyCErrorListPool& pool)
  {
    const unsigned int id = makeId();
    const unsigned int index = number<unsigned int>();
    const std::string description = makeDescription(id);
    KyCInventoryItem* const item =
        new (pool) KyCInventoryItem(pool, KyCInventoryAddress(id, index), description.c_str());
    for (unsigned int n = below(6); n > 0; --n)
    {
      KyParameterPtr parameter = makeParameter(pool);
      if (item->getParameter(parameter->getID()) != nullptr) continue;
      if (item->addParameter(pool, KyCInventoryAddress(), parameter.get()) != nullptr) parameter.release();
    }
    return item;
  }

  KyParameterPtr makeParameter(KyCErrorListPool& pool)
  {
    switch (below(12))
    {
      case 0:
        return parameterOf(pool, number<signed char>());
      case 1:
        return parameterOf(pool, number<short>());
      case 2:
        return parameterOf(pool, number<int>());
      case 3:
        return parameterOf(pool, number<long long>());
      case 4:
        return parameterOf(pool, number<unsigned char>());
      case 5:
        return parameterOf(pool, number<unsigned short>());
      case 6:
        return parameterOf(pool, number<unsigned int>());
      case 7:
        return parameterOf(pool, number<unsigned long long>());
      case 8:
        return parameterOfBits<float>(pool, FLOAT_PATTERNS, next());
      case 9:
        return parameterOfBits<double>(pool, DOUBLE_PATTERNS, next64());
      case 10:
        return stringParameter(pool);
      default:
        return versionParameter(pool);
    }
  }

  template <typename T>
  KyParameterPtr parameterOf(KyCErrorListPool& pool, const T& value)
  {
    const unsigned int id = makeId();
    const std::string description = makeDescription(id);
    const std::string unit = makeUnit();
    const bool modifiable = below(2) == 0;
    const unsigned int relevance = number<unsigned int>();
    return KyParameterPtr(new (pool) KyCInventoryParameter(pool, KyCInventoryAddress(id), description.c_str(), value,
                                                           unit.c_str(), modifiable, relevance));
  }

  template <typename T, typename TBits, std::size_t N>
  KyParameterPtr parameterOfBits(KyCErrorListPool& pool, const TBits (&patterns)[N], TBits random)
  {
    const TBits bits = below(2) == 0 ? random : patterns[below(N)];
    T value;
    copyBits(value, bits);
    return parameterOf(pool, value);
  }

  KyParameterPtr stringParameter(KyCErrorListPool& pool)
  {
    const std::string text = makeText(below(10) == 0 ? below(100000) : below(40), /*firstByte*/ 0);
    return parameterOf(pool, KyCString(text.data(), static_cast<unsigned int>(text.size())));
  }

  KyParameterPtr versionParameter(KyCErrorListPool& pool)
  {
    unsigned int parts[4];
    for (unsigned int& part : parts)
      part = number<unsigned int>();
    return parameterOf(pool, KyCVersion(parts[0], parts[1], parts[2], parts[3]));
  }

  // Half of them 0, the limits, or next to them.
  template <typename T>
  T number()
  {
    switch (below(12))
    {
      case 0:
        return 0;
      case 1:
        return 1;
      case 2:
        return std::numeric_limits<T>::max();
      case 3:
        return std::numeric_limits<T>::min();
      case 4:
        return static_cast<T>(std::numeric_limits<T>::max() - 1);
      case 5:
        return static_cast<T>(std::numeric_limits<T>::min() + 1);
      default:
        return static_cast<T>(next64());
    }
  }

  unsigned int makeId() { return below(4) == 0 ? number<unsigned int>() : 1 + below(1063); }

  std::string makeDescription(unsigned int id)
  {
    const char* const name = KyNInventoryIDs::Map.get(id);
    switch (below(6))
    {
      case 0:
        return "";
      case 1:
        return makeText(below(300), /*firstByte*/ 1);
      case 2:
        return "repeated description";
      default:
        return name != nullptr ? name : "no name";
    }
  }

  std::string makeUnit() { return below(2) == 0 ? "mV" : makeText(below(301), /*firstByte*/ 1); }

  std::string makeText(unsigned int length, unsigned int firstByte)
  {
    std::string text;
    for (unsigned int n = 0; n < length; ++n)
      text += static_cast<char>(firstByte + below(256 - firstByte));
    return text;
  }

  std::mt19937 m_random;
};
