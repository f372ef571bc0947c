#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMetaEnum>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "bench/BareWindow.h"
#include "framework/EventLoop.h"
#include "framework/Shell.h"
#include "framework/Toolkit.h"
#include "framework/qt/WindowView.h"
#include "tests/headless/ProgramFixture.h"
#include "windows/Window3.h"

/// The script of the fixture is what the user does, in Qt's event loop.
Stage& TheStage() {
  static Stage stage;
  return stage;
}

bool PumpUntil(const std::function<bool()>& condition) {
  return QTest::qWaitFor([&] {
    const Baton::Turn turn;
    return condition();
  });
}

namespace {

/// The widget of this class that shows and matches, nullptr for none.
template <class W, class Matches = bool (*)(const W&)>
W* Any(Matches matches = [](const W&) { return true; }) {
  for (QWidget* widget : QApplication::allWidgets())
    if (auto* found = dynamic_cast<W*>(widget); found && found->isVisible() && matches(*found)) return found;
  return nullptr;
}

template <class W>
W* WithText(const char* text) {
  return Any<W>([&](const W& widget) { return widget.text() == text; });
}

QPushButton* Button(const char* text) {
  return WithText<QPushButton>(text);
}

QRect InWindow(const QWidget* widget) {
  return {widget->mapTo(widget->window(), QPoint()), widget->size()};
}

QTableView* List() {
  return Any<QTableView>();
}

QPoint InRow(int row) {
  return {60, List()->rowViewportPosition(row) + List()->rowHeight(row) / 2};
}

QVariant Cell(int row, int column, int role) {
  return List()->model()->index(row, column).data(role);
}

void Click(QWidget* widget, QPoint place = {}) {
  ASSERT_TRUE(widget);
  QTest::mouseClick(widget, Qt::LeftButton, {}, place);
}

/// True for a widget in which hardly anything is to be told from what it stands on.
bool IsFaint(const QWidget& widget) {
  const QImage picture =
      widget.window()->grab(InWindow(&widget)).toImage().convertToFormat(QImage::Format_RGB32);
  const auto* pixels = reinterpret_cast<const QRgb*>(picture.constBits());
  const auto [least, most] = std::minmax_element(pixels, pixels + picture.width() * picture.height(),
                                                 [](QRgb a, QRgb b) { return qGray(a) < qGray(b); });
  return qGray(*most) - qGray(*least) < 60;
}

/// What assistive technology finds below: names, roles, states, actions, and the size of the letters.
QStringList Told(QAccessibleInterface* parent) {
  QStringList told;
  for (int i = 0; i < parent->childCount(); ++i) {
    QAccessibleInterface* child = parent->child(i);
    const QAccessible::State state = child->state();
    if (state.invisible || child->role() == QAccessible::Notification) continue;
    EXPECT_GE(child->parent()->indexOfChild(child), 0);
    QStringList words{child->text(QAccessible::Name),
                      QMetaEnum::fromType<QAccessible::Role>().valueToKey(child->role())};
    words += child->text(QAccessible::Description).split(' ', Qt::SkipEmptyParts);
    words += state.disabled ? "disabled" : state.checked ? "checked" : state.readOnly ? "readOnly" : "-";
    if (state.defaultButton) words += "default";
    if (state.busy) words += "busy";
    if (auto* action = child->actionInterface()) words += action->actionNames();
    if (auto* table = child->tableInterface())
      for (int at = 0; at < 4; ++at) words += table->columnDescription(at) + '/' + table->rowDescription(at);
    const auto* widget = qobject_cast<QWidget*>(child->object());
    if (widget) words += QString::number(widget->font().pixelSize()) + (widget->font().bold() ? "b" : "");
    EXPECT_FALSE(widget && widget->isVisible() && IsFaint(*widget)) << words.join(' ').toStdString();
    if (child->role() == QAccessible::CheckBox) words.removeAll("Press");  // which only newer Qt gives to one
    told += (words.front().isEmpty() ? QStringList() : QStringList(words.join(' '))) + Told(child);
  }
  return told;
}

/// Hears what is said without the focus.
struct Ear final : QObject {
  QStringList said;
  bool eventFilter(QObject* object, QEvent* event) override {
    auto* source = event->type() == QEvent::Show ? QAccessible::queryAccessibleInterface(object) : nullptr;
    if (source && source->role() == QAccessible::Notification && source->rect().isEmpty())
      said += source->text(QAccessible::Name);
    return false;
  }
};

void StartScript() {
  QTimer::singleShot(0, [] {
    if (Baton::HeldHere()) return StartScript();  // the program waits for its first picture
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activeWindow(); }));
    if (const auto script = std::exchange(TheStage().script, nullptr)) script();
  });
}
Q_COREAPP_STARTUP_FUNCTION(StartScript)

