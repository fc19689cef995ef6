#include "session/frmAbout.h"

#include <string>

#include "base/Version.h"

namespace corvex {

namespace {

constexpr Twips kWidth = 5190;
constexpr Twips kHeight = 3600;

}  // namespace

frmAbout::frmAbout(Form& owner, const SettingsStore& settings)
    : Form(owner.loop(), owner.windows(), "frmAbout", &owner) {
  caption = "Corvex Marine";
  Centre(owner.rect, kWidth, kHeight);
  fixedSize = true;
  const std::string revision = std::to_string(kVersionRevision);
  lblVersion.caption = " Corvex Mobile 206118/" + std::to_string(kVersionMajor) + '.' +
                       std::to_string(kVersionMinor) + '.' + revision;
  lblbuild.caption = " Build(" + revision + ')';
  lblConf.caption = "Designed for " + settings.config.brand.Get() + "  mobile terminals";
  const auto close = [this] { visible = false; };
  cmdOK.click = close;
  queryUnload = close;
  defaultButton = &cmdOK;
  cancelButton = &cmdOK;
  cmdOK.SetFocus();
}

}  // namespace corvex
