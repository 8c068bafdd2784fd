// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer on a screen with 256 colors. Qt cannot paint in a window there, so that no painter
// begins and every window stays empty; exports are as ever.
#include "tests/e2e/viewer.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <QTemporaryDir>

#include <optional>

namespace {

constexpr int kColorBits = 8;

constexpr int kWideLine = 50;

// Of a line and of the paper, after an export that loses some.
constexpr int kDark = 100;
constexpr int kLight = 200;

} // namespace

class TestFewColors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void window_thatCannotBePaintedIn_isSurvived();
    void jpeg_hasTheGraph();
    void eps_isTheSameAsOnAnyScreen();

private:
    QString Path(const char* name) const { return home->filePath(QString::fromLatin1(name)); }
    void Open(const QStringList& more);
    void Quit();

    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer;
};

void TestFewColors::initTestCase()
{
    CheckTools();
    QCOMPARE(QGuiApplication::primaryScreen()->depth(), kColorBits);
}

void TestFewColors::init()
{
    TakeFreeWindowIds();
    home.emplace(QDir::tempPath() + QStringLiteral("/fewcolors_XXXXXX"));
    QVERIFY(home->isValid());
    // The text asks what the painter paints on.
    QVERIFY(WriteFile(Path("graph.plf"), plf::Start() + plf::Width(kWideLine) +
                                             plf::Line(0, 0, 4095, 3119) +
                                             plf::Text(100, 200, "text") + plf::End()));
    viewer.emplace(home->path());
}

void TestFewColors::cleanup()
{
    viewer.reset();
    home.reset();
}

void TestFewColors::Open(const QStringList& more)
{
    QVERIFY(viewer->Start(QStringList{QStringLiteral("graph.plf")} + more));
    QVERIFY(viewer->AwaitWindow(TitleOf(QStringLiteral("graph.plf"))));
}

void TestFewColors::Quit()
{
    if (QTest::currentTestFailed())
        return;
    PressKeys(QStringLiteral("ctrl+q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void TestFewColors::window_thatCannotBePaintedIn_isSurvived()
{
    Open({});
    for (const QSize& size : {QSize(300, 200), QSize(900, 700)}) {
        RunTool(QStringLiteral("xdotool"),
                {QStringLiteral("windowsize"), viewer->Window(), QString::number(size.width()),
                 QString::number(size.height())});
        QVERIFY(Await([&] { return viewer->Content().size() == size; }));
    }
    Drag(viewer->Content().center(), viewer->Content().center() + QPoint(100, 80));
    Drop();
    PressKeys(QStringLiteral("ctrl+b"));
    PressKeys(QStringLiteral("F1"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("About Viewer")));
    PressKeys(QStringLiteral("Escape"));
    QVERIFY(viewer->AwaitWindow(TitleOf(QStringLiteral("graph.plf"))));
    Quit();
}

void TestFewColors::jpeg_hasTheGraph()
{
    Open({QStringLiteral("-c=1")});
    Quit();
    const QImage picture(Path("graph.jpg"));
    QVERIFY(!picture.isNull());
    QVERIFY(picture.pixelColor(picture.rect().center()).lightness() < kDark);
    QVERIFY(picture.pixelColor(picture.width() / 2, 5).lightness() > kLight);
}

void TestFewColors::eps_isTheSameAsOnAnyScreen()
{
    Open({QStringLiteral("-c=2")});
    Quit();
    const QByteArray eps = ReadFile(Path("graph.eps"));
    QVERIFY(eps.startsWith("%!PS"));
    QVERIFY(QFile::remove(Path("graph.eps")));
    viewer.emplace(home->path());
    viewer->SetEnvironment(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QVERIFY(viewer->Start({QStringLiteral("graph.plf"), QStringLiteral("-c=2")}));
    QVERIFY(Await([&] { return ReadFile(Path("graph.eps")) == eps; }));
}

QTEST_MAIN(TestFewColors)

#include "test_fewcolors.moc"
