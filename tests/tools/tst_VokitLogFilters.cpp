#include "FilterFile.h"
#include "LogFiles.h"

#include <Vokit/ConstExpression>
#include <Vokit/ExpressionOperators>
#include <Vokit/TypedProperties>

#include <QtTest>

using vogen::DateTimeProperty;
using vogen::ExpressionHandle;
using vogen::IntProperty;
using vogen::StringProperty;

class tst_VokitLogFilters : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void filters_data();
    void filters();
    void unreadTimes_data();
    void unreadTimes();
    void wrongDates_data();
    void wrongDates();
    void midnight();
    void hourThatComesTwice();
    void todayAndYesterday();
    void unknownCategory();
    void storedFilter_data();
    void storedFilter();
    void refusedFilter();
    void savedFilter_data();
    void savedFilter();
    void savedReport();
    void savedDays();
    void damagedFilter_data();
    void damagedFilter();
    void replacedFilter();
    void notSaved_data();
    void notSaved();
    void notSavedByHalf();

private:
    ProgramRun run(const QStringList &options) const;
    QString chosen(const QStringList &options) const;

    const Folder m_folder;
    QString m_log;
    QMap<qint64, QChar> m_letters; ///< of the entries by position, from "a" on
};

void tst_VokitLogFilters::initTestCase()
{
    const QList<QByteArray> entries{
        done("3 Clips", "ann", "20 Nov 2026 23:59:59"),
        R"(<Entry ID="ExpE" Time="21 Nov 2026 00:00:00" User="bob" Text="disk full"/>)",
        R"-(<Entry ID="ALog" Time="21 Nov 2026 15:04:05" User="ann (second)" filN="b.vol"/>)-",
        R"(<Entry ID="XmlP" Time="21 Nov 2026 23:59:59" User="ann" srcP="x" errL="12"/>)",
        R"(<Entry ID="Door" Time="22 Nov 2026 00:00:00" User="zo&#233;" Name="Gate &#201;"/>)",
        R"(<Entry ID="ExpS" Time="22.11.26 00:00" Text="none" from="19 Nov 2026 08:00:00"/>)",
    };
    QByteArray bytes = head();
    for (const QByteArray &entry : entries) {
        m_letters[bytes.size()] = QChar('a' + m_letters.size());
        bytes += entry;
    }
    m_log = m_folder.write("log.vol", bytes);
}

ProgramRun tst_VokitLogFilters::run(const QStringList &options) const
{
    return runProgram(QStringList{"show", "--format", "json"} + options + QStringList{m_log});
}

QString tst_VokitLogFilters::chosen(const QStringList &options) const
{
    const ProgramRun result = run(options);
    if (result.exitCode != 0)
        return QString::fromUtf8(result.errors);
    QString letters;
    QList<QByteArray> lines = result.output.split('\n');
    lines.removeLast();
    for (const QByteArray &line : qAsConst(lines)) {
        const QJsonObject entry = QJsonDocument::fromJson(line).object();
        letters += m_letters.value(entry.value("position").toInt(), '?');
    }
    return letters;
}

