#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>

#include "desktop/views/KeyCodes.h"
#include "desktop/views/WidgetView.h"

namespace corvex {

namespace {

/// An invisible widget that takes the keyboard focus.
class KeyTaker : public QWidget {
 public:
  explicit KeyTaker(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);  // for dead keys and other input methods
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  std::function<void(std::string)> typed;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (const char c = TypedCharacter(*event); c != 0) {
      typed(std::string(1, c));
      return;
    }
    Refuse(event->text());
    event->ignore();
  }
  void inputMethodEvent(QInputMethodEvent* event) override {
    for (const QChar c : event->commitString()) {
      if (c.unicode() <= 0xFF) {
        typed(std::string(1, c.toLatin1()));
      } else {
        Refuse(c);
      }
    }
  }

 private:
  /// Beeps for a character outside Latin-1. Such a character has no byte value and is not sent.
  static void Refuse(const QString& text) {
    if (!text.isEmpty() && text.front().unicode() > 0xFF) QApplication::beep();
  }
};

class KeySourceView : public WidgetView<KeySource, KeyTaker> {
 public:
  KeySourceView(FormWindow& window, KeySource& source)
      : WidgetView(window, source, new KeyTaker(window.ParentFor(source))) {
    shown_->typed = [this](std::string text) {
      window_.Post([&control = control_, text = std::move(text)] { control.keys(text); });
    };
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    // Qt does not give the focus to a widget of zero size.
    if (changes.Has(Change::Rect)) shown_->resize(shown_->size().expandedTo({1, 1}));
  }
};

}  // namespace

std::unique_ptr<ControlView> MakeKeySourceView(FormWindow& window, KeySource& source) {
  return std::make_unique<KeySourceView>(window, source);
}

}  // namespace corvex
