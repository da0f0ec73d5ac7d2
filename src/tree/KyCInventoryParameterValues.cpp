// The value of a parameter, by type.

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryParameter.h"
#include "tree/KyPlaceText.h"
#include "tree/KyTypeTraits.h"

template <typename T, typename>
T KyCInventoryParameter::getValue(KyCErrorListPool& pool) const
{
  const unsigned int errorCount = pool.getErrorCount();
  T value = (this->*KyValueAccess<T>::get)(pool);
  if (pool.getErrorCount() != errorCount)
    pool.setError(KY_MSG_CANNOT_GET_VALUE, __LINE__, "getValue", "%s", KyParameterPlace(*this).c_str());
  return value;
}

template <typename T, typename>
void KyCInventoryParameter::setValue(KyCErrorListPool& pool, const T& value)
{
  const unsigned int errorCount = pool.getErrorCount();
  (this->*KyValueAccess<T>::set)(pool, kySetterArgument(value));
  if (pool.getErrorCount() != errorCount)
    pool.setError(KY_MSG_CANNOT_SET_VALUE, __LINE__, "setValue", "%s", KyParameterPlace(*this).c_str());
}

#define KY_INSTANTIATE_GETTER(T) \
  template KY_INVENTORY_API T KyCInventoryParameter::getValue<T>(KyCErrorListPool&) const;
#define KY_INSTANTIATE_SETTER(T) \
  template KY_INVENTORY_API void KyCInventoryParameter::setValue<T>(KyCErrorListPool&, const T&);
KY_FOR_EACH_VALUE_TYPE(KY_INSTANTIATE_GETTER)
KY_INSTANTIATE_GETTER(const char*)
KY_FOR_EACH_VALUE_TYPE(KY_INSTANTIATE_SETTER)
