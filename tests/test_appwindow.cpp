// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The main window: its menus, loading, the place it remembers, and closing.
#include "app/appwindow.h"

#include "meta/palette.h"
#include "support/settings.h"
#include "tests/kit/appfixture.h"

#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QWindow>

#include <sys/fsuid.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <limits>

using fixture::Box;
using fixture::Settle;
using fixture::Status;
using fixture::TypeName;
using fixture::Window;

namespace {

constexpr int kStatusTime = 2000; // milliseconds that a good text stands
constexpr int kSavedTime = 5000;  // the same of a text about saving
constexpr int64_t kHuge = std::numeric_limits<int64_t>::max();
constexpr int64_t kTiny = std::numeric_limits<int64_t>::min();

constexpr char kCannotOpen[] = "Error opening file.";
constexpr char kNotPlf[] = "File is not a recognized PLF graphic format.";

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

QAction* FindItem(const QList<QAction*>& items, const char* text)
{
    const auto found = std::find_if(items.begin(), items.end(), [text](const QAction* item) {
        return item->text() == QLatin1String(text);
    });
    return found == items.end() ? nullptr : *found;
}

QList<QAction*> MenuItems(const Window& window, const char* menu)
{
    const QAction* item = FindItem(window->menuBar()->actions(), menu);
    return item == nullptr ? QList<QAction*>() : item->menu()->actions();
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

std::string SettingsPath()
{
    char path[kPathSize];
    return GetSettingsPath(path) ? path : "";
}

bool WriteSettings(const Rect& place, bool white)
{
    grWinPos = place;
    gbBkClrWhite = white;
    const bool written = WriteSettingsFile() == 0;
    ResetGlobals();
    return written;
}

// The settings that the file holds, read into the globals.
bool ReadBackSettings()
{
    gfCmdlineWndpos = 0;
    grWinPos = {};
    return ReadSettingsFile() == 0;
}

Rect Place(int64_t left, int64_t top, int64_t width, int64_t height)
{
    return {left, top, left + width, top + height, width, height};
}

QString PlaceText(const Rect& r)
{
    return QStringLiteral("%1,%2 to %3,%4, %5 x %6")
        .arg(r.left)
        .arg(r.top)
        .arg(r.right)
        .arg(r.bottom)
        .arg(r.width)
        .arg(r.height);
}

QString PlaceText(int64_t left, int64_t top, int64_t width, int64_t height)
{
    return PlaceText(Place(left, top, width, height));
}

} // namespace

class TestAppWindow : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void constructor_namesTheWindowAndDeletesItOnClose();
    void constructor_withoutAGraph_titlesTheWindow();
    void constructor_fillsThePalettes();
    void constructor_readsTheConfiguration();
    void constructor_readsTheBackgroundChoice();
    void constructor_withoutSettings_takesTheDefaultPlace();
    void constructor_takesTheStoredPlace();
    void constructor_withPlaceOnTheCommandLine_ignoresTheStoredOne();
    void constructor_absurdPlace_isSurvived_data();
    void constructor_absurdPlace_isSurvived();
    void constructor_largeStoredSize_fitsOnTheScreen();
    void constructor_largeSizeOnTheCommandLine_isKept();
    void constructor_unusablePlaceOnTheCommandLine_isMended();
    void constructor_shortSettings_areSurvived();
    void constructor_saysReadyForTwoSeconds();

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

    void choose_dialog_asksForGraphs();
    void choose_cancelled_changesNothing();
    void choose_cancelled_keepsTheTemporaryFlag();
    void choose_file_loadsIt();
    void choose_file_isNeverTemporary();
    void choose_badFile_isNeverTemporaryEither();
    void choose_secondFile_keepsTheExportNameOfTheFirst();

    void load_graph_showsIt();
    void load_graph_saysSoForTwoSeconds();
    void load_graph_repaintsTheView();
    void load_beforeThereIsAView_works();
    void load_headerOnly_isAGraph();
    void load_badFile_isReported_data();
    void load_badFile_isReported();
    void load_unreadableFile_isReported();
    void load_pipe_isReportedAtOnce();
    void load_socket_isReported();
    void load_badFile_statusTextStays();
    void load_badFile_titleChangesBeforeTheBox_statusTextAfterIt();
    void load_badFile_afterAGraph_leavesNoFile();
    void load_badFile_repaintsTheView();
    void load_badFile_keepsTheLastShortName();
    void load_goodFile_afterABadOne_isShown();
    void load_tooLongPath_isRefused();
    void load_tooLongRelativeName_isRefused();
    void load_longestPath_isTried();
    void load_tooLongPath_doesNotNameExports();
    void load_name_becomesAPath_data();
    void load_name_becomesAPath();
    void load_relativeName_isFoundInTheStartDirectory();
    void load_relativeName_ignoresTheExportDirectory();
    void load_relativeName_statusSaysTheNameAsGiven();
    void load_firstFile_namesExports_data();
    void load_firstFile_namesExports();
    void load_firstFile_namesExportsEvenIfItIsMissing();
    void load_givenExportName_isKept();
    void load_secondFile_keepsTheExportName();
    void load_nameOutsideAscii_isShown();
    void load_nameWithMarkup_isShownAsItIs();
    void load_nameWithPlaceholder_isWholeInTheTitleBar();

