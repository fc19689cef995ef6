#include "devices/frmNewISDN.h"

#include <gtest/gtest.h>

#include "devices/ModalUser.h"

namespace corvex {
namespace {

class frmNewISDNTest : public ::testing::Test {
 protected:
  using Look = std::function<void()>;

  /// A new ISDN device, as the device manager sets it up.
  void PrepareNew() {
    form.editIface = InterfaceType::Isdn;
    form.editing = form.handsetMode = form.editStu = form.editPriority = false;
    form.editTelPort = form.editHandset = DeviceRecord::kNone;
    form.editAccess = true;
  }
  void PreparePort(int port, ServiceType service, int id) {
    PrepareNew();
    form.editTelPort = static_cast<std::int16_t>(port);
    form.requestedService = form.editService = service;
    form.editId = id;
    form.editMsn = "02";
  }
  void PrepareHandset() {
    form.handsetMode = true;
    form.firstRecordTag = Tag("02", "4.8K Speech", "21");
    form.secondRecordTag = Tag("92", "64K Speech", "31");
    form.editPriority = false;
    form.editAccess = true;
  }
  static std::string Tag(const std::string& id, const std::string& service, const std::string& msn,
                         const std::string& rest = "0,0,1,ffffff,BRIDGE,0") {
    return id + "," + service + ",ISDN," + msn + ",0,0,1, 255, 4, 255," + rest;
  }
  std::string Run(std::string_view steps, const Look& look = {}) {
    return user.Run([this] { form.Open(); }, steps, look);
  }
  /// What the user has entered, or where the window stands.
  std::string Result() const {
    if (form.editOk)
      return HexId(form.editId) + " " + std::string(ServiceName(form.editService)) + " " + form.editMsn;
    if (!user.stillOpen) return "quit";
    const Control* focused = form.Focused();
    return focused->name() + (focused->index() < 0 ? "" : std::to_string(focused->index()));
  }
  std::string Services() const {
    std::string names;
    for (const std::string& name : form.comboDECT[0].Items()) names += name + ";";
    return names;
  }

