// KyInventorySection.h: the numbers of the section format.
#pragma once

// Marks of both records.
constexpr char KY_SECTION_MAGIC_TEXT[4] = {'I', 'N', 'V', 'E'};
constexpr unsigned int KY_SECTION_MAGIC_NUMBER = 0x554B59AA;

constexpr unsigned int KY_SECTION_VERSION = 1;
constexpr unsigned int KY_SECTION_HEADER_SIZE = 24;    // bytes, as written and the least to be accepted
constexpr unsigned int KY_SECTION_TRAILER_SIZE = 24;

// Longest unit in the custom part of a stored parameter, in bytes.
constexpr unsigned int KY_STORED_UNIT_LIMIT = 100;
