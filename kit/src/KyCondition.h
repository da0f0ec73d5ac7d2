// KyCondition.h: what a condition asks of a node.
#pragma once

#include <string>
#include <vector>

#include "KyRegularExpression.h"
#include "KyScalar.h"
#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryAddress.h"
#include "inventorykit/KyFind.h"

namespace KyNInventoryKit
{
// A plain value, not changed any more once it has been read. Kept as a list of steps in the order in which they are
// carried out, on a stack of truth values.
class Condition
{
public:
  bool read(KyCErrorListPool& pool, const std::string& text);
  bool isTrueOf(const Node& node) const;

private:
  friend class ConditionReader;

  struct Operand
  {
    enum class Kind
    {
      LITERAL,
      ADDRESS,
      OWN_VALUE    // of the parameter that was found
    };
    Kind kind = Kind::LITERAL;
    Scalar literal;
    KyCInventoryAddress address;
  };
  enum class Operator
  {
    EQUAL,
    NOT_EQUAL,
    LESS,
    LESS_OR_EQUAL,
    GREATER,
    GREATER_OR_EQUAL,
    CONTAINS,    // "~"
    EXISTS
  };
  struct Step
  {
    enum class Kind
    {
      COMPARISON,
      NOT,
      AND,
      OR
    };
    Kind kind = Kind::COMPARISON;
    Operator comparison = Operator::EXISTS;
    Operand left;
    Operand right;
    RegularExpression expression;
  };

  static const KyCInventoryParameter* parameterOf(const Operand& operand, const Node& node);
  static bool exists(const Operand& operand, const Node& node);
  static bool isTrue(const Step& step, const Node& node);

  std::vector<Step> m_steps;
};
}    // namespace KyNInventoryKit
