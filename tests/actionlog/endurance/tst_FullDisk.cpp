#include "Journal.h"
#include "Shortage.h"

#include <cerrno>
#include <memory>
#include <random>
#include <sys/stat.h>
#include <sys/syscall.h>

std::atomic<qint64> gRoom{-1};

// In front of the C library's, for Qt as well.
extern "C" ssize_t write(int file, const void *data, size_t size)
{
    struct stat status;
    const qint64 room = gRoom;
    if (room >= 0 && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        if (room == 0 && size > 0) {
            errno = ENOSPC;
            return -1;
        }
        size = std::min(size, static_cast<size_t>(room));
        gRoom = room - static_cast<qint64>(size);
    }
    return ::syscall(SYS_write, file, data, size);
}

namespace {

enum Kind { Device, Limit, FileSystem };
constexpr int gBefore = 3;
constexpr int gDuring = 5;
constexpr int gAfter = 3;

} // namespace

/// A disk without room costs entries at most, and neither those before nor those behind them.
class tst_FullDisk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { QFile::remove(m_file); }
    void passesInSilence_data() { shortages(); }
    void passesInSilence();
    void outlastsTheProcess_data() { shortages(); }
    void outlastsTheProcess();
    void atEveryByte_data();
    void atEveryByte();
    void shortageByShortage();
    void anotherFileIsSpared();
    void anotherFileStartsAnew();
    void noRoomToMoveAside();

private:
    void shortages();
    Shortage *fetchShortage();
    void checkFile(const QString &fileName, int size, int before, int last);

    QTemporaryDir m_dir;
    QTemporaryDir m_mount;
    FullDevice m_device;
    FileSizeLimit m_limit;
    std::unique_ptr<FullFileSystem> m_fileSystem;
    QString m_file;
};

void tst_FullDisk::initTestCase()
{
    QVERIFY(m_dir.isValid() && m_mount.isValid());
    m_fileSystem = std::make_unique<FullFileSystem>(m_mount.path());
}

void tst_FullDisk::init()
{
    static int gCount = 0;
    m_file = m_dir.filePath(QString("%1.vol").arg(++gCount));
}

void tst_FullDisk::shortages()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("left");
    const QPair<Kind, const char *> kinds[] = {
        {Device, "device"}, {Limit, "limit"}, {FileSystem, "file system"}};
    for (const auto &kind : kinds) {
        for (const int size : {30, 279, 50'000}) {
            for (const int before : {0, gBefore}) {
                for (const int left : {0, 100, 1000, 20'000, 150'000}) {
                    if (kind.first == FileSystem && left > 0)
                        continue;
                    QTest::addRow("%s, entries of %d behind %d, %d bytes left", kind.second, size,
                                  before, left)
                        << int(kind.first) << size << before << left;
                }
            }
        }
    }
}

// Whole entries, in order, the first and the last ones among them; one header, at the start.
void tst_FullDisk::checkFile(const QString &fileName, int size, int before, int last)
{
    const QVector<int> found = journal::readAgain(fileName, size);
    QCOMPARE(found.mid(0, before), journal::range(0, before - 1));
    QVERIFY(found.size() >= gAfter);
    QCOMPARE(found.mid(found.size() - gAfter), journal::range(last - gAfter + 1, last));
    QVERIFY(!found.contains(-1));
    QVERIFY(std::is_sorted(found.cbegin(), found.cend()));
    QCOMPARE(std::adjacent_find(found.cbegin(), found.cend()), found.cend());
    const QByteArray bytes = journal::bytes(fileName);
    QVERIFY(bytes.startsWith("<?xml "));
    QCOMPARE(bytes.count("<?xml "), 1);
    QCOMPARE(bytes.count("<Entries "), 1);
}

// The row's, on the file system that it needs; null if there is none.
Shortage *tst_FullDisk::fetchShortage()
{
    QFETCH(int, kind);
    if (kind == Device)
        return &m_device;
    if (kind == Limit)
        return &m_limit;
    if (!m_fileSystem->isMounted())
        return nullptr;
    m_file = m_mount.filePath(QFileInfo(m_file).fileName());
    return m_fileSystem.get();
}

void tst_FullDisk::passesInSilence()
{
    QFETCH(int, size);
    QFETCH(int, before);
    QFETCH(int, left);
    Shortage *const shortage = fetchShortage();
    if (!shortage)
        QSKIP("no file system may be mounted here");
    journal::Log log(m_file);
    int number = 0;
    while (number < before)
        journal::log(log, number++, size);
    const QByteArray start = before > 0 ? journal::bytes(m_file) : QByteArray();

    shortage->begin(m_file, left);
    for (int i = 0; i < gDuring; ++i)
        journal::log(log, number++, size);
    shortage->end();
    QCOMPARE(journal::numbers(log), journal::range(0, number - 1));

    for (int i = 0; i < gAfter; ++i) {
        journal::log(log, number++, size);
        QCOMPARE(journal::readAgain(m_file, size).last(), number - 1);
    }
    QCOMPARE(log.failures(), 0);
    QCOMPARE(journal::numbers(log), journal::range(0, number - 1));
    QVERIFY(journal::bytes(m_file).startsWith(start));
    checkFile(m_file, size, before, number - 1);
}

