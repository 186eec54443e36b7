#include "host/memory/memory_host.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "host/config.h"
#include "host/file.h"
#include "host/graphics.h"
#include "host/handle.h"
#include "host/library.h"
#include "host/memory/failing_allocation.h"
#include "host/strings.h"

namespace memory_host {
namespace {

// Counts the call. Returns the fault that a test has set for it, or none.
std::optional<Fault> Note(Call call) {
  const Uncounted own;
  Machine& machine = TheMachine();
  if (machine.beforeCall) machine.beforeCall(call);
  const int count = ++machine.calls[call];
  for (const Fault& fault : machine.faults) {
    if (fault.call == call && fault.nth == count) return fault;
  }
  return std::nullopt;
}

std::uint32_t OneShort(std::uint32_t count) { return count == 0 ? 0 : count - 1; }

// Copies up to `count` bytes of `content` from `*position` on, and moves the position.
std::uint32_t CopyOut(const std::string& content, std::uint64_t* position, void* bytes,
                      std::uint32_t count) {
  if (*position >= content.size()) return 0;
  const auto taken =
      static_cast<std::uint32_t>(std::min<std::uint64_t>(count, content.size() - *position));
  std::memcpy(bytes, content.data() + *position, taken);
  *position += taken;
  return taken;
}

class File final : public TvnUtils::CFile {
 public:
  File() { ++TheMachine().fileObjects; }
  ~File() override {
    Close();
    --TheMachine().fileObjects;
  }

  void Close() override {
    if (open_) --TheMachine().openFiles;
    open_ = false;
  }
  std::uint32_t Read(void* bytes, std::uint32_t count) override {
    if (Note(Call::READ_FILE)) count = OneShort(count);
    if (!open_) return 0;
    const std::uint32_t got = CopyOut(Content(), &position_, bytes, count);
    return got + ReadBeyondContent(static_cast<char*>(bytes) + got, count - got);
  }
  std::uint32_t Write(const void* /*bytes*/, std::uint32_t /*count*/) override { return 0; }
  void SeekToBegin() override { position_ = 0; }
  std::uint64_t Seek(std::uint64_t offset, std::int32_t /*origin*/) override {
    if (Note(Call::SEEK_FILE)) return offset == 0 ? 1 : 0;
    return position_ = std::min(offset, GetLength());
  }
  std::uint64_t GetLength() override {
    const auto said = TheMachine().lengths.find(path_);
    return said == TheMachine().lengths.end() ? Content().size() : said->second;
  }
  std::uint64_t GetPosition() override { return position_; }
  bool SetLength(std::uint64_t /*length*/) override { return false; }
  std::int32_t Open(const wchar_t* path, std::int32_t /*mode*/) override {
    const Uncounted own;
    if (path != nullptr) TheMachine().openedPaths.emplace_back(path);
    if (Note(Call::OPEN_FILE) || path == nullptr || !TheMachine().files.contains(path)) return 0;
    path_ = path;
    open_ = true;
    ++TheMachine().openFiles;
    return 1;
  }

 private:
  std::uint32_t ReadBeyondContent(char* bytes, std::uint32_t count) {
    if (!TheMachine().fillBeyondContent || position_ >= GetLength()) return 0;
    const auto got =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(count, GetLength() - position_));
    TheMachine().fillBeyondContent(position_, {bytes, got});
    position_ += got;
    return got;
  }

  // Looked up anew each time, so that a test can change or remove the file behind an open object.
  const std::string& Content() const {
    static const std::string empty;
    const auto& files = TheMachine().files;
    const auto found = files.find(path_);
    return found == files.end() ? empty : found->second;
  }

  std::wstring path_;
  std::uint64_t position_ = 0;
  bool open_ = false;
};

class Stream final : public IStream {
 public:
  explicit Stream(std::string content) : content_(std::move(content)) {
    ++TheMachine().openStreams;
  }
  HRESULT QueryInterface(const CLSID& /*interfaceId*/, void** /*object*/) override {
    return E_NOINTERFACE;
  }
  std::uint32_t AddRef() override { return 1; }  // never shared
  std::uint32_t Release() override {
    --TheMachine().openStreams;
    delete this;
    return 0;
  }
  HRESULT Read(void* bytes, std::uint32_t count, std::uint32_t* read) override {
    const std::optional<Fault> fault = Note(Call::READ_STREAM);
    *read = CopyOut(content_, &position_, bytes, fault ? OneShort(count) : count);
    return S_OK;
  }

 private:
  ~Stream() = default;

