#include <Vokit/FourChars>
#include <Vokit/LogCategory>
#include <Vokit/LogValue>

#include <QMap>
#include <QtTest>

using vo::FourChars;
using vo::LogCategory;
using vo::LogValue;
using vo::TLogValue;

using Text = TLogValue<QString>;
using Number = TLogValue<int>;
using Date = TLogValue<QDateTime>;

namespace {

struct CategoryRow
{
    vo::ELogCategory category;
    quint32 value;
    const char *code;
    const char *name;
};

// As log files and the code of clients have them.
constexpr CategoryRow gCategories[] = {
    {vo::LogCatNone, 0x20202020, "    ", "None"},
    {vo::LogCatAccess, 0x41636573, "Aces", "Access"},
    {vo::LogCatLogon, 0x4C6F676E, "Logn", "Logon & Logoff"},
    {vo::LogCatUsersGroups, 0x55734772, "UsGr", "User & Groups"},
    {vo::LogCatAuthorize, 0x41757468, "Auth", "Authorize"},
    {vo::LogCatSoftwareUpdates, 0x536F5570, "SoUp", "Software updates"},
    {vo::LogCatCameraSettings, 0x63536574, "cSet", "Camera Settings"},
    {vo::LogCatWebBrowser, 0x63576542, "cWeB", "Web browser"},
    {vo::LogCatNetworkMessages, 0x4E4D7367, "NMsg", "Network messages"},
    {vo::LogCatSoftbuttons, 0x536F6642, "SofB", "Softbuttons"},
    {vo::LogCatFormatting, 0x466F726D, "Form", "Formatting"},
    {vo::LogCatAppConfiguration, 0x61707043, "appC", "Voco configuration"},
    {vo::LogCatQuit, 0x61516974, "aQit", "Quit"},
    {vo::LogCatLayoutManager, 0x6C4D6772, "lMgr", "Layout Manager"},
    {vo::LogCatDisplayScaling, 0x44737053, "DspS", "Display scaling"},
    {vo::LogCatContextMenus, 0x634D656E, "cMen", "Context menus"},
    {vo::LogCatUploadAssistant, 0x75417373, "uAss", "Upload Assistant"},
    {vo::LogCatActionLog, 0x614C6F67, "aLog", "Action log"},
    {vo::LogCatEventSearch, 0x53726368, "Srch", "Event Search"},
    {vo::LogCatExport, 0x45787074, "Expt", "Export"},
    {vo::LogCatLocalArchive, 0x4C6F4172, "LoAr", "Local archive"},
    {vo::LogCatVideoSearch, 0x53725669, "SrVi", "Video search"},
    {vo::LogCatPlay, 0x506C6179, "Play", "Play"},
    {vo::LogCatViewing, 0x56696577, "View", "Viewing"},
    {vo::LogCatAlarm, 0x416C726D, "Alrm", "Alarm"},
    {vo::LogCatSequencer, 0x53657175, "Sequ", "Sequencer"},
    {vo::LogCatLayout, 0x4C61796F, "Layo", "Layout"},
    {vo::LogCatAudio, 0x41756469, "Audi", "Audio"},
    {vo::LogCatPtz, 0x6C50545A, "lPTZ", "PTZ"},
    {vo::LogCatPtzPost, 0x7050545A, "pPTZ", "PTZ post"},
    {vo::LogCatPtzConfig, 0x6C507443, "lPtC", "PTZ config"},
    {vo::LogCatPtzPostConfig, 0x70507443, "pPtC", "PTZ post config"},
    {vo::LogCatSignalOuts, 0x6353674F, "cSgO", "Signal outs"},
    {vo::LogCatError, 0x45726F72, "Eror", "Error"},
    {vo::LogCatRemoteControl, 0x436F6E74, "Cont", "Remote control"},
    {vo::LogCatDevices, 0x44657669, "Devi", "Devices"},
    {vo::LogCatSystem, 0x53797374, "Syst", "System"},
};

QString utf8(const char *bytes)
{
    return QString::fromUtf8(bytes);
}

QDateTime afternoon()
{
    return {QDate(2026, 11, 21), QTime(15, 4, 5, 678)};
}

// A value of an application: counts, and writes in a way of its own.
class Percent : public Number
{
public:
    using Number::Number;
    QTextStream &writeTo(QTextStream &stream) const override { return stream << value() << '%'; }
};

class Loud : public Text
{
public:
    using Text::Text;
    QTextStream &writeTo(QTextStream &stream) const override { return stream << value().toUpper(); }
};

} // namespace

