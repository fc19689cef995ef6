#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <algorithm>

#include "desktop/look/QtText.h"
#include "desktop/views/ControlView.h"
#include "desktop/views/FormWindow.h"

namespace corvex {

namespace {

class MenuView : public ControlView {
 public:
  MenuView(FormWindow& window, MenuItem& item) : window_(window), item_(item) {
    const auto& controls = item.form().controls();
    const bool hasEntries = std::any_of(controls.begin(), controls.end(), [&item](const Control* other) {
      const auto* entry = dynamic_cast<const MenuItem*>(other);
      return entry != nullptr && entry->menu() == &item;
    });
    // The view of a menu is created before the views of its entries.
    QWidget* const parent = item.menu() == nullptr
                                ? static_cast<QWidget*>(window.menuBar())
                                : static_cast<MenuView*>(window.ViewOf(*item.menu()))->menu_;
    if (hasEntries) {
      menu_ = new QMenu(parent);
      action_ = menu_->menuAction();
    } else {
      action_ = new QAction(parent);
      connect(action_, &QAction::triggered, this, [this] {
        ApplyChecked();  // Qt has toggled the check mark, but the logic owns it
        window_.Post([&entry = item_] { entry.click(); });
      });
    }
    // The shortcut is shown with the entry. It works only in the menu bar; elsewhere the form handles the
    // keys.
    action_->setShortcut(QKeySequence(ToQt(item.shortcut)));
    action_->setShortcutContext(Qt::WidgetShortcut);
    parent->addAction(action_);
  }

  Control& control() const override { return item_; }

  void Apply(const Changes& changes) override {
    if (changes.Has(Change::Caption)) {
      const QString text = ToShown(item_.caption.Get());
      action_->setSeparator(text == u"-");
      action_->setText(text);
    }
    if (changes.Has(Change::Enabled)) action_->setEnabled(item_.enabled);
    if (changes.Has(Change::Checked)) ApplyChecked();
    if (item_.PopUps() == popUps_) return;
    popUps_ = item_.PopUps();
    // The menu opens after all changes of this turn have been applied to its entries.
    QMetaObject::invokeMethod(this, &MenuView::Open, Qt::QueuedConnection);
  }

  void ApplyVisible() override { action_->setVisible(item_.visible); }

 private:
  void Open() {
    if (menu_ == nullptr || !window_.isVisible()) return;
    const FormWindow::MenuPlace asked = window_.TakeMenuPlace();
    menu_->popup(asked.place);
    if (!asked.byKey) return;
    const QList<QAction*> entries = menu_->actions();
    const auto first = std::find_if(entries.begin(), entries.end(), [](const QAction* entry) {
      return entry->isVisible() && entry->isEnabled() && !entry->isSeparator();
    });
    if (first != entries.end()) menu_->setActiveAction(*first);
  }

  void ApplyChecked() {
    // An unchecked entry shows no empty check box. It looks like the entries around it.
    action_->setCheckable(item_.checked);
    action_->setChecked(item_.checked);
  }

  FormWindow& window_;
  MenuItem& item_;
  QMenu* menu_ = nullptr;  ///< Null if the item has no entries.
  QAction* action_;
  int popUps_ = 0;  ///< MenuItem::PopUps when the menu was last opened.
};

}  // namespace

std::unique_ptr<ControlView> MakeMenuView(FormWindow& window, MenuItem& item) {
  return std::make_unique<MenuView>(window, item);
}

}  // namespace corvex
