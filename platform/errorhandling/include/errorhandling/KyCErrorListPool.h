// KyCErrorListPool.h: the error context that every fallible operation takes as its first argument.
#pragma once

#include "errorhandling/KyCErrorList.h"

// An error list, under the name by which operations ask for it. Made by anyone, on the stack too; used by one thread at
// a time.
class KY_ERRORHANDLING_API KyCErrorListPool : public KyCErrorList
{
public:
  KyCErrorListPool() noexcept = default;
};
