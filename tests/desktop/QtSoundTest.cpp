#include "desktop/QtSound.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <cstring>
#include <limits>

#include "desktop/Wait.h"

namespace corvex {
namespace {

/// Configures the system's default sound device. `device` is the text of an ALSA configuration file.
void SetDevice(const QTemporaryDir& folder, const QByteArray& device) {
  QFile file(folder.filePath(QStringLiteral("asound.conf")));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(device);
  file.close();
  qputenv("ALSA_CONFIG_PATH", QFile::encodeName(file.fileName()));
}

TEST(QtSoundTest, PlaysTonesInTheBackgroundAndSkipsInaudibleOnes) {
#if !defined(CORVEX_ALSA)
  GTEST_SKIP() << "built without a sound library, or for another system";
#endif
  const QTemporaryDir folder;
  const QString heard = folder.filePath(QStringLiteral("heard"));
  SetDevice(folder, "pcm.default { type file file \"" + QFile::encodeName(heard) +
                        "\" format raw slave { pcm { type null } } }\n");
  QtEventLoop loop;
  QtSound sound;
  const auto start = loop.Now();
  for (const double hertz :
       {0.0, -310.0, 39.0, 98'611.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
    sound.Beep(hertz, 100);
  }
  sound.Beep(310, 0);
  sound.Beep(310, -1);
  sound.Beep(310, 100);
  EXPECT_LT(loop.Now() - start, std::chrono::milliseconds(95));
  constexpr int kSamples = 4800;
  EXPECT_TRUE(test::Becomes(loop, [&] { return QFile(heard).size() >= kSamples * 2; }));
  test::Elapse(loop, std::chrono::milliseconds(50));

  QFile file(heard);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray bytes = file.readAll();
  ASSERT_EQ(bytes.size(), kSamples * 2);
  std::vector<std::int16_t> samples(kSamples);
  std::memcpy(samples.data(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
  int rises = 0;
  for (std::size_t i = 1; i < samples.size(); ++i) rises += samples[i - 1] < 0 && samples[i] >= 0;
  EXPECT_EQ(rises, 30);  // 31 waves; the first starts at 0 and does not rise through it
  EXPECT_LT(std::abs(samples.back()), 50) << "a click at the end";
}

TEST(QtSoundTest, IsSilentWithoutADevice) {
  const QTemporaryDir folder;
  SetDevice(folder, "");
  QtEventLoop loop;
  QtSound sound;
  ::testing::internal::CaptureStderr();
  sound.Beep(310, 100);
  test::Elapse(loop, std::chrono::milliseconds(300));
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace corvex
