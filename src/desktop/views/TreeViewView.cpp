#include <QAbstractItemModel>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>
#include <QTreeView>
#include <algorithm>
#include <functional>
#include <utility>

#include "desktop/look/Icons.h"
#include "desktop/views/Rows.h"
#include "desktop/views/WidgetView.h"

namespace corvex {

namespace {

/// A copy of what is shown of a tree. The control may get another tree while this one is still on screen.
class TreeModel : public QAbstractItemModel {
 public:
  enum Role { Image = Qt::UserRole, Bold };

  using QAbstractItemModel::QAbstractItemModel;

  void SetTree(const Tree& tree) {
    beginResetModel();
    nodes_.assign(static_cast<std::size_t>(tree.Count()), {});
    top_.clear();
    for (int i = 0; i < tree.Count(); ++i) {
      const TreeNode& node = tree[i];
      auto& siblings = ChildrenOf(tree.Parent(i));
      nodes_[static_cast<std::size_t>(i)] = {
          ToShown(node.text), node.image, node.bold, tree.Parent(i), static_cast<int>(siblings.size()), {}};
      siblings.push_back(i);
    }
    endResetModel();
  }

  int Count() const { return static_cast<int>(nodes_.size()); }
  bool HasChildren(int node) const { return !ChildrenOf(node).empty(); }
  /// True if no node at the top level has children.
  bool Flat() const { return top_.size() == nodes_.size(); }
  static int NodeOf(const QModelIndex& index) {
    return index.isValid() ? static_cast<int>(index.internalId()) : Tree::kNone;
  }
  QModelIndex IndexOf(int node) const {
    if (node < 0 || node >= Count()) return {};
    return createIndex(nodes_[static_cast<std::size_t>(node)].row, 0, static_cast<quintptr>(node));
  }

  QModelIndex index(int row, int column, const QModelIndex& parent) const override {
    const auto& children = ChildrenOf(NodeOf(parent));
    if (row < 0 || column != 0 || static_cast<std::size_t>(row) >= children.size()) return {};
    return createIndex(row, 0, static_cast<quintptr>(children[static_cast<std::size_t>(row)]));
  }
  QModelIndex parent(const QModelIndex& index) const override {
    return IndexOf(nodes_[static_cast<std::size_t>(NodeOf(index))].parent);
  }
  int rowCount(const QModelIndex& parent) const override {
    return static_cast<int>(ChildrenOf(NodeOf(parent)).size());
  }
  int columnCount(const QModelIndex&) const override { return 1; }
  QVariant data(const QModelIndex& index, int role) const override {
    const Node& node = nodes_[static_cast<std::size_t>(NodeOf(index))];
    if (role == Qt::DisplayRole) return node.text;
    if (role == Role::Image) return node.image;
    if (role == Role::Bold) return node.bold;
    return {};
  }

 private:
  struct Node {
    QString text;
    int image = 0;
    bool bold = false;
    int parent = Tree::kNone;
    int row = 0;
    std::vector<int> children;
  };
  const std::vector<int>& ChildrenOf(int node) const {
    return node == Tree::kNone ? top_ : nodes_[static_cast<std::size_t>(node)].children;
  }
  std::vector<int>& ChildrenOf(int node) {
    return const_cast<std::vector<int>&>(std::as_const(*this).ChildrenOf(node));
  }

  std::vector<Node> nodes_;
  std::vector<int> top_;
};

/// Draws a picture and a text beside it. The picture grows with the font.
class NodeDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QColor textColor;

  static int IconSide(const QFont& font) { return QFontInfo(font).pixelSize() * 3 / 2 + 1; }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QFontMetrics metrics(FontOf(option, index));
    const QString text = index.data(Qt::DisplayRole).toString();
    return {TextLeft(option, index) + metrics.horizontalAdvance(text) + kRowMargin,
            std::max(IconSide(option.font), metrics.height()) + 2 * kRowMargin};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    DrawEntryGround(*painter, option);
    const int image = index.data(TreeModel::Image).toInt();
    if (image != 0) {
      const int side = IconSide(option.font);
      const QRect icon(option.rect.left() + kRowMargin, option.rect.center().y() - side / 2, side, side);
      DrawDeviceIcon(*painter, icon, image, option.palette);
    }
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    DrawEntryText(*painter, option.rect.adjusted(TextLeft(option, index), 0, -kRowMargin, 0),
                  FontOf(option, index), enabled ? textColor : option.palette.color(QPalette::Text),
                  index.data(Qt::DisplayRole).toString());
  }

