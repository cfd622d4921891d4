#include <Vokit/Settings>

#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

using vo::IPersistDestination;
using vo::Settings;

namespace {

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

} // namespace

/// Every row runs on an INI file of its own.
class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void values_data();
    void values();
    void defaults_data();
    void defaults();
    void groupsNest();
    void arrays_data();
    void arrays();
    void removal_data();
    void removal();
    void syncOnlyWhenAsked();
    void callersStoreStays();
    void ownStoreOfAFileGoes();
    void ownStoreOfTheApplicationGoes();
    void writtenByAnotherProcess();

private:
    QTemporaryDir m_dir;
    QString m_file;
};

void tst_Settings::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_dir.path());
}

void tst_Settings::init()
{
    static int gCount = 0;
    m_file = m_dir.filePath(QString("%1.ini").arg(++gCount));
}

void tst_Settings::values_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int") << "Number" << QVariant(-3);
    QTest::newRow("bool") << "On" << QVariant(true);
    QTest::newRow("text") << "Text" << QVariant("a=b;c");
    QTest::newRow("empty text") << "Empty" << QVariant("");
    QTest::newRow("bytes") << "Bytes" << QVariant(QByteArray("1+\0\xff", 4));
    QTest::newRow("a slash in the key is a group") << "Group/Number" << QVariant(5);
    QTest::newRow("blanks in the key") << "a key" << QVariant(6);
}

void tst_Settings::values()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QSettings raw(m_file, QSettings::IniFormat);
    Settings settings(&raw);
    IPersistDestination &destination = settings;

    QVERIFY(!destination.contains(key));
    destination.setValue(key, value);
    QVERIFY(destination.contains(key));
    QVERIFY(raw.contains(key));
    QCOMPARE(raw.value(key), value);
    QCOMPARE(destination.value(key, "another"), value);
}

void tst_Settings::defaults_data()
{
    QTest::addColumn<QVariant>("defaultValue");
    QTest::newRow("invalid") << QVariant();
    QTest::newRow("int") << QVariant(7);
    QTest::newRow("text") << QVariant("seven");
}

void tst_Settings::defaults()
{
    QFETCH(QVariant, defaultValue);
    const Settings settings(m_file, QSettings::IniFormat);
    QCOMPARE(settings.value("missing", defaultValue), defaultValue);
    QVERIFY(!settings.contains("missing"));
}

void tst_Settings::groupsNest()
{
    QSettings raw(m_file, QSettings::IniFormat);
    Settings settings(&raw);
    settings.beginGroup("Outer");
    settings.setValue("A", 1);
    settings.beginGroup("Inner");
    QCOMPARE(raw.group(), QString("Outer/Inner"));
    settings.setValue("B", 2);
    settings.endGroup();
    settings.setValue("C", 3);
    settings.endGroup();
    QCOMPARE(raw.group(), QString());
    QCOMPARE(raw.allKeys(), QStringList({"Outer/A", "Outer/C", "Outer/Inner/B"}));
    QCOMPARE(settings.value("Outer/Inner/B", QVariant()), QVariant(2));
    QCOMPARE(settings.value("B", QVariant()), QVariant());
}

void tst_Settings::arrays_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("read");
    QTest::newRow("a size given") << 2 << 2 << 2;
    QTest::newRow("a size above what is written") << 5 << 2 << 5;
    QTest::newRow("found from the indexes") << -1 << 3 << 3;
    QTest::newRow("empty") << 0 << 0 << 0;
}

void tst_Settings::arrays()
{
    QFETCH(int, size);
    QFETCH(int, written);
    QSettings raw(m_file, QSettings::IniFormat);
    Settings settings(&raw);
    settings.beginWriteArray("Cameras", size);
    for (int i = 0; i < written; ++i) {
        settings.setArrayIndex(i);
        settings.setValue("Id", 10 * i);
    }
    settings.endArray();
    QCOMPARE(raw.group(), QString());
    for (int i = 0; i < written; ++i)
        QCOMPARE(raw.value(QString("Cameras/%1/Id").arg(i + 1)), QVariant(10 * i));

    QTEST(settings.beginReadArray("Cameras"), "read");
    for (int i = 0; i < written; ++i) {
        settings.setArrayIndex(i);
        QCOMPARE(settings.value("Id", QVariant()), QVariant(10 * i));
    }
    settings.endArray();
    QCOMPARE(settings.beginReadArray("missing"), 0);
    settings.endArray();
}