void tst_VokitLogFilters::filters_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("letters");
    const auto row = [](const char *name, const QStringList &options, const char *letters) {
        QTest::newRow(name) << options << QString(letters);
    };
    row("none", {}, "abcdef");
    row("a category", {"--category", "Export"}, "abf");
    row("in another case, with blanks", {"--category", " eXPORT "}, "abf");
    row("categories in a list", {"--category", "Export,Action log"}, "abcf");
    row("categories given twice", {"--category", "Export", "--category", "action log"}, "abcf");
    row("a category that none has", {"--category", "User & Groups"}, "");
    row("a user", {"--user", "ann"}, "ad");
    row("not in another case", {"--user", "Ann"}, "");
    row("any of two users", {"--user", "ann", "--user", "ann (second)"}, "acd");
    row("a comma is part of a name", {"--user", "ann,bob"}, "");
    row("no user", {"--user", ""}, "f");
    row("a user beyond ASCII", {"--user", QString::fromUtf8("zo\u00E9")}, "e");
    row("an id", {"--id", "ExpD"}, "a");
    row("ids in a list and twice", {"--id", "ExpD,Door", "--id", "XmlP"}, "ade");
    row("an id in another case", {"--id", "expd"}, "");
    row("an unknown class by its id", {"--id", "Door"}, "e");

    row("since a day", {"--since", "2026-11-21"}, "bcde");
    row("since a time", {"--since", "2026-11-21T15:04:05"}, "cde");
    row("since the second after it", {"--since", "2026-11-21T15:04:06"}, "de");
    row("since a minute", {"--since", "2026-11-21T15:04"}, "cde");
    row("until a day, which is included", {"--until", "2026-11-21"}, "abcd");
    row("until a time, which is included", {"--until", "2026-11-21T15:04:05"}, "abc");
    row("until the second before it", {"--until", "2026-11-21T15:04:04"}, "ab");
    row("until a minute", {"--until", "2026-11-21T15:04"}, "ab");
    row("one day", {"--since", "2026-11-21", "--until", "2026-11-21"}, "bcd");
    row("of dates given twice all hold", {"--since", "2026-11-22", "--since", "2026-11-21"}, "e");
    row("until a day before all", {"--until", "1970-01-02"}, "");

    row("a text in the description", {"--contains", "clips"}, "a");
    row("in the user", {"--contains", "SECOND"}, "c");
    row("in the action", {"--contains", "export S"}, "f");
    row("in a number", {"--contains", "12"}, "d");
    row("in a value of an unknown class", {"--contains", QString::fromUtf8("gate \u00E9")}, "e");
    row("in a date, as it is shown in JSON", {"--contains", "2026-11-19T08"}, "f");
    row("of texts all must be there", {"--contains", "an", "--contains", "12"}, "d");
    row("nowhere", {"--contains", "zzz"}, "");
    row("the empty text is everywhere", {"--contains", ""}, "abcdef");
    row("no pattern", {"--contains", "d.sk"}, "");

    row("all together",
        {"--category", "export,error", "--user", "ann", "--id", "ExpD,XmlP", "--since",
         "2026-11-20", "--until", "2026-11-21", "--contains", "x"},
        "ad");
    row("all together, and one fails",
        {"--category", "export", "--user", "ann", "--id", "XmlP", "--since", "2026-11-20"}, "");
}

void tst_VokitLogFilters::filters()
{
    QFETCH(QStringList, options);
    QTEST(chosen(options), "letters");
}

void tst_VokitLogFilters::unreadTimes_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("isTold");
    QTest::newRow("nobody asks for times") << QStringList{"--user", "ann"} << false;
    QTest::newRow("since") << QStringList{"--since", "2026-11-21"} << true;
    QTest::newRow("until") << QStringList{"--until", "2026-11-21"} << true;
}

void tst_VokitLogFilters::unreadTimes()
{
    QFETCH(QStringList, options);
    QFETCH(bool, isTold);
    const QByteArray warning =
        "vokit-log: the time of 1 entry can't be read, and matches neither --since nor --until; if "
        "the log was written under another locale, --locale helps\n";
    const ProgramRun result = run(options);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errors, isTold ? warning : QByteArray());
    // One for all files, and an entry without a time is one as well.
    const QString other = m_folder.write("other.vol", head() + R"(<Entry ID="ExpD"/>)");
    const ProgramRun both = run(options + QStringList{other});
    QCOMPARE(both.errors,
             isTold ? QByteArray(warning).replace("1 entry", "2 entries") : QByteArray());
}

void tst_VokitLogFilters::wrongDates_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text :
         {"", "2026", "2026-11", "2026-11-31", "26-11-21", "2026-1-1", "2026-11-21 15:04",
          "2026-11-21T15", "2026-11-21T25:00", "2026-11-21T15:04:60", "2026-11-21T15:04:05Z",
          "2026-11-21T15:04+01:00", "2026-11-21x", "tomorrow", "Today", "1969-12-31", "2107-01-01",
          "9999-12-31"})
        QTest::newRow(text) << text;
}

void tst_VokitLogFilters::wrongDates()
{
    QFETCH(QString, text);
    for (const char *option : {"--since", "--until"}) {
        const ProgramRun result = run({option, text});
        QCOMPARE(result.exitCode, 4);
        QCOMPARE(result.output, QByteArray());
        QVERIFY2(result.errors.startsWith("vokit-log: '" + text.toUtf8() + "' is no date"),
                 result.errors.constData());
    }
}

// Where the clock skips midnight, a day begins later.
void tst_VokitLogFilters::midnight()
{
    const Variable zone("TZ", "America/Sao_Paulo");
    const QByteArray bytes =
        head() + done("a", "ann", "3 Nov 2018 23:59:59") + done("b", "ann", "4 Nov 2018 01:00:00");
    const auto texts = [&](const QStringList &options) {
        return runProgram(QStringList{"show"} + options + QStringList{"-"}, bytes).output;
    };
    QCOMPARE(texts({"--since", "2018-11-04"}), doneLine("b", "ann", "2018-11-04 01:00:00"));
    QCOMPARE(texts({"--until", "2018-11-03"}), doneLine("a", "ann", "2018-11-03 23:59:59"));
}

