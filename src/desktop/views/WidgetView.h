#pragma once

#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <algorithm>

#include "desktop/look/QtText.h"
#include "desktop/look/Theme.h"
#include "desktop/views/ControlView.h"
#include "desktop/views/FormWindow.h"
#include "forms/Controls.h"

namespace corvex {

/// Returns the factor by which a size has grown, in the direction that has grown less. Returns 1 if the
/// original size is empty.
inline double Growth(QSize now, QSize made) {
  if (made.isEmpty()) return 1;
  return std::min(static_cast<double>(now.width()) / made.width(),
                  static_cast<double>(now.height()) / made.height());
}

/// Converts a drop event to the core's Drop record.
inline Drop ToDrop(const QDropEvent& event) {
  Drop drop;
#ifdef Q_OS_WIN
  const auto allows = [&](Qt::DropAction action, int bit) {
    return event.possibleActions().testFlag(action) ? bit : 0;
  };
  drop.effect = allows(Qt::CopyAction, 1) + allows(Qt::MoveAction, 2) + allows(Qt::LinkAction, 4);
#endif
  for (const QUrl& url : event.mimeData()->urls()) {
    const QString path = QDir::toNativeSeparators(url.toLocalFile());
    if (!path.isEmpty()) drop.files.push_back(QFile::encodeName(path).toStdString());
  }
  return drop;
}

/// Base class for the views of controls that are shown by a widget.
template <typename Kind, typename Widget>
class WidgetView : public ControlView {
 public:
  WidgetView(FormWindow& window, Kind& control, Widget* widget)
      : window_(window), control_(control), shown_(widget) {
    widget_ = widget;
    widget->setObjectName(ToQt(control.name()));
    widget->hide();
    if (!control.drop) return;
    widget->setAcceptDrops(true);
    widget->installEventFilter(this);
  }

  Kind& control() const override { return control_; }

  void Apply(const Changes& changes) override {
    if (changes.Has(Change::Rect)) shown_->setGeometry(ToPixels(control_.rect));
    if (changes.Has(Change::Font)) shown_->setFont(MakeFont(control_.font, control_.look == Look::Screen));
    if (changes.Has(Change::Enabled)) shown_->setEnabled(control_.enabled);
    if (changes.Has(Change::ToolTip)) {
      shown_->setToolTip(ToToolTip(control_.toolTip.Get()));
      shown_->setAccessibleDescription(ToShown(control_.toolTip.Get()));
    }
    if (changes.Has(Change::Accessible) || changes.Has(Change::Caption) || changes.Has(Change::ToolTip)) {
      const QString name = AccessibleName();
      if (!name.isEmpty() || named_) shown_->setAccessibleName(name);
      named_ = !name.isEmpty();
    }
  }

  void ApplyVisible() override { shown_->setVisible(control_.visible); }

  /// Takes all drag and drop events of a widget whose control accepts drops, so that the widget itself gets
  /// none.
  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto type = event->type();
    if (watched != shown_ || !control_.drop) return false;
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) return false;
    auto* dropped = static_cast<QDropEvent*>(event);
    // Always copy, even if the user holds the key for a move: after a move, the source would delete the
    // files.
    dropped->setDropAction(Qt::CopyAction);
    dropped->setAccepted(dropped->possibleActions().testFlag(Qt::CopyAction));
    if (type == QEvent::Drop && dropped->isAccepted())
      window_.Post([&control = control_, drop = ToDrop(*dropped)] { control.drop(drop); });
    return true;
  }

 protected:
  /// Returns the accessible name that the control defines. If empty, the view sets one, or Qt uses the
  /// visible text.
  QString AccessibleName() const {
    QString name = ToShown(control_.accessible.Get());
    if constexpr (requires { control_.caption; }) {
      const QString shown = ToShown(control_.caption.Get()).trimmed();
      if (!name.isEmpty()) return name.replace(u'%', shown.isEmpty() ? QStringLiteral("none") : shown);
      // A button without a caption is named by its tool tip.
      if (std::is_same_v<Kind, Button> && shown.isEmpty()) return ToShown(control_.toolTip.Get());
    }
    return name;
  }

  FormWindow& window_;
  Kind& control_;
  Widget* const shown_;

 private:
  bool named_ = false;  ///< The accessible name comes from the control, not from the view.
};

}  // namespace corvex
