#include "Recordings.h"
#include "Report.h"

#include <QRegExp>

#include <algorithm>

using namespace vogen;

namespace {

// The text of the camera of each row against a pattern, by the library's function and by one
// QRegExp with what the pattern means.

struct Pattern
{
    const char *workload;
    ExpressionHandle function;
    QRegExp meaning;
};

struct Texts
{
    explicit Texts(int count)
    {
        for (const Recording &row : recordings(count))
            texts.push_back(row.camera);
        for (const QString &text : texts) {
            sets.emplace_back();
            add<StringProperty>(sets.back(), name, own(text));
        }
    }

    int count() const { return static_cast<int>(texts.size()); }

    QString name = Columns().camera;
    std::vector<QString> texts;
    std::vector<PropertySet> sets; // of one property each
};

// On the library's properties, as a client reads them.
int countInSets(const Texts &texts, const QRegExp &pattern)
{
    const auto matches = [&](const PropertySet &set) {
        return pattern.exactMatch(StringProperty::getValue(set[texts.name], QString()));
    };
    return static_cast<int>(std::count_if(texts.sets.begin(), texts.sets.end(), matches));
}

int countInTexts(const Texts &texts, const QRegExp &pattern)
{
    const auto matches = [&](const QString &text) { return pattern.exactMatch(text); };
    return static_cast<int>(std::count_if(texts.texts.begin(), texts.texts.end(), matches));
}

void registerPattern(const Texts &texts, const Pattern &pattern)
{
    const QRegExp &meaning = pattern.meaning;
    registerCounts(
        pattern.workload, texts.count(),
        {{"qregexp", [&texts, &meaning] { return countInSets(texts, meaning); }},
         {"qregexp_text", [&texts, &meaning] { return countInTexts(texts, meaning); }},
         {"library", [&texts, &pattern] { return countMatches(texts.sets, pattern.function); }}});
}

QString inText(const char *pattern)
{
    return QLatin1String(pattern);
}

} // namespace

int main(int argc, char **argv)
{
    const StringProperty camera(Columns().camera);
    const QString noEscape;
    const Pattern patterns[] = {
        // As written it is its own translation, so the library keeps the expression it made.
        {"like", like(+camera, inText("Camera 03"), noEscape), QRegExp(inText("Camera 03"))},
        // Translated to "Camera.03": the library makes the expression anew for each text.
        {"like_changed", like(+camera, inText("Camera_03"), noEscape),
         QRegExp(inText("Camera.03"))},
        {"regexp", regexp(+camera, inText("Cam.*[12]3")), QRegExp(inText("Cam.*[12]3"))},
    };
    const Texts texts(100000);
    for (const Pattern &pattern : patterns)
        registerPattern(texts, pattern);
    return runBenchmarks(argc, argv);
}
