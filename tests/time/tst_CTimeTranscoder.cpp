#include <Vokit/CTimeTranscoder>
#include <Vokit/TimeConversions>

#include <QtTest>

#include <ctime>
#include <limits>
#include <thread>
#include <type_traits>

// Run twice: in the C locale, and in one whose digits are not 0 to 9.

namespace {

using vo::CTimeTranscoder;

constexpr unsigned long long gSecond = 1000000;
constexpr unsigned long long gDay = 86400 * gSecond;
constexpr unsigned long long gEnd = std::numeric_limits<unsigned long long>::max();

struct Label
{
    int year, month, day, hour, minute, second, millisecond;
    QString display;
    QString id;

    bool operator==(const Label &other) const
    {
        return year == other.year && month == other.month && day == other.day &&
               hour == other.hour && minute == other.minute && second == other.second &&
               millisecond == other.millisecond && display == other.display && id == other.id;
    }
};

Label labelOf(CTimeTranscoder transcoder)
{
    return {transcoder.year(),
            transcoder.month(),
            transcoder.day(),
            transcoder.hour(),
            transcoder.minute(),
            transcoder.second(),
            transcoder.millisecond(),
            QString::fromStdString(transcoder.toString()),
            QString::fromStdString(transcoder.toIdString())};
}

// The rule, step by step: what the class must say whichever road it takes.
Label labelByQt(qint64 milliSeconds)
{
    const QDateTime base(QDate(1970, 1, 1), QTime(0, 0, 0, 0), Qt::UTC);
    const QDateTime local = base.addMSecs(milliSeconds).toTimeSpec(Qt::LocalTime);
    const auto text = [&local](const char *form) { return QLocale::c().toString(local, form); };
    return {text("yyyy").toInt(),       text("MM").toInt(),
            text("dd").toInt(),         text("hh").toInt(),
            text("mm").toInt(),         text("ss").toInt(),
            text("zzz").toInt(),        text("dd.MM.yyyy-hh:mm:ss.zzz"),
            text("yyyyMMdd_hhmmss_zzz")};
}

// The numbers that stand in a display text with a year of four digits.
Label labelInText(const QString &display)
{
    const auto number = [&display](int at, int digits) { return display.mid(at, digits).toInt(); };
    const auto part = [&display](int at, int digits) { return display.mid(at, digits); };
    return {number(6, 4),
            number(3, 2),
            number(0, 2),
            number(11, 2),
            number(14, 2),
            number(17, 2),
            number(20, 3),
            display,
            part(6, 4) + part(3, 2) + part(0, 2) + '_' + part(11, 2) + part(14, 2) + part(17, 2) +
                '_' + part(20, 3)};
}

/// The time zone of the process, until it goes out of scope.
class Zone
{
public:
    explicit Zone(const QByteArray &name)
        : m_before(qgetenv("TZ"))
    {
        set(name);
    }
    ~Zone() { set(m_before); }
    Zone(const Zone &) = delete;
    Zone &operator=(const Zone &) = delete;

private:
    static void set(const QByteArray &name)
    {
        qputenv("TZ", name);
        ::tzset();
    }
    QByteArray m_before;
};

} // namespace

class tst_CTimeTranscoder : public QObject
{
    Q_OBJECT

private slots:
    void units_data();
    void units();
    void zones_data();
    void zones();
    void asQtHasIt_data();
    void asQtHasIt();
    void years_data();
    void years();
    void zoneIsLookedUpEachTime();
    void madeByThreads();
    void copies();
    void signatures();
};

