#include "detectors/postscript/ai_native_data.h"

#include <new>
#include <utility>

namespace typescout {
namespace {

void Release(ModuleSetNode* node) {
  if (node->value.IsInBlock()) ::operator delete(node->value.block);
  ::operator delete(node);
}

// Releases the tree below and at `node`. A left branch is turned up to the top before anything is
// released there, so that no tree, however lopsided, takes a stack.
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
