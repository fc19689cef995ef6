#include "desktop/views/FormWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "desktop/look/QtText.h"
#include "desktop/views/KeyCodes.h"

namespace corvex {

namespace {

int Pixels(Twips twips) {
  return qRound(static_cast<double>(twips) / kTwipsPerPixel);
}

/// Returns the wanted position of a window if its title bar can be reached with the mouse. Otherwise, for
/// example after a screen was disconnected, returns a position on the primary screen.
QPoint OnScreen(QPoint wanted, QSize size) {
  constexpr int kGrip = 40;
  const QRect bar(wanted, QSize(size.width(), kGrip));
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry().intersected(bar);
    if (seen.width() >= kGrip && seen.height() >= kGrip / 2) return wanted;
  }
  const QScreen* primary = QGuiApplication::primaryScreen();
  return primary == nullptr ? wanted : primary->availableGeometry().topLeft() + QPoint(kGrip, kGrip);
}

}  // namespace

QRect ToPixels(const Rect& twips) {
  const QPoint from(Pixels(twips.left), Pixels(twips.top));
  const QPoint to(Pixels(twips.left + twips.width), Pixels(twips.top + twips.height));
  return {from, QSize(to.x() - from.x(), to.y() - from.y())};
}

FormWindow::FormWindow(Form& form, EventLoop& loop, QWidget* owner)
    : QWidget(owner, form.fixedSize ? Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint : Qt::Window),
      loop_(loop),
      form_(&form),
      client_(new QWidget(this)) {
  setObjectName(ToQt(form.name()));
  MakeViews();
  connect(qApp, &QApplication::focusChanged, this, &FormWindow::AdoptFocus);
  form.observer = this;
  focusPending_ = form.Focused();
  Schedule();
}

void FormWindow::MakeViews() {
  insideOf_.emplace(form_, client_);
  views_.reserve(form_->controls().size());
  for (Control* control : form_->controls()) {
    auto view = MakeControlView(*this, *control);
    if (view == nullptr) continue;
    viewOf_.emplace(control, view.get());
    if (auto* frame = dynamic_cast<Frame*>(control)) insideOf_.emplace(frame, view->widget());
    dirty_.push_back(view.get());
    views_.push_back(std::move(view));
  }
}

FormWindow::~FormWindow() {
  // The child widgets are destroyed after this destructor. An open menu still moves the focus then.
  disconnect(qApp, nullptr, this, nullptr);
  if (form_ != nullptr) form_->observer = nullptr;
}

void FormWindow::Detach() {
  form_ = nullptr;
  focusPending_ = nullptr;
  dirty_.clear();
  viewOf_.clear();
  views_.clear();
  hide();
  // An open dialog belongs to the caller that waits for its answer. Cancel it, but do not delete it here.
  for (QDialog* question : findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
    question->reject();
    question->setParent(nullptr);
  }
  if (entered_ == 0) deleteLater();
}

void FormWindow::Post(EventLoop::Task task) {
  loop_.Post([window = QPointer(this), task = std::move(task)] {
    if (window != nullptr && window->form_ != nullptr) task();
  });
}

void FormWindow::Enter(const EventLoop::Task& task) {
  if (form_ == nullptr) return;
  ++entered_;
  loop_.Enter(task);
  // The window is deleted only after its last handler has returned, because a handler may wait.
  if (--entered_ == 0 && form_ == nullptr) deleteLater();
}

QWidget* FormWindow::ParentFor(const Control& control) const {
  return insideOf_.at(&control.parent());
}

QMenuBar* FormWindow::menuBar() {
  if (menuBar_ == nullptr) menuBar_ = new QMenuBar(this);
  return menuBar_;
}

ControlView* FormWindow::ViewOf(const Control& control) const {
  const auto found = viewOf_.find(&control);
  return found == viewOf_.end() ? nullptr : found->second;
}

void FormWindow::FormChanged(Change change) {
  formPending_.Add(change);
  Schedule();
}

void FormWindow::ControlChanged(Control& control, Change change) {
  ControlView* const view = ViewOf(control);
  if (view == nullptr) return;
  if (change == Change::Focus) {
    focusPending_ = &control;
  } else {
    if (!view->pending.Any()) dirty_.push_back(view);
    view->pending.Add(change);
  }
  Schedule();
}

void FormWindow::TextEdited(TextBox& box, std::size_t position, std::size_t removed,
                            std::string_view inserted) {
  ControlView* const view = ViewOf(box);
  if (view == nullptr) return;
  view->TextEdited(position, removed, inserted);
  ControlChanged(box, Change::Caption);
}

void FormWindow::Schedule() {
  if (scheduled_) return;
  scheduled_ = true;
  QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
}

void FormWindow::customEvent(QEvent*) {
  scheduled_ = false;
  if (form_ != nullptr) Flush();
}