void tst_CTimeTranscoder::units_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<unsigned long long>("time");
    QTest::addColumn<QString>("display");
    QTest::addColumn<QString>("id");
    QTest::addColumn<int>("microsecond");
    const QString text = "01.01.1970-00:00:01.500";
    const QString id = "19700101_000001_500";
    const QString epoch = "01.01.1970-00:00:00.000";
    const QString epochId = "19700101_000000_000";
    QTest::newRow("64 bits: microseconds") << 64 << 1500000ULL << text << id << 0;
    QTest::newRow("microseconds are in no text") << 64 << 1500123ULL << text << id << 123;
    QTest::newRow("999 make no millisecond") << 64 << 1500999ULL << text << id << 999;
    QTest::newRow("64 bits: zero") << 64 << 0ULL << epoch << epochId << 0;
    QTest::newRow("one microsecond") << 64 << 1ULL << epoch << epochId << 1;
    QTest::newRow("64 bits: 2 to the 32, less one")
        << 64 << 4294967295ULL << "01.01.1970-01:11:34.967"
        << "19700101_011134_967" << 295;
    QTest::newRow("32 bits: milliseconds") << 32 << 1500ULL << text << id << 0;
    QTest::newRow("32 bits: zero") << 32 << 0ULL << epoch << epochId << 0;
    QTest::newRow("32 bits: the last") << 32 << 4294967295ULL << "19.02.1970-17:02:47.295"
                                       << "19700219_170247_295" << 0;
    QTest::newRow("a frame time") << 64
                                  << vo::toFrameTime(QDateTime(QDate(2026, 11, 21),
                                                               QTime(15, 4, 5, 123), Qt::UTC))
                                  << "21.11.2026-15:04:05.123"
                                  << "20261121_150405_123" << 0;
    QTest::newRow("the last microsecond of a leap day")
        << 64 << 1709251199999999ULL << "29.02.2024-23:59:59.999"
        << "20240229_235959_999" << 999;
}

void tst_CTimeTranscoder::units()
{
    QFETCH(int, bits);
    QFETCH(unsigned long long, time);
    QFETCH(QString, display);
    const Zone zone("UTC");
    CTimeTranscoder made =
        bits == 64 ? CTimeTranscoder(time) : CTimeTranscoder(static_cast<unsigned int>(time));
    QCOMPARE(QString::fromStdString(made.toString()), display);
    QTEST(QString::fromStdString(made.toIdString()), "id");
    QTEST(made.microsecond(), "microsecond");
    QVERIFY(labelOf(made) == labelInText(display));
}

void tst_CTimeTranscoder::zones_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<unsigned long long>("seconds");
    QTest::addColumn<QString>("display");
    // Texts from the tz database by another program.
    const auto add = [](const char *zone, unsigned long long seconds, const char *display) {
        QTest::addRow("%s, %s", zone, display)
            << QByteArray(zone) << seconds << QString::fromLatin1(display);
    };
    add("UTC", 0, "01.01.1970-00:00:00.123");
    add("UTC", 1774746000, "29.03.2026-01:00:00.123");
    add("<+01>-1", 0, "01.01.1970-01:00:00.123");
    add("Europe/Berlin", 0, "01.01.1970-01:00:00.123");
    add("Europe/Berlin", 1774745999, "29.03.2026-01:59:59.123");
    add("Europe/Berlin", 1774746000, "29.03.2026-03:00:00.123");
    add("Europe/Berlin", 1792889999, "25.10.2026-02:59:59.123");
    add("Europe/Berlin", 1792890000, "25.10.2026-02:00:00.123");
    add("Europe/Berlin", 1792893599, "25.10.2026-02:59:59.123");
    add("Europe/Berlin", 1792893600, "25.10.2026-03:00:00.123");
    add("America/New_York", 0, "31.12.1969-19:00:00.123");
    add("America/New_York", 1772953199, "08.03.2026-01:59:59.123");
    add("America/New_York", 1772953200, "08.03.2026-03:00:00.123");
    add("America/New_York", 1793512799, "01.11.2026-01:59:59.123");
    add("America/New_York", 1793512800, "01.11.2026-01:00:00.123");
    add("Asia/Kolkata", 0, "01.01.1970-05:30:00.123");
    add("Asia/Kolkata", 1782000000, "21.06.2026-05:30:00.123");
    add("Australia/Lord_Howe", 1775314799, "05.04.2026-01:59:59.123");
    add("Australia/Lord_Howe", 1775314800, "05.04.2026-01:30:00.123");
    add("Australia/Lord_Howe", 1791041399, "04.10.2026-01:59:59.123");
    add("Australia/Lord_Howe", 1791041400, "04.10.2026-02:30:00.123");
    add("Pacific/Apia", 1325239199, "29.12.2011-23:59:59.123");
    add("Pacific/Apia", 1325239200, "31.12.2011-00:00:00.123"); // the zone left a day out
}

