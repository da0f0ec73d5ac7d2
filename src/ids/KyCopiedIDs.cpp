// KyCopiedIDs.cpp: finds the copies of predefined IDs in the program.
//
// A program that was compiled to reach an object of a shared library as if it were its own (position-dependent ones,
// and most position-independent ones on x86-64) has room for it in its own data. The loader copies the object there,
// byte by byte, before the library's first line runs, and makes everybody use the copy. The program's table of
// relocations lists these copies; going through it takes less than asking the loader for 1064 names.
#include "ids/KyCopiedIDs.h"

#include <elf.h>
#include <link.h>

#include <cstdint>
#include <cstring>

#include "ids/KyPredefinedIDs.h"

namespace
{
#if defined(__x86_64__)
constexpr unsigned int COPY = R_X86_64_COPY;
#elif defined(__i386__)
constexpr unsigned int COPY = R_386_COPY;
#elif defined(__aarch64__)
constexpr unsigned int COPY = R_AARCH64_COPY;
#elif defined(__arm__)
constexpr unsigned int COPY = R_ARM_COPY;
#else
#error "which type has this machine's copy relocation?"
#endif

#if __SIZEOF_POINTER__ == 8
constexpr int RELOCATIONS = DT_RELA, SIZE = DT_RELASZ, ENTRY_SIZE = DT_RELAENT, RELATIVE_COUNT = DT_RELACOUNT;
unsigned int typeOf(const ElfW(Rel) & relocation) { return ELF64_R_TYPE(relocation.r_info); }
std::size_t symbolOf(const ElfW(Rel) & relocation) { return ELF64_R_SYM(relocation.r_info); }
#else
constexpr int RELOCATIONS = DT_REL, SIZE = DT_RELSZ, ENTRY_SIZE = DT_RELENT, RELATIVE_COUNT = DT_RELCOUNT;
unsigned int typeOf(const ElfW(Rel) & relocation) { return ELF32_R_TYPE(relocation.r_info); }
std::size_t symbolOf(const ElfW(Rel) & relocation) { return ELF32_R_SYM(relocation.r_info); }
#endif

// A program's relocations and the symbols that they name.
struct KyRelocations
{
  std::uintptr_t entries = 0;
  std::size_t size = 0;             // bytes of all entries
  std::size_t entrySize = 0;        // bytes of one; both kinds begin as the shorter one, Rel
  std::size_t relativeCount = 0;    // so many entries in front copy nothing
  std::uintptr_t symbols = 0;
  std::uintptr_t names = 0;
};

// Most loaders turn the offsets in a dynamic section into addresses, others leave them as they are. No program is as
// large as the address where it begins.
std::uintptr_t addressOf(const dl_phdr_info& program, std::uintptr_t value)
{
  return value < program.dlpi_addr ? program.dlpi_addr + value : value;
}

const ElfW(Dyn) * dynamicSectionOf(const dl_phdr_info& program)
{
  for (unsigned int n = 0; n < program.dlpi_phnum; ++n)
  {
    const ElfW(Phdr)& header = program.dlpi_phdr[n];
    if (header.p_type == PT_DYNAMIC) return reinterpret_cast<const ElfW(Dyn)*>(program.dlpi_addr + header.p_vaddr);
  }
  return nullptr;
}

KyRelocations relocationsOf(const dl_phdr_info& program)
{
  KyRelocations found;
  const ElfW(Dyn)* entry = dynamicSectionOf(program);
  for (; entry != nullptr && entry->d_tag != DT_NULL; ++entry)
  {
    if (entry->d_tag == RELOCATIONS) found.entries = addressOf(program, entry->d_un.d_ptr);
    if (entry->d_tag == SIZE) found.size = entry->d_un.d_val;
    if (entry->d_tag == ENTRY_SIZE) found.entrySize = entry->d_un.d_val;
    if (entry->d_tag == RELATIVE_COUNT) found.relativeCount = entry->d_un.d_val;
    if (entry->d_tag == DT_SYMTAB) found.symbols = addressOf(program, entry->d_un.d_ptr);
    if (entry->d_tag == DT_STRTAB) found.names = addressOf(program, entry->d_un.d_ptr);
  }
  return found;
}

// The map is of another size.
bool isID(const ElfW(Sym) & symbol, const char* name)
{
  static constexpr char prefix[] = "_ZN15KyNInventoryIDs";
  return symbol.st_size == sizeof(KyIDImage) && std::strncmp(name, prefix, sizeof prefix - 1) == 0;
}

// Called for the program first, and then no more.
int completeCopiesIn(dl_phdr_info* program, std::size_t, void*)
{
  const KyRelocations relocations = relocationsOf(*program);
  if (relocations.entrySize == 0 || relocations.symbols == 0 || relocations.names == 0) return 1;
  const auto* const symbols = reinterpret_cast<const ElfW(Sym)*>(relocations.symbols);
  const auto* const names = reinterpret_cast<const char*>(relocations.names);
  for (std::size_t at = relocations.relativeCount * relocations.entrySize; at < relocations.size;
       at += relocations.entrySize)
  {
    const auto& relocation = *reinterpret_cast<const ElfW(Rel)*>(relocations.entries + at);
    if (typeOf(relocation) != COPY) continue;
    const ElfW(Sym)& symbol = symbols[symbolOf(relocation)];
    if (!isID(symbol, names + symbol.st_name)) continue;
    KyIDImage& copy = *reinterpret_cast<KyIDImage*>(program->dlpi_addr + relocation.r_offset);
    if (copy.length <= 1) copy.elements = &copy.inlineElement;
  }
  return 1;
}
}    // namespace

void kyCompleteCopiedIDs() noexcept { dl_iterate_phdr(completeCopiesIn, nullptr); }
