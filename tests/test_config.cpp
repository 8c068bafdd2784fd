// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The configuration file: where it is looked for, which lines count, and what each key sets.
#include "support/config.h"

#include "app/state/globals.h"
#include "support/files.h"
#include "support/text.h"
#include "tests/kit/globals.h"

#include <QtTest>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr qsizetype kPiece = 1023; // characters of a line that are read at once

// Everything a file can set that does not have its default, as "name=value" in a fixed order.
QByteArray changes()
{
    QByteArrayList list;
    const auto add = [&list](const char* name, auto value, auto standard) {
        if (value != standard)
            list << QByteArray(name) + "=" + QByteArray::number(value);
    };
    add("width", giPrtMinLineWidth, 2);
    add("shiftx", giPageX, 0);
    add("shifty", giPageY, 0);
    add("sizex", gdPageSizeX, 1.0);
    add("sizey", gdPageSizeY, 1.0);
    add("paper", giCmdPrintPapertype, 0);
    add("quality", giExportQuality, 10);
    add("black", gfEpsCvt2Blk, 0);
    add("background", gfEpsUseBkClr, 0);
    add("scale", gdEpsCvtScale, 0.25);
    add("autosave", giAutosave, 0);
    return list.join(' ');
}

} // namespace

class TestConfig : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void readCfgFile_lines_data();
    void readCfgFile_lines();
    void readCfgFile_noFile_failsAndChangesNothing();
    void readCfgFile_emptyFile_succeeds();
    void readCfgFile_onlyInApplicationDirectory_readsThat();
    void readCfgFile_homeFile_hidesTheApplicationsCompletely();
    void readCfgFile_emptyHomeFile_hidesTheApplications();
    void readCfgFile_homeIsDirectory_countsAsRead();
    void readCfgFile_homeIsDanglingLink_readsTheApplications();
    void readCfgFile_homeIsPipe_doesNotHang();
    void readCfgFile_homePathTooLong_isReportedAndReadsTheApplications();
    void readCfgFile_bothPathsTooLong_areReportedAndFail();
    void getCfgPath_joinsDirectoryAndName();
    void getCfgPath_doesNotFit_isReportedAndChangesNothing();
    void openForReading_data();
    void openForReading();

private:
    void writeHomeFile(const QByteArray& text) { writeFile(home(), text); }
    void writeExeFile(const QByteArray& text) { writeFile(exe(), text); }
    void writeFile(const QString& directory, const QByteArray& text);
    QString home() const { return dir->filePath(QStringLiteral("home")); }
    QString exe() const { return dir->filePath(QStringLiteral("exe")); }
    QByteArray homeFile() const { return home().toLocal8Bit() + "/plotvw.cfg"; }

    std::unique_ptr<QTemporaryDir> dir;
};

void TestConfig::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("home")));
    QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("exe")));
    QVERIFY(CopyText(gszHomedir, home().toLocal8Bit().constData()));
    QVERIFY(CopyText(gszExePath, exe().toLocal8Bit().constData()));
    ResetGlobals();
}

void TestConfig::cleanup()
{
    gszHomedir[0] = '\0';
    gszExePath[0] = '\0';
    dir.reset();
}

