// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What saving and exporting are made of: names, copies, and where exports go.
#include "app/export.h"
#include "tests/kit/events.h"
#include "tests/kit/exporting.h"
#include "tests/kit/sanitized.h"

#include <sys/resource.h>

using fixture::Bytes;
using fixture::CurrentDirectory;

class TestExport : public QObject, protected fixture::ExportTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void appendFileExt_addsTheMissingExtension_data();
    void appendFileExt_addsTheMissingExtension();
    void copyFile_copiesEveryByte_data();
    void copyFile_copiesEveryByte();
    void copyFile_replacesALongerFile();
    void copyFile_withoutASource_copiesNothing_data();
    void copyFile_withoutASource_copiesNothing();
    void copyFile_withoutADestination_copiesNothing();
    void copyFile_withoutMemory_returnsOne();
    void makeCvtSavePath_cutsAtTheMarker_data();
    void makeCvtSavePath_cutsAtTheMarker();
    void makeCvtSavePath_withoutTheMarker_isNull();
    void makeCvtSavePath_tooLongPath_isRefused();
};

void TestExport::appendFileExt_addsTheMissingExtension_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("extension");
    QTest::addColumn<QString>("result");
    const auto row = [](const char* name, const char* result, const char* extension = ".jpg") {
        QTest::addRow("%s + %s", name, extension)
            << QString::fromUtf8(name) << QByteArray(extension) << QString::fromUtf8(result);
    };
    row("graph", "graph.jpg");
    row("graph", "graph.plf", ".plf");
    row("graph", "graph.eps", ".eps");
    row("graph.jpg", "graph.jpg");
    row("graph.JPG", "graph.JPG");
    row("graph.Jpg", "graph.Jpg");
    row("graph.png", "graph.png");
    row("graph.bak", "graph.bak", ".plf");
    row("graph.jpg.old", "graph.jpg.old");
    row("graph.", "graph.");
    row("graphjpg", "graphjpg.jpg");
    row("/data/set.2/graph", "/data/set.2/graph.jpg");
    row("/data/set.2/graph.jpg", "/data/set.2/graph.jpg");
    row("/data/set.2/graph.3", "/data/set.2/graph.3");
    row("/data/set.jpg/graph", "/data/set.jpg/graph.jpg");
    row(".hidden", ".hidden");
    row("/data/.hidden", "/data/.hidden");
    row("./graph", "./graph.jpg");
    row("../graph", "../graph.jpg");
    row("..", "..");
    row(".jpg", ".jpg");
    row("/graph", "/graph.jpg");
    row("C:\\set.2\\graph", "C:\\set.2\\graph.jpg");
    row("C:\\set.2\\graph.png", "C:\\set.2\\graph.png");
    row("\\graph", "\\graph.jpg");
    // The last '/' counts whenever there is one, wherever the '\' stands.
    row("set.2\\new/graph", "set.2\\new/graph.jpg");
    row("data/set.2\\graph", "data/set.2\\graph");
    row("data.1/set\\graph", "data.1/set\\graph.jpg");
    row("graph name", "graph name.jpg");
    row("Größe", "Größe.jpg");
    row("Größe.Ä", "Größe.Ä");
    row("", ".jpg");
    row("/data.1/", "/data.1/.jpg");
}

void TestExport::appendFileExt_addsTheMissingExtension()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, extension);
    QFETCH(QString, result);
    AppendFileExt(name, extension.constData());
    QCOMPARE(name, result);
    AppendFileExt(name, extension.constData());
    QCOMPARE(name, result);
}

void TestExport::copyFile_copiesEveryByte_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 2, 4095, 4096, 4097, 65536, 3'000'001})
        QTest::addRow("%d bytes", size) << size;
}

void TestExport::copyFile_copiesEveryByte()
{
    QFETCH(int, size);
    const std::string bytes = Bytes(static_cast<size_t>(size));
    const std::string from = directories->Write("from", bytes);
    QCOMPARE(copyFile(Path("to").c_str(), from.c_str()), long{size});
    QVERIFY(Exists(Path("to")));
    QVERIFY(ReadFile(Path("to")) == QByteArray::fromStdString(bytes));
    QVERIFY(ReadFile(from) == QByteArray::fromStdString(bytes));
}

