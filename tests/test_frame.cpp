// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The wire format of the host link: what is written, and what a reader makes of bytes that come in
// pieces, or lie.
#include "hostlink/frame.h"

#include <QElapsedTimer>
#include <QIODevice>
#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

const QString kAccept = QStringLiteral("krv-accept-connect");
constexpr char kAcceptFrame[] = "0028" // 40 bytes follow
                                "00000024"
                                "006b00720076002d"         // krv-
                                "006100630063006500700074" // accept
                                "002d"
                                "0063006f006e006e006500630074"; // connect

constexpr qint16 kAcceptLength = 40;
// Where the string's byte count and its characters stand in a frame.
constexpr qsizetype kCountStart = 2;
constexpr qsizetype kTextStart = 6;
constexpr qsizetype kCharacterSize = 2;

QByteArray Hex(const char* digits)
{
    return QByteArray::fromHex(digits);
}

// A connection's receiving end: what was pushed and not yet read. It has no start to go back to.
class Wire : public QIODevice
{
public:
    Wire() { open(QIODevice::ReadOnly); }
    explicit Wire(const QByteArray& bytes) : Wire() { Push(bytes); }

    void Push(const QByteArray& bytes) { unread += bytes; }
    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override
    {
        return unread.size() + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const qint64 taken = std::min<qint64>(size, unread.size());
        std::copy_n(unread.constData(), taken, data);
        unread.remove(0, taken);
        return taken;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray unread;
};

// What one call told, and what it left.
struct Outcome {
    bool read = false;
    QString message;
    qint16 blockSize = 0;
    qint64 left = 0; // bytes that were not taken

    bool operator==(const Outcome& other) const = default;
};

char* toString(const Outcome& outcome)
{
    const QString message = outcome.message.isNull() ? QStringLiteral("null")
                                                     : QLatin1Char('"') + outcome.message + u'"';
    return qstrdup(
        qPrintable(QStringLiteral("%1, %2, length %3, %4 left")
                       .arg(outcome.read ? QStringLiteral("read") : QStringLiteral("more to come"),
                            message.left(60))
                       .arg(outcome.blockSize)
                       .arg(outcome.left)));
}

Outcome Read(Wire& wire, qint16 blockSize = 0)
{
    Outcome outcome;
    outcome.blockSize = blockSize;
    outcome.read = ReadFrame(&wire, &outcome.blockSize, &outcome.message);
    outcome.left = wire.bytesAvailable();
    return outcome;
}

Outcome ReadBytes(const QByteArray& bytes)
{
    Wire wire(bytes);
    return Read(wire);
}

Outcome MoreToCome(qint16 blockSize, qint64 left)
{
    return {false, {}, blockSize, left};
}

} // namespace

class TestFrame : public QObject
{
    Q_OBJECT

private slots:
    void encode_acknowledgement_is42Bytes();
    void encode_emptyString_is_00_04_00_00_00_00();
    void encode_nullString_hasTheLargestCount();
    void encode_text_isUtf16_data();
    void encode_text_isUtf16();
    void encode_longText_lengthWraps_data();
    void encode_longText_lengthWraps();

    void read_nothing_waits();
    void read_wholeFrame_givesTheMessage();
    void read_text_comesBack_data();
    void read_text_comesBack();
    void read_longText_comesBack_data();
    void read_longText_comesBack();
    void read_nullString_isNull();
    void read_emptyString_isEmptyAndNotNull();

    void read_inTwoPieces_takesWhatFollowsTheLengthAsWhole_data();
    void read_inTwoPieces_takesWhatFollowsTheLengthAsWhole();
    void read_byteByByte_givesEmptyMessages();
    void read_lengthByteByByte_thenTheString_givesTheMessage();
    void read_twoFramesAtOnce_givesOneACall();
    void read_frameWhileALengthIsKept_losesIt();
    void read_stringWithoutLengthWhileOneIsKept_givesTheMessage();

    void read_wrongLength_isNotCompared_data();
    void read_wrongLength_isNotCompared();
    void read_lengthZeroAlone_isForgotten();
    void read_badCount_givesAnEmptyMessage_data();
    void read_badCount_givesAnEmptyMessage();
    void read_countTooSmall_givesTheStartAndLeavesTheRest();
    void read_anyGarbage_isSurvived();
};

