#include <gtest/gtest.h>

#include <QAccessible>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

#include "desktop/look/QtText.h"
#include "desktop/look/Theme.h"
#include "desktop/views/ShownForm.h"

// Trees, combo boxes, tool bars, status bars and context menus on the screen.

namespace corvex {
namespace {

using test::Becomes;

struct Sample : Form {
  Sample(EventLoop& l, WindowSystem& w) : Form(l, w, "sample") {
    rect = Rect{1500, 1500, 9000, 6000};
    password.masked = true;
  }
  ~Sample() override { Withdraw(); }
  MenuItem mnuFile{*this, {.name = "mnuFile", .caption = "&File"}};
  MenuItem mnuExit{mnuFile, {.name = "mnuExit", .caption = "Exit"}};
  MenuItem mnuOptions{*this, {.name = "mnuOptions", .caption = "Options", .visible = false}};
  MenuItem mnuAdd{mnuOptions, {.name = "mnuAdd", .caption = "Add", .enabled = false}};
  MenuItem mnuEdit{mnuOptions, {.name = "mnuEdit", .caption = "Edit"}};
  MenuItem mnuRemove{mnuOptions, {.name = "mnuRemove", .caption = "Remove"}};
  ToolBar tools{*this,
                {.name = "tools", .rect = {0, 0, 8900, 540}},
                {{.caption = "New R&D", .toolTip = "Add a device", .picture = "add device"},
                 {.separator = true},
                 {.caption = "Refresh", .picture = "refresh"},
                 {.toolTip = "Back", .picture = "back"}}};
  Frame frame{*this, {.name = "frame", .rect = {150, 600, 4500, 4000}, .caption = "Devices"}};
  TreeView tree{frame, {.name = "tree", .rect = {150, 300, 4200, 3600}}};
  Label speedLabel{*this, {.name = "speedLabel", .rect = {4800, 600, 1500, 270}, .caption = "Speed"}};
  ComboBox speed{*this, {.name = "speed", .rect = {4800, 900, 1800, 360}}};
  TextBox password{*this, {.name = "password", .rect = {4800, 1500, 1800, 360}}};
  StatusBar status{*this, {.name = "status", .rect = {0, 4800, 8900, 375}}, {3, 1}};
  Button ok{*this, {.name = "ok", .rect = {4800, 2100, 1500, 450}, .caption = "OK"}};
};

/// A root with two categories; the second one has a device.
Tree Devices(const std::string& root) {
  Tree tree;
  const int top = tree.Add(Tree::kNone, {.key = "root", .text = root, .image = 17, .expanded = true});
  tree.Add(top, {.key = "speech", .text = "Speech", .image = 4});
  const int data = tree.Add(top, {.key = "data", .text = "Data", .image = 7, .bold = true});
  tree.Add(data, {.key = "device", .text = "Id: 05", .image = 7});
  return tree;
}
constexpr int kSpeech = 1;
constexpr int kData = 2;
constexpr int kDevice = 3;

class DeviceControlsTest : public test::ShownFormTest {
 protected:
  DeviceControlsTest() {
    form.tree.SetTree(Devices("Old"));
    form.speed.SetItems({"300", "1200", "9600"});
    form.speed.listIndex = 0;
    form.password.SetText("secret");
    form.tree.nodeClick = [this] { log += "node" + std::to_string(form.tree.selected) + ' '; };
    form.tree.contextMenu = [this] {
      log += "menu ";
      form.mnuAdd.enabled = true;
      form.mnuEdit.visible = false;
      form.mnuRemove.caption = "Delete";
      form.mnuOptions.PopUp();
      form.mnuAdd.enabled = false;  // the last value counts
    };
    form.tools.buttonClick = [this](int button) { log += "tool" + std::to_string(button) + ' '; };
    form.speed.click = [this] { log += "speed" + form.speed.Text() + ' '; };
    Show(form);
    Turn();
  }
  FormWindow& window() { return *windows.WindowOf(form); }
  QWidget* Shown(const Control& control) { return window().ViewOf(control)->widget(); }
  QTreeView& ShownTree() { return *static_cast<QTreeView*>(Shown(form.tree)); }
  QToolButton& Tool(int i) {
    return *Shown(form.tools)->findChildren<QToolButton*>("", Qt::FindDirectChildrenOnly)[i];
  }
  /// Presses a key where the focus is, and returns what was reported.
  std::string Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* const popup = QApplication::activePopupWidget();
    QTest::keyClick(popup != nullptr ? popup : QApplication::focusWidget(), key, modifiers);
    return Said();
  }
  std::string Click(Qt::MouseButton button, QPoint at) {
    QTest::mouseClick(ShownTree().viewport(), button, {}, at);
    return Said();
  }
  std::string Said() {
    Turn();
    return std::exchange(log, {});
  }

