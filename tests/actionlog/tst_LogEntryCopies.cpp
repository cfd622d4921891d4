#include <Vokit/Vokit.h>

#include <QTemporaryFile>
#include <QtTest>

#include <memory>

using vo::FourChars;
using vo::LogEntry;
using vo::logEntryFactory;
using vo::LogValue;
using vo::TLogValue;

using Text = TLogValue<QString>;
using Number = TLogValue<int>;
using Date = TLogValue<QDateTime>;
using Entry = std::unique_ptr<LogEntry>;

Q_DECLARE_METATYPE(QSharedPointer<vo::LogEntry>)

namespace {

constexpr quint32 gDone = 0x45787044;
constexpr quint32 gStart = 0x45787053;

/// What is common to the entries of this application.
class OwnEntry : public LogEntry
{
public:
    explicit OwnEntry(FourChars id)
        : m_id(id)
    {}
    FourChars id() const override { return m_id; }
    vo::LogCategory category() const override { return vo::LogCatDevices; }
    QString descriptionText() const override { return {}; }
    QString action() const override { return "own"; }

private:
    FourChars m_id;
};

/// Registered below. The date is the moment of creation.
class DoorEntry : public OwnEntry
{
public:
    static constexpr quint32 gId = 0x446F6F72;

    DoorEntry(const QString &door, int tries, const QDateTime &since)
        : OwnEntry(gId)
        , m_door(0x446F6F72, "door", door)
        , m_tries(0x54727973, "tries", tries)
        , m_since(0x53696E63, "since", since)
    {
        append(&m_door);
        append(&m_tries);
        append(&m_since);
    }
    static LogEntry *create() { return new DoorEntry("", 0, QDateTime::currentDateTime()); }

    Text m_door;
    Number m_tries;
    Date m_since;
};
const vo::LogEntryRegistrar gDoorRegistrar{DoorEntry::gId, &DoorEntry::create, "Door opened"};

/// Says that it is an export's start, with other values in other places.
class FalseStartEntry : public OwnEntry
{
public:
    FalseStartEntry()
        : OwnEntry(gStart)
    {
        append(&m_text);
        append(&m_format);
        append(&m_source);
    }

    Text m_text{0x66726F6D, "from", "not by id"};
    Number m_format{0x466F726D, "format", 5};
    Text m_source{0x73726350, "source", "gate"};
};

/// A class derived from one of the library, with a value more and a registration of its own.
class ClipDoneEntry : public ExportDoneLogEntry
{
public:
    static constexpr quint32 gId = 0x436C6970;

    ClipDoneEntry(const QString &text, const QDateTime &recorded)
        : ExportDoneLogEntry(text)
        , m_recorded(0x52656364, "recorded", recorded)
    {
        append(&m_recorded);
    }
    FourChars id() const override { return gId; }
    static LogEntry *create() { return new ClipDoneEntry("", QDateTime::currentDateTime()); }

