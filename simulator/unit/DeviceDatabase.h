#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvex::simulation {

/// The terminal configuration: the entries, one for each Terminal Id, and the locks that guard changes.
///
/// An entry is kept as the text in which it travels: sixteen fields with one blank between them. The order is
///
///   Id, interface, service, MSN, a number, STU, echo cancellation, telephone port, handset, MSN of the
///   handset (0 or 1), distress box, priority, access codes, a hexadecimal text, name, charge tone
///
/// Values are not checked; only the Id must be a number. A change is stored at once, so a replacement that is
/// not finished leaves what has been written so far.
///
/// The functions that change something return false, and change nothing, if the lock is missing.
class DeviceDatabase {
 public:
  static constexpr std::size_t kFields = 16;
  static constexpr int kFactoryEntries = 8;
  using Fields = std::vector<std::string>;

  /// Generates entries; the first kFactoryEntries are the factory defaults.
  /// `lark`: only the services of a Lark, which has no ISDN data.
  DeviceDatabase(int entries, bool lark) : lark_(lark) { Generate(entries); }

  /// The entries in the order of their Ids.
  std::vector<std::string> Entries() const;
  /// A field of an entry, counted from 0; empty if there is no such entry.
  std::string Field(int id, std::size_t field) const;

  void LockAll() { allLocked_ = true; }
  /// Locks an Id, which need not have an entry, instead of the one that was locked before.
  void Lock(int id) { locked_ = id; }
  void Unlock();

  // These need the lock of the whole configuration. Commit ends it.
  bool Clear();
  bool RestoreDefaults();
  bool Commit();

  // These need the lock of the Id or of the whole configuration. A success ends the lock of the Id.
  bool UpdateDevice(const Fields& fields);
  bool Remove(int id);

  /// Replaces the entry of a telephone port or of one MSN of a handset, also if its Id changes. Needs no
  /// lock.
  bool UpdatePort(const Fields& fields) { return UpdatePlace(fields, {7}); }
  bool UpdateHandset(const Fields& fields) { return UpdatePlace(fields, {8, 9}); }

 private:
  void Generate(int entries);
  bool TakeLock(int id);
  bool UpdatePlace(const Fields& fields, std::initializer_list<std::size_t> place);

  bool lark_;
  std::map<int, std::string> entries_;
  bool allLocked_ = false;
  std::optional<int> locked_;
};

/// Parses a whole word as a decimal number.
std::optional<int> ParseNumber(std::string_view word);

}  // namespace corvex::simulation
