// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where the main window goes, on one screen and on several.
#include "app/windowplace.h"

#include <QtTest>

#include <limits>

namespace {

constexpr int64_t kHuge = std::numeric_limits<int64_t>::max();
constexpr int64_t kTiny = std::numeric_limits<int64_t>::min();
constexpr QSize kUsual(640, 487);
constexpr QSize kLeast(160, 120);
constexpr int kTitle = 30; // kept free for a title bar, which comes on top of the height

// A bar of the desktop takes the top of the first one. The second is to its right and lower.
const QList<QRect> kOneScreen = {QRect(0, 24, 1280, 1000)};
const QList<QRect> kTwoScreens = {QRect(0, 24, 1280, 1000), QRect(1280, 300, 1920, 1080)};

Rect Wanted(const QRect& window)
{
    Rect rect = {};
    SetRect(&rect, window.x(), window.y(), window.x() + window.width(),
            window.y() + window.height());
    return rect;
}

Rect Wanted(int64_t left, int64_t top, int64_t width, int64_t height)
{
    return {left, top, left, top, width, height};
}

} // namespace

class TestWindowPlace : public QObject
{
    Q_OBJECT

private slots:
    void usableWindow_staysAsGiven_data();
    void usableWindow_staysAsGiven();
    void windowOffTheScreens_movesToTheNearestPlace_data();
    void windowOffTheScreens_movesToTheNearestPlace();
    void secondScreen_countsToo_data();
    void secondScreen_countsToo();
    void size_hasLimits_data();
    void size_hasLimits();
    void storedSize_fitsOnItsScreen_data();
    void storedSize_fitsOnItsScreen();
    void storedSize_onSeveralScreens_staysAsGiven();
    void size_onTheCommandLine_mayExceedTheScreen();
    void absurdRectangle_becomesUsable_data();
    void absurdRectangle_becomesUsable();
    void withoutScreens_onlyTheLimitsCount();
};

void TestWindowPlace::usableWindow_staysAsGiven_data()
{
    QTest::addColumn<QRect>("window");
    QTest::newRow("the default") << QRect({200, 200}, kUsual);
    QTest::newRow("the whole screen") << kOneScreen[0];
    QTest::newRow("over the right edge") << QRect({1264, 200}, kUsual);
    QTest::newRow("over the left edge") << QRect({-624, 200}, kUsual);
    QTest::newRow("over the lower edge") << QRect({200, 1008}, kUsual);
    QTest::newRow("title half under the desktop's bar") << QRect({200, 10}, kUsual);
    QTest::newRow("smallest") << QRect({200, 200}, kLeast);
}

void TestWindowPlace::usableWindow_staysAsGiven()
{
    QFETCH(QRect, window);
    for (const bool isStored : {false, true})
        QCOMPARE(UsableWindow(Wanted(window), isStored, kOneScreen), window);
}

void TestWindowPlace::windowOffTheScreens_movesToTheNearestPlace_data()
{
    QTest::addColumn<QPoint>("wanted");
    QTest::addColumn<QPoint>("place");
    const int right = 1280 - kUsual.width();
    const int low = 1024 - kUsual.height() - kTitle;
    QTest::newRow("right") << QPoint(1265, 200) << QPoint(right, 200);
    QTest::newRow("left") << QPoint(-625, 200) << QPoint(0, 200);
    QTest::newRow("below") << QPoint(300, 1009) << QPoint(300, low);
    QTest::newRow("title above") << QPoint(300, 9) << QPoint(300, 24);
    QTest::newRow("far above") << QPoint(300, -3000) << QPoint(300, 24);
    QTest::newRow("corner") << QPoint(5000, 5000) << QPoint(right, low);
    QTest::newRow("other corner") << QPoint(-5000, -5000) << QPoint(0, 24);
}

void TestWindowPlace::windowOffTheScreens_movesToTheNearestPlace()
{
    QFETCH(QPoint, wanted);
    QFETCH(QPoint, place);
    for (const bool isStored : {false, true})
        QCOMPARE(UsableWindow(Wanted({wanted, kUsual}), isStored, kOneScreen),
                 QRect(place, kUsual));
}

void TestWindowPlace::secondScreen_countsToo_data()
{
    QTest::addColumn<QPoint>("wanted");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("on the second") << QPoint(2000, 500) << QPoint(2000, 500);
    QTest::newRow("on both") << QPoint(1000, 500) << QPoint(1000, 500);
    QTest::newRow("above the second") << QPoint(2000, 100) << QPoint(2000, 300);
    QTest::newRow("right of the second")
        << QPoint(4000, 900) << QPoint(3200 - 640, 1380 - 487 - kTitle);
    QTest::newRow("below the first") << QPoint(200, 1200) << QPoint(200, 1024 - 487 - kTitle);
}

