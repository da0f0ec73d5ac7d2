// KyTreeModel.h: a second opinion on look-ups through friends, on merging and on copying: nested lists, searched from
// their start, written to be obviously right and not to be fast.
//
// A test program that uses it has src/ among its include folders and lists tests/support/KyTreeModel.cpp.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "inventory/KyCInventoryItem.h"
#include "support/KyTestPool.h"

struct KyModelItem;

using KyModelPtr = std::unique_ptr<KyModelItem>;
using KyModelElement = std::pair<unsigned int, unsigned int>;    // ID and index
using KyModelPath = std::vector<KyModelElement>;

struct KyModelItem
{
  struct TParameter
  {
    unsigned int id;
    int value;
  };

  explicit KyModelItem(KyModelElement ownElement) : element(ownElement) {}

  KyModelElement element;
  std::vector<TParameter> parameters;
  std::vector<KyModelPtr> subItems;
  KyModelItem* parent = nullptr;
  KyModelItem* other = nullptr;    // the friend

  KyModelItem* append(KyModelPtr item);
  KyModelPtr takeFirst();
  KyModelItem* getItem(const KyModelPath& path);
  const TParameter* getParameter(const KyModelPath& path);
  std::string address() const;    // "" for a root
};

// What a merge or a copy leaves behind, besides the trees.
struct KyModelOutcome
{
  std::vector<KyReport> reports;
  std::vector<KyModelPtr> givenUp;    // in neither tree, and not destroyed
};

// Both have a target and a source.
void modelMerge(KyModelOutcome& outcome, KyModelItem& target, KyModelPtr source, unsigned int flags);
KyModelPtr modelCopy(KyModelOutcome& outcome, const KyModelItem& original);

// Makes the tree of a model, with its friends, whatever its IDs, and tells which item stands for which.
using KyModelMap = std::map<const KyModelItem*, KyCInventoryItem*>;
KyCInventoryItem* buildModel(const KyModelItem& model, KyModelMap& items);
KyCInventoryItem* buildModel(const KyModelItem& model);
