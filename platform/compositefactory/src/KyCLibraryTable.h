// KyCLibraryTable.h: the plug-in libraries of a factory and the folders they are looked for in.
#pragma once

#include "compositefactory/KyCCompositeFactory.h"

// Owned by its factory. Libraries stay loaded until the table is destroyed.
class KyCLibraryTable
{
public:
  using TCreate = KyCCompositeFactory::TCreate;

  KyCLibraryTable() noexcept = default;
  ~KyCLibraryTable();
  KyCLibraryTable(const KyCLibraryTable&) = delete;
  KyCLibraryTable& operator=(const KyCLibraryTable&) = delete;

  // The function that makes composites of these numbers; null when no library does. One that serves all unit ids stands
  // back behind one that was loaded for this unit id. Cost: linear in the number of libraries.
  TCreate find(unsigned int classId, unsigned int unitId) const noexcept;

  // Both report for the factory and give false on failure.
  bool load(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, const char* path) noexcept;
  bool addFolder(KyCErrorListPool& pool, const char* folder) noexcept;

  // Path of the first library for these numbers, on the heap, to be released by KyNPoolAllocator::release; null, with a
  // report, when there is none.
  char* search(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId) const noexcept;

private:
  struct TLibrary
  {
    TLibrary* next;
    unsigned int classId;
    unsigned int unitId;    // 0: any
    void* handle;
    TCreate create;
  };
  struct TFolder
  {
    TFolder* next;
    char* path;
  };

  const TLibrary* findExact(unsigned int classId, unsigned int unitId) const noexcept;

  TLibrary* m_libraries = nullptr;
  TFolder* m_folders = nullptr;    // in the order they were added
};
