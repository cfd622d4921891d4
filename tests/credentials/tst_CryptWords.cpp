#include "credentials/Passwords.h"

#include <QtTest>

#include <algorithm>
#include <cstring>

using vogen::Crypt;

namespace {

constexpr quint32 gSeed = 20261122;

// The block of Body() as its 8 bytes.
QByteArray bytesOf(const QVector<unsigned int> &words)
{
    QByteArray bytes;
    for (const unsigned int word : words) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.append(static_cast<char>(word >> shift & 0xff));
    }
    return bytes;
}

// The same 8 bytes by 25 passes over a byte for each bit. The salt is any 12 bits.
QByteArray byBits(const QByteArray &key, unsigned int salt)
{
    char block[64];
    for (int i = 0; i < 64; ++i)
        block[i] = static_cast<char>(key.at(i / 8) >> (7 - i % 8) & 1);
    Crypt::sched schedule;
    Crypt::setkey_r(&schedule, block);
    for (int i = 0; i < 12; ++i) {
        if ((salt >> i & 1) != 0)
            std::swap(schedule.E[i], schedule.E[i + 24]);
    }
    std::memset(block, 0, sizeof block);
    for (int pass = 0; pass < 25; ++pass)
        Crypt::encrypt_r(&schedule, block, 0);

    QByteArray bytes(8, '\0');
    for (int i = 0; i < 64; ++i)
        bytes[i / 8] = static_cast<char>(bytes.at(i / 8) << 1 | block[i]);
    return bytes;
}

} // namespace

class tst_CryptWords : public QObject
{
    Q_OBJECT

private slots:
    void sameBitsAsTheBitLine();
    void singleBits();
    void shortKeys();
    void bodyIsMadeOfRounds();

    void permOperation();
    void hPermOperation();
    void fourBytesToInt_data();
    void fourBytesToInt();
    void intToFourBytesLeavesTheArray();
    void to64_data();
    void to64();

    void saltTranslation();
    void alphabets();
    void roundTables();
};

void tst_CryptWords::sameBitsAsTheBitLine()
{
    test::RandomPasswords random(gSeed);
    for (int i = 0; i < 12000; ++i) {
        const QByteArray key = random.key();
        const auto salt = static_cast<unsigned int>(random.number(4096));
        QVector<unsigned int> schedule = Crypt::SetDESKey(key);
        QCOMPARE(schedule.size(), 32);
        // As the two salt characters give them: 6 bits each, the second 4 places up.
        const QVector<unsigned int> words =
            Crypt::Body(schedule.data(), salt & 63, (salt >> 6) << 4);
        QCOMPARE(words.size(), 2);
        QVERIFY2(bytesOf(words) == byBits(key, salt),
                 qPrintable(QString("seed %1, hash %2: key %3, salt %4")
                                .arg(gSeed)
                                .arg(i)
                                .arg(QString::fromLatin1(key.toHex()))
                                .arg(salt)));
    }
    qInfo("12000 keys and salts from seed %u", gSeed);
}

// Each bit of the key with each of the salt: a slip in one place of a table shows.
void tst_CryptWords::singleBits()
{
    for (int keyBit = 0; keyBit < 64; ++keyBit) {
        QByteArray key(8, '\0');
        key[keyBit / 8] = static_cast<char>(1 << keyBit % 8);
        QVector<unsigned int> schedule = Crypt::SetDESKey(key);
        for (unsigned int salt = 1; salt < 4096; salt <<= 1) {
            QCOMPARE(bytesOf(Crypt::Body(schedule.data(), salt & 63, (salt >> 6) << 4)),
                     byBits(key, salt));
        }
    }
}

void tst_CryptWords::shortKeys()
{
    const QByteArray key = QByteArray::fromHex("133457799bbcdff1");
    for (int size = 0; size <= 8; ++size) {
        const QByteArray filled = key.left(size) + QByteArray(8 - size, '\0');
        QCOMPARE(Crypt::SetDESKey(key.left(size)), Crypt::SetDESKey(filled));
    }
    QCOMPARE(Crypt::SetDESKey(key + "more"), Crypt::SetDESKey(key));
    QCOMPARE(Crypt::SetDESKey(QByteArray()), QVector<unsigned int>(32, 0));
    QCOMPARE(Crypt::SetDESKey(QByteArray(8, '\1')), QVector<unsigned int>(32, 0)); // parity
}

