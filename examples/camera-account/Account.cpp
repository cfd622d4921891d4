#include "Account.h"

#include "Failure.h"

#include <Vokit/Crypt>

#include <QFile>
#include <QList>

#include <algorithm>

using vogen::Crypt;

namespace {

enum Field { User, Group, Hash, Digest, FieldCount };

constexpr int gHashLength = 13;
constexpr int gDigestLength = 32;

QList<QByteArray> recordsOf(const QString &user, QFile &file)
{
    const QByteArray start = user.toLatin1() + ':';
    QList<QByteArray> records;
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        if (line.endsWith('\n'))
            line.chop(1);
        if (line.startsWith(start))
            records.append(line);
    }
    return records;
}

// A hash that is cut short must not be compared: crypt_r() makes an empty text of an empty salt.
bool isWhole(const QByteArray &record)
{
    const QList<QByteArray> fields = record.split(':');
    return fields.size() == FieldCount && fields.at(Hash).size() == gHashLength &&
           fields.at(Digest).size() == gDigestLength && !record.contains('\0');
}

} // namespace

void requireLatin1(const QString &text, const QString &what)
{
    const auto isOutside = [](QChar character) { return character.unicode() > 0xff; };
    if (std::any_of(text.begin(), text.end(), isOutside)) {
        throw Failure(QStringLiteral("%1 has characters outside Latin-1, which cameras don't know")
                          .arg(what));
    }
    const auto isControl = [](QChar character) {
        return character.category() == QChar::Other_Control;
    };
    if (std::any_of(text.begin(), text.end(), isControl))
        throw Failure(QStringLiteral("%1 has control characters").arg(what));
}

QByteArray readRecord(const QString &file, const QString &user)
{
    QFile reader(file);
    if (!reader.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("cannot read '%1': %2").arg(file, reader.errorString()));
    const QList<QByteArray> records = recordsOf(user, reader);
    if (reader.error() != QFileDevice::NoError)
        throw Failure(QStringLiteral("cannot read '%1': %2").arg(file, reader.errorString()));
    if (records.size() != 1) {
        throw Failure(QStringLiteral("'%1' has %2 records of '%3', and not one")
                          .arg(file)
                          .arg(records.size())
                          .arg(user));
    }
    if (!isWhole(records.first()))
        throw Failure(QStringLiteral("the record of '%1' in '%2' is damaged").arg(user, file));
    return records.first();
}

bool fits(const QByteArray &record, const QString &password, const QString &realm)
{
    const QList<QByteArray> fields = record.split(':');
    const QByteArray bytes = password.toLatin1();
    char buffer[gHashLength + 1];
    const QByteArray hash = Crypt::crypt_r(bytes.constData(), fields.at(Hash).constData(), buffer);
    const QByteArray digest =
        Crypt::md5(fields.at(User) + ':' + realm.toLatin1() + ':' + bytes).toHex();
    return hash == fields.at(Hash) && digest == fields.at(Digest);
}
