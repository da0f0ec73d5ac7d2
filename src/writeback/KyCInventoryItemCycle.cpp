// The check, apply and update walks, and the clearing of all pending values.

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "writeback/KyParameterReport.h"
#include "writeback/KySubtreeWalk.h"

namespace
{
void checkParameter(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter& parameter)
{
  if (!parameter.isDesignatedValueValid() || parameter.getCheckMethod() == nullptr) return;
  if (parameter.getCheckMethod()(pool, context, &parameter)) return;
  kyReportParameter(pool, KY_MSG_CHECK_FAILED, __LINE__, "check", parameter);
  parameter.deleteDesignatedValue();
}

// A write method tells of failure through the pool alone; what it returns does not count.
void applyParameter(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter& parameter)
{
  if (!parameter.isDesignatedValueValid()) return;
  const KyCInventoryParameter::TMethod write = parameter.getWriteMethod();
  if (write == nullptr)
  {
    kyReportParameter(pool, KY_MSG_CHANGE_NOT_IMPLEMENTED, __LINE__, "apply", parameter);
    parameter.deleteDesignatedValue();
    return;
  }
  unsigned int errorCount = pool.getErrorCount();
  write(pool, context, &parameter);
  if (pool.getErrorCount() != errorCount)
  {
    kyReportParameter(pool, KY_MSG_CANNOT_WRITE_NEW_VALUE, __LINE__, "apply", parameter);
    parameter.deleteDesignatedValue();
    return;
  }
  errorCount = pool.getErrorCount();
  parameter.adoptDesignatedValue(pool);
  if (pool.getErrorCount() != errorCount)
    kyReportParameter(pool, KY_MSG_CANNOT_ADOPT_NEW_VALUE, __LINE__, "apply", parameter);
}

void updateParameter(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter& parameter)
{
  if (parameter.getUpdateMethod() == nullptr) return;
  const unsigned int errorCount = pool.getErrorCount();
  parameter.getUpdateMethod()(pool, context, &parameter);
  if (pool.getErrorCount() != errorCount)
    kyReportParameter(pool, KY_MSG_CANNOT_UPDATE_VALUE, __LINE__, "updateParameters", parameter);
}
}    // namespace

void KyCInventoryItem::check(KyCErrorListPool& pool, KyCInventoryItem* context)
{
  kyForEachParameterBelow(*this, [&](KyCInventoryParameter& parameter) { checkParameter(pool, context, parameter); });
}

void KyCInventoryItem::apply(KyCErrorListPool& pool, KyCInventoryItem* context)
{
  kyForEachParameterBelow(*this, [&](KyCInventoryParameter& parameter) { applyParameter(pool, context, parameter); });
}

void KyCInventoryItem::updateParameters(KyCErrorListPool& pool, KyCInventoryItem* context)
{
  kyForEachParameterBelow(*this, [&](KyCInventoryParameter& parameter) { updateParameter(pool, context, parameter); });
}

void KyCInventoryItem::deleteDesignatedValues()
{
  kyForEachParameterBelow(*this, [](KyCInventoryParameter& parameter) { parameter.deleteDesignatedValue(); });
}