/// A click as the window system tells of it: it waits in Qt's own queue.
void QueueClick(QWidget* widget) {
  const QPointF global = widget->mapToGlobal(widget->rect().center());
  const QPointF local = widget->window()->mapFromGlobal(global);
  for (const auto& [type, buttons] : {std::pair(QEvent::MouseButtonPress, Qt::LeftButton),
                                      std::pair(QEvent::MouseButtonRelease, Qt::NoButton)})
    qt_handleMouseEvent(widget->window()->windowHandle(), local, global, buttons, Qt::LeftButton, type, {},
                        0);
}

const std::string kReport = "   Mounted:                  No\r\n\x01\xFF\rzä€𐀀" + std::string(1950, 'y') +
                            " " + std::string(5000, 'y') + "\r";

class Screen : public ProgramFixture {
 protected:
  Screen() {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    Write("list",
          "   2:                  Apple_HFS Backup                  120.5 GB   disk7s2\n"
          "   3:                  Apple_HFS <b>\tx</b>\x01             1.0 GB     disk7s3\n");
    Write("disk7s2.info", "   Mounted:                  Yes\n");
    Write("info", kReport);
    WritePrefs(false, true, true);
  }

  /// Runs the program with `user` acting when a scan has brought the two rows.
  void RunAfterScan(const std::function<void()>& user) {
    RunProgram([&] {
      Click(Button("Scan"));
      ASSERT_TRUE(WaitForScan());
      ASSERT_TRUE(QTest::qWaitFor([] { return Cell(1, 3, Qt::FontRole).value<QFont>().italic(); }));
      user();
    });
  }
};

