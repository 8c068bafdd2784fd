// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Answers to modal dialogs.
#pragma once

#include <QDialog>
#include <QList>
#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <deque>
#include <functional>
#include <utility>

class QFileDialog;

namespace fixture {

/// Answers modal dialogs in the order in which they are expected. One that nobody expects is
/// closed and remembered, so that no test hangs.
class Dialogs
{
public:
    Dialogs();

    /// Calls handler once with the next dialog, which must be a T. A dialog that the handler leaves
    /// open is rejected.
    template <typename T> void Expect(std::function<void(T&)> handler)
    {
        expected.push_back([handler = std::move(handler)](QDialog& dialog) {
            auto* right = qobject_cast<T*>(&dialog);
            if (right != nullptr)
                handler(*right);
            return right != nullptr;
        });
    }

    /// From now on the next expected dialog may open while the handler of the last one still runs.
    void AnswerNested() { isNested = true; }

    /// Dialogs that were expected and have not come.
    [[nodiscard]] int Pending() const { return static_cast<int>(expected.size()); }
    /// Titles and texts of the dialogs that nobody expected.
    [[nodiscard]] QStringList Strangers() const { return strangers; }

private:
    void Look();
    void Deal(const QPointer<QDialog>& dialog);
    bool Answer(QDialog& dialog);

    QTimer timer;
    std::deque<std::function<bool(QDialog&)>> expected;
    QList<QPointer<QDialog>> inHand;
    bool isNested = false;
    QStringList strangers;
};

/// What a message box looks like.
struct Box {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    Qt::WindowFlags flags;
    QWidget* parent = nullptr;
    bool isModal = false;
    int shown = 0; // how often
};

/// Expects a message box, describes it in seen (which must outlive it) and presses its OK button.
void ExpectBox(Dialogs& dialogs, Box& seen);

/// Puts a name into a file dialog that opens, and confirms it. The dialog takes the name only when
/// it has read the folder, which happens beside the event loop.
void TypeName(QFileDialog& dialog, const QString& name);

/// Agrees to the question whether a file may be replaced, if one stands there.
void AgreeToReplace();

} // namespace fixture
