// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A file dragged with the mouse from another program's window onto the viewer.
#include "tests/e2e/viewer.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"

#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QRasterWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

namespace {

const QString kFirstTitle = QStringLiteral("KORVEL Viewer - first.plf");
const QString kSecondTitle = QStringLiteral("KORVEL Viewer - second.plf");

// The other program: a small window in the screen's corner with files to take.
class Source : public QRasterWindow
{
public:
    explicit Source(const QList<QUrl>& fileUrls) : urls(fileUrls)
    {
        setFlags(Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
        setGeometry(kArea);
    }

    // Drags what the window has to a point of the screen. lookThere runs while it is there, and
    // then it is dropped. Returns what became of it.
    template <typename Look> Qt::DropAction DragTo(QPoint to, Look lookThere)
    {
        ::Drag(kArea.center(), to);
        if (!Await([this] { return isPressed; }))
            return Qt::IgnoreAction;
        auto* data = new QMimeData;
        data->setUrls(urls);
        auto* drag = new QDrag(this); // Qt deletes it when the target has the data
        drag->setMimeData(data);
        QTimer::singleShot(0, this, [&lookThere] {
            lookThere();
            Drop();
        });
        return drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
    }

protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { isPressed = true; }

private:
    static constexpr QRect kArea = {0, 0, 60, 60};
    QList<QUrl> urls;
    bool isPressed = false;
};

} // namespace

class TestDrop : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void file_droppedOnTheWindow_isOpened();
    void folder_overTheWindow_cannotBeDropped();

private:
    void Write(const QString& name) { QVERIFY(WriteFile(home->filePath(name), plf::Diagonal())); }
    [[nodiscard]] bool Open(Viewer& viewer) const
    {
        return viewer.Start({QStringLiteral("first.plf"), QStringLiteral("-wp=300,300,640,487")}) &&
               viewer.AwaitWindow(kFirstTitle) && viewer.AwaitStillPicture();
    }

    std::unique_ptr<QTemporaryDir> home;
};

void TestDrop::init()
{
    home = std::make_unique<QTemporaryDir>();
    Write(QStringLiteral("first.plf"));
    Write(QStringLiteral("second.plf"));
}

void TestDrop::file_droppedOnTheWindow_isOpened()
{
    Viewer viewer(home->path());
    QVERIFY(Open(viewer));
    Source source({QUrl::fromLocalFile(home->filePath(QStringLiteral("second.plf")))});
    source.show();
    QVERIFY(QTest::qWaitForWindowExposed(&source));
    const Qt::DropAction action =
        source.DragTo(viewer.Content().center(), [&] { QVERIFY(viewer.AwaitStillPicture()); });
    QCOMPARE(action, Qt::CopyAction);
    QVERIFY(Await([&viewer] { return WindowTitle(viewer.Window()) == kSecondTitle; }));
    QCOMPARE(viewer.Errors(), QByteArray());
}

void TestDrop::folder_overTheWindow_cannotBeDropped()
{
    Viewer viewer(home->path());
    QVERIFY(Open(viewer));
    Source source({QUrl::fromLocalFile(home->path())});
    source.show();
    QVERIFY(QTest::qWaitForWindowExposed(&source));
    const Qt::DropAction action =
        source.DragTo(viewer.Content().center(), [&] { QVERIFY(viewer.AwaitStillPicture()); });
    QCOMPARE(action, Qt::IgnoreAction);
    QVERIFY(viewer.AwaitStillPicture());
    QCOMPARE(WindowTitle(viewer.Window()), kFirstTitle);
    QVERIFY(viewer.AwaitWindowCount(1));
}

QTEST_MAIN(TestDrop)
#include "test_drop.moc"