  /// Shows a text that does not fit as a tool tip.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override {
    const bool fits = !index.isValid() || sizeHint(option, index).width() <= view->visualRect(index).width();
    QToolTip::showText(event->globalPos(),
                       fits ? QString() : ToToolTip(FromQt(index.data(Qt::DisplayRole).toString())), view);
    return true;
  }

 private:
  static QFont FontOf(const QStyleOptionViewItem& option, const QModelIndex& index) {
    QFont font = option.font;
    if (index.data(TreeModel::Bold).toBool()) font.setBold(true);
    return font;
  }
  static int TextLeft(const QStyleOptionViewItem& option, const QModelIndex& index) {
    return 2 * kRowMargin +
           (index.data(TreeModel::Image).toInt() == 0 ? 0 : IconSide(option.font) + kRowMargin);
  }
};

class NodeTree : public QTreeView {
 public:
  explicit NodeTree(QWidget* parent) : QTreeView(parent) {
    setModel(&model);
    setItemDelegate(&delegate);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    viewport()->setAttribute(Qt::WA_Hover);
    connect(this, &QTreeView::pressed, this, [this](const QModelIndex& index) {
      if (!std::exchange(moved_, true)) reached(TreeModel::NodeOf(index));
    });
  }
  using QTreeView::scheduleDelayedItemsLayout;
  TreeModel model;
  NodeDelegate delegate;
  /// The user has moved to a node, or clicked the current node again. Also called when the view moves itself.
  std::function<void(int)> reached;
  std::function<void(const FormWindow::MenuPlace&)> menuWanted;

  /// Scrolls to a node, or does so when the tree is shown.
  void Ensure(int node) {
    ensured_ = isVisible() ? Tree::kNone : node;
    if (isVisible()) scrollTo(model.IndexOf(node));
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool shiftF10 = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (event->key() != Qt::Key_Menu && !shiftF10) return QTreeView::keyPressEvent(event);
    if (currentIndex().isValid()) scrollTo(currentIndex());
    const QRect node = visualRect(currentIndex()) & viewport()->rect();
    menuWanted(
        {viewport()->mapToGlobal(node.isEmpty() ? QPoint() : QPoint(node.left(), node.bottom())), true});
  }
  /// Not every system sends this event for a key, so keys are handled in keyPressEvent only.
  void contextMenuEvent(QContextMenuEvent* event) override {
    if (event->reason() == QContextMenuEvent::Keyboard) return;
    const QModelIndex under = indexAt(event->pos());
    if (under.isValid()) setCurrentIndex(under);
    menuWanted({event->globalPos(), false});
  }
  void mousePressEvent(QMouseEvent* event) override {
    moved_ = false;
    QTreeView::mousePressEvent(event);
  }
  /// Never deselects a node, even if the user presses Ctrl.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override {
    const auto command = QTreeView::selectionCommand(index, event);
    const bool removes = command & (QItemSelectionModel::Deselect | QItemSelectionModel::Toggle);
    return removes ? QItemSelectionModel::NoUpdate : command;
  }
  /// Keeps an empty selection empty. Qt would make the first node current without showing it.
  void focusInEvent(QFocusEvent* event) override {
    const bool none = !currentIndex().isValid();
    QTreeView::focusInEvent(event);
    if (none) setCurrentIndex({});
  }
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override {
    QTreeView::currentChanged(current, previous);
    moved_ = true;
    if (reached && current.isValid()) reached(TreeModel::NodeOf(current));
  }
  void showEvent(QShowEvent* event) override {
    QTreeView::showEvent(event);
    if (ensured_ != Tree::kNone) scrollTo(model.IndexOf(std::exchange(ensured_, Tree::kNone)));
  }

 private:
  bool moved_ = true;  ///< The last press of the mouse has already been reported.
  int ensured_ = Tree::kNone;
};

