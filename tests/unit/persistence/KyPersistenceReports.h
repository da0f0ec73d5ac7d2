// KyPersistenceReports.h: the reports of storing and reading, as tests expect them.
#pragma once

#include <string>

#include "support/KyTestPool.h"

inline KyReport cannotDeserializeFile(const std::string& path)
{
  return {0x1300000, "extractInventoryTreeFromFile", "Cannot deserialize inventory data from file " + path + "."};
}
inline KyReport cannotOpenFile(const std::string& path)
{
  return {0x1300001, "readInventoryDataFromFile", "Cannot open file " + path + "."};
}
inline KyReport cannotSetPosition(const char* function)
{
  return {0x1300002, function, "Cannot set file read position."};
}
inline KyReport errorWhileReading(const std::string& path)
{
  return {0x1300003, "readInventoryDataFromFile", "Error while reading inventory data from file " + path + "."};
}
inline KyReport cannotWriteBuffer(const char* function)
{
  return {0x1300004, function, "Internal error. Kyrel Support information: Cannot write to buffer object."};
}
inline KyReport cannotRead(const char* function) { return {0x1300005, function, "Cannot read from file."}; }
inline KyReport outOfMemory(const char* function) { return {0x1300006, function, "Out of memory."}; }
inline KyReport headerSizeIncompatible(const char* size)
{
  return {0x1300007, "checkHeader",
          std::string("Inventory data file is incompatible. Kyrel Support information: "
                      "Inventory section header has incompatible size ") +
              size + " (expected 24)."};
}
inline KyReport trailerSizeIncompatible(const char* size)
{
  return {0x1300008, "checkTrailer",
          std::string("Inventory data file is incompatible. Kyrel Support information: "
                      "Inventory section trailer has incompatible size ") +
              size + " (expected 24)."};
}
inline KyReport versionIncompatible(const char* function, const char* version)
{
  return {0x1300009, function,
          std::string("Inventory data file is incompatible. Kyrel Support information: "
                      "Inventory section has incompatible version ") +
              version + " (expected 1)."};
}
inline KyReport cannotSerializeSection()
{
  return {0x130000A, "generateInventorySection",
          "Internal error. Kyrel Support information: Cannot serialize inventory tree."};
}
inline KyReport cannotDeserializeMemory()
{
  return {0x130000B, "extractInventoryTreeFromMem",
          "Internal error. Kyrel Support information: Cannot deserialize inventory data from memory."};
}
inline KyReport sectionCorrupt(const char* function) { return {0x130000C, function, "Inventory section is corrupt."}; }
inline KyReport errorWhileSeeking()
{
  return {0x130000D, "readInventoryDataFromMem", "Error while seeking inventory data in memory block."};
}
inline KyReport cannotCreateBuffer(const char* function)
{
  return {0x130000E, function, "Internal error. Kyrel Support information: Cannot create KyCBuffer object."};
}
inline KyReport cannotCreateFactory(const char* function)
{
  return {0x130000F, function,
          "Internal error. Kyrel Support information: Cannot create KyCInventoryItemFactory object."};
}
inline KyReport cannotGetPosition(const char* function)
{
  return {0x1300010, function, "Cannot get file read position."};
}
inline KyReport unitTooLong()
{
  return {0x1302000, "handleCustomParameter", "Unit serialization length exceeds limit of 100 bytes."};
}
inline KyReport cannotDeserializeParameter()
{
  return {0x1302800, "deserializeInventoryParameter", "Cannot deserialize inventory parameter."};
}
inline KyReport cannotDeserializeTree() { return {0x1302801, "deserialize", "Cannot deserialize inventory tree."}; }
inline KyReport cannotCreateSerializer(const char* function)
{
  return {0x1302802, function,
          "Internal error. Kyrel Support information: Cannot create KyCInventoryBinSerializer object."};
}
inline KyReport cannotSerializeTree() { return {0x1302803, "serialize", "Cannot serialize inventory tree."}; }
inline KyReport cannotSerializeParameter()
{
  return {0x1302804, "serializeInventoryParameter", "Cannot serialize inventory parameter."};
}
inline KyReport cannotCreateDeserializer()
{
  return {0x1302805, "deserializeInventoryParameter",
          "Internal error. Kyrel Support information: Cannot create KyCInventoryBinDeSerializer object."};
}
inline KyReport cannotAttach(const char* result)
{
  return {0x1302806, "createComposite",
          std::string("Internal error. Kyrel Support information: Cannot attach KyCComposite object. Error code: ") +
              result};
}

// Reports of the base libraries that stand in front of these.
inline KyReport allocatorOutOfMemory() { return {0x1000000, "", "Out of memory."}; }
