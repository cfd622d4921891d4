#include "Recordings.h"
#include "Report.h"

#include <QTextStream>

using namespace vogen;

namespace {

/// What a caller needs to run the filter in a database.
struct Statement
{
    QString text;
    QVariantList values;

    bool operator==(const Statement &other) const
    {
        return text == other.text && values == other.values;
    }
};

const RecordingProperties gProperties;
const Columns gColumns;
const Wanted gWanted;

QVariantList wantedValues()
{
    QVariantList values;
    for (const QString &camera : gWanted.cameras)
        values.append(camera);
    values.append(gWanted.duration);
    values.append(gWanted.size);
    values.append(gWanted.type);
    return values;
}

Statement ofFilter(const Expression &filter)
{
    return {filter.toString(Expression::PrintSql | Expression::PrintPlaceholders),
            filter.collectPlaceholders()};
}

Statement byLibraryGiven()
{
    static const ExpressionHandle filter = buildFilter(gProperties, gWanted);
    return ofFilter(*filter.constData());
}

Statement byLibraryBuilt()
{
    const ExpressionHandle filter = buildFilter(gProperties, gWanted);
    return ofFilter(*filter.constData());
}

Statement byConcatenation()
{
    QString marks;
    for (int i = 0; i < gWanted.cameras.size(); ++i)
        marks += i == 0 ? "?" : ",?";
    const QString text = "(" + gColumns.camera + " IN (" + marks + ") AND " + gColumns.duration +
                         " >= ? AND " + gColumns.size + " > ?) OR (" + gColumns.type +
                         " = ? AND  NOT " + gColumns.archived + ")";
    return {text, wantedValues()};
}

Statement byTextStream()
{
    QString text;
    {
        QTextStream stream(&text);
        stream << '(' << gColumns.camera << " IN (";
        for (int i = 0; i < gWanted.cameras.size(); ++i)
            stream << (i == 0 ? "?" : ",?");
        stream << ") AND " << gColumns.duration << " >= ? AND " << gColumns.size << " > ?) OR ("
               << gColumns.type << " = ? AND  NOT " << gColumns.archived << ')';
    }
    return {text, wantedValues()};
}

// The limit: one allocation for the text.
Statement byReservedAppend()
{
    QString text;
    text.reserve(128);
    text.append(QLatin1Char('(')).append(gColumns.camera).append(QLatin1String(" IN ("));
    for (int i = 0; i < gWanted.cameras.size(); ++i)
        text.append(QLatin1String(i == 0 ? "?" : ",?"));
    text.append(QLatin1String(") AND ")).append(gColumns.duration);
    text.append(QLatin1String(" >= ? AND ")).append(gColumns.size);
    text.append(QLatin1String(" > ?) OR (")).append(gColumns.type);
    text.append(QLatin1String(" = ? AND  NOT ")).append(gColumns.archived);
    text.append(QLatin1Char(')'));
    return {text, wantedValues()};
}

} // namespace

int main(int argc, char **argv)
{
    using Print = Statement (*)();
    const std::pair<const char *, Print> contestants[] = {{"print/library_given", byLibraryGiven},
                                                          {"print/library_built", byLibraryBuilt},
                                                          {"print/concatenation", byConcatenation},
                                                          {"print/text_stream", byTextStream},
                                                          {"print/reserved", byReservedAppend}};
    const Statement expected{QStringLiteral("(camera IN (?,?,?) AND duration >= ? AND size > ?)"
                                            " OR (type = ? AND  NOT archived)"),
                             wantedValues()};
    for (const auto &[name, print] : contestants) {
        require(print() == expected, "print: contestants give different statements");
        benchmark::RegisterBenchmark(name, [print = print](benchmark::State &state) {
            for (auto _ : state) {
                Statement statement = print();
                benchmark::DoNotOptimize(statement);
            }
            reportTimePerItem(state, 1);
        });
    }
    return runBenchmarks(argc, argv);
}
