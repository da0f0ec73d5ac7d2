// Values of an item's parameters, by address.

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryItem.h"
#include "tree/KyPlaceText.h"
#include "tree/KyTypeTraits.h"

namespace
{
// Here an item without address is named by an empty text, unlike in the reports of building.
void reportMissing(KyCErrorListPool& pool, unsigned int line, const char* function, const KyCInventoryAddress& address,
                   const KyCInventoryItem& item)
{
  pool.setError(KY_MSG_PARAMETER_DOES_NOT_EXIST, line, function, "%s%s", KyPlaceText(address).c_str(),
                KyPlaceText(item).c_str());
}

// What getValue reports as, and what it gives for a missing parameter.
template <typename T>
struct KyItemGetter
{
  static constexpr const char* name = "getValue";
  static T missing() { return T(); }
};

template <>
struct KyItemGetter<const char*>
{
  static constexpr const char* name = "getValue<const char*>";
  static const char* missing() { return ""; }
};
}    // namespace

template <typename T, typename>
T KyCInventoryItem::getValue(KyCErrorListPool& pool, const KyCInventoryAddress& address) const
{
  const KyCInventoryParameter* const parameter = getParameter(address);
  if (parameter != nullptr) return parameter->getValue<T>(pool);

  reportMissing(pool, __LINE__, KyItemGetter<T>::name, address, *this);
  return KyItemGetter<T>::missing();
}

template <typename T, typename>
KyCInventoryParameter* KyCInventoryItem::setValue(KyCErrorListPool& pool, const KyCInventoryAddress& address,
                                                  const T& value)
{
  KyCInventoryParameter* const parameter = getParameter(address);
  if (parameter != nullptr)
    parameter->setValue<T>(pool, value);
  else
    reportMissing(pool, __LINE__, "setValue", address, *this);
  return parameter;
}

#define KY_INSTANTIATE_GETTER(T) \
  template KY_INVENTORY_API T KyCInventoryItem::getValue<T>(KyCErrorListPool&, const KyCInventoryAddress&) const;
#define KY_INSTANTIATE_SETTER(T)                                                  \
  template KY_INVENTORY_API KyCInventoryParameter* KyCInventoryItem::setValue<T>( \
      KyCErrorListPool&, const KyCInventoryAddress&, const T&);
KY_FOR_EACH_VALUE_TYPE(KY_INSTANTIATE_GETTER)
KY_INSTANTIATE_GETTER(const char*)
KY_FOR_EACH_VALUE_TYPE(KY_INSTANTIATE_SETTER)
