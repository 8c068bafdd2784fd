// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The dialogs that ask for the name of a copy or an export.
#include "tests/kit/events.h"
#include "tests/kit/exporting.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>

using fixture::Asking;
using fixture::CurrentDirectory;
using fixture::ExportGraph;
using fixture::FilesIn;
using fixture::kEps;
using fixture::kJpeg;
using fixture::kSave;
using fixture::Marker;
using fixture::QuitCounter;
using fixture::ShownArea;
using fixture::Status;
using fixture::TypeNewName;
using fixture::Window;

namespace {

void AskingRows()
{
    QTest::addColumn<Asking>("asking");
    QTest::newRow("save") << kSave;
    QTest::newRow("JPEG") << kJpeg;
    QTest::newRow("EPS") << kEps;
}

} // namespace

class TestExportDialogs : public QObject, protected fixture::ExportTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void dialogs_haveTheirNamesCaptionsAndFilters_data();
    void dialogs_haveTheirNamesCaptionsAndFilters();
    void dialogs_translatedTexts_data();
    void dialogs_translatedTexts();
    void dialogs_cancelled_changeNothing_data();
    void dialogs_cancelled_changeNothing();
    void dialogs_existingFile_isKeptUnlessTheUserAgrees_data();
    void dialogs_existingFile_isKeptUnlessTheUserAgrees();
    void dialogs_nameOutsideAscii_isUsed_data();
    void dialogs_nameOutsideAscii_isUsed();
    void dialogs_quittingWhileOpen_isSurvived_data();
    void dialogs_quittingWhileOpen_isSurvived();
    void userExports_doNotAskToQuit_data();
    void userExports_doNotAskToQuit();
    void userExports_whileAnotherJobIsPending_ask_data();
    void userExports_whileAnotherJobIsPending_ask();
    void graphAndView_areLeftAsTheyWere_data();
    void graphAndView_areLeftAsTheyWere();
};

void TestExportDialogs::dialogs_haveTheirNamesCaptionsAndFilters_data()
{
    AskingRows();
}

void TestExportDialogs::dialogs_haveTheirNamesCaptionsAndFilters()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    const QDir qtsChoice = QFileDialog().directory(); // the dialog itself may change it
    int shown = 0;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        ++shown;
        QCOMPARE(dialog.objectName(), QString::fromLatin1(asking.objectName));
        QCOMPARE(dialog.windowTitle(), QString::fromLatin1(asking.caption));
        QCOMPARE(dialog.nameFilters(), QStringList({QString::fromLatin1(asking.filter),
                                                    QStringLiteral("All Files (*)")}));
        QCOMPARE(dialog.selectedNameFilter(), QString::fromLatin1(asking.filter));
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog.fileMode(), QFileDialog::AnyFile);
        QVERIFY(!dialog.testOption(QFileDialog::DontResolveSymlinks));
        QCOMPARE(dialog.defaultSuffix(), QString());
        QCOMPARE(dialog.directory(), qtsChoice);
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(), QString());
        QCOMPARE(dialog.parentWidget(), window.Get());
        QVERIFY(dialog.isModal());
    });
    Choose(window, asking.item);
    QCOMPARE(shown, 1);
}

void TestExportDialogs::dialogs_translatedTexts_data()
{
    AskingRows();
}

void TestExportDialogs::dialogs_translatedTexts()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    const Marker marker("AppWindow");
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        QCOMPARE(dialog.nameFilters().constFirst(), u'~' + QString::fromLatin1(asking.filter));
    });
    Choose(window, asking.item);
}

void TestExportDialogs::dialogs_cancelled_changeNothing_data()
{
    AskingRows();
}

void TestExportDialogs::dialogs_cancelled_changeNothing()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    const CurrentDirectory current(Path("here"));
    const QString status = Status(window);
    QVERIFY(CopyText(gszCvtFilename, "before"));
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        edit->setText(Text(Path("here/cancelled")));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    Choose(window, asking.item);
    QCOMPARE(FilesIn(Path("here")), QStringList());
    QCOMPARE(Status(window), status);
    QCOMPARE(QByteArray(gszCvtFilename), QByteArray("before"));
}

