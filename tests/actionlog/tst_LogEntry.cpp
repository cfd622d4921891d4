#include <Vokit/Vokit.h>

#include <QtTest>

#include <memory>

using vo::FourChars;
using vo::LogEntry;
using vo::LogValue;
using vo::TLogValue;

using Text = TLogValue<QString>;
using Number = TLogValue<int>;
using Date = TLogValue<QDateTime>;

namespace {

struct ValueRow
{
    quint32 id;
    const char *name;
    char type; ///< of the value: 't'ext, 'n'umber, 'd'ate
};

struct ClassRow
{
    const std::type_info *type;
    LogEntry *(*create)();
    const char *code;
    quint32 id;
    vo::ELogCategory category;
    const char *action; ///< and the next one: the static members
    const char *descriptionText;
    const char *actionText; ///< and the next one: what they hold
    const char *descriptionTextText;
    QList<ValueRow> values; ///< behind time and user
};

template <class Entry>
ClassRow row(const char *code, quint32 id, vo::ELogCategory category, const char *action,
             const char *descriptionText, const QList<ValueRow> &values)
{
    return {&typeid(Entry),
            &Entry::create,
            code,
            id,
            category,
            Entry::sAction,
            Entry::sDescriptionText,
            action,
            descriptionText,
            values};
}

QList<ClassRow> classes()
{
    using namespace vo;
    const QList<ValueRow> text{{0x54657874, "text", 't'}};
    const QList<ValueRow> period{{0x54657874, "text", 't'},   {0x466F726D, "format", 't'},
                                 {0x73726350, "source", 't'}, {0x64737450, "dest", 't'},
                                 {0x66726F6D, "from", 'd'},   {0x746F2020, "to", 'd'}};
    const QList<ValueRow> rename{{0x54657874, "text", 't'},
                                 {0x70617468, "path", 't'},
                                 {0x00737263, "source", 't'},
                                 {0x64657374, "dest", 't'}};
    const QList<ValueRow> problem{{0x73726350, "source", 't'},
                                  {0x65727254, "error", 't'},
                                  {0x6572724C, "line", 'n'},
                                  {0x65727243, "colunm", 'n'}};
    const QList<ValueRow> files{{0x66696C4F, "oldFile", 't'}, {0x66696C4E, "newFile", 't'}};
    return {
        row<ActionLogContextSwitchEntry>("ALog", 0x414C6F67, LogCatActionLog, "Switched log",
                                         "Switched logging from '%1' to '%2'.", files),
        row<ExportWrittenLogEntry>("ExpW", 0x45787057, LogCatExport, "Export written", "%1",
                                   period),
        row<ExportStartLogEntry>("ExpS", 0x45787053, LogCatExport, "Export start", "%1", period),
        row<ExportAbortLogEntry>("ExpA", 0x45787041, LogCatExport, "Export abort", "%1", text),
        row<ExportErrorLogEntry>("ExpE", 0x45787045, LogCatExport, "Export error", "%1", text),
        row<ExportDoneLogEntry>("ExpD", 0x45787044, LogCatExport, "Export done", "%1", text),
        row<ExportRenameLogEntry>("ExpR", 0x45787052, LogCatExport, "Export rename", "%1", rename),
        row<ParseXMLLogEntry>("XmlP", 0x586D6C50, LogCatError, "Action log error",
                              "Error '%1' reading action log '%2' in line '%3', column '%4'.",
                              problem),
    };
}

char typeOf(const LogValue *value)
{
    return dynamic_cast<const Text *>(value)     ? 't'
           : dynamic_cast<const Number *>(value) ? 'n'
           : dynamic_cast<const Date *>(value)   ? 'd'
                                                 : '?';
}

/// An entry with any words and values.
class AnyEntry : public LogEntry
{
public:
    explicit AnyEntry(const QString &sentence = QString(), const QStringList &texts = {},
                      FourChars id = 0x416E7920)
        : m_id(id)
        , m_sentence(sentence)
    {
        int number = 0;
        for (const QString &text : texts) {
            const QString name = QStringLiteral("v%1").arg(++number);
            add(new Text(FourChars(name), name, text));
        }
    }

