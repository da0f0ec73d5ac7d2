// Designated values: pending new values of a parameter.

#include <type_traits>

#include "base/KyMessageCodes.h"
#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryParameter.h"
#include "tree/KyTypeTraits.h"
#include "writeback/KyAuxInfoKinds.h"
#include "writeback/KyParameterReport.h"

namespace
{
KyCInventoryParameter* designatedValueOf(KyCInventoryAuxInfo* auxInfo)
{
  const KyNInventoryParameter::KyCAuxInfoWrite* const info = kyAsWrite(auxInfo);
  return info != nullptr ? info->getDesignatedValue() : nullptr;
}

// What getDesignatedValue reports as.
template <typename T>
constexpr const char* getterName = "getDesignatedValue";
template <>
constexpr const char* getterName<KyCString> = "getDesignatedValue<KyCString>";
template <>
constexpr const char* getterName<KyCVersion> = "getDesignatedValue<KyCVersion>";
}    // namespace

template <typename T, typename>
void KyCInventoryParameter::setDesignatedValue(KyCErrorListPool& pool, T value)
{
  KyNInventoryParameter::KyCAuxInfoWrite* const info = kyAsWrite(m_auxInfo);
  if (info == nullptr)
  {
    kyReportParameter(pool, KY_MSG_CANNOT_SET_DESIGNATED_VALUE, __LINE__, "setDesignatedValue", *this);
    return;
  }
  if (info->getDesignatedValue() != nullptr)
  {
    info->getDesignatedValue()->setValue<T>(pool, value);
    return;
  }
  // A parameter of its own, in no tree and without a meaningful ID: every typed access works on it unchanged.
  const unsigned int errorCount = pool.getErrorCount();
  auto* const holder =
      new (pool) KyCInventoryParameter(pool, KyCInventoryAddress(0u), nullptr, value, nullptr, true, 0);
  if (holder == nullptr || pool.getErrorCount() != errorCount)
  {
    kyReportParameter(pool, KY_MSG_CANNOT_CREATE_DESIGNATED_PARAMETER, __LINE__, "setDesignatedValue", *this);
    delete holder;
    return;
  }
  if (holder->getType() != getType())
  {
    kyReportParameter(pool, KY_MSG_DESIGNATED_VALUE_INCOMPATIBLE_TYPE, __LINE__, "setDesignatedValue", *this);
    delete holder;
    return;
  }
  info->setDesignatedValue(holder);
}

template <typename T, typename>
T KyCInventoryParameter::getDesignatedValue(KyCErrorListPool& pool) const
{
  const KyCInventoryParameter* const holder = designatedValueOf(m_auxInfo);
  if (holder != nullptr) return holder->getValue<T>(pool);
  pool.setError(KY_MSG_NO_DESIGNATED_VALUE_SPECIFIED, __LINE__, getterName<T>, nullptr);
  return T();
}

bool KyCInventoryParameter::isDesignatedValueValid() const { return designatedValueOf(m_auxInfo) != nullptr; }

void KyCInventoryParameter::deleteDesignatedValue()
{
  KyNInventoryParameter::KyCAuxInfoWrite* const info = kyAsWrite(m_auxInfo);
  if (info != nullptr) info->setDesignatedValue(nullptr);
}

template <typename T>
void KyCInventoryParameter::adoptDesignatedValueAs(KyCErrorListPool& pool)
{
  if constexpr (std::is_floating_point_v<T>)
  {
    KyCInventoryParameter* const holder = designatedValueOf(m_auxInfo);
    if (holder->getType() == getType())    // another type is reported below
    {
      copyNumber<T>(*holder);
      deleteDesignatedValue();
      return;
    }
  }
  const unsigned int errorCount = pool.getErrorCount();
  const T value = getDesignatedValue<T>(pool);
  if (pool.getErrorCount() != errorCount)
  {
    kyReportParameter(pool, KY_MSG_CANNOT_RETRIEVE_DESIGNATED_VALUE, __LINE__, "adoptDesignatedValue", *this);
    return;
  }
  setValue<T>(pool, value);
  if (pool.getErrorCount() != errorCount)
  {
    kyReportParameter(pool, KY_MSG_CANNOT_SET_VALUE, __LINE__, "adoptDesignatedValue", *this);
    return;
  }
  deleteDesignatedValue();
}

void KyCInventoryParameter::adoptDesignatedValue(KyCErrorListPool& pool)
{
  if (!isDesignatedValueValid())
  {
    kyReportParameter(pool, KY_MSG_NO_DESIGNATED_VALUE_DEFINED, __LINE__, "adoptDesignatedValue", *this);
    return;
  }
  switch (getType())
  {
    case KyCParam::TYPE_INT8:
      return adoptDesignatedValueAs<signed char>(pool);
    case KyCParam::TYPE_INT16:
      return adoptDesignatedValueAs<short>(pool);
    case KyCParam::TYPE_INT32:
      return adoptDesignatedValueAs<int>(pool);
    case KyCParam::TYPE_LONG64:
      return adoptDesignatedValueAs<long long>(pool);
    case KyCParam::TYPE_UINT8:
      return adoptDesignatedValueAs<unsigned char>(pool);
    case KyCParam::TYPE_UINT16:
      return adoptDesignatedValueAs<unsigned short>(pool);
    case KyCParam::TYPE_UINT32:
      return adoptDesignatedValueAs<unsigned int>(pool);
    case KyCParam::TYPE_ULONG64:
      return adoptDesignatedValueAs<unsigned long long>(pool);
    case KyCParam::TYPE_FLOAT32:
      return adoptDesignatedValueAs<float>(pool);
    case KyCParam::TYPE_FLOAT64:
      return adoptDesignatedValueAs<double>(pool);
    case KyCParam::TYPE_STRING:
      return adoptDesignatedValueAs<KyCString>(pool);
    case KyCParam::TYPE_VERSION:
      return adoptDesignatedValueAs<KyCVersion>(pool);
    default:
      kyReportParameter(pool, KY_MSG_PARAMETER_UNKNOWN_TYPE, __LINE__, "adoptDesignatedValue", *this);
  }
}

#define KY_INSTANTIATE_DESIGNATED(T)                                                                 \
  template KY_INVENTORY_API void KyCInventoryParameter::setDesignatedValue<T>(KyCErrorListPool&, T); \
  template KY_INVENTORY_API T KyCInventoryParameter::getDesignatedValue<T>(KyCErrorListPool&) const;
KY_FOR_EACH_VALUE_TYPE(KY_INSTANTIATE_DESIGNATED)
