#include <QtTest>

#include "ProgramRun.h"

#include <Vokit/BooleanOperator>
#include <Vokit/ConstExpression>
#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>
#include <Vokit/FunctionExpression>
#include <Vokit/SwitchCase>
#include <Vokit/TypedProperties>

using vogen::ConstExpression;
using vogen::Expression;
using vogen::ExpressionHandle;
using vogen::ExpressionList;
using vogen::FunctionExpression;
using vogen::S64Property;
using vogen::StringProperty;
using vogen::ValueExpression;

namespace {

QByteArray bytesOf(const ExpressionHandle &filter)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    Expression::writeExpression(stream, filter);
    return bytes;
}

void write(const QString &file, const QByteArray &bytes)
{
    QFile writer(file);
    QVERIFY(writer.open(QIODevice::WriteOnly));
    QCOMPARE(writer.write(bytes), qint64(bytes.size()));
}

ExpressionHandle column(const char *name)
{
    return ValueExpression(QLatin1String(name), QLatin1String(""));
}

ExpressionHandle literal(const QVariant &value)
{
    return ConstExpression(value, false);
}

ExpressionHandle call(const char *name, const ExpressionHandle &a, const ExpressionHandle &b)
{
    return FunctionExpression(QLatin1String(name), ExpressionList(a, b), false);
}

} // namespace

class tst_ArchiveSearchFilterFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void savedAndLoaded_data();
    void savedAndLoaded();
    void savedBytes();
    void joinedWithOthers();
    void loadedAndSavedAgain();

    void notSaved_data();
    void notSaved();
    void nothingToSave();
    void refused_data();
    void refused();
    void cutAnywhere();
    void deep();

    void unknownColumn();
    void boundInAFunction();
    void disagreement();
    void notesOnCalls_data();
    void notesOnCalls();
    void wrongRegexpIsToldOnce();

private:
    ProgramRun load(const ExpressionHandle &filter) const;

    Tree m_tree;
    Tree m_scratch;
    QString m_file;
};

void tst_ArchiveSearchFilterFile::initTestCase()
{
    m_tree.addFile("a.mp4", 10, utc("2026-03-05T10:00:00Z"));
    m_tree.addFile("sub/it's.txt", 2048, utc("2026-03-07T00:00:00Z"));
    m_tree.addFile(".b.mp4", 4096, utc("2026-03-06T00:00:00Z"));
    m_file = m_scratch.path("filter");
}

ProgramRun tst_ArchiveSearchFilterFile::load(const ExpressionHandle &filter) const
{
    write(m_file, bytesOf(filter));
    return runProgram({"--json", "--load-filter", m_file, m_tree.path()});
}

void tst_ArchiveSearchFilterFile::savedAndLoaded_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("paths");
    using List = QStringList;
    QTest::newRow("one condition") << List{"--min-size", "1K"} << List{".b.mp4", "sub/it's.txt"};
    QTest::newRow("a text") << List{"--name", "it's.txt"} << List{"sub/it's.txt"};
    QTest::newRow("a date") << List{"--newer-than", "2026-03-06T00:00:00Z"} << List{"sub/it's.txt"};
    QTest::newRow("a negation") << List{"--not-hidden"} << List{"a.mp4", "sub/it's.txt"};
    QTest::newRow("joined by AND")
        << List{"--extension", "mp4,txt", "--max-age", "99999", "--max-size", "2K", "--not-hidden"}
        << List{"a.mp4", "sub/it's.txt"};
    QTest::newRow("joined by OR") << List{"--any", "--name", "a.mp4", "--min-size", "3K"}
                                  << List{".b.mp4", "a.mp4"};
    QTest::newRow("patterns") << List{"--name-like", "a.mp_", "--name-regexp", "a.*"}
                              << List{"a.mp4"};
}

