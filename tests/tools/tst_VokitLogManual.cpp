#include <QtTest>

#include "examples/ProgramRun.h"

#include <Vokit/LogCategory>

namespace {

const QString gManual = QStringLiteral(PROGRAM_SOURCE "/vokit-log.1");
const QString gCompletion = QStringLiteral(PROGRAM_SOURCE "/vokit-log.bash");

/// Whatever looks like an option, without repetition.
QSet<QString> optionsIn(const QString &text)
{
    static const QRegularExpression option("(?<![\\w-])-(?:[a-z]|-[a-z][a-z-]*)(?![\\w-])");
    QSet<QString> options;
    for (auto it = option.globalMatch(text); it.hasNext();)
        options << it.next().captured();
    return options;
}

QSet<QString> asSet(const QStringList &list)
{
    return {list.begin(), list.end()};
}

QStringList sorted(const QSet<QString> &set)
{
    QStringList list(set.begin(), set.end());
    list.sort();
    return list;
}

/// The options that "vokit-log VERB --help" lists.
QSet<QString> helpOptions(const QString &verb)
{
    const QString help = QString::fromUtf8(runProgram({verb, "--help"}).output);
    static const QRegularExpression tag("^  (-.*?)(  |$)", QRegularExpression::MultilineOption);
    QSet<QString> options;
    for (auto it = tag.globalMatch(help); it.hasNext();)
        options += optionsIn(it.next().captured(1));
    return options;
}

/// The tags of the lists in a section of the manual.
QStringList tagsOf(const QString &section)
{
    const QString source = QString::fromUtf8(contentOf(gManual)).remove('\\');
    const int begin = source.indexOf("\n.SH " + section + '\n');
    if (begin < 0)
        qFatal("no section %s", qPrintable(section));
    QStringList tags;
    const QStringList lines =
        source.mid(begin, source.indexOf("\n.SH ", begin + 1) - begin).split('\n');
    for (int i = 1; i < lines.size(); ++i) {
        if (lines[i - 1] == ".TP")
            tags << lines[i];
    }
    return tags;
}

QSet<QString> manualOptions(const QString &verb)
{
    QStringList sections{"OPTIONS OF ALL VERBS", verb.toUpper()};
    if (verb == "show" || verb == "report")
        sections << "FILTERS OF SHOW AND REPORT";
    QSet<QString> options;
    for (const QString &section : qAsConst(sections))
        options += optionsIn(tagsOf(section).join('\n'));
    return options;
}

/// What the completion gives for the last of the words.
QStringList complete(const QStringList &words, const QString &folder = QDir::tempPath())
{
    QProcess bash;
    bash.setWorkingDirectory(folder);
    bash.start("bash",
               QStringList{"--norc", "--noprofile", TEST_SOURCE "/complete.bash", gCompletion} +
                   words);
    if (!bash.waitForFinished() || bash.exitCode() != 0)
        return {"failed: " + QString::fromUtf8(bash.readAllStandardError())};
    QStringList lines = QString::fromUtf8(bash.readAllStandardOutput()).split('\n');
    lines.removeLast();
    const QByteArray errors = bash.readAllStandardError();
    return errors.isEmpty() ? lines : QStringList{"told: " + QString::fromUtf8(errors)};
}

} // namespace

/// The manual page and the completion: they say what the program does, no more and no less.
class tst_VokitLogManual : public QObject
{
    Q_OBJECT

private slots:
    void verbs();
    void options_data();
    void options();
    void wordsOfOptions_data();
    void wordsOfOptions();
    void categories();
    void columns();
    void formatted_data();
    void formatted();
    void completion_data();
    void completion();
    void completedFiles_data();
    void completedFiles();
    void registered();
};

void tst_VokitLogManual::verbs()
{
    const QString help = QString::fromUtf8(runProgram({"--help"}).output);
    QStringList verbs;
    static const QRegularExpression line("^  (\\w+) +\\w", QRegularExpression::MultilineOption);
    for (auto it = line.globalMatch(help); it.hasNext();)
        verbs << it.next().captured(1);
    QCOMPARE(verbs, (QStringList{"show", "check", "recover", "report"}));
    verbs.sort();

    QStringList described = tagsOf("VERBS").replaceInStrings(".B ", "");
    described.sort();
    QCOMPARE(described, verbs);
    QStringList completed = complete({""}).filter(QRegularExpression("^\\w"));
    completed.sort();
    QCOMPARE(completed, verbs);
    const QSet<QString> general{"--help", "--version"};
    QCOMPARE(optionsIn(complete({"-"}).join('\n')), general);
    for (const QString &option : general)
        QCOMPARE(runProgram({option}).exitCode, 0);
}

void tst_VokitLogManual::options_data()
{
    QTest::addColumn<QString>("verb");

    for (const char *const verb : {"show", "report", "check", "recover"})
        QTest::newRow(verb) << verb;
}

void tst_VokitLogManual::options()
{
    QFETCH(QString, verb);
    const QStringList there = sorted(helpOptions(verb));
    QVERIFY(there.contains("--help"));
    QCOMPARE(sorted(manualOptions(verb)), there);
    QCOMPARE(sorted(optionsIn(complete({verb, "-"}).join('\n'))), there);
}

void tst_VokitLogManual::wordsOfOptions_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QStringList>("words");

    QTest::newRow("formats of show") << "show"
                                     << "--format" << QStringList{"prose", "csv", "json", "xml"};
    QTest::newRow("formats of report") << "report"
                                       << "--format" << QStringList{"table", "csv", "json"};
    QTest::newRow("formats of check") << "check"
                                      << "--format" << QStringList{"text", "json"};
    QTest::newRow("colours") << "show"
                             << "--color" << QStringList{"auto", "always", "never"};
    QTest::newRow("counts") << "report"
                            << "--by" << QStringList{"user", "category", "day", "action"};
}

