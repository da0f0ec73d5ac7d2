// KyInventoryKit.h: everything of libKyInventoryKit.
//
// The kit works with the C++ library's strings and containers: with no memory left, any of its operations may throw
// std::bad_alloc, or report what the libraries below report. No block is lost then, the trees that were given can be
// walked, stored and deleted (they may be changed in part), and a file is the old or the new one.
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
