#include "RuleNotes.h"

#include <QRegularExpression>

using vogen::Expression;
using vogen::ExpressionHandle;

namespace {

struct CallNote
{
    const char *call; ///< a regular expression for the SQL text
    const char *note;
};

constexpr CallNote gCallNotes[] = {
    {" LIKE ",
     "LIKE in memory: case counts, % stands for points only, and characters such as * keep their "
     "meaning in regular expressions; in SQLite % stands for any text, and the case of a to z does "
     "not count"},
    {" REGEXP ",
     "REGEXP in memory matches the whole text, by QRegExp; in SQLite a part is enough, by "
     "QRegularExpression"},
    {"\\bnullif\\(", "nullif in memory is its first value if both are equal, else NULL; in SQLite "
                     "it is NULL if both are equal, else its first value"},
    {"\\bm(ax|in)\\(", "max in memory is the value that compares smallest and min the one that "
                       "compares greatest; in SQLite it is the other way round"},
};

QString reasonOf(const char *operation)
{
    return QStringLiteral("%1 has other rules in SQLite, as the notes tell")
        .arg(QLatin1String(operation));
}

QString lowerAscii(QString text)
{
    for (QChar &character : text) {
        if (character >= QLatin1Char('A') && character <= QLatin1Char('Z'))
            character = character.toLower();
    }
    return text;
}

// The pattern as SQLite reads it without an escape, for a text in lower case.
QRegularExpression sqliteLike(const QString &pattern)
{
    QString expression = QRegularExpression::escape(lowerAscii(pattern));
    expression.replace(QLatin1String("\\%"), QLatin1String(".*"));
    expression.replace(QLatin1Char('_'), QLatin1Char('.'));
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

TextRule likeRule(const QString &pattern)
{
    return {reasonOf("LIKE"), [expression = sqliteLike(pattern)](const QString &text) {
                return expression.match(lowerAscii(text)).hasMatch();
            }};
}

TextRule regexpRule(const QString &pattern)
{
    return {reasonOf("REGEXP"), [expression = QRegularExpression(pattern)](const QString &text) {
                return expression.match(text).hasMatch();
            }};
}

QStringList notesOnCalls(const ExpressionHandle &filter)
{
    static const QRegularExpression literal(QStringLiteral("'[^']*'"));
    const QString calls = filter->toString(Expression::PrintSql).remove(literal);
    QStringList notes;
    for (const CallNote &known : gCallNotes) {
        if (calls.contains(QRegularExpression(QLatin1String(known.call))))
            notes.append(QLatin1String(known.note));
    }
    return notes;
}
