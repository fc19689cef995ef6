#include "desktop/views/Accessibility.h"

#include <QAccessibleWidget>

#include "desktop/views/FormWindow.h"
#include "desktop/views/Panel.h"
#include "desktop/views/Picture.h"

namespace corvex {

namespace {

QAccessible::Role RoleOf(Look look) {
  if (look == Look::Screen) return QAccessible::Terminal;
  if (look == Look::PopUp) return QAccessible::AlertMessage;
  return QAccessible::Grouping;
}

class WindowInterface : public QAccessibleWidget {
 public:
  explicit WindowInterface(FormWindow* window) : QAccessibleWidget(window, QAccessible::Window) {}

  QAccessible::Role role() const override {
    const QWidget& window = *widget();
    const bool dialog = window.windowType() == Qt::Dialog || window.isModal();
    return dialog ? QAccessible::Dialog : QAccessible::Window;
  }
};

/// Returns true for a picture without a name, such as the one on a button. It is only decoration.
bool IsDecoration(const QAccessibleInterface* child) {
  const auto* picture = child == nullptr ? nullptr : dynamic_cast<const Picture*>(child->object());
  return picture != nullptr && picture->accessibleName().isEmpty();
}

class PanelInterface : public QAccessibleWidget {
 public:
  explicit PanelInterface(Panel* panel) : QAccessibleWidget(panel, RoleOf(panel->look())), panel_(*panel) {}

  QString text(QAccessible::Text kind) const override {
    const bool reads = panel_.look() == Look::Screen || panel_.look() == Look::PopUp;
    if (kind == QAccessible::Name && panel_.accessibleName().isEmpty()) {
      return reads ? panel_.ReadableText() : panel_.title();
    }
    if (kind == QAccessible::Value && reads) return panel_.ReadableText();
    return QAccessibleWidget::text(kind);
  }

  int childCount() const override { return static_cast<int>(Told().size()); }
  QAccessibleInterface* child(int index) const override { return Told().value(index); }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return static_cast<int>(Told().indexOf(const_cast<QAccessibleInterface*>(child)));
  }

 private:
  QList<QAccessibleInterface*> Told() const {
    QList<QAccessibleInterface*> spoken;
    for (int i = 0; i < QAccessibleWidget::childCount(); ++i) {
      QAccessibleInterface* const child = QAccessibleWidget::child(i);
      if (!IsDecoration(child)) spoken << child;
    }
    return spoken;
  }

  const Panel& panel_;
};

class PictureInterface : public QAccessibleWidget {
 public:
  explicit PictureInterface(Picture* picture)
      : QAccessibleWidget(picture, QAccessible::Graphic), picture_(*picture) {}

  QAccessible::Role role() const override {
    return picture_.IsButton() ? QAccessible::Button : QAccessible::Graphic;
  }
  QStringList actionNames() const override {
    // A hidden picture may outlive its control, so it must not be clicked.
    return picture_.IsButton() && picture_.isVisible() ? QStringList{pressAction()} : QStringList{};
  }
  void doAction(const QString& action) override {
    if (actionNames().contains(action)) picture_.clicked();
  }

 private:
  Picture& picture_;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  if (auto* window = dynamic_cast<FormWindow*>(object)) return new WindowInterface(window);
  if (auto* panel = dynamic_cast<Panel*>(object)) return new PanelInterface(panel);
  if (auto* picture = dynamic_cast<Picture*>(object)) return new PictureInterface(picture);
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeInterface);
}

}  // namespace corvex
