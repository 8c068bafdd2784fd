// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command that desktops run for thumbnails, as its entry has it.
#include "tests/converter.h"
#include "tests/kit/plf.h"
#include "tests/kit/sanitized.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QtTest>

namespace {

constexpr int kSize = 256; // pixels; what a desktop asks for

QString EntryCommand()
{
    for (const QByteArray& line : ReadFile(Text(PLOTVW_THUMBNAILER)).split('\n')) {
        if (line.startsWith("Exec="))
            return QString::fromUtf8(line.sliced(5));
    }
    return {};
}

// A sanitizer takes more memory than any limit allows.
QString TestedCommand()
{
    QString command = EntryCommand();
    return kSanitized ? command.remove(Text("--memory 512 ")) : command;
}

// Nothing that is drawn makes up for the time of texts: so many take half a minute.
QByteArray HostileGraph()
{
    constexpr qsizetype kTexts = 20000000;
    return QByteArray::fromStdString(plf::Start() + "\x1bZP100,200;ZDM") +
           QByteArray("\x1bZDM").repeated(kTexts);
}

} // namespace

class TestThumbnailer : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void init()
    {
        Begin();
        const QString programs = QFileInfo(Text(PLFCONVERT_PROGRAM)).path();
        environment.insert(Text("PATH"), programs + u':' + environment.value(Text("PATH")));
    }
    void cleanup() { End(); }

    void samples_haveThumbnails_data() { SampleRows(); }
    void samples_haveThumbnails();
    void thumbnail_isWrittenInPlace();
    void graphThatTakesTooLong_hasNone();
    void graphThatIsTooLarge_hasNone();
    void fileThatIsNoGraph_hasNone();

private:
    [[nodiscard]] Call MakeThumbnail(const QString& graph) const;
    void VerifyNone(const Call& call, const char* reason) const;
};

Call TestThumbnailer::MakeThumbnail(const QString& graph) const
{
    const QString command = TestedCommand()
                                .replace(Text("%s"), QString::number(kSize))
                                .replace(Text("%i"), u'\'' + graph + u'\'')
                                .replace(Text("%o"), u'\'' + Path("o.png") + u'\'');
    QProcess shell;
    shell.setWorkingDirectory(folder->path());
    shell.setProcessEnvironment(environment);
    shell.start(Text("sh"), {Text("-c"), command});
    return Finish(&shell);
}

void TestThumbnailer::VerifyNone(const Call& call, const char* reason) const
{
    QVERIFY2(call.errors.contains(reason), call.errors.constData());
    QCOMPARE(call.code, 1);
    QVERIFY(!QFile::exists(Path("o.png")));
}

void TestThumbnailer::samples_haveThumbnails()
{
    QFETCH(QString, sample);
    const Call call = MakeThumbnail(Text(PLOTVW_SAMPLES "/") + sample);
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);
    QCOMPARE(QImage(Path("o.png")).width(), kSize);
}

// Some desktops read the file that they opened before.
void TestThumbnailer::thumbnail_isWrittenInPlace()
{
    QFile file(Path("o.png"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QCOMPARE(MakeThumbnail(Text(PLOTVW_SAMPLES "/tour.plf")).code, 0);
    QVERIFY(file.readAll().startsWith("\x89PNG"));
}

void TestThumbnailer::graphThatTakesTooLong_hasNone()
{
    Write(Path("a b.plf"), HostileGraph());
    VerifyNone(MakeThumbnail(Path("a b.plf")), "took longer than 5 s");
}

// Its size is that of the zero bytes after the end, which take no room on the disk.
void TestThumbnailer::graphThatIsTooLarge_hasNone()
{
    if (kSanitized)
        QSKIP("the sanitizer takes more memory than the limit");
    constexpr qint64 kLarge = qint64{1} << 30;
    Write(Path("large.plf"), SmallGraph());
    QVERIFY(QFile::resize(Path("large.plf"), kLarge));
    VerifyNone(MakeThumbnail(Path("large.plf")), "large.plf");
}

void TestThumbnailer::fileThatIsNoGraph_hasNone()
{
    Write(Path("other.plf"), "other");
    VerifyNone(MakeThumbnail(Path("other.plf")), "other.plf");
}

QTEST_GUILESS_MAIN(TestThumbnailer)
#include "test_thumbnailer.moc"
