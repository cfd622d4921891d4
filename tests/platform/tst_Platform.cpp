#include <Vokit/FileEncrypt>
#include <Vokit/FileUtils>
#include <Vokit/Log>
#include <Vokit/MutexLocker>
#include <Vokit/StringUtils>
#include <Vokit/UnexpectedTypeException>

#include <QtTest>

#include <iostream>
#include <sstream>
#include <thread>

class tst_Platform : public QObject
{
    Q_OBJECT

private slots:
    void logAtStart();
    void logStreams();
    void logPrefix_data();
    void logPrefix();
    void lockers();
    void exceptions();
    void join_data();
    void join();
    void fileEncrypt();
    void userLogDir_data();
    void userLogDir();
};

void tst_Platform::logAtStart()
{
    const vo::Log &log = vo::Log::instance();
    QCOMPARE(int(log.logLevel()), 2);
    QCOMPARE(log.logLevel(), vo::Log::LevelWarning);
    for (const auto level :
         {vo::Log::LevelDebug, vo::Log::LevelInfo, vo::Log::LevelWarning, vo::Log::LevelError})
        QCOMPARE(log.getStream(level), static_cast<std::ostream *>(&std::cerr));
    QCOMPARE(int(vo::Log::LevelDebug), 0);
    QCOMPARE(int(vo::Log::LevelInfo), 1);
    QCOMPARE(int(vo::Log::LevelError), 3);
}

void tst_Platform::logStreams()
{
    vo::Log &log = vo::Log::instance();
    QCOMPARE(&log, &vo::Log::instance());
    std::ostringstream stream;
    log.setStream(vo::Log::LevelInfo, &stream);
    QCOMPARE(log.getStream(vo::Log::LevelInfo), static_cast<std::ostream *>(&stream));
    QCOMPARE(log.getStream(vo::Log::LevelError), static_cast<std::ostream *>(&std::cerr));
    log.setStream(vo::Log::LevelInfo, nullptr);
    QVERIFY(!log.getStream(vo::Log::LevelInfo));
    log.pre(vo::Log::LevelInfo); // switched off: nothing to write to
    log.setStream(vo::Log::LevelInfo, &std::cerr);

    log.setLogLevel(vo::Log::LevelError);
    QCOMPARE(log.logLevel(), vo::Log::LevelError);
    log.setLogLevel(vo::Log::LevelWarning);
}

void tst_Platform::logPrefix_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("name");
    QTest::newRow("debug") << 0 << "Debug";
    QTest::newRow("info") << 1 << "Info";
    QTest::newRow("warning") << 2 << "Warning";
    QTest::newRow("error") << 3 << "Error";
}

void tst_Platform::logPrefix()
{
    QFETCH(int, level);
    QFETCH(QString, name);
    vo::Log &log = vo::Log::instance();
    const auto eLevel = static_cast<vo::Log::ELevel>(level);
    std::ostringstream stream;
    log.setStream(eLevel, &stream);
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    log.pre(eLevel);
    log.setStream(eLevel, &std::cerr);

    const QString text = QString::fromStdString(stream.str());
    QCOMPARE(text.mid(19), " " + name + ": ");
    const QDateTime time = QDateTime::fromString(text.left(19), Qt::ISODate);
    QVERIFY2(time >= before && time <= QDateTime::currentDateTime(), qPrintable(text));
}

void tst_Platform::lockers()
{
    vo::Mutex mutex;
    const auto freeForOthers = [&mutex] {
        bool taken = false;
        std::thread([&] {
            taken = mutex.tryLock();
            if (taken)
                mutex.unlock();
        }).join();
        return taken;
    };
    {
        const vo::MutexLocker locker(mutex, true);
        QVERIFY(!freeForOthers());
        const vo::MutexLocker again(mutex, true); // recursive
    }
    QVERIFY(freeForOthers());
    vo::MutexLocker later(mutex, false);
    QVERIFY(freeForOthers());
    later.lock();
    later.lock(); // held already
    QVERIFY(!freeForOthers());
    later.unlock();
    later.unlock();
    QVERIFY(freeForOthers());
}

void tst_Platform::exceptions()
{
    const vo::ExceptionQt cause("the cause");
    try {
        throw vo::UnexpectedTypeException("n", "actual", "expected", QString("m\u00e9"), &cause);
    } catch (const std::exception &e) {
        QCOMPARE(e.what(), "m\xc3\xa9");
        const auto &unexpected = dynamic_cast<const vo::UnexpectedTypeException &>(e);
        QCOMPARE(unexpected.name(), QString("n"));
        QCOMPARE(unexpected.argument(), QString("n"));
        QCOMPARE(unexpected.actualType(), QString("actual"));
        QCOMPARE(unexpected.expectedType(), QString("expected"));
        QCOMPARE(unexpected.message(), QString("m\u00e9"));
        QCOMPARE(unexpected.cause(), &cause);
        QCOMPARE(unexpected.cause()->cause(), static_cast<const vo::ExceptionQt *>(nullptr));
    }
    const vo::IllegalArgumentException illegal("a", "m", nullptr);
    QCOMPARE(illegal.argument(), QString("a"));
    QCOMPARE(illegal.message(), QString("m"));
}

void tst_Platform::join_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QString>("text");
    QTest::newRow("empty list: a null string") << QStringList() << QString();
    QTest::newRow("one empty item: an empty string") << QStringList{""} << "";
    QTest::newRow("one") << QStringList{"a"} << "a";
    QTest::newRow("three") << QStringList{"a", "", "b"} << "a;;b";
}

void tst_Platform::join()
{
    QFETCH(QStringList, list);
    QFETCH(QString, text);
    QCOMPARE(vo::StringUtils::join(list, ";"), text);
    QCOMPARE(vo::StringUtils::join(list, ";").isNull(), text.isNull());
}

void tst_Platform::fileEncrypt()
{
    const QTemporaryDir dir;
    vo::FileEncrypt file;
    QVERIFY(file.headerCompatible);
    file.setFileName(dir.filePath("f"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("plain");
    file.close();
    vo::FileEncrypt again(dir.filePath("f"));
    QVERIFY(again.open(QIODevice::ReadOnly));
    QCOMPARE(again.readAll(), QByteArray("plain"));
}

void tst_Platform::userLogDir_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<QString>("path");
    QTest::newRow("set") << QByteArray("/var/state") << "/var/state";
    QTest::newRow("empty") << QByteArray("") << "/home/op/.local/state";
    QTest::newRow("relative: not followed") << QByteArray("state") << "/home/op/.local/state";
}

void tst_Platform::userLogDir()
{
    QFETCH(QByteArray, state);
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", "/home/op");
    qputenv("XDG_STATE_HOME", state);
    QTEST(vo::FileUtils::userLogDir().path(), "path");
    qunsetenv("XDG_STATE_HOME");
    QCOMPARE(vo::FileUtils::userLogDir().path(), QString("/home/op/.local/state"));
    qputenv("HOME", home);
}

QTEST_APPLESS_MAIN(tst_Platform)
#include "tst_Platform.moc"
