#include "LogFixture.h"
#include "support/RecordedDestination.h"

#include <Vokit/ActionLogContextSwitchEntry>
#include <Vokit/ILogUserSource>

#include <QtTest>

using namespace test;
using vo::ActionLog;

namespace {

class Names : public vo::ILogUserSource
{
public:
    Names(const QString &primary, const QString &secondary)
        : m_primary(primary)
        , m_secondary(secondary)
    {}
    QString primaryName() const override { return m_primary; }
    QString secondaryName() const override { return m_secondary; }

private:
    const QString m_primary, m_secondary;
};

/// A destination that tells in which order it was read.
class ReadDestination : public RecordedDestination
{
public:
    mutable QStringList reads;

    QVariant value(const QString &key, const QVariant &defaultValue) const override
    {
        reads << key + " " + defaultValue.toString();
        return RecordedDestination::value(key, defaultValue);
    }
};

QStringList description(const vo::ActionLog &log)
{
    QStringList texts;
    for (const vo::LogEntry *entry : log.entries())
        texts << entry->description();
    return texts;
}

} // namespace

/// Where the log lies, what is stored of it, and in whose name it writes.
class tst_ActionLogConfiguration : public QObject
{
    Q_OBJECT

private slots:
    void defaultFile_data();
    void defaultFile();
    void instance();
    void userName_data();
    void userName();
    void contextSwitchEntry();
    void switchFileHandle_data();
    void switchFileHandle();
    void bytesOfASwitch();
    void switchWhileSuspended();
    void aTagLeftOpenStaysInItsFile();
    void setFileInfo();
    void setFileInfoWithNewAccount();
    void setFileInfoWithoutName();
    void save_data();
    void save();
    void saveAfterFallBack();
    void loadReadsInOrder();
    void load_data();
    void load();
    void password_data();
    void password();
    void storedPathMovesWithTheDirectory();
    void nullDestination();
};

void tst_ActionLogConfiguration::defaultFile_data()
{
    QTest::addColumn<QString>("organisation");
    QTest::addColumn<QString>("application");
    QTest::addColumn<QString>("path");
    QTest::newRow("both") << "Maker"
                          << "Voco"
                          << "~/state/Maker/Voco/Voco.vol";
    QTest::newRow("dots stay") << "Maker"
                               << "Voco.2"
                               << "~/state/Maker/Voco.2/Voco.2.vol";
    QTest::newRow("no organisation") << ""
                                     << "Voco"
                                     << "~/state//Voco/Voco.vol";
}

void tst_ActionLogConfiguration::defaultFile()
{
    QFETCH(QString, organisation);
    QFETCH(QString, application);
    const LogFixture fixture;
    QCoreApplication::setOrganizationName(organisation);
    QCoreApplication::setApplicationName(application);
    QTEST(fixture.withoutPath(ActionLog::defaultFileInfo().filePath()), "path");
    QCOMPARE(fixture.disk(), QStringList());
}

void tst_ActionLogConfiguration::instance()
{
    const LogFixture fixture;
    ActionLog::deleteActionLog(); // none yet
    ActionLog *const log = ActionLog::getInstance();
    QCOMPARE(ActionLog::getInstance(), log);
    QCOMPARE(log->fileInfo().absoluteFilePath(), fixture.defaultFile());
    QPointer<ActionLog> watched(log);
    ActionLog::deleteActionLog();
    QVERIFY(!watched);
    QVERIFY(ActionLog::getInstance());
    ActionLog::deleteActionLog();
    ActionLog::deleteActionLog();

    // A directory that can't be made is no failure yet.
    const LogFixture blocked;
    blocked.write(blocked.path("state"), "a file");
    ActionLog *const useless = ActionLog::getInstance();
    SignalRecord record(*useless, blocked);
    useless->setSuspended(false);
    useless->log(Remark("lost"));
    QCOMPARE(record.take(), QStringList("errorFile(~/state/Maker/Voco/Voco.vol, 1)"));
    ActionLog::deleteActionLog();
}

