#include "RecoverTargets.h"

#include "Console.h"
#include "Failure.h"
#include "FileName.h"
#include "InputFile.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>

#include <cstdio>

namespace {

[[noreturn]] void refuse(const QString &name, const char *reason)
{
    throw Failure(QStringLiteral("cannot write '%1': %2").arg(name, QLatin1String(reason)));
}

// A link that leads nowhere counts. What is no file is WholeFile's to refuse.
bool isReplaceable(const QString &name)
{
    const QByteArray path = QFile::encodeName(name);
    struct stat status;
    return ::stat(path.constData(), &status) == 0 ? S_ISREG(status.st_mode)
                                                  : ::lstat(path.constData(), &status) == 0;
}

// Where a file that need not be there yet is, whatever links lead to its folder.
QString placeOf(const QString &name)
{
    const QFileInfo file(absoluteName(name));
    return file.exists() ? file.canonicalFilePath()
                         : QDir(file.path()).canonicalPath() + QLatin1Char('/') + file.fileName();
}

std::unique_ptr<WholeFile> makeFile(const QString &name, bool force, const InputFile &input)
{
    if (input.isSameAs(name))
        refuse(name, "it is the file that is to be recovered");
    if (!force && isReplaceable(name))
        refuse(name, "it is there already; --force replaces it");
    auto file = std::make_unique<WholeFile>("write", name);
    file->limitPermissions(input.permissions()); // who may not read the log may not read this
    return file;
}

} // namespace

RecoverTargets::RecoverTargets(const RecoverOptions &options, const InputFile &input)
{
    if (!options.report.isEmpty() && !options.isToStandardOutput() &&
        placeOf(options.report) == placeOf(options.output))
        refuse(options.report, "the entries go there");
    if (!options.isToStandardOutput())
        m_document = makeFile(options.output, options.force, input);
    if (!options.report.isEmpty())
        m_report = makeFile(options.report, options.force, input);
}

void RecoverTargets::writeDocument(const QByteArray &bytes)
{
    if (m_document) {
        m_document->write(bytes);
        return;
    }
    writeOutput(bytes);
    // Elsewhere that is no failure. Here a part of the document is no document.
    if (std::ferror(stdout) != 0)
        throw Failure(QStringLiteral("cannot write the output: its reader has gone away"));
}

void RecoverTargets::commit()
{
    // What may still fail for want of room comes first.
    if (m_document)
        m_document->flush();
    if (m_report)
        m_report->flush();
    if (m_document)
        m_document->commit();
    if (m_report)
        m_report->commit();
}
