// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/savedialog.h"

#include "app/export.h"
#include "app/messages.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>

namespace {

QString Completed(QString name, const char* extension)
{
    AppendFileExt(name, extension);
    return name;
}

// Qt asks about the name that it returns. Its default suffix is not suitable: it takes the name for
// that of a folder if the current directory, which need not be the dialog's, contains such a
// folder, and takes a folder in the dialog for a file. The desktop's own dialogs would ask about
// the name as typed, and the program itself does not ask.
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
        setOption(QFileDialog::DontUseNativeDialog);
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
        // Qt's name of the field. Without it Qt asks about the name as typed.
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

} // namespace

QString AskSaveName(QWidget* parent, const SaveQuestion& question)
{
    OwnDialog<SaveDialog> dialog(parent, question);
    if (!dialog.IsAccepted())
        return {};
    return Completed(dialog->selectedFiles().constFirst(), question.extension);
}
