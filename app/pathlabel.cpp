// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/pathlabel.h"

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>

#include <algorithm>

namespace {

// Longest line of a tooltip, characters: Qt does not break lines of plain text, and the longest
// path is wider than any screen.
constexpr qsizetype kTipWidth = 100;

// A name is always one line, whatever characters it contains.
QString OneLine(QString name)
{
    const auto breaksLine = [](QChar c) {
        return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
               c.category() == QChar::Separator_Paragraph;
    };
    std::replace_if(name.begin(), name.end(), breaksLine, QChar(u' '));
    return name;
}

// The beginning of a text that is the next line of a tooltip. Lines end after a slash if there is
// one.
QString NextTipLine(QStringView rest)
{
    if (rest.size() <= kTipWidth)
        return rest.toString();
    const QStringView line = rest.first(kTipWidth);
    const qsizetype slash = line.lastIndexOf(u'/');
    if (slash > 0)
        return line.first(slash + 1).toString();
    return line.chopped(line.back().isHighSurrogate() ? 1 : 0).toString();
}

// Qt interprets a tooltip that looks like markup as markup.
QString AsToolTip(const QString& name)
{
    QStringList lines;
    for (qsizetype at = 0; at < name.size(); at += lines.constLast().size())
        lines.append(NextTipLine(QStringView(name).mid(at)));
    const QString tip = lines.join(u'\n');
    return Qt::mightBeRichText(tip) ? Qt::convertFromPlainText(tip) : tip;
}

} // namespace

PathLabel::PathLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* copy = new QAction(QCoreApplication::translate("PathLabel", "&Copy"), this);
    connect(copy, &QAction::triggered, this, &PathLabel::Copy);
    addAction(copy);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void PathLabel::ShowName(const QString& name)
{
    setText(name);
    setToolTip(IsCut() ? AsToolTip(name) : QString());
}

void PathLabel::Copy() const
{
    QGuiApplication::clipboard()->setText(hasSelectedText() ? selectedText() : text());
}

QString PathLabel::ShownText() const
{
    return fontMetrics().elidedText(OneLine(text()), Qt::ElideMiddle, contentsRect().width());
}

void PathLabel::paintEvent(QPaintEvent* event)
{
    if (!IsCut()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const QString shown = ShownText();
    QPalette::ColorRole role = foregroundRole();
    if (hasSelectedText()) {
        painter.fillRect(contentsRect(), palette().highlight());
        role = QPalette::HighlightedText;
    }
    const auto where = QStyle::visualAlignment(layoutDirection(), alignment());
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(where), palette(), isEnabled(),
                          shown, role);
}

// The position of a letter in the painted text differs from its position in the whole text.
void PathLabel::mousePressEvent(QMouseEvent* event)
{
    if (!IsCut() || event->button() != Qt::LeftButton)
        QLabel::mousePressEvent(event);
    else
        setSelection(0, static_cast<int>(text().size()));
}

void PathLabel::mouseMoveEvent(QMouseEvent* event)
{
    if (!IsCut())
        QLabel::mouseMoveEvent(event);
}

void PathLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (!IsCut())
        QLabel::mouseDoubleClickEvent(event);
}
