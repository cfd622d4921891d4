#include "TestClock.h"

#include "actionlog/LocalClock_p.h"

#include <QtTest>

using test::TestClock;
using vo::LocalClock;

/// The clock of the log shows what Qt's shows.
class tst_LocalClock : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void sameAsQt_data();
    void sameAsQt();
    void zoneThatChanges();
    void hoursThatComeTwice();
};

namespace {

void setZone(const char *zone)
{
    if (zone)
        qputenv("TZ", zone);
    else
        qunsetenv("TZ");
}

bool isQtsNow()
{
    const QDateTime ours = LocalClock::now();
    const QDateTime qts = QDateTime::currentDateTime();
    return ours == qts && ours.isValid() == qts.isValid() && ours.timeSpec() == Qt::LocalTime &&
           ours.date() == qts.date() && ours.time() == qts.time() &&
           ours.offsetFromUtc() == qts.offsetFromUtc() &&
           ours.toMSecsSinceEpoch() == qts.toMSecsSinceEpoch();
}

} // namespace

void tst_LocalClock::cleanup()
{
    setZone("Asia/Kolkata");
}

void tst_LocalClock::sameAsQt_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char *zone :
         {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Asia/Kolkata",
          "Pacific/Apia", "UTC", "Europe/Dublin", "right/Europe/Berlin"})
        QTest::newRow(zone) << QByteArray(zone);
    QTest::newRow("none") << QByteArray();
}

void tst_LocalClock::sameAsQt()
{
    QFETCH(QByteArray, zone);
    setZone(zone.isNull() ? nullptr : zone.constData());
    const auto check = [](const QDateTime &now) {
        TestClock::set(now);
        if (!isQtsNow())
            QFAIL(qPrintable(now.toString(Qt::ISODateWithMs)));
    };
    // A year by hours, with every change of the offset; the changes of 2026 by minutes.
    const QDateTime start(QDate(2026, 1, 1), QTime(0, 0, 0, 123), Qt::UTC);
    for (int hour = 0; hour < 366 * 24; ++hour)
        check(start.addSecs(hour * 3600LL));
    for (const QDate &day : {QDate(2026, 3, 8), QDate(2026, 3, 29), QDate(2026, 4, 4),
                             QDate(2026, 10, 3), QDate(2026, 10, 25), QDate(2026, 11, 1)}) {
        for (int minute = 0; minute < 24 * 60; ++minute)
            check(QDateTime(day, QTime(0, 0, 59, 999), Qt::UTC).addSecs(minute * 60LL));
    }
    // A leap second, where the zone counts them: as seconds since 1970, 26 came before it.
    for (int second = -3; second < 3; ++second)
        check(QDateTime(QDate(2017, 1, 1), QTime(0, 0, 26), Qt::UTC).addSecs(second));
    // A day that was left out, and the ends of what a clock of today may be set to.
    for (int hour = -48; hour < 48; ++hour)
        check(QDateTime(QDate(2011, 12, 30), QTime(0, 0), Qt::UTC).addSecs(hour * 3600LL));
    // From 2038 on Qt repeats the summer time of 2037, which the system doesn't.
    for (int hour = 0; hour < 3 * 366 * 24; hour += 7)
        check(QDateTime(QDate(2037, 12, 31), QTime(20, 0), Qt::UTC).addSecs(hour * 3600LL));
    check(QDateTime(QDate(1970, 1, 1), QTime(0, 0, 1), Qt::UTC));
    check(QDateTime(QDate(2106, 2, 7), QTime(6, 28, 16), Qt::UTC));
}

void tst_LocalClock::zoneThatChanges()
{
    TestClock::set(QDateTime(QDate(2026, 7, 1), QTime(12, 0), Qt::UTC));
    for (int round = 0; round < 2; ++round) {
        for (const char *zone : {"Europe/Berlin", static_cast<const char *>(nullptr),
                                 "America/New_York", "", "Asia/Kolkata"}) {
            setZone(zone);
            QVERIFY2(isQtsNow(), zone);
        }
    }
}

// Whatever date the process asked about before, the first one is meant.
void tst_LocalClock::hoursThatComeTwice()
{
    struct Row
    {
        const char *zone;
        QDateTime local;
        int offset; // of the first, in minutes
    };
    const Row rows[] = {
        {"Europe/Berlin", QDateTime(QDate(2026, 10, 25), QTime(2, 30)), 120},
        {"America/New_York", QDateTime(QDate(2026, 11, 1), QTime(1, 0)), -240},
        {"Australia/Lord_Howe", QDateTime(QDate(2026, 4, 5), QTime(1, 45)), 660},
        {"America/Havana", QDateTime(QDate(2026, 11, 1), QTime(0, 0)), -240},
    };
    for (const Row &row : rows) {
        setZone(row.zone);
        for (int month : {1, 7}) {
            QVERIFY(QDateTime(QDate(2026, month, 1), QTime(12, 0)).toSecsSinceEpoch() > 0);
            const QDateTime local(row.local.date(), row.local.time());
            const QDateTime first = LocalClock::firstOf(local);
            QCOMPARE(first.offsetFromUtc(), row.offset * 60);
            QCOMPARE(first.date(), local.date());
            QCOMPARE(first.time(), local.time());
            QVERIFY(!LocalClock::isEven(local.date()));
            const QDateTime other = local.addDays(7);
            QVERIFY(LocalClock::isEven(other.date()));
            QCOMPARE(LocalClock::firstOf(other), other);
        }
    }
    setZone("UTC");
    QVERIFY(LocalClock::isEven(QDate(2026, 10, 25)));
    QVERIFY(!LocalClock::firstOf(QDateTime()).isValid());
}

QTEST_APPLESS_MAIN(tst_LocalClock)
#include "tst_LocalClock.moc"
