#include "Options.h"

#include "Account.h"
#include "Failure.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

const char gDescription[] =
    R"(Prints the record of an account on a camera, or checks a password against one.

  camera-account --user NAME --group GROUP --realm REALM           prints a record
  camera-account --user NAME --realm REALM --check FILE            checks a password

The password is asked for on a terminal, where it doesn't show; else it is the first line of the
standard input, in UTF-8. It is never taken from the command line, which others can see.

A record is a line in Latin-1: user, group, hash, digest, with ":" between. The hash counts the first
8 characters of the password only, the digest all of it; a check wants both to fit. Either can be
guessed fast by whoever gets hold of a record, so keep FILE from others.

Exit codes:
  0  printed, or the password fits
  1  the password doesn't fit
  2  wrong use, or a file, a password or an output that can't be used)";

QString nameOf(const QCommandLineParser &parser, const QString &option)
{
    QString name = parser.value(option);
    if (name.isEmpty())
        throw Failure(QStringLiteral("--%1 is missing; --help tells more").arg(option));
    requireLatin1(name, QStringLiteral("the %1").arg(option));
    // The realm is in no field: it may have one.
    if (option != QLatin1String("realm") && name.contains(QLatin1Char(':')))
        throw Failure(QStringLiteral("the %1 has a ':', which ends a field").arg(option));
    return name;
}

} // namespace

Options parseOptions()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(gDescription));
    parser.addOptions({
        {"user", "The user's name.", "NAME"},
        {"group", "The user's group.", "GROUP"},
        {"realm", "The realm that the camera names when it asks for the password.", "REALM"},
        {"check", "Check the password against the user's record in this file.", "FILE"},
        {{"h", "help"}, "Print this help."},
        {{"v", "version"}, "Print the version."},
    });
    if (!parser.parse(QCoreApplication::arguments()))
        throw Failure(parser.errorText());

    Options options;
    if (parser.isSet("help"))
        options.answer = parser.helpText();
    else if (parser.isSet("version"))
        options.answer = QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(),
                                                       QCoreApplication::applicationVersion());
    if (!options.answer.isEmpty())
        return options;

    if (!parser.positionalArguments().isEmpty())
        throw Failure(QStringLiteral("only options are taken, and no password; --help tells more"));
    options.user = nameOf(parser, "user");
    options.realm = nameOf(parser, "realm");
    options.recordFile = parser.value("check");
    if (!parser.isSet("check"))
        options.group = nameOf(parser, "group");
    else if (options.recordFile.isEmpty())
        throw Failure(QStringLiteral("--check needs the name of a file"));
    else if (parser.isSet("group"))
        throw Failure(QStringLiteral("--group makes no sense with --check"));
    return options;
}
