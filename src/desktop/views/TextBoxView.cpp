#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <algorithm>

#include "desktop/views/WidgetView.h"

namespace corvex {

namespace {

// In this file, "page" means the widget that shows a text box with several lines.

/// Returns the number of characters of a text that the page shows: all except CR.
std::size_t ShownLength(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
}

/// Converts byte positions in a text to positions on the page, and back.
///
/// Each call searches from the position of the previous call, so that repeated work at one position of a long
/// text is cheap. Before the text changes, the last call must have been for the position of the change or for
/// an earlier one.
class PagePlaces {
 public:
  /// Returns the position on the page for a byte position.
  std::size_t Of(std::string_view text, std::size_t byte) {
    byte = std::min(byte, text.size());
    if (byte >= byte_) {
      place_ += ShownLength(text.substr(byte_, byte - byte_));
    } else {
      place_ -= ShownLength(text.substr(byte, byte_ - byte));
    }
    byte_ = byte;
    return place_;
  }
  /// Returns the byte position for a position on the page. If CRs precede the character there, returns the
  /// position before them, so that CR and LF stay together.
  std::size_t ByteAt(std::string_view text, std::size_t place) {
    while (place_ < place && byte_ < text.size()) place_ += text[byte_++] == '\r' ? 0 : 1;
    while (byte_ > 0 && (place_ > place || text[byte_ - 1] == '\r')) place_ -= text[--byte_] == '\r' ? 0 : 1;
    return byte_;
  }

 private:
  std::size_t byte_ = 0;
  std::size_t place_ = 0;  ///< The position on the page that corresponds to byte_.
};

constexpr char16_t kControlPictures = 0x2400;

/// Converts a text for the page. Removes CR. Replaces other control characters, except LF and Tab, with the
/// visible symbols from U+2400, so that none is lost when the user edits the text around them.
QString ToPage(std::string_view bytes) {
  QString page = ToQt(bytes);
  page.remove(u'\r');
  for (QChar& c : page) {
    if (c.unicode() < 0x20 && c != u'\n' && c != u'\t') c = QChar(kControlPictures + c.unicode());
  }
  return page;
}

bool IsLineEnd(QChar c) {
  return c == QChar::ParagraphSeparator || c == QChar::LineSeparator || c == u'\n';
}

bool IsControlPicture(QChar c) {
  return c.unicode() >= kControlPictures && c.unicode() < kControlPictures + 0x20;
}

bool HasByte(QChar c) {
  return c.unicode() <= 0xFF || IsLineEnd(c) || IsControlPicture(c);
}

std::string FromPage(const QString& page) {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(page.size()));
  for (const QChar c : page) {
    if (IsLineEnd(c)) {
      bytes += "\r\n";
    } else if (IsControlPicture(c)) {
      bytes += static_cast<char>(c.unicode() - kControlPictures);
    } else {
      bytes += c.unicode() <= 0xFF ? c.toLatin1() : '?';
    }
  }
  return bytes;
}

bool IsBeyondBytes(QChar c) {
  return c.unicode() > 0xFF;
}

/// Filters typed or pasted text for a single-line box. Removes characters outside Latin-1 and line ends at
/// the end of the text. Replaces other line ends with spaces: the user would not see a line end, but it would
/// be sent.
QString ToLine(QString text) {
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
  while (text.endsWith(u'\n')) text.chop(1);
  text.replace(u'\n', u' ');
  text.removeIf(IsBeyondBytes);
  return text;
}

void ApplyLockAndColors(const Changes& changes, const TextBox& box, auto& shown) {
  if (changes.Has(Change::Enabled)) shown.setReadOnly(box.locked);
  if (!changes.Has(Change::BackColor) && !changes.Has(Change::ForeColor)) return;
  QPalette palette;  // the parent's colours, unless the logic has chosen others
  if (box.backColor == kWindowColor && box.foreColor == kWindowTextColor) {
    shown.setPalette(palette);
    return;
  }
  const QPalette theme = shown.parentWidget()->palette();
  palette.setColor(QPalette::Base, ColorOf(box.backColor, QPalette::Base, theme));
  palette.setColor(QPalette::Text, ColorOf(box.foreColor, QPalette::Text, theme));
  shown.setPalette(palette);
}

/// A single-line text box. Its text is always set as a whole.
class LineView : public WidgetView<TextBox, QLineEdit> {
 public:
  LineView(FormWindow& window, TextBox& box) : WidgetView(window, box, new QLineEdit(window.ParentFor(box))) {
    shown_->setAccessibleName(NameByLabel(box));
    if (box.masked) shown_->setEchoMode(QLineEdit::Password);
    connect(shown_, &QLineEdit::textEdited, this, &LineView::AdoptTyped);
    connect(shown_, &QLineEdit::selectionChanged, this, &LineView::AdoptSelection);
    connect(shown_, &QLineEdit::cursorPositionChanged, this, &LineView::AdoptSelection);
  }
  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    ApplyLockAndColors(changes, control_, *shown_);
    // The user can only copy from a locked box, so Tab skips it.
    if (changes.Has(Change::Enabled))
      shown_->setFocusPolicy(control_.locked ? Qt::ClickFocus : Qt::StrongFocus);
    const TextBox::Selection selection = control_.selection;
    if (changes.Has(Change::Caption)) {
      QString text = ToShown(control_.Text());
      text.replace(u'\n', u' ');
      if (text != shown_->text()) shown_->setText(text);
    }
    if (changes.Has(Change::Selection)) {
      const auto limit = static_cast<std::size_t>(shown_->text().size());
      const std::size_t start = std::min(selection.start, limit);
      shown_->setCursorPosition(static_cast<int>(start));
      shown_->setSelection(static_cast<int>(start),
                           static_cast<int>(std::min(selection.length, limit - start)));
    }
  }