    Date m_recorded;
};
const vo::LogEntryRegistrar gClipRegistrar{ClipDoneEntry::gId, &ClipDoneEntry::create, "Clip done"};

/// The same without an identifier of its own: its copies are of the class of the library.
class ThinDoneEntry : public ExportDoneLogEntry
{
public:
    using ExportDoneLogEntry::ExportDoneLogEntry;
    ThinDoneEntry()
        : ExportDoneLogEntry("thin")
    {
        append(&m_more);
    }
    Text m_more{0x6D6F7265, "more", "more"};
};

/// Puts a registration back when the test is over.
class Registered
{
public:
    Registered(quint32 id, vo::LogEntryFactory::Creator creator, vo::LogEntryFactory::Creator after,
               const char *nameAfter)
        : m_id(id)
        , m_after(after)
        , m_nameAfter(nameAfter)
    {
        logEntryFactory()->registerCreator(id, creator, "for a while");
    }
    ~Registered() { logEntryFactory()->registerCreator(m_id, m_after, m_nameAfter); }
    Registered(const Registered &) = delete;
    Registered &operator=(const Registered &) = delete;

private:
    quint32 m_id;
    vo::LogEntryFactory::Creator m_after;
    const char *m_nameAfter;
};

/// The span of a test: whatever is dated "now" lies within.
class Span
{
public:
    bool has(const QDateTime &date) const
    {
        return date.timeSpec() == Qt::LocalTime && date >= m_start &&
               date <= QDateTime::currentDateTime();
    }

private:
    const QDateTime m_start = QDateTime::currentDateTime();
};

QDateTime dateOf(LogEntry &entry, const char *id)
{
    const auto *value = dynamic_cast<Date *>(entry.logValue(FourChars(QString(id))));
    return value ? value->value() : QDateTime();
}

QString textOf(LogEntry &entry, const char *id)
{
    const LogValue *value = entry.logValue(FourChars(QString(id)));
    return value ? value->toString() : QString("no such value");
}

QDateTime past()
{
    return {QDate(2025, 2, 3), QTime(4, 5, 6, 789)};
}

Entry clone(const LogEntry &entry)
{
    return Entry(entry.clone());
}

/// The first entry of a log that holds this text.
Entry read(const QByteArray &entry)
{
    QTemporaryFile file;
    if (!file.open())
        return nullptr;
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?><Entries>" + entry);
    file.seek(0);
    vo::XMLLogReader reader(&file);
    return Entry(reader.readNextLogEntry());
}

Span *gSpan = nullptr;
QStringList gWrongDates;

void check(LogEntry &entry, const char *what)
{
    for (const LogValue *value : entry.values()) {
        const auto *date = dynamic_cast<const Date *>(value);
        if (date && !gSpan->has(date->value()))
            gWrongDates.append(QString("%1 %2 %3")
                                   .arg(what, value->name())
                                   .arg(date->value().toString(Qt::ISODateWithMs)));
    }
}

/// Creators that look at entries of the library while one of their own is being made.
LogEntry *createThroughLibrary()
{
    LogEntry *const entry = ExportStartLogEntry::create();
    check(*entry, "create");
    return entry;
}

LogEntry *createBesideOthers()
{
    check(*Entry(ExportStartLogEntry::create()), "create beside");
    check(*Entry(logEntryFactory()->create(gStart)), "factory beside");
    check(*Entry(vo::ActionLogContextSwitchEntry::create()), "switch beside");
    check(*Entry(ParseXMLLogEntry::create()), "problem beside");
    check(*Entry(ExportRenameLogEntry::create()), "rename beside");
    ExportDoneLogEntry constructed("");
    check(constructed, "constructor beside");
    check(*clone(ExportErrorLogEntry("")), "clone beside");
    check(*read("<Entry ID=\"ExpS\"/>"), "reading beside");
    check(*Entry(ExportWrittenLogEntry::create()), "create behind");
    return DoorEntry::create();
}

/// A value that makes entries of its own while it is filled.
class CuriousText : public Text
{
public:
    using Text::Text;
    LogValue &copyFrom(const LogValue &other) override
    {
        check(*Entry(ExportStartLogEntry::create()), "in copyFrom");
        check(*Entry(logEntryFactory()->create(gStart)), "factory in copyFrom");
        return Text::copyFrom(other);
    }
    void setValue(const QString &text) override
    {
        check(*Entry(ExportStartLogEntry::create()), "in setValue");
        check(*Entry(logEntryFactory()->create(gStart)), "factory in setValue");
        Text::setValue(text);
    }
};

class CuriousEntry : public OwnEntry
{
public:
    static constexpr quint32 gId = 0x43757269;
    CuriousEntry()
        : OwnEntry(gId)
    {
        append(&m_text);
    }
    static LogEntry *create() { return new CuriousEntry; }
    CuriousText m_text{0x54657874, "text", "curious"};
};
const vo::LogEntryRegistrar gCuriousRegistrar{CuriousEntry::gId, &CuriousEntry::create, "Curious"};

} // namespace

