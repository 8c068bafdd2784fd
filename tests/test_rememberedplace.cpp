// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The place and size of the main window: where it opens, and what it remembers.
#include "support/settings.h"
#include "tests/kit/appfixture.h"
#include "tests/kit/menus.h"
#include "tests/kit/settingsfile.h"

#include <QScreen>

#include <cstdint>
#include <limits>

using fixture::FindItem;
using fixture::MenuItems;
using fixture::Place;
using fixture::ReadBackSettings;
using fixture::Settle;
using fixture::Status;
using fixture::Window;
using fixture::WriteSettings;

namespace {

constexpr int kSavedTime = 5000; // milliseconds that a text about saving stands
constexpr int64_t kHuge = std::numeric_limits<int64_t>::max();
constexpr int64_t kTiny = std::numeric_limits<int64_t>::min();

std::string SettingsPath()
{
    char path[kPathSize];
    return GetSettingsPath(path) ? path : "";
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

class TestRememberedPlace : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void constructor_withoutSettings_takesTheDefaultPlace();
    void constructor_takesTheStoredPlace();
    void constructor_withPlaceOnTheCommandLine_ignoresTheStoredOne();
    void constructor_absurdPlace_isSurvived_data();
    void constructor_absurdPlace_isSurvived();
    void constructor_largeStoredSize_fitsOnTheScreen();
    void constructor_largeSizeOnTheCommandLine_isKept();
    void constructor_unusablePlaceOnTheCommandLine_isMended();
    void constructor_shortSettings_areSurvived();

    void resetAspect_shapesTheWindow_data();
    void resetAspect_shapesTheWindow();
    void saveSettings_writesTheFile();
    void saveSettings_saysSo();
    void saveSettings_intoAMissingDirectory_isSilent();

    void moving_isRemembered();
    void resizing_isRemembered();
    void place_isTheFramesPosition();
    void place_survivesARestart();
    void moveEvent_asASlot_storesThePlace();
    void resizeEvent_asASlot_storesTheSize();

    void closing_withoutAutosave_writesNothing();
    void closing_withAutosave_writesPlaceAndBackground();
    void closing_withAutosaveIntoAMissingDirectory_isSilent();
};

void TestRememberedPlace::constructor_withoutSettings_takesTheDefaultPlace()
{
    const Window window;
    QCOMPARE(window->pos(), QPoint(200, 200));
    QCOMPARE(window->size(), QSize(640, 487));
    QVERIFY(gbBkClrWhite);
}

void TestRememberedPlace::constructor_takesTheStoredPlace()
{
    QVERIFY(WriteSettings(Place(31, 42, 410, 320), true));
    Window window;
    QVERIFY(window.Show());
    QCOMPARE(window->pos(), QPoint(31, 42));
    QCOMPARE(window->size(), QSize(410, 320));
    QCOMPARE(PlaceText(grWinPos), PlaceText(31, 42, 410, 320));
}

void TestRememberedPlace::constructor_withPlaceOnTheCommandLine_ignoresTheStoredOne()
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

void TestRememberedPlace::constructor_absurdPlace_isSurvived_data()
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

void TestRememberedPlace::constructor_absurdPlace_isSurvived()
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

void TestRememberedPlace::constructor_largeStoredSize_fitsOnTheScreen()
{
    QVERIFY(WriteSettings(Place(100, 100, 3000, 2000), true));
    const Window window;
    QCOMPARE(window->geometry(), window->screen()->availableGeometry());
}

// Hosts ask for large windows to get large pictures.
void TestRememberedPlace::constructor_largeSizeOnTheCommandLine_isKept()
{
    grWinPos = Place(100, 100, 3000, 2000);
    gfCmdlineWndpos = 1;
    const Window window;
    QCOMPARE(window->geometry(), QRect(100, 100, 3000, 2000));
}

void TestRememberedPlace::constructor_unusablePlaceOnTheCommandLine_isMended()
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

void TestRememberedPlace::constructor_shortSettings_areSurvived()
{
    // Whole but for the last field, the height, of which one byte is there.
    std::string settings("1.0\0\0\0\0\0\0\0\1", 11);
    for (const char field : {'\x0a', '\x0b', '\0', '\0'})
        settings += field + std::string(7, '\0');
    settings += std::string("\x2c\1\0\0\0\0\0\0\xf0", 9);
    directories->Write("home/.plotvwsettings", settings);
    const Window window;
    QCOMPARE(window->pos(), QPoint(10, 11));
    QCOMPARE(window->size(), QSize(300, 0x1f0)); // the default 0x1e7 with its low byte replaced
}

void TestRememberedPlace::resetAspect_shapesTheWindow_data()
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

void TestRememberedPlace::resetAspect_shapesTheWindow()
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

void TestRememberedPlace::saveSettings_writesTheFile()
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

void TestRememberedPlace::saveSettings_saysSo()
{
    Window window;
    QVERIFY(window.Show());
    FindItem(MenuItems(window, "&File"), "&Save Settings")->trigger();
    QCOMPARE(Status(window), QStringLiteral("Settings saved."));
    QCOMPARE(fixture::StatusTime(window), kSavedTime);
    fixture::EndStatusTime(window);
    QCOMPARE(Status(window), QString());
}

void TestRememberedPlace::saveSettings_intoAMissingDirectory_isSilent()
{
    const Window window;
    QVERIFY(CopyText(gszHomedir, directories->Path("none").c_str()));
    const QString status = Status(window);
    FindItem(MenuItems(window, "&File"), "&Save Settings")->trigger();
    Settle();
    QCOMPARE(Status(window), status);
    QVERIFY(!QFile::exists(Text(SettingsPath())));
}

void TestRememberedPlace::moving_isRemembered()
{
    Window window;
    QVERIFY(window.Show());
    window->move(50, 60);
    QTRY_COMPARE(PlaceText(grWinPos), PlaceText(50, 60, 640, 487));
    window->move(-20, 0);
    QTRY_COMPARE(PlaceText(grWinPos), PlaceText(-20, 0, 640, 487));
}

void TestRememberedPlace::resizing_isRemembered()
{
    Window window;
    QVERIFY(window.Show());
    window->resize(500, 400);
    QTRY_COMPARE(PlaceText(grWinPos), PlaceText(200, 200, 500, 400));
}

void TestRememberedPlace::place_isTheFramesPosition()
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

void TestRememberedPlace::place_survivesARestart()
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

void TestRememberedPlace::moveEvent_asASlot_storesThePlace()
{
    const Window window;
    grWinPos = Place(1, 2, 30, 40);
    QMoveEvent event(QPoint(7, 8), QPoint(9, 10));
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "moveEvent", Q_ARG(QMoveEvent*, &event)));
    QCOMPARE(PlaceText(grWinPos), PlaceText(200, 200, 30, 40));
}

