#include "forms/FileBrowser.h"

#include <gtest/gtest.h>

#include "support/FakePlatform.h"

namespace corvex {
namespace {

struct Holder : Form {
  Holder(EventLoop& l, WindowSystem& w, Dialogs& d)
      : Form(l, w, "holder"), browser(*this, {.rect = {100, 100, 3000, 330}, .toolTip = "tip"}, d) {
    browser.change = [this] { log += "change "; };
    browser.propertyChanged = [this](std::string_view name) { log += std::string(name) + ' '; };
  }
  FileBrowser browser;
  Label label{*this, {}};
  std::string log;
};

class FileBrowserTest : public ::testing::Test {
 protected:
  test::VirtualLoop loop;
  test::FakeWindows windows;
  test::FakeDialogs dialogs;
  Holder form{loop, windows, dialogs};
  FileBrowser& browser = form.browser;
};

TEST_F(FileBrowserTest, ThePickedPathGoesIntoTheBox) {
  dialogs.file = "  /tmp/a b.txt ";
  browser.cmdBrowse.click();
  EXPECT_EQ(browser.Text(), "/tmp/a b.txt");
  EXPECT_EQ(form.log, "Text change ");
  EXPECT_TRUE(browser.cmdBrowse.HasFocus());
  browser.ReadProperties({{"FileDialogType", "7"}, {"Text", "old"}, {"Title", "Save"}, {"InitDir", "/tmp"}});
  for (const auto& given : {std::optional<std::string>(), std::optional<std::string>("   ")}) {
    dialogs.file = given;
    KeyEvent altDown{.keyCode = 40, .alt = true};
    browser.TakeKey(altDown);
    EXPECT_TRUE(altDown.handled);
    EXPECT_EQ(browser.Text(), "old");
  }
  for (KeyEvent other : {KeyEvent{.keyCode = 40, .shift = true, .alt = true}, KeyEvent{.keyCode = 40}}) {
    browser.TakeKey(other);
    EXPECT_FALSE(other.handled);
  }
  form.label.SetFocus();
  KeyEvent elsewhere{.keyCode = 40, .alt = true};
  browser.TakeKey(elsewhere);
  browser.txtFolder.drop({});
#ifdef _WIN32
  const std::string open = "open/Open/*.*/C:\\";
#else
  const std::string open = "open/Open/*.*//";
#endif
  const std::string save = "save/Save/*.*//tmp";
  EXPECT_EQ(dialogs.shown, (std::vector<std::string>{open, save, save, "hello"}));
}

TEST_F(FileBrowserTest, ReadsAndWritesItsPropertiesInABag) {
  PropertyBag bag{{"BackColor", "255"},
                  {"Enabled", "no"},
                  {"FileDialogType", "-5"},
                  {"Filter", "Text|*.txt|"},
                  {"Font", "Courier,9.5,bold,underline"},
                  {"InitDir", "/tmp"},
                  {"Locked", "yes"},
                  {"SelLength", "2"},
                  {"SelStart", "1"},
                  {"SelText", "bc"},
                  {"Text", "abcd"},
                  {"Title", "Save"}};
  browser.ReadProperties(bag);
  const Font font{.name = "Courier", .size = 9.5, .bold = true, .underline = true};
  EXPECT_EQ(browser.txtFolder.font.Get(), font);
  PropertyBag written{{"ForeColor", "1"}};
  browser.WriteProperties(written);
  EXPECT_EQ(written, bag);
  browser.SetSelLength(99);
  EXPECT_EQ(browser.SelText(), "bcd");
  browser.SetSelText("x");
  EXPECT_EQ(browser.Text(), "ax");

  for (const char* bad : {"?", "", "99999999999", "16777216", "Courier,0"}) {
    SCOPED_TRACE(bad);
    for (const char* name : {"BackColor", "Enabled", "Font", "Locked", "SelLength", "SelStart"})
      bag[name] = bad;
    bag["FileDialogType"] = std::string(bad) + '?';
    for (const char* name : {"Filter", "InitDir", "SelText", "Text", "Title"}) bag.erase(name);
    browser.ReadProperties(bag);
    browser.WriteProperties(written);
    EXPECT_EQ(written, PropertyBag());
  }
}

}  // namespace
}  // namespace corvex