 private:
  void AdoptTyped(const QString& text) {
    const QString taken = ToLine(text);
    if (taken != text) {
      const auto caret = ToLine(text.left(shown_->cursorPosition()) + u'.').size() - 1;
      if (std::any_of(text.begin(), text.end(), IsBeyondBytes)) QApplication::beep();
      shown_->setText(taken);
      shown_->setCursorPosition(static_cast<int>(caret));
    }
    if (pending.Has(Change::Caption)) return;  // a newer value set by the logic takes precedence
    control_.AdoptText(FromQt(taken));
    window_.Post([&control = control_] { control.change(); });
  }
  void AdoptSelection() {
    if (pending.Has(Change::Selection)) return;  // a newer value set by the logic takes precedence
    const bool any = shown_->hasSelectedText();
    control_.selection.Adopt(
        {static_cast<std::size_t>(any ? shown_->selectionStart() : shown_->cursorPosition()),
         static_cast<std::size_t>(shown_->selectionLength())});
  }
};

class Pages : public QPlainTextEdit {
 public:
  using QPlainTextEdit::QPlainTextEdit;

 protected:
  /// Intentional: a read-only page accepts only the key that copies the selection.
  void keyPressEvent(QKeyEvent* event) override {
    if (isReadOnly() && !event->matches(QKeySequence::Copy)) {
      event->ignore();
    } else {
      QPlainTextEdit::keyPressEvent(event);
    }
  }
  /// Pastes or drops plain text and ignores all other formats. Qt's own implementation crashes if the
  /// clipboard is empty.
  void insertFromMimeData(const QMimeData* source) override {
    if (source == nullptr || !source->hasText()) return;
    insertPlainText(source->text());
    ensureCursorVisible();
  }
};

/// A text box of several lines. The page is updated by single edits where possible, not as a whole. CRs are
/// not shown, so a position on the page is the byte position minus the number of CRs before it. This holds
/// for each byte, even if an edit separates CR from LF.
class PagesView : public WidgetView<TextBox, Pages> {
 public:
  PagesView(FormWindow& window, TextBox& box) : WidgetView(window, box, new Pages(window.ParentFor(box))) {
    shown_->setUndoRedoEnabled(!box.locked);
    shown_->setTabChangesFocus(box.locked);
    connect(shown_->document(), &QTextDocument::contentsChange, this, &PagesView::AdoptEdit);
    connect(shown_, &QPlainTextEdit::textChanged, this, &PagesView::Typed);
    connect(shown_, &QPlainTextEdit::selectionChanged, this, &PagesView::AdoptSelection);
    connect(shown_, &QPlainTextEdit::cursorPositionChanged, this, &PagesView::AdoptSelection);
  }