class tst_LogEntryCopies : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void factory();
    void entryNames();
    void registeredAgain();
    void sameCreatorTwice();

    void cloneOfLibraryClass_data();
    void cloneOfLibraryClass();
    void cloneKeepsNoDate();
    void cloneOfApplicationClass();
    void cloneOfDerivedClass();
    void cloneOfUnregisteredClass();
    void cloneByPosition();
    void cloneAsAnotherClass();

    void copyFromByPosition();
    void copyFromFewerAndMore();

    void readingDatesWhatIsMissing_data();
    void readingDatesWhatIsMissing();
    void creatorsOfApplicationsSeeTheClock();
    void valuesOfApplicationsSeeTheClock();
};

void tst_LogEntryCopies::init()
{
    gSpan = new Span;
    gWrongDates.clear();
}

void tst_LogEntryCopies::cleanup()
{
    delete std::exchange(gSpan, nullptr);
}

void tst_LogEntryCopies::factory()
{
    for (const quint32 id : {0U, 0x78787878U, 0xFFFFFFFFU, 0x45787020U}) {
        const QStringList before = logEntryFactory()->entryNames();
        QVERIFY(!logEntryFactory()->create(id));
        QVERIFY(!logEntryFactory()->create(id));
        QCOMPARE(logEntryFactory()->entryNames(), before);
    }
    QCOMPARE(logEntryFactory(), vo::logEntryFactory());
    // An identifier that was asked for in vain can be registered later on.
    QVERIFY(!logEntryFactory()->create(0x4C617465));
    logEntryFactory()->registerCreator(0x4C617465, &DoorEntry::create, "Late");
    QVERIFY(Entry(logEntryFactory()->create(0x4C617465)));
    QVERIFY(logEntryFactory()->entryNames().contains("Late"));
    logEntryFactory()->registerCreator(0x4C617465, nullptr, "Late");
    QVERIFY(!logEntryFactory()->create(0x4C617465));

    vo::LogEntryFactory own;
    QVERIFY(!own.create(gDone));
    QCOMPARE(own.entryNames(), QStringList());
    own.registerCreator(3, &DoorEntry::create, "b");
    own.registerCreator(2, &DoorEntry::create, "a");
    own.registerCreator(1, &DoorEntry::create, "b");
    own.registerCreator(4, &DoorEntry::create, "B");
    QCOMPARE(own.entryNames(), (QStringList{"B", "a", "b", "b"}));
}

void tst_LogEntryCopies::entryNames()
{
    QCOMPARE(logEntryFactory()->entryNames(),
             (QStringList{"Action log error", "Clip done", "Curious", "Door opened", "Export abort",
                          "Export done", "Export error", "Export rename", "Export start",
                          "Export written", "Late", "Switched log"}));
}

// The later one counts, for copies as well as for what is read.
void tst_LogEntryCopies::registeredAgain()
{
    const ExportDoneLogEntry done("x");
    {
        const Registered registered(gDone, &DoorEntry::create, &ExportDoneLogEntry::create,
                                    ExportDoneLogEntry::sAction);
        QVERIFY(logEntryFactory()->entryNames().contains("for a while"));
        QVERIFY(!logEntryFactory()->entryNames().contains("Export done"));
        const Entry copy = clone(done);
        QVERIFY(dynamic_cast<DoorEntry *>(copy.get()));
        QCOMPARE(copy->time(), done.time());
        QCOMPARE(textOf(*copy, "Door"), QString("x"));
        QVERIFY(gSpan->has(dateOf(*copy, "Sinc")));
        const Entry wasRead = read("<Entry ID=\"ExpD\" Trys=\"3\" Time=\"\"/>");
        QCOMPARE(textOf(*wasRead, "Trys"), QString("3"));
        QVERIFY(wasRead->time().isNull());
        QVERIFY(gSpan->has(dateOf(*wasRead, "Sinc")));
    }
    QVERIFY(dynamic_cast<ExportDoneLogEntry *>(clone(done).get()));
}