    void add(LogValue *value)
    {
        m_owned.emplace_back(value);
        append(value);
    }

    FourChars id() const override
    {
        m_asked += "id ";
        return m_id;
    }
    vo::LogCategory category() const override
    {
        m_asked += "category ";
        return m_category;
    }
    QString descriptionText() const override { return m_sentence; }
    QString action() const override { return "any action"; }

    void setCategory(vo::ELogCategory category) { m_category = category; }
    QString takeAsked() const { return std::exchange(m_asked, QString()).trimmed(); }

private:
    FourChars m_id;
    vo::ELogCategory m_category = vo::LogCatSystem;
    QString m_sentence;
    std::vector<std::unique_ptr<LogValue>> m_owned;
    mutable QString m_asked;
};

class RecordingWriter : public vo::ILogWriter
{
public:
    void writeStartDocument() override { calls.append("start document"); }
    void writeEndDocument() override { calls.append("end document"); }
    void writeStartElement(const LogEntry &entry) override { calls.append("<" + entry.action()); }
    void writeEndElement(const LogEntry &entry) override { calls.append(entry.action() + ">"); }
    void writeAttribute(const LogValue &value) override { calls.append(value.id().toString()); }
    QStringList calls;
};

QDateTime afternoon()
{
    return {QDate(2026, 11, 21), QTime(15, 4, 5, 678)};
}

} // namespace

class tst_LogEntry : public QObject
{
    Q_OBJECT

private slots:
    void libraryClass_data();
    void libraryClass();
    void constructors();
    void newEntry();
    void logValue();
    void writeTo();
    void description_data();
    void description();
    void descriptionThatMultiplies();
    void descriptionOfTypes();
    void descriptionOfLibraryClasses();
    void equality_data();
    void equality();
    void equalityOfClasses();
    void otherValuesDontCount();
};

void tst_LogEntry::libraryClass_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const ClassRow &row : classes())
        QTest::newRow(row.code) << index++;
    QCOMPARE(index, 8);
}

void tst_LogEntry::libraryClass()
{
    QFETCH(int, index);
    const ClassRow row = classes().at(index);
    QCOMPARE(row.action, row.actionText);
    QCOMPARE(row.descriptionText, row.descriptionTextText);
    QCOMPARE(FourChars(QString(row.code)).value(), row.id);

    const QDateTime before = QDateTime::currentDateTime();
    const std::unique_ptr<LogEntry> created(row.create());
    const std::unique_ptr<LogEntry> fromFactory(vo::logEntryFactory()->create(row.id));
    const QDateTime after = QDateTime::currentDateTime();
    for (const LogEntry *entry : {created.get(), fromFactory.get()}) {
        QVERIFY(entry);
        QVERIFY(typeid(*entry) == *row.type);
        QCOMPARE(entry->id().value(), row.id);
        QCOMPARE(entry->category().category(), row.category);
        QCOMPARE(entry->action(), QString(row.actionText));
        QCOMPARE(entry->descriptionText(), QString(row.descriptionTextText));
        QCOMPARE(entry->user(), QString());
        QList<ValueRow> values{{0x54696D65, "Time", 'd'}, {0x55736572, "User", 't'}};
        values += row.values;
        QCOMPARE(entry->values().size(), values.size());
        for (int i = 0; i < values.size(); ++i) {
            const LogValue *value = entry->values().at(i);
            QCOMPARE(value->id().value(), values.at(i).id);
            QCOMPARE(value->name(), QString(values.at(i).name));
            QCOMPARE(typeOf(value), values.at(i).type);
            QCOMPARE(value->hasValue(), values.at(i).type == 'd');
            if (const auto *date = dynamic_cast<const Date *>(value)) {
                QVERIFY(date->value() >= before && date->value() <= after);
                QCOMPARE(date->value().timeSpec(), Qt::LocalTime);
            }
        }
    }
}

