#include "print/frmSDI.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "base/Text.h"
#include "print/frmFind.h"
#include "settings/SettingFonts.h"

namespace corvex {

namespace {

constexpr std::string_view kNotConfigured = "Printer not configured";
constexpr std::string_view kFull = "\r\n*** The view is full. Save it, and reset it to see more. ***\r\n";

struct BrokenText {
  std::string shown;
  std::vector<std::size_t> breaks;  ///< Positions of the soft breaks in `shown`.
};

/// Returns `text` with a soft break wherever a line would exceed kLongestLine characters. After every change,
/// the text box lays out the whole line again. For a line of one megabyte this would take a third of a
/// second. `before`: the text before the insertion point.
BrokenText Broken(std::string_view before, std::string_view text) {
  constexpr std::size_t kLongestLine = 4096;
  before.remove_prefix(before.size() - std::min(before.size(), kLongestLine));
  std::size_t length = before.size() - (before.rfind('\n') + 1);  // npos + 1 is 0
  BrokenText broken;
  if (length + text.size() <= kLongestLine) {
    broken.shown = text;
    return broken;
  }
  for (const char c : text) {
    if (c == '\r' || c == '\n') {
      length = c == '\n' ? 0 : length;
    } else if (length++ == kLongestLine) {
      broken.breaks.push_back(broken.shown.size());
      broken.shown += kCrLf;
      length = 1;
    }
    broken.shown += c;
  }
  return broken;
}

/// Shows the busy pointer during its lifetime.
class Busy {
 public:
  explicit Busy(Form& form) : form_(form) { form_.pointer = Pointer::Hourglass; }
  ~Busy() { form_.pointer = Pointer::Normal; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  Form& form_;
};

}  // namespace

frmSDI::frmSDI(Form& owner, const Platform& platform, SettingsStore& settings)
    : Form(platform.loop, platform.windows, "frmSDI", &owner),
      platform_(platform),
      settings_(settings),
      // Intentional: this separator is used on every system.
      autoSave_(settings.files(), settings.AppFolder() + '/' + settings.OwnName("temp", ".txt")) {
  caption = "Printout Viewer";
  txtNote.multiLine = true;
  ConnectEvents();
}

void frmSDI::ConnectEvents() {
  txtNote.change = [this] { noteDirty_ = true; };
  txtNote.edited = [this](std::size_t place, std::size_t removed, std::size_t inserted) {
    autoSave_.ChangedAt(breaks_.InText(place));
    breaks_.Edited(place, removed, inserted);
  };
  resize = [this] { LayOut(); };
  queryUnload = [this] { ClosePrintForm(); };
  keyDown = [this](KeyEvent& key) { OnKey(key); };

  mnuClear.click = [this] { AskToClear(); };
  mnuFileSaveAs.click = [this] { SaveAs(); };
  mnuPrint.click = [this] { Print(); };
  mnuFileExit.click = [this] { ClosePrintForm(); };
  comms[0].click = [this] { AskToClear(); };
  comms[1].click = [this] { SaveAs(); };
  comms[2].click = [this] { Print(); };
  mnuEditCut.click = [this] { Cut(); };
  mnuEditCopy.click = [this] { Copy(); };
  mnuEditPaste.click = [this] { Paste(); };
  mnuEditDelete.click = [this] { Delete(); };
  mnuEditSelectAll.click = [this] { txtNote.SelectAll(); };
  mnuSearchFind.click = [this] { ShowFind(); };
  mnuSearchFindNext.click = [this] { FindAgain(); };
}

/// Handles the shortcuts that the menus show. The text box has its own cut, copy and paste, but they use
/// other line ends and drop control characters.
void frmSDI::OnKey(KeyEvent& key) {
  constexpr int kF3 = 114;
  const struct {
    int keyCode;
    bool ctrl;
    MenuItem& item;
  } keys[]{{'S', true, mnuFileSaveAs}, {'P', true, mnuPrint},          {'X', true, mnuEditCut},
           {'C', true, mnuEditCopy},   {'V', true, mnuEditPaste},      {'A', true, mnuEditSelectAll},
           {'F', true, mnuSearchFind}, {kF3, false, mnuSearchFindNext}};
  if (key.alt || key.shift) return;
  for (const auto& entry : keys) {
    if (entry.keyCode != key.keyCode || entry.ctrl != key.ctrl) continue;
    key.handled = true;
    loop().Post([click = &entry.item.click] { (*click)(); });  // returns from the key event before any wait
  }
}

void frmSDI::LayOut() {
  const Rect bar = picToolbar.rect;
  picToolbar.rect = Rect{bar.left, bar.top, InnerWidth(), bar.height};
  const Twips top = bar.top + bar.height;
  txtNote.rect = Rect{0, top, InnerWidth(), std::max(InnerHeight() - top, 0)};
}

void frmSDI::Load() {
  if (loaded_) return;
  loaded_ = true;
  Centre(owner()->rect, kWidth, kHeight);
  LayOut();
  std::error_code ignored;
  std::filesystem::current_path(settings_.AppFolder(), ignored);
  noteDirty_ = false;
  Font font = SettingFont(settings_.screen);
  font.italic = font.underline = false;
  txtNote.font = font;
  txtNote.SetFocus();
}

void frmSDI::Unload() {
  settings_.positions.PrtViewtop.Set(rect.Get().top);
  settings_.positions.PrtViewleft.Set(rect.Get().left);
  visible = false;
  Clear();
  loaded_ = false;
}

void frmSDI::NewPrintJob() {
  Load();
  Present(false);  // the keys that the user types must still go to the modem
  // The text is kept while the user answers a dialog, because the user may be saving this very text. It is
  // also kept during a log, because the job is part of it.
  if (!settings_.printer.fileuse.IsAppend() && !asking_ && !logging_) Clear();
}

void frmSDI::Present(bool withFocus) {
  takesFocus = withFocus;
  if (windowState == WindowState::Minimized) windowState = WindowState::Normal;
  visible = true;
}

void frmSDI::ShowPrintForm() {
  Load();
  Present(true);
  ShowModal();
}

void frmSDI::PrintLine(std::string_view text) {
  Load();
  const std::size_t size = txtNote.Text().size();
  if (size > kMostText) return;  // the view already says that it is full
  const auto [start, length] = txtNote.selection.Get();
  Insert(start + length, text.substr(0, kMostText - size));
  if (text.size() > kMostText - size) Insert(txtNote.Text().size(), kFull);

  constexpr int kUnsavedLines = 5;
  if (autoSaveCount_ < kUnsavedLines) {
    ++autoSaveCount_;
    return;
  }
  const Busy busy(*this);
  const auto from = [this](std::size_t place) {
    return breaks_.Text(txtNote.Text(), breaks_.BeforeBreak(place));
  };
  if (autoSave_.Save(from)) noteDirty_ = false;
  autoSaveCount_ = 0;
}

bool frmSDI::ClosePrintForm() {
  if (asking_) return false;
  if (!loaded_) return true;
  if (noteDirty_) {
    const ScopedFlag asking(asking_);
    Present(true);  // shows the window even if it was hidden, so that the user sees the text in question
    const Answer answer =
        platform_.dialogs.Ask({.text = "The text has been changed.\r\nDo you want to save the changes?",
                               .title = caption,
                               .buttons = Buttons::YesNoCancel,
                               .warns = true,
                               .owner = this});
    if (answer == Answer::Cancel) return false;
    // Stay open if the text could not be saved: the user wants to keep it.
    if (answer == Answer::Yes && !SaveNote(AskSaveName(settings_.printer.path.Get()))) return false;
  }
  Unload();
  return true;
}

bool frmSDI::SaveLogToFile(const std::string& name) {
  Load();
  const std::string& folder = settings_.AppFolder();
  const bool saved = SaveNote(folder + (Matches(folder, "*/*") ? '/' : '\\') + name);
  if (saved && !asking_) Unload();
  return saved;
}

void frmSDI::Insert(std::size_t position, std::string_view text) {
  Put(std::min(position, txtNote.Text().size()), text,
      [this](std::size_t at, std::string_view shown) { txtNote.Edit(at, 0, shown); });
}

void frmSDI::Replace(std::string_view text) {
  Put(std::min(txtNote.selection.Get().start, txtNote.Text().size()), text,
      [this](std::size_t, std::string_view shown) { txtNote.ReplaceSelection(shown); });
}

void frmSDI::Put(std::size_t at, std::string_view text,
                 const std::function<void(std::size_t, std::string_view)>& edit) {
  const BrokenText broken = Broken(std::string_view(txtNote.Text()).substr(0, at), text);
  edit(at, broken.shown);
  for (const std::size_t place : broken.breaks) breaks_.Add(at + place);
  noteDirty_ = true;
}

void frmSDI::Clear() {
  txtNote.SetText({});
  noteDirty_ = false;
}

bool frmSDI::SaveNote(const std::string& path) {
  const Busy busy(*this);
  const bool saved = WriteNote(settings_.files(), path, breaks_.Text(txtNote.Text()));
  if (saved) noteDirty_ = false;
  return saved;
}

/// Returns an empty path if the user cancels.
std::string frmSDI::AskSaveName(const std::string& proposed) {
  return platform_.dialogs
      .SaveFile({.title = "Save As", .filter = "Text Files | *.txt", .start = proposed, .owner = this})
      .value_or("");
}

bool frmSDI::SaveAs() {
  if (asking_) return false;
  const ScopedFlag asking(asking_);
  const std::string path = AskSaveName(settings_.printer.path.Get());
  const bool saved = SaveNote(path);
  if (!path.empty()) settings_.printer.path.Set(path);
  return saved;
}

void frmSDI::AskToClear() {
  if (asking_) return;
  const ScopedFlag asking(asking_);
  if (noteDirty_ && platform_.dialogs.Ask({.text = "Content is unsaved - proceed to delete?",
                                           .title = "Reset printout",
                                           .buttons = Buttons::OkCancel,
                                           .owner = this}) != Answer::Ok) {
    return;
  }
  Clear();
}

void frmSDI::Print() {
  if (asking_) return;
  const ScopedFlag asking(asking_);
  if (platform_.printers.Count() == 0) {
    platform_.dialogs.MessageBox(kNotConfigured);
  } else if (const auto job = platform_.printers.Choose(this)) {
    PrintNote(*job);
  }
}

void frmSDI::PrintNote(PrintJob& job) {
  if (platform_.printers.Count() == 0) {  // the printer may have been removed while the user was choosing
    platform_.dialogs.MessageBox(kNotConfigured);
  } else if (job.Print(breaks_.Text(txtNote.Text()), txtNote.font)) {
    noteDirty_ = false;
  } else {
    platform_.dialogs.MessageBox(kPrintFailed);
  }
}

std::string frmSDI::SelectedText() const {
  const auto [start, length] = txtNote.selection.Get();
  return breaks_.Text(txtNote.Text(), start, start + length);
}

void frmSDI::Copy() {
  const std::string selected = SelectedText();
  if (!selected.empty()) platform_.shell.SetClipboardText(selected);
}

void frmSDI::Cut() {
  if (txtNote.SelText().empty()) return;
  Copy();
  Replace({});
}

void frmSDI::Paste() {
  const std::string text = platform_.shell.ClipboardText();
  const std::size_t kept = txtNote.Text().size() - txtNote.SelText().size();
  if (!text.empty()) Replace(std::string_view(text).substr(0, kMostText - std::min(kept, kMostText)));
}

void frmSDI::Delete() {
  const std::string& text = txtNote.Text();
  const std::size_t start = txtNote.selection.Get().start;
  if (txtNote.SelText().empty()) {
    if (start >= text.size()) return;
    // A line end is deleted as a whole.
    txtNote.selection = TextBox::Selection{start, text[start] == '\r' ? 2u : 1u};
  }
  Replace({});
}

void frmSDI::ShowFind() {
  if (asking_) return;
  const ScopedFlag asking(asking_);
  constexpr std::size_t kMostSearched = 255;  // the longest search text taken from the selection
  const std::string selected = SelectedText().substr(0, kMostSearched);
  find_.findChanged = true;
  frmFind form(*this, find_, selected.empty() ? find_.findText : selected, [this] { FindNext(); });
  form.ShowModal();
}

void frmSDI::FindAgain() {
  if (find_.findText.empty()) {
    ShowFind();
  } else if (!asking_) {
    const ScopedFlag asking(asking_);
    FindNext();
  }
}

void frmSDI::FindNext() {
  const auto selStart = [this] { return breaks_.InText(txtNote.selection.Get().start); };
  const auto found = FindPlace(breaks_.Text(txtNote.Text()), selStart(), find_);
  if (found) {
    const std::size_t start = breaks_.AfterBreak(*found);
    const std::size_t end = breaks_.BeforeBreak(*found + find_.findText.size());
    txtNote.selection = TextBox::Selection{start, end - start};
    txtNote.Changed(Change::Selection);  // scrolls to the match even if it is already selected
  } else {
    platform_.dialogs.MessageBox("Cannot find \"" + find_.findText + '"');
  }
  find_.findLastPos = selStart();
  find_.findChanged = false;
}

}  // namespace corvex
