#include "desktop/Accessibility.h"

#include <QAccessibleWidget>

#include "desktop/Panel.h"
#include "desktop/Picture.h"

namespace corvex {

namespace {

QAccessible::Role RoleOf(Look look) {
  if (look == Look::Screen) return QAccessible::Terminal;
  if (look == Look::PopUp) return QAccessible::AlertMessage;
  return QAccessible::Grouping;
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

 private:
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
    // One that is not shown may outlive what it showed.
    return picture_.IsButton() && picture_.isVisible() ? QStringList{pressAction()} : QStringList{};
  }
  void doAction(const QString& action) override {
    if (actionNames().contains(action)) picture_.clicked();
  }

 private:
  Picture& picture_;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  if (auto* panel = dynamic_cast<Panel*>(object)) return new PanelInterface(panel);
  if (auto* picture = dynamic_cast<Picture*>(object)) return new PictureInterface(picture);
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeInterface);
}

}  // namespace corvex
