#include <QAbstractListModel>
#include <QApplication>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTextLayout>
#include <algorithm>

#include "desktop/look/Icons.h"
#include "desktop/views/KeyCodes.h"
#include "desktop/views/Panel.h"
#include "desktop/views/Rows.h"
#include "desktop/views/WidgetView.h"

namespace corvex {

namespace {

struct Entry {
  QString text;
  int icon = 0;
};

class EntryModel : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;
  void SetEntries(std::vector<Entry> entries) {
    beginResetModel();
    entries_ = std::move(entries);
    endResetModel();
  }
  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    const Entry& entry = entries_[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return entry.text;
    if (role == Qt::UserRole) return entry.icon;
    return {};
  }

 private:
  std::vector<Entry> entries_;
};

constexpr int kMargin = kRowMargin;

/// Draws an icon with its text below, centred on at most two lines. Icons grow with the font. If a word is
/// slightly too long for its cell, the text is shown smaller so that the word is not broken.
class IconDelegate : public QStyledItemDelegate {
 public:
  explicit IconDelegate(QListView* list) : QStyledItemDelegate(list), list_(list) {}

  static int IconSide(const QFont& font) { return font.pixelSize() * 3 - 1; }
  static QSize CellSize(const QFont& font) {
    const int icon = IconSide(font);
    return {icon + 2 * kMargin, icon + 2 * QFontMetrics(font).lineSpacing() + 3 * kMargin};
  }

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return list_->gridSize(); }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    painter->save();
    DrawEntryGround(*painter, option);
    const int side = IconSide(option.font);
    const QRect icon(option.rect.center().x() - side / 2, option.rect.top() + kMargin + 1, side, side);
    DrawMenuIcon(*painter, icon, index.data(Qt::UserRole).toInt(), option.palette);

    painter->setPen(option.palette.color(QPalette::Text));
    const QRect text = option.rect.adjusted(kMargin, icon.bottom() + 1 - option.rect.top(), -kMargin, 0);
    const QString shown = index.data(Qt::DisplayRole).toString().trimmed();
    const QFont font = FontFor(shown, option.font, text.width());
    painter->setFont(font);
    const QStringList lines = Lines(shown, font, text.width());
    for (int i = 0; i < lines.size(); ++i) {
      const QRect line(text.left(), text.top() + i * option.fontMetrics.lineSpacing(), text.width(),
                       option.fontMetrics.lineSpacing());
      painter->drawText(line, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine, lines[i]);
    }
    painter->restore();
  }

 private:
  static QFont FontFor(const QString& text, const QFont& font, int width) {
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    return ShrunkToFit(font, font.pixelSize() * 3 / 4, [&](const QFont& in) {
      const QFontMetrics metrics(in);
      return std::all_of(words.begin(), words.end(),
                         [&](const QString& word) { return metrics.horizontalAdvance(word) <= width; });
    });
  }
  static QStringList Lines(const QString& text, const QFont& font, int width) {
    QTextLayout layout(text, font);
    QTextOption wrapping;
    wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(wrapping);
    QStringList lines;
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid()) {
      line.setLineWidth(width);
      lines << text.mid(line.textStart(), line.textLength()).trimmed();
      const QString rest = text.mid(line.textStart() + line.textLength()).trimmed();
      if (!rest.isEmpty()) lines << QFontMetrics(font).elidedText(rest, Qt::ElideRight, width);
    }
    layout.endLayout();
    return lines;
  }

  QListView* list_;
};

/// A list that reports typed characters. Keys with a meaning for the modem are only reported; letters are
/// reported and also search the list.
class EntryList : public QListView {
 public:
  explicit EntryList(QWidget* parent) : QListView(parent) {
    setModel(&model);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    setTabKeyNavigation(false);
    setItemDelegate(new RowDelegate(this));
    viewport()->setAttribute(Qt::WA_Hover);
    // If the list is alone on a panel, it needs no frame.
    const auto* panel = dynamic_cast<const corvex::Panel*>(parent);
    if (panel != nullptr && panel->look() == Look::Window) setFrameShape(QFrame::NoFrame);
  }
  EntryModel model;
  bool takesDigits = false;  ///< Digits have a meaning for the modem.
  std::function<void(char)> typed;
  std::function<void(int)> moved;