void TestFrame::encode_acknowledgement_is42Bytes()
{
    QCOMPARE(EncodeFrame(kAccept).toHex(), QByteArray(kAcceptFrame));
    QCOMPARE(EncodeFrame(kAccept).size(), 42);
}

void TestFrame::encode_emptyString_is_00_04_00_00_00_00()
{
    QCOMPARE(EncodeFrame(QStringLiteral("")).toHex(), QByteArray("000400000000"));
}

void TestFrame::encode_nullString_hasTheLargestCount()
{
    QCOMPARE(EncodeFrame(QString()).toHex(), QByteArray("0004ffffffff"));
}

void TestFrame::encode_text_isUtf16_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QByteArray>("frame");
    QTest::newRow("ASCII") << QStringLiteral("-q") << QByteArray("000800000004002d0071");
    QTest::newRow("Latin") << QStringLiteral(u"\u00e4") << QByteArray("00060000000200e4");
    QTest::newRow("Greek") << QStringLiteral(u"\u03a9") << QByteArray("00060000000203a9");
    // A character above the first 65,536 is two halves, which are counted as two.
    QTest::newRow("two halves") << QString::fromUcs4(U"\U0001F4C8")
                                << QByteArray("000800000004d83ddcc8");
    QTest::newRow("one half") << QString(QChar(0xdcc8)) << QByteArray("000600000002dcc8");
    QTest::newRow("zero") << QString(QChar(u'\0')) << QByteArray("0006000000020000");
}

void TestFrame::encode_text_isUtf16()
{
    QFETCH(QString, message);
    QFETCH(QByteArray, frame);
    QCOMPARE(EncodeFrame(message).toHex(), frame);
}

void TestFrame::encode_longText_lengthWraps_data()
{
    QTest::addColumn<int>("characters");
    QTest::addColumn<QByteArray>("start"); // the length and the count
    QTest::newRow("the most that a length with a sign holds")
        << 16381 << QByteArray("7ffe00007ffa");
    QTest::newRow("one more: negative") << 16382 << QByteArray("800000007ffc");
    QTest::newRow("the most that 16 bits hold") << 32765 << QByteArray("fffe0000fffa");
    QTest::newRow("one more: zero") << 32766 << QByteArray("00000000fffc");
    QTest::newRow("a hundred thousand") << 100'000 << QByteArray("0d4400030d40");
}

void TestFrame::encode_longText_lengthWraps()
{
    QFETCH(int, characters);
    QFETCH(QByteArray, start);
    const QByteArray frame = EncodeFrame(QString(characters, u'x'));
    QCOMPARE(frame.left(kTextStart).toHex(), start);
    QCOMPARE(frame.size(), kTextStart + kCharacterSize * characters);
}

void TestFrame::read_nothing_waits()
{
    QCOMPARE(ReadBytes({}), MoreToCome(0, 0));
}

void TestFrame::read_wholeFrame_givesTheMessage()
{
    QCOMPARE(ReadBytes(Hex(kAcceptFrame)), (Outcome{true, kAccept, kAcceptLength, 0}));
}

void TestFrame::read_text_comesBack_data()
{
    encode_text_isUtf16_data();
}

void TestFrame::read_text_comesBack()
{
    QFETCH(QString, message);
    QFETCH(QByteArray, frame);
    QCOMPARE(ReadBytes(QByteArray::fromHex(frame)).message, message);
}

// Whatever the length is worth then: it is not compared with anything.
void TestFrame::read_longText_comesBack_data()
{
    encode_longText_lengthWraps_data();
}

void TestFrame::read_longText_comesBack()
{
    QFETCH(int, characters);
    const QString message(characters, u'x');
    const Outcome outcome = ReadBytes(EncodeFrame(message));
    QVERIFY(outcome.read);
    QCOMPARE(outcome.message, message);
    QCOMPARE(outcome.left, 0);
}

void TestFrame::read_nullString_isNull()
{
    const Outcome outcome = ReadBytes(Hex("0004ffffffff"));
    QCOMPARE(outcome, (Outcome{true, QString(), 4, 0}));
    QVERIFY(outcome.message.isNull());
}