class tst_LogEntryModel : public QObject
{
    Q_OBJECT

private slots:
    void fourChars_data();
    void fourChars();
    void fourCharsOfConstants();
    void fourCharsOfPointer();
    void fourCharsInPlace();
    void fourCharsOrder();
    void fourCharsOfZeroByte();

    void category_data();
    void category();
    void unknownCategory_data();
    void unknownCategory();
    void categoryNames();

    void text_data();
    void text();
    void number_data();
    void number();
    void date_data();
    void date();
    void hasDate_data();
    void hasDate();
    void typedSetters();
    void copyFrom();
    void valueOfAnApplication();
};

void tst_LogEntryModel::fourChars_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint32>("value");
    QTest::addColumn<QString>("back");
    const auto row = [](const char *name, const QString &text, quint32 value, const QString &back) {
        QTest::newRow(name) << text << value << back;
    };
    row("four", "Time", 0x54696D65, "Time");
    row("two", "to", 0x746F2020, "to  ");
    row("one", "x", 0x78202020, "x   ");
    row("three", "abc", 0x61626320, "abc ");
    row("empty", "", 0x20202020, "    ");
    row("null", QString(), 0x20202020, "    ");
    row("five", "Times", 0x54696D65, "Time");
    row("long", "Timestamp", 0x54696D65, "Time");
    row("blanks in front", "  to", 0x2020746F, "  to");
    row("Latin-1", utf8("\xc3\xa9t\xc3\xa9"), 0xE974E920, utf8("\xc3\xa9t\xc3\xa9 "));
    row("all bytes set", utf8("\xc3\xbf\xc3\xbf\xc3\xbf\xc3\xbf"), 0xFFFFFFFF,
        utf8("\xc3\xbf\xc3\xbf\xc3\xbf\xc3\xbf"));
    row("beyond Latin-1", utf8("a\xe2\x82\xac"), 0x613F2020, "a?  ");
    row("surrogate pair", utf8("\xf0\x9f\x8e\xa5"), 0x3F3F2020, "??  ");
    row("zero byte", QString::fromLatin1("\0src", 4), 0x00737263, QString::fromLatin1("\0src", 4));
    row("four zero bytes", QString::fromLatin1("\0\0\0\0", 4), 0,
        QString::fromLatin1("\0\0\0\0", 4));
}

void tst_LogEntryModel::fourChars()
{
    QFETCH(QString, text);
    QFETCH(quint32, value);
    QFETCH(QString, back);
    const FourChars id(text);
    QCOMPARE(id.value(), value);
    QVERIFY(id == FourChars(value));
    QVERIFY(!(id != FourChars(value)));
    QCOMPARE(FourChars(&text).value(), value);
    QCOMPARE(id.toString(), back);
    QCOMPARE(id.toString().size(), 4);
    QString written("before ");
    QTextStream stream(&written, QIODevice::Append);
    id.writeTo(stream);
    stream.flush();
    QCOMPARE(written, "before " + back);
    QCOMPARE(FourChars(id.toString()).value(), value);
}

void tst_LogEntryModel::fourCharsOfConstants()
{
    enum { Id = 0x54696D65 };
    QCOMPARE(FourChars(Id).toString(), QString("Time"));
    QCOMPARE(FourChars(0x54696D65).toString(), QString("Time"));
    QCOMPARE(FourChars(0xFFFFFFFF).value(), 0xFFFFFFFF);
    QCOMPARE(FourChars(0).value(), 0U);
    QCOMPARE(FourChars(0L).value(), 0U);
    QCOMPARE(FourChars(nullptr).value(), 0U);
    constexpr FourChars constant(0x20202020);
    QCOMPARE(constant.toString(), QString(4, ' '));
}

void tst_LogEntryModel::fourCharsOfPointer()
{
    QCOMPARE(FourChars(static_cast<const QString *>(nullptr)).value(), FourChars().value());
}

