// KySessionMessages.h: the codes of reports about sessions; their texts stand in KySessionMessages.cpp.
//
// A new message goes to the end: the code follows from the place. Codes are permanent.
#pragma once

enum KySessionMessage : unsigned int
{
  KY_SESSION_MSG_OPEN_QUOTE = 0x1503000,         // %1 the quote
  KY_SESSION_MSG_NO_ITEM = 0x1503001,            // %1 address, %2 what may be meant
  KY_SESSION_MSG_IS_PARAMETER = 0x1503002,       // %1 address
  KY_SESSION_MSG_NO_PARAMETER = 0x1503003,       // %1 address, %2 what may be meant
  KY_SESSION_MSG_IS_ITEM = 0x1503004,            // %1 address
  KY_SESSION_MSG_STORED_ELSEWHERE = 0x1503005    // %1 file
};