void TestFrame::read_emptyString_isEmptyAndNotNull()
{
    const Outcome outcome = ReadBytes(Hex("000400000000"));
    QCOMPARE(outcome, (Outcome{true, QStringLiteral(""), 4, 0}));
    QVERIFY(!outcome.message.isNull());
}

void TestFrame::read_inTwoPieces_takesWhatFollowsTheLengthAsWhole_data()
{
    QTest::addColumn<int>("cut");
    for (int cut = 0; cut <= 42; ++cut)
        QTest::addRow("after %d bytes", cut) << cut;
}

// Only a cut within the length or right behind it does no harm. Behind any other the first piece
// reads as an empty message, and so does the second, whose first four bytes are taken for a count:
// a larger one than there are bytes, or an odd one.
void TestFrame::read_inTwoPieces_takesWhatFollowsTheLengthAsWhole()
{
    QFETCH(int, cut);
    const QByteArray frame = Hex(kAcceptFrame);
    Wire wire(frame.left(cut));
    const Outcome first = Read(wire);
    wire.Push(frame.mid(cut));
    const Outcome second = Read(wire, first.blockSize);
    if (cut < kCountStart) {
        QCOMPARE(first, MoreToCome(0, cut));
        QCOMPARE(second, (Outcome{true, kAccept, kAcceptLength, 0}));
    } else if (cut == kCountStart) {
        QCOMPARE(first, MoreToCome(kAcceptLength, 0));
        QCOMPARE(second, (Outcome{true, kAccept, kAcceptLength, 0}));
    } else if (cut < frame.size()) {
        QCOMPARE(first, (Outcome{true, QString(), kAcceptLength, 0}));
        QVERIFY(second.read);
        QCOMPARE(second.message, QString());
        QCOMPARE(second.blockSize, kAcceptLength);
    } else {
        QCOMPARE(first, (Outcome{true, kAccept, kAcceptLength, 0}));
        QCOMPARE(second, MoreToCome(kAcceptLength, 0));
    }
}

void TestFrame::read_byteByByte_givesEmptyMessages()
{
    Wire wire;
    qint16 blockSize = 0;
    int messages = 0;
    for (const char byte : Hex(kAcceptFrame)) {
        wire.Push(QByteArray(1, byte));
        const Outcome outcome = Read(wire, blockSize);
        blockSize = outcome.blockSize;
        messages += outcome.read ? 1 : 0;
        QCOMPARE(outcome.message, QString());
    }
    QCOMPARE(messages, 40); // for each byte after the length
    QCOMPARE(blockSize, kAcceptLength);
}

void TestFrame::read_lengthByteByByte_thenTheString_givesTheMessage()
{
    const QByteArray frame = Hex(kAcceptFrame);
    Wire wire(frame.left(1));
    QCOMPARE(Read(wire), MoreToCome(0, 1));
    wire.Push(frame.mid(1, 1));
    QCOMPARE(Read(wire), MoreToCome(kAcceptLength, 0));
    wire.Push(frame.mid(kCountStart));
    QCOMPARE(Read(wire, kAcceptLength), (Outcome{true, kAccept, kAcceptLength, 0}));
}

void TestFrame::read_twoFramesAtOnce_givesOneACall()
{
    Wire wire(EncodeFrame(QStringLiteral("a.plf")) + EncodeFrame(QStringLiteral("b.plf -q")));
    QCOMPARE(Read(wire), (Outcome{true, QStringLiteral("a.plf"), 14, 22}));
    QCOMPARE(Read(wire), (Outcome{true, QStringLiteral("b.plf -q"), 20, 0}));
    QCOMPARE(Read(wire), MoreToCome(0, 0));
}

// The kept length stands for that of the next frame, whose own is then the start of its count.
void TestFrame::read_frameWhileALengthIsKept_losesIt()
{
    Wire wire(Hex(kAcceptFrame));
    QCOMPARE(Read(wire, 8), (Outcome{true, QString(), 8, 0}));
}

