#pragma once

#include <array>

#include "forms/Controls.h"
#include "forms/Form.h"
#include "window/PanelControls.h"

namespace corvex {

/// The controls of the main window with their positions, texts and tool tips. The code that sets their event
/// handlers defines what they do.
///
///   +----------+--------------------------------------------+
///   | frmTop   | frmScreen: a row of indicators,            |
///   | picture  |   seven rows of the modem's screen,        |
///   | GPS      |   overlaid by frmMenu, frmChoice, frmMsg   |
///   |          +--------------------------------+-----------+
///   |          | frmKeys: four soft keys        | frmNav    |
///   +----------+--------------------------------+-----------+
///   | frmAux: the service panels, in the full window        |
///   +-------------------------------------------------------+
class TermControls : public Form {
 public:
  static constexpr Twips kWidth = 8950;          ///< Outer width of the window.
  static constexpr Twips kCompactHeight = 4095;  ///< Outer height without the service panels.
  static constexpr Twips kScreenWidth = 7530;    ///< Width of the terminal area.
  static constexpr std::size_t kSoftKeys = 4;
  static constexpr const char* kPortSpoken = "Port: %";
  static constexpr int kSignal = 7;  ///< Index of the signal display in corvexLbl.
  /// Accessible names of soft keys that have no text.
  static constexpr std::array<std::string_view, kSoftKeys> kBlankKey{
      "Soft key 1, not in use", "Soft key 2, not in use", "Soft key 3, not in use", "Soft key 4, not in use"};

  explicit TermControls(EventLoop& loop, WindowSystem& windows) : Form(loop, windows, "frmTerm") {}

  // Left column.
  Frame frmTop{*this, {.name = "frmTop", .rect = {60, 60, 1150, 2720}}};
  std::array<Button, 2> cmdTop{{
      {frmTop,
       {.name = "cmdTop",
        .index = 0,
        .rect = {60, 30, 480, 480},
        .toolTip = "Show the modem user interface",
        .picture = "terminal"}},
      {frmTop,
       {.name = "cmdTop",
        .index = 1,
        .rect = {600, 30, 480, 480},
        .toolTip = "Device manager",
        .picture = "devices"}},
  }};
  Image Picture1{frmTop,
                 {.name = "Picture1", .rect = {60, 630, 1020, 900}, .picture = "logo", .accessible = "Logo"}};
  Image imgLogo{frmTop,
                {.name = "imgLogo", .rect = {60, 630, 1020, 900}, .visible = false, .accessible = "Logo"}};
  std::array<Label, 2> lblGps{{
      {frmTop, {.name = "lblGps", .index = 0, .rect = {30, 1650, 1110, 660}, .accessible = "Position: %"}},
      {frmTop, {.name = "lblGps", .index = 1, .rect = {30, 2340, 1110, 330}, .accessible = "Course: %"}},
  }};

