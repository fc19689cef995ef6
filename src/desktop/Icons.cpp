#include "desktop/Icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <array>
#include <cmath>
#include <string>

#include "common/Text.h"
#include "desktop/Theme.h"

namespace corvex {

namespace {

/// Saves the painter, and lets it draw on a square of 24 by 24 units as large as fits.
void EnterUnits(QPainter& painter, const QRectF& rect) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal side = std::min(rect.width(), rect.height());
  painter.translate(rect.center() - QPointF(side / 2, side / 2));
  painter.scale(side / 24, side / 24);
}

/// Draws on that square with a round pen of 1.8 units: a drawing is a few strokes of ink, and
/// one part of it, the one that tells it apart, in the accent colour.
class Sketch {
 public:
  Sketch(QPainter& painter, const QRectF& rect, const QPalette& palette)
      : painter_(painter), ink_(palette.color(QPalette::Text)), accent_(palette.color(QPalette::Link)) {
    EnterUnits(painter_, rect);
    painter_.setBrush(Qt::NoBrush);
    Ink();
  }
  ~Sketch() { painter_.restore(); }
  Sketch(const Sketch&) = delete;
  Sketch& operator=(const Sketch&) = delete;

  Sketch& Ink() { return Use(ink_); }
  Sketch& Accent() { return Use(accent_); }
  Sketch& Line(std::initializer_list<QPointF> points) {
    painter_.drawPolyline(points.begin(), static_cast<int>(points.size()));
    return *this;
  }
  Sketch& Shape(std::initializer_list<QPointF> points) {
    painter_.drawPolygon(points.begin(), static_cast<int>(points.size()));
    return *this;
  }
  Sketch& Box(qreal x, qreal y, qreal w, qreal h, qreal round = 2) {
    painter_.drawRoundedRect(QRectF(x, y, w, h), round, round);
    return *this;
  }
  Sketch& Ring(qreal x, qreal y, qreal radius) {
    painter_.drawEllipse(QPointF(x, y), radius, radius);
    return *this;
  }
  Sketch& Dot(qreal x, qreal y, qreal radius = 1.6) {
    painter_.save();
    painter_.setBrush(color_);
    painter_.setPen(Qt::NoPen);
    painter_.drawEllipse(QPointF(x, y), radius, radius);
    painter_.restore();
    return *this;
  }
  /// Degrees count from three o'clock, counter-clockwise.
  Sketch& Arc(qreal x, qreal y, qreal radius, int from, int span) {
    painter_.drawArc(QRectF(x - radius, y - radius, 2 * radius, 2 * radius), from * 16, span * 16);
    return *this;
  }

 private:
  Sketch& Use(const QColor& color) {
    color_ = color;
    painter_.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    return *this;
  }

