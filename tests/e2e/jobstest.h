// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What tests of pages and pictures of the real program share: a print server, and a graph whose
// place on paper is known.
#pragma once

#include "tests/e2e/viewer.h"
#include "tests/kit/files.h"
#include "tests/kit/printedpage.h"

#include <QLine>
#include <QTemporaryDir>

#include <optional>

inline const QString kGraphTitle = QStringLiteral("KORVEL Viewer - graph.plf");
inline const QString kPrintTitle = QStringLiteral("Print Graph");

constexpr double kGraphWidth = 4096;
constexpr double kGraphHeight = 3120;
constexpr QRectF kWholeGraph(0, 0, kGraphWidth, kGraphHeight);

constexpr double kPointsPerInch = 72;

constexpr QRgb kWhite = qRgb(255, 255, 255);
constexpr QRgb kBlack = qRgb(0, 0, 0);
constexpr QRgb kGreen = qRgb(0, 255, 0);
constexpr QRgb kRed = qRgb(255, 0, 0);
constexpr QRgb kYellow = qRgb(255, 255, 0); // the test graph's own background

/// A line of the test graph; y downward.
struct Stroke {
    QLine line;
    QRgb color;
};

constexpr int kPen = 80; // file units
constexpr Stroke kStrokes[] = {
    {{600, 520, 3600, 520}, kBlack},
    {{1200, 720, 1200, 2720}, kGreen},
    {{1700, 2520, 3400, 920}, kRed},
};
inline const QLine kThinLine(600, 3020, 3600, 3020); // at the lower end

/// The strokes and the thin line, on yellow.
QByteArray TestGraph();

/// Where a point of the graph is when the target shows that part of the graph in an area.
QPointF Mapped(const QPointF& point, const QRectF& area, const QRectF& part = kWholeGraph);

/// The part of the graph under a selection in canvas pixels: whole units.
QRectF PartUnder(const QRect& selection, const QRect& canvas);

/// A sheet of the print server's paper as it lies before the reader, in points. Its margins are
/// whole numbers of dots.
struct Sheet {
    QSizeF size;
    QPointF corner; // of the area that can be printed on
};

/// Qt turns the sheet and leaves the margins as they are.
constexpr Sheet kLetterLandscape = {{792, 612}, {30, 36}};
constexpr Sheet kLetterPortrait = {{612, 792}, {30, 36}};
constexpr Sheet kA4Landscape = {{842, 595}, {12, 18}};
constexpr Sheet kA4Portrait = {{595, 842}, {12, 18}};
constexpr Sheet kLegalLandscape = {{1008, 612}, {18, 24}};
constexpr Sheet kLegalPortrait = {{612, 1008}, {18, 24}};

/// The area that holds the graph, in points.
QRectF PrintedGraph(const Sheet& sheet, QPoint shift = {}, QPointF size = {1, 1});

QStringList Words(const QString& text);

/// The same but for what a dot rounds, points.
bool IsNear(double a, double b);
bool IsNear(const QPointF& a, const QPointF& b);

/// A point and a rectangle for messages.
QByteArray Describe(const QPointF& p);
QByteArray Describe(const QRectF& r);

/// A print server that stays for as long as the object lives.
class PrintServer
{
public:
    PrintServer() = default;
    ~PrintServer()
    {
        process.closeWriteChannel();
        process.waitForFinished(kPatience);
    }
    Q_DISABLE_COPY_MOVE(PrintServer)

    [[nodiscard]] bool Start(const QString& path);
    [[nodiscard]] QString Socket() const { return folder + QStringLiteral("/socket"); }

    /// How many jobs it has taken so far.
    [[nodiscard]] static qsizetype Jobs(const QString& queue = {})
    {
        QStringList arguments{QStringLiteral("-W"), QStringLiteral("all"), QStringLiteral("-o")};
        if (!queue.isEmpty())
            arguments.append(queue);
        return RunTool(QStringLiteral("lpstat"), arguments).split(u'\n', Qt::SkipEmptyParts).size();
    }

    /// The page of the job with that number, counted from 1.
    [[nodiscard]] QString Page(qsizetype job) const
    {
        return QStringLiteral("%1/pages/%2.pdf").arg(folder).arg(job);
    }

    /// The name of a job whose page is there.
    [[nodiscard]] QString Name(qsizetype job) const
    {
        return QString::fromUtf8(ReadFile(QStringLiteral("%1/pages/%2.name").arg(folder).arg(job)));
    }

private:
    QProcess process;
    QString folder;
};

/// A base of tests with a print server, and a home directory each that holds the test graph.
class JobsTest
{
protected:
    /// Starts the print server.
    void BeginAll();
    void EndAll() { server.reset(); }
    void Begin();
    /// What the program complains about on its standard error output is a failure, whatever came
    /// out.
    void End();

    QString Path(const QString& name) const { return home->filePath(name); }
    /// What was written beside the graph.
    QStringList Files() const;
    void Open(const QStringList& options = {});
    /// When this works the program has done all its jobs, which come before its event loop.
    void Quit();
    void Configure(const QByteArray& lines);
    QRect Canvas() const;
    /// The page that the print server got next.
    PrintedPage TakePage();
    static void CheckPage(const PrintedPage& page, const Sheet& sheet, const QRectF& area,
                          const QRectF& part = kWholeGraph);
    /// Selects a part of the view, in canvas pixels.
    void Zoom(const QRect& selection);
    /// Presses the keys that open a file dialog, and gives it a name.
    void Export(const QString& keys, const QString& title, const QString& name);

    std::optional<QTemporaryDir> serverFolder;
    std::optional<PrintServer> server;
    qsizetype jobsBefore = 0;
    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer;
};

Q_DECLARE_METATYPE(Sheet)
