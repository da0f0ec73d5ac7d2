// KyDumpTest.h: what the tests of the dump share: a root to build on, and its dump as a string to compare.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "inventory/KyCInventoryItemStream.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyTestPool.h"

// The option bits, by their numbers: these are what callers pass, so the tests hold them.
class KyDumpTest : public ::testing::Test
{
public:
  KyTestPool pool;
  KyCInventoryItem root{pool, KyNInventoryIDs::ROOT, "ROOT"};

  std::string dump(int options, int depth = 0) { return dump(root, options, depth); }

  std::string dump(const KyCInventoryItem& item, int options, int depth = 0)
  {
    const KyCString text = item.toString(pool, options, depth);
    return std::string(text.c_str(), text.length());
  }

  // A sub-item of the given item, whose ID may be one without a name.
  KyCInventoryItem* addItem(KyCInventoryItem& parent, const KyCInventoryAddress& id, const char* description)
  {
    auto* item = new KyCInventoryItem(pool, id, description);
    EXPECT_EQ(parent.addItem(KyNInventoryIDs::THIS_NODE, item), &parent);
    return item;
  }

  template <typename T>
  KyCInventoryParameter* addParameter(KyCInventoryItem& item, const KyCInventoryAddress& id, const char* description,
                                      const T& value, const char* unit = "", bool modifiable = false,
                                      unsigned int relevance = 0)
  {
    auto* parameter = new KyCInventoryParameter(pool, id, description, value, unit, modifiable, relevance);
    EXPECT_EQ(item.addParameter(pool, KyNInventoryIDs::THIS_NODE, parameter), &item);
    return parameter;
  }

  // The value of a string parameter as it stands in a dump of nothing else.
  std::string dumpValue(const char* value, int options = 0) { return dumpValue(KyCString(value), options); }

  std::string dumpValue(const KyCString& value, int options = 0)
  {
    KyCInventoryItem holder(pool, KyNInventoryIDs::ROOT, "ROOT");
    addParameter(holder, KyNInventoryIDs::NAME, "NAME", value);
    const int valueLineOnly = 0x1 | 0x10 | 0x80 | 0x1000 | 0x2000 | 0x8000 | 0x20000 | 0x40000 | 0x80000;
    return dump(holder, valueLineOnly | options);
  }
};
