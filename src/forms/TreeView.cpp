#include "forms/TreeView.h"

#include <utility>

namespace corvex {

int Tree::Add(int parent, TreeNode node) {
  if (parent != kNone && !Has(parent)) return kNone;
  const int added = Count();
  numberOfKey_.emplace(node.key, added);  // keeps the number of an earlier node with the same key
  nodes_.push_back(std::move(node));
  links_.push_back({.parent = parent});
  Links* const of = parent == kNone ? nullptr : &links_[static_cast<std::size_t>(parent)];
  int& last = of == nullptr ? lastAtTop_ : of->lastChild;
  if (last != kNone) {
    links_[static_cast<std::size_t>(last)].next = added;
  } else if (of != nullptr) {
    of->firstChild = added;
  }
  last = added;
  return added;
}

int Tree::Find(std::string_view key) const {
  const auto found = numberOfKey_.find(std::string(key));
  return found == numberOfKey_.end() ? kNone : found->second;
}

void TreeView::SetTree(Tree tree) {
  tree_ = std::move(tree);
  ensured_ = Tree::kNone;
  selected.Adopt(Tree::kNone);
  Changed(Change::Items);
}

void TreeView::SetExpanded(int node, bool expanded) {
  if (!tree_.Has(node) || tree_[node].expanded == expanded) return;
  tree_[node].expanded = expanded;
  Changed(Change::Expanded);
}

void TreeView::AdoptExpanded(int node, bool expanded) {
  if (tree_.Has(node)) tree_[node].expanded = expanded;
}

void TreeView::EnsureVisible(int node) {
  if (!tree_.Has(node)) return;
  for (int above = tree_.Parent(node); above != Tree::kNone; above = tree_.Parent(above)) {
    SetExpanded(above, true);
  }
  ensured_ = node;
  Changed(Change::Scroll);
}

}  // namespace corvex