// The hour that the clock shows twice is taken for the first of both, in the log and in options.
void tst_VokitLogFilters::hourThatComesTwice()
{
    const Variable zone("TZ", "Europe/Berlin");
    QByteArray bytes = head();
    for (const char *time : {"01:59:59", "02:00:00", "02:10:00", "02:59:59", "03:00:00"})
        bytes += done(QByteArray(time).left(5), "ann", QByteArray("25 Oct 2026 ") + time);
    const auto texts = [&](const QStringList &options) {
        QByteArray result;
        const QByteArray json =
            runProgram(QStringList{"show", "--format", "json"} + options + QStringList{"-"}, bytes)
                .output;
        for (const QByteArray &line : json.split('\n')) {
            const int text = line.indexOf("\"description\":\"");
            if (text >= 0)
                result += line.mid(text + 15, 5) + ' ';
        }
        return result;
    };
    QCOMPARE(texts({"--since", "2026-10-25T02:00"}), QByteArray("02:00 02:10 02:59 03:00 "));
    QCOMPARE(texts({"--since", "2026-10-25T02:10"}), QByteArray("02:10 02:59 03:00 "));
    QCOMPARE(texts({"--until", "2026-10-25T02:10"}), QByteArray("01:59 02:00 02:10 "));
    QCOMPARE(texts({"--since", "2026-10-25T02:10", "--until", "2026-10-25T02:10"}),
             QByteArray("02:10 "));
    QCOMPARE(texts({"--since", "2026-10-25T03:00"}), QByteArray("03:00 "));
    QCOMPARE(texts({"--until", "2026-10-25T01:59:59"}), QByteArray("01:59 "));

    const Variable midnights("TZ", "America/Havana"); // 00:00 comes twice there
    bytes = head() + done("31/10", "ann", "31 Oct 2026 23:59:59") +
            done("00:00", "ann", "1 Nov 2026 00:00:00") +
            done("00:30", "ann", "1 Nov 2026 00:30:00");
    QCOMPARE(texts({"--since", "2026-11-01"}), QByteArray("00:00 00:30 "));
    QCOMPARE(texts({"--until", "2026-10-31"}), QByteArray("31/10 "));
}

void tst_VokitLogFilters::todayAndYesterday()
{
    QDate today;
    QList<QByteArray> outputs;
    do {
        today = QDate::currentDate();
        QByteArray bytes = head();
        for (int day = -2; day <= 1; ++day) {
            const QByteArray time =
                QLocale::c().toString(today.addDays(day), "d MMM yyyy").toLatin1() + " 12:00:00";
            bytes += done(QByteArray::number(day), "ann", time);
        }
        outputs.clear();
        for (const char *option : {"--since", "--until"}) {
            for (const char *text : {"today", "yesterday"}) {
                const ProgramRun result = runProgram(
                    {"report", "--by", "day", option, text, "--format", "csv", "-"}, bytes);
                outputs.append(result.output);
            }
        }
    } while (QDate::currentDate() != today);
    const auto days = [today](int first, int last) {
        QByteArray text = "day,count\r\n";
        for (int day = first; day <= last; ++day)
            text += today.addDays(day).toString(Qt::ISODate).toLatin1() + ",1\r\n";
        return text;
    };
    QCOMPARE(outputs, (QList<QByteArray>{days(0, 1), days(-1, 1), days(-2, 0), days(-2, -1)}));
}

void tst_VokitLogFilters::unknownCategory()
{
    const ProgramRun result = run({"--category", "Export,Exports"});
    QCOMPARE(result.exitCode, 4);
    QCOMPARE(result.output, QByteArray());
    QVERIFY2(result.errors.startsWith(
                 "vokit-log: there is no category 'Exports'; there are: Access, Action log, "),
             result.errors.constData());
    QVERIFY(result.errors.contains(", Export, "));
}

