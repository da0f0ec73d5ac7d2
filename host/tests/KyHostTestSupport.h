// KyHostTestSupport.h: what the tests of the host library share.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "inventory/KyInventoryTree.h"
#include "support/KyFiles.h"
#include "support/KyTestPool.h"

using KyTree = std::unique_ptr<KyCInventoryItem>;

inline std::string valueText(KyCErrorListPool& pool, const KyCInventoryParameter& parameter)
{
  switch (parameter.getType())
  {
    case KyCParam::TYPE_STRING:
      return "\"" + std::string(parameter.getValue<const char*>(pool)) + "\"";
    case KyCParam::TYPE_VERSION:
      return parameter.getValue<KyCVersion>(pool).toString().c_str();
    case KyCParam::TYPE_UINT32:
      return std::to_string(parameter.getValue<unsigned int>(pool));
    case KyCParam::TYPE_ULONG64:
      return std::to_string(parameter.getValue<unsigned long long>(pool));
    case KyCParam::TYPE_FLOAT64:
    {
      std::ostringstream text;
      text << parameter.getValue<double>(pool);
      return text.str();
    }
    default:
      return "?";
  }
}

// Every item and parameter below the given item, one line each: "CPU[2]/L1_CACHE" and "CPU[2]/L1_CACHE/SIZE ULong64
// 32768 B". An item's parameters stand before its sub-items.
inline void listTree(KyCErrorListPool& pool, const KyCInventoryItem& item, std::vector<std::string>& lines)
{
  for (const KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0); parameter != nullptr;
       parameter = parameter->getNext())
  {
    std::string line = std::string(parameter->getAddress().toString().c_str()) + " " + parameter->getTypeAsCString() +
                       " " + valueText(pool, *parameter);
    if (*parameter->getUnit() != '\0') line += std::string(" ") + parameter->getUnit();
    lines.push_back(line);
  }
  for (const KyCInventoryItem* sub = item.getFirstSubItem(); sub != nullptr; sub = sub->getNext())
  {
    lines.push_back(sub->getAddress().toString().c_str());
    listTree(pool, *sub, lines);
  }
}

inline std::vector<std::string> linesOf(const KyCInventoryItem& root)
{
  KyTestPool pool;
  std::vector<std::string> lines;
  listTree(pool, root, lines);
  return lines;
}

// Those of the lines that begin with the given text.
inline std::vector<std::string> linesOf(const KyCInventoryItem& root, const std::string& start)
{
  std::vector<std::string> found;
  for (const std::string& line : linesOf(root))
    if (line.compare(0, start.size(), start) == 0) found.push_back(line);
  return found;
}

inline bool hasLine(const KyCInventoryItem& root, const std::string& line)
{
  for (const std::string& found : linesOf(root))
    if (found == line) return true;
  return false;
}

// The section that stores the tree.
inline std::string sectionOf(KyCInventoryItem& root)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  EXPECT_NO_REPORTS(pool);
  return std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}

inline KyTree treeOf(const std::string& section)
{
  KyTestPool pool;
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, reinterpret_cast<const unsigned char*>(section.data()),
                                                static_cast<unsigned int>(section.size()), root);
  EXPECT_NO_REPORTS(pool);
  return KyTree(root);
}

// Whether the parameter is the speed of a network link that is not up.
inline bool isSpeedOfNoLink(const KyCInventoryParameter& parameter)
{
  if (!(parameter.getID() == KyNInventoryIDs::SPEED) || parameter.getParent() == nullptr) return false;
  const KyCInventoryParameter* const status = parameter.getParent()->getParameter(KyNInventoryIDs::STATUS);
  KyTestPool pool;
  return status != nullptr && valueText(pool, *status) != "\"up\"";
}

// What holds for every inventory: predefined IDs that are no fillers, descriptions that are their names, texts that
// tell something, numbers that are no placeholders, nothing modifiable.
inline void expectSoundTree(const KyCInventoryItem& item)
{
  EXPECT_STRNE(item.getID().getCategoryNameCStr(), "") << item.getAddress().toString().c_str();
  EXPECT_STREQ(item.getDescription(), item.getID().getCategoryNameCStr());
  for (const KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0); parameter != nullptr;
       parameter = parameter->getNext())
  {
    KyTestPool pool;
    const std::string place = parameter->getAddress().toString().c_str();
    EXPECT_STRNE(parameter->getID().getCategoryNameCStr(), "") << place;
    EXPECT_STREQ(parameter->getDescription(), parameter->getID().getCategoryNameCStr()) << place;
    EXPECT_FALSE(parameter->isModifiable()) << place;
    const std::string value = valueText(pool, *parameter);
    EXPECT_NE(value, "?") << place << " has a type that the mapping does not use";
    EXPECT_NE(value, "\"\"") << place;
    for (const char c : value)
      EXPECT_GE(static_cast<unsigned char>(c), 0x20) << place;
    const bool mayBeZero = parameter->getID() == KyNInventoryIDs::ID || parameter->getID() == KyNInventoryIDs::PORT ||
                           parameter->getID() == KyNInventoryIDs::TEMPERATURE || isSpeedOfNoLink(*parameter);
    if (!mayBeZero)
    {
      EXPECT_NE(value, "0") << place;
    }
    if (parameter->getType() == KyCParam::TYPE_ULONG64)
    {
      EXPECT_STRNE(parameter->getUnit(), "") << place;
    }
  }
  for (const KyCInventoryItem* sub = item.getFirstSubItem(); sub != nullptr; sub = sub->getNext())
    expectSoundTree(*sub);
}
