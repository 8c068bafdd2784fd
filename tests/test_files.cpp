// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

class TestFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(folder.isValid()); }

    void openForReading_linkToTheNullDevice_readsAsAnEmptyFile()
    {
        const QByteArray link = Path("null");
        QVERIFY(symlink("/dev/null", link.constData()) == 0);
        const FilePtr file(OpenForReading(link.constData()));
        QVERIFY(file != nullptr);
        QCOMPARE(fgetc(file.get()), EOF);
    }

    void openForReading_deviceWithoutAnEnd_doesNotOpen()
    {
        QVERIFY(FilePtr(OpenForReading("/dev/zero")) == nullptr);
    }

    void openForWriting_newFile_isCreatedForTheUsersMask()
    {
        const QByteArray path = Path("new");
        const mode_t mask = umask(027);
        const FilePtr file(OpenForWriting(path.constData()));
        umask(mask);
        QVERIFY(file != nullptr);
        struct stat info = {};
        QVERIFY(stat(path.constData(), &info) == 0);
        QCOMPARE(info.st_mode & 0777U, 0640U);
    }

    void openForWriting_existingFile_isEmptiedOrAppendedTo()
    {
        const QByteArray path = Path("old");
        for (const bool append : {false, true}) {
            const FilePtr file(OpenForWriting(path.constData(), append));
            QVERIFY(file != nullptr);
            QVERIFY(fputs(append ? "two" : "one", file.get()) >= 0);
        }
        QFile file(QString::fromLocal8Bit(path));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("onetwo"));
    }

    void openForWriting_pipeThatNobodyReads_doesNotOpenAndDoesNotWait()
    {
        const QByteArray path = Path("pipe");
        QVERIFY(mkfifo(path.constData(), 0600) == 0);
        QVERIFY(FilePtr(OpenForWriting(path.constData())) == nullptr);
    }

    void openForWriting_pipeThatIsRead_takesWhatItIsGiven()
    {
        const QByteArray path = Path("read");
        QVERIFY(mkfifo(path.constData(), 0600) == 0);
        const int reader = open(path.constData(), O_RDONLY | O_NONBLOCK);
        QVERIFY(reader >= 0);
        {
            const FilePtr file(OpenForWriting(path.constData()));
            QVERIFY(file != nullptr);
            QVERIFY(fputs("text", file.get()) >= 0);
        }
        char text[8] = "";
        QCOMPARE(read(reader, text, sizeof text), 4);
        QCOMPARE(QByteArray(text), QByteArray("text"));
        close(reader);
    }

    void openForWriting_folderOrMissingFolder_doesNotOpen()
    {
        QVERIFY(FilePtr(OpenForWriting(folder.path().toLocal8Bit().constData())) == nullptr);
        QVERIFY(FilePtr(OpenForWriting(Path("missing/file").constData())) == nullptr);
        QVERIFY(FilePtr(OpenForWriting("")) == nullptr);
    }

private:
    QByteArray Path(const char* name)
    {
        return folder.filePath(QLatin1StringView(name)).toLocal8Bit();
    }

    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(TestFiles)
#include "test_files.moc"
