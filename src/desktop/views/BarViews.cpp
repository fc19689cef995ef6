#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

#include "desktop/look/Icons.h"
#include "desktop/views/WidgetView.h"

namespace corvex {

namespace {

/// A tool bar that is one stop for the Tab key. The arrow keys move between its buttons. A click with the
/// mouse leaves the focus where it is.
class Tools : public QToolBar {
 public:
  explicit Tools(QWidget* parent) : QToolBar(parent) {}

  void Add(QToolButton* button) {
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    button->installEventFilter(this);
    addWidget(button);
    buttons_.push_back(button);
  }
  /// Chooses another button as the stop for the Tab key if the present one is disabled.
  void ChooseStop() {
    if (stop_ != nullptr && stop_->isEnabledTo(this)) return;
    const auto usable = std::find_if(buttons_.begin(), buttons_.end(),
                                     [this](const QToolButton* button) { return button->isEnabledTo(this); });
    SetStop(usable == buttons_.end() ? nullptr : *usable);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto found = std::find(buttons_.begin(), buttons_.end(), watched);
    if (found == buttons_.end()) return QToolBar::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn) SetStop(*found);
    return event->type() == QEvent::KeyPress && TakeKey(**found, *static_cast<QKeyEvent*>(event));
  }

 private:
  bool TakeKey(QToolButton& button, const QKeyEvent& event) {
    const bool mirrored = isRightToLeft();
    switch (event.key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
        if (!event.isAutoRepeat()) button.click();
        return true;
      case Qt::Key_Left:
        return Step(mirrored ? 1 : -1);
      case Qt::Key_Right:
        return Step(mirrored ? -1 : 1);
      case Qt::Key_Up:
      case Qt::Key_Down:
        return true;  // Qt would move the focus to a control near the bar
      default:
        return false;
    }
  }
  bool Step(int by) {
    const int count = static_cast<int>(buttons_.size());
    const int from = static_cast<int>(std::find(buttons_.begin(), buttons_.end(), stop_) - buttons_.begin());
    for (int i = 1; i < count; ++i) {
      QToolButton* const to = buttons_[static_cast<std::size_t>((from + by * i + count * i) % count)];
      if (!to->isEnabled()) continue;
      to->setFocus(Qt::TabFocusReason);
      break;
    }
    return true;
  }
  void SetStop(QToolButton* button) {
    if (stop_ != nullptr) stop_->setFocusPolicy(Qt::NoFocus);
    stop_ = button;
    if (button != nullptr) button->setFocusPolicy(Qt::TabFocus);
    setFocusProxy(button);
  }

