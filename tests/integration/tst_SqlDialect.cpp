#include "DialectRows.h"

#include <Vokit/Comparator>
#include <Vokit/ExpressionList>
#include <Vokit/FunctionExpression>
#include <Vokit/NumericOperator>
#include <Vokit/UnaryOperator>

#include <QRegularExpression>
#include <QtEndian>
#include <QtTest>

#include <algorithm>

using namespace vogen;
using namespace test;

namespace {

const DialectRows &rows()
{
    static const DialectRows all = [] {
        DialectRows list;
        addValueRows(list);
        addOperatorRows(list);
        addFunctionRows(list);
        addAdviceRows(list);
        return list;
    }();
    return all;
}

QString listAsSql(const QVariantList &items);

// A value as SQL writes it; a list of one as its item, since a record of one column can't be told
// from a value. Types that SQL has no form for give their name.
QString asSql(const QVariant &value)
{
    const auto type = static_cast<QMetaType::Type>(value.type());
    if (!value.isValid())
        return "NULL";
    if (TypeTool::isDate(value.type()))
        return QString::number(TypeTool::dateMicroSeconds(value));
    if (TypeTool::isList(value.type()))
        return listAsSql(value.toList());
    switch (type) {
    case QMetaType::Bool:
        return value.toBool() ? "1" : "0";
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toString();
    case QMetaType::Float:
    case QMetaType::Double: {
        const QString digits = value.toString();
        return digits.contains(QRegularExpression("^-?\\d+$")) ? digits + ".0" : digits;
    }
    case QMetaType::QByteArray:
        return "x'" + value.toByteArray().toHex() + '\'';
    case QMetaType::QChar:
    case QMetaType::QString:
    case QMetaType::QUrl:
    case QMetaType::QUuid:
    case QMetaType::QRegExp:
        return '\'' + ConstExpression::stringValue(value).replace("'", "''") + '\'';
    default:
        return value.typeName();
    }
}

QString listAsSql(const QVariantList &items)
{
    if (items.size() == 1)
        return asSql(items.first());
    QStringList texts;
    for (const QVariant &item : items)
        texts.append(asSql(item));
    return '(' + texts.join(", ") + ')';
}

QString valuesInMemory(const DialectRow &row)
{
    QStringList values;
    for (const Clip &clip : clips()) {
        values.append(asSql(row.e->evaluate(propertiesOf(clip), nullptr)));
        if (row.place != Place::Clips)
            break;
    }
    return values.join("; ");
}

QString orderInMemory(const DialectRow &row)
{
    struct Term
    {
        QString id;
        QVariant value;
    };
    QVector<Term> terms;
    for (const int id : {0, 1, 2, 5})
        terms.append({QString::number(id), row.e->evaluate(propertiesOf(clips().at(id)), nullptr)});
    std::stable_sort(terms.begin(), terms.end(), [](const Term &a, const Term &b) {
        return TypeTool(false, false).compare(a.value, b.value) < 0;
    });
    QStringList ids;
    for (const Term &term : qAsConst(terms))
        ids.append(term.id);
    return ids.join("; ");
}

QString inMemory(const DialectRow &row)
{
    return row.place == Place::Order ? orderInMemory(row) : valuesInMemory(row);
}

QString inSqlite(const ClipTable &table, const DialectRow &row, Style style)
{
    struct Frame
    {
        const char *before;
        const char *after;
    };
    const Frame frames[] = {
        {"SELECT ", " FROM clips WHERE id = 0"},
        {"SELECT ", " FROM clips ORDER BY id"},
        {"SELECT id FROM clips WHERE id IN (0, 1, 2, 5) ORDER BY ", ", id"},
        {"SELECT ", " FROM clips WHERE id = 0"},
    };
    const Frame &frame = frames[static_cast<int>(row.place)];
    QList<QVariantList> records;
    const QString error = table.select(frame.before, row.e, style, frame.after, &records);
    if (!error.isEmpty())
        return "error: " + error;
    QStringList values;
    for (const QVariantList &record : qAsConst(records))
        values.append(listAsSql(record));
    return values.join("; ");
}

Style withPlace(Style style, const DialectRow &row)
{
    return row.place == Place::Order ? style | Expression::PrintOrderBy : style;
}

bool isAsWritten(const QString &value, const QString &expected)
{
    return expected.startsWith("error: ") ? value.startsWith(expected) : value == expected;
}

bool fitsText(const QString &text, const QString &expected)
{
    const QString digits = QRegularExpression::escape(expected).replace("\\#", "\\d+");
    return expected.contains('#') ? text.contains(QRegularExpression('^' + digits + '$'))
                                  : text == expected;
}

// On one line, as the document and the names of the tests have it.
QString onOneLine(QString text)
{
    return text.replace('\t', "\\t").replace('\n', "\\n").replace(QChar(0), "\\0");
}

/// What the document says of a row: its cells, up to the words of advice.
QString documentLine(const DialectRow &row)
{
    const QString sqlite = row.literals == row.bound
                               ? '`' + row.literals + '`'
                               : '`' + row.literals + "`, bound `" + row.bound + '`';
    return onOneLine("| `" + row.key + "` | `" + row.text + "` | `" + row.memory + "` | " + sqlite +
                     " | ");
}

/// The codes by which the trees of the rows name a class and, where it has one, its operation.
QSet<QPair<QByteArray, int>> operationsSeen(const QList<QByteArray> &classes)
{
    QSet<QPair<QByteArray, int>> seen;
    for (const DialectRow &row : rows()) {
        const QByteArray bytes = written(row.e);
        for (const QByteArray &name : classes) {
            const QByteArray key = name + '\0';
            for (int at = bytes.indexOf(key); at >= 0; at = bytes.indexOf(key, at + 1)) {
                // behind the key the version, then the code
                const int code = at + key.size() + 4;
                if (code + 4 <= bytes.size())
                    seen.insert({name, qFromBigEndian<qint32>(bytes.constData() + code)});
            }
        }
    }
    return seen;
}

} // namespace