  void TextEdited(std::size_t position, std::size_t removed, std::string_view inserted) override {
    const std::string& text = control_.Text();  // the text before this edit
    const std::size_t place = places_.Of(text, position);
    if (whole_) return;
    taken_ += inserted.size();
    // If the text is emptied in a closed window, or after kMostTaken bytes, set the page as a whole. This
    // discards the undo history, so the old text cannot come back.
    const bool replaced = taken_ > kMostTaken || !control_.form().visible;
    if (removed > 0 && removed == text.size() && replaced) {
      whole_ = true;
      edits_.clear();
      return;
    }
    const bool appends = position == text.size();
    if (removed == 0 && !edits_.empty() && edits_.back().byteEnd == position) {
      edits_.back().inserted += inserted;
      edits_.back().byteEnd += inserted.size();
      return;
    }
    const std::string_view gone = std::string_view(text).substr(position, removed);
    Edit edit;
    edit.byteEnd = position + inserted.size();
    edit.position = appends ? 0 : place;
    edit.removed = ShownLength(gone);
    edit.inserted = inserted;
    edit.appends = appends;
    edits_.push_back(std::move(edit));
    if (edits_.size() > kMostEdits) {
      edits_.clear();
      whole_ = true;
    }
  }

  void Apply(const Changes& changes) override {
    WidgetView::Apply(changes);
    ApplyLockAndColors(changes, control_, *shown_);
    applying_ = true;
    const bool replaced = whole_;
    if (changes.Has(Change::Caption)) ApplyText();
    if (changes.Has(Change::Selection) || replaced) ApplySelection();
    applying_ = false;
    AdoptSelection();  // the user may have moved the caret before the text was shown
  }

 private:
  void ApplyText() {
    QScrollBar& bar = *shown_->verticalScrollBar();
    const bool follow = control_.locked && bar.value() == bar.maximum();
    // If the caret is out of view, the user has scrolled away to read. Do not scroll back then.
    const bool followCaret = !control_.locked && shown_->viewport()->rect().intersects(shown_->cursorRect());
    if (whole_) {
      shown_->setPlainText(ToPage(control_.Text()));
      taken_ = control_.Text().size();
    } else {
      QTextCursor cursor(shown_->document());
      cursor.beginEditBlock();
      for (const Edit& edit : edits_) ApplyEdit(cursor, edit);
      cursor.endEditBlock();
    }
    whole_ = false;
    edits_.clear();
    if (follow) bar.setValue(bar.maximum());
    if (followCaret) shown_->ensureCursorVisible();
  }

  void ApplySelection() {
    const auto [start, length] = control_.selection.Get();
    const int last = shown_->document()->characterCount() - 1;
    const auto place = [&](std::size_t byte) {
      return std::min(static_cast<int>(places_.Of(control_.Text(), byte)), last);
    };
    QTextCursor cursor(shown_->document());
    cursor.setPosition(place(start));
    cursor.setPosition(place(start + length), QTextCursor::KeepAnchor);
    // A read-only page keeps its scroll position.
    const int scrolled = shown_->verticalScrollBar()->value();
    shown_->setTextCursor(cursor);
    if (control_.locked) shown_->verticalScrollBar()->setValue(scrolled);
  }

  void AdoptSelection() {
    if (applying_ || pending.Has(Change::Selection) || pending.Has(Change::Caption)) return;
    const QTextCursor cursor = shown_->textCursor();
    const std::size_t start =
        places_.ByteAt(control_.Text(), static_cast<std::size_t>(cursor.selectionStart()));
    const std::size_t end = places_.ByteAt(control_.Text(), static_cast<std::size_t>(cursor.selectionEnd()));
    control_.selection.Adopt({start, end - start});
  }

