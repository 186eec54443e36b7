// Compound documents: the few calls of the system's structured storage that are made here.
//
// On Windows the types are the system's own (ole32): their sizes and the order of the virtual
// functions are its binary interface. Two of the functions are the system's too and bound by the
// linker; the other two the host layer defines, and they call the system's function of the same
// name. Elsewhere the host layer defines all of them over its own reader (host/compound). One
// declaration serves both, so that no other code includes a platform header.
// Public source of the interfaces: the structured storage reference of the Windows SDK.
#ifndef TYPESCOUT_HOST_STRUCTURED_STORAGE_H
#define TYPESCOUT_HOST_STRUCTURED_STORAGE_H

#include <cstdint>

using HRESULT = std::int32_t;  // negative: failure

// A class identifier (GUID), laid out as in files.
struct CLSID {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::uint8_t data4[8];
};
static_assert(sizeof(CLSID) == 16);

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
constexpr HRESULT MakeFailure(std::uint32_t code) { return static_cast<HRESULT>(code); }
inline constexpr HRESULT E_NOINTERFACE = MakeFailure(0x80004002);
inline constexpr HRESULT E_NOTIMPL = MakeFailure(0x80004001);
inline constexpr HRESULT STG_E_INVALIDFUNCTION = MakeFailure(0x80030001);
inline constexpr HRESULT STG_E_FILENOTFOUND = MakeFailure(0x80030002);
inline constexpr HRESULT STG_E_ACCESSDENIED = MakeFailure(0x80030005);
inline constexpr HRESULT STG_E_INSUFFICIENTMEMORY = MakeFailure(0x80030008);
inline constexpr HRESULT STG_E_LOCKVIOLATION = MakeFailure(0x80030021);
inline constexpr HRESULT STG_E_INVALIDHEADER = MakeFailure(0x800300FB);
inline constexpr HRESULT CO_E_CLASSSTRING = MakeFailure(0x800401F3);

inline constexpr std::uint32_t STGM_READ = 0x0;
inline constexpr std::uint32_t STGM_SHARE_EXCLUSIVE = 0x10;
inline constexpr std::uint32_t STGM_SHARE_DENY_WRITE = 0x20;
inline constexpr std::uint32_t STGM_SHARE_DENY_NONE = 0x40;
inline constexpr std::uint32_t STGM_TRANSACTED = 0x10000;

// The interfaces have no virtual destructor: Release() is how they end. Slots that are never called
// from here are declared without arguments, for their place alone.
struct IUnknown {
  virtual HRESULT QueryInterface(const CLSID& interfaceId, void** object) = 0;
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;

 protected:
  ~IUnknown() = default;
};

struct IStream : IUnknown {
  // Reads up to `count` bytes from the current position on (the start, when freshly opened) into
  // `bytes`; `*read` becomes the number that came. Fewer at the end of the stream and where the
  // chain of its sectors is damaged.
  virtual HRESULT Read(void* bytes, std::uint32_t count, std::uint32_t* read) = 0;

 protected:
  ~IStream() = default;
};

struct IStorage : IUnknown {
  virtual HRESULT CreateStream() = 0;
  // Opens the stream `name` directly below this storage, found without regard to case; `reserved1`
  // null, `mode` STGM_READ | STGM_SHARE_EXCLUSIVE, `reserved2` 0. On failure `*stream` is null. The
  // caller releases the stream.
  virtual HRESULT OpenStream(const wchar_t* name, void* reserved1, std::uint32_t mode,
                             std::uint32_t reserved2, IStream** stream) = 0;

 protected:
  ~IStorage() = default;
};

// S_OK when the file is a compound document, S_FALSE when it is not, a failure code when
// the file cannot be read.
HRESULT StgIsStorageFile(const wchar_t* path);

// Opens a compound document for reading; `priority` and `exclusions` null, `reserved` 0. On failure
// `*storage` is null. The caller releases the storage. A document whose structure could keep the
// system's reader from ending is refused: STG_E_INVALIDHEADER.
HRESULT StgOpenStorage(const wchar_t* path, IStorage* priority, std::uint32_t mode,
                       wchar_t** exclusions, std::uint32_t reserved, IStorage** storage);

extern "C" {

// The class identifier of the storage.
HRESULT ReadClassStg(IStorage* storage, CLSID* classId);

// Reads the form {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}.
HRESULT CLSIDFromString(const wchar_t* text, CLSID* classId);

}  // extern "C"

#endif  // TYPESCOUT_HOST_STRUCTURED_STORAGE_H