void tst_VokitLogFilters::storedFilter_data()
{
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<QString>("letters");
    const auto row = [this](const char *name, const ExpressionHandle &expression,
                            const char *letters) {
        const QString file = m_folder.path(name);
        saveFilter(expression, file);
        QTest::newRow(name) << QFile::encodeName(file) << QString(letters);
    };
    const StringProperty user("user");
    const StringProperty id("id");
    const StringProperty gate("Name"); // of an unknown class
    const IntProperty line("errorLine");
    const DateTimeProperty time("time");
    const DateTimeProperty from("from");
    row("a column", user == QVariant("bob"), "b");
    row("a value of an unknown class", gate >= QVariant("Gate"), "e");
    row("a date among the values", from < QVariant(QDateTime(QDate(2026, 11, 20), QTime())), "f");
    row("either", user == QVariant("bob") || id == QVariant("Door"), "be");
    row("no column of any row", line != QVariant(1), "");
    row("the time", time > QVariant(QDateTime(QDate(2026, 11, 21), QTime(15, 4, 5))), "de");
    row("a text for a condition", vogen::ConstExpression(QVariant("x"), false), "abcdef");
}

void tst_VokitLogFilters::storedFilter()
{
    QFETCH(QByteArray, expression);
    QFETCH(QString, letters);
    const QString file = QFile::decodeName(expression);
    QCOMPARE(chosen({"--filter", file}), letters);
    // And what else is given.
    QString exports = letters;
    exports.remove(QRegularExpression("[^abf]"));
    QCOMPARE(chosen({"--filter", file, "--category", "export"}), exports);
    QCOMPARE(chosen({"--filter", file, "--filter", file}), letters);
}

void tst_VokitLogFilters::refusedFilter()
{
    const QString file = m_folder.write("no filter", "x");
    const ProgramRun result = run({"--filter", file});
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, "vokit-log: cannot load filter '" + file.toUtf8() +
                                "': it is no filter, or it ends too early\n");
    QCOMPARE(run({"--filter", m_folder.path("none")}).exitCode, 3);
}

void tst_VokitLogFilters::savedFilter_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("letters");
    const auto row = [](const char *name, const QStringList &options, const char *letters) {
        QTest::newRow(name) << options << QString(letters);
    };
    const StringProperty user("user");
    const QString loaded = m_folder.path("loaded");
    saveFilter(user == QVariant("bob") || user == QVariant(QString::fromUtf8("zo\u00E9")), loaded);
    row("a category", {"--category", "export"}, "abf");
    row("users", {"--user", "ann", "--user", "ann (second)"}, "acd");
    row("no user", {"--user", ""}, "f");
    row("a user beyond ASCII", {"--user", QString::fromUtf8("zo\u00E9")}, "e");
    row("ids", {"--id", "ExpD,Door"}, "ae");
    row("since a time", {"--since", "2026-11-21T15:04:05"}, "cde");
    row("until a day", {"--until", "2026-11-21"}, "abcd");
    row("none", {"--until", "1970-01-02"}, "");
    row("a filter", {"--filter", loaded}, "be");
    row("a filter and more", {"--filter", loaded, "--category", "Export"}, "b");
    row("two filters", {"--filter", loaded, "--filter", loaded}, "be");
    row("all together",
        {"--category", "export,error", "--user", "ann", "--id", "ExpD,XmlP", "--since",
         "2026-11-20", "--until", "2026-11-21"},
        "ad");
}

void tst_VokitLogFilters::savedFilter()
{
    QFETCH(QStringList, options);
    QFETCH(QString, letters);
    // To Qt, what begins with a colon is a resource; to a user it is a file.
    const QString here = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder.path("")));
    for (const char *name : {"saved", ":saved"}) {
        QFile::remove(m_folder.path(name));
        QCOMPARE(chosen(options + QStringList{"--save-filter", name}), letters);
        QVERIFY(QFile::exists(m_folder.path(name)));
        QCOMPARE(chosen({"--filter", name}), letters);
        for (const char *format : {"prose", "csv", "json", "xml"}) {
            const QStringList show{"show", "--format", format, m_log};
            QCOMPARE(runProgram(show + QStringList{"--filter", name}).output,
                     runProgram(show + options).output);
        }
    }
    QVERIFY(QDir::setCurrent(here));
}

void tst_VokitLogFilters::savedReport()
{
    const QString file = m_folder.path("of a report");
    const QStringList report{"report", "--by", "user", "--format", "csv", m_log};
    const ProgramRun saving =
        runProgram(report + QStringList{"--category", "Export", "--save-filter", file});
    QCOMPARE(saving.exitCode, 0);
    QCOMPARE(saving.errors, QByteArray());
    QCOMPARE(saving.output, QByteArray("user,count\r\nann,1\r\nbob,1\r\n(no user),1\r\n"));
    QCOMPARE(runProgram(report + QStringList{"--filter", file}).output, saving.output);
    QCOMPARE(chosen({"--filter", file}), QString("abf"));
}