// A creator of the library under an identifier of the application's.
void tst_LogEntryCopies::sameCreatorTwice()
{
    const Registered registered(0x416C6961, &ExportStartLogEntry::create, nullptr, "alias");
    Entry entry(logEntryFactory()->create(0x416C6961));
    QVERIFY(gSpan->has(entry->time()));
    entry = read("<Entry ID=\"Alia\" Text=\"x\"/>");
    QCOMPARE(textOf(*entry, "Text"), QString("x"));
    QVERIFY(gSpan->has(entry->time()));
    QVERIFY(gSpan->has(dateOf(*entry, "from")));
    QVERIFY(gSpan->has(dateOf(*entry, "to")));
    QCOMPARE(entry->id().value(), gStart);
}

void tst_LogEntryCopies::cloneOfLibraryClass_data()
{
    QTest::addColumn<QSharedPointer<LogEntry>>("entry");
    const auto row = [](const char *name, LogEntry *entry) {
        QTest::newRow(name) << QSharedPointer<LogEntry>(entry);
    };
    const QDateTime to = past().toUTC().addDays(1);
    row("switch", new vo::ActionLogContextSwitchEntry("/a", "/b"));
    row("written", new ExportWrittenLogEntry("t", "f", "s", "d", past(), to));
    row("start", new ExportStartLogEntry("t", "f", "s", "d", past(), to));
    row("start of 1970", new ExportStartLogEntry("", "", "", "", QDateTime::fromTime_t(0),
                                                 {QDate(1970, 1, 1), QTime(0, 0)}));
    row("start without dates", new ExportStartLogEntry("", "", "", "", {}, {}));
    row("abort", new ExportAbortLogEntry("t"));
    row("error", new ExportErrorLogEntry(""));
    row("done", new ExportDoneLogEntry("t"));
    row("rename", new ExportRenameLogEntry("t", "p", "s", "d"));
    row("problem", new ParseXMLLogEntry("e", "f", 1, -2));
}

void tst_LogEntryCopies::cloneOfLibraryClass()
{
    QFETCH(QSharedPointer<LogEntry>, entry);
    entry->setTime(past());
    entry->setUser("ann");
    const Entry copy = clone(*entry);
    const LogEntry &original = *entry;
    const LogEntry &cloned = *copy;
    QVERIFY(typeid(cloned) == typeid(original));
    QVERIFY(*copy == *entry);
    QCOMPARE(copy->values().size(), entry->values().size());
    for (int i = 0; i < copy->values().size(); ++i) {
        const LogValue *value = copy->values().at(i);
        const LogValue *from = entry->values().at(i);
        QVERIFY(value != from);
        QCOMPARE(value->id().value(), from->id().value());
        QCOMPARE(value->name(), from->name());
        QCOMPARE(value->hasValue(), from->hasValue());
        QCOMPARE(value->toString(), from->toString());
        if (const auto *date = dynamic_cast<const Date *>(value)) {
            const QDateTime &fromDate = dynamic_cast<const Date *>(from)->value();
            QCOMPARE(date->value(), fromDate);
            QCOMPARE(date->value().isValid(), fromDate.isValid());
            QCOMPARE(date->value().timeSpec(), fromDate.timeSpec());
        }
    }
    copy->setUser("bob");
    QCOMPARE(entry->user(), QString("ann"));
}

// A copy of an entry without a date has none either: that is no missing value.
void tst_LogEntryCopies::cloneKeepsNoDate()
{
    const ExportDoneLogEntry done("x");
    done.setTime(QDateTime());
    QVERIFY(clone(done)->time().isNull());
    const DoorEntry door("x", 1, QDateTime());
    QVERIFY(dateOf(*clone(door), "Sinc").isNull());
}

