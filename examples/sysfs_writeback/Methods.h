// Methods.h: the check, write and update methods of the attribute parameters.
//
// All have the signature KyCInventoryParameter::TMethod. What they report goes into the pool of the walk that calls
// them; the walk adds a report of its own.
#pragma once

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"

// Check methods: false vetoes the pending value, and a report says why. The parameter's relative address names the
// parameter beside it that the answer depends on, if any.
bool checkBrightness(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
bool checkDuty(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
bool checkDirection(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
bool checkOutput(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
bool checkFrequencyMin(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
bool checkFrequencyMax(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
bool checkGovernor(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);

// Write methods: the pending value into the file that the parameter's custom pointer leads to. A report, and not the
// result, tells the library that it failed.
bool writeNumber(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
bool writeText(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);

// Update methods: the file's value into the parameter. A parameter with an update method has no custom pointer; the file
// is found through the context, an item whose updater is the AttributeFiles.
bool updateNumber(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
bool updateText(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);
