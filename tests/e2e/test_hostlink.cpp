// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer and the host process that sends it command lines: what each command does.
#include "tests/e2e/hostlinktest.h"

#include <QDir>
#include <QFile>

class TestHostLink : public QObject, protected HostLinkTest
{
    Q_OBJECT

private slots:
    void initTestCase() { CheckTools(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void greetingComesFirst_andAnAnswerAfterEachCommandWithAFile_evenOneThatFailed();
    void commandIsAnsweredOnlyWhenItsErrorBoxIsClosed_data();
    void commandIsAnsweredOnlyWhenItsErrorBoxIsClosed();

    void jobs_areDoneBeforeTheAnswer_data();
    void jobs_areDoneBeforeTheAnswer();
    void jobs_showTheNewGraph();
    void jobs_withoutAName_areNamedAfterTheFirstGraph();
    void jobs_ofACommandWithoutAFile_areDoneWithTheNextFile();
    void printOptionInFront_isAWordLikeTheOthers();
    void optionInsideAFileName_isTheOption();
    void windowPosition_movesAndSizesTheWindow();
    void withoutWindowPosition_theWindowStaysWhereTheUserPutIt();
    void usageWord_showsTheBox_andTheWordsBeforeItCount();
    void relativeName_isFoundWhereTheViewerWasStarted();

    void commandDuringTheFirstFileDialog_isCarriedOut_data();
    void commandDuringTheFirstFileDialog_isCarriedOut();

    void quit_endsTheViewerOnceTheFileIsShown();
    void quit_afterAJob_endsTheViewer();
    void quit_withoutAFile_waitsForOne();

    void graphThatComesWhileABoxStands_staysWhenTheBoxIsAnswered();
    void jobOfTheStartThatFails_isNotDoneAgain();
    void commandAtTheGreeting_hasTheJobOfTheStartDoneWithItsGraph();
    void quitAtTheGreeting_isAnsweredAndCountsWithTheNextFile();
};

void TestHostLink::greetingComesFirst_andAnAnswerAfterEachCommandWithAFile_evenOneThatFailed()
{
    Open();
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    host->Send(QStringLiteral("missing.plf"));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer")));
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::commandIsAnsweredOnlyWhenItsErrorBoxIsClosed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << QStringLiteral("missing.plf")
                             << QStringLiteral("Error opening file.");
    QTest::newRow("a text") << QStringLiteral("text.plf")
                            << QStringLiteral("File is not a recognized PLF graphic format.");
}

void TestHostLink::commandIsAnsweredOnlyWhenItsErrorBoxIsClosed()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    Open();
    host->Send(name);
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    QVERIFY(viewer->AwaitText(reason));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer")));
    QVERIFY(viewer->AwaitText(QStringLiteral("Error reading ") + Path(name)));
    QVERIFY(Exists(QStringLiteral("text.plf")));
    Quit();
}

void TestHostLink::jobs_areDoneBeforeTheAnswer_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("start");
    const QByteArray jpeg("\xff\xd8\xff");
    const QByteArray eps("%!PS-Adobe-");
    QTest::newRow("JPEG") << QStringLiteral("other.plf -c=1 -cf=out") << QStringLiteral("out.jpg")
                          << jpeg;
    QTest::newRow("EPS") << QStringLiteral("-cf=out other.plf -c=2") << QStringLiteral("out.eps")
                         << eps;
    QTest::newRow("into another directory") << QStringLiteral("-cwd=%1/sub -cf=out -c=2 other.plf")
                                            << QStringLiteral("sub/out.eps") << eps;
    QTest::newRow("print and JPEG")
        << QStringLiteral("other.plf -c=1 -p -cf=out") << QStringLiteral("out.jpg") << jpeg;
    QTest::newRow("print, which a conversion discards")
        << QStringLiteral("other.plf -p -c=2 -cf=out") << QStringLiteral("out.eps") << eps;
}

void TestHostLink::jobs_areDoneBeforeTheAnswer()
{
    QFETCH(QString, words);
    QFETCH(QString, file);
    QFETCH(QByteArray, start);
    QVERIFY(QDir(home->path()).mkdir(QStringLiteral("sub")));
    Open();
    Command(words.replace(QStringLiteral("%1"), home->path()));
    QFile exported(Path(file));
    QVERIFY(exported.open(QIODevice::ReadOnly));
    QCOMPARE(exported.read(start.size()), start);
    notPrinted = words.contains(QStringLiteral("-c=1 -p")) ? 1 : 0;
    // Done once: the next command exports and prints nothing.
    QVERIFY(exported.remove());
    Command(QStringLiteral("graph.plf"));
    QVERIFY(!exported.exists());
    Quit();
}