  std::vector<QToolButton*> buttons_;
  QToolButton* stop_ = nullptr;
};

class ToolBarView : public WidgetView<ToolBar, Tools> {
 public:
  ToolBarView(FormWindow& window, ToolBar& bar) : WidgetView(window, bar, new Tools(window.ParentFor(bar))) {
    for (std::size_t i = 0; i < bar.buttons.size(); ++i) Add(bar.buttons[i], static_cast<int>(i) + 1);
  }

  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Items)) {
      for (const Shown& shown : buttons_) shown.button->setEnabled(control_.Enabled(shown.number));
    }
    if (changes.Has(Change::Items) || changes.Has(Change::Enabled)) shown_->ChooseStop();
    if (changes.Has(Change::Rect) || changes.Has(Change::Font)) Fit();
  }

  bool HasFocusIn(const QWidget* focused) const override {
    return shown_ == focused || shown_->isAncestorOf(focused);
  }

 private:
  struct Shown {
    QToolButton* button;
    int number;
  };

  void Add(const ToolButton& made, int number) {
    if (made.separator) {
      shown_->addSeparator();
      return;
    }
    auto* button = new QToolButton(shown_);
    const QString caption = ToShown(made.caption);
    const QString tip = ToShown(made.toolTip);
    button->setText(QString(caption).replace(u'&', QStringLiteral("&&")));
    button->setIcon(PictureIcon(made.picture));
    button->setToolButtonStyle(caption.isEmpty() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
    button->setToolTip(ToToolTip(made.toolTip));
    button->setAccessibleName(caption.isEmpty() ? tip : caption);
    button->setAccessibleDescription(tip);
    connect(button, &QToolButton::clicked, this, [this, number] {
      if (control_.Enabled(number)) {  // the logic may just have disabled it
        window_.Post([&control = control_, number] { control.buttonClick(number); });
      }
    });
    shown_->Add(button);
    buttons_.push_back({button, number});
  }

  /// Makes the pictures as high as the bar. If the buttons are too wide then, shrinks first the pictures and
  /// then the captions.
  void Fit() {
    constexpr int kAround = 6;
    constexpr int kSmallestText = 7;  // pixels
    QFont font = MakeFont(control_.font);
    const auto fits = [this](const QFont& in) {
      for (const Shown& shown : buttons_) shown.button->setFont(in);
      return shown_->sizeHint().width() <= shown_->width();
    };
    const int smallest = font.pixelSize() * 3 / 2;
    int side = std::clamp(shown_->height() - 2 * kAround, smallest, 3 * font.pixelSize());
    SetPictures(side);
    while (side > smallest && !fits(font)) SetPictures(--side);
    font = ShrunkToFit(font, kSmallestText, fits);
    for (const Shown& shown : buttons_) shown.button->setFont(font);
  }
  void SetPictures(int side) {
    shown_->setIconSize({side, side});
    for (const Shown& shown : buttons_) shown.button->setIconSize({side, side});  // updates their size hints
  }

  std::vector<Shown> buttons_;
};

/// A text on one line. If it does not fit, it is shortened, and a tool tip shows all of it.
class PanelText : public QLabel {
 public:
  explicit PanelText(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    if (x() > kAround) {
      painter.fillRect(QRect(0, 3, 1, height() - 6), BorderColor(palette()));
    }
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(Place(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, Elided());
  }
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ToolTip)
      setToolTip(Elided() == text() ? QString() : ToToolTip(FromQt(text())));
    return QLabel::event(event);
  }

 private:
  static constexpr int kAround = 6;
  QRect Place() const { return rect().adjusted(kAround, 0, -kAround, 0); }
  QString Elided() const { return fontMetrics().elidedText(text(), Qt::ElideRight, Place().width()); }
};

class StatusBarView : public WidgetView<StatusBar, QStatusBar> {
 public:
  StatusBarView(FormWindow& window, StatusBar& bar)
      : WidgetView(window, bar, new QStatusBar(window.ParentFor(bar))) {
    shown_->setSizeGripEnabled(false);
    for (const int width : bar.panelWidths) {
      auto* panel = new PanelText(shown_);
      shown_->addWidget(panel, width);
      panels_.push_back(panel);
    }
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (!changes.Has(Change::Caption)) return;
    for (std::size_t i = 0; i < panels_.size(); ++i) {
      const QString text = ToShown(control_.Text(static_cast<int>(i) + 1), {});
      if (text != panels_[i]->text()) panels_[i]->setText(text);
    }
  }

 private:
  std::vector<PanelText*> panels_;
};

class ProgressBarView : public WidgetView<ProgressBar, QProgressBar> {
 public:
  ProgressBarView(FormWindow& window, ProgressBar& bar)
      : WidgetView(window, bar, new QProgressBar(window.ParentFor(bar))) {}
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (!changes.Has(Change::Value)) return;
    shown_->setRange(ProgressBar::kMin, std::max(control_.Max(), ProgressBar::kMin + 1));
    shown_->setValue(control_.Value());
  }
};

}  // namespace

std::unique_ptr<ControlView> MakeProgressBarView(FormWindow& window, ProgressBar& bar) {
  return std::make_unique<ProgressBarView>(window, bar);
}

std::unique_ptr<ControlView> MakeToolBarView(FormWindow& window, ToolBar& bar) {
  return std::make_unique<ToolBarView>(window, bar);
}

std::unique_ptr<ControlView> MakeStatusBarView(FormWindow& window, StatusBar& bar) {
  return std::make_unique<StatusBarView>(window, bar);
}

}  // namespace corvex
