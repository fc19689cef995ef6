#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

namespace corvex {

/// The closed library CorvexDsp, looked for in the folders given when it is first called, and once only.
/// Where there is none a call does nothing. What its code does is beyond this program: it runs on the one
/// thread, and an error in it is an error here.
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
