#include "devices/DeviceRecord.h"

#include <gtest/gtest.h>

#include "devices/UsedNumbers.h"

namespace corvex {
namespace {

TEST(DeviceRecordTest, AWireLineReadsIntoARecordAndItsTagIntoTheSame) {
  struct Case {
    std::string_view wire;
    int fields;
    std::string_view tag;
  };
  // Whatever follows the first field that is missing or too large keeps its default.
  for (const Case& c : {
           Case{"21 0 1 30 0 0 1 255 255 255 0 0 1 ffffff unset 0", 16,
                "15,64K Speech,ISDN,30,0,0,1, 255, 255, 255,0,0,1,ffffff,unset,0"},
           Case{"171 3 4 60 -7 2 0 0 3 -1 1 1 0 0a AFT-CABIN 1 0 0", 16,
                "AB,64K data (UDI),RS232(A),60,-7,1,0, 0, 3,-1,1,1,0,0a,AFT-CABIN,1"},
           Case{"", 1, "00,None,,-1,0,0,1, 255, 255, 255,0,0,1,ffffff,unset,0"},
           Case{"9 2 7 61", 4, "09,9.6kbps data,USB,61,0,0,1, 255, 255, 255,0,0,1,ffffff,unset,0"},
           Case{"40000 0 1 30", 0, "FFFF,None,,-1,0,0,1, 255, 255, 255,0,0,1,ffffff,unset,0"},
           Case{"1 0 0 20 0 0 1 70000 3", 7,
                "01,4.8K Speech,ISDN,20,0,0,1, 255, 255, 255,0,0,1,ffffff,unset,0"},
           Case{"1 0 0 20 4294967296 1", 4,
                "01,4.8K Speech,ISDN,20,0,0,1, 255, 255, 255,0,0,1,ffffff,unset,0"},
           Case{"5  0 2 40", 5, "05,4.8K Speech,ISDN,2,40,0,1, 255, 255, 255,0,0,1,ffffff,unset,0"},
           Case{"&hFF 0 0 x y abc -1", 7, "FF,4.8K Speech,ISDN,x,0,0,1, 255, 255, 255,0,0,1,ffffff,unset,0"},
       }) {
    DeviceRecord record;
    record.name = "earlier";
    EXPECT_EQ(ParseWireRecord(c.wire, record), c.fields) << c.wire;
    EXPECT_EQ(FormatTagRecord(record, kTagSeparator), c.tag) << c.wire;
    if (record.iface == InterfaceType::Unset) continue;  // it has no name
    DeviceRecord again;
    ParseTagRecord(std::string(" ") + std::string(c.tag) + " ", kTagSeparator, again);
    EXPECT_EQ(FormatTagRecord(again, kTagSeparator), c.tag);
  }
}

TEST(DeviceRecordTest, ThePrintedFormNamesOnlyWhatAppliesToTheService) {
  const auto printed = [](std::string_view wire) {
    DeviceRecord record;
    ParseWireRecord(wire, record);
    return DescribeRecord(record);
  };
  EXPECT_EQ(printed("1 0 0 20 0 0 1 255 255 255 0 0 1 ffffff unset 0"),
            "ID = 01 MSN 20\r\n    Service 4.8K Speech on the  ISDN interface\r\n"
            "    Attributes:  Stu incapable EchoCancel ON  Access codes apply No Charge Tone \r\n");
  EXPECT_EQ(printed("161 0 1 30 0 1 0 3 5 255 1 0 0 ffffff BRIDGE 1"),
            "ID = A1 MSN 30\r\n    Service 64K Speech on  Tel 4\r\n"
            "    Attributes:  EchoCancel OFF  Access codes surpressed  Charge Tone applies\r\n"
            "    Distress Box attached\r\n    Handset Name = BRIDGE\r\n");
  EXPECT_EQ(printed("17 0 6 40 0 1 0 4 254 255 0 0 0 ffffff BRIDGE 1"),
            "ID = 11 MSN 40\r\n    Service Fax on the  ISDN interface\r\n    Attributes: \r\n");
}

TEST(DeviceRecordTest, NamesNumbersAndKinds) {
  EXPECT_EQ(ServiceFromName("64k sPEECH"), ServiceType::Speech64);
  EXPECT_EQ(ServiceFromName(""), ServiceType::Speech);
  EXPECT_EQ(InterfaceFromName("rs232(b)"), InterfaceType::Rs232B);
  for (const auto* name : {"MPDS", "nonsense"}) EXPECT_EQ(InterfaceFromName(name), InterfaceType::Isdn);
  EXPECT_EQ(InterfaceName(static_cast<InterfaceType>(1)), "");
  EXPECT_EQ(HexId(15) + HexId(16) + HexId(255) + HexId(-1) + ShortHex(10), "0F10FFFFFFA");
  EXPECT_EQ(ParseHex(" fF "), 255);
  for (const auto* text : {"", " ", "G", "-1", "1 2", "&h1", "100000000"})
    EXPECT_FALSE(ParseHex(text)) << text;
  EXPECT_TRUE(ParseFlag("2") && ParseFlag("-1") && ParseFlag("&h1"));
  EXPECT_FALSE(ParseFlag("abc") || ParseFlag("") || ParseFlag("0"));
  EXPECT_EQ((DeviceRecord{.telPort = 0, .handset = 3}.Kind()), DeviceKind::AnalogPort);
  EXPECT_EQ((DeviceRecord{.iface = InterfaceType::Usb, .handset = 3}.Kind()), DeviceKind::Handset);
  EXPECT_EQ(DeviceRecord{.iface = InterfaceType::Usb}.Kind(), DeviceKind::SerialPort);
  EXPECT_EQ(DeviceRecord{.iface = InterfaceType::None}.Kind(), DeviceKind::Isdn);
}

TEST(UsedNumbersTest, SuggestsIdsAndMsnsThatAreFree) {
  using enum ServiceType;
  UsedNumbers used;
  EXPECT_EQ(used.FirstFreeMsn(Speech, true), "01");
  EXPECT_EQ(used.NextFreeId(Mpds, -1, TerminalModel::Heron), 0);
  for (int id = 1; id <= 4; ++id) used.usedIds.push_back(static_cast<std::int16_t>(id));
  for (int id = 145; id <= 255; ++id) used.usedIds.push_back(static_cast<std::int16_t>(id));
  for (int msn = 50; msn <= 54; ++msn) used.usedMsns.push_back(std::to_string(msn));
  used.usedMsns.insert(used.usedMsns.end(), {"01", "02", "30"});
  struct Case {
    ServiceType service;
    std::int32_t current;
    std::int32_t id;
    std::string_view msn;
  };
  for (const Case& c : {
           Case{Speech, 9999, 5, "20"},
           Case{Speech, 4, 4, "20"},
           Case{Speech, 16, 16, "20"},
           Case{Speech, 17, 5, "20"},
           Case{None, 9999, 5, "00"},
           Case{Speech64, 9999, 0, "31"},
           Case{Speech64, 200, 200, "31"},
           Case{Audio, 9999, 97, "40"},
           Case{V110, 9999, 113, ""},
           Case{Udi, 9999, 81, "60"},
           Case{Data9k6, 96, 96, "60"},
           Case{Fax, 9999, 17, "40"},
           Case{Udi128, 9999, 134, "65"},
           Case{V110At128, 9999, 136, "65"},
       }) {
    EXPECT_EQ(used.NextFreeId(c.service, c.current, TerminalModel::Wren), c.id) << ServiceName(c.service);
    EXPECT_EQ(used.FirstFreeMsn(c.service, false), c.msn) << ServiceName(c.service);
  }
  EXPECT_EQ(used.NextFreeId(Fax, 9999, TerminalModel::Heron), 22);
  EXPECT_EQ(used.FirstFreeMsn(Fax, true), "03");
  EXPECT_EQ(MsnCandidates(Data9k6, false).back(), "69");
}

}  // namespace
}  // namespace corvex