void tst_ActionLogConfiguration::userName_data()
{
    QTest::addColumn<bool>("source");
    QTest::addColumn<QString>("primary");
    QTest::addColumn<QString>("secondary");
    QTest::addColumn<QByteArray>("environment"); // null for none
    QTest::addColumn<QString>("name");
    const QByteArray none, anna("anna"), empty("");
    QTest::newRow("nobody") << false << ""
                            << "" << none << "";
    QTest::newRow("the environment") << false << ""
                                     << "" << anna << "anna (System)";
    QTest::newRow("an empty variable") << false << ""
                                       << "" << empty << " (System)";
    QTest::newRow("one name") << true << "p"
                              << "" << none << "p";
    QTest::newRow("the source comes first") << true << "p"
                                            << "" << anna << "p";
    QTest::newRow("two names") << true << "p"
                               << "s" << anna << "p (s)";
    QTest::newRow("a secondary name alone") << true << ""
                                            << "s" << anna << " (s)";
    QTest::newRow("no names: the environment") << true << ""
                                               << "" << anna << "anna (System)";
    QTest::newRow("no names, no environment") << true << ""
                                              << "" << none << "";
}

void tst_ActionLogConfiguration::userName()
{
    QFETCH(bool, source);
    QFETCH(QString, primary);
    QFETCH(QString, secondary);
    QFETCH(QByteArray, environment);
    const LogFixture fixture;
    qputenv("username", "small letters");
    qputenv("USER", "another variable");
    if (!environment.isNull())
        qputenv("USERNAME", environment);
    const Names names(primary, secondary);
    ActionLog log(fixture.path("F.vol"));
    if (source)
        log.setUserSource(const_cast<Names *>(&names));
    QTEST(log.userName(), "name");
    log.setSuspended(false);
    const Remark entry("one");
    log.log(entry);
    QTEST(entry.user(), "name");
    QFETCH(QString, name);
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")).contains("User"), !name.isEmpty());
    qunsetenv("USERNAME");
    qunsetenv("username");
}

void tst_ActionLogConfiguration::contextSwitchEntry()
{
    vo::ActionLogContextSwitchEntry entry("old", "new");
    QCOMPARE(entry.id().value(), 0x414C6F67u);
    QCOMPARE(entry.category().category(), vo::LogCatActionLog);
    QCOMPARE(entry.action(), QString("Switched log"));
    QCOMPARE(entry.description(), QString("Switched logging from 'old' to 'new'."));
    QStringList values;
    for (const vo::LogValue *value : entry.values().mid(2))
        values << value->id().toString() + " " + value->name() + " " + value->toString();
    QCOMPARE(values, (QStringList{"filO oldFile old", "filN newFile new"}));
    const QScopedPointer<vo::LogEntry> created(vo::ActionLogContextSwitchEntry::create());
    QCOMPARE(created->description(), QString("Switched logging from '' to ''."));
}

void tst_ActionLogConfiguration::switchFileHandle_data()
{
    QTest::addColumn<bool>("open");
    QTest::addColumn<bool>("content");
    QTest::addColumn<QStringList>("disk");
    QTest::addColumn<QStringList>("list");
    const QString goes = "F.vol = Log(~/F.vol): one, ALog";
    const QString fresh = "G.vol = Log(~/G.vol): ALog";
    const QString longer = "G.vol = Log(~/G.vol): old, ALog";
    QTest::newRow("from a file never opened")
        << false << false << QStringList{fresh} << QStringList{"ALog"};
    QTest::newRow("to one with content")
        << false << true << QStringList{longer} << QStringList{"old", "ALog"};
    QTest::newRow("from an open file")
        << true << false << QStringList{goes, fresh} << QStringList{"one", "ALog", "ALog"};
    QTest::newRow("from an open file to one with content")
        << true << true << QStringList{goes, longer} << QStringList{"one", "ALog", "old", "ALog"};
}

