// KyCheck.h: everything that is wrong with a stored tree, or may be, and where.
//
//   const KyNInventoryKit::CheckResult result = KyNInventoryKit::checkFile("rack.kyinv", {});
//   for (const KyNInventoryKit::Finding& finding : result.findings) ...
//
// Looked at are: header and trailer, and whether they agree; every record of the stored tree; what stands behind it; the
// IDs; siblings of one ID and index, and sub-items of a parameter's ID; shared data; units, texts, descriptions, nesting.
//
// A section is damaged exactly when KyCInventoryData::extractInventoryTreeFromMem takes no tree from its bytes. An error
// is what makes it so; a warning is what reads and is likely not meant; a note is worth knowing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
enum class Severity
{
  NOTE,
  WARNING,
  ERROR
};

struct Finding
{
  static constexpr std::uint64_t NOWHERE = ~std::uint64_t{0};

  Severity severity = Severity::NOTE;
  unsigned int code = 0;             // of this library, or of the inventory library for shared data
  std::uint64_t offset = NOWHERE;    // in the file, from 0
  std::string address;    // "." is the root item; of damage: what was read whole last; empty: no place in a tree
  std::string text;
  std::string remedy;
  unsigned int more = 0;    // findings of this code that are not listed; stands with the last that is
};

enum class Verdict
{
  FINE,         // no findings but notes
  FINDINGS,     // warnings, but it reads
  DAMAGED,      // no tree can be read: damaged, or without a section
  UNREADABLE    // there is no such file, it may not be read, or it is too large
};

struct CheckOptions
{
  // Listed findings of one code; 0: all.
  unsigned int mostPerCode = 20;
  unsigned int mostNotesPerCode = 3;
};

struct CheckResult
{
  std::string name;
  Verdict verdict = Verdict::FINE;
  std::vector<Finding> findings;    // in the order of the file: header or trailer, tree, shared data
  unsigned int errors = 0;          // also those that are not listed
  unsigned int warnings = 0;
  unsigned int notes = 0;
};

// Checks the section of a file ("-": standard input), or of bytes that came from one. Whatever goes wrong is a finding.
//
// Takes the error manager's listener for a moment, to learn what linking shared data warns of; warnings and errors of other
// threads go to the listener that was there meanwhile.
// Threads:    any number may check at once, but not from within a listener; and nobody sets another listener meanwhile.
// Cost:       linear in the size of the file.
KY_INVENTORYKIT_API CheckResult checkFile(const std::string& path, const CheckOptions& options);
KY_INVENTORYKIT_API CheckResult checkBytes(const std::string& bytes, const std::string& name,
                                           const CheckOptions& options);

KY_INVENTORYKIT_API const char* severityName(Severity severity);    // "error", "warning", "note"
KY_INVENTORYKIT_API const char* verdictName(Verdict verdict);       // "fine", "findings", "damaged", "unreadable"

// The results as a JSON array, one object a file: "file", "verdict", "errors", "warnings", "notes" and "findings" with
// "severity", "code" (a number), "codeText" ("0x150200A"), "offset" and "address" where there is a place, "text",
// "remedy", and "more" where findings are left out. A text that is not valid UTF-8 is {"bytes": "<base64>"}.
KY_INVENTORYKIT_API std::string checkAsJson(const std::vector<CheckResult>& results);
}    // namespace KyNInventoryKit