  void SetRow(int row) {
    const QModelIndex index = model.index(row);
    setCurrentIndex(index);
    if (index.isValid()) scrollTo(index);
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const char c = TypedCharacter(*event);
    if (c != 0) typed(c);
    if (c == '\r' || c == '\n' || c == '\x1B' || (takesDigits && c >= '0' && c <= '9')) return;
    QListView::keyPressEvent(event);
  }
  /// Keeps an empty selection empty, so that Enter chooses nothing. Qt would make the first entry current
  /// without showing it.
  void focusInEvent(QFocusEvent* event) override {
    const bool none = !currentIndex().isValid();
    QListView::focusInEvent(event);
    if (none) setCurrentIndex({});
  }
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override {
    QListView::currentChanged(current, previous);
    if (moved) moved(current.row());
  }
};

/// Base class for both kinds of list. Rows count from 0 here and from `First` in the control.
template <typename Kind, int First>
class EntryListView : public WidgetView<Kind, EntryList> {
 public:
  EntryListView(FormWindow& window, Kind& list, Property<int>& selection)
      : WidgetView<Kind, EntryList>(window, list, new EntryList(window.ParentFor(list))),
        selection_(selection) {
    EntryList& shown = *this->shown_;
    shown.typed = [this](char c) {
      this->window_.Post([&control = this->control_, c] { control.keyPress(c); });
    };
    shown.moved = [this](int row) {
      // A newer selection or list set by the logic takes precedence.
      const Changes& newer = this->pending;
      if (!applying_ && !newer.Has(Change::Items) && !newer.Has(Change::Selection)) {
        selection_.Adopt(row + First);
      }
    };
    QObject::connect(&shown, &QListView::doubleClicked, this,
                     [this] { this->window_.Post([&control = this->control_] { control.doubleClick(); }); });
  }

  void Apply(const Changes& changes) override {
    WidgetView<Kind, EntryList>::Apply(changes);
    applying_ = true;
    if (changes.Has(Change::Items)) {
      std::vector<Entry> entries;
      for (const auto& item : this->control_.Items()) entries.push_back(MakeEntry(item));
      this->shown_->model.SetEntries(std::move(entries));
    }
    if (changes.Has(Change::Items) || changes.Has(Change::Selection)) {
      this->shown_->SetRow(selection_ - First);
    }
    applying_ = false;
  }

 private:
  static Entry MakeEntry(const ListItem& item) { return {ToShown(item.text), item.icon}; }
  static Entry MakeEntry(const std::string& text) { return {ToShown(text)}; }

  Property<int>& selection_;
  bool applying_ = false;
};

/// An icon list. Its icons and texts grow with the size of the list, which follows the size of the window.
class IconListView : public EntryListView<ListView, 1> {
 public:
  IconListView(FormWindow& window, ListView& list)
      : EntryListView(window, list, list.selected), designed_(ToPixels(list.rect).size()) {
    shown_->takesDigits = true;
    shown_->setViewMode(QListView::IconMode);
    shown_->setMovement(QListView::Static);
    shown_->setResizeMode(QListView::Adjust);
    shown_->setWordWrap(true);
    shown_->setItemDelegate(new IconDelegate(shown_));
  }
  void Apply(const Changes& changes) override {
    EntryListView::Apply(changes);
    if (!changes.Has(Change::Spacing) && !changes.Has(Change::Font) && !changes.Has(Change::Rect)) return;
    constexpr int kDefaultWidth = 75;
    constexpr double kFontOfSpacing = 8;  // points
    constexpr double kLeast = 0.8;        // smaller texts are illegible
    const double growth = std::max(Growth(shown_->size(), designed_), kLeast);
    QFont font = MakeFont(control_.font, false);
    font.setPixelSize(static_cast<int>(font.pixelSize() * growth));
    shown_->setFont(font);
    const double scale = control_.font.Get().size / kFontOfSpacing * growth;
    const int across = static_cast<int>(control_.iconSpacing & 0xFFFF);
    const int down = static_cast<int>(control_.iconSpacing >> 16);
    const QSize wanted(qRound((across == 0 ? kDefaultWidth : across) * scale), qRound(down * scale));
    // If the spacing is 0 or too small for an icon and its text, use the size that they need.
    shown_->setGridSize(wanted.expandedTo(IconDelegate::CellSize(font)));
  }

 private:
  const QSize designed_;
};

using PlainListView = EntryListView<ListBox, 0>;

}  // namespace

std::unique_ptr<ControlView> MakeListView(FormWindow& window, ListView& list) {
  return std::make_unique<IconListView>(window, list);
}

std::unique_ptr<ControlView> MakeListBoxView(FormWindow& window, ListBox& list) {
  return std::make_unique<PlainListView>(window, list, list.listIndex);
}

}  // namespace corvex
