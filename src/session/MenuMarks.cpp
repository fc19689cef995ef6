#include "session/MenuMarks.h"

#include <string>

namespace corvex {

void MarkMode(TermControls& window, ModemMode mode) {
  window.mnuTerminal.checked = mode == ModemMode::Terminal;
  window.mnuTest.checked = mode == ModemMode::TestInterface;
  window.mnuAT.checked = mode == ModemMode::AtMode;
  window.mnuPort.checked = mode == ModemMode::PortSetup;
}

void MarkRoute(TermControls& window, const SettingsStore& settings) {
  const auto& config = settings.config;
  if (!config.erbaccess.Get() && !config.lan.Get()) {
    window.mnuTelnet.visible = false;
  } else {
    window.mnuPort.visible = true;
  }
  const std::string selected = config.mubselect.Get();
  window.mnuMasterONMaster.checked = selected == "0";
  window.mnuSlaveONMaster.checked = selected == "1";
  window.mnuMasterONSlave.checked = selected == "2";
  window.mnuSlaveONSlave.checked = selected == "3";
}

}  // namespace corvex
