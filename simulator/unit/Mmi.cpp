#include "unit/Mmi.h"

#include <algorithm>
#include <utility>

#include "unit/Wire.h"

namespace corvex::simulation {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

Mmi::Mmi(EventLoop& loop, Status& status, std::function<void(std::string_view)> send,
         std::function<void()> onSwitchOff)
    : status_(status),
      send_(std::move(send)),
      onSwitchOff_(std::move(onSwitchOff)),
      messageTimer_(loop),
      numberTimer_(loop) {}

void Mmi::Start() {
  Stop();
  const Screen* idle = FindScreen(kIdleScreen);
  if (idle == nullptr) return;
  path_.push_back({idle, 0, {}});
  send_(kClearDisplay);
  Draw();
}

void Mmi::Stop() {
  messageTimer_.Stop();
  numberTimer_.Stop();
  path_.clear();
  message_ = nullptr;
  listShown_ = Kind::Text;
  drawn_.clear();
  number_.clear();
}

std::string_view Mmi::Shows() const {
  if (message_ != nullptr) return message_->name;
  return path_.empty() ? std::string_view() : Here().screen->name;
}

void Mmi::Press(Key key) {
  if (path_.empty()) return;
  if (key.kind == KeyKind::Repaint) return Draw();
  if (message_ != nullptr) {
    DismissMessage();
    if (key.kind == KeyKind::Escape || key.kind == KeyKind::Enter) return;
  }
  if (key.kind != KeyKind::Character) TakeNumber();
  if (path_.empty()) return;
  switch (key.kind) {
    case KeyKind::Escape:
      return Back();
    case KeyKind::Enter:
      return PressEnter();
    case KeyKind::Up:
      return Step(-1);
    case KeyKind::Down:
      return Step(1);
    case KeyKind::Soft:
      // The fifth soft key has no label on the screen. It opens the idle screen from every other screen.
      return Follow(key.value <= 4 ? Here().screen->keys[static_cast<std::size_t>(key.value) - 1].target
                                   : kIdleScreen);
    case KeyKind::Character:
      return PressCharacter(static_cast<char>(key.value));
    default:
      return;
  }
}

void Mmi::PressEnter() {
  Place& here = Here();
  const Screen& screen = *here.screen;
  const auto at = static_cast<std::size_t>(here.cursor);
  switch (screen.kind) {
    case Kind::Menu:
      return SelectItem(screen.items[at].number);
    case Kind::Choice: {
      const Option& option = screen.options[at];
      status_.SetValue(screen.value, option.text);
      const std::string packet = status_.Apply(option.effect);
      if (!packet.empty()) send_(packet);
      path_.pop_back();
      return Follow(screen.target);
    }
    case Kind::Field:
      if (here.cursor + 1 < CursorPlaces(screen)) return Step(1);
      for (std::size_t i = 0; i < screen.fields.size(); ++i) {
        status_.SetValue(screen.fields[i].value, here.entries[i]);
      }
      path_.pop_back();
      return Follow(screen.target);
    case Kind::Table:
      status_.SetValue("row", screen.rows[at]);
      return Follow(screen.target);
    case Kind::Pages:
      return Step(1);
    default:
      return Follow(screen.target);
  }
}

void Mmi::PressCharacter(char c) {
  const Screen& screen = *Here().screen;
  if (screen.kind == Kind::Field) {
    Type(c);
  } else if (screen.kind == Kind::Menu || screen.name == kIdleScreen) {
    TakeDigit(c);
  }
}

void Mmi::Step(int direction) {
  Place& here = Here();
  const int places = CursorPlaces(*here.screen);
  if (places < 2) return;
  here.cursor = std::clamp(here.cursor + direction, 0, places - 1);
  Draw();
}

void Mmi::Follow(std::string_view target) {
  if (target == kBack) return Back();
  if (target == kSelect) return PressEnter();
  if (target == kUp) return Step(-1);
  if (target == kDown) return Step(1);
  if (target == kPrint) return Print(*Here().screen);
  const Screen* screen = FindScreen(target);
  if (screen != nullptr) Open(*screen);
}

void Mmi::Open(const Screen& screen) {
  switch (screen.kind) {
    case Kind::Message:
      return ShowMessage(screen);
    case Kind::Print:
      return Print(screen);
    case Kind::SwitchOff:
      Stop();
      send_(Packet("Shutdown"));
      return onSwitchOff_();
    default:
      break;
  }
  const auto before =
      std::find_if(path_.begin(), path_.end(), [&](const Place& place) { return place.screen == &screen; });
  if (before != path_.end()) {
    path_.erase(before + 1, path_.end());
  } else {
    Place place{&screen, 0, std::vector<std::string>(screen.fields.size())};
    const std::string value = status_.Value(screen.value);
    for (std::size_t i = 0; i < screen.options.size(); ++i) {
      if (screen.options[i].text == value) place.cursor = static_cast<int>(i);
    }
    path_.push_back(std::move(place));
  }
  Draw();
}

void Mmi::Back() {
  if (path_.size() < 2) return;
  path_.pop_back();
  Draw();
}

void Mmi::Type(char c) {
  constexpr char kBackspace = 8;
  constexpr char kDelete = 127;
  Place& here = Here();
  const Field& field = here.screen->fields[static_cast<std::size_t>(here.cursor)];
  std::string& entry = here.entries[static_cast<std::size_t>(here.cursor)];
  if (c == kBackspace || c == kDelete) {
    if (!entry.empty()) entry.pop_back();
  } else if (static_cast<int>(entry.size()) < field.width && c != '<' && c != '>' && c != '|' &&
             (!field.digitsOnly || IsDigit(c) || c == '+' || c == '*' || c == '#')) {
    entry += c;
  }
  Refresh();
}

void Mmi::TakeDigit(char c) {
  // The PC selects an item by its number: a single digit, or a blank and then all digits.
  if (c == ' ') number_.clear();
  if (!IsDigit(c)) return;
  number_ += c;
  const int number = std::stoi(number_);
  const auto& items = MenuHere().items;
  const bool mayGoOn =
      std::any_of(items.begin(), items.end(), [&](const Item& item) { return item.number / 10 == number; });
  if (mayGoOn && number > 0) {
    numberTimer_.Start(kNumberWait, [this] { TakeNumber(); });
  } else {
    TakeNumber();
  }
}

void Mmi::TakeNumber() {
  numberTimer_.Stop();
  if (number_.empty()) return;
  SelectItem(std::stoi(std::exchange(number_, {})));
}

const Screen& Mmi::MenuHere() const {
  // On the idle screen, a digit is a shortcut to the main menu.
  const Screen* main = FindScreen(kMainMenu);
  return Here().screen->kind == Kind::Menu || main == nullptr ? *Here().screen : *main;
}

void Mmi::SelectItem(int number) {
  const Screen& menu = MenuHere();
  const auto item = std::find_if(menu.items.begin(), menu.items.end(),
                                 [number](const Item& entry) { return entry.number == number; });
  if (item == menu.items.end()) return;
  if (Here().screen != &menu) path_.push_back({&menu, 0, {}});
  Here().cursor = static_cast<int>(item - menu.items.begin());
  Follow(item->target);
}

void Mmi::ShowMessage(const Screen& screen) {
  message_ = &screen;
  const std::string changes = status_.Apply(screen.effect);
  send_(LeaveList(Kind::Message) + Packet("MsgScreen", status_.Text(screen.title)) + changes);
  messageTimer_.Start(kMessageTime, [this] { DismissMessage(); });
}

void Mmi::DismissMessage() {
  messageTimer_.Stop();
  message_ = nullptr;
  Draw();
}

void Mmi::Print(const Screen& screen) {
  std::string job = Packet("StartPrint");
  // The PC does not insert line ends, so each row includes its own.
  const auto add = [&](std::string_view row) { job += Packet("Print", "000" + status_.Text(row) + "\r\n"); };
  if (const Screen* heading = FindScreen(kPrintHeading)) {
    for (const std::string_view row : heading->rows) add(row);
  }
  if (!screen.title.empty()) add(screen.title);
  for (int i = 1; i <= screen.times; ++i) {
    status_.SetValue("line", std::to_string(i));
    for (const std::string_view row : screen.rows) add(row);
  }
  send_(job + Packet("EndPrint"));
  Draw();
}

void Mmi::Draw() {
  std::string drawing = Drawing();
  if (message_ != nullptr) {
    drawing += LeaveList(Kind::Message) + Packet("MsgScreen", status_.Text(message_->title));
  }
  send_(drawing);
}

std::string Mmi::Drawing() {
  const Place& here = Here();
  const Kind kind = here.screen->kind;
  std::string drawing = LeaveList(kind);
  if (IsGrid(kind)) {
    drawn_ = GridRows(here, status_);
    drawing += GridDrawing(*here.screen, drawn_);
  } else {
    drawn_.clear();
    listShown_ = kind;
    drawing += ListDrawing(here);
  }
  return drawing += Packet("Paint");
}

std::string Mmi::LeaveList(Kind next) {
  const Kind shown = std::exchange(listShown_, Kind::Text);
  // The close packet is sent even if another list follows in the same burst.
  if (shown == Kind::Menu && next != Kind::Message) return Packet("CloseMenuScreen");
  if (shown == Kind::Choice && next != Kind::Choice) return Packet("CloseChoiceScreen");
  return {};
}

void Mmi::Refresh() {
  if (path_.empty() || message_ != nullptr || !IsGrid(Here().screen->kind)) return;
  const std::vector<std::string> rows = GridRows(Here(), status_);
  std::string changes;
  for (std::size_t i = 0; i < rows.size() && i < drawn_.size(); ++i) {
    if (rows[i] != drawn_[i]) changes += MoveTo(kFirstRow + static_cast<int>(i), kFirstColumn) + rows[i];
  }
  drawn_ = rows;
  // The PC holds plain text until an item follows. The escape sequence is that item.
  if (!changes.empty()) send_(changes.append(kHome));
}

}  // namespace corvex::simulation
