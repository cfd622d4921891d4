#include "actionlog/ShortDateFormat_p.h"

#include <QtTest>

#include <random>

using vo::ShortDateFormat;

/// The format taken apart gives what Qt gives, or nothing.
class tst_ShortDateFormat : public QObject
{
    Q_OBJECT

private slots:
    void everyLocale();
    void knownFormats_data();
    void knownFormats();
    void otherTexts_data();
    void otherTexts();
    void changesOfTheClock();
    void datesLeftToQt();
};

namespace {

constexpr quint32 gSeed = 20261121;

QDateTime randomDate(std::mt19937 &random)
{
    const auto below = [&random](int bound) {
        return static_cast<int>(random() % static_cast<quint32>(bound));
    };
    return {QDate(1902, 1, 1).addDays(below(365 * 190)), QTime(below(24), below(60), below(60))};
}

bool sameAsQt(const std::optional<QDateTime> &date, const QDateTime &qt)
{
    return !date ||
           (*date == qt && date->isValid() == qt.isValid() && date->timeSpec() == qt.timeSpec() &&
            date->date() == qt.date() && date->time() == qt.time());
}

} // namespace

void tst_ShortDateFormat::everyLocale()
{
    std::mt19937 random(gSeed);
    int trusted = 0;
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    for (const QLocale &locale : locales) {
        const ShortDateFormat format(locale);
        trusted += format.print(QDateTime(QDate(2026, 3, 5), QTime(12, 0))) ? 1 : 0;
        for (int i = 0; i < 10; ++i) {
            const QDateTime date = randomDate(random);
            const QString expected = locale.toString(date, QLocale::ShortFormat);
            const QString text = format.print(date).value_or(expected);
            QVERIFY2(text == expected, qPrintable(locale.name() + ": " + text + ", " + expected));
            // Not for every text: in some locales Qt's parser reads beyond its own.
            const auto read = format.read(text);
            QVERIFY2(!read || sameAsQt(read, locale.toDateTime(text, QLocale::ShortFormat)),
                     qPrintable(locale.name() + ": " + text));
        }
    }
    QVERIFY2(trusted > locales.size() / 2, qPrintable(QString::number(trusted)));
}

void tst_ShortDateFormat::knownFormats_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("back");
    const QDate day(2026, 11, 21);
    QTest::newRow("C") << "C"
                       << "21 Nov 2026 15:04:05" << QDateTime(day, QTime(15, 4, 5));
    QTest::newRow("German") << "de_DE"
                            << "21.11.26 15:04" << QDateTime(QDate(1926, 11, 21), QTime(15, 4));
    QTest::newRow("French") << "fr_FR"
                            << "21/11/2026 15:04" << QDateTime(day, QTime(15, 4));
    QTest::newRow("American") << "en_US"
                              << "11/21/26 3:04 PM" << QDateTime(QDate(1926, 11, 21), QTime(15, 4));
}

// These are read and printed without Qt, and that is what makes a log fast.
void tst_ShortDateFormat::knownFormats()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QDateTime, back);
    const ShortDateFormat format{QLocale(name)};
    const auto printed = format.print(QDateTime(QDate(2026, 11, 21), QTime(15, 4, 5)));
    QVERIFY(printed);
    QCOMPARE(*printed, text);
    const auto read = format.read(text);
    QVERIFY(read);
    QCOMPARE(*read, back);
}