void tst_CTimeTranscoder::zones()
{
    QFETCH(QByteArray, zone);
    QFETCH(unsigned long long, seconds);
    QFETCH(QString, display);
    const Zone set(zone);
    CTimeTranscoder made(seconds * gSecond + 123456);
    QCOMPARE(QString::fromStdString(made.toString()), display);
    QVERIFY(labelOf(made) == labelInText(display));
    QCOMPARE(made.microsecond(), 456);
}

void tst_CTimeTranscoder::asQtHasIt_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char *zone : {"UTC", "Europe/Berlin", "America/New_York", "Asia/Kolkata",
                             "Australia/Lord_Howe", "Pacific/Apia", "right/Europe/Berlin"})
        QTest::newRow(zone) << QByteArray(zone);
}

void tst_CTimeTranscoder::asQtHasIt()
{
    QFETCH(QByteArray, zone);
    const Zone set(zone);
    QVector<unsigned long long> times{
        0,          999,      1000,         gEnd,
        gEnd - 999, gEnd / 2, gEnd / 2 + 1, 1483228826 * gSecond}; // a leap second where they count
    // Odd steps, so that all hours and milliseconds come up; then far away in longer ones.
    for (unsigned long long time = 0; time < 75 * 366 * gDay; time += 9 * gDay + 12345678901)
        times.append(time);
    for (unsigned long long time = 0; time < gEnd / 2; time += gEnd / 200 + 98765432109)
        times.append(time);
    // Around where a year may begin, in any zone, and where summer time may begin and end.
    for (const int year : {1971, 2000, 2026, 2037, 2038, 2039, 2106, 9999, 10000, 100000}) {
        const qint64 begin = QDateTime(QDate(year, 1, 1), QTime(0, 0), Qt::UTC).toMSecsSinceEpoch();
        for (int hour = -14; hour <= 14; ++hour)
            times.append(static_cast<unsigned long long>(begin + hour * 3600000) * 1000);
        if (year > 2106)
            continue;
        // Every 45 minutes in one year of each road.
        const int step = year == 2026 || year == 2038 ? 3 : 67;
        for (int quarter = -200; quarter < 366 * 96; quarter += step)
            times.append(static_cast<unsigned long long>(begin + quarter * 900000LL - 1) * 1000);
    }
    for (const unsigned long long time : qAsConst(times)) {
        const Label made = labelOf(CTimeTranscoder(time));
        const Label expected = labelByQt(static_cast<qint64>(time / 1000));
        if (!(made == expected))
            QCOMPARE(QByteArray::number(time) + ": " + made.display.toLatin1(),
                     QByteArray::number(time) + ": " + expected.display.toLatin1());
        QVERIFY(made == expected);
    }
    for (unsigned int milliSeconds = 0; milliSeconds < 4200000000U; milliSeconds += 12345678) {
        QVERIFY(labelOf(CTimeTranscoder(milliSeconds)) == labelByQt(milliSeconds));
        QCOMPARE(CTimeTranscoder(milliSeconds).microsecond(), 0);
    }
}

