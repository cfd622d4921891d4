#include "credentials/Passwords.h"

#include <QtTest>

#include <crypt.h>
#include <openssl/des.h>

#include <cstring>
#include <memory>

using vogen::Crypt;

namespace {

constexpr quint32 gSeed = 20261121;

// Bytes as a byte for each bit, the highest first, and back.
QByteArray toBits(const QByteArray &bytes)
{
    QByteArray bits;
    for (const char byte : bytes) {
        for (int bit = 7; bit >= 0; --bit)
            bits.append(static_cast<char>(byte >> bit & 1));
    }
    return bits;
}

QByteArray fromBits(const QByteArray &bits)
{
    QByteArray bytes(bits.size() / 8, '\0');
    for (int i = 0; i < bits.size(); ++i)
        bytes[i / 8] = static_cast<char>(bytes.at(i / 8) << 1 | bits.at(i));
    return bytes;
}

QByteArray digits(const unsigned char *values, int count)
{
    QByteArray result;
    for (int i = 0; i < count; ++i)
        result.append(static_cast<char>('0' + values[i]));
    return result;
}

} // namespace

class tst_CryptBits : public QObject
{
    Q_OBJECT

private slots:
    void publishedHashes_data();
    void publishedHashes();
    void password_data();
    void password();
    void salt_data();
    void salt();
    void buffer();
    void exampleOfTheHeader();
    void peers();

    void publishedCiphers_data();
    void publishedCiphers();
    void schedule();
    void elementsOtherThanBits();
};

void tst_CryptBits::publishedHashes_data()
{
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QByteArray>("hash");
    QTest::newRow("the example of many a manual")
        << QByteArray("rasmuslerdorf") << QByteArray("rl.3StKT.4T8M");
    QTest::newRow("eight characters") << QByteArray("U*U*U*U*") << QByteArray("CCNf8Sbh3HDfQ");
    QTest::newRow("seven characters") << QByteArray("U*U***U") << QByteArray("CCX.K.MFy4Ois");
    QTest::newRow("they differ in the eighth")
        << QByteArray("U*U***U*") << QByteArray("CC4rMpbg9AMZ.");
    QTest::newRow("equal salt characters") << QByteArray("*U*U*U*U") << QByteArray("XXxzOu6maQKqQ");
    QTest::newRow("an empty password") << QByteArray("") << QByteArray("SDbsugeBiC58A");
}

void tst_CryptBits::publishedHashes()
{
    QFETCH(QByteArray, password);
    QFETCH(QByteArray, hash);
    QCOMPARE(test::hashOf(password, hash.left(2)), hash);
    QCOMPARE(test::hashOf(password, hash), hash); // the whole hash serves as salt
}

void tst_CryptBits::password_data()
{
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QByteArray>("same");
    QTest::addColumn<bool>("equal");
    QTest::newRow("a ninth character counts nothing")
        << QByteArray("12345678") << QByteArray("123456789") << true;
    QTest::newRow("nor do thousands")
        << QByteArray("12345678") << QByteArray("12345678").append(5000, 'x') << true;
    QTest::newRow("an eighth counts") << QByteArray("1234567") << QByteArray("12345678") << false;
    QTest::newRow("the eighth bit of a character counts nothing")
        << QByteArray("\xe9t\xe9") << QByteArray("iti") << true;
    QTest::newRow("a password ends at its zero byte")
        << QByteArray("ab\0cd", 5) << QByteArray("ab") << true;
    QTest::newRow("a character of zeros but for its eighth bit ends nothing")
        << QByteArray("a\x80z") << QByteArray("a") << false;
    QTest::newRow("case counts") << QByteArray("secret") << QByteArray("Secret") << false;
    QTest::newRow("control characters count") << QByteArray("a\n") << QByteArray("a") << false;
}

void tst_CryptBits::password()
{
    QFETCH(QByteArray, password);
    QFETCH(QByteArray, same);
    QCOMPARE(test::hashOf(password, "ab").size(), 13);
    QTEST(test::hashOf(password, "ab") == test::hashOf(same, "ab"), "equal");
}

