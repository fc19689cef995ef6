#include <gtest/gtest.h>

#include <QFileDialog>
#include <QFontDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <set>

#include "desktop/Places.h"
#include "desktop/QtDialogs.h"
#include "desktop/QtPrinters.h"
#include "desktop/QtWindowSystem.h"
#include "desktop/Wait.h"
#include "desktop/look/Icons.h"
#include "desktop/look/Theme.h"

namespace corvex {
namespace {

using namespace std::chrono_literals;

class QtDialogsTest : public ::testing::Test {
 protected:
  /// Calls `act` with the open dialog as soon as it is shown.
  template <typename Box>
  void WhenShown(std::function<void(Box&)> act) {
    loop.After(10ms, [this, act = std::move(act)] {
      auto* box = dynamic_cast<Box*>(QApplication::activeModalWidget());
      if (box == nullptr) {
        WhenShown(act);
      } else {
        act(*box);
      }
    });
  }
  QtEventLoop loop;
  QtWindowSystem windows{loop};
  QtDialogs dialogs{loop, windows};
};

TEST_F(QtDialogsTest, ReturnsAnswersAndShowsTextsLiterally) {
  for (const bool yes : {true, false}) {
    WhenShown<QMessageBox>([&](QMessageBox& box) {
      EXPECT_EQ(box.text(), QStringLiteral("<b>sure</b>\n?"));
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      if (yes) {
        box.button(QMessageBox::Yes)->click();
      } else {
        QTest::keyClick(&box, Qt::Key_Escape);
      }
    });
    EXPECT_EQ(dialogs.AskYesNo("<b>sure</b>\r\n?"), yes);
  }
  const std::string title = "Telnet login Mub MASTERonMASTER of a terminal with a long name";
  for (const bool secret : {true, false}) {
    WhenShown<QDialog>([&](QDialog& box) {
      auto* line = box.findChild<QLineEdit*>();
      EXPECT_EQ(line->echoMode(), secret ? QLineEdit::Password : QLineEdit::Normal);
      line->setText(QStringLiteral(u"p\u00E6"));
      EXPECT_EQ(box.findChild<QLabel*>()->textFormat(), Qt::PlainText);
      EXPECT_GE(box.width(), QFontMetrics(QApplication::font()).horizontalAdvance(box.windowTitle()) + 100);
      secret ? box.accept() : box.reject();
    });
    const auto answer = dialogs.InputBox(secret ? "Enter password for owner" : "Enter a name", title);
    EXPECT_EQ(answer, secret ? std::optional<std::string>("p\xE6") : std::nullopt);
  }
}

TEST_F(QtDialogsTest, AsksBeforeAFileIsOverwrittenOrCreated) {
  const QTemporaryDir folder;
  QFile(folder.filePath(QStringLiteral("old"))).open(QIODevice::WriteOnly);
  const std::string start = QFile::encodeName(folder.path()).toStdString();
  FileQuestion question{
      .title = "Pick", .filter = "Text Files | *.txt;*.log|All (*)|*.*|Rest", .start = start};
  const auto pick = [&](const char* file) {
    WhenShown<QFileDialog>([this, file](QFileDialog& box) {
      EXPECT_EQ(box.nameFilters(), QStringList({QStringLiteral("Text Files (*.txt *.log)"),
                                                QStringLiteral("All (*)"), QStringLiteral("Rest")}));
      if (file == nullptr) {
        box.reject();
        return;
      }
      box.findChild<QLineEdit*>()->setText(QString::fromLatin1(file));
      QMetaObject::invokeMethod(&box, "accept");
    });
  };
  pick("old");
  EXPECT_EQ(dialogs.OpenFile(question), start + "/old");
  pick("new");
  EXPECT_EQ(dialogs.SaveFile(question), start + "/new");
  question.asksBeforeNew = true;
  for (const char* file : {"old", "new"}) {
    // The first answer is No, which returns to the file dialog.
    pick(file);
    WhenShown<QMessageBox>([&](QMessageBox& no) {
      EXPECT_NE(no.text().indexOf(file == std::string_view("old") ? u"Replace" : u"Create"), -1);
      pick(file);
      WhenShown<QMessageBox>([](QMessageBox& yes) { yes.button(QMessageBox::Yes)->click(); });
      no.button(QMessageBox::No)->click();
    });
    EXPECT_EQ(dialogs.SaveFile(question), start + '/' + file);
  }
  question.start = "C:\\nowhere";
  pick(nullptr);
  EXPECT_EQ(dialogs.OpenFile(question), std::nullopt);
}

TEST_F(QtDialogsTest, TheProgramCanEndWhileABoxIsOpen) {
  bool returned = false;
  loop.Post([&] {
    dialogs.MessageBox("still open");
    returned = true;
  });
  loop.After(50ms, [&] { loop.End(); });
  EXPECT_EQ(loop.Exec(), 0);
  EXPECT_FALSE(returned);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(QtDialogsTest, TheFontDialogStartsWithTheGivenFont) {
  for (const bool accepts : {true, false}) {
    WhenShown<QFontDialog>([&](QFontDialog& box) {
      EXPECT_EQ(box.currentFont().pointSizeF(), 13);
      EXPECT_TRUE(box.currentFont().bold());
      accepts ? box.accept() : box.reject();
    });
    const auto font = dialogs.ChooseFont({.name = "Courier", .size = 13, .bold = true}, accepts, nullptr);
    ASSERT_EQ(font.has_value(), accepts);
    if (!font) continue;
    EXPECT_FALSE(font->name.empty());
    EXPECT_EQ(font->size, 13);
    EXPECT_TRUE(font->bold);
    EXPECT_FALSE(font->italic || font->underline);
  }
}

TEST_F(QtDialogsTest, ThePrintDialogOffersNoPageRangesAndNoFile) {
  QtPrinters printers(windows, dialogs);
  for (const bool forDefault : {false, true}) {
    WhenShown<QPrintDialog>([](QPrintDialog& box) {
      for (auto* button : box.findChildren<QPushButton*>()) {
        if (button->text().contains(u"ptions")) button->click();
      }
      EXPECT_FALSE(box.findChildren<QSpinBox*>().isEmpty());
      for (const QRadioButton* choice : box.findChildren<QRadioButton*>()) {
        EXPECT_FALSE(choice->isVisible() && choice->text().contains(u"Pages"));
      }
      for (const QComboBox* list : box.findChildren<QComboBox*>()) {
        EXPECT_EQ(list->findText(QStringLiteral("File"), Qt::MatchContains), -1);
        EXPECT_FALSE(list->isVisible() && list->findText(QStringLiteral("Pages"), Qt::MatchContains) >= 0);
      }
      box.reject();
    });
    if (forDefault) {
      printers.ChooseDefault(nullptr);
    } else {
      EXPECT_EQ(printers.Choose(nullptr), nullptr);
    }
  }
}

TEST_F(QtDialogsTest, TheChosenPrinterPrints) {
  QtPrinters printers(windows, dialogs);
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("out.pdf"));
  WhenShown<QPrintDialog>([&](QPrintDialog& box) {
    // Print to a file, because there may be no printer.
    box.printer()->setOutputFormat(QPrinter::PdfFormat);
    box.printer()->setOutputFileName(path);
    box.done(QDialog::Accepted);
  });
  const auto job = printers.Choose(nullptr);
  ASSERT_NE(job, nullptr);
  EXPECT_TRUE(job->Print("text", {.name = "Courier", .size = 10}));
  EXPECT_GT(QFileInfo(path).size(), 500);
  EXPECT_EQ(printers.DefaultName().empty(), printers.Count() == 0);
}

TEST(QtPrintersTest, SplitsTextsIntoPagesAndReportsFailures) {
  const QTemporaryDir folder;
  const auto print = [](const QString& path, const std::string& text) {
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    return PrintPages(printer, text, {.name = "Courier", .size = 10});
  };
  const auto pages = [&](const std::string& text) {
    const QString path = folder.filePath(QStringLiteral("out.pdf"));
    EXPECT_TRUE(print(path, text));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray pdf = file.readAll();
    return pdf.count("/Type /Page\n");
  };
  EXPECT_EQ(pages("one\r\ntwo"), 1);
  EXPECT_EQ(pages("one\ftwo\f"), 2);
  std::string lines;
  for (int i = 0; i < 100; ++i) lines += "line\r\n";
  EXPECT_EQ(pages(lines), 2);
  EXPECT_EQ(pages(std::string(10'000, 'x')), 2);  // wrapped, not cut off
  EXPECT_EQ(pages(std::string("a\0\x1B\xFF", 4)), 1);
  EXPECT_FALSE(print(folder.filePath(QStringLiteral("feeds.pdf")), std::string(100'000, '\f')));
  EXPECT_FALSE(print(folder.filePath(QStringLiteral("none/out.pdf")), "text"));
}

TEST(IconsTest, EachNumberHasItsOwnPictureInLightAndDark) {
  for (const bool dark : {false, true}) {
    const QPalette palette = MakePalette(dark);
    const auto draw = [&](const auto& what, auto drawIt) {
      QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
      image.fill(palette.color(QPalette::Base));
      QPainter painter(&image);
      drawIt(painter, QRectF(0, 0, 32, 32), what, palette);
      painter.end();
      return QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
    };
    const auto icon = [&](int number) { return draw(number, DrawMenuIcon); };
    const auto key = [&](int number) { return draw("key " + std::to_string(number), DrawPicture); };
    const QByteArray empty = draw("", DrawPicture);
    std::set<QByteArray> icons{empty}, keys{empty};
    for (int number = 0; number < kMenuIcons; ++number) {
      icons.insert(icon(number));
      keys.insert(key(number));
    }
    EXPECT_EQ(icons.size(), 65U);
    EXPECT_EQ(keys.size(), 64U);  // 1 and 10 are both an envelope
    for (const int unknown : {-1, kMenuIcons, 32767}) {
      EXPECT_EQ(icon(unknown), icon(10));
      EXPECT_EQ(key(unknown), key(2));
    }
    for (const char* unknown : {"key", "key x", "icon 5", "mail 1"}) {
      EXPECT_EQ(draw(unknown, DrawPicture), empty) << unknown;
    }
  }
}

TEST(PlacesTest, LongDateOfAnInvalidDayIsEmpty) {
  EXPECT_NE(LongDate(2006, 3, 31).find("2006"), std::string::npos);
  EXPECT_EQ(LongDate(2006, 2, 30), "");
  EXPECT_EQ(LongDate(0, 0, 0), "");
}

}  // namespace
}  // namespace corvex
