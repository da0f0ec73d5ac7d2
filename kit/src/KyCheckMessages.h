// KyCheckMessages.h: the codes of findings, and of reports about sections in images; their texts and remedies stand in
// KyCheckMessages.cpp.
//
// A new message goes to the end of its group, there and here alike: the code follows from the place. Codes are permanent.
#pragma once

enum KyCheckMessage : unsigned int
{
  // Findings
  KY_CHECK_MSG_STREAM_DAMAGED = 0x1502000,    // %1 reason, %2 what was read last
  KY_CHECK_MSG_STREAM_VERSION = 0x1502001,    // %1 found
  KY_CHECK_MSG_NO_TREE = 0x1502002,
  KY_CHECK_MSG_RECORD_SIZE = 0x1502003,         // %1 header or trailer, %2 found
  KY_CHECK_MSG_RECORD_VERSION = 0x1502004,      // %1 header or trailer, %2 found
  KY_CHECK_MSG_BEYOND_FILE = 0x1502005,         // %1 header or trailer, %2 needed, %3 there
  KY_CHECK_MSG_RECORD_MISSING = 0x1502006,      // %1 header or trailer
  KY_CHECK_MSG_RECORDS_DISAGREE = 0x1502007,    // %1 field, %2 of the header, %3 of the trailer
  KY_CHECK_MSG_TWO_SECTIONS = 0x1502008,
  KY_CHECK_MSG_BYTES_BEHIND_TREE = 0x1502009,    // %1 how many
  KY_CHECK_MSG_UNKNOWN_ID = 0x150200A,           // %1 ID
  KY_CHECK_MSG_DUPLICATE_ITEM = 0x150200B,
  KY_CHECK_MSG_SAME_NAME = 0x150200C,            // %1 ID
  KY_CHECK_MSG_SHARED_INDEX_TYPE = 0x150200D,    // %1 type
  KY_CHECK_MSG_UNIT_AT_LIMIT = 0x150200E,
  KY_CHECK_MSG_UNIT_ZERO_BYTE = 0x150200F,
  KY_CHECK_MSG_MODIFIABLE_BYTE = 0x1502010,       // %1 byte
  KY_CHECK_MSG_NOT_UTF8 = 0x1502011,              // %1 value, unit or description
  KY_CHECK_MSG_OTHER_DESCRIPTION = 0x1502012,     // %1 name of the ID
  KY_CHECK_MSG_NEAR_NESTING_LIMIT = 0x1502013,    // %1 levels
  KY_CHECK_MSG_LONG_RECORD = 0x1502014,           // %1 header or trailer, %2 size
  KY_CHECK_MSG_HEADER_ELSEWHERE = 0x1502015,
  KY_CHECK_MSG_READERS_DISAGREE = 0x1502016,    // %1 what the library reports
  KY_CHECK_MSG_START_IS_SOUND = 0x1502017,
  KY_CHECK_MSG_START_IS_DAMAGED = 0x1502018,

  // Sections in images
  KY_CHECK_MSG_TOO_LARGE = 0x1502800,           // %1 file
  KY_CHECK_MSG_HAS_SECTION = 0x1502801,         // %1 file, %2 start or end
  KY_CHECK_MSG_NO_SECTION_THERE = 0x1502802,    // %1 file, %2 start or end
  KY_CHECK_MSG_NOT_READ_BACK = 0x1502803,       // %1 file, %2 start or end
  KY_CHECK_MSG_CANNOT_BE_FOUND = 0x1502804,     // %1 file, %2 start or end, %3 what is damaged, and where
  KY_CHECK_MSG_NOT_BOUNDED = 0x1502805          // %1 file, %2 offset, %3 header or trailer, %4 what stands there
};

// What to do about a finding, whatever library its code is from; "" for a code that is not a finding's.
const char* kyRemedyOf(unsigned int code);
