#include <Vokit/Vokit.h>

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using vo::ActionLog;
using vo::ExportActionLog;

namespace {

constexpr quint64 gFrom = 1795253645000000; // 21 Nov 2026 15:04:05 in Kolkata
constexpr quint64 gTo = gFrom + 59999999;   // almost a minute later

class Ann : public vo::ILogUserSource
{
public:
    QString primaryName() const override { return "ann"; }
    QString secondaryName() const override { return {}; }
};

class BracketTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return QByteArray(context) == "ActionLog" ? "<" + QString(sourceText) + ">" : QString("?");
    }
};

QByteArray contents()
{
    QFile file(ActionLog::defaultFileInfo().filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_ExportActionLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void formats_data();
    void formats();
    void states_data();
    void states();
    void writing_data();
    void writing();
    void writingStates_data();
    void writingStates();
    void values();
    void placeholders_data();
    void placeholders();
    void dates_data();
    void dates();
    void outcome_data();
    void outcome();
    void rename_data();
    void rename();
    void renameInFile();
    void suspended();
    void translated();

private:
    vo::LogEntry *last() const
    {
        const QList<vo::LogEntry *> &entries = ActionLog::getInstance()->entries();
        return entries.isEmpty() ? nullptr : entries.last();
    }
    static QString value(vo::LogEntry *entry, int index)
    {
        return entry->values().at(index)->toString();
    }

    QTemporaryDir m_folder;
    Ann m_ann;
};

void tst_ExportActionLog::initTestCase()
{
    QCoreApplication::setOrganizationName("Test");
    QCoreApplication::setApplicationName("Client");
}

void tst_ExportActionLog::init()
{
    QVERIFY(QDir(m_folder.path()).removeRecursively());
    qputenv("XDG_STATE_HOME", m_folder.path().toLocal8Bit());
    ActionLog::getInstance()->setUserSource(&m_ann);
    ActionLog::getInstance()->setSuspended(false);
}

void tst_ExportActionLog::cleanup()
{
    ActionLog::deleteActionLog();
}

void tst_ExportActionLog::formats_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("name");
    const char *const names[] = {"Bitmap",  "JPEG",     "Vodec clip",
                                 "AVI",     "MP4",      "MOV",
                                 "WebM",    "Matroska", "VORTENA file server storage",
                                 "Printer", "unknown"};
    int format = 0;
    for (const char *name : names) {
        QTest::newRow(name) << format << format << name;
        ++format;
    }
    QCOMPARE(format, 11);
    for (const int beyond : {11, 12, 1000, std::numeric_limits<int>::max()})
        QTest::addRow("%d", beyond) << beyond << 10 << "unknown";
    QCOMPARE(static_cast<int>(ExportActionLog::FormatBitmap), 0);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatJpeg), 1);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatClip), 2);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatAvi), 3);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatMp4), 4);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatMov), 5);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatWebM), 6);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatMatroska), 7);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatFileServer), 8);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatPrinter), 9);
    QCOMPARE(static_cast<int>(ExportActionLog::FormatUnknown), 10);
}

void tst_ExportActionLog::formats()
{
    QFETCH(int, format);
    QFETCH(QString, name);
    QTEST(ExportActionLog::formatsData(format).value, "value");
    QCOMPARE(QString(ExportActionLog::formatsData(format).name), name);
    ExportActionLog::send(static_cast<ExportActionLog::EFormat>(format), "s", "", 0, 0,
                          ExportActionLog::StateStart);
    QCOMPARE(value(last(), 3), name);
    QCOMPARE(last()->description(), QString("Format='%1'; Source='s'.").arg(name));
}

void tst_ExportActionLog::states_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("name");
    QTest::newRow("start") << int(ExportActionLog::StateStart) << 0 << "Start";
    QTest::newRow("finished") << int(ExportActionLog::StateFinished) << 1 << "Finished";
    QTest::newRow("abort") << int(ExportActionLog::StateAbort) << 2 << "Abort";
    QTest::newRow("error") << int(ExportActionLog::StateError) << 3 << "Error";
    QTest::newRow("none") << int(ExportActionLog::StateNone) << 4 << "";
    QTest::newRow("5") << 5 << 4 << "";
    QTest::newRow("greatest") << std::numeric_limits<int>::max() << 4 << "";
}