void TestFrame::read_stringWithoutLengthWhileOneIsKept_givesTheMessage()
{
    Wire wire(Hex(kAcceptFrame).mid(kCountStart));
    QCOMPARE(Read(wire, 8), (Outcome{true, kAccept, 8, 0}));
}

void TestFrame::read_wrongLength_isNotCompared_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {1, 4, 39, 41, 0x7fff, -0x8000, -2, -1})
        QTest::addRow("%d", length) << length;
    QTest::newRow("0, with the string right behind it") << 0;
}

void TestFrame::read_wrongLength_isNotCompared()
{
    QFETCH(int, length);
    QByteArray frame = Hex(kAcceptFrame);
    frame[0] = static_cast<char>(length >> 8);
    frame[1] = static_cast<char>(length);
    QCOMPARE(ReadBytes(frame), (Outcome{true, kAccept, static_cast<qint16>(length), 0}));
}

// 0 means that no length has been read: the next two bytes are taken for one.
void TestFrame::read_lengthZeroAlone_isForgotten()
{
    Wire wire(Hex("0000"));
    QCOMPARE(Read(wire), MoreToCome(0, 0));
    wire.Push(EncodeFrame(kAccept));
    QCOMPARE(Read(wire), (Outcome{true, kAccept, kAcceptLength, 0}));
}

void TestFrame::read_badCount_givesAnEmptyMessage_data()
{
    QTest::addColumn<QByteArray>("count");
    QTest::addColumn<qint64>("left");
    // The text is taken as far as it came; behind an odd count it is not touched.
    QTest::newRow("two bytes too large") << QByteArray("00000026") << qint64{0};
    QTest::newRow("one byte too large") << QByteArray("00000025") << qint64{36};
    QTest::newRow("one byte too small") << QByteArray("00000023") << qint64{36};
    QTest::newRow("one") << QByteArray("00000001") << qint64{36};
    QTest::newRow("largest with a sign") << QByteArray("7fffffff") << qint64{36};
    QTest::newRow("two gigabytes") << QByteArray("80000000") << qint64{0};
    QTest::newRow("largest that is even") << QByteArray("fffffffe") << qint64{0};
    QTest::newRow("zero") << QByteArray("00000000") << qint64{36};
    QTest::newRow("that of a null string") << QByteArray("ffffffff") << qint64{36};
}

void TestFrame::read_badCount_givesAnEmptyMessage()
{
    QFETCH(QByteArray, count);
    QFETCH(qint64, left);
    const QByteArray frame =
        Hex("0028") + QByteArray::fromHex(count) + Hex(kAcceptFrame).mid(kTextStart);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(ReadBytes(frame), (Outcome{true, QString(), kAcceptLength, left}));
    QVERIFY2(timer.elapsed() < 1000, "the count was believed");
}

void TestFrame::read_countTooSmall_givesTheStartAndLeavesTheRest()
{
    const QByteArray frame = Hex("002800000006") + Hex(kAcceptFrame).mid(kTextStart);
    QCOMPARE(ReadBytes(frame), (Outcome{true, QStringLiteral("krv"), kAcceptLength, 30}));
}

// A message is never longer than what there was to read, and a reader always goes on or waits.
void TestFrame::read_anyGarbage_isSurvived()
{
    QRandomGenerator random(20'260'101);
    for (int round = 0; round < 3'000; ++round) {
        QByteArray bytes(static_cast<qsizetype>(random.bounded(64)), Qt::Uninitialized);
        // Small bytes, so that some counts can be believed.
        const int highest = random.bounded(2) == 0 ? 256 : 4;
        for (char& byte : bytes)
            byte = static_cast<char>(random.bounded(highest));
        Wire wire(bytes);
        qint16 blockSize = 0;
        for (qint64 before = bytes.size(); before > 0;) {
            const Outcome outcome = Read(wire, blockSize);
            QVERIFY(outcome.message.size() * kCharacterSize <= before - outcome.left);
            if (!outcome.read || outcome.left == before)
                break;
            blockSize = static_cast<qint16>(random.bounded(2)) * outcome.blockSize;
            before = outcome.left;
        }
    }
}

QTEST_APPLESS_MAIN(TestFrame)

#include "test_frame.moc"