void tst_LogEntry::constructors()
{
    const QDateTime from(QDate(2026, 1, 2), QTime(3, 4));
    const QDateTime to(QDate(2026, 5, 6), QTime(7, 8));
    const auto texts = [](const LogEntry &entry) {
        QStringList list;
        for (const LogValue *value : entry.values().mid(2))
            list.append(value->toString());
        return list;
    };
    const QStringList period{"t", "f", "s", "d", "2 Jan 2026 03:04:00", "6 May 2026 07:08:00"};
    QCOMPARE(texts(ExportStartLogEntry("t", "f", "s", "d", from, to)), period);
    QCOMPARE(texts(ExportWrittenLogEntry("t", "f", "s", "d", from, to)), period);
    QCOMPARE(texts(ExportDoneLogEntry("t")), QStringList("t"));
    QCOMPARE(texts(ExportErrorLogEntry("t")), QStringList("t"));
    QCOMPARE(texts(ExportAbortLogEntry("t")), QStringList("t"));
    QCOMPARE(texts(ExportRenameLogEntry("t", "p", "s", "d")), (QStringList{"t", "p", "s", "d"}));
    QCOMPARE(texts(ParseXMLLogEntry("e", "f", 3, -4)), (QStringList{"e", "f", "3", "-4"}));
    QCOMPARE(texts(vo::ActionLogContextSwitchEntry("o", "n")), (QStringList{"o", "n"}));
}

void tst_LogEntry::newEntry()
{
    const QDateTime before = QDateTime::currentDateTime();
    const AnyEntry entry;
    const QDateTime after = QDateTime::currentDateTime();
    QVERIFY(entry.time() >= before && entry.time() <= after);
    QCOMPARE(entry.time().timeSpec(), Qt::LocalTime);
    QCOMPARE(entry.user(), QString());
    QCOMPARE(entry.values().size(), 2);
    QCOMPARE(entry.values().at(0)->id().value(), 0x54696D65U);
    QCOMPARE(entry.values().at(1)->id().value(), 0x55736572U);
    entry.setTime(afternoon());
    entry.setUser("ann");
    QCOMPARE(entry.time(), afternoon());
    QCOMPARE(entry.user(), QString("ann"));
    QCOMPARE(entry.values().at(0)->toString(), QString("21 Nov 2026 15:04:05"));
    QCOMPARE(entry.values().at(1)->toString(), QString("ann"));
}

void tst_LogEntry::logValue()
{
    AnyEntry entry("", {"1", "2"});
    auto *const secondV1 = new Number(FourChars(QString("v1")), "again", 3);
    auto *const secondUser = new Text(0x55736572, "again", "x");
    auto *const zero = new Text(0x00737263, "zero", "");
    entry.add(secondV1);
    entry.add(secondUser);
    entry.add(zero);
    QCOMPARE(entry.logValue(FourChars(QString("Time"))), entry.values().at(0));
    QCOMPARE(entry.logValue(0x55736572), entry.values().at(1));
    QCOMPARE(entry.logValue(FourChars(QString("v1"))), entry.values().at(2));
    QCOMPARE(entry.logValue(FourChars(QString("v2  and more"))), entry.values().at(3));
    QCOMPARE(entry.logValue(0x00737263), static_cast<LogValue *>(zero));
    QCOMPARE(entry.logValue(FourChars(QString("src"))), static_cast<LogValue *>(nullptr));
    QCOMPARE(entry.logValue(FourChars(QString("time"))), static_cast<LogValue *>(nullptr));
    QCOMPARE(entry.logValue(FourChars(QString())), static_cast<LogValue *>(nullptr));
}

void tst_LogEntry::writeTo()
{
    AnyEntry entry("", {"", "2"});
    entry.add(new Number(0x6572724C, "line", 0));
    RecordingWriter writer;
    entry.writeTo(writer);
    QCOMPARE(writer.calls,
             (QStringList{"<any action", "Time", "User", "v1  ", "v2  ", "errL", "any action>"}));
}

