// KyPageBlock.h: compares what a block of code on a page prints with what the page says.
#pragma once

#include <cstdio>
#include <memory>

#include "support/KyCapturedOutput.h"

class KyPageBlock
{
public:
  static void begin(const char* page, int line)
  {
    s_page = page;
    s_line = line;
    s_output = std::make_unique<KyCapturedOutput>();
  }

  static void end(const std::string& expected)
  {
    const std::string printed = s_output->take();
    s_output.reset();
    if (printed == expected) return;
    std::printf("%s:%d prints\n%s----- and not\n%s-----\n", s_page, s_line, printed.c_str(), expected.c_str());
    s_isRight = false;
  }

  // A program on the page has ended.
  static void exit(int code)
  {
    if (code == 0) return;
    std::fprintf(stderr, "%s:%d exits with %d\n", s_page, s_line, code);
    s_isRight = false;
  }

  // The exit code of the test.
  static int result() { return s_isRight ? 0 : 1; }

private:
  static inline const char* s_page = "";
  static inline int s_line = 0;
  static inline bool s_isRight = true;
  static inline std::unique_ptr<KyCapturedOutput> s_output;
};