void tst_CryptBits::salt_data()
{
    QTest::addColumn<QByteArray>("salt");
    QTest::addColumn<QByteArray>("start");  // of the hash
    QTest::addColumn<QByteArray>("counts"); // the salt of the alphabet that gives the same
    QTest::newRow("the first of the alphabet")
        << QByteArray("..") << QByteArray("..") << QByteArray("..");
    QTest::newRow("the last") << QByteArray("zz") << QByteArray("zz") << QByteArray("zz");
    QTest::newRow("a third character counts nothing")
        << QByteArray("abc") << QByteArray("ab") << QByteArray("ab");
    QTest::newRow("one character is printed twice, beside a zero that counts as -46")
        << QByteArray("a") << QByteArray("aa") << QByteArray("aG");
    QTest::newRow("none: the text is empty")
        << QByteArray("") << QByteArray("") << QByteArray("GG");
    QTest::newRow("a colon goes on behind 9, as if from A on")
        << QByteArray(":a") << QByteArray(":a") << QByteArray("3a");
    QTest::newRow("[ goes on behind Z") << QByteArray("[a") << QByteArray("[a") << QByteArray("Ua");
    QTest::newRow("behind z it starts again")
        << QByteArray("{a") << QByteArray("{a") << QByteArray(".a");
    QTest::newRow("a blank lies below") << QByteArray(" a") << QByteArray(" a") << QByteArray("ma");
    QTest::newRow("a byte above 127 is negative")
        << QByteArray("\xe9\xff") << QByteArray("\xe9\xff") << QByteArray("vF");
}

void tst_CryptBits::salt()
{
    QFETCH(QByteArray, salt);
    QFETCH(QByteArray, start);
    QFETCH(QByteArray, counts);
    char hash[14];
    QCOMPARE(Crypt::crypt_r("secret", salt.constData(), hash), hash);
    QCOMPARE(QByteArray(hash).left(2), start);
    QCOMPARE(QByteArray(hash + 2), test::hashOf("secret", counts).mid(2));
}

void tst_CryptBits::buffer()
{
    char memory[16];
    std::memset(memory, '#', sizeof memory);
    const char salt[] = {'a', 'b'}; // two bytes, and no zero behind them
    Crypt::crypt_r("secret", salt, memory + 1);
    QCOMPARE(memory[0], '#');
    QCOMPARE(memory[14], '\0');
    QCOMPARE(memory[15], '#');
    QCOMPARE(QByteArray(memory + 1), test::hashOf("secret", "ab"));

    const QByteArray hash = test::hashOf("secret", "ab");
    Crypt::crypt_r("secret", memory + 1, memory + 1); // checked in place
    QCOMPARE(QByteArray(memory + 1), hash);
    std::strcpy(memory, "secret");
    Crypt::crypt_r(memory, "ab", memory);
    QCOMPARE(QByteArray(memory), hash);
}

void tst_CryptBits::exampleOfTheHeader()
{
    const auto isPasswordOf = [](const QByteArray &stored, const QByteArray &password) {
        if (stored.size() != 13)
            return false;
        char buffer[14];
        return stored == QByteArray(vogen::Crypt::crypt_r(password, stored, buffer));
    };
    QVERIFY(isPasswordOf("CCNf8Sbh3HDfQ", "U*U*U*U*"));
    QVERIFY(!isPasswordOf("CCNf8Sbh3HDfQ", "U*U*U*U"));
    QVERIFY(!isPasswordOf("", ""));
    QVERIFY(!isPasswordOf("", "secret"));
    QVERIFY(!isPasswordOf("CC", "secret"));
    QVERIFY(!isPasswordOf(QByteArray(13, '\0'), "secret"));
}