void tst_ArchiveSearchFilterFile::savedAndLoaded()
{
    QFETCH(QStringList, options);
    const QString file = m_scratch.path("saved");
    QFile::remove(file);
    const ProgramRun saving =
        runProgram(options + QStringList{"--json", "--save-filter", file, m_tree.path()});
    QCOMPARE(saving.errors, QByteArray());
    QCOMPARE(saving.exitCode, 0);
    QTEST(saving.paths(), "paths");

    const ProgramRun loading = runProgram({"--json", "--load-filter", file, m_tree.path()});
    QCOMPARE(loading.errors, QByteArray());
    QCOMPARE(loading.exitCode, 0);
    QTEST(loading.paths(), "paths");
    for (const char *key : {"filter", "bindValues", "notes"})
        QCOMPARE(loading.json[QLatin1String(key)], saving.json[QLatin1String(key)]);
}

void tst_ArchiveSearchFilterFile::savedBytes()
{
    const QString file = m_scratch.path("bytes");
    runProgram({"--min-size", "1K", "--save-filter", file, m_tree.path()});
    const S64Property size(QStringLiteral("size"));
    QCOMPARE(contentOf(file), bytesOf(size >= QVariant(qlonglong(1024))));

    // The next filter takes the place of that one, also through a link.
    m_scratch.addLink("bytes", "link");
    runProgram({"--name", "x", "--save-filter", m_scratch.path("link"), m_tree.path()});
    const StringProperty name(QStringLiteral("name"));
    QCOMPARE(contentOf(file), bytesOf(name == QVariant("x")));
}

void tst_ArchiveSearchFilterFile::joinedWithOthers()
{
    const S64Property size(QStringLiteral("size"));
    const ExpressionHandle small = size < QVariant(qlonglong(100));
    const ExpressionHandle large = size > QVariant(qlonglong(4000));
    write(m_file, bytesOf(small || large));

    const ProgramRun all =
        runProgram({"--json", "--load-filter", m_file, "--not-hidden", m_tree.path()});
    QCOMPARE(all.exitCode, 0);
    QCOMPARE(all.paths(), QStringList{"a.mp4"});
    QCOMPARE(all.json["filter"]["sql"].toString(),
             QString(" NOT hidden = 'true' AND (size < 100 OR size > 4000)"));

    const ProgramRun any = runProgram(
        {"--json", "--load-filter", m_file, "--name", "it's.txt", "--any", m_tree.path()});
    QCOMPARE(any.paths(), (QStringList{".b.mp4", "a.mp4", "sub/it's.txt"}));
}

void tst_ArchiveSearchFilterFile::loadedAndSavedAgain()
{
    const S64Property size(QStringLiteral("size"));
    write(m_file, bytesOf(size < QVariant(qlonglong(100))));
    const QString again = m_scratch.path("again");
    const ProgramRun run =
        runProgram({"--load-filter", m_file, "--save-filter", again, m_tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(contentOf(again), contentOf(m_file));
}

void tst_ArchiveSearchFilterFile::notSaved_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("no folder") << "none/x" << QByteArray("No such file or directory");
    QTest::newRow("a folder") << "folder" << QByteArray("it is not a regular file");
    QTest::newRow("a pipe") << "pipe" << QByteArray("it is not a regular file");
    QTest::newRow("read-only folder") << "closed/x" << QByteArray("Permission denied");
}

void tst_ArchiveSearchFilterFile::notSaved()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, reason);
    const Tree scratch;
    scratch.addFile("folder/x");
    scratch.addFile("closed/x", 5);
    QCOMPARE(::mkfifo(scratch.bytes("pipe"), 0600), 0); // of a device, root would lose the real one
    scratch.setMode("closed", 0500);
    const QString file = scratch.path(name);
    const ProgramRun run = runProgram({"--name", "x", "--save-filter", file, m_tree.path()});
    scratch.setMode("closed", 0700);
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors,
             "archive-search: cannot save filter '" + file.toUtf8() + "': " + reason + '\n');
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(QFileInfo(scratch.path("closed/x")).size(), 5);
}

