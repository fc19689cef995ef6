#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "session/frmTerm.h"
#include "settings/SettingsAlarm.h"
#include "support/FakePlatform.h"

namespace corvex::test {

/// The whole program on fakes of the platform.
struct Program : FakePlatform {
  using FakePlatform::FakePlatform;

  /// Loads the main window and lets `seconds` pass.
  void Start(double seconds) {
    loop.Enter([this] { term.Load(); });
    loop.Run(seconds);
  }
  /// Runs a click or another event as the window system delivers it.
  void Do(const EventLoop::Task& task) { loop.Enter(task); }

  frmTerm term{platform, settings};
  SettingsAlarm alarm{settings, loop, dialogs};
};

/// The far side of a line. Answers by a table of commands and replies: the first command with which the bytes
/// since the last answer end gets its reply.
class Responder {
 public:
  using Table = std::vector<std::pair<std::string, std::string>>;

  template <typename Port>
  Responder(Port& port, Table table) : table_(std::move(table)) {
    port.onSent = [this, &port](std::string_view bytes) {
      heard_ += bytes;
      for (const auto& [command, reply] : table_) {
        if (heard_.ends_with(command)) {
          heard_.clear();
          port.Arrive(reply);
          return;
        }
      }
    };
  }
  /// A new reply to a known command replaces the old one.
  void Answer(std::string command, std::string reply) {
    for (auto& [known, old] : table_) {
      if (known == command) {
        old = std::move(reply);
        return;
      }
    }
    table_.emplace_back(std::move(command), std::move(reply));
  }

 private:
  Table table_;
  std::string heard_;
};

/// A modem that answers the probe as a Heron that allows upgrades and starts the tag stream.
inline Responder::Table HeronModem() {
  return {{"ate1\r\n", "ate1\r\r\nOK\r\n"},
          {"at+gmm\r\n", "at+gmm\r\r\n204417\r\n\r\nOK\r\n"},
          {"at+wquilcswvload\r\n", "\r\nPROTOCOL 3\r\n"},
          {"AT+WQUILSTARTTMLB\r\n", "\r\nOK\r\n"}};
}

/// The answers of a unit at the owner level, with a small configuration.
inline Responder::Table ConfiguredUnit() {
  return {{"at+wquilconfig\r\n", "<CONFIG ACTIVE>"},
          {"gfd\r\n", "<dd>"},
          {"gtlevel\r\n", "OWNER"},
          {"gadd\r\n",
           "<SL>001<dd>1 0 0 20 0 0 1 255 255 255 0 0 1 ffffff unset 0|"
           "<dd>171 0 1 30 0 0 1 255 255 255 0 0 1 ffffff unset 0|"
           "<dd>33 0 0 01 0 0 1 0 255 255 0 0 1 ffffff unset 0|"
           "<dd>34 0 6 02 0 0 1 1 255 255 0 0 1 ffffff unset 0|"
           "<dd>35 0 2 03 0 0 1 2 255 255 0 0 1 ffffff unset 0|"
           "<dd>36 0 1 04 0 0 1 3 255 255 0 0 1 ffffff unset 0|"
           "<dd>49 0 0 21 0 0 1 255 1 255 1 0 1 ffffff BRIDGE 0|"
           "<dd>50 0 1 31 0 0 1 255 1 255 1 0 1 ffffff BRIDGE 0|"
           "<dd>81 3 4 60 0 0 1 255 255 255 0 0 1 ffffff unset 0|<EOL>"},
          {"ladd\r\n", "<dduo>"},
          {"cadd\r\n", "<dduo>"},
          {"padd\r\n", "<dduo>"},
          {"badd\r\n", "<dduo>"},
          {" 0 0 \r\n", "<dduo>"}};
}

/// The bytes that the program sends over a serial port from its start until it enters the modem's menus.
inline const std::string kConnect =
    "\x18"
    "ate1\r\nat+gmm\r\nat+wquilcswvload\r\n"
    "\x18"
    "AT+WQUILSTARTTMLB\r\n\x12"
    "\x1B\x12\x1B\x1B\x12\x1B";

/// A program in the modem's menus over a serial port.
struct Session {
  Session() {
    p.Start(3);
    EXPECT_EQ(term.main().mode, ModemMode::Terminal);
  }
  void Feed(std::string_view bytes, double seconds = 0.01) {
    p.comPort.Arrive(bytes);
    p.loop.Run(seconds);
  }

  Program p;
  Responder modem{p.comPort, HeronModem()};
  frmTerm& term = p.term;
};

struct SessionTest : ::testing::Test, Session {};

}  // namespace corvex::test