void tst_LogEntryModel::fourCharsInPlace()
{
    FourChars id;
    QByteArray bytes("to");
    id.initFourChars(bytes);
    QCOMPARE(bytes, QByteArray("to  "));
    QCOMPARE(id.value(), 0x746F2020U);
    bytes = "Timestamp";
    id.initFourChars(bytes);
    QCOMPARE(bytes, QByteArray("Timestamp"));
    QCOMPARE(id.value(), 0x54696D65U);
    bytes.clear();
    id.initFourChars(bytes);
    QCOMPARE(bytes, QByteArray("    "));
    QCOMPARE(id.value(), 0x20202020U);
}

// As unsigned numbers, and so as the bytes that they spell.
void tst_LogEntryModel::fourCharsOrder()
{
    QMap<FourChars, int> map;
    for (const quint32 value :
         {0x7A7A7A7AU, 0xE9202020U, 0x00737263U, 0x7FFFFFFFU, 0x80000000U, 0x41414141U, 0U})
        map.insert(value, 0);
    QList<quint32> order;
    for (const FourChars id : map.keys())
        order.append(id.value());
    QCOMPARE(order, (QList<quint32>{0U, 0x00737263U, 0x41414141U, 0x7A7A7A7AU, 0x7FFFFFFFU,
                                    0x80000000U, 0xE9202020U}));
    QVERIFY(FourChars(QString("ExpA")) < FourChars(QString("ExpD")));
    QVERIFY(FourChars(QString("ZZZZ")) < FourChars(QString("aaaa")));
    QVERIFY(!(FourChars(QString("ExpA")) < FourChars(QString("ExpA"))));
    QVERIFY(FourChars(QString("to")) < FourChars(QString("to!")));
}

void tst_LogEntryModel::fourCharsOfZeroByte()
{
    const QString text = FourChars(0x00737263).toString();
    QCOMPARE(text.size(), 4);
    QCOMPARE(text.at(0), QChar(0));
    QCOMPARE(text.mid(1), QString("src"));
    QVERIFY(FourChars(0x00737263) != FourChars(QString("src")));
}

void tst_LogEntryModel::category_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const CategoryRow &row : gCategories)
        QTest::newRow(row.name) << index++;
    QCOMPARE(index, 37);
}

void tst_LogEntryModel::category()
{
    QFETCH(int, index);
    const CategoryRow &row = gCategories[index];
    QCOMPARE(static_cast<quint32>(row.category), row.value);
    QCOMPARE(FourChars(QString(row.code)).value(), row.value);
    const LogCategory category(row.category);
    QCOMPARE(category.category(), row.category);
    QCOMPARE(category.name(), QString(row.name));
    for (const CategoryRow &other : gCategories) {
        QCOMPARE(category == LogCategory(other.category), row.category == other.category);
        QCOMPARE(category != LogCategory(other.category), row.category != other.category);
    }
}

void tst_LogEntryModel::unknownCategory_data()
{
    QTest::addColumn<quint32>("value");
    for (const quint32 value : {0U, 1U, 0x20202021U, 0x636553FFU, 0xFFFFFFFFU})
        QTest::addRow("%08x", value) << value;
}

void tst_LogEntryModel::unknownCategory()
{
    QFETCH(quint32, value);
    const LogCategory category(static_cast<vo::ELogCategory>(value));
    QCOMPARE(static_cast<quint32>(category.category()), value);
    QCOMPARE(category.name(), QString("None"));
    QVERIFY(category != LogCategory(vo::LogCatNone));
    QVERIFY(category == LogCategory(static_cast<vo::ELogCategory>(value)));
}

void tst_LogEntryModel::categoryNames()
{
    QStringList names;
    for (const CategoryRow &row : gCategories)
        names.append(row.name);
    std::sort(names.begin(), names.end());
    QCOMPARE(LogCategory::categoryNames(), names);
    QCOMPARE(names.count("None"), 1);
    // Sorted by code unit, not as a reader would.
    QVERIFY(names.indexOf("PTZ") < names.indexOf("Play"));
}

