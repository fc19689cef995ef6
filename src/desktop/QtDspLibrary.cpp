#include "desktop/QtDspLibrary.h"

#include <QDir>
#include <QLibrary>
#include <utility>

namespace corvex {

void QtDspLibrary::DspMsg(const std::int16_t* numbers) {
  if (!std::exchange(looked_, true)) {
    for (const QString& folder : folders_) {
      // With a full path, the system does not search other folders. The library stays loaded.
      QLibrary library(QDir(folder).absoluteFilePath(QStringLiteral("CorvexDsp")));
      entry_ = reinterpret_cast<Entry>(library.resolve("CorvexDspMsg"));
      if (entry_ != nullptr) break;
    }
  }
  if (entry_ != nullptr) entry_(numbers);
}

}  // namespace corvex
