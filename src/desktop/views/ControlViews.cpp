#include <QCheckBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTabBar>
#include <algorithm>

#include "desktop/look/Icons.h"
#include "desktop/look/Style.h"
#include "desktop/views/Panel.h"
#include "desktop/views/Picture.h"
#include "desktop/views/WidgetView.h"

// The views of the simple controls: frames, labels, buttons, pictures, lines and tabs.

namespace corvex {

namespace {

constexpr int kSmallestText = 7;  ///< Pixels. A text that is too large is shrunk down to this size.

/// An indicator: an optional picture and a text on a background of their own. Paints nothing if it has
/// neither.
class IndicatorLabel : public Clickable<QLabel> {
 public:
  IndicatorLabel(const std::string& picture, QWidget* parent) : Clickable(parent), picture_(picture) {}

 protected:
  void resizeEvent(QResizeEvent*) override {
    if (!picture_.empty()) setContentsMargins(IndicatorIcon(rect(), false).right() + 3, 0, 0, 0);
  }
  void paintEvent(QPaintEvent* event) override {
    if (picture_.empty() && text().trimmed().isEmpty()) return;
    QPainter painter(this);
    DrawIndicator(painter, rect(), palette());
    if (!picture_.empty()) DrawPicture(painter, IndicatorIcon(rect(), false), picture_, palette());
    painter.end();
    QLabel::paintEvent(event);
  }

 private:
  std::string picture_;
};

Clickable<QLabel>* MakeLabel(const Label& label, QWidget* parent) {
  if (label.look == Look::Indicator) return new IndicatorLabel(label.picture, parent);
  return new Clickable<QLabel>(parent);
}

/// A key of the keyboard below the screen. Its text leaves the left part free for an image.
class KeyButton : public QPushButton {
 public:
  using QPushButton::QPushButton;
  QRect TextPlace() const {
    return rect().adjusted(std::min(height() * 3 / 4, width() * 29 / 100), 0, -2, -2);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    option.rect = TextPlace();
    painter.drawControl(QStyle::CE_PushButtonLabel, option);
  }
};

class FrameView : public WidgetView<Frame, Panel> {
 public:
  FrameView(FormWindow& window, Frame& frame)
      : WidgetView(window, frame, new Panel(frame.look, window.ParentFor(frame))) {}
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Caption)) shown_->SetTitle(ToShown(control_.caption.Get()));
    if (changes.Has(Change::Dimmed) && control_.look == Look::Screen) shown_->SetDimmed(control_.dimmed);
  }
};

