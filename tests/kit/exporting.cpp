// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/exporting.h"

#include "tests/kit/commandline.h"

#include <QAction>

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fixture {

std::string ExportGraph()
{
    std::string file = plf::Start() + plf::Width(40);
    for (int x = 200; x < 4096; x += 900)
        file += plf::Line(x, 100, 4000 - x, 3000);
    return file + plf::Width(12) + plf::Line(0, 700, 4095, 800) + plf::End();
}

std::string Bytes(size_t count)
{
    std::string bytes(count, '\0');
    unsigned value = 1;
    for (char& byte : bytes) {
        value = value * 1103515245U + 12345U;
        byte = static_cast<char>(value >> 16);
    }
    return bytes;
}

QStringList FilesIn(const std::string& folder)
{
    return QDir(Text(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void Parse(const std::vector<std::string>& arguments)
{
    QCOMPARE(ParseArguments(arguments), 0);
}

CurrentDirectory::CurrentDirectory(const std::string& path)
{
    QVERIFY(QDir().mkpath(Text(path)));
    QVERIFY(QDir::setCurrent(Text(path)));
}

void TypeNewName(QFileDialog& dialog, const std::string& name)
{
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    QVERIFY(edit != nullptr);
    edit->setText(Text(name)); // typed, it would open a list of completions on top
    QTimer::singleShot(0, &dialog, AgreeToReplace);
    QTest::keyClick(edit, Qt::Key_Enter);
}

void ExportTest::Choose(const Window& window, const char* item)
{
    const QList<QAction*> actions = window->findChildren<QAction*>();
    const auto found = std::find_if(actions.begin(), actions.end(), [item](const QAction* action) {
        return action->text() == QString::fromLatin1(item);
    });
    QVERIFY2(found != actions.end(), item);
    (*found)->trigger();
}

void ExportTest::ChooseAndType(const Window& window, const Asking& asking, const std::string& name)
{
    dialogs->Expect<QFileDialog>([name](QFileDialog& dialog) { TypeNewName(dialog, name); });
    Choose(window, asking.item);
}

void ExportTest::Zoom(const Window& window)
{
    QCOMPARE(gpDraw->size(), kUsualView);
    QTest::mousePress(window->view, Qt::LeftButton, {}, kZoomFrom);
    QTest::mouseMove(window->view, kZoomTo);
    QTest::mouseRelease(window->view, Qt::LeftButton, {}, kZoomTo);
    Settle();
    QCOMPARE(ShownArea(*gpDraw), QRect(1024, 780, 2048, 1430));
}

void ExportTest::ExpectUnwritableName(const std::string& name)
{
    constexpr uid_t kNobody = 65534;
    const bool locked = name.rfind("locked/", 0) == 0;
    dialogs->Expect<QFileDialog>([locked, path = Path(name)](QFileDialog& dialog) {
        TypeNewName(dialog, path);
        if (locked)
            setfsuid(kNobody);
    });
}

void ExportTest::MakeUnwritable(const char* extension)
{
    QVERIFY(QDir().mkpath(Text(Path("folder") + extension)));
    QCOMPARE(symlink("/dev/full", (Path("full") + extension).c_str()), 0);
    QCOMPARE(mkfifo((Path("pipe") + extension).c_str(), 0666), 0);
    LockFolder();
}

void ExportTest::LockFolder()
{
    QVERIFY(QDir().mkpath(Text(Path("locked"))));
    QCOMPARE(chmod(Path("").c_str(), 0711), 0);
    QCOMPARE(chmod(Path("locked").c_str(), 0555), 0);
}

} // namespace fixture