  // The terminal area. The indicators are above the rows.
  Frame frmScreen{*this,
                  {.name = "frmScreen",
                   .rect = {1260, 60, kScreenWidth, 2720},
                   .accessible = "Screen of the modem unit",
                   .look = Look::Screen}};
  std::array<Label, 8> corvexLbl{{
      {frmScreen, RowDesign(0)},
      {frmScreen, RowDesign(1)},
      {frmScreen, RowDesign(2)},
      {frmScreen, RowDesign(3)},
      {frmScreen, RowDesign(4)},
      {frmScreen, RowDesign(5)},
      {frmScreen, RowDesign(6)},
      {frmScreen,
       {.name = "corvexLbl",
        .index = kSignal,
        .rect = IndicatorRect(60, 720),
        .toolTip = "Signal to noise ration, dB/Hz",
        .visible = false,
        .picture = "signal",
        .accessible = "Signal to noise ratio: % dB/Hz",
        .look = Look::Indicator}},
  }};
  Label lblsim{frmScreen,
               {.name = "lblsim",
                .rect = IndicatorRect(825, 660),
                .caption = "SIM",
                .toolTip = "SIM card is in use",
                .visible = false,
                .picture = "sim",
                .accessible = "SIM card in use",
                .look = Look::Indicator}};
  Label lblTemp{frmScreen,
                {.name = "lblTemp",
                 .rect = IndicatorRect(1530, 660),
                 .toolTip = "Modem unit termperature",
                 .visible = false,
                 .picture = "temperature",
                 .accessible = "Temperature of the modem unit: %",
                 .look = Look::Indicator}};
  Label lblTempPsu{frmScreen,
                   {.name = "lblTempPsu",
                    .rect = IndicatorRect(2235, 660),
                    .toolTip = "PSU temperature",
                    .visible = false,
                    .picture = "supply",
                    .accessible = "Temperature of the power supply: %",
                    .look = Look::Indicator}};
  std::array<Image, 1> imgMail{{
      {frmScreen,
       {.name = "imgMail",
        .index = 0,
        .rect = IndicatorRect(7140, 330),
        .visible = false,
        .picture = "mail",
        .accessible = "Mail waiting",
        .look = Look::Indicator}},
  }};
  Label lblComp{frmScreen,
                {.name = "lblComp",
                 .rect = IndicatorRect(2940, 675),
                 .visible = false,
                 .accessible = "Compression: %",
                 .look = Look::Indicator,
                 .align = Align::Centre}};
  Label lblSpot{frmScreen,
                {.name = "lblSpot",
                 .rect = IndicatorRect(3660, 480),
                 .caption = "SBS",
                 .toolTip = "Spot Beam Selection",
                 .accessible = "Spot beam: %",
                 .look = Look::Indicator,
                 .align = Align::Centre}};
  Label lblPort{frmScreen,
                {.name = "lblPort",
                 .rect = IndicatorRect(4185, 675),
                 .accessible = kPortSpoken,
                 .look = Look::Indicator,
                 .align = Align::Centre}};
  // When the unit reports no zone, the time moves to the zone's position and covers the zone.
  Label lblZone{frmScreen,
                {.name = "lblZone",
                 .rect = IndicatorRect(6000, 1050),
                 .accessible = "Time zone: %",
                 .look = Look::Indicator,
                 .align = Align::Centre}};
  Label lblTime{frmScreen,
                {.name = "lblTime",
                 .rect = IndicatorRect(6000, 1050),
                 .caption = "12:12",
                 .toolTip = "The time on the modem unit",
                 .accessible = "Time on the modem unit: %",
                 .look = Look::Indicator,
                 .align = Align::Centre}};

  Frame frmMenu{frmScreen,
                {.name = "frmMenu",
                 .rect = {0, 315, 7530, 2405},
                 .caption = "Title",
                 .visible = false,
                 .look = Look::Window}};
  ListView ListMenu{frmMenu,
                    {.name = "ListMenu",
                     .rect = {60, 330, 7410, 2030},
                     .visible = false,
                     .accessible = "Menu of the unit"}};
  Frame frmChoice{
      frmScreen,
      {.name = "frmChoice", .rect = {900, 315, 5700, 2405}, .visible = false, .look = Look::Window}};
  ListBox ListChoice{
      frmChoice,
      {.name = "ListChoice", .rect = {60, 345, 5580, 2000}, .accessible = "Choice list of the unit"}};