class LabelView : public WidgetView<Label, Clickable<QLabel>> {
 public:
  LabelView(FormWindow& window, Label& label)
      : WidgetView(window, label, MakeLabel(label, window.ParentFor(label))),
        panel_(dynamic_cast<Panel*>(shown_->parentWidget())) {
    shown_->setTextFormat(Qt::PlainText);
    if (label.look == Look::Screen) shown_->setIndent(kScreenIndent);
    shown_->countsEachPress = false;
    shown_->clicked = [this] { window_.Post([&control = control_] { control.click(); }); };
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Caption)) {
      const ControlView* buddy = control_.buddy == nullptr ? nullptr : window_.ViewOf(*control_.buddy);
      if (buddy != nullptr) shown_->setBuddy(buddy->widget());  // created after the label
      shown_->setText(ToShown(control_.caption.Get()));
      if (panel_ != nullptr && control_.accessible.Get().empty()) panel_->Announce();
    }
    const bool placed = changes.Has(Change::Rect) || changes.Has(Change::Font);
    if (control_.look == Look::Screen ? placed : placed || changes.Has(Change::Caption)) Arrange();
  }

 private:
  static constexpr int kScreenIndent = 8;  ///< Pixels between the screen's edge and the first column.

  void Arrange() {
    const bool row = control_.look == Look::Screen;
    // Load no font for an empty label. It may belong to a popup that is never shown.
    if (!row && shown_->text().isEmpty()) return;
    QFont font = MakeFont(control_.font, row);
    // Do not wrap a text that contains line ends or has no room for two lines.
    const bool wraps =
        !row && !shown_->text().contains(u'\n') && shown_->height() >= 2 * QFontMetrics(font).lineSpacing();
    const Qt::Alignment across = control_.align == Align::Right    ? Qt::AlignRight
                                 : control_.align == Align::Centre ? Qt::AlignHCenter
                                                                   : Qt::AlignLeft;
    const bool several = wraps || shown_->text().contains(u'\n');
    // Shrink a text that is too large, so that it is not cut off. A row of the screen may shrink to any size,
    // so that all its columns fit.
    const int smallest = row ? 1 : kSmallestText;
    font = ShrunkToFit(font, smallest, [&](const QFont& in) { return Fits(in, wraps); });
    if (wraps) font = OnTwoLines(font);
    shown_->setFont(font);
    shown_->setWordWrap(wraps);
    shown_->setAlignment(across | (several ? Qt::AlignTop : Qt::AlignVCenter));
  }

  bool Fits(const QFont& font, bool wraps) const {
    const QRect place = Place();
    const QRect taken = Taken(font, wraps);
    return taken.width() <= place.width() && taken.height() <= place.height();
  }

  /// Returns a slightly smaller font, at least 5/6 of the size, if the text then fits on two lines. Otherwise
  /// returns the font unchanged. This helps for a position whose last digits would be on a third line.
  QFont OnTwoLines(const QFont& font) const {
    const auto fits = [this](const QFont& in) {
      return qRound(static_cast<double>(Taken(in, true).height()) / QFontMetrics(in).lineSpacing()) <= 2;
    };
    const QFont smaller = ShrunkToFit(font, font.pixelSize() * 5 / 6, fits);
    return fits(smaller) ? smaller : font;
  }

  QRect Place() const {
    return shown_->contentsRect().adjusted(control_.look == Look::Screen ? kScreenIndent : 0, 0, 0, 0);
  }

  QRect Taken(const QFont& font, bool wraps) const {
    constexpr int kColumns = 40;
    const QString text = control_.look == Look::Screen ? QString(kColumns, u'M') : shown_->text();
    return QFontMetrics(font).boundingRect(Place(), wraps ? Qt::TextWordWrap : 0, text);
  }

  Panel* panel_;  ///< The panel that contains the label, or null.
};

/// Returns true if the size of a text, or the room for it, has changed.
bool TextPlaceChanged(const Changes& changes) {
  return changes.Has(Change::Rect) || changes.Has(Change::Font) || changes.Has(Change::Caption);
}

/// Shrinks the text beside a check mark or radio mark if it is too large for its place.
void FitBesideMark(QAbstractButton& shown, QStyle::SubElement contents, const QFont& font) {
  QStyleOptionButton option;
  option.initFrom(&shown);
  const QSize room = shown.style()->subElementRect(contents, &option, &shown).size();
  shown.setFont(ShrunkToFit(font, kSmallestText, [&](const QFont& in) {
    const QSize taken = QFontMetrics(in).size(Qt::TextShowMnemonic, shown.text());
    return taken.width() <= room.width() && taken.height() <= room.height();
  }));
}

class ButtonView : public WidgetView<Button, QPushButton> {
 public:
  ButtonView(FormWindow& window, Button& button)
      : WidgetView(window, button,
                   button.look == Look::Key ? new KeyButton(window.ParentFor(button))
                                            : new QPushButton(window.ParentFor(button))) {
    shown_->setAutoDefault(true);  // Enter presses it too, like the space bar
    connect(shown_, &QPushButton::clicked, this,
            [this] { window_.Post([&control = control_] { control.click(); }); });
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Caption)) shown_->setText(ToShown(control_.caption.Get()));
    if (changes.Has(Change::Picture)) shown_->setIcon(PictureIcon(control_.picture.Get()));
    if (changes.Has(Change::Rect)) {
      const int side = std::max(std::min(shown_->width(), shown_->height()) - 8, 1);
      shown_->setIconSize({side, side});
    }
    if (TextPlaceChanged(changes)) FitText();
  }

 private:
  /// Shrinks the text if it is too large for the button, as in a very narrow or very low window.
  void FitText() {
    constexpr int kAround = 2;
    if (shown_->text().isEmpty()) return;
    const auto* key = dynamic_cast<const KeyButton*>(shown_);
    const QSize room =
        (key != nullptr ? key->TextPlace() : shown_->rect()).size() - QSize(2 * kAround, 2 * kAround);
    const auto fits = [&](const QFont& font) {
      const QSize taken = QFontMetrics(font).size(Qt::TextShowMnemonic, shown_->text());
      return taken.width() <= room.width() && taken.height() <= room.height();
    };
    shown_->setFont(ShrunkToFit(MakeFont(control_.font, false), kSmallestText, fits));
  }
};

