#pragma once

#include <array>

#include "forms/Controls.h"

namespace corvex {

/// The controls of the test interface and their layout:
///
///   Channel type | Channel numbers | Modulation | Aero specific
///                | RFB             |            | Rx, Tx   Execute  Quit
///   line for the DSP or the CPU        DSP  CPU   Trace  Flush
struct TestPanel {
  explicit TestPanel(Frame& panel) : panel_(panel) {}

 private:
  static constexpr Twips kTop = 285;   ///< Top of the first control below a frame's title.
  static constexpr Twips kStep = 258;  ///< Vertical distance between options.
  static Design OptionDesign(std::string_view name, int index, std::string_view caption, Twips width,
                             Twips top = kTop) {
    return {.name = name, .index = index, .rect = {90, top + index * kStep, width, 255}, .caption = caption};
  }
  Frame& panel_;

 public:
  Frame frmMain{panel_, {.name = "frmMain", .rect = {0, 0, 1650, 1650}, .caption = "Channel type"}};
  std::array<OptionButton, 5> optmain{{
      {frmMain, OptionDesign("optmain", 0, "TDM(A)", 1470)},
      {frmMain, OptionDesign("optmain", 1, "O-QPSK MM", 1470)},
      {frmMain, OptionDesign("optmain", 2, "16 QAM", 1470)},
      {frmMain, OptionDesign("optmain", 3, "O-QPSK BM", 1470)},
      {frmMain, OptionDesign("optmain", 4, "128K", 1470)},
  }};
  Frame frmChan{panel_, {.name = "frmChan", .rect = {1710, 0, 1980, 975}, .caption = "Channel numbers"}};
  Label lblRx{frmChan, {.name = "lblRx", .rect = {120, 285, 420, 300}, .caption = "Rx"}};
  TextBox txtChanRx{frmChan,
                    {.name = "txtChan", .index = 1, .rect = {570, 285, 1290, 300}, .caption = "12800"}};
  Label lblTx{frmChan, {.name = "lblTx", .rect = {120, 615, 420, 300}, .caption = "Tx"}};
  TextBox txtChanTx{frmChan,
                    {.name = "txtChan", .index = 0, .rect = {570, 615, 1290, 300}, .caption = "12800"}};
  Frame frmRfb{panel_, {.name = "frmRfb", .rect = {1710, 1005, 1980, 645}, .caption = "RFB"}};
  Label lblRfb{frmRfb, {.name = "lblRfb", .rect = {120, 285, 480, 300}, .caption = "Level"}};
  TextBox txtRfb{frmRfb,
                 {.name = "txtRfb",
                  .rect = {630, 285, 1230, 300},
                  .caption = "1.0",
                  .toolTip = "Also know as EIRP"}};  // the spelling is intentional
  Frame frmModulation{panel_,
                      {.name = "frmModulation", .rect = {3750, 0, 1350, 1650}, .caption = "Modulation"}};
  std::array<OptionButton, 4> optModulation{{
      {frmModulation, OptionDesign("optModulation", 0, "Random", 1200)},
      {frmModulation, OptionDesign("optModulation", 1, "Fixed", 1200)},
      {frmModulation, OptionDesign("optModulation", 2, "CW", 1200)},
      {frmModulation, OptionDesign("optModulation", 3, "Normal", 1200)},
  }};
  Frame frmAero{panel_, {.name = "frmAero", .rect = {5160, 0, 3390, 975}, .caption = "Aero specific"}};
  CheckBox chkInterleaving{frmAero,
                           {.name = "chkInterleaving",
                            .rect = {120, 285, 3210, 300},
                            .caption = "Disable Interleaving for 16 QAM"}};
  Label lblAntGain{frmAero, {.name = "lblAntGain", .rect = {120, 615, 1320, 300}, .caption = "Antenna Gain"}};
  TextBox txtAntGain{frmAero,
                     {.name = "txtAntGain",
                      .rect = {1470, 615, 900, 300},
                      .caption = "12.0",
                      .toolTip = "Antenna gain for Kestrel range 12.0 17.0"}};
  Frame frmRxTx{panel_, {.name = "frmRxTx", .rect = {5160, 1005, 1140, 645}}};
  std::array<OptionButton, 2> optRxTx{{
      {frmRxTx, OptionDesign("optRxTx", 0, "Rx + Tx", 990, 60)},
      {frmRxTx, OptionDesign("optRxTx", 1, "Rx only", 990, 60)},
  }};
  Button cmdDspExec{panel_, {.name = "cmdDspExec", .rect = {6330, 1155, 1020, 420}, .caption = "Execute"}};
  Button cmdExitDSP{panel_, {.name = "cmdExitDSP", .rect = {7410, 1155, 1140, 420}, .caption = "Quit"}};

