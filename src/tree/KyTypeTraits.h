// KyTypeTraits.h: the one table of value types: how each is read from and written to the base library's parameter.
#pragma once

#include <type_traits>

#include "composite/KyCParam.h"
#include "inventory/KyCInventoryParameter.h"

// One line per type, for the explicit instantiations of the template families:
//   #define KY_INSTANTIATE(T) template void KyCInventoryParameter::setValue<T>(KyCErrorListPool&, const T&);
//   KY_FOR_EACH_VALUE_TYPE(KY_INSTANTIATE)
#define KY_FOR_EACH_VALUE_TYPE(X) \
  X(signed char)                  \
  X(short)                        \
  X(int)                          \
  X(long long)                    \
  X(unsigned char)                \
  X(unsigned short)               \
  X(unsigned int)                 \
  X(unsigned long long)           \
  X(float)                        \
  X(double)                       \
  X(KyCString)                    \
  X(KyCVersion)

// Numbers travel by value, strings and versions by reference.
template <typename T>
using KyValueArgument = std::conditional_t<std::is_arithmetic_v<T>, T, const T&>;

// type: the type code; get and set: the base library's typed accessors.
template <typename T>
struct KyValueAccess;

template <>
struct KyValueAccess<signed char>
{
  static constexpr unsigned int type = KyCParam::TYPE_INT8;
  static constexpr auto get = &KyCParam::getValueInt8;
  static constexpr auto set = &KyCParam::setValueInt8;
};

template <>
struct KyValueAccess<short>
{
  static constexpr unsigned int type = KyCParam::TYPE_INT16;
  static constexpr auto get = &KyCParam::getValueInt16;
  static constexpr auto set = &KyCParam::setValueInt16;
};

template <>
struct KyValueAccess<int>
{
  static constexpr unsigned int type = KyCParam::TYPE_INT32;
  static constexpr auto get = &KyCParam::getValueInt32;
  static constexpr auto set = &KyCParam::setValueInt32;
};

template <>
struct KyValueAccess<long long>
{
  static constexpr unsigned int type = KyCParam::TYPE_LONG64;
  static constexpr auto get = &KyCParam::getValueLong64;
  static constexpr auto set = &KyCParam::setValueLong64;
};

template <>
struct KyValueAccess<unsigned char>
{
  static constexpr unsigned int type = KyCParam::TYPE_UINT8;
  static constexpr auto get = &KyCParam::getValueUInt8;
  static constexpr auto set = &KyCParam::setValueUInt8;
};

template <>
struct KyValueAccess<unsigned short>
{
  static constexpr unsigned int type = KyCParam::TYPE_UINT16;
  static constexpr auto get = &KyCParam::getValueUInt16;
  static constexpr auto set = &KyCParam::setValueUInt16;
};

template <>
struct KyValueAccess<unsigned int>
{
  static constexpr unsigned int type = KyCParam::TYPE_UINT32;
  static constexpr auto get = &KyCParam::getValueUInt32;
  static constexpr auto set = &KyCParam::setValueUInt32;
};

template <>
struct KyValueAccess<unsigned long long>
{
  static constexpr unsigned int type = KyCParam::TYPE_ULONG64;
  static constexpr auto get = &KyCParam::getValueULong64;
  static constexpr auto set = &KyCParam::setValueULong64;
};

template <>
struct KyValueAccess<float>
{
  static constexpr unsigned int type = KyCParam::TYPE_FLOAT32;
  static constexpr auto get = &KyCParam::getValueFloat32;
  static constexpr auto set = &KyCParam::setValueFloat32;
};

template <>
struct KyValueAccess<double>
{
  static constexpr unsigned int type = KyCParam::TYPE_FLOAT64;
  static constexpr auto get = &KyCParam::getValueFloat64;
  static constexpr auto set = &KyCParam::setValueFloat64;
};

template <>
struct KyValueAccess<KyCString>
{
  static constexpr unsigned int type = KyCParam::TYPE_STRING;
  static constexpr auto get = &KyCParam::getValueKyCString;
  static constexpr auto set = &KyCParam::setValueConstChar;    // there is no setter that takes a KyCString
};

template <>
struct KyValueAccess<KyCVersion>
{
  static constexpr unsigned int type = KyCParam::TYPE_VERSION;
  static constexpr auto get = &KyCParam::getValueKyCVersion;
  static constexpr auto set = &KyCParam::setValueKyCVersion;
};

template <>
struct KyValueAccess<const char*>
{
  static constexpr auto get = &KyCParam::getValueConstChar;
};

// What the setter of T is given for a value of T.
template <typename T>
const T& kySetterArgument(const T& value) noexcept
{
  return value;
}
inline const char* kySetterArgument(const KyCString& value) noexcept { return value.c_str(); }
