#include "devices/frmChanges.h"

#include "base/Text.h"
#include "platform/Services.h"

namespace corvex {

frmChanges::frmChanges(Form& owner) : Form(owner.loop(), owner.windows(), "frmChanges", &owner) {
  constexpr Twips kWidth = 8490;
  constexpr Twips kHeight = 5940;
  caption = "Load Configuration from file";
  fixedSize = true;
  Centre(owner.rect, kWidth, kHeight);
  txtChanges.multiLine = true;
  txtChanges.locked = true;
  // Cancel has the focus at first, so that Enter alone does not load a file.
  cancelButton = &cmdCancel;
  const auto close = [this](bool load) {
    load_ = load;
    visible = false;
  };
  cmdLoad.click = [close] { close(true); };
  cmdCancel.click = [close] { close(false); };
  queryUnload = [close] { close(false); };
}

bool frmChanges::Ask(const std::string& path, const std::vector<std::string>& lines) {
  lblFile.caption = path;
  lblFile.toolTip = path;
  lblSummary.caption = lines.front();
  std::string text;
  for (std::size_t i = 1; i < lines.size(); ++i) text.append(lines[i]).append(kCrLf);
  txtChanges.SetText(text);
  txtChanges.selection = TextBox::Selection{};
  load_ = false;
  cmdCancel.SetFocus();
  ShowModal();
  return load_;
}

}  // namespace corvex
