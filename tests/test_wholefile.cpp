// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What is under a file's name, before and after it is committed, and whose it is.
#include "support/wholefile.h"
#include "tests/kit/files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sched.h>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace {

constexpr uid_t kSomebody = 65534;
constexpr gid_t kSomeGroup = 65533;

struct stat Info(const std::string& path)
{
    struct stat info = {};
    [&] { QCOMPARE(stat(path.c_str(), &info), 0); }();
    return info;
}

mode_t ModeOf(const std::string& path)
{
    return Info(path).st_mode & ALLPERMS;
}

// The rights of another user, for as long as the object lives.
class AsSomebody
{
public:
    AsSomebody()
    {
        setfsgid(kSomebody);
        setfsuid(kSomebody);
    }
    ~AsSomebody()
    {
        setfsuid(geteuid());
        setfsgid(getegid());
    }
    Q_DISABLE_COPY_MOVE(AsSomebody)
};

// Returns the error number.
int Save(const std::string& path, const char* bytes = "new", WholeFile::Rules rules = {})
{
    WholeFile file(path, {}, rules);
    const int error = file.Open();
    if (error != 0)
        return error;
    file.Write(bytes, strlen(bytes));
    return file.Commit();
}

} // namespace

class TestWholeFile : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void file_newName_appearsWithItsCommit();
    void file_existing_isReplacedByItsCommit();
    void file_withoutCommit_leavesNothing();
    void file_newName_isCreatedForTheUsersMask();
    void file_manySmallAndLargePieces_areAllWritten();
    void commit_keepingTheExisting_refusesATakenName();
    void name_withoutAFolder_isInTheCurrentOne();
    void name_ofNoFile_isRefused_data();
    void name_ofNoFile_isRefused();
    void name_protectedFromWriting_isRefused();
    void replacement_keepsThePermissions();
    void replacement_keepsOwnerAndGroup();
    void replacement_thatCannotKeepTheGroup_givesItNoRights();
    void link_staysAndItsTargetIsReplaced();
    void link_withoutATarget_createsIt_data();
    void link_withoutATarget_createsIt();
    void link_toItself_isRefused();
    void pipe_isWrittenTo();
    void descriptor_isWrittenTo();
    void device_thatIsFull_saysSo();
    void folderThatTakesNoFile_existingIsWrittenInPlaceOrRefused();
    void folderOfAnother_existingIsWrittenInPlaceOrRefused();
    void mountedFile_isWrittenInPlaceOrRefused();

private:
    [[nodiscard]] std::string Path(const char* name) const
    {
        return folder->filePath(Text(name)).toStdString();
    }
    void Write(const char* name, const char* bytes, mode_t mode = 0644) const
    {
        QVERIFY(WriteFile(Path(name), bytes));
        QCOMPARE(chmod(Path(name).c_str(), mode), 0);
    }
    [[nodiscard]] QByteArray Read(const char* name) const { return ReadFile(Path(name)); }
    [[nodiscard]] QStringList Entries(const char* name = ".") const
    {
        return QDir(Text(Path(name)))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    std::optional<QTemporaryDir> folder;
};

void TestWholeFile::init()
{
    folder.emplace();
    QVERIFY(folder->isValid());
    QCOMPARE(chmod(folder->path().toLocal8Bit().constData(), 0777), 0);
}

void TestWholeFile::file_newName_appearsWithItsCommit()
{
    WholeFile file(Path("a"));
    QCOMPARE(file.Open(), 0);
    file.Write("new", 3);
    QVERIFY(!Exists(Path("a")));
    QCOMPARE(file.Commit(), 0);
    QCOMPARE(Read("a"), QByteArray("new"));
    QCOMPARE(Entries(), QStringList(Text("a")));
}

void TestWholeFile::file_existing_isReplacedByItsCommit()
{
    Write("a", "the older one");
    WholeFile file(Path("a"));
    QCOMPARE(file.Open(), 0);
    file.Write("new", 3);
    QCOMPARE(Read("a"), QByteArray("the older one"));
    QCOMPARE(file.Commit(), 0);
    QCOMPARE(Read("a"), QByteArray("new"));
    QCOMPARE(Entries(), QStringList(Text("a")));
}

void TestWholeFile::file_withoutCommit_leavesNothing()
{
    Write("a", "old");
    for (const char* name : {"a", "b"}) {
        WholeFile file(Path(name));
        QCOMPARE(file.Open(), 0);
        file.Write("new", 3);
    }
    QCOMPARE(Entries(), QStringList(Text("a")));
    QCOMPARE(Read("a"), QByteArray("old"));
}

void TestWholeFile::file_newName_isCreatedForTheUsersMask()
{
    const mode_t mask = umask(027);
    const int error = Save(Path("a"));
    umask(mask);
    QCOMPARE(error, 0);
    QCOMPARE(ModeOf(Path("a")), 0640U);
}

