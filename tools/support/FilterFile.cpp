#include "FilterFile.h"

#include "Failure.h"
#include "FileName.h"
#include "WholeFile.h"

#include <Vokit/FunctionExpression>

#include <QDataStream>
#include <QFile>
#include <QStringList>

using vogen::Expression;
using vogen::ExpressionHandle;
using vogen::FunctionExpression;

namespace {

// Trees are read and walked on the stack, as deep as the bytes say.
constexpr int gSizeLimit = 256 * 1024;
constexpr QDataStream::Version gVersion = QDataStream::Qt_5_15;

[[noreturn]] void refuseToSave(const QString &file, const QString &reason)
{
    throw Failure(QStringLiteral("cannot save filter '%1': %2").arg(file, reason));
}

[[noreturn]] void refuseToLoad(const QString &file, const QString &reason)
{
    throw Failure(QStringLiteral("cannot load filter '%1': %2").arg(file, reason));
}

// Qt tells on stderr of values that it can't read. The failure says so in its own words.
class QuietQt
{
public:
    QuietQt()
        : m_before(
              qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}))
    {}
    ~QuietQt() { qInstallMessageHandler(m_before); }
    QuietQt(const QuietQt &) = delete;
    QuietQt &operator=(const QuietQt &) = delete;

private:
    QtMessageHandler m_before;
};

QByteArray bytesOf(const ExpressionHandle &filter)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(gVersion);
    Expression::writeExpression(stream, filter);
    return bytes;
}

QByteArray readBytes(const QString &name)
{
    QFile file(absoluteName(name));
    if (!file.open(QIODevice::ReadOnly))
        refuseToLoad(name, file.errorString());
    QByteArray bytes = file.read(gSizeLimit + 1);
    if (file.error() != QFileDevice::NoError)
        refuseToLoad(name, file.errorString());
    if (bytes.isEmpty())
        refuseToLoad(name, QStringLiteral("it is empty"));
    if (bytes.size() > gSizeLimit)
        refuseToLoad(name, QStringLiteral("it has more than %1 bytes").arg(gSizeLimit));
    return bytes;
}

// Printing asks the registry for each function of the tree, and for a name that isn't registered
// leaves an entry that calls nothing.
QStringList unregisteredFunctions(const ExpressionHandle &filter)
{
    filter->toString(Expression::PrintReadable);
    QStringList names;
    const QStringList known = FunctionExpression::functionMap().keys();
    for (const QString &name : known) {
        if (!FunctionExpression::isRegistered(name))
            names.append(QLatin1Char('\'') + name + QLatin1Char('\''));
    }
    return names;
}

} // namespace

void saveFilter(const ExpressionHandle &filter, const QString &name)
{
    if (filter->isEmpty())
        refuseToSave(name, QStringLiteral("there is no condition"));
    const QByteArray bytes = bytesOf(filter);
    if (bytes.size() > gSizeLimit)
        refuseToSave(name, QStringLiteral("it takes more than %1 bytes").arg(gSizeLimit));
    WholeFile file("save filter", name);
    file.write(bytes);
    file.commit();
}

ExpressionHandle loadFilter(const QString &name)
{
    const QByteArray bytes = readBytes(name);
    const QuietQt quiet;
    QDataStream stream(bytes);
    stream.setVersion(gVersion);
    ExpressionHandle filter = Expression::readExpression(stream);
    if (stream.status() != QDataStream::Ok)
        refuseToLoad(name, QStringLiteral("it is no filter, or it ends too early"));
    if (filter->isEmpty())
        refuseToLoad(name, QStringLiteral("it is no filter"));
    // A list that holds an unknown class reads without an error.
    const QByteArray understood = bytesOf(filter);
    if (!bytes.startsWith(understood))
        refuseToLoad(name, QStringLiteral("it is damaged"));
    if (bytes != understood)
        refuseToLoad(name, QStringLiteral("something follows the filter"));

    const QStringList unregistered = unregisteredFunctions(filter);
    if (!unregistered.isEmpty()) {
        refuseToLoad(name, QStringLiteral("it calls what is no function here: %1")
                               .arg(unregistered.join(QLatin1String(", "))));
    }
    return filter;
}
