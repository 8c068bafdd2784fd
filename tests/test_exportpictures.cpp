// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Exporting JPEG and EPS pictures, by the user.
#include "tests/kit/epsfile.h"
#include "tests/kit/exporting.h"

#include <QBuffer>

#include <fcntl.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <limits>

using fixture::Box;
using fixture::FilesIn;
using fixture::kEps;
using fixture::kJpeg;
using fixture::kUsualView;
using fixture::kZoomArea;
using fixture::Status;
using fixture::Window;

namespace {

// The bytes that Qt writes for an image.
QByteArray Jpeg(const QImage& image, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "JPEG", quality) ? bytes : QByteArray("(not saved)");
}

int Difference(const QImage& a, const QImage& b)
{
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                             std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return most;
}

} // namespace

class TestExportPictures : public QObject, protected fixture::ExportTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void jpeg_hasTheSizeOfTheView_data();
    void jpeg_hasTheSizeOfTheView();
    void jpeg_afterAResize_hasTheNewSize();
    void jpeg_showsWhatTheViewShows_data();
    void jpeg_showsWhatTheViewShows();
    void jpeg_quality_isTenTimesTheSetting_data();
    void jpeg_quality_isTenTimesTheSetting();
    void jpeg_quality_fromTheConfigurationFile();
    void jpeg_absurdQuality_isSurvived_data();
    void jpeg_absurdQuality_isSurvived();
    void jpeg_name_getsTheExtension_data();
    void jpeg_name_getsTheExtension();
    void jpeg_withoutAGraph_isThePictureOfTheEmptyView();
    void jpeg_failure_isReportedWithoutAParent_data();
    void jpeg_failure_isReportedWithoutAParent();

    void jpeg_smallPictureOnAFullDisk_isReported();
    void jpeg_intoAPipeThatIsRead_isWritten();

    void eps_isWhatTheInterpreterWrites_data();
    void eps_isWhatTheInterpreterWrites();
    void eps_zoomed_isWhatTheInterpreterWrites();
    void eps_name_getsTheExtension_data();
    void eps_name_getsTheExtension();
    void eps_withoutAGraph_writesNothing();
    void eps_failure_isNotReported_data();
    void eps_failure_isNotReported();
};

void TestExportPictures::jpeg_hasTheSizeOfTheView_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << kUsualView;
    QTest::newRow("wide") << QSize(900, 200);
    QTest::newRow("high") << QSize(300, 700);
}

void TestExportPictures::jpeg_hasTheSizeOfTheView()
{
    QFETCH(QSize, size);
    Window window;
    Open(window, size);
    ChooseAndType(window, kJpeg, Path("out"));
    const QImage image(Text(Path("out.jpg")), "JPEG");
    QCOMPARE(image.size(), size);
}

void TestExportPictures::jpeg_afterAResize_hasTheNewSize()
{
    constexpr QSize kLarger(800, 500);
    Window window;
    Open(window);
    gpMainwnd->resize(gpMainwnd->size() + kLarger - gpDraw->size());
    QTRY_COMPARE(gpDraw->size(), kLarger);
    ChooseAndType(window, kJpeg, Path("out"));
    QCOMPARE(QImage(Text(Path("out.jpg")), "JPEG").size(), kLarger);
}

void TestExportPictures::jpeg_showsWhatTheViewShows_data()
{
    QTest::addColumn<bool>("zoomed");
    QTest::newRow("whole") << false;
    QTest::newRow("zoomed") << true;
}

void TestExportPictures::jpeg_showsWhatTheViewShows()
{
    constexpr int kJpegError = 12; // levels of 255, at the best quality
    QFETCH(bool, zoomed);
    Window window;
    Open(window);
    if (zoomed)
        Zoom(window);
    ChooseAndType(window, kJpeg, Path("out"));
    const QImage view = gpDraw->grab().toImage();
    const QImage image(Text(Path("out.jpg")), "JPEG");
    QCOMPARE(image.size(), view.size());
    const int difference = Difference(image, view);
    QVERIFY2(difference <= kJpegError, qPrintable(QString::number(difference)));
    QImage blank(view.size(), QImage::Format_RGB32);
    blank.fill(Qt::white);
    QVERIFY(Difference(view, blank) == 255);
}

void TestExportPictures::jpeg_quality_isTenTimesTheSetting_data()
{
    QTest::addColumn<int>("setting");
    QTest::addColumn<int>("quality");
    QTest::newRow("best, the default") << 10 << 100;
    QTest::newRow("7") << 7 << 70;
    QTest::newRow("5") << 5 << 50;
    QTest::newRow("1") << 1 << 10;
    QTest::newRow("worst") << 0 << 0;
}

