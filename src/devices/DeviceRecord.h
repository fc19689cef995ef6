#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The entries of the terminal's configuration, and the three forms of their text. The terminal sends and
// stores an entry in its wire form. Windows keep entries in the tag form. The printed form is for the user.

namespace corvex {

/// What kind of call an entry carries. Other numbers are possible: they are kept but have no name.
enum class ServiceType : std::int32_t {
  Speech = 0,
  Speech64 = 1,
  Audio = 2,
  V110 = 3,
  Udi = 4,
  Mpds = 5,
  Fax = 6,
  Data9k6 = 7,
  Udi128 = 8,
  V110At128 = 9,
  None = 15,
};

/// Where an entry is connected. Number 1 is not used. Other numbers are possible, but have no name.
enum class InterfaceType : std::int32_t {
  Isdn = 0,
  Usb = 2,
  Rs232A = 3,
  Rs232B = 4,
  None = 5,
  Unset = 15,
};

/// The kind of an entry follows from its fields.
enum class DeviceKind { AnalogPort, Handset, SerialPort, Isdn };

/// An entry of the terminal's configuration. The order of the members is the order in the tag form.
struct DeviceRecord {
  static constexpr std::int16_t kNone = 255;     ///< No analog port, or no handset.
  static constexpr std::int16_t kMissing = 254;  ///< A handset that the terminal does not find.

  std::int16_t id = -1;  ///< Terminal Id, the terminal's key of the entry. Valid from 1 to 255.
  ServiceType service = ServiceType::None;
  InterfaceType iface = InterfaceType::Unset;
  std::string msn = "-1";     ///< Directory number.
  std::int32_t auxValue = 0;  ///< Kept unchanged. Its meaning is known only to the terminal.
  bool stuCapable = false;    ///< Secure telephony units are allowed.
  bool echoCancel = true;
  std::int16_t telPort = kNone;  ///< Analog port: 0 to 3 for Tel 1 to Tel 4.
  std::int16_t handset = kNone;  ///< Number of the handset. A handset has two entries, one for each MSN.
  std::int32_t auxIndex = 255;   ///< Kept unchanged. Its meaning is known only to the terminal.
  bool distressBox = false;      ///< A distress box is connected to the handset.
  bool priority = false;
  bool accessCodes = true;             ///< Each call requires an access code.
  std::string hexIdentity = "ffffff";  ///< Kept unchanged. Its meaning is known only to the terminal.
  std::string name = "unset";          ///< Name or place of a handset.
  bool chargeTone = false;

  DeviceKind Kind() const;
  friend bool operator==(const DeviceRecord&, const DeviceRecord&) = default;
};

using PortRecord = DeviceRecord;     ///< An entry with a telPort.
using HandsetRecord = DeviceRecord;  ///< An entry with a handset and without a telPort.

/// Returns the display name, or an empty text for a number without a name.
std::string_view ServiceName(ServiceType service);
/// Returns the service with this name. Case is ignored. Returns Speech for an unknown name.
ServiceType ServiceFromName(std::string_view name);
std::string_view InterfaceName(InterfaceType iface);
/// Returns the interface with this name. Case is ignored. Returns Isdn for an unknown name and for "MPDS".
InterfaceType InterfaceFromName(std::string_view name);

/// Returns "1" or "0".
std::string_view FlagText(bool flag);
/// Returns whether the number at the start of the text is not zero.
bool ParseFlag(std::string_view text);

/// Formats a number in upper-case hexadecimal. Values from 0 to 15 get a leading zero. A negative value is
/// formatted as 16 bits.
std::string HexId(std::int32_t id);
/// Formats a number in upper-case hexadecimal without a leading zero.
std::string ShortHex(std::int32_t id);
/// Returns the value of a text of hexadecimal digits. Blanks around them are allowed. Returns nullopt for any
/// other text, and for a value of more than 32 bits.
std::optional<std::int32_t> ParseHex(std::string_view text);

/// Appends an entry to a list of entries in their wire form. Returns false and appends nothing if the entry
/// or the list is longer than in any terminal. What is read is then not a configuration.
bool AddEntry(std::vector<std::string>& entries, std::string_view entry);
inline constexpr std::size_t kMostEntries = 32767;   ///< The number of positive 16-bit Ids.
inline constexpr std::size_t kMostEntrySize = 1000;  ///< Bytes.

void ResetRecord(DeviceRecord& record);

/// Reads the wire form: 16 fields, separated by single blanks. Further fields are ignored. If the text ends
/// early, or a number does not fit its field, that field and all later ones keep their default values.
/// Returns the number of fields that were read.
int ParseWireRecord(std::string_view text, DeviceRecord& record);
inline constexpr int kWireFields = 16;

/// Reads the tag form. Blanks around the text are ignored. Errors are handled as in ParseWireRecord.
int ParseTagRecord(std::string_view text, char separator, DeviceRecord& record);
std::string FormatTagRecord(const DeviceRecord& record, char separator);
inline constexpr char kTagSeparator = ',';

/// Returns a description of an entry for the user: several lines, each ended by CR LF.
std::string DescribeRecord(const DeviceRecord& record);

}  // namespace corvex
