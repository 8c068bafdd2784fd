// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The box that says what this program is.
#include "tests/kit/appfixture.h"
#include "tests/kit/menus.h"

using fixture::Box;
using fixture::ChooseByKeys;
using fixture::Window;

class TestAbout : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void about_firstLine_isTheVersion();
    void about_text_isTwoNoticesOfThreeLines();
    void about_otherVersion_isTold();
    void about_box_looksAsUsual();
    void about_f1_opensIt();
    void about_menu_opensIt();
};

void TestAbout::about_firstLine_isTheVersion()
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "about"));
    QCOMPARE(box.text.section(u'\n', 0, 0), QStringLiteral("PLF File Viewer version 1.0.1"));
}

void TestAbout::about_text_isTwoNoticesOfThreeLines()
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "about"));
    const QStringList lines = box.text.split(u'\n');
    QCOMPARE(lines.size(), 10);
    for (int line = 0; line < lines.size(); ++line)
        QCOMPARE(lines.at(line).isEmpty(), line == 2 || line == 6);
    QVERIFY(lines.at(1).contains(QStringLiteral("Copyright")));
    QVERIFY(lines.mid(3, 3).join(u' ').contains(QStringLiteral("Qt")));
    QVERIFY(lines.mid(7, 3).join(u' ').contains(QStringLiteral("JPEG")));
}

void TestAbout::about_otherVersion_isTold()
{
    const std::string kept = gszVersion;
    QVERIFY(CopyText(gszVersion, "12.34.567")); // as long as it can be
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "about"));
    QVERIFY(CopyText(gszVersion, kept.c_str()));
    QVERIFY(box.text.startsWith(QStringLiteral("PLF File Viewer version 12.34.567\n")));
}

void TestAbout::about_box_looksAsUsual()
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QVERIFY(QMetaObject::invokeMethod(window.Get(), "about"));
    QCOMPARE(box.title, QStringLiteral("About Viewer"));
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(box.icon, QMessageBox::NoIcon); // of the usual ones
    QCOMPARE(box.parent, window.Get());
    QVERIFY(box.isModal);
}

void TestAbout::about_f1_opensIt()
{
    Window window;
    QVERIFY(window.Show());
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QTest::keyClick(window.Get(), Qt::Key_F1);
    QTRY_COMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("About Viewer"));
}

void TestAbout::about_menu_opensIt()
{
    Window window;
    QVERIFY(window.Show());
    Box box;
    fixture::ExpectBox(*dialogs, box);
    ChooseByKeys(window, Qt::Key_H, Qt::Key_A);
    QTRY_COMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("About Viewer"));
}

QTEST_MAIN(TestAbout)
#include "test_about.moc"
