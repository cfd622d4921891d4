#pragma once

#include <VokitExtras/VolElement>

#include <string_view>

namespace vo {

/// Takes apart a start tag: "<" and a name that the caller has looked at, attributes, ">" or "/>".
class VolTag
{
public:
    enum Verdict {
        Whole,
        IllegalName,      ///< whole but for what XML doesn't allow in the names of attributes
        IllegalCharacter, ///< whole but for what XML doesn't allow anywhere
        Malformed,        ///< no tag, whatever follows
        Incomplete        ///< the bytes end before the tag does
    };

    /// @param nameSize that of "<" and the name
    Verdict read(const char *begin, const char *end, int nameSize);

    /// The bytes of a tag that has its end, or of what is whole so far.
    int size() const { return m_size; }
    /// Whether it ends in "/>".
    bool isEmptyElement() const { return m_isEmptyElement; }
    /// Whether an incomplete tag, or one that another tag interrupts, is whole as far as it goes.
    bool isWholeSoFar() const { return m_isWholeSoFar; }

    /// Gives what the tag says to an element.
    /// @param bytes those of the tag, and what else belongs to the element
    void moveTo(VolElement &element, std::string_view bytes, qint64 position);

    /// What XML takes for white space.
    static bool isWhite(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
    /// Whether XML allows the name, which has no prefix here.
    static bool isName(const char *begin, const char *end);
    /// What a value of a tag says.
    static QString text(const char *begin, const char *end);

private:
    Verdict readAttribute(const char *&at, const char *end);
    Verdict readValue(const char *&at, const char *end, char quote, bool &isPlain);
    bool hasNameTwice() const;

    const char *m_begin = nullptr;
    std::vector<VolElement::Attribute> m_attributes;
    int m_size = 0;
    bool m_isEmptyElement = false;
    bool m_isWholeSoFar = false;
    bool m_hasIllegalName = false;
    bool m_hasIllegalCharacter = false;
};

} // namespace vo