void tst_ExportActionLog::states()
{
    QFETCH(int, state);
    QTEST(ExportActionLog::stateData(state).value, "value");
    QTEST(QString(ExportActionLog::stateData(state).name), "name");
}

void tst_ExportActionLog::writing_data()
{
    QTest::addColumn<quint64>("from");
    QTest::addColumn<quint64>("to");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("description");
    const auto row = [](const char *name, quint64 from, quint64 to, const char *target,
                        const char *text, const char *description) {
        QTest::newRow(name) << from << to << target << text << description;
    };
    const char *const bare = "Format='%1'; Source='%2'.";
    const char *const target = "Format='%1'; Source='%2'; Target='%3'.";
    row("no dates", 0, 0, "", bare, "Format='AVI'; Source='Gate 1'.");
    row("no dates, target", 0, 0, "/usb", target, "Format='AVI'; Source='Gate 1'; Target='/usb'.");
    row("no from", 0, gTo, "", bare, "Format='AVI'; Source='Gate 1'.");
    row("no from, target", 0, gTo, "/usb", target, "Format='AVI'; Source='Gate 1'; Target='/usb'.");
    row("no to", gFrom, 0, "", "Format='%1'; Source='%2'; Timestamp='%4'.%3",
        "Format='AVI'; Source='Gate 1'; Timestamp='21 Nov 2026 15:04:05'.");
    row("no to, target", gFrom, 0, "/usb", "Format='%1'; Source='%2'; Timestamp='%4'; Target='%3'.",
        "Format='AVI'; Source='Gate 1'; Timestamp='21 Nov 2026 15:04:05'; Target='/usb'.");
    row("both", gFrom, gTo, "",
        "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'.%3",
        "Format='AVI'; Source='Gate 1'; Date and time from='21 Nov 2026 15:04:05'; "
        "Date and time to '21 Nov 2026 15:05:04'.");
    row("both, target", gFrom, gTo, "/usb",
        "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'; Target='%3'.",
        "Format='AVI'; Source='Gate 1'; Date and time from='21 Nov 2026 15:04:05'; "
        "Date and time to '21 Nov 2026 15:05:04'; Target='/usb'.");
    row("from 1 microsecond", 1, 1, "",
        "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'.%3",
        "Format='AVI'; Source='Gate 1'; Date and time from='1 Jan 1970 05:30:00'; "
        "Date and time to '1 Jan 1970 05:30:00'.");
}

void tst_ExportActionLog::writing()
{
    QFETCH(quint64, from);
    QFETCH(quint64, to);
    QFETCH(QString, target);
    for (const auto state : {ExportActionLog::StateStart, ExportActionLog::StateFinished}) {
        ExportActionLog::send(ExportActionLog::FormatAvi, "Gate 1", target, from, to, state);
        vo::LogEntry *const entry = last();
        QVERIFY(entry);
        if (state == ExportActionLog::StateStart)
            QVERIFY(dynamic_cast<ExportStartLogEntry *>(entry));
        else
            QVERIFY(dynamic_cast<ExportWrittenLogEntry *>(entry));
        QCOMPARE(entry->user(), QString("ann"));
        QTEST(value(entry, 2), "text");
        QTEST(entry->description(), "description");
    }
    QCOMPARE(ActionLog::getInstance()->entries().size(), 2);
}

void tst_ExportActionLog::writingStates_data()
{
    QTest::addColumn<int>("state");
    for (const int state : {2, 3, 4, 5, -1})
        QTest::addRow("%d", state) << state;
}

void tst_ExportActionLog::writingStates()
{
    QFETCH(int, state);
    ExportActionLog::send(ExportActionLog::FormatAvi, "s", "t", gFrom, gTo,
                          static_cast<ExportActionLog::EState>(state));
    QVERIFY(!last());
    QVERIFY(!ActionLog::defaultFileInfo().exists());
}

