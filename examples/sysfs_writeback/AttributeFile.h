// AttributeFile.h: attribute files, one value each, and which parameter stands for which file.
#pragma once

#include <map>
#include <string>

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventory/KyIUpdater.h"

struct AttributeFile
{
  std::string path;     // for the system
  std::string shown;    // for people: without the directory that was searched
};

// Reads the file's value: its first line, without white space at the end.
//
// Result:  false on failure; value is then as it was.
// Errors:  MSG_CANNOT_OPEN, MSG_CANNOT_READ
bool readAttribute(KyCErrorListPool& pool, const AttributeFile& file, std::string& value);

// As above, a decimal number. Errors:  MSG_NO_NUMBER, too
bool readAttribute(KyCErrorListPool& pool, const AttributeFile& file, unsigned int& value);

// Writes the value in place, as one line in one write call, which is how the kernel wants it, and reads it back.
//
// Result:  whether the file holds the value now.
// Errors:  MSG_CANNOT_OPEN, MSG_CANNOT_WRITE, MSG_CANNOT_READ, MSG_NOT_TAKEN
bool writeAttribute(KyCErrorListPool& pool, const AttributeFile& file, const std::string& value);

// Reads a decimal number that is the whole text and fits. Reports nothing.
bool parseNumber(const std::string& text, unsigned int& number);

// The files of all parameters of a tree. It is an updater so that an update element can own it: that item is the context
// of the walks, and the methods find the files through it.
class AttributeFiles : public KyIUpdater
{
public:
  // Ownership: the file stays where it is, so a parameter's custom pointer may lead to it.
  AttributeFile* add(const KyCInventoryParameter* parameter, const AttributeFile& file);
  const AttributeFile* find(const KyCInventoryParameter* parameter) const;    // null: none

private:
  std::map<const KyCInventoryParameter*, AttributeFile> m_files;
};
