// KyCompositeMessages.h: the codes of this library's reports; their texts stand in KyCompositeMessages.cpp.
//
// A new message goes to the end of its group, there and here alike: the code follows from the place.
#pragma once

enum KyCompositeMessage : unsigned int
{
  // Strings and buffers
  KY_MSG_TEXT_TOO_LONG = 0x01100000,        // %1 length
  KY_MSG_BUFFER_TOO_LARGE = 0x01100001,     // %1 bytes held, %2 bytes more
  KY_MSG_BUFFER_NULL = 0x01100002,          // %1 bytes
  KY_MSG_BUFFER_FLAG = 0x01100003,          // %1 flag
  KY_MSG_BUFFER_SCALAR = 0x01100004,        // %1 size
  KY_MSG_BUFFER_POSITION = 0x01100005,      // %1 position
  KY_MSG_BUFFER_WRITE = 0x01100006,         // %1 bytes, %2 position, %3 bytes held
  KY_MSG_BUFFER_READ = 0x01100007,          // %1 bytes, %2 position, %3 bytes held
  KY_MSG_BUFFER_INCREMENT = 0x01100008,     // %1 write position, %2 bytes, %3 bytes allocated

  // Parameters
  KY_MSG_PARAM_READ_TYPE = 0x01100800,      // %1 id, %2 its type, %3 type asked for
  KY_MSG_PARAM_WRITE_TYPE = 0x01100801,     // %1 id, %2 its type, %3 type given
  KY_MSG_PARAM_UNKNOWN_TYPE = 0x01100802,   // %1 id, %2 type code

  // Composites
  KY_MSG_PARAM_NULL = 0x01101000,           // %1 class id, %2 unit id
  KY_MSG_PARAM_OWNED = 0x01101001,          // %1 id, %2 class id, %3 unit id
  KY_MSG_PARAM_DUPLICATE = 0x01101002       // %1 id, %2 class id, %3 unit id

  // Serializer and deserializer: from 0x01101800 on
};
