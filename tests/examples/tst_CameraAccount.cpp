#include <QtTest>

#include "ProgramRun.h"

#include <Vokit/Crypt>

#include <poll.h>
#include <termios.h>

#include <csignal>

using vogen::Crypt;

namespace {

const QStringList gNames{"--user", "anna", "--realm", "camera 7"};
const QStringList gGroup{"--group", "admin"};

QByteArray hashOf(const QByteArray &password, const QByteArray &salt)
{
    char buffer[14];
    return Crypt::crypt_r(password.constData(), salt.constData(), buffer);
}

QByteArray recordOf(const QByteArray &user, const QByteArray &password)
{
    return user + ":admin:" + hashOf(password, "ab") + ':' +
           Crypt::md5(user + ":camera 7:" + password).toHex();
}

/// A program whose standard input is a terminal, and who types there.
class TerminalRun
{
public:
    explicit TerminalRun(const QStringList &arguments)
        : m_master(openTerminal(m_name))
    {
        m_process.setStandardInputFile(m_name);
        m_process.setReadChannel(QProcess::StandardError);
        m_process.start(PROGRAM, arguments);
    }
    ~TerminalRun() { ::close(m_master); }
    TerminalRun(const TerminalRun &) = delete;
    TerminalRun &operator=(const TerminalRun &) = delete;

    bool waitForPrompt(const QByteArray &prompt)
    {
        while (!m_errors.endsWith(prompt)) {
            if (!m_process.waitForReadyRead(10000))
                return false;
            m_errors += m_process.readAllStandardError();
        }
        return true;
    }

    bool type(const QByteArray &text)
    {
        return ::write(m_master, text.constData(), static_cast<size_t>(text.size())) == text.size();
    }

    void interrupt() { ::kill(static_cast<pid_t>(m_process.processId()), SIGINT); }
    bool finish() { return m_process.waitForFinished(10000); }

    /// What the terminal showed.
    QByteArray shown()
    {
        QByteArray text;
        pollfd readable{m_master, POLLIN, 0};
        char buffer[256];
        while (::poll(&readable, 1, 0) > 0 && (readable.revents & POLLIN) != 0) {
            const ssize_t length = ::read(m_master, buffer, sizeof buffer);
            if (length <= 0)
                break;
            text.append(buffer, static_cast<int>(length));
        }
        return text;
    }

    bool echoes() const
    {
        termios settings;
        return ::tcgetattr(m_master, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
    }

    QProcess &process() { return m_process; }
    QByteArray errors()
    {
        m_errors += m_process.readAllStandardError();
        return m_errors;
    }

private:
    QString m_name;
    int m_master;
    BoundProcess m_process;
    QByteArray m_errors;
};

} // namespace

class tst_CameraAccount : public QObject
{
    Q_OBJECT

private slots:
    void record_data();
    void record();
    void check_data();
    void check();
    void checkOfAPrintedRecord();
    void unusableRecord_data();
    void unusableRecord();

    void wrongUse_data();
    void wrongUse();
    void passwordOnTheCommandLineIsNotRepeated();
    void unusablePassword_data();
    void unusablePassword();
    void helpAndVersion();
    void lostOutput();

    void terminal();
    void terminalTypedTwice_data();
    void terminalTypedTwice();
    void terminalInterrupted();

private:
    Tree m_tree;
};

void tst_CameraAccount::record_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("password"); // in Latin-1
    QTest::newRow("a line") << QByteArray("secret\n") << QByteArray("secret");
    QTest::newRow("without its end") << QByteArray("secret") << QByteArray("secret");
    QTest::newRow("the first of several") << QByteArray("secret\nother\n") << QByteArray("secret");
    QTest::newRow("blanks count") << QByteArray(" a b \n") << QByteArray(" a b ");
    QTest::newRow("a colon is no harm") << QByteArray("a:b\n") << QByteArray("a:b");
    QTest::newRow("Latin-1") << QByteArray("\xc3\xa9t\xc3\xa9\n") << QByteArray("\xe9t\xe9");
    QTest::newRow("the longest") << QByteArray(1024, 'x') + '\n' << QByteArray(1024, 'x');
}

