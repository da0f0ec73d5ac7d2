// KyRegisteredText.h: what the error manager knows of a code at the moment.
#pragma once

#include <string>

#include "errorhandling/KyErrorHandling.h"

// The text registered for a code, with its placeholders as they are; "Message 0x..." while no table has the code.
inline std::string registeredText(unsigned int code)
{
  KyCErrorListPool pool;
  pool.setError(code, 1, "registeredText", nullptr);
  return pool.getEntry(0).text;
}
