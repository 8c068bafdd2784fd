// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How long the values of the command line may be.
#include "tests/kit/commandline.h"

using fixture::Box;
using fixture::Changes;
using fixture::CheckArguments;
using fixture::ParseArguments;

class TestCmdlineLimits : public QObject, protected fixture::CmdlineTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void longestValue_fits_data();
    void longestValue_fits();
    void tooLongValue_isRefused_data();
    void tooLongValue_isRefused();
    void tooLongFileName_leavesNoFile();
    void tooLongValue_doesNotEndTheParsing();
    void check_longestValue_fits_data();
    void check_longestValue_fits();
    void check_tooLongValue_isTold_data();
    void check_tooLongValue_isTold();
    void check_fileNameThatIsTooLongAsAPath_isTold();
    void check_behindTheUsageOption_looksAtNothing();

private:
    void LimitRows();
};

// Option, what the box calls its value, and the most bytes that fit.
void TestCmdlineLimits::LimitRows()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("limit");
    const auto row = [](const char* option, const char* variable, const char* what, int limit) {
        QTest::newRow(variable) << QByteArray(option) << QString::fromLatin1(variable)
                                << QString::fromLatin1(what) << limit;
    };
    row("", "gszPlffileOrig", "The file name", 1023);
    row("-cf=", "gszCvtFilenameBase", "The name for exported files (-cf=)", 1023);
    row("-svrname=", "gszKrvServerName", "The server name (-svrname=)", 1023);
    row("-cwd=", "gszCurrentWorkingDir", "The working directory (-cwd=)", 2047);
}

void TestCmdlineLimits::longestValue_fits_data()
{
    LimitRows();
}

void TestCmdlineLimits::longestValue_fits()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, variable);
    QFETCH(int, limit);
    const QByteArray value(limit, 'x');
    QCOMPARE(ParseArguments({(option + value).toStdString()}), 0);
    QCOMPARE(Changes(before), QStringList(variable + u'=' + QString::fromLatin1(value)));
}

void TestCmdlineLimits::tooLongValue_isRefused_data()
{
    LimitRows();
}

void TestCmdlineLimits::tooLongValue_isRefused()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, what);
    QFETCH(int, limit);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(ParseArguments({(option + QByteArray(limit + 1, 'x')).toStdString()}), 0);
    QCOMPARE(Changes(before), QStringList());
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.text, QStringLiteral("%1 is too long (%2 bytes, limit %3) and was ignored.")
                           .arg(what)
                           .arg(limit + 1)
                           .arg(limit));
}

void TestCmdlineLimits::tooLongFileName_leavesNoFile()
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(ParseArguments({"a.plf", std::string(100000, 'x')}), 0);
    QCOMPARE(box.shown, 1);
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdlineLimits::tooLongValue_doesNotEndTheParsing()
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(ParseArguments({"-cf=" + std::string(3000, 'x'), "-q", "a.plf"}), 0);
    QCOMPARE(box.shown, 1);
    QCOMPARE(Changes(before), QStringList({QStringLiteral("gbCmdQuit=true"),
                                           QStringLiteral("gszPlffileOrig=a.plf")}));
}

void TestCmdlineLimits::check_longestValue_fits_data()
{
    LimitRows();
}

void TestCmdlineLimits::check_longestValue_fits()
{
    QFETCH(QByteArray, option);
    QFETCH(int, limit);
    const QByteArray name = option.isEmpty() ? QByteArray("./") : QByteArray(); // is a path
    QVERIFY(CheckArguments(
        {(option + name + QByteArray(limit - name.size(), 'x')).toStdString(), "-q"}));
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdlineLimits::check_tooLongValue_isTold_data()
{
    LimitRows();
}

void TestCmdlineLimits::check_tooLongValue_isTold()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, what);
    QFETCH(int, limit);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    const QByteArray name = option.isEmpty() ? QByteArray("./") : QByteArray();
    QVERIFY(!CheckArguments(
        {"-q", "a.plf", (option + name + QByteArray(limit + 1 - name.size(), 'x')).toStdString()}));
    QCOMPARE(Changes(before), QStringList());
    QCOMPARE(box.shown, 1);
    QVERIFY2(box.text.startsWith(what + QStringLiteral(" is ")), qPrintable(box.text));
}

void TestCmdlineLimits::check_fileNameThatIsTooLongAsAPath_isTold()
{
    const std::string longest(kPathSize - 1 - strlen(gszCurdir) - 1, 'x');
    QVERIFY(CheckArguments({longest}));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QVERIFY(!CheckArguments({longest + 'x'}));
    QCOMPARE(box.text,
             QStringLiteral("The file name is too long (1024 bytes, limit 1023) and was ignored."));
    QVERIFY(CheckArguments({""}));
}

void TestCmdlineLimits::check_behindTheUsageOption_looksAtNothing()
{
    QVERIFY(CheckArguments({"a.plf", "-?", std::string(3000, 'x')}));
}

QTEST_MAIN(TestCmdlineLimits)
#include "test_cmdlinelimits.moc"