    void refresh_escape_showsTheWholeGraphAgain();
    void resetAspect_shapesTheWindow_data();
    void resetAspect_shapesTheWindow();
    void keys_open();
    void keys_background();
    void keys_quit();
    void saveSettings_writesTheFile();
    void saveSettings_saysSo();
    void saveSettings_intoAMissingDirectory_isSilent();

    void moving_isRemembered();
    void resizing_isRemembered();
    void place_isTheFramesPosition();
    void place_survivesARestart();
    void moveEvent_asASlot_storesThePlace();
    void resizeEvent_asASlot_storesTheSize();

    void closing_deletesTheWindowAndTheView();
    void closing_freesTheGraph();
    void closing_withoutAutosave_writesNothing();
    void closing_withAutosave_writesPlaceAndBackground();
    void closing_withAutosaveIntoAMissingDirectory_isSilent();
    void closing_withoutAGraph_isFine();
    void quitting_whileTheFileDialogIsOpen_isSurvived();
    void quitting_whileAnErrorIsShown_isSurvived();

    void slots_haveTheirOrder();
    void signals_areNone();
    void metacast_knowsItsNames();

private:
    void CheckFailure(const std::string& name, const char* message);
    void CheckNoFile(const Window& window);
};

void TestAppWindow::init()
{
    Begin();
}

void TestAppWindow::cleanup()
{
    End();
}

