// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/filedrop.h"

#include "app/appwindow.h"
#include "app/state/globals.h"

#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QSysInfo>
#include <QUrl>

#include <sys/stat.h>

namespace {

// Desktops write different hosts into the URL of a local file.
bool IsThisMachine(const QString& host)
{
    return host.isEmpty() || host == QLatin1StringView("localhost") ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

// In bytes, because a file name need not be valid text.
QByteArray PathOf(const QUrl& url)
{
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
}

bool IsRegularFile(const QByteArray& path)
{
    struct stat info = {};
    return !path.contains('\0') && stat(path.constData(), &info) == 0 && S_ISREG(info.st_mode);
}

// The drop action. Never a move, after which the source may delete the file.
Qt::DropAction ActionFor(Qt::DropActions possible)
{
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::LinkAction}) {
        if (possible.testFlag(action))
            return action;
    }
    return Qt::IgnoreAction;
}

} // namespace

FileDrop::FileDrop(AppWindow* mainWindow) : QObject(mainWindow), window(mainWindow)
{
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

QByteArray FileDrop::LocalFile(const QMimeData* data)
{
    const QList<QUrl> urls = data->urls();
    if (urls.size() != 1 || !urls.first().isLocalFile() || !IsThisMachine(urls.first().host()))
        return {};
    const QByteArray path = PathOf(urls.first());
    return IsRegularFile(path) ? path : QByteArray();
}

bool FileDrop::eventFilter(QObject* /*watched*/, QEvent* event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
        Accept(static_cast<QDropEvent*>(event));
        return true;
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        if (Accept(drop))
            Open(LocalFile(drop->mimeData()));
        return true;
    }
    default:
        return false;
    }
}

bool FileDrop::Accept(QDropEvent* event)
{
    const Qt::DropAction action = ActionFor(event->possibleActions());
    const bool isWelcome = action != Qt::IgnoreAction &&
                           QApplication::activeModalWidget() == nullptr &&
                           !LocalFile(event->mimeData()).isEmpty();
    event->setDropAction(isWelcome ? action : Qt::IgnoreAction);
    event->setAccepted(isWelcome);
    return isWelcome;
}

// After the drop, because its source waits for the end, and a file that cannot be loaded opens a
// box.
void FileDrop::Open(const QByteArray& path)
{
    const auto load = [main = window, path] {
        gbIsTempFile = false; // a file that the user chooses is never deleted
        main->loadFile(path, QFile::decodeName(path));
    };
    QMetaObject::invokeMethod(window, load, Qt::QueuedConnection);
}
