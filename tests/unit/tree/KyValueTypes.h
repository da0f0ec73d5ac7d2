// KyValueTypes.h: the twelve value types as the tests see them, written by hand.
#pragma once

#include <limits>
#include <type_traits>

#include "composite/KyCString.h"
#include "composite/KyCVersion.h"

// Of each type: its code and name, the base library's accessors, and two values of it.
template <typename T>
struct KyValueCase;

template <typename T>
struct KyNumberCase
{
  static T first() { return std::numeric_limits<T>::lowest(); }
  static T second() { return std::numeric_limits<T>::max(); }
};

template <>
struct KyValueCase<signed char> : KyNumberCase<signed char>
{
  static constexpr unsigned int code = 0x111;
  static constexpr const char *name = "Int8", *getter = "getValueInt8", *setter = "setValueInt8";
};

template <>
struct KyValueCase<short> : KyNumberCase<short>
{
  static constexpr unsigned int code = 0x112;
  static constexpr const char *name = "Int16", *getter = "getValueInt16", *setter = "setValueInt16";
};

template <>
struct KyValueCase<int> : KyNumberCase<int>
{
  static constexpr unsigned int code = 0x114;
  static constexpr const char *name = "Int32", *getter = "getValueInt32", *setter = "setValueInt32";
};

template <>
struct KyValueCase<long long> : KyNumberCase<long long>
{
  static constexpr unsigned int code = 0x118;
  static constexpr const char *name = "Long64", *getter = "getValueLong64", *setter = "setValueLong64";
};

template <>
struct KyValueCase<unsigned char> : KyNumberCase<unsigned char>
{
  static constexpr unsigned int code = 0x121;
  static constexpr const char *name = "UInt8", *getter = "getValueUInt8", *setter = "setValueUInt8";
};

template <>
struct KyValueCase<unsigned short> : KyNumberCase<unsigned short>
{
  static constexpr unsigned int code = 0x122;
  static constexpr const char *name = "UInt16", *getter = "getValueUInt16", *setter = "setValueUInt16";
};

template <>
struct KyValueCase<unsigned int> : KyNumberCase<unsigned int>
{
  static constexpr unsigned int code = 0x124;
  static constexpr const char *name = "UInt32", *getter = "getValueUInt32", *setter = "setValueUInt32";
};

template <>
struct KyValueCase<unsigned long long> : KyNumberCase<unsigned long long>
{
  static constexpr unsigned int code = 0x128;
  static constexpr const char *name = "ULong64", *getter = "getValueULong64", *setter = "setValueULong64";
};

template <>
struct KyValueCase<float> : KyNumberCase<float>
{
  static constexpr unsigned int code = 0x214;
  static constexpr const char *name = "Float32", *getter = "getValueFloat32", *setter = "setValueFloat32";
};

template <>
struct KyValueCase<double> : KyNumberCase<double>
{
  static constexpr unsigned int code = 0x218;
  static constexpr const char *name = "Float64", *getter = "getValueFloat64", *setter = "setValueFloat64";
};

template <>
struct KyValueCase<KyCString>
{
  static constexpr unsigned int code = 0x2000;
  static constexpr const char *name = "String", *getter = "getValueKyCString", *setter = "setValueConstChar";
  static KyCString first() { return "a text of more than six characters"; }
  static KyCString second() { return "short"; }
};

template <>
struct KyValueCase<KyCVersion>
{
  static constexpr unsigned int code = 0x4000;
  static constexpr const char *name = "Version", *getter = "getValueKyCVersion", *setter = "setValueKyCVersion";
  static KyCVersion first() { return KyCVersion(1, 2, 3, 4); }
  static KyCVersion second() { return KyCVersion(0xFFFFFFFFu, 0, 0, 1); }
};

template <typename... T>
struct KyTypeList
{
  // Calls the function with a null T* for each type.
  template <typename TFunction>
  static void forEach(TFunction function)
  {
    (function(static_cast<T*>(nullptr)), ...);
  }

  // Calls the function with a null TOwn* and a null TOther* for each pair of different types; gives their number.
  template <typename TFunction>
  static unsigned int forEachPair(TFunction function)
  {
    unsigned int count = 0;
    forEach(
        [&](auto* own)
        {
          using TOwn = std::remove_pointer_t<decltype(own)>;
          forEach(
              [&](auto* other)
              {
                using TOther = std::remove_pointer_t<decltype(other)>;
                if constexpr (!std::is_same_v<TOwn, TOther>)
                {
                  function(static_cast<TOwn*>(nullptr), static_cast<TOther*>(nullptr));
                  ++count;
                }
              });
        });
    return count;
  }
};

using KyValueTypes = KyTypeList<signed char, short, int, long long, unsigned char, unsigned short, unsigned int,
                                unsigned long long, float, double, KyCString, KyCVersion>;