void tst_ArchiveSearchFilterFile::nothingToSave()
{
    const QString file = m_scratch.path("nothing");
    const ProgramRun run = runProgram({"--save-filter", file, m_tree.path()});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors,
             "archive-search: cannot save filter '" + file.toUtf8() + "': there is no condition\n");
    QVERIFY(!QFile::exists(file));

    // A search that can't begin leaves no filter behind either.
    QCOMPARE(runProgram({"--name", "x", "--save-filter", file, m_tree.path("none")}).exitCode, 2);
    QVERIFY(!QFile::exists(file));
    for (const char *option : {"--save-filter", "--load-filter"}) {
        const ProgramRun noName = runProgram({option, "", m_tree.path()});
        QCOMPARE(noName.exitCode, 2);
        QCOMPARE(noName.errors,
                 QByteArray("archive-search: ") + option + " needs the name of a file\n");
    }
}

void tst_ArchiveSearchFilterFile::refused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("reason");

    const S64Property size(QStringLiteral("size"));
    const ExpressionHandle good = size < QVariant(qlonglong(100));
    const QByteArray noFilter = "it is no filter";
    const QByteArray noFilterOrCut = "it is no filter, or it ends too early";
    const QByteArray damaged = "it is damaged";
    QTest::newRow("empty") << QByteArray() << QByteArray("it is empty");
    QTest::newRow("a text") << QByteArray("Dear reader, this is a letter.") << noFilterOrCut;
    QTest::newRow("zeroes") << QByteArray(100, '\0') << noFilter;
    QTest::newRow("a class that isn't known")
        << bytesOf(good).replace("Comparator", "Komparator") << noFilter;
    QTest::newRow("such a class in a list")
        << bytesOf(good && good).replace("13Comp", "13Komp").replace("10Comp", "10Komp") << damaged;
    QTest::newRow("an empty filter") << bytesOf(ExpressionHandle()) << noFilter;
    QTest::newRow("NULL") << bytesOf(literal(QVariant())) << noFilter;
    QTest::newRow("a column without a name") << bytesOf(column("")) << noFilter;
    QTest::newRow("a choice of cases, which has no way back")
        << bytesOf(vogen::SwitchCase(column("size"))) << noFilter;
    QTest::newRow("more behind it")
        << bytesOf(good) + '\0' << QByteArray("something follows the filter");
    QTest::newRow("another filter behind it")
        << bytesOf(good) + bytesOf(good) << QByteArray("something follows the filter");
    QTest::newRow("a function that nobody registered")
        << bytesOf(call("halve", column("size"), literal(2)))
        << QByteArray("it calls what is no function here: 'halve'");
    QTest::newRow("such functions deep inside")
        << bytesOf(good && !(ExpressionHandle(call(
                               "abs", call("x", column("size"), literal(1)),
                               call("like", column("name"), call("y", literal(1), literal(1)))))))
        << QByteArray("it calls what is no function here: 'x', 'y'");
    QTest::newRow("too large") << QByteArray(300000, 'x')
                               << QByteArray("it has more than 262144 bytes");
    QByteArray anotherVersion;
    QDataStream stream(&anotherVersion, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_7);
    Expression::writeExpression(stream, (literal(QVariant()) < column("size")) && good);
    QTest::newRow("another version of the stream") << anotherVersion << noFilterOrCut;
}

void tst_ArchiveSearchFilterFile::refused()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, reason);
    write(m_file, content);
    const ProgramRun run = runProgram({"--load-filter", m_file, m_tree.path()});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors,
             "archive-search: cannot load filter '" + m_file.toUtf8() + "': " + reason + '\n');
    QCOMPARE(run.output, QByteArray());
}

void tst_ArchiveSearchFilterFile::cutAnywhere()
{
    const S64Property size(QStringLiteral("size"));
    const StringProperty name(QStringLiteral("name"));
    const QByteArray whole = bytesOf(ExpressionHandle(size < QVariant(qlonglong(100))) &&
                                     ExpressionHandle(name == QVariant("x")));
    for (int length = 0; length < whole.size(); length += 3) {
        write(m_file, whole.left(length));
        const ProgramRun run = runProgram({"--load-filter", m_file, m_tree.path()});
        QVERIFY2(run.exitCode == 2 && run.errors.count('\n') == 1,
                 qPrintable(QString::number(length)));
    }
    // Also between two operands, where no value is cut.
    const ExpressionHandle first = size < QVariant(qlonglong(100));
    const int operandEnds = whole.indexOf(bytesOf(first)) + bytesOf(first).size();
    write(m_file, whole.left(operandEnds));
    const ProgramRun run = runProgram({"--load-filter", m_file, m_tree.path()});
    QCOMPARE(run.exitCode, 2);
    QVERIFY(run.errors.endsWith("it ends too early\n"));
}

