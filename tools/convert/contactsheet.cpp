// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/contactsheet.h"

#include "meta/plfgraph.h"
#include "tools/common/filename.h"
#include "tools/convert/picturesize.h"
#include "tools/convert/values.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>

namespace convert {

namespace {

// Of the width of a picture: names of 40 letters fit.
constexpr int kTextPart = 24;
constexpr int kSmallestText = 9; // pixels
constexpr int kGapPart = 20;

// Where everything lies on a sheet, in pixels.
struct Layout {
    QSize picture;
    int columns = 1;
    int rows = 1;
    int gap = 0;
    int text = 0;   // height of a line
    int footer = 0; // below the last row

    [[nodiscard]] QPoint Corner(int index) const
    {
        return {gap + index % columns * (picture.width() + gap),
                gap + index / columns * (picture.height() + text + gap)};
    }
    [[nodiscard]] QSize Size() const
    {
        return {gap + columns * (picture.width() + gap),
                gap + rows * (picture.height() + text + gap) + footer};
    }
};

QFont TextFont(int pictureWidth)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(pictureWidth / kTextPart, kSmallestText));
    return font;
}

// The last sheet is as large as the others.
Layout LayoutOf(const ContactSheet& sheet, QSize picture)
{
    const int count = static_cast<int>(sheet.pictures.size());
    const int columns = sheet.count > 1 ? sheet.grid.width() : std::min(sheet.grid.width(), count);
    const int rows = sheet.count > 1 ? sheet.grid.height() : (count + columns - 1) / columns;
    const int text = QFontMetrics(TextFont(picture.width())).height();
    return {picture, columns, rows, picture.width() / kGapPart, text, sheet.count > 1 ? text : 0};
}

QImage ReadPicture(const BoundPicture& picture)
{
    QImageReader reader(tools::DecodeName(picture.file));
    reader.setAutoTransform(false);
    return reader.read();
}

void DrawName(const QString& name, const QRect& place, QPainter* painter)
{
    const QString fitting = painter->fontMetrics().elidedText(name, Qt::ElideMiddle, place.width());
    painter->drawText(place, Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextSingleLine, fitting);
}

QString DrawCells(const ContactSheet& sheet, const Layout& layout, QPainter* painter)
{
    for (int i = 0; i < static_cast<int>(sheet.pictures.size()); ++i) {
        const BoundPicture& picture = sheet.pictures[static_cast<size_t>(i)];
        const QImage image = ReadPicture(picture);
        if (image.isNull())
            return QStringLiteral("the picture of '%1' cannot be read").arg(picture.title);
        const QRect cell(layout.Corner(i), layout.picture);
        painter->drawImage(cell.topLeft(), image);
        painter->drawRect(cell.adjusted(-1, -1, 0, 0));
        DrawName(picture.title, QRect(cell.bottomLeft(), QSize(cell.width(), layout.text)),
                 painter);
    }
    if (sheet.count > 1) {
        const QRect page(QPoint(), layout.Size());
        DrawName(QStringLiteral("%1 / %2").arg(sheet.number).arg(sheet.count),
                 page.adjusted(0, page.height() - layout.gap - layout.footer, 0, -layout.gap / 2),
                 painter);
    }
    return {};
}

QString WriteImage(const QImage& image, Format format, const PictureSettings& settings,
                   QIODevice* output)
{
    const bool isJpeg = format == Format::kJpeg;
    QImageWriter writer(output, isJpeg ? "jpeg" : "png");
    if (isJpeg)
        writer.setQuality(settings.quality.value_or(kUsualQuality));
    return writer.write(image) ? QString() : writer.errorString();
}

} // namespace

QString DrawContactSheet(const ContactSheet& sheet, Format format, const PictureSettings& settings,
                         QIODevice* output)
{
    const Layout layout = LayoutOf(sheet, ReadPicture(sheet.pictures.front()).size());
    if (!IsPossible(layout.Size()))
        return QStringLiteral("a sheet of %1 x %2 pixels is too large")
            .arg(layout.Size().width())
            .arg(layout.Size().height());
    QImage page(layout.Size(), QImage::Format_RGB32);
    if (page.isNull())
        return QString::fromLatin1(kNoMemory);
    page.fill(Qt::white);
    QPainter painter(&page);
    painter.setFont(TextFont(layout.picture.width()));
    const QString problem = DrawCells(sheet, layout, &painter);
    painter.end();
    return problem.isEmpty() ? WriteImage(page, format, settings, output) : problem;
}

} // namespace convert
