// KyScriptedStream.h: a file stream on bytes in memory in which a chosen call fails or falls short.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "unit/persistence/KyStoredBytes.h"

// The steps of reading a section are counted from 0 by the positions that are set: to the end, to the record, to the data.
class KyScriptedStream
{
public:
  static constexpr int NEVER = -1;

  explicit KyScriptedStream(const KyBytes& bytes) : m_bytes(bytes)
  {
    cookie_io_functions_t functions = {};
    functions.read = read;
    functions.seek = seek;
    m_file = fopencookie(this, "rb", functions);
    std::setvbuf(m_file, nullptr, _IONBF, 0);    // nothing is read or skipped behind our back
  }
  ~KyScriptedStream() { std::fclose(m_file); }
  KyScriptedStream(const KyScriptedStream&) = delete;
  KyScriptedStream& operator=(const KyScriptedStream&) = delete;

  std::FILE* file() const { return m_file; }
  int getStep() const { return m_step; }    // the last one that was tried

  int failingSeek = NEVER;    // the step whose position cannot be set
  int failingRead = NEVER;    // the step whose first read fails
  int shortRead = NEVER;      // the step in which the file seems to end after 4 bytes
  bool failingTell = false;

private:
  static ssize_t read(void* cookie, char* target, std::size_t size)
  {
    KyScriptedStream& stream = *static_cast<KyScriptedStream*>(cookie);
    if (stream.m_step == stream.failingRead) return -1;
    std::size_t left = stream.m_bytes.size() - std::min(stream.m_position, stream.m_bytes.size());
    if (stream.m_step == stream.shortRead) left = std::min(left, 4 - std::min<std::size_t>(stream.m_readInStep, 4));
    const std::size_t count = std::min(size, left);
    if (count != 0) std::memcpy(target, stream.m_bytes.data() + stream.m_position, count);
    stream.m_position += count;
    stream.m_readInStep += count;
    return static_cast<ssize_t>(count);
  }

  static int seek(void* cookie, off64_t* offset, int whence)
  {
    KyScriptedStream& stream = *static_cast<KyScriptedStream*>(cookie);
    off64_t position = *offset;
    if (whence == SEEK_CUR)    // how the C library asks where we are
    {
      if (stream.failingTell) return -1;
      position += static_cast<off64_t>(stream.m_position);
    }
    else
    {
      stream.m_readInStep = 0;
      if (++stream.m_step == stream.failingSeek) return -1;
      if (whence == SEEK_END) position += static_cast<off64_t>(stream.m_bytes.size());
    }
    if (position < 0) return -1;
    stream.m_position = static_cast<std::size_t>(position);
    *offset = position;
    return 0;
  }

  KyBytes m_bytes;
  std::size_t m_position = 0;
  std::size_t m_readInStep = 0;
  int m_step = NEVER;
  std::FILE* m_file = nullptr;
};
