// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Names in messages, which a terminal must not obey and from which a reader can get them back.
#include "support/visible.h"

#include <QRandomGenerator>
#include <QTest>

namespace {

// The name that a visible one stands for.
QByteArray Restored(const QByteArray& visible)
{
    QByteArray name;
    for (qsizetype i = 0; i < visible.size(); ++i) {
        if (visible[i] != '\\') {
            name += visible[i];
        } else if (visible[i + 1] == '\\') {
            name += '\\';
            ++i;
        } else {
            name += QByteArray::fromHex(visible.mid(i + 2, 2));
            i += 3;
        }
    }
    return name;
}

// Bytes of which many are parts of characters, and some of those are hidden.
QByteArray RandomName(QRandomGenerator& random)
{
    static const QByteArray pieces[] = {
        "\xe2\x80\xae",     "\xc2\x9b", "\xe2",  "\x80",    "\xed\xa0\x80",
        "\xf0\x9f\x98\x80", "\\",       "\\x41", "\x1b[2J", "a"};
    QByteArray name;
    const auto count = random.bounded(20);
    for (int i = 0; i < count; ++i) {
        const auto piece = static_cast<size_t>(random.bounded(int{std::size(pieces)} * 2));
        name += piece < std::size(pieces) ? pieces[piece]
                                          : QByteArray(1, static_cast<char>(random.bounded(256)));
    }
    return name;
}

bool HasHidden(const QString& text)
{
    const QList<uint> characters = text.toUcs4();
    return std::any_of(characters.begin(), characters.end(), IsHidden);
}

} // namespace

class TestVisible : public QObject
{
    Q_OBJECT

private slots:
    void name_isWrittenWithoutWhatTerminalsObey_data();
    void name_isWrittenWithoutWhatTerminalsObey();
    void anyBytes_areTextAndCanBeGotBack();
};

void TestVisible::name_isWrittenWithoutWhatTerminalsObey_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("visible");
    const auto add = [](const char* what, const char* name, const char* visible) {
        QTest::newRow(what) << QByteArray(name) << QByteArray(visible);
    };
    add("plain", "a b.plf", "a b.plf");
    add("letters", "\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80", "\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
    add("controls", "a\nb\x1b[2J\x7f", "a\\x0ab\\x1b[2J\\x7f");
    add("controls above ASCII", "\xc2\x80\xc2\x9b\xc2\x9f\xc2\xa0",
        "\\xc2\\x80\\xc2\\x9b\\xc2\\x9f\xc2\xa0");
    add("backslash", "a\\x1b", "a\\\\x1b");
    add("Arabic letter mark", "\xd8\x9b\xd8\x9c\xd8\x9d", "\xd8\x9b\\xd8\\x9c\xd8\x9d");
    add("marks", "\xe2\x80\x8d\xe2\x80\x8e\xe2\x80\x8f\xe2\x80\x90",
        "\xe2\x80\x8d\\xe2\\x80\\x8e\\xe2\\x80\\x8f\xe2\x80\x90");
    add("separators", "\xe2\x80\xa7\xe2\x80\xa8\xe2\x80\xa9",
        "\xe2\x80\xa7\\xe2\\x80\\xa8\\xe2\\x80\\xa9");
    add("overrides", "\xe2\x80\xaa\xe2\x80\xae\xe2\x80\xaf",
        "\\xe2\\x80\\xaa\\xe2\\x80\\xae\xe2\x80\xaf");
    add("isolates", "\xe2\x81\xa5\xe2\x81\xa6\xe2\x81\xa9\xe2\x81\xaa",
        "\xe2\x81\xa5\\xe2\\x81\\xa6\\xe2\\x81\\xa9\xe2\x81\xaa");
    add("Latin-1", "caf\xe9.plf", "caf\\xe9.plf");
    add("cut character", "\xe2\x82", "\\xe2\\x82");
    add("longer form of a character", "\xc0\xaf\xe0\x80\xaf", "\\xc0\\xaf\\xe0\\x80\\xaf");
    add("half of a pair", "\xed\xa0\x80", "\\xed\\xa0\\x80");
    add("beyond the last character", "\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80");
    QTest::newRow("zero byte") << QByteArray("a\0b", 3) << QByteArray("a\\x00b");
}

void TestVisible::name_isWrittenWithoutWhatTerminalsObey()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, visible);
    QCOMPARE(VisibleName(name), visible);
    QCOMPARE(Restored(visible), name);
}

void TestVisible::anyBytes_areTextAndCanBeGotBack()
{
    constexpr int kNames = 100'000;
    QRandomGenerator random(1);
    for (int i = 0; i < kNames; ++i) {
        const QByteArray name = RandomName(random);
        const QByteArray visible = VisibleName(name);
        QCOMPARE(Restored(visible), name);
        QVERIFY(visible.isValidUtf8());
        QVERIFY2(!HasHidden(QString::fromUtf8(visible)), name.toHex().constData());
    }
}

QTEST_APPLESS_MAIN(TestVisible)
#include "test_visible.moc"
