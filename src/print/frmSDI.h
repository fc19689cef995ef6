#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "base/ScopedFlag.h"
#include "forms/Controls.h"
#include "platform/Platform.h"
#include "print/SoftBreaks.h"
#include "print/modSdi.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// The print view: where the modem's print jobs are shown, and the page that the rest of the program writes
/// its output on; a small editor. It is loaded at its first use, shown or not, and is empty again after it
/// has been closed. What the user searches for is kept for the whole run.
class frmSDI : public Form {
 public:
  /// What the view holds; then it takes no more lines and says so. No user reads as much.
  static constexpr std::size_t kMostText = 16 * 1024 * 1024;

  frmSDI(Form& owner, const Platform& platform, SettingsStore& settings);
  ~frmSDI() override { Withdraw(); }

  /// While one lives a log is being written here: jobs are a part of it, and clear nothing of it.
  class LogInProgress : ScopedFlag {
   public:
    explicit LogInProgress(frmSDI& view) : ScopedFlag(view.logging_) {}
  };

  /// Shows the window, minimised or not, and leaves the keyboard where it is. Clears it if jobs are not to
  /// add up, unless the user is answering a question of it or a log is in progress.
  void NewPrintJob();
  /// Puts a text at the caret, behind what the user has marked. A line end is the caller's affair. Loads the
  /// window, but does not show it.
  void PrintLine(std::string_view text);
  void PrintJobComplete() {}
  /// Closes the window, once the user has been asked what to do with a text that is not saved. False if he
  /// wants it to stay, or is being asked something by it already.
  bool ClosePrintForm();
  /// Saves the text under a name in the program's folder and closes the window without a question. If that
  /// fails the text stays in the window as one that is not saved: it would be lost otherwise. So it does
  /// while the user is answering a question of the window.
  bool SaveLogToFile(const std::string& name);

  Frame picToolbar{*this, {.name = "picToolbar", .rect = {0, 0, kInnerWidth, kToolbarHeight}}};
  std::array<Button, 3> comms{{
      {picToolbar, ToolDesign(0, "Delete screen content", "clear")},
      {picToolbar, ToolDesign(1, "Save as...", "save")},
      {picToolbar, ToolDesign(2, "Print...", "print")},
  }};
  TextBox txtNote{*this,
                  {.name = "txtNote",
                   .rect = {0, kToolbarHeight, kInnerWidth, kInnerHeight - kToolbarHeight},
                   .font = {.name = "Courier", .size = 10},
                   .accessible = "Printout"}};

  MenuItem mnuFile{*this, {.name = "mnuFile", .caption = "&File"}};
  MenuItem mnuClear{mnuFile, {.name = "mnuClear", .caption = "Reset"}};
  MenuItem mnuFileSaveAs{mnuFile, {.name = "mnuFileSaveAs", .caption = "Save &As", .shortcut = "Ctrl+S"}};
  MenuItem mnuPrint{mnuFile, {.name = "mnuPrint", .caption = "Print...", .shortcut = "Ctrl+P"}};
  MenuItem mnuFileLine{mnuFile, {.name = "mnuFileLine", .caption = "-"}};
  /// Nothing keeps a list of recent files.
  std::array<MenuItem, 5> mnuRecentFile{{
      {mnuFile, {.name = "mnuRecentFile", .index = 1, .caption = "RecentFile1", .visible = false}},
      {mnuFile, {.name = "mnuRecentFile", .index = 2, .caption = "RecentFile2", .visible = false}},
      {mnuFile, {.name = "mnuRecentFile", .index = 3, .caption = "RecentFile3", .visible = false}},
      {mnuFile, {.name = "mnuRecentFile", .index = 4, .caption = "RecentFile4", .visible = false}},
      {mnuFile, {.name = "mnuRecentFile", .index = 5, .caption = "RecentFile5", .visible = false}},
  }};
  MenuItem mnuFileExit{mnuFile, {.name = "mnuFileExit", .caption = "E&xit"}};
  MenuItem mnuEdit{*this, {.name = "mnuEdit", .caption = "&Edit"}};
  MenuItem mnuEditCut{mnuEdit, {.name = "mnuEditCut", .caption = "Cu&t", .shortcut = "Ctrl+X"}};
  MenuItem mnuEditCopy{mnuEdit, {.name = "mnuEditCopy", .caption = "&Copy", .shortcut = "Ctrl+C"}};
  MenuItem mnuEditPaste{mnuEdit, {.name = "mnuEditPaste", .caption = "&Paste", .shortcut = "Ctrl+V"}};
  MenuItem mnuEditDelete{mnuEdit, {.name = "mnuEditDelete", .caption = "De&lete", .shortcut = "Del"}};
  MenuItem mnuEditSelectAll{mnuEdit,
                            {.name = "mnuEditSelectAll", .caption = "Select &All", .shortcut = "Ctrl+A"}};
  /// Has no function, and so cannot be chosen.
  MenuItem mnuEditTime{mnuEdit, {.name = "mnuEditTime", .caption = "Time / &Date", .enabled = false}};
  MenuItem mnuSearch{*this, {.name = "mnuSearch", .caption = "&Search"}};
  MenuItem mnuSearchFind{mnuSearch, {.name = "mnuSearchFind", .caption = "&Find", .shortcut = "Ctrl+F"}};
  MenuItem mnuSearchFindNext{mnuSearch,
                             {.name = "mnuSearchFindNext", .caption = "Find &Next", .shortcut = "F3"}};

  bool noteDirty() const { return noteDirty_; }

 private:
  static constexpr Twips kWidth = 9000;  ///< Of the window when it is loaded.
  static constexpr Twips kHeight = 5700;
  static constexpr Twips kInnerWidth = kWidth - kFrameWidth;
  static constexpr Twips kInnerHeight = kHeight - kFrameHeight - kMenuBarHeight;
  static constexpr Twips kToolbarHeight = 540;
  static Design ToolDesign(int tool, std::string_view toolTip, std::string_view picture) {
    constexpr Twips kSide = 420;
    return {.name = "comms",
            .index = tool,
            .rect = {60 + tool * (kSide + 60), 60, kSide, kSide},
            .toolTip = toolTip,
            .picture = picture};
  }

  void ConnectEvents();
  void OnKey(KeyEvent& key);
  void LayOut();
  void Load();
  void Unload();

  void Present(bool withFocus);
  void Insert(std::size_t position, std::string_view text);
  void Replace(std::string_view text);
  void Put(std::size_t at, std::string_view text,
           const std::function<void(std::size_t, std::string_view)>& edit);
  void Clear();
  bool SaveNote(const std::string& path);
  std::string AskSaveName(const std::string& proposed);
  bool SaveAs();

  void AskToClear();
  void Print();
  void PrintNote(PrintJob& job);
  std::string SelectedText() const;
  void Copy();
  void Cut();
  void Paste();
  void Delete();
  void ShowFind();
  void FindNext();
  void FindAgain();

  const Platform platform_;
  SettingsStore& settings_;
  SoftBreaks breaks_;
  AutoSave autoSave_;
  int autoSaveCount_ = 0;  ///< Calls of PrintLine since the last automatic save.
  FindState find_;
  bool loaded_ = false;
  bool noteDirty_ = false;
  bool logging_ = false;
  bool asking_ = false;  ///< A box of this window is open. The user cannot reach it then, but others can.
};

}  // namespace corvex
