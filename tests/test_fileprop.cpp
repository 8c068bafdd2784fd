// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The dialog of a file's properties.
#include "app/fileprop.h"
#include "meta/plfbuffer.h"
#include "tests/kit/appfixture.h"
#include "tests/kit/menus.h"

#include <QGroupBox>
#include <QLabel>
#include <QTranslator>

#include <limits>
#include <optional>

using fixture::Box;
using fixture::ChooseByKeys;
using fixture::Settle;
using fixture::Window;

namespace {

// A graph of so many lines, all at the lower edge.
std::string Graph(int lines)
{
    std::string graph = plf::Start();
    for (int line = 0; line < lines; ++line)
        graph += plf::Line(0, 0, 4095, 0);
    return graph + plf::End();
}

// A widget of the dialog. The texts are the captions and the placeholders.
struct Row {
    const char* name;
    const char* kind;
    const char* parent; // null: the dialog
    QRect place;
    const char* text;
};

// In the order in which they are made.
// clang-format off
constexpr Row kRows[] = {
    {"groupBox1",        "QGroupBox",   nullptr,     { 10,  10, 430, 100}, ""},
    {"textLabel2",       "QLabel",      "groupBox1", { 20,  10, 100,  20}, "Full Path:"},
    {"textLabel3",       "QLabel",      "groupBox1", { 20,  30, 100,  20}, "Filename:"},
    {"textLabel4",       "QLabel",      "groupBox1", { 20,  50, 100,  20}, "File Size:"},
    {"textLabel5",       "QLabel",      "groupBox1", { 20,  70, 100,  20}, "Vector Count:"},
    {"textFilenameOrig", "QLabel",      "groupBox1", {120,  10, 280,  20}, ""},
    {"textFilename",     "QLabel",      "groupBox1", {120,  30, 280,  20}, "filename1"},
    {"textFilesize",     "QLabel",      "groupBox1", {120,  50, 180,  20}, "filesize"},
    {"textVectorcnt",    "QLabel",      "groupBox1", {120,  70, 180,  20}, "vector count"},
    {"butOk",            "QPushButton", nullptr,     {190, 120,  82,  26}, "Ok"},
};
// clang-format on

QString Describe(const QString& name, const QString& kind, const QString& parent, const QRect& r)
{
    return QStringLiteral("%1 %2 in %3 at %4,%5 %6 x %7")
        .arg(kind, name, parent)
        .arg(r.x())
        .arg(r.y())
        .arg(r.width())
        .arg(r.height());
}

QString Describe(const QWidget& widget)
{
    return Describe(widget.objectName(), QString::fromLatin1(widget.metaObject()->className()),
                    widget.parentWidget()->objectName(), widget.geometry());
}

// What a widget says.
QString TextOf(const QDialog& dialog, const char* name)
{
    const auto* widget = dialog.findChild<QWidget*>(QLatin1String(name));
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    if (const auto* button = qobject_cast<const QPushButton*>(widget))
        return button->text();
    const auto* group = qobject_cast<const QGroupBox*>(widget);
    return group != nullptr ? group->title() : QStringLiteral("nothing of that name");
}

QString ClassName(const QObject& object)
{
    return QString::fromLatin1(object.metaObject()->className());
}

// What the dialog told when the menu opened it.
struct Properties {
    QString name;
    QString kind;
    QWidget* parent = nullptr;
    bool isModal = false;
    QString path;
    QString file;
    QString size;
    QString vectors;
};

Properties Read(const QDialog& dialog)
{
    return {dialog.objectName(),
            ClassName(dialog),
            dialog.parentWidget(),
            dialog.isModal(),
            TextOf(dialog, "textFilenameOrig"),
            TextOf(dialog, "textFilename"),
            TextOf(dialog, "textFilesize"),
            TextOf(dialog, "textVectorcnt")};
}

// "Translates" by telling the context.
class Translator : public QTranslator
{
public:
    Translator() { QCoreApplication::installTranslator(this); }
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* text, const char* /*hint*/,
                                    int /*n*/) const override
    {
        return QLatin1String(context) == QLatin1String("FileProp")
                   ? QStringLiteral("<%1>").arg(QLatin1String(text))
                   : QString();
    }
};

