// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Asking for the name of a file to write: the names that come out, and the question before one is
// replaced.
#include "app/savedialog.h"

#include "tests/kit/appfixture.h"

#include <QDialogButtonBox>

#include <QListView>

namespace {

constexpr char kExtension[] = ".jpg";

SaveQuestion Question()
{
    return {"Ask", QStringLiteral("Export"), QStringLiteral("All Files (*)"), kExtension};
}

QString Ask(QWidget* parent)
{
    return AskSaveName(parent, Question());
}

void PressSave(const QFileDialog& dialog)
{
    dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
}

QLineEdit* Field(const QFileDialog& dialog)
{
    return dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

} // namespace

class TestSaveDialog : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newName_isCompletedWithoutAQuestion_data();
    void newName_isCompletedWithoutAQuestion();
    void existingFile_isAskedAbout_data();
    void existingFile_isAskedAbout();
    void existingFile_refused_leavesTheDialogOpen();
    void listedFileWithoutExtension_asksAboutTheCompletedOne();
    void folder_isOpened_data();
    void folder_isOpened();
    void folderOfTheCompletedName_isNoQuestion();
    void longestName_isLeftToTheWriter();
    void cancelled_isEmpty();

private:
    void ExpectName(const QString& typed, QMessageBox::StandardButton answer = QMessageBox::Yes);
    void Confirm(QFileDialog& dialog, QMessageBox::StandardButton answer = QMessageBox::Yes);
    void Answer(QMessageBox& box, QMessageBox::StandardButton answer);

    QString before = QDir::currentPath();
    QStringList questions;
    QWidget window;
};

// The dialogs open in work; the current directory is another one.
void TestSaveDialog::init()
{
    Begin();
    questions.clear();
    for (const char* folder : {"current", "work/set.2", "work/folder"})
        QVERIFY(QDir().mkpath(Text(Path(folder))));
    QVERIFY(QDir::setCurrent(Text(Path("current"))));
}

void TestSaveDialog::cleanup()
{
    QDir::setCurrent(before);
    End();
}

// Expects the dialog, types a name into it and confirms. Gives the dialog's own question, if one
// comes, an answer.
void TestSaveDialog::ExpectName(const QString& typed, QMessageBox::StandardButton answer)
{
    dialogs->Expect<QFileDialog>([this, typed, answer](QFileDialog& dialog) {
        dialog.setDirectory(Text(Path("work")));
        Field(dialog)->setText(typed); // typed, it would open a list of completions on top
        Confirm(dialog, answer);
    });
}

void TestSaveDialog::Confirm(QFileDialog& dialog, QMessageBox::StandardButton answer)
{
    QTimer::singleShot(0, &dialog, [this, answer] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box != nullptr)
            Answer(*box, answer);
    });
    PressSave(dialog);
}

void TestSaveDialog::Answer(QMessageBox& box, QMessageBox::StandardButton answer)
{
    questions.append(box.text().section(u'\n', 0, 0));
    box.button(answer)->click();
}

// The same where the name's field is not Qt's, as in the desktop's own dialogs.
void TestSaveDialog::newName_isCompletedWithoutAQuestion_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* typed, const char* name) {
        QTest::newRow(typed) << QString::fromUtf8(typed) << QString::fromUtf8(name);
    };
    row("graph", "graph.jpg");
    row("graph.jpg", "graph.jpg");
    row("graph.JPG", "graph.JPG");
    row("graph.png", "graph.png");
    row("graph.", "graph.");
    row(".hidden", ".hidden");
    row("set.2/graph", "set.2/graph.jpg");
    row("set.2/graph.v1", "set.2/graph.v1");
    row("two words", "two words.jpg");
    row("back\\slash", "back\\slash.jpg");
    row("Größe 漢", "Größe 漢.jpg");
    row("current", "current.jpg");
}

void TestSaveDialog::newName_isCompletedWithoutAQuestion()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    QVERIFY(QDir().mkpath(Text(Path("current/graph")))); // no folder where the dialog is
    ExpectName(typed);
    QCOMPARE(Ask(&window), Text(Path("work/")) + name);
}

void TestSaveDialog::existingFile_isAskedAbout_data()
{
    QTest::addColumn<QString>("existing"); // beside each other, with ',' between them
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* title, const char* existing, const char* typed,
                        const char* asked, const char* name) {
        QTest::newRow(title) << QString::fromLatin1(existing) << QString::fromLatin1(typed)
                             << QString::fromLatin1(asked) << QString::fromLatin1(name);
    };
    row("without extension", "work/keep.jpg", "keep", "keep.jpg", "keep.jpg");
    row("with extension", "work/keep.jpg", "keep.jpg", "keep.jpg", "keep.jpg");
    row("another extension", "work/keep.png", "keep.png", "keep.png", "keep.png");
    row("in a folder with a dot", "work/set.2/keep.jpg", "set.2/keep", "keep.jpg",
        "set.2/keep.jpg");
    row("hidden", "work/.keep", ".keep", ".keep", ".keep");
    row("both files", "work/keep,work/keep.jpg", "keep", "keep.jpg", "keep.jpg");
    row("only the other file", "work/keep", "keep", "", "keep.jpg");
    row("a folder's name elsewhere", "work/keep.jpg,current/keep/x", "keep", "keep.jpg",
        "keep.jpg");
    row("a file elsewhere", "current/keep.jpg", "keep", "", "keep.jpg");
}

