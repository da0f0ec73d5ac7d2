// KyPrintAddress.h: a failing check shows addresses as their text.
#pragma once

#include <ostream>

#include "inventory/KyCInventoryAddress.h"

inline void PrintTo(const KyCInventoryAddress& address, std::ostream* out)
{
  *out << '"' << address.toString().c_str() << '"';
}