void tst_CryptWords::bodyIsMadeOfRounds()
{
    QVector<unsigned int> schedule = Crypt::SetDESKey("\x12\x34\x56\x78\x9a\xbc\xde\xf0");
    const QVector<unsigned int> before = schedule;
    // Words beyond what a salt gives count as well.
    const unsigned int swaps[][2] = {{0, 0}, {63, 63 << 4}, {0xffffffff, 0x12345678}};
    for (const auto &[e0, e1] : swaps) {
        unsigned int left = 0;
        unsigned int right = 0;
        for (int pass = 0; pass < 25; ++pass) {
            for (unsigned int i = 0; i < 32; i += 4) {
                left = Crypt::DEncrypt(left, right, i, e0, e1, schedule.data());
                right = Crypt::DEncrypt(right, left, i + 2, e0, e1, schedule.data());
            }
            std::swap(left, right);
        }
        std::swap(left, right); // not behind the last pass
        unsigned int words[] = {left >> 1 | left << 31, right >> 1 | right << 31};
        unsigned int *const results = words;
        unsigned int swapped[2];
        const auto exchange = [&](int a, unsigned int n, unsigned int m) {
            Crypt::PermOperation(results[a], results[1 - a], n, m, swapped);
            results[a] = swapped[0];
            results[1 - a] = swapped[1];
        };
        exchange(1, 1, 0x55555555);
        exchange(0, 8, 0x00ff00ff);
        exchange(1, 2, 0x33333333);
        exchange(0, 16, 0x0000ffff);
        exchange(1, 4, 0x0f0f0f0f);
        QCOMPARE(Crypt::Body(schedule.data(), e0, e1), (QVector<unsigned int>{words[0], words[1]}));
    }
    QCOMPARE(schedule, before);
}

void tst_CryptWords::permOperation()
{
    unsigned int results[2];
    Crypt::PermOperation(0xa0, 0x0b, 4, 0x0f, results);
    QCOMPARE(results[0], 0xb0U);
    QCOMPARE(results[1], 0x0aU);
    Crypt::PermOperation(0x12345678, 0x9abcdef0, 4, 0x0f0f0f0f, results);
    QCOMPARE(results[0], 0xa2c4e608U);
    QCOMPARE(results[1], 0x91b3d5f7U);
    Crypt::PermOperation(0x12345678, 0x9abcdef0, 0, 0, results);
    QCOMPARE(results[0], 0x12345678U);
    QCOMPARE(results[1], 0x9abcdef0U);
    unsigned int again[2];
    Crypt::PermOperation(0x12345678, 0x9abcdef0, 32, 0xff, again); // as by 0
    Crypt::PermOperation(0x12345678, 0x9abcdef0, 0, 0xff, results);
    QCOMPARE(again[0], results[0]);
    QCOMPARE(again[1], results[1]);
}

void tst_CryptWords::hPermOperation()
{
    QCOMPARE(Crypt::HPermOperation(0x12345678, 0, 0xffff0000), 0x56781234U);
    QCOMPARE(Crypt::HPermOperation(0x12345678, -2, 0), 0x12345678U);
    // Two bits move 18 places: 2 and 3 to 20 and 21.
    QCOMPARE(Crypt::HPermOperation(0x0000000c, -2, 0xcccc0000), 0x0000000cU);
    QCOMPARE(Crypt::HPermOperation(0x00000003, -2, 0xcccc0000), 0x000c0000U);
    QCOMPARE(Crypt::HPermOperation(0x000c0000, -2, 0xcccc0000), 0x00000003U);
    QCOMPARE(Crypt::HPermOperation(0x12345678, 16, 0xff), 0x12345678U); // by 0 places
    QCOMPARE(Crypt::HPermOperation(0x12345678, INT_MIN, 0xffff0000),
             Crypt::HPermOperation(0x12345678, 0, 0xffff0000)); // modulo 32
}

void tst_CryptWords::fourBytesToInt_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<unsigned int>("offset");
    QTest::addColumn<unsigned int>("value");
    const QByteArray six("\x01\x02\x03\x04\xff\xfe", 6);
    QTest::newRow("least significant first") << six << 0U << 0x04030201U;
    QTest::newRow("from an offset on") << six << 1U << 0xff040302U;
    QTest::newRow("the last four") << six << 2U << 0xfeff0403U;
    QTest::newRow("one beyond the end") << six << 3U << 0x00feff04U;
    QTest::newRow("the last byte") << six << 5U << 0xfeU;
    QTest::newRow("at the end") << six << 6U << 0U;
    QTest::newRow("beyond any array") << six << 0xffffffffU << 0U;
    QTest::newRow("two bytes: in the low half") << QByteArray("\x80\xff") << 0U << 0xff80U;
    QTest::newRow("none") << QByteArray() << 0U << 0U;
}

