// KyCParamAccessTest.cpp: every getter and setter on a parameter of every type.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "composite/KyCParam.h"
#include "support/KyTestPool.h"

namespace
{

constexpr unsigned int READ_TYPE = 0x01100800;
constexpr unsigned int WRITE_TYPE = 0x01100801;
constexpr unsigned int ID = 4000000000u;

struct KyType
{
  unsigned int code;
  const char* name;
  const char* getter;
  const char* setter;
  const char* first;     // as text: the value that construct gives
  const char* second;    // and the one that set gives
  KyCParam* (*construct)(KyCErrorListPool& pool);
  std::string (*get)(const KyCParam& parameter, KyCErrorListPool& pool);    // the value as text
  void (*set)(KyCParam& parameter, KyCErrorListPool& pool);
};

#define KY_NUMBER(T, CODE, NAME, FIRST, SECOND)                                                                     \
  {                                                                                                                 \
    CODE, #NAME, "getValue" #NAME, "setValue" #NAME, #FIRST, #SECOND,                                               \
        [](KyCErrorListPool& pool)                                                                                  \
    { return new (pool) KyCParam(pool, ID, "value", 0, static_cast<T>(FIRST), nullptr); },                          \
        [](const KyCParam& parameter, KyCErrorListPool& pool)                                                       \
    {                                                                                                               \
      const T value = parameter.getValue##NAME(pool);                                                               \
      return value == static_cast<T>(FIRST)    ? std::string(#FIRST)                                                \
             : value == static_cast<T>(SECOND) ? std::string(#SECOND)                                               \
             : value == 0                      ? std::string("nothing")                                             \
                                               : std::string("something else");                                                          \
    },                                                                                                              \
        [](KyCParam& parameter, KyCErrorListPool& pool) { parameter.setValue##NAME(pool, static_cast<T>(SECOND)); } \
  }

const KyType s_types[] = {
    KY_NUMBER(signed char, 0x111, Int8, -128, 127),
    KY_NUMBER(short, 0x112, Int16, -32768, 32767),
    KY_NUMBER(int, 0x114, Int32, -2147483648, 2147483647),
    KY_NUMBER(long long, 0x118, Long64, -9223372036854775807, 9223372036854775807),
    KY_NUMBER(unsigned char, 0x121, UInt8, 255, 1),
    KY_NUMBER(unsigned short, 0x122, UInt16, 65535, 1),
    KY_NUMBER(unsigned int, 0x124, UInt32, 4294967295, 1),
    KY_NUMBER(unsigned long long, 0x128, ULong64, 9223372036854775807, 1),
    KY_NUMBER(float, 0x214, Float32, 1.5, -0.25),
    KY_NUMBER(double, 0x218, Float64, 1.5, -0.25),
    {0x2000, "String", "getValueKyCString", "setValueConstChar", "a text of the first kind", "two",
     [](KyCErrorListPool& pool)
     { return new (pool) KyCParam(pool, ID, "value", 0, KyCString("a text of the first kind"), nullptr); },
     [](const KyCParam& parameter, KyCErrorListPool& pool)
     {
       const KyCString value = parameter.getValueKyCString(pool);
       return value.isEmpty() ? std::string("nothing") : std::string(value.c_str());
     },
     [](KyCParam& parameter, KyCErrorListPool& pool) { parameter.setValueConstChar(pool, "two"); }},
    {0x4000, "Version", "getValueKyCVersion", "setValueKyCVersion", "1.2.3.4", "5.6.7.8",
     [](KyCErrorListPool& pool) { return new (pool) KyCParam(pool, ID, "value", 0, KyCVersion(1, 2, 3, 4), nullptr); },
     [](const KyCParam& parameter, KyCErrorListPool& pool)
     {
       const KyCVersion value = parameter.getValueKyCVersion(pool);
       return value == KyCVersion() ? std::string("nothing") : std::string(value.toString().c_str());
     },
     [](KyCParam& parameter, KyCErrorListPool& pool) { parameter.setValueKyCVersion(pool, KyCVersion(5, 6, 7, 8)); }},
};

std::string sentence(const KyType& own, const char* what, const KyType& other)
{
  return std::string("Parameter 4000000000 is of type ") + own.name + "; it cannot be " + what + " as " + other.name +
         ".";
}

}    // namespace

TEST(KyCParamAccess, ownTypeReadsAndWrites)
{
  for (const KyType& type : s_types)
  {
    KyTestPool pool;
    const std::unique_ptr<KyCParam> parameter(type.construct(pool));
    EXPECT_EQ(type.code, parameter->getType());
    EXPECT_EQ(type.first, type.get(*parameter, pool)) << type.name;
    EXPECT_EQ(std::string(type.first), parameter->getValueAsString(pool).c_str());
    type.set(*parameter, pool);
    EXPECT_EQ(type.second, type.get(*parameter, pool)) << type.name;
    EXPECT_EQ(std::string(type.second), parameter->getValueAsString(pool).c_str());
    EXPECT_NO_REPORTS(pool);
  }
}

TEST(KyCParamAccess, otherTypeReadsAsNothingWithAReport)
{
  unsigned int pairs = 0;
  for (const KyType& own : s_types)
  {
    for (const KyType& other : s_types)
    {
      if (&own == &other) continue;
      ++pairs;
      KyTestPool pool;
      const std::unique_ptr<KyCParam> parameter(own.construct(pool));
      EXPECT_EQ("nothing", other.get(*parameter, pool)) << own.name << " as " << other.name;
      EXPECT_REPORTS(pool, {READ_TYPE, other.getter, sentence(own, "read", other)});
      EXPECT_EQ(own.first, own.get(*parameter, pool));
    }
  }
  EXPECT_EQ(132u, pairs);
}

TEST(KyCParamAccess, otherTypeWritesNothingAndReports)
{
  for (const KyType& own : s_types)
  {
    for (const KyType& other : s_types)
    {
      if (&own == &other) continue;
      KyTestPool pool;
      const std::unique_ptr<KyCParam> parameter(own.construct(pool));
      other.set(*parameter, pool);
      EXPECT_REPORTS(pool, {WRITE_TYPE, other.setter, sentence(own, "set", other)});
      EXPECT_EQ(own.first, own.get(*parameter, pool)) << own.name << " as " << other.name;
      EXPECT_EQ(own.code, parameter->getType());
    }
  }
}

TEST(KyCParamAccess, constCharReadsStringsAlone)
{
  for (const KyType& own : s_types)
  {
    KyTestPool pool;
    const std::unique_ptr<KyCParam> parameter(own.construct(pool));
    const char* const text = parameter->getValueConstChar(pool);
    if (own.code == 0x2000)
    {
      EXPECT_STREQ("a text of the first kind", text);
      EXPECT_NO_REPORTS(pool);
      continue;
    }
    EXPECT_STREQ("", text);
    EXPECT_REPORTS(pool,
                   {READ_TYPE, "getValueConstChar",
                    std::string("Parameter 4000000000 is of type ") + own.name + "; it cannot be read as String."});
  }
}