void tst_LogEntry::description_data()
{
    QTest::addColumn<QString>("sentence");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("description");
    const auto row = [](const char *sentence, const QStringList &values, const char *description) {
        QTest::addRow("%s <- %s", sentence, qPrintable(values.join('|')))
            << QString::fromUtf8(sentence) << values << QString::fromUtf8(description);
    };
    row("no values", {}, "no values");
    row("%1 and %2.", {"a", "b"}, "a and b.");
    row("%2 and %1.", {"a", "b"}, "b and a.");
    row("%1, %1", {"a"}, "a, a");
    row("%1 and %2.", {"a"}, "a and %2.");
    row("%1", {"a", "b", "c"}, "a");
    row("fixed", {"a", "b"}, "fixed");
    row("%5 %9", {"a", "b"}, "a b");
    row("'%1'", {""}, "''");
    row("%1", {"%1 by %2", "a", "b"}, "a by b");
    row("%1", {"%2", "%3", "%4", "end"}, "end");
    row("%1 %2 %3", {"%3", "b", "c"}, "c b c");
    row("%1 %2", {"%2", "b"}, "b b");
    row("%1 %2", {"a", "%1", "c"}, "a c");
    row("%12 %1", {"a", "b"}, "b a");
    row("%L1", {"1000"}, "1000");
    row("100% of %1%", {"a"}, "100% of a%");
    row("%0 %1", {"a", "b"}, "a b");
    row("%%1", {"a"}, "%a");
    row("\xc3\xa9%1\xe2\x82\xac", {QString::fromUtf8("\xc3\xb1")}, "\xc3\xa9\xc3\xb1\xe2\x82\xac");
    row("", {}, "");
    row("", {"a"}, "v1: a ");
    row("", {"a", "", "%1"}, "v1: a v2:  v3: %1 ");
}

void tst_LogEntry::description()
{
    QFETCH(QString, sentence);
    QFETCH(QStringList, values);
    QFETCH(QString, description);
    const AnyEntry entry(sentence, values);
    entry.setUser("never shown");
    QCOMPARE(entry.description(), description);
}

// A log may say anything: a few hundred bytes must not become gigabytes.
void tst_LogEntry::descriptionThatMultiplies()
{
    const auto times = [](int count, const char *text) { return QString(text).repeated(count); };
    const QStringList values{times(2000, "%1"), times(2000, "%2"), times(2000, "%3"), "end"};
    QCOMPARE(AnyEntry("%1", values).description(), values.at(0));
    QCOMPARE(AnyEntry("%1 %2", {times(300, "%3"), times(300, "%4"), times(300, "%5"), "end"})
                 .description()
                 .size(),
             300 * 300 * 2 + 1 + 300 * 3);
    // What stands once is as long as it is, and a million more is no harm.
    const QString longText = times(3000000, "a");
    QCOMPARE(AnyEntry("%1 %2 %3", {longText, longText, "c"}).description(),
             longText + ' ' + longText + " c");
    const QString half = times(500000, "a");
    QCOMPARE(AnyEntry("%1 %1 %1 %L1%2", {half, "b"}).description(), "%1 %1 %1 %L1%2");
    QCOMPARE(AnyEntry("%1 %1 %11%2", {half, "b", "c"}).description(), half + ' ' + half + " cb");
}

void tst_LogEntry::descriptionOfTypes()
{
    const auto fill = [](AnyEntry &entry) {
        entry.add(new Number(1, "count", 0));
        entry.add(new Number(2, "line", -1234567));
        entry.add(new Date(3, "from", afternoon()));
        entry.add(new Date(4, "to", QDateTime()));
    };
    AnyEntry sentence("%1;%2;%3;%4.");
    AnyEntry prose;
    fill(sentence);
    fill(prose);
    QCOMPARE(sentence.description(), QString("0;-1234567;21 Nov 2026 15:04:05;."));
    QCOMPARE(prose.description(),
             QString("count: 0 line: -1234567 from: 21 Nov 2026 15:04:05 to:  "));
}