  std::string content_;
  std::uint64_t position_ = 0;
};

class Storage final : public IStorage {
 public:
  explicit Storage(const Document& document) : document_(document) { ++TheMachine().openStorages; }
  HRESULT QueryInterface(const CLSID& /*interfaceId*/, void** /*object*/) override {
    return E_NOINTERFACE;
  }
  std::uint32_t AddRef() override { return 1; }  // never shared
  std::uint32_t Release() override {
    --TheMachine().openStorages;
    delete this;
    return 0;
  }
  HRESULT CreateStream() override { return E_NOTIMPL; }
  HRESULT OpenStream(const wchar_t* name, void* reserved1, std::uint32_t mode,
                     std::uint32_t reserved2, IStream** stream) override {
    const Uncounted own;
    *stream = nullptr;
    // Like the system, this opens streams for exclusive reading only.
    if (mode != (STGM_READ | STGM_SHARE_EXCLUSIVE) || reserved1 != nullptr || reserved2 != 0) {
      return STG_E_INVALIDFUNCTION;
    }
    if (const auto fault = Note(Call::OPEN_STREAM)) return fault->code;
    for (const auto& [itsName, content] : document_.streams) {
      const TvnPlatform::TvnStringT<wchar_t> candidate(itsName.c_str());
      if (candidate.CompareNoCase(TvnPlatform::TvnStringViewT<wchar_t>(name)) == 0) {
        *stream = new Stream(content);
        return S_OK;
      }
    }
    return STG_E_FILENOTFOUND;
  }
  const CLSID& ClassId() const { return document_.classId; }

 private:
  ~Storage() = default;

  Document document_;
};

}  // namespace

Machine& TheMachine() {
  static Machine machine;
  return machine;
}

void Reset() { TheMachine() = Machine(); }

}  // namespace memory_host

using memory_host::Call;
using memory_host::Note;
using memory_host::TheMachine;
using memory_host::Uncounted;

TvnUtils::CFile* TvnUtils::CFile::CreateObject() { return new (std::nothrow) memory_host::File; }

extern "C" int CloseHandle(void* /*handle*/) {
  --TheMachine().openHandles;
  return 1;
}

HRESULT StgIsStorageFile(const wchar_t* path) {
  const Uncounted own;
  if (const auto fault = Note(Call::IS_STORAGE_FILE)) return fault->code;
  if (TheMachine().documents.contains(path)) return S_OK;
  const auto file = TheMachine().files.find(path);
  if (file == TheMachine().files.end()) return STG_E_FILENOTFOUND;
  const auto& reader = TheMachine().documentReader;
  return reader && reader->isDocument(file->second) ? S_OK : S_FALSE;
}

HRESULT StgOpenStorage(const wchar_t* path, IStorage* priority, std::uint32_t mode,
                       wchar_t** exclusions, std::uint32_t reserved, IStorage** storage) {
  const Uncounted own;
  *storage = nullptr;
  if (priority != nullptr || exclusions != nullptr || reserved != 0) return STG_E_INVALIDFUNCTION;
  TheMachine().storageModes.push_back(mode);
  if (const auto fault = Note(Call::OPEN_STORAGE)) return fault->code;
  const auto file = TheMachine().files.find(path);
  if (TheMachine().documentReader && file != TheMachine().files.end()) {
    return TheMachine().documentReader->open(file->second, storage);
  }
  const auto found = TheMachine().documents.find(path);
  if (found == TheMachine().documents.end()) return STG_E_FILENOTFOUND;
  *storage = new memory_host::Storage(found->second);
  return S_OK;
}

extern "C" HRESULT ReadClassStg(IStorage* storage, CLSID* classId) {
  if (const auto fault = Note(Call::READ_CLASS)) return fault->code;
  if (TheMachine().documentReader) return TheMachine().documentReader->readClass(storage, classId);
  *classId = static_cast<memory_host::Storage*>(storage)->ClassId();
  return S_OK;
}

bool BUDI_IsBUDI(TvnUtils::Stream stream) {
  const Uncounted own;
  if (!TheMachine().isBudi) return false;
  std::string bytes(static_cast<std::size_t>(stream.GetLength()), '\0');
  stream.Read(bytes.data(), bytes.size());
  return TheMachine().isBudi(bytes);
}

TvnPlatform::TvnStringT<wchar_t> TvnConfig::INIGetFiltersDir() {
  return TvnPlatform::TvnStringT<wchar_t>(TheMachine().filtersDir.c_str());
}

TvnUtils::TvnLibrary::TvnLibrary(const TvnPlatform::TvnStringT<wchar_t>& name)
    : name_(name.View()) {}

TvnUtils::TvnLibrary::~TvnLibrary() {
  if (!IsLoaded()) return;
  --TheMachine().loadedModules;
  ++TheMachine().keptModules;
}

bool TvnUtils::TvnLibrary::Load() {
  const Uncounted own;
  if (Note(Call::LOAD_MODULE)) return false;
  const auto found = TheMachine().modules.find(std::wstring(name_.View()));
  if (found == TheMachine().modules.end()) return false;
  loaded_ = &found->second;
  ++TheMachine().loadedModules;
  return true;
}

bool TvnUtils::TvnLibrary::IsLoaded() const { return loaded_ != nullptr; }

void* TvnUtils::TvnLibrary::GetSymbol(const char* name) const {
  const Uncounted own;
  if (Note(Call::FIND_SYMBOL) || !IsLoaded()) return nullptr;
  const auto& module = *static_cast<const memory_host::Module*>(loaded_);
  const auto found = module.find(name);
  return found == module.end() ? nullptr : found->second;
}

bool TvnUtils::TvnLibrary::Unload() {
  Note(Call::UNLOAD_MODULE);
  if (!IsLoaded()) return false;
  loaded_ = nullptr;
  --TheMachine().loadedModules;
  return true;
}