void TestExportPictures::jpeg_quality_isTenTimesTheSetting()
{
    QFETCH(int, setting);
    QFETCH(int, quality);
    Window window;
    Open(window);
    QCOMPARE(giExportQuality, 10);
    giExportQuality = setting;
    ChooseAndType(window, kJpeg, Path("out"));
    const QImage view = gpDraw->grab().toImage();
    const QByteArray bytes = ReadFile(Path("out.jpg"));
    QVERIFY(bytes == Jpeg(view, quality));
    QVERIFY(quality == 100 || bytes.size() < Jpeg(view, quality + 10).size());
}

void TestExportPictures::jpeg_quality_fromTheConfigurationFile()
{
    directories->Write("home/plotvw.cfg", "export_quality=7\n");
    Window window;
    Open(window);
    ChooseAndType(window, kJpeg, Path("out"));
    QVERIFY(ReadFile(Path("out.jpg")) == Jpeg(gpDraw->grab().toImage(), 70));
}

void TestExportPictures::jpeg_absurdQuality_isSurvived_data()
{
    QTest::addColumn<int>("setting");
    for (const int setting : {-1, 11, 1000, std::numeric_limits<int>::max(),
                              std::numeric_limits<int>::min(), 429496730})
        QTest::addRow("%d", setting) << setting;
}

// Qt takes too much for the best, and less than nothing for its own choice.
void TestExportPictures::jpeg_absurdQuality_isSurvived()
{
    constexpr int kToolkitsChoice = -1;
    QFETCH(int, setting);
    Window window;
    Open(window);
    giExportQuality = setting;
    ChooseAndType(window, kJpeg, Path("out"));
    const QByteArray expected = Jpeg(gpDraw->grab().toImage(), setting > 0 ? 100 : kToolkitsChoice);
    QVERIFY(ReadFile(Path("out.jpg")) == expected);
}

static void ExportNameRows(const char* extension)
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("written");
    const QByteArray ext = extension;
    QTest::newRow("none") << QByteArray("out") << "out" + ext;
    QTest::newRow("its own") << "out" + ext << "out" + ext;
    QTest::newRow("capitals") << "out" + ext.toUpper() << "out" + ext.toUpper();
    QTest::newRow("another") << QByteArray("out.png") << QByteArray("out.png");
    QTest::newRow("hidden") << QByteArray(".out") << QByteArray(".out");
}

void TestExportPictures::jpeg_name_getsTheExtension_data()
{
    ExportNameRows(".jpg");
}

// Whatever the name says, the file is a JPEG.
void TestExportPictures::jpeg_name_getsTheExtension()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, written);
    Window window;
    Open(window);
    const std::string path = Path("work/") + written.toStdString();
    ChooseAndType(window, kJpeg, Path("work/") + typed.toStdString());
    QCOMPARE(FilesIn(Path("work")), QStringList(QString::fromLatin1(written)));
    QVERIFY(ReadFile(path).startsWith("\xff\xd8\xff"));
    QCOMPARE(QByteArray(gszCvtFilename), QByteArray::fromStdString(path));
}

void TestExportPictures::jpeg_withoutAGraph_isThePictureOfTheEmptyView()
{
    Window window;
    OpenEmpty(window);
    ChooseAndType(window, kJpeg, Path("out"));
    QVERIFY(ReadFile(Path("out.jpg")) == Jpeg(gpDraw->grab().toImage(), 100));
}

void TestExportPictures::jpeg_failure_isReportedWithoutAParent_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("missing folder") << QByteArray("none/out") << QByteArray("none/out.jpg");
    QTest::newRow("below a file") << QByteArray("a.plf/out.png") << QByteArray("a.plf/out.png");
    QTest::newRow("a folder's name") << QByteArray("folder") << QByteArray("folder.jpg");
    QTest::newRow("full disk") << QByteArray("full") << QByteArray("full.jpg");
    QTest::newRow("pipe that nobody reads") << QByteArray("pipe") << QByteArray("pipe.jpg");
    QTest::newRow("folder without permission")
        << QByteArray("locked/out") << QByteArray("locked/out.jpg");
}

void TestExportPictures::jpeg_failure_isReportedWithoutAParent()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, told);
    MakeUnwritable(".jpg");
    Window window;
    Open(window);
    Box box;
    ExpectUnwritableName(typed.toStdString());
    fixture::ExpectBox(*dialogs, box);
    Choose(window, kJpeg.item);
    setfsuid(geteuid());
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Save failed"));
    QCOMPARE(box.text, QStringLiteral("Export failed for file: ") + Text(Path(told.toStdString())));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.parent, nullptr);
    QVERIFY(box.isModal);
}

