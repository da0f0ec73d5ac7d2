// KyFormatMessages.h: the codes of the reports about formats and pseudonyms; their texts stand in KyFormatMessages.cpp.
//
// A new message goes to the end, there and here alike: the code follows from the place. Codes are permanent.
#pragma once

enum KyFormatMessage : unsigned int
{
  KY_FORMAT_MSG_NO_VALUE_TYPE = 0x1505000,    // %1 address, %2 type code
  KY_FORMAT_MSG_SYNTAX = 0x1505001,           // %1 format, %2 line, %3 column, %4 reason
  KY_FORMAT_MSG_CONTENT = 0x1505002,          // %1 line, %2 column, %3 address, %4 reason
  KY_FORMAT_MSG_UNKNOWN_FORMAT = 0x1505003,
  KY_FORMAT_MSG_NOT_READABLE = 0x1505004,    // %1 format
  KY_FORMAT_MSG_NO_MARKUP = 0x1505005,
  KY_FORMAT_MSG_NO_RANDOM_KEY = 0x1505006    // %1 reason
};
