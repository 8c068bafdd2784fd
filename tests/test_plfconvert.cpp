// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter's parts: what its options mean, how pictures are named, how files get their names,
// and what becomes of workers that die.
#include "tests/kit/files.h"
#include "tools/common/filename.h"
#include "tools/common/integer.h"
#include "tools/convert/convert.h"
#include "tools/convert/format.h"
#include "tools/convert/namepattern.h"
#include "tools/convert/options.h"
#include "tools/convert/output.h"
#include "tools/convert/palettize.h"
#include "tools/convert/picturesize.h"
#include "tools/convert/plan.h"
#include "tools/convert/progress.h"
#include "tools/convert/values.h"
#include "tools/convert/workers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <map>
#include <memory>
#include <optional>

using namespace convert;

namespace {

CommandLine Read(const QString& arguments)
{
    return ReadCommandLine(QStringLiteral("plfconvert ").append(arguments).split(u' '));
}

Options ReadValid(const QString& arguments)
{
    const CommandLine line = Read(arguments);
    if (!line.options)
        qWarning("%s", qPrintable(line.reply.text));
    return line.options.value_or(Options{});
}

void Write(const QString& name, const QByteArray& bytes)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QStringList Outputs(const std::vector<PlannedJob>& plan)
{
    QStringList outputs;
    for (const PlannedJob& planned : plan)
        outputs += planned.problem.isEmpty() ? QString::fromUtf8(planned.job.output) : QString();
    return outputs;
}

// Long for a job that does nothing, also on a busy machine.
constexpr std::chrono::milliseconds kShortLimit(300);

int Die()
{
    return raise(SIGKILL);
}

// The outcomes of jobs by their numbers; with a job whose number is in the set the worker does what
// nobody expects.
std::map<int, Outcome> RunJobs(int count, int workers, const QSet<int>& strange, int (*act)() = Die,
                               std::chrono::milliseconds limit = {})
{
    std::map<int, Outcome> outcomes;
    const WorkerTasks tasks = {
        [] { return nullptr; },
        [&strange, act](int job) {
            if (strange.contains(job))
                act();
            return Outcome{Outcome::kConverted, QString::number(job)};
        },
        [&outcomes](int job, const Outcome& outcome) { outcomes[job] = outcome; },
        [](int) {},
    };
    [&] { QVERIFY(RunWorkers(count, workers, tasks, limit).started); }();
    return outcomes;
}

} // namespace

