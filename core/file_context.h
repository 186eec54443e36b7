// The state of one call: its own copy of the path, what it knows about the file, the result.
#ifndef TYPESCOUT_CORE_FILE_CONTEXT_H
#define TYPESCOUT_CORE_FILE_CONTEXT_H

#include <array>
#include <cstddef>

#include "core/probe_context.h"
#include "core/probed_file.h"
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

  std::array<wchar_t, PATH_CAPACITY> pathCopy;
  const wchar_t* path = nullptr;  // the copy, or null
  void* handle = nullptr;         // closed with the context; nothing stores one today
  ProbedFile probed;
  FilterId result = 0;  // written by the dispatchers and the class-identifier shortcut alone
  FilterId requestedFilterId = 0;
};

// Copies `path` (null allowed) and `requestedFilterId` into the fresh `context` and reads the head
// of the file. False, with no head, when there is no path, the file does not open, the read comes
// back short or memory runs out. The file is closed again in any case, also when the host throws.
bool ReadHeadBytes(const wchar_t* path, FilterId requestedFilterId, FileContext* context);

// Whether the file is a compound document that holds one of the suite's drawing objects, which the
// class identifier of its root tells; sets the context's result when it is.
bool ClassIdShortcut(FileContext* context);

}  // namespace typescout

#endif  // TYPESCOUT_CORE_FILE_CONTEXT_H
