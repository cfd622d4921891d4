#include "LogFixture.h"

#include <QMetaMethod>
#include <QTranslator>
#include <QtTest>

using namespace test;
using vo::ActionLog;
using vo::ActionLogFileException;
using vo::ActionLogXmlException;

namespace {

/// Translates everything in one context, and nothing in others.
class ContextTranslator : public QTranslator
{
public:
    explicit ContextTranslator(const char *context)
        : m_context(context)
    {}
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return m_context == context ? '(' + QString(sourceText) + ')' : QString();
    }

private:
    const QByteArray m_context;
};

QByteArray logOf(const QString &file, const QByteArray &entries)
{
    return LogFixture::head(file) + '>' + entries;
}

} // namespace

Q_DECLARE_METATYPE(QIODevice::OpenMode)

/// The operations on the file and on the list, each by itself.
class tst_ActionLogFile : public QObject
{
    Q_OBJECT

private slots:
    void aNewLog();
    void signalsAndSlotInOrder();
    void exceptions();
    void messagesAreInTheClassContext_data();
    void messagesAreInTheClassContext();
    void openIsDoneOnce();
    void openRaises_data();
    void openRaises();
    void openForWritingWritesAHeader();
    void closeAndDestructorWriteNothing();
    void readLogOfNoFile();
    void readLogStaysOpenAtTheEnd();
    void readLogOfAReadOnlyFile();
    void readLogOfAReadOnlyDefaultFile();
    void readEntriesOfAnEmptyFile_data();
    void readEntriesOfAnEmptyFile();
    void readEntriesRaises_data();
    void readEntriesRaises();
    void activateRaises();
    void backupFile_data();
    void backupFile();
    void backupFileKeepsAFailedOneOpen();
    void finalize();
    void theList();
};

void tst_ActionLogFile::aNewLog()
{
    const LogFixture fixture;
    const ActionLog log(fixture.path("F.vol"));
    QCOMPARE(fixture.disk(), QStringList());
    QVERIFY(log.isSuspended());
    QVERIFY(log.defaultActive());
    QVERIFY(!log.isOpen());
    QVERIFY(log.entries().isEmpty());
    QCOMPARE(log.splitPolicy(), ActionLog::SplitBySize);
    QCOMPARE(int(log.splitPolicy()), 8);
    QCOMPARE(log.splitSize(), 1048576);
    QCOMPARE(log.fileUser(), QString());
    QCOMPARE(log.fileInfo().absoluteFilePath(), fixture.path("F.vol"));
    QCOMPARE(log.customFileInfo().absoluteFilePath(), fixture.path("F.vol"));
}

void tst_ActionLogFile::signalsAndSlotInOrder()
{
    const QMetaObject &meta = ActionLog::staticMetaObject;
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.className(), "vo::ActionLog");
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        methods << (method.methodType() == QMetaMethod::Signal ? "signal " : "slot ") +
                       QString::fromLatin1(method.methodSignature());
        QCOMPARE(method.access(), QMetaMethod::Public);
    }
    QCOMPARE(methods,
             (QStringList{"signal addingLogEntries(int,int)", "signal logEntriesAdded(int,int)",
                          "signal removingLogEntries(int,int)", "signal logEntriesRemoved(int,int)",
                          "signal errorLogon(QString,int)", "signal errorFile(QString,int)",
                          "signal errorXml(QString,int,int)", "signal switchedFileHandle(QString)",
                          "slot incompatibleHeader()"}));
}

void tst_ActionLogFile::exceptions()
{
    const QString text = QString::fromUtf8("caf\xc3\xa9");
    const vo::ActionLogException plain(text);
    QCOMPARE(plain.message(), text);
    QCOMPARE(plain.what(), "caf\xc3\xa9"); // the tests' local encoding is UTF-8
    const ActionLogFileException file(text, "F", ActionLogFileException::eBackupFailed);
    QCOMPARE(file.file(), QString("F"));
    QCOMPARE(int(file.type()), 3);
    QCOMPARE(int(ActionLogFileException::eOpenFailed), 1);
    QCOMPARE(int(ActionLogFileException::eInvalidHeader), 4);
    const ActionLogXmlException xml(text, "E", 2, 3);
    QCOMPARE(xml.error(), QString("E"));
    QCOMPARE(xml.line(), 2);
    QCOMPARE(xml.colum(), 3);
    const vo::ActionLogImpersonateException logon(text, "U", 4);
    QCOMPARE(logon.user(), QString("U"));
    QCOMPARE(logon.error(), 4);
    for (const vo::ActionLogException *e : {static_cast<const vo::ActionLogException *>(&file),
                                            static_cast<const vo::ActionLogException *>(&xml),
                                            static_cast<const vo::ActionLogException *>(&logon)}) {
        const std::exception &base = *e;
        QCOMPARE(base.what(), "caf\xc3\xa9");
    }
}

