// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/fileprop.h"

#include "app/appwindow.h"
#include "app/messages.h"
#include "app/pathlabel.h"
#include "app/state/globals.h"
#include "support/paths.h"
#include "support/text.h"

#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int kLabelHeight = 20;
constexpr QSize kDialogSize(452, 158);

// The two labels of names were created as path labels.
void ShowName(QLabel* label, const char* name)
{
    static_cast<PathLabel*>(label)->ShowName(QString::fromLocal8Bit(name));
}

// A number with its unit, as "1,234 bytes".
QString Amount(const char* format, unsigned long value)
{
    char number[kFormattedIntegerSize];
    return FileProp::tr(format).arg(QString::fromLatin1(FormatInteger(value, number)));
}

} // namespace

template <typename Label> Label* FileProp::AddLabel(const char* name, int x, int y, int width)
{
    auto* label = new Label(groupBox1);
    label->setObjectName(QLatin1StringView(name));
    label->setTextFormat(Qt::PlainText); // values contain file names
    label->setGeometry(x, y, width, kLabelHeight);
    return label;
}

FileProp::FileProp(QWidget* parent, const char* name, bool modal, Qt::WindowFlags fl)
    : QDialog(parent, fl)
{
    setObjectName(QLatin1StringView(name != nullptr ? name : "FileProp"));
    setModal(modal);
    groupBox1 = new QGroupBox(this);
    groupBox1->setObjectName(QStringLiteral("groupBox1"));
    groupBox1->setGeometry(10, 10, 430, 100);
    textLabel2 = AddLabel<QLabel>("textLabel2", 20, 10, 100);
    textLabel3 = AddLabel<QLabel>("textLabel3", 20, 30, 100);
    textLabel4 = AddLabel<QLabel>("textLabel4", 20, 50, 100);
    textLabel5 = AddLabel<QLabel>("textLabel5", 20, 70, 100);
    textFilenameOrig = AddLabel<PathLabel>("textFilenameOrig", 120, 10, 280);
    textFilename = AddLabel<PathLabel>("textFilename", 120, 30, 280);
    textFilesize = AddLabel<QLabel>("textFilesize", 120, 50, 180);
    textVectorcnt = AddLabel<QLabel>("textVectorcnt", 120, 70, 180);
    butOk = new QPushButton(this);
    butOk->setObjectName(QStringLiteral("butOk"));
    butOk->setGeometry(190, 120, 82, 26);
    FileProp::languageChange();
    resize(kDialogSize.expandedTo(minimumSizeHint()));
    connect(butOk, &QPushButton::clicked, this, &FileProp::butOk_clicked);
}

void FileProp::Init()
{
    ShowName(textFilenameOrig, gszPlffileOrig);
    ShowName(textFilename, gszPlffileName);
    textFilesize->setText(Amount(QT_TR_NOOP("%1 bytes"), gdwFilesize));
    textVectorcnt->setText(Amount(QT_TR_NOOP("%1 line segments"), gdwVectorCnt));
}

void FileProp::butOk_clicked()
{
    done(0);
}

void FileProp::languageChange()
{
    setWindowTitle(tr("File Properties"));
    groupBox1->setTitle(QString());
    textLabel2->setText(tr("Full Path:"));
    textLabel3->setText(tr("Filename:"));
    textLabel4->setText(tr("File Size:"));
    textFilesize->setText(tr("filesize"));
    textLabel5->setText(tr("Vector Count:"));
    textVectorcnt->setText(tr("vector count"));
    textFilename->setText(tr("filename1"));
    butOk->setText(tr("Ok"));
}

void FileProp::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        languageChange();
    QDialog::changeEvent(event);
}

void AppWindow::fileProperties()
{
    const OwnDialog<FileProp> dialog(this, "testdlg", true);
    dialog->Init();
    dialog->exec();
}
