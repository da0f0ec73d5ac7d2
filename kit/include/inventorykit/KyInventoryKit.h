// KyInventoryKit.h: everything of libKyInventoryKit.
#pragma once

#include "inventorykit/KyAddressText.h"
#include "inventorykit/KySectionFile.h"
#include "inventorykit/KyTree.h"
#include "inventorykit/KyValueText.h"
