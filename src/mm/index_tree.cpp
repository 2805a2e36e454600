// AVL insertion and removal, recursive: the depth is the tree's height, a few
// dozen frames at most.  Every node whose children change is refreshed on
// the way back up, and so is its parent, which in a search tree keeps those
// children as grandchildren: both lie on the path of the change.
#include "mm/index_tree.h"

namespace ipacl::mm::tree {
namespace {

constexpr int kLeft = 0;
constexpr int kRight = 1;

template <typename Node>
int height(const Node *n) {
    return n ? static_cast<int>(n->height) : 0;
}

void refresh_search(TreeNode *) {}

void refresh_search(SearchNode *n) {
    for (int side = kLeft; side <= kRight; ++side) {
        const SearchNode *c = n->child[side];
        n->child_key[side] = c ? c->key : 0;
        n->grandchild[side][kLeft] = c ? c->child[kLeft] : nullptr;
        n->grandchild[side][kRight] = c ? c->child[kRight] : nullptr;
    }
}

template <typename Node>
void refresh(Node *n) {
    const int h = height(n->child[kLeft]) > height(n->child[kRight]) ? height(n->child[kLeft])
                                                                     : height(n->child[kRight]);
    n->height = static_cast<uint32_t>(h + 1);
    refresh_search(n);
}

// Turns the subtree `n` so that its child on `side` comes up.
template <typename Node>
Node *rotate(Node *n, int side) {
    Node *top = n->child[side];
    n->child[side] = top->child[1 - side];
    top->child[1 - side] = n;
    refresh(n);
    refresh(top);
    return top;
}

// `n` with subtrees whose heights differ by at most 2, made balanced again.
template <typename Node>
Node *rebalance(Node *n) {
    refresh(n);
    const int lean = height(n->child[kLeft]) - height(n->child[kRight]);
    if (lean >= -1 && lean <= 1) return n;
    const int heavy = lean > 1 ? kLeft : kRight;
    Node *c = n->child[heavy];
    if (height(c->child[heavy]) < height(c->child[1 - heavy]))
        n->child[heavy] = rotate(c, 1 - heavy);
    return rotate(n, heavy);
}

// The subtree `n` without its least node, which goes to *least.
template <typename Node>
Node *take_least(Node *n, Node **least) {
    if (!n->child[kLeft]) {
        *least = n;
        return n->child[kRight];
    }
    n->child[kLeft] = take_least(n->child[kLeft], least);
    return rebalance(n);
}

}  // namespace

template <typename Node>
Node *insert(Node *root, Node *node) {
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

template <typename Node>
Node *erase(Node *root, uint64_t key) {
    if (!root) return nullptr;
    if (key != root->key) {
        const int side = key < root->key ? kLeft : kRight;
        root->child[side] = erase(root->child[side], key);
        return rebalance(root);
    }
    if (!root->child[kRight]) return root->child[kLeft];
    Node *successor = nullptr;
    Node *right = take_least(root->child[kRight], &successor);
    successor->child[kLeft] = root->child[kLeft];
    successor->child[kRight] = right;
    return rebalance(successor);
}

SearchNode *at_or_before(SearchNode *root, uint64_t key) {
    // Two levels per node read, the child's key being kept here.  The way
    // down is as good as random, so the candidate is kept by conditional
    // moves (kept in registers), not branches.
    SearchNode *found = nullptr;
    for (SearchNode *n = root; n;) {
        const bool right = n->key <= key;
        found = right ? n : found;
        SearchNode *c = n->child[right];
        if (!c) break;
        const bool next = n->child_key[right] <= key;
        found = next ? c : found;
        n = n->grandchild[right][next];
    }
    return found;
}

TreeNode *least(TreeNode *root) {
    while (root && root->child[kLeft]) root = root->child[kLeft];
    return root;
}

template TreeNode *insert(TreeNode *, TreeNode *);
template SearchNode *insert(SearchNode *, SearchNode *);
template TreeNode *erase(TreeNode *, uint64_t);
template SearchNode *erase(SearchNode *, uint64_t);

}  // namespace ipacl::mm::tree