void TestAppWindow::constructor_namesTheWindowAndDeletesItOnClose()
{
    const Window window;
    QCOMPARE(window->objectName(), QStringLiteral("KORVEL Graphics Viewer"));
    QVERIFY(window->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(window->parent(), nullptr);
    QVERIFY(window->isWindow());
    QVERIFY(!window->isVisible());
    QCOMPARE(window->view, nullptr);
}

void TestAppWindow::constructor_withoutAGraph_titlesTheWindow()
{
    Window window;
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer"));
    dialogs->Expect<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    window.AddView();
    QVERIFY(window.Show());
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer"));
}

void TestAppWindow::constructor_fillsThePalettes()
{
    ghpenIbmClr[10] = QPen();
    EpsRgbColors[10][1] = 0.5;
    gdotpen = QPen();
    const Window window;
    QCOMPARE(ghpenIbmClr[10].color(), QColor(0, 255, 0));
    QCOMPARE(EpsRgbColors[10][1], 1.0);
    QCOMPARE(gdotpen.style(), Qt::DotLine);
}

void TestAppWindow::constructor_readsTheConfiguration()
{
    static_cast<void>(directories->Write("home/plotvw.cfg", "export_quality=7\nautosave=y\n"));
    const Window window;
    QCOMPARE(giExportQuality, 7);
    QCOMPARE(giAutosave, 1);
}

void TestAppWindow::constructor_readsTheBackgroundChoice()
{
    QVERIFY(WriteSettings(Place(1, 2, 300, 200), false));
    const Window window;
    QVERIFY(!gbBkClrWhite);
}

void TestAppWindow::constructor_withoutSettings_takesTheDefaultPlace()
{
    const Window window;
    QCOMPARE(window->pos(), QPoint(200, 200));
    QCOMPARE(window->size(), QSize(640, 487));
    QVERIFY(gbBkClrWhite);
}

void TestAppWindow::constructor_takesTheStoredPlace()
{
    QVERIFY(WriteSettings(Place(31, 42, 410, 320), true));
    Window window;
    QVERIFY(window.Show());
    QCOMPARE(window->pos(), QPoint(31, 42));
    QCOMPARE(window->size(), QSize(410, 320));
    QCOMPARE(PlaceText(grWinPos), PlaceText(31, 42, 410, 320));
}

void TestAppWindow::constructor_withPlaceOnTheCommandLine_ignoresTheStoredOne()
{
    QVERIFY(WriteSettings(Place(31, 42, 410, 320), false));
    grWinPos = Place(5, 6, 500, 400);
    gfCmdlineWndpos = 1;
    Window window;
    QVERIFY(window.Show());
    QCOMPARE(window->pos(), QPoint(5, 6));
    QCOMPARE(window->size(), QSize(500, 400));
    QVERIFY(!gbBkClrWhite);
}

void TestAppWindow::constructor_absurdPlace_isSurvived_data()
{
    QTest::addColumn<qint64>("left");
    QTest::addColumn<qint64>("top");
    QTest::addColumn<qint64>("width");
    QTest::addColumn<qint64>("height");
    const auto row = [](const char* name, int64_t left, int64_t top, int64_t width,
                        int64_t height) {
        QTest::newRow(name) << qint64{left} << qint64{top} << qint64{width} << qint64{height};
    };
    row("far to the right", kHuge, kHuge, 640, 487);
    row("far to the left", kTiny, kTiny, 640, 487);
    row("without a size", 10, 10, 0, 0);
    row("with a negative size", 10, 10, -640, -487);
    row("with the most negative size", 10, 10, kTiny, kTiny);
    row("beyond 32 bits, low words small", 0x500000000 + 10, 0x700000000 + 10, 0x300000000 + 640,
        487);
    row("with the largest height", 10, 10, 640, kHuge);
    row("outside every screen", 30000, -30000, 640, 487);
}

void TestAppWindow::constructor_absurdPlace_isSurvived()
{
    QFETCH(qint64, left);
    QFETCH(qint64, top);
    QFETCH(qint64, width);
    QFETCH(qint64, height);
    QVERIFY(WriteSettings({left, top, left, top, width, height}, true));
    Window window;
    QVERIFY(window.Show());
    const QRect screen = window->screen()->availableGeometry();
    const QRect at(window->pos(), window->size());
    QVERIFY2(screen.contains(at), "it is not on the screen");
    QVERIFY2(at.width() >= 160 && at.height() >= 120, "nothing has room in it");
    QCOMPARE(PlaceText(grWinPos), PlaceText(at.x(), at.y(), at.width(), at.height()));
}

void TestAppWindow::constructor_largeStoredSize_fitsOnTheScreen()
{
    QVERIFY(WriteSettings(Place(100, 100, 3000, 2000), true));
    const Window window;
    QCOMPARE(window->geometry(), window->screen()->availableGeometry());
}

// Hosts ask for large windows to get large pictures.
void TestAppWindow::constructor_largeSizeOnTheCommandLine_isKept()
{
    grWinPos = Place(100, 100, 3000, 2000);
    gfCmdlineWndpos = 1;
    const Window window;
    QCOMPARE(window->geometry(), QRect(100, 100, 3000, 2000));
}

void TestAppWindow::constructor_unusablePlaceOnTheCommandLine_isMended()
{
    grWinPos = Place(5000, 100, 0, 0);
    gfCmdlineWndpos = 1;
    Window window;
    QVERIFY(window.Show());
    const QRect screen = window->screen()->availableGeometry();
    const QRect right(screen.right() + 1 - 160, 100, 160, 120);
    QCOMPARE(QRect(window->pos(), window->size()), right);
    QCOMPARE(PlaceText(grWinPos), PlaceText(right.x(), 100, 160, 120));
}

void TestAppWindow::constructor_shortSettings_areSurvived()
{
    // Whole but for the last field, the height, of which one byte is there.
    std::string settings("1.0\0\0\0\0\0\0\0\1", 11);
    for (const char field : {'\x0a', '\x0b', '\0', '\0'})
        settings += field + std::string(7, '\0');
    settings += std::string("\x2c\1\0\0\0\0\0\0\xf0", 9);
    static_cast<void>(directories->Write("home/.plotvwsettings", settings));
    const Window window;
    QCOMPARE(window->pos(), QPoint(10, 11));
    QCOMPARE(window->size(), QSize(300, 0x1f0)); // the default 0x1e7 with its low byte replaced
}

void TestAppWindow::constructor_saysReadyForTwoSeconds()
{
    Window window;
    QVERIFY(window.Show());
    QCOMPARE(Status(window), QStringLiteral("Ready"));
    QCOMPARE(fixture::StatusTime(window), kStatusTime);
    fixture::EndStatusTime(window);
    QCOMPARE(Status(window), QString());
}

void TestAppWindow::menuBar_hasItsMenusInOrder()
{
    const Window window;
    QCOMPARE(Describe(window->menuBar()->actions()), Describe(kMenuBar));
    for (const Item& menu : kMenuBar)
        QVERIFY(FindItem(window->menuBar()->actions(), menu.text)->menu() != nullptr);
}

void TestAppWindow::menus_haveTheirItemsInOrder()
{
    const Window window;
    const QList<QAction*> fileMenu = MenuItems(window, "&File");
    QCOMPARE(Describe(fileMenu), Describe(kFileMenu));
    QCOMPARE(Describe(FindItem(fileMenu, "&Export")->menu()->actions()), Describe(kExportMenu));
    QCOMPARE(Describe(MenuItems(window, "&View")), Describe(kViewMenu));
    QCOMPARE(Describe(MenuItems(window, "&Help")), Describe(kHelpMenu));
}

// The id is the code of Ctrl+E, which opens nothing.
void TestAppWindow::exportItem_hasAnIdInPlaceOfAShortcut()
{
    const Window window;
    const QAction* item = FindItem(MenuItems(window, "&File"), "&Export");
    QCOMPARE(item->data().toInt(), 0x4000045);
    QVERIFY(item->shortcuts().isEmpty());
}

void TestAppWindow::menus_areChildrenOfTheWindow()
{
    const Window window;
    for (const QAction* item : AllItems(window->menuBar()->actions())) {
        if (item->menu() != nullptr) {
            QCOMPARE(item->menu()->parentWidget(), window.Get());
            QCOMPARE(item->menu()->objectName(), QString());
        }
    }
}

void TestAppWindow::menuItems_haveDistinctIds()
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

void TestAppWindow::menuItems_otherThanTheBackground_areNotCheckable()
{
    const Window window;
    const QAction* white = WhiteBackground(window);
    for (const QAction* item : AllItems(window->menuBar()->actions()))
        QCOMPARE(item->isCheckable(), item == white);
}

void TestAppWindow::whiteBackground_onAtStart_isChecked()
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

void TestAppWindow::whiteBackground_offAtStart_isNotCheckableUntilChosen()
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

void TestAppWindow::whiteBackground_chosen_repaintsTheView()
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

void TestAppWindow::whiteBackground_chosen_isSavedWithTheSettings()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    WhiteBackground(window)->trigger();
    FindItem(MenuItems(window, "&File"), "&Save Settings")->trigger();
    gbBkClrWhite = true;
    QVERIFY(ReadBackSettings());
    QVERIFY(!gbBkClrWhite);
}