void tst_LogEntryCopies::cloneOfApplicationClass()
{
    const DoorEntry door("north", 3, past());
    door.setTime(past());
    door.setUser("ann");
    const Entry copy = clone(door);
    const auto *other = dynamic_cast<const DoorEntry *>(copy.get());
    QVERIFY(other);
    QVERIFY(*other == door);
    QCOMPARE(other->m_door.value(), QString("north"));
    QCOMPARE(other->m_tries.value(), 3);
    QCOMPARE(other->m_since.value(), past());
}

void tst_LogEntryCopies::cloneOfDerivedClass()
{
    const ClipDoneEntry clip("x", past());
    const Entry copy = clone(clip);
    const auto *other = dynamic_cast<const ClipDoneEntry *>(copy.get());
    QVERIFY(other);
    QCOMPARE(other->m_recorded.value(), past());
    QCOMPARE(other->action(), QString("Export done"));
    Entry wasRead = read("<Entry ID=\"Clip\" Text=\"x\"/>");
    QVERIFY(gSpan->has(wasRead->time()));
    QVERIFY(gSpan->has(dateOf(*wasRead, "Recd")));

    const ThinDoneEntry thin;
    const Entry thinCopy = clone(thin);
    QVERIFY(!dynamic_cast<ThinDoneEntry *>(thinCopy.get()));
    QVERIFY(dynamic_cast<ExportDoneLogEntry *>(thinCopy.get()));
    QCOMPARE(thinCopy->values().size(), 3);
    QCOMPARE(textOf(*thinCopy, "Text"), QString("thin"));
    QVERIFY(thin == *thinCopy);
}

void tst_LogEntryCopies::cloneOfUnregisteredClass()
{
    QVERIFY(!clone(OwnEntry(0x6E6F6E65)));
    // And nothing stays behind of the attempt.
    check(*Entry(ExportStartLogEntry::create()), "behind");
    QCOMPARE(gWrongDates, QStringList());
}

// What has no counterpart of its type in its place stays as in a new entry.
void tst_LogEntryCopies::cloneByPosition()
{
    const FalseStartEntry entry;
    entry.setTime(past());
    entry.setUser("ann");
    const Entry copy = clone(entry);
    QVERIFY(dynamic_cast<ExportStartLogEntry *>(copy.get()));
    QCOMPARE(copy->time(), past());
    QCOMPARE(copy->user(), QString("ann"));
    QCOMPARE(textOf(*copy, "Text"), QString("not by id"));
    QCOMPARE(textOf(*copy, "Form"), QString());
    QCOMPARE(textOf(*copy, "srcP"), QString("gate"));
    QCOMPARE(textOf(*copy, "dstP"), QString());
    QVERIFY(gSpan->has(dateOf(*copy, "from")));
    QVERIFY(gSpan->has(dateOf(*copy, "to")));
}

void tst_LogEntryCopies::cloneAsAnotherClass()
{
    const Registered registered(DoorEntry::gId, &ExportStartLogEntry::create, &DoorEntry::create,
                                "Door opened");
    const DoorEntry door("north", 3, past());
    const Entry copy = clone(door);
    QCOMPARE(textOf(*copy, "Text"), QString("north"));
    QCOMPARE(textOf(*copy, "Form"), QString()); // from a number
    QCOMPARE(textOf(*copy, "srcP"), QString()); // from a date
    QVERIFY(gSpan->has(dateOf(*copy, "from"))); // from nothing
}

void tst_LogEntryCopies::copyFromByPosition()
{
    FalseStartEntry to;
    ExportStartLogEntry from("t", "f", "s", "d", past(), past());
    from.setTime(past());
    from.setUser("ann");
    to.copyFrom(from);
    QCOMPARE(to.time(), past());
    QCOMPARE(to.user(), QString("ann"));
    QCOMPARE(to.m_text.value(), QString("t"));
    QCOMPARE(to.m_text.id().toString(), QString("from"));
    QCOMPARE(to.m_text.name(), QString("from"));
    QCOMPARE(to.m_format.value(), 5);
    QCOMPARE(to.m_source.value(), QString("s"));
    to.copyFrom(to);
    QCOMPARE(to.m_source.value(), QString("s"));
}