void tst_LogEntryModel::text_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasValue");
    const auto row = [](const char *name, const QString &text, bool hasValue) {
        QTest::newRow(name) << text << hasValue;
    };
    row("null", QString(), false);
    row("empty", "", false);
    row("blank", " ", true);
    row("zero character", QString(QChar(0)), true);
    row("0", "0", true);
    row("words", "3 clips", true);
    row("lines", " a\r\n\tb\n", true);
    row("beyond ASCII", utf8("\xc3\xa9\xe2\x82\xac\xf0\x9f\x8e\xa5"), true);
    row("half a pair", QString(QChar(0xD83C)), true);
}

void tst_LogEntryModel::text()
{
    QFETCH(QString, text);
    QFETCH(bool, hasValue);
    Text value(0x54657874, "text", text);
    QCOMPARE(value.id().value(), 0x54657874U);
    QCOMPARE(value.name(), QString("text"));
    QCOMPARE(value.hasValue(), hasValue);
    QCOMPARE(value.value(), text);
    QCOMPARE(value.toString(), text);
    value.setValue("other");
    QCOMPARE(value.value(), QString("other"));
    value.setValue(text);
    QCOMPARE(value.value(), text);
    QString written("a");
    QTextStream stream(&written, QIODevice::Append);
    QCOMPARE(&value.writeTo(stream), &stream);
    stream << "z";
    stream.flush();
    QCOMPARE(written, "a" + text + "z");
}

void tst_LogEntryModel::number_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    const auto row = [](const char *text, int number) { QTest::newRow(text) << text << number; };
    row("0", 0);
    row("7", 7);
    row("-7", -7);
    row("+7", 7);
    row(" 7 ", 7);
    row("007", 7);
    row("2147483647", std::numeric_limits<int>::max());
    row("-2147483648", std::numeric_limits<int>::min());
    row("2147483648", 0);
    row("99999999999999999999", 0);
    row("0x10", 0);
    row("1e3", 0);
    row("1.5", 0);
    row("1,000", 0);
    row("12abc", 0);
    row("abc", 0);
    row("", 0);
}

void tst_LogEntryModel::number()
{
    QFETCH(QString, text);
    QFETCH(int, number);
    Number value(0x6572724C, "line", 42);
    QCOMPARE(value.toString(), QString("42"));
    value.setValue(text);
    QCOMPARE(value.value(), number);
    QCOMPARE(value.hasValue(), number != 0);
    QCOMPARE(value.toString(), QString::number(number));
    QString written;
    QTextStream stream(&written);
    QCOMPARE(&value.writeTo(stream), &stream);
    stream.flush();
    QCOMPARE(written, QString::number(number));
}

void tst_LogEntryModel::date_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("date");
    const auto row = [](const char *text, const QDateTime &date) {
        QTest::newRow(text) << text << date;
    };
    row("21 Nov 2026 15:04:05", {QDate(2026, 11, 21), QTime(15, 4, 5)});
    row("3 May 2026 00:00:00", {QDate(2026, 5, 3), QTime(0, 0)});
    row("1 Jan 1970 05:30:00", QDateTime::fromTime_t(0));
    row("1 Jan 1970 00:00:00", {QDate(1970, 1, 1), QTime(0, 0)});
    row("29 Feb 2028 23:59:59", {QDate(2028, 2, 29), QTime(23, 59, 59)});
    for (const char *unreadable : {"", " ", "29 Feb 2026 10:00:00", "21 Nov 2026", "15:04:05",
                                   "2026-11-21T15:04:05", "11/21/26 3:04 PM", "21.11.26 15:04",
                                   "21 Nov 2026 15:04:05 Z", "21 Nov 2026 25:04:05", "abc", "0"})
        row(unreadable, {});
}

void tst_LogEntryModel::date()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, date);
    Date value(0x66726F6D, "from", afternoon());
    value.setValue(text);
    QCOMPARE(value.value().isValid(), date.isValid());
    QCOMPARE(value.value(), date);
    QCOMPARE(value.value().timeSpec(), Qt::LocalTime);
    QCOMPARE(value.hasValue(), date.isValid());
    QCOMPARE(value.toString(), date.isValid() ? text : QString());
    QString written;
    QTextStream stream(&written);
    QCOMPARE(&value.writeTo(stream), &stream);
    stream.flush();
    QCOMPARE(written, value.toString());
}