  // Below the terminal area.
  Frame frmKeys{*this, {.name = "frmKeys", .rect = {1260, 2840, 6330, 630}}};
  std::array<Button, kSoftKeys> cmdSK{{
      {frmKeys, KeyDesign(0)},
      {frmKeys, KeyDesign(1)},
      {frmKeys, KeyDesign(2)},
      {frmKeys, KeyDesign(3)},
  }};
  // The pictures cover parts of the keys. Screen readers see the keys only.
  std::array<Image, kSoftKeys> imgKey{{
      {frmKeys, KeyImageDesign(0)},
      {frmKeys, KeyImageDesign(1)},
      {frmKeys, KeyImageDesign(2)},
      {frmKeys, KeyImageDesign(3)},
  }};
  Frame frmNav{*this, {.name = "frmNav", .rect = {7650, 2840, 1140, 630}}};
  Button cmdESC{frmNav, {.name = "cmdESC", .rect = {60, 60, 1020, 510}, .caption = "ESC"}};
  KeySource CorvexFocus1{*this, {.name = "CorvexFocus1", .accessible = "Keys to the modem unit"}};

  /// Shows the modem's output in place of its screen while the test interface or the AT mode is open.
  TextBox txtRx{*this,
                {.name = "txtRx",
                 .rect = {1260, 60, 7530, 2720},
                 .visible = false,
                 .font = {.name = "Courier", .size = 10},
                 .accessible = "Output of the modem unit"}};

  // The popup, in front of everything above.
  Frame frmMsg{*this,
               {.name = "frmMsg", .rect = {2400, 900, 5250, 960}, .visible = false, .look = Look::PopUp}};
  std::array<Label, 2> LblMsg{{
      {frmMsg, MessageDesign(0, 150)},
      {frmMsg, MessageDesign(1, 480)},
  }};

  // The service panels. fmOnTab[0]: port settings, [1]: test interface, [4]: free commands. The others are
  // empty.
  Frame frmAux{*this, {.name = "frmAux", .rect = {60, 3525, 8730, 2400}, .visible = false}};
  std::array<Frame, 5> fmOnTab{{
      {frmAux, PanelDesign(0)},
      {frmAux, PanelDesign(1)},
      {frmAux, PanelDesign(2)},
      {frmAux, PanelDesign(3)},
      {frmAux, PanelDesign(4)},
  }};
  // The tabs do not scale with the window. frmSerial and frmLan start low enough for the smallest zoom level.
  TabStrip tabConnect{fmOnTab[0], {.name = "tabConnect", .rect = {60, 0, 8400, 330}}, {"Serial", "LAN"}};
  Frame frmSerial{fmOnTab[0], {.name = "frmSerial", .rect = {60, 390, 8400, 1830}, .visible = false}};
  Label lblPortNumber{frmSerial, ValueLabelDesign(0, "lblPortNumber", "Port")};
  TextBox txtPort{frmSerial, ValueDesign(0, "txtPort", "Which serial port is the modem connected to?")};
  UpDown UpDownPort{frmSerial, StepDesign(0, "UpDownPort"), txtPort, 1, 16};
  Label lblSpeed{frmSerial, ValueLabelDesign(1, "lblSpeed", "Speed")};
  TextBox txtSpeed{frmSerial, ValueDesign(1, "txtSpeed", "Line speed for communication with the modem")};
  UpDown UpDownSpeed{frmSerial, StepDesign(1, "UpDownSpeed"), txtSpeed, 0, 12};
  Label lblData{frmSerial, ValueLabelDesign(2, "lblData", "Data bits")};
  TextBox txtData{frmSerial, ValueDesign(2, "txtData", "Data bits used against Modem unit")};
  UpDown UpDownData{frmSerial, StepDesign(2, "UpDownData"), txtData, 4, 8};
  Label lblStopBits{frmSerial, ValueLabelDesign(3, "lblStopBits", "Stop bits")};
  TextBox txtStopBits{frmSerial, ValueDesign(3, "txtStopBits", "Stop bits per byte towards modem unit")};
  UpDown UpDownStopBits{frmSerial, StepDesign(3, "UpDownStopBits"), txtStopBits, 0, 2};
  Label lblDevice{frmSerial, {.name = "lblDevice", .rect = {150, 900, 5550, 870}}};
  Button cmdSaveSettings{frmSerial,
                         {.name = "cmdSaveSettings",
                          .rect = {6090, 1260, 1650, 420},
                          .caption = "Save Settings",
                          .toolTip = "Settings are saved per port"}};
  Frame frmLan{fmOnTab[0], {.name = "frmLan", .rect = {60, 390, 8400, 1830}, .visible = false}};
  CheckBox chkEnableLAN{
      frmLan, {.name = "chkEnableLAN", .rect = {150, 120, 3600, 330}, .caption = "Connect over LAN"}};
  Label lblLanIP{frmLan, {.name = "lblLanIP", .rect = {420, 510, 900, 360}, .caption = "Address"}};
  TextBox txtLanIP{frmLan, {.name = "txtLanIP", .rect = {1320, 510, 3000, 360}}};
  CheckBox chkEnableERB{
      frmLan, {.name = "chkEnableERB", .rect = {150, 990, 3600, 330}, .caption = "Log in on an ERB unit"}};
  Button Command1{frmLan, {.name = "Command1", .rect = {6090, 1260, 1650, 420}, .caption = "OK"}};
  TestPanel testPanel{fmOnTab[1]};
  AtPanel atPanel{fmOnTab[4]};
  /// Clears txtRx. Placed where both the test panel and the AT panel leave space.
  Button cmdCls{frmAux,
                {.name = "cmdCls", .rect = {7500, 1800, 1140, 420}, .caption = "Cls", .visible = false}};