  struct Edit {
    std::size_t position = 0;  ///< Position on the page; unused if `appends`.
    std::size_t removed = 0;   ///< Number of characters on the page.
    std::string inserted;
    bool appends = false;
    std::size_t byteEnd = 0;  ///< Byte position after `inserted`. An edit there is merged into this one.
  };
  /// With more edits than this in one turn, setting the whole text is as cheap.
  static constexpr std::size_t kMostEdits = 1000;

  /// Called when the user has changed the page. Edits of the logic that are not shown yet must not be lost.
  void AdoptEdit(int position, int removed, int added) {
    if (applying_) return;
    whole_ =
        whole_ || std::any_of(edits_.begin(), edits_.end(), [](const Edit& edit) { return !edit.appends; });
    if (whole_) return;  // the logic's text takes precedence over one key
    // Qt sometimes counts the end of its last paragraph in `removed` and `added`. It is not part of the text.
    const int beyond = std::max(position + added - (shown_->document()->characterCount() - 1), 0);
    QTextCursor cursor(shown_->document());
    cursor.setPosition(position);
    cursor.setPosition(position + added - beyond, QTextCursor::KeepAnchor);
    const QString typed = cursor.selectedText();
    const std::string bytes = FromPage(typed);
    const std::string& text = control_.Text();
    const auto place = static_cast<std::size_t>(position);
    const std::size_t end = places_.ByteAt(text, place + static_cast<std::size_t>(removed - beyond));
    const std::size_t start = places_.ByteAt(text, place);
    control_.AdoptEdit(start, end - start, bytes);
    for (Edit& edit : edits_) edit.byteEnd = edit.byteEnd - (end - start) + bytes.size();
    // A character without a byte value is "?" in the text. Show it as "?" too, before the user saves the
    // text.
    whole_ = !std::all_of(typed.begin(), typed.end(), HasByte);
  }

  /// Called after AdoptEdit, when Qt has finished the edit and its cursor has the final position.
  void Typed() {
    if (applying_) return;
    AdoptSelection();
    window_.Post([&control = control_] { control.change(); });
    if (whole_) window_.ControlChanged(control_, Change::Caption);
  }

  void ApplyEdit(QTextCursor& cursor, const Edit& edit) {
    cursor.movePosition(QTextCursor::End);
    if (!edit.appends) {
      const int end = cursor.position();
      cursor.setPosition(std::min(static_cast<int>(edit.position), end));
      cursor.setPosition(std::min(static_cast<int>(edit.position + edit.removed), end),
                         QTextCursor::KeepAnchor);
    }
    const QTextCursor marked = shown_->textCursor();
    const int anchor = marked.anchor();
    const int position = marked.position();
    // Qt extends the selection by text that is inserted directly after it. The code below restores the
    // selection.
    const bool follows =
        marked.hasSelection() && !cursor.hasSelection() && marked.selectionEnd() == cursor.position();
    cursor.insertText(ToPage(edit.inserted));
    if (!follows) return;
    QTextCursor kept = marked;
    kept.setPosition(anchor);
    kept.setPosition(position, QTextCursor::KeepAnchor);
    shown_->setTextCursor(kept);
  }

  /// With undo enabled, Qt keeps all text that was ever on the page. After this many bytes, emptying the text
  /// also discards the undo history.
  static constexpr std::size_t kMostTaken = 1 << 20;

  PagePlaces places_;
  std::vector<Edit> edits_;
  std::size_t taken_ = 0;  ///< Bytes put on the page since it was last set as a whole.
  bool whole_ = true;      ///< The page must be set as a whole.
  bool applying_ = false;
};

}  // namespace

std::unique_ptr<ControlView> MakeTextBoxView(FormWindow& window, TextBox& box) {
  if (box.multiLine) return std::make_unique<PagesView>(window, box);
  return std::make_unique<LineView>(window, box);
}

}  // namespace corvex
