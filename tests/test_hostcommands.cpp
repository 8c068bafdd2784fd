// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Commands of a host while something else happens to the window: the host and the window are both
// in this program, so that the test says when. Commands as such are tested with the real program.
#include "tests/kit/hostend.h"

#include <QAbstractEventDispatcher>
#include <QRegularExpression>

#include <unistd.h>

using fixture::Box;
using fixture::kAccept;
using fixture::Settle;
using fixture::Window;

namespace {

// Calls a slot that is not public.
void Call(const Window& window, const char* slot)
{
    QVERIFY(QMetaObject::invokeMethod(window.Get(), slot));
}

void CloseSoon(const Window& window)
{
    QMetaObject::invokeMethod(window.Get(), "close", Qt::QueuedConnection);
}

// Calls AppWindow::writeData, which is private: nothing else does while the link is not open.
void WriteData(AppWindow& window, const QString& message);
template <auto writeData> struct Revealed {
    friend void WriteData(AppWindow& window, const QString& message)
    {
        (window.*writeData)(message);
    }
};
template struct Revealed<&AppWindow::writeData>;

// Closes the window when its view is painted.
class ClosingPaint : public QObject
{
public:
    explicit ClosingPaint(const Window& painted) : window(painted)
    {
        window->view->installEventFilter(this);
    }
    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !std::exchange(closed, true))
            CloseSoon(window);
        return false;
    }
    [[nodiscard]] bool WasPainted() const { return closed; }

private:
    const Window& window;
    bool closed = false;
};

// Counts how often events are let happen, and after how many times the view was painted first.
class PassLog : public QObject
{
public:
    explicit PassLog(const Window& window)
    {
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this,
                [this] { ++passes; });
        window->view->installEventFilter(this);
    }
    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && paintPass == 0)
            paintPass = passes;
        return false;
    }
    [[nodiscard]] bool WasPainted() const { return paintPass != 0; }
    [[nodiscard]] int PassesSincePaint() const { return passes - paintPass; }

private:
    int passes = 0;
    int paintPass = 0;
};

} // namespace

class TestHostCommands : public QObject, protected fixture::HostTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void command_isCarriedOut();
    void command_nameOutsideAscii_isCarriedOut();
    void command_longerThanItsLengthCanTell_isCarriedOut();
    void command_whoseJobCannotBeDone_isAnswered();
    void command_itsGraphIsDrawn_beforeItsJobsLetAnythingHappen();
    void command_withAPlaceAndNoFile_movesTheWindow();
    void command_withoutAPlace_leavesTheWindowAndWhatTheStartSaid();
    void command_thatCannotBeUsed_isRefusedWhole_data();
    void command_thatCannotBeUsed_isRefusedWhole();
    void command_whoseFileIsTooLongAsAPath_isRefused();
    void command_thatWasRefused_endsTheTemporaryFileBeforeIt();
    void command_thatWasRefused_bringsTheLinkIntoStep();

    void temporaryFile_whoseNameIsNoText_isDeletedUnderThatNameAlone();
    void temporaryFile_whoseNameDoesNotFit_isNotDeletedUnderAShorterOne_data();
    void temporaryFile_whoseNameDoesNotFit_isNotDeletedUnderAShorterOne();

    void flood_duringABox_waitsAtTheHost();

    void readData_letsHappenWhatWaits_beforeItReads();
    void readData_withoutAMessage_returns();
    void readData_withoutALink_returns();
    void writeData_withoutAServer_writesNothing();
    void deleteSocket_endsTheLink();
    void deleteSocket_whileACommandWaits_dropsIt();

    void closing_beforeACommandIsRead_isSurvived();
    void closing_whileItsGraphIsDrawn_isSurvived();
    void closing_whileItsErrorIsShown_isSurvived();
    void closing_whileItsUsageIsShown_isSurvived();
    void closing_whileItsLengthIsRefused_isSurvived();
    void closing_whileItsJobFails_isSurvived();
    void closing_keepsTheLinkUntilTheEnd();

private:
    void Open(const std::string& path);
};

// A window with a graph and a host.
void TestHostCommands::Open(const std::string& path)
{
    window.emplace();
    QVERIFY(host->AwaitViewer());
    window->AddViewOf(path);
    QVERIFY(window->Show());
    Settle();
}

