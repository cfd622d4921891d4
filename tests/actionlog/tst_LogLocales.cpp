#include <Vokit/Vokit.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <memory>

/// Qt takes the system's locale once, at its first use: so this program starts itself anew, under
/// another locale, to write or read a log.

namespace {

QDateTime afternoon()
{
    return {QDate(2026, 11, 21), QTime(15, 4, 5, 678)};
}

QDateTime night()
{
    return {QDate(2026, 5, 3), QTime(0, 4, 5)};
}

int writeLog(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    QTextStream stream(&file);
    vo::XMLLogWriter writer(&stream, "", afternoon());
    writer.writeStartDocument();
    const ExportStartLogEntry entry("%4", "a", "b", "c", night(), QDateTime());
    entry.setTime(afternoon());
    entry.setUser("ann");
    entry.writeTo(writer);
    const ParseXMLLogEntry problem("", "", 1234567, -1);
    problem.setTime(night());
    problem.writeTo(writer);
    return 0;
}

QByteArray told(const QDateTime &date, const QDateTime &start)
{
    return date.isNull()   ? "none"
           : date >= start ? "now"
                           : date.toString(Qt::ISODateWithMs).toLatin1();
}

// The dates of the entries, then a number.
int readLog(const QString &name)
{
    const QDateTime start = QDateTime::currentDateTime();
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    vo::XMLLogReader reader(&file);
    const std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
    const std::unique_ptr<vo::LogEntry> problem(reader.readNextLogEntry());
    if (!entry || !problem)
        return 2;
    QByteArrayList lines;
    for (const vo::LogValue *value : entry->values()) {
        if (const auto *date = dynamic_cast<const vo::TLogValue<QDateTime> *>(value))
            lines.append(told(date->value(), start));
    }
    lines.append(told(problem->time(), start));
    lines.append(problem->values().at(4)->toString().toUtf8());
    std::fputs(lines.join(' ').constData(), stdout);
    return 0;
}

// What Qt itself says under the locale.
int showDates()
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    for (const QDateTime &date : {afternoon(), night()}) {
        const QString text = date.toString(Qt::SystemLocaleShortDate);
        const QDateTime back = QDateTime::fromString(text, Qt::SystemLocaleShortDate);
        vo::TLogValue<QDateTime> value(1, "", date);
        const bool sameText = value.toString() == text;
        static_cast<vo::LogValue &>(value).setValue(text);
        const bool sameDate = value.value() == back && back.isValid();
        std::fputs(sameText && sameDate ? "same " : "other ", stdout);
    }
    QT_WARNING_POP
    return 0;
}

struct Locale
{
    const char *name;
    const char *afternoon; ///< as text
    const char *night;
    const char *afternoonBack; ///< what that text is, read under the same locale
    const char *nightBack;
};

// Two figures of a year are of the twentieth century.
constexpr Locale gLocales[] = {
    {"C", "21 Nov 2026 15:04:05", "3 May 2026 00:04:05", "2026-11-21T15:04:05.000",
     "2026-05-03T00:04:05.000"},
    {"en_US", "11/21/26 3:04 PM", "5/3/26 12:04 AM", "1926-11-21T15:04:00.000",
     "1926-05-03T00:04:00.000"},
    {"de_DE", "21.11.26 15:04", "03.05.26 00:04", "1926-11-21T15:04:00.000",
     "1926-05-03T00:04:00.000"},
    {"fr_FR", "21/11/2026 15:04", "03/05/2026 00:04", "2026-11-21T15:04:00.000",
     "2026-05-03T00:04:00.000"},
    {"en_GB", "21/11/2026 15:04", "03/05/2026 00:04", "2026-11-21T15:04:00.000",
     "2026-05-03T00:04:00.000"},
    {"ja_JP", "2026/11/21 15:04", "2026/05/03 0:04", "2026-11-21T15:04:00.000",
     "2026-05-03T00:04:00.000"},
    {"ar_EG", "٢١‏/١١‏/٢٠٢٦ ٣:٠٤ م", "٣‏/٥‏/٢٠٢٦ ١٢:٠٤ ص",
     "2026-11-21T15:04:00.000", "2026-05-03T00:04:00.000"},
};

bool readsTheOther(const Locale &reader, const Locale &writer)
{
    const QByteArrayList slashes{"fr_FR", "en_GB"};
    return &reader == &writer || (slashes.contains(reader.name) && slashes.contains(writer.name));
}

QByteArray run(const char *locale, const QStringList &arguments)
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
    return process.readAllStandardOutput();
}

} // namespace

class tst_LogLocales : public QObject
{
    Q_OBJECT

private slots:
    void written_data();
    void written();
    void asQtDoes_data() { written_data(); }
    void asQtDoes();
    void writtenAndRead_data();
    void writtenAndRead();

private:
    QTemporaryDir m_folder;
};

void tst_LogLocales::written_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const Locale &locale : gLocales)
        QTest::newRow(locale.name) << index++;
}

// The header's date and the numbers are the same everywhere.
void tst_LogLocales::written()
{
    QFETCH(int, index);
    const Locale &locale = gLocales[index];
    const QString name = m_folder.filePath("a.vol");
    QCOMPARE(run(locale.name, {"write", name}), QByteArray());
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(),
             QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>)"
                        R"(<Entries Version="v0.1" LogFile="" Date="2026-11-21T15:04:05">)"
                        R"(<Entry ID="ExpS" Time="%1" User="ann" Text="%4" Form="a" srcP="b" )"
                        R"(dstP="c" from="%2"/><Entry ID="XmlP" Time="%2" errL="1234567" )"
                        R"(errC="-1"/>)")
                 .replace("%1", locale.afternoon)
                 .replace("%2", locale.night));
}

void tst_LogLocales::asQtDoes()
{
    QFETCH(int, index);
    QCOMPARE(run(gLocales[index].name, {"show"}), QByteArray("same same "));
}

void tst_LogLocales::writtenAndRead_data()
{
    QTest::addColumn<int>("writer");
    QTest::addColumn<int>("reader");
    QTest::addColumn<QByteArray>("dates");
    int w = 0;
    for (const Locale &writer : gLocales) {
        int r = 0;
        for (const Locale &reader : gLocales) {
            const QByteArray night = writer.nightBack;
            QTest::addRow("%s read under %s", writer.name, reader.name)
                << w << r++
                << (readsTheOther(reader, writer)
                        ? QByteArray(writer.afternoonBack) + ' ' + night + " now " + night
                        : QByteArray("none none now none")) +
                       " 1234567";
        }
        ++w;
    }
}

// A date that can't be read is none; one that wasn't written is that of the new entry.
void tst_LogLocales::writtenAndRead()
{
    QFETCH(int, writer);
    QFETCH(int, reader);
    const QString name = m_folder.filePath("a.vol");
    QCOMPARE(run(gLocales[writer].name, {"write", name}), QByteArray());
    QTEST(run(gLocales[reader].name, {"read", name}), "dates");
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "write")
        return writeLog(arguments.value(2));
    if (arguments.value(1) == "read")
        return readLog(arguments.value(2));
    if (arguments.value(1) == "show")
        return showDates();
    tst_LogLocales test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_LogLocales.moc"