void TestHostLink::jobs_showTheNewGraph()
{
    Open();
    Command(QStringLiteral("other.plf -c=1 -cf=out"));
    const QImage picture(Path(QStringLiteral("out.jpg")));
    QVERIFY(!picture.isNull());
    const QColor middle = picture.pixelColor(picture.rect().center());
    QVERIFY2(middle.green() > 100 && middle.red() < 30, qPrintable(middle.name()));
    Quit();
}

void TestHostLink::jobs_withoutAName_areNamedAfterTheFirstGraph()
{
    Open();
    Command(QStringLiteral("other.plf -c=2"));
    QVERIFY(Exists(QStringLiteral("graph.eps")));
    QVERIFY(!Exists(QStringLiteral("other.eps")));
    Quit();
}

void TestHostLink::jobs_ofACommandWithoutAFile_areDoneWithTheNextFile()
{
    Open();
    host->Send(QStringLiteral("-c=2 -cf=out"));
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    QVERIFY(!Exists(QStringLiteral("out.eps")));
    host->SendBytes(StringBytes(QStringLiteral("other.plf"))); // the length is still there
    ExpectAnswers(1);
    QVERIFY(Exists(QStringLiteral("out.eps")));
    Quit();
}

// There is no program name that would be skipped.
void TestHostLink::printOptionInFront_isAWordLikeTheOthers()
{
    Open();
    Command(QStringLiteral("-p other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    ReadMessages();
    QCOMPARE(messages.count(kNotPrinted), 1);
    notPrinted = 1;
    Command(QStringLiteral("-c=2 graph.plf -cf=out"));
    QVERIFY(Exists(QStringLiteral("out.eps")));
    Quit();
}

void TestHostLink::optionInsideAFileName_isTheOption()
{
    QVERIFY(WriteFile(Path(QStringLiteral("my-plot.plf")), HostGraph(kGreenHue)));
    Open();
    host->Send(QStringLiteral("my-plot.plf"));
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("graph.plf"));
    ReadMessages();
    QCOMPARE(messages.count(kNotPrinted), 0);                  // there is no file to print yet
    host->SendBytes(StringBytes(QStringLiteral("other.plf"))); // the length is still there
    ExpectAnswers(1);
    notPrinted = 1;
    Quit();
}

void TestHostLink::windowPosition_movesAndSizesTheWindow()
{
    Open();
    Command(QStringLiteral("-wp=300,150,500,400 graph.plf"));
    QVERIFY(Await([&] { return viewer->Content().size() == QSize(500, 400); }));
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(300, 150); }));
    Command(QStringLiteral("other.plf -wp=20,30")); // the size stays
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(20, 30); }));
    QCOMPARE(viewer->Content().size(), QSize(500, 400));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::withoutWindowPosition_theWindowStaysWhereTheUserPutIt()
{
    Open({QStringLiteral("-wp=300,150,500,400")});
    RunTool(QStringLiteral("xdotool"), {QStringLiteral("windowmove"), viewer->Window(),
                                        QStringLiteral("40"), QStringLiteral("50")});
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(40, 50); }));
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    ExpectStillAlive();
    QCOMPARE(viewer->AwaitWindow(TitleOf(QStringLiteral("other.plf"))), true);
    QCOMPARE(viewer->Frame().topLeft(), QPoint(40, 50));
    QCOMPARE(viewer->Content().size(), QSize(500, 400));
    Quit();
}

