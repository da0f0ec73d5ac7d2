#include "KyCondition.h"

#include <utility>

#include "KyEditMessages.h"
#include "KyShownText.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyLookUp.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
// Reads the text of a condition from its start; the first thing that is wrong is reported and ends it. Operators that
// wait for what follows them stand on a stack of their own, open brackets too.
class ConditionReader
{
public:
  using Step = Condition::Step;
  using Operand = Condition::Operand;
  using Operator = Condition::Operator;

  ConditionReader(KyCErrorListPool& pool, const std::string& text) : m_pool(pool), m_text(text) {}

  bool read(std::vector<Step>& steps)
  {
    for (;;)
    {
      if (!readPrefixes() || !readComparison()) return false;
      skipBlanks();
      while (isNext(")"))
        if (!closeBracket()) return false;
      if (m_at == m_text.size()) break;
      if (!readConnective()) return false;
    }
    carryOut(Waiting::OR);
    if (!m_waiting.empty()) return expected("\")\"");
    steps = std::move(m_steps);
    return true;
  }

private:
  enum class Waiting    // the weakest first
  {
    BRACKET,
    OR,
    AND,
    NOT
  };

  // ---- Brackets and connectives ----

  bool readPrefixes()
  {
    for (;;)
    {
      skipBlanks();
      if (isNext("("))
        m_waiting.push_back(Waiting::BRACKET);
      else if (wordAhead() == "not")
        readNot();
      else
        return true;
    }
  }

  void readNot()
  {
    m_at += 3;
    m_waiting.push_back(Waiting::NOT);
  }

  bool closeBracket()
  {
    carryOut(Waiting::OR);
    if (m_waiting.empty())
    {
      --m_at;
      return expected("\"and\", \"or\" or the end");
    }
    m_waiting.pop_back();
    skipBlanks();
    return true;
  }

  bool readConnective()
  {
    const std::string word = wordAhead();
    if (word != "and" && word != "or") return expected("\"and\", \"or\" or the end");
    m_at += word.size();
    const Waiting connective = word == "and" ? Waiting::AND : Waiting::OR;
    carryOut(connective);
    m_waiting.push_back(connective);
    return true;
  }

  // Carries out what waits and is as strong as this, or stronger.
  void carryOut(Waiting weakest)
  {
    while (!m_waiting.empty() && m_waiting.back() >= weakest)
    {
      Step step;
      step.kind = m_waiting.back() == Waiting::NOT   ? Step::Kind::NOT
                  : m_waiting.back() == Waiting::AND ? Step::Kind::AND
                                                     : Step::Kind::OR;
      m_steps.push_back(std::move(step));
      m_waiting.pop_back();
    }
  }

  // ---- Comparisons ----

  bool readComparison()
  {
    Step step;
    const std::size_t start = m_at;
    if (!readOperand(step.left)) return false;
    skipBlanks();
    if (!readOperator(step.comparison))
    {
      if (step.left.kind == Operand::Kind::LITERAL) return expected("==, !=, <, <=, >, >= or ~");
      m_steps.push_back(std::move(step));
      return true;
    }
    skipBlanks();
    const std::size_t rightStart = m_at;
    if (step.comparison == Operator::CONTAINS && !isQuoteAhead()) return expected("a text in quotes");
    if (!readOperand(step.right)) return false;
    if (step.left.kind == Operand::Kind::LITERAL && step.right.kind == Operand::Kind::LITERAL)
    {
      m_at = start;
      return expected("an address on one side of the comparison");
    }
    if (step.comparison == Operator::CONTAINS && !readExpression(step, rightStart)) return false;
    m_steps.push_back(std::move(step));
    return true;
  }

  bool readExpression(Step& step, std::size_t start)
  {
    const std::string& text = step.right.literal.text();
    if (step.expression.read(text)) return true;
    m_pool.setError(KY_EDIT_MSG_NOT_AN_EXPRESSION, __LINE__, "readCondition", "%s%s", shortenedText(text).c_str(),
                    step.expression.problem().c_str());
    m_at = start;
    return expected("a regular expression");
  }

  bool readOperator(Operator& comparison)
  {
    static constexpr std::pair<const char*, Operator> s_operators[] = {
        {"==", Operator::EQUAL},   {"!=", Operator::NOT_EQUAL},        {"<=", Operator::LESS_OR_EQUAL},
        {"<", Operator::LESS},     {">=", Operator::GREATER_OR_EQUAL}, {">", Operator::GREATER},
        {"~", Operator::CONTAINS},
    };
    for (const auto& known : s_operators)
    {
      if (!isNext(known.first)) continue;
      comparison = known.second;
      return true;
    }
    return false;
  }

  // ---- Operands ----

  bool readOperand(Operand& operand)
  {
    if (isQuoteAhead()) return readQuoted(operand);
    const std::string word = wordAhead();
    if (word.empty() || word == "and" || word == "or" || word == "not") return expectedOperand();
    const bool isBare = Scalar::isBare(word);
    if (word == ".")
      operand.kind = Operand::Kind::OWN_VALUE;
    else if (isBare)
      operand.literal = Scalar(Scalar::Kind::BARE, word);
    else if (!readOperandAddress(word, operand))
      return false;
    m_at += word.size();
    return true;
  }

  bool readOperandAddress(const std::string& word, Operand& operand)
  {
    const bool isNumber = word.find_first_of("/[") == std::string::npos && !isLetter(word[0]);
    if (isNumber) return expectedOperand();
    operand.kind = Operand::Kind::ADDRESS;
    if (word[0] == '/') return expected("an address relative to what is found");    // not the root's, as "/" would say
    return readAddress(m_pool, word, operand.address) || expected("an address");
  }