void tst_ExportActionLog::values()
{
    ExportActionLog::send(ExportActionLog::FormatMp4, "s", "", gFrom, 0,
                          ExportActionLog::StateStart);
    vo::LogEntry *const entry = last();
    QCOMPARE(value(entry, 3), QString("MP4"));
    QCOMPARE(value(entry, 4), QString("s"));
    QCOMPARE(value(entry, 5), QString());
    QCOMPARE(value(entry, 6), QString("21 Nov 2026 15:04:05"));
    QCOMPARE(value(entry, 7), QString("1 Jan 1970 05:30:00"));
    // The first second of 1970 is a date, and goes to the file.
    QVERIFY(contents().endsWith(" User=\"ann\" Text=\"Format='%1'; Source='%2'; "
                                "Timestamp='%4'.%3\" Form=\"MP4\" srcP=\"s\" "
                                "from=\"21 Nov 2026 15:04:05\" to  =\"1 Jan 1970 05:30:00\"/>"));
    QVERIFY(contents().contains("<Entry ID=\"ExpS\" Time=\""));
}

void tst_ExportActionLog::placeholders_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("description");
    QTest::newRow("source %3") << "%3"
                               << "/usb"
                               << "Format='AVI'; Source='/usb'; Target='/usb'.";
    QTest::newRow("source %3, no target") << "%3"
                                          << ""
                                          << "Format='AVI'; Source=''.";
    QTest::newRow("source %4") << "%4"
                               << "/usb"
                               << "Format='AVI'; Source='1 Jan 1970 05:30:00'; Target='/usb'.";
    // The lowest number goes first: the target itself becomes a place for the first date.
    QTest::newRow("target %1") << "s"
                               << "%1"
                               << "Format='AVI'; Source='s'; Target='1 Jan 1970 05:30:00'.";
    QTest::newRow("source %1") << "%1"
                               << "t"
                               << "Format='AVI'; Source='t'; Target='1 Jan 1970 "
                                  "05:30:00'.";
    QTest::newRow("percent") << "100%"
                             << "t"
                             << "Format='AVI'; Source='100%'; Target='t'.";
}

void tst_ExportActionLog::placeholders()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    ExportActionLog::send(ExportActionLog::FormatAvi, source, target, 0, 0,
                          ExportActionLog::StateStart);
    QTEST(last()->description(), "description");
}

void tst_ExportActionLog::dates_data()
{
    QTest::addColumn<quint64>("microseconds");
    QTest::addColumn<uint>("seconds");
    constexpr quint64 second = 1000000;
    constexpr quint64 wrap = second << 32;
    QTest::newRow("0") << quint64(0) << 0U;
    QTest::newRow("less than a second") << second - 1 << 0U;
    QTest::newRow("a second") << second << 1U;
    QTest::newRow("2026") << gTo << 1795253704U;
    QTest::newRow("last of 31 bits") << second * 0x7FFFFFFF << 0x7FFFFFFFU;
    QTest::newRow("behind 31 bits") << second * 0x80000000 << 0x80000000U;
    QTest::newRow("last of 32 bits") << wrap - 1 << 0xFFFFFFFFU;
    QTest::newRow("behind 32 bits") << wrap << 0U;
    QTest::newRow("beyond") << wrap + 5 * second << 5U;
    QTest::newRow("greatest") << ~quint64(0)
                              << static_cast<uint>((~quint64(0) / second) & 0xFFFFFFFF);
}

void tst_ExportActionLog::dates()
{
    QFETCH(quint64, microseconds);
    QFETCH(uint, seconds);
    for (const bool isFrom : {true, false}) {
        ExportActionLog::send(ExportActionLog::FormatAvi, "s", "t", isFrom ? microseconds : 0,
                              isFrom ? 0 : microseconds, ExportActionLog::StateFinished);
        const auto *date =
            dynamic_cast<const vo::TLogValue<QDateTime> *>(last()->values().at(isFrom ? 6 : 7));
        QVERIFY(date && date->hasValue());
        QCOMPARE(date->value().toMSecsSinceEpoch(), qint64(seconds) * 1000);
        QCOMPARE(date->value().timeSpec(), Qt::LocalTime);
    }
}

void tst_ExportActionLog::outcome_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("id");
    QTest::newRow("start") << 0 << "";
    QTest::newRow("finished") << 1 << "ExpD";
    QTest::newRow("abort") << 2 << "ExpA";
    QTest::newRow("error") << 3 << "ExpE";
    QTest::newRow("none") << 4 << "";
    QTest::newRow("beyond") << 5 << "";
}

