// What the PDF import module does to the set of strings that it is given.
#ifndef TYPESCOUT_TESTS_SUPPORT_MODULE_SET_H
#define TYPESCOUT_TESTS_SUPPORT_MODULE_SET_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

#include "detectors/postscript/ai_native_data.h"

namespace typescout::tests {

// The set, as the module's own standard library sees it.
struct SetParts {
  ModuleSetNode* sentinel;
  std::uint64_t count;
};
static_assert(sizeof(SetParts) == sizeof(ModuleStringSet));

inline SetParts PartsOf(const AINativeDataQuery* query) {
  SetParts parts;
  std::memcpy(&parts, static_cast<const void*>(&query->strings), sizeof parts);
  return parts;
}

// Puts a string into the tree's empty place `link`.
inline ModuleSetNode* InsertString(ModuleSetNode*& link, ModuleSetNode* sentinel,
                                   std::u16string_view text) {
  link = static_cast<ModuleSetNode*>(::operator new(sizeof(ModuleSetNode)));
  *link = {sentinel, sentinel, sentinel, 0, 0, {}};
  link->value.size = text.size();
  link->value.capacity = std::max<std::uint64_t>(text.size(), ModuleString::BUFFER_SIZE - 1);
  char16_t* place = link->value.buffer;
  if (link->value.IsInBlock()) {
    // Blocks of 4,096 bytes and more are aligned to 32, with the true address in front.
    const std::size_t size = 2 * (text.size() + 1);
    const std::size_t extra = size >= 4'096 ? 8 + 31 : 0;
    void* const allocated = ::operator new(size + extra);
    const auto address = reinterpret_cast<std::uintptr_t>(allocated) + extra;
    place = reinterpret_cast<char16_t*>(extra == 0 ? address : address & ~std::uintptr_t{31});
    if (extra != 0) std::memcpy(reinterpret_cast<char*>(place) - 8, &allocated, 8);
    link->value.block = place;
  }
  text.copy(place, text.size());
  place[text.size()] = 0;
  return link;
}

}  // namespace typescout::tests

#endif  // TYPESCOUT_TESTS_SUPPORT_MODULE_SET_H
