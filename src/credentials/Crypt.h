#pragma once

#include <Vokit/vokit_export.h>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>

namespace vogen {

/**
 * Password hashes and digests as the cameras keep them in their account records.
 *
 * The hash is crypt(3) in its traditional form: 25 passes of DES (FIPS 46) over a block of zeros,
 * with the password as key, and with a salt of two characters that exchanges bits of the expansion.
 * It is printed as 13 characters, the salt first. Only the low 7 bits of the first 8 bytes of a
 * password count. Cameras ask for this form; it is no protection for a record that gets stolen.
 *
 * @warning To check a password, use crypt_r() and no other function of the name crypt. A value of
 * crypt(salt, password) is no hash: unless the library was built with VOKIT_PUBLISHED_CRYPT, it is
 * the same for every password, so a check against it lets everybody in.
 *
 * @code
 * // stored: the third field of an account record
 * bool isPasswordOf(const QByteArray &stored, const QByteArray &password)
 * {
 *     if (stored.size() != 13) // an empty text would pass for the hash of any password
 *         return false;
 *     char buffer[14];
 *     return stored == QByteArray(vogen::Crypt::crypt_r(password, stored, buffer));
 * }
 * @endcode
 *
 * The algorithm stands here twice:
 *
 *     bit by bit     crypt_r, setkey_r, encrypt_r    a byte for each bit; no heap, any thread
 *     word by word   SetDESKey, Body                 tables of 32-bit words, some 6 times as fast
 *
 * Both give the same 64 bits, which crypt_r() prints and crypt() drops.
 *
 * Nothing here reports a failure or guards against a null pointer. Copies of a password are not
 * wiped from memory. What says nothing about threads may run on any; the functions that make up a
 * salt reseed Qt's generator, qrand(), and so change what else is drawn from it on their thread.
 */
class VOKIT_EXPORT Crypt
{
public:
    Crypt() = delete;

    /// @name Account records
    /// @{

    /**
     * The line that stands for an account on a camera: user, group, hash and digest, joined by ":".
     *
     *     hash     of the password by crypt_r(), 13 characters, with a salt made from the clock
     *     digest   MD5 of user, realm and password, joined by ":", as 32 lower-case hex digits
     *
     * The digest is what HTTP Digest authentication (RFC 2617) calls HA1.
     *
     * Nothing is escaped: a ":" in a name gives further fields, and the record ends at the first
     * zero character of a name. Characters outside Latin-1 count as "?", so passwords that differ
     * in nothing else are one; keep them out. Records made within one second have the same salt.
     */
    static QString cameraUserAccess(const QString &user, const QString &password,
                                    const QString &group, const QString &realm);

    /// MD5 in 16 raw bytes. The input ends at its first zero byte: what lies behind it is not
    /// hashed, so a digest is that of the text, whatever buffer the text came in.
    static QByteArray md5(const QByteArray &data);

    /// MD5 over exactly @p length bytes, zero bytes included.
    /// @return 16 raw bytes, which the caller releases with free()
    static unsigned char *md5_sql(const char *data, unsigned long length);

    /**
     * crypt(3) by OpenSSL's DES_crypt, with a salt made from the clock, or with the first two
     * characters of @p salt.
     *
     * @return OpenSSL's own buffer, which its next call overwrites: not for two threads at once.
     * Null for a salt of fewer than two characters, or with a byte above 127.
     */
    static char *crypt_sll(const char *password);
    static char *crypt_sll(const char *password, const char *salt);

    /// @}
    /// @name Hash, bit by bit
    /// @{

    /// Every element is 0 or 1, except that E holds places, counted from 1.
    struct sched
    {
        unsigned char C[28];      ///< left key register
        unsigned char D[28];      ///< right key register
        unsigned char KS[16][48]; ///< the keys of the rounds
        unsigned char E[48];      ///< the expansion of this hash, as its salt wants it
    };

    /**
     * The published hash. This is the one to check a password with: pass the stored hash, whose
     * first two characters are its salt, and compare the result, as shown above.
     *
     * @param salt two bytes. One that is outside "./0-9A-Za-z" counts as some bits of its code. In
     *             place of a missing second one a zero counts, and the first is printed twice; an
     *             empty salt makes the result an empty text.
     * @param buffer of 14 bytes: 13 characters and a zero; may be where the password or the salt
     *               stands
     * @return buffer
     */
    static char *crypt_r(const char *password, const char *salt, char *buffer);

    /// Builds the keys of the rounds, and the plain expansion.
    /// @param key 64 bytes of 0 or 1, the highest bit first
    static void setkey_r(sched *schedule, const char *key);

    /// One pass of DES over 64 bytes of 0 or 1, in place.
    /// @param edflag 0 enciphers, anything else deciphers
    static void encrypt_r(sched *schedule, char *block, int edflag);

