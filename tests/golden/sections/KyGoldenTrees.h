// KyGoldenTrees.h: the trees whose stored sections are committed in this folder.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "inventory/KyCInventoryItem.h"

// What a stored unit loses makes two forms of a tree: as it is given to be stored, and as it is read back.
enum class KyForm
{
  GIVEN,
  READ
};

struct KyGoldenTree
{
  const char* name;    // of the file, without ".kyinv"
  const char* about;
  std::unique_ptr<KyCInventoryItem> (*make)(KyCErrorListPool& pool, KyForm form);    // null: a section without data
};

const std::vector<KyGoldenTree>& kyGoldenTrees();

// The section of a tree; errors go to the pool.
std::vector<unsigned char> kyStoredSection(KyCErrorListPool& pool, KyCInventoryItem* root);
