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

/// What shows a form: told of every change, at once and in order. It must not call back into the form.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  virtual void FormChanged(Change change) = 0;
  virtual void ControlChanged(Control& control, Change change) = 0;
  /// `removed` bytes at `position` of the text box give way to `inserted`; told while the box still has the
  /// text of before, of which the observer may have to look at what goes.
  virtual void TextEdited(TextBox& box, std::size_t position, std::size_t removed,
                          std::string_view inserted) = 0;
};

/// What a control can stand in: the form itself or a frame.
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

/// What a window's frame takes of its outer extents, both sides together. Nominal, so that layouts do not
/// depend on the style of a system: the window system gives the controls the rest exactly, and draws what
/// frame it has around it.
inline constexpr Twips kFrameWidth = 90;
inline constexpr Twips kFrameHeight = 300;
inline constexpr Twips kMenuBarHeight = 270;  ///< In addition, for a form with a menu bar.

enum class Pointer { Normal, Hourglass };
enum class WindowState { Normal, Minimized, Maximized };

/// A key as the main window sees it before any control does.
struct KeyEvent {
  int keyCode = 0;  ///< Virtual key code: letters and digits their upper-case character, F1 is 112.
  bool shift = false;
  bool ctrl = false;
  bool alt = false;
  bool repeated = false;  ///< The user holds it down, and the system repeats it.
  bool handled = false;   ///< Set by the logic if the key is not to go on.
};

/// A window as data: its members are its controls, in the order of their declaration, and logic reads and
/// sets them without knowing what shows them. The form is made hidden; it is realised by the window system
/// when it is first made visible.
class Form : public Container, public Observable {
 public:
  /// `owner`: the form that this one stays in front of, or none.
  Form(EventLoop& loop, WindowSystem& windows, std::string_view name, Form* owner = nullptr);
  virtual ~Form();

  EventLoop& loop() const { return loop_; }
  const std::string& name() const { return name_; }
  Form* owner() const { return owner_; }
  WindowSystem& windows() const { return windows_; }
  const std::vector<Control*>& controls() const { return controls_; }

  Property<std::string> caption{*this, Change::Caption, {}};
  /// Outer extents on the screen.
  Property<Rect> rect{*this, Change::Rect, {}};
  /// What of them is left for the controls; never negative.
  Twips InnerWidth() const;
  Twips InnerHeight() const;
  Property<bool> visible{*this, Change::Visible, false};
  Property<Pointer> pointer{*this, Change::Pointer, Pointer::Normal};
  Property<WindowState> windowState{*this, Change::WindowState, WindowState::Normal};
  // Both set before the form is shown.
  bool fixedSize = false;  ///< The user cannot resize the window.
  /// The window becomes the active one when it is shown, or restored by the logic from its minimised state.
  bool takesFocus = true;

  Event<> activate;
  Event<> deactivate;
  Event<> resize;            ///< The user or the logic has changed the extents or the window state.
  Event<> queryUnload;       ///< The user wants to close the window.
  Event<KeyEvent&> keyDown;  ///< Comes before any control sees the key.

  // What Enter and Esc click, wherever the focus is; none at first. Enter goes to a button with the focus,
  // and to a text of several lines, before.
  Property<Button*> defaultButton{*this, Change::Default, nullptr};
  Button* cancelButton = nullptr;
  /// For the window system: a key has come, before any control sees it. The buttons are clicked in a task of
  /// their own.
  void TakeKey(KeyEvent& key);

  /// Whether this is the system's active window.
  bool Active() const { return active_; }
  /// For the window system: the window became active or ceased to be, which raises the event.
  void SetActive(bool active);

  /// The control with the keyboard focus, or none.
  Control* Focused() const { return focused_; }
  void Focus(Control& control);
  /// For the window system: the user has moved the focus. The control's gotFocus is raised by the caller.
  void AdoptFocus(Control* control) { focused_ = control; }

  /// Shows the form and pumps events until it is hidden again; meanwhile the user cannot reach other windows.
  void ShowModal();
  bool Modal() const { return modal_; }

  /// Moves the form. What lies beyond any screen is limited, so that a size can be added to it.
  void MoveTo(Twips left, Twips top);

  /// Gives the form its outer size, in the middle of a place on the screen.
  void Centre(const Rect& over, Twips width, Twips height);

  /// Takes the form off the window system. A window whose members the window system could still reach calls
  /// it first in its destructor.
  void Withdraw();

  /// Set by the window system while it shows the form.
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
