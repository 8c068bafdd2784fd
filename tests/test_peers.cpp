// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What large programs make of the converter's SVG: a browser and a drawing program. They take
// seconds for each picture, and hundreds of megabytes to install.
#include "tests/converter.h"
#include "tests/kit/plf.h"
#include "tests/likeness.h"

#include <QImage>
#include <QtTest>

#include <cmath>
#include <string>

namespace {

// A spiral of a million joined vectors, which fills the picture.
QByteArray MillionVectors()
{
    constexpr int kVectors = 1000000;
    std::string graph = plf::Start() + plf::Move(2048, 1560);
    for (int i = 0; i < kVectors; ++i) {
        const double turn = i * 0.05;
        const double radius = 1500.0 * i / kVectors;
        graph += plf::Draw(static_cast<int>(2048 + radius * std::cos(turn)),
                           static_cast<int>(1560 + radius * std::sin(turn)));
    }
    return QByteArray::fromStdString(graph + plf::End());
}

} // namespace

class TestPeers : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void chromium_showsThePng_data() { Rows(); }
    void chromium_showsThePng();
    void inkscape_showsThePng_data() { Rows(); }
    void inkscape_showsThePng();

private:
    static void Rows()
    {
        SampleRows();
        QTest::newRow("a million vectors") << QString();
    }

    // Makes a.png and a.svg, as large as the default picture.
    void MakePictures(const QString& sample)
    {
        Write(Path("a.plf"), sample.isEmpty() ? MillionVectors() : Sample(sample));
        ConvertWell("--background file a.plf a.png");
        ConvertWell("--background file a.plf a.svg");
    }
};

void TestPeers::chromium_showsThePng()
{
    QFETCH(QString, sample);
    MakePictures(sample);
    // Its sandbox does not work for root.
    RunTool(
        Text("chromium"),
        {Text("--headless"), Text("--no-sandbox"), Text("--disable-gpu"), Text("--hide-scrollbars"),
         Text("--force-device-scale-factor=1"), Text("--user-data-dir=") + Path("profile"),
         Text("--screenshot=") + Path("shot.png"),
         QStringLiteral("--window-size=%1,%2").arg(kDefaultSize.width()).arg(kDefaultSize.height()),
         Text("file://") + Path("a.svg")});
    QVERIFY(LookAlike(Loaded(Path("a.png")), Loaded(Path("shot.png")), kEdgeTolerance));
}

void TestPeers::inkscape_showsThePng()
{
    QFETCH(QString, sample);
    MakePictures(sample);
    RunTool(Text("inkscape"), {Path("a.svg"), Text("--export-filename"), Path("shot.png")});
    const QImage shot = Loaded(Path("shot.png")).convertToFormat(QImage::Format_RGB32);
    QVERIFY(LookAlike(Loaded(Path("a.png")), shot, kEdgeTolerance));
}

QTEST_MAIN(TestPeers)
#include "test_peers.moc"
