// KyCheckMessages.cpp: what checks find, registered while the library is loaded, and what to do about it.
#include "KyCheckMessages.h"

#include "KyKitMessages.h"
#include "errorhandling/KyCMessageTable.h"

namespace
{
const char* const s_messages[] = {
    // Findings
    "The stored tree is damaged: %1; %2.",
    "The stored tree is of version %1; only version 1 can be read.",
    "The section holds no tree: its data size is 0.",
    "The %1 gives its own size as %2 bytes; 24 are the least.",
    "The %1 is of version %2; only version 1 can be read.",
    "By the %1, %2 bytes are needed; the file has %3.",
    "The %1 of the section is missing or damaged.",
    "Header and trailer disagree about the %1: %2 and %3.",
    "The file has a section at its start, too; only the one at its end is read.",
    "%1 bytes stand behind the stored tree, inside the section; nothing reads them.",
    "The ID %1 is not predefined.",
    "The item above has a sub-item of this ID and index already.",
    "The item has a parameter and a sub-item of this ID.",
    "The index of the shared data item is of type %1; only UInt32 is read.",
    "The unit has 100 bytes, the most that are stored; it may have been cut.",
    "The unit holds a zero byte; what stands behind it is not read.",
    "The modifiable flag is stored as %1; only 00 and FF are written.",
    "The %1 is not valid UTF-8.",
    "The description is not the name of the ID, %1.",
    "The tree has %1 levels of items; 4096 are the most that can be stored.",
    "The %1 has %2 bytes; 24 are usual.",
    "Here is what looks like a header; sections are read only from the start and the end of a file.",
    "The library refuses the section: %1",
    "The section at the start of the file reads as a tree; what is damaged at the end keeps it from being read.",
    "The file starts with the header of another section, which is damaged; the one at the end is read.",

    // Sections in images
    "%1 has more than 4294967295 bytes, the most that sections can be read from.",
    "%1 has a section at its %2 already.",
    "%1 has no section at its %2.",
    "Nothing is written: the section would not read back from the %2 of %1.",
    "The section at the %2 of %1 cannot be read: %3.",
    "%1 stays as it is: at byte %2, where the %3 of its section must be, stands %4.",
};

// The first message of each group, and the end.
constexpr unsigned int s_groups[] = {0, 25, 31};

const KyResText s_table = {s_messages, s_groups, sizeof(s_groups) / sizeof(s_groups[0]) - 1, 0x01502000};

static_assert(sizeof(s_messages) / sizeof(s_messages[0]) == s_groups[sizeof(s_groups) / sizeof(s_groups[0]) - 1],
              "the groups cover the messages");

const KyCMessageTable s_registration(s_table);
}    // namespace

const char* kyRemedyOf(unsigned int code)
{
  switch (code)
  {
    case KY_KIT_MSG_CANNOT_READ:
      return "Check the path and the permissions.";
    case KY_KIT_MSG_IS_FOLDER:
      return "Name a file in it.";
    case KY_KIT_MSG_NO_SECTION:
      return "Name a file with a section, or have the end of this one restored.";
    case 0x1300813:
      return "Remove the parameter from one of the two.";
    case 0x1300814:
      return "Remove the parameter from the lower item.";
    case 0x1300815:
      return "Correct the index, or add the shared data.";
    case KY_CHECK_MSG_STREAM_DAMAGED:
    case KY_CHECK_MSG_NO_TREE:
    case KY_CHECK_MSG_RECORD_SIZE:
    case KY_CHECK_MSG_BEYOND_FILE:
      return "Restore the file from a good copy, or have it written again.";
    case KY_CHECK_MSG_STREAM_VERSION:
    case KY_CHECK_MSG_RECORD_VERSION:
      return "Read it with a newer version of the library, or restore it from a good copy.";
    case KY_CHECK_MSG_RECORD_MISSING:
    case KY_CHECK_MSG_RECORDS_DISAGREE:
      return "Save the section: kyinventory extract FILE -o NEW. Compare the tree with what it should hold, and use "
             "NEW.";
    case KY_CHECK_MSG_START_IS_SOUND:
      return "Save it: kyinventory extract FILE --at start -o NEW. Compare the tree with what it should hold, and use "
             "NEW.";
    case KY_CHECK_MSG_START_IS_DAMAGED:
      return "Restore the file from a good copy, or save the section that is read: kyinventory extract FILE --at end "
             "-o NEW.";
    case KY_CHECK_MSG_TWO_SECTIONS:
      return "Take one of them away: kyinventory strip --at start or --at end.";
    case KY_CHECK_MSG_BYTES_BEHIND_TREE:
    case KY_CHECK_MSG_UNIT_ZERO_BYTE:
    case KY_CHECK_MSG_MODIFIABLE_BYTE:
      return "Store the tree again.";
    case KY_CHECK_MSG_UNKNOWN_ID:
      return "Use a predefined ID, or read it with the version of the library that defines this one.";
    case KY_CHECK_MSG_DUPLICATE_ITEM:
      return "Give one of the two another index, or remove it: addresses find the first one alone.";
    case KY_CHECK_MSG_SAME_NAME:
      return "Rename or remove one of the two: an address names both.";
    case KY_CHECK_MSG_SHARED_INDEX_TYPE:
      return "Store the index as a UInt32.";
    case KY_CHECK_MSG_UNIT_AT_LIMIT:
      return "Use a shorter unit if this one is not whole.";
    case KY_CHECK_MSG_NOT_UTF8:
      return "Write the text in UTF-8 if people are to read it.";
    case KY_CHECK_MSG_OTHER_DESCRIPTION:
      return "Nothing, if the description was chosen.";
    case KY_CHECK_MSG_NEAR_NESTING_LIMIT:
      return "Nest items less deeply.";
    case KY_CHECK_MSG_LONG_RECORD:
      return "Nothing; what is more is passed over.";
    case KY_CHECK_MSG_HEADER_ELSEWHERE:
      return "Cut the file so that it starts here, if the section is the one to read.";
    case KY_CHECK_MSG_READERS_DISAGREE:
      return "Restore the file from a good copy, and report the difference to the makers of the library.";
    case KY_CHECK_MSG_TOO_LARGE:
      return "Cut off the part with the section.";
    default:
      return "";
  }
}
