// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Commands of a host while something else happens to the window: the host and the window are both
// in this program, so that the test says when. Commands as such are tested with the real program.
#include "hostlink/frame.h"
#include "tests/appfixture.h"

#include <QAbstractEventDispatcher>
#include <QLocalServer>
#include <QLocalSocket>
#include <QRegularExpression>

#include <optional>

#include <unistd.h>

using fixture::Box;
using fixture::Settle;
using fixture::Window;

namespace {

const QString kAccept = QStringLiteral("krv-accept-connect");

std::string Graph()
{
    return plf::Start() + plf::Line(0, 0, 4095, 3119) + plf::End();
}

QString Text(const std::string& text)
{
    return QString::fromStdString(text);
}

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

// The host's end of the link. It must be there before the window.
class Host
{
public:
    explicit Host(const fixture::Directories& directories, const char* name = "socket")
    {
        const std::string path = directories.Path(name);
        QVERIFY(server.listen(Text(path)));
        QVERIFY(CopyText(gszKrvServerName, path.c_str()));
    }

    /// Takes the viewer's connection and its greeting.
    [[nodiscard]] bool AwaitViewer()
    {
        if (!QTest::qWaitFor([this] { return server.hasPendingConnections(); }))
            return false;
        socket = server.nextPendingConnection();
        return QTest::qWaitFor([this] { return Answers() == 1; });
    }

    void Send(const QString& message) { SendBytes(EncodeFrame(message)); }

    void SendBytes(const QByteArray& bytes)
    {
        Write(bytes);
        while (socket->bytesToWrite() > 0)
            QVERIFY(socket->waitForBytesWritten());
    }

    /// Sends without waiting until the viewer takes it.
    void Write(const QByteArray& bytes) { socket->write(bytes); }
    /// Bytes that wait for the viewer to take them.
    [[nodiscard]] qint64 NotTaken() const { return socket->bytesToWrite(); }

    /// How often the viewer has sent its word; -1 when it sent anything else.
    [[nodiscard]] qsizetype Answers()
    {
        received += socket->readAll();
        const QByteArray answer = EncodeFrame(kAccept);
        const qsizetype count = received.size() / answer.size();
        return received == answer.repeated(count) ? count : -1;
    }

    [[nodiscard]] bool IsConnected() const
    {
        return socket->state() == QLocalSocket::ConnectedState;
    }

private:
    QLocalServer server;
    QLocalSocket* socket = nullptr; // the server's
    QByteArray received;
};

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

class TestHostCommands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void constructor_greetsTheHost();
    void constructor_serverNameOutsideAscii_isFound();
    void constructor_withoutAServer_isAlone_data();
    void constructor_withoutAServer_isAlone();
    void command_isCarriedOut();
    void command_nameOutsideAscii_isCarriedOut();
    void command_longerThanItsLengthCanTell_isCarriedOut();
    void command_whoseJobCannotBeDone_isAnswered();
    void command_itsGraphIsDrawn_beforeItsJobsLetAnythingHappen();
    void command_withAPlaceAndNoFile_movesTheWindow();
    void command_withoutAPlace_leavesTheWindowAndWhatTheStartSaid();
    void command_thatBytesCannotHold_isRefusedWhole_data();
    void command_thatBytesCannotHold_isRefusedWhole();
    void command_afterOneThatWasRefused_isCarriedOut();

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

    std::unique_ptr<fixture::Directories> directories;
    std::unique_ptr<fixture::Dialogs> dialogs;
    std::optional<Host> host;
    std::optional<Window> window;
    std::string graph;
    QString other;
};

// What is to be printed goes nowhere, whatever printers there are.
void TestHostCommands::initTestCase()
{
    qputenv("CUPS_SERVER", "/nowhere/printers");
}

void TestHostCommands::init()
{
    directories = std::make_unique<fixture::Directories>();
    dialogs = std::make_unique<fixture::Dialogs>();
    // Relative names stand in the directory "work", and hold nothing that is an option.
    graph = directories->Write("work/graph.plf", Graph());
    other = Text(directories->Write("work/other.plf", Graph()));
    host.emplace(*directories);
}