void TestHostLink::usageWord_showsTheBox_andTheWordsBeforeItCount()
{
    Open();
    host->Send(QStringLiteral("other.plf -? text.plf -q"));
    CloseBox(QStringLiteral("PLOTVW Usage"));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::relativeName_isFoundWhereTheViewerWasStarted()
{
    QVERIFY(QDir(home->path()).mkdir(QStringLiteral("sub")));
    Open();
    Command(QStringLiteral("-cwd=%1 other.plf").arg(Path(QStringLiteral("sub"))));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::commandDuringTheFirstFileDialog_isCarriedOut_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("file");
    QTest::newRow("a graph") << QStringLiteral("other.plf") << QString();
    QTest::newRow("EPS") << QStringLiteral("other.plf -c=2 -cf=out") << QStringLiteral("out.eps");
    QTest::newRow("JPEG") << QStringLiteral("other.plf -c=1 -cf=out") << QStringLiteral("out.jpg");
    QTest::newRow("print") << QStringLiteral("other.plf -p") << QString();
}

// A viewer that is started without a file asks for one before it has shown its window.
void TestHostLink::commandDuringTheFirstFileDialog_isCarriedOut()
{
    QFETCH(QString, words);
    QFETCH(QString, file);
    Start({});
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Open File")));
    Command(words);
    QVERIFY(file.isEmpty() || Exists(file));
    notPrinted = words.contains(QStringLiteral("-p")) ? 1 : 0;
    PressKeys(QStringLiteral("Escape"));
    ExpectTitle(QStringLiteral("other.plf"));
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

// Qt takes no request to quit before the program has come to rest.
void TestHostLink::quit_endsTheViewerOnceTheFileIsShown()
{
    Open();
    QVERIFY(viewer->AwaitStillPicture());
    Command(QStringLiteral("other.plf -q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void TestHostLink::quit_afterAJob_endsTheViewer()
{
    Open();
    QVERIFY(viewer->AwaitStillPicture());
    Command(QStringLiteral("-q other.plf -c=2 -p -cf=out"));
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(Exists(QStringLiteral("out.eps")));
    notPrinted = 1;
}

// On the viewer's own command line, too, it is only looked at when a file comes.
void TestHostLink::quit_withoutAFile_waitsForOne()
{
    Open({QStringLiteral("-q")});
    host->Send(QStringLiteral("-po=l"));
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    host->SendBytes(StringBytes(QStringLiteral("other.plf"))); // the length is still there
    ExpectAnswers(1);
    QCOMPARE(viewer->AwaitEnd(), 0);
}

// The user has not closed the error box of the first graph when the host sends the next one.
void TestHostLink::graphThatComesWhileABoxStands_staysWhenTheBoxIsAnswered()
{
    Start({QStringLiteral("text.plf")});
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    Command(QStringLiteral("-tmp other.plf"));
    PressKeys(QStringLiteral("Return"));
    ExpectTitle(QStringLiteral("other.plf"));
    QVERIFY(viewer->AwaitStillPicture());
    const QColor middle = ScreenColor(viewer->Content().center());
    QVERIFY2(middle.green() > 100 && middle.red() < 30, qPrintable(middle.name()));
    Command(QStringLiteral("graph.plf -c=2 -cf=out"));
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral("out.eps")));
    Quit();
}

void TestHostLink::jobOfTheStartThatFails_isNotDoneAgain()
{
    Start({QStringLiteral("graph.plf"), QStringLiteral("-c=1"),
           QStringLiteral("-cf=") + Path(QStringLiteral("none/first"))});
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Save failed")));
    Command(QStringLiteral("other.plf")); // a second box would delay the answer
    CloseBox(QStringLiteral("Save failed"));
    ExpectTitle(QStringLiteral("other.plf"));
    ExpectStillAlive();
    Quit();
}

// The viewer runs a command that has arrived before its first start-up job, which then exports the
// command's graph.
void TestHostLink::commandAtTheGreeting_hasTheJobOfTheStartDoneWithItsGraph()
{
    StartWithCommand({QStringLiteral("graph.plf"), QStringLiteral("-c=1"),
                      QStringLiteral("-cf=") + Path(QStringLiteral("first"))},
                     QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    const QImage picture(Path(QStringLiteral("first.jpg")));
    QVERIFY(!picture.isNull());
    const QColor middle = picture.pixelColor(picture.rect().center());
    QVERIFY2(middle.green() > 100 && middle.red() < 30, qPrintable(middle.name()));
    // The job is not run again.
    QVERIFY(QFile::remove(Path(QStringLiteral("first.jpg"))));
    Command(QStringLiteral("graph.plf"));
    QVERIFY(!Exists(QStringLiteral("first.jpg")));
    Quit();
}

// Qt ignores the request before the event loop runs, but the viewer keeps the option.
void TestHostLink::quitAtTheGreeting_isAnsweredAndCountsWithTheNextFile()
{
    StartWithCommand({QStringLiteral("graph.plf")}, QStringLiteral("other.plf -q"));
    ExpectTitle(QStringLiteral("other.plf"));
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("other.plf"));
    Command(QStringLiteral("graph.plf"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

QTEST_MAIN(TestHostLink)
#include "test_hostlink.moc"