// The list is the caller's to empty: setFileInfo() and load() do.
void tst_ActionLogConfiguration::switchFileHandle()
{
    QFETCH(bool, open);
    QFETCH(bool, content);
    const LogFixture fixture;
    if (content)
        fixture.write(fixture.path("G.vol"),
                      LogFixture::head(fixture.path("G.vol")) + '>' + LogFixture::entry("old"));
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    if (open)
        log.log(Remark("one"));
    QVERIFY(log.defaultActive());
    SignalRecord record(log, fixture);
    log.switchFileHandle(fixture.path("G.vol"));
    QTEST(fixture.disk(), "disk");
    QTEST(entries(log), "list");
    QCOMPARE(record.take().last(), QString("switched(G.vol)"));
    QVERIFY(!log.defaultActive());
    QVERIFY(log.isOpen());
    QCOMPARE(log.fileInfo().absoluteFilePath(), fixture.path("G.vol"));
    QCOMPARE(log.customFileInfo().absoluteFilePath(), fixture.path("G.vol"));

    fixture.makeDefaultDirectory();
    log.switchFileHandle(fixture.defaultFile());
    QVERIFY(log.defaultActive());
    QCOMPARE(log.customFileInfo().absoluteFilePath(), fixture.path("G.vol"));
}

void tst_ActionLogConfiguration::bytesOfASwitch()
{
    const LogFixture fixture;
    const QByteArray f = fixture.path("F.vol").toUtf8(), g = fixture.path("G.vol").toUtf8();
    ActionLog log(f);
    log.setSuspended(false);
    log.log(Remark("one"));
    log.switchFileHandle(g);
    const QByteArray entry =
        "<Entry ID=\"ALog\" Time=\"5 Mar 2026 12:00:00\" filO=\"" + f + "\" filN=\"" + g + "\"/>";
    QCOMPARE(LogFixture::contents(f), LogFixture::head(f) + '>' + LogFixture::entry("one") + entry);
    QCOMPARE(LogFixture::contents(g), LogFixture::head(g) + '>' + entry);
}

void tst_ActionLogConfiguration::switchWhileSuspended()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    log.setSuspended(true);
    SignalRecord record(log, fixture);
    log.switchFileHandle(fixture.path("G.vol"));
    QCOMPARE(record.take(), QStringList("switched(G.vol)"));
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): one"));
    QCOMPARE(entries(log), QStringList("one"));
    QVERIFY(!log.isOpen());
    QCOMPARE(log.fileInfo().fileName(), QString("G.vol"));
}

// A client activates its log and then loads its settings, all of it suspended.
void tst_ActionLogConfiguration::aTagLeftOpenStaysInItsFile()
{
    for (bool content : {false, true}) {
        const LogFixture fixture;
        const QByteArray old = LogFixture::head(fixture.path("G.vol")) + '>' +
                               (content ? LogFixture::entry("old") : QByteArray());
        if (content)
            fixture.write(fixture.path("G.vol"), old);
        ActionLog log(fixture.path("F.vol"));
        log.activate();
        log.switchFileHandle(fixture.path("G.vol"));
        log.setSuspended(false);
        log.log(Remark("one"));
        QCOMPARE(LogFixture::contents(fixture.path("G.vol")), old + LogFixture::entry("one"));
        QCOMPARE(LogFixture::contents(fixture.path("F.vol")),
                 LogFixture::head(fixture.path("F.vol")));
    }
    // Its own file closes it, also when it was closed meanwhile.
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.activate();
    log.close();
    log.setFileUserPassword("me", "secret");
    log.setFileInfo(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): one"));
}

void tst_ActionLogConfiguration::setFileInfo()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    SignalRecord record(log, fixture);
    log.setFileInfo(QFileInfo(fixture.path("F.vol")));
    log.setFileInfo(QFileInfo());
    log.setFileInfo(QFileInfo(fixture.path(".") + '/'));
    log.setFileUserPassword("", ""); // as it is
    log.setFileInfo(QFileInfo(fixture.path("F.vol")));
    QCOMPARE(record.take(), QStringList());

    fixture.write(fixture.path("G.vol"),
                  LogFixture::head(fixture.path("G.vol")) + '>' + LogFixture::entry("old"));
    log.setFileInfo(QFileInfo(fixture.path("G.vol")));
    QCOMPARE(record.take(), (QStringList{"removing(0, 1)", "removed(0, 1)", "adding(0, 0)",
                                         "added(0, 0)", "adding(1, 1)", "added(1, 1)",
                                         "adding(2, 2)", "added(2, 2)", "switched(G.vol)"}));
    const QString text = QString("Switched logging from '%1' to '%2'.")
                             .arg(fixture.path("F.vol"), fixture.path("G.vol"));
    QCOMPARE(description(log), (QStringList{text, "old", text}));
    QCOMPARE(fixture.disk(),
             (QStringList{"F.vol = Log(~/F.vol): one, ALog", "G.vol = Log(~/G.vol): old, ALog"}));
}