// The program lists them for one that there isn't.
void tst_VokitLogManual::wordsOfOptions()
{
    QFETCH(QString, verb);
    QFETCH(QString, option);
    QFETCH(QStringList, words);
    QCOMPARE(complete({verb, option, ""}), words);
    QVERIFY(complete({verb, option, "=", words[1].left(1)}).contains(words[1]));
    QString section = QString::fromUtf8(contentOf(gManual)).remove('\\');
    section = section.mid(section.indexOf("\n.SH " + verb.toUpper() + '\n') + 1);
    section = section.left(section.indexOf("\n.SH "));
    for (const QString &word : qAsConst(words))
        QVERIFY2(section.contains(QRegularExpression("\\b" + word + "\\b")), qPrintable(word));
    QStringList arguments{verb, option, "nothing", "/dev/null"};
    if (verb == "report" && option != "--by")
        arguments << "--by"
                  << "user";
    const ProgramRun wrong = runProgram(arguments);
    QCOMPARE(wrong.exitCode, 4);
    const QString list = QString::fromUtf8(wrong.errors).section(": use ", 1).trimmed();
    QCOMPARE(sorted(asSet(list.split(", "))), sorted(asSet(words)));
}

void tst_VokitLogManual::categories()
{
    QStringList there = vo::LogCategory::categoryNames();
    QStringList completed = complete({"show", "--category", ""});
    there.sort();
    completed.sort();
    QCOMPARE(completed, there);
}

void tst_VokitLogManual::columns()
{
    QCOMPARE(tagsOf("COLUMNS").replaceInStrings(".B ", ""),
             (QStringList{"id", "category", "time", "user", "action", "description"}));
}

void tst_VokitLogManual::formatted_data()
{
    QTest::addColumn<QStringList>("command");

    QTest::newRow("groff") << QStringList{"groff", "-man", "-ww", "-z", gManual};
    QTest::newRow("man") << QStringList{"man", "--warnings", "-E", "UTF-8",
                                        "-l",  "-Tutf8",     "-Z", gManual};
}

void tst_VokitLogManual::formatted()
{
    QFETCH(QStringList, command);
    const QString program = command.takeFirst();
    if (QStandardPaths::findExecutable(program).isEmpty())
        QSKIP("the program is not installed");
    QProcess process;
    process.start(program, command);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardError(), QByteArray());
    QCOMPARE(process.exitCode(), 0);
}

void tst_VokitLogManual::completion_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("completed");

    const auto row = [](const char *name, const QStringList &words, const QStringList &completed) {
        QTest::newRow(name) << words << completed;
    };
    row("a verb", {"re"}, {"report", "recover"});
    row("an unknown verb", {"x"}, {});
    row("behind an unknown verb", {"x", "--"}, {});
    row("an option", {"check", "--q"}, {"--quiet"});
    row("an option of another verb", {"check", "--force"}, {});
    row("an option behind a file", {"recover", "a.vol", "--fo"}, {"--force"});
    row("a value in the word of its option", {"show", "--format", "=", "p"}, {"prose"});
    row("nothing of it yet", {"check", "--format", "="}, {"text", "json"});
    row("another verb's option has no value", {"check", "--by", "--ga"}, {"--gaps"});
    row("a category, whatever the case", {"show", "--category", "SYS"}, {"System"});
    row("a category with a blank", {"show", "--category", "web"}, {"Web browser"});
    row("escaped", {"report", "--category", "Signal\\ o"}, {"Signal outs"});
    row("quoted", {"report", "--category", "\"User & G"}, {"User & Groups"});
    row("the second of a list", {"show", "--category", "Error,Sys"}, {"Error,System"});
    row("a date", {"show", "--since", "y"}, {"yesterday"});
    row("what nobody can know", {"show", "--user", ""}, {});
}

void tst_VokitLogManual::completion()
{
    QFETCH(QStringList, words);
    QTEST(complete(words), "completed");
}

void tst_VokitLogManual::completedFiles_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("completed");

    const auto row = [](const char *name, const QStringList &words, const QStringList &completed) {
        QTest::newRow(name) << words << completed;
    };
    row("logs", {"show", "a"}, {"a b.vol", "a.vol.corrupt"});
    row("behind a file", {"check", "a.vol.corrupt", "f"}, {"folder"});
    row("in a folder", {"check", "folder/"}, {"folder/c.vol"});
    row("the new one", {"recover", "-o", "f"}, {"folder"});
    row("a report", {"recover", "--report", "=", "f"}, {"folder"});
    row("a filter", {"show", "--filter", "f"}, {"folder"});
    row("the file of a filter", {"report", "--save-filter", "f"}, {"folder"});
    row("behind --", {"show", "--", "-"}, {"-odd.vol"});
}

void tst_VokitLogManual::completedFiles()
{
    QFETCH(QStringList, words);
    const Tree files;
    for (const char *const name : {"a b.vol", "a.vol.corrupt", "folder/c.vol", "-odd.vol"})
        files.addFile(name);
    QStringList completed = complete(words, files.path());
    completed.sort();
    QTEST(completed, "completed");
}

// As bash finds it: by the name of the program, with no other package.
void tst_VokitLogManual::registered()
{
    QProcess bash;
    bash.start("bash", {"--norc", "--noprofile", "-c", "source \"$0\" && complete -p vokit-log",
                        gCompletion});
    QVERIFY(bash.waitForFinished());
    QCOMPARE(bash.readAllStandardOutput(), QByteArray("complete -F _vokit_log vokit-log\n"));
}

QTEST_GUILESS_MAIN(tst_VokitLogManual)
#include "tst_VokitLogManual.moc"
