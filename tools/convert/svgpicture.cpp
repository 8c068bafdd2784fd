// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/svgpicture.h"

#include "meta/palette.h"

#include <QFontInfo>
#include <QXmlStreamWriter>

#include <charconv>
#include <cmath>
#include <utility>

namespace convert {

namespace {

constexpr double kUnitsPerInch = 96.0; // of SVG
constexpr int kDecimals = 3;           // of lengths in drawing units
constexpr int64_t kParts = 1000;       // the same as a factor

// Points after which a path is written. The effort of some readers grows faster than the length of
// a path does, and others refuse files of many elements.
constexpr size_t kMostPoints = 4096;

QString Attribute(double value)
{
    return QString::number(value, 'g', 9);
}

QLatin1StringView Latin(const char* text)
{
    return QLatin1StringView(text);
}

// Lines as a path has them: how far it is from each point to the next, which is the shortest way.
// Lengths are integers, in parts of a drawing unit, so that nothing is lost on the way.
class PathData
{
public:
    void MoveTo(int64_t x, int64_t y)
    {
        text += 'm'; // the following pairs are lines
        GoTo(x, y);
    }
    void LineTo(int64_t x, int64_t y) { GoTo(x, y); }
    [[nodiscard]] size_t Points() const { return points; }

    // The path so far; the next one begins anew.
    std::string Take()
    {
        const size_t size = text.size();
        std::string path = std::exchange(text, {});
        *this = {};
        text.reserve(size);
        return path;
    }

private:
    void GoTo(int64_t x, int64_t y)
    {
        Number(x - lastX);
        Number(y - lastY);
        lastX = x;
        lastY = y;
        ++points;
    }

    // A sign separates numbers as well as a blank does.
    void Number(int64_t parts)
    {
        if (parts >= 0 && text.back() != 'm')
            text += ' ';
        if (parts < 0)
            text += '-';
        const int64_t size = std::abs(parts);
        char digits[24];
        text.append(digits, std::to_chars(digits, std::end(digits), size / kParts).ptr);
        if (const int64_t fraction = size % kParts; fraction != 0)
            Fraction(fraction);
    }

    void Fraction(int64_t fraction)
    {
        text += '.';
        for (int64_t digit = kParts / 10; fraction != 0; digit /= 10) {
            text += static_cast<char>('0' + fraction / digit);
            fraction %= digit;
        }
    }

    std::string text;
    size_t points = 0;
    int64_t lastX = 0, lastY = 0;
};

// XML has no control characters but these, and no halves of characters.
QString Allowed(QString text)
{
    constexpr char16_t kReplacement = 0xfffd;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool isPair = c.isHighSurrogate() && i + 1 < text.size() &&
                            text[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else if (c < u' ' || c.isSurrogate() || c.unicode() >= 0xfffe)
            text[i] = c == u'\t' || c == u'\n' || c == u'\r' ? QChar(u' ') : QChar(kReplacement);
    }
    return text;
}

class SvgTarget final : public PolylineTarget
{
public:
    SvgTarget(const PlfPass& drawnPass, QXmlStreamWriter& writer)
        : pass(drawnPass), xml(writer), font(TextFont())
    {
    }
    ~SvgTarget() override { Flush(); }

    void SetPen(const QColor& penColor, double penWidth) override
    {
        const int64_t parts = std::llround(penWidth * kParts);
        if (color == penColor && width == parts)
            return;
        Flush();
        color = penColor;
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

    // A line as long as it is wide, without caps.
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
        xml.writeStartElement(Latin("text"));
        xml.writeAttribute(Latin("x"), QString::number(at.x));
        xml.writeAttribute(Latin("y"), QString::number(at.y));
        xml.writeAttribute(Latin("fill"), color.name());
        xml.writeCharacters(Allowed(text));
        xml.writeEndElement();
    }

private:
    // Lines and dots of the same pen cover each other unseen.
    void Flush()
    {
        Write(lines, false);
        Write(dots, true);
    }

    void Write(PathData& path, bool withoutCaps)
    {
        if (path.Points() == 0)
            return;
        xml.writeEmptyElement(Latin("path"));
        xml.writeAttribute(Latin("stroke"), color.name());
        xml.writeAttribute(Latin("stroke-width"), Attribute(static_cast<double>(width) / kParts));
        if (withoutCaps)
            xml.writeAttribute(Latin("stroke-linecap"), Latin("butt"));
        xml.writeAttribute(Latin("d"), QString::fromStdString(path.Take()));
    }

    const PlfPass& pass;
    QXmlStreamWriter& xml;
    QFont font;
    QColor color;
    int64_t width = -1; // of the pen, parts of a unit
    PathData lines, dots;
};

void WriteHead(const VectorPage& page, QXmlStreamWriter& xml)
{
    const double scale = kUnitsPerInch / page.dpi;
    xml.writeAttribute(Latin("version"), Latin("1.1"));
    xml.writeAttribute(Latin("width"), Attribute(page.size.width() * scale));
    xml.writeAttribute(Latin("height"), Attribute(page.size.height() * scale));
    xml.writeAttribute(Latin("viewBox"), QStringLiteral("0 0 %1 %2").arg(Attribute(page.size.width()), Attribute(page.size.height())));
    xml.writeTextElement(Latin("title"), Allowed(page.title));
    xml.writeTextElement(Latin("desc"), Latin("Made by plfconvert"));
}

void WriteBackground(const PlfPass& pass, const VectorPage& page, QXmlStreamWriter& xml)
{
    xml.writeEmptyElement(Latin("rect"));
    xml.writeAttribute(Latin("width"), Attribute(page.size.width()));
    xml.writeAttribute(Latin("height"), Attribute(page.size.height()));
    xml.writeAttribute(Latin("fill"), PaletteColor(pass.Background()).name());
}

// What all lines and texts have.
void WriteGroup(const PlfPass& pass, const VectorPage& page, QXmlStreamWriter& xml)
{
    const QTransform t = ToPage(pass, page);
    const QFont font = TextFont();
    xml.writeStartElement(Latin("g"));
    xml.writeAttribute(Latin("transform"), QStringLiteral("matrix(%1 0 0 %2 %3 %4)").arg(Attribute(t.m11()), Attribute(t.m22()), Attribute(t.dx()), Attribute(t.dy())));
    xml.writeAttribute(Latin("fill"), Latin("none"));
    xml.writeAttribute(Latin("stroke-linecap"), Latin("square"));
    xml.writeAttribute(Latin("font-family"),  QStringLiteral("'%1', sans-serif").arg(QFontInfo(font).family()));
    xml.writeAttribute(Latin("font-size"), QString::number(font.pixelSize()));
    xml.writeAttribute(Latin("xml:space"), Latin("preserve"));
}

} // namespace

PlfResult WriteSvg(const PlfPass& pass, const VectorPage& page, QIODevice* output)
{
    QXmlStreamWriter xml(output);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(0);
    xml.writeStartDocument();
    xml.writeStartElement(Latin("svg"));
    xml.writeDefaultNamespace(Latin("http://www.w3.org/2000/svg"));
    WriteHead(page, xml);
    if (pass.fillsBackground)
        WriteBackground(pass, page, xml);
    WriteGroup(pass, page, xml);
    PlfResult result;
    {
        SvgTarget target(pass, xml);
        result = DrawJoined(pass, page, target);
    }
    xml.writeEndDocument();
    return result;
}

} // namespace convert