void tst_CameraAccount::record()
{
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, password);
    const ProgramRun run = runProgram(gNames + gGroup, input);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.errors, QByteArray());
    const QList<QByteArray> fields = run.output.trimmed().split(':');
    QCOMPARE(fields.size(), 4);
    QCOMPARE(fields.at(0), QByteArray("anna"));
    QCOMPARE(fields.at(1), QByteArray("admin"));
    QCOMPARE(fields.at(2), hashOf(password, fields.at(2)));
    QCOMPARE(fields.at(3), Crypt::md5("anna:camera 7:" + password).toHex());
    QCOMPARE(run.output, fields.join(':') + '\n');
}

void tst_CameraAccount::check_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<bool>("fits");
    const QStringList otherRealm{"--user", "anna", "--realm", "camera 8"};
    const QStringList otherUser{"--user", "annabel", "--realm", "camera 7"};
    QTest::newRow("the password") << QByteArray("password1\n") << gNames << true;
    QTest::newRow("another") << QByteArray("Password1\n") << gNames << false;
    QTest::newRow("another behind the eighth character, which the hash doesn't see")
        << QByteArray("password2\n") << gNames << false;
    QTest::newRow("its first eight characters") << QByteArray("password\n") << gNames << false;
    QTest::newRow("in another realm") << QByteArray("password1\n") << otherRealm << false;
    QTest::newRow("of another user") << QByteArray("password1\n") << otherUser << false;
    QTest::newRow("that user's own") << QByteArray("other\n") << otherUser << true;
}

