// The binary interface of the PDF import module's question "GetAINativeData".
//
// The module is built apart from this library, with the standard library of the suite's own
// platform, for 64-bit little-endian machines. What it sees is laid out here by hand. The layouts
// of the ordered set and of the string are those of the C++ standard library that Microsoft
// publishes at github.com/microsoft/STL (stl/inc/xtree, stl/inc/xstring).
#ifndef TYPESCOUT_DETECTORS_POSTSCRIPT_AI_NATIVE_DATA_H
#define TYPESCOUT_DETECTORS_POSTSCRIPT_AI_NATIVE_DATA_H

#include <cstddef>
#include <cstdint>

namespace typescout {

// A wide string: short ones stand in `buffer`, longer ones in a block from operator new.
struct ModuleString {
  static constexpr std::uint64_t BUFFER_SIZE = 8;

  bool IsInBlock() const { return capacity >= BUFFER_SIZE; }

  union {
    char16_t buffer[BUFFER_SIZE];
    char16_t* block;
  };
  std::uint64_t size;
  std::uint64_t capacity;  // without the terminating zero
};
static_assert(sizeof(ModuleString) == 32);

// A node of the red-black tree that an ordered set is; in a block from operator new.
struct ModuleSetNode {
  static constexpr std::uint8_t BLACK = 1;

  ModuleSetNode* left;    // the sentinel's: the smallest element
  ModuleSetNode* parent;  // the sentinel's: the root
  ModuleSetNode* right;   // the sentinel's: the largest element
  std::uint8_t color;
  std::uint8_t isNil;  // 1 in the sentinel alone, which every missing neighbour points to
  ModuleString value;  // not there in the sentinel
};
static_assert(offsetof(ModuleSetNode, parent) == 8);
static_assert(offsetof(ModuleSetNode, right) == 16);
static_assert(offsetof(ModuleSetNode, color) == 24);
static_assert(offsetof(ModuleSetNode, isNil) == 25);
static_assert(offsetof(ModuleSetNode, value) == 32);
static_assert(sizeof(ModuleSetNode) == 64);

// An ordered set of wide strings that a module may insert into. Starts empty; releases whatever the
// module left in it, with operator delete, which the module must share.
class ModuleStringSet {
 public:
  ModuleStringSet();
  ModuleStringSet(const ModuleStringSet&) = delete;
  ModuleStringSet& operator=(const ModuleStringSet&) = delete;
  ~ModuleStringSet();

  // False when memory ran out: such a set must not be shown to a module.
  bool IsValid() const { return sentinel_ != nullptr; }

 private:
  ModuleSetNode* sentinel_;
  std::uint64_t count_ = 0;
};

// The question's argument. What the numbers mean is the module's own affair.
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
static_assert(offsetof(AINativeDataQuery, zeroAt8) == 8);
static_assert(offsetof(AINativeDataQuery, zeroAt16) == 16);
static_assert(offsetof(AINativeDataQuery, zeroAt24) == 24);
static_assert(offsetof(AINativeDataQuery, oneAt28) == 28);
static_assert(offsetof(AINativeDataQuery, one) == 32);
static_assert(offsetof(AINativeDataQuery, zeroAt40) == 40);
static_assert(offsetof(AINativeDataQuery, strings) == 48);
static_assert(offsetof(AINativeDataQuery, zeroAt64) == 64);
static_assert(sizeof(AINativeDataQuery) == 72);

// Answers 0 when the module has no answer; else it may have filled `*flags`. `reserved` is null.
// May throw.
using GetAINativeDataFunction = std::int32_t (*)(AINativeDataQuery* query, void* reserved,
                                                 std::uint32_t* flags);

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_POSTSCRIPT_AI_NATIVE_DATA_H