// Calls what Qt calls the protected slot.
void CallLanguageChange(QDialog& dialog)
{
    QVERIFY(QMetaObject::invokeMethod(&dialog, "languageChange"));
}

} // namespace

class TestFileProp : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void constructor_makesTheWidgets();
    void constructor_makesThemInTheirOrder();
    void constructor_setsCaptionsAndPlaceholders();
    void constructor_membersAreTheWidgets();
    void constructor_hasItsSizeOrWhatItsContentNeeds();
    void constructor_passesItsArgumentsOn();
    void constructor_withoutAName_isFileProp();
    void constructor_withAName_hasThatName();

    void slots_haveTheirOrder();
    void slots_areVirtual();
    void metacast_knowsItsNames();

    void init_showsTheFile();
    void init_sizes_areGrouped_data();
    void init_sizes_areGrouped();
    void init_1234567ByteFile_shows1234567GroupedByCommas();
    void init_longestPath_isTheLabelsText();
    void init_nameWithMarkup_isShownAsItIs();
    void init_nameOutsideAscii_isShown();
    void init_readsTheValuesOnce();
    void languageChange_setsTheCaptionsAgain();
    void languageChange_textsAreTranslated();
    void languageEvent_setsTheCaptionsAgain();

    void ok_endsWithCode0_likeCancelling_data();
    void ok_endsWithCode0_likeCancelling();

    void menu_properties_showsTheDialog();
    void menu_properties_again_isANewDialog();
    void menu_properties_withoutAFile_showsEmptyValues();
    void menu_properties_afterAFailedLoad_showNoPathAndOldValues_data();
    void menu_properties_afterAFailedLoad_showNoPathAndOldValues();
    void menu_properties_dialogIsGoneAfterwards();
    void vectorCount_isThatOfTheLatestRendering();
    void vectorCount_ofAZoomedView_countsEverySegment();

private:
    Properties ShowProperties(const Window& window);
};

// Through the menu, with the keyboard; the dialog is answered with its button.
Properties TestFileProp::ShowProperties(const Window& window)
{
    std::optional<Properties> shown;
    dialogs->Expect<QDialog>([&](QDialog& dialog) {
        shown = Read(dialog);
        QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("butOk")), Qt::LeftButton);
    });
    ChooseByKeys(window, Qt::Key_F, Qt::Key_R);
    return QTest::qWaitFor([&] { return shown.has_value(); }) ? *shown : Properties();
}

void TestFileProp::constructor_makesTheWidgets()
{
    const FileProp dialog(nullptr);
    QStringList expected;
    for (const Row& row : kRows)
        expected.append(Describe(QLatin1String(row.name), QLatin1String(row.kind),
                                 QLatin1String(row.parent ? row.parent : "FileProp"), row.place));
    QStringList made;
    for (const QWidget* widget : dialog.findChildren<QWidget*>())
        made.append(Describe(*widget));
    expected.sort();
    made.sort();
    QCOMPARE(made, expected);
}

// Those of one parent: Qt does not tell which of two parents' children was first.
void TestFileProp::constructor_makesThemInTheirOrder()
{
    const FileProp dialog(nullptr);
    for (const QWidget* parent :
         {static_cast<const QWidget*>(&dialog), static_cast<const QWidget*>(dialog.groupBox1)}) {
        QStringList expected;
        for (const Row& row : kRows) {
            if (parent->objectName() == QLatin1String(row.parent ? row.parent : "FileProp"))
                expected.append(QLatin1String(row.name));
        }
        QStringList made;
        for (const QWidget* widget :
             parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            made.append(widget->objectName());
        QCOMPARE(made, expected);
    }
}

void TestFileProp::constructor_setsCaptionsAndPlaceholders()
{
    const FileProp dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("File Properties"));
    for (const Row& row : kRows)
        QCOMPARE(TextOf(dialog, row.name), QLatin1String(row.text));
}

