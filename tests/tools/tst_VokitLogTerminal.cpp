#include "LogFiles.h"

#include <QtTest>

#include <sys/ioctl.h>

#include <array>

/// Colours, and lines that fit.
class tst_VokitLogTerminal : public QObject
{
    Q_OBJECT

private slots:
    void colours_data();
    void colours();
    void whatIsColoured();
    void plainInAPipe();
    void wrapped_data();
    void wrapped();
    void otherFormats();

private:
    QByteArray shown(const QStringList &arguments, const QByteArray &input, int width = 80);
};

namespace {

const QByteArray gError = R"(<Entry ID="XmlP" Time="21 Nov 2026 15:04:05" User="bob" )"
                          R"(srcP="x" errT="y" errL="1" errC="2"/>)";

} // namespace

// What a terminal of that width shows, with the ends of lines as they are in a file.
QByteArray tst_VokitLogTerminal::shown(const QStringList &arguments, const QByteArray &input,
                                       int width)
{
    QString terminal;
    const int master = openTerminal(terminal);
    const winsize size = {24, static_cast<ushort>(width), 0, 0};
    if (master < 0 || ::ioctl(master, TIOCSWINSZ, &size) != 0)
        return "no terminal";
    BoundProcess process;
    process.setStandardOutputFile(terminal, QIODevice::Append);
    const ProgramRun run = resultOf(process, PROGRAM, QStringList{"show"} + arguments, input);
    std::array<char, 16384> buffer;
    ::fcntl(master, F_SETFL, O_NONBLOCK);
    QByteArray text;
    ssize_t length = 0;
    while ((length = ::read(master, buffer.data(), buffer.size())) > 0)
        text.append(buffer.data(), static_cast<int>(length));
    ::close(master);
    return run.errors + text.replace("\r\n", "\n");
}

void tst_VokitLogTerminal::colours_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("noColor");
    QTest::addColumn<QByteArray>("term");
    QTest::addColumn<bool>("onTerminal");
    QTest::addColumn<bool>("inPipe");
    const QByteArray xterm = "xterm";
    QTest::newRow("not given") << QStringList{} << QByteArray() << xterm << true << false;
    QTest::newRow("auto") << QStringList{"--color", "auto"} << QByteArray() << xterm << true
                          << false;
    QTest::newRow("always") << QStringList{"--color=always"} << QByteArray("1") << xterm << true
                            << true;
    QTest::newRow("never") << QStringList{"--color", "never"} << QByteArray() << xterm << false
                           << false;
    QTest::newRow("NO_COLOR") << QStringList{} << QByteArray("1") << xterm << false << false;
    QTest::newRow("a terminal without")
        << QStringList{} << QByteArray() << QByteArray("dumb") << false << false;
}

void tst_VokitLogTerminal::colours()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, noColor);
    QFETCH(QByteArray, term);
    QFETCH(bool, onTerminal);
    QFETCH(bool, inPipe);
    const Variable noColorSet("NO_COLOR", noColor);
    const Variable termSet("TERM", term);
    const QByteArray bytes = head() + done("a");
    const QByteArray coloured =
        "\x1b[2m2026-11-21 15:04:05\x1b[0m  ann  \x1b[1mExport done\x1b[0m  a\n";
    QCOMPARE(shown(options + QStringList{"-"}, bytes), onTerminal ? coloured : doneLine("a"));
    const ProgramRun run = runProgram(QStringList{"show"} + options + QStringList{"-"}, bytes);
    QCOMPARE(run.output, inPipe ? coloured : doneLine("a"));
}

