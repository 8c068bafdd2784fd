// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The value parsers. Every test runs twice: in the C locale and in one with a decimal comma, and
// must find the same.
#include "support/values.h"

#include <QtTest>

#include <clocale>
#include <cstdlib>
#include <limits>

namespace {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
const char kCommaLocale[] = "de_DE.UTF-8";

// QCOMPARE takes nearly equal doubles for equal; these must be the same number, or both NaN.
bool isSame(double a, double b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

} // namespace

class TestValues : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void locale_isTheOneUnderTest();
    void textToInt_data();
    void textToInt();
    void getDouble_data();
    void getDouble();
    void getDoublePair_data();
    void getDoublePair();
    void getIntPair_data();
    void getIntPair();
    void getIntYesNo_data();
    void getIntYesNo();

private:
    QTemporaryDir localeDir;
    QByteArray oldLocalePath;
};

void TestValues::initTestCase_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::newRow("C") << QByteArray("C");
    QTest::newRow("decimal comma") << QByteArray(kCommaLocale);
}

// The locale is made here, so that the test does not depend on which ones the system has.
void TestValues::initTestCase()
{
    QVERIFY(localeDir.isValid());
    QProcess localedef;
    localedef.start(QStringLiteral("localedef"),
                    {QStringLiteral("--no-archive"), QStringLiteral("-i"), QStringLiteral("de_DE"),
                     QStringLiteral("-f"), QStringLiteral("UTF-8"),
                     localeDir.filePath(QString::fromLatin1(kCommaLocale))});
    QVERIFY2(localedef.waitForFinished() && localedef.exitCode() == 0,
             "localedef failed: is the package \"locales\" installed?");
    oldLocalePath = qgetenv("LOCPATH");
    qputenv("LOCPATH", localeDir.path().toLocal8Bit());
}

void TestValues::cleanupTestCase()
{
    if (oldLocalePath.isNull()) {
        qunsetenv("LOCPATH");
    } else {
        qputenv("LOCPATH", oldLocalePath);
    }
}

void TestValues::init()
{
    QFETCH_GLOBAL(QByteArray, locale);
    QVERIFY(std::setlocale(LC_ALL, locale.constData()) != nullptr);
}

void TestValues::cleanup()
{
    std::setlocale(LC_ALL, "C");
}

void TestValues::locale_isTheOneUnderTest()
{
    QFETCH_GLOBAL(QByteArray, locale);
    QCOMPARE(std::strtod("1.5", nullptr), locale == "C" ? 1.5 : 1.0);
}

void TestValues::textToInt_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("digits") << QByteArray("42") << 42;
    QTest::newRow("minus sign") << QByteArray("-5") << -5;
    QTest::newRow("plus sign") << QByteArray("+5") << 5;
    QTest::newRow("two signs") << QByteArray("+-5") << 0;
    QTest::newRow("blank after the sign") << QByteArray("- 5") << 0;
    QTest::newRow("every kind of blank in front") << QByteArray(" \t\n\v\f\r7") << 7;
    QTest::newRow("no-break space is no blank") << QByteArray("\xc2\xa0"
                                                              "7")
                                                << 0;
    QTest::newRow("line end behind") << QByteArray("80\n") << 80;
    QTest::newRow("stops at the first other character") << QByteArray("12abc") << 12;
    QTest::newRow("a fraction is cut off") << QByteArray("8.9") << 8;
    QTest::newRow("a comma ends the number") << QByteArray("1,5") << 1;
    QTest::newRow("no digit grouping") << QByteArray("1.000") << 1;
    QTest::newRow("leading zeros are decimal") << QByteArray("010") << 10;
    QTest::newRow("no hexadecimal") << QByteArray("0x10") << 0;
    QTest::newRow("no number") << QByteArray("abc") << 0;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("largest int") << QByteArray("2147483647") << kMax;
    QTest::newRow("smallest int") << QByteArray("-2147483648") << kMin;
    QTest::newRow("one above saturates") << QByteArray("2147483648") << kMax;
    QTest::newRow("one below saturates") << QByteArray("-2147483649") << kMin;
    QTest::newRow("beyond 32 bits saturates") << QByteArray("4294967297") << kMax;
    QTest::newRow("beyond 64 bits saturates") << QByteArray("99999999999999999999") << kMax;
    QTest::newRow("below 64 bits saturates") << QByteArray("-99999999999999999999") << kMin;
}

void TestValues::textToInt()
{
    QFETCH(QByteArray, text);
    QFETCH(int, expected);
    QCOMPARE(TextToInt(text.constData()), expected);
}