void tst_CTimeTranscoder::years_data()
{
    QTest::addColumn<unsigned long long>("time");
    QTest::addColumn<int>("year");
    QTest::addColumn<QString>("display");
    QTest::addColumn<QString>("id");
    QTest::newRow("the last without Qt") << 2145916799999999ULL << 2037 << "31.12.2037-23:59:59.999"
                                         << "20371231_235959_999";
    QTest::newRow("the first by Qt") << 2145916800000000ULL << 2038 << "01.01.2038-00:00:00.000"
                                     << "20380101_000000_000";
    QTest::newRow("the last with four digits")
        << 253402300799999999ULL << 9999 << "31.12.9999-23:59:59.999"
        << "99991231_235959_999";
    QTest::newRow("five digits") << 253402300800000000ULL << 10000 << "01.01.10000-00:00:00.000"
                                 << "100000101_000000_000";
    QTest::newRow("the end: six digits") << gEnd << 586524 << "19.01.586524-08:01:49.551"
                                         << "5865240119_080149_551";
}

void tst_CTimeTranscoder::years()
{
    QFETCH(unsigned long long, time);
    const Zone zone("UTC");
    CTimeTranscoder made(time);
    QTEST(made.year(), "year");
    QTEST(QString::fromStdString(made.toString()), "display");
    QTEST(QString::fromStdString(made.toIdString()), "id");
    QCOMPARE(made.microsecond(), static_cast<int>(time % 1000));
}

void tst_CTimeTranscoder::zoneIsLookedUpEachTime()
{
    const Zone restored("UTC");
    QCOMPARE(CTimeTranscoder(0ULL).hour(), 0);
    qputenv("TZ", "<+01>-1"); // no tzset() by the caller
    QCOMPARE(CTimeTranscoder(0ULL).hour(), 1);
    QCOMPARE(CTimeTranscoder(0ULL).day(), 1);
    qputenv("TZ", "<-03>3");
    QCOMPARE(CTimeTranscoder(0U).hour(), 21);
    QCOMPARE(CTimeTranscoder(0U).day(), 31);
    QCOMPARE(CTimeTranscoder(0U).year(), 1969);
}

void tst_CTimeTranscoder::madeByThreads()
{
    const auto allRight = [](bool *right) {
        *right = true;
        for (int i = 0; i < 1000; ++i) {
            const bool early = i % 2 == 0; // without Qt, or by it
            CTimeTranscoder made(early ? 0ULL : 2145916800000000ULL);
            *right = *right &&
                     made.toIdString() == (early ? "19700101_053000_000" : "20380101_053000_000");
        }
    };
    bool first = false, second = false;
    std::thread one(allRight, &first);
    std::thread other(allRight, &second);
    one.join();
    other.join();
    QVERIFY(first && second);
}

void tst_CTimeTranscoder::copies()
{
    CTimeTranscoder original(1500123ULL);
    CTimeTranscoder copy(original);
    CTimeTranscoder assigned(0U);
    assigned = copy;
    for (CTimeTranscoder *each : {&original, &copy, &assigned}) {
        QCOMPARE(each->toString(), std::string("01.01.1970-05:30:01.500"));
        QCOMPARE(each->toIdString(), std::string("19700101_053001_500"));
        QCOMPARE(each->microsecond(), 123);
        QCOMPARE(each->millisecond(), 500);
    }
}

void tst_CTimeTranscoder::signatures()
{
    QVERIFY((std::is_same_v<decltype(&CTimeTranscoder::hour), int (CTimeTranscoder::*)()>));
    QVERIFY(
        (std::is_same_v<decltype(&CTimeTranscoder::toString), std::string (CTimeTranscoder::*)()>));
    QVERIFY((std::is_same_v<decltype(&CTimeTranscoder::toIdString),
                            std::string (CTimeTranscoder::*)()>));
    QVERIFY(!std::is_polymorphic_v<CTimeTranscoder>);
    QVERIFY((std::is_constructible_v<CTimeTranscoder, unsigned long long>));
    QVERIFY((std::is_constructible_v<CTimeTranscoder, unsigned int>));
}

QTEST_APPLESS_MAIN(tst_CTimeTranscoder)
#include "tst_CTimeTranscoder.moc"