void TestWindowPlace::secondScreen_countsToo()
{
    QFETCH(QPoint, wanted);
    QFETCH(QPoint, place);
    QCOMPARE(UsableWindow(Wanted({wanted, kUsual}), true, kTwoScreens), QRect(place, kUsual));
}

void TestWindowPlace::size_hasLimits_data()
{
    QTest::addColumn<QSize>("wanted");
    QTest::addColumn<QSize>("size");
    const auto row = [](const char* name, QSize wanted, QSize size) {
        QTest::newRow(name) << wanted << size;
    };
    row("none", {0, 0}, kLeast);
    row("negative", {-640, -487}, kLeast);
    row("smallest width less one", {159, 487}, {160, 487});
    row("smallest width", {160, 487}, {160, 487});
    row("smallest height less one", {640, 119}, {640, 120});
    row("smallest height", {640, 120}, {640, 120});
    row("largest width", {16384, 487}, {16384, 487});
    row("largest width and one", {16385, 487}, {16384, 487});
    row("largest height", {640, 16384}, {640, 16384});
    row("largest height and one", {640, 16385}, {640, 16384});
    row("largest area", {10000, 10000}, {10000, 10000});
    row("largest area and a row", {10000, 10001}, {10000, 10000});
    row("largest area and a column", {10001, 10000}, {10001, 9999});
}

void TestWindowPlace::size_hasLimits()
{
    QFETCH(QSize, wanted);
    QFETCH(QSize, size);
    QCOMPARE(UsableWindow(Wanted({{10, 30}, wanted}), false, kOneScreen), QRect({10, 30}, size));
}

void TestWindowPlace::storedSize_fitsOnItsScreen_data()
{
    QTest::addColumn<QRect>("wanted");
    QTest::addColumn<QRect>("window");
    const QRect& first = kTwoScreens[0];
    const QRect& second = kTwoScreens[1];
    QTest::newRow("both ways") << QRect(0, 0, 4000, 4000) << first;
    QTest::newRow("too wide") << QRect(100, 200, 1281, 487) << QRect(0, 200, first.width(), 487);
    QTest::newRow("too high") << QRect(100, 200, 640, 1001)
                              << QRect(100, first.y(), 640, first.height());
    QTest::newRow("second screen") << QRect(1300, 400, 3000, 3000) << second;
}

void TestWindowPlace::storedSize_fitsOnItsScreen()
{
    QFETCH(QRect, wanted);
    QFETCH(QRect, window);
    QCOMPARE(UsableWindow(Wanted(wanted), true, kTwoScreens), window);
}

// Seen whole, it was made that large on purpose.
void TestWindowPlace::storedSize_onSeveralScreens_staysAsGiven()
{
    const QRect window(100, 300, 3100, 724);
    QCOMPARE(UsableWindow(Wanted(window), true, kTwoScreens), window);
    // A row of pixels of the first part is below its screen.
    QCOMPARE(UsableWindow(Wanted(window.adjusted(0, 0, 0, 1)), true, kTwoScreens).width(),
             kTwoScreens[0].width());
}

void TestWindowPlace::size_onTheCommandLine_mayExceedTheScreen()
{
    const QRect window(100, 200, 4000, 3000);
    QCOMPARE(UsableWindow(Wanted(window), false, kOneScreen), window);
    // Off the screen, it comes to where its corner can be seen.
    QCOMPARE(UsableWindow(Wanted(window.translated(5000, 0)), false, kOneScreen),
             QRect(0, 200, 4000, 3000).translated(0, 24 - 200));
}

void TestWindowPlace::absurdRectangle_becomesUsable_data()
{
    QTest::addColumn<qint64>("place");
    QTest::addColumn<qint64>("side");
    for (const int64_t place : {kTiny, int64_t{0}, kHuge}) {
        for (const int64_t side : {kTiny, int64_t{0}, kHuge})
            QTest::addRow("at %lld, %lld", static_cast<long long>(place),
                          static_cast<long long>(side))
                << qint64{place} << qint64{side};
    }
}

void TestWindowPlace::absurdRectangle_becomesUsable()
{
    QFETCH(qint64, place);
    QFETCH(qint64, side);
    const QRect stored = UsableWindow(Wanted(place, place, side, side), true, kOneScreen);
    QVERIFY(kOneScreen[0].contains(stored));
    const QRect given = UsableWindow(Wanted(place, place, side, side), false, kOneScreen);
    QVERIFY(kOneScreen[0].contains(given.topLeft() + QPoint(0, 24)));
    QVERIFY(int64_t{given.width()} * given.height() <= 100'000'000);
}

void TestWindowPlace::withoutScreens_onlyTheLimitsCount()
{
    QCOMPARE(UsableWindow(Wanted(-40000, 40000, 640, 487), true, {}),
             QRect(-32767, 32767, 640, 487));
}

QTEST_MAIN(TestWindowPlace)
#include "test_windowplace.moc"
