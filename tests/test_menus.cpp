// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The menus of the main window, their keys, and what the items of the View menu do.
#include "tests/kit/appfixture.h"
#include "tests/kit/menus.h"
#include "tests/kit/settingsfile.h"

#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>

using fixture::FindItem;
using fixture::MenuItems;
using fixture::Place;
using fixture::ReadBackSettings;
using fixture::Settle;
using fixture::TypeName;
using fixture::Window;
using fixture::WriteSettings;

namespace {

// An item that a menu must have, in the order of the table. A row without a text is a separator.
struct Item {
    const char* text;
    const char* shortcut = "";
};

constexpr Item kMenuBar[] = {
    {"&File"},
    {"&View"},
    {"&Help"},
};
// clang-format off
constexpr Item kFileMenu[] = {
    {"&Open",          "Ctrl+F"},
    {"&Save File As",  "Ctrl+S"},
    {"&Save Settings"},
    {nullptr},
    {"&Export"},
    {nullptr},
    {"&Print",         "Ctrl+P"},
    {nullptr},
    {"P&roperties"},
    {nullptr},
    {"&Quit",          "Ctrl+Q"},
};
constexpr Item kExportMenu[] = {
    {"&JPEG Compressed Bitmap"},
    {"&Encapsulated Postscript"},
};
constexpr Item kViewMenu[] = {
    {"&Refresh",            "Esc"},
    {"Reset &Aspect Ratio", "Ctrl+0"},
    {nullptr},
    {"&White Background",   "Ctrl+B"},
    {nullptr},
};

constexpr Item kHelpMenu[] = {
    {"&About Viewer", "F1"},
};
// clang-format on

QString Describe(const QAction& item)
{
    if (item.isSeparator())
        return QStringLiteral("-");
    return QStringLiteral("%1|%2|%3")
        .arg(item.text(), item.shortcut().toString(QKeySequence::PortableText),
             item.isEnabled() ? QStringLiteral("enabled") : QStringLiteral("disabled"));
}

QString Describe(const Item& item)
{
    if (item.text == nullptr)
        return QStringLiteral("-");
    return QStringLiteral("%1|%2|enabled")
        .arg(QString::fromLatin1(item.text), QString::fromLatin1(item.shortcut));
}

template <size_t size> QStringList Describe(const Item (&table)[size])
{
    QStringList rows;
    for (const Item& item : table)
        rows.append(Describe(item));
    return rows;
}

QStringList Describe(const QList<QAction*>& items)
{
    QStringList rows;
    for (const QAction* item : items)
        rows.append(Describe(*item));
    return rows;
}

QAction* WhiteBackground(const Window& window)
{
    return FindItem(MenuItems(window, "&View"), "&White Background");
}

// All items that can be chosen, also those of submenus.
QList<QAction*> AllItems(const QList<QAction*>& items)
{
    QList<QAction*> all;
    for (QAction* item : items) {
        if (item->menu() != nullptr)
            all += AllItems(item->menu()->actions());
        if (!item->isSeparator())
            all.append(item);
    }
    return all;
}

} // namespace

class TestMenus : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void menuBar_hasItsMenusInOrder();
    void menus_haveTheirItemsInOrder();
    void exportItem_hasAnIdInPlaceOfAShortcut();
    void menus_areChildrenOfTheWindow();
    void menuItems_haveDistinctIds();
    void menuItems_otherThanTheBackground_areNotCheckable();
    void whiteBackground_onAtStart_isChecked();
    void whiteBackground_offAtStart_isNotCheckableUntilChosen();
    void whiteBackground_chosen_repaintsTheView();
    void whiteBackground_chosen_isSavedWithTheSettings();
    void viewMenu_byKeyboard_chooses();

    void refresh_escape_showsTheWholeGraphAgain();
    void keys_open();
    void keys_background();
    void keys_quit();
};

void TestMenus::menuBar_hasItsMenusInOrder()
{
    const Window window;
    QCOMPARE(Describe(window->menuBar()->actions()), Describe(kMenuBar));
    for (const Item& menu : kMenuBar)
        QVERIFY(FindItem(window->menuBar()->actions(), menu.text)->menu() != nullptr);
}

void TestMenus::menus_haveTheirItemsInOrder()
{
    const Window window;
    const QList<QAction*> fileMenu = MenuItems(window, "&File");
    QCOMPARE(Describe(fileMenu), Describe(kFileMenu));
    QCOMPARE(Describe(FindItem(fileMenu, "&Export")->menu()->actions()), Describe(kExportMenu));
    QCOMPARE(Describe(MenuItems(window, "&View")), Describe(kViewMenu));
    QCOMPARE(Describe(MenuItems(window, "&Help")), Describe(kHelpMenu));
}

// The id is the code of Ctrl+E, which opens nothing.
void TestMenus::exportItem_hasAnIdInPlaceOfAShortcut()
{
    const Window window;
    const QAction* item = FindItem(MenuItems(window, "&File"), "&Export");
    QCOMPARE(item->data().toInt(), 0x4000045);
    QVERIFY(item->shortcuts().isEmpty());
}

