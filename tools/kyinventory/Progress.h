// Progress.h: tells people who wait what they wait for.
//
//   const Progress progress("reading " + path);    // until the end of the block
#pragma once

#include <string>

// A line "reading rack.kyinv ... 3 s" on standard error, when that is a terminal and the work takes longer than a second.
// It counts the seconds and is gone again at the end, or as soon as anything else is to be shown.
//
// A thread of its own shows it: the work knows nothing of it. One at a time; one inside another shows nothing.
class Progress
{
public:
  explicit Progress(const std::string& work);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Takes the line away before something else is written to the terminal; it does not come back.
  static void hide();

private:
  bool m_isOurs;
};