void TestFileProp::constructor_membersAreTheWidgets()
{
    const FileProp dialog(nullptr);
    const QWidget* const members[] = {dialog.groupBox1,     dialog.textLabel2,
                                      dialog.textLabel3,    dialog.textLabel4,
                                      dialog.textLabel5,    dialog.textFilenameOrig,
                                      dialog.textFilename,  dialog.textFilesize,
                                      dialog.textVectorcnt, dialog.butOk};
    QCOMPARE(std::size(members), std::size(kRows));
    for (size_t i = 0; i < std::size(members); ++i)
        QCOMPARE(members[i]->objectName(), QLatin1String(kRows[i].name));
}

void TestFileProp::constructor_hasItsSizeOrWhatItsContentNeeds()
{
    const FileProp dialog(nullptr);
    QCOMPARE(dialog.size(), QSize(452, 158).expandedTo(dialog.minimumSizeHint()));
    // Its user may change that.
    QCOMPARE(dialog.minimumSize(), QSize(0, 0));
    QCOMPARE(dialog.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void TestFileProp::constructor_passesItsArgumentsOn()
{
    QWidget parent;
    const FileProp modal(&parent, "testdlg", true, Qt::Tool);
    QCOMPARE(modal.parentWidget(), &parent);
    QVERIFY(modal.isModal());
    QCOMPARE(modal.windowType(), Qt::Tool);
    const FileProp modeless(&parent);
    QVERIFY(!modeless.isModal());
    QCOMPARE(modeless.windowType(), Qt::Dialog);
}

void TestFileProp::constructor_withoutAName_isFileProp()
{
    const FileProp dialog(nullptr);
    QCOMPARE(dialog.objectName(), QStringLiteral("FileProp"));
}

void TestFileProp::constructor_withAName_hasThatName()
{
    const FileProp dialog(nullptr, "another");
    QCOMPARE(dialog.objectName(), QStringLiteral("another"));
}

void TestFileProp::slots_haveTheirOrder()
{
    const QStringList table = {QStringLiteral("Init()"), QStringLiteral("butOk_clicked()"),
                               QStringLiteral("languageChange()")};
    QCOMPARE(fixture::OwnMethods(FileProp::staticMetaObject, QMetaMethod::Slot), table);
    QCOMPARE(fixture::OwnMethods(FileProp::staticMetaObject, QMetaMethod::Signal), QStringList());
}

// A derived dialog may put its own in place of each.
void TestFileProp::slots_areVirtual()
{
    class Derived : public FileProp
    {
    public:
        Derived() : FileProp(nullptr) {}
        void Init() override { called += QLatin1Char('i'); }
        void butOk_clicked() override { called += QLatin1Char('o'); }
        void languageChange() override { called += QLatin1Char('l'); }
        QString called;
    };
    Derived dialog;
    static_cast<FileProp&>(dialog).Init();
    dialog.butOk->click();
    CallLanguageChange(dialog);
    QCOMPARE(dialog.called, QStringLiteral("iol"));
}

void TestFileProp::metacast_knowsItsNames()
{
    FileProp dialog(nullptr);
    QCOMPARE(ClassName(dialog), QStringLiteral("FileProp"));
    QCOMPARE(dialog.qt_metacast("FileProp"), static_cast<void*>(&dialog));
    QVERIFY(dialog.qt_metacast("QDialog") != nullptr);
    QCOMPARE(dialog.qt_metacast("AppWindow"), nullptr);
}

void TestFileProp::init_showsTheFile()
{
    FileProp dialog(nullptr);
    QVERIFY(CopyText(gszPlffileOrig, "/data/set 2/run.plf"));
    QVERIFY(CopyText(gszPlffileName, "run.plf"));
    gdwFilesize = 12345;
    gdwVectorCnt = 1000;
    dialog.Init();
    QCOMPARE(dialog.textFilenameOrig->text(), QStringLiteral("/data/set 2/run.plf"));
    QCOMPARE(dialog.textFilename->text(), QStringLiteral("run.plf"));
    QCOMPARE(dialog.textFilesize->text(), QStringLiteral("12,345 bytes"));
    QCOMPARE(dialog.textVectorcnt->text(), QStringLiteral("1,000 line segments"));
    QCOMPARE(dialog.textLabel2->text(), QStringLiteral("Full Path:"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("File Properties"));
}

void TestFileProp::init_sizes_areGrouped_data()
{
    QTest::addColumn<qulonglong>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](qulonglong value, const char* text) {
        QTest::addRow("%llu", value) << value << QString::fromLatin1(text);
    };
    row(0, "0");
    row(1, "1"); // a plural anyway
    row(999, "999");
    row(1000, "1,000");
    row(1234567, "1,234,567");
    row(std::numeric_limits<int64_t>::max(), "9,223,372,036,854,775,807");
}

void TestFileProp::init_sizes_areGrouped()
{
    QFETCH(qulonglong, value);
    QFETCH(QString, text);
    gdwFilesize = value;
    gdwVectorCnt = value;
    FileProp dialog(nullptr);
    dialog.Init();
    QCOMPARE(dialog.textFilesize->text(), text + QStringLiteral(" bytes"));
    QCOMPARE(dialog.textVectorcnt->text(), text + QStringLiteral(" line segments"));
}

void TestFileProp::init_1234567ByteFile_shows1234567GroupedByCommas()
{
    for (const auto& [size, text] : {std::pair(1234567, "1,234,567 bytes"), {999, "999 bytes"}}) {
        std::string graph = Graph(1);
        graph.resize(static_cast<size_t>(size), '\n');
        Window window;
        window.AddViewOf(directories->Write("a.plf", graph));
        QVERIFY(window.Show());
        QCOMPARE(ShowProperties(window).size, QLatin1String(text));
    }
}

void TestFileProp::init_longestPath_isTheLabelsText()
{
    const std::string path = '/' + std::string(kPathSize - 2, 'x');
    QVERIFY(CopyText(gszPlffileOrig, path.c_str()));
    QVERIFY(CopyText(gszPlffileName, path.c_str() + 1));
    FileProp dialog(nullptr);
    dialog.Init();
    QCOMPARE(dialog.textFilenameOrig->text(), Text(path));
    QCOMPARE(dialog.textFilename->text(), Text(path).mid(1));
    QCOMPARE(dialog.textFilenameOrig->geometry(), QRect(120, 10, 280, 20));
}

void TestFileProp::init_nameWithMarkup_isShownAsItIs()
{
    QVERIFY(CopyText(gszPlffileName, "<b>bold</b>.plf"));
    FileProp dialog(nullptr);
    dialog.Init();
    QCOMPARE(dialog.textFilename->text(), QStringLiteral("<b>bold</b>.plf"));
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        QCOMPARE(label->textFormat(), Qt::PlainText);
}

void TestFileProp::init_nameOutsideAscii_isShown()
{
    const QString name = QStringLiteral(u"Kr\u00fcmmung \u03a9.plf");
    const QString path = QStringLiteral(u"/Me\u00dfdaten/") + name;
    QVERIFY(CopyText(gszPlffileOrig, path.toLocal8Bit().constData()));
    QVERIFY(CopyText(gszPlffileName, name.toLocal8Bit().constData()));
    FileProp dialog(nullptr);
    dialog.Init();
    QCOMPARE(dialog.textFilenameOrig->text(), path);
    QCOMPARE(dialog.textFilename->text(), name);
}

void TestFileProp::init_readsTheValuesOnce()
{
    FileProp dialog(nullptr);
    dialog.Init();
    gdwFilesize = 17;
    QCOMPARE(dialog.textFilesize->text(), QStringLiteral("0 bytes"));
    dialog.Init();
    QCOMPARE(dialog.textFilesize->text(), QStringLiteral("17 bytes"));
}

// The path has no placeholder.
void TestFileProp::languageChange_setsTheCaptionsAgain()
{
    QVERIFY(CopyText(gszPlffileOrig, "/data/run.plf"));
    FileProp dialog(nullptr);
    dialog.Init();
    dialog.setWindowTitle(QStringLiteral("x"));
    dialog.groupBox1->setTitle(QStringLiteral("x"));
    dialog.textLabel5->setText(QStringLiteral("x"));
    CallLanguageChange(dialog);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("File Properties"));
    for (const Row& row : kRows) {
        if (QLatin1String(row.name) != QLatin1String("textFilenameOrig"))
            QCOMPARE(TextOf(dialog, row.name), QLatin1String(row.text));
    }
    QCOMPARE(dialog.textFilenameOrig->text(), QStringLiteral("/data/run.plf"));
}

void TestFileProp::languageChange_textsAreTranslated()
{
    const Translator translator;
    FileProp dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("<File Properties>"));
    for (const Row& row : kRows) {
        const QString text = QLatin1String(row.text);
        const QString expected = text.isEmpty() ? text : QLatin1Char('<') + text + u'>';
        QCOMPARE(TextOf(dialog, row.name), expected);
    }
}