class TreeViewView : public WidgetView<TreeView, NodeTree> {
 public:
  TreeViewView(FormWindow& window, TreeView& tree)
      : WidgetView(window, tree, new NodeTree(window.ParentFor(tree))) {
    shown_->setAccessibleName(Name());
    shown_->reached = [this](int node) {
      if (!applying_) Reach(node);
    };
    shown_->menuWanted = [this](const FormWindow::MenuPlace& asked) {
      if (pending.Has(Change::Items)) return;
      window_.SetMenuPlace(asked);
      PostForThisTree([this] { control_.contextMenu(); });
    };
    connect(shown_, &QTreeView::expanded, this, [this](const QModelIndex& index) { Expand(index, true); });
    connect(shown_, &QTreeView::collapsed, this, [this](const QModelIndex& index) { Expand(index, false); });
  }

  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    applying_ = true;
    const bool replaced = changes.Has(Change::Items);
    if (replaced) {
      ++trees_;
      shown_->model.SetTree(control_.tree());
      shown_->setRootIsDecorated(!shown_->model.Flat());
    }
    if (changes.Has(Change::Font)) {
      shown_->setIndentation(NodeDelegate::IconSide(shown_->font()) + kRowMargin);
      shown_->scheduleDelayedItemsLayout();  // the height of the rows has changed
    }
    if (replaced || changes.Has(Change::Expanded)) ApplyExpanded();
    if (replaced || changes.Has(Change::Selection)) {
      shown_->setCurrentIndex(shown_->model.IndexOf(control_.selected));
      if (control_.selected == Tree::kNone) shown_->clearSelection();
    }
    if (changes.Has(Change::Scroll)) shown_->Ensure(control_.ensured());
    if (changes.Has(Change::ForeColor)) {
      const QPalette& theme = shown_->palette();
      shown_->delegate.textColor =
          ReadableOn(theme.color(QPalette::Base), ColorOf(control_.foreColor, QPalette::Text, theme));
      shown_->viewport()->update();
    }
    applying_ = false;
  }

 private:
  /// A tree without a label is named by the title of its frame.
  QString Name() const {
    const QString name = NameByLabel(control_);
    if (!name.isEmpty()) return name;
    for (const Control* other : control_.form().controls()) {
      const auto* frame = dynamic_cast<const Frame*>(other);
      if (frame == &control_.parent()) return ToShown(frame->caption.Get());
    }
    return {};
  }

  /// The nodes are laid out only once afterwards. Laying them out for each change would take quadratic time.
  void ApplyExpanded() {
    shown_->scheduleDelayedItemsLayout();
    for (int node = 0; node < shown_->model.Count(); ++node) {
      if (!shown_->model.HasChildren(node)) continue;
      const QModelIndex index = shown_->model.IndexOf(node);
      if (shown_->isExpanded(index) != control_.tree()[node].expanded) {
        shown_->setExpanded(index, control_.tree()[node].expanded);
      }
    }
  }

  /// Also called when the view has expanded the parents of a node to scroll to it.
  void Expand(const QModelIndex& index, bool expanded) {
    if (pending.Has(Change::Items)) return;  // the node is not in the newer tree
    control_.AdoptExpanded(TreeModel::NodeOf(index), expanded);
    if (expanded || applying_) return;
    // The selected node must not disappear: its keys and its menu would act on a node that nobody sees.
    for (QModelIndex above = shown_->currentIndex().parent(); above.isValid(); above = above.parent()) {
      if (above == index) return shown_->setCurrentIndex(index);
    }
  }

  void Reach(int node) {
    // A newer selection or tree set by the logic takes precedence.
    if (pending.Has(Change::Items) || pending.Has(Change::Selection)) return;
    control_.selected.Adopt(node);
    PostForThisTree([this, node] {
      if (control_.selected == node) control_.nodeClick();
    });
  }

  /// Posts a task that does not run if the tree has been replaced by then.
  void PostForThisTree(EventLoop::Task task) {
    window_.Post([this, task = std::move(task), trees = trees_] {
      if (trees == trees_ && !pending.Has(Change::Items)) task();
    });
  }

  bool applying_ = false;
  int trees_ = 0;  ///< The number of trees shown so far.
};

}  // namespace

std::unique_ptr<ControlView> MakeTreeView(FormWindow& window, TreeView& tree) {
  return std::make_unique<TreeViewView>(window, tree);
}

}  // namespace corvex
