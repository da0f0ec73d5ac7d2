// KyFaultyCalls.cpp: a library to be loaded before a program (LD_PRELOAD), whose allocations and writing calls then fail,
// or which is killed at them. Counting starts with main. What is to happen stands in the environment:
//
//   KY_FAIL_ALLOCATION=N[+]   the N-th malloc, calloc or realloc gives null; with "+", all behind it, too
//   KY_FAIL_CALL=N:ERRNO      the N-th call that writes fails with this error number
//   KY_SHORT_WRITE=N          the N-th call, if it is a write, writes one byte alone
//   KY_KILL_CALL=N:before     the program is killed (SIGKILL) before the N-th call that writes; or "after" it, or "amid":
//                             when it is a write, half of the bytes are written
//   KY_FAULT_MARK=PATH        this folder is made when that has happened
//
// Calls that write: open and mkostemp that create, write, writev, fsync, fdatasync, ftruncate, fchmod, fchown, fsetxattr,
// rename, unlink, and close of a file that was created.
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace
{
unsigned long s_allocationsLeft = 0;    // to the one that fails; 0: none is to fail
bool s_isForEver = false;

enum class Fault
{
  NONE,
  FAIL,
  SHORT,
  KILL_BEFORE,
  KILL_AMID,
  KILL_AFTER
};
Fault s_fault = Fault::NONE;
unsigned long s_callsLeft = 0;
int s_errno = 0;
int s_created = -1;    // the last file that was created, while it is open

void mark()
{
  const char* const path = std::getenv("KY_FAULT_MARK");
  if (path != nullptr) ::syscall(SYS_mkdir, path, 0700);
}

void die() { ::syscall(SYS_kill, ::syscall(SYS_getpid), SIGKILL); }

bool mustFail()
{
  if (s_allocationsLeft == 0) return false;
  if (--s_allocationsLeft != 0) return false;
  if (s_isForEver) s_allocationsLeft = 1;
  const int before = errno;
  mark();
  errno = before;
  errno = ENOMEM;
  return true;
}

// What is to happen at this call that writes.
Fault nextCall()
{
  if (s_callsLeft == 0 || --s_callsLeft != 0) return Fault::NONE;
  const int before = errno;
  mark();
  errno = before;
  if (s_fault == Fault::KILL_BEFORE) die();
  return s_fault;
}

// Makes one call that writes, or not.
template <typename TCall>
auto made(TCall call) -> decltype(call())
{
  const Fault fault = nextCall();
  if (fault == Fault::FAIL)
  {
    errno = s_errno;
    return -1;
  }
  const auto result = call();
  if (fault == Fault::KILL_AFTER || fault == Fault::KILL_AMID) die();
  return result;
}

template <typename TFunction>
TFunction* next(TFunction*, const char* name)
{
  void* const found = ::dlsym(RTLD_NEXT, name);
  TFunction* function = nullptr;
  std::memcpy(&function, &found, sizeof function);
  return function;
}
#define KY_NEXT(name) (next(&::name, #name))

void readEnvironment()
{
  if (const char* const text = std::getenv("KY_FAIL_ALLOCATION"))
  {
    s_isForEver = std::strchr(text, '+') != nullptr;
    s_allocationsLeft = std::strtoul(text, nullptr, 10);
  }
  char* rest = nullptr;
  if (const char* const text = std::getenv("KY_FAIL_CALL"))
  {
    s_fault = Fault::FAIL;
    s_callsLeft = std::strtoul(text, &rest, 10);
    s_errno = std::atoi(rest + 1);
  }
  if (const char* const text = std::getenv("KY_SHORT_WRITE"))
  {
    s_fault = Fault::SHORT;
    s_callsLeft = std::strtoul(text, nullptr, 10);
  }
  if (const char* const text = std::getenv("KY_KILL_CALL"))
  {
    s_callsLeft = std::strtoul(text, &rest, 10);
    s_fault = std::strcmp(rest, ":before") == 0 ? Fault::KILL_BEFORE
              : std::strcmp(rest, ":amid") == 0 ? Fault::KILL_AMID
                                                : Fault::KILL_AFTER;
  }
}

using TMain = int(int, char**, char**);
TMain* s_main = nullptr;

int faultyMain(int argc, char** argv, char** environment)
{
  readEnvironment();
  ::unsetenv("LD_PRELOAD");    // not for what the program starts
  return s_main(argc, argv, environment);
}

int createdBy(int file)
{
  if (file >= 0) s_created = file;
  return file;
}

mode_t modeOf(int flags, va_list arguments)
{
  return (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned int)) : 0;
}
}    // namespace