  QPainter& painter_;
  QColor ink_;
  QColor accent_;
  QColor color_;
};

void Handset(Sketch& s) {
  s.Line({{5, 4}, {8.5, 4}, {10, 8.5}, {8, 10}});
  s.Arc(18, 6, 10.8, 202, 46);
  s.Line({{14, 16}, {15.5, 14}, {20, 15.5}, {20, 19}});
  s.Arc(18.5, 5.5, 13.6, 173, 90);
}

void Phone(Sketch& s) {
  Handset(s);
  s.Accent().Arc(13, 11, 3.5, 0, 90).Arc(13, 11, 7.5, 0, 90);
}

void Envelope(Sketch& s) {
  s.Box(3, 5.5, 18, 13).Accent().Line({{4, 7.5}, {12, 13.5}, {20, 7.5}});
}

void Book(Sketch& s) {
  s.Box(5, 3, 14, 18).Line({{2.8, 7.5}, {6.5, 7.5}}).Line({{2.8, 16.5}, {6.5, 16.5}});
  s.Accent().Ring(12.5, 9.5, 2.2).Arc(12.5, 17.5, 4, 20, 140);
}

void Bubble(Sketch& s) {
  s.Box(3, 4, 18, 12.5, 3).Line({{7.5, 16.5}, {7.5, 20.5}, {12, 16.5}});
  s.Accent().Line({{7.5, 8.5}, {16.5, 8.5}}).Line({{7.5, 12}, {13, 12}});
}

void CallLog(Sketch& s) {
  s.Line({{3.5, 5.5}, {12.5, 5.5}}).Line({{3.5, 12}, {9.5, 12}}).Line({{3.5, 18.5}, {9.5, 18.5}});
  s.Accent().Ring(16.5, 14.5, 4.8).Line({{16.5, 11.8}, {16.5, 14.5}, {18.6, 15.6}});
}

void Gear(Sketch& s) {
  for (int tooth = 0; tooth < 8; ++tooth) {
    const qreal angle = tooth * 3.14159265 / 4;
    const QPointF out(std::cos(angle), std::sin(angle));
    s.Line({QPointF(12, 12) + out * 7, QPointF(12, 12) + out * 9.3});
  }
  s.Ring(12, 12, 6.6).Accent().Ring(12, 12, 2.4);
}

void Wrench(Sketch& s) {
  s.Arc(16, 8, 4.8, -10, -250).Line({{16.2, 3.2}, {14.8, 7.6}, {16.6, 9.3}, {20.8, 8.6}});
  s.Accent().Line({{12.4, 11.6}, {4.6, 19.4}});
}

void Satellite(Sketch& s) {
  s.Shape({{12, 8.6}, {15.4, 12}, {12, 15.4}, {8.6, 12}});
  s.Shape({{4.2, 7.6}, {7.6, 4.2}, {10, 6.6}, {6.6, 10}})
      .Shape({{16.4, 19.8}, {19.8, 16.4}, {17.4, 14}, {14, 17.4}});
  s.Accent().Arc(9, 15, 4.6, 180, 90).Arc(9, 15, 1.6, 180, 90);
}

void SignalBars(Sketch& s) {
  s.Line({{4.5, 20}, {4.5, 16}}).Line({{9.5, 20}, {9.5, 12.5}}).Line({{14.5, 20}, {14.5, 8.5}});
  s.Accent().Line({{19.5, 20}, {19.5, 4}});
}

void Position(Sketch& s) {
  s.Arc(12, 10, 6.6, -30, 240).Line({{6.3, 13.3}, {12, 21.4}, {17.7, 13.3}}).Accent().Ring(12, 10, 2.3);
}

void Lock(Sketch& s) {
  s.Box(5, 10.5, 14, 10)
      .Arc(12, 8, 4.2, 0, 180)
      .Line({{7.8, 8}, {7.8, 10.5}})
      .Line({{16.2, 8}, {16.2, 10.5}});
  s.Accent().Dot(12, 14.8, 1.7).Line({{12, 15}, {12, 17.4}});
}

void SimCard(Sketch& s) {
  s.Shape({{5.5, 3}, {14, 3}, {18.5, 7.5}, {18.5, 21}, {5.5, 21}});
  s.Accent().Box(8.5, 11, 7, 6.5, 1).Line({{12, 11}, {12, 17.5}});
}

void Info(Sketch& s) {
  s.Ring(12, 12, 9).Accent().Dot(12, 7.8, 1.4).Line({{12, 11.4}, {12, 16.8}});
}

void Network(Sketch& s) {
  s.Line({{12, 8.5}, {12, 12.5}}).Line({{5.5, 15.5}, {5.5, 12.5}, {18.5, 12.5}, {18.5, 15.5}});
  s.Box(2.5, 15.5, 6, 5, 1).Box(15.5, 15.5, 6, 5, 1).Accent().Box(9, 3.5, 6, 5, 1);
}

void Speaker(Sketch& s) {
  s.Shape({{3, 9.2}, {6.5, 9.2}, {11.5, 5}, {11.5, 19}, {6.5, 14.8}, {3, 14.8}});
  s.Accent().Arc(12, 12, 4.2, -45, 90).Arc(12, 12, 8, -45, 90);
}

void Display(Sketch& s) {
  s.Box(2.5, 4, 19, 13).Line({{8, 20.5}, {16, 20.5}}).Line({{12, 17}, {12, 20.5}});
  s.Accent().Line({{6, 8.5}, {13, 8.5}}).Line({{6, 12.5}, {10, 12.5}});
}

void Clock(Sketch& s) {
  s.Ring(12, 12, 9).Accent().Line({{12, 6.8}, {12, 12}, {15.8, 14.2}});
}

void Printer(Sketch& s) {
  s.Line({{7, 8.5}, {7, 3.5}, {17, 3.5}, {17, 8.5}}).Box(3, 8.5, 18, 8).Accent().Box(7, 13.5, 10, 7, 1);
}

void Exit(Sketch& s) {
  s.Line({{11, 3.5}, {4, 3.5}, {4, 20.5}, {11, 20.5}});
  s.Accent().Line({{9.5, 12}, {20.5, 12}}).Line({{16.3, 7.6}, {20.7, 12}, {16.3, 16.4}});
}

void List(Sketch& s) {
  for (const qreal y : {6.0, 12.0, 18.0}) s.Ink().Line({{9, y}, {20.5, y}}).Accent().Dot(4.6, y);
}

void Entry(Sketch& s) {
  s.Box(4, 4, 16, 16, 3).Accent().Line({{10.3, 8.5}, {13.8, 12}, {10.3, 15.5}});
}

/// An entry without a drawing of its own: the six bits of its number as dots, so that each still has a face.
void Numbered(Sketch& s, int number) {
  s.Box(4, 4, 16, 16, 3);
  for (int bit = 0; bit < 6; ++bit) {
    const qreal x = 8 + 4 * (bit % 3);
    const qreal y = 10 + 4 * (bit / 3);
    if (((number >> bit) & 1) != 0) {
      s.Accent().Dot(x, y, 1.5);
    } else {
      s.Ink().Dot(x, y, 0.6);
    }
  }
}

using Drawing = void (*)(Sketch&);

constexpr std::array<Drawing, kMenuIcons> MakeTable() {
  std::array<Drawing, kMenuIcons> table{};
  table[1] = table[27] = Envelope;
  table[2] = Satellite;
  table[3] = List;
  table[4] = table[53] = Exit;
  table[5] = Phone;
  table[6] = Book;
  table[7] = Gear;
  table[8] = Bubble;
  table[9] = CallLog;
  table[10] = Entry;
  table[11] = Wrench;
  table[12] = SignalBars;
  table[13] = Position;
  table[14] = Lock;
  table[15] = SimCard;
  table[16] = Info;
  table[17] = Network;
  table[18] = Speaker;
  table[19] = Display;
  table[20] = Clock;
  table[21] = Printer;
  return table;
}

constexpr std::array<Drawing, kMenuIcons> kDrawings = MakeTable();

/// A raven's head in profile, for the windows of the program.
void DrawLogo(QPainter& painter, const QRectF& rect, const QPalette& palette) {
  EnterUnits(painter, rect);
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

/// The number behind a word and a blank, or -1.
int NumberBehind(std::string_view name, std::string_view word) {
  if (!name.starts_with(word)) return -1;
  return ToInt16(name.substr(word.size())).value_or(-1);
}

class PictureEngine : public QIconEngine {
 public:
  explicit PictureEngine(std::string_view name) : name_(name) {}
  QIconEngine* clone() const override { return new PictureEngine(*this); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    if (mode == QIcon::Disabled) painter->setOpacity(0.4);
    DrawPicture(*painter, rect, name_, QApplication::palette());
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
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
  if (number < 0 || number >= kMenuIcons) number = 10;
  Sketch sketch(painter, rect, palette);
  const Drawing drawing = kDrawings[static_cast<std::size_t>(number)];
  if (drawing != nullptr) {
    drawing(sketch);
  } else {
    Numbered(sketch, number);
  }
}

bool DrawPicture(QPainter& painter, const QRectF& rect, std::string_view name, const QPalette& palette) {
  if (name == "logo") {
    DrawLogo(painter, rect, palette);
    return true;
  }
  if (name == "mail") {
    DrawMenuIcon(painter, rect, 27, palette);
    return true;
  }
  if (const int key = NumberBehind(name, "key "); key >= 0) {
    // 0 and 2 mark a key that has no picture of its own: a lamp, lit for a key that is in use.
    if (key == 0 || key == 2) {
      Sketch sketch(painter, rect, palette);
      if (key == 2) sketch.Accent().Dot(12, 12, 4);
      sketch.Ink().Ring(12, 12, 6);
    } else {
      DrawMenuIcon(painter, rect, key, palette);
    }
    return true;
  }
  const int icon = NumberBehind(name, "icon ");
  if (icon >= 0) DrawMenuIcon(painter, rect, icon, palette);
  return icon >= 0;
}

QIcon PictureIcon(std::string_view name) {
  const bool known =
      name == "logo" || name == "mail" || NumberBehind(name, "key ") >= 0 || NumberBehind(name, "icon ") >= 0;
  return known ? QIcon(new PictureEngine(name)) : QIcon();
}

}  // namespace corvex
