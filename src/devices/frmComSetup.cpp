#include "devices/frmComSetup.h"

#include "base/Text.h"

namespace corvex {

frmComSetup::frmComSetup(Form& owner, const Platform& platform, const UsedNumbers& used)
    : Form(platform.loop, platform.windows, "frmComSetup", &owner), platform_(platform), used_(used) {
  caption = "Serial Port Setup";
  fixedSize = true;
  lblText.caption = "From your registration document, enter the Terminal Id for the UDI service on this port";
  defaultButton = &Command1[0];
  txtPortField[0].change = [this] { TakeId(When::Typing); };
  txtPortField[0].lostFocus = [this] {
    if (visible) TakeId(When::Leaving);
  };
  txtPortField[1].change = [this] { TakeMsn(When::Typing); };
  txtPortField[1].lostFocus = [this] {
    if (visible) TakeMsn(When::Leaving);
  };
  for (Button& button : Command1) button.click = [this] { CloseTaken(); };  // intentional: "Back" too
  queryUnload = [this] { Cancel(); };
  keyDown = [this](KeyEvent& key) {
    constexpr int kEscKey = 27;
    if (key.keyCode != kEscKey || key.shift || key.ctrl || key.alt) return;
    key.handled = true;
    if (!key.repeated) Post([this] { Cancel(); });
  };
}

void frmComSetup::Open(const DeviceRecord& record, int port) {
  constexpr Twips kOuterWidth = kWidth + 240 + kFrameWidth;
  constexpr Twips kOuterHeight = 3150 + kFrameHeight;
  Centre(owner()->rect, kOuterWidth, kOuterHeight);
  messages_.Drop();
  oldId = newId = record.id;
  iface = record.iface;
  msn = record.msn;
  portIndex = port;
  changed = false;
  lblPortname.caption = std::string(InterfaceName(iface));
  txtPortField[1].SetText(msn);
  txtPortField[0].SetText(ShortHex(oldId));
  txtPortField[0].SetFocus();
  txtPortField[0].SelectAll();
  ShowModal();
}

/// Takes the Id from its box if it may be used, otherwise returns to the old Id. While the user types, an Id
/// in use is taken, because it can be the start of a longer one. Returns false after a message.
bool frmComSetup::TakeId(When when) {
  constexpr std::int32_t kLastId = 254;  // intentional: one less than in the editor of devices
  const std::string& text = txtPortField[0].Text();
  if (when == When::Leaving && newId == oldId && text == ShortHex(oldId)) return true;  // nothing entered
  const auto id = ParseHex(text);
  const bool inUse = id && used_.IdInUse(*id);
  const bool refused = when == When::Leaving && inUse && *id != oldId;
  if (id && *id >= 1 && *id <= kLastId && !refused) {
    newId = static_cast<std::int16_t>(*id);
    changed = true;
    return true;
  }
  newId = oldId;
  ReturnTo(
      txtPortField[0], ShortHex(oldId),
      inUse ? "The selected Id is already used - please delete the existing entry first" : "Out of range");
  return false;
}

/// Takes the MSN from its box, or returns to the last one. While the user types, the box can be empty.
/// Returns false after a message.
bool frmComSetup::TakeMsn(When when) {
  const std::string& text = txtPortField[1].Text();
  if (text == msn || (text.empty() && when == When::Typing)) return true;
  if (IsNumeric(text)) {
    msn = TrimBlanks(text);
    changed = true;
    return true;
  }
  ReturnTo(txtPortField[1], msn, "Must be numeric");
  return false;
}

/// Selects the text, so that the next key replaces it.
void frmComSetup::ReturnTo(TextBox& box, const std::string& text, std::string_view message) {
  box.SetText(text);
  box.SelectAll();
  messages_.Show(std::string(message));
}

/// The boxes are tested once more: the Enter key clicks without moving the focus.
void frmComSetup::CloseTaken() {
  if (visible && !messages_.Busy() && TakeId(When::Leaving) && TakeMsn(When::Leaving)) visible = false;
}

void frmComSetup::Cancel() {
  changed = false;
  visible = false;
}

}  // namespace corvex