  bool readQuoted(Operand& operand)
  {
    const char quote = m_text[m_at];
    std::string text;
    std::size_t at = m_at + 1;
    for (; at < m_text.size() && m_text[at] != quote; ++at)
    {
      const bool isEscape =
          m_text[at] == '\\' && at + 1 < m_text.size() && (m_text[at + 1] == quote || m_text[at + 1] == '\\');
      if (isEscape) ++at;
      text += m_text[at];
    }
    if (at == m_text.size())
    {
      m_at = at;
      return expected(quote == '"' ? "a closing \"" : "a closing '");
    }
    operand.literal = Scalar(Scalar::Kind::QUOTED, text);
    m_at = at + 1;
    return true;
  }

  // ---- Characters ----

  static bool isLetter(char c) { return c == '_' || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z'); }
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  void skipBlanks()
  {
    while (m_at < m_text.size() && (m_text[m_at] == ' ' || (m_text[m_at] >= '\t' && m_text[m_at] <= '\r')))
      ++m_at;
  }

  bool isQuoteAhead() const { return m_at < m_text.size() && (m_text[m_at] == '"' || m_text[m_at] == '\''); }

  bool isNext(std::string_view sign)
  {
    if (m_text.compare(m_at, sign.size(), sign) != 0) return false;
    m_at += sign.size();
    return true;
  }

  // The name, address, number or keyword that begins here; empty when none does. Signs belong to a number, in front of
  // it and of its exponent.
  std::string wordAhead() const
  {
    std::size_t end = m_at;
    const bool hasSign = end < m_text.size() && (m_text[end] == '-' || m_text[end] == '+');
    if (hasSign) ++end;
    const bool isNumber = hasSign || (end < m_text.size() && (isDigit(m_text[end]) || m_text[end] == '.'));
    for (; end < m_text.size(); ++end)
    {
      const char c = m_text[end];
      const bool isExponent = isNumber && (c == '-' || c == '+') && (m_text[end - 1] | 0x20) == 'e';
      if (!isLetter(c) && !isDigit(c) && !isExponent && std::string_view("./[]").find(c) == std::string_view::npos)
        break;
    }
    return m_text.substr(m_at, end - m_at);
  }

  bool expectedOperand() { return expected("an address, a number or a text in quotes"); }

  bool expected(const char* what)
  {
    const std::string reason = std::string(what) + " is expected at character " + std::to_string(m_at + 1);
    m_pool.setError(KY_EDIT_MSG_NOT_A_CONDITION, __LINE__, "readCondition", "%s%s", shortenedText(m_text).c_str(),
                    reason.c_str());
    return false;
  }

  KyCErrorListPool& m_pool;
  const std::string& m_text;
  std::size_t m_at = 0;
  std::vector<Waiting> m_waiting;
  std::vector<Step> m_steps;
};

bool Condition::read(KyCErrorListPool& pool, const std::string& text)
{
  return ConditionReader(pool, text).read(m_steps);
}

const KyCInventoryParameter* Condition::parameterOf(const Operand& operand, const Node& node)
{
  if (operand.kind == Operand::Kind::OWN_VALUE) return node.parameter;
  return lookUp(*node.item, operand.address).parameter;
}

bool Condition::exists(const Operand& operand, const Node& node)
{
  if (operand.kind == Operand::Kind::OWN_VALUE) return true;
  return lookUp(*node.item, operand.address).item != nullptr;
}

bool Condition::isTrue(const Step& step, const Node& node)
{
  if (step.comparison == Operator::EXISTS) return exists(step.left, node);
  Scalar values[2];
  const Scalar* sides[2];
  const Operand* const operands[2] = {&step.left, &step.right};
  for (unsigned int n = 0; n < 2; ++n)
  {
    if (operands[n]->kind == Operand::Kind::LITERAL)
    {
      sides[n] = &operands[n]->literal;
      continue;
    }
    const KyCInventoryParameter* const parameter = parameterOf(*operands[n], node);
    if (parameter == nullptr) return false;
    if (step.comparison == Operator::CONTAINS) return step.expression.isFoundIn(valueText(*parameter));
    values[n] = Scalar(*parameter);
    sides[n] = &values[n];
  }
  const Order order = Scalar::compare(*sides[0], *sides[1]);
  switch (step.comparison)
  {
    case Operator::EQUAL:
      return order == Order::EQUAL;
    case Operator::NOT_EQUAL:
      return order != Order::EQUAL;
    case Operator::LESS:
      return order == Order::LESS;
    case Operator::LESS_OR_EQUAL:
      return order == Order::LESS || order == Order::EQUAL;
    case Operator::GREATER:
      return order == Order::GREATER;
    default:
      return order == Order::GREATER || order == Order::EQUAL;
  }
}

bool Condition::isTrueOf(const Node& node) const
{
  std::vector<bool> truths;
  for (const Step& step : m_steps)
  {
    if (step.kind == Step::Kind::COMPARISON)
    {
      truths.push_back(isTrue(step, node));
      continue;
    }
    const bool last = truths.back();
    if (step.kind == Step::Kind::NOT)
    {
      truths.back() = !last;
      continue;
    }
    truths.pop_back();
    const bool first = truths.back();
    truths.back() = step.kind == Step::Kind::AND ? first && last : first || last;
  }
  return truths.back();
}
}    // namespace KyNInventoryKit
