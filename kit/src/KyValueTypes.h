// KyValueTypes.h: from the code of a value type to the type.
#pragma once

#include "composite/KyCParam.h"
#include "inventory/KyCInventoryParameter.h"

namespace KyNInventoryKit
{
// Carries a type to a generic lambda: visitType(code, [](auto type) { using T = typename decltype(type)::Type; ... })
template <typename T>
struct TypeTag
{
  using Type = T;
};

// Calls visit with the tag of the type; false, without a call, for a code that is none of the twelve.
template <typename Visit>
bool visitType(unsigned int code, Visit visit)
{
  switch (code)
  {
    case KyCParam::TYPE_INT8:
      visit(TypeTag<signed char>());
      return true;
    case KyCParam::TYPE_INT16:
      visit(TypeTag<short>());
      return true;
    case KyCParam::TYPE_INT32:
      visit(TypeTag<int>());
      return true;
    case KyCParam::TYPE_LONG64:
      visit(TypeTag<long long>());
      return true;
    case KyCParam::TYPE_UINT8:
      visit(TypeTag<unsigned char>());
      return true;
    case KyCParam::TYPE_UINT16:
      visit(TypeTag<unsigned short>());
      return true;
    case KyCParam::TYPE_UINT32:
      visit(TypeTag<unsigned int>());
      return true;
    case KyCParam::TYPE_ULONG64:
      visit(TypeTag<unsigned long long>());
      return true;
    case KyCParam::TYPE_FLOAT32:
      visit(TypeTag<float>());
      return true;
    case KyCParam::TYPE_FLOAT64:
      visit(TypeTag<double>());
      return true;
    case KyCParam::TYPE_STRING:
      visit(TypeTag<KyCString>());
      return true;
    case KyCParam::TYPE_VERSION:
      visit(TypeTag<KyCVersion>());
      return true;
    default:
      return false;
  }
}
}    // namespace KyNInventoryKit
