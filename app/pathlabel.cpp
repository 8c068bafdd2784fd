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

// A name is one line, whatever it holds.
QString OneLine(QString name)
{
    const auto breaksLine = [](QChar c) {
        return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
               c.category() == QChar::Separator_Paragraph;
    };
    std::replace_if(name.begin(), name.end(), breaksLine, QChar(u' '));
    return name;
}

// Qt takes a tooltip that looks like markup for markup.
QString AsToolTip(const QString& name)
{
    return Qt::mightBeRichText(name) ? Qt::convertFromPlainText(name) : name;
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

// Where a letter is in what is painted is not where it is in the text.
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
