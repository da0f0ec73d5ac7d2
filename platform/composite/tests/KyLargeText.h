// KyLargeText.h: a text of more than 4 GiB that takes two megabytes of memory: the same pages again and again. For 64 bits.
#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#if UINTPTR_MAX > 0xFFFFFFFFu

class KyLargeText
{
public:
  KyLargeText()
  {
    const int file = ::memfd_create("text", MFD_CLOEXEC);
    EXPECT_EQ(::ftruncate(file, s_chunk), 0);
    void* const room = ::mmap(nullptr, s_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    m_text = static_cast<char*>(room);
    for (std::size_t at = 0; at < s_size; at += s_chunk)
    {
      // The last one, which has the terminator in it, is a copy.
      const int kind = at + s_chunk < s_size ? MAP_SHARED : MAP_PRIVATE;
      EXPECT_EQ(::mmap(m_text + at, s_chunk, PROT_READ | PROT_WRITE, kind | MAP_FIXED, file, 0), m_text + at);
    }
    std::memset(m_text, 'x', s_chunk);
    m_text[s_size - 1] = '\0';
    ::close(file);
  }
  ~KyLargeText() { ::munmap(m_text, s_size); }
  KyLargeText(const KyLargeText&) = delete;
  KyLargeText& operator=(const KyLargeText&) = delete;

  const char* text() const { return m_text; }

private:
  static constexpr std::size_t s_chunk = std::size_t{1} << 20;
  static constexpr std::size_t s_size = (std::size_t{1} << 32) + s_chunk;

  char* m_text;
};

#endif