void tst_CameraAccount::check()
{
    QFETCH(QByteArray, input);
    QFETCH(QStringList, names);
    QFETCH(bool, fits);
    QFile file(m_tree.path("accounts"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(recordOf("annabel", "other") + "\n\n" + recordOf("anna", "password1") + '\n');
    file.close();
    const ProgramRun run = runProgram(names + QStringList{"--check", file.fileName()}, input);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, fits ? 0 : 1);
    QCOMPARE(run.output,
             QByteArray(fits ? "The password fits.\n" : "The password does not fit.\n"));
}

void tst_CameraAccount::checkOfAPrintedRecord()
{
    const QByteArray password = "g\xc3\xbcnther\n";
    const QStringList names{"--user", QString::fromUtf8("J\u00fcrgen"), "--realm", "a:b"};
    QFile file(m_tree.path("printed"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(runProgram(names + gGroup, password).output);
    file.close();
    const QStringList arguments = names + QStringList{"--check", file.fileName()};
    QCOMPARE(runProgram(arguments, password).exitCode, 0);
    QCOMPARE(runProgram(arguments, "gunther\n").exitCode, 1);
}

void tst_CameraAccount::unusableRecord_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("message");
    const QByteArray whole = recordOf("anna", "secret");
    const QByteArray digest = whole.right(32);
    const QByteArray damaged = "the record of 'anna' in '%1' is damaged";
    QTest::newRow("none") << QByteArray()
                          << QByteArray("'%1' has 0 records of 'anna', and not one");
    QTest::newRow("none of the user")
        << recordOf("annab", "secret") << QByteArray("'%1' has 0 records of 'anna', and not one");
    QTest::newRow("two") << whole + '\n' + whole
                         << QByteArray("'%1' has 2 records of 'anna', and not one");
    QTest::newRow("an empty hash") << "anna:admin::" + digest << damaged;
    QTest::newRow("a hash of two characters") << "anna:admin:ab:" + digest << damaged;
    QTest::newRow("a hash of zero bytes")
        << "anna:admin:" + QByteArray(13, '\0') + ':' + digest << damaged;
    QTest::newRow("no digest") << whole.left(whole.size() - 33) << damaged;
    QTest::newRow("a short digest") << whole.left(whole.size() - 1) << damaged;
    QTest::newRow("a fifth field") << whole + ":x" << damaged;
}

void tst_CameraAccount::unusableRecord()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, message);
    QFile file(m_tree.path("accounts"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    const ProgramRun run = runProgram(gNames + QStringList{"--check", file.fileName()}, "secret\n");
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.errors,
             "camera-account: " + message.replace("%1", file.fileName().toUtf8()) + '\n');
}

void tst_CameraAccount::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    using List = QStringList;
    const QString missing = m_tree.path("missing");
    QTest::newRow("nothing") << List{} << QByteArray("--user is missing; --help tells more");
    QTest::newRow("no realm") << List{"--user", "anna"}
                              << QByteArray("--realm is missing; --help tells more");
    QTest::newRow("no group") << gNames << QByteArray("--group is missing; --help tells more");
    QTest::newRow("an empty user")
        << List{"--user", "", "--realm", "r"} << QByteArray("--user is missing; --help tells more");
    QTest::newRow("a colon in the user")
        << List{"--user", "a:b"} << QByteArray("the user has a ':', which ends a field");
    QTest::newRow("a colon in the group")
        << gNames + List{"--group", "a:b"} << QByteArray("the group has a ':', which ends a field");
    QTest::newRow("a user outside Latin-1")
        << List{"--user", QString::fromUtf8("\u20ac")}
        << QByteArray("the user has characters outside Latin-1, which cameras don't know");
    QTest::newRow("a realm outside Latin-1")
        << List{"--user", "anna", "--realm", QString::fromUtf8("\U0001f600")}
        << QByteArray("the realm has characters outside Latin-1, which cameras don't know");
    QTest::newRow("a line feed in the user")
        << List{"--user", "a\nb"} << QByteArray("the user has control characters");
    QTest::newRow("no name of a file")
        << gNames + List{"--check", ""} << QByteArray("--check needs the name of a file");
    QTest::newRow("a group to check") << gNames + gGroup + List{"--check", "x"}
                                      << QByteArray("--group makes no sense with --check");
    QTest::newRow("a missing file")
        << gNames + List{"--check", missing}
        << "cannot read '" + missing.toUtf8() + "': No such file or directory";
    QTest::newRow("a folder as file")
        << gNames + List{"--check", m_tree.path()}
        << "cannot read '" + m_tree.path().toUtf8() + "': file to open is a directory";
    QTest::newRow("a password as option")
        << List{"--password", "x"} << QByteArray("Unknown option 'password'.");
}

void tst_CameraAccount::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const ProgramRun run = runProgram(arguments, "secret\n");
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors, "camera-account: " + message + '\n');
    QCOMPARE(run.output, QByteArray());
}

void tst_CameraAccount::passwordOnTheCommandLineIsNotRepeated()
{
    for (const QStringList &arguments :
         {gNames + gGroup + QStringList{"hunter2"}, gNames + QStringList{"--password=hunter2"}}) {
        const ProgramRun run = runProgram(arguments, "secret\n");
        QCOMPARE(run.exitCode, 2);
        QVERIFY(!run.errors.isEmpty());
        QVERIFY(!(run.errors + run.output).contains("hunter2"));
    }
}

void tst_CameraAccount::unusablePassword_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("none") << QByteArray() << QByteArray("the password is empty");
    QTest::newRow("an empty line") << QByteArray("\nx\n") << QByteArray("the password is empty");
    QTest::newRow("not UTF-8") << QByteArray("\xe9t\xe9\n")
                               << QByteArray("the password is not UTF-8");
    QTest::newRow("cut in a character")
        << QByteArray("a\xc3\n") << QByteArray("the password is not UTF-8");
    QTest::newRow("outside Latin-1")
        << QByteArray("\xe2\x82\xac\n")
        << QByteArray("the password has characters outside Latin-1, which cameras don't know");
    QTest::newRow("a zero byte, where the hash would end")
        << QByteArray("a\0b\n", 4) << QByteArray("the password has control characters");
    QTest::newRow("a carriage return, as some editors leave it")
        << QByteArray("secret\r\n") << QByteArray("the password has control characters");
    QTest::newRow("too long") << QByteArray(1025, 'x')
                              << QByteArray("the password is longer than 1024 bytes");
}

