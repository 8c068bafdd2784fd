// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/savedialog.h"

#include "app/export.h"
#include "app/messages.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>

namespace {

QString Completed(QString name, const char* extension)
{
    AppendFileExt(name, extension);
    return name;
}

// Qt asks about the name that it returns. Its default suffix would not do: it takes a name for a
// folder's when the current directory, which need not be the dialog's, has a folder of that name,
// and a folder of the dialog for a file. The class has no meta-object of its own, because Qt lets
// only a plain QFileDialog be the desktop's.
class SaveDialog : public QFileDialog
{
public:
    SaveDialog(QWidget* parent, const SaveQuestion& question)
        : QFileDialog(parent, question.caption, QString(), question.filter),
          extension(question.extension)
    {
        setObjectName(QLatin1StringView(question.objectName));
        setAcceptMode(QFileDialog::AcceptSave);
        setFileMode(QFileDialog::AnyFile);
    }

    void accept() override
    {
        CompleteTypedName();
        QFileDialog::accept();
    }

private:
    // Only where there is something to ask: any other name goes through Qt as it was typed.
    void CompleteTypedName()
    {
        const QString chosen = selectedFiles().value(0);
        const QString name = Completed(chosen, extension);
        // Qt's own name of the field. Where it is missing the question comes later.
        auto* field = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (field == nullptr || name == chosen || QFileInfo(chosen).isDir() ||
            QFileInfo(name).isDir())
            return;
        if (!QFileInfo::exists(chosen) && !QFileInfo::exists(name))
            return;
        selectFile(name); // ends what is selected in the list, which counts before the field
        field->setText(QFileInfo(name).fileName());
    }

    const char* extension;
};

// The question of Qt's dialog, for a name that this one has not asked about: the desktop's dialogs
// do not complete names as the program does.
bool MayReplace(QWidget* parent, const SaveQuestion& question, const QString& name)
{
    const OwnDialog<QMessageBox> box(
        QMessageBox::Warning, question.caption,
        QFileDialog::tr("%1 already exists.\nDo you want to replace it?")
            .arg(QFileInfo(name).fileName()),
        QMessageBox::Yes | QMessageBox::No, parent);
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(QMessageBox::No);
    return box->exec() == QMessageBox::Yes;
}

} // namespace

QString AskSaveName(QWidget* parent, const SaveQuestion& question)
{
    const QPointer<QWidget> owner(parent); // may go in each of the boxes
    while (!owner.isNull()) {
        OwnDialog<SaveDialog> dialog(parent, question);
        if (!dialog.IsAccepted())
            break;
        const QString chosen = dialog->selectedFiles().constFirst();
        const QString name = Completed(chosen, question.extension);
        const QFileInfo file(name);
        if (name == chosen || !file.exists() || file.isDir() || MayReplace(parent, question, name))
            return name;
    }
    return {};
}
