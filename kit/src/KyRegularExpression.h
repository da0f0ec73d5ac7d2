// KyRegularExpression.h: regular expressions whose cost nobody can drive up.
//
//   RegularExpression expression;
//   if (expression.read("^CH(annel)? ?[0-9]+$")) expression.isFoundIn(text);
//
// The forms: . [abc] [^a-z] \d \w \s \D \W \S   * + ? {n} {n,} {n,m}   ( ) |   ^ $ for the start and the end of the
// text, \n \t \r \xHH, and a backslash in front of any other character that is no letter or digit, for that character.
// Bytes are matched; "." is any byte.
#pragma once

#include <bitset>
#include <string>
#include <string_view>
#include <vector>

namespace KyNInventoryKit
{
// A plain value. Two threads may use one expression at once.
class RegularExpression
{
public:
  // Result:     false when the text is none; problem() tells what is wrong.
  // Cost:       linear in the text and in the size of what its repetitions stand for, which is limited to
  //             s_largestSize. No recursion, however deep the brackets.
  bool read(std::string_view text);

  const std::string& problem() const { return m_problem; }    // "\")\" is expected at character 5"

  // Whether the expression stands for any part of the text.
  // Cost:       at most the length of the text times the size of the expression; no recursion.
  bool isFoundIn(std::string_view text) const;

  static constexpr std::size_t s_largestSize = 10000;    // steps

  struct Step
  {
    enum Kind
    {
      BYTE,     // one byte of the set `first`
      SPLIT,    // goes on in both places
      JUMP,     // goes on at `first`
      START,
      END,
      FOUND
    };
    Kind kind;
    int first;    // relative to this step; for BYTE the number of the set
    int second;
  };
  using Bytes = std::bitset<256>;

private:
  std::vector<Step> m_steps;
  std::vector<Bytes> m_sets;
  std::string m_problem;
};
}    // namespace KyNInventoryKit