TEST_F(Screen, ShowsTheTableAndTakesClicks) {
  RunAfterScan([&] {
    EXPECT_EQ(List()->window()->windowTitle(), "Dravik");
    const auto onEdge = [](int row, int x = 200) { return QPoint(x, InRow(row).y()); };
    const auto send = [](QPoint at, Qt::MouseButton held = {}, QEvent::Type type = QEvent::MouseMove) {
      QMouseEvent event(type, at, List()->mapToGlobal(at), held, held, {});
      QApplication::sendEvent(List()->viewport(), &event);  // QTest::mouseMove presses no button in Qt 6.2
      return List()->viewport()->cursor().shape() == Qt::SplitHCursor;
    };
    const auto pull = [&](QPoint from, QPoint to) {
      QTest::mousePress(List()->viewport(), Qt::LeftButton, {}, from);
      send(to, Qt::LeftButton);
      QTest::mouseRelease(List()->viewport(), Qt::LeftButton, {}, to);
    };
    EXPECT_TRUE(send(onEdge(0)) && !send(InRow(0)) && !send(onEdge(0, 1)) && !send({200, 120}));
    pull(onEdge(1), onEdge(1) + QPoint(3, 0));  // no more than a click
    for (const auto& [column, left] : {std::pair(1, 237), std::pair(2, 317), std::pair(3, 337)})
      EXPECT_EQ(InWindow(List()->viewport()).left() + List()->columnViewportPosition(column), left);
    EXPECT_EQ(List()->horizontalScrollBar()->maximum(), 0);
    EXPECT_TRUE(IsEnabled("infoBtn") && Button("Mount")->isEnabled());
    Click(List()->viewport(), {60, 120});
    EXPECT_FALSE(IsEnabled("infoBtn") || Button("Mount")->isEnabled());
    QTest::keyClick(List(), Qt::Key_Return);
    Use<Listbox>("ListBox2", [](auto& list) {
      while (list.ListCount() < 26) list.AddRow("-");
    });
    const int page = List()->viewport()->height() / List()->rowHeight(0) - 1;
    std::vector<int> rows;
    for (auto key : {Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Home, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_Down,
                     Qt::Key_Up, Qt::Key_End}) {
      QTest::keyClick(List(), key);
      rows.push_back(Read([] { return Window1()->ListBox2()->ListIndex(); }));
    }
    EXPECT_EQ(rows, std::vector({25, 25 - page, 0, 0, page, page + 1, page, 25}));
    EXPECT_EQ(List()->viewport()->height() - InRow(25).y(), List()->rowHeight(25) / 2);
    const QImage end = List()->viewport()->grab({0, List()->rowViewportPosition(24) - 2, 2, 2}).toImage();
    EXPECT_NE(end.pixel(0, 0) == end.pixel(0, 1), end.pixel(1, 0) == end.pixel(1, 1)) << "no dots";
    QTest::keyClick(List(), Qt::Key_Home);
    Use<Listbox>("ListBox2", [](auto& list) { list.ListIndex(1); });
    EXPECT_TRUE(List()->selectionModel()->isRowSelected(1));
    QTest::keyClick(List(), Qt::Key_Return);
    EXPECT_EQ(Calls().back(), "mount|disk7s3");
    pull(InRow(1), InRow(0));
    EXPECT_EQ(Read([] { return Window1()->ListBox2()->ListIndex(); }), 0) << "the selection does not follow";

    pull(onEdge(1), onEdge(1, 1000));
    pull(onEdge(1, List()->columnWidth(0)), onEdge(1, 150));
    EXPECT_TRUE(send(onEdge(0, 150)) && !send(onEdge(0, List()->viewport()->width() - 1)));
    EXPECT_FALSE(List()->selectionModel()->isRowSelected(1));
    Click(List()->viewport(), onEdge(1, 150));
    EXPECT_TRUE(List()->selectionModel()->isRowSelected(1));
    send(InRow(0), Qt::RightButton, QEvent::MouseButtonDblClick);
    EXPECT_EQ(Calls().back(), "mount|disk7s3");
    send(InRow(0), Qt::LeftButton, QEvent::MouseButtonDblClick);
    EXPECT_EQ(Calls().back(), "mount|disk7s2");

    auto* const tabs = Any<QTabBar>();
    List()->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([] { return List()->hasFocus(); }));
    QStringList stops;
    while (stops.size() < 4) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      stops += QApplication::focusWidget()->property("text").toString();
    }
    EXPECT_EQ(stops.join(',').toStdString(), "Scan,Info...,unMount,");
    List()->setFocus();
    QTest::keyClick(List(), Qt::Key_PageDown, Qt::ControlModifier);
    auto* const box = WithText<QCheckBox>("Show the \"unMount\" button");
    box->toggle();  // as assistive technology does
    box->setFocus();
    QTest::keyClick(box, Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_TRUE(tabs->hasFocus()) << "the focus does not stay with the tabs";
    EXPECT_EQ(List()->columnWidth(0), 150) << "the edge does not follow the pointer";
    EXPECT_FALSE(Button("unMount")) << "the box was ticked and the program does not know";
    List()->window()->move(50, 60);
    EXPECT_TRUE(PumpUntil([] { return Window1()->Left == List()->window()->geometry().left(); }));
    const int above = Any<QMenuBar>()->height();
    for (const int height : {280, 800}) {
      List()->window()->resize(999, height == 800 ? 999 : 1);
      EXPECT_EQ(List()->window()->size(), QSize(450, above + height));
      EXPECT_EQ(List()->window()->childrenRect().bottom(), List()->window()->rect().bottom());
      EXPECT_TRUE(QTest::qWaitFor([&] { return InWindow(Button("Scan")).top() == above + height - 54; }));
    }
    EXPECT_FALSE(Button("Scan")->visibleRegion().isEmpty()) << "cut off";
    EXPECT_EQ(List()->columnViewportPosition(3) + List()->columnWidth(3), List()->viewport()->width());
  });
}

