// TreeText.h: prints the text dump of a tree piece by piece.
#pragma once

#include "Output.h"
#include "inventorykit/KyTree.h"

// The text of KyCInventoryItem::toString, byte by byte, in pieces of a few parameters: the first lines are there at once
// and the whole text is never held. Ends early when nobody reads any more.
//
//   options   the option mask of the dump
//   indent    levels by which everything is indented
//
// Result:  the exit code, after a message when it is not EXIT_OK. The output is finished.
int printTree(Output& out, const KyCInventoryItem& item, int options, int indent);

// As printTree, for one parameter.
int printParameter(Output& out, const KyCInventoryParameter& parameter, int options, int indent);
