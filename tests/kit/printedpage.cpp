// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/printedpage.h"

#include <QPolygonF>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTransform>
#include <QXmlStreamReader>

#include <cmath>

namespace {

constexpr int kToolPatience = 30'000; // milliseconds

// Runs a program of the package poppler-utils and returns what it prints.
QByteArray Run(const char* program, const QStringList& arguments)
{
    QProcess process;
    process.start(QString::fromLatin1(program), arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(kToolPatience) || process.exitCode() != 0) {
        const QByteArray why = program + QByteArray(" (package poppler-utils): ") +
                               process.errorString().toLocal8Bit() + ' ' +
                               process.readAllStandardError();
        QTest::qFail(why.constData(), __FILE__, __LINE__);
        return {};
    }
    return process.readAllStandardOutput();
}

QList<double> Numbers(const QString& text)
{
    static const QRegularExpression number(QStringLiteral("-?[0-9.]+(e-?[0-9]+)?"));
    QList<double> numbers;
    for (auto matches = number.globalMatch(text); matches.hasNext();)
        numbers.append(matches.next().captured().toDouble());
    return numbers;
}

QString Style(const QXmlStreamAttributes& attributes, const char* name)
{
    const QRegularExpression entry(QStringLiteral("(?:^|[; ])%1:([^;]*)").arg(QLatin1String(name)));
    return entry.match(attributes.value(QStringLiteral("style"))).captured(1);
}

// From "rgb(100%,0%,0%)".
QColor StyleColor(const QString& style)
{
    const QList<double> percents = Numbers(style);
    if (percents.size() != 3)
        return {};
    const auto level = [&percents](int i) {
        return static_cast<int>(std::lround(percents.at(i) * 255 / 100));
    };
    return {level(0), level(1), level(2)};
}

QTransform Matrix(const QXmlStreamAttributes& attributes)
{
    const QList<double> m = Numbers(attributes.value(QStringLiteral("transform")).toString());
    return m.size() == 6 ? QTransform(m[0], m[1], m[2], m[3], m[4], m[5]) : QTransform();
}

// Width of a pen on the paper, across the line. The pen is a circle before the transformation.
double WidthAcross(const QLineF& line, double width, const QTransform& matrix)
{
    const QLineF along = matrix.map(line);
    const double stretch = along.length() / line.length();
    return std::abs(matrix.determinant()) * width / stretch;
}

void ReadStroke(const QXmlStreamAttributes& attributes, PrintedPage& page)
{
    const QList<double> at = Numbers(attributes.value(QStringLiteral("d")).toString());
    const double width = Style(attributes, "stroke-width").toDouble();
    const QTransform matrix = Matrix(attributes);
    for (qsizetype i = 0; i + 3 < at.size(); i += 4) {
        const QLineF line(at[i], at[i + 1], at[i + 2], at[i + 3]);
        page.lines.append({matrix.map(line), WidthAcross(line, width, matrix),
                           StyleColor(Style(attributes, "stroke"))});
    }
}

void ReadFill(const QXmlStreamAttributes& attributes, PrintedPage& page)
{
    const QList<double> at = Numbers(attributes.value(QStringLiteral("d")).toString());
    QPolygonF corners;
    for (qsizetype i = 0; i + 1 < at.size(); i += 2)
        corners.append({at[i], at[i + 1]});
    page.areas.append(
        {Matrix(attributes).map(corners).boundingRect(), StyleColor(Style(attributes, "fill"))});
}

void ReadPath(const QXmlStreamAttributes& attributes, PrintedPage& page)
{
    if (Style(attributes, "fill") == QStringLiteral("none"))
        ReadStroke(attributes, page);
    else
        ReadFill(attributes, page);
}

PrintedPage ReadSvg(const QByteArray& svg)
{
    PrintedPage page;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        if (reader.name() == QStringLiteral("svg")) {
            const auto points = [&attributes](const char* name) {
                return attributes.value(QLatin1String(name)).chopped(2).toDouble(); // "612pt"
            };
            page.paper = {points("width"), points("height")};
        } else if (reader.name() == QStringLiteral("defs")) {
            reader.skipCurrentElement(); // shapes of letters
        } else if (reader.name() == QStringLiteral("path")) {
            ReadPath(attributes, page);
        } else if (reader.name() == QStringLiteral("use")) {
            ++page.letters;
        }
    }
    if (reader.hasError())
        QTest::qFail(qPrintable(reader.errorString()), __FILE__, __LINE__);
    return page;
}

void CheckOnePage(const QString& pdf)
{
    const QByteArray info = Run("pdfinfo", {pdf});
    static const QRegularExpression line(QStringLiteral("Pages: +1\n"));
    if (!line.match(QString::fromLatin1(info)).hasMatch())
        QTest::qFail("not one page: " + info, __FILE__, __LINE__);
}

} // namespace

PrintedPage ReadPage(const QString& pdf)
{
    CheckOnePage(pdf);
    return ReadSvg(Run("pdftocairo", {QStringLiteral("-svg"), pdf, QStringLiteral("-")}));
}

QString ReadTitle(const QString& pdf)
{
    static const QRegularExpression title(QStringLiteral("^Title: +(.*)$"),
                                          QRegularExpression::MultilineOption);
    const QByteArray about = Run("pdfinfo", {QStringLiteral("-enc"), QStringLiteral("UTF-8"), pdf});
    return title.match(QString::fromUtf8(about)).captured(1);
}

QImage RenderPage(const QString& pdf, int pixelsPerInch)
{
    const QByteArray png = Run("pdftocairo", {QStringLiteral("-png"), QStringLiteral("-singlefile"),
                                              QStringLiteral("-r"), QString::number(pixelsPerInch),
                                              pdf, QStringLiteral("-")});
    return QImage::fromData(png).convertToFormat(QImage::Format_RGB32);
}
