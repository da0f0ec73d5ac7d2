// KyScalar.h: values of parameters and of conditions, made comparable.
#pragma once

#include <string>
#include <variant>

#include "composite/KyCVersion.h"
#include "inventory/KyCInventoryParameter.h"

namespace KyNInventoryKit
{
enum class Order
{
  LESS,
  EQUAL,
  GREATER,
  NONE    // cannot be compared, or a NaN
};

Order compareNumbers(long long a, unsigned long long b);
Order compareNumbers(long long a, double b);
Order compareNumbers(unsigned long long a, double b);

// A value, or what a condition says of one.
class Scalar
{
public:
  enum class Kind
  {
    NUMBER,     // of a parameter
    VERSION,    // of a parameter
    TEXT,       // of a parameter
    BARE,       // a number or version as typed
    QUOTED      // a text as typed
  };

  Scalar() = default;
  Scalar(Kind kind, std::string text) : m_kind(kind), m_text(std::move(text)) {}

  // The value of a parameter; of Kind::TEXT and empty for one that has no value.
  explicit Scalar(const KyCInventoryParameter& parameter);

  // Whether a bare text is a number or a version.
  static bool isBare(const std::string& text);

  Kind kind() const { return m_kind; }
  const std::string& text() const { return m_text; }    // of TEXT, BARE and QUOTED

  static Order compare(const Scalar& a, const Scalar& b);

private:
  // The largest type of each sort; float stays apart, as a text beside it is read as a float.
  using Number = std::variant<long long, unsigned long long, float, double>;

  static bool readNumber(const std::string& text, bool asFloat, Number& number);
  static Order compareNumbersOf(const Number& a, const Number& b);
  bool toNumber(const Scalar& other, Number& number) const;
  bool toVersion(KyCVersion& version) const;

  Kind m_kind = Kind::TEXT;
  Number m_number;
  KyCVersion m_version;
  std::string m_text;
};
}    // namespace KyNInventoryKit