void tst_ArchiveSearchFilterFile::deep()
{
    // As deep as the limit on the size lets it be: no crash, whoever refuses it.
    ExpressionHandle filter = column("hidden");
    const int step = bytesOf(!filter).size() - bytesOf(filter).size();
    const int depth = (262144 - bytesOf(filter).size()) / step;
    for (int i = 0; i < depth; ++i)
        filter = !filter;
    QVERIFY(bytesOf(filter).size() > 262144 - step);
    const ProgramRun run = load(filter);
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors.count('\n'), 1);
}

void tst_ArchiveSearchFilterFile::unknownColumn()
{
    const ProgramRun run = load(column("colour") == literal("red"));
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors, QByteArray("archive-search: cannot use database in memory: no such "
                                    "column: colour\n"));
}

void tst_ArchiveSearchFilterFile::boundInAFunction()
{
    const ExpressionHandle bindable = ConstExpression(QVariant("a"), true);
    const ProgramRun run = load(call("like", column("name"), bindable));
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors, QByteArray("archive-search: cannot use database in memory: Parameter "
                                    "count mismatch\n"));
}

void tst_ArchiveSearchFilterFile::disagreement()
{
    const ProgramRun run = load(call("nullif", column("size"), literal(qlonglong(10))));
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.paths(), QStringList{"a.mp4"});
    QCOMPARE(run.json["sqlite"]["matches"].toInt(), 2);
    const QJsonValue condition = run.array("disagreements").first()["conditions"][0];
    QCOMPARE(condition["condition"].toString(), QString("nullif(size,10)"));
    QCOMPARE(condition["reason"].toString(), QString("a loaded filter is not traced any further"));
}

void tst_ArchiveSearchFilterFile::notesOnCalls_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("notes"); // their first words
    using List = QStringList;
    const auto with = [](const char *name) {
        return bytesOf(call(name, column("size"), literal(qlonglong(1))));
    };
    QTest::newRow("nullif") << with("nullif") << List{"nullif in memory"};
    QTest::newRow("max") << with("max") << List{"max in memory"};
    QTest::newRow("min") << with("min") << List{"max in memory"};
    QTest::newRow("like") << with("like") << List{"LIKE in memory"};
    QTest::newRow("regexp") << with("regexp") << List{"REGEXP in memory"};
    QTest::newRow("several") << bytesOf(call("min", column("size"),
                                             call("like", column("name"), literal("x"))))
                             << List{"LIKE in memory", "max in memory"};
    QTest::newRow("another function") << with("ifnull") << List{};
    QTest::newRow("only in a text")
        << bytesOf(column("name") == literal("it's nullif(a LIKE b)")) << List{};
}

void tst_ArchiveSearchFilterFile::notesOnCalls()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, notes);
    write(m_file, content);
    const QJsonArray found =
        runProgram({"--json", "--load-filter", m_file, m_tree.path()}).array("notes");
    QCOMPARE(found.size(), notes.size());
    for (int i = 0; i < notes.size(); ++i)
        QVERIFY2(found[i].toString().startsWith(notes[i]), qPrintable(found[i].toString()));
}

void tst_ArchiveSearchFilterFile::wrongRegexpIsToldOnce()
{
    const ProgramRun run = load(call("regexp", column("name"), literal("(")));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.array("matches"), QJsonArray());
    QCOMPARE(run.errors, QByteArray("archive-search: QString::contains: invalid "
                                    "QRegularExpression object\n"));
}

QTEST_GUILESS_MAIN(tst_ArchiveSearchFilterFile)

#include "tst_ArchiveSearchFilterFile.moc"
