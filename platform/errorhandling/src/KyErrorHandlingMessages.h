// KyErrorHandlingMessages.h: the message catalogue of libKyErrorHandling itself, code base 0x01000000.
#pragma once

#include "errorhandling/KyResText.h"

// "Out of memory."
constexpr unsigned int KY_MSG_ERRORHANDLING_OUT_OF_MEMORY = 0x1000000;
// "Cannot delete an error list that the error manager did not create."    a warning
constexpr unsigned int KY_MSG_ERRORHANDLING_FOREIGN_LIST = 0x1000001;

// Always among the tables that codes are looked up in; nobody has to register it.
extern const KyResText kyErrorHandlingMessages;
