// What the tool keeps from reaching a terminal.
#include <gtest/gtest.h>

#include "Terminal.h"

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
