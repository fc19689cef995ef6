#pragma once

#include <string>

#include "session/frmTerm.h"

namespace corvex::test {

/// The visible content of the main window as a text. Tool tips are in braces, the current item of a list
/// follows
/// ">", and other properties of an item or a key are in parentheses.
inline std::string Seen(const frmTerm& term) {
  std::string seen = "title    " + term.caption.Get() + "\nstatus  ";
  for (const Label* label :
       {&term.corvexLbl[TermControls::kSignal], &term.lblsim, &term.lblTemp, &term.lblTempPsu, &term.lblComp,
        &term.lblSpot, &term.lblPort, &term.lblTime, &term.lblZone, &term.lblGps[0], &term.lblGps[1]}) {
    if (!label->visible) continue;
    seen += " [" + label->caption.Get();
    seen += label->toolTip.Get().empty() ? "]" : " {" + label->toolTip.Get() + "}]";
  }
  seen += term.imgMail[0].visible ? " [mail]" : "";
  seen += term.mnuUpgrade.enabled ? " [upgrade]\n" : "\n";
  for (std::size_t i = 0; i < TermControls::kSignal; ++i) {
    seen += "row      |" + term.corvexLbl[i].caption.Get() + "|\n";
  }
  for (std::size_t i = 0; i < std::size(term.cmdSK); ++i) {
    if (!term.cmdSK[i].enabled) continue;
    seen += "key      " + term.cmdSK[i].caption.Get() + " (" + term.imgKey[i].picture.Get() + ")\n";
  }
  const auto mark = [](bool current) { return current ? "       > " : "         "; };
  const auto focus = [](const Control& list) { return list.HasFocus() ? " (has the focus)\n" : "\n"; };
  if (term.frmMenu.visible) {
    seen += "menu     " + term.frmMenu.caption.Get() + focus(term.ListMenu);
    int place = 0;
    for (const ListItem& item : term.ListMenu.Items()) {
      seen += mark(++place == term.ListMenu.selected) + item.text;
      seen += " (" + item.key + ", " + std::to_string(item.icon) + ")\n";
    }
  }
  if (term.frmChoice.visible) {
    seen += "choice   " + term.frmChoice.caption.Get() + focus(term.ListChoice);
    int place = 0;
    for (const std::string& item : term.ListChoice.Items()) {
      seen += mark(place++ == term.ListChoice.listIndex) + item + '\n';
    }
  }
  if (term.frmMsg.visible) {
    seen += "message  " + term.LblMsg[0].caption.Get() + " / " + term.LblMsg[1].caption.Get() + '\n';
  }
  return seen;
}

}  // namespace corvex::test