  std::string log;
  Sample form{loop, windows};
};

TEST_F(DeviceControlsTest, TheUserMovesInATreeAndOpensItsMenu) {
  NEEDS_ACTIVE_WINDOW();
  QTreeView& tree = ShownTree();
  form.tree.SetFocus();
  Turn();
  EXPECT_EQ(form.tree.selected, Tree::kNone) << "the focus alone selects nothing";
  form.tree.selected = kSpeech;
  EXPECT_EQ(Said(), "") << "a selection of the logic is not a click";
  EXPECT_EQ(Press(Qt::Key_Down), "node2 ");
  EXPECT_EQ(Press(Qt::Key_Right), "");
  EXPECT_TRUE(form.tree.tree()[kData].expanded);
  EXPECT_EQ(Press(Qt::Key_Down), "node3 ");
  const QModelIndex device = tree.currentIndex();
  EXPECT_EQ(device.data().toString(), QStringLiteral("Id: 05"));
  EXPECT_EQ(Click(Qt::LeftButton, tree.visualRect(device).center()), "node3 ");
  tree.collapse(device.parent());
  EXPECT_EQ(Said(), "node2 ") << "the selected node must not disappear";
  EXPECT_FALSE(form.tree.tree()[kData].expanded);

  // By key and by mouse. The entries' changes of the same turn are applied before the menu opens.
  const auto menu = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
  form.mnuRemove.click = [this] { log += "remove "; };
  EXPECT_EQ(Press(Qt::Key_F10, Qt::ShiftModifier), "menu ");
  ASSERT_NE(menu(), nullptr);
  ASSERT_NE(menu()->activeAction(), nullptr);
  EXPECT_EQ(menu()->activeAction()->text(), QStringLiteral("Delete")) << "the first entry that can be chosen";
  const QRect row(tree.viewport()->mapToGlobal(tree.visualRect(tree.currentIndex()).topLeft()),
                  tree.visualRect(tree.currentIndex()).size());
  EXPECT_TRUE(row.contains(menu()->pos()));
  EXPECT_EQ(Press(Qt::Key_Return), "remove ");
  const QPoint speech = tree.visualRect(tree.currentIndex().siblingAtRow(0)).center();
  QTest::mouseClick(tree.viewport(), Qt::RightButton, {}, speech);
  QContextMenuEvent asks(QContextMenuEvent::Mouse, speech, tree.viewport()->mapToGlobal(speech));
  QCoreApplication::sendEvent(tree.viewport(), &asks);
  EXPECT_EQ(Said(), "node1 menu ");
  ASSERT_NE(menu(), nullptr);
  EXPECT_EQ(menu()->activeAction(), nullptr);
  Press(Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), &tree);
  EXPECT_EQ(window().menuBar()->actionGeometry(window().menuBar()->actions()[1]), QRect());
}

TEST_F(DeviceControlsTest, ANewTreeReplacesTheOldOneAndItsClicks) {
  QTreeView& tree = ShownTree();
  form.tree.selected = kData;
  Turn();
  form.tree.SetTree(Devices("New"));
  form.tree.EnsureVisible(kDevice);
  // The old tree is still on screen. What the user does there does not concern the new one.
  QTest::keyClick(&tree, Qt::Key_Up);
  tree.collapse(tree.model()->index(0, 0));
  QTest::keyClick(&tree, Qt::Key_Menu);
  EXPECT_EQ(form.tree.selected, Tree::kNone);
  EXPECT_TRUE(form.tree.tree()[0].expanded);
  EXPECT_EQ(Said(), "");
  const QModelIndex root = tree.model()->index(0, 0);
  EXPECT_EQ(root.data().toString(), QStringLiteral("New"));
  EXPECT_FALSE(tree.currentIndex().isValid());
  EXPECT_TRUE(tree.isExpanded(root.model()->index(1, 0, root)));
  // A click that is not handled yet when the tree is replaced is lost with its tree.
  QTest::keyClick(&tree, Qt::Key_Down);
  EXPECT_EQ(form.tree.selected, 0);
  form.tree.SetTree({});
  EXPECT_EQ(Said(), "");
  EXPECT_EQ(tree.model()->rowCount(), 0);
  form.tree.SetTree(Devices("New"));
  form.tree.SetExpanded(0, false);
  Turn();
  EXPECT_FALSE(tree.isExpanded(tree.model()->index(0, 0)));
  form.tree.selected = kDevice;
  Turn();
  EXPECT_TRUE(form.tree.tree()[kData].expanded) << "the node is shown, and the control knows it";
}

TEST(ReadableColor, IsChangedOnlyAsFarAsTheBackgroundNeedsIt) {
  const QColor blue(0, 15, 255);
  EXPECT_EQ(ReadableOn(Qt::white, blue), blue);
  const QColor onDark = ReadableOn(MakePalette(true).color(QPalette::Base), blue);
  EXPECT_EQ(onDark.hslHue(), blue.hslHue());
  EXPECT_NEAR(onDark.lightness(), 180, 15);
  EXPECT_LT(ReadableOn(Qt::white, Qt::yellow).lightness(), 90);
}

