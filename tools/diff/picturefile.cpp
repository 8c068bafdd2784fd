// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/picturefile.h"

#include "tools/convert/picturesize.h"
#include "tools/diff/picture.h"

#include <QImage>
#include <QPageSize>
#include <QRandomGenerator>
#include <QSvgGenerator>

namespace diff {

namespace {

QByteArray Token()
{
    return QByteArray::number(QRandomGenerator::system()->generate64(), 36);
}

QString Title(const Pair& pair)
{
    return pair.title.isEmpty() ? QStringLiteral("Differences of graphs") : pair.title;
}

} // namespace

PictureFile::PictureFile(const QByteArray& name, Format pictureFormat, bool sideBySide)
    : format(pictureFormat), isSideBySide(sideBySide), output(name, Token())
{
}

QString PictureFile::Open()
{
    return output.Open();
}

QString PictureFile::Add(const Pair& pair)
{
    switch (format) {
    case Format::kPng:
        AddImage(pair);
        break;
    case Format::kSvg:
        AddDrawing(pair);
        break;
    case Format::kPdf:
        return AddPage(pair);
    }
    return {};
}

void PictureFile::AddImage(const Pair& pair)
{
    QImage image(PictureSize(isSideBySide), QImage::Format_RGB32);
    QPainter painter(&image);
    PaintPicture(pair, isSideBySide, painter);
    painter.end();
    image.save(&output, "png");
}

void PictureFile::AddDrawing(const Pair& pair)
{
    const QSize size = PictureSize(isSideBySide);
    QSvgGenerator generator;
    generator.setOutputDevice(&output);
    generator.setResolution(convert::kScreenDpi);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(), size));
    generator.setTitle(Title(pair));
    generator.setDescription(QStringLiteral("Made by plfdiff"));
    QPainter painter(&generator);
    PaintPicture(pair, isSideBySide, painter);
}

QString PictureFile::AddPage(const Pair& pair)
{
    if (writer == nullptr) {
        writer = std::make_unique<QPdfWriter>(&output);
        writer->setCreator(QStringLiteral("plfdiff"));
        writer->setTitle(Title(pair));
        writer->setResolution(convert::kScreenDpi);
        const QSizeF points =
            QSizeF(PictureSize(isSideBySide)) * (convert::kPointsPerInch / convert::kScreenDpi);
        writer->setPageSize(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch));
        writer->setPageMargins(QMarginsF());
        if (!pages.begin(writer.get()))
            return QStringLiteral("cannot start drawing");
    } else {
        writer->newPage();
    }
    pages.save();
    PaintPicture(pair, isSideBySide, pages);
    pages.restore();
    return {};
}

QString PictureFile::Commit()
{
    if (pages.isActive() && !pages.end())
        return QStringLiteral("cannot finish drawing");
    return output.Commit(false);
}

} // namespace diff