void tst_ExportActionLog::outcome()
{
    QFETCH(int, state);
    QFETCH(QString, id);
    for (const char *text : {"3 clips, 100%", "%1", ""}) {
        ExportActionLog::send(text, static_cast<ExportActionLog::EState>(state));
        if (id.isEmpty()) {
            QVERIFY(!last());
            continue;
        }
        QCOMPARE(last()->id().toString(), id);
        QCOMPARE(last()->values().size(), 3);
        QCOMPARE(value(last(), 2), QString(text));
        QCOMPARE(last()->description(), QString(text));
    }
}

void tst_ExportActionLog::rename_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("third");
    QTest::addColumn<QString>("description");
    QTest::newRow("rename") << "/usb/"
                            << "new.avi"
                            << "old.avi"
                            << "'/usb/old.avi' to '/usb/new.avi'.";
    QTest::newRow("no old name") << "/usb/"
                                 << "new.avi"
                                 << ""
                                 << "'/usb/' to '/usb/new.avi'.";
    QTest::newRow("no names") << ""
                              << ""
                              << ""
                              << "'' to ''.";
    QTest::newRow("placeholder") << "/%2/"
                                 << "n"
                                 << "o"
                                 << "'/o/o' to '/o/n'.";
}

void tst_ExportActionLog::rename()
{
    QFETCH(QString, path);
    QFETCH(QString, second);
    QFETCH(QString, third);
    ExportActionLog::send(path, second, third);
    QVERIFY(dynamic_cast<ExportRenameLogEntry *>(last()));
    QCOMPARE(value(last(), 2), QString("'%1%2' to '%1%3'."));
    QCOMPARE(value(last(), 3), path);
    QCOMPARE(value(last(), 4), third);
    QCOMPARE(value(last(), 5), second);
    QTEST(last()->description(), "description");
}

// With an old name, the file can't be read beyond; without, it can.
void tst_ExportActionLog::renameInFile()
{
    const auto read = [] {
        ActionLog log(ActionLog::defaultFileInfo().filePath());
        try {
            log.readLog();
        } catch (const vo::ActionLogXmlException &) {
            return QString("corrupt behind %1").arg(log.entries().size() - 1);
        }
        return QString("%1").arg(log.entries().size());
    };
    ExportActionLog::send("/usb/", "new.avi", "");
    QVERIFY(contents().endsWith(" path=\"/usb/\" dest=\"new.avi\"/>"));
    QCOMPARE(read(), QString("1"));
    ExportActionLog::send("/usb/", "new.avi", "old.avi");
    QVERIFY(contents().endsWith(
        QByteArray(" path=\"/usb/\" ^src=\"old.avi\" dest=\"new.avi\"/>").replace('^', '\0')));
    QCOMPARE(read(), QString("corrupt behind 1"));
    ExportActionLog::send("done", ExportActionLog::StateFinished);
    QCOMPARE(read(), QString("corrupt behind 1"));
}

void tst_ExportActionLog::suspended()
{
    ActionLog::getInstance()->setSuspended(true);
    ExportActionLog::send("done", ExportActionLog::StateFinished);
    ExportActionLog::send("/usb/", "new", "old");
    ExportActionLog::send(ExportActionLog::FormatAvi, "s", "t", gFrom, gTo,
                          ExportActionLog::StateStart);
    QVERIFY(!last());
    QVERIFY(!ActionLog::defaultFileInfo().exists());
}

// Looked up among the words of the log; the format's name is not looked up.
void tst_ExportActionLog::translated()
{
    BracketTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    ExportActionLog::send(ExportActionLog::FormatAvi, "s", "", 0, 0, ExportActionLog::StateStart);
    QCOMPARE(value(last(), 2), QString("<Format='%1'; Source='%2'.>"));
    QCOMPARE(value(last(), 3), QString("AVI"));
    QCOMPARE(last()->action(), QString("<Export start>"));
    ExportActionLog::send("/usb/", "new", "");
    QCOMPARE(value(last(), 2), QString("<'%1%2' to '%1%3'.>"));
    ExportActionLog::send("words", ExportActionLog::StateError);
    QCOMPARE(value(last(), 2), QString("words"));
    QCOMPARE(last()->category().name(), QString("<Export>"));
    QCOMPARE(QString(ExportActionLog::formatsData(1).name), QString("JPEG"));
    QCoreApplication::removeTranslator(&translator);
}

QTEST_GUILESS_MAIN(tst_ExportActionLog)
#include "tst_ExportActionLog.moc"
