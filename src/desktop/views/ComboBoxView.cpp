#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QWheelEvent>

#include "desktop/views/Rows.h"
#include "desktop/views/WidgetView.h"

namespace corvex {

namespace {

class Choice : public QComboBox {
 public:
  explicit Choice(QWidget* parent) : QComboBox(parent) {
    setItemDelegate(new RowDelegate(this));
    view()->viewport()->setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setMaxVisibleItems(16);
  }

 protected:
  /// The wheel must not change a box that the pointer only happens to be over.
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus()) return QComboBox::wheelEvent(event);
    event->ignore();
  }
};

class ComboBoxView : public WidgetView<ComboBox, Choice> {
 public:
  ComboBoxView(FormWindow& window, ComboBox& box)
      : WidgetView(window, box, new Choice(window.ParentFor(box))) {
    shown_->setAccessibleName(NameByLabel(box));
    // On Linux, Qt reports the chosen text as the name of a combo box, and its name only as a relation to a
    // label. A caption with "&" would get a shortcut that the form has not asked for.
    const Label* const label = LabelBefore(box);
    if (label != nullptr && label->caption.Get().find('&') == std::string::npos) {
      static_cast<QLabel*>(window.ViewOf(*label)->widget())->setBuddy(shown_);
    }
    connect(shown_, &QComboBox::activated, this, [this](int index) {
      // Newer items or a newer selection set by the logic take precedence.
      if (pending.Has(Change::Items) || pending.Has(Change::Selection)) return;
      control_.listIndex.Adopt(index);
      window_.Post([&control = control_] { control.click(); });
    });
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Items)) {
      shown_->hidePopup();
      shown_->clear();
      for (const std::string& item : control_.Items()) shown_->addItem(ToShown(item));
    }
    if (changes.Has(Change::Items) || changes.Has(Change::Selection)) {
      shown_->setCurrentIndex(control_.listIndex);
    }
  }
};

}  // namespace

std::unique_ptr<ControlView> MakeComboBoxView(FormWindow& window, ComboBox& box) {
  return std::make_unique<ComboBoxView>(window, box);
}

}  // namespace corvex
