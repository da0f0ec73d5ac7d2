// ExitCode.h: how the tool ends, and what that means.
#pragma once

// Exit codes that scripts rely on.
enum ExitCode
{
  EXIT_OK = 0,
  EXIT_NO = 1,           // what was asked for is not there, files differ, a check has findings
  EXIT_NOT_FOUND = 1,    // what was asked for is not in the tree
  EXIT_REPORTED = 1,     // merge: done, but there was something to report
  EXIT_USAGE = 2,        // the command line is wrong
  EXIT_INPUT = 3,        // the input cannot be read, holds no section, or is damaged
  EXIT_OUTPUT = 4        // the output cannot be written, or memory has run out
};

// What the exit codes mean, for help and man pages: code and meaning, without a full stop.
struct ExitMeaning
{
  ExitCode code;
  const char* meaning;
};
constexpr ExitMeaning s_exitMeanings[] = {
    {EXIT_OK, "done, yes, equal"},
    {EXIT_NO, "no: what was asked for is not there, files differ, a check or a merge has something to report"},
    {EXIT_USAGE, "wrong usage"},
    {EXIT_INPUT, "an input cannot be read, holds no inventory section, or is damaged"},
    {EXIT_OUTPUT, "the output cannot be written, or memory has run out"},
};
