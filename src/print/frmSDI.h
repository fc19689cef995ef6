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

/// The print view: a small editor that shows the modem's print jobs and the program's own output. The first
/// use loads the window but need not show it. Closing the window empties it. The search settings are kept
/// until the program ends.
class frmSDI : public Form {
 public:
  /// The largest text in the view, in characters. Further text is dropped, and the view says that it is full.
  /// The bound is far above what a user reads.
  static constexpr std::size_t kMostText = 16 * 1024 * 1024;

  frmSDI(Form& owner, const Platform& platform, SettingsStore& settings);
  ~frmSDI() override { Withdraw(); }

  /// While an object of this class exists, a log is being written to the view. Print jobs are then part of
  /// the log and do not clear the view.
  class LogInProgress : ScopedFlag {
   public:
    explicit LogInProgress(frmSDI& view) : ScopedFlag(view.logging_) {}
  };

  /// Shows the window without giving it the keyboard focus. Restores it if it is minimised. Clears the text
  /// unless print jobs are concatenated, the user is answering one of the window's dialogs, or a log is in
  /// progress.
  void NewPrintJob();
  /// Inserts a text at the caret, or after the selection if there is one. Adds no line end. Loads the window
  /// but does not show it.
  void PrintLine(std::string_view text);
  void PrintJobComplete() {}
  /// Shows the window modally. Returns when the user has closed it.
  void ShowPrintForm();
  /// Closes the window. If the text is not saved, asks the user first. Returns false if the user wants to
  /// keep the window open, if the text could not be saved, or if another dialog of the window is open.
  bool ClosePrintForm();
  /// Saves the text under `name` in the program's folder and closes the window without a question. If saving
  /// fails, the view keeps the text as unsaved, so that it is not lost. While the user is answering one of
  /// the window's dialogs, the text is saved but the window stays open.
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
  /// Always hidden, because there is no list of recent files.
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
  /// Always disabled, because it has no function.
  MenuItem mnuEditTime{mnuEdit, {.name = "mnuEditTime", .caption = "Time / &Date", .enabled = false}};
  MenuItem mnuSearch{*this, {.name = "mnuSearch", .caption = "&Search"}};
  MenuItem mnuSearchFind{mnuSearch, {.name = "mnuSearchFind", .caption = "&Find", .shortcut = "Ctrl+F"}};
  MenuItem mnuSearchFindNext{mnuSearch,
                             {.name = "mnuSearchFindNext", .caption = "Find &Next", .shortcut = "F3"}};

  bool noteDirty() const { return noteDirty_; }

 private:
  /// Size of the window when it is loaded.
  static constexpr Twips kWidth = 9000;
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
  int autoSaveCount_ = 0;  ///< Number of PrintLine calls since the last automatic save.
  FindState find_;
  bool loaded_ = false;
  bool noteDirty_ = false;
  bool logging_ = false;
  bool asking_ = false;  ///< A dialog box is open. It blocks the user, but not calls from the program.
};

}  // namespace corvex
