// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/svgpicture.h"

#include "meta/palette.h"
#include "tools/convert/pathdata.h"

#include <QFontInfo>
#include <QXmlStreamWriter>

#include <cmath>

namespace convert {

namespace {

constexpr double kPixelsPerInch = 96.0; // SVG's own

// Points after which a path is written: far fewer elements than readers accept, and little to keep
// in memory. The effort of some readers grows faster than the length of a path.
constexpr size_t kMostPoints = 4096;

// "svg", "path" and so on.
QLatin1StringView Name(const char* text)
{
    return QLatin1StringView(text);
}

QString Number(double value)
{
    constexpr int kDigits = 9; // tells neighbors apart in the largest picture
    return QString::number(value, 'g', kDigits);
}

bool IsHalf(const QString& text, qsizetype at)
{
    const QChar c = text[at];
    if (c.isHighSurrogate())
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    return c.isLowSurrogate() && (at == 0 || !text[at - 1].isHighSurrogate());
}

// XML can hold neither control characters nor halves of characters. Line ends, which it can hold,
// are blanks in a line of text.
QString Allowed(QString text)
{
    constexpr char16_t kLastCharacter = 0xfffd; // which also stands for what cannot be shown
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\t' || c == u'\n' || c == u'\r')
            text[i] = u' ';
        else if (c < u' ' || c > kLastCharacter || IsHalf(text, i))
            text[i] = kLastCharacter;
    }
    return text;
}

// Writes what it gets, a path for many lines.
class SvgTarget final : public PolylineTarget
{
public:
    SvgTarget(const PlfPass& drawnPass, QXmlStreamWriter& writer)
        : pass(drawnPass), xml(writer), font(TextFont())
    {
    }

    void SetPen(const QColor& newColor, double newWidth) override
    {
        const int64_t parts = std::llround(newWidth * kParts);
        if (color == newColor && width == parts)
            return;
        Flush();
        color = newColor;
        width = parts;
    }

    void Polyline(const std::vector<PlfPoint>& points) override
    {
        lines.MoveTo(points.front().x * kParts, points.front().y * kParts);
        for (auto point = points.begin() + 1; point != points.end(); ++point)
            lines.LineTo(point->x * kParts, point->y * kParts);
        if (lines.Points() >= kMostPoints)
            Flush();
    }

    // A line without caps, as long as it is wide: readers disagree on lines without a length.
    void Dot(PlfPoint at) override
    {
        const int64_t left = at.x * kParts - width / 2;
        dots.MoveTo(left, at.y * kParts);
        dots.LineTo(left + width, at.y * kParts);
        if (dots.Points() >= kMostPoints)
            Flush();
    }

    void Text(const QString& text, PlfPoint at) override
    {
        if (!MayTouch(pass, font, text, at))
            return;
        Flush();
        xml.writeStartElement(Name("text"));
        xml.writeAttribute(Name("x"), QString::number(at.x));
        xml.writeAttribute(Name("y"), QString::number(at.y));
        xml.writeAttribute(Name("fill"), color.name());
        xml.writeCharacters(Allowed(text));
        xml.writeEndElement();
    }

    void Finish() override { Flush(); }

private:
    // Lines and dots of one pen have one color, so that their order is not seen.
    void Flush()
    {
        Write(&lines, Name("square"));
        Write(&dots, Name("butt"));
    }

    void Write(PathData* path, QLatin1StringView cap)
    {
        if (path->Points() == 0)
            return;
        xml.writeEmptyElement(Name("path"));
        xml.writeAttribute(Name("stroke"), color.name());
        xml.writeAttribute(Name("stroke-width"), Number(static_cast<double>(width) / kParts));
        xml.writeAttribute(Name("stroke-linecap"), cap);
        xml.writeAttribute(Name("d"), QString::fromStdString(path->Take()));
    }

