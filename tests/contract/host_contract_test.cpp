// The contract of every host. Built against the machine's own host and against the one in
// memory, so that they cannot drift apart.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "host/config.h"
#include "host/library.h"
#include "host/memory_stream.h"
#include "host/owners.h"
#include "host/path.h"
#include "host/strings.h"
#include "host/structured_storage.h"
#include "tests/support/read_stream.h"
#ifdef HOST_IN_MEMORY
#include "host/memory/memory_host.h"
#else
#include "tests/support/documents.h"
#include "tests/support/temp_folder.h"
#endif

namespace typescout::tests {
namespace {

using TvnPlatform::TvnStringT;
using TvnPlatform::TvnStringViewT;

constexpr CLSID CLASS = {
    0xDE14F420, 0xAC1C, 0x11CE, {0xBE, 0x26, 0xDB, 0x67, 0x23, 0x5E, 0x26, 0x89}};

using Streams = std::map<std::wstring, std::string>;

// Each returns a path: of a file or a compound document that is there now, of nothing.
#ifdef HOST_IN_MEMORY
std::wstring PutFile(const std::wstring& name, const std::string& bytes) {
  memory_host::TheMachine().files[name] = bytes;
  return name;
}
std::wstring PutDocument(const CLSID& classId, const Streams& streams) {
  memory_host::TheMachine().documents[L"document"] = {.classId = classId, .streams = streams};
  return PutFile(L"document", "\xD0\xCF\x11\xE0");
}
std::wstring MissingPath() { return L"missing"; }
#else
const TempFolder testFolder;

std::wstring PutFile(const std::wstring& name, const std::string& bytes) {
  return Wide(testFolder.Write(name, bytes));
}
std::wstring PutDocument(const CLSID& classId, const Streams& streams) {
  return PutFile(L"document", WriteCompound(streams, {.classId = classId}));
}
std::wstring MissingPath() { return Wide(testFolder.path() / "missing"); }
#endif

std::string Read(FileOwner& file, std::uint32_t count) {
  std::string bytes(count, '?');
  bytes.resize(file->Read(bytes.data(), count));
  return bytes;
}

TEST(HostFile, ReadsFromItsPosition) {
  const std::wstring path = PutFile(L"file", "0123456789");
  FileOwner file;
  ASSERT_TRUE(file.Open(path.c_str()));
  EXPECT_EQ(Read(file, 4), "0123");
  EXPECT_EQ(file->GetLength(), 10u) << "whatever the position";
  EXPECT_EQ(Read(file, 100), "456789") << "fewer at the end";
  EXPECT_EQ(Read(file, 1), "") << "nothing beyond it";
  file->SeekToBegin();
  EXPECT_EQ(Read(file, 0), "");
  EXPECT_EQ(Read(file, 1), "0");

  for (const unsigned at : {7u, 0u, 10u}) {
    EXPECT_TRUE(file.SeekTo(at));
    EXPECT_EQ(Read(file, 11), std::string("0123456789").substr(at));
  }
  EXPECT_FALSE(file.SeekTo(11));
  EXPECT_FALSE(file.SeekTo(0xFFFFFFFF));
}

TEST(HostFile, OpensOnlyWhatIsThere) {
  EXPECT_FALSE(FileOwner().Open(nullptr));
  EXPECT_FALSE(FileOwner().Open(L""));
  EXPECT_FALSE(FileOwner().Open(MissingPath().c_str()));
  const std::wstring empty = PutFile(L"empty", "");
  FileOwner file;
  EXPECT_TRUE(file.Open(empty.c_str()));
  EXPECT_EQ(file->GetLength(), 0u);
  EXPECT_EQ(Read(file, 3), "");
}

TEST(HostStrings, CopyWholeOrNotAtAll) {
  for (const std::size_t length : std::initializer_list<std::size_t>{0, 1, 258, 259, 260, 5'000}) {
    std::wstring buffer(300, L'#');
    const std::wstring source(length, L's');
    EXPECT_EQ(TvnUtl::StringCopy(buffer.data(), 260, source.c_str()), buffer.data());
    EXPECT_EQ(std::wstring(buffer.c_str()), length < 260 ? source : L"") << length;
    EXPECT_EQ(buffer.substr(260), std::wstring(40, L'#')) << "nothing is written behind";
  }
}

TEST(HostStrings, CompareWithoutCase) {
  const TvnStringT<wchar_t> text(L".Zrs");
  EXPECT_EQ(text.CompareNoCase(TvnStringViewT<wchar_t>(L".zRS")), 0);
  for (const wchar_t* other : {L".zr", L".zrs2", L"", L".zrt", L".\u017Frs"}) {
    EXPECT_NE(text.CompareNoCase(TvnStringViewT<wchar_t>(other)), 0) << other;
  }
  EXPECT_EQ(TvnStringT<wchar_t>().CompareNoCase(TvnStringViewT<wchar_t>(L"")), 0);
  EXPECT_NE(TvnStringT<wchar_t>(L"[").CompareNoCase(TvnStringViewT<wchar_t>(L"{")), 0);
}

TEST(HostPath, KnowsExtensions) {
  const wchar_t* const CASES[][3] = {
      {L"a.pdf", L".pdf", L".PDF"},
      {L"/b.c/a.Zr4", L".Zr4", L".ZR4"},
      {L"b.c\\a", L"", L""},
      {L"b.c/a", L"", L""},
      {L"a.b.c", L".c", L".C"},
      {L".pub", L".pub", L".PUB"},
      {L"a.", L".", L"."},
      {L"", L"", L""},
      {L"C:\\x\\y.pub", L".pub", L".PUB"},
      {L"a.\u00E9i", L".\u00E9i", L".\u00E9I"},
  };
  for (const auto& [path, extension, upper] : CASES) {
    EXPECT_EQ(SystemIO::Path::GetExtension(path).View(), extension) << path;
    EXPECT_EQ(SystemIO::Path::GetUpperExtension(path).View(), upper) << path;
  }
  EXPECT_TRUE(SystemIO::Path::HasExtension(L"x/a.VXR", L".vxr"));
  EXPECT_TRUE(SystemIO::Path::HasExtension(L"x\\.vxr", L".vxr"));
  for (const wchar_t* path : {L"a.vxrt", L"avxr", L"a.vxr/b", L"a.vxr\\b", L"xr", L"a.vxr ", L""}) {
    EXPECT_FALSE(SystemIO::Path::HasExtension(path, L".vxr")) << path;
  }
}

TEST(HostPath, JoinsWithOneSeparator) {
  const auto join = [](const wchar_t* folder) {
    return std::wstring(SystemIO::Path::Combine(folder, L"name").View());
  };
  EXPECT_TRUE(join(L"folder") == L"folder/name" || join(L"folder") == L"folder\\name");
  EXPECT_EQ(join(L"folder/"), L"folder/name");
  EXPECT_EQ(join(L"folder\\"), L"folder\\name");
  EXPECT_EQ(join(L""), L"") << "never the current folder";
}

TEST(HostMemoryStream, ReadsInPlace) {
  const unsigned char bytes[] = {'a', 'b', 'c'};
  TvnUtils::Stream stream = TvnUtils::MemStream::OpenOnRef(bytes, 3);
  EXPECT_EQ(stream.GetLength(), 3u);
  char read[8] = {};
  EXPECT_EQ(stream.Read(read, 2), 2u);
  TvnUtils::Stream copy = stream;
  EXPECT_EQ(copy.Read(read, 8), 1u);
  EXPECT_EQ(stream.Read(read, 8), 1u) << "copies move on independently";
  EXPECT_EQ(read[0], 'c');
  EXPECT_EQ(stream.Read(read, 8), 0u);
  EXPECT_EQ(TvnUtils::MemStream::OpenOnRef(nullptr, -1).GetLength(), 0u);
}

TEST(HostStorage, ReadsClassIdentifiersInText) {
  CLSID classId = {};
  EXPECT_EQ(CLSIDFromString(L"{DE14F420-AC1C-11CE-BE26-DB67235E2689}", &classId), S_OK);
  EXPECT_EQ(std::memcmp(&classId, &CLASS, sizeof classId), 0);
  EXPECT_EQ(CLSIDFromString(L"{de14f420-ac1c-11ce-be26-db67235e2689}", &classId), S_OK);
  for (const wchar_t* text :
       {L"{DE14F420-AC1C-11CE-BE26-DB67235E268}", L"(DE14F420-AC1C-11CE-BE26-DB67235E2689)",
        L"{GE14F420-AC1C-11CE-BE26-DB67235E2689}"}) {
    EXPECT_NE(CLSIDFromString(text, &classId), S_OK) << text;
  }
}

TEST(HostStorage, TellsDocuments) {
  EXPECT_EQ(StgIsStorageFile(PutDocument(CLASS, {}).c_str()), S_OK);
  EXPECT_EQ(StgIsStorageFile(PutFile(L"plain", "plain text").c_str()), S_FALSE);
  EXPECT_EQ(StgIsStorageFile(PutFile(L"nothing", "").c_str()), S_FALSE);
  EXPECT_LT(StgIsStorageFile(MissingPath().c_str()), 0);
  IStorage* storage = nullptr;
  EXPECT_LT(StgOpenStorage(MissingPath().c_str(), nullptr, 0x20, nullptr, 0, &storage), 0);
  EXPECT_EQ(storage, nullptr);
}

TEST(HostStorage, OpensStreamsByName) {
  const std::string longContent(6'000, 'l');
  const std::wstring path =
      PutDocument(CLASS, {{L"WordDocument", longContent}, {L"Contents", "short"}});
  InterfaceOwner<IStorage> storage;
  ASSERT_EQ(StgOpenStorage(path.c_str(), nullptr, 0x20, nullptr, 0, storage.Receive()), S_OK);
  CLSID classId = {};
  EXPECT_EQ(ReadClassStg(storage.get(), &classId), S_OK);
  EXPECT_EQ(std::memcmp(&classId, &CLASS, sizeof classId), 0);

  EXPECT_EQ(ReadStream(storage.get(), L"WordDocument"), longContent);
  EXPECT_EQ(ReadStream(storage.get(), L"wORDdOCUMENT", 7), longContent);
  EXPECT_EQ(ReadStream(storage.get(), L"Contents"), "short");
  EXPECT_EQ(ReadStream(storage.get(), L"Content"), NOT_THERE);
}

TEST(HostLibrary, IsHarmlessWithoutItsModule) {
  for (const wchar_t* name : {L"NoSuchModule", L"/no/such/Module", L""}) {
    const TvnStringT<wchar_t> text(name);
    TvnUtils::TvnLibrary library(text);
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_FALSE(library.Load());
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(library.GetSymbol("CheckForRaw"), nullptr);
    EXPECT_FALSE(library.Unload());
  }
}

TEST(HostConfig, NamesAFolderOfFilters) {
  EXPECT_FALSE(TvnConfig::INIGetFiltersDir().View().empty());
}

}  // namespace
}  // namespace typescout::tests
