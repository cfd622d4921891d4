#pragma once

#include "VolTag_p.h"
#include "VolWindow_p.h"

#include <VokitExtras/VolEntry>
#include <VokitExtras/VolGap>
#include <VokitExtras/VolHeader>

#include <array>
#include <string_view>

namespace vo {

/// Goes through a log file piece by piece. VolFile makes tokens of them.
class VolScanner
{
public:
    enum Piece {
        Entry, ///< entry() is new
        Root,  ///< the root's start or end tag, or the declaration: as it should be
        Junk,  ///< junk() is new
        End    ///< the end of the device, or that of what is whole in a file being written
    };

    explicit VolScanner(QIODevice *device);

    Piece next(bool isLive);

    const VolEntry &entry() const { return m_entry; }
    const VolHeader &header() const { return m_header; }
    const VolGap &junk() const { return m_junk; }
    /// Whether the root's end tag was read, and nothing but white space behind it.
    bool isClosed() const { return m_isClosed; }
    qint64 position() const { return m_window.position(); }

private:
    bool reach(std::size_t size);
    std::string_view ahead() const;
    std::string_view front(int size) const;
    bool skipByteOrderMark();
    void skipWhite();
    Piece readMarkup();
    VolTag::Verdict readTag(std::string_view name);
    Piece readEntry();
    int sizeWithEndTag();
    Piece tellOddName(int size);
    Piece readRoot();
    Piece takeRoot(int size);
    Piece readRootEnd();
    Piece readDeclaration();
    bool hasBrackets();
    Piece skipHidden(std::size_t index);
    Piece breakOff();
    Piece refuse(VolGap::Kind kind, int size);
    Piece refuseToNextTag(VolGap::Kind kind);
    VolGap gapAhead(VolGap::Kind kind, int offset, int length);

    VolWindow m_window;
    VolTag m_tag;
    VolEntry m_entry;
    VolHeader m_header;
    VolGap m_junk;
    VolGap m_rootEnd;
    std::array<qint64, 3> m_noEndBefore; ///< for each markup that may hide entries
    qint64 m_textStart = 0;
    qint64 m_toldName = -1; ///< position of an entry whose odd name was told of
    bool m_isLive = false;
    bool m_isIntact = true;
    bool m_hasRoot = false;
    bool m_isClosed = false;
};

} // namespace vo
