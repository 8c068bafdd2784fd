// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One output of many graphs: a PDF with a page for each, and contact sheets.
#include "tests/converter.h"
#include "tests/kit/plf.h"
#include "tools/convert/binding.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>

#include <csignal>

namespace {

constexpr int kPictureWidth = 40; // pixels; on a sheet

// A graph that is one wide line in a color, which a TG command gives by its hue.
QByteArray ColoredGraph(int hue)
{
    return QByteArray::fromStdString(plf::Start() + plf::Command("TG", {1, 4, 2, hue, 50, 100}) +
                                     plf::Command("ML", {2}) + plf::Width(2000) +
                                     plf::Line(0, 1560, 4095, 1560) + plf::End());
}

// Hues of red, green and blue, see FORMAT.md.
constexpr int kRed = 90;
constexpr int kGreen = 200;
constexpr int kBlue = 320;

bool HasColor(const QImage& image, const QRect& part, QColor color)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (image.pixelColor(x, y) == color)
                return true;
        }
    }
    return false;
}

} // namespace

class TestBinding : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void merge_hasAPageForEachGraph();
    void merge_pages_areInNaturalOrder();
    void merge_list_keepsItsOrder();
    void merge_sourceDate_makesTheSameDocument();
    void merge_otherExtensions_areWritten_data();
    void merge_otherExtensions_areWritten();
    void merge_outputThatNobodyReads_endsSilently();
    void merge_graphThatFails_hasNoPage();
    void merge_outputs_data();
    void merge_outputs();
    void merge_failure_keepsTheOldDocument();
    void merge_thatIsInterrupted_leavesNothing();
    void sheet_showsEachGraphInItsCell();
    void sheets_areNumbered();
    void sheetName_hasItsNumber_data();
    void sheetName_hasItsNumber();
    void binding_thatIsWrong_isToldWhy_data();
    void binding_thatIsWrong_isToldWhy();

private:
    QByteArray Tool(const char* program, const QStringList& arguments) const;
    // The titles of a document's outline with the text of each page.
    [[nodiscard]] QStringList Titles(const char* document) const;
    void WriteNumbered() const;
};

QByteArray TestBinding::Tool(const char* program, const QStringList& arguments) const
{
    QProcess process;
    process.setWorkingDirectory(folder->path());
    process.start(Text(program), arguments);
    return Finish(&process).output;
}

QStringList TestBinding::Titles(const char* document) const
{
    const QString outline =
        Text(Tool("pdftohtml", {Text("-xml"), Text("-i"), Text("-stdout"), Text(document)}));
    QStringList titles;
    static const QRegularExpression item(Text("<item page=\"(\\d+)\">([^<]*)</item>"));
    for (auto found = item.globalMatch(outline); found.hasNext();) {
        const auto match = found.next();
        titles += match.captured(1) + u' ' + match.captured(2);
    }
    return titles;
}

void TestBinding::WriteNumbered() const
{
    QVERIFY(QDir(folder->path()).mkpath(Text("in/b")));
    for (const char* name : {"in/g10.plf", "in/g2.plf", "in/b/g1.plf"})
        Write(Path(name), SmallGraph());
}

void TestBinding::merge_hasAPageForEachGraph()
{
    Write(Path("first & last.plf"), ColoredGraph(kRed));
    Write(Path("Kräfte.plf"), ColoredGraph(kGreen));
    ConvertWell("--merge all.pdf --width 200 .");
    QCOMPARE(Titles("all.pdf"), QStringList({Text("1 Kräfte"), Text("2 first &amp; last")}));
    Tool("pdftoppm", {Text("-r"), Text("96"), Text("-png"), Text("all.pdf"), Text("page")});
    const QImage first(Path("page-1.png"));
    const QImage second(Path("page-2.png"));
    QCOMPARE(first.width(), 200);
    QCOMPARE(first.pixelColor(100, 76), QColor(Qt::green));
    QCOMPARE(second.pixelColor(100, 76), QColor(Qt::red));
}

void TestBinding::merge_pages_areInNaturalOrder()
{
    WriteNumbered();
    ConvertWell("--merge all.pdf -r in");
    const QStringList titles = {Text("1 b/g1"), Text("2 g2"), Text("3 g10")};
    QCOMPARE(Titles("all.pdf"), titles);
    ConvertWell("--merge all.pdf in/g10.plf in/g2.plf");
    QCOMPARE(Titles("all.pdf"), QStringList({Text("1 g2"), Text("2 g10")}));
}

void TestBinding::merge_list_keepsItsOrder()
{
    WriteNumbered();
    Write(Path("list"), "in/g10.plf\nin/b/g1.plf\nin/g2.plf\n");
    ConvertWell("--merge all.pdf --files-from list");
    QCOMPARE(Titles("all.pdf"), QStringList({Text("1 g10"), Text("2 g1"), Text("3 g2")}));
}