TEST_F(DeviceControlsTest, AHundredThousandNodesTakeLinearTime) {
  Tree tree;
  for (int i = 0; i < 10'000; ++i) {
    const int parent = tree.Add(Tree::kNone, {.text = "Node", .expanded = true});
    for (int child = 0; child < 9; ++child) tree.Add(parent, {.text = "Child"});
  }
  QElapsedTimer clock;
  clock.start();
  form.tree.SetTree(std::move(tree));
  form.tree.selected = 99'999;
  Turn();
  for (int i = 0; i < 100'000; i += 10) form.tree.SetExpanded(i, false);
  form.tree.EnsureVisible(99'999);
  Turn();
  EXPECT_LT(clock.elapsed(), 5000);
  EXPECT_TRUE(ShownTree().viewport()->rect().intersects(ShownTree().visualRect(ShownTree().currentIndex())));
}

TEST_F(DeviceControlsTest, AComboBoxReportsWhatTheUserChooses) {
  NEEDS_ACTIVE_WINDOW();
  form.speed.SetFocus();
  Turn();
  EXPECT_EQ(Press(Qt::Key_Down), "speed1200 ");
  EXPECT_EQ(Press(Qt::Key_9), "speed9600 ");
  EXPECT_EQ(Press(Qt::Key_Down, Qt::AltModifier), "");
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  EXPECT_EQ(Said(), "speed1200 ");
  form.speed.SetItems({"a", "b"});
  QTest::keyClick(Shown(form.speed), Qt::Key_Down);  // still acts on the old items
  EXPECT_EQ(form.speed.listIndex, -1);
  EXPECT_EQ(Said(), "");
  EXPECT_EQ(static_cast<QComboBox*>(Shown(form.speed))->currentIndex(), -1);
  EXPECT_EQ(static_cast<QComboBox*>(Shown(form.speed))->count(), 2);
}

TEST_F(DeviceControlsTest, AToolBarIsOneStopOfTheTabKey) {
  NEEDS_ACTIVE_WINDOW();
  form.defaultButton = &form.ok;
  form.ok.click = [this] { log += "ok "; };
  form.tools.SetEnabled(3, false);
  form.tools.SetFocus();
  Turn();
  EXPECT_TRUE(form.tools.HasFocus());
  EXPECT_FALSE(Tool(1).isEnabled());
  EXPECT_EQ(Press(Qt::Key_Space), "tool1 ");
  Press(Qt::Key_Right);  // skips the disabled button
  EXPECT_EQ(QApplication::focusWidget(), &Tool(2));
  EXPECT_EQ(Press(Qt::Key_Return), "tool4 ") << "Enter belongs to the tool bar, not to the default button";
  Press(Qt::Key_Tab);
  EXPECT_EQ(form.Focused(), &form.tree);
  Press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget(), &Tool(2));
  form.tree.SetFocus();
  Turn();
  QTest::mouseClick(&Tool(0), Qt::LeftButton);
  EXPECT_EQ(Said(), "tool1 ");
  EXPECT_TRUE(form.tree.HasFocus()) << "a click leaves the focus where it is";
}

TEST_F(DeviceControlsTest, ScreenReadersGetRolesNamesAndTexts) {
  form.status.SetText(1, "Reading configuration...");
  form.status.SetText(2, "17 of 250, which is a text much longer than its panel");
  Turn();
  const auto seen = [](QWidget* widget) { return QAccessible::queryAccessibleInterface(widget); };
  EXPECT_EQ(seen(&ShownTree())->role(), QAccessible::Tree);
  EXPECT_EQ(FromQt(seen(&ShownTree())->text(QAccessible::Name)), "Devices");
  EXPECT_EQ(seen(Shown(form.speed))->role(), QAccessible::ComboBox);
  const auto related = seen(Shown(form.speed))->relations(QAccessible::Label);
  ASSERT_EQ(related.size(), 1) << "a combo box is named by its label";
  EXPECT_EQ(FromQt(related[0].first->text(QAccessible::Name)), "Speed");
  EXPECT_EQ(seen(Shown(form.tools))->role(), QAccessible::ToolBar);
  EXPECT_EQ(FromQt(seen(&Tool(0))->text(QAccessible::Name)), "New R&D");
  EXPECT_EQ(FromQt(seen(&Tool(2))->text(QAccessible::Name)), "Back");
  EXPECT_EQ(seen(Shown(form.status))->role(), QAccessible::StatusBar);
  const QList<QLabel*> panels = Shown(form.status)->findChildren<QLabel*>();
  EXPECT_EQ(FromQt(seen(panels[1])->text(QAccessible::Name)), form.status.Text(2));
  EXPECT_NEAR(panels[0]->width(), 3 * panels[1]->width(), 12);
  const QAccessibleInterface& password = *seen(Shown(form.password));
  EXPECT_TRUE(password.state().passwordEdit);
  EXPECT_EQ(FromQt(password.text(QAccessible::Value)).find("secret"), std::string::npos);
  EXPECT_EQ(static_cast<QLineEdit*>(Shown(form.password))->displayText().count(QStringLiteral("secret")), 0);
}

}  // namespace
}  // namespace corvex