void TestAppWindow::viewMenu_byKeyboard_chooses()
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

void TestAppWindow::choose_dialog_asksForGraphs()
{
    const Window window;
    int shown = 0;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        ++shown;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Open File"));
        QCOMPARE(dialog.nameFilters(), QStringList({QStringLiteral("KORVEL Graphics (*.plf)"),
                                                    QStringLiteral("All Files (*)")}));
        QCOMPARE(dialog.selectedNameFilter(), QStringLiteral("KORVEL Graphics (*.plf)"));
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(dialog.parentWidget(), window.Get());
        QVERIFY(dialog.isModal());
    });
    window->choose();
    QCOMPARE(shown, 1);
}

void TestAppWindow::choose_cancelled_changesNothing()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    const QString title = window->windowTitle();
    const QString status = Status(window);
    const std::string name = gszPlffileOrig;
    const char* buffer = gpPlfmembuf;
    dialogs->Expect<QFileDialog>(
        [](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    window->choose();
    QCOMPARE(dialogs->Pending(), 0);
    QCOMPARE(window->windowTitle(), title);
    QCOMPARE(Status(window), status);
    QCOMPARE(Text(gszPlffileOrig), Text(name));
    QCOMPARE(gpPlfmembuf, buffer);
}

void TestAppWindow::choose_cancelled_keepsTheTemporaryFlag()
{
    const Window window;
    gbIsTempFile = true;
    dialogs->Expect<QFileDialog>(
        [](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    window->choose();
    QVERIFY(gbIsTempFile);
    gbIsTempFile = false;
}

void TestAppWindow::choose_file_loadsIt()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    const Window window;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(path)); });
    window->choose();
    QCOMPARE(Text(gszPlffileOrig), Text(path));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
    QCOMPARE(Status(window), QStringLiteral("Loaded document ") + Text(path));
}

void TestAppWindow::choose_file_isNeverTemporary()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    const Window window;
    gbIsTempFile = true;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(path)); });
    window->choose();
    QVERIFY(!gbIsTempFile);
}

void TestAppWindow::choose_badFile_isNeverTemporaryEither()
{
    const std::string path = directories->Write("a.plf", "no graph");
    const Window window;
    gbIsTempFile = true;
    Box box;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(path)); });
    fixture::ExpectBox(*dialogs, box);
    window->choose();
    QCOMPARE(box.text, QString::fromLatin1(kNotPlf));
    QVERIFY(!gbIsTempFile);
}

void TestAppWindow::choose_secondFile_keepsTheExportNameOfTheFirst()
{
    const std::string second = directories->Write("b.plf", plf::Diagonal());
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(second)); });
    window->choose();
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - b.plf"));
    QCOMPARE(Text(gszCvtFilenameBase), Text(directories->Path("a")));
}

void TestAppWindow::load_graph_showsIt()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    const Window window;
    window->load(Text(path));
    QCOMPARE(Text(gszPlffileOrig), Text(path));
    QCOMPARE(Text(gszPlffileName), QStringLiteral("a.plf"));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
    QCOMPARE(gdwFilesize, plf::Diagonal().size());
    QCOMPARE(QByteArray(gpPlfmembuf), QByteArray::fromStdString(plf::Diagonal()));
}

void TestAppWindow::load_graph_saysSoForTwoSeconds()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    Window window;
    QVERIFY(window.Show());
    fixture::EndStatusTime(window); // that of the text which was there before
    window->load(Text(path));
    QCOMPARE(Status(window), QStringLiteral("Loaded document ") + Text(path));
    QCOMPARE(fixture::StatusTime(window), kStatusTime);
    fixture::EndStatusTime(window);
    QCOMPARE(Status(window), QString());
}

void TestAppWindow::load_graph_repaintsTheView()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    Settle();
    fixture::PaintLog paints(window->view);
    window->load(Text(directories->Write("b.plf", plf::Diagonal())));
    Settle();
    QVERIFY(paints.Covers(window->view->rect()));
}

void TestAppWindow::load_beforeThereIsAView_works()
{
    const Window window;
    QCOMPARE(window->view, nullptr);
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    QVERIFY(gpPlfmembuf != nullptr);
}

void TestAppWindow::load_headerOnly_isAGraph()
{
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Header())));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
    QCOMPARE(gdwFilesize, 16UL);
}

void TestAppWindow::CheckNoFile(const Window& window)
{
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray());
    QCOMPARE(gpPlfmembuf, nullptr);
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer"));
}

// Loads a path that has a directory and must fail.
void TestAppWindow::CheckFailure(const std::string& path, const char* message)
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(path));
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.text, QString::fromLatin1(message));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.parent, window.Get());
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
    CheckNoFile(window);
}

