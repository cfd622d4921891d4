#include <Vokit/CText2Image>
#include <Vokit/TimeConversions>

#include <QtTest>

// frame-stamp as a user runs it: pictures in, pictures out, messages and exit codes.

namespace {

struct Run
{
    int exitCode = -1; ///< -1 for a crash
    QByteArray output;
    QByteArray errors;
};

Run runFrameStamp(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TZ", "Europe/Berlin");
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PROGRAM), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

QByteArray little(quint32 number)
{
    QByteArray bytes;
    for (int i = 0; i < 4; ++i)
        bytes += static_cast<char>(number >> (8 * i));
    return bytes;
}

// Red, green, blue: a value of its own for each, all below those of a light glyph's neighbour.
QByteArray colourAt(int x, int y)
{
    QByteArray rgb;
    rgb += static_cast<char>(x % 100);
    rgb += static_cast<char>(y % 100 + 1);
    rgb += static_cast<char>((x + y) % 50 + 2);
    return rgb;
}

// The picture's colours by rows from the top.
QByteArray colours(int width, int height)
{
    QByteArray bytes;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            bytes += colourAt(x, y);
    }
    return bytes;
}

QByteArray ppm(int width, int height, const QByteArray &rgb)
{
    return "P6\n" + QByteArray::number(width) + ' ' + QByteArray::number(height) + "\n255\n" + rgb;
}

QByteArray bmp(int width, int height, const QByteArray &rgb, bool bottomUp = true)
{
    const int gap = (4 - width * 3 % 4) % 4;
    const auto size = static_cast<quint32>((width * 3 + gap) * height);
    QByteArray bytes = "BM" + little(54 + size) + little(0) + little(54) + little(40) +
                       little(static_cast<quint32>(width)) +
                       little(static_cast<quint32>(bottomUp ? height : -height)) +
                       little(1 | 24 << 16) + little(0) + little(size) + QByteArray(16, '\0');
    for (int i = 0; i < height; ++i) {
        const int y = bottomUp ? height - 1 - i : i;
        for (int x = 0; x < width; ++x) {
            const QByteArray colour = rgb.mid((y * width + x) * 3, 3);
            bytes += colour.at(2);
            bytes += colour.at(1);
            bytes += colour.at(0);
        }
        bytes += QByteArray(gap, '\0');
    }
    return bytes;
}

// What the picture has to be with the text at that place; "h" stands for the hourglass.
QByteArray stamped(QByteArray rgb, int width, const QByteArray &text, int left, int top)
{
    const vo::CText2Image glyphs;
    for (const char character : text) {
        unsigned char cell[960];
        if (character == 'h')
            glyphs.symbol2Image(cell, vo::CText2Image::eHourglass);
        else
            glyphs.digit2Image(cell, character);
        for (int y = 0; y < 20; ++y) {
            for (int i = 0; i < 48; ++i)
                rgb[((top + y) * width + left) * 3 + i] =
                    static_cast<char>(cell[(19 - y) * 48 + i]);
        }
        left += 16;
    }
    return rgb;
}

const QString gTime = "1795269845123456"; // 2026-11-21 14:04:05.123456 UTC
const QByteArray gText = "21.11.2026-15:04:05.123";

} // namespace

class tst_FrameStamp : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void pictures_data();
    void pictures();
    void testPicture();
    void times_data();
    void times();
    void now();
    void folder();
    void edges_data();
    void edges();
    void failures_data();
    void failures();
    void damagedPictures_data();
    void damagedPictures();
    void unwritable();
    void help();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }

    QScopedPointer<QTemporaryDir> m_folder;
};

void tst_FrameStamp::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void tst_FrameStamp::pictures_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QByteArray>("expected");
    // A width that leaves gaps between the rows of a BMP.
    const int width = 401, height = 50;
    const QByteArray before = colours(width, height);
    const QByteArray after = stamped(before, width, gText + 'h', 11, 7);
    const QByteArray comments = "P6#by hand\n401 # wide\n#and\n50\n255\n" + before + "behind";
    QTest::newRow("PPM to PPM") << ppm(width, height, before) << "out.ppm"
                                << ppm(width, height, after);
    QTest::newRow("PPM with comments")
        << QByteArray("P6\n") + comments.mid(2) << "out.ppm" << ppm(width, height, after);
    QTest::newRow("PPM to BMP") << ppm(width, height, before) << "out.bmp"
                                << bmp(width, height, after);
    QTest::newRow("BMP to BMP") << bmp(width, height, before) << "out.BMP"
                                << bmp(width, height, after);
    QTest::newRow("BMP from top to bottom")
        << bmp(width, height, before, false) << "out.bmp" << bmp(width, height, after);
    QTest::newRow("BMP to PPM") << bmp(width, height, before) << "out.PPM"
                                << ppm(width, height, after);
}

