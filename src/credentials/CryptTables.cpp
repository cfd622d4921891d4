#include "Crypt.h"

#include "CryptSteps_p.h"

#include <cstddef>

namespace vogen {

constexpr unsigned char Crypt::IP[64] = {
    58, 50, 42, 34, 26, 18, 10, 2, 60, 52, 44, 36, 28, 20, 12, 4, //
    62, 54, 46, 38, 30, 22, 14, 6, 64, 56, 48, 40, 32, 24, 16, 8, //
    57, 49, 41, 33, 25, 17, 9,  1, 59, 51, 43, 35, 27, 19, 11, 3, //
    61, 53, 45, 37, 29, 21, 13, 5, 63, 55, 47, 39, 31, 23, 15, 7,
};

constexpr unsigned char Crypt::FP[64] = {
    40, 8, 48, 16, 56, 24, 64, 32, 39, 7, 47, 15, 55, 23, 63, 31, //
    38, 6, 46, 14, 54, 22, 62, 30, 37, 5, 45, 13, 53, 21, 61, 29, //
    36, 4, 44, 12, 52, 20, 60, 28, 35, 3, 43, 11, 51, 19, 59, 27, //
    34, 2, 42, 10, 50, 18, 58, 26, 33, 1, 41, 9,  49, 17, 57, 25,
};

constexpr unsigned char Crypt::PC1_C[28] = {
    57, 49, 41, 33, 25, 17, 9,  1,  58, 50, 42, 34, 26, 18, //
    10, 2,  59, 51, 43, 35, 27, 19, 11, 3,  60, 52, 44, 36,
};

constexpr unsigned char Crypt::PC1_D[28] = {
    63, 55, 47, 39, 31, 23, 15, 7,  62, 54, 46, 38, 30, 22, //
    14, 6,  61, 53, 45, 37, 29, 21, 13, 5,  28, 20, 12, 4,
};

constexpr unsigned char Crypt::PC2_C[24] = {
    14, 17, 11, 24, 1,  5, 3,  28, 15, 6,  21, 10, //
    23, 19, 12, 4,  26, 8, 16, 7,  27, 20, 13, 2,
};

constexpr unsigned char Crypt::PC2_D[24] = {
    41, 52, 31, 37, 47, 55, 30, 40, 51, 45, 33, 48, //
    44, 49, 39, 56, 34, 53, 46, 42, 50, 36, 29, 32,
};

constexpr unsigned char Crypt::shifts[16] = {1, 1, 2, 2, 2, 2, 2, 2, 1, 2, 2, 2, 2, 2, 2, 1};

constexpr unsigned char Crypt::e[48] = {
    32, 1,  2,  3,  4,  5,  4,  5,  6,  7,  8,  9,  8,  9,  10, 11, //
    12, 13, 12, 13, 14, 15, 16, 17, 16, 17, 18, 19, 20, 21, 20, 21, //
    22, 23, 24, 25, 24, 25, 26, 27, 28, 29, 28, 29, 30, 31, 32, 1,
};

constexpr unsigned char Crypt::S[8][64] = {
    {14, 4,  13, 1, 2,  15, 11, 8,  3,  10, 6,  12, 5,  9,  0, 7, //
     0,  15, 7,  4, 14, 2,  13, 1,  10, 6,  12, 11, 9,  5,  3, 8, //
     4,  1,  14, 8, 13, 6,  2,  11, 15, 12, 9,  7,  3,  10, 5, 0, //
     15, 12, 8,  2, 4,  9,  1,  7,  5,  11, 3,  14, 10, 0,  6, 13},
    {15, 1,  8,  14, 6,  11, 3,  4,  9,  7, 2,  13, 12, 0, 5,  10, //
     3,  13, 4,  7,  15, 2,  8,  14, 12, 0, 1,  10, 6,  9, 11, 5,  //
     0,  14, 7,  11, 10, 4,  13, 1,  5,  8, 12, 6,  9,  3, 2,  15, //
     13, 8,  10, 1,  3,  15, 4,  2,  11, 6, 7,  12, 0,  5, 14, 9},
    {10, 0,  9,  14, 6, 3,  15, 5,  1,  13, 12, 7,  11, 4,  2,  8, //
     13, 7,  0,  9,  3, 4,  6,  10, 2,  8,  5,  14, 12, 11, 15, 1, //
     13, 6,  4,  9,  8, 15, 3,  0,  11, 1,  2,  12, 5,  10, 14, 7, //
     1,  10, 13, 0,  6, 9,  8,  7,  4,  15, 14, 3,  11, 5,  2,  12},
    {7,  13, 14, 3, 0,  6,  9,  10, 1,  2, 8, 5,  11, 12, 4,  15, //
     13, 8,  11, 5, 6,  15, 0,  3,  4,  7, 2, 12, 1,  10, 14, 9,  //
     10, 6,  9,  0, 12, 11, 7,  13, 15, 1, 3, 14, 5,  2,  8,  4,  //
     3,  15, 0,  6, 10, 1,  13, 8,  9,  4, 5, 11, 12, 7,  2,  14},
    {2,  12, 4,  1,  7,  10, 11, 6,  8,  5,  3,  15, 13, 0, 14, 9,  //
     14, 11, 2,  12, 4,  7,  13, 1,  5,  0,  15, 10, 3,  9, 8,  6,  //
     4,  2,  1,  11, 10, 13, 7,  8,  15, 9,  12, 5,  6,  3, 0,  14, //
     11, 8,  12, 7,  1,  14, 2,  13, 6,  15, 0,  9,  10, 4, 5,  3},
    {12, 1,  10, 15, 9, 2,  6,  8,  0,  13, 3,  4,  14, 7,  5,  11, //
     10, 15, 4,  2,  7, 12, 9,  5,  6,  1,  13, 14, 0,  11, 3,  8,  //
     9,  14, 15, 5,  2, 8,  12, 3,  7,  0,  4,  10, 1,  13, 11, 6,  //
     4,  3,  2,  12, 9, 5,  15, 10, 11, 14, 1,  7,  6,  0,  8,  13},
    {4,  11, 2,  14, 15, 0, 8,  13, 3,  12, 9, 7,  5,  10, 6, 1, //
     13, 0,  11, 7,  4,  9, 1,  10, 14, 3,  5, 12, 2,  15, 8, 6, //
     1,  4,  11, 13, 12, 3, 7,  14, 10, 15, 6, 8,  0,  5,  9, 2, //
     6,  11, 13, 8,  1,  4, 10, 7,  9,  5,  0, 15, 14, 2,  3, 12},
    {13, 2,  8,  4, 6,  15, 11, 1,  10, 9,  3,  14, 5,  0,  12, 7, //
     1,  15, 13, 8, 10, 3,  7,  4,  12, 5,  6,  11, 0,  14, 9,  2, //
     7,  11, 4,  1, 9,  12, 14, 2,  0,  6,  10, 13, 15, 3,  5,  8, //
     2,  1,  14, 7, 4,  10, 8,  13, 15, 12, 9,  0,  3,  5,  6,  11},
};

constexpr unsigned char Crypt::P[32] = {
    16, 7, 20, 21, 29, 12, 28, 17, 1,  15, 23, 26, 5,  18, 31, 10, //
    2,  8, 24, 14, 32, 27, 3,  9,  19, 13, 30, 6,  22, 11, 4,  25,
};

constexpr int Crypt::m_characterConversionTable[64] = {
    '.', '/', '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', //
    'E', 'F', 'G', 'H', 'I', 'J', 'K', 'L', 'M', 'N', 'O', 'P', 'Q', 'R', 'S', 'T', //
    'U', 'V', 'W', 'X', 'Y', 'Z', 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i', 'j', //
    'k', 'l', 'm', 'n', 'o', 'p', 'q', 'r', 's', 't', 'u', 'v', 'w', 'x', 'y', 'z',
};

constexpr char Crypt::m_encryptionSaltCharacters[64] = {
    'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i', 'j', 'k', 'l', 'm', 'n', 'o', 'p', //
    'q', 'r', 's', 't', 'u', 'v', 'w', 'x', 'y', 'z', 'A', 'B', 'C', 'D', 'E', 'F', //
    'G', 'H', 'I', 'J', 'K', 'L', 'M', 'N', 'O', 'P', 'Q', 'R', 'S', 'T', 'U', 'V', //
    'W', 'X', 'Y', 'Z', '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '.', '/',
};

namespace {

using WordTables = std::array<std::array<unsigned int, 64>, 8>;

// The four boxes that one register feeds, or one half of a round's keys, as they lie in a word: six
// bits from each of these places on.
constexpr std::array<int, 4> gPlaceOfBox = {0, 16, 8, 24};

// A register keeps its first place in bit 0. Permuted choice 2 leaves out four of its 28 bits; each
// table takes six of the others, in ascending order.
constexpr void fillKeyTables(WordTables &tables, std::size_t firstTable,
                             const unsigned char (&choice)[24], int firstPlace)
{
    std::size_t chosen = 0;
    for (int registerBit = 0; registerBit < 28; ++registerBit) {
        for (std::size_t keyBit = 0; keyBit < 24; ++keyBit) {
            if (choice[keyBit] - firstPlace != registerBit)
                continue;
            const std::size_t place = std::size_t(gPlaceOfBox[keyBit / 6]) + keyBit % 6;
            for (std::size_t index = 0; index < 64; ++index) {
                if ((index >> chosen % 6 & 1) != 0)
                    tables[firstTable + chosen / 6][index] |= 1U << place;
            }
            ++chosen;
        }
    }
}

constexpr WordTables makeKeyTables()
{
    WordTables tables{};
    fillKeyTables(tables, 0, Crypt::PC2_C, 1);
    fillKeyTables(tables, 4, Crypt::PC2_D, 29);
    return tables;
}

using BoxBits = std::array<std::array<HalfBits, 64>, 8>;

// A box takes its row from the first and the last of six bits, its column from those between.
constexpr BoxBits makeBoxBits()
{
    BoxBits bits{};
    for (std::size_t place = 0; place < 32; ++place) {
        const std::size_t output = Crypt::P[place] - 1U;
        for (std::size_t index = 0; index < 64; ++index) {
            const std::size_t row = (index >> 4 & 2) | (index & 1);
            const unsigned int value = Crypt::S[output / 4][row * 16 + (index >> 1 & 15)];
            bits[output / 4][index][place] = value >> (3 - output % 4) & 1;
        }
    }
    return bits;
}

} // namespace

constexpr BoxBits gBoxBits = makeBoxBits();

namespace {

constexpr std::size_t reversedSixBits(std::size_t bits)
{
    std::size_t result = 0;
    for (int i = 0; i < 6; ++i)
        result = result << 1 | (bits >> i & 1);
    return result;
}

// Half a block keeps its place n in bit n, and place 32 in bit 0. So the six neighbours that the
// expansion gives to a box are neighbours in the word, and the first of them is the lowest.
constexpr WordTables makeBoxTables()
{
    WordTables tables{};
    for (std::size_t box = 0; box < 8; ++box) {
        for (std::size_t index = 0; index < 64; ++index) {
            for (std::size_t place = 0; place < 32; ++place) {
                const unsigned int bit = gBoxBits[box][reversedSixBits(index)][place];
                tables[box][index] |= bit << (place + 1) % 32;
            }
        }
    }
    return tables;
}

constexpr std::array<unsigned char, 16> makeShifts()
{
    std::array<unsigned char, 16> result{};
    for (std::size_t round = 0; round < result.size(); ++round)
        result[round] = Crypt::shifts[round] == 2;
    return result;
}

constexpr std::array<int, 128> makeSaltTranslation()
{
    std::array<int, 128> result{};
    for (int code = '.'; code <= 'z'; ++code)
        result[std::size_t(code)] = saltValue(code);
    return result;
}

constexpr bool finalUndoesInitial()
{
    for (int place = 0; place < 64; ++place) {
        if (Crypt::IP[Crypt::FP[place] - 1] != place + 1)
            return false;
    }
    return true;
}
static_assert(finalUndoesInitial());

} // namespace

constexpr WordTables Crypt::m_skb = makeKeyTables();
constexpr WordTables Crypt::m_SPTranslationTable = makeBoxTables();
constexpr std::array<unsigned char, 16> Crypt::m_shifts = makeShifts();
constexpr std::array<int, 128> Crypt::m_saltTranslation = makeSaltTranslation();

} // namespace vogen