void tst_LogEntryCopies::copyFromFewerAndMore()
{
    ExportStartLogEntry start("t", "f", "s", "d", past(), past());
    ExportDoneLogEntry done("done");
    done.setUser("ann");
    start.copyFrom(done);
    QCOMPARE(textOf(start, "Text"), QString("done"));
    QCOMPARE(textOf(start, "Form"), QString("f"));
    QCOMPARE(dateOf(start, "to"), past());
    QCOMPARE(start.time(), done.time());
    ExportErrorLogEntry error("");
    error.copyFrom(ExportStartLogEntry("t", "f", "s", "d", past(), past()));
    QCOMPARE(error.values().size(), 3);
    QCOMPARE(textOf(error, "Text"), QString("t"));
}

void tst_LogEntryCopies::readingDatesWhatIsMissing_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QString>("dates"); // of Time, from and to: now, none, or read
    const auto row = [](const char *attributes, const char *dates) {
        QTest::newRow(attributes) << QByteArray(attributes) << QString(dates);
    };
    row("", "now now now");
    row("User=\"ann\"", "now now now");
    row("Time=\"3 Feb 2025 04:05:06\"", "read now now");
    row("from=\"3 Feb 2025 04:05:06\"", "now read now");
    row("to=\"3 Feb 2025 04:05:06\"", "now now read");
    row("Time=\"\" from=\"x\" to=\"3/2/25\"", "none none none");
    row("Timestamp=\"3 Feb 2025 04:05:06\"", "read now now");
    row("xyz=\"\" Time=\"3 Feb 2025 04:05:06\"", "now now now");
    row("from=\"3 Feb 2025 04:05:06\" xyz=\"\" to=\"\"", "now read now");
}

void tst_LogEntryCopies::readingDatesWhatIsMissing()
{
    QFETCH(QByteArray, attributes);
    const Entry entry = read("<Entry ID=\"ExpS\" " + attributes + "/>");
    QVERIFY(entry);
    QStringList dates;
    for (const char *id : {"Time", "from", "to"}) {
        const QDateTime date = dateOf(*entry, id);
        dates.append(date.isNull()      ? "none"
                     : gSpan->has(date) ? "now"
                     : date == QDateTime({2025, 2, 3}, {4, 5, 6})
                         ? "read"
                         : date.toString(Qt::ISODateWithMs));
    }
    QTEST(dates.join(' '), "dates");
}

void tst_LogEntryCopies::creatorsOfApplicationsSeeTheClock()
{
    for (const auto creator : {&createThroughLibrary, &createBesideOthers}) {
        const Registered registered(gDone, creator, &ExportDoneLogEntry::create,
                                    ExportDoneLogEntry::sAction);
        check(*Entry(logEntryFactory()->create(gDone)), "factory");
        check(*clone(ExportDoneLogEntry("x")), "clone");
        check(*read("<Entry ID=\"ExpD\"/>"), "reading");
        check(*Entry(ExportStartLogEntry::create()), "behind");
    }
    QCOMPARE(gWrongDates, QStringList());
}

void tst_LogEntryCopies::valuesOfApplicationsSeeTheClock()
{
    const CuriousEntry entry;
    const Entry copy = clone(entry);
    QCOMPARE(textOf(*copy, "Text"), QString("curious"));
    QCOMPARE(textOf(*read("<Entry ID=\"Curi\" Text=\"x\"/>"), "Text"), QString("x"));
    QCOMPARE(gWrongDates, QStringList());
}

QTEST_GUILESS_MAIN(tst_LogEntryCopies)
#include "tst_LogEntryCopies.moc"
