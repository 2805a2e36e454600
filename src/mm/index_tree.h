// An ordered set of nodes that the caller owns and places where it likes:
// a balanced search tree (AVL) with no allocation of its own.  Every
// operation is O(log n): the height of an AVL tree of n nodes stays below
// 1.45 log2(n + 2).
#pragma once

#include <cstdint>

namespace ipacl::mm {

struct TreeNode {
    TreeNode *left;
    TreeNode *right;
    uint64_t key;     // unique within a tree
    uint32_t height;  // of the subtree rooted here, a leaf is 1
};

namespace tree {

// `node` (its key set by the caller) added; returns the new root.
TreeNode *insert(TreeNode *root, TreeNode *node);

// The node with `key` taken out (it must be in the tree); returns the new root.
TreeNode *erase(TreeNode *root, uint64_t key);

// The node with the greatest key at most `key`, or NULL.
TreeNode *at_or_before(TreeNode *root, uint64_t key);

// The node with the least key, or NULL.
TreeNode *least(TreeNode *root);

}  // namespace tree
}  // namespace ipacl::mm