class OptionButtonView : public WidgetView<OptionButton, QRadioButton> {
 public:
  OptionButtonView(FormWindow& window, OptionButton& option)
      : WidgetView(window, option, new QRadioButton(window.ParentFor(option))) {
    // Also emitted when the user chooses another button of the group and Qt unchecks this one.
    connect(shown_, &QRadioButton::toggled, this, [this](bool on) { control_.value.Adopt(on); });
    connect(shown_, &QRadioButton::clicked, this,
            [this] { window_.Post([&control = control_] { control.click(); }); });
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Caption)) shown_->setText(ToShown(control_.caption.Get()));
    if (changes.Has(Change::Checked)) {
      const bool on = control_.value;
      shown_->setAutoExclusive(on);  // otherwise Qt never unchecks the only checked button of a group
      shown_->setChecked(on);
      shown_->setAutoExclusive(true);
    }
    if (TextPlaceChanged(changes))
      FitBesideMark(*shown_, QStyle::SE_RadioButtonContents, MakeFont(control_.font, false));
  }
};

class CheckBoxView : public WidgetView<CheckBox, QCheckBox> {
 public:
  CheckBoxView(FormWindow& window, CheckBox& box)
      : WidgetView(window, box, new QCheckBox(window.ParentFor(box))) {
    connect(shown_, &QCheckBox::clicked, this, [this](bool on) {
      if (pending.Has(Change::Checked)) return;  // a newer value set by the logic takes precedence
      control_.value.Adopt(on);
      window_.Post([&control = control_] { control.click(); });
    });
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Caption)) shown_->setText(ToShown(control_.caption.Get()));
    if (changes.Has(Change::Checked)) shown_->setChecked(control_.value);
    if (TextPlaceChanged(changes))
      FitBesideMark(*shown_, QStyle::SE_CheckBoxContents, MakeFont(control_.font, false));
  }
};

class ImageView : public WidgetView<Image, Picture> {
 public:
  ImageView(FormWindow& window, Image& image)
      : WidgetView(window, image, new Picture(image.look, window.ParentFor(image))) {
    shown_->clicked = [this] { window_.Post([&control = control_] { control.click(); }); };
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Picture)) shown_->SetName(control_.picture);
    shown_->SetButton(static_cast<bool>(control_.click));
  }
};

/// A straight line. The widget covers the smallest rectangle that contains the line.
class Stroke : public QWidget {
 public:
  using QWidget::QWidget;
  void SetEnds(const LineEnds& ends) {
    const auto pixels = [](Twips x, Twips y) { return ToPixels({x, y, 0, 0}).topLeft(); };
    const QLine line(pixels(ends.x1, ends.y1), pixels(ends.x2, ends.y2));
    setGeometry(QRect(line.p1(), line.p1()).united(QRect(line.p2(), line.p2())));
    line_ = line.translated(-pos());
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setPen(BorderColor(palette()));
    painter.drawLine(line_);
  }

 private:
  QLine line_;
};

class StrokeView : public WidgetView<Line, Stroke> {
 public:
  StrokeView(FormWindow& window, Line& line) : WidgetView(window, line, new Stroke(window.ParentFor(line))) {}
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Rect)) shown_->SetEnds(control_.ends);
  }
};

/// A tab bar whose tabs are as high as the bar.
class Tabs : public QTabBar {
 public:
  using QTabBar::QTabBar;

 protected:
  QSize tabSizeHint(int index) const override { return {QTabBar::tabSizeHint(index).width(), height()}; }
};

