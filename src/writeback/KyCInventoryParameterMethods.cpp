// The check, write and update methods of a parameter.

#include <utility>

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryParameter.h"
#include "writeback/KyAuxInfoKinds.h"
#include "writeback/KyParameterReport.h"

void KyCInventoryParameter::setCheckAndWriteMethod(KyCErrorListPool& pool, TMethod checkMethod, TMethod writeMethod,
                                                   KyCInventoryAddress relativeAddress, void* customPointer)
{
  if (m_auxInfo != nullptr || writeMethod == nullptr)
  {
    kyReportParameter(pool, KY_MSG_CANNOT_SET_WRITE_OR_UPDATE_METHOD, __LINE__, "setCheckAndWriteMethod", *this);
    return;
  }
  using KyNInventoryParameter::KyCAuxInfoWrite;
  m_auxInfo = new KyCAuxInfoWrite(checkMethod, writeMethod, std::move(relativeAddress), customPointer);
}

void KyCInventoryParameter::setUpdateMethod(KyCErrorListPool& pool, TMethod updateMethod)
{
  if (m_auxInfo != nullptr || updateMethod == nullptr)
  {
    kyReportParameter(pool, KY_MSG_CANNOT_SET_WRITE_OR_UPDATE_METHOD, __LINE__, "setUpdateMethod", *this);
    return;
  }
  m_auxInfo = new KyNInventoryParameter::KyCAuxInfoParamUpdate(updateMethod);
}

KyCInventoryParameter::TMethod KyCInventoryParameter::getCheckMethod() const
{
  const KyNInventoryParameter::KyCAuxInfoWrite* const info = kyAsWrite(m_auxInfo);
  return info != nullptr ? info->getCheckMethod() : nullptr;
}

KyCInventoryParameter::TMethod KyCInventoryParameter::getWriteMethod() const
{
  const KyNInventoryParameter::KyCAuxInfoWrite* const info = kyAsWrite(m_auxInfo);
  return info != nullptr ? info->getWriteMethod() : nullptr;
}

KyCInventoryParameter::TMethod KyCInventoryParameter::getUpdateMethod() const
{
  const KyNInventoryParameter::KyCAuxInfoParamUpdate* const info = kyAsParamUpdate(m_auxInfo);
  return info != nullptr ? info->getUpdateMethod() : nullptr;
}

void* KyCInventoryParameter::getCustomPointer() const
{
  const KyNInventoryParameter::KyCAuxInfoWrite* const info = kyAsWrite(m_auxInfo);
  return info != nullptr ? info->getCustomPointer() : nullptr;
}
