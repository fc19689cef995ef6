#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "desktop/views/ControlView.h"
#include "forms/Form.h"

class QKeyEvent;
class QMenuBar;

namespace corvex {

inline constexpr Twips kTwipsPerPixel = 15;

/// Pixels here are Qt's, 96 to the inch, independent of the density of the screen. Edges are rounded, not
/// sizes, so that what adjoins in twips adjoins in pixels.
QRect ToPixels(const Rect& twips);

/// The window that shows a form: a menu bar if the form has menus, and below it the controls, each at its
/// place.
///
/// Form to screen: changes are gathered, and applied once per turn of the event loop, so that a burst of them
/// is laid out and painted once. Screen to form: values that the user changes are adopted at once; events (a
/// click, a typed character, a new size) are posted to the program's event loop, so that no handler runs, or
/// waits, within a widget's own code. The exceptions are keys seen before any control, which must be
/// answered, and activation.
class FormWindow : public QWidget, public FormObserver {
 public:
  /// `owner`: the window that this one stays in front of, or none.
  FormWindow(Form& form, EventLoop& loop, QWidget* owner = nullptr);
  ~FormWindow() override;

  /// The form goes; its controls may be gone already. The window deletes itself as soon as nothing of it is
  /// on the stack.
  void Detach();

  /// For views: runs `task` in the core's turn, unless the form has gone by then.
  void Post(EventLoop::Task task);

  /// For views, where the widget has to know at once that the core has taken over a value.
  void Enter(const EventLoop::Task& task);

  /// A key has come to a widget of this window. True if it is not to go on.
  bool TakeKey(QKeyEvent& event);

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
  Form* form_;  ///< None once the form has gone.
  QWidget* client_;
  QMenuBar* menuBar_ = nullptr;
  std::vector<std::unique_ptr<ControlView>> views_;  ///< In the order of the controls.
  std::unordered_map<const Control*, ControlView*> viewOf_;
  std::unordered_map<const Container*, QWidget*> insideOf_;
  std::vector<ControlView*> dirty_;
  Changes formPending_ = Changes::All();
  const Control* focusPending_ = nullptr;
  int entered_ = 0;  ///< Handlers of the form on the stack that a widget's code has called.
  bool scheduled_ = false;
  bool applying_ = false;
  bool resizePosted_ = false;
  bool unloadPosted_ = false;
  Rect shownRect_;  ///< Of the form, as last applied or adopted, and the same in pixels.
  QPoint shownPos_;
  QSize shownSize_;
  // The key that was seen as a possible shortcut, until it comes again as a key press.
  bool keySeen_ = false;
  bool keyHandled_ = false;
  int seenKey_ = 0;
};

}  // namespace corvex