void TestValues::getDouble_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("expected");

    QTest::newRow("a point is the decimal point") << QByteArray("0.25") << 0.25;
    QTest::newRow("a comma is not") << QByteArray("0,25") << 0.0;
    QTest::newRow("integer") << QByteArray("3") << 3.0;
    QTest::newRow("minus sign") << QByteArray("-1.5") << -1.5;
    QTest::newRow("plus sign") << QByteArray("+1.5") << 1.5;
    QTest::newRow("nothing before the point") << QByteArray(".5") << 0.5;
    QTest::newRow("nothing after the point") << QByteArray("5.") << 5.0;
    QTest::newRow("exponent") << QByteArray("1e3") << 1000.0;
    QTest::newRow("negative exponent") << QByteArray("25E-2") << 0.25;
    QTest::newRow("exponent without digits") << QByteArray("2e") << 2.0;
    QTest::newRow("hexadecimal") << QByteArray("0x1.8p1") << 3.0;
    QTest::newRow("infinity") << QByteArray("inf") << kInfinity;
    QTest::newRow("negative infinity") << QByteArray("-Infinity") << -kInfinity;
    QTest::newRow("not a number") << QByteArray("nan") << std::nan("");
    QTest::newRow("every kind of blank in front") << QByteArray(" \t\n\v\f\r0.5") << 0.5;
    QTest::newRow("no-break space is no blank") << QByteArray("\xc2\xa0"
                                                              "0.5")
                                                << 0.0;
    QTest::newRow("line end behind") << QByteArray("0.5\r\n") << 0.5;
    QTest::newRow("stops at the first other character") << QByteArray("0.5.5") << 0.5;
    QTest::newRow("no digit grouping") << QByteArray("1.000.000") << 1.0;
    QTest::newRow("nearest double") << QByteArray("0.1") << 0.1;
    QTest::newRow("too large") << QByteArray("1e999") << kInfinity;
    QTest::newRow("too small") << QByteArray("1e-999") << 0.0;
    QTest::newRow("negative zero") << QByteArray("-0") << -0.0;
    QTest::newRow("no number") << QByteArray("abc") << 0.0;
    QTest::newRow("lone point") << QByteArray(".") << 0.0;
    QTest::newRow("empty") << QByteArray("") << 0.0;
}

void TestValues::getDouble()
{
    QFETCH(QByteArray, text);
    QFETCH(double, expected);
    double value = 77.0;
    GetDouble(text.data(), &value);
    QVERIFY2(isSame(value, expected), QByteArray::number(value).constData());
}

void TestValues::getDoublePair_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("second");
    constexpr double kUnchanged = 88.0;

    QTest::newRow("two numbers") << QByteArray("8.5,11") << 8.5 << 11.0;
    QTest::newRow("blanks around") << QByteArray(" \t8.5 , 11.25\n") << 8.5 << 11.25;
    QTest::newRow("blank after the comma") << QByteArray("0.9, 0.8") << 0.9 << 0.8;
    QTest::newRow("text before the comma is skipped") << QByteArray("8.5in,11in") << 8.5 << 11.0;
    QTest::newRow("a third number is ignored") << QByteArray("1,2,3") << 1.0 << 2.0;
    QTest::newRow("decimal commas are no decimal points") << QByteArray("0,5,0,7") << 0.0 << 5.0;
    QTest::newRow("nothing before the comma") << QByteArray(",2.5") << 0.0 << 2.5;
    QTest::newRow("nothing after the comma") << QByteArray("1.5,") << 1.5 << 0.0;
    QTest::newRow("no number after the comma") << QByteArray("1.5,x") << 1.5 << 0.0;
    QTest::newRow("lone comma") << QByteArray(",") << 0.0 << 0.0;
    QTest::newRow("no comma leaves the second") << QByteArray("1.5 2.5") << 1.5 << kUnchanged;
    QTest::newRow("empty leaves the second") << QByteArray("") << 0.0 << kUnchanged;
}

void TestValues::getDoublePair()
{
    QFETCH(QByteArray, text);
    QFETCH(double, first);
    QFETCH(double, second);
    double a = 77.0;
    double b = 88.0;
    GetDoublePair(text.data(), &a, &b);
    QVERIFY2(isSame(a, first), QByteArray::number(a).constData());
    QVERIFY2(isSame(b, second), QByteArray::number(b).constData());
}

void TestValues::getIntPair_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    constexpr int kUnchanged = 88;

    QTest::newRow("blanks around") << QByteArray("  10 , 20") << 10 << 20;
    QTest::newRow("no blanks") << QByteArray("10,-5\n") << 10 << -5;
    QTest::newRow("fractions are skipped") << QByteArray("1.5,2.5") << 1 << 2;
    QTest::newRow("a third number is ignored") << QByteArray("1,2,3") << 1 << 2;
    QTest::newRow("nothing before the comma") << QByteArray(",2") << 0 << 2;
    QTest::newRow("nothing after the comma") << QByteArray("1,") << 1 << 0;
    QTest::newRow("both saturate") << QByteArray("9999999999,-9999999999") << kMax << kMin;
    QTest::newRow("no comma leaves the second") << QByteArray("10 20") << 10 << kUnchanged;
    QTest::newRow("empty leaves the second") << QByteArray("") << 0 << kUnchanged;
}

void TestValues::getIntPair()
{
    QFETCH(QByteArray, text);
    QFETCH(int, first);
    QFETCH(int, second);
    int a = 77;
    int b = 88;
    QCOMPARE(GetIntPair(text.data(), &a, &b), second);
    QCOMPARE(a, first);
    QCOMPARE(b, second);
}

void TestValues::getIntYesNo_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("yes") << QByteArray("yes") << 1;
    QTest::newRow("Y") << QByteArray("Y") << 1;
    QTest::newRow("y") << QByteArray("y\n") << 1;
    QTest::newRow("any word with y") << QByteArray("yellow") << 1;
    QTest::newRow("every kind of blank in front") << QByteArray(" \t\n\v\f\rYes") << 1;
    QTest::newRow("1") << QByteArray("1") << 0;
    QTest::newRow("true") << QByteArray("true") << 0;
    QTest::newRow("no") << QByteArray("no") << 0;
    QTest::newRow("No") << QByteArray("No") << 0;
    QTest::newRow("quoted") << QByteArray("\"yes\"") << 0;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("only blanks") << QByteArray("  \n") << 0;
}

void TestValues::getIntYesNo()
{
    QFETCH(QByteArray, text);
    QFETCH(int, expected);
    int flag = 77;
    GetIntYesNo(text.data(), &flag);
    QCOMPARE(flag, expected);
}

QTEST_GUILESS_MAIN(TestValues)
#include "test_values.moc"
