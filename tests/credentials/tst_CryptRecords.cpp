#include "credentials/Passwords.h"

#include <QtTest>

#include <openssl/des.h>

#include <cstdlib>
#include <ctime>
#include <memory>

using vogen::Crypt;

namespace {

QByteArray md5Hex(const QByteArray &data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Md5).toHex();
}

QByteArray md5SqlHex(const QByteArray &data)
{
    const std::unique_ptr<unsigned char, decltype(&std::free)> digest(
        Crypt::md5_sql(data.constData(), static_cast<unsigned long>(data.size())), &std::free);
    return QByteArray(reinterpret_cast<const char *>(digest.get()), 16).toHex();
}

// The salt that the clock gives, as long as the second lasts.
QByteArray saltOfSecond(std::time_t second)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qsrand(static_cast<uint>(second));
    const int random = qrand();
    QT_WARNING_POP
    const char *const alphabet = Crypt::m_encryptionSaltCharacters;
    return QByteArray(1, alphabet[random & 63]) + alphabet[random >> 6 & 63];
}

// Runs it again until it started and ended within one second, which it then returns.
template <typename Function>
std::time_t withinOneSecond(Function function)
{
    std::time_t before = 0;
    do {
        before = std::time(nullptr);
        function();
    } while (std::time(nullptr) != before);
    return before;
}

} // namespace

class tst_CryptRecords : public QObject
{
    Q_OBJECT

private slots:
    void md5_data();
    void md5();
    void md5OfBytesWithoutTerminator();
    void md5Sql_data();
    void md5Sql();
    void zeroByte();

    void cryptSllWithSalt_data();
    void cryptSllWithSalt();
    void cryptSllWithoutSalt();

    void record_data();
    void record();
    void recordsOfOneSecond();
    void longPassword();
    void zeroCharacters_data();
    void zeroCharacters();
    void colonInAName();
};

void tst_CryptRecords::md5_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("digest");
    // RFC 1321
    QTest::newRow("nothing") << QByteArray("") << QByteArray("d41d8cd98f00b204e9800998ecf8427e");
    QTest::newRow("null") << QByteArray() << QByteArray("d41d8cd98f00b204e9800998ecf8427e");
    QTest::newRow("a") << QByteArray("a") << QByteArray("0cc175b9c0f1b6a831c399e269772661");
    QTest::newRow("message digest")
        << QByteArray("message digest") << QByteArray("f96b697d7cb7938d525a2f31aaf161d0");
    QTest::newRow("more than a block")
        << QByteArray("1234567890").repeated(8) << QByteArray("57edf4a22be3c955ac49da2e2107b67a");
    QTest::newRow("it ends at a zero byte")
        << QByteArray("a\0b", 3) << QByteArray("0cc175b9c0f1b6a831c399e269772661");
    QTest::newRow("even at the first")
        << QByteArray("\0b", 2) << QByteArray("d41d8cd98f00b204e9800998ecf8427e");
}

void tst_CryptRecords::md5()
{
    QFETCH(QByteArray, data);
    QCOMPARE(Crypt::md5(data).size(), 16);
    QTEST(Crypt::md5(data).toHex(), "digest");
}

void tst_CryptRecords::md5OfBytesWithoutTerminator()
{
    const std::unique_ptr<char[]> bytes(new char[3]{'a', 'b', 'c'});
    QCOMPARE(Crypt::md5(QByteArray::fromRawData(bytes.get(), 3)).toHex(), md5Hex("abc"));
}

void tst_CryptRecords::md5Sql_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("text") << QByteArray("message digest");
    QTest::newRow("a zero byte counts") << QByteArray("a\0b", 3);
    QTest::newRow("only zero bytes") << QByteArray(100, '\0');
    QTest::newRow("every byte above 127") << QByteArray(1000, '\xff');
}

void tst_CryptRecords::md5Sql()
{
    QFETCH(QByteArray, data);
    QCOMPARE(md5SqlHex(data), md5Hex(data));
}

void tst_CryptRecords::zeroByte()
{
    const QByteArray data("a\0b", 3);
    QCOMPARE(Crypt::md5(data), Crypt::md5("a"));
    QVERIFY(md5SqlHex(data) != Crypt::md5(data).toHex());
    QCOMPARE(md5SqlHex(data.left(1)), Crypt::md5(data).toHex());
}

void tst_CryptRecords::cryptSllWithSalt_data()
{
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QByteArray>("salt");
    QTest::addColumn<QByteArray>("hash"); // null for a null pointer
    QTest::newRow("as the bit line has it")
        << QByteArray("rasmuslerdorf") << QByteArray("rl") << QByteArray("rl.3StKT.4T8M");
    QTest::newRow("an empty password")
        << QByteArray("") << QByteArray("SD") << QByteArray("SDbsugeBiC58A");
    QTest::newRow("an empty salt") << QByteArray("x") << QByteArray("") << QByteArray();
    QTest::newRow("one character") << QByteArray("x") << QByteArray("a") << QByteArray();
    QTest::newRow("a byte above 127") << QByteArray("x") << QByteArray("a\xe9") << QByteArray();
}

void tst_CryptRecords::cryptSllWithSalt()
{
    QFETCH(QByteArray, password);
    QFETCH(QByteArray, salt);
    QFETCH(QByteArray, hash);
    const char *const result = Crypt::crypt_sll(password.constData(), salt.constData());
    QCOMPARE(QByteArray(result), hash);
    QCOMPARE(result == nullptr, hash.isNull());
    if (result)
        QCOMPARE(result, static_cast<const char *>(DES_crypt("", ".."))); // one buffer for all
}

