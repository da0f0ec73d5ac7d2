// KyCStringTest.cpp: texts inside the object and in shared blocks, every operation on both.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "composite/KyCString.h"
#include "support/KyPoolFailure.h"
#include "support/KyTestPool.h"

namespace
{

// Texts on both sides of the limit between inside and block, which is 6 characters.
const char* const s_texts[] = {
    "", "a", "abcde", "abcdef", "abcdefg", "abcdefgh", "a text of some forty characters, no more"};

std::string bytesOf(const KyCString& text) { return std::string(text.c_str(), text.length()); }

bool isInside(const KyCString& text)
{
  const char* const object = reinterpret_cast<const char*>(&text);
  return text.c_str() >= object && text.c_str() < object + sizeof(text);
}

}    // namespace

TEST(KyCString, takesEightBytesOnEveryPlatform) { EXPECT_EQ(8u, sizeof(KyCString)); }

TEST(KyCString, isEmptyByDefault)
{
  const KyCString text;
  EXPECT_STREQ("", text.c_str());
  EXPECT_EQ(0u, text.length());
  EXPECT_TRUE(text.isEmpty());
}

TEST(KyCString, keepsTextsOfEveryLengthWithANulBehind)
{
  for (const char* expected : s_texts)
  {
    const KyCString text(expected);
    EXPECT_STREQ(expected, text.c_str());
    EXPECT_EQ(std::string(expected).size(), text.length());
    EXPECT_EQ(std::string(expected).empty(), text.isEmpty());
  }
}

TEST(KyCString, keepsSixCharactersInsideAndSevenOutside)
{
  EXPECT_TRUE(isInside(KyCString("abcdef")));
  EXPECT_FALSE(isInside(KyCString("abcdefg")));
}

TEST(KyCString, takesNullTextsAsEmpty)
{
  EXPECT_STREQ("", KyCString(nullptr).c_str());
  EXPECT_STREQ("", KyCString(nullptr, 5).c_str());
  KyCString text("something long enough");
  text = nullptr;
  EXPECT_STREQ("", text.c_str());
  text = "abc";
  text += nullptr;
  EXPECT_STREQ("abc", text.c_str());
  EXPECT_STREQ("abc", (text + nullptr).c_str());
}

TEST(KyCString, lengthConstructorTakesExactlyThatManyCharacters)
{
  const char source[] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'};    // no NUL behind it
  EXPECT_EQ("", bytesOf(KyCString(source, 0)));
  EXPECT_EQ("abc", bytesOf(KyCString(source, 3)));
  EXPECT_EQ("abcdefgh", bytesOf(KyCString(source, 8)));
  EXPECT_EQ('\0', KyCString(source, 3).c_str()[3]);
  EXPECT_EQ('\0', KyCString(source, 8).c_str()[8]);
}

TEST(KyCString, lengthConstructorKeepsNulCharacters)
{
  const KyCString small("a\0b", 3);
  EXPECT_EQ(std::string("a\0b", 3), bytesOf(small));
  const KyCString large("ab\0cd\0ef\0", 9);
  EXPECT_EQ(std::string("ab\0cd\0ef\0", 9), bytesOf(large));
  EXPECT_EQ(std::string("ab\0cd\0ef\0a\0b", 12), bytesOf(large + small));
}

TEST(KyCString, copiesShareTheTextUntilOneChanges)
{
  KyCString first("a shared text");
  KyCString second(first);
  EXPECT_EQ(first.c_str(), second.c_str());
  second += "!";
  EXPECT_STREQ("a shared text", first.c_str());
  EXPECT_STREQ("a shared text!", second.c_str());
  KyCString third = first;
  first = "another long text";
  EXPECT_STREQ("a shared text", third.c_str());
  EXPECT_STREQ("another long text", first.c_str());
}

TEST(KyCString, copyOutlivesTheOriginal)
{
  KyCString copy;
  {
    const KyCString original("gone in a moment");
    copy = original;
  }
  EXPECT_STREQ("gone in a moment", copy.c_str());
}

TEST(KyCString, assignmentBetweenAllLengthsGivesTheText)
{
  for (const char* from : s_texts)
  {
    for (const char* to : s_texts)
    {
      const KyCString source(to);
      KyCString copied(from);
      copied = source;
      EXPECT_STREQ(to, copied.c_str());
      KyCString fromText(from);
      fromText = to;
      EXPECT_STREQ(to, fromText.c_str());
      KyCString moved(from);
      KyCString gone(to);
      moved = std::move(gone);
      EXPECT_STREQ(to, moved.c_str());
      EXPECT_STREQ("", gone.c_str());
    }
  }
}

