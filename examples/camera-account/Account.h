#pragma once

#include <QByteArray>
#include <QString>

/// @throws Failure, naming @p what, if the text has characters that a record can't keep: outside
///         Latin-1, where all would become one "?", or control characters
void requireLatin1(const QString &text, const QString &what);

/// The only record of the user in a file of records, one on each line.
/// @throws Failure if the file can't be read, has no such record or several, or a damaged one
QByteArray readRecord(const QString &file, const QString &user);

/// Whether hash and digest of a record are those of the password.
bool fits(const QByteArray &record, const QString &password, const QString &realm);