void TestFileProp::languageEvent_setsTheCaptionsAgain()
{
    FileProp dialog(nullptr);
    dialog.Init();
    QEvent event(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&dialog, &event);
    QCOMPARE(dialog.textFilesize->text(), QStringLiteral("filesize"));
    QCOMPARE(dialog.textFilename->text(), QStringLiteral("filename1"));
    QCOMPARE(dialog.textVectorcnt->text(), QStringLiteral("vector count"));
}

void TestFileProp::ok_endsWithCode0_likeCancelling_data()
{
    QTest::addColumn<QString>("how");
    for (const char* how : {"button", "Enter", "Escape", "closing"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

void TestFileProp::ok_endsWithCode0_likeCancelling()
{
    QFETCH(QString, how);
    dialogs->Expect<FileProp>([&](FileProp& dialog) {
        if (how == u"button")
            QTest::mouseClick(dialog.butOk, Qt::LeftButton);
        else if (how == u"Enter")
            QTest::keyClick(&dialog, Qt::Key_Enter);
        else if (how == u"Escape")
            QTest::keyClick(&dialog, Qt::Key_Escape);
        else
            QVERIFY(dialog.close());
        QVERIFY(!dialog.isVisible());
    });
    FileProp dialog(nullptr);
    dialog.setResult(17);
    QCOMPARE(dialog.exec(), 0);
    QCOMPARE(dialog.result(), 0);
}

void TestFileProp::menu_properties_showsTheDialog()
{
    const std::string graph = Graph(3);
    const std::string path = directories->Write("a.plf", graph);
    Window window;
    window.AddViewOf(path);
    QVERIFY(window.Show());
    Settle(); // the first paint of the view is an empty one
    const Properties shown = ShowProperties(window);
    QCOMPARE(shown.name, QStringLiteral("testdlg"));
    QCOMPARE(shown.kind, QStringLiteral("FileProp"));
    QCOMPARE(shown.parent, window.Get());
    QVERIFY(shown.isModal);
    QCOMPARE(shown.path, Text(path));
    QCOMPARE(shown.file, QStringLiteral("a.plf"));
    QCOMPARE(shown.size, QStringLiteral("%1 bytes").arg(graph.size()));
    QCOMPARE(shown.vectors, QStringLiteral("3 line segments"));
}

void TestFileProp::menu_properties_again_isANewDialog()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", Graph(3)));
    QVERIFY(window.Show());
    QCOMPARE(ShowProperties(window).file, QStringLiteral("a.plf"));
    window->load(Text(directories->Write("b.plf", Graph(4))));
    Settle();
    const Properties shown = ShowProperties(window);
    QCOMPARE(shown.file, QStringLiteral("b.plf"));
    QCOMPARE(shown.vectors, QStringLiteral("4 line segments"));
}

void TestFileProp::menu_properties_withoutAFile_showsEmptyValues()
{
    Window window;
    QVERIFY(window.Show());
    const Properties shown = ShowProperties(window);
    QCOMPARE(shown.name, QStringLiteral("testdlg"));
    QCOMPARE(shown.path, QString());
    QCOMPARE(shown.file, QString());
    QCOMPARE(shown.size, QStringLiteral("0 bytes"));
    QCOMPARE(shown.vectors, QStringLiteral("0 line segments"));
}

void TestFileProp::menu_properties_afterAFailedLoad_showNoPathAndOldValues_data()
{
    QTest::addColumn<QByteArray>("content"); // null = there is no such file
    QTest::addColumn<QString>("size");
    QTest::newRow("missing") << QByteArray() << QStringLiteral("%1 bytes").arg(Graph(3).size());
    QTest::newRow("no graph") << QByteArray(1234, 'x') << QStringLiteral("1,234 bytes");
}

// The name and the lines are those of the last graph, the size is that of the last file that was
// there to be measured.
void TestFileProp::menu_properties_afterAFailedLoad_showNoPathAndOldValues()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, size);
    if (!content.isNull())
        directories->Write("bad.plf", content.toStdString());
    Window window;
    window.AddViewOf(directories->Write("a.plf", Graph(3)));
    QVERIFY(window.Show());
    Settle();
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Path("bad.plf")));
    QCOMPARE(box.shown, 1);
    Settle();
    const Properties shown = ShowProperties(window);
    QCOMPARE(shown.path, QString());
    QCOMPARE(shown.file, QStringLiteral("a.plf"));
    QCOMPARE(shown.size, size);
    QCOMPARE(shown.vectors, QStringLiteral("3 line segments"));
}

