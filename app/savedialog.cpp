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

// Qt asks about the name that it returns. Its default suffix is not suitable: it takes the name for
// that of a folder if the current directory, which need not be the dialog's, contains such a
// folder, and takes a folder in the dialog for a file. The class has no meta-object of its own,
// because Qt uses the desktop's dialog only for a plain QFileDialog.
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
    // Completes the name only if there is something to ask; otherwise Qt gets the name as typed.
    void CompleteTypedName()
    {
        const QString chosen = selectedFiles().value(0);
        const QString name = Completed(chosen, extension);
        // Qt's name of the field. If it does not exist, MayReplace asks later.
        auto* field = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (field == nullptr || name == chosen || QFileInfo(chosen).isDir() ||
            QFileInfo(name).isDir())
            return;
        if (!QFileInfo::exists(chosen) && !QFileInfo::exists(name))
            return;
        selectFile(name); // clears the selection in the list, which has priority over the field
        field->setText(QFileInfo(name).fileName());
    }

    const char* extension;
};

// Asks like Qt's dialog, for a name that the dialog has not asked about: the desktop's dialogs do
// not add the program's extensions.
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
    const QPointer<QWidget> owner(parent); // may be destroyed during each of the boxes
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
