// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Message boxes. Texts may hold file names, so they are always shown as plain text.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QString>

#include <cstddef>
#include <utility>

class QWidget;

/// A dialog on the heap for as long as it is needed. Its parent may go while it stands open (the
/// host asks to quit) and then deletes it, which a dialog on the stack would not survive.
template <typename Dialog> class OwnDialog
{
public:
    template <typename... Arguments>
    explicit OwnDialog(Arguments&&... arguments)
        : dialog(new Dialog(std::forward<Arguments>(arguments)...))
    {
    }
    ~OwnDialog() { delete dialog.data(); }
    OwnDialog(const OwnDialog&) = delete;
    OwnDialog& operator=(const OwnDialog&) = delete;

    Dialog* operator->() const { return dialog.data(); }
    /// Runs it modally. True when the user accepted it; false also when it went with its parent.
    bool IsAccepted() { return dialog->exec() == QDialog::Accepted && !dialog.isNull(); }

private:
    QPointer<Dialog> dialog;
};

/// Shows a modal critical box with one OK button and returns when it is closed.
/// @param parent  the box's parent, or null
void ShowError(QWidget* parent, const QString& title, const QString& text);

/// Tells that a text does not fit its buffer and is therefore not used.
/// @param what    names the text at the start of a sentence ("The file name")
/// @param length  its length in bytes
/// @param limit   the most bytes that fit
void ShowTooLong(QWidget* parent, const QString& what, size_t length, size_t limit);
