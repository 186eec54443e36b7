#include "host/compound/reader.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bitset>
#include <cstring>
#include <new>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace compound {
namespace {

// Sector numbers up to this one exist; those above mark free sectors, ends of chains and the like.
constexpr std::uint32_t LAST_SECTOR = 0xFFFFFFFA;
constexpr std::uint32_t NO_SECTOR = 0xFFFFFFFE;  // the end of a chain

constexpr std::array<std::uint8_t, 8> SIGNATURE = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr std::size_t HEADER_SIZE = 512;
constexpr std::size_t DIFAT_IN_HEADER = 109;
constexpr std::size_t LARGEST_SECTOR = 4096;
constexpr std::size_t MINI_SECTOR_SIZE = 64;
constexpr std::uint64_t MINI_STREAM_CUTOFF = 4096;  // shorter streams lie in the mini stream
constexpr std::size_t ENTRY_SIZE = 128;
constexpr std::uint32_t ROOT_ENTRY = 0;
// Far more than any document has below its root; what a directory made to be slow can cost.
constexpr std::size_t MOST_ENTRIES = 1 << 18;

std::uint16_t U16(const std::uint8_t* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}
std::uint32_t U32(const std::uint8_t* bytes) {
  return U16(bytes) | static_cast<std::uint32_t>(U16(bytes + 2)) << 16;
}

// What has been visited, by number; takes memory for what is visited, not for what there is.
class Visited {
 public:
  explicit Visited(std::uint64_t count) : count_(count) {}
  // False for a number that does not exist or was visited before.
  bool Visit(std::uint32_t number) {
    if (number >= count_) return false;
    auto& page = pages_[number / PAGE_SIZE];
    if (page[number % PAGE_SIZE]) return false;
    page.set(number % PAGE_SIZE);
    return true;
  }

 private:
  static constexpr std::size_t PAGE_SIZE = 1024;

  std::uint64_t count_;
  std::unordered_map<std::uint32_t, std::bitset<PAGE_SIZE>> pages_;
};

// A directory entry. [MS-CFB] 2.6.1.
class Entry {
 public:
  std::uint8_t* data() { return bytes_.data(); }

  bool IsStream() const { return bytes_[66] == 2; }
  std::uint32_t Left() const { return U32(&bytes_[68]); }
  std::uint32_t Right() const { return U32(&bytes_[72]); }
  std::uint32_t Child() const { return U32(&bytes_[76]); }
  std::uint32_t FirstSector() const { return U32(&bytes_[116]); }
  std::uint32_t SizeLow() const { return U32(&bytes_[120]); }
  std::uint32_t SizeHigh() const { return U32(&bytes_[124]); }

  CLSID ClassId() const {
    CLSID id = {U32(&bytes_[80]), U16(&bytes_[84]), U16(&bytes_[86]), {}};
    std::copy_n(&bytes_[88], sizeof id.data4, id.data4);
    return id;
  }

  // The name is UTF-16, its length in bytes with the terminator.
  bool IsCalled(std::wstring_view name) const {
    constexpr std::size_t LONGEST_NAME = 31;
    if (name.size() > LONGEST_NAME || U16(&bytes_[64]) != 2 * (name.size() + 1)) return false;
    const auto upper = [](wchar_t c) { return c >= L'a' && c <= L'z' ? c - (L'a' - L'A') : c; };
    for (std::size_t i = 0; i < name.size(); ++i) {
      if (upper(static_cast<wchar_t>(U16(&bytes_[2 * i]))) != upper(name[i])) return false;
    }
    return true;
  }

 private:
  std::array<std::uint8_t, ENTRY_SIZE> bytes_ = {};
};

class Document;

// The sector that was read last, for what reads piece after piece and mostly stays within one.
class SectorCache {
 public:
  // As Document::ReadSector.
  std::size_t Read(const Document& document, std::uint32_t sector, std::size_t offset,
                   std::uint8_t* bytes, std::size_t count);

 private:
  std::uint32_t sector_ = NO_SECTOR;
  std::size_t length_ = 0;
  std::array<std::uint8_t, LARGEST_SECTOR> bytes_;
};

// The document's structure: sectors, the two allocation tables, the directory.
class Document {
 public:
  explicit Document(std::unique_ptr<ByteSource> source) : source_(std::move(source)) {}