class TestPlfConvert : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.emplace();
        QVERIFY(folder->isValid());
    }

    void integer_isDigitsWithinItsRange_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value"); // -1 = none
        QTest::newRow("least") << QStringLiteral("1") << 1;
        QTest::newRow("most") << QStringLiteral("100") << 100;
        QTest::newRow("leading zero") << QStringLiteral("007") << 7;
        QTest::newRow("below") << QStringLiteral("0") << -1;
        QTest::newRow("above") << QStringLiteral("101") << -1;
        QTest::newRow("empty") << QString() << -1;
        QTest::newRow("sign") << QStringLiteral("+5") << -1;
        QTest::newRow("blank") << QStringLiteral(" 5") << -1;
        QTest::newRow("more behind") << QStringLiteral("5px") << -1;
        QTest::newRow("fraction") << QStringLiteral("5.0") << -1;
        QTest::newRow("beyond an int") << QStringLiteral("99999999999") << -1;
        QTest::newRow("other digits") << QStringLiteral("٣") << -1;
    }
    void integer_isDigitsWithinItsRange()
    {
        QFETCH(QString, text);
        QTEST(tools::ParseInteger(text, 1, 100).value_or(-1), "value");
    }

    void size_isTwoSides_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QSize>("size"); // invalid = none
        QTest::newRow("plain") << QStringLiteral("640x487") << QSize(640, 487);
        QTest::newRow("capital") << QStringLiteral("640X487") << QSize(640, 487);
        QTest::newRow("smallest") << QStringLiteral("1x1") << QSize(1, 1);
        QTest::newRow("longest") << QStringLiteral("1000000x1") << QSize(1'000'000, 1);
        QTest::newRow("too long") << QStringLiteral("1000001x1") << QSize();
        QTest::newRow("no width") << QStringLiteral("0x10") << QSize();
        QTest::newRow("no height") << QStringLiteral("10x0") << QSize();
        QTest::newRow("negative") << QStringLiteral("-10x10") << QSize();
        QTest::newRow("one side") << QStringLiteral("640") << QSize();
        QTest::newRow("three sides") << QStringLiteral("1x2x3") << QSize();
        QTest::newRow("half") << QStringLiteral("640x") << QSize();
        QTest::newRow("empty") << QString() << QSize();
    }
    void size_isTwoSides()
    {
        QFETCH(QString, text);
        QTEST(ParseSize(text).value_or(QSize()), "size");
    }

    void width_hasPixelsOrAUnit_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("number"); // 0 = none
        QTest::addColumn<bool>("isPixels");
        QTest::newRow("pixels") << QStringLiteral("640") << 640.0 << true;
        QTest::newRow("inches") << QStringLiteral("6.5in") << 468.0 << false;
        QTest::newRow("millimeters") << QStringLiteral("25.4mm") << 72.0 << false;
        QTest::newRow("centimeters") << QStringLiteral("2.54CM") << 72.0 << false;
        QTest::newRow("points") << QStringLiteral("72pt") << 72.0 << false;
        QTest::newRow("no number") << QStringLiteral("mm") << 0.0 << false;
        QTest::newRow("another unit") << QStringLiteral("6ft") << 0.0 << false;
        QTest::newRow("negative") << QStringLiteral("-6in") << 0.0 << false;
        QTest::newRow("nothing") << QStringLiteral("0mm") << 0.0 << false;
        QTest::newRow("not a number") << QStringLiteral("nanmm") << 0.0 << false;
        QTest::newRow("infinite") << QStringLiteral("infin") << 0.0 << false;
        QTest::newRow("half a pixel") << QStringLiteral("10.5") << 0.0 << false;
        QTest::newRow("empty") << QString() << 0.0 << false;
    }
    void width_hasPixelsOrAUnit()
    {
        QFETCH(QString, text);
        const Length length = ParseLength(text).value_or(Length{0, false});
        QTEST(length.isPixels, "isPixels");
        QFETCH(double, number);
        QVERIFY(std::abs(length.number - number) < 1e-9);
    }

    void page_isNamedOrMeasured_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QSizeF>("size"); // points; invalid = none
        QTest::newRow("name") << QStringLiteral("Letter") << QSizeF(612, 792);
        QTest::newRow("one unit") << QStringLiteral("8.5x11in") << QSizeF(612, 792);
        QTest::newRow("two units") << QStringLiteral("72ptx1in") << QSizeF(72, 72);
        QTest::newRow("no unit") << QStringLiteral("8.5x11") << QSizeF();
        QTest::newRow("one side") << QStringLiteral("11in") << QSizeF();
        QTest::newRow("another name") << QStringLiteral("b0") << QSizeF();
    }
    void page_isNamedOrMeasured()
    {
        QFETCH(QString, text);
        QTEST(ParsePage(text).value_or(Page{QSizeF(), false}).size, "size");
    }

    void graph_isFittedOnThePage()
    {
        PictureSettings settings;
        settings.dpi = 72;
        settings.page = ParsePage(QStringLiteral("letter"));
        settings.margin = 36;
        QCOMPARE(PictureSize(settings), QSize(792, 612)); // it lies as the graph does
        QCOMPARE(GraphPlace(settings), QRect(42, 36, 709, 540));
        settings.area = QRect(0, 0, 100, 200);
        QCOMPARE(PictureSize(settings), QSize(612, 792));
        QCOMPARE(GraphPlace(settings), QRect(126, 36, 360, 720));
        settings.margin = 306;
        QVERIFY(!HasSpace(settings));
    }

    // In a window that is so many pixels wide, or would be on a screen, zoomed to the area.
    void lineScale_isTheViewers()
    {
        PictureSettings settings;
        QCOMPARE(ViewerLineScale(settings), 1.0);
        settings.width = Length{1280, true};
        QCOMPARE(ViewerLineScale(settings), 2.0);
        settings.dpi = 300;
        QCOMPARE(ViewerLineScale(settings), 2.0);
        settings.area = QRect(100, 200, 1024, 780);
        QCOMPARE(ViewerLineScale(settings), 8.0);
        settings.width = Length{480, false};
        QCOMPARE(ViewerLineScale(settings), 4.0);
    }

    void area_liesInTheGraph_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QRect>("area"); // null = none
        QTest::newRow("whole") << QStringLiteral("0,0,4096,3120") << QRect(0, 0, 4096, 3120);
        QTest::newRow("part") << QStringLiteral("10,20,30,50") << QRect(10, 20, 20, 30);
        QTest::newRow("one unit") << QStringLiteral("5,5,6,6") << QRect(5, 5, 1, 1);
        QTest::newRow("no width") << QStringLiteral("5,5,5,6") << QRect();
        QTest::newRow("no height") << QStringLiteral("5,6,6,6") << QRect();
        QTest::newRow("inverted") << QStringLiteral("30,20,10,50") << QRect();
        QTest::newRow("upside down") << QStringLiteral("10,50,30,20") << QRect();
        QTest::newRow("beyond the right") << QStringLiteral("0,0,4097,3120") << QRect();
        QTest::newRow("beyond the bottom") << QStringLiteral("0,0,4096,3121") << QRect();
        QTest::newRow("negative") << QStringLiteral("-1,0,10,10") << QRect();
        QTest::newRow("three edges") << QStringLiteral("1,2,3") << QRect();
        QTest::newRow("five edges") << QStringLiteral("1,2,3,4,5") << QRect();
        QTest::newRow("empty") << QString() << QRect();
    }
    void area_liesInTheGraph()
    {
        QFETCH(QString, text);
        QTEST(ParseArea(text).value_or(QRect()), "area");
    }

    void lineScale_isPositive_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("scale"); // 0 = none
        QTest::newRow("one") << QStringLiteral("1") << 1.0;
        QTest::newRow("fraction") << QStringLiteral("0.5") << 0.5;
        QTest::newRow("largest") << QStringLiteral("1000") << 1000.0;
        QTest::newRow("too large") << QStringLiteral("1000.1") << 0.0;
        QTest::newRow("comma") << QStringLiteral("0,5") << 0.0;
        QTest::newRow("nothing") << QStringLiteral("0") << 0.0;
        QTest::newRow("negative") << QStringLiteral("-1") << 0.0;
        QTest::newRow("infinite") << QStringLiteral("inf") << 0.0;
        QTest::newRow("no number") << QStringLiteral("nan") << 0.0;
        QTest::newRow("word") << QStringLiteral("thick") << 0.0;
    }
    void lineScale_isPositive()
    {
        QFETCH(QString, text);
        QTEST(ParseLineScale(text).value_or(0.0), "scale");
    }

    void extension_namesTheFormat_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("extension"); // of the format; empty = none
        QTest::newRow("png") << QStringLiteral("a.png") << QStringLiteral("png");
        QTest::newRow("jpg") << QStringLiteral("a.jpg") << QStringLiteral("jpg");
        QTest::newRow("jpeg") << QStringLiteral("a.jpeg") << QStringLiteral("jpg");
        QTest::newRow("capitals") << QStringLiteral("A.SVG") << QStringLiteral("svg");
        QTest::newRow("last one") << QStringLiteral("a.png.pdf") << QStringLiteral("pdf");
        QTest::newRow("eps") << QStringLiteral("b/a.eps") << QStringLiteral("eps");
        QTest::newRow("other") << QStringLiteral("a.gif") << QString();
        QTest::newRow("none") << QStringLiteral("png") << QString();
        QTest::newRow("of the folder") << QStringLiteral("a.png/b") << QString();
    }
    void extension_namesTheFormat()
    {
        QFETCH(QString, name);
        const auto format = FormatOfName(name);
        QTEST(format ? ExtensionOf(*format) : QString(), "extension");
    }

    void pictureSize_followsTheShapeOfTheArea()
    {
        PictureSettings settings;
        QCOMPARE(PictureSize(settings), QSize(640, 487));
        settings.width = Length{4096, true};
        QCOMPARE(PictureSize(settings), QSize(4096, 3120));
        settings.area = QRect(0, 0, 100, 200);
        QCOMPARE(PictureSize(settings), QSize(4096, 8192));
        settings.area = QRect(0, 0, 4096, 1);
        settings.width = Length{100, true};
        QCOMPARE(PictureSize(settings), QSize(100, 1));
        settings.size = QSize(7, 9);
        QCOMPARE(PictureSize(settings), QSize(7, 9));
    }

    void pattern_isExpanded_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("name");
        QTest::newRow("default") << QStringLiteral("{name}.{ext}") << QStringLiteral("b.c.svg");
        QTest::newRow("folder") << QStringLiteral("{dir}/x") << QStringLiteral("/a/x");
        QTest::newRow("number") << QStringLiteral("{number}") << QStringLiteral("007");
        QTest::newRow("twice") << QStringLiteral("{name}{name}") << QStringLiteral("b.cb.c");
        QTest::newRow("braces") << QStringLiteral("{{{name}}}") << QStringLiteral("{b.c}");
        QTest::newRow("none") << QStringLiteral("plain") << QStringLiteral("plain");
    }
    void pattern_isExpanded()
    {
        QFETCH(QString, pattern);
        QCOMPARE(PatternProblem(pattern), QString());
        QTEST(ExpandPattern(pattern, {QStringLiteral("/a/b.c.plf"), Format::kSvg, 7, 100}), "name");
    }

    void pattern_thatIsWrong_isToldSo_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::newRow("empty") << QString();
        QTest::newRow("folder") << QStringLiteral("a/");
        QTest::newRow("unknown") << QStringLiteral("{nam}");
        QTest::newRow("open") << QStringLiteral("{name");
        QTest::newRow("close") << QStringLiteral("name}");
        QTest::newRow("lone at the end") << QStringLiteral("a{");
    }
    void pattern_thatIsWrong_isToldSo()
    {
        QFETCH(QString, pattern);
        QVERIFY(!PatternProblem(pattern).isEmpty());
    }

    void partsOfNames_areTaken()
    {
        QCOMPARE(tools::BaseName(QStringLiteral("a/b.plf")), QStringLiteral("b"));
        QCOMPARE(tools::BaseName(QStringLiteral("a.b/c")), QStringLiteral("c"));
        QCOMPARE(tools::BaseName(QStringLiteral(".plf")), QStringLiteral(".plf"));
        QCOMPARE(tools::BaseName(QStringLiteral("-")), QStringLiteral("stdin"));
        QCOMPARE(tools::FolderOf(QStringLiteral("a/b/c.plf")), QStringLiteral("a/b"));
        QCOMPARE(tools::FolderOf(QStringLiteral("c.plf")), QStringLiteral("."));
        QCOMPARE(tools::FolderOf(QStringLiteral("/c.plf")), QStringLiteral("/"));
    }

    void names_survive_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("ascii") << QByteArray("graph one.plf");
        QTest::newRow("utf-8") << QByteArray("Kr\303\244fte \xf0\x9f\x93\x88.plf");
        QTest::newRow("latin-1") << QByteArray("Kr\344fte.plf");
        QTest::newRow("both") << QByteArray("\xc3\xa4\xe4\x80\xff");
        QTest::newRow("cut off") << QByteArray("\xf0\x9f\x93");
        QTest::newRow("newline") << QByteArray("a\nb");
    }
    void names_survive()
    {
        QFETCH(QByteArray, name);
        QCOMPARE(tools::EncodeName(tools::DecodeName(name)), name);
        QCOMPARE(tools::EncodeName(u'/' + tools::DecodeName(name) + QStringLiteral("é")),
                 '/' + name + "\xc3\xa9");
    }

    void commandLine_thatIsWrong_isToldWhy_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("reason"); // a part of the message
        const auto row = [](const char* arguments, const char* reason) {
            QTest::newRow(arguments)
                << QString::fromLatin1(arguments) << QString::fromLatin1(reason);
        };
        row("a.plf", "--output-dir");
        row("a.plf b.plf c.plf", "--output-dir");
        row("--output-dir d", "no graph");
        row("--output-dir= a.plf", "--output-dir '': expected a directory");
        row("a.plf b.gif", "'b.gif': unknown extension; use png, jpg");
        row("a.plf -", "--format");
        row("--pattern {name} a.plf", "unknown extension");
        row("--pattern {x}.png a.plf", "--pattern");
        row("--format gif a.plf b", "--format 'gif'");
        row("--size 10 a.plf b.png", "--size '10'");
        row("--width 0 a.plf b.png", "--width '0'");
        row("--size 10x10 --width 10 a.plf b.png", "cannot be combined");
        row("--size 10x10 a.plf b.eps", "use --width instead");
        row("--width 32767 --area 0,0,1,100 a.plf b.png", "too large");
        row("--size 16385x16384 a.plf b.png", "too large");
        row("--size 32768x1 a.plf b.jpg", "too large");
        row("--width 6ft a.plf b.png", "mm, cm, in or pt");
        row("--page a4 --width 10 a.plf b.png", "cannot be combined");
        row("--page b0 a.plf b.pdf", "--page 'b0'");
        row("--margin 1cm a.plf b.pdf", "--page only");
        row("--page a4 --margin 105mm a.plf b.pdf", "no space");
        row("--dots a.plf b.png", "EPS only");
        row("--dpi 0 a.plf b.png", "--dpi '0'");
        row("--area 5,5,5,5 a.plf b.png", "--area");
        row("--background red a.plf b.png", "--background 'red'");
        row("--background transparent a.plf b.jpg", "transparent");
        row("--line-scale 0 a.plf b.png", "--line-scale");
        row("--min-line-width -1 a.plf b.png", "--min-line-width");
        row("--quality 0 a.plf b.jpg", "--quality '0'");
        row("--quality 50 a.plf b.png", "applies to JPEG only");
        row("--jobs 0 a.plf b.png", "--jobs '0'");
        row("--timeout 0 a.plf b.png", "--timeout '0': expected a whole number from 1 to 86400");
        row("--timeout 1.5 a.plf b.png", "--timeout '1.5'");
        row("--timeout 86401 a.plf b.png", "--timeout '86401'");
        row("--memory 63 a.plf b.png", "--memory '63': expected a whole number from 64 to 1048576");
        row("--memory 1048577 a.plf b.png", "--memory '1048577'");
        row("--color a.plf b.png", "unknown option 'color'");
    }
    void commandLine_thatIsWrong_isToldWhy()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, reason);
        const CommandLine line = Read(arguments);
        QVERIFY(line.reply.isWrong);
        QVERIFY(!line.options);
        QVERIFY2(line.reply.text.contains(reason), qPrintable(line.reply.text));
    }

    void commandLine_withoutOptions_isTheViewersPicture()
    {
        const Options options = ReadValid(QStringLiteral("a.plf b.png"));
        QCOMPARE(options.inputs, QStringList(QStringLiteral("a.plf")));
        QCOMPARE(options.output, QStringLiteral("b.png"));
        QCOMPARE(options.picture.background, Background::kAllWhite);
        QVERIFY(!options.picture.lineScale);
        QVERIFY(!options.picture.minLineWidth && !options.picture.quality &&
                !options.picture.black);
        QVERIFY(options.workers >= 1);
    }

    void option_thatIsRepeated_hasItsLastValue()
    {
        const Options options = ReadValid(QStringLiteral("--width 0 --width 10 a.plf b.png"));
        QVERIFY(options.picture.width.has_value());
        QCOMPARE(options.picture.width->number, 10.0);
    }

    void format_isThatOfTheOption_thenOfTheName()
    {
        QCOMPARE(ReadValid(QStringLiteral("-f svg a.plf b.png")).format, Format::kSvg);
        QCOMPARE(ReadValid(QStringLiteral("-d out a.plf")).format, Format::kPng);
        QCOMPARE(ReadValid(QStringLiteral("-d out -f pdf a.plf")).format, Format::kPdf);
        QCOMPARE(ReadValid(QStringLiteral("--pattern {name}.eps a.plf")).format, Format::kEps);
    }

    void helpAndVersion_arePrintedInstead()
    {
        const CommandLine help = Read(QStringLiteral("--help"));
        QVERIFY(!help.options && !help.reply.isWrong);
        QVERIFY(help.reply.text.contains(QStringLiteral("--min-line-width")));
        const CommandLine version = Read(QStringLiteral("--version"));
        QVERIFY(!version.options && !version.reply.isWrong && !version.reply.text.isEmpty());
    }

    void plan_namesEveryPicture()
    {
        Options options = ReadValid(QStringLiteral("-d out x/a.plf b.plf"));
        QCOMPARE(Outputs(MakePlan(options)),
                 QStringList({QStringLiteral("out/a.png"), QStringLiteral("out/b.png")}));
        options.pattern = QStringLiteral("{dir}/{number}.png");
        options.outputFolder.clear();
        QCOMPARE(Outputs(MakePlan(options)),
                 QStringList({QStringLiteral("x/1.png"), QStringLiteral("./2.png")}));
    }

    void plan_refusesASecondPictureOfThatName()
    {
        const auto plan =
            MakePlan(ReadValid(QStringLiteral("-d out x/a.plf b.plf y/a.plf ./x/../x/a.plf")));
        QCOMPARE(Outputs(plan), QStringList({QStringLiteral("out/a.png"),
                                             QStringLiteral("out/b.png"), QString(), QString()}));
        QVERIFY(plan[2].problem.contains(QStringLiteral("out/a.png")));
    }

    // The second name ends in what is no UTF-8, so that all of its characters are kept in another
    // way; the pictures have the same bytes as their names.
    void plan_refusesASecondPictureOfTheSameBytes()
    {
        Options options = ReadValid(QStringLiteral("-d out a.plf"));
        options.inputs = {tools::DecodeName("Kr\xc3\xa4.plf"),
                          tools::DecodeName("Kr\xc3\xa4.\xff")};
        QCOMPARE(Outputs(MakePlan(options)),
                 QStringList({QStringLiteral("out/Krä.png"), QString()}));
    }

    void plan_takesTheGraphsOfAFolder()
    {
        for (const char* name : {"b.plf", "a.PLF", "note.txt", "c.plf.bak"})
            Write(folder->filePath(QString::fromLatin1(name)), "x");
        QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("sub.plf")));
        const auto plan = MakePlan(ReadValid(QStringLiteral("-d out ") + folder->path()));
        QCOMPARE(Outputs(plan),
                 QStringList({QStringLiteral("out/a.png"), QStringLiteral("out/b.png")}));
    }

    void plan_ofAFolderWithoutGraphs_saysSo()
    {
        const auto plan = MakePlan(ReadValid(QStringLiteral("-d out ") + folder->path()));
        QCOMPARE(plan.size(), 1U);
        QVERIFY(!plan[0].problem.isEmpty());
    }

    void summary_counts()
    {
        Progress progress(4, true);
        progress.Add("a", {Outcome::kConverted, {}});
        progress.Add("b", {Outcome::kConverted, {}});
        progress.Add("c", {Outcome::kFailed, {}});
        QCOMPARE(progress.Summary(), QByteArray("4 files: 2 converted, 1 failed"));
        progress.Add("d", {Outcome::kSkipped, {}});
        QCOMPARE(progress.Summary(), QByteArray("4 files: 2 converted, 1 skipped, 1 failed"));
        QCOMPARE(progress.FailureCount(), 1);
    }

    void imageOfFewColors_getsATable_data()
    {
        QTest::addColumn<int>("colors");
        QTest::newRow("one") << 1;
        QTest::newRow("as many as fit") << 256;
        QTest::newRow("one more") << 257;
    }
    void imageOfFewColors_getsATable()
    {
        QFETCH(int, colors);
        QImage image(100, 10, QImage::Format_ARGB32);
        for (int i = 0; i < 1000; ++i)
            image.setPixel(i % 100, i / 100, qRgba(i % colors % 250, i % colors / 250, 7, 99));
        image.setDotsPerMeterX(1234);
        const QImage palettized = Palettized(image);
        QCOMPARE(palettized.format() == QImage::Format_Indexed8, colors <= 256);
        QCOMPARE(palettized.convertToFormat(QImage::Format_ARGB32), image);
        QCOMPARE(palettized.dotsPerMeterX(), 1234);
    }

    void output_appearsWhenItIsCommitted()
    {
        const QString name = folder->filePath(QStringLiteral("a.png"));
        Write(name, "old");
        Output output(name.toLocal8Bit(), "1");
        QCOMPARE(output.Open(), QString());
        output.write("new");
        QCOMPARE(ReadFile(name), QByteArray("old"));
        QCOMPARE(output.Commit(false), QString());
        QCOMPARE(ReadFile(name), QByteArray("new"));
        QCOMPARE(QDir(folder->path())
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                     .size(),
                 1);
    }

    void output_thatIsNotCommitted_leavesNothing()
    {
        const QString name = folder->filePath(QStringLiteral("a.png"));
        {
            Output output(name.toLocal8Bit(), "1");
            QCOMPARE(output.Open(), QString());
            output.write("new");
        }
        QVERIFY(
            QDir(folder->path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }

    void output_keepsThePermissionsOfWhatItReplaces()
    {
        const QString name = folder->filePath(QStringLiteral("a.png"));
        Write(name, "old");
        const auto permissions =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QVERIFY(QFile::setPermissions(name, permissions));
        Output output(name.toLocal8Bit(), "1");
        QCOMPARE(output.Open(), QString());
        QCOMPARE(output.Commit(false), QString());
        QCOMPARE(QFile::permissions(name), permissions);
    }

    void output_throughALink_leavesTheLink_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("to a file") << true;
        QTest::newRow("to nothing") << false;
    }
    void output_throughALink_leavesTheLink()
    {
        QFETCH(bool, isThere);
        const QString name = folder->filePath(QStringLiteral("a.png"));
        const QString link = folder->filePath(QStringLiteral("link.png"));
        if (isThere)
            Write(name, "old");
        QVERIFY(QFile::link(name, link));
        Output output(link.toLocal8Bit(), "1");
        QCOMPARE(output.Open(), QString());
        output.write("new");
        QCOMPARE(output.Commit(false), QString());
        QCOMPARE(QFile::symLinkTarget(link), name);
        QCOMPARE(ReadFile(name), QByteArray("new"));
    }

    void output_ofRoot_keepsTheOwnerOfWhatItReplaces()
    {
        if (geteuid() != 0)
            QSKIP("Only root can write for another user.");
        constexpr uid_t kSomebody = 65534;
        const QByteArray name = folder->filePath(QStringLiteral("a.png")).toLocal8Bit();
        Write(QString::fromLocal8Bit(name), "old");
        QCOMPARE(chown(name.constData(), kSomebody, kSomebody), 0);
        Output output(name, "1");
        QCOMPARE(output.Open(), QString());
        QCOMPARE(output.Commit(false), QString());
        struct stat info = {};
        QCOMPARE(stat(name.constData(), &info), 0);
        QCOMPARE(info.st_uid, kSomebody);
        QCOMPARE(info.st_gid, gid_t{kSomebody});
    }

    void output_inAFolderThatTakesNoFile_keepsTheOlderOne()
    {
        if (geteuid() != 0)
            QSKIP("Only root can act for another user.");
        constexpr uid_t kSomebody = 65534;
        const QByteArray name = folder->filePath(QStringLiteral("a.png")).toLocal8Bit();
        Write(QString::fromLocal8Bit(name), "old");
        QCOMPARE(chmod(name.constData(), 0666), 0);
        QCOMPARE(chmod(folder->path().toLocal8Bit().constData(), 0755), 0);
        setfsuid(kSomebody);
        const QString problem = Output(name, "1").Open();
        setfsuid(geteuid());
        QCOMPARE(problem, QStringLiteral("Permission denied"));
        QCOMPARE(ReadFile(QString::fromLocal8Bit(name)), QByteArray("old"));
    }

    void output_thatMayReplaceNothing_doesNot()
    {
        const QString name = folder->filePath(QStringLiteral("a.png"));
        Output output(name.toLocal8Bit(), "1");
        QCOMPARE(output.Open(), QString());
        Write(name, "meanwhile");
        QVERIFY(!output.Commit(true).isEmpty());
        QCOMPARE(ReadFile(name), QByteArray("meanwhile"));
    }

    void output_onAFullDisk_saysSo()
    {
        Output output("/dev/full", "1");
        QCOMPARE(output.Open(), QString());
        output.write(QByteArray(100000, 'x'));
        QVERIFY(output.Commit(false).contains(QStringLiteral("No space left")));
    }

    void output_intoAPipeThatNobodyReads_doesNotWait()
    {
        const QByteArray name = folder->filePath(QStringLiteral("pipe")).toLocal8Bit();
        QCOMPARE(mkfifo(name.constData(), 0600), 0);
        Output output(name, "1");
        QVERIFY(!output.Open().isEmpty());
    }

    void leftovers_areRemoved()
    {
        const Job job = {"a.plf", folder->filePath(QStringLiteral("a.png")).toLocal8Bit(),
                         Format::kPng};
        const QString unfinished = QString::fromLocal8Bit(TemporaryName(job.output, "token-3"));
        Write(unfinished, "half");
        RemoveLeftovers(job, 4, {.token = "token"});
        QVERIFY(QFile::exists(unfinished));
        RemoveLeftovers(job, 3, {.token = "token"});
        QVERIFY(!QFile::exists(unfinished));
    }

    void workers_doEveryJob_data()
    {
        QTest::addColumn<int>("workers");
        QTest::newRow("one") << 1;
        QTest::newRow("some") << 3;
        QTest::newRow("more than jobs") << 100;
    }
    void workers_doEveryJob()
    {
        QFETCH(int, workers);
        const auto outcomes = RunJobs(50, workers, {});
        QCOMPARE(outcomes.size(), 50U);
        for (const auto& [job, outcome] : outcomes) {
            QCOMPARE(outcome.kind, Outcome::kConverted);
            QCOMPARE(outcome.text, QString::number(job));
        }
    }

    void workersWithoutJobs_end() { QVERIFY(RunJobs(0, 4, {}).empty()); }

    void workerThatDies_costsOnlyItsJob()
    {
        const QSet<int> deadly = {0, 7, 8, 49};
        const auto outcomes = RunJobs(50, 2, deadly);
        QCOMPARE(outcomes.size(), 50U);
        for (const auto& [job, outcome] : outcomes) {
            QCOMPARE(outcome.kind, deadly.contains(job) ? Outcome::kFailed : Outcome::kConverted);
            QCOMPARE(outcome.text.contains(QStringLiteral("signal 9")), deadly.contains(job));
        }
    }

    // Those jobs wait for ever; their workers get other jobs before and after.
    void workerThatTakesTooLong_costsOnlyItsJob()
    {
        const QSet<int> endless = {0, 3, 4, 9};
        const auto outcomes = RunJobs(10, 2, endless, pause, kShortLimit);
        QCOMPARE(outcomes.size(), 10U);
        for (const auto& [job, outcome] : outcomes) {
            QCOMPARE(outcome.kind, endless.contains(job) ? Outcome::kFailed : Outcome::kConverted);
            QCOMPARE(outcome.text, endless.contains(job) ? QStringLiteral("took longer than 0.3 s")
                                                         : QString::number(job));
        }
    }

    void workersThatNeverStart_endTheCall()
    {
        const WorkerTasks tasks = {[]() -> std::shared_ptr<void> {
                                       pause();
                                       return nullptr;
                                   },
                                   [](int) { return Outcome{}; }, [](int, const Outcome&) {},
                                   [](int) {}};
        QVERIFY(!RunWorkers(10, 2, tasks, kShortLimit).started);
    }

    void workersThatCannotStart_endTheCall()
    {
        int finished = 0;
        const WorkerTasks tasks = {[]() -> std::shared_ptr<void> { _exit(1); },
                                   [](int) { return Outcome{}; },
                                   [&finished](int, const Outcome&) { ++finished; }, [](int) {}};
        QVERIFY(!RunWorkers(10, 2, tasks).started);
        QCOMPARE(finished, 0);
    }

private:
    std::optional<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(TestPlfConvert)
#include "test_plfconvert.moc"
