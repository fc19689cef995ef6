#include <QLineEdit>
#include <QSpinBox>

#include "desktop/views/WidgetView.h"

namespace corvex {

namespace {

/// A spin box without its text field; the text box beside it shows the value. Keys, mouse wheel,
/// auto-repeating buttons and accessibility work as usual.
class Arrows : public QSpinBox {
 public:
  explicit Arrows(QWidget* parent) : QSpinBox(parent) {
    lineEdit()->setReadOnly(true);
    lineEdit()->hide();
    setFocusPolicy(Qt::StrongFocus);  // the mouse wheel must not take the focus
    setContextMenuPolicy(Qt::NoContextMenu);
  }
  /// Sets the text that assistive programs read instead of the number: the text of the box beside the arrows.
  void SetMeaning(const QString& meaning) {
    meaning_ = meaning;
    setSuffix({});  // makes Qt update the text
  }

 protected:
  QString textFromValue(int) const override { return meaning_; }
  int valueFromText(const QString&) const override { return value(); }
  QValidator::State validate(QString&, int&) const override { return QValidator::Acceptable; }

 private:
  QString meaning_;
};

class UpDownView : public WidgetView<UpDown, Arrows> {
 public:
  UpDownView(FormWindow& window, UpDown& arrows)
      : WidgetView(window, arrows, new Arrows(window.ParentFor(arrows))) {
    shown_->setRange(arrows.min(), arrows.max());
    shown_->setAccessibleName(NameByLabel(arrows.buddy()));
    if (auto* line = qobject_cast<QLineEdit*>(window.ViewOf(arrows.buddy())->widget())) {
      connect(line, &QLineEdit::textChanged, shown_, &Arrows::SetMeaning);
    }
    connect(shown_, &QSpinBox::valueChanged, this, [this](int value) {
      // A newer value set by the logic takes precedence.
      if (value == control_.value || pending.Has(Change::Value)) return;
      control_.AdoptValue(value);
      window_.Post([&control = control_] { control.change(); });
    });
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Value)) shown_->setValue(control_.value);
  }
};

}  // namespace

std::unique_ptr<ControlView> MakeUpDownView(FormWindow& window, UpDown& arrows) {
  return std::make_unique<UpDownView>(window, arrows);
}

}  // namespace corvex