void TestHostCommands::command_isCarriedOut()
{
    Open(graph);
    host->Send(QStringLiteral("other.plf"));
    QTRY_COMPARE(host->Answers(), 2);
    QCOMPARE(Text(gszPlffileOrig), other);
}

void TestHostCommands::command_nameOutsideAscii_isCarriedOut()
{
    Open(graph);
    const std::string path = directories->Write("work/Kr\u00fcmmung_\u03a9.plf", plf::Diagonal());
    host->Send(QStringLiteral(u"Kr\u00fcmmung_\u03a9.plf"));
    QTRY_COMPARE(host->Answers(), 2);
    QCOMPARE(Text(gszPlffileOrig), Text(path));
}

void TestHostCommands::command_longerThanItsLengthCanTell_isCarriedOut()
{
    Open(graph);
    const QString options = QStringLiteral(" -po=l").repeated(10'000);
    host->Send(QStringLiteral("other.plf") + options);
    QTRY_COMPARE(host->Answers(), 2);
    QCOMPARE(Text(gszPlffileOrig), other);
}

void TestHostCommands::command_whoseJobCannotBeDone_isAnswered()
{
    Open(graph);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    host->Send(QStringLiteral("other.plf -c=1 -cwd=/nowhere -cf=out"));
    QTRY_COMPARE(host->Answers(), 2);
    QCOMPARE(box.title, QStringLiteral("Save failed"));
    QCOMPARE(giCmdArg, 0);
}

// They do so once before they begin, also when there are none.
void TestHostCommands::command_itsGraphIsDrawn_beforeItsJobsLetAnythingHappen()
{
    Open(graph);
    host->Send(QStringLiteral("other.plf"));
    const PassLog log(*window);
    Call(*window, "readData");
    QCOMPARE(Text(gszPlffileOrig), other);
    QVERIFY(log.WasPainted());
    QVERIFY(log.PassesSincePaint() > 0);
}

void TestHostCommands::command_withAPlaceAndNoFile_movesTheWindow()
{
    Open(graph);
    host->Send(QStringLiteral("-wp=30,40,350,250"));
    QTRY_COMPARE((*window)->size(), QSize(350, 250));
    QCOMPARE((*window)->pos(), QPoint(30, 40));
    QCOMPARE(gfCmdlineWndpos, 1);
    Settle();
    QCOMPARE(host->Answers(), 1);
}

void TestHostCommands::command_withoutAPlace_leavesTheWindowAndWhatTheStartSaid()
{
    gfCmdlineWndpos = 1;
    Open(graph);
    const QRect place = (*window)->geometry();
    SetRect(&grWinPos, 30, 40, 380, 290); // where a place would be applied
    host->Send(QStringLiteral("other.plf"));
    QTRY_COMPARE(host->Answers(), 2);
    QCOMPARE((*window)->geometry(), place);
    QCOMPARE(gfCmdlineWndpos, 1);
}

void TestHostCommands::readData_letsHappenWhatWaits_beforeItReads()
{
    Open(graph);
    bool happened = false;
    QMetaObject::invokeMethod(
        window->Get(), [&happened] { happened = true; }, Qt::QueuedConnection);
    Call(*window, "readData");
    QVERIFY(happened);
}

// As a text of the program's own such a word would be another one: cut at its zero, or with another
// character in place of the half one. A word that is too long would be cut as well.
void TestHostCommands::command_thatCannotBeUsed_isRefusedWhole_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("text");
    constexpr QChar kZero(u'\0');
    constexpr QChar kHalf(0xd800);
    const auto row = [](const char* name, QChar bad, QString command) {
        QTest::newRow(name) << command.replace(u'#', bad)
                            << QStringLiteral("The host sent a command line with invalid "
                                              "characters; it was ignored.");
    };
    row("a zero behind a name", kZero, QStringLiteral("other.plf#x -tmp"));
    row("a zero at the end of a name", kZero, QStringLiteral("other.plf# -tmp"));
    row("a zero in an option", kZero, QStringLiteral("other.plf -tmp -cf=a#"));
    row("half a character in a name", kHalf, QStringLiteral("-tmp oth#er.plf"));
    row("half a character in an option", kHalf, QStringLiteral("other.plf -tmp -cf=#"));
    row("half a character behind jobs", kHalf, QStringLiteral("-c=1 -p -cf=new -wp=1,2 -q -tmp #"));
    const auto longRow = [](const char* name, const QString& option, int length, int limit,
                            const QString& behind = {}) {
        QTest::newRow(name) << QStringLiteral("-c=1 -p -tmp other.plf -wp=1,2 -q ") + option +
                                   QString(length, u'x') + behind
                            << QStringLiteral("limit %1) and was ignored.").arg(limit);
    };
    longRow("a long file", QString(), 5000, kPathSize - 1);
    longRow("a file that is one too long", QString(), kPathSize, kPathSize - 1);
    longRow("a long file before another", QString(), 5000, kPathSize - 1,
            QStringLiteral(" other.plf"));
    longRow("a long name for exports", QStringLiteral("-cf="), kPathSize, kPathSize - 1);
    longRow("a long folder", QStringLiteral("-cwd="), kWorkingDirSize, kWorkingDirSize - 1);
}