/// The strip spans the width of its container and grows with the container.
class TabStripView : public WidgetView<TabStrip, Tabs> {
 public:
  TabStripView(FormWindow& window, TabStrip& tabs)
      : WidgetView(window, tabs, new Tabs(window.ParentFor(tabs))) {
    for (const Control* other : tabs.form().controls()) {
      const auto* frame = dynamic_cast<const Frame*>(other);
      if (frame == &tabs.parent()) container_ = ToPixels(frame->rect).size();
    }
    for (const std::string& caption : tabs.captions) shown_->addTab(ToShown(caption));
    shown_->setExpanding(false);
    shown_->parentWidget()->installEventFilter(this);
    connect(shown_, &QTabBar::currentChanged, this, [this](int index) {
      if (index + 1 == control_.selected) return;
      control_.selected.Adopt(index + 1);
      window_.Post([&control = control_] { control.click(); });
    });
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    if (changes.Has(Change::Selection)) shown_->setCurrentIndex(control_.selected - 1);
    if (changes.Has(Change::Rect) || changes.Has(Change::Font)) Fill();
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == shown_->parentWidget() && event->type() == QEvent::Resize) Fill();
    return WidgetView::eventFilter(watched, event);
  }

 private:
  void Fill() {
    const QSize now = shown_->parentWidget()->size();
    const double growth = std::max(Growth(now, container_), 1.0);
    QFont font = MakeFont(control_.font, false);
    font.setPixelSize(static_cast<int>(font.pixelSize() * growth));
    shown_->setFont(font);
    const int height = ToPixels(control_.rect).height();
    shown_->resize(now.width() - 2 * shown_->x(), static_cast<int>(height * growth));
  }

  QSize container_;  ///< The container's original size if it is a frame; otherwise empty.
};

}  // namespace

const Label* LabelBefore(const Control& control) {
  const Label* label = nullptr;
  for (const Control* other : control.form().controls()) {
    if (other == &control) break;
    label = &other->parent() == &control.parent() ? dynamic_cast<const Label*>(other) : nullptr;
  }
  return label;
}

QString NameByLabel(const Control& control) {
  const Label* const label = LabelBefore(control);
  if (label == nullptr) return {};
  QString name = ToShown(label->caption.Get());
  return label->buddy == nullptr ? name : name.remove(u'&');
}

std::unique_ptr<ControlView> MakeControlView(FormWindow& window, Control& control) {
  if (auto* frame = dynamic_cast<Frame*>(&control)) return std::make_unique<FrameView>(window, *frame);
  if (auto* label = dynamic_cast<Label*>(&control)) return std::make_unique<LabelView>(window, *label);
  if (auto* button = dynamic_cast<Button*>(&control)) return std::make_unique<ButtonView>(window, *button);
  if (auto* option = dynamic_cast<OptionButton*>(&control)) {
    return std::make_unique<OptionButtonView>(window, *option);
  }
  if (auto* box = dynamic_cast<CheckBox*>(&control)) return std::make_unique<CheckBoxView>(window, *box);
  if (auto* image = dynamic_cast<Image*>(&control)) return std::make_unique<ImageView>(window, *image);
  if (auto* line = dynamic_cast<Line*>(&control)) return std::make_unique<StrokeView>(window, *line);
  if (auto* tabs = dynamic_cast<TabStrip*>(&control)) return std::make_unique<TabStripView>(window, *tabs);
  if (auto* box = dynamic_cast<TextBox*>(&control)) return MakeTextBoxView(window, *box);
  if (auto* arrows = dynamic_cast<UpDown*>(&control)) return MakeUpDownView(window, *arrows);
  if (auto* list = dynamic_cast<ListView*>(&control)) return MakeListView(window, *list);
  if (auto* list = dynamic_cast<ListBox*>(&control)) return MakeListBoxView(window, *list);
  if (auto* tree = dynamic_cast<TreeView*>(&control)) return MakeTreeView(window, *tree);
  if (auto* box = dynamic_cast<ComboBox*>(&control)) return MakeComboBoxView(window, *box);
  if (auto* bar = dynamic_cast<ToolBar*>(&control)) return MakeToolBarView(window, *bar);
  if (auto* bar = dynamic_cast<StatusBar*>(&control)) return MakeStatusBarView(window, *bar);
  if (auto* bar = dynamic_cast<ProgressBar*>(&control)) return MakeProgressBarView(window, *bar);
  if (auto* source = dynamic_cast<KeySource*>(&control)) return MakeKeySourceView(window, *source);
  if (auto* item = dynamic_cast<MenuItem*>(&control)) return MakeMenuView(window, *item);
  return nullptr;  // a timer has nothing to show
}

}  // namespace corvex