extern "C"
{
  void* __libc_malloc(std::size_t size);
  void* __libc_calloc(std::size_t count, std::size_t size);
  void* __libc_realloc(void* block, std::size_t size);

  __attribute__((visibility("default"))) void* malloc(std::size_t size)
  {
    return mustFail() ? nullptr : __libc_malloc(size);
  }
  __attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size)
  {
    return mustFail() ? nullptr : __libc_calloc(count, size);
  }
  __attribute__((visibility("default"))) void* realloc(void* block, std::size_t size)
  {
    return mustFail() ? nullptr : __libc_realloc(block, size);
  }

  // Where the program begins.
  __attribute__((visibility("default"))) int __libc_start_main(TMain* main, int argc, char** argv, void (*init)(),
                                                               void (*fini)(), void (*loader)(), void* stack)
  {
    using TStart = int(TMain*, int, char**, void (*)(), void (*)(), void (*)(), void*);
    s_main = main;
    TStart* const start = next(static_cast<TStart*>(nullptr), "__libc_start_main");
    return start(faultyMain, argc, argv, init, fini, loader, stack);
  }

  __attribute__((visibility("default"))) ssize_t write(int file, const void* bytes, std::size_t size)
  {
    const Fault fault = nextCall();
    if (fault == Fault::FAIL)
    {
      errno = s_errno;
      return -1;
    }
    if (fault == Fault::SHORT && size > 1) size = 1;
    if (fault == Fault::KILL_AMID) size /= 2;
    const ssize_t written = ::syscall(SYS_write, file, bytes, size);
    if (fault == Fault::KILL_AMID || fault == Fault::KILL_AFTER) die();
    return written;
  }

  __attribute__((visibility("default"))) ssize_t writev(int file, const struct iovec* parts, int count)
  {
    return made([&] { return static_cast<ssize_t>(::syscall(SYS_writev, file, parts, count)); });
  }

  __attribute__((visibility("default"))) int open(const char* path, int flags, ...)
  {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    const auto call = [&] { return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode)); };
    return (flags & O_CREAT) != 0 ? createdBy(made(call)) : call();
  }
  __attribute__((visibility("default"))) int open64(const char* path, int flags, ...)
  {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return open(path, flags | O_LARGEFILE, mode);
  }

  __attribute__((visibility("default"))) int mkostemp(char* pattern, int flags)
  {
    return createdBy(made([&] { return KY_NEXT(mkostemp)(pattern, flags); }));
  }
  __attribute__((visibility("default"))) int mkostemp64(char* pattern, int flags)
  {
    return mkostemp(pattern, flags | O_LARGEFILE);
  }

  __attribute__((visibility("default"))) int close(int file)
  {
    const auto call = [&] { return static_cast<int>(::syscall(SYS_close, file)); };
    if (file != s_created) return call();
    s_created = -1;
    const int result = made(call);
    if (result < 0) call();    // it is closed all the same
    return result;
  }

  __attribute__((visibility("default"))) int fsync(int file)
  {
    return made([&] { return static_cast<int>(::syscall(SYS_fsync, file)); });
  }
  __attribute__((visibility("default"))) int fdatasync(int file)
  {
    return made([&] { return static_cast<int>(::syscall(SYS_fdatasync, file)); });
  }
  __attribute__((visibility("default"))) int ftruncate(int file, off_t size) noexcept
  {
    return made([&] { return KY_NEXT(ftruncate)(file, size); });
  }
  __attribute__((visibility("default"))) int fchmod(int file, mode_t mode) noexcept
  {
    return made([&] { return static_cast<int>(::syscall(SYS_fchmod, file, mode)); });
  }
  __attribute__((visibility("default"))) int fchown(int file, uid_t owner, gid_t group) noexcept
  {
    return made([&] { return KY_NEXT(fchown)(file, owner, group); });
  }
  __attribute__((visibility("default"))) int fsetxattr(int file, const char* name, const void* value, std::size_t size,
                                                       int flags) noexcept
  {
    return made([&] { return static_cast<int>(::syscall(SYS_fsetxattr, file, name, value, size, flags)); });
  }
  __attribute__((visibility("default"))) int rename(const char* from, const char* to) noexcept
  {
    return made([&] { return static_cast<int>(::syscall(SYS_rename, from, to)); });
  }
  __attribute__((visibility("default"))) int unlink(const char* path) noexcept
  {
    return made([&] { return static_cast<int>(::syscall(SYS_unlink, path)); });
  }
}
