// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/plfbuffer.h"

#include "app/state/globals.h"
#include "meta/palette.h"
#include "tests/kit/graph.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstring>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

const QByteArray kOpening("Error opening file.");
const QByteArray kNotRecognized("File is not a recognized PLF graphic format.");

// A file whose data begin with the given text at offset 100.
QByteArray FileWithBackgrounds(const QByteArray& fromOffset100)
{
    return PlfHeader().leftJustified(100, '0') + fromOffset100;
}

int BackgroundOf(const QByteArray& file)
{
    LoadBytes(file);
    return GetPlfBackGroundColor(gpPlfmembuf);
}

} // namespace

class TestPlfBuffer : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(folder.isValid());
        gbBkClrWhite = true;
    }
    void cleanup() { FreePlfBuffer(); }

    void header_isTheSixteenFixedBytes()
    {
        QCOMPARE(QByteArray(gszPlfhdr, kPlfHeaderSize).toHex(), QByteArray("1b544731343030303"
                                                                           "01b544731343130"));
    }

    void load_goodFile_keepsItsBytesWithAZeroTail()
    {
        const QByteArray file = PlfHeader() + "some data";
        LoadBytes(file);
        QCOMPARE(gdwFilesize, static_cast<unsigned long>(file.size()));
        QCOMPARE(QByteArray(gpPlfmembuf, file.size()), file);
        const char* tail = gpPlfmembuf + gdwFilesize;
        QVERIFY(std::all_of(tail, tail + kPlfTailSize, [](char c) { return c == 0; }));
    }

    void load_headerAlone_succeedsAndDrawsNothing()
    {
        LoadBytes(PlfHeader());
        QCOMPARE(gdwFilesize, 16UL);
        QCOMPARE(Drawn(Record()), QStringList());
        QCOMPARE(gdwVectorCnt, 0UL);
    }

    void load_failure_givesItsMessageAndLeavesNoBuffer_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("message");
        const QString dir = folder.path() + u'/';
        const QString fifo = dir + QStringLiteral("fifo");
        QVERIFY(mkfifo(fifo.toLocal8Bit().constData(), 0600) == 0);
        QTest::newRow("missing") << dir + QStringLiteral("missing.plf") << kOpening;
        QTest::newRow("empty name") << QString() << kOpening;
        QTest::newRow("directory") << folder.path() << kOpening;
        QTest::newRow("pipe without a writer") << fifo << kOpening;
        QTest::newRow("device") << QStringLiteral("/dev/zero") << kOpening;
        QTest::newRow("empty file") << Write("empty.plf", "") << kOpening;
        QTest::newRow("one byte") << Write("one.plf", "\x1b") << kNotRecognized;
        QTest::newRow("15 bytes of the header")
            << Write("15.plf", PlfHeader().left(15)) << kNotRecognized;
        QTest::newRow("another header")
            << Write("other.plf", "\x1bTG140000\x1bTG1411") << kNotRecognized;
        QTest::newRow("header with a zero byte at its end")
            << Write("zero.plf", PlfHeader().left(15) + '\0') << kNotRecognized;
    }

    void load_failure_givesItsMessageAndLeavesNoBuffer()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, message);
        LoadBytes(PlfHeader());
        char text[kLoadMessageSize] = "";
        QByteArray name = path.toLocal8Bit();
        QCOMPARE(LoadPlfFile(name.data(), text), -1);
        QCOMPARE(QByteArray(text), message);
        QVERIFY(gpPlfmembuf == nullptr);
    }

    void load_failure_leavesTheSizeOfTheFileThatWasMeasuredLast_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("size");
        QTest::newRow("missing") << folder.filePath(QStringLiteral("missing.plf")) << 20;
        QTest::newRow("rejected") << Write("no graph.plf", "no graph") << 8;
        QTest::newRow("rejected, longer than the header")
            << Write("long.plf", QByteArray(30, 'x')) << 30;
        QTest::newRow("empty") << Write("empty.plf", "") << 0;
    }

    void load_failure_leavesTheSizeOfTheFileThatWasMeasuredLast()
    {
        QFETCH(QString, path);
        QFETCH(int, size);
        LoadBytes(PlfHeader() + "0000");
        char text[kLoadMessageSize];
        QByteArray name = path.toLocal8Bit();
        QCOMPARE(LoadPlfFile(name.data(), text), -1);
        QCOMPARE(gdwFilesize, static_cast<unsigned long>(size));
    }

    void load_biggerThanMemory_saysErrorOpening()
    {
        const QString path = Write("huge.plf", PlfHeader());
        // A file with a hole: larger than any address space, no block on the disk.
        if (truncate(path.toLocal8Bit().constData(), off_t{1} << 43) != 0)
            QSKIP("the file system takes no file of 8 TiB");
        char text[kLoadMessageSize] = "";
        QByteArray name = path.toLocal8Bit();
        QCOMPARE(LoadPlfFile(name.data(), text), -1);
        QCOMPARE(QByteArray(text), kOpening);
    }

    void load_success_leavesTheOpeningMessageInPlace()
    {
        char text[kLoadMessageSize] = "";
        QByteArray name = Write("good.plf", PlfHeader()).toLocal8Bit();
        QCOMPARE(LoadPlfFile(name.data(), text), 0);
        QCOMPARE(QByteArray(text), kOpening);
    }

    void background_white_isNotLookedFor()
    {
        gbBkClrWhite = true;
        QCOMPARE(BackgroundOf(FileWithBackgrounds("RA14 RA14")), kWhite);
    }

    void background_characters_nameTheirIndex_data()
    {
        QTest::addColumn<char>("character");
        QTest::addColumn<int>("index");
        const char characters[] = " 435268?>;9:=<71";
        for (int i = 0; i < kPaletteSize; ++i)
            QTest::addRow("%c", characters[i]) << characters[i] << i;
        QTest::newRow("unknown") << '0' << kNoBackground;
        QTest::newRow("high bit") << '\xb4' << kNoBackground;
        QTest::newRow("none: the end of the data") << '\0' << kNoBackground;
    }

    void background_characters_nameTheirIndex()
    {
        QFETCH(char, character);
        QFETCH(int, index);
        gbBkClrWhite = false;
        QCOMPARE(BackgroundOf(FileWithBackgrounds(QByteArray("RA19 RA1") + character)), index);
    }

    void background_oneMatchOnly_isWhite()
    {
        gbBkClrWhite = false;
        QCOMPARE(BackgroundOf(FileWithBackgrounds("RA14")), kWhite);
    }

    void background_noMatch_isWhite()
    {
        gbBkClrWhite = false;
        QCOMPARE(BackgroundOf(FileWithBackgrounds("nothing")), kWhite);
    }

    void background_onlyMatchesFromOffset100On_count_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("index");
        QTest::newRow("90") << 90 << kWhite;
        QTest::newRow("97, ends just before offset 100") << 97 << kWhite;
        QTest::newRow("98") << 98 << kWhite;
        QTest::newRow("99") << 99 << kWhite;
        QTest::newRow("100") << 100 << 1;
        QTest::newRow("101") << 101 << 1;
    }

    // Of two matches, which must both count for the second one to name the background.
    void background_onlyMatchesFromOffset100On_count()
    {
        QFETCH(int, offset);
        QFETCH(int, index);
        gbBkClrWhite = false;
        QCOMPARE(BackgroundOf(PlfHeader().leftJustified(offset, '0') + "RA10 RA14"), index);
    }

    void background_thirdMatch_isNotLookedAt()
    {
        gbBkClrWhite = false;
        QCOMPARE(BackgroundOf(FileWithBackgrounds("RA14 RA13 RA15")), 2);
    }

    void background_behindAZeroByte_isNotSeen()
    {
        gbBkClrWhite = false;
        QCOMPARE(BackgroundOf(FileWithBackgrounds(QByteArray("RA14\0RA13", 9))), kWhite);
    }

    void background_shortFile_isWhite_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {16, 17, 67, 68, 69, 99, 100, 101})
            QTest::addRow("%d bytes", size) << size;
    }

    void background_shortFile_isWhite()
    {
        QFETCH(int, size);
        gbBkClrWhite = false;
        QCOMPARE(BackgroundOf(PlfHeader().leftJustified(size, 'R')), kWhite);
    }

    void background_withoutAFile_isWhite()
    {
        gbBkClrWhite = false;
        QCOMPARE(GetPlfBackGroundColor(nullptr), kWhite);
    }

    void makeMetafileName_replacesFromTheFirstDot_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("one dot") << QByteArray("graph.plf") << QByteArray("graph.emf");
        QTest::newRow("two dots") << QByteArray("a.b.plf") << QByteArray("a.emf");
        QTest::newRow("no dot") << QByteArray("graph") << QByteArray("graph.emf");
        QTest::newRow("dot in the directory") << QByteArray("d.x/graph") << QByteArray("d.emf");
        QTest::newRow("empty") << QByteArray("") << QByteArray(".emf");
    }

    void makeMetafileName_replacesFromTheFirstDot()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, expected);
        char buffer[64];
        qstrncpy(buffer, name.constData(), sizeof buffer);
        QCOMPARE(MakeMetafileName(buffer), &buffer[0]);
        QCOMPARE(QByteArray(buffer), expected);
    }

private:
    QString Write(const char* name, const QByteArray& bytes)
    {
        QFile file(folder.filePath(QLatin1StringView(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", name);
        return file.fileName();
    }

    QTemporaryDir folder;
};

QTEST_MAIN(TestPlfBuffer)
#include "test_plfbuffer.moc"