  // [MS-CFB] 2.2. False when the header cannot be understood.
  bool ReadHeader() {
    std::array<std::uint8_t, HEADER_SIZE> header;
    if (source_->ReadAt(0, header.data(), HEADER_SIZE) != HEADER_SIZE) return false;
    constexpr std::uint16_t LITTLE_ENDIAN_MARK = 0xFFFE;
    constexpr std::uint16_t MINI_SECTOR_SHIFT = 6;
    version_ = U16(&header[26]);
    const std::uint16_t shift = U16(&header[30]);
    if (!std::equal(SIGNATURE.begin(), SIGNATURE.end(), header.begin()) ||
        U16(&header[28]) != LITTLE_ENDIAN_MARK || (version_ != 3 && version_ != 4) ||
        (shift != 9 && shift != 12) || U16(&header[32]) != MINI_SECTOR_SHIFT ||
        U32(&header[56]) != MINI_STREAM_CUTOFF) {
      return false;
    }
    shift_ = shift;
    const std::uint64_t sectors = (source_->size() + SectorSize() - 1) >> shift_;
    sectorCount_ = std::clamp<std::uint64_t>(sectors, 1, std::uint64_t{LAST_SECTOR} + 2) - 1;
    firstDirectorySector_ = U32(&header[48]);
    firstMiniFatSector_ = U32(&header[60]);
    firstDifatSector_ = U32(&header[68]);
    for (std::size_t i = 0; i < DIFAT_IN_HEADER; ++i) fat_.push_back(U32(&header[76 + 4 * i]));
    return true;
  }

  std::size_t SectorSize() const { return std::size_t{1} << shift_; }
  std::uint64_t SectorCount() const { return sectorCount_; }

  // The low half only in version 3, whose writers left the other undefined.
  std::uint64_t SizeOf(const Entry& entry) const {
    return version_ == 3 ? entry.SizeLow()
                         : entry.SizeLow() | std::uint64_t{entry.SizeHigh()} << 32;
  }

  std::size_t ReadSector(std::uint32_t sector, std::size_t offset, void* bytes,
                         std::size_t count) const {
    if (sector >= sectorCount_) return 0;
    return source_->ReadAt(((std::uint64_t{sector} + 1) << shift_) + offset, bytes, count);
  }

  // What follows the sector in its chain. [MS-CFB] 2.3.
  std::uint32_t Next(std::uint32_t sector) {
    const std::size_t perSector = SectorSize() / 4;
    const std::size_t index = sector / perSector;
    if (index >= fat_.size()) ReadDifat();
    if (index >= fat_.size()) return NO_SECTOR;
    return TableEntry(&fatCache_, fat_[index], sector % perSector);
  }

  // The same for sectors of the mini stream. [MS-CFB] 2.4.
  std::uint32_t NextMini(std::uint32_t sector) {
    const std::size_t perSector = SectorSize() / 4;
    const std::vector<std::uint32_t>& table = MiniFat();
    const std::size_t index = sector / perSector;
    return index < table.size() ? TableEntry(&miniFatCache_, table[index], sector % perSector)
                                : NO_SECTOR;
  }

  std::uint64_t MiniSectorCount() {
    return MiniStream().size() * (SectorSize() / MINI_SECTOR_SIZE);
  }

  // `sector` is below MiniSectorCount().
  std::size_t ReadMiniSector(std::uint32_t sector, std::size_t offset, std::uint8_t* bytes,
                             std::size_t count) {
    const std::uint64_t position = std::uint64_t{sector} * MINI_SECTOR_SIZE;
    const std::uint64_t index = position >> shift_;
    return miniStreamCache_.Read(*this, MiniStream()[static_cast<std::size_t>(index)],
                                 static_cast<std::size_t>(position & (SectorSize() - 1)) + offset,
                                 bytes, count);
  }

  std::optional<Entry> ReadEntry(std::uint32_t number) {
    const std::vector<std::uint32_t>& directory = Directory();
    const std::size_t perSector = SectorSize() / ENTRY_SIZE;
    const std::size_t index = number / perSector;
    Entry entry;
    if (index >= directory.size() ||
        directoryCache_.Read(*this, directory[index], number % perSector * ENTRY_SIZE, entry.data(),
                             ENTRY_SIZE) != ENTRY_SIZE) {
      return std::nullopt;
    }
    return entry;
  }