TEST_F(Screen, LooksAsPlainWidgetsDo) {
  WritePrefs(false, false, false);
  RunProgram([] {
    auto* const tabs = Any<QTabBar>();
    ASSERT_TRUE(QTest::qWaitFor([] { return List()->hasFocus(); }));
    List()->clearFocus();
    const QImage without = tabs->window()->grab().toImage();
    List()->setFocus();
    for (const char* stop : {"table", "Scan", "tabs", "table"}) {
      EXPECT_NE(tabs->window()->grab().toImage(), without) << "the focus does not show on the " << stop;
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    const QPoint content(0, Any<QMenuBar>()->height());
    QWidget plain(tabs->window());  // as active as that is
    plain.setAutoFillBackground(true);
    plain.resize(450, 280);
    AddBareControls(plain);
    for (const int tab : {1, 0}) {
      const QSize part(450, tab == 0 ? 280 : 135);  // what is below is made to fit
      QTest::keyClick(tabs, tab == 1 ? Qt::Key_Tab : Qt::Key_Backtab,
                      tab == 1 ? Qt::ControlModifier : Qt::ControlModifier | Qt::ShiftModifier);
      plain.findChild<QTabBar*>()->setCurrentIndex(tab);
      if (QWidget* focus = QApplication::focusWidget()) focus->clearFocus();
      plain.show();
      const QImage expected = plain.grab({{}, part}).toImage();
      plain.hide();
      EXPECT_TRUE(tabs->window()->grab({content, part}).toImage() == expected) << "tab " << tab;
    }
  });
}

TEST_F(Screen, TakesOverANewLook) {
  RunProgram([] {
    const auto room = [] { return InWindow(Button("Scan")).top() - 226; };
    const auto fits = [&, bar = Any<QMenuBar>()] {
      return bar->geometry() == QRect(0, 0, 450, room()) && room() == bar->heightForWidth(450);
    };
    const int usual = room();
    const QFont font = QApplication::font();
    QFont large = font;
    large.setPointSize(3 * font.pointSize());
    QApplication::setFont(large);
    EXPECT_TRUE(QTest::qWaitFor([&] { return room() > usual && fits(); })) << "the menus are cut off";
    QApplication::setFont(font);
    EXPECT_TRUE(QTest::qWaitFor([&] { return room() == usual; }));
    qApp->setStyleSheet("QMenuBar { padding: 9px }");  // a style of its own, for Qt
    EXPECT_TRUE(QTest::qWaitFor([&] { return room() > usual && fits(); }));

    Choose("AppleAbout");
    QEnterEvent enter({}, {}, {});  // a link under the pointer has a colour
    auto* const link = WithText<QLabel>("https://www.dravik.example/");
    QApplication::sendEvent(link, &enter);
    EXPECT_EQ(link->palette().color(QPalette::WindowText), Qt::blue);
    EXPECT_TRUE(link->cursor().shape() == Qt::PointingHandCursor && link->window()->isModal());
    EXPECT_TRUE(Any<QPushButton>([](auto& it) { return it.icon().actualSize({99, 99}).height() > 20; }));
    auto* const text = Any<QPlainTextEdit>();
    EXPECT_TRUE(QTest::qWaitFor([&] { return text->hasFocus(); }));
    QTest::keyClick(text, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(text->textCursor().hasSelection());
    QTest::keyClick(text, Qt::Key_Right);
    const auto picture = [](QWidget* widget) { return widget->grab().toImage(); };
    const QImage read = picture(text->viewport()), framed = picture(text), plain = picture(link);
    QTest::keyClick(text, Qt::Key_Tab);
    EXPECT_TRUE(picture(text->viewport()) == read) << "a caret where nothing can be typed";
    EXPECT_TRUE(picture(text) != framed && picture(link) != plain) << "the focus does not show";
    QPalette dark(QColor(40, 44, 48));
    dark.setColor(QPalette::Link, Qt::white);
    QApplication::setPalette(dark);
    const auto isDark = [&] { return WithText<QLabel>("Dravik")->palette().window() == dark.window(); };
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return isDark() && !Any<QLabel>(IsFaint) && !IsFaint(*text->viewport()); }));
    EXPECT_TRUE(link->font().underline()) << "under the pointer";
    QApplication::sendEvent(link, std::make_unique<QEvent>(QEvent::Leave).get());
    EXPECT_FALSE(link->font().underline());
    const QImage frame = link->window()->grab({40, 37, 68, 68}).toImage();
    EXPECT_EQ(frame.pixelColor(0, 0).name() + frame.pixelColor(67, 67).name(), "#858585#ffffff");
    QTest::keyClick(text, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(EventLoop::Quitting());
  });
}