void TestConfig::writeFile(const QString& directory, const QByteArray& text)
{
    QFile file(directory + QStringLiteral("/plotvw.cfg"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

void TestConfig::readCfgFile_lines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char* name, const QByteArray& text, const char* expected) {
        QTest::newRow(name) << text << QByteArray(expected);
    };

    // Each key by itself.
    row("printer_min_linewidth", "printer_min_linewidth=3\n", "width=3");
    row("printer_page_shift", "printer_page_shift=10,-5\n", "shiftx=10 shifty=-5");
    row("printer_page_size", "printer_page_size=0.95,0.9\n", "sizex=0.95 sizey=0.9");
    row("printer_paper_type", "printer_paper_type=2\n", "paper=2");
    row("export_quality", "export_quality=8\n", "quality=8");
    row("eps_cvt_lines_to_black", "eps_cvt_lines_to_black=yes\n", "black=1");
    row("eps_include_background", "eps_include_background=yes\n", "background=1");
    row("eps_scalefactor", "eps_scalefactor=0.5\n", "scale=0.5");
    row("autosave", "autosave=y\n", "autosave=1");
    row("a whole file",
        "# printing\nprinter_min_linewidth=3\nprinter_page_shift=10,-5\n"
        "printer_page_size=0.95,0.95\n\nexport_quality=8\neps_include_background=yes\n"
        "eps_scalefactor=0.5\nautosave=y\n",
        "width=3 shiftx=10 shifty=-5 sizex=0.95 sizey=0.95 quality=8 background=1 scale=0.5 "
        "autosave=1");

    // Which lines count, and as what.
    row("comment", "#export_quality=50\n", "");
    row("comment sign behind a blank is none", " #export_quality=50\n", "quality=50");
    row("comment sign after the value", "export_quality=50 # best\n", "quality=50");
    row("key in other case", "Export_Quality=50\n", "");
    row("unknown key", "quality=50\n", "");
    row("blanks around key and sign", "  export_quality = 80\n", "quality=80");
    row("key inside a longer word, at its end", "my_export_quality=80\n", "quality=80");
    row("key inside a longer word, at its start", "export_quality_x=80\n", "quality=80");
    row("two keys, the first of the table decides", "autosave_export_quality=5\n", "quality=5");
    row("two keys in the table's order", "printer_min_linewidth autosave=9\n", "width=9");
    row("key behind the sign", "x=7 export_quality\n", "quality=7");
    row("key and value after the sign", "=export_quality=7\n", "quality=0");
    row("no sign", "export_quality 50\nautosave\n", "");
    row("no sign for the deciding key of two", "export_quality autosave\n", "");
    row("the last of several lines wins", "export_quality=5\nexport_quality=6\n", "quality=6");
    row("last line without an end", "autosave=y\nexport_quality=5", "quality=5 autosave=1");
    row("line ends of two characters", "export_quality=5\r\nautosave=y\r\n",
        "quality=5 autosave=1");

    // Values.
    row("a flag of No", "eps_include_background=No\n", "");
    row("a flag with a blank in front", "eps_include_background= yes\n", "background=1");
    row("a flag of 1", "eps_include_background=1\n", "");
    row("no takes yes back", "autosave=yes\nautosave=no\n", "");
    row("a blank after the comma", "printer_page_size=0.9, 0.8\n", "sizex=0.9 sizey=0.8");
    row("no integer", "export_quality=abc\n", "quality=0");
    row("no value", "export_quality=\neps_scalefactor=\n", "quality=0 scale=0");
    row("no number", "eps_scalefactor=wide\n", "scale=0");
    row("nothing is range-checked", "export_quality=-7\nprinter_paper_type=99\n",
        "paper=99 quality=-7");
    row("beyond an integer", "export_quality=99999999999\n", "quality=2147483647");
    row("a pair without a comma", "printer_page_shift=7\nprinter_page_size=0.5\n",
        "shiftx=7 sizex=0.5");
    row("a pair without a comma keeps the second", "printer_page_shift=7,8\nprinter_page_shift=9\n",
        "shiftx=9 shifty=8");

    // Long lines, in pieces of 1023 characters.
    const QByteArray filler(kPiece, '.');
    const auto padded = [&filler](const QByteArray& text) {
        return filler.left(kPiece - text.size()) + text;
    };
    row("longest whole line", padded("export_quality=80") + "\n", "quality=80");
    row("the second piece is a line", filler + "export_quality=80\n", "quality=80");
    row("the second piece of a comment is none", "#" + filler.mid(1) + "export_quality=80\n",
        "quality=80");
    row("a piece that starts with the comment sign", filler + "#export_quality=80\n", "");
    row("a key cut in two is none", padded("export_q") + "uality=80\n", "");
    row("a value in the next piece is lost", padded("export_quality=") + "80\n", "quality=0");
    row("a number cut in two", padded("export_quality=8") + "0\n", "quality=8");
    row("the third piece", filler + filler + "autosave=y\n", "autosave=1");

    // A zero byte ends the text of its line, not the line.
    const auto withZero = [](QByteArray text) { return text.replace('@', '\0'); };
    row("zero byte after the value",
        withZero("export_quality=5@ autosave=y\nprinter_paper_type=2\n"), "paper=2 quality=5");
    row("zero byte in front", withZero("@export_quality=5\n"), "");
    row("zero byte in the key", withZero("export@_quality=5\n"), "");
    row("bytes above 127",
        "\xff\xfe"
        "export_quality=5\xc3\xa4\n",
        "quality=5");
}

void TestConfig::readCfgFile_lines()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    writeHomeFile(text);
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), expected);
}

void TestConfig::readCfgFile_noFile_failsAndChangesNothing()
{
    QCOMPARE(ReadCfgFile(), -1);
    QCOMPARE(changes(), QByteArray(""));
}

void TestConfig::readCfgFile_emptyFile_succeeds()
{
    writeHomeFile("");
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), QByteArray(""));
}

void TestConfig::readCfgFile_onlyInApplicationDirectory_readsThat()
{
    writeExeFile("export_quality=5\n");
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), QByteArray("quality=5"));
}

void TestConfig::readCfgFile_homeFile_hidesTheApplicationsCompletely()
{
    writeHomeFile("export_quality=5\n");
    writeExeFile("export_quality=6\nautosave=y\n");
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), QByteArray("quality=5"));
}

void TestConfig::readCfgFile_emptyHomeFile_hidesTheApplications()
{
    writeHomeFile("");
    writeExeFile("autosave=y\n");
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), QByteArray(""));
}

