// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "fuzz/target.h"

#include "app/state/globals.h"
#include "meta/plfbuffer.h"
#include "support/text.h"

#include <QDir>
#include <QEvent>
#include <QFile>
#include <QGuiApplication>
#include <QMetaObject>

#include <cstdio>
#include <cstdlib>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

// Called by the leak checker. The font library leaks its caches while the application exists.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

namespace fuzz {

namespace {

void DropMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type != QtFatalMsg)
        return;
    std::fprintf(stderr, "%s\n", qPrintable(text));
    std::abort();
}

} // namespace

void Require(bool kept, const char* promise)
{
    if (kept)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

void PrepareQt()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("CUPS_SERVER", "/nowhere/printers");
    qInstallMessageHandler(DropMessage);
}

int PrepareGui(int* argc, char*** argv)
{
    PrepareQt();
    new QGuiApplication(*argc, *argv); // as long as the process
    return 0;
}

Sandbox::Sandbox()
    : root(QStringLiteral("/dev/shm/plotvw-fuzz-XXXXXX")),
      folder(root.path() + QStringLiteral("/work"))
{
    const QByteArray path = QFile::encodeName(folder);
    Require(QDir().mkpath(folder) && QDir::setCurrent(folder), "a folder can be made");
    for (char* global : {gszCurdir, gszHomedir, gszExePath, gszTmppath})
        Require(CopyText(global, kPathSize, path.constData()), "a short path fits");
    qputenv("HOME", path);
}

void Sandbox::Write(const char* name, const QByteArray& bytes) const
{
    QFile file(Path(name));
    Require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
            "the sandbox can be written to");
}

// An input may have created files in the outer folder too.
void Sandbox::Clear() const
{
    for (const QString& place : {folder, root.path()}) {
        for (const QString& name : QDir(place).entryList(QDir::Files | QDir::Hidden | QDir::System))
            QFile::remove(place + u'/' + name);
    }
}

QString Sandbox::Path(const char* name) const
{
    return folder + u'/' + QString::fromLocal8Bit(name);
}

MemoryFile::MemoryFile()
    : fd(memfd_create("input", MFD_CLOEXEC)), path("/proc/self/fd/" + std::to_string(fd))
{
    Require(fd >= 0, "a file in memory can be made");
}

MemoryFile::~MemoryFile()
{
    close(fd);
}

QByteArray MemoryFile::Contents() const
{
    struct stat info = {};
    fstat(fd, &info);
    QByteArray bytes(info.st_size, Qt::Uninitialized);
    Require(pread(fd, bytes.data(), static_cast<size_t>(bytes.size()), 0) == bytes.size(),
            "a file in memory can be read");
    return bytes;
}

bool LoadGraph(const uint8_t* data, size_t size)
{
    char message[kLoadMessageSize] = "";
    const bool loaded = LoadPlfBytes({reinterpret_cast<const char*>(data), size}, message) == 0;
    Require(loaded == (gpPlfmembuf != nullptr), "a refused file leaves no graph");
    Require(loaded || message[0] != 0, "a refusal is explained");
    return loaded;
}

bool Refuser::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show && watched->inherits("QDialog"))
        QMetaObject::invokeMethod(watched, "reject", Qt::QueuedConnection);
    return false;
}

} // namespace fuzz