void tst_ActionLogFile::messagesAreInTheClassContext_data()
{
    QTest::addColumn<QByteArray>("context");
    QTest::addColumn<QString>("message");
    QTest::newRow("the class's own")
        << QByteArray("vo::ActionLog") << "(Could not open file '~/missing/F.vol')";
    QTest::newRow("that of the catalogues")
        << QByteArray("ActionLog") << "Could not open file '~/missing/F.vol'";
}

void tst_ActionLogFile::messagesAreInTheClassContext()
{
    QFETCH(QByteArray, context);
    const LogFixture fixture;
    ActionLog log(fixture.path("missing/F.vol"));
    ContextTranslator translator(context.constData());
    QCoreApplication::installTranslator(&translator);
    QString message;
    try {
        log.activate();
    } catch (const ActionLogFileException &e) {
        message = fixture.withoutPath(e.message());
    }
    QCoreApplication::removeTranslator(&translator);
    QTEST(message, "message");
}

void tst_ActionLogFile::openIsDoneOnce()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    QFile file(fixture.path("other"));
    QVERIFY(log.open(file, QIODevice::WriteOnly));
    QCOMPARE(file.openMode(), QIODevice::OpenMode(QIODevice::WriteOnly));
    QVERIFY(log.open(file, QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(file.openMode(), QIODevice::OpenMode(QIODevice::WriteOnly));

    QVERIFY(log.openForReading(QIODevice::ReadWrite));
    QVERIFY(log.isOpen());
    QVERIFY(log.openForReading(QIODevice::ReadOnly));
    QVERIFY(log.openForWriting()); // open: nothing is written
    log.close();
    log.close();
    QVERIFY(!log.isOpen());
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), QByteArray());
}

void tst_ActionLogFile::openRaises_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing directory") << "missing/F.vol";
    QTest::newRow("below a file") << "plain/F.vol";
    QTest::newRow("a directory") << "directory";
}

void tst_ActionLogFile::openRaises()
{
    QFETCH(QString, name);
    const LogFixture fixture;
    fixture.write(fixture.path("plain"), "x");
    QDir().mkpath(fixture.path("directory"));
    ActionLog log(fixture.path(name));
    QFile other(fixture.path(name));
    const QList<std::function<void()>> roads{
        [&] { log.open(other, QIODevice::ReadWrite); },
        [&] { log.openForReading(QIODevice::ReadWrite); },
        [&] { log.openForWriting(); },
        [&] { log.readEntries(QIODevice::ReadWrite); },
        [&] { log.activate(); },
        [&] { log.finalize(other); },
    };
    for (const auto &road : roads) {
        try {
            road();
            QFAIL("nothing was raised");
        } catch (const ActionLogFileException &e) {
            QCOMPARE(e.type(), ActionLogFileException::eOpenFailed);
            QCOMPARE(e.file(), fixture.path(name));
            QCOMPARE(e.message(), "Could not open file '" + fixture.path(name) + "'");
        }
        QVERIFY(!log.isOpen());
    }
    QCOMPARE(fixture.disk(), QStringList("plain = x"));
}