  MenuItem mnuMode{*this, {.name = "mnuMode", .caption = "&Mode"}};
  MenuItem mnuTerminal{mnuMode, {.name = "mnuTerminal", .caption = "Terminal &MMI"}};
  MenuItem mnuTest{mnuMode, {.name = "mnuTest", .caption = "&Test Interface"}};
  MenuItem mnuDspTest{mnuMode, {.name = "mnuDspTest", .caption = "&DSP Test", .visible = false}};
  MenuItem mnuAT{mnuMode, {.name = "mnuAT", .caption = "&AT Mode"}};
  MenuItem mnuUpgrade{mnuMode, {.name = "mnuUpgrade", .caption = "Modem Software Upgrade"}};
  MenuItem mnuTrace{mnuMode, {.name = "mnuTrace", .caption = "T&race"}};
  MenuItem mnuSUTrace{mnuMode, {.name = "mnuSUTrace", .caption = "S&U Trace"}};
  MenuItem mnuOffline{mnuMode, {.name = "mnuOffline", .caption = "Offline"}};
  MenuItem mnuExit{mnuMode, {.name = "mnuExit", .caption = "Exit"}};
  MenuItem mnuView{*this, {.name = "mnuView", .caption = "&View"}};
  MenuItem mnuGPS{mnuView, {.name = "mnuGPS", .caption = "Show GPS "}};
  MenuItem mnuZoomIn{mnuView, {.name = "mnuZoomIn", .caption = "Zoom &In", .enabled = false}};
  MenuItem mnuZoomOut{mnuView, {.name = "mnuZoomOut", .caption = "Zoom &Out", .enabled = false}};
  MenuItem mnuConfigure{*this, {.name = "mnuConfigure", .caption = "&Configure"}};
  MenuItem mnuPort{mnuConfigure, {.name = "mnuPort", .caption = "&Port", .shortcut = "Ctrl+P"}};
  MenuItem mnuMapping{mnuConfigure, {.name = "mnuMapping", .caption = "Device manager"}};
  MenuItem mnuR2Print{mnuConfigure, {.name = "mnuR2Print", .caption = "Print &handling"}};
  MenuItem mnuSound{mnuConfigure, {.name = "mnuSound", .caption = "Sou&nd"}};
  MenuItem mnuSndBeep{mnuSound, {.name = "mnuSndBeep", .caption = "PC Beeper"}};
  MenuItem mnuSndOff{mnuSound, {.name = "mnuSndOff", .caption = "Off"}};
  MenuItem mnuTelnet{mnuConfigure, {.name = "mnuTelnet", .caption = "Telnet"}};
  MenuItem mnuMasterONMaster{mnuTelnet, {.name = "mnuMasterONMaster", .caption = "Master MUB on Master SDU"}};
  MenuItem mnuSlaveONMaster{mnuTelnet, {.name = "mnuSlaveONMaster", .caption = "Slave Mub on Master SDU"}};
  MenuItem mnuMasterONSlave{mnuTelnet, {.name = "mnuMasterONSlave", .caption = "Master MUB on slave SDU"}};
  MenuItem mnuSlaveONSlave{mnuTelnet, {.name = "mnuSlaveONSlave", .caption = "Slave Mub on Slave SDU"}};
  MenuItem mnuHelp{*this, {.name = "mnuHelp", .caption = "&Help"}};
  MenuItem mnuManual{mnuHelp, {.name = "mnuManual", .caption = "User Manual"}};
  MenuItem mnuAbout{mnuHelp, {.name = "mnuAbout", .caption = "About"}};