void tst_LogEntryModel::hasDate_data()
{
    QTest::addColumn<QDateTime>("date");
    QTest::addColumn<bool>("hasValue");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QDateTime &date, bool hasValue, const char *text) {
        QTest::newRow(name) << date << hasValue << text;
    };
    row("default-built", {}, false, "");
    row("with milliseconds", afternoon(), true, "21 Nov 2026 15:04:05");
    row("UTC, in its own hours", {QDate(2026, 11, 21), QTime(15, 4, 5), Qt::UTC}, true,
        "21 Nov 2026 15:04:05");
    row("first second of 1970", QDateTime::fromTime_t(0), true, "1 Jan 1970 05:30:00");
    row("first second of 1970, UTC", QDateTime::fromTime_t(0, Qt::UTC), true,
        "1 Jan 1970 00:00:00");
    // Qt finds these two equal to a default-built date.
    row("midnight of 1970", {QDate(1970, 1, 1), QTime(0, 0)}, true, "1 Jan 1970 00:00:00");
    row("the same, UTC", QDateTime(QDate(1970, 1, 1), QTime(0, 0)).toUTC(), true,
        "31 Dec 1969 18:30:00");
}

void tst_LogEntryModel::hasDate()
{
    QFETCH(QDateTime, date);
    QFETCH(bool, hasValue);
    QFETCH(QString, text);
    const Date value(0x66726F6D, "from", date);
    QCOMPARE(value.hasValue(), hasValue);
    QCOMPARE(value.toString(), text);
}

void tst_LogEntryModel::typedSetters()
{
    Number number(0x6572724C, "line", 1);
    number.setValue(5);
    QCOMPARE(number.value(), 5);
    number.setValue(0);
    QVERIFY(!number.hasValue());
    Date date(0x66726F6D, "from", QDateTime());
    date.setValue(afternoon());
    QCOMPARE(date.value(), afternoon());
    date.setValue(QDateTime());
    QVERIFY(!date.hasValue());
    LogValue &any = number;
    any.setValue("9");
    QCOMPARE(number.value(), 9);
}

// Only the value goes over, and only within one type.
void tst_LogEntryModel::copyFrom()
{
    Text text(1, "a text", "1");
    Number number(2, "a number", 1);
    Date date(3, "a date", afternoon());
    const LogValue *const values[] = {&text, &number, &date};
    for (const LogValue *from : values) {
        Text toText(11, "to text", "x");
        Number toNumber(12, "to number", 9);
        Date toDate(13, "to date", QDateTime());
        QCOMPARE(&toText.copyFrom(*from), static_cast<LogValue *>(&toText));
        QCOMPARE(&toNumber.copyFrom(*from), static_cast<LogValue *>(&toNumber));
        QCOMPARE(&toDate.copyFrom(*from), static_cast<LogValue *>(&toDate));
        QCOMPARE(toText.value(), QString(from == &text ? "1" : "x"));
        QCOMPARE(toNumber.value(), from == &number ? 1 : 9);
        QCOMPARE(toDate.value(), from == &date ? afternoon() : QDateTime());
        QCOMPARE(toText.id().value(), 11U);
        QCOMPARE(toText.name(), QString("to text"));
    }
    const Number zero(2, "", 0);
    QCOMPARE(static_cast<Number &>(number.copyFrom(zero)).value(), 0);
    text.copyFrom(text);
    QCOMPARE(text.value(), QString("1"));
}

// A class derived from a typed value is of that type, and writes as it likes.
void tst_LogEntryModel::valueOfAnApplication()
{
    Percent percent(1, "level", 80);
    const Loud loud(2, "alarm", "fire");
    QCOMPARE(percent.toString(), QString("80%"));
    QCOMPARE(loud.toString(), QString("FIRE"));
    Number number(3, "", 1);
    number.copyFrom(percent);
    QCOMPARE(number.value(), 80);
    percent.copyFrom(Number(4, "", 7));
    QCOMPARE(percent.toString(), QString("7%"));
    Text text(5, "", "");
    text.copyFrom(loud);
    QCOMPARE(text.toString(), QString("fire"));
}

QTEST_GUILESS_MAIN(tst_LogEntryModel)
#include "tst_LogEntryModel.moc"
