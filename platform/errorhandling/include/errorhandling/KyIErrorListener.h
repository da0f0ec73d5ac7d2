// KyIErrorListener.h: receives what the error manager reports.
#pragma once

#include "errorhandling/KyCErrorList.h"

class KY_ERRORHANDLING_API KyIErrorListener
{
 public:
  virtual ~KyIErrorListener();
  virtual void onError(const KyErrorEntry& entry) = 0;
  virtual void onWarning(const KyErrorEntry& entry) = 0;
};