void TestAppWindow::load_badFile_isReported_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* name, const QByteArray& path, const char* message) {
        QTest::newRow(name) << path << QByteArray(message);
    };
    row("missing", "none.plf", kCannotOpen);
    row("missing directory", "none/none.plf", kCannotOpen);
    row("directory", "directory", kCannotOpen);
    row("directory with its separator", "directory/", kCannotOpen);
    row("empty", "empty.plf", kCannotOpen);
    row("shorter than the header", "short.plf", kNotPlf);
    row("another header", "other.plf", kNotPlf);
    row("another last byte in the header", "last.plf", kNotPlf);
    row("a header in capitals only", "text.plf", kNotPlf);
    row("below a file", "text.plf/a.plf", kCannotOpen);
    row("link to nothing", "broken.plf", kCannotOpen);
    row("link to itself", "loop.plf", kCannotOpen);
    row("name too long for the system", QByteArray(300, 'n'), kCannotOpen);
    row("null device", "/dev/null", kCannotOpen);
    row("endless device", "/dev/zero", kCannotOpen);
    row("file that cannot be measured", "/proc/self/mem", kCannotOpen);
    row("file without a size", "/proc/self/status", kCannotOpen);
}

void TestAppWindow::load_badFile_isReported()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, message);
    QVERIFY(QDir().mkpath(Text(directories->Path("directory"))));
    static_cast<void>(directories->Write("empty.plf", ""));
    static_cast<void>(directories->Write("short.plf", plf::Header().substr(0, 15)));
    static_cast<void>(directories->Write("other.plf", "X" + plf::Diagonal()));
    static_cast<void>(
        directories->Write("last.plf", plf::Header().substr(0, 15) + "1" + plf::Diagonal()));
    static_cast<void>(directories->Write("text.plf", "TG140000TG1410 and some more text\n"));
    QCOMPARE(symlink("none.plf", directories->Path("broken.plf").c_str()), 0);
    QCOMPARE(symlink("loop.plf", directories->Path("loop.plf").c_str()), 0);
    const std::string name = path.toStdString();
    CheckFailure(name.front() == '/' ? name : directories->Path(name), message.constData());
}

// Also where the tests run as the superuser, who may read everything.
void TestAppWindow::load_unreadableFile_isReported()
{
    constexpr uid_t kNobody = 65534;
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    QCOMPARE(chmod(directories->Path("").c_str(), 0711), 0);
    QCOMPARE(chmod(path.c_str(), 0), 0);
    if (geteuid() == 0)
        setfsuid(kNobody);
    CheckFailure(path, kCannotOpen);
    if (geteuid() == 0)
        setfsuid(0);
}

void TestAppWindow::load_pipe_isReportedAtOnce()
{
    const std::string path = directories->Path("pipe.plf");
    QCOMPARE(mkfifo(path.c_str(), 0600), 0);
    CheckFailure(path, kCannotOpen);
}

void TestAppWindow::load_socket_isReported()
{
    const std::string path = directories->Path("s");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    QVERIFY(CopyText(address.sun_path, path.c_str()));
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    QCOMPARE(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    CheckFailure(path, kCannotOpen);
    close(server);
}

void TestAppWindow::load_badFile_statusTextStays()
{
    Window window;
    QVERIFY(window.Show());
    Box box;
    fixture::ExpectBox(*dialogs, box);
    const std::string path = directories->Path("none.plf");
    window->load(Text(path));
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
    QCOMPARE(fixture::StatusTime(window), 0);
}

void TestAppWindow::load_badFile_titleChangesBeforeTheBox_statusTextAfterIt()
{
    Window window;
    QVERIFY(window.Show());
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    fixture::EndStatusTime(window);
    QString title = QStringLiteral("no box");
    QString status = title;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        title = window->windowTitle();
        status = Status(window);
        box.accept();
    });
    const std::string path = directories->Path("none.plf");
    window->load(Text(path));
    QCOMPARE(title, QStringLiteral("KORVEL Viewer"));
    QCOMPARE(status, QString());
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
}

void TestAppWindow::load_badFile_afterAGraph_leavesNoFile()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Write("b.plf", "no graph")));
    CheckNoFile(window);
}

void TestAppWindow::load_badFile_repaintsTheView()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    Settle();
    Box box;
    fixture::ExpectBox(*dialogs, box);
    fixture::PaintLog paints(window->view);
    window->load(Text(directories->Write("b.plf", "no graph")));
    Settle();
    QVERIFY(paints.Covers(window->view->rect()));
}

void TestAppWindow::load_badFile_keepsTheLastShortName()
{
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Path("none.plf")));
    QCOMPARE(Text(gszPlffileName), QStringLiteral("a.plf"));
}

void TestAppWindow::load_goodFile_afterABadOne_isShown()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Path("none.plf")));
    window->load(Text(path));
    QCOMPARE(box.shown, 1);
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
    QCOMPARE(Status(window), QStringLiteral("Loaded document ") + Text(path));
    QCOMPARE(Text(gszPlffileOrig), Text(path));
}

void TestAppWindow::load_tooLongPath_isRefused()
{
    const std::string path = "/d" + std::string(1022, '/');
    QCOMPARE(path.size(), size_t{1024});
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(path));
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.text,
             QStringLiteral("The file name is too long (1024 bytes, limit 1023) and was ignored."));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.parent, window.Get());
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
    CheckNoFile(window);
}

void TestAppWindow::load_tooLongRelativeName_isRefused()
{
    const std::string name(1000, 'n');
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(name));
    QCOMPARE(box.text,
             QStringLiteral("The file name is too long (%1 bytes, limit 1023) and was ignored.")
                 .arg(strlen(gszCurdir) + 1 + name.size()));
    CheckNoFile(window);
}

