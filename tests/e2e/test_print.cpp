// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Pages that the user prints, on a print server. They are measured.
#include "tests/e2e/jobstest.h"

namespace {

const QString kPropertiesTitle = QStringLiteral("Printer Properties");

} // namespace

class TestPrint : public QObject, protected JobsTest
{
    Q_OBJECT

private slots:
    void initTestCase() { BeginAll(); }
    void cleanupTestCase() { EndAll(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void print_accepted_printsWhatIsShown();
    void print_zoomed_fillsTheArea();
    void print_ownBackground_isPrinted();
    void print_cancelled_sendsNothing();
    void print_afterAJob_keepsPaperAndOrientation_data();
    void print_afterAJob_keepsPaperAndOrientation();
    void print_properties_beginWithThePrintersPaper_data();
    void print_properties_beginWithThePrintersPaper();
};

void TestPrint::print_accepted_printsWhatIsShown()
{
    Open();
    for (int i = 0; i < 2; ++i) {
        PressKeys(QStringLiteral("ctrl+p"));
        QVERIFY(viewer->AwaitWindow(kPrintTitle));
        PressKeys(QStringLiteral("Return"));
        QVERIFY(viewer->AwaitWindow(kGraphTitle));
        CheckPage(TakePage(), kA4Portrait, PrintedGraph(kA4Portrait));
        QCOMPARE(server->Name(jobsBefore), QStringLiteral("graph.plf"));
    }
    QCOMPARE(PrintServer::Jobs(), jobsBefore);
    Quit();
}

void TestPrint::print_zoomed_fillsTheArea()
{
    const QRect selection(60, 40, 400, 300);
    Configure("printer_paper_type=2\n");
    Open({QStringLiteral("-p")});
    CheckPage(TakePage(), kA4Landscape, PrintedGraph(kA4Landscape));
    const QRectF part = PartUnder(selection, Canvas());
    Zoom(selection);
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Return"));
    CheckPage(TakePage(), kA4Landscape, PrintedGraph(kA4Landscape), part);
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

void TestPrint::print_ownBackground_isPrinted()
{
    Open();
    PressKeys(QStringLiteral("ctrl+b"));
    QVERIFY(Await([this] { return viewer->Canvas(QColor(kYellow)).height() > 0; }));
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Return"));
    const PrintedPage page = TakePage();
    QCOMPARE(page.areas.size(), 1);
    QCOMPARE(page.areas.constFirst().color.rgb(), kYellow);
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

void TestPrint::print_cancelled_sendsNothing()
{
    Open();
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Escape"));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
    QCOMPARE(PrintServer::Jobs(), jobsBefore);
}

void TestPrint::print_afterAJob_keepsPaperAndOrientation_data()
{
    QTest::addColumn<QByteArray>("paper");
    QTest::addColumn<QString>("options");
    QTest::addColumn<Sheet>("sheet");
    QTest::newRow("Letter landscape")
        << QByteArray("0") << QStringLiteral("-p") << kLetterLandscape;
    QTest::newRow("Legal portrait")
        << QByteArray("1") << QStringLiteral("-p -po=p") << kLegalPortrait;
    QTest::newRow("A4 landscape") << QByteArray("2") << QStringLiteral("-p") << kA4Landscape;
}

// Qt's own choice would be the queue's paper, A4.
void TestPrint::print_afterAJob_keepsPaperAndOrientation()
{
    QFETCH(QByteArray, paper);
    QFETCH(QString, options);
    QFETCH(Sheet, sheet);
    Configure("printer_paper_type=" + paper + '\n');
    Open(Words(options));
    CheckPage(TakePage(), sheet, PrintedGraph(sheet));
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Return"));
    CheckPage(TakePage(), sheet, PrintedGraph(sheet));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

void TestPrint::print_properties_beginWithThePrintersPaper_data()
{
    QTest::addColumn<QStringList>("windows"); // keys for the properties window, each time it opens
    QTest::addColumn<Sheet>("sheet");
    const QString legal = QStringLiteral("Tab l e g ");
    const QString accept = QStringLiteral("Return");
    const QString cancel = QStringLiteral("Escape");
    QTest::newRow("accepted") << QStringList{accept} << kLetterLandscape;
    QTest::newRow("cancelled") << QStringList{cancel} << kLetterLandscape;
    QTest::newRow("other paper") << QStringList{legal + accept} << kLegalLandscape;
    QTest::newRow("other paper cancelled") << QStringList{legal + cancel} << kLetterLandscape;
    QTest::newRow("cancelled, then accepted") << QStringList{cancel, accept} << kLetterLandscape;
    QTest::newRow("other paper, then accepted")
        << QStringList{legal + accept, accept} << kLegalLandscape;
}

void TestPrint::print_properties_beginWithThePrintersPaper()
{
    QFETCH(QStringList, windows);
    QFETCH(Sheet, sheet);
    Configure("printer_paper_type=0\n");
    Open({QStringLiteral("-p")});
    CheckPage(TakePage(), kLetterLandscape, PrintedGraph(kLetterLandscape));
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    for (const QString& keys : windows) {
        PressKeys(QStringLiteral("alt+r"));
        QVERIFY(viewer->AwaitWindow(kPropertiesTitle));
        for (const QString& key : Words(keys))
            PressKeys(key);
        QVERIFY(viewer->AwaitWindow(kPrintTitle));
    }
    PressKeys(QStringLiteral("Return"));
    QCOMPARE(TakePage().paper, sheet.size); // the margins are then Qt's choice
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

QTEST_MAIN(TestPrint)
#include "test_print.moc"