void tst_FullDisk::outlastsTheProcess()
{
    QFETCH(int, size);
    QFETCH(int, before);
    QFETCH(int, left);
    Shortage *const shortage = fetchShortage();
    if (!shortage)
        QSKIP("no file system may be mounted here");
    int number = 0;
    {
        journal::Log log(m_file);
        while (number < before)
            journal::log(log, number++, size);
        shortage->begin(m_file, left);
        journal::log(log, number++, size);
        journal::log(log, number++, size);
    }
    {
        journal::Log log(m_file);
        journal::log(log, number++, size);
        QCOMPARE(log.failures(), 0);
    }
    shortage->end();
    journal::Log log(m_file);
    for (int i = 0; i < gAfter; ++i)
        journal::log(log, number++, size);
    QCOMPARE(log.failures(), 0);
    checkFile(m_file, size, before, number - 1);
}

void tst_FullDisk::atEveryByte_data()
{
    QTest::addColumn<bool>("ends");
    QTest::newRow("the process goes on") << false;
    QTest::newRow("the process ends") << true;
}

void tst_FullDisk::atEveryByte()
{
    QFETCH(bool, ends);
    for (int left = 0; left < 350; ++left) {
        init();
        auto log = std::make_unique<journal::Log>(m_file);
        m_device.begin(m_file, left);
        journal::log(*log, 0, 30);
        if (ends)
            log = std::make_unique<journal::Log>(m_file);
        m_device.end();
        for (int i = 1; i <= gAfter; ++i)
            journal::log(*log, i, 30);
        QCOMPARE(log->failures(), 0);
        checkFile(m_file, 30, 0, gAfter);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QString("%1 bytes left").arg(left)));
    }
}

// As soon as there is room, an entry is on the disk when log() returns.
void tst_FullDisk::shortageByShortage()
{
    std::mt19937 random(20261121);
    const auto pick = [&random](int end) { return static_cast<int>(random() % unsigned(end)); };
    for (int run = 0; run < 20; ++run) {
        init();
        journal::Log log(m_file);
        const int size = QVector<int>{30, 279, 3000, 9000, 20'000}.at(run % 5);
        for (int number = 0; number < 60; ++number) {
            const bool isShort = pick(3) > 0;
            if (isShort)
                m_device.begin(m_file, pick(2 * size + 300));
            journal::log(log, number, size);
            m_device.end();
            if (isShort)
                continue;
            const QVector<int> found = journal::readAgain(m_file, size);
            QVERIFY2(found.endsWith(number) && !found.contains(-1),
                     qPrintable(QString("run %1, entry %2").arg(run).arg(number)));
            QVERIFY(std::is_sorted(found.cbegin(), found.cend()));
        }
        QCOMPARE(log.failures(), 0);
    }
}

// What one file could not take is never written to another one that stands already.
void tst_FullDisk::anotherFileIsSpared()
{
    for (const int size : {30, 50'000}) {
        init();
        const QString other = m_file + ".other.vol";
        {
            journal::Log log(other);
            journal::log(log, 1, size);
        }
        const QByteArray before = journal::bytes(other);
        journal::Log log(m_file);
        m_device.begin(m_file, 0);
        journal::log(log, 2, size);
        log.setSuspended(true);
        log.setFileInfo(QFileInfo(other));
        m_device.end();
        log.setSuspended(false);
        journal::log(log, 3, size);
        QCOMPARE(log.failures(), 0);
        const QByteArray after = journal::bytes(other);
        QVERIFY(after.startsWith(before));
        QVERIFY(after.mid(before.size()).startsWith("<Entry ID=\"ExpD\""));
        QCOMPARE(journal::readAgain(other, size), (QVector<int>{1, 3}));
    }
}

// A root tag that is still open belongs to its own file.
void tst_FullDisk::anotherFileStartsAnew()
{
    const QString other = m_file + ".other.vol";
    {
        journal::Log log(other);
        journal::log(log, 1, 30);
    }
    const QByteArray before = journal::bytes(other);
    journal::Log log(m_file);
    log.activate();
    log.setSuspended(true);
    log.setFileInfo(QFileInfo(other));
    log.setSuspended(false);
    journal::log(log, 2, 30);
    QVERIFY(journal::bytes(other).mid(before.size()).startsWith("<Entry ID=\"ExpD\""));
    QCOMPARE(journal::readAgain(other, 30), (QVector<int>{1, 2}));
}

// A split without room for the copy: the file goes on, and nothing in it is torn.
void tst_FullDisk::noRoomToMoveAside()
{
    for (int left = 0; left < 1000; left += 67) {
        init();
        QDir(m_dir.path()).mkdir(QFileInfo(m_file).baseName());
        m_file = m_dir.filePath(QFileInfo(m_file).baseName() + "/Client.vol");
        journal::Log log(m_file);
        journal::log(log, 0, 30);
        m_device.begin(m_file, left);
        log.setSplitPolicy(vo::ActionLog::SplitBySize, 0);
        journal::log(log, 1, 30);
        journal::log(log, 2, 30);
        m_device.end();
        log.setSplitPolicy(vo::ActionLog::SplitNone, 0);
        for (int i = 3; i < 6; ++i)
            journal::log(log, i, 30);
        QCOMPARE(log.failures(), 0);
        QVector<int> found;
        const QFileInfoList files = QFileInfo(m_file).dir().entryInfoList({"*.vol"}, QDir::Files);
        for (const QFileInfo &file : files)
            found += journal::readAgain(file.filePath(), 30);
        QVERIFY(!found.contains(-1));
        for (const int number : {0, 3, 4, 5})
            QVERIFY2(found.contains(number), qPrintable(QString::number(left)));
    }
}

QTEST_GUILESS_MAIN(tst_FullDisk)
#include "tst_FullDisk.moc"