void TestAppWindow::load_longestPath_isTried()
{
    std::string path;
    while (path.size() < 1020)
        path += "/d";
    path += "/no";
    QCOMPARE(path.size(), size_t{1023});
    CheckFailure(path, kCannotOpen);
    QCOMPARE(Text(gszCvtFilenameBase), Text(path));
}

void TestAppWindow::load_tooLongPath_doesNotNameExports()
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text("/d" + std::string(2000, '/')));
    QCOMPARE(QByteArray(gszCvtFilenameBase), QByteArray());
}

void TestAppWindow::load_name_becomesAPath_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("hasDirectory");
    QTest::newRow("name alone") << QByteArray("none.plf") << false;
    QTest::newRow("option that nobody knows") << QByteArray("-h") << false;
    QTest::newRow("separator in front only") << QByteArray("/none.plf") << false;
    QTest::newRow("colon in front only") << QByteArray(":none.plf") << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("directory") << QByteArray("none/none.plf") << true;
    QTest::newRow("this directory") << QByteArray("./none.plf") << true;
    QTest::newRow("full path") << QByteArray("/none/none.plf") << true;
    QTest::newRow("backslash") << QByteArray("none\\none.plf") << true;
    QTest::newRow("drive") << QByteArray("C:none.plf") << true;
}

void TestAppWindow::load_name_becomesAPath()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, hasDirectory);
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(QString::fromLocal8Bit(name));
    const QByteArray path = hasDirectory ? name : QByteArray(gszCurdir) + '/' + name;
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + QString::fromLocal8Bit(path));
}

void TestAppWindow::load_relativeName_isFoundInTheStartDirectory()
{
    const std::string path = directories->Write("work/a.plf", plf::Diagonal());
    QVERIFY(QDir::setCurrent(Text(directories->Path("tmp"))));
    const Window window;
    window->load(QStringLiteral("a.plf"));
    QVERIFY(QDir::setCurrent(QStringLiteral("/")));
    QCOMPARE(Text(gszPlffileOrig), Text(path));
    QCOMPARE(Text(gszPlffileName), QStringLiteral("a.plf"));
}

void TestAppWindow::load_relativeName_ignoresTheExportDirectory()
{
    static_cast<void>(directories->Write("tmp/a.plf", plf::Diagonal()));
    QVERIFY(CopyText(gszCurrentWorkingDir, directories->Path("tmp").c_str()));
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(QStringLiteral("a.plf"));
    QCOMPARE(Status(window),
             QStringLiteral("Error reading ") + Text(directories->Path("work/a.plf")));
}

void TestAppWindow::load_relativeName_statusSaysTheNameAsGiven()
{
    static_cast<void>(directories->Write("work/a.plf", plf::Diagonal()));
    const Window window;
    window->load(QStringLiteral("a.plf"));
    QCOMPARE(Status(window), QStringLiteral("Loaded document a.plf"));
}

void TestAppWindow::load_firstFile_namesExports_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("base");
    QTest::newRow("the usual extension") << QByteArray("a.plf") << QByteArray("a");
    QTest::newRow("in capitals") << QByteArray("a.PLF") << QByteArray("a.PLF");
    QTest::newRow("another") << QByteArray("a.dat") << QByteArray("a.dat");
    QTest::newRow("twice") << QByteArray("a.plf.plf") << QByteArray("a.plf");
    QTest::newRow("none") << QByteArray("a") << QByteArray("a");
    QTest::newRow("the extension alone") << QByteArray(".plf") << QByteArray("");
}

void TestAppWindow::load_firstFile_namesExports()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, base);
    const Window window;
    window->load(Text(directories->Write(name.toStdString(), plf::Diagonal())));
    QCOMPARE(Text(gszCvtFilenameBase), Text(directories->Path(base.toStdString())));
}

void TestAppWindow::load_firstFile_namesExportsEvenIfItIsMissing()
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Path("none.plf")));
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    QCOMPARE(Text(gszCvtFilenameBase), Text(directories->Path("none")));
}

void TestAppWindow::load_givenExportName_isKept()
{
    QVERIFY(CopyText(gszCvtFilenameBase, "given"));
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    QCOMPARE(Text(gszCvtFilenameBase), QStringLiteral("given"));
}

void TestAppWindow::load_secondFile_keepsTheExportName()
{
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    window->load(Text(directories->Write("b.plf", plf::Diagonal())));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - b.plf"));
    QCOMPARE(Text(gszPlffileName), QStringLiteral("b.plf"));
    QCOMPARE(Text(gszCvtFilenameBase), Text(directories->Path("a")));
}

void TestAppWindow::load_nameOutsideAscii_isShown()
{
    const std::string path =
        directories->Write("gr\xc3\xbc\xc3\x9f \xe2\x82\xac.plf", plf::Diagonal());
    const Window window;
    window->load(Text(path));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - gr\u00fc\u00df \u20ac.plf"));
    QCOMPARE(Text(gszPlffileOrig), Text(path));
}

