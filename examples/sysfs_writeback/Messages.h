// Messages.h: the example's own reports, recorded into the same pools as the library's.
#pragma once

// Codes from a base that no library in the process uses. A message's code is the base plus its place in Messages.cpp.
constexpr unsigned int MSG_CANNOT_OPEN = 0x7000000;          // "%s%s": file, the system's reason
constexpr unsigned int MSG_CANNOT_READ = 0x7000001;          // "%s%s": file, the system's reason
constexpr unsigned int MSG_CANNOT_WRITE = 0x7000002;         // "%s%s%s": text, file, the system's reason
constexpr unsigned int MSG_NOT_TAKEN = 0x7000003;            // "%s%s%s": file, text, what the file holds instead
constexpr unsigned int MSG_NO_NUMBER = 0x7000004;            // "%s%s": file or parameter, text
constexpr unsigned int MSG_OUT_OF_RANGE = 0x7000005;         // "%u%u%u": value, lowest, highest
constexpr unsigned int MSG_NOT_OFFERED = 0x7000006;          // "%s%s": value, what there is
constexpr unsigned int MSG_NO_OUTPUT = 0x7000007;            // "%s": the line's direction
constexpr unsigned int MSG_NO_SUCH_PARAMETER = 0x7000008;    // "%s": address
constexpr unsigned int MSG_NO_FILE = 0x7000009;              // "%s": address

// Registers the messages' texts for as long as it lives: make one at the start of main.
class MessageTable
{
public:
  MessageTable();
  ~MessageTable();
  MessageTable(const MessageTable&) = delete;
  MessageTable& operator=(const MessageTable&) = delete;
};