TEST(KyCString, moveConstructorLeavesTheOtherEmpty)
{
  for (const char* expected : s_texts)
  {
    KyCString source(expected);
    const KyCString target(std::move(source));
    EXPECT_STREQ(expected, target.c_str());
    EXPECT_STREQ("", source.c_str());
    source = "usable again";
    EXPECT_STREQ("usable again", source.c_str());
  }
}

TEST(KyCString, assignmentToItselfChangesNothing)
{
  for (const char* expected : s_texts)
  {
    KyCString text(expected);
    const KyCString& alias = text;
    text = alias;
    EXPECT_STREQ(expected, text.c_str());
    text = text.c_str();
    EXPECT_STREQ(expected, text.c_str());
    KyCString& movedFrom = text;
    text = std::move(movedFrom);
    EXPECT_STREQ(expected, text.c_str());
  }
}

TEST(KyCString, assignmentOfAPartOfItselfGivesThatPart)
{
  KyCString small("abcdef");
  small = small.c_str() + 2;
  EXPECT_STREQ("cdef", small.c_str());
  KyCString large("abcdefghijkl");
  large = large.c_str() + 2;
  EXPECT_STREQ("cdefghijkl", large.c_str());
  large = large.c_str() + 6;
  EXPECT_STREQ("ijkl", large.c_str());
  KyCString shared("abcdefghijkl");
  const KyCString other = shared;
  shared = shared.c_str() + 1;
  EXPECT_STREQ("bcdefghijkl", shared.c_str());
  EXPECT_STREQ("abcdefghijkl", other.c_str());
}

TEST(KyCString, appendJoinsTextsOfAllLengths)
{
  for (const char* head : s_texts)
  {
    for (const char* tail : s_texts)
    {
      const std::string expected = std::string(head) + tail;
      KyCString withText(head);
      withText += tail;
      EXPECT_EQ(expected, bytesOf(withText));
      KyCString withString(head);
      withString += KyCString(tail);
      EXPECT_EQ(expected, bytesOf(withString));
      const KyCString constant(head);
      EXPECT_EQ(expected, bytesOf(constant + tail));
      EXPECT_EQ(expected, bytesOf(constant + KyCString(tail)));
      EXPECT_STREQ(head, constant.c_str());
    }
  }
}

TEST(KyCString, appendsItself)
{
  KyCString text("abc");
  text += text;
  EXPECT_STREQ("abcabc", text.c_str());
  text += text;
  EXPECT_STREQ("abcabcabcabc", text.c_str());
  text += text;
  EXPECT_STREQ("abcabcabcabcabcabcabcabc", text.c_str());
  KyCString tail("abcdefgh");
  tail += tail.c_str() + 5;
  EXPECT_STREQ("abcdefghfgh", tail.c_str());
  tail += tail.c_str() + 9;    // with room left
  EXPECT_STREQ("abcdefghfghgh", tail.c_str());
}

TEST(KyCString, appendsNumbersInDecimal)
{
  KyCString text("n=");
  text += 0u;
  EXPECT_STREQ("n=0", text.c_str());
  text += 4294967295u;
  EXPECT_STREQ("n=04294967295", text.c_str());
}

TEST(KyCString, appendToASharedTextLeavesTheOthersAlone)
{
  KyCString text("0123456789");
  text += "grown, so that there is room behind the text";
  const KyCString other = text;
  const std::string before = bytesOf(other);
  text += "x";
  EXPECT_EQ(before, bytesOf(other));
  EXPECT_EQ(before + "x", bytesOf(text));
}

TEST(KyCString, appendsAMillionCharactersOneByOne)
{
  KyCString text;
  for (unsigned int n = 0; n < 1000000; ++n)
    text += "x";
  EXPECT_EQ(1000000u, text.length());
  EXPECT_EQ(std::string(1000000, 'x'), bytesOf(text));
}

TEST(KyCString, comparesEqualByContent)
{
  for (const char* a : s_texts)
  {
    for (const char* b : s_texts)
    {
      EXPECT_EQ(a == b, KyCString(a) == KyCString(b)) << a << " and " << b;
      EXPECT_EQ(a != b, KyCString(a) != KyCString(b)) << a << " and " << b;
    }
  }
  EXPECT_FALSE(KyCString("a", 1) == KyCString("a\0", 2));
  EXPECT_TRUE(KyCString("abcdefgh", 8) == KyCString("abcdefghi", 8));
}

