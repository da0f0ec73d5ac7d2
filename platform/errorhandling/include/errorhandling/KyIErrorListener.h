// KyIErrorListener.h: receives what the error manager reports.
#pragma once

#include "errorhandling/KyCErrorList.h"

// Derive from it to receive reports. Owned by whoever installs it with KyCErrorManager::setListener. The manager calls it
// from whichever thread reports, one call at a time: other threads' reports wait meanwhile. A call may record errors,
// send lists and warnings and replace the listener itself; it must not wait for another thread that reports.
class KY_ERRORHANDLING_API KyIErrorListener
{
public:
  virtual ~KyIErrorListener();

  // Called: once per error, in the order of recording, when its list is sent. The entry holds for the call alone.
  virtual void onError(const KyErrorEntry& entry) = 0;

  // Called: once per warning, when it is sent. The entry holds for the call alone.
  virtual void onWarning(const KyErrorEntry& entry) = 0;
};
