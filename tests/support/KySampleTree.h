// KySampleTree.h: builds an inventory tree from a short text, and compares two trees.
//
//   KySampleTree sample("ROOT/BOARD[1] SIZE=1; BOARD[2]");
//   sample.root().getItem(KyNInventoryIDs::BOARD[2]);
//
// A test program that uses it lists ${PROJECT_SOURCE_DIR}/tests/support/KySampleTree.cpp among its sources.
#pragma once

#include <string>
#include <vector>

#include "inventory/KyCInventoryItem.h"

// The text: entries, separated by line ends or ";". Empty entries, and lines that begin with "#", are skipped. An entry
// is a path and then either any number of short parameters or one long parameter:
//
//   ROOT/BOARD[2]  SIZE=4096  NAME="I/O"  OFFSET:Float32=1.5       short: ID=value or ID:Type=value
//   ROOT/BOARD[2]  NAME  String  "I/O <fast>"  unit="mV"  modifiable  relevance=7    long: ID Type value options
//   ROOT/BOARD[3]  description="spare"                            an item with a description of its own
//
//   path     as KyCInventoryAddress::readFromString takes it. The first element of the first entry is the root; later
//            entries may repeat it or leave it out. Missing items are made, also those whose ID (a number) is not
//            predefined
//   ID       a name or a number, of one element
//   Type     Int8 Int16 Int32 Long64 UInt8 UInt16 UInt32 ULong64 Float32 Float64 String Version, or a type code such as
//            0x777 for a parameter that has no value. Without a type, "..." is a String, a number with "." a Float64, any
//            other number an Int32
//   value    a number, a dotted version, or a text in quotes, in which \" \\ \n \t and \xHH stand for characters
//   options  unit="..."  modifiable  relevance=number  description="...", in any order, behind a long parameter;
//            description="..." alone describes the item. Without one, the description is the ID's name
//
// What cannot be read or built fails the test, and is left out.
class KySampleTree
{
public:
  explicit KySampleTree(const std::string& text);
  ~KySampleTree();
  KySampleTree(const KySampleTree&) = delete;
  KySampleTree& operator=(const KySampleTree&) = delete;

  KyCInventoryItem& root() { return *m_root; }
  const KyCInventoryItem& root() const { return *m_root; }
  KyCInventoryItem* release();    // the tree is the caller's; root() may not be called any more

  // The item or parameter of an address in text form, relative to the root; "" is the root. A missing one fails the
  // test and gives null.
  KyCInventoryItem* item(const std::string& path);
  KyCInventoryParameter* parameter(const std::string& path);

private:
  KyCInventoryItem* m_root;
};

// The address that a text names.
KyCInventoryAddress kyAddress(const std::string& text);

// The first difference between two trees, such as "BOARD[2]/SIZE: value 4096, 8192"; empty when there is none. Compared
// are IDs, indices, descriptions and the order of items and parameters, and of each parameter the type, the value (to the
// bit), the unit, the modifiable flag and the relevance. The two roots count as well, what is beside and above them not.
std::string KyTreeDifference(const KyCInventoryItem& a, const KyCInventoryItem& b);
