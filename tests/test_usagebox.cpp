// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The box that tells the options.
#include "tests/kit/commandline.h"

#include <QLabel>
#include <QScreen>

using fixture::Box;
using fixture::Changes;
using fixture::ParseArguments;

namespace {

// What the box's label shows, and a plain label of its size with the same text.
struct ShownText {
    QImage shown;
    QImage plain;
    bool isWhole = false; // in the label, and the label in the box
    bool isOnScreen = false;
};

ShownText Look(const QMessageBox& box)
{
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    QLabel plain(box.text(), label->parentWidget());
    plain.setTextFormat(Qt::PlainText);
    plain.setAlignment(label->alignment());
    plain.setIndent(label->indent());
    plain.setTextInteractionFlags(label->textInteractionFlags());
    plain.setWordWrap(label->wordWrap());
    plain.setGeometry(label->geometry());
    const QSize needed =
        plain.wordWrap() ? QSize(0, plain.heightForWidth(label->width())) : plain.sizeHint();
    plain.setWordWrap(false);
    return {label->grab().toImage(), plain.grab().toImage(),
            box.rect().contains(label->geometry()) && needed.width() <= label->width() &&
                needed.height() <= label->height(),
            box.width() <= box.screen()->availableGeometry().width()};
}

} // namespace

class TestUsageBox : public QObject, protected fixture::CmdlineTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void usageBox_hasItsTextAndOneButton();
    void usageBox_breaksLinesWhereItsTextDoes_data();
    void usageBox_breaksLinesWhereItsTextDoes();
    void usageBox_endsTheParsing();
    void usageBox_anyAnswer_isTheSame_data();
    void usageBox_anyAnswer_isTheSame();
};

void TestUsageBox::usageBox_hasItsTextAndOneButton()
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(ParseArguments({"-?"}), -1);
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("PLOTVW Usage"));
    QCOMPARE(box.text,
             QStringLiteral(
                 "plotvw plffile [-wp=x,y,wid,ht] [-p] [-po=orientation] [-?] [-h]\n\n-wp=x,y,wid,"
                 "ht:\twindow position\n-p:\t\tprint graph\n-q:\t\tquit after cmd processing is "
                 "complete-po=[l,p]:\tprint orientaton, l=landscape (default), p=portrait\n"
                 "[-?,-h]:\t\tprint this help\n"));
    QCOMPARE(box.icon, QMessageBox::NoIcon);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QVERIFY(box.isModal);
    QCOMPARE(box.parent, nullptr);
    QCOMPARE(box.flags & Qt::WindowType_Mask, Qt::WindowFlags(Qt::Dialog));
    QVERIFY(box.flags.testFlag(Qt::MSWindowsFixedSizeDialogHint));
}

void TestUsageBox::usageBox_breaksLinesWhereItsTextDoes_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<bool>("fits"); // the longest line, on the screen
    QTest::newRow("small letters") << 6 << true;
    QTest::newRow("letters too large for the screen") << 12 << false;
}

void TestUsageBox::usageBox_breaksLinesWhereItsTextDoes()
{
    QFETCH(int, points);
    QFETCH(bool, fits);
    const QFont usual = QApplication::font();
    QFont font = usual;
    font.setPointSize(points);
    QApplication::setFont(font);
    ShownText text;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        text = Look(box);
        box.reject();
    });
    const int result = ParseArguments({"-?"});
    QApplication::setFont(usual);
    QCOMPARE(result, -1);
    QVERIFY(text.isWhole);
    QVERIFY(text.isOnScreen);
    QCOMPARE(text.shown == text.plain, fits);
}

void TestUsageBox::usageBox_endsTheParsing()
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(ParseArguments({"a.plf", "-q", "x-?y", "b.plf", "-p", "-?"}), -1);
    QCOMPARE(box.shown, 1);
    QCOMPARE(Changes(before), QStringList({QStringLiteral("gbCmdQuit=true"),
                                           QStringLiteral("gszPlffileOrig=a.plf")}));
}

void TestUsageBox::usageBox_anyAnswer_isTheSame_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Enter") << static_cast<int>(Qt::Key_Enter);
    QTest::newRow("Escape") << static_cast<int>(Qt::Key_Escape);
}

void TestUsageBox::usageBox_anyAnswer_isTheSame()
{
    QFETCH(int, key);
    dialogs->Expect<QMessageBox>(
        [key](QMessageBox& box) { QTest::keyClick(&box, static_cast<Qt::Key>(key)); });
    QCOMPARE(ParseArguments({"-?", "-q"}), -1);
    QCOMPARE(Changes(before), QStringList());
}

QTEST_MAIN(TestUsageBox)
#include "test_usagebox.moc"
