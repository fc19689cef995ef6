#include "desktop/look/Icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "base/Text.h"
#include "desktop/look/Drawings.h"

namespace corvex {

namespace {

constexpr int kDefaultIcon = 10;
constexpr int kKeyLamp = 2;

using drawings::Drawing;
using Table = std::array<Drawing, kMenuIcons>;

// Menu icons and soft key images are two separate sets. A number has different meanings in a menu and on a
// soft key.

constexpr Table MakeMenuTable() {
  Table table{};
  table[5] = drawings::Book;
  table[6] = drawings::Phone;
  table[7] = drawings::Gear;
  table[9] = drawings::SimCard;
  table[kDefaultIcon] = drawings::Entry;
  table[11] = drawings::Lifebuoy;
  table[12] = drawings::Info;
  table[14] = drawings::Wrench;
  table[15] = drawings::AddToBook;
  table[16] = drawings::QuickDial;
  table[17] = drawings::Code;
  table[20] = drawings::Power;
  table[21] = drawings::Globe;
  table[22] = drawings::Screen;
  table[23] = drawings::SpotBeam;
  table[24] = drawings::Compression;
  table[25] = drawings::Bulb;
  table[26] = drawings::Notes;
  table[27] = drawings::Envelope;
  table[28] = drawings::ReadMail;
  table[29] = drawings::AskForMail;
  table[30] = drawings::TestSheet;
  table[31] = drawings::Log;
  table[32] = drawings::Gauge;
  table[33] = drawings::Pulse;
  table[34] = drawings::Bin;
  table[53] = drawings::Exit;
  return table;
}

constexpr Table MakeKeyTable() {
  Table table{};
  // 0 and 2 are for a key without its own picture. They show a lamp: 0 unlit, 2 lit for a key that is in
  // use.
  table[0] = drawings::Lamp;
  table[1] = drawings::Envelope;
  table[2] = drawings::LampLit;
  table[3] = drawings::List;
  table[4] = drawings::Back;
  table[5] = drawings::Check;
  table[6] = drawings::Phone;
  table[7] = drawings::Book;
  table[8] = drawings::ArrowUp;
  table[9] = drawings::ArrowDown;
  table[10] = drawings::Envelope;
  table[12] = drawings::Bin;
  table[14] = drawings::Printer;
  return table;
}

constexpr Table kMenuTable = MakeMenuTable();
constexpr Table kKeyTable = MakeKeyTable();

struct NamedDrawing {
  std::string_view name;
  Drawing drawing;
};

constexpr std::array<NamedDrawing, 15> kNamed{{{"mail", drawings::Envelope},
                                               {"signal", drawings::Bars},
                                               {"sim", drawings::SimCard},
                                               {"temperature", drawings::Thermometer},
                                               {"supply", drawings::Bolt},
                                               {"terminal", drawings::Terminal},
                                               {"devices", drawings::Wrench},
                                               {"info", drawings::Info},
                                               {"question", drawings::Question},
                                               {"clear", drawings::Bin},
                                               {"save", drawings::Disk},
                                               {"print", drawings::Printer},
                                               {"add device", drawings::AddDevice},
                                               {"refresh", drawings::Refresh},
                                               {"back", drawings::Back}}};

Drawing DeviceDrawing(int number) {
  switch (number) {
    case 4:
      return drawings::Speech;
    case 5:
      return drawings::Speech64;
    case 7:
      return drawings::Data64;
    case 9:
      return drawings::MissingHandset;
    case 16:
      return drawings::Speaker;
    case 17:
      return drawings::Network;
    case 21:
      return drawings::Fax;
    case 24:
      return drawings::Data128;
    default:
      return drawings::Device;
  }
}

void DrawNumber(Sketch& sketch, const Table& table, int number, int otherwise) {
  if (number < 0 || number >= kMenuIcons) number = otherwise;
  const Drawing drawing = table[static_cast<std::size_t>(number)];
  if (drawing != nullptr) {
    drawing(sketch);
  } else {
    drawings::Numbered(sketch, number);
  }
}

/// Draws the program's logo, a raven's head in profile.
void DrawLogo(QPainter& painter, const QRectF& rect, const QPalette& palette) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal side = std::min(rect.width(), rect.height());
  painter.translate(rect.center() - QPointF(side / 2, side / 2));
  painter.scale(side / 24, side / 24);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette.color(QPalette::Link));
  painter.drawRoundedRect(QRectF(0.5, 0.5, 23, 23), 5, 5);
  QPainterPath head(QPointF(4.5, 20.5));
  head.cubicTo(4, 11, 6.5, 5, 12, 5);
  head.cubicTo(14.5, 5, 16, 6.2, 16.8, 8);
  head.cubicTo(19, 8.2, 21, 9.6, 21.6, 11.8);
  head.cubicTo(19.5, 11, 17.8, 11.4, 16.4, 12.2);
  head.cubicTo(14.6, 14, 15, 17, 17, 20.5);
  head.closeSubpath();
  painter.setBrush(palette.color(QPalette::HighlightedText));
  painter.drawPath(head);
  painter.setBrush(palette.color(QPalette::Link));
  painter.drawEllipse(QPointF(13.2, 8.6), 1.2, 1.2);
  painter.restore();
}

/// Returns the number that follows `word` in a name such as "key 5", or none if the name has another form.
std::optional<int> NumberAfter(std::string_view name, std::string_view word) {
  if (!name.starts_with(word)) return std::nullopt;
  return ToInt16(name.substr(word.size()));
}

class PictureEngine : public QIconEngine {
 public:
  explicit PictureEngine(std::string_view name) : name_(name) {}
  QIconEngine* clone() const override { return new PictureEngine(*this); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    QPalette palette = QApplication::palette();
    if (mode == QIcon::Disabled) palette.setCurrentColorGroup(QPalette::Disabled);
    DrawPicture(*painter, rect, name_, palette);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    if (size.isEmpty()) return {};
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect({}, size), mode, state);
    return pixmap;
  }
  QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return {{16, 16}, {32, 32}, {64, 64}}; }

 private:
  std::string name_;
};

}  // namespace

void DrawMenuIcon(QPainter& painter, const QRectF& rect, int number, const QPalette& palette) {
  if (rect.isEmpty()) return;
  Sketch sketch(painter, rect, palette);
  DrawNumber(sketch, kMenuTable, number, kDefaultIcon);
}

void DrawDeviceIcon(QPainter& painter, const QRectF& rect, int number, const QPalette& palette) {
  if (rect.isEmpty()) return;
  Sketch sketch(painter, rect, palette);
  DeviceDrawing(number)(sketch);
}

bool DrawPicture(QPainter& painter, const QRectF& rect, std::string_view name, const QPalette& palette) {
  if (rect.isEmpty()) return false;
  if (name == "logo") {
    DrawLogo(painter, rect, palette);
    return true;
  }
  if (const auto device = NumberAfter(name, "device ")) {
    DrawDeviceIcon(painter, rect, *device, palette);
    return true;
  }
  const auto key = NumberAfter(name, "key ");
  const auto named = std::find_if(kNamed.begin(), kNamed.end(),
                                  [name](const NamedDrawing& entry) { return entry.name == name; });
  if (!key && named == kNamed.end()) return false;
  Sketch sketch(painter, rect, palette);
  if (key) {
    DrawNumber(sketch, kKeyTable, *key, kKeyLamp);
  } else {
    named->drawing(sketch);
  }
  return true;
}

QIcon PictureIcon(std::string_view name) {
  return name.empty() ? QIcon() : QIcon(new PictureEngine(name));
}

}  // namespace corvex
