#include "desktop/QtWindowSystem.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>

#include "desktop/views/Accessibility.h"
#include "desktop/views/FormWindow.h"

namespace corvex {

QtWindowSystem::QtWindowSystem(EventLoop& loop) : loop_(loop) {
  InstallAccessibility();
  qApp->installEventFilter(this);
}

QtWindowSystem::~QtWindowSystem() {
  // Also deletes windows with a pending deleteLater(), since no event loop runs any more to delete them.
  for (const QPointer<QWidget>& window : made_) delete window.data();
}

void QtWindowSystem::Attach(Form& form) {
  // The owner's window becomes the Qt parent, so Qt deletes this window together with the owner's.
  FormWindow* const owner = form.owner() == nullptr ? nullptr : WindowOf(*form.owner());
  auto* window = new FormWindow(form, loop_, owner);
  windows_.emplace(&form, window);
  std::erase_if(made_, [](const QPointer<QWidget>& old) { return old.isNull(); });
  made_.emplace_back(window);
}

void QtWindowSystem::Detach(Form& form) {
  const auto found = windows_.find(&form);
  if (found == windows_.end()) return;
  if (found->second != nullptr) found->second->Detach();
  windows_.erase(found);
}

std::int32_t QtWindowSystem::ScreenWidth() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? 0 : screen->virtualGeometry().width() * kTwipsPerPixel;
}

Rect QtWindowSystem::WorkArea() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {};
  const QRect area = screen->availableGeometry();
  return {area.x() * kTwipsPerPixel, area.y() * kTwipsPerPixel, area.width() * kTwipsPerPixel,
          area.height() * kTwipsPerPixel};
}

QWidget* QtWindowSystem::FrontWindow() const {
  if (QWidget* active = QApplication::activeWindow()) return active;
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (auto window = made_.rbegin(); window != made_.rend(); ++window) {
    if (*window != nullptr && (*window)->isVisible()) return window->data();
  }
  return nullptr;
}

void QtWindowSystem::CallOff() {
  while (QWidget* popup = QApplication::activePopupWidget()) {
    if (!popup->close()) break;
  }
  for (const QPointer<QWidget>& window : made_) {
    if (window != nullptr && window->isVisible() && window->isModal()) window->close();
  }
}

FormWindow* QtWindowSystem::WindowOf(const Form& form) const {
  const auto found = windows_.find(&form);
  return found == windows_.end() ? nullptr : found->second.data();
}

bool QtWindowSystem::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) return false;
  if (!object->isWidgetType() || QApplication::activePopupWidget() != nullptr) return false;
  auto* widget = static_cast<QWidget*>(object);
  auto* window = dynamic_cast<FormWindow*>(widget->window());
  if (window == nullptr) return false;
  // Qt passes an unhandled key event on to the parent widgets. Handle it only at the widget where it starts.
  const QWidget* focused = window->focusWidget();
  if (widget != (focused == nullptr ? window : focused)) return false;
  if (qobject_cast<const QMenuBar*>(focused) != nullptr) return false;  // the user is navigating the menu bar
  auto* key = static_cast<QKeyEvent*>(event);
  if (!window->TakeKey(*key)) return false;
  key->accept();
  return true;
}

}  // namespace corvex