  // Intervals in milliseconds.
  Timer tmrStart{*this, {.name = "tmrStart", .enabled = false, .interval = 100}};
  Timer tmrWatchdog{*this, {.name = "tmrWatchdog", .enabled = false, .interval = 8000}};
  Timer tmrRefresh{*this, {.name = "tmrRefresh", .enabled = false, .interval = 800}};
  Timer tmrMsg{*this, {.name = "tmrMsg", .enabled = false, .interval = 2100}};
  Timer tmrResize{*this, {.name = "tmrResize", .interval = 200}};
  Timer tmrSpawnBook{*this, {.name = "tmrSpawnBook", .enabled = false, .interval = 250}};
  Timer tmrRepeater{*this, {.name = "tmrRepeater", .enabled = false, .interval = 500}};
  Timer tmrPosLog{*this, {.name = "tmrPosLog", .interval = 60000}};
  Timer logCheck{*this, {.name = "logCheck", .interval = 50000}};

 private:
  static Rect IndicatorRect(Twips left, Twips width) { return {left, 45, width, 270}; }
  static Design RowDesign(int row) {
    return {.name = "corvexLbl", .index = row, .rect = {0, 345 + row * 333, 7450, 333}, .look = Look::Screen};
  }
  static Design KeyDesign(int key) {
    return {.name = "cmdSK",
            .index = key,
            .rect = {30 + key * 1575, 60, 1500, 510},
            .toolTip = "ALT + underlined character to select",
            .enabled = false,
            .accessible = kBlankKey[static_cast<std::size_t>(key)],
            .look = Look::Key};
  }
  static Design KeyImageDesign(int key) {
    return {.name = "imgKey", .index = key, .rect = {75 + key * 1575, 105, 390, 390}, .visible = false};
  }
  static Design MessageDesign(int line, Twips top) {
    return {.name = "LblMsg",
            .index = line,
            .rect = {150, top, 4950, 330},
            .font = {.size = 9, .bold = line == 0},
            .align = Align::Centre};
  }
  // The four values of the serial panel, side by side. Each is a label above a text box with up and down
  // arrows.
  static constexpr Twips ValueLeft(int place) { return 150 + place * 1980; }
  static Design ValueLabelDesign(int place, std::string_view name, std::string_view caption) {
    return {.name = name, .rect = {ValueLeft(place), 120, 1650, 270}, .caption = caption};
  }
  static Design ValueDesign(int place, std::string_view name, std::string_view toolTip) {
    return {.name = name, .rect = {ValueLeft(place), 420, 1410, 360}, .toolTip = toolTip};
  }
  static Design StepDesign(int place, std::string_view name) {
    return {.name = name, .rect = {ValueLeft(place) + 1410, 420, 240, 360}};
  }
  static Design PanelDesign(int panel) {
    return {.name = "fmOnTab", .index = panel, .rect = {90, 30, 8550, 2310}, .visible = false};
  }
};

}  // namespace corvex