void TestSaveDialog::existingFile_isAskedAbout()
{
    QFETCH(QString, existing);
    QFETCH(QString, typed);
    QFETCH(QString, asked);
    QFETCH(QString, name);
    for (const QString& file : existing.split(u',')) {
        const QString path = Text(Path(file.toStdString()));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        directories->Write(file.toStdString(), "content");
    }
    ExpectName(typed);
    QCOMPARE(Ask(&window), Text(Path("work/")) + name);
    QCOMPARE(questions, asked.isEmpty() ? QStringList()
                                        : QStringList(asked + QStringLiteral(" already exists.")));
}

void TestSaveDialog::existingFile_refused_leavesTheDialogOpen()
{
    directories->Write("work/keep.jpg", "content");
    bool wasOpen = false;
    QString left;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        dialog.setDirectory(Text(Path("work")));
        Field(dialog)->setText(QStringLiteral("keep"));
        Confirm(dialog, QMessageBox::No);
        wasOpen = dialog.isVisible();
        left = Field(dialog)->text();
    });
    QCOMPARE(Ask(&window), QString());
    QVERIFY(wasOpen);
    QCOMPARE(left, QStringLiteral("keep.jpg"));
    QCOMPARE(questions.size(), 1);
}

void TestSaveDialog::listedFileWithoutExtension_asksAboutTheCompletedOne()
{
    directories->Write("work/keep", "content");
    directories->Write("work/keep.jpg", "content");
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        dialog.setDirectory(Text(Path("work")));
        dialog.setViewMode(QFileDialog::List);
        auto* list = dialog.findChild<QListView*>(QStringLiteral("listView"));
        QModelIndexList rows; // the folder is read beside the event loop
        QTRY_COMPARE((rows = list->model()->match(list->model()->index(0, 0, list->rootIndex()),
                                                  Qt::DisplayRole, QStringLiteral("keep"), 1,
                                                  Qt::MatchExactly))
                         .size(),
                     1);
        list->setFocus(); // what is typed has precedence over what is selected
        list->setCurrentIndex(rows.constFirst());
        QCOMPARE(Field(dialog)->text(), QStringLiteral("keep"));
        Confirm(dialog);
    });
    QCOMPARE(Ask(&window), Text(Path("work/keep.jpg")));
    QCOMPARE(questions, QStringList(QStringLiteral("keep.jpg already exists.")));
}

void TestSaveDialog::folder_isOpened_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("name") << QStringLiteral("folder") << QStringLiteral("work/folder");
    QTest::newRow("name with a dot") << QStringLiteral("set.2") << QStringLiteral("work/set.2");
    QTest::newRow("slash at its end") << QStringLiteral("folder/") << QStringLiteral("work/folder");
    QTest::newRow("up") << QStringLiteral("..") << QString();
}

void TestSaveDialog::folder_isOpened()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    directories->Write("work/folder.jpg", "content");
    QString folder;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        dialog.setDirectory(Text(Path("work")));
        Field(dialog)->setText(typed);
        Confirm(dialog);
        QVERIFY(dialog.isVisible());
        folder = dialog.directory().absolutePath();
    });
    QCOMPARE(Ask(&window), QString());
    QCOMPARE(folder, QDir::cleanPath(Text(Path(shown.toStdString()))));
    QCOMPARE(questions, QStringList());
}

// It cannot be written; whoever tries says so.
void TestSaveDialog::folderOfTheCompletedName_isNoQuestion()
{
    QVERIFY(QDir().mkpath(Text(Path("work/keep.jpg"))));
    ExpectName(QStringLiteral("keep"));
    QCOMPARE(Ask(&window), Text(Path("work/keep.jpg")));
    QCOMPARE(questions, QStringList());
}

// Completed, the name is too long for the file system; as typed it is not.
void TestSaveDialog::longestName_isLeftToTheWriter()
{
    const QString name(255, u'n');
    ExpectName(name);
    QCOMPARE(Ask(&window), Text(Path("work/")) + name + QLatin1StringView(kExtension));
}

void TestSaveDialog::cancelled_isEmpty()
{
    dialogs->Expect<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    QCOMPARE(Ask(&window), QString());
}

QTEST_MAIN(TestSaveDialog)
#include "test_savedialog.moc"
