// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Rectangles: what each helper changes, and what it deliberately leaves or mixes up.
#include "support/rect.h"

#include <QtTest>

#include <cstring>
#include <limits>

namespace {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr qint64 kMin64 = std::numeric_limits<qint64>::min();
constexpr qint64 kMax64 = std::numeric_limits<qint64>::max();

using Fields = QList<qint64>; // left, top, right, bottom, width, height

Fields fieldsOf(const Rect& r)
{
    return {r.left, r.top, r.right, r.bottom, r.width, r.height};
}

Rect rectOf(const Fields& f)
{
    return {f[0], f[1], f[2], f[3], f[4], f[5]};
}

} // namespace

class TestRect : public QObject
{
    Q_OBJECT

private slots:
    void setRect_data();
    void setRect();
    void moveRect_data();
    void moveRect();
    void normalizeRect_data();
    void normalizeRect();
    void copyRect_copiesAllSixFields();
    void copyRect_ontoItself_changesNothing();
    void copyRect_toSmallRecord_copiesLeftAndTopAsBytes();
    void everyHelper_returnsItsFirstArgument();
};

void TestRect::setRect_data()
{
    QTest::addColumn<QList<int>>("corners");
    QTest::addColumn<Fields>("expected");

    QTest::newRow("the default window")
        << QList{200, 200, 840, 687} << Fields{200, 200, 840, 687, 640, 487};
    QTest::newRow("the drawing area")
        << QList{0, 0, 4096, 3120} << Fields{0, 0, 4096, 3120, 4096, 3120};
    QTest::newRow("corners the wrong way round")
        << QList{10, 50, 5, 20} << Fields{10, 50, 5, 20, -5, -30};
    QTest::newRow("negative values are widened with their sign")
        << QList{-10, -20, -3, -4} << Fields{-10, -20, -3, -4, 7, 16};
    QTest::newRow("differences wrap in 32 bits")
        << QList{kMin, kMax, kMax, kMin} << Fields{kMin, kMax, kMax, kMin, -1, 1};
    QTest::newRow("difference of one beyond the range")
        << QList{-1, 0, kMax, kMin} << Fields{-1, 0, kMax, kMin, kMin, kMin};
}

void TestRect::setRect()
{
    QFETCH(QList<int>, corners);
    QFETCH(Fields, expected);
    Rect r = {1, 2, 3, 4, 5, 6};
    SetRect(&r, corners[0], corners[1], corners[2], corners[3]);
    QCOMPARE(fieldsOf(r), expected);
}

void TestRect::moveRect_data()
{
    QTest::addColumn<Fields>("before");
    QTest::addColumn<int>("dx");
    QTest::addColumn<int>("dy");
    QTest::addColumn<Fields>("expected");

    QTest::newRow("width and height stay")
        << Fields{10, 20, 30, 50, 20, 30} << 3 << -4 << Fields{13, 16, 33, 46, 20, 30};
    QTest::newRow("width and height stay even if they are wrong")
        << Fields{10, 20, 30, 50, -7, 99} << 1 << 1 << Fields{11, 21, 31, 51, -7, 99};
    QTest::newRow("sums beyond 32 bits are kept")
        << Fields{kMax, kMin, kMax, kMin, 0, 0} << kMax << kMin
        << Fields{qint64{kMax} * 2, qint64{kMin} * 2, qint64{kMax} * 2, qint64{kMin} * 2, 0, 0};
    QTest::newRow("sums beyond 64 bits wrap") << Fields{kMax64, kMin64, kMax64, kMin64, 0, 0} << 1
                                              << -1 << Fields{kMin64, kMax64, kMin64, kMax64, 0, 0};
}

void TestRect::moveRect()
{
    QFETCH(Fields, before);
    QFETCH(int, dx);
    QFETCH(int, dy);
    QFETCH(Fields, expected);
    Rect r = rectOf(before);
    MoveRect(&r, dx, dy);
    QCOMPARE(fieldsOf(r), expected);
}

void TestRect::normalizeRect_data()
{
    QTest::addColumn<Fields>("before");
    QTest::addColumn<Fields>("expected");
    constexpr qint64 kWide = (qint64{1} << 32) + 7; // its low 32 bits are 7

    QTest::newRow("both swapped, bottom takes left")
        << Fields{10, 50, 5, 20, 0, 0} << Fields{5, 20, 10, 5, 0, 0};
    QTest::newRow("in order, nothing changes")
        << Fields{5, 20, 10, 50, 1, 2} << Fields{5, 20, 10, 50, 1, 2};
    QTest::newRow("equal sides are in order")
        << Fields{5, 20, 5, 20, 1, 2} << Fields{5, 20, 5, 20, 1, 2};
    QTest::newRow("only left and right")
        << Fields{10, 20, 5, 50, -5, 30} << Fields{5, 20, 10, 50, -5, 30};
    QTest::newRow("only top and bottom, bottom takes left")
        << Fields{5, 50, 10, 20, 5, -30} << Fields{5, 20, 10, 5, 5, -30};
    QTest::newRow("right takes the low half of left")
        << Fields{kWide, 0, 5, 0, 0, 0} << Fields{5, 0, 7, 0, 0, 0};
    QTest::newRow("the low half is widened with its sign")
        << Fields{qint64{0xffffffff}, 0, 5, 0, 0, 0} << Fields{5, 0, -1, 0, 0, 0};
    QTest::newRow("left takes all of right")
        << Fields{0, 0, -kWide, 0, 0, 0} << Fields{-kWide, 0, 0, 0, 0, 0};
    QTest::newRow("bottom takes the low half of left, top all of bottom")
        << Fields{kWide, 0, kWide, -kWide, 0, 0} << Fields{kWide, -kWide, kWide, 7, 0, 0};
}

void TestRect::normalizeRect()
{
    QFETCH(Fields, before);
    QFETCH(Fields, expected);
    Rect r = rectOf(before);
    NormalizeRect(&r);
    QCOMPARE(fieldsOf(r), expected);
}

void TestRect::copyRect_copiesAllSixFields()
{
    Rect src = {1, -2, 3, kMax64, kMin64, 6};
    Rect dst = {};
    CopyRect(&dst, &src);
    QCOMPARE(fieldsOf(dst), fieldsOf(src));
}

void TestRect::copyRect_ontoItself_changesNothing()
{
    Rect r = {1, 2, 3, 4, 5, 6};
    CopyRect(&r, &r);
    QCOMPARE(fieldsOf(r), (Fields{1, 2, 3, 4, 5, 6}));
}

void TestRect::copyRect_toSmallRecord_copiesLeftAndTopAsBytes()
{
    Rect src = {0x0102030405060708, -2, 3, 4, 5, 6};
    RECT dst = {};
    CopyRect(&dst, &src);
    int64_t raw[2];
    std::memcpy(raw, &dst, sizeof raw);
    QCOMPARE(raw[0], src.left);
    QCOMPARE(raw[1], src.top);
}

void TestRect::everyHelper_returnsItsFirstArgument()
{
    Rect r = {};
    Rect other = {};
    RECT small = {};
    QCOMPARE(SetRect(&r, 1, 2, 3, 4), &r);
    QCOMPARE(MoveRect(&r, 1, 2), &r);
    QCOMPARE(NormalizeRect(&r), &r);
    QCOMPARE(CopyRect(&r, &other), &r);
    QCOMPARE(CopyRect(&small, &other), &small);
}

QTEST_GUILESS_MAIN(TestRect)
#include "test_rect.moc"
