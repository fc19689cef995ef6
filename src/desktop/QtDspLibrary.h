#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

namespace corvex {

/// Calls the closed-source library CorvexDsp. The first call searches the given folders in order; later calls
/// do not search again. If the library is not found, a call does nothing. The library runs on the program's
/// thread, and a crash in the library crashes the program.
class QtDspLibrary {
 public:
  explicit QtDspLibrary(const QStringList& folders) : folders_(folders) {}
  void DspMsg(const std::int16_t* numbers);

 private:
  using Entry = void (*)(const std::int16_t*);
  QStringList folders_;
  Entry entry_ = nullptr;
  bool looked_ = false;
};

}  // namespace corvex
