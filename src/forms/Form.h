#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Event.h"
#include "forms/Property.h"
#include "platform/EventLoop.h"
#include "platform/Geometry.h"

namespace corvex {

class Button;
class Control;
class Form;
class TextBox;
class WindowSystem;

/// Displays a form. It is notified of every change of the form, immediately and in order. It must not change
/// the form from within a notification.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  virtual void FormChanged(Change change) = 0;
  virtual void ControlChanged(Control& control, Change change) = 0;
  /// In the text box, `removed` bytes at `position` are about to be replaced with `inserted`. The box still
  /// holds the old text during the call, so that the observer can inspect the bytes to be removed.
  virtual void TextEdited(TextBox& box, std::size_t position, std::size_t removed,
                          std::string_view inserted) = 0;
};

/// Something that contains controls: the form itself or a frame.
class Container {
 public:
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;
  Form& form() const { return form_; }

 protected:
  explicit Container(Form& form) : form_(form) {}
  ~Container() = default;

 private:
  Form& form_;
};

// The nominal size of a window's frame: the difference between the outer and the inner size, both sides
// together. The values are the same on every system, so that layouts do not depend on the system's style. The
// window system gives the controls exactly the inner size and draws its own frame around it.
inline constexpr Twips kFrameWidth = 90;
inline constexpr Twips kFrameHeight = 300;
inline constexpr Twips kMenuBarHeight = 270;  ///< Added to kFrameHeight for a form with a menu bar.

enum class Pointer { Normal, Hourglass };
enum class WindowState { Normal, Minimized, Maximized };

/// A key press, as the form receives it before any control does.
struct KeyEvent {
  int keyCode = 0;  ///< Virtual key code. Letters (upper case) and digits: their character code; F1: 112.
  bool shift = false;
  bool ctrl = false;
  bool alt = false;
  bool repeated = false;  ///< Repeated by the system because the user holds the key down.
  bool handled = false;   ///< Set by the logic to keep the key from the controls.
};

/// A window as plain data. The members of a form are its controls, in the order of their declaration. The
/// logic reads and sets the controls without knowing how they are displayed. A new form is hidden. The window
/// system creates the real window when the form becomes visible for the first time.
class Form : public Container, public Observable {
 public:
  /// `owner` is the form that this one always stays in front of, or null.
  Form(EventLoop& loop, WindowSystem& windows, std::string_view name, Form* owner = nullptr);
  virtual ~Form();

  EventLoop& loop() const { return loop_; }
  const std::string& name() const { return name_; }
  Form* owner() const { return owner_; }
  WindowSystem& windows() const { return windows_; }
  const std::vector<Control*>& controls() const { return controls_; }

  Property<std::string> caption{*this, Change::Caption, {}};
  /// The outer position and size on the screen.
  Property<Rect> rect{*this, Change::Rect, {}};
  // The inner size, which is available to the controls. Never negative.
  Twips InnerWidth() const;
  Twips InnerHeight() const;
  Property<bool> visible{*this, Change::Visible, false};
  Property<Pointer> pointer{*this, Change::Pointer, Pointer::Normal};
  Property<WindowState> windowState{*this, Change::WindowState, WindowState::Normal};
  // Set these two before the form is shown.
  bool fixedSize = false;  ///< The user cannot resize the window.
  /// The window becomes active when it is shown, and when the logic restores it from the minimised state.
  bool takesFocus = true;

  Event<> activate;
  Event<> deactivate;
  Event<> resize;            ///< The user or the logic has changed the size or the window state.
  Event<> queryUnload;       ///< The user wants to close the window.
  Event<KeyEvent&> keyDown;  ///< Raised before any control receives the key.

  // The buttons that Enter (default) and Esc (cancel) click, wherever the focus is. Initially none.
  // Exceptions for Enter: if a button has the focus, that button is clicked; if a multi-line text box or a
  // tool bar has the focus, it receives the key.
  Property<Button*> defaultButton{*this, Change::Default, nullptr};
  Button* cancelButton = nullptr;
  /// For the window system: called for each key press before any control receives it. Raises keyDown and
  /// handles Enter and Esc. The click of a button is posted as a separate task.
  void TakeKey(KeyEvent& key);

  /// True if this is the system's active window.
  bool Active() const { return active_; }
  /// For the window system: the window has become active or inactive. Raises activate or deactivate.
  void SetActive(bool active);

  /// The control that has the keyboard focus, or null.
  Control* Focused() const { return focused_; }
  /// Moves the keyboard focus to a control and raises the focus events, unless it has the focus already.
  void Focus(Control& control);
  /// For the window system: the user has moved the focus. The caller then calls RaiseFocusEvents.
  void AdoptFocus(Control* control) { focused_ = control; }
  /// Raises lostFocus of the control that had the focus, then gotFocus of the one that has it now, unless a
  /// handler of lostFocus has moved the focus on. Each control can be null.
  void RaiseFocusEvents(Control* left, Control* entered);

  /// Posts a task to the event loop. The task does not run if the form has been destroyed by then.
  void Post(EventLoop::Task task);

  /// Shows the form and pumps events until the form is hidden again. Until then the user cannot use other
  /// windows.
  void ShowModal();
  bool Modal() const { return modal_; }

  /// Moves the form. The coordinates are limited to 1e9 twips in either direction, so that adding a size
  /// cannot overflow.
  void MoveTo(Twips left, Twips top);

  /// Sets the outer size of the form and centres it over a rectangle on the screen.
  void Centre(const Rect& over, Twips width, Twips height);

  /// Detaches the form from the window system. A derived class calls it first in its destructor if the window
  /// system could otherwise still access members of that class.
  void Withdraw();

  /// Set by the window system while the form is attached to it.
  FormObserver* observer = nullptr;

  void Changed(Change change) override;

 private:
  friend class Control;
  friend class MenuItem;

  EventLoop& loop_;
  WindowSystem& windows_;
  std::string name_;
  Form* owner_;
  bool hasMenuBar_ = false;
  std::vector<Control*> controls_;
  Control* focused_ = nullptr;
  bool active_ = false;
  bool modal_ = false;
  bool attached_ = false;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< For tasks that may outlive the form.
};

}  // namespace corvex
