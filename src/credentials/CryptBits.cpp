#include "Crypt.h"

#include "CryptSteps_p.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace vogen {

namespace {

void runRound(const Crypt::sched &schedule, std::size_t round, HalfBits &left,
              const HalfBits &right)
{
    const unsigned char *place = schedule.E;
    const unsigned char *keyBit = schedule.KS[round];
    std::array<const unsigned char *, 8> output;
    for (std::size_t box = 0; box < output.size(); ++box) {
        unsigned int index = 0;
        for (int i = 0; i < 6; ++i)
            index = index << 1 | (right[*place++ - 1U] ^ *keyBit++);
        output[box] = gBoxBits[box][index].data();
    }
    // In one expression, into an array that nothing else leads to: compilers then take 16 bytes at
    // once.
    HalfBits result;
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = left[i] ^ output[0][i] ^ output[1][i] ^ output[2][i] ^ output[3][i] ^
                    output[4][i] ^ output[5][i] ^ output[6][i] ^ output[7][i];
    }
    left = result;
}

void rotateLeft(unsigned char (&keyRegister)[28], int count)
{
    std::rotate(std::begin(keyRegister), std::begin(keyRegister) + count, std::end(keyRegister));
}

} // namespace

char *Crypt::crypt_r(const char *password, const char *salt, char *buffer)
{
    char block[66] = {};
    for (int i = 0; i < 64 && *password != '\0'; ++password, ++i) {
        for (int bit = 6; bit >= 0; --bit, ++i)
            block[i] = static_cast<char>(*password >> bit & 1);
    }
    sched schedule;
    setkey_r(&schedule, block);
    std::memset(block, 0, sizeof block);

    // Read before anything is written: a buffer may hold its own salt. An empty text ends here.
    const char secondOfSalt = salt[0] != '\0' ? salt[1] : '\0';
    buffer[0] = salt[0];
    buffer[1] = secondOfSalt;
    for (int i = 0; i < 2; ++i) {
        const auto value =
            static_cast<unsigned int>(saltValue(static_cast<signed char>(buffer[i])));
        for (int bit = 0; bit < 6; ++bit) {
            if ((value >> bit & 1) != 0)
                std::swap(schedule.E[6 * i + bit], schedule.E[6 * i + bit + 24]);
        }
    }

    for (int pass = 0; pass < gCryptPasses; ++pass)
        encrypt_r(&schedule, block, 0);

    for (int i = 0; i < 11; ++i) {
        int value = 0;
        for (int bit = 0; bit < 6; ++bit)
            value = value << 1 | block[6 * i + bit];
        buffer[i + 2] = static_cast<char>(m_characterConversionTable[value]);
    }
    buffer[13] = '\0';
    if (buffer[1] == '\0')
        buffer[1] = buffer[0];
    return buffer;
}

void Crypt::setkey_r(sched *schedule, const char *key)
{
    for (int i = 0; i < 28; ++i) {
        schedule->C[i] = key[PC1_C[i] - 1] & 1;
        schedule->D[i] = key[PC1_D[i] - 1] & 1;
    }
    for (int round = 0; round < m_desIterations; ++round) {
        rotateLeft(schedule->C, shifts[round]);
        rotateLeft(schedule->D, shifts[round]);
        for (int i = 0; i < 24; ++i) {
            schedule->KS[round][i] = schedule->C[PC2_C[i] - 1];
            schedule->KS[round][i + 24] = schedule->D[PC2_D[i] - 29];
        }
    }
    std::copy(std::begin(e), std::end(e), schedule->E);
}

void Crypt::encrypt_r(sched *schedule, char *block, int edflag)
{
    HalfBits left;
    HalfBits right;
    for (std::size_t i = 0; i < 32; ++i) {
        left[i] = block[IP[i] - 1] & 1;
        right[i] = block[IP[i + 32] - 1] & 1;
    }
    // Two rounds in one step, so that the halves need not change places.
    for (std::size_t i = 0; i < m_desIterations; i += 2) {
        runRound(*schedule, edflag == 0 ? i : 15 - i, left, right);
        runRound(*schedule, edflag == 0 ? i + 1 : 14 - i, right, left);
    }
    for (std::size_t i = 0; i < 64; ++i) {
        const std::size_t place = FP[i] - 1U; // in the exchanged halves
        block[i] = static_cast<char>(place < 32 ? right[place] : left[place - 32]);
    }
}

} // namespace vogen
