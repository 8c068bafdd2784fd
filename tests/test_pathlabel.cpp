// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How the properties show the names of files that are too long for their labels, and how they are
// copied.
#include "app/fileprop.h"

#include "tests/kit/appfixture.h"

#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QTextDocument>

namespace {

const QString kShort = QStringLiteral("/home/user/a.plf");
const QString kLong = QStringLiteral("/home/user/measurements/") +
                      QStringLiteral("a folder/").repeated(6) + QStringLiteral("result.plf");

QImage PictureOf(QWidget& widget)
{
    return widget.grab().toImage();
}

// What a plain label of the same size looks like with a text, beside the one that is tested.
QImage PlainPicture(const QLabel& like, const QString& text)
{
    QLabel plain(like.parentWidget());
    plain.setTextFormat(Qt::PlainText);
    plain.setGeometry(like.geometry());
    plain.setText(text);
    return PictureOf(plain);
}

QString WithEllipsis(const QLabel& label, const QString& text)
{
    return label.fontMetrics().elidedText(text, Qt::ElideMiddle, label.width());
}

QStringList Columns()
{
    return {QStringLiteral("textFilenameOrig"), QStringLiteral("textFilename")};
}

} // namespace

class TestPathLabel : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void nameThatFits_looksPlain_data() { LabelRows(); }
    void nameThatFits_looksPlain();
    void longName_hasAnEllipsisInItsMiddle_data() { LabelRows(); }
    void longName_hasAnEllipsisInItsMiddle();
    void longName_isSeenAtBothEnds();
    void longName_textIsWhole_data() { LabelRows(); }
    void longName_textIsWhole();
    void nameThatBarelyFits_isNotCut();
    void lineBreaks_areShownAsBlanks();
    void longName_isItsTooltip_data() { LabelRows(); }
    void longName_isItsTooltip();
    void longestName_tooltipHasLines_data();
    void longestName_tooltipHasLines();
    void nameThatFits_hasNoTooltip();
    void nameWithMarkup_isPlainInItsTooltip();
    void longName_clicked_isCopiedWhole_data() { LabelRows(); }
    void longName_clicked_isCopiedWhole();
    void longName_clicked_looksSelected();
    void longName_dragged_staysSelectedWhole();
    void menu_copiesTheName_data();
    void menu_copiesTheName();
    void nameThatFits_dragged_isCopiedInPart();
    void enter_afterAClick_closesTheDialog();

private:
    static void LabelRows();
    QLabel& Show(const QString& name, const QString& label = Columns().constFirst());

    std::unique_ptr<fixture::Directories> directories;
    std::unique_ptr<FileProp> dialog;
};

void TestPathLabel::init()
{
    dialog.reset();
    directories = std::make_unique<fixture::Directories>();
}

void TestPathLabel::LabelRows()
{
    QTest::addColumn<QString>("label");
    for (const QString& label : Columns())
        QTest::newRow(qPrintable(label)) << label;
}

// The label of a dialog that shows the name as path and as file.
QLabel& TestPathLabel::Show(const QString& name, const QString& label)
{
    CopyText(gszPlffileOrig, name.toLocal8Bit().constData());
    CopyText(gszPlffileName, name.toLocal8Bit().constData());
    dialog = std::make_unique<FileProp>(nullptr);
    dialog->Init();
    dialog->show();
    dialog->activateWindow();
    if (!QTest::qWaitForWindowActive(dialog.get()))
        QTest::qFail("the dialog does not come", __FILE__, __LINE__);
    return *dialog->findChild<QLabel*>(label);
}

void TestPathLabel::nameThatFits_looksPlain()
{
    QFETCH(QString, label);
    QLabel& shown = Show(kShort, label);
    QCOMPARE(PictureOf(shown), PlainPicture(shown, kShort));
}

void TestPathLabel::longName_hasAnEllipsisInItsMiddle()
{
    QFETCH(QString, label);
    QLabel& shown = Show(kLong, label);
    const QString cut = WithEllipsis(shown, kLong);
    QVERIFY(cut.size() < kLong.size() && cut.contains(QChar(0x2026)));
    QCOMPARE(PictureOf(shown), PlainPicture(shown, cut));
}

// Whatever the painting is compared with above: a change at either end changes it.
void TestPathLabel::longName_isSeenAtBothEnds()
{
    const QImage picture = PictureOf(Show(kLong));
    QString other = kLong;
    other[1] = u'W';
    QVERIFY(PictureOf(Show(other)) != picture);
    other = kLong;
    other[other.size() - 5] = u'W';
    QVERIFY(PictureOf(Show(other)) != picture);
    other = kLong;
    other[other.size() / 2] = u'W';
    QCOMPARE(PictureOf(Show(other)), picture);
}

void TestPathLabel::longName_textIsWhole()
{
    QFETCH(QString, label);
    const QLabel& shown = Show(kLong, label);
    QCOMPARE(shown.text(), kLong);
    QCOMPARE(shown.size(), QSize(280, 20));
}

void TestPathLabel::nameThatBarelyFits_isNotCut()
{
    const QFontMetrics metrics = Show(kShort).fontMetrics();
    QString name;
    while (metrics.horizontalAdvance(name + u'i') <= 280)
        name += u'i';
    QLabel& fitting = Show(name);
    QCOMPARE(PictureOf(fitting), PlainPicture(fitting, name));
    QLabel& cut = Show(name + u'i');
    QVERIFY(!cut.toolTip().isEmpty());
    QCOMPARE(PictureOf(cut), PlainPicture(cut, WithEllipsis(cut, name + u'i')));
}