void tst_ActionLogConfiguration::setFileInfoWithNewAccount()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    SignalRecord record(log, fixture);
    log.setFileUserPassword("", "secret");
    QCOMPARE(record.take(), QStringList());
    log.setFileInfo(QFileInfo(fixture.path("F.vol")));
    // The list was emptied; then come the entry in the old file, all of the file with it, and the
    // second entry.
    QCOMPARE(entries(log), (QStringList{"ALog", "one", "ALog", "ALog"}));
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): one, ALog, ALog"));
    QCOMPARE(record.take().mid(0, 2), (QStringList{"removing(0, 1)", "removed(0, 1)"}));
    log.setFileInfo(QFileInfo(fixture.path("F.vol"))); // taken effect
    log.setFileUserPassword("", "secret");
    log.setFileInfo(QFileInfo(fixture.path("F.vol")));
    QCOMPARE(record.take().filter("switched"), QStringList());
    log.setFileUserPassword("me", "secret"); // the user alone
    QCOMPARE(log.fileUser(), QString("me"));
    log.setFileInfo(QFileInfo(fixture.path("F.vol")));
    QCOMPARE(record.take().filter("switched"), QStringList("switched(F.vol)"));
}

// With a new account even a path without a file name is switched to; it can't be opened, and the
// default takes over.
void tst_ActionLogConfiguration::setFileInfoWithoutName()
{
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.setFileUserPassword("me", "secret");
    SignalRecord record(log, fixture);
    log.setFileInfo(QFileInfo(fixture.path("directory/")));
    QCOMPARE(record.take(), (QStringList{"adding(0, 0)", "added(0, 0)", "switched(Voco.vol)",
                                         "errorFile(~/directory/, 1)", "switched(Voco.vol)"}));
    QCOMPARE(fixture.disk(), QStringList("state/Maker/Voco/Voco.vol = "
                                         "Log(~/state/Maker/Voco/Voco.vol): ALog"));
}

void tst_ActionLogConfiguration::save_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isDefault");
    QTest::newRow("the default") << "~/state/Maker/Voco/Voco.vol"
                                 << "%LOCALAPPDATA%/Voco.vol" << true;
    QTest::newRow("beside the default") << "~/state/Maker/Voco/mine.vol"
                                        << "%LOCALAPPDATA%/mine.vol" << false;
    QTest::newRow("elsewhere") << "~/mine.vol"
                               << "~/mine.vol" << false;
    QTest::newRow("below the default's directory: elsewhere")
        << "~/state/Maker/Voco/sub/mine.vol"
        << "~/state/Maker/Voco/sub/mine.vol" << false;
}

void tst_ActionLogConfiguration::save()
{
    QFETCH(QString, file);
    const LogFixture fixture;
    ActionLog log(fixture.defaultFile());
    log.setSplitPolicy(ActionLog::SplitWeekly, 77);
    log.setFileUserPassword("me", "secret");
    log.setFileInfo(file.replace("~", fixture.path(".").chopped(2)));
    RecordedDestination destination;
    log.save(&destination);
    QCOMPARE(
        destination.calls,
        (QStringList{"beginGroup ActionLog", "setValue ActionLog/SplitState",
                     "setValue ActionLog/SplitSize", "setValue ActionLog/ActionLogUser",
                     "setValue ActionLog/ActionLogPassword", "setValue ActionLog/isDefaultLogPath",
                     "setValue ActionLog/ActionLogPath", "endGroup"}));
    const QVariant state = destination.values["ActionLog/SplitState"];
    QCOMPARE(state.userType(), int(QMetaType::Int));
    QCOMPARE(state.toInt(), 2);
    QCOMPARE(destination.values["ActionLog/SplitSize"], QVariant(77));
    QCOMPARE(destination.values["ActionLog/ActionLogUser"], QVariant(QString("me")));
    const QVariant password = destination.values["ActionLog/ActionLogPassword"];
    QCOMPARE(password.userType(), int(QMetaType::QByteArray));
    QCOMPARE(password.toByteArray(), QByteArray("c2VjcmV0"));
    const QVariant isDefault = destination.values["ActionLog/isDefaultLogPath"];
    QCOMPARE(isDefault.userType(), int(QMetaType::Bool));
    QTEST(isDefault.toBool(), "isDefault");
    QTEST(fixture.withoutPath(destination.values["ActionLog/ActionLogPath"].toString()), "path");
}