void tst_FrameStamp::pictures()
{
    QFETCH(QByteArray, input);
    QFETCH(QString, output);
    write("in", input);
    const Run run = runFrameStamp(
        {"--input", path("in"), "--time", gTime, "--at", "11,7", "--hourglass", path(output)});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, path(output).toUtf8() + ": " + gText + '\n');
    QFETCH(QByteArray, expected);
    QVERIFY(contentOf(path(output)) == expected);
    QCOMPARE(contentOf(path("in")), input);
}

void tst_FrameStamp::testPicture()
{
    QCOMPARE(runFrameStamp({"--time", gTime, path("out.ppm")}).exitCode, 0);
    const QByteArray made = contentOf(path("out.ppm"));
    const QByteArray head = ppm(640, 360, QByteArray());
    QVERIFY(made.startsWith(head));
    const QByteArray rgb = made.mid(head.size());
    QCOMPARE(rgb.size(), 640 * 360 * 3);
    QVERIFY(stamped(rgb, 640, gText, 16, 16) == rgb); // the label is there, at the usual place
    QCOMPARE(rgb.left(3), QByteArray(3, '\xff'));     // and the picture begins bright
}

void tst_FrameStamp::times_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("microseconds") << gTime << gText;
    QTest::newRow("zero") << "0" << QByteArray("01.01.1970-01:00:00.000");
    QTest::newRow("local date") << "2026-11-21T15:04:05.123" << gText;
    QTest::newRow("date in UTC") << "2026-11-21T14:04:05.123Z" << gText;
    QTest::newRow("date with an offset") << "2026-11-21T09:04:05.123-05:00" << gText;
    QTest::newRow("a day") << "2026-06-21" << QByteArray("21.06.2026-00:00:00.000");
}

void tst_FrameStamp::times()
{
    QFETCH(QString, time);
    QFETCH(QByteArray, text);
    const Run run = runFrameStamp({"--time", time, path("out.bmp")});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output, path("out.bmp").toUtf8() + ": " + text + '\n');
}

void tst_FrameStamp::now()
{
    const QString form = "dd.MM.yyyy-hh:mm:ss.zzz";
    qputenv("TZ", "Europe/Berlin");
    const QDateTime before = QDateTime::currentDateTime();
    const Run run = runFrameStamp({path("out.bmp")});
    const QDateTime after = QDateTime::currentDateTime();
    const QDateTime shown =
        QDateTime::fromString(QString::fromLatin1(run.output.trimmed().right(23)), form);
    qputenv("TZ", "Asia/Kolkata");
    QVERIFY(before.toString("yyyyMMddhhmmsszzz") <= shown.toString("yyyyMMddhhmmsszzz"));
    QVERIFY(shown.toString("yyyyMMddhhmmsszzz") <= after.toString("yyyyMMddhhmmsszzz"));
}

void tst_FrameStamp::folder()
{
    const Run run = runFrameStamp({"--time", gTime, path("")});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(QDir(path("")).entryList(QDir::Files), QStringList{"20261121_150405_123.bmp"});
}

void tst_FrameStamp::edges_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<bool>("fits");
    QTest::newRow("upper left corner") << "0,0" << true;
    QTest::newRow("lower right corner") << "32,30" << true; // 400 less 23 x 16, 50 less 20
    QTest::newRow("one to the right") << "33,30" << false;
    QTest::newRow("one further down") << "32,31" << false;
    QTest::newRow("left of it") << "-1,0" << false;
    QTest::newRow("above it") << "0,-1" << false;
    QTest::newRow("far away") << "2147483647,2147483647" << false;
}

void tst_FrameStamp::edges()
{
    QFETCH(QString, place);
    QFETCH(bool, fits);
    write("in", ppm(400, 50, colours(400, 50)));
    const Run run =
        runFrameStamp({"--input", path("in"), "--time", gTime, "--at=" + place, path("out.ppm")});
    QCOMPARE(run.exitCode, fits ? 0 : 2);
    QCOMPARE(QFile::exists(path("out.ppm")), fits);
    if (!fits) {
        QCOMPARE(run.errors, "frame-stamp: a stamp of 368 x 20 pixels at " + place.toUtf8() +
                                 " is not within the picture of 400 x 50\n");
    }
}

void tst_FrameStamp::failures_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    using List = QStringList;
    QTest::newRow("no output") << List{}
                               << QByteArray(
                                      "one output is needed, 0 are given; --help tells more");
    QTest::newRow("two outputs") << List{"a.bmp", "b.bmp"}
                                 << QByteArray(
                                        "one output is needed, 2 are given; --help tells more");
    QTest::newRow("unknown option")
        << List{"--colour", "a.bmp"} << QByteArray("Unknown option 'colour'.");
    for (const char *time : {"-5", "today", "1969-12-31T00:00:00", "18446744073709551616", ""})
        QTest::addRow("time '%s'", time)
            << List{"--time", time, "a.bmp"}
            << "'" + QByteArray(time) + "' is no time from 1970 on; --help tells more";
    for (const char *place : {"16", "1,2,3", "left,top", ",", ""})
        QTest::addRow("place '%s'", place)
            << List{"--at", place, "a.bmp"}
            << "'" + QByteArray(place) + "' is no place; write it as 16,16";
    QTest::newRow("other ending") << List{"a.jpg"}
                                  << QByteArray(
                                         "cannot write 'a.jpg': the name must end in .bmp or .ppm");
    QTest::newRow("no ending") << List{"bmp"}
                               << QByteArray(
                                      "cannot write 'bmp': the name must end in .bmp or .ppm");
    QTest::newRow("empty input") << List{"--input", "", "a.bmp"}
                                 << QByteArray("--input needs the name of a file");
    QTest::newRow("missing input")
        << List{"--input", "/nowhere/in.bmp", "a.bmp"}
        << QByteArray("cannot read picture '/nowhere/in.bmp': No such file or directory");
    QTest::newRow("missing folder")
        << List{"/nowhere/a.bmp"}
        << QByteArray("cannot write '/nowhere/a.bmp': No such file or directory");
}