void TestHostCommands::cleanup()
{
    window.reset();
    host.reset();
    QCOMPARE(dialogs->Strangers(), QStringList());
    QCOMPARE(dialogs->Pending(), 0);
}

// A window with a graph and a host.
void TestHostCommands::Open(const std::string& path)
{
    window.emplace();
    QVERIFY(host->AwaitViewer());
    window->AddViewOf(path);
    QVERIFY(window->Show());
    Settle();
}

void TestHostCommands::constructor_greetsTheHost()
{
    window.emplace();
    QVERIFY(host->AwaitViewer());
    QCOMPARE(host->Answers(), 1);
}

void TestHostCommands::constructor_serverNameOutsideAscii_isFound()
{
    host.emplace(*directories, "Ger\u00e4t");
    window.emplace();
    QVERIFY(host->AwaitViewer());
}

void TestHostCommands::constructor_withoutAServer_isAlone_data()
{
    QTest::addColumn<QString>("server");
    QTest::newRow("no name") << QString();
    QTest::newRow("nobody listens") << QStringLiteral("/nowhere/socket");
    QTest::newRow("a name that is too long for a socket") << u'/' + QString(1000, u'x');
}

void TestHostCommands::constructor_withoutAServer_isAlone()
{
    QFETCH(QString, server);
    QVERIFY(CopyText(gszKrvServerName, server.toLocal8Bit().constData()));
    window.emplace();
    window->AddViewOf(graph);
    QVERIFY(window->Show());
    Call(*window, "readData");
    QCOMPARE(Text(gszPlffileOrig), Text(graph));
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
    const std::string path = directories->Write("work/Kr\u00fcmmung_\u03a9.plf", Graph());
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
// character in the place of the half one.
void TestHostCommands::command_thatBytesCannotHold_isRefusedWhole_data()
{
    QTest::addColumn<QString>("command");
    constexpr QChar kZero(u'\0');
    constexpr QChar kHalf(0xd800);
    const auto row = [](const char* name, QChar bad, QString command) {
        QTest::newRow(name) << command.replace(u'#', bad);
    };
    row("a zero behind a name", kZero, QStringLiteral("other.plf#x -tmp"));
    row("a zero at the end of a name", kZero, QStringLiteral("other.plf# -tmp"));
    row("a zero in an option", kZero, QStringLiteral("other.plf -tmp -cf=a#"));
    row("half a character in a name", kHalf, QStringLiteral("-tmp oth#er.plf"));
    row("half a character in an option", kHalf, QStringLiteral("other.plf -tmp -cf=#"));
}

void TestHostCommands::command_thatBytesCannotHold_isRefusedWhole()
{
    QFETCH(QString, command);
    Open(graph);
    // The name that a replaced character would make.
    const std::string replaced = directories->Write("work/oth\xef\xbf\xbd"
                                                    "er.plf",
                                                    Graph());
    Box box;
    fixture::ExpectBox(*dialogs, box);
    host->Send(command);
    QTRY_COMPARE(box.shown, 1);
    QCOMPARE(box.text, QStringLiteral("A command line from the host holds characters that no name "
                                      "can hold. It is not used."));
    Settle();
    QCOMPARE(gszPlffileOrig[0], '\0');
    QCOMPARE(Text(gszCvtFilenameBase), Text(graph).chopped(4));
    QVERIFY(!gbIsTempFile);
    window.reset();
    QVERIFY(QFile::exists(other) && QFile::exists(Text(replaced)));
}

// Its length is kept, as that of every command without a file.
void TestHostCommands::command_afterOneThatWasRefused_isCarriedOut()
{
    Open(graph);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    host->Send(QStringLiteral("other.plf") + QChar(u'\0'));
    QTRY_COMPARE(box.shown, 1);
    host->SendBytes(EncodeFrame(QStringLiteral("other.plf")).sliced(kFrameLengthSize));
    QTRY_COMPARE(host->Answers(), 2);
    QCOMPARE(Text(gszPlffileOrig), other);
}

void TestHostCommands::temporaryFile_whoseNameIsNoText_isDeletedUnderThatNameAlone()
{
    const std::string temporary = directories->Write("work/\xff.plf", Graph());
    const std::string replaced = directories->Write("work/\xef\xbf\xbd.plf", Graph());
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