// On their common ground: salts of the alphabet, and passwords without zero bytes.
void tst_CryptBits::peers()
{
    test::RandomPasswords random(gSeed);
    const auto data = std::make_unique<crypt_data>();
    for (int i = 0; i < 10000; ++i) {
        const QByteArray password = random.password();
        const QByteArray salt = random.salt();
        const QByteArray hash = test::hashOf(password, salt);
        const QByteArray where =
            QString("seed %1, hash %2: %3 with salt %4")
                .arg(gSeed)
                .arg(i)
                .arg(QString::fromLatin1(password.toHex()), QString::fromLatin1(salt))
                .toLatin1();
        QVERIFY2(hash == ::crypt_r(password.constData(), salt.constData(), data.get()),
                 where.constData());
        char buffer[14];
        QVERIFY2(hash == DES_fcrypt(password.constData(), salt.constData(), buffer),
                 where.constData());
        QVERIFY2(hash == DES_crypt(password.constData(), salt.constData()), where.constData());
    }
    qInfo("10000 hashes from seed %u", gSeed);
}

void tst_CryptBits::publishedCiphers_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("cipher");
    const auto row = [](const char *name, const char *key, const char *plain, const char *cipher) {
        QTest::newRow(name) << QByteArray::fromHex(key) << QByteArray::fromHex(plain)
                            << QByteArray::fromHex(cipher);
    };
    row("a worked example", "133457799bbcdff1", "0123456789abcdef", "85e813540f0ab405");
    row("one bit of the block", "0101010101010101", "8000000000000000", "95f8a5e5dd31d900");
    row("one bit of the key", "8001010101010101", "0000000000000000", "95a8d72813daa94d");
    row("every S-box", "7ca110454a1a6e57", "01a1d6d039776742", "690f5b0d9a26939b");
    row("a weak key", "0101010101010101", "0000000000000000", "8ca64de9c1b123a7");
    row("parity bits count nothing", "0000000000000000", "0000000000000000", "8ca64de9c1b123a7");
}

void tst_CryptBits::publishedCiphers()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, plain);
    Crypt::sched schedule;
    Crypt::setkey_r(&schedule, toBits(key).constData());
    QByteArray block = toBits(plain);
    Crypt::encrypt_r(&schedule, block.data(), 0);
    QTEST(fromBits(block), "cipher");
    QByteArray back = block;
    Crypt::encrypt_r(&schedule, back.data(), 1);
    QCOMPARE(fromBits(back), plain);
    Crypt::encrypt_r(&schedule, block.data(), -7); // anything but 0 deciphers
    QCOMPARE(fromBits(block), plain);
}

void tst_CryptBits::schedule()
{
    Crypt::sched schedule;
    Crypt::setkey_r(&schedule, toBits(QByteArray::fromHex("133457799bbcdff1")).constData());
    QCOMPARE(digits(schedule.KS[0], 48),
             QByteArray("000110110000001011101111111111000111000001110010"));
    QCOMPARE(digits(schedule.KS[15], 48),
             QByteArray("110010110011110110001011000011100001011111110101"));
    // 28 places in all, so the registers are back where they began.
    QCOMPARE(digits(schedule.C, 28), QByteArray("1111000011001100101010101111"));
    QCOMPARE(digits(schedule.D, 28), QByteArray("0101010101100110011110001111"));
    QCOMPARE(sizeof schedule.E, sizeof Crypt::e);
    QVERIFY(std::memcmp(schedule.E, Crypt::e, sizeof Crypt::e) == 0);
}

// The digits '0' and '1' differ in their lowest bit, and that one counts.
void tst_CryptBits::elementsOtherThanBits()
{
    const QByteArray bits = toBits(QByteArray::fromHex("0123456789abcdef"));
    QByteArray digitsOfBits = bits;
    for (char &digit : digitsOfBits)
        digit = static_cast<char>(digit + '0');
    Crypt::sched schedule;
    Crypt::sched ofDigits;
    Crypt::setkey_r(&schedule, bits.constData());
    Crypt::setkey_r(&ofDigits, digitsOfBits.constData());
    QVERIFY(std::memcmp(&schedule, &ofDigits, sizeof schedule) == 0);

    QByteArray block = bits;
    Crypt::encrypt_r(&schedule, block.data(), 0);
    Crypt::encrypt_r(&schedule, digitsOfBits.data(), 0);
    QCOMPARE(digitsOfBits, block);
}

QTEST_APPLESS_MAIN(tst_CryptBits)

#include "tst_CryptBits.moc"
