#include <Vokit/Vokit.h>

#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

using vo::ActionLog;
using vo::ExportActionLog;

namespace {

constexpr quint64 gFrom = 1795253645000000;
constexpr quint64 gTo = gFrom + 60000000;

QString value(int index)
{
    const QList<vo::LogEntry *> &entries = ActionLog::getInstance()->entries();
    return entries.isEmpty() ? QString() : entries.last()->values().at(index)->toString();
}

// The message of what the call throws.
template <class Call>
QString thrown(Call call)
{
    try {
        call();
    } catch (const vo::ActionLogException &e) {
        return e.message();
    }
    return {};
}

QString outOfRange()
{
    vogen::PropertySet set;
    vogen::IntProperty property("p", "", 10);
    vogen::DefaultIntValidator(1, 9).validate(set, property);
    return property.errorText();
}

} // namespace

// A client on a German system, first without a catalogue and then with one: what the library says
// in which language.
class tst_TranslatedLog : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("LC_ALL", "de_DE.UTF-8"); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void englishByItself();
    void translatedWords_data();
    void translatedWords();
    void exportDescriptions_data();
    void exportDescriptions();
    void messagesOfTheFile_data();
    void messagesOfTheFile();
    void rangeText_data();
    void rangeText();

private:
    static void addLanguages();
    void install();

    QTemporaryDir m_folder;
    QScopedPointer<QTranslator> m_catalogue;
};

void tst_TranslatedLog::initTestCase()
{
    QCoreApplication::setOrganizationName("Test");
    QCoreApplication::setApplicationName("Client");
}

void tst_TranslatedLog::init()
{
    QVERIFY(QDir(m_folder.path()).removeRecursively());
    qputenv("XDG_STATE_HOME", m_folder.path().toLocal8Bit());
    ActionLog::getInstance()->setSuspended(false);
}

void tst_TranslatedLog::cleanup()
{
    m_catalogue.reset(); // which takes it out of the application
    ActionLog::deleteActionLog();
}

void tst_TranslatedLog::addLanguages()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("German") << "de";
    QTest::newRow("French") << "fr";
}

// By the row's language.
void tst_TranslatedLog::install()
{
    QFETCH(QString, language);
    m_catalogue.reset(new QTranslator);
    QVERIFY(m_catalogue->load(":/Translations/Vokit_" + language));
    QVERIFY(QCoreApplication::installTranslator(m_catalogue.data()));
    QVERIFY(ActionLog::tr("ActionLog") != "ActionLog");
}

// The library has catalogues and installs none, whatever the language of the system.
void tst_TranslatedLog::englishByItself()
{
    QCOMPARE(QLocale().language(), QLocale::German);
    ExportActionLog::send("words", ExportActionLog::StateFinished);
    QVERIFY(QFile::exists(":/Translations/Vokit_de.qm"));
    QCOMPARE(ActionLog::getInstance()->entries().last()->action(), QString("Export done"));
    QCOMPARE(vo::LogCategory(vo::LogCatActionLog).name(), QString("Action log"));
    QVERIFY(vo::LogCategory::categoryNames().contains("Remote control"));
    QVERIFY(vo::logEntryFactory()->entryNames().contains("Switched log"));
    QCOMPARE(ActionLog::tr("ActionLog"), QString("ActionLog"));
    QCOMPARE(outOfRange(), QString("Value out of range."));
}

void tst_TranslatedLog::translatedWords_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("done");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("moved");
    QTest::newRow("German") << "de"
                            << "Export abgeschlossen"
                            << "Aktionsprotokoll"
                            << "Die Protokollierung wurde von 'a' auf 'b' umgestellt.";
    QTest::newRow("French") << "fr"
                            << QString::fromUtf8("Exportation termin\xc3\xa9"
                                                 "e")
                            << "Journal d'actions"
                            << QString::fromUtf8("La journalisation est pass\xc3\xa9"
                                                 "e de 'a' \xc3\xa0 'b'.");
}

void tst_TranslatedLog::translatedWords()
{
    install();
    const vo::ActionLogContextSwitchEntry entry("a", "b");
    QTEST(entry.description(), "moved");
    QTEST(entry.category().name(), "category");
    QTEST(ExportDoneLogEntry("words").action(), "done");
}

void tst_TranslatedLog::exportDescriptions_data()
{
    addLanguages();
}

// The catalogues have these sentences in another context than the one they are looked up in: they
// stay English, as does the format's name in them.
void tst_TranslatedLog::exportDescriptions()
{
    install();
    struct
    {
        quint64 from, to;
        const char *target, *text;
    } const rows[] = {
        {0, 0, "", "Format='%1'; Source='%2'."},
        {0, 0, "t", "Format='%1'; Source='%2'; Target='%3'."},
        {gFrom, 0, "", "Format='%1'; Source='%2'; Timestamp='%4'.%3"},
        {gFrom, 0, "t", "Format='%1'; Source='%2'; Timestamp='%4'; Target='%3'."},
        {gFrom, gTo, "",
         "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'.%3"},
        {gFrom, gTo, "t",
         "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'; Target='%3'."},
    };
    for (const auto &row : rows) {
        QVERIFY(QCoreApplication::translate("ExportFormats", row.text) != row.text);
        ExportActionLog::send(ExportActionLog::FormatPrinter, "s", row.target, row.from, row.to,
                              ExportActionLog::StateStart);
        QCOMPARE(value(2), QString(row.text));
        QCOMPARE(value(3), QString("Printer"));
    }
    const char *const rename = "'%1%2' to '%1%3'.";
    QVERIFY(QCoreApplication::translate("ExportFormats", rename) != rename);
    ExportActionLog::send("/usb/", "new.avi", "");
    QCOMPARE(value(2), QString(rename));
}

void tst_TranslatedLog::messagesOfTheFile_data()
{
    addLanguages();
}

// Looked up in "vo::ActionLog", while the catalogues have them in "ActionLog".
void tst_TranslatedLog::messagesOfTheFile()
{
    install();
    for (const char *text : {"Could not open file '%1'", "Action log '%1' invalid header version.",
                             "Error reading log file '%1'; Line '%2'; Column '%3'"}) {
        QVERIFY(QCoreApplication::translate("ActionLog", text) != text);
        QCOMPARE(ActionLog::tr(text), QString(text));
    }

    QVERIFY(QDir().mkpath(m_folder.path()));
    ActionLog onFolder(m_folder.path());
    QCOMPARE(thrown([&onFolder] { onFolder.readLog(); }),
             QString("Could not open file '%1'").arg(m_folder.path()));

    QFile file(m_folder.filePath("damaged.vol"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<Entries></Wrong>");
    file.close();
    ActionLog damaged(file.fileName());
    const QString message = thrown([&damaged] { damaged.readLog(); });
    QVERIFY2(message.startsWith("Error reading log file '"), qPrintable(message));
    QVERIFY2(message.contains("'; Line '1'; Column '"), qPrintable(message));
}

void tst_TranslatedLog::rangeText_data()
{
    addLanguages();
}

// Looked up in "QObject", while the catalogues have it under each validator's name.
void tst_TranslatedLog::rangeText()
{
    install();
    const char *const text = "Value out of range.";
    for (const char *context :
         {"DefaultIntValidator", "DefaultUIntValidator", "DefaultU64Validator",
          "DefaultFloatValidator", "DefaultDoubleValidator"})
        QVERIFY(QCoreApplication::translate(context, text) != text);
    QCOMPARE(outOfRange(), QString(text));
}

QTEST_GUILESS_MAIN(tst_TranslatedLog)
#include "tst_TranslatedLog.moc"
