// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/e2e/jobstest.h"

#include "tests/kit/plf.h"
#include "tests/kit/script.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

#include <cmath>

namespace {

constexpr double kDotsPerInch = 1200; // what Qt calls a high resolution
// Points; a dot is 0.06.
constexpr double kTolerance = 0.02;

// A name without what counts as an option.
QString FolderTemplate()
{
    return QDir::tempPath() + QStringLiteral("/plotvwXXXXXX");
}

} // namespace

bool IsNear(double a, double b)
{
    return std::abs(a - b) <= kTolerance;
}

bool IsNear(const QPointF& a, const QPointF& b)
{
    return IsNear(a.x(), b.x()) && IsNear(a.y(), b.y());
}

// The second "RA1" tells the background, and only after the first 100 bytes.
QByteArray TestGraph()
{
    QByteArray graph = ScriptBytes(QStringLiteral(R"(ESC "TG14" #0 #0 #0 #0 ESC "TG14" #1 #0 #0 #0
        ESC "TG14" #2 #210 #50 #100 ESC "TG14" #3 #90 #50 #100 *100 GS
        ESC "RA1" "0" ESC "RA1" "7" ESC "GT")")
                                       .simplified()) +
                       QByteArray::fromStdString(plf::Int(kPen));
    int index = 1;
    for (const Stroke& stroke : kStrokes) {
        const QLine& line = stroke.line;
        graph += ScriptBytes(QStringLiteral("ESC \"ML\" #%1 GS @%2,%3 @%4,%5")
                                 .arg(index++)
                                 .arg(line.x1())
                                 .arg(3120 - line.y1())
                                 .arg(line.x2())
                                 .arg(3120 - line.y2()));
    }
    graph += ScriptBytes(QStringLiteral("ESC \"ML\" #1 ESC \"GT\" #1 GS @600,100 @3600,100 BEL"));
    return graph;
}

QPointF Mapped(const QPointF& point, const QRectF& area, const QRectF& part)
{
    return {area.left() + (point.x() - part.left()) * area.width() / part.width(),
            area.top() + (point.y() - part.top()) * area.height() / part.height()};
}

QRectF PartUnder(const QRect& selection, const QRect& canvas)
{
    const auto units = [](int pixel, int pixels, double all) {
        return std::floor(pixel * all / pixels);
    };
    const QPoint end = selection.topLeft() + QPoint(selection.width(), selection.height());
    return {QPointF(units(selection.left(), canvas.width(), kGraphWidth),
                    units(selection.top(), canvas.height(), kGraphHeight)),
            QPointF(units(end.x(), canvas.width(), kGraphWidth),
                    units(end.y(), canvas.height(), kGraphHeight))};
}

QRectF PrintedGraph(const Sheet& sheet, QPoint shift, QPointF size)
{
    const auto dots = [](double inches, double add) {
        return std::trunc(inches * kDotsPerInch + add);
    };
    const auto length = [](double inches, double factor) {
        return std::trunc(kDotsPerInch * inches * factor);
    };
    constexpr double kPoint = kPointsPerInch / kDotsPerInch;
    return {sheet.corner + QPointF(dots(0.8, shift.x()), dots(0.6, shift.y())) * kPoint,
            QSizeF(length(9.0, size.x()), length(6.855, size.y())) * kPoint};
}

QStringList Words(const QString& text)
{
    return text.split(u' ', Qt::SkipEmptyParts);
}

QByteArray Describe(const QPointF& p)
{
    return QByteArray::number(p.x()) + ',' + QByteArray::number(p.y());
}

QByteArray Describe(const QRectF& r)
{
    return Describe(r.topLeft()) + " to " + Describe(r.bottomRight());
}

bool PrintServer::Start(const QString& path)
{
    folder = path;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(PRINT_SERVER), {folder});
    return Await([this] {
               return process.canReadLine() || process.state() == QProcess::NotRunning;
           }) &&
           process.readLine() == "ready\n";
}

