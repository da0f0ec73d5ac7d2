// KyLabels.h: finds in a text what is called an identifier there: "S/N AB12", "Asset Tag: 0815", "hostname=rack7".
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace KyNInventoryKit
{
// The word behind a label. Words such as "none" or "of", and what a serial port is set to, are left out.
struct LabelledWord
{
  std::size_t begin;
  std::size_t length;
  bool isHost;    // otherwise a serial number, an asset tag or a UUID
};

// In the order of the text, none overlapping. See KyAnonymize.h for the labels.
//
// Cost:       linear.
std::vector<LabelledWord> labelledWords(std::string_view text);
}    // namespace KyNInventoryKit
