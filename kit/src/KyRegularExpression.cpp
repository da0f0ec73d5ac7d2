#include "KyRegularExpression.h"

#include <charconv>
#include <utility>

namespace KyNInventoryKit
{
namespace
{
using Step = RegularExpression::Step;
using Steps = std::vector<Step>;    // a part of the program; it may stand anywhere, as its jumps are relative
using Bytes = RegularExpression::Bytes;

int sizeOf(const Steps& steps) { return static_cast<int>(steps.size()); }

void append(Steps& steps, const Steps& more) { steps.insert(steps.end(), more.begin(), more.end()); }

Bytes range(int first, int last)
{
  Bytes bytes;
  for (int byte = first; byte <= last; ++byte)
    bytes.set(static_cast<std::size_t>(byte));
  return bytes;
}

Bytes single(char c) { return range(static_cast<unsigned char>(c), static_cast<unsigned char>(c)); }

int hexDigit(char c)
{
  if (c >= '0' && c <= '9') return c - '0';
  const int letter = (c | 0x20) - 'a';
  return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

bool isLetterOrDigit(char c) { return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z'); }

// Makes the program of an expression. Open brackets stand on a stack of its own.
class Reader
{
public:
  Reader(std::string_view text, std::vector<Bytes>& sets) : m_text(text), m_sets(sets) {}

  bool read(Steps& program)
  {
    m_open.emplace_back();
    while (m_at < m_text.size())
      if (!readNext()) return false;
    if (m_open.size() > 1) return expected("\")\"");
    program = closed(m_open.back());
    return true;
  }
  const std::string& problem() const { return m_problem; }

private:
  // What has been read of a bracket, or of the whole expression.
  struct Group
  {
    std::vector<Steps> branches;    // those that "|" has ended
    Steps branch;                   // without its last part
    Steps last;                     // the part that a repetition repeats
    bool isRepeatable = false;
    bool hasRepetition = false;
  };

  bool readNext()
  {
    const char c = m_text[m_at];
    switch (c)
    {
      case '(':
        ++m_at;
        m_open.emplace_back();
        return true;
      case ')':
        return closeGroup();
      case '|':
        ++m_at;
        endBranch(m_open.back());
        return isSmallEnough(m_open.back().branches.back());
      case '*':
        return repeat(0, -1, 1);
      case '+':
        return repeat(1, -1, 1);
      case '?':
        return repeat(0, 1, 1);
      case '{':
        return readCounts();
      case '^':
        ++m_at;
        return addPart({{Step::START, 0, 0}}, false);
      case '$':
        ++m_at;
        return addPart({{Step::END, 0, 0}}, false);
      default:
        return readBytes();
    }
  }

  bool readBytes()
  {
    Bytes bytes;
    if (m_text[m_at] == '[')
    {
      if (!readSet(bytes)) return false;
    }
    else if (m_text[m_at] == '\\')
    {
      if (!readEscape(bytes)) return false;
    }
    else
    {
      bytes = m_text[m_at] == '.' ? Bytes().set() : single(m_text[m_at]);
      ++m_at;
    }
    m_sets.push_back(bytes);
    return addPart({{Step::BYTE, static_cast<int>(m_sets.size()) - 1, 0}}, true);
  }

  bool addPart(Steps part, bool isRepeatable)
  {
    Group& group = m_open.back();
    append(group.branch, group.last);
    group.last = std::move(part);
    group.isRepeatable = isRepeatable;
    group.hasRepetition = false;
    return isSmallEnough(group.branch);
  }

  // ---- Brackets ----

  static void endBranch(Group& group)
  {
    append(group.branch, group.last);
    group.branches.push_back(std::move(group.branch));
    group.branch.clear();
    group.last.clear();
    group.isRepeatable = false;
  }

  // The program of all branches of a group: for each but the last one a split to it and to the ones behind it.
  static Steps closed(Group& group)
  {
    endBranch(group);
    int toEnd = 0;    // steps from where the next branch begins
    for (const Steps& branch : group.branches)
      toEnd += sizeOf(branch) + 2;
    toEnd -= 2;
    Steps steps;
    for (std::size_t n = 0; n + 1 < group.branches.size(); ++n)
    {
      const int size = sizeOf(group.branches[n]);
      steps.push_back({Step::SPLIT, 1, size + 2});
      append(steps, group.branches[n]);
      toEnd -= size + 2;
      steps.push_back({Step::JUMP, toEnd + 1, 0});
    }
    append(steps, group.branches.back());
    return steps;
  }

  bool closeGroup()
  {
    if (m_open.size() == 1) return expected("a \"(\" for this \")\" in front or the end");
    Steps steps = closed(m_open.back());
    m_open.pop_back();
    ++m_at;
    return addPart(std::move(steps), true);
  }

  // ---- Repetitions ----

  bool readCounts()
  {
    const std::size_t end = m_text.find('}', m_at);
    const std::string_view counts = end == m_text.npos ? std::string_view() : m_text.substr(m_at + 1, end - m_at - 1);
    const std::size_t comma = counts.find(',');
    int least = 0;
    int most = -1;
    if (!readCount(counts.substr(0, comma), least)) return expected("\"{\" with one or two counts from 0 to 9999");
    if (comma == counts.npos) most = least;
    const bool isOpen = comma == counts.npos || comma + 1 == counts.size();
    if (!isOpen && (!readCount(counts.substr(comma + 1), most) || most < least))
    {
      return expected("\"{\" with one or two counts from 0 to 9999");
    }
    return repeat(least, most, counts.size() + 2);
  }

  static bool readCount(std::string_view text, int& count)
  {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    return error == std::errc() && end == text.data() + text.size() && count >= 0 && count < 10000;
  }

  // Repeats the last part; `most` below 0 is no limit.
  bool repeat(int least, int most, std::size_t length)
  {
    Group& group = m_open.back();
    if (!group.isRepeatable || group.hasRepetition) return expected("something to repeat in front of the repetition");
    const Steps part = std::move(group.last);
    Steps steps;
    for (int n = 0; n < least && isSmallEnough(steps); ++n)
      append(steps, part);
    if (most < 0)
      appendAnyNumber(steps, part);
    else
      for (int n = least; n < most && isSmallEnough(steps); ++n)
        appendOptional(steps, part, most - n);
    if (!isSmallEnough(steps)) return false;
    group.last = std::move(steps);
    group.hasRepetition = true;
    m_at += length;
    return true;
  }

  static void appendAnyNumber(Steps& steps, const Steps& part)
  {
    steps.push_back({Step::SPLIT, 1, sizeOf(part) + 2});
    append(steps, part);
    steps.push_back({Step::JUMP, -sizeOf(part) - 1, 0});
  }

  // The first of `count` optional parts in a row: leaving it out leaves out all of them.
  static void appendOptional(Steps& steps, const Steps& part, int count)
  {
    steps.push_back({Step::SPLIT, 1, static_cast<int>((part.size() + 1) * static_cast<std::size_t>(count))});
    append(steps, part);
  }

  // ---- Sets of bytes ----

  // A backslash and what follows it.
  bool readEscape(Bytes& bytes)
  {
    if (m_at + 1 == m_text.size()) return expected("a character behind the backslash");
    const char c = m_text[m_at + 1];
    const Bytes digits = range('0', '9');
    const Bytes word = digits | range('a', 'z') | range('A', 'Z') | single('_');
    const Bytes space = range('\t', '\r') | single(' ');
    switch (c)
    {
      case 'd':
        bytes = digits;
        break;
      case 'D':
        bytes = ~digits;
        break;
      case 'w':
        bytes = word;
        break;
      case 'W':
        bytes = ~word;
        break;
      case 's':
        bytes = space;
        break;
      case 'S':
        bytes = ~space;
        break;
      case 'n':
        bytes = single('\n');
        break;
      case 't':
        bytes = single('\t');
        break;
      case 'r':
        bytes = single('\r');
        break;
      case 'x':
        return readHexByte(bytes);
      default:
        if (isLetterOrDigit(c)) return expected("\\d \\w \\s \\D \\W \\S \\n \\t \\r or \\xHH");
        bytes = single(c);
    }
    m_at += 2;
    return true;
  }

  bool readHexByte(Bytes& bytes)
  {
    const bool isLongEnough = m_at + 3 < m_text.size();
    const int high = isLongEnough ? hexDigit(m_text[m_at + 2]) : -1;
    const int low = isLongEnough ? hexDigit(m_text[m_at + 3]) : -1;
    if (high < 0 || low < 0) return expected("\\x with two hexadecimal digits");
    bytes = range(high * 16 + low, high * 16 + low);
    m_at += 4;
    return true;
  }

  // [...]; a "]" that stands first is meant as it is.
  bool readSet(Bytes& bytes)
  {
    ++m_at;
    const bool isNegated = m_at < m_text.size() && m_text[m_at] == '^';
    if (isNegated) ++m_at;
    for (bool isFirst = true; m_at < m_text.size() && (isFirst || m_text[m_at] != ']'); isFirst = false)
      if (!readRange(bytes)) return false;
    if (m_at == m_text.size()) return expected("\"]\"");
    ++m_at;
    if (isNegated) bytes.flip();
    return true;
  }

  bool readRange(Bytes& bytes)
  {
    Bytes first;
    if (!readSetMember(first)) return false;
    const bool isRange = m_at + 1 < m_text.size() && m_text[m_at] == '-' && m_text[m_at + 1] != ']';
    if (!isRange)
    {
      bytes |= first;
      return true;
    }
    const std::size_t start = m_at++;
    Bytes last;
    if (!readSetMember(last)) return false;
    const int low = byteOf(first);
    const int high = byteOf(last);
    if (low >= 0 && low <= high)
    {
      bytes |= range(low, high);
      return true;
    }
    m_at = start;
    return expected("a range from a lower to a higher character");
  }

  bool readSetMember(Bytes& bytes)
  {
    if (m_text[m_at] == '\\') return readEscape(bytes);
    bytes = single(m_text[m_at++]);
    return true;
  }

  // The byte of a set of one; -1 for any other set.
  static int byteOf(const Bytes& bytes)
  {
    if (bytes.count() != 1) return -1;
    std::size_t byte = 0;
    while (!bytes[byte])
      ++byte;
    return static_cast<int>(byte);
  }

  // ---- What is wrong ----

  bool isSmallEnough(const Steps& steps)
  {
    if (steps.size() <= RegularExpression::s_largestSize) return true;
    m_problem = "it is larger than " + std::to_string(RegularExpression::s_largestSize) + " steps";
    return false;
  }

  bool expected(const char* what)
  {
    m_problem = std::string(what) + " is expected at character " + std::to_string(m_at + 1);
    return false;
  }

  std::string_view m_text;
  std::vector<Bytes>& m_sets;
  std::size_t m_at = 0;
  std::vector<Group> m_open;
  std::string m_problem;
};

// The places of a program that the text so far leads to, each once.
class Places
{
public:
  Places(const Steps& steps, std::size_t length) : m_steps(steps), m_length(length), m_seenAt(steps.size(), s_never) {}

  // Those that wait for the next byte.
  const std::vector<std::size_t>& places() const { return m_places; }

  // Adds a place to those behind the next byte, and those that it leads to without another byte; true when the end of
  // the program is among them.
  bool add(std::size_t place, std::size_t position)
  {
    m_open.assign(1, place);
    while (!m_open.empty())
    {
      const std::size_t at = m_open.back();
      m_open.pop_back();
      if (m_seenAt[at] == position) continue;
      m_seenAt[at] = position;
      const Step& step = m_steps[at];
      if (step.kind == Step::FOUND) return true;
      if (step.kind == Step::BYTE) m_next.push_back(at);
      if (step.kind == Step::JUMP || step.kind == Step::SPLIT) open(at, step.first);
      if (step.kind == Step::SPLIT) open(at, step.second);
      if (step.kind == Step::START && position == 0) open(at, 1);
      if (step.kind == Step::END && position == m_length) open(at, 1);
    }
    return false;
  }

  // Steps over a byte.
  void advance()
  {
    m_places.swap(m_next);
    m_next.clear();
  }

private:
  static constexpr std::size_t s_never = static_cast<std::size_t>(-1);

  void open(std::size_t at, int distance) { m_open.push_back(at + static_cast<std::size_t>(distance)); }

  const Steps& m_steps;
  std::size_t m_length;
  std::vector<std::size_t> m_seenAt;    // for each place the position in the text at which it was added last
  std::vector<std::size_t> m_places;
  std::vector<std::size_t> m_next;
  std::vector<std::size_t> m_open;
};
}    // namespace

bool RegularExpression::read(std::string_view text)
{
  m_sets.clear();
  m_steps.clear();
  Reader reader(text, m_sets);
  const bool isRead = reader.read(m_steps);
  m_problem = reader.problem();
  if (isRead) m_steps.push_back({Step::FOUND, 0, 0});
  return isRead;
}

bool RegularExpression::isFoundIn(std::string_view text) const
{
  Places places(m_steps, text.size());
  if (places.add(0, 0)) return true;
  for (std::size_t position = 0; position < text.size(); ++position)
  {
    places.advance();
    const unsigned char byte = static_cast<unsigned char>(text[position]);
    for (const std::size_t place : places.places())
    {
      const bool isTaken = m_sets[static_cast<std::size_t>(m_steps[place].first)][byte];
      if (isTaken && places.add(place + 1, position + 1)) return true;
    }
    if (places.add(0, position + 1)) return true;    // what is looked for may begin anywhere
  }
  return false;
}
}    // namespace KyNInventoryKit
