// KyEditMessages.h: the codes of reports about changing, finding and explaining; their texts stand in
// KyEditMessages.cpp.
//
// A new message goes to the end, there and here alike: the code follows from the place. Codes are permanent.
#pragma once

enum KyEditMessage : unsigned int
{
  // Changing
  KY_EDIT_MSG_DOES_NOT_EXIST =
      0x1504000,    // %1 address, %2 item, %3 what it has not, %4 " Did you mean ...?" or nothing
  KY_EDIT_MSG_NAMES_SEVERAL = 0x1504001,    // %1 address, %2 number
  KY_EDIT_MSG_ROOT_STAYS = 0x1504002,
  KY_EDIT_MSG_ID_TAKEN = 0x1504003,         // %1 address, %2 new ID, %3 parent item
  KY_EDIT_MSG_OTHER_TYPE = 0x1504004,       // %1 address, %2 its type, %3 type asked for
  KY_EDIT_MSG_IS_ITEM = 0x1504005,          // %1 address
  KY_EDIT_MSG_UNIT_TOO_LONG = 0x1504006,    // %1 unit, %2 bytes
  KY_EDIT_MSG_IS_PARAMETER = 0x1504007,     // %1 address

  // Finding
  KY_EDIT_MSG_NOT_A_PATTERN = 0x1504008,        // %1 text, %2 what is wrong where
  KY_EDIT_MSG_NO_ID_MATCHES = 0x1504009,        // %1 element
  KY_EDIT_MSG_NOT_A_CONDITION = 0x150400A,      // %1 text, %2 what is wrong where
  KY_EDIT_MSG_NOT_AN_EXPRESSION = 0x150400B,    // %1 text, %2 what is wrong where

  // Explaining
  KY_EDIT_MSG_NOT_A_CODE = 0x150400C,     // %1 text
  KY_EDIT_MSG_NO_SUCH_CODE = 0x150400D    // %1 code, %2 " Did you mean ...?" or nothing
};
