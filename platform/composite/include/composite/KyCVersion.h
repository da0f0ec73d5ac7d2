// KyCVersion.h: a version of four numbers.
#pragma once

#include "composite/KyCString.h"

class KY_COMPOSITE_API KyCVersion
{
 public:
  KyCVersion() noexcept = default;
  KyCVersion(unsigned int majorNumber, unsigned int minorNumber, unsigned int maintenance, unsigned int build) noexcept
      : m_major(majorNumber), m_minor(minorNumber), m_maintenance(maintenance), m_build(build)
  {
  }

  unsigned int getMajor() const noexcept { return m_major; }
  unsigned int getMinor() const noexcept { return m_minor; }
  unsigned int getMaintenance() const noexcept { return m_maintenance; }
  unsigned int getBuild() const noexcept { return m_build; }

  KyCString toString() const;               // "1.2.3.4"
  bool fromString(const char* text);        // one to four decimal numbers joined by dots, nothing else; missing ones are 0.
                                            // false and unchanged when the text is anything else

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
