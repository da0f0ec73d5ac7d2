// KyInventoryKit.h: everything of libKyInventoryKit.
//
// The kit works with the C++ library's strings and containers: with no memory left, any of its operations may throw
// std::bad_alloc, or report what the libraries below report. No block is lost then, the trees that were given can be
// walked, stored and deleted (they may be changed in part), and a file is the old or the new one.
//
// Threads: all of it may run in several threads at once, each with pools, trees, sessions and other objects of its own. What
// stands in a tree (a Node, a Difference) counts as that tree, and a tree is one thread's at a time, for looking at it, too:
// looking up makes indexes. Nothing here starts a thread or keeps anything between two calls.
#pragma once

#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyAnonymize.h"
#include "inventorykit/KyCheck.h"
#include "inventorykit/KyDiff.h"
#include "inventorykit/KyEdit.h"
#include "inventorykit/KyExplain.h"
#include "inventorykit/KyFind.h"
#include "inventorykit/KyFormats.h"
#include "inventorykit/KyIDs.h"
#include "inventorykit/KyImage.h"
#include "inventorykit/KyInspect.h"
#include "inventorykit/KyLookUp.h"
#include "inventorykit/KyPatch.h"
#include "inventorykit/KySectionFile.h"
#include "inventorykit/KySession.h"
#include "inventorykit/KyStreamReader.h"
#include "inventorykit/KyTree.h"
#include "inventorykit/KyValueText.h"
