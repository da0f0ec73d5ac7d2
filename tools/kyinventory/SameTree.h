// SameTree.h: are two trees equal?
#pragma once

#include <string>

#include "inventory/KyCInventoryItem.h"

// Compares two trees in everything that a section stores: IDs, indices, descriptions, order, and each parameter's type,
// value (bit by bit), unit, modifiable flag and relevance. Result: empty when equal, otherwise the text form of the
// address of the first difference, with what differs there.
std::string firstDifference(const KyCInventoryItem& a, const KyCInventoryItem& b);
