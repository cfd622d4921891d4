#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <dirent.h>
#include <sys/stat.h>

#include <memory>
#include <vector>

/// Something below a folder that is not a folder itself.
struct WalkEntry
{
    QByteArray path; ///< below the folder, in the bytes of the file system
    struct stat status;
};

/// The entries that could not be read: all counted, the first few told.
struct SkippedEntries
{
    qlonglong count = 0;
    QStringList messages;

    void add(const QString &message);
};

/**
 * Goes through a folder and all folders below it, one entry at a time.
 *
 * Works on bytes, since a file's name need not be text. Symbolic links are entries and are never
 * followed, so there are no loops. Whatever vanishes or can't be read while the walk goes on is
 * skipped and counted. One folder is open at a time; apart from it, the walk holds the paths of
 * folders that it has seen and not yet opened.
 */
class FolderWalk
{
public:
    enum class Detail {
        Type,  ///< fast: WalkEntry::status is not to be used
        Status ///< each entry's lstat()
    };

    /// @throws Failure if the folder itself can't be read
    FolderWalk(const QByteArray &folder, Detail detail);

    /// Moves to the next entry; false at the end.
    bool next(WalkEntry &entry);

    const SkippedEntries &skipped() const { return m_skipped; }

private:
    struct Closer
    {
        void operator()(DIR *directory) const { ::closedir(directory); }
    };

    bool openNextFolder();
    const dirent *readName();
    bool readStatus(const dirent &found, WalkEntry &entry);
    void skip(const char *what, const QByteArray &path, int error);

    QByteArray m_root;
    Detail m_detail;
    std::unique_ptr<DIR, Closer> m_directory;
    QByteArray m_prefix; ///< of the entries of m_directory: empty, or a path and "/"
    std::vector<QByteArray> m_pending;
    SkippedEntries m_skipped;
};

/// How many entries a walk would give; for the scale of a progress bar.
qlonglong countEntries(const QByteArray &folder);
