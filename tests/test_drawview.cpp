// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The view: how it begins, and what others see of it.
#include "app/drawview.h"
#include "tests/kit/viewfixture.h"

#include <QFileDialog>

using fixture::Box;
using fixture::kWholeArea;
using fixture::Settle;
using fixture::TypeName;
using fixture::View;
using fixture::Window;

class TestDrawView : public QObject, protected fixture::ViewTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void constructor_withAFile_loadsIt();
    void constructor_withABadFile_reportsIt();
    void constructor_withoutAFile_asksForOne();
    void constructor_withoutAFile_loadsTheChosenOne();
    void start_dialogCancelled_leavesAnOpenWindow();
    void start_errorConfirmed_leavesAnOpenWindow();
    void constructor_isTheWindowsViewBeforeItLoads();
    void constructor_becomesAChildAtTheCorner();
    void constructor_hidesTheRubberBand();

    void updateIt_repaints();
    void customEventSlot_doesNothing();

    void slots_haveTheirOrder();
    void signals_areNone();
    void metacast_knowsItsNames();
};

void TestDrawView::constructor_withAFile_loadsIt()
{
    Window window;
    window.AddViewOf(Cross());
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - cross.plf"));
    QCOMPARE(window->view, gpDraw);
    QVERIFY(gpPlfmembuf != nullptr);
}

void TestDrawView::constructor_withABadFile_reportsIt()
{
    Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window.AddViewOf(directories->Path("none.plf"));
    QCOMPARE(box.shown, 1);
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray());
}

void TestDrawView::constructor_withoutAFile_asksForOne()
{
    Window window;
    int asked = 0;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        ++asked;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Open File"));
        QVERIFY(!window->isVisible());
        QVERIFY(window->view != nullptr);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    window.AddView();
    QCOMPARE(asked, 1);
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray());
    QVERIFY(window.Show());
    QCOMPARE(window->centralWidget(), window->view);
}

void TestDrawView::constructor_withoutAFile_loadsTheChosenOne()
{
    const QString path = QString::fromStdString(Cross());
    Window window;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, path); });
    window.AddView();
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - cross.plf"));
}

// Runs the event loop as the program does, until everything that waits at its start has happened,
// and returns whether the window is still there.
static bool StaysOpen(Window& window)
{
    constexpr int kStillRunning = 5;
    window.Get()->show();
    gpDraw->PostCmdargDone(0);
    bool visible = false;
    QTimer::singleShot(50, qApp, [&] {
        visible = !window.IsGone() && window->isVisible();
        QCoreApplication::exit(kStillRunning);
    });
    return QApplication::exec() == kStillRunning && visible;
}

// The dialog is the program's only window then, and its last.
void TestDrawView::start_dialogCancelled_leavesAnOpenWindow()
{
    Window window;
    dialogs->Expect<QFileDialog>(
        [](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    window.AddView();
    QVERIFY(StaysOpen(window));
}

void TestDrawView::start_errorConfirmed_leavesAnOpenWindow()
{
    Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window.AddViewOf(directories->Path("none.plf"));
    QVERIFY(StaysOpen(window));
}

void TestDrawView::constructor_isTheWindowsViewBeforeItLoads()
{
    Window window;
    const DrawView* view = nullptr;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        view = window->view;
        QVERIFY(view != nullptr);
        QCOMPARE(view->parentWidget(), nullptr);
        QVERIFY(view->findChild<QRubberBand*>() != nullptr);
        box.accept();
    });
    window.AddViewOf(directories->Path("none.plf"));
    QCOMPARE(view, window->view);
}

void TestDrawView::constructor_becomesAChildAtTheCorner()
{
    const QSize ownSize = QWidget().size();
    Window window;
    QVERIFY(CopyText(gszPlffileOrig, Cross().c_str()));
    DrawView view(window.Get());
    QCOMPARE(view.parentWidget(), window.Get());
    QVERIFY(!view.isWindow());
    QCOMPARE(view.geometry(), QRect(QPoint(0, 0), ownSize));
    QCOMPARE(view.backgroundRole(), QPalette::Base);
    QVERIFY(view.autoFillBackground());
    window->view = nullptr;
}

void TestDrawView::constructor_hidesTheRubberBand()
{
    const View view(Cross());
    QCOMPARE(view->findChildren<QRubberBand*>().size(), 1);
    QCOMPARE(view.Band()->parentWidget(), view.Get());
    QCOMPARE(view.Band()->shape(), QRubberBand::Rectangle);
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), kWholeArea);
}

void TestDrawView::updateIt_repaints()
{
    const View view(Cross());
    fixture::PaintLog paints(view.Get());
    view->updateIt();
    QVERIFY(!paints.Covers(view->rect()));
    Settle();
    QVERIFY(paints.Covers(view->rect()));
}

void TestDrawView::customEventSlot_doesNothing()
{
    const View view(Cross());
    fixture::PaintLog paints(view.Get());
    QCustomEvent event;
    QVERIFY(QMetaObject::invokeMethod(view.Get(), "customEvent", Q_ARG(QCustomEvent*, &event)));
    QEvent user(QEvent::User);
    QCoreApplication::sendEvent(view.Get(), &user); // the event handler of that name is another
    Settle();
    QVERIFY(!paints.Covers(view->rect()));
    QCOMPARE(view.Shown(), kWholeArea);
}

void TestDrawView::slots_haveTheirOrder()
{
    const QStringList table = {
        QStringLiteral("updateIt()"),
        QStringLiteral("printIt()"),
        QStringLiteral("cmdPrint()"),
        QStringLiteral("customEvent(QCustomEvent*)"),
        QStringLiteral("PostCmdargDone(int)"),
        QStringLiteral("drawIt(QPainter*,bool,int)"),
        QStringLiteral("drawIt(QPainter*,bool)"),
        QStringLiteral("drawIt(QPainter*)"),
    };
    QCOMPARE(fixture::OwnMethods(DrawView::staticMetaObject, QMetaMethod::Slot), table);
}

void TestDrawView::signals_areNone()
{
    QCOMPARE(fixture::OwnMethods(DrawView::staticMetaObject, QMetaMethod::Signal), QStringList());
}

void TestDrawView::metacast_knowsItsNames()
{
    const View view(Cross());
    QCOMPARE(view->qt_metacast("DrawView"), static_cast<void*>(view.Get()));
    QVERIFY(view->qt_metacast("QWidget") != nullptr);
    QCOMPARE(view->qt_metacast("AppWindow"), nullptr);
    QCOMPARE(QByteArray(view->metaObject()->className()), QByteArray("DrawView"));
}

QTEST_MAIN(TestDrawView)
#include "test_drawview.moc"
