// KyCompositeFactoryMessages.h: the codes of this library's reports; their texts stand in KyCompositeFactoryMessages.cpp.
//
// A new message goes to the end of its group, there and here alike: the code follows from the place.
#pragma once

enum KyCompositeFactoryMessage : unsigned int
{
  // Driving the serializers
  KY_MSG_NO_SERIALIZER = 0x01200000,
  KY_MSG_NO_DESERIALIZER = 0x01200001,
  KY_MSG_NO_BUFFER = 0x01200002,
  KY_MSG_NO_PARAMETER = 0x01200003,

  // Creating composites
  KY_MSG_CANNOT_CREATE = 0x01200800,    // %1 class id, %2 unit id
  KY_MSG_CANNOT_ATTACH = 0x01200801,    // %1 class id, %2 unit id, %3 attach's result
  KY_MSG_NOT_ATTACHED = 0x01200802,     // %1 class id, %2 unit id

  // Libraries
  KY_MSG_FACTORY_NOT_READY = 0x01201000,
  KY_MSG_NO_LIBRARY_PATH = 0x01201001,          // %1 path
  KY_MSG_CANNOT_LOAD_LIBRARY = 0x01201002,      // %1 the loader's words
  KY_MSG_LIBRARY_WITHOUT_ENTRY = 0x01201003,    // %1 path, %2 name of the function
  KY_MSG_LIBRARY_TAKEN = 0x01201004,            // %1 class id, %2 unit id
  KY_MSG_LIBRARY_NOT_FOUND = 0x01201005,        // %1 class id, %2 unit id
  KY_MSG_NO_LIBRARY_FOLDER = 0x01201006
};
