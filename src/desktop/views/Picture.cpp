#include "desktop/views/Picture.h"

#include <QFile>
#include <QPainter>

#include "desktop/look/Icons.h"
#include "desktop/look/Style.h"
#include "desktop/look/Theme.h"

namespace corvex {

void Picture::SetName(const std::string& name) {
  constexpr std::string_view kFile = "file:";
  name_ = name;
  // Unlike other texts, a path is not in Latin-1 but in the encoding of the system's file names.
  file_ = name.starts_with(kFile) ? QPixmap(QFile::decodeName(name.c_str() + kFile.size())) : QPixmap();
  update();
}

void Picture::SetButton(bool button) {
  button_ = button;
  setAttribute(Qt::WA_Hover, button);
}

void Picture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QRect place = rect();
  if (look_ == Look::Indicator) {
    DrawIndicator(painter, place, palette());
    place = IndicatorIcon(place, true);
  } else if (button_ && isEnabled() && underMouse()) {
    DrawHover(painter, place, palette());
  }
  if (file_.isNull()) {
    DrawPicture(painter, place, name_, palette());
    return;
  }
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  QRect inside({}, file_.size().scaled(place.size(), Qt::KeepAspectRatio));
  inside.moveCenter(place.center());
  painter.drawPixmap(inside, file_);
}

}  // namespace corvex