/// Every construct that prints, run by a real SQLite beside its evaluation in memory.
class tst_SqlDialect : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void row_data();
    void row();
    void everyClassHasARow();
    void everyOperationHasARow();
    void everyFunctionHasARow();
    void everyDifferenceIsDocumented();

private:
    ClipTable m_table;
    ClipTable m_tableWithRegExp;
};

void tst_SqlDialect::initTestCase()
{
    QCOMPARE(m_table.open(), QString());
    QCOMPARE(m_tableWithRegExp.open("QSQLITE_ENABLE_REGEXP"), QString());
    QVERIFY(!rows().isEmpty());
}

void tst_SqlDialect::row_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < rows().size(); ++i) {
        const DialectRow &row = rows().at(i);
        QTest::addRow("%d %s: %s", i, row.key.isEmpty() ? "same" : qPrintable(row.key),
                      qPrintable(onOneLine(row.text)))
            << i;
    }
}

void tst_SqlDialect::row()
{
    QFETCH(int, index);
    const DialectRow &row = rows().at(index);
    const QString text = print(row.e, withPlace(Sql, row));
    QVERIFY2(fitsText(text, row.text), qPrintable(text));
    const QString memory = inMemory(row);
    QCOMPARE(memory, row.memory);
    const ClipTable &table = row.place == Place::ClipWithRegExp ? m_tableWithRegExp : m_table;
    const QString literals = inSqlite(table, row, withPlace(Sql, row));
    QVERIFY2(isAsWritten(literals, row.literals), qPrintable("from literals: " + literals));
    const QString bound = inSqlite(table, row, withPlace(Placeholders, row));
    QVERIFY2(isAsWritten(bound, row.bound), qPrintable("from bound values: " + bound));
    QCOMPARE(literals != memory || bound != memory, !row.key.isEmpty());
}

