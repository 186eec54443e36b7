#include "host/compound/reader.h"

#include <array>
#include <atomic>
#include <new>
#include <optional>
#include <utility>

#include "host/compound/directory.h"
#include "host/compound/sectors.h"
#include "host/compound/stream.h"

namespace compound {
namespace {

// What a root and its streams share. The address does not change.
class Document {
 public:
  explicit Document(std::unique_ptr<ByteSource> source) : sectors_(std::move(source)) {}

  // False when it is no document; nothing else may be called then.
  bool Read() {
    if (!sectors_.ReadHeader()) return false;
    directory_.emplace(&sectors_);
    const std::optional<Entry> root = directory_->Root();
    if (!root) return false;
    rootClass_ = root->ClassId();
    miniSectors_.emplace(&sectors_, *root);
    return true;
  }

  const CLSID& RootClass() const { return rootClass_; }

  std::optional<StreamReader> OpenStream(const wchar_t* name) {
    const std::optional<Entry> entry = directory_->FindStream(name);
    if (!entry) return std::nullopt;
    const std::uint64_t size = entry->StreamSize(sectors_.Version());
    Sectors* sectors = &sectors_;
    if (size < MINI_STREAM_CUTOFF) sectors = &*miniSectors_;
    return StreamReader(sectors, entry->FirstSector(), size);
  }

 private:
  FileSectors sectors_;
  std::optional<Directory> directory_;
  std::optional<MiniSectors> miniSectors_;
  CLSID rootClass_ = {};
};

// The reference counting of an interface.
template <typename Interface>
class Counted : public Interface {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  HRESULT QueryInterface(const CLSID& /*interfaceId*/, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  std::uint32_t AddRef() override { return ++references_; }
  std::uint32_t Release() override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;

 private:
  std::atomic<std::uint32_t> references_ = 1;
};

class Stream final : public Counted<IStream> {
 public:
  Stream(std::shared_ptr<Document> document, StreamReader reader)
      : document_(std::move(document)), reader_(std::move(reader)) {}

  HRESULT Read(void* bytes, std::uint32_t count, std::uint32_t* read) override {
    std::size_t got = 0;
    HRESULT result = S_OK;
    try {
      got = reader_.Read(static_cast<std::uint8_t*>(bytes), count);
    } catch (const std::bad_alloc&) {
      result = STG_E_INSUFFICIENTMEMORY;
    }
    if (read != nullptr) *read = static_cast<std::uint32_t>(got);
    return result;
  }

 private:
  std::shared_ptr<Document> document_;  // which the reader reads
  StreamReader reader_;
};

class Storage final : public Counted<IStorage> {
 public:
  explicit Storage(std::shared_ptr<Document> document) : document_(std::move(document)) {}

  HRESULT CreateStream() override { return E_NOTIMPL; }
  HRESULT OpenStream(const wchar_t* name, void* /*reserved1*/, std::uint32_t /*mode*/,
                     std::uint32_t /*reserved2*/, IStream** stream) override {
    *stream = nullptr;
    try {
      std::optional<StreamReader> reader = document_->OpenStream(name);
      if (!reader) return STG_E_FILENOTFOUND;
      *stream = new Stream(document_, std::move(*reader));
      return S_OK;
    } catch (const std::bad_alloc&) {
      return STG_E_INSUFFICIENTMEMORY;
    }
  }
  const CLSID& ClassId() const { return document_->RootClass(); }

 private:
  std::shared_ptr<Document> document_;
};

}  // namespace

bool HasSignature(const ByteSource& source) {
  std::array<std::uint8_t, SIGNATURE.size()> start;
  return source.ReadAt(0, start.data(), start.size()) == start.size() && start == SIGNATURE;
}

HRESULT Open(std::unique_ptr<ByteSource> source, IStorage** storage) {
  *storage = nullptr;
  try {
    auto document = std::make_shared<Document>(std::move(source));
    if (!document->Read()) return STG_E_INVALIDHEADER;
    *storage = new Storage(std::move(document));
    return S_OK;
  } catch (const std::bad_alloc&) {
    return STG_E_INSUFFICIENTMEMORY;
  }
}

HRESULT ReadClass(IStorage* storage, CLSID* classId) {
  *classId = static_cast<Storage*>(storage)->ClassId();
  return S_OK;
}

}  // namespace compound
