#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "forms/Control.h"

namespace corvex {

struct TreeNode {
  std::string key = {};
  std::string text = {};
  std::string tag = {};  ///< Additional data of the node. Never displayed.
  int image = 0;         ///< Number of the picture, see TreeView. 0: none.
  bool bold = false;
  bool expanded = false;
};

/// The nodes of a tree view as plain data. Nodes are numbered from 0 in the order in which they were added.
/// kNone stands for "no node".
class Tree {
 public:
  static constexpr int kNone = -1;

  /// Adds a node as the last child of `parent`, or at the top level for kNone. Returns its number. Returns
  /// kNone and adds nothing if `parent` is not the number of a node.
  int Add(int parent, TreeNode node);

  int Count() const { return static_cast<int>(nodes_.size()); }
  bool Has(int node) const { return node >= 0 && node < Count(); }
  const TreeNode& operator[](int node) const { return nodes_[static_cast<std::size_t>(node)]; }
  TreeNode& operator[](int node) { return nodes_[static_cast<std::size_t>(node)]; }

  /// Returns the first node that was added with this key, or kNone.
  int Find(std::string_view key) const;

  // Each returns kNone if there is no such node.
  int Parent(int node) const { return LinksOf(node).parent; }
  int FirstChild(int node) const { return LinksOf(node).firstChild; }
  int Next(int node) const { return LinksOf(node).next; }  ///< The next child of the same parent.
  int First() const { return Count() > 0 ? 0 : kNone; }    ///< The first node at the top level.

 private:
  struct Links {
    int parent = kNone;
    int firstChild = kNone;
    int lastChild = kNone;
    int next = kNone;
  };
  const Links& LinksOf(int node) const { return links_[static_cast<std::size_t>(node)]; }

  std::vector<TreeNode> nodes_;
  std::vector<Links> links_;
  std::unordered_map<std::string, int> numberOfKey_;
  int lastAtTop_ = kNone;
};

/// A tree of nodes, each with a picture and a text. Images are numbered as "device N" pictures.
class TreeView : public Control {
 public:
  TreeView(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "TreeView"; }

  const Tree& tree() const { return tree_; }
  /// Shows another tree. No node is selected afterwards.
  void SetTree(Tree tree);
  void Clear() { SetTree({}); }

  /// The number of the selected node, or Tree::kNone.
  Property<int> selected{*this, Change::Selection, Tree::kNone};
  /// Expands or collapses a node.
  void SetExpanded(int node, bool expanded);
  /// For the window system: the user has expanded or collapsed a node.
  void AdoptExpanded(int node, bool expanded);
  /// Expands all parents of a node and scrolls to it.
  void EnsureVisible(int node);
  /// The node that the last EnsureVisible made visible, or Tree::kNone.
  int ensured() const { return ensured_; }

  Property<Color> foreColor{*this, Change::ForeColor, kWindowTextColor};

  Event<> nodeClick;  ///< The user has clicked a node or moved to it with a key. `selected` is that node.
  /// The user asks for the context menu with the mouse or with a key. A node under the mouse has been
  /// selected before, and nodeClick was raised for it.
  Event<> contextMenu;

 private:
  Tree tree_;
  int ensured_ = Tree::kNone;
};

}  // namespace corvex
