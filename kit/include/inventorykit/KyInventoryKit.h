// KyInventoryKit.h: everything of libKyInventoryKit.
#pragma once

#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyCheck.h"
#include "inventorykit/KyDiff.h"
#include "inventorykit/KyEdit.h"
#include "inventorykit/KyExplain.h"
#include "inventorykit/KyFind.h"
#include "inventorykit/KyIDs.h"
#include "inventorykit/KyImage.h"
#include "inventorykit/KyInspect.h"
#include "inventorykit/KyLookUp.h"
#include "inventorykit/KyPatch.h"
#include "inventorykit/KySectionFile.h"
#include "inventorykit/KyStreamReader.h"
#include "inventorykit/KyTree.h"
#include "inventorykit/KyValueText.h"