TEST(KyCString, comparesAShortTextInABlockEqualToOneInside)
{
  KyCString grown("abcdefghijkl");
  grown = "ab";
  EXPECT_TRUE(grown == KyCString("ab"));
  EXPECT_TRUE(KyCString("ab") == grown);
}

TEST(KyCString, ordersByUnsignedBytesThenByLength)
{
  EXPECT_TRUE(KyCString("a") < KyCString("b"));
  EXPECT_FALSE(KyCString("b") < KyCString("a"));
  EXPECT_FALSE(KyCString("a") < KyCString("a"));
  EXPECT_TRUE(KyCString("") < KyCString("a"));
  EXPECT_TRUE(KyCString("abcdef") < KyCString("abcdefg"));
  EXPECT_FALSE(KyCString("abcdefg") < KyCString("abcdef"));
  EXPECT_TRUE(KyCString("z") < KyCString("\x80"));    // 0x80 is large, not negative
  EXPECT_TRUE(KyCString("a\0a", 3) < KyCString("a\0b", 3));
}

TEST(KyCString, assignWithAPoolStoresTheText)
{
  KyTestPool pool;
  KyCString text;
  EXPECT_TRUE(text.assign(pool, "short", 5));
  EXPECT_STREQ("short", text.c_str());
  EXPECT_TRUE(text.assign(pool, "now a long one", 14));
  EXPECT_STREQ("now a long one", text.c_str());
  EXPECT_TRUE(text.assign(pool, "now a long one", 5));
  EXPECT_STREQ("now a", text.c_str());
  EXPECT_TRUE(text.assign(pool, nullptr, 7));
  EXPECT_STREQ("", text.c_str());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCString, assignWithAPoolTakesAPartOfItself)
{
  KyTestPool pool;
  KyCString text("abcdefghijkl");
  EXPECT_TRUE(text.assign(pool, text.c_str() + 3, 8));
  EXPECT_STREQ("defghijk", text.c_str());
  KyCString shared(text);
  EXPECT_TRUE(shared.assign(pool, shared.c_str() + 1, 7));
  EXPECT_STREQ("efghijk", shared.c_str());
  EXPECT_STREQ("defghijk", text.c_str());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCString, assignReportsExhaustedMemoryAndKeepsTheText)
{
  KyTestPool pool;
  KyCString text("before");
  {
    const KyFailNext fail(0);
    EXPECT_FALSE(text.assign(pool, "after, and long", 15));
  }
  EXPECT_STREQ("before", text.c_str());
  EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."});
}

// With 64 bits a block of that size might be had, so it is made to fail; with 32 it is not even asked for.
TEST(KyCString, theLargestLengthIsRefusedBeforeTheTextIsTouched)
{
  KyTestPool pool;
  KyCString text("before");
  {
    const KyFailNext fail(0);
    EXPECT_FALSE(text.assign(pool, "short", 0xFFFFFFFF));
  }
  EXPECT_STREQ("before", text.c_str());
  if (sizeof(void*) == 8)
    EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."});
  else
    EXPECT_REPORTS(pool,
                   {0x01100000, "assign", "A text of 4294967295 characters does not fit into the address space."});
}

TEST(KyCString, takeOverMakesACollectedTextItsOwn)
{
  for (const unsigned int length : {0u, 1u, 7u, 4096u, 1000000u})
  {
    const std::string text(length, 'x');
    for (const char* const before : s_texts)
    {
      char* buffer = static_cast<char*>(std::malloc(length + 1));
      ASSERT_NE(nullptr, buffer);
      text.copy(buffer, length);
      KyCString string(before);
      ASSERT_TRUE(string.takeOver(buffer, length));
      EXPECT_EQ(nullptr, buffer);
      EXPECT_EQ(text, bytesOf(string));
      EXPECT_EQ('\0', string.c_str()[length]);
      EXPECT_TRUE(string == KyCString(text.c_str()));
    }
  }
}

TEST(KyCString, aTextTakenOverIsSharedAndChangedLikeAnyOther)
{
  for (const char* const tail : s_texts)
  {
    char* buffer = static_cast<char*>(std::malloc(9));
    ASSERT_NE(nullptr, buffer);
    std::memcpy(buffer, "collected", 9);
    KyCString string;
    ASSERT_TRUE(string.takeOver(buffer, 9));
    KyCString copy = string;
    const KyCString moved = std::move(string);
    copy += tail;
    EXPECT_EQ(std::string("collected") + tail, bytesOf(copy));
    EXPECT_EQ("collected", bytesOf(moved));
    KyCString assigned = moved;
    assigned = tail;
    EXPECT_EQ(tail, bytesOf(assigned));
    KyCString alone(moved);
    EXPECT_TRUE(alone == moved);
  }
}