void tst_Settings::removal_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("a key") << "A" << QStringList{"G/B", "G/H/C", "Z"};
    QTest::newRow("a group, with all below it") << "G" << QStringList{"A", "Z"};
    QTest::newRow("a key in a group") << "G/H/C" << QStringList{"A", "G/B", "Z"};
    QTest::newRow("nothing of that name") << "B" << QStringList{"A", "G/B", "G/H/C", "Z"};
    QTest::newRow("the empty key: all") << "" << QStringList();
}

void tst_Settings::removal()
{
    QFETCH(QString, key);
    QSettings raw(m_file, QSettings::IniFormat);
    Settings settings(&raw);
    for (const char *name : {"A", "G/B", "G/H/C", "Z"})
        settings.setValue(name, 1);
    settings.remove(key);
    QTEST(raw.allKeys(), "left");
}

void tst_Settings::syncOnlyWhenAsked()
{
    Settings settings(m_file, QSettings::IniFormat);
    settings.beginGroup("G");
    settings.setValue("A", 1);
    settings.endGroup();
    QCOMPARE(contents(m_file), QByteArray("no file"));
    settings.sync();
    QCOMPARE(contents(m_file), QByteArray("[G]\nA=1\n"));
}

void tst_Settings::callersStoreStays()
{
    auto *const raw = new QSettings(m_file, QSettings::IniFormat);
    const QPointer<QSettings> alive(raw);
    {
        Settings settings(raw);
        QCOMPARE(settings.fileName(), m_file);
        settings.setValue("A", 1);
    }
    QVERIFY(alive);
    QCOMPARE(contents(m_file), QByteArray("no file")); // nobody has flushed it
    QCOMPARE(raw->value("A"), QVariant(1));
    delete raw;
    QCOMPARE(contents(m_file), QByteArray("[General]\nA=1\n"));
}

// A QSettings writes itself out when it is deleted, so the file shows that it was.
void tst_Settings::ownStoreOfAFileGoes()
{
    {
        Settings settings(m_file, QSettings::IniFormat);
        QCOMPARE(settings.fileName(), m_file);
        settings.setValue("A", 1);
        QCOMPARE(contents(m_file), QByteArray("no file"));
    }
    QCOMPARE(contents(m_file), QByteArray("[General]\nA=1\n"));
}

void tst_Settings::ownStoreOfTheApplicationGoes()
{
    QCoreApplication::setOrganizationName("Watch");
    QCoreApplication::setApplicationName("Client");
    const QString file = m_dir.filePath("Watch/Client.ini");
    {
        Settings settings;
        QCOMPARE(settings.fileName(), file);
        settings.setValue("A", 1);
        QCOMPARE(contents(file), QByteArray("no file"));
    }
    QCOMPARE(contents(file), QByteArray("[General]\nA=1\n"));
}

void tst_Settings::writtenByAnotherProcess()
{
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[G]\nNumber=5\nOn=true\nBytes=@ByteArray(63+)\n");
    file.close();
    Settings settings(m_file, QSettings::IniFormat);
    settings.beginGroup("G");
    QCOMPARE(settings.value("Number", QVariant()), QVariant(QString("5")));
    QCOMPARE(settings.value("Number", QVariant()).toInt(), 5);
    QCOMPARE(settings.value("On", QVariant()).toBool(), true);
    QCOMPARE(settings.value("Bytes", QVariant()).type(), QVariant::ByteArray);
    QCOMPARE(settings.value("Bytes", QVariant()).toByteArray(), QByteArray("63+"));
    settings.endGroup();
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_Settings.moc"
