// KyCVersion.h: a version of four numbers.
//
//   const KyCVersion version(2, 1, 0, 417);
//   version.toString();                      // "2.1.0.417"
//   version < KyCVersion(2, 10, 0, 0);       // true: by numbers, not by text
#pragma once

#include "composite/KyCString.h"

// A value type of four unsigned 32-bit numbers, the first one weighing most. Threads: as any plain value.
class KY_COMPOSITE_API KyCVersion
{
public:
  // 0.0.0.0
  KyCVersion() noexcept = default;
  KyCVersion(unsigned int majorNumber, unsigned int minorNumber, unsigned int maintenance, unsigned int build) noexcept
      : m_major(majorNumber), m_minor(minorNumber), m_maintenance(maintenance), m_build(build)
  {
  }

  unsigned int getMajor() const noexcept { return m_major; }
  unsigned int getMinor() const noexcept { return m_minor; }
  unsigned int getMaintenance() const noexcept { return m_maintenance; }
  unsigned int getBuild() const noexcept { return m_build; }

  // The four numbers in decimal, joined by dots: "1.2.3.4". Throws std::bad_alloc when memory is exhausted.
  KyCString toString() const;

  // Takes the version from a text of one to four decimal numbers of 0 .. 4294967295 joined by dots and nothing else: no
  // sign, no space, no empty number. Missing numbers are 0; leading zeros are allowed.
  //
  // Result: true; false when the text is anything else or null, and the version is as it was.
  bool fromString(const char* text) noexcept;

private:
  unsigned int m_major = 0;
  unsigned int m_minor = 0;
  unsigned int m_maintenance = 0;
  unsigned int m_build = 0;
};

KY_COMPOSITE_API bool operator==(const KyCVersion& a, const KyCVersion& b) noexcept;
KY_COMPOSITE_API bool operator!=(const KyCVersion& a, const KyCVersion& b) noexcept;
KY_COMPOSITE_API bool operator<(const KyCVersion& a, const KyCVersion& b) noexcept;
KY_COMPOSITE_API bool operator<=(const KyCVersion& a, const KyCVersion& b) noexcept;
KY_COMPOSITE_API bool operator>(const KyCVersion& a, const KyCVersion& b) noexcept;
KY_COMPOSITE_API bool operator>=(const KyCVersion& a, const KyCVersion& b) noexcept;