void tst_ActionLogFile::openForWritingWritesAHeader()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), "old");
    ActionLog log(fixture.path("F.vol"));
    log.setVersions("7.1", QString());
    QVERIFY(log.openForWriting());
    QVERIFY(log.openForWriting());
    log.close();
    const QByteArray head = LogFixture::head(fixture.path("F.vol")) + " ApplicationVersion=\"7.1\"";
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), head);
    TestClock::advance(3600); // the date is that of the first header
    QVERIFY(log.openForWriting());
    log.close();
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), head);

    // A relative name: the header tells the absolute one.
    QVERIFY(QDir::setCurrent(fixture.path(".")));
    ActionLog relative("R.vol");
    TestClock::advance(-3600);
    relative.activate();
    QDir::setCurrent("/");
    QCOMPARE(fixture.summary(LogFixture::contents(fixture.path("R.vol"))),
             QString("Open(~/R.vol)"));
}

void tst_ActionLogFile::closeAndDestructorWriteNothing()
{
    const LogFixture fixture;
    const QByteArray bytes = logOf(fixture.path("F.vol"), LogFixture::entry("one"));
    QStringList calls;
    {
        ActionLog log(fixture.path("F.vol"));
        log.setSuspended(false);
        log.log(Remark("one"));
        connect(&log, &ActionLog::removingLogEntries, [&] { calls << "removing"; });
        connect(&log, &ActionLog::logEntriesRemoved, [&] { calls << "removed"; });
        log.close();
        QCOMPARE(LogFixture::contents(fixture.path("F.vol")), bytes);
        log.readLog();
        QVERIFY(log.isOpen());
    }
    QCOMPARE(calls, QStringList());
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), bytes);
}

void tst_ActionLogFile::readLogOfNoFile()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.readLog();
    QVERIFY(!log.isOpen() && log.entries().isEmpty());
    QCOMPARE(fixture.disk(), QStringList());
}

void tst_ActionLogFile::readLogStaysOpenAtTheEnd()
{
    const LogFixture fixture;
    const QByteArray texts = LogFixture::entry("one") + LogFixture::entry(QByteArray(20000, 'x'));
    fixture.write(fixture.path("F.vol"), logOf(fixture.path("F.vol"), texts));
    ActionLog log(fixture.path("F.vol"));
    SignalRecord record(log, fixture);
    log.readLog();
    QVERIFY(log.isOpen());
    QCOMPARE(log.entries().size(), 2);
    QCOMPARE(log.entries().at(0)->time(), QDateTime(QDate(2026, 3, 5), QTime(12, 0)));
    log.readLog(); // at the end: there is nothing more to read
    log.activate();
    QCOMPARE(log.entries().size(), 2);
    QCOMPARE(record.take(),
             (QStringList{"adding(0, 0)", "added(0, 0)", "adding(1, 1)", "added(1, 1)"}));
    log.setSuspended(false);
    log.log(Remark("two"));
    QCOMPARE(log.entries().size(), 3);
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")),
             logOf(fixture.path("F.vol"), texts + LogFixture::entry("two")));
}

void tst_ActionLogFile::readLogOfAReadOnlyFile()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), logOf("F", LogFixture::entry("one")));
    ActionLog log(fixture.path("F.vol"));
    QVERIFY(log.fileInfo().isWritable()); // as it then was
    QVERIFY(QFile::setPermissions(fixture.path("F.vol"), QFile::Permissions(QFlag(0x4444))));
    const QString said = asNobody([&] {
        log.readLog();
        return entries(log).join(", ") + (log.isOpen() ? "; open" : "; closed");
    });
    QCOMPARE(said, QString("one; closed"));
    QVERIFY(QFile::setPermissions(fixture.path("F.vol"), QFile::Permissions(QFlag(0x6666))));
    const QString again = asNobody([&] {
        log.readLog();
        return entries(log).join(", ") + (log.isOpen() ? "; open" : "; closed");
    });
    QCOMPARE(again, QString("one; open"));
}

// The default file itself: there is nowhere else to go.
void tst_ActionLogFile::readLogOfAReadOnlyDefaultFile()
{
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    fixture.write(fixture.defaultFile(), logOf("F", LogFixture::entry("one")));
    QVERIFY(QFile::setPermissions(fixture.defaultFile(), QFile::Permissions(QFlag(0x4444))));
    ActionLog log(fixture.defaultFile());
    log.setSuspended(false);
    const QString said = asNobody([&] {
        log.readLog();
        SignalRecord record(log, fixture);
        log.log(Remark("two"));
        log.log(Remark("three"));
        return (entries(log) + record.take()).join(", ");
    });
    QCOMPARE(said, QString("one, errorFile(~/state/Maker/Voco/Voco.vol, 1), "
                           "errorFile(~/state/Maker/Voco/Voco.vol, 1)"));
    QCOMPARE(fixture.disk(), QStringList("state/Maker/Voco/Voco.vol = Log(F): one"));
}

