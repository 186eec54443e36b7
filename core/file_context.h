// One call's view of one file: its own copy of the path, the head bytes, the result.
#ifndef TYPESCOUT_CORE_FILE_CONTEXT_H
#define TYPESCOUT_CORE_FILE_CONTEXT_H

#include <cstddef>
#include <cstdint>

#include "core/probe_context.h"
#include "host/owners.h"
#include "typescout/typescout.h"

namespace typescout {

// Characters of the path copy, the terminator included.
inline constexpr std::size_t PATH_CAPACITY = TYPESCOUT_PATH_LIMIT + 1;

// Created by an entry point, destroyed before it returns. Owns everything that it points to.
struct FileContext {
  FileContext() = default;
  FileContext(const FileContext&) = delete;
  FileContext& operator=(const FileContext&) = delete;
  ~FileContext();

  wchar_t* path = nullptr;
  void* handle = nullptr;  // closed with the context; nothing stores one today
  unsigned char* head = nullptr;
  std::uint32_t headLength = 0;
  FilterId result = 0;  // written by the dispatchers and the class-identifier shortcut alone
  FilterId requestedFilterId = 0;
};

// Copies `path` (null allowed) and `requestedFilterId` into the fresh `context`, reads the file's
// first HEAD_CAPACITY bytes into it and sets `*headLength` to their count. False, with
// `*headLength` as it was and no head, when there is no path, the file does not open, the read
// comes back short or memory runs out. The file is closed again on every way out, an exception of
// the host's included.
bool ReadHeadBytes(const wchar_t* path, FilterId requestedFilterId, FileContext* context,
                   std::int32_t* headLength);

// Takes the caller's `length` bytes in place of a file that could not be read. False, with no head,
// when `bytes` is null, `length` is negative or memory runs out.
bool UseCallerBytes(const unsigned char* bytes, std::int32_t length, FileContext* context);

// Opens the file as a compound document; empty when it is none or does not open. A document that
// somebody else holds open is tried once more with sharing allowed. `path` may be null.
InterfaceOwner<IStorage> OpenCompoundFile(const wchar_t* path);

// Whether the file is a compound document of the suite's drawing objects, told by the class
// identifier of its root; sets the context's result when it is.
bool ClassIdShortcut(FileContext* context);

}  // namespace typescout

#endif  // TYPESCOUT_CORE_FILE_CONTEXT_H
