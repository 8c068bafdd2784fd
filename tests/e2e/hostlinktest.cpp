// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/e2e/hostlinktest.h"

#include <QDir>
#include <QTest>

namespace {

constexpr int kWide = 800;

// What the viewer writes to its standard error output when a file cannot be deleted. The tests have
// the kind of a message put before it.
const QByteArray kNotDeleted = "[debug] Could not delete file\n";

} // namespace

std::string HostGraph(int hue)
{
    return plf::Start() + plf::ColorMapEntry(2, hue, 50, 100) + plf::LineIndex(2) +
           plf::Width(kWide) + plf::Line(0, 1560, 4095, 1560) + plf::End();
}

QByteArray Number(qint64 value, int size)
{
    QByteArray bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

QByteArray StringBytes(const QString& message)
{
    QByteArray bytes = Number(2 * message.size(), 4);
    for (const QChar character : message)
        bytes += Number(character.unicode(), 2);
    return bytes;
}

QByteArray FrameBytes(const QString& message)
{
    const QByteArray string = StringBytes(message);
    return Number(string.size(), 2) + string;
}

qint64 MemoryOf(qint64 process, const QByteArray& line)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const QByteArray value = text.mid(text.indexOf(line + ':') + line.size() + 1);
    return value.left(value.indexOf("kB")).trimmed().toLongLong();
}

// Every test has a directory of its own with two graphs, a host, and a viewer that is not started.
// The directory's name may not hold a '-', which could make an option of the files' names.
void HostLinkTest::Begin()
{
    home.emplace(QDir::tempPath() + QStringLiteral("/hostlink_XXXXXX"));
    QVERIFY(home->isValid());
    QVERIFY(WriteFile(Path(QStringLiteral("graph.plf")), HostGraph(kRedHue)));
    QVERIFY(WriteFile(Path(QStringLiteral("other.plf")), HostGraph(kGreenHue)));
    QVERIFY(WriteFile(Path(QStringLiteral("text.plf")), "Once upon a time\n"));
    host.emplace(Path(QStringLiteral("socket")));
    viewer.emplace(home->path());
    viewer->SetEnvironment(QStringLiteral("QT_MESSAGE_PATTERN"),
                           QStringLiteral("[%{type}] %{message}"));
    viewer->SetEnvironment(QStringLiteral("CUPS_SERVER"), Path(QStringLiteral("no_printers")));
    answers = 0;
    messages.clear();
    notDeleted = 0;
    notPrinted = 0;
}

// The viewer never sends more than it must, and never complains.
void HostLinkTest::End()
{
    const QByteArray received = host->Received();
    ReadMessages();
    viewer.reset();
    host.reset();
    home.reset();
    if (QTest::currentTestFailed()) {
        qWarning("The viewer wrote:\n%s", messages.constData());
        return;
    }
    QCOMPARE(received.toHex(), kAnswer.repeated(answers).toHex());
    QCOMPARE(messages.count(kNotDeleted), notDeleted);
    QCOMPARE(messages.count(kNotPrinted), notPrinted);
    messages.replace(kNotDeleted, "").replace(kNotPrinted, "");
    for (const QByteArray& line : messages.split('\n')) {
        if (!line.isEmpty() && !line.startsWith(kDoneWith))
            QFAIL(line.constData());
    }
}

void HostLinkTest::ReadMessages()
{
    messages += viewer->Errors();
}

void HostLinkTest::Start(const QStringList& arguments)
{
    QVERIFY(viewer->Start(
        QStringList{QStringLiteral("-svrname=") + Path(QStringLiteral("socket"))} + arguments));
    QVERIFY(host->AwaitViewer());
    ExpectAnswers(1);
}

void HostLinkTest::StartWithCommand(const QStringList& arguments, const QString& words)
{
    QVERIFY(WriteFile(Path(QStringLiteral("plotvw.cfg")), SlowConfiguration()));
    host->GreetWith(words);
    Start(arguments);
    ExpectAnswers(1);
}

void HostLinkTest::Open(const QStringList& more)
{
    Start(QStringList{QStringLiteral("graph.plf")} + more);
    ExpectTitle(QStringLiteral("graph.plf"));
}

// The main window gets the keyboard back a little after a box was closed. After a failure nothing
// more is worth telling: the same holds for the functions below.
void HostLinkTest::PressInWindow(const QString& keys)
{
    const bool active = Await(
        [] { return WindowTitle(ActiveWindow()).startsWith(QStringLiteral("KORVEL Viewer")); });
    if (!QTest::currentTestFailed())
        QVERIFY(active);
    PressKeys(keys);
}

void HostLinkTest::Quit()
{
    PressInWindow(QStringLiteral("ctrl+q"));
    if (!QTest::currentTestFailed())
        QCOMPARE(viewer->AwaitEnd(), 0);
}

void HostLinkTest::Command(const QString& words)
{
    if (QTest::currentTestFailed())
        return;
    host->Send(words);
    ExpectAnswers(1);
}

void HostLinkTest::ExpectAnswers(int count)
{
    answers += count;
    QVERIFY(host->AwaitBytes(answers * kAnswer.size()));
}

void HostLinkTest::ExpectTitle(const QString& name)
{
    if (!QTest::currentTestFailed())
        QVERIFY2(viewer->AwaitWindow(TitleOf(name)), qPrintable(name));
}

void HostLinkTest::CloseBox(const QString& title)
{
    QVERIFY(viewer->AwaitWindow(title));
    QCOMPARE(host->Received().size(), answers * kAnswer.size());
    PressKeys(QStringLiteral("Return"));
}

bool HostLinkTest::AwaitCommands(qsizetype count)
{
    return Await([this, count] {
        ReadMessages();
        return messages.count(kDoneWith) >= count;
    });
}

void HostLinkTest::ExpectStillAlive()
{
    PressInWindow(QStringLiteral("F1"));
    if (!QTest::currentTestFailed())
        CloseBox(QStringLiteral("About Viewer"));
}
