#include "session/StatusPanel.h"

#include <chrono>
#include <cstdint>

#include "base/Text.h"

namespace corvex {

namespace {

// The left edge of the time with and without a time zone after it, at the design width of the screen.
constexpr Twips kTimeLeftWithZone = 4905;
constexpr Twips kTimeLeft = 6000;

constexpr int kToneMilliseconds = 100;

void ShowDegrees(Label& label, const std::string& text) {
  // A single blank means that the modem has no such sensor. A number that is too large counts as a blank.
  const bool tooLarge = IsNumeric(text) && !ToInt16(text);
  if (text == " " || tooLarge) {
    label.visible = false;
    return;
  }
  label.visible = true;
  label.BringToFront();
  label.caption = text + "C";
}

}  // namespace

void StatusPanel::SoundTone() {
  if (!settings_.config.sound.IsBeep()) return;
  const auto now = window_.loop().Now();
  if (now < toneEnds_) return;  // only one tone at a time
  const int hertz = (state_.toneValue + 10) * 3 + 280;
  if (hertz <= 0) return;  // too low for a tone
  toneEnds_ = now + std::chrono::milliseconds(kToneMilliseconds);
  sound_.Beep(hertz, kToneMilliseconds);
}

void StatusPanel::ShowSignal() {
  window_.corvexLbl[TermControls::kSignal].caption = state_.sigText;
  window_.corvexLbl[TermControls::kSignal].visible = true;
}

void StatusPanel::ShowTime() {
  window_.lblTime.caption = state_.timeText;
  if (!state_.zoneText.empty()) window_.lblZone.caption = state_.zoneText;
  PlaceTime();
  window_.lblTime.toolTip = state_.dateLongText;
  window_.lblTime.visible = true;
  window_.lblTime.BringToFront();
  main_.rxSeen = true;
}

void StatusPanel::PlaceTime() {
  // Without a zone, the time covers the label of the zone. That label keeps its old text.
  const std::int64_t left = state_.zoneText.empty() ? kTimeLeft : kTimeLeftWithZone;
  Rect rect = window_.lblTime.rect;
  rect.left = static_cast<Twips>(left * window_.frmScreen.rect.Get().width / TermControls::kScreenWidth);
  window_.lblTime.rect = rect;
}

void StatusPanel::ShowMail(bool waiting) {
  window_.imgMail[0].visible = waiting;
}

void StatusPanel::ShowSim(bool inUse) {
  window_.lblsim.visible = inUse;
}

void StatusPanel::ShowTemperature() {
  ShowDegrees(window_.lblTemp, state_.tempText);
}

void StatusPanel::ShowPsuTemperature() {
  ShowDegrees(window_.lblTempPsu, state_.psuTempText);
}

void StatusPanel::ShowGpsHeading() {
  window_.lblGps[1].caption = state_.gpsHeadText;
}

void StatusPanel::ShowGpsPosition() {
  window_.lblGps[0].caption = state_.gpsPosText;
}

void StatusPanel::ShowMubInfo() {
  window_.caption = main_.applicationTitle + ' ' + state_.mubInfoText;
}

void StatusPanel::ShowUserInfo() {
  // Intentional: these letters count inside a longer word too.
  window_.mnuUpgrade.enabled = !Contains(UpperCase(state_.userInfoText), "USER");
}

void StatusPanel::ShowSpotBeam() {
  const std::string text = UpperCase(state_.spotInfoText);
  window_.lblSpot.toolTip = state_.spotInfoText;
  if (Contains(text, "FAIL")) {
    window_.lblSpot.caption = "SBS";
  } else if (Contains(text, "SPOT BEAM")) {
    window_.lblSpot.caption = "SPT";
  } else if (Contains(text, "GLOBAL")) {
    window_.lblSpot.caption = "GLB";
  } else {
    window_.lblSpot.caption = "SBS";
  }
}

void StatusPanel::Clear() {
  for (Label* label : {&window_.corvexLbl[TermControls::kSignal], &window_.lblsim, &window_.lblTemp,
                       &window_.lblTempPsu, &window_.lblTime}) {
    label->visible = false;
  }
  window_.lblTime.caption = "";
  window_.lblZone.caption = "";
  state_.zoneText.clear();
  ShowMail(false);
  ShowCompression(TagToken::NoCompression, {});
  state_.spotInfoText.clear();
  ShowSpotBeam();
  window_.lblSpot.toolTip = "Spot Beam Selection";
  // Cleared in the session state too, since the periodic logs read it there.
  state_.gpsPosText.clear();
  state_.gpsHeadText.clear();
  ShowGpsPosition();
  ShowGpsHeading();
  window_.lblPort.caption = "";
}

void StatusPanel::ShowCompression(TagToken kind, std::string_view toolTip) {
  if (kind == TagToken::NoCompression) {
    window_.lblComp.caption = "   ";
    window_.lblComp.visible = false;
    return;
  }
  window_.lblComp.caption = kind == TagToken::V42b ? "v42bis" : "v44";
  window_.lblComp.visible = true;
  window_.lblComp.toolTip = toolTip;
}

}  // namespace corvex