// The path that the user chose is kept for the next start.
void tst_ActionLogConfiguration::saveAfterFallBack()
{
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    ActionLog log(fixture.defaultFile());
    log.setSuspended(false);
    log.setFileInfo(QFileInfo(fixture.path("missing/mine.vol")));
    QVERIFY(log.defaultActive());
    QCOMPARE(log.fileInfo().absoluteFilePath(), fixture.defaultFile());
    QCOMPARE(log.customFileInfo().absoluteFilePath(), fixture.path("missing/mine.vol"));
    RecordedDestination destination;
    log.save(&destination);
    QCOMPARE(destination.values["ActionLog/ActionLogPath"].toString(),
             fixture.path("missing/mine.vol"));
    QCOMPARE(destination.values["ActionLog/isDefaultLogPath"].toBool(), true);
}

void tst_ActionLogConfiguration::loadReadsInOrder()
{
    const LogFixture fixture;
    ActionLog log(fixture.defaultFile());
    ReadDestination destination;
    log.load(&destination);
    QCOMPARE(destination.calls, (QStringList{"beginGroup ActionLog", "endGroup"}));
    QCOMPARE(
        destination.reads,
        (QStringList{"SplitState 8", "SplitSize 1048576", "ActionLogUser ", "ActionLogPassword ",
                     "ActionLogPath " + fixture.defaultFile(), "isDefaultLogPath true"}));
    QCOMPARE(log.splitPolicy(), ActionLog::SplitBySize);
    QCOMPARE(log.splitSize(), 1048576);
    QVERIFY(log.defaultActive());
    QCOMPARE(log.customFileInfo().absoluteFilePath(), fixture.defaultFile());
}

void tst_ActionLogConfiguration::load_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<QVariant>("path"); // invalid for none stored
    QTest::addColumn<bool>("isDefault");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("custom");
    QTest::addColumn<bool>("active");
    QTest::addColumn<QStringList>("record");
    const QString def = "~/state/Maker/Voco/Voco.vol";
    const QStringList none;
    const QStringList toDefault{"removing(0, 1)", "removed(0, 1)", "switched(Voco.vol)"};
    const QStringList toMine{"removing(0, 1)", "removed(0, 1)", "switched(mine.vol)"};
    QTest::newRow("default, as it is")
        << def << QVariant("~/mine.vol") << true << def << "~/mine.vol" << true << none;
    QTest::newRow("to the default")
        << "~/F.vol" << QVariant("~/mine.vol") << true << def << "~/mine.vol" << true << toDefault;
    QTest::newRow("to the default, no path stored")
        << "~/F.vol" << QVariant() << true << def << def << true << toDefault;
    QTest::newRow("to a chosen file") << def << QVariant("~/mine.vol") << false << "~/mine.vol"
                                      << "~/mine.vol" << false << toMine;
    QTest::newRow("a chosen file, as it is")
        << "~/mine.vol" << QVariant("~/mine.vol") << false << "~/mine.vol"
        << "~/mine.vol" << false << none;
    QTest::newRow("beside the default")
        << def << QVariant("%LOCALAPPDATA%/mine.vol") << false << "~/state/Maker/Voco/mine.vol"
        << "~/state/Maker/Voco/mine.vol" << false << toMine;
    QTest::newRow("the placeholder in small letters is a name")
        << def << QVariant("/%localappdata%/mine.vol") << false << "/%localappdata%/mine.vol"
        << "/%localappdata%/mine.vol" << false << toMine;
    QTest::newRow("the placeholder not at the start is a name")
        << def << QVariant("/x/%LOCALAPPDATA%/mine.vol") << false << "/x/%LOCALAPPDATA%/mine.vol"
        << "/x/%LOCALAPPDATA%/mine.vol" << false << toMine;
    QTest::newRow("a chosen path without a name")
        << def << QVariant("~/") << false << def << "~/" << false << none;
    QTest::newRow("an empty path") << def << QVariant("") << false << def << "" << false << none;
    QTest::newRow("chosen, the path is the default's")
        << def << QVariant(def) << false << def << def << false << none;
}