void FormWindow::Flush() {
  applying_ = true;
  const auto dirty = std::exchange(dirty_, {});
  const auto formChanges = std::exchange(formPending_, {});
  std::vector<std::pair<ControlView*, Changes>> work;
  work.reserve(dirty.size());
  for (ControlView* view : dirty) work.emplace_back(view, std::exchange(view->pending, {}));

  const QWidget* const focused = focusWidget();
  for (const auto& [view, changes] : work) view->Apply(changes);
  for (const auto& [view, changes] : work) {
    if (changes.Has(Change::Visible)) view->ApplyVisible();
  }
  std::vector<ControlView*> raised;
  for (const auto& [view, changes] : work) {
    if (changes.Has(Change::Order) && view->widget() != nullptr) raised.push_back(view);
  }
  std::sort(raised.begin(), raised.end(), [](const ControlView* a, const ControlView* b) {
    return a->control().order() < b->control().order();
  });
  for (const ControlView* view : raised) view->widget()->raise();

  if (formChanges.Any()) ApplyForm(formChanges);
  // If the focused widget is no longer available, no control gets the focus. Qt would focus the next button,
  // and the user's next key could press it.
  if (focused != nullptr && (focusWidget() != focused || !focused->isVisibleTo(this))) client_->setFocus();
  if (const Control* focus = std::exchange(focusPending_, nullptr); focus != nullptr) {
    QWidget* const widget = viewOf_.at(focus)->widget();
    if (widget != nullptr && widget->isVisibleTo(this)) widget->setFocus(Qt::OtherFocusReason);
  }
  applying_ = false;
  AdoptFocus();
}

void FormWindow::ApplyForm(const Changes& changes) {
  if (changes.Has(Change::Caption)) {
    // With an empty title, Qt would show the program's file name.
    const QString title = ToShown(form_->caption.Get());
    setWindowTitle(title.isEmpty() ? QStringLiteral(" ") : title);
  }
  if (changes.Has(Change::Pointer)) {
    if (form_->pointer == Pointer::Hourglass) {
      setCursor(Qt::WaitCursor);
    } else {
      unsetCursor();
    }
  }
  if (changes.Has(Change::Default)) ApplyDefault();
  if (changes.Has(Change::Rect)) ApplyRect();
  LayOut();
  if (changes.Has(Change::Visible)) {
    // Both take effect when the window is shown.
    const auto modality = form_->Modal() ? Qt::ApplicationModal : Qt::NonModal;
    if (isVisible() && windowModality() != modality) hide();
    setWindowModality(modality);
    setAttribute(Qt::WA_ShowWithoutActivating, !form_->takesFocus);
  }
  if (changes.Has(Change::WindowState)) ApplyWindowState();
  if (changes.Has(Change::Visible)) setVisible(form_->visible);
}

void FormWindow::ApplyWindowState() {
  const Qt::WindowStates others = windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  const WindowState state = form_->windowState;
  if (isVisible() && isMinimized() && state != WindowState::Minimized && !form_->takesFocus) {
    RestoreWithoutFocus();
    return;
  }
  setWindowState(state == WindowState::Minimized   ? others | Qt::WindowMinimized
                 : state == WindowState::Maximized ? others | Qt::WindowMaximized
                                                   : others);
}

/// Restores a minimised window to its previous state, normal or maximised, without activating it. A window
/// system activates a window that it restores, but not a new one. So the native window is destroyed and
/// created again.
void FormWindow::RestoreWithoutFocus() {
  hide();
  destroy(true, false);
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  form_->windowState.Adopt(isMaximized() ? WindowState::Maximized : WindowState::Normal);
}

void FormWindow::ApplyDefault() {
  for (const auto& view : views_) {
    auto* button = qobject_cast<QPushButton*>(view->widget());
    if (button != nullptr) button->setDefault(&view->control() == form_->defaultButton.Get());
  }
}

void FormWindow::ApplyRect() {
  const Rect& wanted = form_->rect.Get();
  const QSize inner(Pixels(form_->InnerWidth()), Pixels(form_->InnerHeight()));
  const int bar = menuBar_ == nullptr ? 0 : menuBar_->sizeHint().height();
  const QSize size(inner.width(), inner.height() + bar);
  if (size != shownSize_) {
    if (form_->fixedSize) {
      setFixedSize(size);
    } else if (shownSize_.isEmpty()) {
      setMinimumSize(size / 2);  // at less than half its original size a window is unusable
    }
    shownSize_ = size;
    resize(size);
    PostResize();
  }
  // If the position of the form was never set, the window system chooses it.
  if (wanted.left != shownRect_.left || wanted.top != shownRect_.top) {
    shownPos_ = OnScreen({Pixels(wanted.left), Pixels(wanted.top)}, size);
    move(shownPos_);
  }
  shownRect_ = wanted;
}

