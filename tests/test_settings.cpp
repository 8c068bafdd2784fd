// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The settings file, byte by byte.
#include "support/settings.h"

#include "app/state/globals.h"
#include "support/rect.h"
#include "support/text.h"
#include "tests/kit/globals.h"

#include <QtTest>

#include <limits>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qsizetype kSettingsSize = 59;

// A file that differs from the defaults in every byte: the version, the flag and the rectangle.
QByteArray otherFile()
{
    QByteArray bytes = "ABCDEFGHIJ";
    bytes += '\0';
    for (char c = 0; c < 48; ++c)
        bytes += static_cast<char>(0x41 + c);
    return bytes;
}

QByteArray littleEndian(const QList<qint64>& values)
{
    QByteArray bytes;
    for (const qint64 value : values) {
        for (int shift = 0; shift < 64; shift += 8)
            bytes += static_cast<char>(static_cast<quint64>(value) >> shift);
    }
    return bytes;
}

// The present settings in the form of the file.
QByteArray settingsNow()
{
    return QByteArray(gszFileVersion, kVersionSize) + QByteArray(1, gbBkClrWhite ? '\1' : '\0') +
           littleEndian({grWinPos.left, grWinPos.top, grWinPos.right, grWinPos.bottom,
                         grWinPos.width, grWinPos.height});
}

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void read_noFile_failsAndKeepsTheDefaults();
    void read_wholeFile_setsEverything();
    void read_windowOnCommandLine_keepsItButTakesTheBackground();
    void read_fieldsAreLittleEndian();
    void read_absurdRectangle_isTakenAsItIs();
    void read_versionIsComparedWithNothingAndWrittenBack();
    void read_anyNonZeroByte_isWhite_data();
    void read_anyNonZeroByte_isWhite();
    void read_shortFile_leavesTheRest_data();
    void read_shortFile_leavesTheRest();
    void read_longerFile_ignoresTheRest();
    void read_directory_succeedsAndChangesNothing();
    void read_pipe_doesNotHang();
    void read_pathTooLong_isReportedAndFails();
    void write_defaults_isFiftyNineBytesBeginningWithTheVersion();
    void write_windowOnCommandLine_writesEverything();
    void write_replacesALongerFile();
    void write_cannotBeCreated_fails();
    void write_diskFull_fails();
    void write_pathTooLong_isReportedAndFails();
    void writeThenRead_givesTheSameSettings();
    void getSettingsPath_isInTheHomeDirectory();
    void getSettingsPath_homeEmpty_isInRoot();

private:
    void writeFile(const QByteArray& bytes);
    QByteArray fileBytes();
    QString fileName() const { return dir->filePath(QStringLiteral(".plotvwsettings")); }

    std::unique_ptr<QTemporaryDir> dir;
};

void TestSettings::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(CopyText(gszHomedir, dir->path().toLocal8Bit().constData()));
    ResetGlobals();
}

void TestSettings::cleanup()
{
    gszHomedir[0] = '\0';
    dir.reset();
}