TEST(KyCString, aTextTakenOverAndNotSharedMayBeAssignedTo)
{
  for (const char* const text : s_texts)
  {
    char* buffer = static_cast<char*>(std::malloc(9));
    ASSERT_NE(nullptr, buffer);
    std::memcpy(buffer, "collected", 9);
    KyCString string;
    ASSERT_TRUE(string.takeOver(buffer, 9));
    string = text;
    EXPECT_EQ(text, bytesOf(string));
  }
}

TEST(KyCString, assignOfAShortTextNeedsNoMemory)
{
  KyTestPool pool;
  KyCString text("a text in a block");
  const KyFailNext fail(0);
  EXPECT_TRUE(text.assign(pool, "after", 5));
  EXPECT_STREQ("after", text.c_str());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCString, helpersBehaveAsTheCFunctions)
{
  EXPECT_EQ(0, KyCString::strcmp("abc", "abc"));
  EXPECT_GT(0, KyCString::strcmp("abc", "abd"));
  EXPECT_LT(0, KyCString::strcmp("abd", "abc"));
  EXPECT_LT(0, KyCString::strcmp("\x80", "z"));
  const char* const text = "one two three";
  EXPECT_EQ(text + 4, KyCString::strstr(text, "two"));
  EXPECT_EQ(text, KyCString::strstr(text, ""));
  EXPECT_EQ(nullptr, KyCString::strstr(text, "four"));
  EXPECT_EQ(13u, KyCString::strlen(text));
  EXPECT_EQ(0u, KyCString::strlen(""));
}

TEST(KyCString, helpersTakeNullAsEmpty)
{
  EXPECT_EQ(0, KyCString::strcmp(nullptr, ""));
  EXPECT_GT(0, KyCString::strcmp(nullptr, "a"));
  EXPECT_STREQ("", KyCString::strstr(nullptr, nullptr));
  EXPECT_EQ(nullptr, KyCString::strstr(nullptr, "a"));
  EXPECT_EQ(0u, KyCString::strlen(nullptr));
}

TEST(KyCString, threadsShareATextEachThroughAStringOfItsOwn)
{
  const KyCString common("a text that all threads share");
  std::vector<std::thread> threads;
  for (unsigned int n = 0; n < 4; ++n)
  {
    threads.emplace_back(
        [mine = common]() mutable
        {
          for (unsigned int round = 0; round < 5000; ++round)
          {
            KyCString copy = mine;
            KyCString changed = copy;
            changed += round;
            copy = changed;
            mine = KyCString(mine);
            ASSERT_EQ(29u, mine.length());
            ASSERT_STREQ("a text that all threads share", mine.c_str());
          }
        });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_STREQ("a text that all threads share", common.c_str());
}

// A long chain of the operations above against std::string.
TEST(KyCString, agreesWithAnotherStringClassOnRandomOperations)
{
  std::uint32_t random = 12345;
  const auto next = [&random](std::uint32_t limit)
  {
    random = random * 1664525u + 1013904223u;
    return (random >> 16) % limit;
  };
  KyCString strings[4];
  std::string models[4];
  for (unsigned int step = 0; step < 50000; ++step)
  {
    const unsigned int a = next(4);
    const unsigned int b = next(4);
    switch (next(7))
    {
      case 0:
        strings[a] = strings[b];
        models[a] = models[b];
        break;
      case 1:
        strings[a] += strings[b];
        models[a] += models[b];
        break;
      case 2:
        strings[a] += step;
        models[a] += std::to_string(step);
        break;
      case 3:
      {
        const unsigned int from = next(strings[b].length() + 1);
        strings[a] = strings[b].c_str() + from;
        models[a] = std::string(models[b]).substr(from);
        break;
      }
      case 4:
        strings[a] = strings[a] + strings[b];
        models[a] = models[a] + models[b];
        break;
      case 5:
      {
        const unsigned int from = next(strings[a].length() + 1);
        strings[a] += strings[a].c_str() + from;
        models[a] += std::string(models[a]).substr(from);
        break;
      }
      default:
        strings[a] = KyCString(strings[b].c_str(), strings[b].length() / 2);
        models[a] = std::string(models[b]).substr(0, models[b].size() / 2);
    }
    if (models[a].size() > 300)
    {
      strings[a] = "";
      models[a] = "";
    }
    ASSERT_EQ(models[a], bytesOf(strings[a])) << "step " << step;
    ASSERT_EQ(models[a] == models[b], strings[a] == strings[b]);
    ASSERT_EQ(models[a] < models[b], strings[a] < strings[b]);
  }
}