void FormWindow::LayOut() {
  const int bar = menuBar_ == nullptr ? 0 : menuBar_->sizeHint().height();
  if (menuBar_ != nullptr) menuBar_->setGeometry(0, 0, width(), bar);
  client_->setGeometry(0, bar, width(), height() - bar);
}

void FormWindow::AdoptGeometry() {
  if (form_ == nullptr || applying_ || !isVisible() || isMinimized()) return;
  Rect adopted = form_->rect;
  if (size() != shownSize_) {
    shownSize_ = size();
    adopted.width += (client_->width() - Pixels(form_->InnerWidth())) * kTwipsPerPixel;
    adopted.height += (client_->height() - Pixels(form_->InnerHeight())) * kTwipsPerPixel;
    PostResize();
  }
  if (pos() != shownPos_) {
    shownPos_ = pos();
    adopted.left = shownPos_.x() * kTwipsPerPixel;
    adopted.top = shownPos_.y() * kTwipsPerPixel;
  }
  form_->rect.Adopt(adopted);
  shownRect_ = adopted;
}

void FormWindow::PostResize() {
  if (std::exchange(resizePosted_, true)) return;
  Post([this] {
    resizePosted_ = false;
    form_->resize();
  });
}

void FormWindow::resizeEvent(QResizeEvent*) {
  LayOut();
  AdoptGeometry();
}

void FormWindow::moveEvent(QMoveEvent*) {
  AdoptGeometry();
}

void FormWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (form_ == nullptr) return;
  if (event->type() == QEvent::ActivationChange) {
    Enter([this] { form_->SetActive(isActiveWindow()); });
  } else if (event->type() == QEvent::WindowStateChange && !applying_) {
    const WindowState state = isMinimized()   ? WindowState::Minimized
                              : isMaximized() ? WindowState::Maximized
                                              : WindowState::Normal;
    if (state == form_->windowState.Get()) return;
    form_->windowState.Adopt(state);
    PostResize();
  }
}

void FormWindow::closeEvent(QCloseEvent* event) {
  // The logic decides whether to close the window, by hiding or destroying the form.
  event->ignore();
  if (form_ == nullptr || std::exchange(unloadPosted_, true)) return;
  Post([this] {
    unloadPosted_ = false;
    form_->queryUnload();
  });
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::NoModifier && menuBar_ != nullptr) {
    OpenMenu();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void FormWindow::OpenMenu() {
  const QList<QAction*> menus = menuBar_->actions();
  const auto first =
      std::find_if(menus.begin(), menus.end(), [](const QAction* menu) { return menu->isVisible(); });
  if (first != menus.end()) menuBar_->setActiveAction(*first);
}

void FormWindow::AdoptFocus() {
  if (form_ == nullptr || applying_) return;
  // The widget that has the focus, or gets it when the window becomes active again.
  const QWidget* focused = focusWidget();
  if (focused == nullptr) return;
  Control* const left = form_->Focused();
  Control* entered = left;
  if (focused == client_) entered = nullptr;
  for (const auto& view : views_) {
    if (view->HasFocusIn(focused)) entered = &view->control();
  }
  if (entered == left) return;
  form_->AdoptFocus(entered);
  const bool handled = (left != nullptr && left->lostFocus) || (entered != nullptr && entered->gotFocus);
  if (handled) Post([form = form_, left, entered] { form->RaiseFocusEvents(left, entered); });
}

FormWindow::MenuPlace FormWindow::TakeMenuPlace() {
  return std::exchange(menuPlace_, std::nullopt).value_or(MenuPlace{QCursor::pos(), false});
}

bool FormWindow::TakeKey(QKeyEvent& event) {
  if (form_ == nullptr) return false;
  if (event.type() == QEvent::KeyPress && keySeen_ && seenKey_ == event.key()) {
    keySeen_ = false;
    return keyHandled_;
  }
  KeyEvent key;
  key.keyCode = VirtualKeyCode(event);
  key.shift = event.modifiers().testFlag(Qt::ShiftModifier);
  key.ctrl = event.modifiers().testFlag(Qt::ControlModifier);
  key.alt = event.modifiers().testFlag(Qt::AltModifier);
  key.repeated = event.isAutoRepeat();
  // Some systems report AltGr as Ctrl and Alt together. If it types a character, report neither.
  if (key.ctrl && key.alt && !event.text().isEmpty() && event.text().front().isPrint()) {
    key.ctrl = key.alt = false;
  }
  if (key.keyCode != 0) Enter([this, &key] { form_->TakeKey(key); });
  // Pressing Alt alone opens the menu bar, even if the form handles the Alt key.
  if (event.key() == Qt::Key_Alt) key.handled = false;
  // These members are set after the handler, because it may have waited while other keys arrived.
  keySeen_ = event.type() == QEvent::ShortcutOverride;
  keyHandled_ = key.handled;
  seenKey_ = event.key();
  return key.handled;
}

}  // namespace corvex