void TestWholeFile::file_manySmallAndLargePieces_areAllWritten()
{
    QByteArray expected;
    WholeFile file(Path("a"));
    QCOMPARE(file.Open(), 0);
    for (const int size : {1, 0, 65535, 1, 65536, 65537, 200000, 3}) {
        const QByteArray piece(size, static_cast<char>('a' + size % 26));
        file.Write(piece.constData(), static_cast<size_t>(size));
        expected += piece;
    }
    QCOMPARE(file.Commit(), 0);
    QVERIFY(Read("a") == expected);
}

void TestWholeFile::commit_keepingTheExisting_refusesATakenName()
{
    WholeFile file(Path("a"));
    QCOMPARE(file.Open(), 0);
    Write("a", "meanwhile");
    QCOMPARE(file.Commit(true), EEXIST);
    QCOMPARE(Read("a"), QByteArray("meanwhile"));
}

void TestWholeFile::name_withoutAFolder_isInTheCurrentOne()
{
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder->path()));
    const int error = Save("a");
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(error, 0);
    QCOMPARE(Read("a"), QByteArray("new"));
}

void TestWholeFile::name_ofNoFile_isRefused_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("error");
    QTest::newRow("folder") << QByteArray("folder") << EISDIR;
    QTest::newRow("missing folder") << QByteArray("none/a") << ENOENT;
    QTest::newRow("below a file") << QByteArray("file/a") << ENOTDIR;
    QTest::newRow("ending in a slash") << QByteArray("none/") << ENOENT;
    QTest::newRow("too long") << QByteArray(256, 'n') << ENAMETOOLONG;
    QTest::newRow("pipe that nobody reads") << QByteArray("pipe") << ENXIO;
}

void TestWholeFile::name_ofNoFile_isRefused()
{
    QFETCH(QByteArray, name);
    QVERIFY(QDir(folder->path()).mkdir(Text("folder")));
    Write("file", "old");
    QCOMPARE(mkfifo(Path("pipe").c_str(), 0600), 0);
    QTEST(Save(Path(name.constData())), "error");
    QCOMPARE(Save({}), ENOENT);
    QCOMPARE(Entries(), QStringList({Text("file"), Text("folder"), Text("pipe")}));
}

void TestWholeFile::name_protectedFromWriting_isRefused()
{
    if (geteuid() != 0)
        QSKIP("Only root can act for another user.");
    Write("a", "old", 0444);
    const AsSomebody somebody;
    QCOMPARE(Save(Path("a")), EACCES);
    QCOMPARE(Read("a"), QByteArray("old"));
}

void TestWholeFile::replacement_keepsThePermissions()
{
    for (const mode_t mode : {0600U, 0664U, 0755U}) {
        Write("a", "old", mode);
        QCOMPARE(Save(Path("a")), 0);
        QCOMPARE(ModeOf(Path("a")), mode);
    }
}

void TestWholeFile::replacement_keepsOwnerAndGroup()
{
    if (geteuid() != 0)
        QSKIP("Only root can write for another user.");
    Write("a", "old", 0640);
    QCOMPARE(chown(Path("a").c_str(), kSomebody, kSomeGroup), 0);
    QCOMPARE(Save(Path("a")), 0);
    QCOMPARE(Read("a"), QByteArray("new"));
    QCOMPARE(Info(Path("a")).st_uid, kSomebody);
    QCOMPARE(Info(Path("a")).st_gid, kSomeGroup);
    QCOMPARE(ModeOf(Path("a")), 0640U);
}

void TestWholeFile::replacement_thatCannotKeepTheGroup_givesItNoRights()
{
    if (geteuid() != 0)
        QSKIP("Only root can act for another user.");
    Write("a", "old", 0662);
    {
        const AsSomebody somebody;
        QCOMPARE(Save(Path("a")), 0);
    }
    QCOMPARE(Read("a"), QByteArray("new"));
    QCOMPARE(Info(Path("a")).st_uid, kSomebody);
    QCOMPARE(ModeOf(Path("a")), 0622U);
}

void TestWholeFile::link_staysAndItsTargetIsReplaced()
{
    QVERIFY(QDir(folder->path()).mkdir(Text("folder")));
    Write("folder/target", "old");
    QCOMPARE(symlink("target", Path("folder/second").c_str()), 0);
    QCOMPARE(symlink("folder/second", Path("first").c_str()), 0);
    QCOMPARE(Save(Path("first")), 0);
    QCOMPARE(Read("folder/target"), QByteArray("new"));
    QVERIFY(QFileInfo(Text(Path("first"))).isSymLink());
    QVERIFY(QFileInfo(Text(Path("folder/second"))).isSymLink());
    QCOMPARE(Entries("folder"), QStringList({Text("second"), Text("target")}));
}

void TestWholeFile::link_withoutATarget_createsIt_data()
{
    QTest::addColumn<bool>("isAbsolute");
    QTest::newRow("relative") << false;
    QTest::newRow("absolute") << true;
}