void TestSettings::writeFile(const QByteArray& bytes)
{
    QFile file(fileName());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray TestSettings::fileBytes()
{
    QFile file(fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

// What the window opens with then: at (200, 200), 640 x 487, white.
void TestSettings::read_noFile_failsAndKeepsTheDefaults()
{
    QCOMPARE(ReadSettingsFile(), -1);
    QCOMPARE(settingsNow(),
             QByteArray("1.0\0\0\0\0\0\0\0\1", 11) + littleEndian({200, 200, 840, 687, 640, 487}));
}

void TestSettings::read_wholeFile_setsEverything()
{
    writeFile(otherFile());
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(settingsNow(), otherFile());
}

void TestSettings::read_windowOnCommandLine_keepsItButTakesTheBackground()
{
    grWinPos = {10, 20, 310, 220, 300, 200};
    gfCmdlineWndpos = 1;
    writeFile(otherFile());
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(settingsNow(), otherFile().left(11) + littleEndian({10, 20, 310, 220, 300, 200}));
}

void TestSettings::read_fieldsAreLittleEndian()
{
    writeFile(QByteArray("1.0\0\0\0\0\0\0\0\1", 11) +
              QByteArray("\x08\x07\x06\x05\x04\x03\x02\x01", 8) + QByteArray(8, '\xff') +
              QByteArray(32, '\0'));
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(grWinPos.left, int64_t{0x0102030405060708});
    QCOMPARE(grWinPos.top, int64_t{-1});
    QCOMPARE(grWinPos.right, int64_t{0});
}

void TestSettings::read_absurdRectangle_isTakenAsItIs()
{
    constexpr qint64 kMin64 = std::numeric_limits<qint64>::min();
    constexpr qint64 kMax64 = std::numeric_limits<qint64>::max();
    const QByteArray rect = littleEndian({kMax64, kMin64, -1, 0, -640, kMax64});
    writeFile(QByteArray("1.0\0\0\0\0\0\0\0\1", 11) + rect);
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(settingsNow().mid(11), rect);
}

void TestSettings::read_versionIsComparedWithNothingAndWrittenBack()
{
    writeFile(otherFile());
    QCOMPARE(ReadSettingsFile(), 0);
    gbBkClrWhite = true;
    QCOMPARE(WriteSettingsFile(), 0);
    QCOMPARE(fileBytes().left(11), QByteArray("ABCDEFGHIJ\1"));
}

void TestSettings::read_anyNonZeroByte_isWhite_data()
{
    QTest::addColumn<char>("byte");
    QTest::addColumn<bool>("white");
    QTest::newRow("0") << '\0' << false;
    QTest::newRow("1") << '\1' << true;
    QTest::newRow("2") << '\2' << true;
    QTest::newRow("128") << '\x80' << true;
    QTest::newRow("255") << '\xff' << true;
}

void TestSettings::read_anyNonZeroByte_isWhite()
{
    QFETCH(char, byte);
    QFETCH(bool, white);
    gbBkClrWhite = !white;
    writeFile(QByteArray("1.0\0\0\0\0\0\0\0", 10) + byte);
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(gbBkClrWhite, white);
    QCOMPARE(WriteSettingsFile(), 0);
    QCOMPARE(fileBytes().at(10), white ? '\1' : '\0');
}

void TestSettings::read_shortFile_leavesTheRest_data()
{
    QTest::addColumn<int>("size");
    for (int size = 0; size < kSettingsSize; ++size)
        QTest::addRow("%d bytes", size) << size;
}

void TestSettings::read_shortFile_leavesTheRest()
{
    QFETCH(int, size);
    const QByteArray before = settingsNow();
    writeFile(otherFile().left(size));
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(settingsNow(), otherFile().left(size) + before.mid(size));
}

void TestSettings::read_longerFile_ignoresTheRest()
{
    writeFile(otherFile() + "and more");
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(settingsNow(), otherFile());
}

// A directory opens like a file and then yields no bytes.
void TestSettings::read_directory_succeedsAndChangesNothing()
{
    QVERIFY(QDir().mkdir(fileName()));
    const QByteArray before = settingsNow();
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(settingsNow(), before);
}

void TestSettings::read_pipe_doesNotHang()
{
    QCOMPARE(mkfifo(fileName().toLocal8Bit().constData(), 0600), 0);
    QCOMPARE(ReadSettingsFile(), -1);
}

void TestSettings::read_pathTooLong_isReportedAndFails()
{
    QVERIFY(CopyText(gszHomedir, QByteArray(1010, 'h').constData()));
    QTest::ignoreMessage(QtWarningMsg, "plotvw: the path of the settings file is too long (1026 "
                                       "bytes, limit 1023) and was ignored");
    QCOMPARE(ReadSettingsFile(), -1);
}

void TestSettings::write_defaults_isFiftyNineBytesBeginningWithTheVersion()
{
    QCOMPARE(WriteSettingsFile(), 0);
    const QByteArray bytes = fileBytes();
    QCOMPARE(bytes.size(), kSettingsSize);
    QCOMPARE(bytes.left(10), QByteArray("1.0\0\0\0\0\0\0\0", 10));
    QCOMPARE(bytes.at(10), '\1');
    QCOMPARE(bytes.mid(11), littleEndian({200, 200, 840, 687, 640, 487}));
}

void TestSettings::write_windowOnCommandLine_writesEverything()
{
    grWinPos = {10, 20, 310, 220, 300, 200};
    gfCmdlineWndpos = 1;
    gbBkClrWhite = false;
    QCOMPARE(WriteSettingsFile(), 0);
    QCOMPARE(fileBytes(),
             QByteArray("1.0\0\0\0\0\0\0\0\0", 11) + littleEndian({10, 20, 310, 220, 300, 200}));
}

void TestSettings::write_replacesALongerFile()
{
    writeFile(QByteArray(500, 'x'));
    QCOMPARE(WriteSettingsFile(), 0);
    QCOMPARE(fileBytes(), settingsNow());
}

void TestSettings::write_cannotBeCreated_fails()
{
    QVERIFY(QDir().mkdir(fileName()));
    QCOMPARE(WriteSettingsFile(), -1);
    QVERIFY(CopyText(gszHomedir, "/no/such/directory"));
    QCOMPARE(WriteSettingsFile(), -1);
}

void TestSettings::write_diskFull_fails()
{
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), fileName()));
    QCOMPARE(WriteSettingsFile(), -1);
}

void TestSettings::write_pathTooLong_isReportedAndFails()
{
    QVERIFY(CopyText(gszHomedir, QByteArray(1010, 'h').constData()));
    QTest::ignoreMessage(QtWarningMsg, "plotvw: the path of the settings file is too long (1026 "
                                       "bytes, limit 1023) and was ignored");
    QCOMPARE(WriteSettingsFile(), -1);
}

void TestSettings::writeThenRead_givesTheSameSettings()
{
    SetRect(&grWinPos, -50, 7, 1000, 800);
    gbBkClrWhite = false;
    const QByteArray saved = settingsNow();
    QCOMPARE(WriteSettingsFile(), 0);
    ResetGlobals();
    QCOMPARE(ReadSettingsFile(), 0);
    QCOMPARE(settingsNow(), saved);
}

void TestSettings::getSettingsPath_isInTheHomeDirectory()
{
    char path[kPathSize];
    QVERIFY(CopyText(gszHomedir, "/home/someone"));
    QVERIFY(GetSettingsPath(path));
    QCOMPARE(QByteArray(path), QByteArray("/home/someone/.plotvwsettings"));
}

void TestSettings::getSettingsPath_homeEmpty_isInRoot()
{
    char path[kPathSize];
    gszHomedir[0] = '\0';
    QVERIFY(GetSettingsPath(path));
    QCOMPARE(QByteArray(path), QByteArray("/.plotvwsettings"));
}

QTEST_GUILESS_MAIN(TestSettings)
#include "test_settings.moc"
