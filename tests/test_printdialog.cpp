// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The dialog that prints, and the settings that it begins with.
#include "tests/kit/events.h"
#include "tests/kit/printing.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPageLayout>
#include <QPageSize>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>

using fixture::AcceptInto;
using fixture::Marker;
using fixture::Settle;
using fixture::Status;
using fixture::Window;

namespace {

constexpr int kPatience = 20000; // milliseconds until a test gives up

// Opens the dialog of properties, which stands on top of the print dialog, and calls handler with
// it.
template <typename Handler> void WithProperties(QPrintDialog& dialog, Handler handler)
{
    bool shown = false;
    QTimer::singleShot(0, &dialog, [&] {
        auto* properties = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(properties != nullptr && properties != &dialog);
        shown = true;
        handler(*properties);
        properties->accept();
    });
    dialog.findChild<QPushButton*>(QStringLiteral("properties"))->click();
    QVERIFY(shown);
}

constexpr char kLandscape[] = "landscape";
constexpr char kPortrait[] = "portrait";

} // namespace

class TestPrintDialog : public QObject, protected fixture::PrintTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void print_dialog_isThePrintersOwn();
    void print_dialog_translatedTitle();
    void print_dialog_isMadeAnewAndGoesWithTheView();
    void print_ctrlP_asks();
    void print_cancelled_printsNothing();
    void print_accepted_printsOnce();
    void print_choiceInTheDialog_isPrinted_data();
    void print_choiceInTheDialog_isPrinted();
    void print_cancelledAfterACmdPrint_keepsItsSettings();
    void print_afterACmdPrint_startsFromItsSettings_data();
    void print_afterACmdPrint_startsFromItsSettings();
    void print_again_startsFromTheLastChoice();
    void print_quittingWhileOpen_isSurvived();

private:
    static void Choose(QDialog& properties, QPageSize::PageSizeId size,
                       QPageLayout::Orientation orientation);
};

void TestPrintDialog::print_dialog_isThePrintersOwn()
{
    Window window;
    Open(window);
    const QPrinter* printer = nullptr;
    for (int i = 0; i < 2; ++i) {
        dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Print Graph"));
            QCOMPARE(dialog.parentWidget(), window->view);
            QVERIFY(dialog.isModal());
            QVERIFY(printer == nullptr || printer == dialog.printer());
            printer = dialog.printer();
        });
        QVERIFY(QMetaObject::invokeMethod(window.Get(), "print"));
    }
    QVERIFY(printer != nullptr);
}

void TestPrintDialog::print_dialog_translatedTitle()
{
    Window window;
    Open(window);
    const Marker marker("DrawView");
    dialogs->Expect<QPrintDialog>([](QPrintDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("~Print Graph"));
    });
    gpDraw->printIt();
}

void TestPrintDialog::print_dialog_isMadeAnewAndGoesWithTheView()
{
    QList<QPointer<QPrintDialog>> shown;
    {
        Window window;
        Open(window);
        for (int i = 0; i < 3; ++i) {
            dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
                QVERIFY(!shown.contains(&dialog));
                shown.append(&dialog);
            });
            gpDraw->printIt();
        }
        Settle();
        QCOMPARE(gpDraw->findChildren<QPrintDialog*>().size(), 3);
    }
    QCOMPARE(shown, QList<QPointer<QPrintDialog>>(3));
}

void TestPrintDialog::print_ctrlP_asks()
{
    Window window;
    Open(window);
    int shown = 0;
    dialogs->Expect<QPrintDialog>([&](QPrintDialog&) { ++shown; });
    QTest::keyClick(window.Get(), Qt::Key_P, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(shown, 1, kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activeModalWidget() == nullptr, kPatience);
}

void TestPrintDialog::print_cancelled_printsNothing()
{
    Window window;
    Open(window);
    const QString status = Status(window);
    const std::string pdf = Path("page.pdf");
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        dialog.printer()->setOutputFileName(Text(pdf));
        dialog.findChild<QLineEdit*>(QStringLiteral("filename"))->setText(Text(pdf));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    gpDraw->printIt();
    QVERIFY(!Exists(pdf));
    QCOMPARE(Status(window), status);
}

void TestPrintDialog::print_accepted_printsOnce()
{
    Window window;
    Open(window);
    const std::string pdf = Path("page.pdf");
    gbCmdQuit = true; // concerns jobs of the command line alone
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) { AcceptInto(dialog, pdf); });
    gpDraw->printIt();
    CheckPage(pdf, QPageSize::A4, QPageLayout::Portrait);
    QVERIFY(!window.IsGone() && window->isVisible());
}

// In the dialog's own dialog of properties.
void TestPrintDialog::Choose(QDialog& properties, QPageSize::PageSizeId size,
                             QPageLayout::Orientation orientation)
{
    auto* sizes = properties.findChild<QComboBox*>(QStringLiteral("pageSizeCombo"));
    auto* button = properties.findChild<QRadioButton*>(
        QString::fromLatin1(orientation == QPageLayout::Landscape ? kLandscape : kPortrait));
    QVERIFY(sizes != nullptr);
    QVERIFY(button != nullptr);
    const int index = sizes->findText(QPageSize::name(size));
    QVERIFY(index >= 0);
    sizes->setCurrentIndex(index);
    button->click();
}

