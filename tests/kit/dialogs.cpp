// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/dialogs.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

namespace fixture {

namespace {

QString Describe(const QDialog& dialog)
{
    const auto* box = qobject_cast<const QMessageBox*>(&dialog);
    return dialog.windowTitle() + QStringLiteral(": ") + (box ? box->text() : QString());
}

} // namespace

Dialogs::Dialogs()
{
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Look(); });
    timer.start(5);
}

void Dialogs::Look()
{
    const QPointer<QDialog> dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog.isNull() || !dialog->isVisible() || inHand.contains(dialog))
        return;
    inHand.append(dialog);
    if (isNested) {
        QMetaObject::invokeMethod(
            &timer, [this, dialog] { Deal(dialog); }, Qt::QueuedConnection);
    } else {
        Deal(dialog);
    }
}

void Dialogs::Deal(const QPointer<QDialog>& dialog)
{
    if (!dialog.isNull() && dialog->isVisible() && !Answer(*dialog))
        strangers.append(Describe(*dialog));
    if (!dialog.isNull() && dialog->isVisible())
        dialog->reject();
    inHand.removeAll(dialog);
}

bool Dialogs::Answer(QDialog& dialog)
{
    if (expected.empty())
        return false;
    const auto answer = std::move(expected.front());
    expected.pop_front();
    return answer(dialog);
}

void ExpectBox(Dialogs& dialogs, Box& seen)
{
    dialogs.Expect<QMessageBox>([&seen](QMessageBox& box) {
        seen = {box.windowTitle(), box.text(),         box.icon(),    box.standardButtons(),
                box.windowFlags(), box.parentWidget(), box.isModal(), seen.shown + 1};
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
}

void TypeName(QFileDialog& dialog, const QString& name)
{
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    QVERIFY(edit != nullptr);
    edit->setText(name); // typed, it would open a list of completions on top
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    QVERIFY(buttons != nullptr);
    QTRY_VERIFY(buttons->button(QDialogButtonBox::Open)->isEnabled());
    QTest::keyClick(edit, Qt::Key_Enter);
}

void AgreeToReplace()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box != nullptr && box->button(QMessageBox::Yes) != nullptr)
        box->button(QMessageBox::Yes)->click();
}

} // namespace fixture
