// Files.h: files as the sub-commands read and write them: what goes wrong is told on standard error.
#pragma once

#include <string>

#include "Command.h"
#include "inventorykit/KySectionFile.h"
#include "inventorykit/KyTree.h"

using KyNInventoryKit::TreePointer;

// Refuses an empty text, which is a script's unset variable: standard output or everything would be a wrong guess.
CLI::Validator notEmpty();

// As notEmpty, for addresses and patterns: an empty one would be the root item.
extern const char* const s_emptyAddress;
CLI::Validator notEmptyAddress();

// What an input is called in messages: its path, or "standard input".
std::string inputName(const std::string& path);

// Whether more than one of the paths is "-", after a message: standard input can be read once.
bool isInputTwice(const std::vector<std::string>& paths);

// Whether the user may read a file but not write to it. Replacing it would be possible all the same, where the folder may
// be written to, but is not what the file's owner wants.
bool isWriteProtected(const std::string& path);

// The tree of the section in a file ("-": standard input); null, after a message, when there is none.
TreePointer readTreeFile(const std::string& path);

// The -o and --force options of a sub-command that changes a file: in place without -o, otherwise a copy. Gives -o.
struct TargetOptions
{
  std::string output;
  bool isForced = false;
};
CLI::Option* addTargetOptions(
    CLI::App& command, TargetOptions& target,
    const std::string& meaning = "File to store the result in, FILE staying as it is; - is standard output");

// Whether the output is one of the inputs, by whatever name, after a message: for commands that make something else of their
// inputs, and change none in place. --force is no leave to do so.
bool isOutputAnInput(const std::vector<std::string>& inputs, const TargetOptions& target);

// Whether the command may write where the options say; false after a message. For asking before long work, and before
// anything of the input is read: a file that is to be changed in place is locked from here to the end of the program
// (flock), after waiting for others that change it. An input of "-" has no place of its own and needs an -o. What is
// stored is binary and not for a terminal.
enum class Lock
{
  NOW,
  LATER    // with lockForChange, where something else is to be read first that others may have to change the file for
};
bool mayStore(const std::string& input, const TargetOptions& target, Lock lock = Lock::NOW);
void lockForChange(const std::string& input, const TargetOptions& target);

// As above, for a program that goes on: nobody else changes the file as long as this is there.
class ChangeLock
{
public:
  explicit ChangeLock(const std::string& path);
  ~ChangeLock();
  ChangeLock(const ChangeLock&) = delete;
  ChangeLock& operator=(const ChangeLock&) = delete;

private:
  const int m_file;    // -1: there is no lock to be had
};

// The exit code where mayStore has said no: the command line is wrong, or the target is not to be written over.
int exitCodeOfRefusal(const std::string& input, const TargetOptions& target);

// Stores a changed tree: in place of the section of the input, whose other bytes stay, or as a new file.
//
// Result:  the exit code, after a message when it is not EXIT_OK.
int storeTree(const std::string& input, KyCInventoryItem& tree, const TargetOptions& target);

// As above, for a file's bytes and not its tree.
int storeBytes(const std::string& input, const std::string& bytes, const TargetOptions& target);

// Whether what was stored at this path can be read from there: true for a file; false for "-", a pipe and a device, where
// reading may wait for ever.
bool isReadableAgain(const std::string& path);