  // The stream of this name directly below the root. The entries there form a tree by their order;
  // all of it is searched, since not every writer keeps the order. [MS-CFB] 2.6.4.
  std::optional<Entry> FindStream(std::wstring_view name) {
    const std::optional<Entry> root = ReadEntry(ROOT_ENTRY);
    if (!root) return std::nullopt;
    Visited visited(Directory().size() * (SectorSize() / ENTRY_SIZE));
    std::vector<std::uint32_t> pending = {root->Child()};
    while (!pending.empty()) {
      const std::uint32_t number = pending.back();
      pending.pop_back();
      if (!visited.Visit(number)) continue;
      const std::optional<Entry> entry = ReadEntry(number);
      if (!entry) continue;
      if (entry->IsStream() && entry->IsCalled(name)) return entry;
      pending.push_back(entry->Right());
      pending.push_back(entry->Left());
    }
    return std::nullopt;
  }

 private:
  // One number of a sector of an allocation table.
  std::uint32_t TableEntry(SectorCache* cache, std::uint32_t sector, std::size_t index) const {
    std::array<std::uint8_t, 4> entry;
    return cache->Read(*this, sector, 4 * index, entry.data(), 4) == 4 ? U32(entry.data())
                                                                       : NO_SECTOR;
  }

  std::vector<std::uint32_t> Chain(std::uint32_t first, std::uint64_t most) {
    std::vector<std::uint32_t> chain;
    Visited visited(sectorCount_);
    for (std::uint32_t sector = first; chain.size() < most && visited.Visit(sector);
         sector = Next(sector)) {
      chain.push_back(sector);
    }
    return chain;
  }

  // Where the sectors of the allocation table lie, beyond those that the header names, as far as
  // the file can need them. [MS-CFB] 2.5.
  void ReadDifat() {
    if (hasReadDifat_) return;
    hasReadDifat_ = true;
    const std::size_t perSector = SectorSize() / 4;
    const std::uint64_t needed = (sectorCount_ + perSector - 1) / perSector;
    std::vector<std::uint8_t> bytes(SectorSize());
    Visited visited(sectorCount_);
    for (std::uint32_t sector = firstDifatSector_; fat_.size() < needed && visited.Visit(sector);) {
      if (ReadSector(sector, 0, bytes.data(), bytes.size()) != bytes.size()) return;
      for (std::size_t i = 0; i + 1 < perSector; ++i) fat_.push_back(U32(&bytes[4 * i]));
      sector = U32(&bytes[bytes.size() - 4]);
    }
  }

  const std::vector<std::uint32_t>& Directory() {
    if (!directory_) {
      directory_ = Chain(firstDirectorySector_, MOST_ENTRIES / (SectorSize() / ENTRY_SIZE));
    }
    return *directory_;
  }
  const std::vector<std::uint32_t>& MiniFat() {
    if (!miniFat_) miniFat_ = Chain(firstMiniFatSector_, sectorCount_);
    return *miniFat_;
  }
  // The mini stream is the root's own.
  const std::vector<std::uint32_t>& MiniStream() {
    if (!miniStream_) {
      const std::optional<Entry> root = ReadEntry(ROOT_ENTRY);
      miniStream_ = root ? Chain(root->FirstSector(), sectorCount_) : std::vector<std::uint32_t>();
    }
    return *miniStream_;
  }

  std::unique_ptr<ByteSource> source_;
  int version_ = 0;
  int shift_ = 0;
  std::uint64_t sectorCount_ = 0;  // sectors that begin inside the file
  std::uint32_t firstDirectorySector_ = NO_SECTOR;
  std::uint32_t firstMiniFatSector_ = NO_SECTOR;
  std::uint32_t firstDifatSector_ = NO_SECTOR;
  bool hasReadDifat_ = false;
  std::vector<std::uint32_t> fat_;
  std::optional<std::vector<std::uint32_t>> directory_;
  std::optional<std::vector<std::uint32_t>> miniFat_;
  std::optional<std::vector<std::uint32_t>> miniStream_;
  SectorCache fatCache_;
  SectorCache miniFatCache_;
  SectorCache miniStreamCache_;
  SectorCache directoryCache_;
};

std::size_t SectorCache::Read(const Document& document, std::uint32_t sector, std::size_t offset,
                              std::uint8_t* bytes, std::size_t count) {
  if (sector != sector_) {
    sector_ = sector;
    length_ = document.ReadSector(sector, 0, bytes_.data(), document.SectorSize());
  }
  if (offset >= length_) return 0;
  const std::size_t taken = std::min(count, length_ - offset);
  std::copy_n(&bytes_[offset], taken, bytes);
  return taken;
}

// A stream's content, read from its start on.
class Content {
 public:
  Content(std::shared_ptr<Document> document, const Entry& entry)
      : document_(std::move(document)),
        left_(document_->SizeOf(entry)),
        isMini_(left_ < MINI_STREAM_CUTOFF),
        sectorSize_(isMini_ ? MINI_SECTOR_SIZE : document_->SectorSize()),
        visited_(isMini_ ? document_->MiniSectorCount() : document_->SectorCount()),
        sector_(entry.FirstSector()) {
    isThere_ = visited_.Visit(sector_);
  }