void JobsTest::BeginAll()
{
    CheckTools();
    serverFolder.emplace(FolderTemplate());
    server.emplace();
    QVERIFY2(server->Start(serverFolder->path()), "the print server does not start");
    qputenv("CUPS_SERVER", server->Socket().toLocal8Bit());
    for (const char* variable : {"LPDEST", "PRINTER"})
        qunsetenv(variable);
}

void JobsTest::Begin()
{
    home.emplace(FolderTemplate());
    QVERIFY(home->isValid());
    QVERIFY(WriteFile(Path(QStringLiteral("graph.plf")), TestGraph()));
    QVERIFY(QDir(home->path()).mkdir(QStringLiteral("sub")));
    viewer.emplace(home->path());
    jobsBefore = PrintServer::Jobs();
}

void JobsTest::End()
{
    const QByteArray errors = viewer->Errors();
    viewer.reset();
    home.reset();
    QVERIFY2(errors.isEmpty(), errors.constData());
}

QStringList JobsTest::Files() const
{
    QStringList files;
    QDirIterator all(home->path(), QDir::Files, QDirIterator::Subdirectories);
    while (all.hasNext())
        files.append(QDir(home->path()).relativeFilePath(all.next()));
    files.removeAll(QStringLiteral("graph.plf"));
    files.removeAll(QStringLiteral("plotvw.cfg"));
    files.sort();
    return files;
}

void JobsTest::Open(const QStringList& options)
{
    QVERIFY(viewer->Start(QStringList(QStringLiteral("graph.plf")) + options));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    QVERIFY(Await([this] { return Canvas().height() > 0; }));
}

void JobsTest::Quit()
{
    PressKeys(QStringLiteral("ctrl+q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void JobsTest::Configure(const QByteArray& lines)
{
    QVERIFY(WriteFile(Path(QStringLiteral("plotvw.cfg")), lines));
}

QRect JobsTest::Canvas() const
{
    return viewer->Canvas(QColor(kWhite));
}

PrintedPage JobsTest::TakePage()
{
    const QString page = server->Page(++jobsBefore);
    if (!Await([&page] { return QFile::exists(page); })) {
        QTest::qFail("no page arrives", __FILE__, __LINE__);
        return {};
    }
    return ReadPage(page);
}

void JobsTest::CheckPage(const PrintedPage& page, const Sheet& sheet, const QRectF& area,
                         const QRectF& part)
{
    QCOMPARE(page.paper, sheet.size);
    QVERIFY(page.lines.size() >= qsizetype{std::size(kStrokes)});
    for (size_t i = 0; i < std::size(kStrokes); ++i) {
        const PrintedLine& printed = page.lines.at(static_cast<qsizetype>(i));
        const QPointF start = Mapped(kStrokes[i].line.p1(), area, part);
        const QPointF end = Mapped(kStrokes[i].line.p2(), area, part);
        QVERIFY2(IsNear(printed.line.p1(), start),
                 Describe(printed.line.p1()) + " and not " + Describe(start));
        QVERIFY2(IsNear(printed.line.p2(), end),
                 Describe(printed.line.p2()) + " and not " + Describe(end));
        QCOMPARE(printed.color.rgb(), kStrokes[i].color);
    }
}

void JobsTest::Zoom(const QRect& selection)
{
    const QPoint corner = Canvas().topLeft() + selection.topLeft();
    Drag(corner, corner + QPoint(selection.width(), selection.height()));
    Drop();
    QVERIFY(viewer->AwaitStillPicture());
}

void JobsTest::Export(const QString& keys, const QString& title, const QString& name)
{
    for (const QString& key : Words(keys))
        PressKeys(key);
    QVERIFY(viewer->AwaitWindow(title));
    TypeText(Path(name));
    PressKeys(QStringLiteral("Return"));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
}
