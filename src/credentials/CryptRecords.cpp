#include "Crypt.h"

#include "CryptSteps_p.h"

#include <QCryptographicHash>

#include <openssl/des.h>
#include <openssl/md5.h>

#include <cstdlib>
#include <ctime>

namespace vogen {

namespace {

std::array<char, 3> saltOfTheSecond()
{
    return newSalt(static_cast<unsigned int>(std::time(nullptr)));
}

} // namespace

QString Crypt::cameraUserAccess(const QString &user, const QString &password, const QString &group,
                                const QString &realm)
{
    const QByteArray passwordBytes = password.toLatin1();
    char buffer[14];
    const char *const hash = crypt_r(passwordBytes.constData(), saltOfTheSecond().data(), buffer);
    const QByteArray digest = md5(user.toLatin1() + ':' + realm.toLatin1() + ':' + passwordBytes);
    const QByteArray record =
        user.toLatin1() + ':' + group.toLatin1() + ':' + hash + ':' + digest.toHex();
    return QString::fromLatin1(record.constData()); // up to the first zero
}

QByteArray Crypt::md5(const QByteArray &data)
{
    const auto length = qstrnlen(data.constData(), static_cast<uint>(data.size()));
    return QCryptographicHash::hash(data.left(static_cast<int>(length)), QCryptographicHash::Md5);
}

unsigned char *Crypt::md5_sql(const char *data, unsigned long length)
{
    auto *const digest = static_cast<unsigned char *>(std::malloc(MD5_DIGEST_LENGTH));
    MD5_CTX context;
    MD5_Init(&context);
    MD5_Update(&context, data, length);
    MD5_Final(digest, &context);
    return digest;
}

char *Crypt::crypt_sll(const char *password)
{
    return crypt_sll(password, saltOfTheSecond().data());
}

char *Crypt::crypt_sll(const char *password, const char *salt)
{
    return DES_crypt(password, salt);
}

} // namespace vogen