TEST_F(Screen, KeepsTheUsersInputUntilTheHandlerEnds) {
  Write("mount.held", "");
  RunAfterScan([&] {
    Click(List()->viewport(), InRow(1));
    QPointer<QWidget> sheet;
    int turns = 0;  // of the loop since the input
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
      if (!sheet && Calls().back() == "mount|disk7s3") {
        sheet = WithText<QLabel>("Executing the command 'diskutil mount'")->window();
        EXPECT_EQ(
            Told(QAccessible::queryAccessibleInterface(qApp)).filter(" -1").join('|').toStdString(),
            "Dravik Window - -1|'diskutil' Grouping - -1|Executing the command 'diskutil mount' Mounting "
            "«<b> x</b>\uFFFD». Please wait... Window - -1|Busy Animation - busy -1|Logo Graphic - -1");
        EXPECT_FALSE(sheet->windowFlags() & (Qt::WindowCloseButtonHint | Qt::FramelessWindowHint));
        EXPECT_EQ(sheet->windowHandle()->transientParent(), List()->window()->windowHandle());
        QueueClick(Button("Info..."));
        Button("Info...")->click();  // as assistive technology presses it
        sheet->close();
      } else if (sheet && ++turns == 9) {
        EXPECT_EQ(Calls().back(), "mount|disk7s3") << "a handler ran inside another one's command";
        EXPECT_TRUE(sheet->isVisible());
        Remove("mount.held");
      }
    });
    user.start();
    Click(Button("Mount"));
    EXPECT_GE(turns, 9) << "the screen stood still";
    EXPECT_EQ(Calls().back(), "info|disk7s3");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !sheet; }));
    EXPECT_TRUE(PumpUntil([&] { return Calls().size() == 6; })) << "the click in the queue was lost";
  });
}

TEST_F(Screen, ShowsTheFeedbackBeforeTheToolRunsAndEndsWithTheDesktop) {
  RunAfterScan([&] {
    bool painted = false;
    Shell::InstallRunner([&](const String&) {
      const auto* sheet = WithText<QLabel>("Executing the command 'diskutil mount'");
      painted = sheet && dynamic_cast<WindowView*>(sheet->window())->Painted();
      return Shell::Outcome{1, ""};
    });
    QTimer desktop;  // which ends the program while its message is up
    QObject::connect(&desktop, &QTimer::timeout, [] {
      if (Any<QMessageBox>()) QApplication::sendEvent(qApp, std::make_unique<QEvent>(QEvent::Quit).get());
    });
    desktop.start();
    Click(List()->viewport(), InRow(1));
    Click(Button("Mount"));
    EXPECT_TRUE(painted && EventLoop::Quitting());
  });
}