void tst_CameraAccount::unusablePassword()
{
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, message);
    const ProgramRun run = runProgram(gNames + gGroup, input);
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors, "camera-account: " + message + '\n');
    QCOMPARE(run.output, QByteArray());
}

void tst_CameraAccount::helpAndVersion()
{
    for (const char *option : {"--help", "-h"}) {
        const ProgramRun help = runProgram({option});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.output.contains("Exit codes:"));
        QVERIFY(help.output.contains("--realm <REALM>"));
        QCOMPARE(help.errors, QByteArray());
    }
    QCOMPARE(runProgram({"--version"}).output, QByteArray("camera-account 0.1.0\n"));
}

void tst_CameraAccount::lostOutput()
{
    const ProgramRun full =
        runScript("echo secret | \"$0\" --user u --group g --realm r >/dev/full", QStringList());
    QCOMPARE(full.exitCode, 2);
    QCOMPARE(full.errors,
             QByteArray("camera-account: cannot write the output: No space left on device\n"));
    const ProgramRun closedInput =
        runScript("exec \"$0\" --user u --group g --realm r <&-", QStringList());
    QCOMPARE(closedInput.exitCode, 2);
    QCOMPARE(closedInput.errors,
             QByteArray("camera-account: cannot read the password: Bad file descriptor\n"));
}

void tst_CameraAccount::terminal()
{
    QFile file(m_tree.path("accounts"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(recordOf("anna", "hunter2") + '\n');
    file.close();
    TerminalRun run(gNames + QStringList{"--check", file.fileName()});
    QVERIFY(run.waitForPrompt("Password: "));
    QVERIFY(!run.echoes());
    QVERIFY(run.type("hunter2\n"));
    QVERIFY(run.finish());
    QCOMPARE(run.process().exitCode(), 0);
    QCOMPARE(run.process().readAllStandardOutput(), QByteArray("The password fits.\n"));
    QCOMPARE(run.errors(), QByteArray("Password: "));
    QCOMPARE(run.shown(), QByteArray("\r\n"));
    QVERIFY(run.echoes()); // as it was
}

void tst_CameraAccount::terminalTypedTwice_data()
{
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("errors");
    QTest::newRow("the same") << QByteArray("hunter2") << 0 << QByteArray("Password: Again: ");
    QTest::newRow("another")
        << QByteArray("hunter3") << 2
        << QByteArray("Password: Again: camera-account: these were two different passwords\n");
}

void tst_CameraAccount::terminalTypedTwice()
{
    QFETCH(QByteArray, second);
    TerminalRun run(gNames + gGroup);
    QVERIFY(run.waitForPrompt("Password: "));
    QVERIFY(run.type("hunter2\n"));
    QVERIFY(run.waitForPrompt("Again: "));
    QVERIFY(run.type(second + '\n'));
    QVERIFY(run.finish());
    QTEST(run.process().exitCode(), "exitCode");
    QTEST(run.errors(), "errors");
    QCOMPARE(run.process().readAllStandardOutput().startsWith("anna:admin:"),
             run.process().exitCode() == 0);
    QCOMPARE(run.shown(), QByteArray("\r\n\r\n"));
}

void tst_CameraAccount::terminalInterrupted()
{
    TerminalRun run(gNames + gGroup);
    QVERIFY(run.waitForPrompt("Password: "));
    QVERIFY(run.type("hun"));
    run.interrupt();
    QVERIFY(run.finish());
    QCOMPARE(run.process().exitStatus(), QProcess::CrashExit); // by the signal, as a shell expects
    QVERIFY(run.echoes());
    QVERIFY(!run.shown().contains("hun"));
}

QTEST_GUILESS_MAIN(tst_CameraAccount)

#include "tst_CameraAccount.moc"