  test::FakePlatform platform;
  Form owner{platform.loop, platform.windows, "owner"};
  UsedNumbers used{.usedIds = {1, 2, 3, 4, 0x20, 0x92}, .usedMsns = {"20", "02"}};
  TerminalModel model = TerminalModel::Heron;
  frmNewISDN form{owner, platform.platform, used, model};
  test::ModalUser user{form, platform};
};

TEST_F(frmNewISDNTest, OffersTheServicesOfTheModelAndTheInterface) {
  enum { kDevice, kPort, kHandset };
  const std::string voice = "4.8K Speech;64K Speech;3.1KHz Audio;";
  const std::string data = "56K Data (V110);64K data (UDI);";
  const auto with = [&](int use, InterfaceType iface, std::initializer_list<int> models,
                        const std::string& expected) {
    for (const int number : models) {
      model = static_cast<TerminalModel>(number);
      PrepareNew();
      form.requestedService = form.editService = ServiceType::None;
      form.editIface = iface;
      if (use == kPort) form.editTelPort = 2;
      if (use == kHandset) form.editHandset = 7;
      Run("");
      EXPECT_EQ(Services(), expected) << "model " << number << ", use " << use;
    }
  };
  with(kDevice, InterfaceType::Isdn, {0}, voice + data + "Fax;128K data (UDI);110K data (V110);");
  with(kDevice, InterfaceType::Isdn, {3, 4}, voice + data + "Fax;");
  with(kDevice, InterfaceType::Isdn, {5, 6}, voice + data);
  with(kDevice, InterfaceType::Isdn, {1, 2}, "4.8K Speech;Fax;");
  with(kDevice, InterfaceType::Isdn, {7}, "4.8K Speech;");
  with(kPort, InterfaceType::Isdn, {0, 3, 4}, voice + "Fax;");
  with(kPort, InterfaceType::Isdn, {5, 6}, voice);
  with(kPort, InterfaceType::Isdn, {1, 2}, "4.8K Speech;Fax;");
  with(kHandset, InterfaceType::Isdn, {0, 3, 4, 5, 6}, voice);
  with(kHandset, InterfaceType::Isdn, {1, 2, 7}, "4.8K Speech;");
  with(kDevice, InterfaceType::Usb, {0, 3, 4, 5, 6}, "64K data (UDI);");
  with(kDevice, InterfaceType::Rs232A, {1, 2}, "9.6kbps data;");
  // The service asked for comes first, even if the model does not have it.
  model = TerminalModel::Kestrel;
  PrepareNew();
  form.requestedService = ServiceType::Fax;
  Run("");
  EXPECT_EQ(Services(), "Fax;" + voice + data);
}

TEST_F(frmNewISDNTest, NamesWhatIsAddedOrEdited) {
  struct Case {
    InterfaceType iface;
    bool editing;
    int port;
    std::string_view title;
    std::string_view caption;
    std::string_view secondTitle;
  };
  for (const Case& c : {
           Case{InterfaceType::Isdn, true, 0, "Analog port 0 setup", "Analog port setup",
                "Analog port 0 setup"},
           Case{InterfaceType::Isdn, true, 1, "Analog port 1 setup", "Analog port setup",
                "Analog Port Setup"},
           Case{InterfaceType::Isdn, false, 1, "Change Port Setup", "Analog port setup", "Analog Port Setup"},
           Case{InterfaceType::Isdn, false, 0, "Change Port Setup", "Analog port setup", "Change Port Setup"},
           Case{InterfaceType::Isdn, false, 255, "ISDN Setup Wizard", "Add ISDN device", "ISDN Setup Wizard"},
           Case{InterfaceType::Isdn, true, 255, "ISDN Setup Editor", "Edit ISDN device", "ISDN Setup Editor"},
           Case{InterfaceType::Usb, false, 255, "USB Setup Wizard", "Add USB device", "USB Setup Wizard"},
           Case{InterfaceType::Usb, true, 255, "USB Setup Editor", "Edit USB device", "USB Setup Editor"},
           Case{InterfaceType::Rs232A, false, 255, "COM device Setup Wizard", "Add COM device",
                "COM device Setup Wizard"},
           Case{InterfaceType::Rs232B, true, 255, "COM device Setup Editor", "Edit COM device",
                "COM device Setup Editor"},
       }) {
    PreparePort(c.port, ServiceType::Speech, 9);
    form.editIface = c.iface;
    form.editing = c.editing;
    Run(c.editing ? "" : "cmdTop1", [&] { EXPECT_TRUE(form.frmConfig.visible && !form.frmIntro.visible); });
    EXPECT_EQ(form.Label1[0].caption, c.title);
    EXPECT_EQ(form.caption, c.caption);
    EXPECT_EQ(form.Label1[1].caption, c.secondTitle);
    const bool later = c.port > 0 && c.port < 255;
    EXPECT_EQ(form.labConfig.caption.Get().starts_with("Select the MSN for this port"), later) << c.title;
    EXPECT_EQ(form.labIntro.caption.Get().starts_with("To change"), c.port != 255 && !c.editing) << c.title;
  }
}

TEST_F(frmNewISDNTest, TestsTheIdAndNeverTrapsTheUser) {
  const std::string range = "A hex value between 1 and FF";
  const std::string inUse = "The Id is already in use - please delete the existing entry first";
  const std::string ask = "Already registered - overwrite?";
  struct Case {
    std::string_view steps;
    std::string boxes;
    std::string_view result;
    std::string_view text;  ///< Of the Id box.
  };
  for (const Case& c : {
           Case{"cmdTop1; cmdTop4", "", "05 4.8K Speech 21", "05"},
           Case{"enter; enter; enter", "", "05 4.8K Speech 21", "05"},
           Case{"txtDECT0=ff; cmdTop1; cmdTop4", "", "FF 4.8K Speech 21", "ff"},
           Case{"txtDECT0=; cmdTop1; cmdTop4", "", "05 4.8K Speech 21", ""},
           Case{"txtDECT0=xy; @comboDECT0", range, "txtDECT0", ""},
           Case{"txtDECT0=0; enter", range, "txtDECT0", ""},
           Case{"txtDECT0=100; cmdTop1", range, "txtDECT0", ""},
           Case{"txtDECT0=20; @comboDECT0", inUse, "txtDECT0", "20"},
           Case{"txtDECT0=20; cmdTop1; @comboDECT0; @cmdTop1", inUse + "|" + inUse + "|" + inUse, "txtDECT0",
                "20"},
           Case{"txtDECT0=20; enter", ask + "|" + inUse, "txtDECT0", "20"},
           Case{"txtDECT0=20; cmdTop0", "", "quit", "20"},
           Case{"txtDECT0=20; esc", "", "quit", "20"},
           Case{"txtDECT0=20; close", "", "quit", "20"},
           Case{"txtDECT0=20; @cmdTop0; @cmdTop1; enter", inUse, "txtDECT0", "20"},
           Case{"txtDECT0=20; @comboDECT0; txtDECT0=21; @comboDECT0", inUse, "comboDECT0", "21"},
           // Another service suggests its own Id. "Back " keeps the page.
           Case{"comboDECT0=Fax; cmdTop1; cmdTop4", "", "16 Fax 40", "16"},
           Case{"txtDECT0=77; cmdTop1; txtIsdnMSN=29; cmdTop2", "", "txtDECT0", "77"},
           Case{"cmdTop1; txtIsdnMSN=2x; cmdTop4; cmdTop1", "", "cmdTop1", "05"},
           Case{"cmdTop1; txtIsdnMSN= 20 ; cmdTop4", "", "05 4.8K Speech 20", "05"},
       }) {
    for (const auto answer : {Answer::Yes, Answer::No}) {
      platform.dialogs.answer = answer;
      PrepareNew();
      EXPECT_EQ(Run(c.steps), c.boxes) << c.steps;
      EXPECT_EQ(Result(), c.result) << c.steps;
      EXPECT_EQ(form.txtDECT[0].Text(), c.text) << c.steps;
    }
  }
  // A click that does not move the focus, and a box that is still open when the user quits.
  PrepareNew();
  Run("txtDECT0=20", [&] {
    form.cmdTop[1].click();
    form.cmdTop[1].click();
    EXPECT_TRUE(form.frmIntro.visible);
    platform.loop.Run(0);
    EXPECT_EQ(platform.dialogs.shown, std::vector{inUse});
    form.cmdTop[1].click();
    form.cmdTop[0].click();
  });
  EXPECT_EQ(platform.dialogs.shown, std::vector{inUse}) << "a message after the window has closed";
  // No Id is left: the page beeps until the user enters one.
  for (int id = 1; id < 256; ++id) used.usedIds.push_back(static_cast<std::int16_t>(id));
  EXPECT_EQ(Run("@comboDECT0; txtDECT0=; @cmdTop1; enter"), range);
  EXPECT_EQ(Result(), "txtDECT0");
  EXPECT_GT(platform.sound.bells, 0);
}

TEST_F(frmNewISDNTest, ChangesTheServiceOfAnAnalogPort) {
  struct Case {
    int model;
    ServiceType service;
    std::string_view steps;
    std::string_view boxes;
    std::string_view result;
  };
  for (const Case& c : {
           Case{0, ServiceType::Speech, "cmdTop1; cmdTop4", "", "02 4.8K Speech 02"},
           Case{0, ServiceType::Speech, "comboDECT0=Fax; cmdTop1; cmdTop4", "", "16 Fax 02"},
           Case{0, ServiceType::Speech, "comboDECT0=Fax; comboDECT0=4.8K Speech; cmdTop1; cmdTop4", "",
                "02 4.8K Speech 02"},
           Case{0, ServiceType::Udi, "cmdTop1; cmdTop4", "64K data (UDI) is illegal for this terminal",
                "02 4.8K Speech 02"},
           Case{1, ServiceType::Audio, "cmdTop1; cmdTop4", "3.1KHz Audio is illegal for Lark",
                "02 4.8K Speech 02"},
           Case{7, ServiceType::Udi, "cmdTop1; txtIsdnMSN=7; cmdTop2; cmdTop1; cmdTop4", "",
                "02 64K data (UDI) 02"},
       }) {
    model = static_cast<TerminalModel>(c.model);
    PreparePort(1, c.service, 2);
    EXPECT_EQ(Run(c.steps), c.boxes) << c.steps;
    EXPECT_EQ(Result(), c.result) << c.steps;
  }
}

TEST_F(frmNewISDNTest, ShowsTheOptionsOfTheServiceAndNothingOfAnEarlierUse) {
  const auto shown = [this] {
    std::string names;
    const CheckBox* above = nullptr;
    for (const CheckBox* box :
         {&form.CheckEcho, &form.CheckSTU, &form.CheckCharge, &form.CheckAccess[1], &form.chkPro[0]}) {
      if (!box->visible) continue;
      names += box->name() + (box->value ? "+ " : " ");
      if (above != nullptr) {
        EXPECT_LE(above->rect.Get().top + above->rect.Get().height, box->rect.Get().top);
      }
      above = box;
    }
    return names + (form.labAccessCode.visible ? "*" : "");
  };
  struct Case {
    int model;
    ServiceType service;
    std::string_view options;
  };
  for (const Case& c : {
           Case{0, ServiceType::Speech, "CheckEcho+ CheckSTU CheckCharge CheckAccess+ chkPro *"},
           Case{3, ServiceType::Speech, "CheckEcho+ CheckSTU CheckCharge CheckAccess+ *"},
           Case{0, ServiceType::Speech64, "CheckEcho+ CheckAccess+ chkPro *"},
           Case{0, ServiceType::Audio, "CheckEcho+ "},
           Case{0, ServiceType::Udi, ""},
       }) {
    model = static_cast<TerminalModel>(c.model);
    PrepareNew();
    form.requestedService = c.service;
    form.editCharge = true;  // of an earlier use
    Run("cmdTop1", [&] { EXPECT_EQ(shown(), c.options); });
    EXPECT_EQ(form.editEcho, c.options.starts_with("CheckEcho")) << "the record differs from what is shown";
    EXPECT_FALSE(form.editCharge);
    EXPECT_EQ(form.requestedService, c.service);
  }
  form.editing = true;
  form.editService = ServiceType::Speech;
  form.editEcho = false;
  form.editStu = form.editCharge = true;
  form.editMsn = "20";
  EXPECT_EQ(Run("CheckSTU=no; CheckEcho=yes; chkPro0=yes; cmdTop4",
                [&] { EXPECT_EQ(shown(), "CheckEcho+ CheckSTU CheckCharge+ CheckAccess+ chkPro+ *"); }),
            "");
  EXPECT_TRUE(form.editOk && form.editEcho && !form.editStu && form.editPriority && form.editMsn == "20");
  Run("cmdTop2");
  EXPECT_FALSE(user.stillOpen || form.editOk) << "while editing, the second page is the first";
}

TEST_F(frmNewISDNTest, EditsBothEntriesOfAHandset) {
  const std::string numeric = "The MSN must be a decimal numeric";
  const std::string unique = "Terminal Id must be unique - you have set them equal...";
  const std::string inUse = "The terminal id is already in use";
  const std::string range = "The terminal id must be a value between 0 and FF (hex)";
  const std::string first = Tag("02", "4.8K Speech", "21");
  const std::string second = Tag("92", "64K Speech", "31");
  const std::string bridge = "0,0,1,ffffff,FWD-CABIN-2,0";
  struct Case {
    std::string_view steps;
    std::string boxes;
    std::string first;
    std::string second;
  };
  for (const Case& c : {
           Case{"", "", first, second},
           Case{"txtName=Fwd cabin,2", "", Tag("02", "4.8K Speech", "21", bridge),
                Tag("92", "64K Speech", "31", bridge)},
           Case{"txtName=", "", Tag("02", "4.8K Speech", "21", "0,0,1,ffffff,unset,0"),
                Tag("92", "64K Speech", "31", "0,0,1,ffffff,unset,0")},
           Case{"txtHsMsn1= 33 ", "", first, Tag("92", "64K Speech", "33")},
           Case{"txtHsMsn1=3x", numeric, "", ""},
           Case{"txtHsMsn0=", numeric, "", ""},
           Case{"tstHsDoid0=2; tstHsDoid1=1f", "", first, Tag("1F", "64K Speech", "31")},
           Case{"tstHsDoid0=92; tstHsDoid1=2", "", Tag("92", "4.8K Speech", "21"),
                Tag("02", "64K Speech", "31")},
           Case{"tstHsDoid1=2", unique, "", ""},
           Case{"tstHsDoid1=3", inUse, "", ""},
           Case{"tstHsDoid0=100", range, "", ""},
           Case{"tstHsDoid1=", range, "", ""},
           // The box's "92" is read as a decimal number, so it is no Id of 64K Speech.
           Case{"comboHS0=64K Speech", "", Tag("91", "64K Speech", "30"), second},
           Case{"comboHS1=4.8K Speech", "", first, Tag("05", "4.8K Speech", "21")},
           // Back to the old service of the second MSN: the first Id returns, the second does not.
           Case{"tstHsDoid0=1F; comboHS1=3.1KHz Audio; comboHS1=64K Speech", "", first,
                Tag("61", "64K Speech", "31")},
           Case{"CheckAccess0=no; chkPro1=yes", "", Tag("02", "4.8K Speech", "21", "0,1,0,ffffff,BRIDGE,0"),
                Tag("92", "64K Speech", "31", "0,1,0,ffffff,BRIDGE,0")},
       }) {
    PrepareHandset();
    EXPECT_EQ(Run(std::string(c.steps) + (c.steps.empty() ? "" : "; ") + "cmdTop3"), c.boxes) << c.steps;
    EXPECT_EQ(form.editOk, c.boxes.empty()) << c.steps;
    const bool done = c.boxes.empty();
    EXPECT_EQ(form.firstRecordTag, done ? c.first : first) << c.steps;
    EXPECT_EQ(form.secondRecordTag, done ? c.second : second) << c.steps;
    if (done) {
      EXPECT_EQ(form.firstChanged, c.first != first) << c.steps;
      EXPECT_EQ(form.secondChanged, c.second != second) << c.steps;
    }
  }
  PrepareHandset();
  form.secondRecordTag = Tag("92", "Fax", "40");
  model = TerminalModel::Lark;
  Run("txtName=a b; @txtHsMsn0; cmdTop5");
  EXPECT_FALSE(form.editOk);
  EXPECT_EQ(form.comboHS[1].Items(), (std::vector<std::string>{"Fax", "4.8K Speech"}));
  EXPECT_EQ(form.txtName.Text(), "A-B");
}

}  // namespace
}  // namespace corvex
