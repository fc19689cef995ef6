#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "desktop/views/ControlView.h"
#include "forms/Form.h"

class QKeyEvent;
class QMenuBar;

namespace corvex {

inline constexpr Twips kTwipsPerPixel = 15;

/// Converts twips to Qt's pixels: 96 to the inch, independent of the screen's density. Rounds edges, not
/// sizes, so that rectangles that touch in twips also touch in pixels.
QRect ToPixels(const Rect& twips);

/// The window that shows a form: a menu bar if the form has menus, and the controls below it.
///
/// From form to screen: changes are collected and applied once per turn of the event loop. A burst of changes
/// is thus laid out and painted once.
///
/// From screen to form: values that the user changes are written to the form immediately. Events such as a
/// click, a typed character or a new size are posted to the program's event loop, so that no handler runs or
/// waits inside a widget's code. Two kinds of events are handled immediately instead: keys that the form sees
/// before its controls, because the form must say whether it has handled them, and activation.
class FormWindow : public QWidget, public FormObserver {
 public:
  /// `owner`: the window that this one stays in front of, or null.
  FormWindow(Form& form, EventLoop& loop, QWidget* owner = nullptr);
  ~FormWindow() override;

  /// Called when the form is destroyed; its controls may no longer exist. Hides the window. The window
  /// deletes itself as soon as none of its handlers is on the stack.
  void Detach();

  /// For views: posts `task` to the program's event loop. The task does not run if the form has been
  /// destroyed by then.
  void Post(EventLoop::Task task);

  /// Runs `task` in the core immediately, if the form still exists. The window is not deleted before `task`
  /// returns.
  void Enter(const EventLoop::Task& task);

  /// Passes a key event of one of this window's widgets to the form. Returns true if the event must go no
  /// further.
  bool TakeKey(QKeyEvent& event);

  /// Where the user asks for a context menu.
  struct MenuPlace {
    QPoint place;        ///< On the screen.
    bool byKey = false;  ///< With the keyboard.
  };
  void SetMenuPlace(const MenuPlace& asked) { menuPlace_ = asked; }
  /// Returns the place that was set last and forgets it. Without one, returns the position of the mouse.
  MenuPlace TakeMenuPlace();

  QWidget* ParentFor(const Control& control) const;
  QMenuBar* menuBar();
  ControlView* ViewOf(const Control& control) const;

  void FormChanged(Change change) override;
  void ControlChanged(Control& control, Change change) override;
  void TextEdited(TextBox& box, std::size_t position, std::size_t removed,
                  std::string_view inserted) override;

 protected:
  void customEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void MakeViews();
  void Schedule();
  void Flush();
  void ApplyForm(const Changes& changes);
  void ApplyDefault();
  void ApplyRect();
  void ApplyWindowState();
  void RestoreWithoutFocus();
  void LayOut();
  void AdoptGeometry();
  void OpenMenu();
  void AdoptFocus();
  void PostResize();

  EventLoop& loop_;
  Form* form_;  ///< Null after the form has been destroyed.
  QWidget* client_;
  QMenuBar* menuBar_ = nullptr;
  std::vector<std::unique_ptr<ControlView>> views_;  ///< In the order of the controls.
  std::unordered_map<const Control*, ControlView*> viewOf_;
  std::unordered_map<const Container*, QWidget*> insideOf_;
  std::vector<ControlView*> dirty_;
  Changes formPending_ = Changes::All();
  const Control* focusPending_ = nullptr;
  std::optional<MenuPlace> menuPlace_;
  int entered_ = 0;  ///< Number of calls of Enter on the stack.
  bool scheduled_ = false;
  bool applying_ = false;
  bool resizePosted_ = false;
  bool unloadPosted_ = false;
  // The form's rectangle as last applied or adopted: in twips, and its position and size in pixels.
  Rect shownRect_;
  QPoint shownPos_;
  QSize shownSize_;
  // The key last seen as a possible shortcut. Qt sends it a second time as a key press.
  bool keySeen_ = false;
  bool keyHandled_ = false;
  int seenKey_ = 0;
};

}  // namespace corvex