  Frame Frame8{panel_, {.name = "Frame8", .rect = {0, 1710, 7350, 540}}};
  TextBox txtRaw{Frame8,
                 {.name = "txtRaw",
                  .rect = {0, 60, 3540, 420},
                  .toolTip = "Line for the DSP or the CPU. Drop a script file here to play it.",
                  .accessible = "Line for the DSP or the CPU"}};
  std::array<Button, 2> cmdRawDsp{{
      {Frame8, {.name = "cmdRawDsp", .index = 0, .rect = {3600, 60, 690, 420}, .caption = "DSP"}},
      {Frame8, {.name = "cmdRawDsp", .index = 1, .rect = {4350, 60, 690, 420}, .caption = "CPU"}},
  }};
  std::array<Button, 2> cmdDSPShort{{
      {Frame8, {.name = "cmdDSPShort", .index = 1, .rect = {5100, 60, 1050, 420}, .caption = "Trace"}},
      {Frame8, {.name = "cmdDSPShort", .index = 2, .rect = {6210, 60, 1110, 420}, .caption = "Flush"}},
  }};
};

/// The controls of the AT mode's byte editor. The options at the top select how the line is interpreted.
/// Below them are the line with its Send button and the current entry of the history.
struct AtPanel {
  explicit AtPanel(Frame& panel) : panel_(panel) {}

 private:
  Frame& panel_;

 public:
  Frame frmBase{panel_, {.name = "frmBase", .rect = {0, 0, 3480, 690}, .caption = "Base"}};
  std::array<OptionButton, 3> OptBase{{
      {frmBase, {.name = "OptBase", .index = 0, .rect = {120, 270, 1020, 345}, .caption = "Hex"}},
      {frmBase, {.name = "OptBase", .index = 1, .rect = {1200, 270, 1020, 345}, .caption = "Dec"}},
      {frmBase, {.name = "OptBase", .index = 2, .rect = {2280, 270, 1110, 345}, .caption = "Ascii"}},
  }};
  CheckBox chkRepeat{panel_, {.name = "chkRepeat", .rect = {3720, 270, 1200, 345}, .caption = "repeat"}};
  CheckBox optAutoSend{panel_,
                       {.name = "optAutoSend",
                        .rect = {5040, 270, 1560, 345},
                        .caption = "auto send",
                        .toolTip = "Send characters as they are typed"}};
  Frame frmSendRaw{panel_, {.name = "frmSendRaw", .rect = {0, 780, 7350, 1470}, .caption = "Send Raw"}};
  Label lblRawBytes{frmSendRaw, {.name = "lblRawBytes", .rect = {120, 270, 5700, 300}, .caption = "Send"}};
  TextBox txtRawBytes{frmSendRaw,
                      {.name = "txtRawBytes",
                       .rect = {120, 585, 5850, 390},
                       .caption = "at",
                       .font = {.name = "Courier"},
                       .accessible = "Line for the modem unit"}};
  Button cmdRawBytes{frmSendRaw, {.name = "cmdRawBytes", .rect = {6060, 570, 1170, 420}, .caption = "Send"}};
  Label lblRec{frmSendRaw,
               {.name = "lblRec",
                .rect = {120, 1050, 7020, 330},
                .font = {.name = "Courier"},
                .accessible = "From the history: %"}};
  Button cmdRawQuit{panel_, {.name = "cmdRawQuit", .rect = {7410, 210, 1140, 420}, .caption = "Quit"}};
};

}  // namespace corvex
