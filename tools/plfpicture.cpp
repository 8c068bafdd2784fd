// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Draws a graph into a picture file without a window or a display: what ./run.sh falls back to. A
// picture whose name ends in ".eps" is what the viewer exports under that name.
#include "app/globals.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "support/text.h"

#include <QCommandLineParser>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>

namespace {

// The view's size in a window of the default size, about.
constexpr int kDefaultWidth = 640;
constexpr int kMaxWidth = 16384; // 16384 x 12480 pixels take 780 MB
// View width at which line widths are drawn as the file has them.
constexpr double kUnitWidth = 640.0;

bool DrawPicture(char* name, const QString& output, int width)
{
    QImage image(width, std::max(width * kPlfHeight / kPlfWidth, 1), QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        Rect none = {};
        Rect whole = {};
        SetRect(&whole, 0, 0, kPlfWidth, kPlfHeight);
        CPlfMeta meta(name, &painter, nullptr, width / kUnitWidth, 0);
        meta.DrawPlf(&none, &whole);
    }
    return image.save(output);
}

// The pass itself says nothing about an output that cannot be opened.
bool IsWritable(const QString& output)
{
    return QFile(output).open(QIODevice::WriteOnly);
}

bool DrawEps(char* name, const QString& output, int width)
{
    if (!IsWritable(output) || !CopyText(gszCvtFilename, QFile::encodeName(output).constData()))
        return false;
    initGraphics();
    Rect none = {};
    Rect whole = {};
    SetRect(&whole, 0, 0, kPlfWidth, kPlfHeight);
    CPlfMeta meta(name, nullptr, nullptr, width / kUnitWidth, kConvertEps);
    meta.DrawPlf(&none, &whole);
    return true;
}

bool DrawFile(char* name, const QString& output, int width)
{
    const bool eps = output.endsWith(QStringLiteral(".eps"), Qt::CaseInsensitive);
    return eps ? DrawEps(name, output, width) : DrawPicture(name, output, width);
}

int Fail(const QString& file, const char* reason)
{
    fprintf(stderr, "plfpicture: %s: %s\n", qPrintable(file), reason);
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Draws a PLF graph into a picture file."));
    const QCommandLineOption widthOption(
        QStringLiteral("width"),
        QStringLiteral("Width in pixels; EPS: line widths as at that width."),
        QStringLiteral("pixels"), QString::number(kDefaultWidth));
    const QCommandLineOption fileBackground(QStringLiteral("file-background"),
                                            QStringLiteral("Draw on the file's own background."));
    parser.addOptions({widthOption, fileBackground});
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("graph"), QStringLiteral("PLF file to read."));
    parser.addPositionalArgument(QStringLiteral("picture"),
                                 QStringLiteral("File to write; its extension is the format."));
    parser.process(application);
    const QStringList files = parser.positionalArguments();
    const int width = parser.value(widthOption).toInt();
    if (files.size() != 2 || width < 1 || width > kMaxWidth)
        parser.showHelp(2);

    gbBkClrWhite = !parser.isSet(fileBackground);
    char message[kLoadMessageSize];
    QByteArray path = files[0].toLocal8Bit();
    if (LoadPlfFile(path.data(), message) != 0)
        return Fail(files[0], message);
    const bool drawn = DrawFile(path.data(), files[1], width);
    FreePlfBuffer();
    return drawn ? 0 : Fail(files[1], "cannot be written.");
}
