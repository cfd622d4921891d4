#include <Vokit/FunctionExpression>

#include <Vokit/TypeTool>

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace vogen {

namespace {

// A missing argument, as a tree from a damaged stream may have it, reads as NULL.
QString text(const QList<QVariant> &values, int index = 0)
{
    return values.value(index).toString();
}

// The value that no other one outdoes, the earlier one on a tie or where they can't be compared.
template <typename Outdone>
QVariant chosen(const QList<QVariant> &values, Outdone outdone)
{
    TypeTool tool(false, false);
    QVariant current = values.value(0);
    for (int i = 1; i < values.size(); ++i) {
        if (outdone(tool.compare(current, values.at(i))))
            current = values.at(i);
    }
    return current;
}

} // namespace

QVariant FunctionExpression::currentDate(const QList<QVariant> & /*values*/)
{
    return QDateTime::currentDateTime().date();
}

QVariant FunctionExpression::currentTime(const QList<QVariant> & /*values*/)
{
    return QDateTime::currentDateTime().time();
}

QVariant FunctionExpression::currentDateTime(const QList<QVariant> & /*values*/)
{
    return QDateTime::currentDateTime();
}

QVariant FunctionExpression::abs(const QList<QVariant> &values)
{
    TypeTool tool(false, false);
    const QVariant value = values.value(0);
    const QVariant zero(0);
    return tool.compare(value, zero) < 0 ? tool.do_subtract(zero, value) : value;
}

// min keeps the value that compares greatest, and max the smallest: stored filters depend on it.
QVariant FunctionExpression::min(const QList<QVariant> &values)
{
    return chosen(values, [](int order) { return order < 0; });
}

QVariant FunctionExpression::max(const QList<QVariant> &values)
{
    return chosen(values, [](int order) { return order > 0; });
}

QVariant FunctionExpression::count(const QList<QVariant> &values)
{
    return values.size();
}

QVariant FunctionExpression::group_concat(const QList<QVariant> &values)
{
    const QLatin1Char comma(',');
    QString result;
    for (const QVariant &value : values) {
        if (!result.endsWith(comma))
            result += comma;
        result += value.toString();
    }
    return result;
}

QVariant FunctionExpression::coalesce(const QList<QVariant> &values)
{
    for (const QVariant &value : values) {
        if (!value.isNull())
            return value;
    }
    return {};
}

QVariant FunctionExpression::ifnull(const QList<QVariant> &values)
{
    return coalesce(values);
}

// The first value when both are equal: stored filters depend on this sense.
QVariant FunctionExpression::nullif(const QList<QVariant> &values)
{
    const QVariant first = values.value(0);
    return TypeTool(false, false).equals(first, values.value(1)) ? first : QVariant();
}

QVariant FunctionExpression::hex(const QList<QVariant> &values)
{
    return QString::number(values.value(0).toULongLong(), 16);
}

QVariant FunctionExpression::round(const QList<QVariant> &values)
{
    return std::floor(values.value(0).toDouble() + 0.5);
}

QVariant FunctionExpression::random(const QList<QVariant> & /*values*/)
{
    return std::rand();
}

QVariant FunctionExpression::length(const QList<QVariant> &values)
{
    return text(values).length();
}

QVariant FunctionExpression::lower(const QList<QVariant> &values)
{
    return text(values).toLower();
}

QVariant FunctionExpression::upper(const QList<QVariant> &values)
{
    return text(values).toUpper();
}

QVariant FunctionExpression::quote(const QList<QVariant> &values)
{
    return QStringLiteral("%1").arg(text(values));
}

QVariant FunctionExpression::trim(const QList<QVariant> &values)
{
    return text(values).trimmed();
}

namespace {

QString translatedPattern(QString pattern, const QString &escape)
{
    const QLatin1String backslash("\\");
    if (!escape.isEmpty()) {
        pattern.replace(backslash, QLatin1String("\\\\"));
        pattern.replace(escape, backslash);
    }
    pattern.replace(QLatin1String("."), QLatin1String("\\."));
    pattern.replace(QLatin1String("%"), QLatin1String("\\%"));
    pattern.replace(QLatin1String("_"), QLatin1String("."));
    // Meets the "%" marked above as well: in memory it matches points, and filters depend on it.
    pattern.replace(QLatin1String("%"), QLatin1String(".*"));
    return pattern;
}

// Qt adds up the digits of a reference to a group without bounds, as in "\99999999999", and may
// then read memory that isn't its own. One that is merely too high makes the pattern invalid.
QRegExp withBoundedReferences(QRegExp expression)
{
    const QRegExp::PatternSyntax syntax = expression.patternSyntax();
    QString pattern = expression.pattern();
    const auto isReference = [](QChar c, QChar next) {
        return c == QLatin1Char('\\') && next.unicode() >= '1' && next.unicode() <= '9';
    };
    if (std::adjacent_find(pattern.cbegin(), pattern.cend(), isReference) != pattern.cend() &&
        (syntax == QRegExp::RegExp || syntax == QRegExp::RegExp2 ||
         syntax == QRegExp::W3CXmlSchema11)) {
        static const QRegularExpression sLong(
            QStringLiteral(R"((?<!\\)(?:\\\\)*\\\K[1-9][0-9]{4,})"));
        expression.setPattern(pattern.replace(sLong, QStringLiteral("9999")));
    }
    return expression;
}

// Matches with a new expression, and keeps it under the key.
bool matchAndKeep(QCache<QString, QRegExp> &cache, const QString &key, const QString &pattern,
                  const QString &subject)
{
    auto made = std::make_unique<QRegExp>(
        withBoundedReferences(QRegExp(pattern, Qt::CaseSensitive, QRegExp::RegExp)));
    const bool matches = made->exactMatch(subject);
    cache.insert(key, made.release());
    return matches;
}

} // namespace

bool FunctionExpression::matchesLike(const QString &subject, const QString &pattern,
                                     const QString &escape)
{
    // The entry that was found last is the cache's newest until something else is looked up.
    static QString lastPattern;
    static QString lastEscape;
    static const QRegExp *last = nullptr;
    if (last && pattern == lastPattern && escape == lastEscape)
        return last->exactMatch(subject);

    const QString suffix = QLatin1Char('/') + escape;
    // Looked up as written and filed as translated: only a pattern that is its own translation is
    // found again, and one that looks like another's translation finds that one.
    last = gLikeCache.object(pattern + suffix);
    if (last) {
        lastPattern = pattern;
        lastEscape = escape;
        return last->exactMatch(subject);
    }
    const QString translated = translatedPattern(pattern, escape);
    return matchAndKeep(gLikeCache, translated + suffix, translated, subject);
}

bool FunctionExpression::matchesRegExp(const QString &subject, const QString &pattern)
{
    if (const QRegExp *known = gRegExpCache.object(pattern))
        return QRegExp(*known).exactMatch(subject);
    return matchAndKeep(gRegExpCache, pattern, pattern, subject);
}

QVariant FunctionExpression::like(const QList<QVariant> &values)
{
    return matchesLike(text(values), text(values, 1), text(values, 2));
}

QVariant FunctionExpression::regexp(const QList<QVariant> &values)
{
    const QVariant pattern = values.value(1);
    if (pattern.canConvert(QVariant::RegExp))
        return withBoundedReferences(pattern.toRegExp()).exactMatch(text(values));
    return matchesRegExp(text(values), pattern.toString());
}

bool FunctionExpression::callWithTexts(Function function, const QString *const *texts, int count,
                                       QVariant *result)
{
    if (function == &like && count >= 2)
        *result = matchesLike(*texts[0], *texts[1], count > 2 ? *texts[2] : QString());
    else if (function == &regexp && count == 2)
        *result = matchesRegExp(*texts[0], *texts[1]);
    else if (function == &lower && count == 1)
        *result = texts[0]->toLower();
    else if (function == &upper && count == 1)
        *result = texts[0]->toUpper();
    else if (function == &trim && count == 1)
        *result = texts[0]->trimmed();
    else if (function == &length && count == 1)
        *result = texts[0]->length();
    else
        return false;
    return true;
}

} // namespace vogen
