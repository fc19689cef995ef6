#include "devices/frmComSetup.h"

#include <gtest/gtest.h>

#include "devices/ModalUser.h"
#include "devices/frmLogin.h"

namespace corvex {
namespace {

class ModalPanelsTest : public ::testing::Test {
 protected:
  test::FakePlatform platform;
  Form owner{platform.loop, platform.windows, "owner"};
};

TEST_F(ModalPanelsTest, ASerialPortKeepsItsOldIdUnlessTheNewOneIsFree) {
  const std::string inUse = "The selected Id is already used - please delete the existing entry first";
  const UsedNumbers used{.usedIds = {0x51, 0x5, 0xFF}, .usedMsns = {}};
  frmComSetup form{owner, platform.platform, used};
  test::ModalUser user{form, platform};
  struct Case {
    int id;
    std::string_view steps;
    std::string boxes;
    std::string result;
  };
  for (const Case& c : {
           Case{0x51, "Command10", "", "closed 51 60"},
           Case{0x51, "@txtPortField1; Command11", "", "closed 51 60"},
           Case{0x51, "txtPortField0=5; txtPortField0=5A; Command10", "", "closed 5A 60 changed"},
           Case{0x51, "txtPortField0=fe; enter", "", "closed FE 60 changed"},
           Case{0x51, "txtPortField0=5; enter", inUse, "open 51 60 changed"},
           Case{0x51, "txtPortField0=5; Command10; Command10", inUse, "closed 51 60 changed"},
           Case{0x51, "txtPortField0=5; @txtPortField1", inUse, "open 51 60 changed"},
           Case{0x51, "txtPortField0=5; txtPortField0=FF; enter", inUse, "closed 51 60 changed"},
           Case{0x51, "txtPortField0=", "Out of range", "open 51 60"},
           Case{0x51, "txtPortField0=G; txtPortField0=100", "Out of range|Out of range", "open 51 60"},
           Case{0xFF, "@txtPortField1; Command10", "", "closed FF 60"},
           Case{0x51, "txtPortField1=; txtPortField1=61; Command11", "", "closed 51 61 changed"},
           Case{0x51, "txtPortField1=61; txtPortField1=6x", "Must be numeric", "open 51 61 changed"},
           Case{0x51, "@txtPortField1; txtPortField1=; enter", "Must be numeric", "open 51 60"},
           Case{0x51, "txtPortField0=5A; txtPortField0=5; esc", "", "closed 5 60"},
           Case{0x51, "txtPortField0=5; close", "", "closed 5 60"},
       }) {
    const DeviceRecord record{
        .id = static_cast<std::int16_t>(c.id), .iface = InterfaceType::Rs232A, .msn = "60"};
    std::string result;
    const auto look = [&] {
      result = (form.visible ? "open " : "closed ") + ShortHex(form.newId) + " " + form.msn +
               (form.changed ? " changed" : "");
      // What an open panel shows is what its buttons take.
      if (form.visible) {
        EXPECT_EQ(form.txtPortField[0].Text(), ShortHex(form.newId)) << c.steps;
        EXPECT_EQ(form.txtPortField[1].Text(), form.msn) << c.steps;
      }
    };
    EXPECT_EQ(user.Run([&] { form.Open(record, 2); }, c.steps, look), c.boxes) << c.steps;
    EXPECT_EQ(result, c.result) << c.steps;
    EXPECT_EQ(form.oldId, c.id);
    EXPECT_EQ(form.lblPortname.caption, "RS232(A)");
  }
}

TEST_F(ModalPanelsTest, ThePasswordStaysNowhereButWithTheCaller) {
  frmLogin form{owner};
  test::ModalUser user{form, platform};
  const auto open = [&] { form.Open(); };
  user.Run(open, "txtPassword=sea; enter");
  EXPECT_TRUE(form.loginOk);
  EXPECT_EQ(form.TakePassword(), "sea");
  EXPECT_EQ(form.loginPassword + form.txtPassword.Text(), "");
  user.Run(open, "enter");
  EXPECT_TRUE(form.loginOk) << "an empty password is possible";
  for (const auto* steps : {"txtPassword=sea; esc", "txtPassword=sea; cmdCancel", "txtPassword=sea; close"}) {
    form.loginPassword = "earlier";
    user.Run(open, steps);
    EXPECT_FALSE(form.loginOk) << steps;
    EXPECT_EQ(form.loginPassword + form.txtPassword.Text(), "") << steps;
  }
}

}  // namespace
}  // namespace corvex
