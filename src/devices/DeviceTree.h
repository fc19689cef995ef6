#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "devices/DeviceRecord.h"
#include "devices/UsedNumbers.h"
#include "forms/TreeView.h"
#include "state/TerminalModel.h"

namespace corvex {

/// The content of the device manager's trees and of its panel of serial ports, as plain data. The terminal's
/// entries are added one by one.
class DeviceTree {
 public:
  /// What has become of an entry.
  enum class Place {
    Shown,
    Waits,          ///< An analog port: shown as soon as all four are known.
    NoId,           ///< The Terminal Id is not above 0.
    NoCategory,     ///< The terminal model has no category for the service.
    AlreadyThere,   ///< The same entry is shown already.
    DuplicatePort,  ///< The analog port has an entry already.
    Replaces,       ///< A serial port: shown in place of an earlier entry.
    NoPort,         ///< There is no analog port with this number.
  };

  /// Removes everything and adds the categories of a terminal model.
  void Reset(TerminalModel model);
  Place Add(const DeviceRecord& record);

  Tree devices;
  Tree ports;
  Tree handsets;
  struct SerialText {
    std::string caption;
    std::string tag;  ///< The entry in its tag form. Empty if the port has none.
  };
  std::array<SerialText, 3> serial;  ///< RS232(A), RS232(B), USB.
  UsedNumbers used;
  std::array<PortRecord, 4> portTable;  ///< An `id` of 0 means that the port has no entry.
  int portCount = 0;

 private:
  void AddCategory(ServiceType service);
  Place AddIsdn(const DeviceRecord& record);
  Place AddSerial(const DeviceRecord& record);
  Place AddPort(const DeviceRecord& record);
  void ShowPorts();
  Place AddHandset(const DeviceRecord& record);

  std::map<std::int16_t, std::vector<int>> handsetNodes_;  ///< The parent nodes of each handset number.
};

/// Returns whether a node of the handset tree is a handset, not one of its MSNs.
bool IsAHandsetNode(std::string_view text);

/// Returns the service of the category with this key, for a new device. Returns None for any other key.
ServiceType ServiceOfCategory(std::string_view key);
/// Returns the service that the context menu names for a node with this key, or None.
ServiceType ServiceOfKey(std::string_view key);

/// Reads the tag of a node. Returns false for the empty tag of a category.
inline bool RecordOfTag(std::string_view tag, DeviceRecord& record) {
  return !tag.empty() && ParseTagRecord(tag, kTagSeparator, record) > 0;
}
/// Returns whether the tag of an entry has exactly its fields. A comma in the MSN or the name adds a field,
/// and the fields after it are then read from the wrong places.
bool TagIsExact(std::string_view tag);

}  // namespace corvex
