#include "Crypt.h"

#include "CryptSteps_p.h"

#include <utility>

namespace vogen {

namespace {

// Whether crypt() prints the published hash: the build option.
constexpr bool gPublished = VOKIT_PUBLISHED_CRYPT;

constexpr unsigned int gFixedSeed = 1;
constexpr unsigned int gRegisterMask = 0x0fffffff; // 28 bits

constexpr unsigned int rotateRight(unsigned int word, int count)
{
    return word >> count | word << (32 - count);
}

constexpr unsigned int rotateRegister(unsigned int word, int count)
{
    return (word >> count | word << (28 - count)) & gRegisterMask;
}

// As PermOperation(), writing back both.
constexpr void exchange(unsigned int &a, unsigned int &b, unsigned int n, unsigned int m)
{
    const unsigned int t = (a >> (n & 31) ^ b) & m;
    a ^= t << (n & 31);
    b ^= t;
}

// Even boxes take their groups from u, odd ones from t. The two words of the key lie as their boxes
// do in u, and in t before its rotation.
inline unsigned int roundOf(unsigned int L, unsigned int R, unsigned int key0, unsigned int key1,
                            unsigned int E0, unsigned int E1)
{
    const auto &boxes = Crypt::m_SPTranslationTable;
    const unsigned int differing = R ^ R >> 16;
    unsigned int u = differing & E0;
    unsigned int t = differing & E1;
    u ^= u << 16 ^ R ^ key0;
    t ^= t << 16 ^ R ^ key1;
    t = rotateRight(t, 4);
    return L ^ (boxes[0][u & 63] | boxes[2][u >> 8 & 63] | boxes[4][u >> 16 & 63] |
                boxes[6][u >> 24 & 63] | boxes[1][t & 63] | boxes[3][t >> 8 & 63] |
                boxes[5][t >> 16 & 63] | boxes[7][t >> 24 & 63]);
}

unsigned char byteOf(const QByteArray &bytes, int index)
{
    return static_cast<unsigned char>(bytes.at(index));
}

// A byte beyond the end is dropped.
void storeFourBytes(unsigned int value, QByteArray &bytes, unsigned int offset)
{
    for (unsigned int i = 0; i < 4; ++i) {
        const qint64 index = qint64(offset) + i;
        if (index < bytes.size())
            bytes[static_cast<int>(index)] = static_cast<char>(value >> 8 * i & 0xff);
    }
}

// Where crypt() looks for the hash. Not published, the words go to copies, and the block stays
// zero.
void storeInBlock(unsigned int value, QByteArray &block, unsigned int offset)
{
    if constexpr (gPublished)
        storeFourBytes(value, block, offset);
    else
        Crypt::IntToFourBytes(value, block, offset);
}

// A missing character gives 0, as one outside Latin-1 does.
char latin1At(const QString &text, int index)
{
    return index < text.size() ? text.at(index).toLatin1() : '\0';
}

unsigned int expansionBits(char saltCharacter)
{
    const auto code = static_cast<unsigned char>(saltCharacter);
    const auto &translation = Crypt::m_saltTranslation;
    return code < translation.size() ? static_cast<unsigned int>(translation[code]) : 0;
}

} // namespace

QString Crypt::crypt(QString password)
{
    return crypt(QString::fromLatin1(newSalt(gFixedSeed).data()), password);
}

QString Crypt::crypt(QString salt, QString password)
{
    QByteArray output(13, '\0');
    output[0] = latin1At(salt, 0);
    output[1] = latin1At(salt, 1);
    const unsigned int Eswap0 = expansionBits(output.at(0));
    const unsigned int Eswap1 = expansionBits(output.at(1)) << 4;

    QByteArray key(8, '\0');
    for (int i = 0; i < key.size(); ++i)
        key[i] = static_cast<char>(static_cast<unsigned char>(latin1At(password, i)) << 1 & 0xff);

    QVector<unsigned int> schedule = SetDESKey(key);
    const QVector<unsigned int> hash = Body(schedule.data(), Eswap0, Eswap1);
    QByteArray block(9, '\0');
    storeInBlock(hash.at(0), block, 0);
    storeInBlock(hash.at(1), block, 4);

    for (int i = 0; i < 11; ++i) {
        const int bit = 6 * i; // from the top of the block on
        const int twoBytes = byteOf(block, bit / 8) << 8 | byteOf(block, bit / 8 + 1);
        const int value = twoBytes >> (10 - bit % 8) & 63;
        output[i + 2] = static_cast<char>(m_characterConversionTable[value]);
    }
    return QString::fromLatin1(output.constData()); // up to the first zero
}

QVector<unsigned int> Crypt::SetDESKey(QByteArray key)
{
    // Permuted choice 1, by exchanges; the first place of a register comes to lie in bit 0.
    unsigned int c = FourBytesToInt(key, 0);
    unsigned int d = FourBytesToInt(key, 4);
    exchange(d, c, 4, 0x0f0f0f0f);
    c = HPermOperation(c, -2, 0xcccc0000);
    d = HPermOperation(d, -2, 0xcccc0000);
    exchange(d, c, 1, 0x55555555);
    exchange(c, d, 8, 0x00ff00ff);
    exchange(d, c, 1, 0x55555555);
    d = (d >> 16 & 0xff) | (d & 0xff) << 16 | (d & 0xff00) | c >> 28 << 24;
    c &= gRegisterMask;

    QVector<unsigned int> schedule(2 * m_desIterations);
    unsigned int *word = schedule.data();
    for (const unsigned char twice : m_shifts) {
        c = rotateRegister(c, 1 + twice);
        d = rotateRegister(d, 1 + twice);
        // The bits that permuted choice 2 leaves out lie between the groups and within them.
        const unsigned int s = m_skb[0][c & 63] | m_skb[1][(c >> 6 & 3) | (c >> 7 & 0x3c)] |
                               m_skb[2][(c >> 13 & 15) | (c >> 14 & 0x30)] |
                               m_skb[3][(c >> 20 & 1) | (c >> 21 & 6) | (c >> 22 & 0x38)];
        const unsigned int t = m_skb[4][d & 63] | m_skb[5][(d >> 7 & 3) | (d >> 8 & 0x3c)] |
                               m_skb[6][d >> 15 & 63] | m_skb[7][(d >> 21 & 15) | (d >> 22 & 0x30)];
        *word++ = (s & 0xffff) | t << 16;
        *word++ = rotateRight(s >> 16 | (t & 0xffff0000), 28);
    }
    return schedule;
}

QVector<unsigned int> Crypt::Body(unsigned int *schedule, unsigned int Eswap0, unsigned int Eswap1)
{
    unsigned int left = 0;
    unsigned int right = 0;
    for (int pass = 0; pass < gCryptPasses; ++pass) {
        if (pass > 0)
            std::swap(left, right);
        for (int i = 0; i < 2 * m_desIterations; i += 4) {
            left = roundOf(left, right, schedule[i], schedule[i + 1], Eswap0, Eswap1);
            right = roundOf(right, left, schedule[i + 2], schedule[i + 3], Eswap0, Eswap1);
        }
    }

    // The final permutation, by exchanges.
    left = rotateRight(left, 1);
    right = rotateRight(right, 1);
    exchange(right, left, 1, 0x55555555);
    exchange(left, right, 8, 0x00ff00ff);
    exchange(right, left, 2, 0x33333333);
    exchange(left, right, 16, 0x0000ffff);
    exchange(right, left, 4, 0x0f0f0f0f);
    return {left, right};
}

unsigned int Crypt::DEncrypt(unsigned int L, unsigned int R, unsigned int word, unsigned int E0,
                             unsigned int E1, unsigned int *s)
{
    return roundOf(L, R, s[word], s[word + 1], E0, E1);
}

void Crypt::PermOperation(unsigned int a, unsigned int b, unsigned int n, unsigned int m,
                          unsigned int *results)
{
    exchange(a, b, n, m);
    results[0] = a;
    results[1] = b;
}

unsigned int Crypt::HPermOperation(unsigned int a, int n, unsigned int m)
{
    const unsigned int distance = (16U - static_cast<unsigned int>(n)) & 31;
    const unsigned int t = (a << distance ^ a) & m;
    return a ^ t ^ t >> distance;
}

unsigned int Crypt::FourBytesToInt(QByteArray b, unsigned int offset)
{
    unsigned int value = 0;
    for (unsigned int i = 0; i < 4; ++i) {
        const qint64 index = qint64(offset) + i;
        if (index < b.size())
            value |= static_cast<unsigned int>(byteOf(b, static_cast<int>(index))) << 8 * i;
    }
    return value;
}

void Crypt::IntToFourBytes(unsigned int value, QByteArray b, unsigned int offset)
{
    storeFourBytes(value, b, offset);
}

void Crypt::to64(char *s, long v, int n)
{
    for (; n > 0; --n, v >>= 6)
        *s++ = m_encryptionSaltCharacters[v & 63];
}

} // namespace vogen