void TestBinding::merge_sourceDate_makesTheSameDocument()
{
    WriteNumbered();
    environment.insert(Text("SOURCE_DATE_EPOCH"), Text("1000000000"));
    ConvertWell("--merge a.pdf -r in");
    ConvertWell("--merge b.pdf -j 1 -r in");
    QCOMPARE(ReadFile(Path("b.pdf")), ReadFile(Path("a.pdf")));
    const QByteArray information = Tool("pdfinfo", {Text("-rawdates"), Text("a.pdf")});
    QVERIFY2(information.contains("D:20010909014640Z"), information.constData());
    environment.insert(Text("SOURCE_DATE_EPOCH"), Text("1000000001"));
    ConvertWell("--merge b.pdf -r in");
    QVERIFY(ReadFile(Path("b.pdf")) != ReadFile(Path("a.pdf")));
}

void TestBinding::merge_otherExtensions_areWritten_data()
{
    QTest::addColumn<QString>("output");
    QTest::newRow("none") << Text("graphs");
    QTest::newRow("unknown") << Text("graphs.new");
    QTest::newRow("capital letters") << Text("graphs.PDF");
}

void TestBinding::merge_otherExtensions_areWritten()
{
    QFETCH(QString, output);
    Write(Path("a.plf"), SmallGraph());
    QCOMPARE(Run({Text("--merge"), output, Text("a.plf")}).code, 0);
    QVERIFY(ReadFile(Path(output)).startsWith("%PDF-"));
}

void TestBinding::merge_outputThatNobodyReads_endsSilently()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    QVERIFY(QDir(folder->path()).mkpath(Text("temporary")));
    environment.insert(Text("TMPDIR"), Path("temporary"));
    for (const char* output : {"-", "c.pdf"}) {
        const Call call = RunUnread(QStringLiteral("--merge %1 a.plf b.plf").arg(Text(output)));
        QCOMPARE(call.errors, QByteArray());
        QCOMPARE(call.code, kEndedByPipe);
        QCOMPARE(QDir(Path("temporary")).entryList({Text("plf*")}, QDir::Dirs), QStringList());
    }
    QVERIFY(ReadFile(Path("c.pdf")).startsWith("%PDF-"));
}

void TestBinding::merge_graphThatFails_hasNoPage()
{
    WriteNumbered();
    Write(Path("in/g3.plf"), "no graph");
    const Call call = Run("--merge all.pdf --report-file report -r in");
    QCOMPARE(call.output, QByteArray("4 files: 3 converted, 1 failed\n"));
    QCOMPARE(call.code, 1);
    QCOMPARE(Titles("all.pdf").size(), 3);
    QCOMPARE(ReadFile(Path("report")).count("\"output\":\"all.pdf\""), 4);
    const Call none = Run("--merge none.pdf in/g3.plf");
    QCOMPARE(none.code, 1);
    QVERIFY(!QFile::exists(Path("none.pdf")));
}

void TestBinding::merge_outputs_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("a graph") << Text("a.plf")
                             << QByteArray("a.plf: is a graph; graphs are never overwritten");
    QTest::newRow("a folder") << Text(".") << QByteArray(".: Is a directory");
    QTest::newRow("a full disk") << Text("/dev/full")
                                 << QByteArray("/dev/full: No space left on device");
    QTest::newRow("no folder") << Text("none/a.pdf")
                               << QByteArray("none/a.pdf: No such file or directory");
}

void TestBinding::merge_outputs()
{
    QFETCH(QString, output);
    QFETCH(QByteArray, message);
    Write(Path("a.plf"), SmallGraph());
    const Call call = Run({Text("--merge"), output, Text("a.plf")});
    QCOMPARE(call.errors, "plfconvert: " + message + '\n');
    QCOMPARE(call.code, 1);
    QCOMPARE(ReadFile(Path("a.plf")), SmallGraph());
    const Call stream = Run("--merge - a.plf a.plf");
    QCOMPARE(stream.code, 0);
    QVERIFY(stream.output.startsWith("%PDF-") && stream.output.trimmed().endsWith("%%EOF"));
    QCOMPARE(stream.errors, QByteArray("2 files: 2 converted, 0 failed\n"));
}

void TestBinding::merge_failure_keepsTheOldDocument()
{
    Write(Path("all.pdf"), "old");
    Write(Path("a.plf"), "no graph");
    QCOMPARE(Run("--merge all.pdf a.plf").code, 1);
    QCOMPARE(ReadFile(Path("all.pdf")), QByteArray("old"));
}

void TestBinding::merge_thatIsInterrupted_leavesNothing()
{
    QVERIFY(QDir(folder->path()).mkpath(Text("in")));
    QVERIFY(QDir(folder->path()).mkpath(Text("temporary")));
    for (int i = 0; i < 500; ++i)
        Write(Path(QStringLiteral("in/%1.plf").arg(i)), Sample(Text("walk.plf")));
    environment.insert(Text("TMPDIR"), Path("temporary"));
    QProcess process;
    Start(&process, Text("--merge all.pdf in").split(u' '));
    // Without the folder that Qt makes for a session.
    const auto folders = [this] {
        return QDir(Path("temporary"))
            .entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)
            .filter(QRegularExpression(Text("^(?!runtime-)")));
    };
    const auto pages = [this, &folders] {
        const QStringList inside = folders();
        return inside.isEmpty() ? 0 : QDir(Path(Text("temporary/") + inside[0])).count();
    };
    QTRY_VERIFY_WITH_TIMEOUT(pages() > 4, kTimeout);
    process.terminate();
    QVERIFY(process.waitForFinished(kTimeout));
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(folders(), QStringList());
    QVERIFY(!QFile::exists(Path("all.pdf")));
}

