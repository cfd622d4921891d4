#pragma once

#include <Vokit/Crypt>

#include <QtGlobal>

#include <array>

/// What the ways to a hash have in common.
namespace vogen {

constexpr int gCryptPasses = 25;

/// Half a block, a byte for each bit.
using HalfBits = std::array<unsigned char, 32>;
/// What an S-box makes of six bits, the first of them the highest, in the places that P gives it.
extern const std::array<std::array<HalfBits, 64>, 8> gBoxBits;

/// A salt character, by its code as a signed byte, as the number whose low 6 bits exchange bits of
/// the expansion. The alphabet "./0-9A-Za-z" counts from 0; any other character goes on in its row
/// of codes, below 0 too.
constexpr int saltValue(int code)
{
    if (code > 'Z')
        code -= 'a' - 'Z' - 1;
    if (code > '9')
        code -= 'A' - '9' - 1;
    return code - '.';
}

/// Two characters and a zero. Reseeds the generator of this thread.
inline std::array<char, 3> newSalt(unsigned int seed)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED // no other generator gives these numbers for a seed
        qsrand(seed);
    const int random = qrand();
    QT_WARNING_POP
    const char *const characters = Crypt::m_encryptionSaltCharacters;
    return {characters[random & 63], characters[(random >> 6) & 63], '\0'};
}

} // namespace vogen