void tst_VokitLogTerminal::whatIsColoured()
{
    const QByteArray bytes = head() + "x" + gError + R"(<Entry ID="ExpA"/>)";
    const ProgramRun run = runProgram({"show", "--color", "always", "-"}, bytes);
    const QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.at(0), QByteArray("\x1b[33m-- foreign bytes: 1 byte from byte 111 on (line 1, "
                                     "column 112)\x1b[0m"));
    const ProgramRun categories =
        runProgram({"report", "--by", "category", "--format", "csv", "-"}, bytes);
    const bool isError = categories.output.contains("\r\nError,1\r\n");
    QVERIFY2(isError, categories.output.constData());
    QCOMPARE(lines.at(1), QByteArray("\x1b[2;31m2026-11-21 15:04:05\x1b[0m  \x1b[31mbob\x1b[0m  "
                                     "\x1b[1;31mAction log error\x1b[0m  \x1b[31mError 'x' reading "
                                     "action log 'y' in line '1', column '2'.\x1b[0m"));
    QCOMPARE(lines.at(2), QByteArray("\x1b[2m(no time)\x1b[0m  -  \x1b[1mExport abort\x1b[0m"));
}

void tst_VokitLogTerminal::plainInAPipe()
{
    const QByteArray text = QByteArray("word ").repeated(100) + "end";
    QCOMPARE(runProgram({"show", "-"}, head() + done(text)).output, doneLine(text));
    // An escape sequence of a file is none here. Only those of 8 bits are allowed in XML.
    QCOMPARE(shown({"--color=never", "-"}, head() + done("&#155;2J")), doneLine("\\x9b2J"));
}

void tst_VokitLogTerminal::wrapped_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("shownText"); ///< with "|" for the end of a line and its indent
    const auto row = [](const char *name, int width, const QByteArray &text,
                        const QByteArray &shownText) {
        QTest::newRow(name) << width << text << shownText;
    };
    // The description begins in column 39; the lines below it in column 21.
    const QByteArray twenty = "twenty columns, here";
    row("what fits", 59, twenty, twenty);
    row("one too many", 58, twenty, "twenty columns,|here");
    row("a wider terminal", 60, "aaaaa bbbbb ccccc ddddd eeeee fffff ggggg hhhhh iiiii",
        "aaaaa bbbbb ccccc|ddddd eeeee fffff ggggg hhhhh iiiii");
    row("several lines", 60, QByteArray("aaaaa ").repeated(11) + "b",
        "aaaaa aaaaa aaaaa|aaaaa aaaaa aaaaa aaaaa aaaaa aaaaa|aaaaa aaaaa b");
    row("a word that has room below", 60, QByteArray(39, 'x'), "|" + QByteArray(39, 'x'));
    row("a word that has room nowhere", 60, QByteArray(50, 'x'),
        "|" + QByteArray(39, 'x') + "|" + QByteArray(11, 'x'));
    row("wide characters take two columns", 61,
        "\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C \xE4\xB8\x9C"
        "\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C",
        "\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C|\xE4\xB8\x9C"
        "\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C\xE4\xB8\x9C");
    row("an accent of its own takes none", 61,
        "e\xCC\x81" + QByteArray("e\xCC\x81").repeated(20) + " x",
        "e\xCC\x81" + QByteArray("e\xCC\x81").repeated(20) + "|x");
}

void tst_VokitLogTerminal::wrapped()
{
    QFETCH(int, width);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, shownText);
    const QByteArray indent = '\n' + QByteArray(width < 60 ? 4 : 21, ' ');
    QCOMPARE(shown({"--color=never", "-"}, head() + done(text), width),
             doneLine(shownText).replace('|', indent));
}

// Nothing but prose knows the terminal.
void tst_VokitLogTerminal::otherFormats()
{
    const QByteArray text = QByteArray("word ").repeated(40) + "end";
    for (const char *format : {"csv", "json", "xml"}) {
        const QByteArray terminal =
            shown({"--color=always", "--format", format, "-"}, head() + done(text));
        const ProgramRun run = runProgram({"show", "--format", format, "-"}, head() + done(text));
        QVERIFY(run.output.contains(text));
        QCOMPARE(terminal, run.output);
    }
}

QTEST_GUILESS_MAIN(tst_VokitLogTerminal)
#include "tst_VokitLogTerminal.moc"
