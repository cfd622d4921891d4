#pragma once

#include <Vokit/Crypt>

#include <QByteArray>

#include <random>

namespace test {

/// Passwords and salts, the same for the same seed on every machine.
class RandomPasswords
{
public:
    explicit RandomPasswords(quint32 seed)
        : m_random(seed)
    {}

    /// No zero byte, and so often longer than what counts.
    QByteArray password()
    {
        QByteArray result(number(20), '\0');
        for (char &character : result)
            character = static_cast<char>(1 + number(255));
        return result;
    }

    QByteArray key()
    {
        QByteArray result(8, '\0');
        for (char &byte : result)
            byte = static_cast<char>(number(256));
        return result;
    }

    /// Two characters of "./0-9A-Za-z".
    QByteArray salt()
    {
        QByteArray result(2, '\0');
        for (char &character : result)
            character = static_cast<char>(vogen::Crypt::m_characterConversionTable[number(64)]);
        return result;
    }

    int number(unsigned int bound) { return static_cast<int>(m_random() % bound); }

private:
    std::mt19937 m_random;
};

inline QByteArray hashOf(const QByteArray &password, const QByteArray &salt)
{
    char buffer[14];
    return vogen::Crypt::crypt_r(password.constData(), salt.constData(), buffer);
}

} // namespace test
