// An ordered set of nodes that the caller owns and places where it likes:
// a balanced search tree (AVL) with no allocation of its own.  Every
// operation is O(log n): the height of an AVL tree of n nodes stays below
// 1.45 log2(n + 2).
//
// Each node also keeps its children's keys and its grandchildren, so a
// search decides two levels from one node and touches every other node of
// its path only: in a large tree each node on the path is a cache miss.
#pragma once

#include <cstdint>

namespace ipacl::mm {

struct TreeNode {
    TreeNode *child[2];          // smaller keys left (0), greater right (1)
    TreeNode *grandchild[2][2];  // child[i]->child[j], kept by the tree
    uint64_t key;                // unique within a tree
    uint64_t child_key[2];       // child[i]->key, kept by the tree
    uint32_t height;             // of the subtree rooted here, a leaf is 1
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
