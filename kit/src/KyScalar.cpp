#include "KyScalar.h"

#include <charconv>
#include <cmath>
#include <type_traits>

#include "KyValueTypes.h"

namespace KyNInventoryKit
{
namespace
{
template <typename T>
Order order(const T& a, const T& b)
{
  return a < b ? Order::LESS : b < a ? Order::GREATER : a == b ? Order::EQUAL : Order::NONE;
}

Order reversed(Order order)
{
  return order == Order::LESS ? Order::GREATER : order == Order::GREATER ? Order::LESS : order;
}

// T is long long or unsigned long long; the bounds are powers of two and so exact.
template <typename T>
Order compareExactly(T a, double b)
{
  if (std::isnan(b)) return Order::NONE;
  const double end = std::is_signed_v<T> ? 0x1p63 : 0x1p64;
  if (b >= end) return Order::LESS;
  if (b < (std::is_signed_v<T> ? -0x1p63 : 0.0)) return Order::GREATER;
  const double whole = std::floor(b);
  const Order wholeOrder = order(a, static_cast<T>(whole));
  return wholeOrder == Order::EQUAL && whole < b ? Order::LESS : wholeOrder;
}

Order numberOrder(long long a, long long b) { return order(a, b); }
Order numberOrder(unsigned long long a, unsigned long long b) { return order(a, b); }
Order numberOrder(double a, double b) { return order(a, b); }
Order numberOrder(long long a, unsigned long long b) { return compareNumbers(a, b); }
Order numberOrder(unsigned long long a, long long b) { return reversed(compareNumbers(b, a)); }
Order numberOrder(long long a, double b) { return compareNumbers(a, b); }
Order numberOrder(double a, long long b) { return reversed(compareNumbers(b, a)); }
Order numberOrder(unsigned long long a, double b) { return compareNumbers(a, b); }
Order numberOrder(double a, unsigned long long b) { return reversed(compareNumbers(b, a)); }

template <typename T>
auto widened(T value)
{
  if constexpr (std::is_same_v<T, float>)
    return static_cast<double>(value);
  else
    return value;
}

// A number from the first to the last character, with a sign or 0x in front perhaps.
template <typename T>
bool readWhole(const std::string& text, T& number)
{
  const char* first = text.data();
  const char* const last = first + text.size();
  if (last - first > 1 && *first == '+' && first[1] != '-') ++first;
  const bool isHex = last - first > 2 && first[0] == '0' && (first[1] == 'x' || first[1] == 'X');
  std::from_chars_result result = {};
  if constexpr (std::is_floating_point_v<T>)
  {
    if (isHex) return false;
    result = std::from_chars(first, last, number);
  }
  else
  {
    result = std::from_chars(isHex ? first + 2 : first, last, number, isHex ? 16 : 10);
    if (isHex && first[2] == '-') return false;
  }
  return result.ec == std::errc() && result.ptr == last;
}
// Whether a whole number below those of 64 bits was rounded to the lowest of them.
bool isBelowAllIntegers(const std::string& text, double rounded)
{
  long long whole = 0;
  return rounded == -0x1p63 && text.find_first_of(".eE") == std::string::npos && !readWhole(text, whole);
}
}    // namespace

Order compareNumbers(long long a, unsigned long long b)
{
  return a < 0 ? Order::LESS : order(static_cast<unsigned long long>(a), b);
}

Order compareNumbers(long long a, double b) { return compareExactly(a, b); }

Order compareNumbers(unsigned long long a, double b) { return compareExactly(a, b); }

Scalar::Scalar(const KyCInventoryParameter& parameter)
{
  visitType(parameter.getType(),
            [&](auto type)
            {
              using T = typename decltype(type)::Type;
              KyCErrorListPool ignored;    // the type fits
              const T value = parameter.getValue<T>(ignored);
              if constexpr (std::is_same_v<T, KyCString>)
                m_text.assign(value.c_str(), value.length());
              else if constexpr (std::is_same_v<T, KyCVersion>)
                m_version = value;
              else if constexpr (std::is_floating_point_v<T>)
                m_number = value;
              else
                m_number = static_cast<std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>>(value);
              m_kind = std::is_same_v<T, KyCString>    ? Kind::TEXT
                       : std::is_same_v<T, KyCVersion> ? Kind::VERSION
                                                       : Kind::NUMBER;
            });
}

bool Scalar::readNumber(const std::string& text, bool asFloat, Number& number)
{
  long long whole = 0;
  unsigned long long large = 0;
  float single = 0;
  double real = 0;
  if (readWhole(text, whole))
    number = whole;
  else if (readWhole(text, large))
    number = large;
  else if (asFloat && readWhole(text, single))
    number = single;
  else if (readWhole(text, real))
    number = isBelowAllIntegers(text, real) ? std::nextafter(real, -HUGE_VAL) : real;
  else
    return false;
  return true;
}

bool Scalar::isBare(const std::string& text)
{
  Number number;
  KyCVersion version;
  return readNumber(text, false, number) || Scalar(Kind::BARE, text).toVersion(version);
}

// The value as a number, for comparison with another one.
bool Scalar::toNumber(const Scalar& other, Number& number) const
{
  if (m_kind == Kind::VERSION) return false;
  const bool isBesideFloat = other.m_kind == Kind::NUMBER && std::holds_alternative<float>(other.m_number);
  if (m_kind != Kind::NUMBER) return readNumber(m_text, isBesideFloat, number);
  number = m_number;
  return true;
}

bool Scalar::toVersion(KyCVersion& version) const
{
  if (m_kind == Kind::NUMBER) return false;
  if (m_kind == Kind::VERSION)
  {
    version = m_version;
    return true;
  }
  unsigned int numbers[4] = {0, 0, 0, 0};
  const char* first = m_text.data();
  const char* const last = first + m_text.size();
  for (unsigned int n = 0; n < 4; ++n)
  {
    const auto [end, error] = std::from_chars(first, last, numbers[n]);
    if (error != std::errc()) return false;
    version = KyCVersion(numbers[0], numbers[1], numbers[2], numbers[3]);
    if (end == last) return true;
    if (*end != '.') return false;
    first = end + 1;
  }
  return false;
}

Order Scalar::compareNumbersOf(const Number& a, const Number& b)
{
  return std::visit([](auto x, auto y) { return numberOrder(widened(x), widened(y)); }, a, b);
}

Order Scalar::compare(const Scalar& a, const Scalar& b)
{
  const auto isOneOf = [&](Kind kind) { return a.m_kind == kind || b.m_kind == kind; };
  const bool isAnyBare = isOneOf(Kind::BARE);
  if (!isOneOf(Kind::NUMBER) && !isOneOf(Kind::VERSION) && !isAnyBare) return order(a.m_text, b.m_text);
  Number numberA;
  Number numberB;
  const bool isVersion = isOneOf(Kind::VERSION);
  if (!isVersion && a.toNumber(b, numberA) && b.toNumber(a, numberB)) return compareNumbersOf(numberA, numberB);
  KyCVersion versionA;
  KyCVersion versionB;
  if (a.toVersion(versionA) && b.toVersion(versionB)) return order(versionA, versionB);
  return Order::NONE;
}
}    // namespace KyNInventoryKit
