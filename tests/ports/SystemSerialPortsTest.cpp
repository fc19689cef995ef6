#include "ports/SystemSerialPorts.h"

#include <gtest/gtest.h>

#if defined(__linux__)

#include <filesystem>

#include "support/TempFolder.h"

namespace corvex {
namespace {

TEST(SystemSerialPorts, ListsDevicesWithHardwareAndProbesAnyDevice) {
  const test::TempFolder kernel;
  for (const char* folder : {"usb", "usb/line", "usb/line/ttyUSB0", "ttyS0", "ttyS1", "tty1", "ptmx"}) {
    std::filesystem::create_directory(kernel.Path() / folder);
  }
  kernel.Write("usb/product", "USB serial adapter \xC3\xA9\xE2\x82\xAC\n");
  for (const char* name : {"ttyS0", "ttyS1", "ptmx"}) {
    std::filesystem::create_directory_symlink(kernel.Path() / "usb/line/ttyUSB0",
                                              kernel.Path() / name / "device");
  }
  kernel.Write("ttyS0/type", "4\n");
  kernel.Write("ttyS1/type", "0\n");
  const SystemSerialPorts ports(kernel.Name());
  EXPECT_EQ(ports.Devices(), (std::vector<std::string>{"/dev/ptmx", "/dev/ttyS0"}));

  EXPECT_EQ(ports.Probe("/dev/ptmx").state, PortState::Usable);
  EXPECT_EQ(ports.Probe("/dev/ptmx").description, "USB serial adapter \xE9?");
  EXPECT_EQ(ports.Probe("ptmx").state, PortState::Usable);
  EXPECT_EQ(ports.Probe("/dev/null").state, PortState::Usable)
      << "exists, but the kernel does not list it as hardware";
  kernel.Write("file", "");
  for (const std::string& name : {std::string("/dev/no-such-device"), std::string("/dev"), std::string(),
                                  kernel.Name() + "/file", std::string(10'000, 'x')}) {
    EXPECT_EQ(ports.Probe(name).state, PortState::Absent) << name;
  }
}

}  // namespace
}  // namespace corvex

#endif
