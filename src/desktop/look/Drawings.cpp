#include "desktop/look/Drawings.h"

#include <cmath>
#include <numbers>

namespace corvex::drawings {

namespace {

QPointF Around(QPointF centre, qreal radius, qreal eighths) {
  const qreal angle = eighths * std::numbers::pi / 4;
  return centre + QPointF(std::cos(angle), std::sin(angle)) * radius;
}

void Handset(Sketch& s) {
  s.Line({{5, 4}, {8.5, 4}, {10, 8.5}, {8, 10}});
  s.Arc(18, 6, 10.8, 202, 46);
  s.Line({{14, 16}, {15.5, 14}, {20, 15.5}, {20, 19}});
  s.Arc(18.5, 5.5, 13.6, 173, 90);
}

/// A handset that is recognisable when it is as small as a letter.
void SmallHandset(Sketch& s) {
  s.Dot(5.5, 7, 3.2).Dot(17, 18.5, 3.2).Arc(17, 7, 13, 180, 90).Arc(17, 7, 11.6, 180, 90);
}

void Monitor(Sketch& s) {
  s.Tinted().Box(2.5, 4, 19, 13).Ink().Line({{8, 20.5}, {16, 20.5}}).Line({{12, 17}, {12, 20.5}});
}

}  // namespace

void AddToBook(Sketch& s) {
  s.Line({{18, 11}, {18, 4}, {4.5, 4}, {4.5, 20}, {11, 20}});
  s.Line({{2.5, 8.5}, {6.5, 8.5}}).Line({{2.5, 15.5}, {6.5, 15.5}}).Line({{10, 8.5}, {14, 8.5}});
  s.Accent().Line({{18, 14}, {18, 22}}).Line({{14, 18}, {22, 18}});
}

void ArrowDown(Sketch& s) {
  s.Accent().Line({{12, 4}, {12, 19}}).Line({{5.5, 13}, {12, 19.5}, {18.5, 13}});
}

void ArrowUp(Sketch& s) {
  s.Accent().Line({{12, 20}, {12, 5}}).Line({{5.5, 11}, {12, 4.5}, {18.5, 11}});
}

void AskForMail(Sketch& s) {
  s.Line({{3, 13.5}, {3, 20.5}, {21, 20.5}, {21, 13.5}});
  s.Accent().Line({{12, 3}, {12, 15}}).Line({{7, 10.5}, {12, 15.5}, {17, 10.5}});
}

void Back(Sketch& s) {
  s.Line({{4, 9}, {15, 9}}).Arc(15, 14, 5, -90, 180).Line({{15, 19}, {8, 19}});
  s.Accent().Line({{8.5, 4.5}, {4, 9}, {8.5, 13.5}});
}

void Bin(Sketch& s) {
  s.Tinted().Shape({{6, 7}, {7, 21}, {17, 21}, {18, 7}});
  s.Ink().Line({{3.5, 7}, {20.5, 7}}).Line({{9, 7}, {9, 3.5}, {15, 3.5}, {15, 7}});
  s.Accent().Line({{10, 11}, {10, 17}}).Line({{14, 11}, {14, 17}});
}

void Book(Sketch& s) {
  s.Tinted().Box(5, 3, 14, 18).Ink().Line({{2.8, 7.5}, {6.5, 7.5}}).Line({{2.8, 16.5}, {6.5, 16.5}});
  s.Accent().Ring(12.5, 9.5, 2.2).Arc(12.5, 17.5, 4, 20, 140);
}

void Bulb(Sketch& s) {
  s.Tinted()
      .Ring(12, 9.5, 6)
      .Ink()
      .Line({{9, 15}, {9, 18}, {15, 18}, {15, 15}})
      .Line({{10.5, 21}, {13.5, 21}});
  s.Accent().Line({{12, 15}, {12, 10}}).Line({{10, 8}, {12, 10}, {14, 8}});
}

void Check(Sketch& s) {
  s.Accent().Line({{4, 12.5}, {9.5, 18}, {20, 6.5}});
}

void Code(Sketch& s) {
  s.Tinted().Box(3, 10.5, 18, 10).Ink().Arc(12, 8, 4.5, 0, 180);
  s.Line({{7.5, 8}, {7.5, 10.5}}).Line({{16.5, 8}, {16.5, 10.5}});
  s.Accent().Dot(7.5, 15.5, 1.5).Dot(12, 15.5, 1.5).Dot(16.5, 15.5, 1.5);
}

void Compression(Sketch& s) {
  s.Line({{3.5, 10}, {20.5, 10}}).Line({{3.5, 14}, {20.5, 14}});
  s.Accent().Line({{12, 1.8}, {12, 6.5}}).Line({{9, 3.8}, {12, 6.8}, {15, 3.8}});
  s.Line({{12, 22.2}, {12, 17.5}}).Line({{9, 20.2}, {12, 17.2}, {15, 20.2}});
}

void Entry(Sketch& s) {
  s.Tinted().Box(4, 4, 16, 16, 3).Accent().Line({{10.3, 8.5}, {13.8, 12}, {10.3, 15.5}});
}

void Envelope(Sketch& s) {
  s.Tinted().Box(3, 5.5, 18, 13).Accent().Line({{4, 7.5}, {12, 13.5}, {20, 7.5}});
}

void Exit(Sketch& s) {
  s.Line({{11, 3.5}, {4, 3.5}, {4, 20.5}, {11, 20.5}});
  s.Accent().Line({{9.5, 12}, {20.5, 12}}).Line({{16.3, 7.6}, {20.7, 12}, {16.3, 16.4}});
}

void Gauge(Sketch& s) {
  s.Arc(12, 14, 9, -25, 230).Line({{12, 5}, {12, 7}}).Line({{3, 14}, {5, 14}}).Line({{19, 14}, {21, 14}});
  s.Accent().Line({{12, 14}, {16.5, 9.5}}).Dot(12, 14, 2);
}

void Gear(Sketch& s) {
  const QPointF centre(12, 12);
  for (int tooth = 0; tooth < 8; ++tooth) s.Line({Around(centre, 7, tooth), Around(centre, 9.3, tooth)});
  s.Tinted().Ring(12, 12, 6.6).Accent().Ring(12, 12, 2.4);
}

void Globe(Sketch& s) {
  s.Tinted().Ring(12, 12, 9).Accent().Oval(12, 12, 4, 9).Line({{3, 12}, {21, 12}});
}

void Info(Sketch& s) {
  s.Tinted().Ring(12, 12, 9).Accent().Dot(12, 7.8, 1.4).Line({{12, 11.4}, {12, 16.8}});
}

void Lamp(Sketch& s) {
  s.Ring(12, 12, 6);
}

void LampLit(Sketch& s) {
  s.Accent().Dot(12, 12, 4).Ink().Ring(12, 12, 6);
}

void Lifebuoy(Sketch& s) {
  s.Tinted().Ring(12, 12, 9.2).Ink().Ring(12, 12, 3.8).Accent();
  const QPointF centre(12, 12);
  for (int band = 0; band < 4; ++band) {
    for (const qreal side : {-0.3, 0.3}) {
      s.Line({Around(centre, 4.6, 2 * band + 1 + side), Around(centre, 8.4, 2 * band + 1 + side * 0.75)});
    }
  }
}

void List(Sketch& s) {
  for (const qreal y : {6.0, 12.0, 18.0}) s.Ink().Line({{9, y}, {20.5, y}}).Accent().Dot(4.6, y);
}

void Log(Sketch& s) {
  s.Line({{3.5, 5.5}, {12.5, 5.5}}).Line({{3.5, 12}, {9.5, 12}}).Line({{3.5, 18.5}, {9.5, 18.5}});
  s.Accent().Ring(16.5, 14.5, 4.8).Line({{16.5, 11.8}, {16.5, 14.5}, {18.6, 15.6}});
}

void Notes(Sketch& s) {
  s.Line({{9, 17.5}, {9, 5}, {20, 3}, {20, 15.5}}).Line({{9, 9}, {20, 7}});
  s.Accent().Dot(6.6, 17.6, 2.9).Dot(17.6, 15.6, 2.9);
}

void Phone(Sketch& s) {
  Handset(s);
  s.Accent().Arc(13, 11, 3.5, 0, 90).Arc(13, 11, 7.5, 0, 90);
}

void Power(Sketch& s) {
  s.Arc(12, 13, 8.2, 122, 296).Accent().Line({{12, 3}, {12, 12}});
}

void Printer(Sketch& s) {
  s.Line({{7, 8.5}, {7, 3.5}, {17, 3.5}, {17, 8.5}})
      .Line({{6, 17}, {3, 17}, {3, 8.5}, {21, 8.5}, {21, 17}, {18, 17}});
  s.Accent().Box(7, 13.5, 10, 7, 1);
}

void Pulse(Sketch& s) {
  s.Tinted().Box(2.5, 4.5, 19, 15);
  s.Accent().Line({{5.5, 12.5}, {8.5, 12.5}, {10.5, 8}, {13.5, 16.5}, {15.5, 12.5}, {18.5, 12.5}});
}

void QuickDial(Sketch& s) {
  Handset(s);
  s.Accent().Line({{17.5, 2}, {14, 7}, {18.5, 7.5}, {15, 12.5}});
}

void ReadMail(Sketch& s) {
  s.Line({{11, 17}, {3, 17}, {3, 4.5}, {21, 4.5}, {21, 10}}).Line({{4, 6.5}, {12, 11.5}, {20, 6.5}});
  s.Accent().Line({{13.5, 17.5}, {16.5, 20.5}, {21.8, 14.5}});
}

void Screen(Sketch& s) {
  Monitor(s);
  s.Accent().Pie(12, 10.5, 3.8, 90, 180).Ring(12, 10.5, 3.8);
}

void SimCard(Sketch& s) {
  s.Tinted().Shape({{5.5, 3}, {14, 3}, {18.5, 7.5}, {18.5, 21}, {5.5, 21}});
  s.Accent().Box(8.5, 11, 7, 6.5, 1).Line({{12, 11}, {12, 17.5}});
}

void SpotBeam(Sketch& s) {
  s.Tinted().Box(10, 2.5, 4, 4, 1).Ink().Line({{4, 4.5}, {10, 4.5}}).Line({{14, 4.5}, {20, 4.5}});
  s.Line({{11.5, 9}, {5, 18}}).Line({{12.5, 9}, {19, 18}});
  s.Accent().Oval(12, 18.8, 7, 2.6);
}

void TestSheet(Sketch& s) {
  s.Tinted().Box(4.5, 4, 15, 17).Accent().Line({{8, 13}, {11, 16}, {16, 10}});
  s.Ink().Line({{9, 4}, {9, 2.5}, {15, 2.5}, {15, 6}, {9, 6}, {9, 4}});
}

void Wrench(Sketch& s) {
  s.Arc(16, 8, 4.8, -10, -250).Line({{16.2, 3.2}, {14.8, 7.6}, {16.6, 9.3}, {20.8, 8.6}});
  s.Accent().Line({{12.4, 11.6}, {4.6, 19.4}});
}

void AddDevice(Sketch& s) {
  s.Line({{12, 18.5}, {3, 18.5}, {3, 8.5}, {21, 8.5}, {21, 11}}).Line({{6.5, 8.5}, {6.5, 3.5}});
  s.Accent().Line({{17.5, 14}, {17.5, 22}}).Line({{13.5, 18}, {21.5, 18}});
}

void Data64(Sketch& s) {
  s.Line({{3, 8}, {20, 8}}).Line({{15.5, 3.5}, {20, 8}, {15.5, 12.5}});
  s.Accent().Line({{21, 16}, {4, 16}}).Line({{8.5, 11.5}, {4, 16}, {8.5, 20.5}});
}

void Data128(Sketch& s) {
  s.Line({{3, 5.3}, {17, 5.3}}).Line({{3, 8.7}, {17, 8.7}}).Line({{15.5, 2}, {20.5, 7}, {15.5, 12}});
  s.Accent()
      .Line({{21, 15.3}, {7, 15.3}})
      .Line({{21, 18.7}, {7, 18.7}})
      .Line({{8.5, 12}, {3.5, 17}, {8.5, 22}});
}

void Device(Sketch& s) {
  s.Tinted().Box(3, 9, 18, 10).Ink().Line({{7, 9}, {7, 3.5}});
  s.Accent().Dot(17, 14, 1.7).Line({{7, 14}, {12, 14}});
}

void Fax(Sketch& s) {
  s.Line({{7, 11}, {7, 3}, {14, 3}, {17, 6}, {17, 11}});
  s.Tinted().Box(3, 11, 18, 9.5).Accent().Line({{7, 15.7}, {12, 15.7}}).Dot(17, 15.7, 1.6);
}

void MissingHandset(Sketch& s) {
  SmallHandset(s);
  s.Accent().Line({{14, 3}, {21, 10}}).Line({{21, 3}, {14, 10}});
}

void Network(Sketch& s) {
  s.Line({{12, 9}, {12, 15}}).Line({{5, 15}, {5, 12}, {19, 12}, {19, 15}});
  s.Tinted().Box(8.5, 2.5, 7, 6.5, 1);
  s.Accent().Box(2.5, 15, 5, 5.5, 1).Box(9.5, 15, 5, 5.5, 1).Box(16.5, 15, 5, 5.5, 1);
}

void Refresh(Sketch& s) {
  s.Arc(12, 12, 8, 20, 140).Arc(12, 12, 8, 200, 140);
  s.Accent().Line({{20.5, 4}, {20, 9.5}, {14.5, 9}}).Line({{3.5, 20}, {4, 14.5}, {9.5, 15}});
}

void Speaker(Sketch& s) {
  s.Tinted().Shape({{3, 9}, {7, 9}, {12, 4.5}, {12, 19.5}, {7, 15}, {3, 15}});
  s.Accent().Arc(12, 12, 4.2, -50, 100).Arc(12, 12, 8.5, -50, 100);
}

void Speech(Sketch& s) {
  SmallHandset(s);
  s.Accent().Arc(12, 12, 4, 0, 90).Arc(12, 12, 9, 0, 90);
}

void Speech64(Sketch& s) {
  SmallHandset(s);
  s.Accent().Line({{13, 11}, {13, 7}}).Line({{17, 11}, {17, 2.5}}).Line({{21, 11}, {21, 5}});
}

void Bars(Sketch& s) {
  s.Line({{3, 20}, {3, 17}})
      .Line({{9, 20}, {9, 13}})
      .Line({{15, 20}, {15, 8}})
      .Accent()
      .Line({{21, 20}, {21, 3}});
}

void Bolt(Sketch& s) {
  s.Accent().Line({{14, 2}, {7, 13}, {17, 11}, {10, 22}});
}

void Disk(Sketch& s) {
  s.Tinted()
      .Shape({{4, 4}, {16.5, 4}, {20, 7.5}, {20, 20}, {4, 20}})
      .Ink()
      .Line({{8, 4}, {8, 9}, {15, 9}, {15, 4}});
  s.Accent().Line({{8, 20}, {8, 14}, {16, 14}, {16, 20}});
}

void Question(Sketch& s) {
  s.Tinted()
      .Ring(12, 12, 9)
      .Accent()
      .Arc(12, 9.7, 2.9, -40, 210)
      .Line({{14.2, 11.5}, {12, 13.8}})
      .Dot(12, 17.2, 1.3);
}

void Terminal(Sketch& s) {
  Monitor(s);
  s.Accent().Line({{6, 8}, {9, 10.5}, {6, 13}}).Line({{12, 13}, {16, 13}});
}

void Thermometer(Sketch& s) {
  s.Line({{9, 14}, {9, 5}}).Arc(12, 5, 3, 0, 180).Line({{15, 5}, {15, 14}}).Arc(12, 17.5, 4.6, 130, 280);
  s.Accent().Dot(12, 17.5, 2.2).Line({{12, 16}, {12, 9}});
}

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

}  // namespace corvex::drawings
