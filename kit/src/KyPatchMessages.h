// KyPatchMessages.h: the codes of the reports about patches; their texts stand in KyPatchMessages.cpp.
//
// A new message goes to the end of its group, there and here alike: the code follows from the place. Codes are permanent.
#pragma once

enum KyPatchMessage : unsigned int
{
  // Documents
  KY_PATCH_MSG_NO_PATCH = 0x1501000,    // %1 name, %2 line, %3 what is wrong there

  // Applying
  KY_PATCH_MSG_CONFLICT = 0x1501800    // %1 address, %2 what is otherwise
};