TEST_F(Screen, ShowsTheReportAsPlainTextThatCanBeEdited) {
  RunAfterScan([&] {
    Click(List()->viewport(), InRow(1));
    Click(Button("Info..."));
    auto* report = Any<QPlainTextEdit>();
    ASSERT_TRUE(report);
    const auto copied = [&] {
      report->selectAll();
      report->copy();
      return QApplication::clipboard()->mimeData()->data("text/plain").toStdString();
    };
    const int end = report->verticalScrollBar()->maximum();
    report->moveCursor(QTextCursor::End);
    EXPECT_EQ(report->verticalScrollBar()->maximum(), end) << "the scroll bar grows";
    EXPECT_EQ(report->toPlainText().lastIndexOf('\n', -2), 5993)
        << "the long line is not cut where it should";
    EXPECT_EQ(copied(), kReport);
    report->paste();  // in its own place
    QGuiApplication::clipboard()->clear();
    report->selectAll();
    report->paste();
    EXPECT_EQ(copied(), kReport);
    EXPECT_TRUE(QFontInfo(report->font()).fixedPitch() && report->font().families().contains("Monaco"));
    report->moveCursor(QTextCursor::Start);
    report->setFocus();
    report->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return report->hasFocus(); }));
    QTest::keyClicks(report, "ab\t");
    EXPECT_EQ(Read([] { return Window3()->infoFld()->Text.Get().Utf8(); }), "ab" + kReport);
    EXPECT_EQ(report->textCursor().position(), 2);
    QApplication::clipboard()->clear();
    report->moveCursor(QTextCursor::End, QTextCursor::KeepAnchor);
    QTest::keyClick(report, 'e', Qt::AltModifier);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu && menu->actions().size() == 7 && menu->activeAction() == menu->actions().first());
    EXPECT_EQ(Told(QAccessible::queryAccessibleInterface(menu)).filter("disabled").size(), 1) << "Paste";
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Return}) QTest::keyClick(menu, key);
    EXPECT_EQ(report->toPlainText(), "ab");
    List()->window()->activateWindow();  // as somebody does who reaches for the menu there
    ASSERT_TRUE(QTest::qWaitFor([&] { return !report->hasFocus(); }));
    Choose("AppleAbout");  // whose text takes the focus, and goes
    Click(WithText<QLabel>("Dravik"));
    for (int edits = 2; edits > 0; --edits) Choose("EditUndo");
    EXPECT_EQ(copied(), kReport);
    const QImage selected = report->grab().toImage();
    report->moveCursor(QTextCursor::End);
    report->moveCursor(QTextCursor::Start);
    EXPECT_TRUE(report->grab().toImage() == selected) << "a selection where nobody types";
    Click(Button("OK"));
    EXPECT_FALSE(Any<QPlainTextEdit>());
    Choose("EditUndo");
    EXPECT_FALSE(Any<QMenuBar>()->actions().last()->menu()->actions().first()->isEnabled());
    EventLoop::Toolkit()->Edit(EditCommand::kUndo);
  });
}

