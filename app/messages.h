// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Message boxes. Texts may contain file names, so they are always shown as plain text.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QString>

#include <cstddef>
#include <utility>

class QWidget;

/// A dialog on the heap, for the lifetime of this object. If its parent is destroyed while the
/// dialog is open (because the host asks to quit), the parent deletes it, which would crash with a
/// dialog on the stack.
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
    /// Runs it modally. True if the user accepted it; false otherwise, and if the parent deleted
    /// it.
    bool IsAccepted() { return dialog->exec() == QDialog::Accepted && !dialog.isNull(); }

private:
    QPointer<Dialog> dialog;
};

/// Shows a modal critical box with an OK button and returns when it is closed.
/// @param parent  the box's parent, or null
void ShowError(QWidget* parent, const QString& title, const QString& text);

/// Reports in a box that a text is too long for its buffer and was ignored.
/// @param what    names the text at the start of a sentence ("The file name")
/// @param length  its length in bytes
/// @param limit   the most bytes that fit
void ShowTooLong(QWidget* parent, const QString& what, size_t length, size_t limit);
