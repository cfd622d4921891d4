#include "RowFixture.h"

#include <QProcess>
#include <QtTest>

#include <cstdio>

/// Qt takes the system's locale once, at its first use: so this program starts itself anew, under
/// another locale, to read rows.

namespace {

// Prints the columns of the entries of a file as they are read with a reference date.
int showRows(const QStringList &arguments)
{
    const QByteArray element = arguments.value(2).toUtf8();
    vo::VolRow row;
    if (!arguments.value(3).isEmpty())
        row.setReferenceDate(QDateTime::fromString(arguments.value(3), Qt::ISODate));
    row.read(test::volEntry(element));
    const QStringList columns{test::column(row, "time"), test::column(row, "Time"),
                              test::column(row, "from"), row.timeText(), row.description()};
    std::fputs(columns.join('|').toUtf8().constData(), stdout);
    return 0;
}

QString run(const QString &locale, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", locale);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return "failed";
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString element(const QString &time, const QString &from)
{
    return R"(<Entry ID="ExpS" Text="%1%2%3%4 %5" Time=")" + time + R"(" from=")" + from +
           R"(" to  =")" + from + "\"/>";
}

} // namespace

class tst_VolRowLocales : public QObject
{
    Q_OBJECT

private slots:
    void years_data();
    void years();
    void otherLocales_data();
    void otherLocales();
};

void tst_VolRowLocales::years_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reference");
    QTest::addColumn<QString>("date");
    const auto row = [](const char *name, const char *text, const char *american,
                        const char *reference, const char *date) {
        QTest::addRow("de_DE, %s", name) << "de_DE.UTF-8" << text << reference << QString(date);
        QTest::addRow("en_US, %s", name) << "en_US.UTF-8" << american << reference << QString(date);
    };
    const char *const now = "2026-11-21T15:04:05";
    row("this year", "21.11.26 15:04", "11/21/26 3:04 PM", now, "date:2026-11-21T15:04:00");
    row("next year", "03.05.27 00:04", "5/3/27 12:04 AM", now, "date:2027-05-03T00:04:00");
    row("50 years on", "03.05.76 00:04", "5/3/76 12:04 AM", now, "date:2076-05-03T00:04:00");
    row("51 years on is 49 ago", "03.05.77 00:04", "5/3/77 12:04 AM", now,
        "date:1977-05-03T00:04:00");
    row("the last century", "31.12.99 23:59", "12/31/99 11:59 PM", now, "date:1999-12-31T23:59:00");
    row("a file of the last century", "31.12.99 23:59", "12/31/99 11:59 PM", "1999-12-31T23:00:00",
        "date:1999-12-31T23:59:00");
    row("across the century", "01.01.00 00:01", "1/1/00 12:01 AM", "1999-12-31T23:00:00",
        "date:2000-01-01T00:01:00");
    row("back across it", "31.12.99 23:59", "12/31/99 11:59 PM", "2000-01-01T00:01:00",
        "date:1999-12-31T23:59:00");
    row("the next century", "01.01.00 00:01", "1/1/00 12:01 AM", "2099-12-31T23:00:00",
        "date:2100-01-01T00:01:00");
    row("a leap day", "29.02.24 12:00", "2/29/24 12:00 PM", now, "date:2024-02-29T12:00:00");
    row("no date", "31.02.26 12:00", "2/31/26 12:00 PM", now, "NULL");
    row("four digits", "21.11.2026 15:04", "11/21/2026 3:04 PM", now, "NULL");
    row("of the locale C", "21 Nov 2026 15:04:05", "21 Nov 2026 15:04:05", now, "NULL");
}

void tst_VolRowLocales::years()
{
    QFETCH(QString, locale);
    QFETCH(QString, text);
    QFETCH(QString, reference);
    QFETCH(QString, date);
    const QString description = text + ' ' + text;
    QCOMPARE(run(locale, {"show", element(text, text), reference}),
             QStringList({date, date, date, text, description}).join('|'));
}

void tst_VolRowLocales::otherLocales_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("date");
    // Years of four digits are what they are, whatever the reference.
    QTest::newRow("C") << "C.UTF-8"
                       << "21 Nov 1926 15:04:05"
                       << "date:1926-11-21T15:04:05";
    QTest::newRow("fr_FR") << "fr_FR.UTF-8"
                           << "21/11/1926 15:04"
                           << "date:1926-11-21T15:04:00";
    QTest::newRow("ja_JP") << "ja_JP.UTF-8"
                           << "1926/11/21 15:04"
                           << "date:1926-11-21T15:04:00";
}

void tst_VolRowLocales::otherLocales()
{
    QFETCH(QString, locale);
    QFETCH(QString, text);
    QFETCH(QString, date);
    QCOMPARE(run(locale, {"show", element(text, text), "2026-01-01T00:00:00"}),
             QStringList({date, date, date, text, text + ' ' + text}).join('|'));
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "show")
        return showRows(arguments);
    tst_VolRowLocales test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_VolRowLocales.moc"