void tst_ActionLogFile::readEntriesOfAnEmptyFile_data()
{
    QTest::addColumn<QIODevice::OpenMode>("mode");
    QTest::newRow("ReadOnly") << QIODevice::OpenMode(QIODevice::ReadOnly);
    QTest::newRow("ReadWrite") << QIODevice::OpenMode(QIODevice::ReadWrite);
}

void tst_ActionLogFile::readEntriesOfAnEmptyFile()
{
    QFETCH(QIODevice::OpenMode, mode);
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), "");
    ActionLog log(fixture.path("F.vol"));
    log.append(new Remark("kept"));
    SignalRecord record(log, fixture);
    QVERIFY(log.readEntries(mode));
    QVERIFY(!log.isOpen());
    QCOMPARE(entries(log), QStringList("kept"));
    QCOMPARE(record.take(), QStringList());
}

void tst_ActionLogFile::readEntriesRaises_data()
{
    QTest::addColumn<QIODevice::OpenMode>("mode");
    QTest::addColumn<QByteArray>("damage");
    QTest::addColumn<QString>("error");
    QTest::addColumn<bool>("open");
    const QIODevice::OpenMode readOnly = QIODevice::ReadOnly;
    const QIODevice::OpenMode readWrite = QIODevice::ReadWrite;
    const QString mismatch = "Opening and ending tag mismatch.";
    QTest::newRow("read only: closed") << readOnly << QByteArray("</Wrong>") << mismatch << false;
    QTest::newRow("for writing: open") << readWrite << QByteArray("</Wrong>") << mismatch << true;
    QTest::newRow("damage far from the end")
        << readWrite << "</Wrong>" + QByteArray(20000, ' ') << mismatch << true;
    // Text is decoded block by block: what stands before it, in an earlier block, is read.
    QTest::newRow("no UTF-8") << readWrite << QByteArray(20000, ' ') + '\xff' + "<Entry/>"
                              << "Encountered incorrectly encoded content." << true;
}

void tst_ActionLogFile::readEntriesRaises()
{
    QFETCH(QIODevice::OpenMode, mode);
    QFETCH(QByteArray, damage);
    QFETCH(QString, error);
    QFETCH(bool, open);
    const LogFixture fixture;
    const QByteArray bytes = logOf("F", LogFixture::entry("one")) + damage;
    fixture.write(fixture.path("F.vol"), bytes);
    ActionLog log(fixture.path("F.vol"));
    try {
        log.readEntries(mode);
        QFAIL("nothing was raised");
    } catch (const ActionLogXmlException &e) {
        QCOMPARE(e.error(), error);
        QCOMPARE(e.line(), 1);
        QVERIFY(e.colum() > 0);
        QCOMPARE(e.message(), QString("Error reading log file '%1'; Line '%2'; Column '%3'")
                                  .arg(error)
                                  .arg(e.line())
                                  .arg(e.colum()));
    }
    QCOMPARE(entries(log), (QStringList{"one", "XmlP"}));
    QCOMPARE(log.entries().at(1)->user(), QString("Unknown"));
    QCOMPARE(log.isOpen(), open);
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), bytes);
    if (!open)
        return;
    log.setSuspended(false); // what comes now stands at the end
    log.log(Remark("two"));
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), bytes + LogFixture::entry("two"));
}

// activate and readLog let it out, and move nothing aside; the lock is free again.
void tst_ActionLogFile::activateRaises()
{
    const LogFixture fixture;
    const QByteArray bytes = logOf("F", LogFixture::entry("one")) + "</Wrong>";
    fixture.write(fixture.path("F.vol"), bytes);
    ActionLog log(fixture.path("F.vol"));
    QVERIFY_EXCEPTION_THROWN(log.activate(), ActionLogXmlException);
    log.close();
    QVERIFY_EXCEPTION_THROWN(log.readLog(), ActionLogXmlException);
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), bytes);
    QCOMPARE(fixture.disk().size(), 1);
    QScopedPointer<QThread> other(QThread::create([&] { log.readLog(); }));
    other->start();
    QVERIFY(other->wait(30000));
}

