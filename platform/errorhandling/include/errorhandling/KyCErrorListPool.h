// KyCErrorListPool.h: the error context that every fallible operation takes as its first argument.
#pragma once

#include "errorhandling/KyCErrorList.h"

class KY_ERRORHANDLING_API KyCErrorListPool : public KyCErrorList
{
 public:
  KyCErrorListPool() noexcept = default;
};
