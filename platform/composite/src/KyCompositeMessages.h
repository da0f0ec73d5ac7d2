// KyCompositeMessages.h: the codes of this library's reports; their texts stand in KyCompositeMessages.cpp.
//
// A new message goes to the end of its group, there and here alike: the code follows from the place.
#pragma once

enum KyCompositeMessage : unsigned int
{
  // Strings and buffers
  KY_MSG_TEXT_TOO_LONG = 0x01100000,       // %1 length
  KY_MSG_BUFFER_TOO_LARGE = 0x01100001,    // %1 bytes held, %2 bytes more
  KY_MSG_BUFFER_NULL = 0x01100002,         // %1 bytes
  KY_MSG_BUFFER_FLAG = 0x01100003,         // %1 flag
  KY_MSG_BUFFER_SCALAR = 0x01100004,       // %1 size
  KY_MSG_BUFFER_POSITION = 0x01100005,     // %1 position
  KY_MSG_BUFFER_WRITE = 0x01100006,        // %1 bytes, %2 position, %3 bytes held
  KY_MSG_BUFFER_READ = 0x01100007,         // %1 bytes, %2 position, %3 bytes held
  KY_MSG_BUFFER_INCREMENT = 0x01100008,    // %1 write position, %2 bytes, %3 bytes allocated

  // Parameters
  KY_MSG_PARAM_READ_TYPE = 0x01100800,       // %1 id, %2 its type, %3 type asked for
  KY_MSG_PARAM_WRITE_TYPE = 0x01100801,      // %1 id, %2 its type, %3 type given
  KY_MSG_PARAM_UNKNOWN_TYPE = 0x01100802,    // %1 id, %2 type code

  // Composites
  KY_MSG_PARAM_NULL = 0x01101000,         // %1 class id, %2 unit id
  KY_MSG_PARAM_OWNED = 0x01101001,        // %1 id, %2 class id, %3 unit id
  KY_MSG_PARAM_DUPLICATE = 0x01101002,    // %1 id, %2 class id, %3 unit id

  // Serializer and deserializer
  KY_MSG_SERIALIZER_NOT_READY = 0x01101800,
  KY_MSG_DESERIALIZER_NOT_READY = 0x01101801,
  KY_MSG_NESTED_TOO_DEEP = 0x01101802,       // %1 levels allowed
  KY_MSG_UNKNOWN_VALUE_TYPE = 0x01101803,    // %1 id, %2 description, %3 type code
  KY_MSG_STREAM_TOO_LARGE = 0x01101804,
  KY_MSG_STREAM_EMPTY = 0x01101805,
  KY_MSG_STREAM_VERSION = 0x01101806,       // %1 version found, %2 version known
  KY_MSG_STREAM_DAMAGED = 0x01101807,       // %1 offset from the start of the stream, %2 what is wrong there
  KY_MSG_CUSTOM_PARAM_NULL = 0x01101808,    // %1 id
  KY_MSG_CUSTOM_PARAM_TYPE = 0x01101809,    // %1 id, %2 type code found, %3 type code asked for
  KY_MSG_REPEATED_ID = 0x0110180A           // %1 class id, %2 unit id, %3 parameter id
};