// So small that its bytes are written only when the file is closed.
void TestExportPictures::jpeg_smallPictureOnAFullDisk_isReported()
{
    QCOMPARE(symlink("/dev/full", Path("full.jpg").c_str()), 0);
    Window window;
    Open(window, QSize(300, 200));
    giExportQuality = 0;
    QVERIFY(Jpeg(gpDraw->grab().toImage(), 0).size() < BUFSIZ / 2);
    Box box;
    ExpectUnwritableName("full");
    fixture::ExpectBox(*dialogs, box);
    Choose(window, kJpeg.item);
    QCOMPARE(box.title, QStringLiteral("Save failed"));
}

// The picture is smaller than what a pipe holds.
void TestExportPictures::jpeg_intoAPipeThatIsRead_isWritten()
{
    Window window;
    Open(window, QSize(300, 200));
    QCOMPARE(mkfifo(Path("pipe.jpg").c_str(), 0600), 0);
    const int reader = open(Path("pipe.jpg").c_str(), O_RDONLY | O_NONBLOCK);
    QVERIFY(reader >= 0);
    ChooseAndType(window, kJpeg, Path("pipe"));
    char piped[65536];
    const QByteArray bytes(piped, std::max<ssize_t>(read(reader, piped, sizeof piped), 0));
    close(reader);
    QVERIFY(bytes == Jpeg(gpDraw->grab().toImage(), 100));
}

void TestExportPictures::eps_isWhatTheInterpreterWrites_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << kUsualView;
    QTest::newRow("twice as wide") << QSize(1280, 480);
    QTest::newRow("half as wide") << QSize(320, 480);
}

void TestExportPictures::eps_isWhatTheInterpreterWrites()
{
    QFETCH(QSize, size);
    Window window;
    Open(window, size);
    ChooseAndType(window, kEps, Path("out"));
    QCOMPARE(QByteArray(gszCvtFilename), QByteArray::fromStdString(Path("out.eps")));
    QCOMPARE(ReadFile(Path("out.eps")), Eps({.widthScale = size.width() / 640.0}));
}

void TestExportPictures::eps_zoomed_isWhatTheInterpreterWrites()
{
    Window window;
    Open(window);
    Zoom(window);
    ChooseAndType(window, kEps, Path("out"));
    const QByteArray eps = ReadFile(Path("out.eps"));
    QCOMPARE(eps, Eps({.widthScale = 2.0, .zoom = kZoomArea}));
    QVERIFY(eps != Eps());
}

void TestExportPictures::eps_name_getsTheExtension_data()
{
    ExportNameRows(".eps");
}

void TestExportPictures::eps_name_getsTheExtension()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, written);
    Window window;
    Open(window);
    ChooseAndType(window, kEps, Path("work/") + typed.toStdString());
    QCOMPARE(FilesIn(Path("work")), QStringList(QString::fromLatin1(written)));
    QVERIFY(ReadFile(Path("work/") + written.toStdString()).startsWith("%!PS-Adobe-3.0 EPSF-3.0"));
}

void TestExportPictures::eps_withoutAGraph_writesNothing()
{
    const std::string old = directories->Write("old.eps", "content");
    Window window;
    OpenEmpty(window);
    ChooseAndType(window, kEps, Path("out"));
    QVERIFY(!Exists(Path("out.eps")));
    ChooseAndType(window, kEps, Path("old"));
    QCOMPARE(ReadFile(old), QByteArray("content"));
}

void TestExportPictures::eps_failure_isNotReported_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::newRow("missing folder") << QByteArray("none/out");
    QTest::newRow("below a file") << QByteArray("a.plf/out");
    QTest::newRow("a folder's name") << QByteArray("folder");
    QTest::newRow("full disk") << QByteArray("full");
    QTest::newRow("pipe that nobody reads") << QByteArray("pipe");
    QTest::newRow("folder without permission") << QByteArray("locked/out");
}

void TestExportPictures::eps_failure_isNotReported()
{
    QFETCH(QByteArray, typed);
    MakeUnwritable(".eps");
    Window window;
    Open(window);
    const QString status = Status(window);
    ExpectUnwritableName(typed.toStdString());
    Choose(window, kEps.item);
    setfsuid(geteuid());
    QCOMPARE(Status(window), status);
    QCOMPARE(FilesIn(Path("locked")), QStringList());
}

QTEST_MAIN(TestExportPictures)
#include "test_exportpictures.moc"