TEST_F(Screen, TellsWhatIsThereAndSaysOnceWhatGoesOn) {
  Write("unMount.status", "1");
  RunProgram([&] {
    Ear ear;
    qApp->installEventFilter(&ear);
    QAccessible::setActive(true);
    const auto hears = [&](const char* words) {
      std::ignore = QTest::qWaitFor([&] { return ear.said.join('|') == words; });
      EXPECT_EQ(std::exchange(ear.said, {}).join('|').toStdString(), words);
    };
    const auto finds = [](QWidget* widget, const char* things) {
      EXPECT_EQ(Told(QAccessible::queryAccessibleInterface(widget->parentWidget())).join('|').toStdString(),
                things);
    };
    // clang-format off
    Click(Button("Scan"));
    hears("Executing the command 'diskutil list' Looking for Drives / Partitions Please wait...|2 volumes");
    for (QWidget* part : List()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
      EXPECT_GE(QAccessible::queryAccessibleInterface(List())->indexOfChild(QAccessible::queryAccessibleInterface(part)), 0);
    finds(List()->parentWidget(), "'diskutil' Grouping - -1|Disks and partitions Table - Disk/partition name/ Size/ / Identifier/ 12|Backup, mounted Cell - Toggle|120.5 GB Cell - Toggle|disk7s2 Cell - Toggle|<b> x</b>\uFFFD, not mounted Cell - Toggle|1.0 GB Cell - Toggle|disk7s3 Cell - Toggle|Scan Button - Press SetFocus 12|Mount Button disabled default 12|Info... Button disabled 12|Disk/partition name StaticText - 11b|Identifier StaticText - 11b|Size StaticText - 11b|unMount Button disabled 12|'diskutil' PageTabList - SetFocus 12|'diskutil' PageTab - Press|Settings PageTab - Press");
    Click(List()->viewport(), InRow(1));
    Click(Button("Mount"));
    hears("Executing the command 'diskutil mount' Mounting «<b> x</b>\uFFFD». Please wait...|<b> x</b>\uFFFD, mounted");
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [&] {
      auto* box = Any<QMessageBox>();
      const QPoint aside = box ? box->geometry().center() - box->windowHandle()->transientParent()->geometry().center() : QPoint();
      EXPECT_LT(aside.manhattanLength(), 8) << "not in the middle of the window in front";
      if (box && box->close()) ear.said += box->windowTitle() + ": " + box->text();
    });
    answer.start(200);
    QAccessible::queryAccessibleInterface(List())->tableInterface()->selectRow(0);
    EXPECT_TRUE(PumpUntil([] { return Window1()->ListBox2()->ListIndex() == 0; }));
    Click(Button("unMount"));
    hears("Executing the command 'diskutil unmount' unMounting «Backup». Please wait...|Dravik: Error code: 1|Backup, not mounted");
    Click(Button("Info..."));
    EXPECT_EQ(Any<QPlainTextEdit>()->window()->accessibleName(), "Dravik");
    finds(Any<QPlainTextEdit>(), "OK Button - default Press SetFocus 10|diskutil info for: Backup (disk7s2) StaticText - 14b|Report EditableText - SetFocus 11");
    Click(Button("OK"));
    SelectTab(1);
    finds(Any<QCheckBox>(), "Perform 'diskutil list' (scan) on startup CheckBox - Toggle SetFocus 12|Show the \"unMount\" button CheckBox Using this function may be slowen then ejecting using the Finder checked Toggle SetFocus 12|Show the feedback win when performing Mount or unMount CheckBox checked Toggle SetFocus 12|Using this function may be slowen then ejecting using the Finder StaticText - 10");
    const auto* hint = QAccessible::queryAccessibleInterface(WithText<QLabel>("Using this function may be slowen then ejecting using the Finder"));
    EXPECT_TRUE(hint->relations(QAccessible::Controlled).size() == 1 && hint->relations(QAccessible::Label).isEmpty());
    WithText<QCheckBox>("Show the feedback win when performing Mount or unMount")->toggle();
    Any<QTabBar>()->setCurrentIndex(0);
    Click(Button("Scan"));
    hears("Executing the command 'diskutil info' Reading info for «Backup». Please wait...|Scanning|2 volumes");
    Choose("AppleAbout");
    finds(WithText<QLabel>("Dravik"), "Logo Graphic - -1|Dravik StaticText - 24b|Version 1.4 - December, 2013 StaticText - 11|About this application EditableText readOnly SetFocus 11|https://www.dravik.example/ Link - SetFocus Press 12|contact@dravik.example Link - SetFocus Press 12|Donate Button - Press SetFocus 13|This application is free, but donate via PayPal if you'd like. ;-) StaticText - 10");
    // clang-format on
    Click(WithText<QLabel>("Dravik"));
  });
}

TEST_F(Screen, ClosesTheAboutWindowInItsOwnEvents) {
  Write("xdg-open", "#!/bin/sh\necho \"$@\" `readlink /proc/$$/fd/[012]` >>\"${0%/*}/opened\"\n");
  std::filesystem::permissions(tool_ / "xdg-open", std::filesystem::perms::owner_all);
  const auto opened = [&] { return TextOf(tool_ / "opened"); };
  RunProgram([&] {
    Choose("AppleAbout");
    const QPointer<QLabel> link = WithText<QLabel>("https://www.dravik.example/");
    QAccessible::queryAccessibleInterface(link)->actionInterface()->doAction("Press");
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !link && opened() == "https://www.dravik.example/ /dev/null /dev/null /dev/null\n"; }));

    Choose("AppleAbout");
    QTest::keyClick(WithText<QLabel>("contact@dravik.example"), Qt::Key_Space);
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened().find("?subject=Dravik ") != std::string::npos; }));
    EventLoop::Toolkit()->OpenAddress("--help");

    Choose("AppleAbout");
    QTest::mouseClick(WithText<QLabel>("Dravik"), Qt::RightButton);  // means nothing
    Any<QPlainTextEdit>()->selectAll();
    EXPECT_FALSE(EventLoop::Toolkit()->CanEdit(EditCommand::kClear)) << "a text that is there to be read";
    EXPECT_TRUE(EventLoop::Toolkit()->CanEdit(EditCommand::kCopy));
    Click(WithText<QLabel>("Dravik"));  // goes to the window below
    EXPECT_FALSE(Any<QPlainTextEdit>());
  });
  EXPECT_EQ(opened().find("--help"), std::string::npos);
}

}  // namespace