void TestAppWindow::load_nameWithMarkup_isShownAsItIs()
{
    const std::string path = directories->Write("<b>&a %1 %s.plf", plf::Diagonal());
    const Window window;
    window->load(Text(path));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - <b>&a %1 %s.plf"));
    QCOMPARE(Status(window), QStringLiteral("Loaded document ") + Text(path));
}

// The toolkit takes "[*]" in a title for the mark of a changed document.
void TestAppWindow::load_nameWithPlaceholder_isWholeInTheTitleBar()
{
    Window window;
    window->load(Text(directories->Write("a[*].plf", plf::Diagonal())));
    QVERIFY(window.Show());
    QCOMPARE(window->windowHandle()->title(), QStringLiteral("KORVEL Viewer - a[*].plf"));
}

void TestAppWindow::refresh_escape_showsTheWholeGraphAgain()
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

void TestAppWindow::resetAspect_shapesTheWindow_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("landscape, 800") << 0 << 800 << 609;
    QTest::newRow("portrait, 800") << 1 << 800 << 1050;
    QTest::newRow("any other orientation, 800") << -7 << 800 << 1050;
    QTest::newRow("landscape, 640") << 0 << 640 << 487;
    QTest::newRow("portrait, 640") << 1 << 640 << 840;
    QTest::newRow("landscape, 1001") << 0 << 1001 << 762;
    QTest::newRow("portrait, 400") << 1 << 400 << 525;
}

void TestAppWindow::resetAspect_shapesTheWindow()
{
    QFETCH(int, orientation);
    QFETCH(int, width);
    QFETCH(int, height);
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    QCOMPARE(window->logicalDpiX(), window->logicalDpiY());
    giCmdPrintOrientation = orientation;
    window->resize(width, 300);
    QTest::keyClick(window.Get(), Qt::Key_0, Qt::ControlModifier);
    QTRY_COMPARE(window->size(), QSize(width, height));
    QCOMPARE(grWinPos.height, int64_t{height});
    QVERIFY2(window->view->height() < height, "the height is the window's, not the view's");
}

void TestAppWindow::keys_open()
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

void TestAppWindow::keys_background()
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

void TestAppWindow::keys_quit()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    QTest::keyClick(window.Get(), Qt::Key_Q, Qt::ControlModifier);
    QTRY_VERIFY(window.IsGone());
}

void TestAppWindow::saveSettings_writesTheFile()
{
    Window window;
    QVERIFY(window.Show());
    window->move(50, 60);
    window->resize(500, 400);
    FindItem(MenuItems(window, "&File"), "&Save Settings")->trigger();
    QFile file(Text(SettingsPath()));
    QCOMPARE(file.size(), qint64{59});
    QVERIFY(ReadBackSettings());
    QCOMPARE(PlaceText(grWinPos), PlaceText(50, 60, 500, 400));
}

void TestAppWindow::saveSettings_saysSo()
{
    Window window;
    QVERIFY(window.Show());
    FindItem(MenuItems(window, "&File"), "&Save Settings")->trigger();
    QCOMPARE(Status(window), QStringLiteral("Settings saved."));
    QCOMPARE(fixture::StatusTime(window), kSavedTime);
    fixture::EndStatusTime(window);
    QCOMPARE(Status(window), QString());
}

void TestAppWindow::saveSettings_intoAMissingDirectory_isSilent()
{
    const Window window;
    QVERIFY(CopyText(gszHomedir, directories->Path("none").c_str()));
    const QString status = Status(window);
    FindItem(MenuItems(window, "&File"), "&Save Settings")->trigger();
    Settle();
    QCOMPARE(Status(window), status);
    QVERIFY(!QFile::exists(Text(SettingsPath())));
}

void TestAppWindow::moving_isRemembered()
{
    Window window;
    QVERIFY(window.Show());
    window->move(50, 60);
    QTRY_COMPARE(PlaceText(grWinPos), PlaceText(50, 60, 640, 487));
    window->move(-20, 0);
    QTRY_COMPARE(PlaceText(grWinPos), PlaceText(-20, 0, 640, 487));
}

void TestAppWindow::resizing_isRemembered()
{
    Window window;
    QVERIFY(window.Show());
    window->resize(500, 400);
    QTRY_COMPARE(PlaceText(grWinPos), PlaceText(200, 200, 500, 400));
}

void TestAppWindow::place_isTheFramesPosition()
{
    Window window;
    QVERIFY(window.Show());
    window->move(50, 60);
    if (window->geometry().topLeft() == window->pos())
        QSKIP("windows have no frame here");
    QTRY_COMPARE(grWinPos.left, int64_t{50});
    QCOMPARE(grWinPos.left, int64_t{window->frameGeometry().left()});
    QCOMPARE(grWinPos.top, int64_t{window->frameGeometry().top()});
    QCOMPARE(grWinPos.width, int64_t{window->geometry().width()});
    QCOMPARE(grWinPos.height, int64_t{window->geometry().height()});
}

void TestAppWindow::place_survivesARestart()
{
    {
        Window window;
        QVERIFY(window.Show());
        window->move(70, 80);
        window->resize(510, 410);
        Settle();
        FindItem(MenuItems(window, "&File"), "&Save Settings")->trigger();
    }
    ResetGlobals();
    Window window;
    QVERIFY(window.Show());
    QCOMPARE(window->pos(), QPoint(70, 80));
    QCOMPARE(window->size(), QSize(510, 410));
}