void TestExport::copyFile_replacesALongerFile()
{
    const std::string from = directories->Write("from", "short");
    const std::string to = directories->Write("to", "much longer than the other");
    QCOMPARE(copyFile(to.c_str(), from.c_str()), 5L);
    QCOMPARE(ReadFile(to), QByteArray("short"));
}

void TestExport::copyFile_withoutASource_copiesNothing_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::newRow("missing file") << QByteArray("none");
    QTest::newRow("missing folder") << QByteArray("none/none");
    QTest::newRow("no name") << QByteArray("");
}

void TestExport::copyFile_withoutASource_copiesNothing()
{
    QFETCH(QByteArray, source);
    const CurrentDirectory current(Path("here"));
    QCOMPARE(copyFile(Path("to").c_str(), source.constData()), 0L);
    QVERIFY(QFileInfo(Text(Path("to"))).size() == 0);
}

void TestExport::copyFile_withoutADestination_copiesNothing()
{
    const std::string from = directories->Write("from", "text");
    QCOMPARE(copyFile(Path("none/to").c_str(), from.c_str()), 0L);
    QVERIFY(!Exists(Path("none")));
    QCOMPARE(ReadFile(from), QByteArray("text"));
}

// A file without content can be larger than the memory that the process may have.
void TestExport::copyFile_withoutMemory_returnsOne()
{
    constexpr off_t kTerabyte = off_t{1} << 40;
    const std::string from = directories->Write("from", "");
    QCOMPARE(truncate(from.c_str(), 2 * kTerabyte), 0);
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_AS, &before), 0);
    const rlimit tight = {kTerabyte, before.rlim_max};
    if (!kSanitized) // which has terabytes of its own
        QCOMPARE(setrlimit(RLIMIT_AS, &tight), 0);
    const long result = copyFile(Path("to").c_str(), from.c_str());
    QCOMPARE(setrlimit(RLIMIT_AS, &before), 0);
    QCOMPARE(result, 1L);
}

void TestExport::makeCvtSavePath_cutsAtTheMarker_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("marker");
    QTest::addColumn<QByteArray>("kept");
    QTest::newRow("extension") << QByteArray("/data/graph.plf") << QByteArray(".plf")
                               << QByteArray("/data/graph");
    QTest::newRow("first of several")
        << QByteArray("/data/data/data") << QByteArray("data") << QByteArray("/");
    QTest::newRow("at the start") << QByteArray("/data") << QByteArray("/da") << QByteArray("");
    QTest::newRow("the whole path") << QByteArray("/data") << QByteArray("/data") << QByteArray("");
    QTest::newRow("the last character")
        << QByteArray("/data#") << QByteArray("#") << QByteArray("/data");
    QTest::newRow("longest path") << QByteArray(kPathSize - 2, 'x') + '#' << QByteArray("#")
                                  << QByteArray(kPathSize - 2, 'x');
}

void TestExport::makeCvtSavePath_cutsAtTheMarker()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, marker);
    QFETCH(QByteArray, kept);
    const char* cut = MakeCvtSavePath(path.constData(), marker.constData());
    QCOMPARE(cut - gszCvtSavePath, kept.size());
    QCOMPARE(QByteArray(gszCvtSavePath), kept);
}

void TestExport::makeCvtSavePath_withoutTheMarker_isNull()
{
    QCOMPARE(MakeCvtSavePath("/data/graph", "#"), nullptr);
    QCOMPARE(QByteArray(gszCvtSavePath), QByteArray("/data/graph"));
}

void TestExport::makeCvtSavePath_tooLongPath_isRefused()
{
    QVERIFY(CopyText(gszCvtSavePath, "before"));
    const QByteArray path = QByteArray(kPathSize - 1, 'x') + '#';
    QCOMPARE(MakeCvtSavePath(path.constData(), "#"), nullptr);
    QCOMPARE(QByteArray(gszCvtSavePath), QByteArray("before"));
}

QTEST_MAIN(TestExport)
#include "test_export.moc"
