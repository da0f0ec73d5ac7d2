// KyKitMessages.h: the codes of this library's reports; their texts stand in KyKitMessages.cpp.
//
// A new message goes to the end of its group, there and here alike: the code follows from the place. Codes are permanent.
#pragma once

enum KyKitMessage : unsigned int
{
  // Files
  KY_KIT_MSG_CANNOT_READ = 0x1500000,          // %1 file, %2 reason
  KY_KIT_MSG_IS_FOLDER = 0x1500001,            // %1 file
  KY_KIT_MSG_NO_SECTION = 0x1500002,           // %1 file
  KY_KIT_MSG_CANNOT_WRITE = 0x1500003,         // %1 file, %2 reason
  KY_KIT_MSG_DANGLING_LINK = 0x1500004,        // %1 file
  KY_KIT_MSG_CANNOT_KEEP_OWNER = 0x1500005,    // %1 file, %2 reason
  KY_KIT_MSG_EXISTS = 0x1500006,               // %1 file
  KY_KIT_MSG_NOT_EQUAL = 0x1500007,            // %1 address and what differs there
  KY_KIT_MSG_OUT_OF_MEMORY = 0x1500008,
  KY_KIT_MSG_NO_ORDINARY_FILE = 0x1500009,    // %1 file

  // Addresses and values
  KY_KIT_MSG_NO_SUCH_ID = 0x1500800,           // %1 name, %2 " Did you mean ...?" or nothing
  KY_KIT_MSG_NO_ADDRESS = 0x1500801,           // %1 text, %2 what is wrong where
  KY_KIT_MSG_NOT_ONE_ELEMENT = 0x1500802,      // %1 text
  KY_KIT_MSG_NO_VALUE = 0x1500803,             // %1 text, %2 type, %3 what the type takes
  KY_KIT_MSG_TYPE_HAS_NO_VALUES = 0x1500804    // %1 type code
};
