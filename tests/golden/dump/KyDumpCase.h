// KyDumpCase.h: how the data cases of the dump are read and run.
#pragma once

#include <string>

// What options files, and the blocks of the document, say in short:
//
//   # why the case exists            comment, to the end of the line
//   0x80 0x4                         option bits, combined
//   depth 2                          the depth; 0 when it is not given
struct KyDumpOptions
{
  int mask = 0;
  int depth = 0;
  bool hasComment = false;
};
KyDumpOptions readOptions(const std::string& text);

// The dump of the root of a tree, given as the text of a KySampleTree. Reports fail the test.
std::string dumpOf(const std::string& tree, const KyDumpOptions& options);
