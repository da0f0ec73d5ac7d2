// KyExplain.h: what a message code means, and what to do about it.
//
//   KyNInventoryKit::Explanation explanation;
//   if (KyNInventoryKit::explain(0x1300005, explanation)) std::puts(explanation.remedy);
//
// The explanations are those of docs/error-codes.md, for every library of the house, whether it is loaded or not.
#pragma once

#include <string>
#include <vector>

#include "errorhandling/KyCErrorListPool.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
// All texts hold as long as the library is loaded, and are never null.
struct Explanation
{
  unsigned int code;
  const char* library;      // "libKyInventoryTree"
  const char* text;         // of the message, with its placeholders %1 ...
  const char* reporters;    // the functions that report it
  const char* cause;
  const char* remedy;    // empty when there is nothing to do
};

// Result:     false when no message has this code; the explanation is then left alone.
// Cost:       logarithmic in the number of messages.
KY_INVENTORYKIT_API bool explain(unsigned int code, Explanation& explanation);

// Every explanation, ordered by code.
KY_INVENTORYKIT_API std::vector<Explanation> allExplanations();

// The code that a text names: a number, decimal or with 0x in front, or any text that has one with 0x in front in
// it, such as a whole line of reports: "Cannot read from file. (0x1300005, readInventoryDataFromFile)". Of several
// codes in a text the first one counts.
//
// Result:     0 on failure.
// Errors:     0x150400C  there is none
KY_INVENTORYKIT_API unsigned int readCode(KyCErrorListPool& pool, const std::string& text);

// As readCode, for a code that is explained.
//
// Result:     false on failure; the explanation is then left alone.
// Errors:     also 0x150400D  no message has the code; the report names the one that was meant, when "0x" was left out
KY_INVENTORYKIT_API bool explainText(KyCErrorListPool& pool, const std::string& text, Explanation& explanation);
}    // namespace KyNInventoryKit