void tst_FrameStamp::failures()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const Run run = runFrameStamp(arguments);
    QCOMPARE(run.errors, "frame-stamp: " + message + '\n');
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QByteArray());
}

void tst_FrameStamp::damagedPictures_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("reason");
    const QByteArray whole = bmp(400, 50, colours(400, 50));
    const auto changed = [&whole](int place, const QByteArray &bytes) {
        return QByteArray(whole).replace(place, bytes.size(), bytes);
    };
    const QByteArray pixels = "it ends within its pixels";
    const QByteArray sides = "its width or height is not from 1 to 16384";
    const QByteArray kind = "only BMP files of 24 bits per pixel, not compressed, are taken";
    const QByteArray unknown = "it is no BMP and no binary PPM file";
    QTest::newRow("empty") << QByteArray() << unknown;
    QTest::newRow("a text PPM") << QByteArray("P3\n1 1\n255\n1 2 3") << unknown;
    QTest::newRow("P6 alone") << QByteArray("P6") << unknown;
    QTest::newRow("BMP cut in its header")
        << whole.left(53) << QByteArray("it ends within its header");
    QTest::newRow("BMP of the header alone") << whole.left(54) << pixels;
    QTest::newRow("BMP one byte short") << whole.left(whole.size() - 1) << pixels;
    QTest::newRow("BMP with pixels far away") << changed(10, little(0xffffffff)) << pixels;
    QTest::newRow("BMP with pixels in its header") << changed(10, little(53)) << pixels;
    QTest::newRow("BMP of 8 bits") << changed(28, "\x08") << kind;
    QTest::newRow("BMP compressed") << changed(30, "\x01") << kind;
    QTest::newRow("BMP of no width") << changed(18, little(0)) << sides;
    QTest::newRow("BMP of negative width") << changed(18, little(0xffffffff)) << sides;
    QTest::newRow("BMP too wide") << changed(18, little(16385)) << sides;
    QTest::newRow("BMP: the least height") << changed(22, little(0x80000000)) << sides;
    QTest::newRow("BMP larger than its file") << changed(18, little(16384)) << pixels;
    QTest::newRow("PPM without numbers") << QByteArray("P6\n") << sides;
    QTest::newRow("PPM with a comment only") << QByteArray("P6\n#") << sides;
    QTest::newRow("PPM too wide") << QByteArray("P6\n99999999999999999999 1\n255\n") << sides;
    QTest::newRow("PPM of two bytes per colour")
        << QByteArray("P6\n1 1\n65535\n123456")
        << QByteArray("only PPM files with 255 as their greatest value are taken");
    QTest::newRow("PPM larger than its file") << QByteArray("P6\n16384 16384\n255\n") << pixels;
    QTest::newRow("PPM cut behind its header") << QByteArray("P6\n1 1\n255") << pixels;
}

void tst_FrameStamp::damagedPictures()
{
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, reason);
    write("in", input);
    const Run run = runFrameStamp({"--input", path("in"), path("out.bmp")});
    QCOMPARE(run.errors,
             "frame-stamp: cannot read picture '" + path("in").toUtf8() + "': " + reason + '\n');
    QCOMPARE(run.exitCode, 2);
    QVERIFY(!QFile::exists(path("out.bmp")));
}

void tst_FrameStamp::unwritable()
{
    const Run run = runFrameStamp({"--time", gTime, "/proc/a.bmp"});
    QCOMPARE(run.exitCode, 2);
    QVERIFY(run.errors.startsWith("frame-stamp: cannot write '/proc/a.bmp': "));
    QCOMPARE(run.output, QByteArray());
}

void tst_FrameStamp::help()
{
    const Run help = runFrameStamp({"--help"});
    QCOMPARE(help.exitCode, 0);
    for (const char *word : {"OUTPUT", "--input", "--time", "--at", "--hourglass", "Exit codes"})
        QVERIFY2(help.output.contains(word), word);
    QCOMPARE(runFrameStamp({"--version"}).output, QByteArray("frame-stamp 0.1.0\n"));
}

QTEST_APPLESS_MAIN(tst_FrameStamp)
#include "tst_FrameStamp.moc"
