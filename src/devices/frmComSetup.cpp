#include "devices/frmComSetup.h"

#include "base/ScopedFlag.h"
#include "base/Text.h"

namespace corvex {

namespace {

constexpr std::int32_t kLastId = 254;  // intentional: 255 is refused here, but not by the editor of devices

/// The value of a text of hexadecimal digits; 0 for any other text.
std::int32_t IdOf(const TextBox& box) {
  return ParseHex(box.Text()).value_or(0);
}

bool InRange(std::int32_t id) {
  return id >= 1 && id <= kLastId;
}

}  // namespace

frmComSetup::frmComSetup(Form& owner, const Platform& platform, const UsedNumbers& used)
    : Form(owner.loop(), owner.windows(), "frmComSetup", &owner), platform_(platform), used_(used) {
  caption = "Serial Port Setup";
  fixedSize = true;
  defaultButton = &Command1[0];
  txtId.change = [this] { TakeTypedId(); };
  // The Id is tested when the user moves on. The buttons test it themselves, so that a refused Id keeps the
  // window open.
  txtMsn.gotFocus = [this] { TakeId(); };
  txtMsn.change = [this] { TakeMsn(); };
  for (Button& button : Command1) {
    button.click = [this] {
      if (TakeId()) Close(true);  // intentional: both buttons keep the values
    };
  }
  queryUnload = [this] { Close(false); };
  keyDown = [this](KeyEvent& key) {
    constexpr int kEscape = 27;
    if (key.keyCode != kEscape) return;
    key.handled = true;
    Close(false);
  };
}

void frmComSetup::Open(const DeviceRecord& record, int port) {
  constexpr Twips kWidth = 5850;
  constexpr Twips kHeight = 3690;
  Centre(owner()->rect, kWidth, kHeight);
  oldId = newId = record.id;
  iface = record.iface;
  msn = record.msn;
  portIndex = port;
  changed = false;
  lblPortname.caption = std::string(InterfaceName(iface));
  txtId.SetText(ShortHex(oldId));
  txtMsn.SetText(msn);
  txtId.SelectAll();
  txtId.SetFocus();
  ShowModal();
}

/// Takes each valid value while the user types, even one that is in use. An empty box is the start of a new
/// value, so it is refused only when the user moves on.
void frmComSetup::TakeTypedId() {
  if (refusing_ || txtId.Text().empty()) return;
  const std::int32_t id = IdOf(txtId);
  if (!InRange(id)) return Refuse(id);
  newId = id;
  changed = true;
}

/// Returns false if the Id is refused.
bool frmComSetup::TakeId() {
  if (refusing_) return false;
  const std::int32_t id = IdOf(txtId);
  if (id == newId && id == oldId) return true;
  if (!InRange(id) || (used_.IdInUse(id) && id != oldId)) {
    Refuse(id);
    return false;
  }
  newId = id;
  changed = true;
  return true;
}

void frmComSetup::Refuse(std::int32_t id) {
  const ScopedFlag refusing(refusing_);
  newId = oldId;
  txtId.SetText(ShortHex(oldId));
  txtId.SelectAll();
  txtId.SetFocus();
  platform_.dialogs.MessageBox(
      used_.IdInUse(id) ? "The selected Id is already used - please delete the existing entry first"
                        : "Out of range");
}

void frmComSetup::TakeMsn() {
  if (refusing_ || txtMsn.Text().empty()) return;  // the start of a new value
  if (IsNumeric(txtMsn.Text())) {
    msn = txtMsn.Text();
    changed = true;
    return;
  }
  const ScopedFlag refusing(refusing_);
  txtMsn.SetText(msn);
  txtMsn.SelectAll();
  platform_.dialogs.MessageBox("Must be numeric");
}

void frmComSetup::Close(bool keeps) {
  if (!keeps) changed = false;
  visible = false;
}

}  // namespace corvex