void tst_ShortDateFormat::otherTexts_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"",
                             " ",
                             "21",
                             "21 Nov 2026",
                             "21 Nov 2026 15:04",
                             "21 Nov 2026 15:04:05 ",
                             " 21 Nov 2026 15:04:05",
                             "21 Nov 2026 15:04:05.5",
                             "21 nov 2026 15:04:05",
                             "21 November 2026 15:04:05",
                             "021 Nov 2026 15:04:05",
                             "1 Nov 2026 15:04:05",
                             "01 Nov 2026 15:04:05",
                             "21 Nov 26 15:04:05",
                             "21 Nov 0026 15:04:05",
                             "21 Nov 12026 15:04:05",
                             "31 Nov 2026 15:04:05",
                             "30 Feb 2026 15:04:05",
                             "29 Feb 2024 15:04:05",
                             "21 Nov 2026 24:00:00",
                             "21 Nov 2026 15:60:00",
                             "21 Nov 2026 5:04:05",
                             "21 Nov 2026 15:4:5",
                             "21  Nov 2026 15:04:05",
                             "21-Nov-2026 15:04:05",
                             "-1 Nov 2026 15:04:05",
                             "21.11.26 15:04",
                             "11/21/26 0:04 PM",
                             "11/21/26 00:04 AM",
                             "11/21/26 12:04 AM",
                             "11/21/26 12:04 PM",
                             "11/21/26 13:04 AM",
                             "11/21/26 13:04 PM",
                             "11/21/26 25:04 AM",
                             "11/21/26 99:04 PM",
                             "garbage",
                             "0 Nov 2026 15:04:05"})
        QTest::newRow(text) << QString(text);
}

void tst_ShortDateFormat::otherTexts()
{
    QFETCH(QString, text);
    for (const char *name : {"C", "de_DE", "fr_FR", "en_US", "sv_SE", "ja_JP", "ar_EG"}) {
        const QLocale locale(name);
        QVERIFY2(sameAsQt(ShortDateFormat(locale).read(text),
                          locale.toDateTime(text, QLocale::ShortFormat)),
                 name);
    }
}

// Hours that are skipped, and hours that come twice. Which of the two is taken depends on what date
// the C library saw last.
void tst_ShortDateFormat::changesOfTheClock()
{
    const QByteArray before = qgetenv("TZ");
    const QLocale locale = QLocale::c();
    for (const char *zone : {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "UTC"}) {
        qputenv("TZ", zone);
        tzset();
        const ShortDateFormat format(locale);
        for (const QDate &day : {QDate(2026, 3, 8), QDate(2026, 3, 29), QDate(2026, 4, 5),
                                 QDate(2026, 10, 4), QDate(2026, 10, 25), QDate(2026, 11, 1)}) {
            for (int minute = 0; minute < 5 * 60; minute += 10) {
                const QString text = QString("%1 %2 2026 %3:%4:00")
                                         .arg(day.day())
                                         .arg(locale.monthName(day.month(), QLocale::ShortFormat))
                                         .arg(minute / 60, 2, 10, QLatin1Char('0'))
                                         .arg(minute % 60, 2, 10, QLatin1Char('0'));
                const QDateTime qt = locale.toDateTime(text, QLocale::ShortFormat);
                for (int month : {1, 7}) {
                    QVERIFY(QDateTime(QDate(2026, month, 1), QTime(12, 0)).toSecsSinceEpoch() > 0);
                    QVERIFY2(sameAsQt(format.read(text), qt), qPrintable(zone + (": " + text)));
                }
            }
        }
    }
    qputenv("TZ", before);
    tzset();
}

void tst_ShortDateFormat::datesLeftToQt()
{
    const ShortDateFormat format(QLocale::c());
    QVERIFY(!format.print(QDateTime()));
    QVERIFY(!format.print(QDateTime(QDate(999, 1, 1), QTime(0, 0))));
    QVERIFY(!format.print(QDateTime(QDate(10000, 1, 1), QTime(0, 0))));
    QVERIFY(!format.print(QDateTime(QDate(-44, 3, 15), QTime(0, 0))));
    QVERIFY(!format.read("21 Nov 2026 15:04"));
    QVERIFY(!ShortDateFormat(QLocale("ar_EG")).print(QDateTime(QDate(2026, 3, 5), QTime(12, 0))));
}

QTEST_APPLESS_MAIN(tst_ShortDateFormat)
#include "tst_ShortDateFormat.moc"
