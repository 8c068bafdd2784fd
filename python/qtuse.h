// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Qt inside another program's process.
#pragma once

#include <QString>
#include <QStringList>

namespace python {

/// Keeps Qt ready for drawing while it lives. Any number may live at once, each in its own thread.
///
/// Qt draws texts only where an application object exists. If the process has one, it is used as it
/// is. Otherwise the first that lives starts one, which needs no display, and the last one ends it:
/// a program that makes its own later, for its windows, finds none.
class QtUse
{
public:
    /// @throws std::runtime_error  if the process has an application object that cannot draw texts
    QtUse();
    ~QtUse();
    QtUse(const QtUse&) = delete;
    QtUse& operator=(const QtUse&) = delete;
};

/// Keeps what Qt and the interpreter say in the calling thread while it lives, instead of printing
/// it. A QtUse lives longer.
class MessageKeeper
{
public:
    MessageKeeper();
    ~MessageKeeper();
    MessageKeeper(const MessageKeeper&) = delete;
    MessageKeeper& operator=(const MessageKeeper&) = delete;

    [[nodiscard]] const QStringList& Messages() const { return messages; }

private:
    QStringList messages;
};

/// Tells Qt which thread is the process's first one. To be called when the module is loaded; does
/// nothing in another thread. Without it Qt would take the first thread that draws for it, and
/// would warn a program that later makes its application object where it belongs.
void TellFirstThread();

} // namespace python
