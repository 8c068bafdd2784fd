// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The main window: how it begins and how it ends.
#include "meta/palette.h"
#include "tests/kit/appfixture.h"
#include "tests/kit/settingsfile.h"

#include <QFileDialog>

using fixture::Place;
using fixture::Status;
using fixture::Window;
using fixture::WriteSettings;

namespace {

constexpr int kStatusTime = 2000; // milliseconds that a good text stands

} // namespace

class TestAppWindow : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void constructor_namesTheWindowAndDeletesItOnClose();
    void constructor_withoutAGraph_titlesTheWindow();
    void constructor_fillsThePalettes();
    void constructor_readsTheConfiguration();
    void constructor_readsTheBackgroundChoice();
    void constructor_saysReadyForTwoSeconds();

    void closing_deletesTheWindowAndTheView();
    void closing_freesTheGraph();
    void closing_withoutAGraph_isFine();
    void quitting_whileTheFileDialogIsOpen_isSurvived();
    void quitting_whileAnErrorIsShown_isSurvived();

    void slots_haveTheirOrder();
    void signals_areNone();
    void metacast_knowsItsNames();
};

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
    directories->Write("home/plotvw.cfg", "export_quality=7\nautosave=y\n");
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

void TestAppWindow::constructor_saysReadyForTwoSeconds()
{
    Window window;
    QVERIFY(window.Show());
    QCOMPARE(Status(window), QStringLiteral("Ready"));
    QCOMPARE(fixture::StatusTime(window), kStatusTime);
    fixture::EndStatusTime(window);
    QCOMPARE(Status(window), QString());
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