void TestWholeFile::link_withoutATarget_createsIt()
{
    QFETCH(bool, isAbsolute);
    QVERIFY(QDir(folder->path()).mkdir(Text("folder")));
    const std::string target = isAbsolute ? Path("folder/target") : "folder/target";
    QCOMPARE(symlink(target.c_str(), Path("link").c_str()), 0);
    QCOMPARE(Save(Path("link")), 0);
    QVERIFY(QFileInfo(Text(Path("link"))).isSymLink());
    QCOMPARE(Read("folder/target"), QByteArray("new"));
}

void TestWholeFile::link_toItself_isRefused()
{
    QCOMPARE(symlink("link", Path("link").c_str()), 0);
    QCOMPARE(Save(Path("link")), ELOOP);
}

void TestWholeFile::pipe_isWrittenTo()
{
    QCOMPARE(mkfifo(Path("pipe").c_str(), 0600), 0);
    const Fd reader(open(Path("pipe").c_str(), O_RDONLY | O_NONBLOCK));
    QVERIFY(reader.IsOpen());
    QCOMPARE(Save(Path("pipe")), 0);
    char text[8] = "";
    QCOMPARE(read(reader.Get(), text, sizeof text), 3);
    QCOMPARE(QByteArray(text), QByteArray("new"));
    QCOMPARE(Entries(), QStringList(Text("pipe")));
}

void TestWholeFile::descriptor_isWrittenTo()
{
    const Fd out(open(Path("a").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    WholeFile file(Path("b"));
    QCOMPARE(file.OpenCopyOf(out.Get()), 0);
    file.Write("new", 3);
    QCOMPARE(file.Commit(), 0);
    QVERIFY(WriteWhole(out, "er", 2));
    QCOMPARE(Read("a"), QByteArray("newer"));
    QVERIFY(!Exists(Path("b")));
    QCOMPARE(file.OpenCopyOf(-1), EBADF);
}

void TestWholeFile::device_thatIsFull_saysSo()
{
    QCOMPARE(Save("/dev/full"), ENOSPC);
    QCOMPARE(symlink("/dev/full", Path("link").c_str()), 0);
    QCOMPARE(Save(Path("link")), ENOSPC);
    QVERIFY(S_ISCHR(Info("/dev/full").st_mode));
}

void TestWholeFile::folderThatTakesNoFile_existingIsWrittenInPlaceOrRefused()
{
    if (geteuid() != 0)
        QSKIP("Only root can act for another user.");
    QVERIFY(QDir(folder->path()).mkdir(Text("folder")));
    Write("folder/a", "the older one", 0666);
    const ino_t file = Info(Path("folder/a")).st_ino;
    const AsSomebody somebody;
    QCOMPARE(Save(Path("folder/a"), "new", {.inPlace = false}), EACCES);
    QCOMPARE(Read("folder/a"), QByteArray("the older one"));
    QCOMPARE(Save(Path("folder/a")), 0);
    QCOMPARE(Read("folder/a"), QByteArray("new"));
    QCOMPARE(Info(Path("folder/a")).st_ino, file);
    QCOMPARE(Save(Path("folder/b")), EACCES);
    QCOMPARE(Entries("folder"), QStringList(Text("a")));
}

// In a folder like /tmp nobody may replace what is another user's.
void TestWholeFile::folderOfAnother_existingIsWrittenInPlaceOrRefused()
{
    if (geteuid() != 0)
        QSKIP("Only root can act for another user.");
    QVERIFY(QDir(folder->path()).mkdir(Text("folder")));
    QCOMPARE(chmod(Path("folder").c_str(), 01775), 0);
    QCOMPARE(chown(Path("folder").c_str(), 0, kSomebody), 0);
    Write("folder/a", "the older one", 0666);
    const AsSomebody somebody;
    QCOMPARE(Save(Path("folder/a"), "new", {.inPlace = false}), EPERM);
    QCOMPARE(Read("folder/a"), QByteArray("the older one"));
    QCOMPARE(Save(Path("folder/a")), 0);
    QCOMPARE(Read("folder/a"), QByteArray("new"));
    QCOMPARE(Info(Path("folder/a")).st_uid, uid_t{0});
    QCOMPARE(Entries("folder"), QStringList(Text("a")));
}

// As it is done with single files of a container.
void TestWholeFile::mountedFile_isWrittenInPlaceOrRefused()
{
    Write("a", "the older one");
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        QSKIP("Only root can mount a file.");
    Write("other", "of another disk");
    QCOMPARE(mount(Path("other").c_str(), Path("a").c_str(), nullptr, MS_BIND, nullptr), 0);
    const int refused = Save(Path("a"), "new", {.inPlace = false});
    const int saved = Save(Path("a"));
    const QByteArray bytes = Read("other");
    QCOMPARE(umount(Path("a").c_str()), 0);
    QCOMPARE(refused, EBUSY);
    QCOMPARE(saved, 0);
    QCOMPARE(bytes, QByteArray("new"));
    QCOMPARE(Read("a"), QByteArray("the older one"));
    QCOMPARE(Entries(), QStringList({Text("a"), Text("other")}));
}

QTEST_GUILESS_MAIN(TestWholeFile)
#include "test_wholefile.moc"
