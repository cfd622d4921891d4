#include <Vokit/CTimeTranscoder>
#include <Vokit/TimeConversions>

#include <QtTest>

#include <ctime>
#include <limits>
#include <type_traits>

namespace {

QDateTime utc(const char *iso)
{
    QDateTime result = QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODateWithMs);
    result.setTimeSpec(Qt::UTC);
    return result;
}

} // namespace

class tst_TimeConversions : public QObject
{
    Q_OBJECT

private slots:
    void constants();
    void fromCounts_data();
    void fromCounts();
    void fromLocalSeconds_data();
    void fromLocalSeconds();
    void toCounts_data();
    void toCounts();
    void fractions();
    void resultTypes();
    void roundTripLosesMilliseconds();
    void skippedLocalTime();
    void clocks();
};

void tst_TimeConversions::constants()
{
    QCOMPARE(vo::CTimeTranscoder::MILLISECONDS_PER_DAY, 86400000LL);
    QCOMPARE(vo::CTimeTranscoder::MICROSECONDS_PER_DAY, 86400000000LL);
}

void tst_TimeConversions::fromCounts_data()
{
    QTest::addColumn<QDateTime>("made");
    QTest::addColumn<QDateTime>("expected");
    const QDateTime first = utc("1970-01-01T00:00:01");
    const QDateTime beforeWrap = utc("2106-02-07T06:28:11"); // -5 seconds, cut to 32 bits
    const long long least = std::numeric_limits<long long>::min();

    QTest::newRow("milliseconds: below a second is dropped") << vo::fromMilliSeconds(1999) << first;
    QTest::newRow("milliseconds: zero") << vo::fromMilliSeconds(0) << utc("1970-01-01T00:00:00");
    QTest::newRow("milliseconds: negative is cut to 32 bits")
        << vo::fromMilliSeconds(-5000) << beforeWrap;
    QTest::newRow("milliseconds: division truncates toward zero")
        << vo::fromMilliSeconds(-999) << utc("1970-01-01T00:00:00");
    QTest::newRow("milliseconds: a summer day")
        << vo::fromMilliSeconds(1782000000123) << utc("2026-06-21T00:00:00");
    QTest::newRow("milliseconds: the last second")
        << vo::fromMilliSeconds(4294967295999) << utc("2106-02-07T06:28:15");
    QTest::newRow("milliseconds: one further starts again")
        << vo::fromMilliSeconds(4294967296000) << utc("1970-01-01T00:00:00");
    QTest::newRow("microseconds") << vo::fromMicroSeconds(1999999) << first;
    QTest::newRow("microseconds: negative") << vo::fromMicroSeconds(-5000000) << beforeWrap;
    QTest::newRow("nanoseconds") << vo::fromNanoSeconds(1999999999) << first;
    QTest::newRow("nanoseconds: negative") << vo::fromNanoSeconds(-5000000000) << beforeWrap;
    QTest::newRow("frame time") << vo::fromFrameTime(1500000) << first;
    QTest::newRow("frame time: unsigned all the way")
        << vo::fromFrameTime(18446744073709551615ULL)
        << QDateTime::fromMSecsSinceEpoch((18446744073709ULL % 4294967296ULL) * 1000, Qt::UTC);
    QTest::newRow("seconds of a double") << vo::fromSeconds(1.999) << first;
    QTest::newRow("seconds of a double: negative") << vo::fromSeconds(-5.0) << beforeWrap;
    // Beyond 64 bits of nanoseconds a double gives the least of them, as the processor does.
    const QDateTime overflown = vo::fromNanoSeconds(least);
    QTest::newRow("seconds of a double: too great") << vo::fromSeconds(1e30) << overflown;
    QTest::newRow("seconds of a double: too small") << vo::fromSeconds(-1e30) << overflown;
    QTest::newRow("seconds of a double: NaN")
        << vo::fromSeconds(std::numeric_limits<double>::quiet_NaN()) << overflown;
}

void tst_TimeConversions::fromCounts()
{
    QFETCH(QDateTime, made);
    QFETCH(QDateTime, expected);
    QCOMPARE(made, expected);
    QCOMPARE(made.timeSpec(), Qt::UTC);
    QCOMPARE(made.time().msec(), 0);
}

void tst_TimeConversions::fromLocalSeconds_data()
{
    QTest::addColumn<long long>("count");
    QTest::addColumn<qint64>("secondsSinceEpoch");
    QTest::newRow("one") << 1LL << qint64(1);
    QTest::newRow("negative is cut to 32 bits") << -5LL << qint64(4294967291);
    QTest::newRow("the last") << 4294967295LL << qint64(4294967295);
    QTest::newRow("one further starts again") << 4294967296LL << qint64(0);
}

void tst_TimeConversions::fromLocalSeconds()
{
    QFETCH(long long, count);
    const QDateTime made = vo::fromSeconds(count);
    QCOMPARE(made.timeSpec(), Qt::LocalTime);
    QTEST(made.toSecsSinceEpoch(), "secondsSinceEpoch");
}