void tst_CryptRecords::cryptSllWithoutSalt()
{
    QByteArray hash;
    const std::time_t second = withinOneSecond([&] { hash = Crypt::crypt_sll("secret"); });
    QCOMPARE(hash.left(2), saltOfSecond(second));
    QCOMPARE(hash, test::hashOf("secret", hash));
}

void tst_CryptRecords::record_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("realm");
    QTest::addColumn<QByteArray>("passwordBytes");
    QTest::addColumn<QByteArray>("digestInput");
    QTest::newRow("a user") << QString("Mufasa") << QString("Circle Of Life") << QString("admin")
                            << QString("testrealm@host.com") << QByteArray("Circle Of Life")
                            << QByteArray("Mufasa:testrealm@host.com:Circle Of Life");
    QTest::newRow("all empty") << QString() << QString() << QString() << QString() << QByteArray("")
                               << QByteArray("::");
    QTest::newRow("Latin-1") << QString::fromUtf8("J\u00fcrgen")
                             << QString::fromUtf8("\u00e9t\u00e9") << QString::fromUtf8("g\u00ff")
                             << QString::fromUtf8("r\u00a0") << QByteArray("\xe9t\xe9")
                             << QByteArray("J\xfcrgen:r\xa0:\xe9t\xe9");
    QTest::newRow("outside Latin-1: question marks")
        << QString::fromUtf8("\u20ac") << QString::fromUtf8("\u20ac1")
        << QString::fromUtf8("\u0101") << QString::fromUtf8("\U0001f600") << QByteArray("?1")
        << QByteArray("?:\?\?:?1");
}

void tst_CryptRecords::record()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QString, group);
    QFETCH(QString, realm);
    QFETCH(QByteArray, passwordBytes);
    QFETCH(QByteArray, digestInput);
    QString record;
    const std::time_t second =
        withinOneSecond([&] { record = Crypt::cameraUserAccess(user, password, group, realm); });
    const QByteArray hash = test::hashOf(passwordBytes, saltOfSecond(second));
    QCOMPARE(record.toLatin1(),
             user.toLatin1() + ':' + group.toLatin1() + ':' + hash + ':' + md5Hex(digestInput));

    const QStringList fields = record.split(':');
    QCOMPARE(fields.size(), 4);
    QCOMPARE(fields.at(2).size(), 13);
    QCOMPARE(fields.at(3).size(), 32);
    for (const QChar character : fields.at(2).left(2)) {
        QVERIFY(QByteArray(Crypt::m_encryptionSaltCharacters, 64).contains(character.toLatin1()));
    }
}

void tst_CryptRecords::recordsOfOneSecond()
{
    QString first;
    QString second;
    withinOneSecond([&] {
        first = Crypt::cameraUserAccess("user", "secret", "admin", "realm");
        second = Crypt::cameraUserAccess("user", "secret", "admin", "realm");
    });
    QCOMPARE(first, second);
}

void tst_CryptRecords::longPassword()
{
    QString shorter;
    QString longer;
    withinOneSecond([&] {
        shorter = Crypt::cameraUserAccess("user", "12345678", "admin", "realm");
        longer = Crypt::cameraUserAccess("user", "123456789", "admin", "realm");
    });
    QCOMPARE(longer.section(':', 2, 2), shorter.section(':', 2, 2));
    QCOMPARE(longer.section(':', 3), QString(md5Hex("user:realm:123456789")));
    QVERIFY(longer != shorter);
}

void tst_CryptRecords::zeroCharacters_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("realm");
    QTest::addColumn<QString>("form"); // %1 for the hash of "pass"
    QTest::addColumn<QByteArray>("digestInput");
    const QString zero = QString("ab%1c").arg(QChar(0));
    const QString cut = QString("pass%1word").arg(QChar(0));
    QTest::newRow("in the user: the record ends there")
        << zero << QString("pass") << QString("g") << QString("r") << QString("ab")
        << QByteArray("ab");
    QTest::newRow("in the group, too") << QString("u") << QString("pass") << zero << QString("r")
                                       << QString("u:ab") << QByteArray();
    QTest::newRow("in the password: hash and digest take what stands before")
        << QString("u") << cut << QString("g") << QString("r") << QString("u:g:%1:%2")
        << QByteArray("u:r:pass");
    QTest::newRow("in the realm: the digest knows no password")
        << QString("u") << QString("pass") << QString("g") << zero << QString("u:g:%1:%2")
        << QByteArray("u:ab");
}

void tst_CryptRecords::zeroCharacters()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QString, group);
    QFETCH(QString, realm);
    QFETCH(QString, form);
    QFETCH(QByteArray, digestInput);
    QString record;
    const std::time_t second =
        withinOneSecond([&] { record = Crypt::cameraUserAccess(user, password, group, realm); });
    const QByteArray hash = test::hashOf("pass", saltOfSecond(second));
    QCOMPARE(record, form.replace("%1", hash).replace("%2", md5Hex(digestInput)));
}

void tst_CryptRecords::colonInAName()
{
    const QString record = Crypt::cameraUserAccess("a:b", "secret", "c:d", "realm");
    QCOMPARE(record.split(':').size(), 6);
    QVERIFY(record.startsWith("a:b:c:d:"));
}

QTEST_APPLESS_MAIN(tst_CryptRecords)

#include "tst_CryptRecords.moc"