void TestExportDialogs::dialogs_existingFile_isKeptUnlessTheUserAgrees_data()
{
    QTest::addColumn<Asking>("asking");
    QTest::addColumn<bool>("isWhole"); // the name is typed with its extension
    for (const Asking& asking : {kSave, kJpeg, kEps}) {
        QTest::addRow("%s, whole name", asking.caption) << asking << true;
        QTest::addRow("%s, without extension", asking.caption) << asking << false;
    }
}

// The dialog asks about the file that will be written; the program itself does not.
void TestExportDialogs::dialogs_existingFile_isKeptUnlessTheUserAgrees()
{
    QFETCH(Asking, asking);
    QFETCH(bool, isWhole);
    Window window;
    Open(window);
    const std::string name = std::string("old") + asking.extension;
    const std::string old = directories->Write(name, "content");
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        QStringList asked;
        dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
            QTimer::singleShot(0, &dialog, [&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                QVERIFY(box != nullptr);
                asked.append(box->text());
                box->button(answer)->click();
            });
            TypeNewName(dialog, isWhole ? old : Path("old"));
        });
        Choose(window, asking.item);
        QCOMPARE(asked, QStringList(Text(name) + QStringLiteral(" already exists.\n"
                                                                "Do you want to replace it?")));
        QCOMPARE(ReadFile(old) == QByteArray("content"), answer == QMessageBox::No);
    }
}

void TestExportDialogs::dialogs_nameOutsideAscii_isUsed_data()
{
    AskingRows();
}

void TestExportDialogs::dialogs_nameOutsideAscii_isUsed()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    ChooseAndType(window, asking, Path("work/Größe der Lücke 漢"));
    QCOMPARE(FilesIn(Path("work")), QStringList(QString::fromUtf8("Größe der Lücke 漢") +
                                                QLatin1String(asking.extension)));
}

void TestExportDialogs::dialogs_quittingWhileOpen_isSurvived_data()
{
    AskingRows();
}

void TestExportDialogs::dialogs_quittingWhileOpen_isSurvived()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    dialogs->Expect<QFileDialog>([](QFileDialog&) { QCoreApplication::quit(); });
    QTimer::singleShot(0, window.Get(), [&] { Choose(window, asking.item); });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(window.IsGone());
}

void TestExportDialogs::userExports_doNotAskToQuit_data()
{
    AskingRows();
}

void TestExportDialogs::userExports_doNotAskToQuit()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    gbCmdQuit = true;
    const QuitCounter quits;
    QTimer::singleShot(0, window.Get(), [&] {
        ChooseAndType(window, asking, Path("out"));
        QCoreApplication::exit(7);
    });
    QCOMPARE(QApplication::exec(), 7);
    QCOMPARE(quits.count, 0);
    QVERIFY(Exists(Path("out") + asking.extension));
}

void TestExportDialogs::userExports_whileAnotherJobIsPending_ask_data()
{
    QTest::addColumn<Asking>("asking");
    QTest::addColumn<int>("jobs");
    QTest::newRow("JPEG") << kJpeg << (kJobPrint | kJobEps);
    QTest::newRow("EPS") << kEps << (kJobPrint | kJobJpeg);
}

void TestExportDialogs::userExports_whileAnotherJobIsPending_ask()
{
    QFETCH(Asking, asking);
    QFETCH(int, jobs);
    Window window;
    Open(window);
    giCmdArg = jobs;
    ChooseAndType(window, asking, Path("out"));
    QVERIFY(Exists(Path("out") + asking.extension));
    QCOMPARE(giCmdArg, jobs);
}

void TestExportDialogs::graphAndView_areLeftAsTheyWere_data()
{
    AskingRows();
}

void TestExportDialogs::graphAndView_areLeftAsTheyWere()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    Zoom(window);
    const QImage picture = gpDraw->grab().toImage();
    const char* buffer = gpPlfmembuf;
    ChooseAndType(window, asking, Path("out"));
    QCOMPARE(gpPlfmembuf, buffer);
    QCOMPARE(QByteArray(gpPlfmembuf, static_cast<qsizetype>(gdwFilesize)),
             QByteArray::fromStdString(ExportGraph()));
    QCOMPARE(ShownArea(*gpDraw), QRect(1024, 780, 2048, 1430));
    QCOMPARE(gpDraw->grab().toImage(), picture);
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray::fromStdString(Path("a.plf")));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
}

QTEST_MAIN(TestExportDialogs)
#include "test_exportdialogs.moc"