void TestHostCommands::command_thatCannotBeUsed_isRefusedWhole()
{
    QFETCH(QString, command);
    QFETCH(QString, text);
    Open(graph);
    // The name that a replaced character would make.
    const std::string replaced = directories->Write("work/oth\xef\xbf\xbd"
                                                    "er.plf",
                                                    plf::Diagonal());
    const QRect place = (*window)->geometry();
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        QVERIFY2(box.text().contains(text), qPrintable(box.text()));
        QCOMPARE(host->Answers(), 1);
        QVERIFY(!gbIsTempFile); // closing the window now would delete the file
        box.accept();
    });
    host->Send(command);
    QTRY_COMPARE(host->Answers(), 2);
    Settle();
    QCOMPARE(Text(gszPlffileOrig), Text(graph));
    QCOMPARE((*window)->windowTitle(), QStringLiteral("KORVEL Viewer - graph.plf"));
    QVERIFY(gpPlfmembuf != nullptr);
    QCOMPARE(Text(gszCvtFilenameBase), Text(graph).chopped(4));
    QCOMPARE(gszCurrentWorkingDir[0], '\0');
    QCOMPARE((*window)->geometry(), place);
    QCOMPARE(giCmdArg, 0);
    QVERIFY(!gbCmdQuit);
    // The next command works.
    host->Send(QStringLiteral("other.plf"));
    QTRY_COMPARE(host->Answers(), 3);
    QCOMPARE(Text(gszPlffileOrig), other);
    window.reset();
    QVERIFY(QFile::exists(other) && QFile::exists(Text(replaced)) && QFile::exists(Text(graph)));
    QVERIFY(!QFile::exists(Text(directories->Path("work/graph.jpg"))));
}

// A name that fits by itself, but not as a full path.
void TestHostCommands::command_whoseFileIsTooLongAsAPath_isRefused()
{
    Open(graph);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    const size_t room = kPathSize - 1 - strlen(gszCurdir) - 1;
    host->Send(QString(static_cast<qsizetype>(room + 1), u'x') + QStringLiteral(" -c=1"));
    QTRY_COMPARE(host->Answers(), 2);
    QVERIFY2(box.text.contains(QStringLiteral("1024 bytes")), qPrintable(box.text));
    QCOMPARE(Text(gszPlffileOrig), Text(graph));
    QCOMPARE(giCmdArg, 0);
    // One byte less fits; there is no such file.
    fixture::ExpectBox(*dialogs, box);
    host->Send(QString(static_cast<qsizetype>(room), u'x'));
    QTRY_COMPARE(host->Answers(), 3);
    QCOMPARE(box.text, QStringLiteral("Error opening file."));
}

// Every message deletes the previous command's temporary file. The graph is still shown, but a file
// that is created under the same name later is not the viewer's to delete.
void TestHostCommands::command_thatWasRefused_endsTheTemporaryFileBeforeIt()
{
    Open(graph);
    host->Send(QStringLiteral("other.plf -tmp"));
    QTRY_COMPARE(host->Answers(), 2);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    host->Send(QString(QChar(u'\0')));
    QTRY_COMPARE(host->Answers(), 3);
    QVERIFY(!QFile::exists(other));
    QCOMPARE((*window)->windowTitle(), QStringLiteral("KORVEL Viewer - other.plf"));
    QCOMPARE(Text(gszPlffileOrig), other);
    QCOMPARE(Text(directories->Write("work/other.plf", "another")), other);
    window.reset();
    QVERIFY(QFile::exists(other));
}

