// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The status bar: which texts it shows, and from when to when.
#include "app/statustext.h"

#include "tests/kit/appfixture.h"

#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

using fixture::Window;

namespace {

constexpr int kTime = 1000;      // milliseconds of a timed text
constexpr int kPatience = 20000; // milliseconds until a test gives up
const QString kFailure = QStringLiteral("Error reading a.plf");
const QString kSuccess = QStringLiteral("Loaded document a.plf");

// Keeps the thread busy until a timed text that was shown before is overdue.
void RunLongPass()
{
    QTest::qSleep(kTime + 100);
}

// Opens a menu of the bar and goes through it with keys and then over its items with the mouse.
void WalkThroughMenu(QMenuBar& bar, QAction& item)
{
    QMenu& menu = *item.menu();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(&item).center());
    QTRY_VERIFY(menu.isVisible());
    for (QAction* action : menu.actions()) {
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::mouseMove(&menu, menu.actionGeometry(action).center());
    }
    menu.hide();
}

} // namespace

class TestStatusText : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void menus_keepTheText();
    void foreignStatusTips_keepTheText();
    void failure_staysUntilTheNextText();
    void timedText_afterALongPass_isSeenForItsTime();
    void timedText_isRestartedOnce();
    void timedText_thatIsOver_doesNotComeBack();
    void timedText_beforeTheWindow_isSeenForItsTime();
    void lastText_ofALongPass_isKept();

private:
    std::unique_ptr<fixture::Directories> directories;
};

void TestStatusText::init()
{
    directories = std::make_unique<fixture::Directories>();
}

void TestStatusText::menus_keepTheText()
{
    Window window;
    QVERIFY(window.Show());
    window->statusText()->Show(kFailure);
    for (QAction* item : window->menuBar()->actions()) {
        WalkThroughMenu(*window->menuBar(), *item);
        QCOMPARE(Status(window), kFailure);
    }
}

void TestStatusText::foreignStatusTips_keepTheText()
{
    Window window;
    QVERIFY(window.Show());
    window->statusText()->Show(kFailure);
    for (const QString& tip : {QString(), QStringLiteral("tip")}) {
        QStatusTipEvent event(tip);
        QCoreApplication::sendEvent(window.Get(), &event);
        QCOMPARE(Status(window), kFailure);
    }
}

void TestStatusText::failure_staysUntilTheNextText()
{
    Window window;
    QVERIFY(window.Show());
    window->statusText()->Show(kSuccess, kTime);
    window->statusText()->Show(kFailure);
    window->statusText()->PassEnded();
    QVERIFY(!QTest::qWaitFor([&] { return Status(window) != kFailure; }, kTime + 500));
    window->statusText()->Show(kSuccess, kTime);
    QCOMPARE(Status(window), kSuccess);
}

void TestStatusText::timedText_afterALongPass_isSeenForItsTime()
{
    Window window;
    QVERIFY(window.Show());
    window->statusText()->ShowBeforePass(kSuccess, kTime);
    RunLongPass();
    window->statusText()->PassEnded();
    QCoreApplication::processEvents();
    QCOMPARE(Status(window), kSuccess);
    QTRY_COMPARE_WITH_TIMEOUT(Status(window), QString(), kPatience);
}

// Later passes paint for reasons of their own.
void TestStatusText::timedText_isRestartedOnce()
{
    Window window;
    QVERIFY(window.Show());
    window->statusText()->ShowBeforePass(kSuccess, kTime);
    window->statusText()->PassEnded();
    RunLongPass();
    window->statusText()->PassEnded();
    QCoreApplication::processEvents();
    QCOMPARE(Status(window), QString());
}

void TestStatusText::timedText_thatIsOver_doesNotComeBack()
{
    Window window;
    QVERIFY(window.Show());
    window->statusText()->Show(kSuccess, kTime);
    QTRY_COMPARE_WITH_TIMEOUT(Status(window), QString(), kPatience);
    window->statusText()->PassEnded();
    QCOMPARE(Status(window), QString());
    window->hide();
    window->show();
    QCOMPARE(Status(window), QString());
}

// As when the file dialog stands open before the window does.
void TestStatusText::timedText_beforeTheWindow_isSeenForItsTime()
{
    Window window;
    window->statusText()->Show(kSuccess, kTime);
    QTRY_COMPARE_WITH_TIMEOUT(Status(window), QString(), kPatience);
    window->show();
    QCOMPARE(Status(window), kSuccess);
    QTRY_COMPARE_WITH_TIMEOUT(Status(window), QString(), kPatience);
}

void TestStatusText::lastText_ofALongPass_isKept()
{
    Window window;
    QVERIFY(window.Show());
    window->statusText()->ShowBeforePass(kSuccess, kTime);
    window->statusText()->Show(kFailure);
    RunLongPass();
    window->statusText()->PassEnded();
    QCoreApplication::processEvents();
    QCOMPARE(Status(window), kFailure);
}

QTEST_MAIN(TestStatusText)
#include "test_statustext.moc"