void tst_CryptWords::fourBytesToInt()
{
    QFETCH(QByteArray, bytes);
    QFETCH(unsigned int, offset);
    QTEST(Crypt::FourBytesToInt(bytes, offset), "value");
}

void tst_CryptWords::intToFourBytesLeavesTheArray()
{
    for (const unsigned int offset : {0U, 4U, 5U, 8U, 9U, 0xffffffffU}) {
        QByteArray bytes(9, 'x');
        Crypt::IntToFourBytes(0x01020304, bytes, offset);
        QCOMPARE(bytes, QByteArray(9, 'x'));
    }
    const QByteArray empty;
    Crypt::IntToFourBytes(1, empty, 0);
    QCOMPARE(empty.size(), 0);
    char memory[] = "four";
    Crypt::IntToFourBytes(0, QByteArray::fromRawData(memory, 4), 0); // writes to a copy of it
    QCOMPARE(memory, "four");
}

void tst_CryptWords::to64_data()
{
    QTest::addColumn<qlonglong>("value");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("zero") << 0LL << 2 << QByteArray("aa");
    QTest::newRow("the lowest bits first") << 0x1041LL << 3 << QByteArray("bbb");
    QTest::newRow("each place") << (63LL | 62 << 6 | 26 << 12) << 3 << QByteArray("/.A");
    QTest::newRow("what isn't asked for is left") << 0x1041LL << 1 << QByteArray("b");
    QTest::newRow("none") << 7LL << 0 << QByteArray();
    QTest::newRow("fewer than none") << 7LL << -1 << QByteArray();
    QTest::newRow("negative: ones without end") << -1LL << 12 << QByteArray("////////////");
}

void tst_CryptWords::to64()
{
    QFETCH(qlonglong, value);
    QFETCH(int, count);
    QFETCH(QByteArray, written);
    char memory[16];
    std::memset(memory, '#', sizeof memory);
    Crypt::to64(memory, static_cast<long>(value), count);
    QCOMPARE(QByteArray(memory, sizeof memory),
             written.leftJustified(int(sizeof memory), '#')); // no terminator
}

void tst_CryptWords::saltTranslation()
{
    struct Run
    {
        int first, last, value;
        bool rising;
    };
    const Run runs[] = {{0, 45, 0, false},    {'.', '/', 0, true},  {'0', '9', 2, true},
                        {58, 64, 5, true},    {'A', 'Z', 12, true}, {91, 96, 32, true},
                        {'a', 'z', 38, true}, {123, 127, 0, false}};
    int next = 0;
    for (const Run &run : runs) {
        QCOMPARE(run.first, next);
        for (; next <= run.last; ++next) {
            const int expected = run.value + (run.rising ? next - run.first : 0);
            QVERIFY2(Crypt::m_saltTranslation[std::size_t(next)] == expected,
                     qPrintable(QString("character code %1").arg(next)));
        }
    }
    QCOMPARE(next, int(Crypt::m_saltTranslation.size()));
}

void tst_CryptWords::alphabets()
{
    QByteArray output;
    for (const int character : Crypt::m_characterConversionTable)
        output.append(static_cast<char>(character));
    QCOMPARE(output,
             QByteArray("./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"));
    QCOMPARE(QByteArray(Crypt::m_encryptionSaltCharacters, 64),
             QByteArray("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789./"));
    for (std::size_t value = 0; value < 64; ++value) {
        const auto character = std::size_t(Crypt::m_characterConversionTable[value]);
        QCOMPARE(Crypt::m_saltTranslation[character], int(value));
    }
}

void tst_CryptWords::roundTables()
{
    QCOMPARE(Crypt::m_desIterations, 16);
    int mask = 0;
    for (std::size_t round = 0; round < 16; ++round) {
        QCOMPARE(int(Crypt::shifts[round]), 1 + Crypt::m_shifts[round]);
        mask |= Crypt::m_shifts[round] << round;
    }
    QCOMPARE(mask, 0x7efc);
    QCOMPARE(sizeof Crypt::m_skb, 8 * 64 * sizeof(unsigned int));
    QCOMPARE(sizeof Crypt::m_SPTranslationTable, 8 * 64 * sizeof(unsigned int));
}

QTEST_APPLESS_MAIN(tst_CryptWords)

#include "tst_CryptWords.moc"