void TestRememberedPlace::resizeEvent_asASlot_storesTheSize()
{
    const Window window;
    grWinPos = Place(1, 2, 30, 40);
    QResizeEvent event(QSize(123, 45), QSize(1, 1));
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "resizeEvent", Q_ARG(QResizeEvent*, &event)));
    QCOMPARE(PlaceText(grWinPos), PlaceText(200, 200, 123, 45));
}

void TestRememberedPlace::closing_withoutAutosave_writesNothing()
{
    Window window;
    QVERIFY(window.Show());
    QVERIFY(window->close());
    QTRY_VERIFY(window.IsGone());
    QVERIFY(!QFile::exists(Text(SettingsPath())));
}

void TestRememberedPlace::closing_withAutosave_writesPlaceAndBackground()
{
    directories->Write("home/plotvw.cfg", "autosave=yes\n");
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

void TestRememberedPlace::closing_withAutosaveIntoAMissingDirectory_isSilent()
{
    Window window;
    QVERIFY(window.Show());
    giAutosave = 1;
    QVERIFY(CopyText(gszHomedir, directories->Path("none").c_str()));
    QVERIFY(window->close());
    QTRY_VERIFY(window.IsGone());
}

QTEST_MAIN(TestRememberedPlace)
#include "test_rememberedplace.moc"
