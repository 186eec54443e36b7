// The binary interface of the PDF import module's question "GetAINativeData".
//
// The module is built apart from this library, with Microsoft's C++ standard library, for 64-bit
// little-endian machines. Its records are laid out here by hand: the ordered set and the string as
// in github.com/microsoft/STL, stl/inc/xtree and stl/inc/xstring; large blocks of memory as in
// stl/inc/xmemory.
#ifndef TYPESCOUT_DETECTORS_POSTSCRIPT_AI_NATIVE_DATA_H
#define TYPESCOUT_DETECTORS_POSTSCRIPT_AI_NATIVE_DATA_H

#include <cstddef>
#include <cstdint>

namespace typescout {

// Whether records of this platform can have the module's layout. Elsewhere the module must not be
// asked, and the layouts below do not matter. (std::endian is C++20; the PDF import module is built
// as C++17.)
inline constexpr bool HAS_MODULE_LAYOUT =
    sizeof(void*) == 8 && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

// A wide string. A short one is in `buffer`, a longer one in a block of memory.
struct ModuleString {
  static constexpr std::uint64_t BUFFER_SIZE = 8;

  bool IsInBlock() const { return capacity >= BUFFER_SIZE; }
  // The address of the block as operator new returned it; only when there is a block.
  void* AllocatedBlock() const;

  union {
    char16_t buffer[BUFFER_SIZE];
    char16_t* block;
  };
  std::uint64_t size;
  std::uint64_t capacity;  // without the terminating zero
};
static_assert(!HAS_MODULE_LAYOUT || sizeof(ModuleString) == 32);

// A node of the red-black tree that an ordered set is; allocated by operator new.
struct ModuleSetNode {
  static constexpr std::uint8_t BLACK = 1;

  ModuleSetNode* left;    // the sentinel's: the smallest element
  ModuleSetNode* parent;  // the sentinel's: the root
  ModuleSetNode* right;   // the sentinel's: the largest element
  std::uint8_t color;
  std::uint8_t isNil;  // 1 in the sentinel, which stands for every missing neighbour; else 0
  ModuleString value;  // uninitialised in the sentinel
};
static_assert(!HAS_MODULE_LAYOUT ||
              (offsetof(ModuleSetNode, parent) == 8 && offsetof(ModuleSetNode, right) == 16 &&
               offsetof(ModuleSetNode, color) == 24 && offsetof(ModuleSetNode, isNil) == 25 &&
               offsetof(ModuleSetNode, value) == 32 && sizeof(ModuleSetNode) == 64));

// An ordered set of wide strings that a module may insert into. Starts empty. Releases what the
// module left in it by operator delete, so the module must share this library's operator new.
class ModuleStringSet {
 public:
  ModuleStringSet();
  ModuleStringSet(const ModuleStringSet&) = delete;
  ModuleStringSet& operator=(const ModuleStringSet&) = delete;
  ~ModuleStringSet();

  // False when memory ran out. A module must not be given such a set.
  bool IsValid() const { return sentinel_ != nullptr; }

 private:
  ModuleSetNode* sentinel_;
  std::uint64_t count_ = 0;
};

// The question's argument. The meaning of the numbers is unknown; the module expects these values.
struct AINativeDataQuery {
  const wchar_t* path = nullptr;  // the file; belongs to the caller
  std::uint32_t zeroAt8 = 0;
  std::uint32_t unusedAt12 = 0;
  std::uint64_t zeroAt16 = 0;
  std::uint32_t zeroAt24 = 0;
  std::uint32_t oneAt28 = 1;
  const std::int32_t* one = nullptr;  // to a 1 that outlives the call
  std::uint64_t zeroAt40 = 0;
  ModuleStringSet strings;
  std::uint32_t zeroAt64 = 0;
};
static_assert(
    !HAS_MODULE_LAYOUT ||
    (offsetof(AINativeDataQuery, zeroAt8) == 8 && offsetof(AINativeDataQuery, zeroAt16) == 16 &&
     offsetof(AINativeDataQuery, zeroAt24) == 24 && offsetof(AINativeDataQuery, oneAt28) == 28 &&
     offsetof(AINativeDataQuery, one) == 32 && offsetof(AINativeDataQuery, zeroAt40) == 40 &&
     offsetof(AINativeDataQuery, strings) == 48 && offsetof(AINativeDataQuery, zeroAt64) == 64 &&
     sizeof(AINativeDataQuery) == 72));

// Answers 0 when the module has no answer; else it may have filled `*flags`. `reserved` is null.
// May throw.
using GetAINativeDataFunction = std::int32_t (*)(AINativeDataQuery* query, void* reserved,
                                                 std::uint32_t* flags);

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_POSTSCRIPT_AI_NATIVE_DATA_H