// A filter of today stays one of this day.
void tst_VokitLogFilters::savedDays()
{
    const QString words = m_folder.path("words");
    const QString dates = m_folder.path("dates");
    QDate today;
    do {
        today = QDate::currentDate();
        run({"--since", "yesterday", "--until", "today", "--save-filter", words});
        run({"--since", today.addDays(-1).toString(Qt::ISODate), "--until",
             today.toString(Qt::ISODate), "--save-filter", dates});
    } while (QDate::currentDate() != today);
    QVERIFY(QFile::exists(words));
    QCOMPARE(contentOf(words), contentOf(dates));
}

void tst_VokitLogFilters::damagedFilter_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QString file = m_folder.path("whole");
    QCOMPARE(chosen({"--user", "ann", "--id", "ExpD", "--save-filter", file}), QString("a"));
    const QByteArray whole = contentOf(file);
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a byte") << whole.left(1);
    QTest::newRow("half") << whole.left(whole.size() / 2);
    QTest::newRow("the last byte is missing") << whole.chopped(1);
    QTest::newRow("a byte follows") << whole + 'x';
    QTest::newRow("twice") << whole + whole;
    for (int i = 0; i < 16; ++i) {
        QByteArray flipped = whole;
        flipped[i] = char(flipped.at(i) ^ 0x40);
        QTest::addRow("byte %d is another", i) << flipped;
    }
}

void tst_VokitLogFilters::damagedFilter()
{
    QFETCH(QByteArray, bytes);
    const QString file = m_folder.write("damaged", bytes);
    const ProgramRun result = run({"--filter", file});
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.output, QByteArray());
    QVERIFY(result.errors.startsWith("vokit-log: cannot load filter '" + file.toUtf8() + "': "));
}

void tst_VokitLogFilters::replacedFilter()
{
    const QString file = m_folder.path("replaced");
    QCOMPARE(chosen({"--user", "ann", "--save-filter", file}), QString("ad"));
    QCOMPARE(chosen({"--user", "bob", "--save-filter", file}), QString("b"));
    QCOMPARE(chosen({"--filter", file}), QString("b"));
    // Read before it is written.
    QCOMPARE(chosen({"--filter", file, "--id", "ExpD", "--save-filter", file}), QString());
    QCOMPARE(chosen({"--filter", file}), QString());
}

void tst_VokitLogFilters::notSaved_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("reason");
    const QByteArray noFilter = "what is there is no filter";
    const QByteArray noFile = "it is not a regular file";
    QTest::newRow("the log itself") << QByteArray("log.vol") << noFilter;
    QTest::newRow("an empty file, which a log may be") << QByteArray("empty.vol") << noFilter;
    QTest::newRow("a folder") << QByteArray(".") << noFile;
    QTest::newRow("a pipe") << QByteArray("pipe") << noFile;
    QTest::newRow("no folder") << QByteArray("none/x") << QByteArray("No such file or directory");
}

void tst_VokitLogFilters::notSaved()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, reason);
    const QString file = m_folder.path(name);
    const QByteArray log = contentOf(m_log);
    m_folder.write("empty.vol", "");
    ::mkfifo(m_folder.path("pipe").toUtf8().constData(), 0600);
    const ProgramRun result = run({"--user", "ann", "--save-filter", file});
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors,
             "vokit-log: cannot save filter '" + file.toUtf8() + "': " + reason + '\n');
    QCOMPARE(contentOf(m_log), log);
    QCOMPARE(QFileInfo(m_folder.path("empty.vol")).size(), 0);
}

// Without room for a byte the filter that was there stays, and no part of the other one is left.
void tst_VokitLogFilters::notSavedByHalf()
{
    const Folder folder;
    const QString file = folder.path("f");
    QCOMPARE(chosen({"--user", "ann", "--save-filter", file}), QString("ad"));
    const QByteArray before = contentOf(file);
    const ProgramRun result = runScript(
        "ulimit -f 0 && exec \"$0\" show --user bob --save-filter \"$1\" \"$2\"", {file, m_log});
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors,
             "vokit-log: cannot save filter '" + file.toUtf8() + "': File too large\n");
    QCOMPARE(contentOf(file), before);
    QCOMPARE(
        QDir(folder.path("")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList{"f"});
}

QTEST_GUILESS_MAIN(tst_VokitLogFilters)
#include "tst_VokitLogFilters.moc"
