// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/e2e/viewer.h"

#include <QFile>

#include <csignal>

namespace {

constexpr int kStillGrabs = 10; // equal pictures in a row that count as still
// The window's own edge may be drawn over the outermost pixels.
constexpr int kEdge = 2;

} // namespace

std::string SlowConfiguration()
{
    constexpr size_t kManyLines = 10'000'000;
    std::string lines(2 * kManyLines, '#');
    for (size_t i = 1; i < lines.size(); i += 2)
        lines[i] = '\n';
    return lines;
}

QString TitleOf(const QString& name)
{
    return QStringLiteral("KORVEL Viewer - ") + name;
}

Viewer::Viewer(const QString& home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(home);
    process.setProgram(QStringLiteral(PLOTVW_PROGRAM));
}

Viewer::~Viewer()
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.kill();
    process.waitForFinished();
}

void Viewer::SetEnvironment(const QString& name, const QString& value)
{
    QProcessEnvironment environment = process.processEnvironment();
    environment.insert(name, value);
    process.setProcessEnvironment(environment);
}

void Viewer::UnsetEnvironment(const QString& name)
{
    QProcessEnvironment environment = process.processEnvironment();
    environment.remove(name);
    process.setProcessEnvironment(environment);
}

// Without the line that the program writes whenever it is done with a file.
QByteArray Viewer::Errors()
{
    QByteArray errors;
    for (const QByteArray& line : process.readAllStandardError().split('\n')) {
        if (!line.isEmpty() && !line.startsWith("Existing file name: "))
            errors += line + '\n';
    }
    return errors;
}

bool Viewer::Start(const QStringList& arguments)
{
    process.setArguments(arguments);
    process.start(QIODevice::ReadOnly);
    return process.waitForStarted();
}

bool Viewer::AwaitWindow(const QString& title)
{
    return Await([this, &title] {
        const WindowId active = ActiveWindow();
        if (WindowTitle(active) != title || !VisibleWindows(process.processId()).contains(active))
            return false;
        window = active;
        return true;
    });
}

bool Viewer::AwaitWindowCount(qsizetype count) const
{
    return Await([this, count] { return VisibleWindows(process.processId()).size() == count; });
}

bool Viewer::AwaitText(const QString& text) const
{
    return Await([this, &text] { return FindText(GrabScreen(), Content(), text).has_value(); });
}

// Waiting for events and not drawing: what the kernel calls sleeping. The state stands after the
// program's name, which is in brackets.
bool Viewer::IsAsleep() const
{
    QFile status(QStringLiteral("/proc/%1/stat").arg(process.processId()));
    return status.open(QIODevice::ReadOnly) && status.readAll().contains(") S ");
}

bool Viewer::AwaitStillPicture() const
{
    QImage last;
    int equal = 0;
    return Await([this, &last, &equal] {
        const QImage now = GrabScreen().copy(Frame());
        equal = IsAsleep() && now == last ? equal + 1 : 0;
        last = now;
        return equal >= kStillGrabs;
    });
}

bool Viewer::HasEnded() const
{
    return process.state() == QProcess::NotRunning;
}

int Viewer::AwaitEnd()
{
    const bool ended = Await([this] { return HasEnded(); });
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

bool Viewer::AwaitCrash()
{
    return Await([this] { return HasEnded(); }) && process.exitStatus() == QProcess::CrashExit;
}

void Viewer::Signal(int number) const
{
    kill(static_cast<pid_t>(process.processId()), number);
}

// SigCgt is a hexadecimal bit mask of the caught signals; the lowest bit is signal 1.
bool Viewer::AwaitHandler(int number) const
{
    return Await([this, number] {
        QFile status(QStringLiteral("/proc/%1/status").arg(process.processId()));
        if (!status.open(QIODevice::ReadOnly))
            return false;
        const QByteArray text = status.readAll();
        const QByteArray caught = text.mid(text.indexOf("SigCgt:") + 7).left(17).trimmed();
        return (caught.toULongLong(nullptr, 16) >> (number - 1) & 1) != 0;
    });
}

bool Viewer::Choose(const QString& menu, const QString& item)
{
    const QList<WindowId> before = VisibleWindows(process.processId());
    const std::optional<QRect> title = FindText(GrabScreen(), Content(), menu);
    if (!title)
        return false;
    Click(title->center());
    WindowId popup;
    std::optional<QRect> place;
    const bool shown = Await([&] {
        for (const WindowId& candidate : VisibleWindows(process.processId())) {
            if (!before.contains(candidate))
                popup = candidate;
        }
        place = FindText(GrabScreen(), ContentArea(popup), item);
        return place.has_value();
    });
    if (!shown)
        return false;
    Click(place->center());
    return Await([&] { return !VisibleWindows(process.processId()).contains(popup); });
}

QRect Viewer::Canvas(QColor background) const
{
    const QImage screen = GrabScreen();
    const QRect content = Content();
    if (!screen.rect().contains(content))
        return {};
    const int column = content.left() + kEdge;
    int top = content.top();
    while (top <= content.bottom() && screen.pixelColor(column, top) != background)
        ++top;
    int end = top;
    while (end <= content.bottom() && screen.pixelColor(column, end) == background)
        ++end;
    return {content.left(), top, content.width(), end - top};
}
