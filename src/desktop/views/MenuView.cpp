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
  }

  void ApplyVisible() override { action_->setVisible(item_.visible); }

 private:
  void ApplyChecked() {
    // An unchecked entry shows no empty check box. It looks like the entries around it.
    action_->setCheckable(item_.checked);
    action_->setChecked(item_.checked);
  }

  FormWindow& window_;
  MenuItem& item_;
  QMenu* menu_ = nullptr;  ///< Null if the item has no entries.
  QAction* action_;
};

}  // namespace

std::unique_ptr<ControlView> MakeMenuView(FormWindow& window, MenuItem& item) {
  return std::make_unique<MenuView>(window, item);
}

}  // namespace corvex
