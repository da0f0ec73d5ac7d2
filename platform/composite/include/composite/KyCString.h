// KyCString.h: an owned, NUL-terminated character string of 8 bytes.
#pragma once

#include "composite/KyCompositeApi.h"
#include "errorhandling/KyCErrorListPool.h"

// Up to 6 characters live inside the object; longer text lives in one shared, reference-counted block that copies
// share and that is copied before it is changed.
class KY_COMPOSITE_API KyCString
{
 public:
  KyCString() noexcept;
  KyCString(const char* text);
  KyCString(const char* text, unsigned int length);
  KyCString(const KyCString& other) noexcept;
  KyCString(KyCString&& other) noexcept;
  ~KyCString();

  KyCString& operator=(const KyCString& other) noexcept;
  KyCString& operator=(KyCString&& other) noexcept;
  KyCString& operator=(const char* text);

  // As the assignment of a text, but without throwing: with no memory left, "Out of memory." is recorded in the pool,
  // the string stays as it was and the result is false. A null text is taken as empty (length is then ignored).
  bool assign(KyCErrorListPool& pool, const char* text, unsigned int length) noexcept;

  const char* c_str() const noexcept;
  unsigned int length() const noexcept;
  bool isEmpty() const noexcept;

  KyCString& operator+=(const KyCString& tail);
  KyCString& operator+=(const char* tail);
  KyCString& operator+=(unsigned int number);
  KyCString operator+(const char* tail) const;
  KyCString operator+(const KyCString& tail) const;

  bool operator==(const KyCString& other) const noexcept;
  bool operator!=(const KyCString& other) const noexcept;
  bool operator<(const KyCString& other) const noexcept;

  static int strcmp(const char* a, const char* b);
  static const char* strstr(const char* text, const char* part);
  static unsigned int strlen(const char* text);

 private:
  // Implementer's choice (see the .cpp)
  union
  {
    void* m_block;
    unsigned char m_inline[8];
  };
};