void tst_LogEntry::descriptionOfLibraryClasses()
{
    QCOMPARE(ParseXMLLogEntry("Start tag expected.", "/a.vol", 1, 12).description(),
             QString("Error 'Start tag expected.' reading action log '/a.vol' in line '1', "
                     "column '12'."));
    QCOMPARE(vo::ActionLogContextSwitchEntry("/a", "/b").description(),
             QString("Switched logging from '/a' to '/b'."));
    QCOMPARE(vo::ActionLogContextSwitchEntry("/%2", "/b").description(),
             QString("Switched logging from '//b' to '/b'."));
    QCOMPARE(ExportDoneLogEntry("%1").description(), QString("%1"));
    QCOMPARE(ExportErrorLogEntry("").description(), QString());
    QCOMPARE(ExportRenameLogEntry("'%1%2' to '%1%3'.", "/p/", "old", "new").description(),
             QString("'/p/old' to '/p/new'."));
}

void tst_LogEntry::equality_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<quint32>("id");
    QTest::addColumn<quint32>("category");
    QTest::addColumn<QString>("user");
    QTest::addColumn<bool>("equal");
    QTest::addColumn<QString>("asked");
    const auto row = [](const char *name, const QDateTime &time, quint32 id, quint32 category,
                        const QString &user, bool equal, const char *asked) {
        QTest::newRow(name) << time << id << category << user << equal << QString(asked);
    };
    const QDateTime time = afternoon();
    row("all", time, 1, vo::LogCatPlay, "ann", true, "id category");
    row("same moment in UTC", time.toUTC(), 1, vo::LogCatPlay, "ann", true, "id category");
    row("a millisecond", time.addMSecs(1), 1, vo::LogCatPlay, "ann", false, "");
    row("no time", QDateTime(), 1, vo::LogCatPlay, "ann", false, "");
    row("id", time, 2, vo::LogCatPlay, "ann", false, "id");
    row("category", time, 1, vo::LogCatAlarm, "ann", false, "id category");
    row("unknown category", time, 1, 7, "ann", false, "id category");
    row("user", time, 1, vo::LogCatPlay, "Ann", false, "id category");
    row("no user", time, 1, vo::LogCatPlay, "", false, "id category");
    row("time and id", time.addSecs(1), 2, vo::LogCatPlay, "ann", false, "");
    row("id and category", time, 2, vo::LogCatAlarm, "ann", false, "id");
}

void tst_LogEntry::equality()
{
    QFETCH(QDateTime, time);
    QFETCH(quint32, id);
    QFETCH(quint32, category);
    QFETCH(QString, user);
    QFETCH(bool, equal);
    AnyEntry entry("", {}, 1);
    entry.setTime(afternoon());
    entry.setUser("ann");
    entry.setCategory(vo::LogCatPlay);
    AnyEntry other("", {}, id);
    other.setTime(time);
    other.setUser(user);
    other.setCategory(static_cast<vo::ELogCategory>(category));
    QCOMPARE(entry == other, equal);
    QTEST(entry.takeAsked(), "asked");
    QTEST(other.takeAsked(), "asked");
    QCOMPARE(other == entry, equal);
    QCOMPARE(entry != other, !equal);
}

void tst_LogEntry::equalityOfClasses()
{
    // Two of different classes that say the same are the same.
    const ExportDoneLogEntry done("a");
    AnyEntry any("", {}, done.id());
    any.setCategory(vo::LogCatExport);
    any.setTime(done.time());
    QVERIFY(done == any);
    QVERIFY(any == done);
}

void tst_LogEntry::otherValuesDontCount()
{
    const ExportDoneLogEntry a("a");
    const ExportDoneLogEntry b("b");
    b.setTime(a.time());
    QVERIFY(a == b);
    QVERIFY(!(a != b));
    const ExportErrorLogEntry c("a");
    c.setTime(a.time());
    QVERIFY(a != c);
}

QTEST_GUILESS_MAIN(tst_LogEntry)
#include "tst_LogEntry.moc"
