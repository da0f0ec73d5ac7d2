// KyCStderrListener.h: the default listener.
#pragma once

#include "errorhandling/KyIErrorListener.h"

// Writes each report as one line to standard error, such as
//   error 0x1300001 in readInventoryDataFromFile (line 57): Cannot open file a.inv.
// Control characters in the texts come out as \xNN: a file's name can neither forge a line nor steer a terminal.
class KyCStderrListener : public KyIErrorListener
{
public:
  void onError(const KyErrorEntry& entry) override;
  void onWarning(const KyErrorEntry& entry) override;
};