void TestMenus::menus_areChildrenOfTheWindow()
{
    const Window window;
    for (const QAction* item : AllItems(window->menuBar()->actions())) {
        if (item->menu() != nullptr) {
            QCOMPARE(item->menu()->parentWidget(), window.Get());
            QCOMPARE(item->menu()->objectName(), QString());
        }
    }
}

void TestMenus::menuItems_haveDistinctIds()
{
    const Window window;
    QSet<int> ids;
    int items = 0;
    for (const QAction* menu : window->menuBar()->actions()) {
        for (const QAction* item : AllItems(menu->menu()->actions())) {
            bool isNumber = false;
            ids.insert(item->data().toInt(&isNumber));
            QVERIFY2(isNumber, qPrintable(item->text()));
            ++items;
        }
    }
    QCOMPARE(ids.size(), items);
    QVERIFY(!ids.contains(0));
}

void TestMenus::menuItems_otherThanTheBackground_areNotCheckable()
{
    const Window window;
    const QAction* white = WhiteBackground(window);
    for (const QAction* item : AllItems(window->menuBar()->actions()))
        QCOMPARE(item->isCheckable(), item == white);
}

void TestMenus::whiteBackground_onAtStart_isChecked()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QAction* white = WhiteBackground(window);
    QVERIFY(white->isCheckable());
    QVERIFY(white->isChecked());
    white->trigger();
    QVERIFY(!gbBkClrWhite);
    QVERIFY(white->isCheckable());
    QVERIFY(!white->isChecked());
    white->trigger();
    QVERIFY(gbBkClrWhite);
    QVERIFY(white->isChecked());
}

void TestMenus::whiteBackground_offAtStart_isNotCheckableUntilChosen()
{
    QVERIFY(WriteSettings(Place(1, 2, 300, 200), false));
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QAction* white = WhiteBackground(window);
    QVERIFY(!white->isCheckable());
    QVERIFY(!white->isChecked());
    white->trigger();
    QVERIFY(gbBkClrWhite);
    QVERIFY(white->isCheckable());
    QVERIFY(white->isChecked());
    white->trigger();
    QVERIFY(!gbBkClrWhite);
    QVERIFY(white->isCheckable());
    QVERIFY(!white->isChecked());
}

void TestMenus::whiteBackground_chosen_repaintsTheView()
{
    constexpr int kGreen = 10;
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::WithBackground(plf::Start(), kGreen)));
    QVERIFY(window.Show());
    Settle();
    fixture::PaintLog paints(window->view);
    const QPoint middle = window->view->rect().center();
    QCOMPARE(window->view->grab().toImage().pixelColor(middle), QColor(255, 255, 255));
    paints.Clear();
    WhiteBackground(window)->trigger();
    Settle();
    QVERIFY(paints.Covers(window->view->rect()));
    QCOMPARE(window->view->grab().toImage().pixelColor(middle), QColor(0, 255, 0));
}

void TestMenus::whiteBackground_chosen_isSavedWithTheSettings()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    WhiteBackground(window)->trigger();
    FindItem(MenuItems(window, "&File"), "&Save Settings")->trigger();
    gbBkClrWhite = true;
    QVERIFY(ReadBackSettings());
    QVERIFY(!gbBkClrWhite);
}

void TestMenus::viewMenu_byKeyboard_chooses()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    QTest::keyClick(window.Get(), Qt::Key_V, Qt::AltModifier);
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_W);
    QTRY_VERIFY(!gbBkClrWhite);
    QCOMPARE(QApplication::activePopupWidget(), nullptr);
}

void TestMenus::refresh_escape_showsTheWholeGraphAgain()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    DrawView* view = window->view;
    QTest::mousePress(view, Qt::LeftButton, {}, QPoint(100, 100));
    QTest::mouseMove(view, QPoint(200, 200));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(200, 200));
    Settle();
    QVERIFY(fixture::ShownArea(*view) != fixture::kWholeArea);
    fixture::PaintLog paints(view);
    QTest::keyClick(window.Get(), Qt::Key_Escape);
    QCOMPARE(fixture::ShownArea(*view), fixture::kWholeArea);
    Settle();
    QVERIFY(paints.Covers(view->rect()));
}

void TestMenus::keys_open()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    const std::string second = directories->Write("b.plf", plf::Diagonal());
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(second)); });
    QTest::keyClick(window.Get(), Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - b.plf"));
    QTest::keyClick(window.Get(), Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - b.plf"));
}

void TestMenus::keys_background()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    for (const bool white : {false, true, false}) {
        QTest::keyClick(window.Get(), Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(gbBkClrWhite, white);
        QCOMPARE(WhiteBackground(window)->isChecked(), white);
    }
}

void TestMenus::keys_quit()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    QTest::keyClick(window.Get(), Qt::Key_Q, Qt::ControlModifier);
    QTRY_VERIFY(window.IsGone());
}

QTEST_MAIN(TestMenus)
#include "test_menus.moc"
