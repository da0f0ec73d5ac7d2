// KyResText.h: a message table as it is registered with the error manager.
#pragma once

// Group g holds the messages n with groupBoundaries[g] <= n < groupBoundaries[g+1]; message n of group g has the code
// codeBase + g * 0x800 + (n - groupBoundaries[g]). Four 32-bit fields on x86. A constant object of the library whose
// messages these are; read by any thread while it is registered.
struct KyResText
{
  const char* const* messages;            // groupBoundaries[groupCount] texts with the placeholders %1 .. %9; not null
  const unsigned int* groupBoundaries;    // groupCount + 1 numbers, rising, the last one the number of texts
  unsigned int groupCount;
  unsigned int codeBase;
};
