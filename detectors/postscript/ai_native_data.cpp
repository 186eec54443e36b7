#include "detectors/postscript/ai_native_data.h"

#include <iterator>
#include <new>
#include <utility>

namespace typescout {
namespace {

void Release(ModuleSetNode* node) {
  if (node->value.IsInBlock()) ::operator delete(node->value.AllocatedBlock());
  ::operator delete(node);
}

// Releases `node` and the tree below it. A node's left branch is rotated above the node before the
// node is released. So no stack is needed, however unbalanced the tree is.
void ReleaseTree(ModuleSetNode* node) {
  while (node->isNil == 0) {
    if (node->left->isNil == 0) {
      ModuleSetNode* const left = node->left;
      node->left = std::exchange(left->right, node);
      node = left;
    } else {
      Release(std::exchange(node, node->right));
    }
  }
}

}  // namespace

void* ModuleString::AllocatedBlock() const {
  // Microsoft's std::allocator aligns a block of this many bytes or more itself, and stores the
  // address of the memory that it allocated in front of the block.
  constexpr std::uint64_t ALIGNED_SIZE = 4'096;
  if (capacity < ALIGNED_SIZE / sizeof(char16_t) - 1) return block;
  return *std::prev(reinterpret_cast<void* const*>(block));
}

ModuleStringSet::ModuleStringSet()
    : sentinel_(static_cast<ModuleSetNode*>(::operator new(sizeof(ModuleSetNode), std::nothrow))) {
  if (sentinel_ == nullptr) return;
  sentinel_->left = sentinel_->parent = sentinel_->right = sentinel_;
  sentinel_->color = ModuleSetNode::BLACK;
  sentinel_->isNil = 1;
}

ModuleStringSet::~ModuleStringSet() {
  if (sentinel_ == nullptr) return;
  ReleaseTree(sentinel_->parent);
  ::operator delete(sentinel_);
}

}  // namespace typescout
