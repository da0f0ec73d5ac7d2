// What the tool keeps from reaching a terminal.
#include <gtest/gtest.h>

#include "Terminal.h"
#include "inventorykit/KyValueText.h"

TEST(Controls, ordinaryTextStaysAsItIs)
{
  const std::string text = "I/O <fast> 100% \xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80";
  EXPECT_EQ(withoutControls(text), text);
  EXPECT_EQ(withoutControls(""), "");
}

TEST(Controls, controlCharactersAreShown)
{
  EXPECT_EQ(withoutControls("a\x1B[31mb\x07\x7F"), "a\\x1B[31mb\\x07\\x7F");
  EXPECT_EQ(withoutControls(std::string("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(withoutControls("a\xC2\x9B"
                            "b"),
            "a\\xC2\\x9Bb");
  EXPECT_EQ(withoutControls("a\tb\nc", "\n\t"), "a\tb\nc");
}

TEST(Controls, whatTurnsTheDirectionOfALineIsShown)
{
  EXPECT_EQ(withoutControls("a\xE2\x80\xAE"
                            "b"),
            "a\\xE2\\x80\\xAEb");
  EXPECT_EQ(withoutControls("\xE2\x81\xA6\xE2\x80\x8F\xE2\x80\xA8"), "\\xE2\\x81\\xA6\\xE2\\x80\\x8F\\xE2\\x80\\xA8");
  EXPECT_EQ(withoutControls("\xE2\x80\x90"), "\xE2\x80\x90") << "a hyphen";
}

TEST(Controls, bytesThatAreNoUtf8AreShown)
{
  EXPECT_EQ(withoutControls("a\x9B"
                            "31m\xFF"),
            "a\\x9B31m\\xFF");
  EXPECT_EQ(withoutControls("\xC3"), "\\xC3") << "cut";
  EXPECT_EQ(withoutControls("\xC0\x80\xED\xA0\x80"), "\\xC0\\x80\\xED\\xA0\\x80") << "too long, and a surrogate";
}

// The kit has its own list, since programs show its JSON, too.
TEST(Controls, jsonEscapesTheSameCharacters)
{
  for (unsigned int point = 1; point < 0x30000; ++point)
  {
    if (point == '"' || point == '\\' || (point >= 0xD800 && point <= 0xDFFF)) continue;
    std::string text;
    if (point < 0x80)
      text = {static_cast<char>(point)};
    else if (point < 0x800)
      text = {static_cast<char>(0xC0 | point >> 6), static_cast<char>(0x80 | (point & 0x3F))};
    else if (point < 0x10000)
      text = {static_cast<char>(0xE0 | point >> 12), static_cast<char>(0x80 | (point >> 6 & 0x3F)),
              static_cast<char>(0x80 | (point & 0x3F))};
    else
      text = {static_cast<char>(0xF0 | point >> 18), static_cast<char>(0x80 | (point >> 12 & 0x3F)),
              static_cast<char>(0x80 | (point >> 6 & 0x3F)), static_cast<char>(0x80 | (point & 0x3F))};
    const bool isEscaped = KyNInventoryKit::jsonText(text) != '"' + text + '"';
    ASSERT_EQ(isEscaped, withoutControls(text, "") != text) << std::hex << point;
  }
}