void TestPathLabel::lineBreaks_areShownAsBlanks()
{
    QLabel& shown = Show(QStringLiteral("/a\nb.plf"));
    QCOMPARE(shown.text(), QStringLiteral("/a\nb.plf"));
    QCOMPARE(PictureOf(shown), PlainPicture(shown, QStringLiteral("/a b.plf")));
}

void TestPathLabel::longName_isItsTooltip()
{
    QFETCH(QString, label);
    QCOMPARE(Show(kLong, label).toolTip(), kLong);
}

void TestPathLabel::longestName_tooltipHasLines_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("lines");
    const QString folder = QStringLiteral("a folder/");
    QTest::newRow("100 characters") << u'/' + QString(99, u'x') << 1;
    QTest::newRow("101 characters") << u'/' + QString(100, u'x') << 2;
    QTest::newRow("folders") << u'/' + folder.repeated(22) << 2; // the first line has eleven
    QTest::newRow("longest") << u'/' + QString(1022, u'x') << 11;
    QTest::newRow("beyond 16 bits") << u'/' + QStringLiteral(u"\U0001F4C8").repeated(60) << 2;
}

void TestPathLabel::longestName_tooltipHasLines()
{
    QFETCH(QString, name);
    QFETCH(int, lines);
    const QString tip = Show(name).toolTip();
    QCOMPARE(QString(tip).remove(u'\n'), name);
    QCOMPARE(tip.count(u'\n') + 1, lines);
    for (const QString& line : tip.split(u'\n')) {
        QVERIFY(line.size() <= 100);
        QCOMPARE(QString::fromUtf8(line.toUtf8()), line); // no character is torn
    }
}

void TestPathLabel::nameThatFits_hasNoTooltip()
{
    QCOMPARE(Show(kShort).toolTip(), QString());
}

void TestPathLabel::nameWithMarkup_isPlainInItsTooltip()
{
    const QString name = QStringLiteral("/<b>x</b>") + kLong;
    const QString tip = Show(name).toolTip();
    QVERIFY(Qt::mightBeRichText(tip));
    QTextDocument document;
    document.setHtml(tip);
    QCOMPARE(document.toPlainText().remove(u'\n'), name);
}

void TestPathLabel::longName_clicked_isCopiedWhole()
{
    QFETCH(QString, label);
    QLabel& shown = Show(kLong, label);
    QGuiApplication::clipboard()->clear();
    QTest::mouseClick(&shown, Qt::LeftButton, {}, QPoint(200, 10));
    QTest::keySequence(&shown, QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), kLong);
}

void TestPathLabel::longName_clicked_looksSelected()
{
    QLabel& shown = Show(kLong);
    const QImage before = PictureOf(shown);
    QTest::mouseClick(&shown, Qt::LeftButton, {}, QPoint(200, 10));
    QVERIFY(PictureOf(shown) != before);
    QCOMPARE(PictureOf(shown).pixelColor(279, 0), shown.palette().color(QPalette::Highlight));
}

void TestPathLabel::longName_dragged_staysSelectedWhole()
{
    QLabel& shown = Show(kLong);
    QTest::mousePress(&shown, Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseMove(&shown, QPoint(60, 10));
    QTest::mouseRelease(&shown, Qt::LeftButton, {}, QPoint(60, 10));
    QCOMPARE(shown.selectedText(), kLong);
    QTest::mouseDClick(&shown, Qt::LeftButton, {}, QPoint(60, 10));
    QCOMPARE(shown.selectedText(), kLong);
}

void TestPathLabel::menu_copiesTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("fits") << kShort;
    QTest::newRow("long") << kLong;
}

void TestPathLabel::menu_copiesTheName()
{
    QFETCH(QString, name);
    QLabel& shown = Show(name);
    QGuiApplication::clipboard()->clear();
    bool isShown = false;
    QTimer::singleShot(0, &shown, [&] { // the menu has an event loop of its own
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        isShown = true;
        QCOMPARE(menu->actions().constFirst()->text(), QStringLiteral("&Copy"));
        QTest::keyClick(menu, Qt::Key_C);
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(200, 10),
                            shown.mapToGlobal(QPoint(200, 10)));
    QCoreApplication::sendEvent(&shown, &event);
    QVERIFY(isShown);
    QCOMPARE(QGuiApplication::clipboard()->text(), name);
}

void TestPathLabel::nameThatFits_dragged_isCopiedInPart()
{
    QLabel& shown = Show(kShort);
    QTest::mousePress(&shown, Qt::LeftButton, {}, QPoint(0, 10));
    QTest::mouseMove(&shown, QPoint(shown.fontMetrics().horizontalAdvance(kShort.left(5)), 10));
    QCOMPARE(shown.selectedText(), kShort.left(5));
}

void TestPathLabel::enter_afterAClick_closesTheDialog()
{
    QLabel& shown = Show(kLong);
    QTest::mouseClick(&shown, Qt::LeftButton, {}, QPoint(200, 10));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
    QVERIFY(!dialog->isVisible());
}

QTEST_MAIN(TestPathLabel)
#include "test_pathlabel.moc"