void tst_SqlDialect::everyClassHasARow()
{
    QStringList classes = Expression::expressionClassMap().keys();
    classes.append("N5vogen10SwitchCaseE"); // stands in no map, as it can't be read back
    for (const QString &name : qAsConst(classes)) {
        const QByteArray key = name.toLatin1() + '\0';
        const bool found = std::any_of(rows().begin(), rows().end(), [&](const DialectRow &row) {
            return written(row.e).contains(key);
        });
        QVERIFY2(found, qPrintable(name));
    }
}

void tst_SqlDialect::everyOperationHasARow()
{
    const QByteArray comparator("N5vogen10ComparatorE");
    const QByteArray numeric("N5vogen15NumericOperatorE");
    const QByteArray unary("N5vogen13UnaryOperatorE");
    const QByteArray boolean("N5vogen15BooleanOperatorE");
    const auto seen = operationsSeen({comparator, numeric, unary, boolean});

    // A code that is no operation prints nothing beside its operands.
    const ExpressionHandle one = literal(1);
    const auto known = [&](const QByteArray &name, int code) {
        if (name == comparator)
            return print(Comparator(one, Comparator::CompOp(code), one), Sql) != "11";
        if (name == numeric)
            return print(NumericOperator(one, NumericOperator::NumOp(code), one), Sql) != "11";
        if (name == unary)
            return print(UnaryOperator(UnaryOperator::UnaryOp(code), one), Sql) != "1";
        return code < 2; // And and Or: any other code prints as Or
    };
    int operations = 0;
    for (const QByteArray &name : {comparator, numeric, unary, boolean}) {
        for (int code = 0; known(name, code); ++code, ++operations)
            QVERIFY2(seen.contains({name, code}),
                     qPrintable(name + ' ' + QByteArray::number(code)));
    }
    QCOMPARE(operations, 6 + 8 + 2 + 2);
}

void tst_SqlDialect::everyFunctionHasARow()
{
    const QStringList names = FunctionExpression::functionMap().keys();
    QCOMPARE(names.size(), 21 + 1); // the built-in ones, and the client's of the rows
    for (const QString &name : names) {
        const QRegularExpression call("\\b" + name + "\\(");
        const bool found = std::any_of(rows().begin(), rows().end(), [&](const DialectRow &row) {
            return print(row.e, Readable).contains(call);
        });
        QVERIFY2(found, qPrintable(name));
    }
}

// Each line of the document's table is a row of ours, each kind of difference has a line, and where
// a line says "write `...`", that is a row in which all agree.
void tst_SqlDialect::everyDifferenceIsDocumented()
{
    QFile file(DIALECT_DOCUMENT);
    QVERIFY2(file.open(QIODevice::ReadOnly), DIALECT_DOCUMENT);
    QMultiMap<QString, QString> differing;
    QStringList agreeing;
    for (const DialectRow &row : rows()) {
        if (row.key.isEmpty())
            agreeing.append(row.text);
        else
            differing.insert(row.key, documentLine(row));
    }
    const QRegularExpression advice("\\bwrite `([^`]+)`");
    QSet<QString> documented;
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (!line.startsWith("| `"))
            continue;
        const QString key = line.section('`', 1, 1);
        const QStringList allowed = differing.values(key);
        const bool tested =
            std::any_of(allowed.begin(), allowed.end(),
                        [&](const QString &beginning) { return line.startsWith(beginning); });
        QVERIFY2(tested, qPrintable(line + "\nis none of\n" + allowed.join('\n')));
        documented.insert(key);
        for (auto words = advice.globalMatch(line); words.hasNext();) {
            const QString text = words.next().captured(1).replace("\\|", "|"); // "|" ends a cell
            QVERIFY2(agreeing.contains(text), qPrintable(key + " advises " + text));
        }
    }
    for (const QString &key : differing.uniqueKeys())
        QVERIFY2(documented.contains(key), qPrintable(differing.values(key).join('\n')));
}

QTEST_GUILESS_MAIN(tst_SqlDialect)
#include "tst_SqlDialect.moc"