void tst_ActionLogConfiguration::load()
{
    QFETCH(QString, current);
    QFETCH(QVariant, path);
    QFETCH(bool, isDefault);
    const LogFixture fixture;
    const QString directory = fixture.path(".").chopped(2);
    ActionLog log(current.replace("~", directory));
    log.append(new Remark("one"));
    SignalRecord record(log, fixture);
    RecordedDestination destination;
    destination.values["ActionLog/SplitState"] = 0;
    destination.values["ActionLog/SplitSize"] = "12"; // as an INI file gives it
    destination.values["ActionLog/ActionLogUser"] = "me";
    destination.values["ActionLog/isDefaultLogPath"] = isDefault;
    if (path.isValid())
        destination.values["ActionLog/ActionLogPath"] = path.toString().replace("~", directory);
    log.load(&destination);
    QCOMPARE(log.splitPolicy(), ActionLog::SplitNone);
    QCOMPARE(log.splitSize(), 12);
    QCOMPARE(log.fileUser(), QString("me"));
    QTEST(fixture.withoutPath(log.fileInfo().absoluteFilePath()), "file");
    QTEST(fixture.withoutPath(log.customFileInfo().filePath()), "custom");
    QTEST(log.defaultActive(), "active");
    QTEST(record.take(), "record");
    QCOMPARE(fixture.disk(), QStringList()); // suspended
}

void tst_ActionLogConfiguration::password_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QByteArray>("saved");
    const auto base64 = [](const char *text) { return QByteArray(text).toBase64(); };
    QTest::newRow("plain") << base64("secret") << base64("secret");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("UTF-8 is the tests' local encoding") << base64("\xc3\xa9") << base64("\xc3\xa9");
    QTest::newRow("up to the first zero byte")
        << QByteArray("ab\0cd", 5).toBase64() << base64("ab");
}

void tst_ActionLogConfiguration::password()
{
    QFETCH(QByteArray, stored);
    const LogFixture fixture;
    ActionLog log(fixture.defaultFile());
    RecordedDestination destination;
    destination.values["ActionLog/ActionLogPassword"] = stored;
    log.load(&destination);
    log.save(&destination);
    QTEST(destination.values["ActionLog/ActionLogPassword"].toByteArray(), "saved");

    // What was loaded is the account now: setting it again changes nothing.
    SignalRecord record(log, fixture);
    QFETCH(QByteArray, saved);
    log.setFileUserPassword("", QString::fromUtf8(QByteArray::fromBase64(saved)));
    log.setFileInfo(log.fileInfo());
    QCOMPARE(record.take(), QStringList());
}

void tst_ActionLogConfiguration::storedPathMovesWithTheDirectory()
{
    const LogFixture before;
    RecordedDestination destination;
    {
        ActionLog log(before.path("state/Maker/Voco/mine.vol"));
        log.setDefaultActive(false);
        QVERIFY(!log.defaultActive());
        log.save(&destination);
    }
    const LogFixture after;
    ActionLog log(after.defaultFile());
    log.load(&destination);
    QCOMPARE(log.fileInfo().absoluteFilePath(), after.path("state/Maker/Voco/mine.vol"));
}

void tst_ActionLogConfiguration::nullDestination()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    SignalRecord record(log, fixture);
    log.load(nullptr);
    log.save(nullptr);
    QCOMPARE(record.take(), QStringList());
    QCOMPARE(log.fileInfo().absoluteFilePath(), fixture.path("F.vol"));
}

QTEST_GUILESS_MAIN(tst_ActionLogConfiguration)
#include "tst_ActionLogConfiguration.moc"
