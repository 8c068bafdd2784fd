// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A program of Qt's own, which knows nothing of graphs, shows one through the installed plug-in.
#include "tests/e2e/screen.h"
#include "tests/kit/files.h"

#include <QCoreApplication>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Has the graph's shape exactly: the scene keeps the shape and rounds.
constexpr QSize kShown(768, 585);

// The picture at the screen's corner, without a frame.
constexpr char kScene[] = "import QtQuick\n"
                          "Window {\n"
                          "flags: Qt.FramelessWindowHint | Qt.BypassWindowManagerHint\n"
                          "x: 0; y: 0; width: %1; height: %2; visible: true\n"
                          "Image { source: 'file:%3'; sourceSize: Qt.size(%1, %2) }\n"
                          "}\n";

QImage Expected(const QString& graph)
{
    QImageReader reader(graph);
    reader.setScaledSize(kShown);
    return reader.read();
}

QImage Shown()
{
    return GrabScreen().copy(QRect(QPoint(), kShown)).convertToFormat(QImage::Format_RGB32);
}

} // namespace

class TestOtherViewer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void graph_isShown();

private:
    [[nodiscard]] QString Path(const char* name) const { return folder.filePath(Text(name)); }

    QTemporaryDir folder;
};

void TestOtherViewer::init()
{
    const QStringList install = {Text("--install"), Text(PLOTVW_PLUGIN_BUILD), Text("--prefix"),
                                 folder.path()};
    QCOMPARE(QProcess::execute(Text(CMAKE_PROGRAM), install), 0);
    QCoreApplication::addLibraryPath(Path(PLOTVW_QT_PLUGIN_DIR));
    QVERIFY(QImageReader::supportedImageFormats().contains("plf"));
}

void TestOtherViewer::graph_isShown()
{
    const QString graph = Text(PLOTVW_SAMPLES "/tour.plf");
    const QString scene = Text(kScene).arg(kShown.width()).arg(kShown.height()).arg(graph);
    QVERIFY(WriteFile(Path("scene.qml"), scene.toUtf8()));
    QProcess viewer;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(Text("QT_PLUGIN_PATH"), Path(PLOTVW_QT_PLUGIN_DIR));
    environment.insert(Text("QT_QUICK_BACKEND"), Text("software"));
    viewer.setProcessEnvironment(environment);
    viewer.setProcessChannelMode(QProcess::ForwardedChannels);
    viewer.start(Text(QML_PROGRAM), {Path("scene.qml")});
    const QImage expected = Expected(graph);
    QCOMPARE(expected.size(), kShown);
    const bool isShown = Await([&] { return Shown() == expected; });
    GrabScreen().save(Text("otherviewer.png")); // to be looked at
    viewer.kill();
    QVERIFY(viewer.waitForFinished());
    QVERIFY(isShown);
}

QTEST_MAIN(TestOtherViewer)
#include "test_otherviewer.moc"
