#pragma once

#include "desktop/look/Sketch.h"

// The drawings of the pictures. Icons.cpp assigns names and numbers to them.

namespace corvex::drawings {

using Drawing = void (*)(Sketch&);

// Drawings for menus and soft keys.
void AddToBook(Sketch& s);
void ArrowDown(Sketch& s);
void ArrowUp(Sketch& s);
void AskForMail(Sketch& s);
void Back(Sketch& s);
void Bin(Sketch& s);
void Book(Sketch& s);
void Bulb(Sketch& s);
void Check(Sketch& s);
void Code(Sketch& s);
void Compression(Sketch& s);
void Entry(Sketch& s);
void Envelope(Sketch& s);
void Exit(Sketch& s);
void Gauge(Sketch& s);
void Gear(Sketch& s);
void Globe(Sketch& s);
void Info(Sketch& s);
void Lamp(Sketch& s);
void LampLit(Sketch& s);
void Lifebuoy(Sketch& s);
void List(Sketch& s);
void Log(Sketch& s);
void Notes(Sketch& s);
void Phone(Sketch& s);
void Power(Sketch& s);
void Printer(Sketch& s);
void Pulse(Sketch& s);
void QuickDial(Sketch& s);
void ReadMail(Sketch& s);
void Screen(Sketch& s);
void SimCard(Sketch& s);
void SpotBeam(Sketch& s);
void TestSheet(Sketch& s);
void Wrench(Sketch& s);

// Drawings for the devices in a tree, and for the tool bar above it.
void AddDevice(Sketch& s);
void Data64(Sketch& s);
void Data128(Sketch& s);
void Device(Sketch& s);
void Fax(Sketch& s);
void MissingHandset(Sketch& s);
void Network(Sketch& s);
void Refresh(Sketch& s);
void Speaker(Sketch& s);
void Speech(Sketch& s);
void Speech64(Sketch& s);

// Drawings for the indicators, where they are as small as a letter, and for the program's own buttons and
// message boxes.
void Bars(Sketch& s);
void Bolt(Sketch& s);
void Disk(Sketch& s);
void Question(Sketch& s);
void Terminal(Sketch& s);
void Thermometer(Sketch& s);

/// Placeholder for a number from 0 to 63 without its own drawing. The six bits of the number appear as dots,
/// so that every number looks different.
void Numbered(Sketch& s, int number);

}  // namespace corvex::drawings
