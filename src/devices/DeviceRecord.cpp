#include "devices/DeviceRecord.h"

#include <array>
#include <charconv>
#include <utility>

#include "base/Text.h"

namespace corvex {

namespace {

constexpr std::array<std::pair<ServiceType, std::string_view>, 11> kServices{{
    {ServiceType::Speech, "4.8K Speech"},
    {ServiceType::Speech64, "64K Speech"},
    {ServiceType::Audio, "3.1KHz Audio"},
    {ServiceType::V110, "56K Data (V110)"},
    {ServiceType::Udi, "64K data (UDI)"},
    {ServiceType::Mpds, "MPDS"},
    {ServiceType::Fax, "Fax"},
    {ServiceType::Data9k6, "9.6kbps data"},
    {ServiceType::Udi128, "128K data (UDI)"},
    {ServiceType::V110At128, "110K data (V110)"},
    {ServiceType::None, "None"},
}};

constexpr std::array<std::pair<InterfaceType, std::string_view>, 5> kInterfaces{{
    {InterfaceType::Isdn, "ISDN"},
    {InterfaceType::Usb, "USB"},
    {InterfaceType::Rs232A, "RS232(A)"},
    {InterfaceType::Rs232B, "RS232(B)"},
    {InterfaceType::None, "None"},
}};

template <typename Table, typename Value>
std::string_view NameOf(const Table& table, Value value) {
  for (const auto& [number, name] : table) {
    if (number == value) return name;
  }
  return {};
}

template <typename Table, typename Value>
Value ValueOf(const Table& table, std::string_view text, Value otherwise) {
  for (const auto& [number, name] : table) {
    if (EqualNoCase(name, text)) return number;
  }
  return otherwise;
}

/// Numbers after "&h" are hexadecimal. As in HexId, four digits or fewer are 16 bits with a sign.
std::optional<std::int32_t> HexPrefix(std::string_view text) {
  std::uint64_t value = 0;
  std::size_t digits = 0;
  for (; digits < text.size(); ++digits) {
    const char c = UpperCase(text[digits]);
    const int digit = IsDigit(c) ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
    if (digit < 0) break;
    if (value >> 32 != 0) return std::nullopt;
    value = value * 16 + static_cast<unsigned>(digit);
  }
  if (value >> 32 != 0) return std::nullopt;
  if (digits <= 4) return static_cast<std::int16_t>(value);
  return static_cast<std::int32_t>(value);
}

/// The digits after "&h", which marks a hexadecimal number.
std::optional<std::string_view> HexDigits(std::string_view text) {
  text = TrimBlanks(text);
  if (text.size() < 2 || !EqualNoCase(text.substr(0, 2), "&h")) return std::nullopt;
  return text.substr(2);
}

std::optional<std::int32_t> Number32(std::string_view text) {
  const auto hex = HexDigits(text);
  return hex ? HexPrefix(*hex) : PrefixInt32(text);
}

std::optional<std::int16_t> Fit16(std::optional<std::int32_t> value) {
  if (!value || *value < INT16_MIN || *value > INT16_MAX) return std::nullopt;
  return static_cast<std::int16_t>(*value);
}

/// Reads the fields of a record in turn, until one is missing or does not fit.
class FieldReader {
 public:
  FieldReader(std::string_view text, char separator) : fields_(text, separator) {}

  FieldReader& Take(std::int16_t& field) { return Store(field, &ReadInt16); }
  FieldReader& Take(std::int32_t& field) { return Store(field, &Number32); }
  FieldReader& Take(bool& field) { return Store(field, &ReadFlag); }
  FieldReader& Take(std::string& field) { return Store(field, &ReadText); }
  FieldReader& Take(ServiceType& field) { return Store(field, &ReadNumber<ServiceType>); }
  FieldReader& Take(InterfaceType& field) { return Store(field, &ReadNumber<InterfaceType>); }
  FieldReader& TakeHex(std::int16_t& field) { return Store(field, &ReadHexInt16); }
  FieldReader& TakeName(ServiceType& field) { return Store(field, &ReadService); }
  FieldReader& TakeName(InterfaceType& field) { return Store(field, &ReadInterface); }
  int Count() const { return count_; }

 private:
  template <typename Field, typename Value>
  FieldReader& Store(Field& field, std::optional<Value> (*read)(std::string_view)) {
    if (ended_) return *this;
    ended_ = !fields_.More();
    if (ended_) return *this;
    if (auto value = read(fields_.Next())) {
      field = std::move(*value);
      ++count_;
    } else {
      ended_ = true;
    }
    return *this;
  }

  static std::optional<std::int16_t> ReadInt16(std::string_view text) { return Fit16(Number32(text)); }
  static std::optional<std::int16_t> ReadHexInt16(std::string_view text) {
    return Fit16(HexPrefix(TrimBlanks(text)));
  }
  static std::optional<bool> ReadFlag(std::string_view text) { return ParseFlag(text); }
  static std::optional<std::string> ReadText(std::string_view text) { return std::string(text); }
  template <typename Enum>
  static std::optional<Enum> ReadNumber(std::string_view text) {
    const auto number = Number32(text);
    return number ? std::optional(static_cast<Enum>(*number)) : std::nullopt;
  }
  static std::optional<ServiceType> ReadService(std::string_view text) { return ServiceFromName(text); }
  static std::optional<InterfaceType> ReadInterface(std::string_view text) { return InterfaceFromName(text); }

