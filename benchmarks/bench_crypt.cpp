#include "Report.h"

#include <Vokit/Crypt>

#include <crypt.h>
#include <openssl/des.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

using vogen::Crypt;

namespace {

constexpr char gSalt[] = "ab";

/// Passwords of 8 characters, a new one for each hash.
class Passwords
{
public:
    Passwords()
    {
        for (std::size_t i = 0; i < m_texts.size(); ++i)
            m_texts[i] = QByteArray::number(10000000 + 104729 * int(i));
    }
    const QByteArray &next() { return m_texts[++m_last % m_texts.size()]; }

private:
    std::array<QByteArray, 256> m_texts;
    std::size_t m_last = 0;
};

QByteArray keyOf(const QByteArray &password)
{
    QByteArray key(8, '\0');
    for (int i = 0; i < key.size(); ++i)
        key[i] = static_cast<char>(password.at(i) << 1);
    return key;
}

// The block, as the 11 characters of a hash show it.
QByteArray printed(const QVector<unsigned int> &words)
{
    QByteArray hash(gSalt);
    for (int bit = 0; bit < 66; bit += 6) {
        unsigned int value = 0;
        for (int i = bit; i < bit + 6; ++i) { // byte by byte, each from its highest bit on
            const unsigned int word = i < 64 ? words.at(i / 32) : 0;
            value = value << 1 | (word >> (i % 32 / 8 * 8 + 7 - i % 8) & 1);
        }
        hash.append(static_cast<char>(Crypt::m_characterConversionTable[value]));
    }
    return hash;
}

QVector<unsigned int> byWords(const QByteArray &key)
{
    QVector<unsigned int> schedule = Crypt::SetDESKey(key);
    return Crypt::Body(schedule.data(), unsigned(Crypt::m_saltTranslation[std::size_t(gSalt[0])]),
                       unsigned(Crypt::m_saltTranslation[std::size_t(gSalt[1])]) << 4);
}

const char *byBits(const QByteArray &password, char *buffer)
{
    return Crypt::crypt_r(password.constData(), gSalt, buffer);
}

// A pass as it is usually written down: every step a loop over bits.
void encryptPlainly(const Crypt::sched &schedule, char *block)
{
    char halves[64];
    char *const left = halves;
    char *const right = halves + 32;
    for (int i = 0; i < 64; ++i)
        halves[i] = block[Crypt::IP[i] - 1];
    for (const auto &roundKey : schedule.KS) {
        char input[48];
        for (int i = 0; i < 48; ++i)
            input[i] = static_cast<char>(right[schedule.E[i] - 1] ^ roundKey[i]);
        char output[32];
        for (int box = 0; box < 8; ++box) {
            const char *const bits = input + 6 * box;
            const int value = Crypt::S[box][bits[0] << 5 | bits[5] << 4 | bits[1] << 3 |
                                            bits[2] << 2 | bits[3] << 1 | bits[4]];
            for (int i = 0; i < 4; ++i)
                output[4 * box + i] = static_cast<char>(value >> (3 - i) & 1);
        }
        for (int i = 0; i < 32; ++i) {
            const char old = right[i];
            right[i] = static_cast<char>(left[i] ^ output[Crypt::P[i] - 1]);
            left[i] = old;
        }
    }
    std::swap_ranges(left, right, right);
    for (int i = 0; i < 64; ++i)
        block[i] = halves[Crypt::FP[i] - 1];
}

const char *byPlainBits(const QByteArray &password, char *buffer)
{
    char block[66] = {};
    for (int i = 0; i < 64; ++i)
        block[i] = static_cast<char>(password.at(i / 8) << 1 >> (7 - i % 8) & 1);
    Crypt::sched schedule;
    Crypt::setkey_r(&schedule, block);
    std::fill(std::begin(block), std::end(block), '\0');
    for (int i = 0; i < 12; ++i) {
        if ((Crypt::m_saltTranslation[std::size_t(gSalt[i / 6])] >> i % 6 & 1) != 0)
            std::swap(schedule.E[i], schedule.E[i + 24]);
    }
    for (int pass = 0; pass < 25; ++pass)
        encryptPlainly(schedule, block);
    std::copy_n(gSalt, 2, buffer);
    for (int i = 0; i < 11; ++i) {
        int value = 0;
        for (int bit = 0; bit < 6; ++bit)
            value = value << 1 | block[6 * i + bit];
        buffer[i + 2] = static_cast<char>(Crypt::m_characterConversionTable[value]);
    }
    buffer[13] = '\0';
    return buffer;
}

const char *byOpenSsl(const QByteArray &password, char * /*buffer*/)
{
    return DES_crypt(password.constData(), gSalt);
}

const char *byLibxcrypt(const QByteArray &password, char * /*buffer*/)
{
    static const auto data = std::make_unique<crypt_data>();
    return ::crypt_r(password.constData(), gSalt, data.get());
}

} // namespace

int main(int argc, char **argv)
{
    Passwords passwords;
    using Hash = const char *(*)(const QByteArray &, char *);
    const std::pair<const char *, Hash> contestants[] = {{"crypt/library_bits", byBits},
                                                         {"crypt/plain_bits", byPlainBits},
                                                         {"crypt/openssl", byOpenSsl},
                                                         {"crypt/libxcrypt", byLibxcrypt}};
    char buffer[14];
    for (const auto &[name, hash] : contestants) {
        for (int i = 0; i < 256; ++i) {
            const QByteArray password = passwords.next();
            require(printed(byWords(keyOf(password))) == hash(password, buffer),
                    "crypt: contestants give different hashes");
        }
        benchmark::RegisterBenchmark(name, [&, hash = hash](benchmark::State &state) {
            for (auto _ : state)
                benchmark::DoNotOptimize(hash(passwords.next(), buffer));
            reportTimePerItem(state, 1);
            state.SetItemsProcessed(state.iterations()); // hashes a second
        });
    }
    benchmark::RegisterBenchmark("crypt/library_words", [&](benchmark::State &state) {
        for (auto _ : state) {
            QVector<unsigned int> words = byWords(keyOf(passwords.next()));
            benchmark::DoNotOptimize(words);
        }
        reportTimePerItem(state, 1);
        state.SetItemsProcessed(state.iterations());
    });
    // Whatever form it has, it hashes, and makes the texts.
    benchmark::RegisterBenchmark("crypt/library_text", [&](benchmark::State &state) {
        for (auto _ : state) {
            QString value = Crypt::crypt(gSalt, QString::fromLatin1(passwords.next()));
            benchmark::DoNotOptimize(value);
        }
        reportTimePerItem(state, 1);
        state.SetItemsProcessed(state.iterations());
    });
    return runBenchmarks(argc, argv);
}