    const PlfPass& pass;
    QXmlStreamWriter& xml;
    QFont font;
    QColor color;
    int64_t width = 0; // of the pen, parts of a unit
    PathData lines, dots;
};

void WriteSize(const QSizeF& size, double scale, QXmlStreamWriter* xml)
{
    xml->writeAttribute(Name("width"), Number(size.width() * scale));
    xml->writeAttribute(Name("height"), Number(size.height() * scale));
}

void StartPicture(const VectorPage& page, QXmlStreamWriter* xml)
{
    xml->writeStartElement(Name("svg"));
    xml->writeDefaultNamespace(Name("http://www.w3.org/2000/svg"));
    xml->writeAttribute(Name("version"), Name("1.1"));
    WriteSize(page.size, kPixelsPerInch / page.dpi, xml);
    xml->writeAttribute(
        Name("viewBox"),
        QStringLiteral("0 0 %1 %2").arg(Number(page.size.width()), Number(page.size.height())));
    xml->writeTextElement(Name("title"), Allowed(page.title));
    xml->writeTextElement(Name("desc"), Name("Made by plfconvert"));
}

void WriteBackground(const PlfPass& pass, const VectorPage& page, QXmlStreamWriter* xml)
{
    xml->writeEmptyElement(Name("rect"));
    xml->writeAttribute(Name("x"), Number(page.place.left()));
    xml->writeAttribute(Name("y"), Number(page.place.top()));
    WriteSize(page.place.size(), 1.0, xml);
    xml->writeAttribute(Name("fill"), PaletteColor(pass.Background()).name());
}

// The family that the pictures of other formats show, and what every reader has. "Sans Serif" is a
// name of Qt's.
QString Families(const QFont& font)
{
    const QString family = QFontInfo(font).family().remove(u'\'');
    const bool isReal =
        !family.isEmpty() && family.compare(u"Sans Serif", Qt::CaseInsensitive) != 0;
    return isReal ? QStringLiteral("'%1', sans-serif").arg(family) : QStringLiteral("sans-serif");
}

// A picture in the picture, whose edges hide what is beyond them.
void StartPlace(const VectorPage& page, QXmlStreamWriter* xml)
{
    const QRectF& place = page.place;
    if (place.size() == page.size)
        return;
    xml->writeStartElement(Name("svg"));
    xml->writeAttribute(Name("x"), Number(place.left()));
    xml->writeAttribute(Name("y"), Number(place.top()));
    WriteSize(place.size(), 1.0, xml);
    xml->writeAttribute(Name("viewBox"), QStringLiteral("%1 %2 %3 %4")
                                             .arg(Number(place.left()), Number(place.top()),
                                                  Number(place.width()), Number(place.height())));
}

// What all lines and texts have in common.
void StartGraph(const PlfPass& pass, const VectorPage& page, QXmlStreamWriter* xml)
{
    const QTransform toPage = ToPage(pass, page);
    const QFont font = TextFont();
    xml->writeStartElement(Name("g"));
    xml->writeAttribute(Name("transform"), QStringLiteral("matrix(%1 0 0 %2 %3 %4)")
                                               .arg(Number(toPage.m11()), Number(toPage.m22()),
                                                    Number(toPage.dx()), Number(toPage.dy())));
    xml->writeAttribute(Name("fill"), Name("none"));
    xml->writeAttribute(Name("font-family"), Families(font));
    xml->writeAttribute(Name("font-size"), QString::number(font.pixelSize()));
    xml->writeAttribute(Name("xml:space"), Name("preserve"));
}

} // namespace

PlfResult WriteSvg(const PlfPass& pass, const VectorPage& page, QIODevice* output)
{
    QXmlStreamWriter xml(output);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(0);
    xml.writeStartDocument();
    StartPicture(page, &xml);
    if (pass.fillsBackground)
        WriteBackground(pass, page, &xml);
    StartPlace(page, &xml);
    StartGraph(pass, page, &xml);
    SvgTarget target(pass, xml);
    const PlfResult result = DrawJoined(pass, page, target);
    xml.writeEndDocument();
    return result;
}

} // namespace convert