// A directory opens like a file and then yields nothing, so it hides the application's file too.
void TestConfig::readCfgFile_homeIsDirectory_countsAsRead()
{
    QVERIFY(QDir(home()).mkdir(QStringLiteral("plotvw.cfg")));
    writeExeFile("autosave=y\n");
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), QByteArray(""));
}

void TestConfig::readCfgFile_homeIsDanglingLink_readsTheApplications()
{
    QVERIFY(QFile::link(QStringLiteral("nowhere"), QString::fromLocal8Bit(homeFile())));
    writeExeFile("autosave=y\n");
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), QByteArray("autosave=1"));
}

void TestConfig::readCfgFile_homeIsPipe_doesNotHang()
{
    QCOMPARE(mkfifo(homeFile().constData(), 0600), 0);
    QCOMPARE(ReadCfgFile(), -1);
    writeExeFile("autosave=y\n");
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), QByteArray("autosave=1"));
}

void TestConfig::readCfgFile_homePathTooLong_isReportedAndReadsTheApplications()
{
    QVERIFY(CopyText(gszHomedir, QByteArray(1013, 'h').constData())); // 11 for "/plotvw.cfg"
    writeExeFile("autosave=y\n");
    QTest::ignoreMessage(QtWarningMsg, "plotvw: the path of the configuration file is too long "
                                       "(1024 bytes, limit 1023) and was ignored");
    QCOMPARE(ReadCfgFile(), 0);
    QCOMPARE(changes(), QByteArray("autosave=1"));
}

void TestConfig::readCfgFile_bothPathsTooLong_areReportedAndFail()
{
    QVERIFY(CopyText(gszHomedir, QByteArray(1023, 'h').constData()));
    QVERIFY(CopyText(gszExePath, QByteArray(1020, 'e').constData()));
    QTest::ignoreMessage(QtWarningMsg, "plotvw: the path of the configuration file is too long "
                                       "(1034 bytes, limit 1023) and was ignored");
    QTest::ignoreMessage(QtWarningMsg, "plotvw: the path of the configuration file is too long "
                                       "(1031 bytes, limit 1023) and was ignored");
    QCOMPARE(ReadCfgFile(), -1);
}

void TestConfig::getCfgPath_joinsDirectoryAndName()
{
    char path[kPathSize];
    QVERIFY(GetCfgPath(path, "/opt/plotvw"));
    QCOMPARE(QByteArray(path), QByteArray("/opt/plotvw/plotvw.cfg"));
}

void TestConfig::getCfgPath_doesNotFit_isReportedAndChangesNothing()
{
    const QByteArray longest(1012, 'd'); // and 11 for "/plotvw.cfg"
    char path[kPathSize] = "before";
    QTest::ignoreMessage(QtWarningMsg, "plotvw: the path of the configuration file is too long "
                                       "(1024 bytes, limit 1023) and was ignored");
    QVERIFY(!GetCfgPath(path, (longest + "d").constData()));
    QCOMPARE(QByteArray(path), QByteArray("before"));
    QVERIFY(GetCfgPath(path, longest.constData()));
    QCOMPARE(QByteArray(path), longest + "/plotvw.cfg");
}

void TestConfig::openForReading_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("opens");

    QTest::newRow("regular file") << QByteArray("home/file") << true;
    QTest::newRow("link to a file") << QByteArray("home/link") << true;
    QTest::newRow("directory") << QByteArray("home") << true;
    QTest::newRow("nothing there") << QByteArray("home/missing") << false;
    QTest::newRow("link to nothing") << QByteArray("home/dangling") << false;
    QTest::newRow("file taken for a directory") << QByteArray("home/file/x") << false;
    QTest::newRow("pipe") << QByteArray("home/pipe") << false;
    QTest::newRow("socket") << QByteArray("home/socket") << false;
    QTest::newRow("device without an end") << QByteArray("home/zero") << false;
}

void TestConfig::openForReading()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, opens);
    const QByteArray base = dir->path().toLocal8Bit();
    const QByteArray inside = home().toLocal8Bit();
    QFile file(home() + QStringLiteral("/file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(symlink("file", (inside + "/link").constData()), 0);
    QCOMPARE(symlink("missing", (inside + "/dangling").constData()), 0);
    QCOMPARE(symlink("/dev/zero", (inside + "/zero").constData()), 0);
    QCOMPARE(mkfifo((inside + "/pipe").constData(), 0600), 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    QVERIFY(CopyText(address.sun_path, (inside + "/socket").constData()));
    const int socketFd = socket(AF_UNIX, SOCK_STREAM, 0);
    QCOMPARE(bind(socketFd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

    const FilePtr opened(OpenForReading((base + "/" + name).constData()));
    QCOMPARE(opened != nullptr, opens);
    close(socketFd);
}

QTEST_GUILESS_MAIN(TestConfig)
#include "test_config.moc"
