#include "Follow.h"

#include "Console.h"
#include "EntryReader.h"
#include "Failure.h"
#include "FileName.h"
#include "InputFile.h"
#include "Interruption.h"
#include "Output.h"

#include <QFile>

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

namespace {

constexpr int gPauseMilliseconds = 200;

// Only in a regular file can be read anew what has become whole meanwhile.
QByteArray pathOf(const QString &name)
{
    QByteArray path = QFile::encodeName(absoluteName(name));
    struct stat status = {};
    if (::stat(path.constData(), &status) == 0 && !S_ISREG(status.st_mode))
        throw Failure(QStringLiteral("cannot follow '%1': it is not a regular file").arg(name));
    return path;
}

/// A file that grows, under a name that may come to lead to another one.
class GrowingFile
{
public:
    enum State { Same, Shorter, Replaced, Gone };

    GrowingFile(const QString &name, EntryReader &reader)
        : m_path(pathOf(name))
        , m_input(name)
        , m_file(m_input.device())
        , m_reader(reader)
    {
        m_file.setLive(true);
        m_reader.begin(name);
    }

    State state() const
    {
        struct stat named = {};
        struct stat open = {};
        if (::stat(m_path.constData(), &named) != 0)
            return Gone;
        if (::fstat(m_input.descriptor(), &open) != 0 || named.st_ino != open.st_ino ||
            named.st_dev != open.st_dev)
            return Replaced;
        return open.st_size < m_file.position() ? Shorter : Same;
    }

    void read()
    {
        m_reader.read(m_file);
        m_input.checkEnd();
    }
    /// @param isOver whether nobody goes on writing it
    ExitCode end(bool isOver)
    {
        if (isOver) {
            m_file.setLive(false);
            read();
        }
        return m_reader.end(m_file);
    }

private:
    QByteArray m_path;
    InputFile m_input;
    vo::VolFile m_file;
    EntryReader &m_reader;
};

// False for a reader of the output that has gone. A signal ends it early.
bool sleepAWhile()
{
    pollfd output = {STDOUT_FILENO, 0, 0};
    return ::poll(&output, 1, gPauseMilliseconds) <= 0;
}

/// Opens the file that a name has come to lead to.
class Successor
{
public:
    /// Null if there is none yet. A reason that stays the same is told once.
    std::unique_ptr<GrowingFile> open(const QString &name, EntryReader &reader)
    {
        try {
            auto file = std::make_unique<GrowingFile>(name, reader);
            m_told.clear();
            return file;
        } catch (const Failure &failure) {
            if (failure.message() != m_told)
                warn(failure.message());
            m_told = failure.message();
            return nullptr;
        }
    }

private:
    QString m_told;
};

} // namespace

ExitCode follow(const QString &name, EntryReader &reader, Output &output)
{
    const Interruption interruption;
    ExitCode worst = Intact;
    Successor successor;
    auto file = std::make_unique<GrowingFile>(name, reader);
    bool isRead = true;
    while (!reader.isDone() && isRead) {
        if (!file)
            file = successor.open(name, reader);
        if (file) {
            // Before it is read, or what is written last is lost.
            const GrowingFile::State state = file->state();
            if (state != GrowingFile::Shorter)
                file->read();
            if (state == GrowingFile::Shorter || state == GrowingFile::Replaced) {
                worst = std::max(worst, file->end(state == GrowingFile::Replaced));
                file.reset();
                continue;
            }
        }
        output.flush();
        isRead = sleepAWhile();
    }
    if (file)
        worst = std::max(worst, file->end(false));
    reader.finish();
    return worst;
}
