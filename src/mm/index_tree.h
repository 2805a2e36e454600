// Ordered sets of nodes that the caller owns and places where it likes:
// balanced search trees (AVL) with no allocation of their own.  Every
// operation is O(log n): the height of an AVL tree of n nodes stays below
// 1.45 log2(n + 2).
#pragma once

#include <cstdint>

namespace ipacl::mm {

// A node of a tree that is only walked to its least node.
struct TreeNode {
    TreeNode *child[2];  // smaller keys left (0), greater right (1)
    uint64_t key;        // unique within a tree
    uint32_t height;     // of the subtree rooted here, a leaf is 1
};

// A node of a tree that is searched by key.  It also keeps its children's
// keys and its grandchildren, so a search decides two levels from one node
// and reads every other node of its path only: in a large tree each node
// read is a cache miss.
struct SearchNode {
    SearchNode *child[2];
    SearchNode *grandchild[2][2];  // child[i]->child[j], kept by the tree
    uint64_t key;
    uint64_t child_key[2];  // child[i]->key, kept by the tree
    uint32_t height;
};

namespace tree {

// `node` (its key set by the caller) added; returns the new root.
template <typename Node>
Node *insert(Node *root, Node *node);

// The node with `key` taken out (it must be in the tree); returns the new root.
template <typename Node>
Node *erase(Node *root, uint64_t key);

// The node with the least key, or NULL.
TreeNode *least(TreeNode *root);

// The node with the greatest key at most `key`, or NULL.
SearchNode *at_or_before(SearchNode *root, uint64_t key);

}  // namespace tree
}  // namespace ipacl::mm
