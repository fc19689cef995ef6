#include "print/frmFind.h"

#include "base/ScopedFlag.h"
#include "platform/Services.h"

namespace corvex {

frmFind::frmFind(Form& owner, FindState& state, std::string_view text, std::function<void()> findNext)
    : Form(owner.loop(), owner.windows(), "frmFind", &owner), state_(state) {
  caption = "Find";
  fixedSize = true;
  PlaceBeside(owner.rect);
  Label1.buddy = &txtFind;
  txtFind.SetText(text);
  txtFind.SelectAll();
  chkCase.value = state_.findMatchCase;
  const int direction = state_.findDirection == FindState::kUp ? FindState::kUp : FindState::kDown;
  optDirection[static_cast<std::size_t>(direction)].value = true;
  cmdFind.enabled = !text.empty();
  defaultButton = &cmdFind;
  cancelButton = &cmdCancel;

  txtFind.change = [this] {
    state_.findChanged = true;
    cmdFind.enabled = !txtFind.Text().empty();
  };
  chkCase.click = [this] { state_.findMatchCase = chkCase.value; };
  for (OptionButton& option : optDirection) {
    option.click = [this, &option] { state_.findDirection = option.index(); };
  }
  cmdFind.click = [this, next = std::move(findNext)] {
    if (searching_) return;  // the message that nothing was found is still open
    const ScopedFlag searching(searching_);
    state_.findText = txtFind.Text();
    next();
  };
  const auto cancel = [this] {
    state_.findText = txtFind.Text();
    state_.findMatchCase = chkCase.value;
    visible = false;
  };
  cmdCancel.click = cancel;
  queryUnload = cancel;
  txtFind.SetFocus();
}

/// Places the dialog below the view, or above it if there is no room, so that it does not cover the found
/// text. If there is no room there either, it is placed over the top of the view.
void frmFind::PlaceBeside(const Rect& view) {
  constexpr Twips kWidth = 5550;
  constexpr Twips kHeight = 1800;
  constexpr Twips kTitle = 450;  // the largest height of the system's title bar
  const Rect screen = windows().WorkArea();
  Rect place{view.left + (view.width - kWidth) / 2, view.top + view.height + kTitle, kWidth, kHeight};
  if (place.top + kHeight > screen.top + screen.height) place.top = view.top - kHeight - kTitle;
  if (place.top < screen.top) place.top = view.top;
  rect = place;
}

}  // namespace corvex
