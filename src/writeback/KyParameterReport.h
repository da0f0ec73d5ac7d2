// KyParameterReport.h: how the operations of this folder report on a parameter.
#pragma once

#include "inventory/KyCInventoryParameter.h"
#include "tree/KyPlaceText.h"

// Records the message with the parameter's address as its one argument; empty for a parameter that hangs nowhere.
inline void kyReportParameter(KyCErrorListPool& pool, unsigned int code, unsigned int line, const char* function,
                              const KyCInventoryParameter& parameter)
{
  pool.setError(code, line, function, "%s", KyPlaceText(parameter).c_str());
}