void tst_TimeConversions::toCounts_data()
{
    QTest::addColumn<QDateTime>("dateTime");
    QTest::addColumn<long long>("milliSeconds");
    QTest::newRow("the epoch") << utc("1970-01-01T00:00:00") << 0LL;
    QTest::newRow("with milliseconds") << utc("1970-01-01T00:00:01.250") << 1250LL;
    QTest::newRow("a summer day") << utc("2026-06-21T00:00:00.123") << 1782000000123LL;
    QTest::newRow("the last second") << utc("2106-02-07T06:28:15.999") << 4294967295999LL;
    QTest::newRow("one further: out of reach") << utc("2106-02-07T06:28:16.5") << 4294967295500LL;
    QTest::newRow("before the epoch: out of reach")
        << utc("1969-12-31T23:59:58.750") << 4294967295750LL;
    QTest::newRow("the last second before the epoch counts as 0")
        << utc("1969-12-31T23:59:59.500") << 500LL;
    QTest::newRow("invalid: its millisecond is -1") << QDateTime() << 4294967294999LL;
    // Half past four in the zone of this test.
    QTest::newRow("local time") << QDateTime(QDate(2026, 6, 21), QTime(5, 30, 0, 123),
                                             Qt::LocalTime)
                                << 1782000000123LL;
    QTest::newRow("with an offset")
        << QDateTime(QDate(2026, 6, 21), QTime(2, 0, 0, 123), Qt::OffsetFromUTC, 7200)
        << 1782000000123LL;
}

void tst_TimeConversions::toCounts()
{
    QFETCH(QDateTime, dateTime);
    QFETCH(long long, milliSeconds);
    QCOMPARE(vo::toMilliSeconds(dateTime), milliSeconds);
    QCOMPARE(vo::toMicroSeconds(dateTime), milliSeconds * 1000);
    QCOMPARE(vo::toNanoSeconds(dateTime), milliSeconds * 1000000);
    QCOMPARE(vo::toFrameTime(dateTime), static_cast<unsigned long long>(milliSeconds * 1000));
    QCOMPARE(vo::toSecondsFrac(dateTime), static_cast<double>(milliSeconds) / 1000);
    if (dateTime.isValid())
        QCOMPARE(vo::toSeconds(dateTime), milliSeconds / 1000);
    else
        QCOMPARE(vo::toSeconds(dateTime), 4294967295LL);
}

void tst_TimeConversions::fractions()
{
    QCOMPARE(vo::toSecondsFrac(1500000ULL), 1.5);
    QCOMPARE(vo::toSecondsFrac(0ULL), 0.0);
    QCOMPARE(vo::toSecondsFrac(18446744073709551615ULL), 18446744073709.551615);
    QCOMPARE(vo::toSecondsFrac(utc("1970-01-01T00:00:02.500")), 2.5);
}

void tst_TimeConversions::resultTypes()
{
    QVERIFY((std::is_same_v<decltype(vo::toSeconds(QDateTime())), long long>));
    QVERIFY((std::is_same_v<decltype(vo::currentSeconds()), long long>));
    QVERIFY((std::is_same_v<decltype(vo::toFrameTime(QDateTime())), unsigned long long>));
    QVERIFY((std::is_same_v<decltype(vo::currentFrameTime()), unsigned long long>));
    QCOMPARE(vo::fromSeconds(1LL).timeSpec(), Qt::LocalTime);
    QCOMPARE(vo::fromSeconds(1.0).timeSpec(), Qt::UTC);
    QCOMPARE(vo::fromSeconds(1LL), vo::fromSeconds(1.0)); // one instant
    QCOMPARE(vo::fromSeconds(1).timeSpec(), Qt::LocalTime);
    QCOMPARE(vo::fromSeconds(std::time_t(1)), vo::fromSeconds(1LL));
    QCOMPARE(vo::fromSeconds(quint32(4294967295)), vo::fromSeconds(4294967295LL));
    QCOMPARE(vo::fromSeconds(1.5F).timeSpec(), Qt::UTC);
}

void tst_TimeConversions::roundTripLosesMilliseconds()
{
    const QDateTime taken = utc("2026-06-21T00:00:00.123");
    QCOMPARE(vo::fromMilliSeconds(vo::toMilliSeconds(taken)), utc("2026-06-21T00:00:00"));
    QCOMPARE(vo::fromFrameTime(vo::toFrameTime(taken)), utc("2026-06-21T00:00:00"));
}

void tst_TimeConversions::skippedLocalTime()
{
    qputenv("TZ", "Europe/Berlin"); // 02:30 is skipped on this day
    const QDateTime skipped(QDate(2026, 3, 29), QTime(2, 30), Qt::LocalTime);
    const long long seconds = vo::toSeconds(skipped);
    const uint asQtHasIt = skipped.toTimeSpec(Qt::UTC).toTime_t();
    qputenv("TZ", "Asia/Kolkata");
    QCOMPARE(seconds, static_cast<long long>(asQtHasIt));
    QVERIFY(seconds != 4294967295LL);
}

void tst_TimeConversions::clocks()
{
    const long long before = QDateTime::currentMSecsSinceEpoch();
    const long long seconds = vo::currentSeconds();
    const double fraction = vo::currentSecondsFrac();
    const long long milliSeconds = vo::currentMilliSeconds();
    const long long microSeconds = vo::currentMicroSeconds();
    const long long nanoSeconds = vo::currentNanoSeconds();
    const unsigned long long frameTime = vo::currentFrameTime();
    const long long after = QDateTime::currentMSecsSinceEpoch();

    QVERIFY(before / 1000 <= seconds && seconds <= after / 1000);
    // A millisecond wider: two roads to the same fraction may round to neighbouring doubles.
    QVERIFY(static_cast<double>(before - 1) / 1000 <= fraction);
    QVERIFY(fraction <= static_cast<double>(after + 1) / 1000);
    QVERIFY(before <= milliSeconds && milliSeconds <= after);
    QVERIFY(before * 1000 <= microSeconds && microSeconds <= after * 1000);
    QVERIFY(before * 1000000 <= nanoSeconds && nanoSeconds <= after * 1000000);
    QVERIFY(static_cast<unsigned long long>(before) * 1000 <= frameTime);
    QVERIFY(frameTime <= static_cast<unsigned long long>(after) * 1000);
    QCOMPARE(frameTime % 1000, 0ULL);
}

QTEST_APPLESS_MAIN(tst_TimeConversions)
#include "tst_TimeConversions.moc"
