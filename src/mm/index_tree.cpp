// AVL insertion and removal, recursive: the depth is the tree's height, a few
// dozen frames at most.  Every node whose children change is refreshed on
// the way back up, and so is its parent, which keeps those children as
// grandchildren: both lie on the path of the change.
#include "mm/index_tree.h"

namespace ipacl::mm::tree {
namespace {

constexpr int kLeft = 0;
constexpr int kRight = 1;

int height(const TreeNode *n) { return n ? static_cast<int>(n->height) : 0; }

void refresh(TreeNode *n) {
    const int h = height(n->child[kLeft]) > height(n->child[kRight]) ? height(n->child[kLeft])
                                                                     : height(n->child[kRight]);
    n->height = static_cast<uint32_t>(h + 1);
    for (int side = kLeft; side <= kRight; ++side) {
        const TreeNode *c = n->child[side];
        n->child_key[side] = c ? c->key : 0;
        n->grandchild[side][kLeft] = c ? c->child[kLeft] : nullptr;
        n->grandchild[side][kRight] = c ? c->child[kRight] : nullptr;
    }
}

// Turns the subtree `n` so that its child on `side` comes up.
TreeNode *rotate(TreeNode *n, int side) {
    TreeNode *top = n->child[side];
    n->child[side] = top->child[1 - side];
    top->child[1 - side] = n;
    refresh(n);
    refresh(top);
    return top;
}

// `n` with subtrees whose heights differ by at most 2, made balanced again.
TreeNode *rebalance(TreeNode *n) {
    refresh(n);
    const int lean = height(n->child[kLeft]) - height(n->child[kRight]);
    if (lean >= -1 && lean <= 1) return n;
    const int heavy = lean > 1 ? kLeft : kRight;
    TreeNode *c = n->child[heavy];
    if (height(c->child[heavy]) < height(c->child[1 - heavy]))
        n->child[heavy] = rotate(c, 1 - heavy);
    return rotate(n, heavy);
}

// The subtree `n` without its least node, which goes to *least.
TreeNode *take_least(TreeNode *n, TreeNode **least) {
    if (!n->child[kLeft]) {
        *least = n;
        return n->child[kRight];
    }
    n->child[kLeft] = take_least(n->child[kLeft], least);
    return rebalance(n);
}

}  // namespace

TreeNode *insert(TreeNode *root, TreeNode *node) {
    if (!root) {
        node->child[kLeft] = nullptr;
        node->child[kRight] = nullptr;
        refresh(node);
        return node;
    }
    const int side = node->key < root->key ? kLeft : kRight;
    root->child[side] = insert(root->child[side], node);
    return rebalance(root);
}

TreeNode *erase(TreeNode *root, uint64_t key) {
    if (!root) return nullptr;
    if (key != root->key) {
        const int side = key < root->key ? kLeft : kRight;
        root->child[side] = erase(root->child[side], key);
        return rebalance(root);
    }
    if (!root->child[kRight]) return root->child[kLeft];
    TreeNode *successor = nullptr;
    TreeNode *right = take_least(root->child[kRight], &successor);
    successor->child[kLeft] = root->child[kLeft];
    successor->child[kRight] = right;
    return rebalance(successor);
}

TreeNode *at_or_before(TreeNode *root, uint64_t key) {
    // Two levels per node read, the child's key being kept here.  Written
    // as selections, not branches: the way down is as good as random.
    TreeNode *found = nullptr;
    for (TreeNode *n = root; n;) {
        const int side = static_cast<int>(n->key <= key);
        TreeNode *const after_n[2] = {found, n};
        found = after_n[side];
        TreeNode *c = n->child[side];
        if (!c) break;
        const int next = static_cast<int>(n->child_key[side] <= key);
        TreeNode *const after_c[2] = {found, c};
        found = after_c[next];
        n = n->grandchild[side][next];
    }
    return found;
}

TreeNode *least(TreeNode *root) {
    while (root && root->child[kLeft]) root = root->child[kLeft];
    return root;
}

}  // namespace ipacl::mm::tree