  Fields fields_;
  bool ended_ = false;
  int count_ = 0;
};

/// The fields after `service` and `iface`, which have the same order in both forms.
int TakeRest(FieldReader& fields, DeviceRecord& r) {
  return fields.Take(r.msn)
      .Take(r.auxValue)
      .Take(r.stuCapable)
      .Take(r.echoCancel)
      .Take(r.telPort)
      .Take(r.handset)
      .Take(r.auxIndex)
      .Take(r.distressBox)
      .Take(r.priority)
      .Take(r.accessCodes)
      .Take(r.hexIdentity)
      .Take(r.name)
      .Take(r.chargeTone)
      .Count();
}

bool HasTelName(const DeviceRecord& record) {
  return record.telPort >= 0 && record.telPort <= 3;
}

}  // namespace

DeviceKind DeviceRecord::Kind() const {
  if (telPort != kNone) return DeviceKind::AnalogPort;
  if (handset != kNone) return DeviceKind::Handset;
  const bool serial =
      iface == InterfaceType::Usb || iface == InterfaceType::Rs232A || iface == InterfaceType::Rs232B;
  return serial ? DeviceKind::SerialPort : DeviceKind::Isdn;
}

std::string_view ServiceName(ServiceType service) {
  return NameOf(kServices, service);
}
ServiceType ServiceFromName(std::string_view name) {
  return ValueOf(kServices, name, ServiceType::Speech);
}
std::string_view InterfaceName(InterfaceType iface) {
  return NameOf(kInterfaces, iface);
}
InterfaceType InterfaceFromName(std::string_view name) {
  return ValueOf(kInterfaces, name, InterfaceType::Isdn);
}

std::string_view FlagText(bool flag) {
  return flag ? "1" : "0";
}
bool ParseFlag(std::string_view text) {
  const auto hex = HexDigits(text);
  return hex ? HexPrefix(*hex) != 0 : NumericPrefix(text) != 0;
}

std::string ShortHex(std::int32_t id) {
  const std::uint32_t bits = id < 0 ? static_cast<std::uint16_t>(id) : static_cast<std::uint32_t>(id);
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), bits, 16).ptr;
  return UpperCase({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

std::string HexId(std::int32_t id) {
  return (id >= 0 && id < 16 ? "0" : "") + ShortHex(id);
}

std::optional<std::int32_t> ParseHex(std::string_view text) {
  text = TrimBlanks(text);
  std::uint32_t value = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  if (failure != std::errc() || end != text.data() + text.size() || value > INT32_MAX) return std::nullopt;
  return static_cast<std::int32_t>(value);
}

bool AddEntry(std::vector<std::string>& entries, std::string_view entry) {
  if (entries.size() >= kMostEntries || entry.size() > kMostEntrySize) return false;
  entries.emplace_back(entry);
  return true;
}

void ResetRecord(DeviceRecord& record) {
  record = {};
}

int ParseWireRecord(std::string_view text, DeviceRecord& record) {
  ResetRecord(record);
  FieldReader fields(text, ' ');
  fields.Take(record.id).Take(record.iface).Take(record.service);
  return TakeRest(fields, record);
}

int ParseTagRecord(std::string_view text, char separator, DeviceRecord& record) {
  ResetRecord(record);
  FieldReader fields(TrimBlanks(text), separator);
  fields.TakeHex(record.id).TakeName(record.service).TakeName(record.iface);
  return TakeRest(fields, record);
}

std::string FormatTagRecord(const DeviceRecord& r, char separator) {
  std::string text = HexId(r.id);
  const auto add = [&](std::string_view field) {
    text += separator;
    text += field;
  };
  add(ServiceName(r.service));
  add(InterfaceName(r.iface));
  add(r.msn);
  add(std::to_string(r.auxValue));
  add(FlagText(r.stuCapable));
  add(FlagText(r.echoCancel));
  add(NumberText(r.telPort));
  add(NumberText(r.handset));
  add(NumberText(r.auxIndex));
  add(FlagText(r.distressBox));
  add(FlagText(r.priority));
  add(FlagText(r.accessCodes));
  add(r.hexIdentity);
  add(r.name);
  add(FlagText(r.chargeTone));
  return text;
}

std::string DescribeRecord(const DeviceRecord& record) {
  std::string text = "ID = " + HexId(record.id) + " MSN " + record.msn + "\r\n    Service ";
  text += ServiceName(record.service);
  if (HasTelName(record)) {
    text += " on  Tel " + std::to_string(record.telPort + 1);
  } else {
    text += " on the  " + std::string(InterfaceName(record.iface)) + " interface";
  }
  text += "\r\n    Attributes: ";
  const bool voice = record.service == ServiceType::Speech || record.service == ServiceType::Speech64 ||
                     record.service == ServiceType::Audio;
  if (record.service == ServiceType::Speech) {
    text += record.stuCapable ? " Stu capable" : " Stu incapable";
  }
  if (voice) {
    text += record.echoCancel ? " EchoCancel ON " : " EchoCancel OFF ";
    text += record.accessCodes ? " Access codes apply" : " Access codes surpressed ";
    text += record.chargeTone ? " Charge Tone applies" : " No Charge Tone ";
  }
  if (record.distressBox) text += "\r\n    Distress Box attached";
  text += kCrLf;
  if (record.handset >= 1 && record.handset < DeviceRecord::kMissing) {
    text += "    Handset Name = " + record.name + "\r\n";
  }
  return text;
}

}  // namespace corvex
