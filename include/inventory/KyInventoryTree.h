// KyInventoryTree.h: everything of libKyInventoryTree.
#pragma once

#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryBinDeSerializer.h"
#include "inventory/KyCInventoryBinSerializer.h"
#include "inventory/KyCInventoryData.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryItemFactory.h"
#include "inventory/KyCInventoryItemStream.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventory/KyCInventoryTagMap.h"
#include "inventory/KyIUpdater.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventory/KyNInventoryTree.h"
