#include "FolderWalk.h"

#include "Failure.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace {

constexpr int gMessageLimit = 10;

QString problemText(const char *what, const QByteArray &path, int error)
{
    const std::string reason = std::generic_category().message(error);
    return QStringLiteral("cannot read %1 '%2': %3")
        .arg(QLatin1String(what), QString::fromUtf8(path), QString::fromStdString(reason));
}

// Null with errno set if the folder can't be opened.
DIR *openFolder(const QByteArray &path, int extraFlags)
{
    const int descriptor =
        ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | extraFlags);
    if (descriptor < 0)
        return nullptr;
    DIR *directory = ::fdopendir(descriptor);
    if (!directory) {
        const int error = errno;
        ::close(descriptor);
        errno = error;
    }
    return directory;
}

bool isDotOrDotDot(const char *name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

} // namespace

void SkippedEntries::add(const QString &message)
{
    ++count;
    if (messages.size() < gMessageLimit)
        messages.append(message);
}

FolderWalk::FolderWalk(const QByteArray &folder, Detail detail)
    : m_root(folder)
    , m_detail(detail)
    , m_directory(openFolder(folder, 0))
{
    if (!m_directory)
        throw Failure(problemText("folder", folder, errno));
}

bool FolderWalk::next(WalkEntry &entry)
{
    while (m_directory || openNextFolder()) {
        const dirent *found = readName();
        if (!found) {
            m_directory.reset();
            continue;
        }
        entry.path = m_prefix + found->d_name;
        if (!readStatus(*found, entry))
            continue;
        if (!S_ISDIR(entry.status.st_mode))
            return true;
        m_pending.push_back(entry.path);
    }
    return false;
}

bool FolderWalk::openNextFolder()
{
    while (!m_pending.empty()) {
        const QByteArray path = m_pending.back();
        m_pending.pop_back();
        // By now the folder may have become a link, which is not to be followed.
        m_directory.reset(openFolder(m_root + '/' + path, O_NOFOLLOW));
        if (m_directory) {
            m_prefix = path + '/';
            return true;
        }
        skip("folder", path, errno);
    }
    return false;
}

// The next name of the open folder; null at its end, and where reading it fails.
const dirent *FolderWalk::readName()
{
    const dirent *found = nullptr;
    do {
        errno = 0;
        found = ::readdir(m_directory.get());
    } while (found && isDotOrDotDot(found->d_name));
    if (!found && errno != 0)
        skip("folder", m_prefix.isEmpty() ? QByteArray(".") : m_prefix, errno);
    return found;
}

bool FolderWalk::readStatus(const dirent &found, WalkEntry &entry)
{
    if (m_detail == Detail::Type && found.d_type != DT_UNKNOWN) {
        entry.status.st_mode = DTTOIF(found.d_type);
        return true;
    }
    if (::fstatat(::dirfd(m_directory.get()), found.d_name, &entry.status, AT_SYMLINK_NOFOLLOW) ==
        0)
        return true;
    skip("file", entry.path, errno);
    return false;
}

void FolderWalk::skip(const char *what, const QByteArray &path, int error)
{
    m_skipped.add(problemText(what, path, error));
}

qlonglong countEntries(const QByteArray &folder)
{
    FolderWalk walk(folder, FolderWalk::Detail::Type);
    qlonglong count = 0;
    for (WalkEntry entry; walk.next(entry);)
        ++count;
    return count;
}