void TestBinding::sheet_showsEachGraphInItsCell()
{
    Write(Path("g1.plf"), ColoredGraph(kRed));
    Write(Path("g2.plf"), ColoredGraph(kGreen));
    Write(Path("g10.plf"), ColoredGraph(kBlue));
    ConvertWell("--contact-sheet 2x2 g10.plf g1.plf g2.plf sheet.png");
    const QImage sheet(Path("sheet.png"));
    QVERIFY(sheet.width() > 640 && sheet.height() > 487);
    const QSize half(sheet.width() / 2, sheet.height() / 2);
    const QList<QColor> colors = {Qt::red, Qt::green, Qt::blue};
    for (int i = 0; i < 4; ++i) {
        const QRect part(QPoint(i % 2 * half.width(), i / 2 * half.height()), half);
        for (int color = 0; color < 3; ++color)
            QCOMPARE(HasColor(sheet, part, colors[color]), color == i);
    }
    // Below the pictures there are names: dark pixels in the last line of text.
    const QRect names(0, half.height() - 30, half.width(), 20);
    QVERIFY(HasColor(sheet, names, Qt::black));
}

void TestBinding::sheets_areNumbered()
{
    for (int i = 0; i < 11; ++i)
        Write(Path(QStringLiteral("%1.plf").arg(i)), SmallGraph());
    ConvertWell(qPrintable(
        QStringLiteral("-f jpg --contact-sheet 1x1 --width %1 . out.sheet").arg(kPictureWidth)));
    QCOMPARE(QDir(folder->path()).entryList({Text("out*")}).size(), 11);
    const QImage first(Path("out-01.sheet"), "jpeg");
    QVERIFY(first.width() > kPictureWidth && first.width() < 2 * kPictureWidth);
    QCOMPARE(QImage(Path("out-11.sheet"), "jpeg").size(), first.size());
}

void TestBinding::sheetName_hasItsNumber_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("result");
    QTest::newRow("only one") << Text("a.png") << 1 << 1 << Text("a.png");
    QTest::newRow("first") << Text("a.png") << 1 << 9 << Text("a-1.png");
    QTest::newRow("of ten") << Text("b.c/a.png") << 2 << 10 << Text("b.c/a-02.png");
    QTest::newRow("no extension") << Text("b.c/a") << 2 << 3 << Text("b.c/a-2");
    QTest::newRow("hidden") << Text("b/.png") << 2 << 3 << Text("b/.png-2");
}

void TestBinding::sheetName_hasItsNumber()
{
    QFETCH(QString, name);
    QFETCH(int, number);
    QFETCH(int, count);
    QTEST(convert::SheetName(name, number, count), "result");
}

void TestBinding::binding_thatIsWrong_isToldWhy_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("reason");
    const auto row = [](const char* arguments, const char* reason) {
        QTest::newRow(arguments) << Text(arguments) << QByteArray(reason);
    };
    row("--merge a.pdf", "no graph given");
    row("--merge= a.plf", "--merge '': expected a file");
    row("--merge a.png -f png a.plf", "--merge makes PDF files only");
    row("--merge a.png a.plf", "--merge makes PDF files only");
    row("--merge a.pdf/b.JPG a.plf", "--merge makes PDF files only");
    row("--merge a.pdf -d out a.plf", "needs neither --output-dir nor --pattern");
    row("--merge a.pdf --update a.plf", "leave out --no-clobber and --update");
    row("--merge a.pdf --contact-sheet 2x2 a.plf b.png", "cannot be combined");
    row("--merge - --report json a.plf", "use --report-file");
    row("--contact-sheet 2x2 a.plf", "as the last name, a picture");
    row("--contact-sheet 0x2 a.plf a.png", "--contact-sheet '0x2': expected COLUMNSxROWS");
    row("--contact-sheet 101x2 a.plf a.png", "at most 100");
    row("--contact-sheet 2x2 a.plf a.svg", "PNG and JPEG files only");
    row("--contact-sheet 2x2 -f png a.plf -", "needs the name of a file");
    row("-r a", "many graphs need --output-dir or --pattern");
    row("--files-from a", "many graphs need --output-dir or --pattern");
    row("-0 -d out a", "--null needs --files-from");
    row("--files-from= -d out", "--files-from '': expected a file");
}

void TestBinding::binding_thatIsWrong_isToldWhy()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, reason);
    const Call call = Run(arguments.split(u' '));
    QVERIFY2(call.errors.contains(reason), call.errors.constData());
    QCOMPARE(call.code, 2);
}

QTEST_MAIN(TestBinding)
#include "test_binding.moc"