void TestFileProp::menu_properties_dialogIsGoneAfterwards()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", Graph(1)));
    QVERIFY(window.Show());
    QPointer<FileProp> seen;
    dialogs->Expect<FileProp>([&](FileProp& dialog) {
        seen = &dialog;
        QVERIFY(dialog.close());
    });
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "fileProperties"));
    QCOMPARE(dialogs->Pending(), 0);
    QVERIFY(seen.isNull());
    QVERIFY(window->isVisible());
}

// The count is 0 until something was drawn, and then that of what was drawn last: on the screen,
// on paper or into a file.
void TestFileProp::vectorCount_isThatOfTheLatestRendering()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", Graph(5)));
    FileProp dialog(nullptr);
    dialog.Init();
    QCOMPARE(dialog.textVectorcnt->text(), QStringLiteral("0 line segments"));
    QVERIFY(window.Show());
    Settle();
    dialog.Init();
    QCOMPARE(dialog.textVectorcnt->text(), QStringLiteral("5 line segments"));
    char message[kPathSize];
    std::string other = directories->Write("b.plf", Graph(1234));
    QCOMPARE(LoadPlfFile(other.data(), message), 0);
    dialog.Init();
    QCOMPARE(dialog.textVectorcnt->text(), QStringLiteral("5 line segments"));
    window->view->drawIt(nullptr);
    dialog.Init();
    QCOMPARE(dialog.textVectorcnt->text(), QStringLiteral("1,234 line segments"));
}

void TestFileProp::vectorCount_ofAZoomedView_countsEverySegment()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", Graph(6)));
    QVERIFY(window.Show());
    DrawView* view = window->view;
    QTest::mousePress(view, Qt::LeftButton, {}, {10, 10}); // no line lies there
    QTest::mouseMove(view, {60, 40});
    QTest::mouseRelease(view, Qt::LeftButton, {}, {60, 40});
    gdwVectorCnt = 0;
    view->repaint();
    QVERIFY(fixture::ShownArea(*view) != fixture::kWholeArea);
    QCOMPARE(ShowProperties(window).vectors, QStringLiteral("6 line segments"));
}

QTEST_MAIN(TestFileProp)
#include "test_fileprop.moc"
