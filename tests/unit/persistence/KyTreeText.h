// KyTreeText.h: a tree field by field as lines of text, so that two trees compare and a difference can be read.
#pragma once

#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "unit/persistence/KyStoredBytes.h"

inline std::string hexOf(const KyBytes& bytes)
{
  std::ostringstream text;
  text << std::hex << std::setfill('0');
  for (unsigned char byte : bytes)
    text << std::setw(2) << static_cast<unsigned int>(byte);
  return text.str();
}

// The value; a floating-point number as its stored bits, since handing one out by value may change a signalling NaN.
inline std::string valueText(KyCErrorListPool& pool, const KyCInventoryParameter& parameter)
{
  std::ostringstream text;
  switch (parameter.getType())
  {
    case 0x111:
      text << static_cast<int>(parameter.getValue<signed char>(pool));
      break;
    case 0x112:
      text << parameter.getValue<short>(pool);
      break;
    case 0x114:
      text << parameter.getValue<int>(pool);
      break;
    case 0x118:
      text << parameter.getValue<long long>(pool);
      break;
    case 0x121:
      text << static_cast<unsigned int>(parameter.getValue<unsigned char>(pool));
      break;
    case 0x122:
      text << parameter.getValue<unsigned short>(pool);
      break;
    case 0x124:
      text << parameter.getValue<unsigned int>(pool);
      break;
    case 0x128:
      text << parameter.getValue<unsigned long long>(pool);
      break;
    case 0x214:
    case 0x218:
    {
      KyCInventoryParameter copy(parameter);
      copy.setUnit("");    // the custom part is 6 bytes then, and the value stands in front of it
      const std::size_t size = parameter.getType() & 0xF;
      text << "bits " << hexOf(firstBytes(lastBytes(storedParameter(copy), size + 6), size));
      break;
    }
    case 0x2000:
    {
      const KyCString value = parameter.getValue<KyCString>(pool);
      text << value.length() << " bytes " << hexOf(KyBytes(value.c_str(), value.c_str() + value.length()));
      break;
    }
    case 0x4000:
    {
      const KyCVersion value = parameter.getValue<KyCVersion>(pool);
      text << value.getMajor() << "." << value.getMinor() << "." << value.getMaintenance() << "." << value.getBuild();
      break;
    }
    default:
      text << "unknown type";
      break;
  }
  return text.str();
}

inline std::string parameterText(KyCErrorListPool& pool, const KyCInventoryParameter& parameter)
{
  std::ostringstream text;
  text << "parameter " << parameter.getID().getCategory() << " '" << parameter.getDescription() << "' type 0x"
       << std::hex << parameter.getType() << std::dec << " value " << valueText(pool, parameter) << " unit '"
       << parameter.getUnit() << "' modifiable " << parameter.isModifiable() << " relevance "
       << parameter.getRelevance();
  return text.str();
}

// One line per item and parameter, each with its depth; as deep as the tree is.
inline std::vector<std::string> treeText(const KyCInventoryItem* root)
{
  KyTestPool pool;
  std::vector<std::string> lines;
  unsigned int depth = 0;
  const KyCInventoryItem* item = root;
  while (item != nullptr)
  {
    std::ostringstream line;
    line << depth << " item " << item->getID().getCategory() << "[" << item->getID().getIndex() << "] '"
         << item->getDescription() << "'";
    lines.push_back(line.str());
    for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
      lines.push_back(std::to_string(depth) + " " + parameterText(pool, *p));

    if (item->getFirstSubItem() != nullptr)
    {
      item = item->getFirstSubItem();
      ++depth;
      continue;
    }
    while (item != root && item->getNext() == nullptr)
    {
      item = item->getParent();
      --depth;
    }
    item = item != root ? item->getNext() : nullptr;
  }
  return lines;
}
