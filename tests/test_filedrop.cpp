// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Dropping a file on the main window.
#include "app/filedrop.h"

#include "meta/palette.h"
#include "tests/kit/appfixture.h"

#include <QDropEvent>
#include <QMimeData>
#include <QSysInfo>
#include <QUrl>

#include <sys/stat.h>
#include <unistd.h>

using fixture::Box;
using fixture::Settle;
using fixture::Window;

namespace {

// What a file manager hands over: addresses, one a line.
std::unique_ptr<QMimeData> Dragged(const QByteArray& addresses)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("text/uri-list"), addresses);
    return data;
}

QByteArray Address(const std::string& path)
{
    return "file://" + QByteArray::fromStdString(path);
}

// A window that takes drops, beside a view with a graph.
class DropWindow
{
public:
    explicit DropWindow(const fixture::Directories& directories)
    {
        window.AddViewOf(directories.Write("first.plf", plf::Diagonal()));
        new FileDrop(window.Get());
        shown = window.Show();
    }

    // Moves a drag over the window and lets it go when that is allowed, as Qt does.
    // Returns what the source is told, at each step.
    QList<Qt::DropAction> Drag(const QMimeData& data, Qt::DropActions actions = Qt::CopyAction)
    {
        QDragEnterEvent enter(kMiddle, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QDragMoveEvent move(kMiddle, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QDropEvent drop(QPointF(kMiddle), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QList<Qt::DropAction> answers;
        for (QDropEvent* event :
             {static_cast<QDropEvent*>(&enter), static_cast<QDropEvent*>(&move), &drop}) {
            event->ignore();
            QCoreApplication::sendEvent(window.Get(), event);
            answers += event->isAccepted() ? event->dropAction() : Qt::IgnoreAction;
        }
        return answers;
    }

    fixture::Window window;
    bool shown = false;

private:
    static constexpr QPoint kMiddle = {50, 50};
};

const QList<Qt::DropAction> kRefused(3, Qt::IgnoreAction);
const QList<Qt::DropAction> kTaken(3, Qt::CopyAction);

} // namespace

class TestFileDrop : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void window_withoutTheFilter_takesNoDrops();
    void drop_graph_isOpenedLikeFileOpen();
    void drop_temporaryDocumentShown_clearsTheFlag();
    void drop_noGraph_saysSoAfterTheDrop();
    void drop_nameThatIsNoText_isOpened();
    void drop_addressOfOneFile_isTaken_data();
    void drop_addressOfOneFile_isTaken();
    void drop_anythingElse_isRefused_data();
    void drop_anythingElse_isRefused();
    void drop_textAndPicture_isRefused();
    void drop_action_isNeverAMove_data();
    void drop_action_isNeverAMove();
    void drop_whileADialogIsOpen_isRefused();
    void drop_thenWindowClosed_loadsNothing();

private:
    std::unique_ptr<fixture::Directories> directories;
    std::unique_ptr<fixture::Dialogs> dialogs;
};

void TestFileDrop::initTestCase()
{
    initGraphics();
}

void TestFileDrop::init()
{
    directories = std::make_unique<fixture::Directories>();
    dialogs = std::make_unique<fixture::Dialogs>();
}

void TestFileDrop::cleanup()
{
    QCOMPARE(dialogs->Pending(), 0);
    QCOMPARE(dialogs->Strangers(), QStringList());
    dialogs.reset();
    directories.reset();
}

void TestFileDrop::window_withoutTheFilter_takesNoDrops()
{
    Window window;
    QVERIFY(!window->acceptDrops());
    new FileDrop(window.Get());
    QVERIFY(window->acceptDrops());
}

void TestFileDrop::drop_graph_isOpenedLikeFileOpen()
{
    DropWindow target(*directories);
    QVERIFY(target.shown);
    const std::string path = directories->Write("second graph.plf", plf::Diagonal());
    QCOMPARE(target.Drag(*Dragged(QUrl::fromLocalFile(QString::fromStdString(path)).toEncoded())),
             kTaken);
    QTRY_COMPARE(target.window->windowTitle(), QStringLiteral("KORVEL Viewer - second graph.plf"));
    QCOMPARE(std::string(gszPlffileOrig), path);
    QVERIFY(gpPlfmembuf != nullptr);
}

void TestFileDrop::drop_temporaryDocumentShown_clearsTheFlag()
{
    DropWindow target(*directories);
    gbIsTempFile = true;
    const std::string path = directories->Write("second.plf", plf::Diagonal());
    target.Drag(*Dragged(Address(path)));
    QTRY_COMPARE(std::string(gszPlffileOrig), path);
    QVERIFY(!gbIsTempFile);
}

// The box stands only when the drop is over: its source waits for that.
void TestFileDrop::drop_noGraph_saysSoAfterTheDrop()
{
    DropWindow target(*directories);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(target.Drag(*Dragged(Address(directories->Write("notes.plf", "no graph")))), kTaken);
    QCOMPARE(box.shown, 0);
    QTRY_COMPARE(box.shown, 1);
    QCOMPARE(box.text, QStringLiteral("File is not a recognized PLF graphic format."));
    QTRY_COMPARE(gszPlffileOrig[0], '\0');
}

void TestFileDrop::drop_nameThatIsNoText_isOpened()
{
    DropWindow target(*directories);
    const std::string path = directories->Write("caf\xe9.plf", plf::Diagonal());
    QCOMPARE(target.Drag(*Dragged(Address(directories->Path("caf%E9.plf")))), kTaken);
    QTRY_COMPARE(std::string(gszPlffileOrig), path);
}

void TestFileDrop::drop_addressOfOneFile_isTaken_data()
{
    QTest::addColumn<QString>("address"); // %1 = the path of a graph
    QTest::newRow("local") << QStringLiteral("file://%1");
    QTest::newRow("with a line end") << QStringLiteral("file://%1\r\n");
    QTest::newRow("without the host's slashes") << QStringLiteral("file:%1");
    QTest::newRow("localhost") << QStringLiteral("file://localhost%1");
    QTest::newRow("this machine by name")
        << QStringLiteral("file://") + QSysInfo::machineHostName() + QStringLiteral("%1");
}

void TestFileDrop::drop_addressOfOneFile_isTaken()
{
    QFETCH(QString, address);
    DropWindow target(*directories);
    const std::string path = directories->Write("second.plf", plf::Diagonal());
    QCOMPARE(target.Drag(*Dragged(address.arg(QString::fromStdString(path)).toLatin1())), kTaken);
    QTRY_COMPARE(std::string(gszPlffileOrig), path);
}

void TestFileDrop::drop_anythingElse_isRefused_data()
{
    QTest::addColumn<QString>("addresses"); // %1 = the folder of the graphs
    QTest::newRow("nothing") << QString();
    QTest::newRow("two files") << QStringLiteral("file://%1/first.plf\r\nfile://%1/second.plf\r\n");
    QTest::newRow("a file twice") << QStringLiteral(
        "file://%1/second.plf\r\nfile://%1/second.plf\r\n");
    QTest::newRow("a folder") << QStringLiteral("file://%1");
    QTest::newRow("a file that is not there") << QStringLiteral("file://%1/none.plf");
    QTest::newRow("a pipe") << QStringLiteral("file://%1/pipe.plf");
    QTest::newRow("a device") << QStringLiteral("file:///dev/null");
    QTest::newRow("another machine") << QStringLiteral("file://elsewhere.invalid%1/second.plf");
    QTest::newRow("a web page") << QStringLiteral("http://localhost%1/second.plf");
    QTest::newRow("a zero byte in the name") << QStringLiteral("file://%1/second.plf%00.txt");
    QTest::newRow("a path alone") << QStringLiteral("%1/second.plf");
}

void TestFileDrop::drop_anythingElse_isRefused()
{
    QFETCH(QString, addresses);
    DropWindow target(*directories);
    const QString folder = QString::fromStdString(directories->Path(""));
    QVERIFY(!directories->Write("second.plf", plf::Diagonal()).empty());
    QCOMPARE(mkfifo(directories->Path("pipe.plf").c_str(), S_IRUSR | S_IWUSR), 0);
    const QString list = addresses.replace(QStringLiteral("%1"), folder.chopped(1));
    QCOMPARE(target.Drag(*Dragged(list.toLatin1())), kRefused);
    Settle();
    QCOMPARE(std::string(gszPlffileOrig), directories->Path("first.plf"));
}

void TestFileDrop::drop_textAndPicture_isRefused()
{
    DropWindow target(*directories);
    QMimeData data;
    data.setText(QString::fromStdString(directories->Write("second.plf", plf::Diagonal())));
    data.setImageData(QImage(1, 1, QImage::Format_RGB32));
    QCOMPARE(target.Drag(data), kRefused);
}

void TestFileDrop::drop_action_isNeverAMove_data()
{
    using Actions = Qt::DropActions;
    QTest::addColumn<Actions>("offered");
    QTest::addColumn<Qt::DropAction>("taken");
    QTest::newRow("a file manager")
        << Actions(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction) << Qt::CopyAction;
    QTest::newRow("link or move") << Actions(Qt::MoveAction | Qt::LinkAction) << Qt::LinkAction;
    QTest::newRow("move alone") << Actions(Qt::MoveAction) << Qt::IgnoreAction;
}

void TestFileDrop::drop_action_isNeverAMove()
{
    QFETCH(Qt::DropActions, offered);
    QFETCH(Qt::DropAction, taken);
    DropWindow target(*directories);
    const auto data = Dragged(Address(directories->Write("second.plf", plf::Diagonal())));
    QCOMPARE(target.Drag(*data, offered), QList<Qt::DropAction>(3, taken));
    Settle();
    const bool isLoaded = std::string(gszPlffileOrig) == directories->Path("second.plf");
    QCOMPARE(isLoaded, taken != Qt::IgnoreAction);
}

void TestFileDrop::drop_whileADialogIsOpen_isRefused()
{
    DropWindow target(*directories);
    const auto data = Dragged(Address(directories->Write("second.plf", plf::Diagonal())));
    QList<Qt::DropAction> answers;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        answers = target.Drag(*data);
        box.accept();
    });
    QMessageBox box(target.window.Get());
    box.exec();
    QCOMPARE(answers, kRefused);
    QCOMPARE(target.Drag(*data), kTaken);
}

void TestFileDrop::drop_thenWindowClosed_loadsNothing()
{
    DropWindow target(*directories);
    target.Drag(*Dragged(Address(directories->Write("second.plf", plf::Diagonal()))));
    delete target.window.Get();
    Settle();
    QCOMPARE(std::string(gszPlffileOrig), directories->Path("first.plf"));
}

QTEST_MAIN(TestFileDrop)
#include "test_filedrop.moc"
