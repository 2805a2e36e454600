// AVL insertion and removal, recursive: the depth is the tree's height, a few
// dozen frames at most.  Rotations and every change on the way back up
// recompute the heights of the nodes they touch.
#include "mm/index_tree.h"

namespace ipacl::mm::tree {
namespace {

int height(const TreeNode *n) { return n ? static_cast<int>(n->height) : 0; }

void refresh(TreeNode *n) {
    const int h = height(n->left) > height(n->right) ? height(n->left) : height(n->right);
    n->height = static_cast<uint32_t>(h + 1);
}

TreeNode *rotate_right(TreeNode *n) {
    TreeNode *top = n->left;
    n->left = top->right;
    top->right = n;
    refresh(n);
    refresh(top);
    return top;
}

TreeNode *rotate_left(TreeNode *n) {
    TreeNode *top = n->right;
    n->right = top->left;
    top->left = n;
    refresh(n);
    refresh(top);
    return top;
}

// `n` with subtrees whose heights differ by at most 2, made balanced again.
TreeNode *rebalance(TreeNode *n) {
    refresh(n);
    const int lean = height(n->left) - height(n->right);
    if (lean > 1) {
        if (height(n->left->left) < height(n->left->right)) n->left = rotate_left(n->left);
        return rotate_right(n);
    }
    if (lean < -1) {
        if (height(n->right->right) < height(n->right->left)) n->right = rotate_right(n->right);
        return rotate_left(n);
    }
    return n;
}

// The subtree `n` without its least node, which goes to *least.
TreeNode *take_least(TreeNode *n, TreeNode **least) {
    if (!n->left) {
        *least = n;
        return n->right;
    }
    n->left = take_least(n->left, least);
    return rebalance(n);
}

}  // namespace

TreeNode *insert(TreeNode *root, TreeNode *node) {
    if (!root) {
        node->left = nullptr;
        node->right = nullptr;
        refresh(node);
        return node;
    }
    if (node->key < root->key)
        root->left = insert(root->left, node);
    else
        root->right = insert(root->right, node);
    return rebalance(root);
}

TreeNode *erase(TreeNode *root, uint64_t key) {
    if (!root) return nullptr;
    if (key < root->key) {
        root->left = erase(root->left, key);
    } else if (key > root->key) {
        root->right = erase(root->right, key);
    } else {
        if (!root->right) return root->left;
        TreeNode *successor = nullptr;
        TreeNode *right = take_least(root->right, &successor);
        successor->left = root->left;
        successor->right = right;
        root = successor;
    }
    return rebalance(root);
}

TreeNode *at_or_before(TreeNode *root, uint64_t key) {
    TreeNode *found = nullptr;
    while (root) {
        if (root->key <= key) {
            found = root;
            root = root->right;
        } else {
            root = root->left;
        }
    }
    return found;
}

TreeNode *least(TreeNode *root) {
    while (root && root->left) root = root->left;
    return root;
}

}  // namespace ipacl::mm::tree