  std::size_t Read(std::uint8_t* bytes, std::size_t count) {
    std::size_t done = 0;
    count = static_cast<std::size_t>(std::min<std::uint64_t>(count, left_));
    while (done < count && isThere_) {
      const std::size_t wanted = std::min(count - done, sectorSize_ - offset_);
      const std::size_t got =
          isMini_ ? document_->ReadMiniSector(sector_, offset_, bytes + done, wanted)
                  : document_->ReadSector(sector_, offset_, bytes + done, wanted);
      done += got;
      offset_ += got;
      if (got < wanted) isThere_ = false;
      if (offset_ == sectorSize_) {
        offset_ = 0;
        sector_ = isMini_ ? document_->NextMini(sector_) : document_->Next(sector_);
        isThere_ = visited_.Visit(sector_);
      }
    }
    left_ -= done;
    return done;
  }

 private:
  std::shared_ptr<Document> document_;
  std::uint64_t left_;
  bool isMini_;
  std::size_t sectorSize_;
  Visited visited_;
  std::uint32_t sector_;
  std::size_t offset_ = 0;
  bool isThere_;
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
  explicit Stream(Content content) : content_(std::move(content)) {}

  HRESULT Read(void* bytes, std::uint32_t count, std::uint32_t* read) override {
    std::size_t got = 0;
    HRESULT result = S_OK;
    try {
      got = content_.Read(static_cast<std::uint8_t*>(bytes), count);
    } catch (const std::bad_alloc&) {
      result = STG_E_INSUFFICIENTMEMORY;
    }
    if (read != nullptr) *read = static_cast<std::uint32_t>(got);
    return result;
  }

 private:
  Content content_;
};

class Storage final : public Counted<IStorage> {
 public:
  explicit Storage(std::shared_ptr<Document> document) : document_(std::move(document)) {}

  HRESULT CreateStream() override { return E_NOTIMPL; }
  HRESULT OpenStream(const wchar_t* name, void* /*reserved1*/, std::uint32_t /*mode*/,
                     std::uint32_t /*reserved2*/, IStream** stream) override {
    *stream = nullptr;
    try {
      const std::optional<Entry> entry = document_->FindStream(name);
      if (!entry) return STG_E_FILENOTFOUND;
      *stream = new Stream(Content(document_, *entry));
      return S_OK;
    } catch (const std::bad_alloc&) {
      return STG_E_INSUFFICIENTMEMORY;
    }
  }
  HRESULT ReadClass(CLSID* classId) {
    *classId = {};
    try {
      const std::optional<Entry> root = document_->ReadEntry(ROOT_ENTRY);
      if (!root) return STG_E_READFAULT;
      *classId = root->ClassId();
      return S_OK;
    } catch (const std::bad_alloc&) {
      return STG_E_INSUFFICIENTMEMORY;
    }
  }

 private:
  std::shared_ptr<Document> document_;
};

}  // namespace

bool HasSignature(const ByteSource& source) {
  std::array<std::uint8_t, 8> start;
  return source.ReadAt(0, start.data(), start.size()) == start.size() && start == SIGNATURE;
}

HRESULT Open(std::unique_ptr<ByteSource> source, IStorage** storage) {
  *storage = nullptr;
  try {
    auto document = std::make_shared<Document>(std::move(source));
    if (!document->ReadHeader()) return STG_E_INVALIDHEADER;
    *storage = new Storage(std::move(document));
    return S_OK;
  } catch (const std::bad_alloc&) {
    return STG_E_INSUFFICIENTMEMORY;
  }
}

HRESULT ReadClass(IStorage* storage, CLSID* classId) {
  return static_cast<Storage*>(storage)->ReadClass(classId);
}

}  // namespace compound