void TestAppWindow::moveEvent_asASlot_storesThePlace()
{
    const Window window;
    grWinPos = Place(1, 2, 30, 40);
    QMoveEvent event(QPoint(7, 8), QPoint(9, 10));
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "moveEvent", Q_ARG(QMoveEvent*, &event)));
    QCOMPARE(PlaceText(grWinPos), PlaceText(200, 200, 30, 40));
}

void TestAppWindow::resizeEvent_asASlot_storesTheSize()
{
    const Window window;
    grWinPos = Place(1, 2, 30, 40);
    QResizeEvent event(QSize(123, 45), QSize(1, 1));
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "resizeEvent", Q_ARG(QResizeEvent*, &event)));
    QCOMPARE(PlaceText(grWinPos), PlaceText(200, 200, 123, 45));
}

void TestAppWindow::closing_deletesTheWindowAndTheView()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    const QPointer<DrawView> view(window->view);
    QVERIFY(window->close());
    QTRY_VERIFY(window.IsGone());
    QVERIFY(view.isNull());
}

void TestAppWindow::closing_freesTheGraph()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    window->view->update(); // a repaint that still waits
    QVERIFY(gpPlfmembuf != nullptr);
    QVERIFY(window->close());
    QCOMPARE(gpPlfmembuf, nullptr);
    window->view->repaint();
    QTRY_VERIFY(window.IsGone());
}

void TestAppWindow::closing_withoutAutosave_writesNothing()
{
    Window window;
    QVERIFY(window.Show());
    QVERIFY(window->close());
    QTRY_VERIFY(window.IsGone());
    QVERIFY(!QFile::exists(Text(SettingsPath())));
}

void TestAppWindow::closing_withAutosave_writesPlaceAndBackground()
{
    static_cast<void>(directories->Write("home/plotvw.cfg", "autosave=yes\n"));
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    window->move(70, 80);
    window->resize(510, 410);
    QTest::keyClick(window.Get(), Qt::Key_B, Qt::ControlModifier);
    QTest::keyClick(window.Get(), Qt::Key_Q, Qt::ControlModifier);
    QTRY_VERIFY(window.IsGone());
    gbBkClrWhite = true;
    QVERIFY(ReadBackSettings());
    QCOMPARE(PlaceText(grWinPos), PlaceText(70, 80, 510, 410));
    QVERIFY(!gbBkClrWhite);
}

void TestAppWindow::closing_withAutosaveIntoAMissingDirectory_isSilent()
{
    Window window;
    QVERIFY(window.Show());
    giAutosave = 1;
    QVERIFY(CopyText(gszHomedir, directories->Path("none").c_str()));
    QVERIFY(window->close());
    QTRY_VERIFY(window.IsGone());
}

void TestAppWindow::closing_withoutAGraph_isFine()
{
    Window window;
    QVERIFY(window.Show());
    QCOMPARE(gpPlfmembuf, nullptr);
    QVERIFY(window->close());
    QTRY_VERIFY(window.IsGone());
}

void TestAppWindow::quitting_whileTheFileDialogIsOpen_isSurvived()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    dialogs->Expect<QFileDialog>([](QFileDialog&) { QCoreApplication::quit(); });
    QTimer::singleShot(0, window.Get(), [&] { window->choose(); });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(window.IsGone());
}

void TestAppWindow::quitting_whileAnErrorIsShown_isSurvived()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    dialogs->Expect<QMessageBox>([](QMessageBox&) { QCoreApplication::quit(); });
    const QString missing = Text(directories->Path("none.plf"));
    QTimer::singleShot(0, window.Get(), [&] { window->load(missing); });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(window.IsGone());
}

void TestAppWindow::slots_haveTheirOrder()
{
    const QStringList table = {
        QStringLiteral("choose()"),
        QStringLiteral("ExportJpeg()"),
        QStringLiteral("ExportEPS()"),
        QStringLiteral("saveAs()"),
        QStringLiteral("print()"),
        QStringLiteral("backclr()"),
        QStringLiteral("savesettings()"),
        QStringLiteral("refresh()"),
        QStringLiteral("resetaspect()"),
        QStringLiteral("fileProperties()"),
        QStringLiteral("about()"),
        QStringLiteral("moveEvent(QMoveEvent*)"),
        QStringLiteral("resizeEvent(QResizeEvent*)"),
        QStringLiteral("readData()"),
        QStringLiteral("deleteSocket()"),
    };
    QCOMPARE(fixture::OwnMethods(AppWindow::staticMetaObject, QMetaMethod::Slot), table);
}

void TestAppWindow::signals_areNone()
{
    QCOMPARE(fixture::OwnMethods(AppWindow::staticMetaObject, QMetaMethod::Signal), QStringList());
}

void TestAppWindow::metacast_knowsItsNames()
{
    const Window window;
    QCOMPARE(window->qt_metacast("AppWindow"), static_cast<void*>(window.Get()));
    QVERIFY(window->qt_metacast("QMainWindow") != nullptr);
    QCOMPARE(window->qt_metacast("DrawView"), nullptr);
    QCOMPARE(QByteArray(window->metaObject()->className()), QByteArray("AppWindow"));
}

QTEST_MAIN(TestAppWindow)
#include "test_appwindow.moc"