void TestPrintDialog::print_choiceInTheDialog_isPrinted_data()
{
    QTest::addColumn<int>("paper");
    QTest::addColumn<QPageLayout::Orientation>("orientation");
    QTest::newRow("A5 landscape") << int{QPageSize::A5} << QPageLayout::Landscape;
    QTest::newRow("Legal portrait") << int{QPageSize::Legal} << QPageLayout::Portrait;
}

// The settings of the command line do not count here.
void TestPrintDialog::print_choiceInTheDialog_isPrinted()
{
    QFETCH(int, paper);
    QFETCH(QPageLayout::Orientation, orientation);
    const auto size = static_cast<QPageSize::PageSizeId>(paper);
    Window window;
    Open(window);
    const std::string pdf = Path("page.pdf");
    giCmdPrintPapertype = 2;
    giCmdPrintOrientation = orientation == QPageLayout::Landscape ? 1 : 0;
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        WithProperties(dialog, [&](QDialog& properties) { Choose(properties, size, orientation); });
        AcceptInto(dialog, pdf);
    });
    gpDraw->printIt();
    CheckPage(pdf, size, orientation);
}

void TestPrintDialog::print_cancelledAfterACmdPrint_keepsItsSettings()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("first.pdf"));
    giCmdPrintPapertype = 2;
    giCmdPrintOrientation = 1;
    gpDraw->cmdPrint();
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        dialog.printer()->setOutputFileName(Text(Path("second.pdf")));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    gpDraw->printIt();
    gpDraw->PrintGraph();
    CheckPage(Path("second.pdf"), QPageSize::A4, QPageLayout::Portrait);
}

void TestPrintDialog::print_afterACmdPrint_startsFromItsSettings_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("setting");
    QTest::addColumn<int>("paper");
    QTest::addColumn<QPageLayout::Orientation>("orientation");
    QTest::newRow("Letter landscape") << 0 << 0 << int{QPageSize::Letter} << QPageLayout::Landscape;
    QTest::newRow("Legal portrait") << 1 << 1 << int{QPageSize::Legal} << QPageLayout::Portrait;
    QTest::newRow("A4 landscape") << 2 << 0 << int{QPageSize::A4} << QPageLayout::Landscape;
}

void TestPrintDialog::print_afterACmdPrint_startsFromItsSettings()
{
    QFETCH(int, type);
    QFETCH(int, setting);
    QFETCH(int, paper);
    QFETCH(QPageLayout::Orientation, orientation);
    const auto size = static_cast<QPageSize::PageSizeId>(paper);
    Window window;
    Open(window);
    giCmdPrintPapertype = type;
    giCmdPrintOrientation = setting;
    SetPrinter(window, Path("first.pdf"));
    gpDraw->cmdPrint();
    giCmdPrintPapertype = 3;
    giCmdPrintOrientation = 1 - setting;
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        const QPageLayout layout = dialog.printer()->pageLayout();
        QCOMPARE(layout.pageSize().id(), size);
        QCOMPARE(layout.orientation(), orientation);
        WithProperties(dialog, [&](QDialog& properties) {
            QCOMPARE(
                properties.findChild<QComboBox*>(QStringLiteral("pageSizeCombo"))->currentText(),
                QPageSize::name(size));
            QCOMPARE(
                properties.findChild<QRadioButton*>(QString::fromLatin1(kLandscape))->isChecked(),
                orientation == QPageLayout::Landscape);
        });
        AcceptInto(dialog, Path("page.pdf"));
    });
    gpDraw->printIt();
    CheckPage(Path("page.pdf"), size, orientation);
}

void TestPrintDialog::print_again_startsFromTheLastChoice()
{
    Window window;
    Open(window);
    const std::string first = Path("first.pdf");
    const std::string second = Path("second.pdf");
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        WithProperties(dialog, [](QDialog& properties) {
            Choose(properties, QPageSize::A5, QPageLayout::Landscape);
        });
        AcceptInto(dialog, first);
    });
    gpDraw->printIt();
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        QCOMPARE(dialog.printer()->outputFileName(), Text(first));
        AcceptInto(dialog, second);
    });
    gpDraw->printIt();
    CheckPage(second, QPageSize::A5, QPageLayout::Landscape);
}

void TestPrintDialog::print_quittingWhileOpen_isSurvived()
{
    Window window;
    Open(window);
    dialogs->Expect<QPrintDialog>([](QPrintDialog&) { QCoreApplication::quit(); });
    QTimer::singleShot(0, window.Get(), [] { gpDraw->printIt(); });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(window.IsGone());
}

QTEST_MAIN(TestPrintDialog)
#include "test_printdialog.moc"