// A command without a file has left the link out of step.
void TestHostCommands::command_thatWasRefused_bringsTheLinkIntoStep()
{
    Open(graph);
    host->Send(QStringLiteral("-po=l"));
    QTRY_COMPARE(gszPlffileOrig[0], '\0');
    Box box;
    fixture::ExpectBox(*dialogs, box);
    host->SendBytes(EncodeFrame(QString(QChar(u'\0'))).sliced(kFrameLengthSize));
    QTRY_COMPARE(host->Answers(), 2);
    host->Send(QStringLiteral("other.plf"));
    QTRY_COMPARE(host->Answers(), 3);
    QCOMPARE(Text(gszPlffileOrig), other);
}

void TestHostCommands::temporaryFile_whoseNameIsNoText_isDeletedUnderThatNameAlone()
{
    const std::string temporary = directories->Write("work/\xff.plf", plf::Diagonal());
    const std::string replaced = directories->Write("work/\xef\xbf\xbd.plf", plf::Diagonal());
    Open(temporary);
    gbIsTempFile = true;
    window.reset();
    QVERIFY(access(replaced.c_str(), F_OK) == 0);
    QVERIFY(access(temporary.c_str(), F_OK) != 0);
}

void TestHostCommands::temporaryFile_whoseNameDoesNotFit_isNotDeletedUnderAShorterOne_data()
{
    QTest::addColumn<QString>("more"); // behind the longest name
    QTest::addColumn<bool>("fits");
    QTest::newRow("longest") << QString() << true;
    QTest::newRow("one more") << QStringLiteral("x") << false;
    QTest::newRow("far more") << QString(10'000, u'x') << false;
}

// A name whose first part, as long as it may be, is another file's.
void TestHostCommands::temporaryFile_whoseNameDoesNotFit_isNotDeletedUnderAShorterOne()
{
    QFETCH(QString, more);
    QFETCH(bool, fits);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(Text(directories->Path("work"))));
    const QString file = QStringLiteral("o/o.plf");
    QVERIFY(QDir().mkdir(QStringLiteral("o")));
    QVERIFY(QFile::copy(other, file));
    const qsizetype dots = qsizetype{kPathSize} - 1 - file.size();
    QCOMPARE(dots % 2, 0);
    const QString longest = QStringLiteral("./").repeated(dots / 2) + file;
    Open(graph);
    if (!fits)
        dialogs->Expect<QMessageBox>([](QMessageBox& box) { box.reject(); });
    host->Send(longest + more + QStringLiteral(" -tmp"));
    QTRY_VERIFY(fits ? host->Answers() == 2 : dialogs->Pending() == 0);
    Settle();
    window.reset();
    QCOMPARE(QFile::exists(file), !fits);
    QVERIFY(QDir::setCurrent(before));
}

void TestHostCommands::flood_duringABox_waitsAtTheHost()
{
    constexpr qsizetype kFlood = 32'000'000;
    constexpr qsizetype kMostTaken = 8'000'000; // what the system keeps of it included
    Open(graph);
    dialogs->Expect<QMessageBox>([this](QMessageBox& /*box*/) {
        host->Write(QByteArray(kFlood, '\0'));
        for (qint64 left = -1; left != host->NotTaken();) {
            left = host->NotTaken();
            for (int i = 0; i < 100; ++i)
                QCoreApplication::processEvents();
        }
        QVERIFY(host->NotTaken() > kFlood - kMostTaken);
    });
    host->Send(QStringLiteral("missing.plf"));
    QTRY_COMPARE(dialogs->Pending(), 0);
    QTRY_COMPARE(host->Answers(), 2);
}

void TestHostCommands::readData_withoutAMessage_returns()
{
    Open(graph);
    Call(*window, "readData");
    QCOMPARE(Text(gszPlffileOrig), Text(graph));
    QCOMPARE(host->Answers(), 1);
}