void tst_ActionLogFile::backupFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("absolute");
    QTest::newRow("moved") << "F.vol"
                           << "aside.vol" << true << "~/aside.vol";
    QTest::newRow("a taken name") << "F.vol"
                                  << "taken" << false << "~/taken";
    QTest::newRow("its own name") << "F.vol"
                                  << "F.vol" << false << "~/F.vol";
    QTest::newRow("a missing directory") << "F.vol"
                                         << "missing/aside.vol" << false << "~/missing/aside.vol";
    QTest::newRow("no file") << "other.vol"
                             << "aside.vol" << false << "~/aside.vol";
}

void tst_ActionLogFile::backupFile()
{
    QFETCH(QString, file);
    QFETCH(QString, name);
    const LogFixture fixture;
    fixture.write(fixture.path("taken"), "taken");
    fixture.write(fixture.path("F.vol"), "content");
    ActionLog log(fixture.path(file));
    QString given = name;
    QTEST(log.backupFile(given), "result");
    QTEST(fixture.withoutPath(given), "absolute");
    QFETCH(bool, result);
    QCOMPARE(fixture.disk(), result ? (QStringList{"aside.vol = content", "taken = taken"})
                                    : (QStringList{"F.vol = content", "taken = taken"}));
    QVERIFY(!log.isOpen());
}

void tst_ActionLogFile::backupFileKeepsAFailedOneOpen()
{
    const LogFixture fixture;
    fixture.write(fixture.path("taken"), "taken");
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    for (QString name : {QString("taken"), QString("missing/aside.vol")}) {
        QVERIFY(!log.backupFile(name));
        QVERIFY(log.isOpen());
    }
    log.log(Remark("two"));
    QCOMPARE(entries(log), (QStringList{"one", "two"}));
    QCOMPARE(fixture.disk(), (QStringList{"F.vol = Log(~/F.vol): one, two", "taken = taken"}));
}

// It opens the file, says no, and leaves it open: nothing is ever closed off with an end tag.
void tst_ActionLogFile::finalize()
{
    const LogFixture fixture;
    fixture.write(fixture.path("chosen.vol"), "content");
    ActionLog log(fixture.path("F.vol"));
    QFile file(fixture.path("chosen.vol"));
    QVERIFY(!log.finalize(file));
    QCOMPARE(file.openMode(), QIODevice::ReadWrite | QIODevice::Text);
    QVERIFY(!log.finalize(file)); // an open one, too
    file.close();
    QCOMPARE(fixture.disk(), QStringList("chosen.vol = content"));
}

void tst_ActionLogFile::theList()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    SignalRecord record(log, fixture);
    log.removeAllLogEntries();
    QCOMPARE(record.take(), QStringList());
    Remark *const one = new Remark("one");
    log.append(one);
    log.append(new Remark("two"));
    QCOMPARE(log.entries().first(), one); // the very entry: it is the log's now
    QCOMPARE(record.take(),
             (QStringList{"adding(0, 0)", "added(0, 0)", "adding(1, 1)", "added(1, 1)"}));
    QList<int> counts;
    connect(&log, &ActionLog::addingLogEntries, [&] { counts << log.entries().size(); });
    connect(&log, &ActionLog::logEntriesAdded, [&] { counts << log.entries().size(); });
    connect(&log, &ActionLog::removingLogEntries, [&] { counts << log.entries().size(); });
    connect(&log, &ActionLog::logEntriesRemoved, [&] { counts << log.entries().size(); });
    log.append(new Remark("three"));
    log.removeAllLogEntries();
    QCOMPARE(counts, (QList<int>{2, 3, 3, 0}));
    QCOMPARE(record.take(),
             (QStringList{"adding(2, 2)", "added(2, 2)", "removing(0, 3)", "removed(0, 3)"}));
    QCOMPARE(fixture.disk(), QStringList());
}

QTEST_GUILESS_MAIN(tst_ActionLogFile)
#include "tst_ActionLogFile.moc"