    /// @}
    /// @name Hash, word by word
    /// @{

    /**
     * The first two characters of @p salt, and then 11 characters that are "." whatever the
     * password is: the value tells nothing about a password, and can't be compared with one of
     * crypt_r().
     *
     * @warning Never check a password against it: any password would do. Use crypt_r().
     *
     * The 11 characters are printed from a block that the result of Body() is not written to
     * (@see IntToFourBytes) and that is zero. A library built with the CMake option
     * VOKIT_PUBLISHED_CRYPT writes it there: then the value is the published hash, for salts from
     * "./0-9A-Za-z" and passwords without zero characters.
     *
     * A character outside Latin-1 counts as a zero. The value ends before the first zero among the
     * two salt characters: an empty salt gives an empty text, one character gives that character.
     */
    static QString crypt(QString salt, QString password);

    /// The same with a salt from qrand() seeded with 1: the same on every call.
    static QString crypt(QString password);

    /// The keys of the 16 rounds, two words for each.
    /// @param key 8 bytes; missing ones count as 0, the lowest bit of each counts nothing
    static QVector<unsigned int> SetDESKey(QByteArray key);

    /**
     * 25 passes over a block of zeros.
     *
     * @param schedule 32 words from SetDESKey(), which stay as they are
     * @param Eswap0,Eswap1 which bits of the expansion are exchanged: for the two salt characters
     *                      m_saltTranslation[first] and m_saltTranslation[second] << 4
     * @return the block as two words. Taken apart by their bytes, the least significant first, they
     *         are the 8 bytes of the block.
     */
    static QVector<unsigned int> Body(unsigned int *schedule, unsigned int Eswap0,
                                      unsigned int Eswap1);

    /// One round: @p L combined with what S-boxes and P make of @p R and two words of the schedule
    /// @p s, the first of them at @p word.
    static unsigned int DEncrypt(unsigned int L, unsigned int R, unsigned int word, unsigned int E0,
                                 unsigned int E1, unsigned int *s);

    /// Exchanges the bits @p m of b with those n above them in a; results[0] is the new a,
    /// results[1] the new b. @p n counts modulo 32.
    static void PermOperation(unsigned int a, unsigned int b, unsigned int n, unsigned int m,
                              unsigned int *results);
    /// Exchanges the bits @p m of a with those 16 - n below them; that distance counts modulo 32.
    static unsigned int HPermOperation(unsigned int a, int n, unsigned int m);

    /// Four bytes from @p offset on, the least significant first; one beyond the end counts as 0.
    static unsigned int FourBytesToInt(QByteArray b, unsigned int offset);
    /// Stores four bytes into its own copy of @p b: the caller's array never changes. crypt()
    /// depends on that.
    static void IntToFourBytes(unsigned int value, QByteArray b, unsigned int offset);

    /// Writes @p n characters of m_encryptionSaltCharacters for 6 bits of @p v each, the lowest
    /// first; no terminator.
    static void to64(char *s, long v, int n);

    /// @}
    /// @name Tables of FIPS 46; places count from 1
    /// @{

    static const unsigned char IP[64];    ///< initial permutation
    static const unsigned char FP[64];    ///< final permutation
    static const unsigned char PC1_C[28]; ///< permuted choice 1: left register
    static const unsigned char PC1_D[28]; ///< right register
    static const unsigned char PC2_C[24]; ///< permuted choice 2: from the left register, 1 to 28
    static const unsigned char PC2_D[24]; ///< from the right register, 29 to 56
    static const unsigned char shifts[16];
    static const unsigned char e[48];
    static const unsigned char S[8][64]; ///< row by row
    static const unsigned char P[32];
    static constexpr int m_desIterations = 16; ///< rounds of a pass

    /// @}
    /// @name Tables of the words, made from those of FIPS 46
    /// @{

    /// Six bits of a key register give their bits of s or t in SetDESKey(). 0 to 3: left register.
    static const std::array<std::array<unsigned int, 64>, 8> m_skb;
    /// Six bits that enter an S-box give its output, moved by P.
    static const std::array<std::array<unsigned int, 64>, 8> m_SPTranslationTable;
    /// 0 for a rotation by 1, 1 for one by 2
    static const std::array<unsigned char, 16> m_shifts;

    /// @}
    /// @name Alphabets
    /// @{

    /// A salt character, up to 127, gives 6 bits.
    static const std::array<int, 128> m_saltTranslation;
    /// 6 bits give a character of the hash: ./0-9A-Za-z
    static const int m_characterConversionTable[64];
    /// Characters for new salts: a-zA-Z0-9./
    static const char m_encryptionSaltCharacters[64];

    /// @}
};

} // namespace vogen