void TestHostCommands::readData_withoutALink_returns()
{
    Open(graph);
    Call(*window, "deleteSocket");
    Call(*window, "readData");
    Settle();
    Call(*window, "readData");
    QCOMPARE(Text(gszPlffileOrig), Text(graph));
}

// Qt warns of each write to a socket that is not open.
void TestHostCommands::writeData_withoutAServer_writesNothing()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("not open")));
    gszKrvServerName[0] = 0;
    window.emplace();
    WriteData(*window->Get(), kAccept);
    Call(*window, "deleteSocket");
    WriteData(*window->Get(), kAccept);
}

void TestHostCommands::deleteSocket_endsTheLink()
{
    Open(graph);
    Call(*window, "deleteSocket");
    Call(*window, "deleteSocket"); // there is none any more
    QTRY_VERIFY(!host->IsConnected());
    QVERIFY((*window)->isVisible());
    QCOMPARE(host->Answers(), 1);
}

void TestHostCommands::deleteSocket_whileACommandWaits_dropsIt()
{
    Open(graph);
    host->Send(QStringLiteral("other.plf"));
    QMetaObject::invokeMethod(window->Get(), "deleteSocket", Qt::QueuedConnection);
    Call(*window, "readData");
    QTRY_VERIFY(!host->IsConnected());
    QCOMPARE(Text(gszPlffileOrig), Text(graph));
    QCOMPARE(host->Answers(), 1);
}

void TestHostCommands::closing_beforeACommandIsRead_isSurvived()
{
    Open(graph);
    host->Send(QStringLiteral("other.plf"));
    CloseSoon(*window);
    Call(*window, "readData");
    QTRY_VERIFY(window->IsGone());
    QCOMPARE(host->Answers(), 1);
}

void TestHostCommands::closing_whileItsGraphIsDrawn_isSurvived()
{
    Open(graph);
    const ClosingPaint closing(*window);
    host->Send(QStringLiteral("other.plf -c=2 -p"));
    QTRY_VERIFY(window->IsGone());
    QVERIFY(closing.WasPainted());
}

void TestHostCommands::closing_whileItsErrorIsShown_isSurvived()
{
    Open(graph);
    dialogs->Expect<QMessageBox>([this](QMessageBox& box) {
        QCOMPARE(box.text(), QStringLiteral("Error opening file."));
        (*window)->close();
    });
    host->Send(QStringLiteral("missing.plf -c=1"));
    QTRY_VERIFY(window->IsGone());
}

void TestHostCommands::closing_whileItsUsageIsShown_isSurvived()
{
    Open(graph);
    dialogs->Expect<QMessageBox>([this](QMessageBox& box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("PLOTVW Usage"));
        (*window)->close();
    });
    host->Send(QStringLiteral("-wp=1,2,300,200 other.plf -?"));
    QTRY_VERIFY(window->IsGone());
    QCOMPARE(host->Answers(), 1);
}

void TestHostCommands::closing_whileItsLengthIsRefused_isSurvived()
{
    Open(graph);
    dialogs->Expect<QMessageBox>([this](QMessageBox& /*box*/) { (*window)->close(); });
    host->Send(QStringLiteral("other.plf -cf=") + QString(2000, u'x'));
    QTRY_VERIFY(window->IsGone());
}

void TestHostCommands::closing_whileItsJobFails_isSurvived()
{
    Open(graph);
    dialogs->Expect<QMessageBox>([this](QMessageBox& box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("Save failed"));
        (*window)->close();
    });
    host->Send(QStringLiteral("other.plf -c=1 -p -cwd=/nowhere -cf=out"));
    QTRY_VERIFY(window->IsGone());
}

// A host that waits for its viewer's end sees that, and not the end of its window.
void TestHostCommands::closing_keepsTheLinkUntilTheEnd()
{
    Open(graph);
    QVERIFY((*window)->close());
    QTRY_VERIFY(window->IsGone());
    Settle();
    QVERIFY(host->IsConnected());
    host->Send(QStringLiteral("other.plf")); // nobody reads it
    Settle();
    QCOMPARE(host->Answers(), 1);
}

QTEST_MAIN(TestHostCommands)
#include "test_hostcommands.moc"
