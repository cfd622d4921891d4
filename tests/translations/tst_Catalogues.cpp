#include "TsFile.h"

#include <Vokit/Vokit.h>

#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <algorithm>

namespace {

const QStringList gLanguages{"de", "fr"};

QString catalogue(const QString &language)
{
    return ":/Translations/Vokit_" + language + ".qm";
}

test::TsFile source(const QString &language)
{
    return test::TsFile(QString(PROJECT_FOLDER "/resources/Vokit_%1.ts").arg(language));
}

// What the catalogue says, and null where it has no such message: no way back to the source text.
QString lookUp(const QTranslator &translator, const QString &context, const QString &text)
{
    return translator.translate(context.toUtf8().constData(), text.toUtf8().constData());
}

// A compiled catalogue is a magic number of 16 bytes and sections, each with its kind and size; the
// one of kind 0x42 has 8 bytes for each message.
int messagesIn(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    file.seek(16);
    QDataStream stream(&file);
    for (quint8 kind = 0; !stream.atEnd();) {
        quint32 size = 0;
        stream >> kind >> size;
        if (kind == 0x42)
            return static_cast<int>(size / 8);
        stream.skipRawData(static_cast<int>(size));
    }
    return -1;
}

QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern("%L?\\d{1,2}");
    QStringList found;
    for (auto match = pattern.globalMatch(text); match.hasNext();)
        found.append(match.next().captured());
    found.sort();
    return found;
}

// Quotation marks, line ends and the like, in their order; an apostrophe within a word is none.
QString signsOf(const QString &text)
{
    static const QRegularExpression others("\\p{L}'\\p{L}|[^\n'.;=&>()!]");
    return QString(text).remove(others);
}

// The contexts of a text that lupdate found. It takes the argument of the validators' template for
// their class; the catalogues have their text under the name of each.
QStringList contextsOf(const QString &found)
{
    if (found != "vogen::Property")
        return {found};
    return {"DefaultIntValidator", "DefaultUIntValidator", "DefaultU64Validator",
            "DefaultFloatValidator", "DefaultDoubleValidator"};
}

} // namespace

// The catalogues as they are: whole, and true to the texts in the code.
class tst_Catalogues : public QObject
{
    Q_OBJECT

private slots:
    void loads_data();
    void loads();
    void contexts_data();
    void contexts();
    void messages_data();
    void messages();
    void told_data();
    void told();
    void namesStayApart_data();
    void namesStayApart();
    void textsInTheCode_data();
    void textsInTheCode();
    void texts_data();
    void texts();

private:
    static void addLanguages();
};

void tst_Catalogues::addLanguages()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : gLanguages)
        QTest::newRow(qPrintable(language)) << language;
}

void tst_Catalogues::loads_data()
{
    addLanguages();
}

void tst_Catalogues::loads()
{
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(translator.load(catalogue(language)));
    QCOMPARE(translator.language(), language);
    QCOMPARE(messagesIn(catalogue(language)), 79);
    // As an application does it, by the user's language.
    QTranslator byLocale;
    QVERIFY(byLocale.load(QLocale(language), "Vokit", "_", ":/Translations"));
    QCOMPARE(lookUp(byLocale, "ActionLog", "Action log"),
             lookUp(translator, "ActionLog", "Action log"));
    QCOMPARE(QDir(":/Translations").entryList(), QStringList({"Vokit_de.qm", "Vokit_fr.qm"}));
}

void tst_Catalogues::contexts_data()
{
    addLanguages();
}

void tst_Catalogues::contexts()
{
    QFETCH(QString, language);
    const test::TsFile file = source(language);
    QCOMPARE(file.error, QString());
    QCOMPARE(file.language, language);
    QMap<QString, int> count;
    QSet<QPair<QString, QString>> keys;
    for (const test::Message &message : file.messages) {
        ++count[message.context];
        keys.insert({message.context, message.source});
    }
    const QMap<QString, int> expected{
        {"ActionLog", 51},          {"ExportActionLog", 15},      {"ExportFormats", 7},
        {"vo::ActionLog", 1},       {"DefaultIntValidator", 1},   {"DefaultUIntValidator", 1},
        {"DefaultU64Validator", 1}, {"DefaultFloatValidator", 1}, {"DefaultDoubleValidator", 1}};
    QCOMPARE(count, expected);
    QCOMPARE(keys.size(), 79); // none twice
}

void tst_Catalogues::messages_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("translation");
    QTest::addColumn<bool>("isFinished");
    for (const QString &language : gLanguages) {
        const test::TsFile file = source(language);
        for (const test::Message &message : file.messages) {
            const QString name = language + ' ' + message.context + ": " + message.source;
            QTest::newRow(name.toUtf8().constData())
                << language << message.context << message.source << message.translation
                << message.isFinished;
        }
    }
}

void tst_Catalogues::messages()
{
    QFETCH(QString, language);
    QFETCH(QString, context);
    QFETCH(QString, text);
    QFETCH(QString, translation);
    QTEST(true, "isFinished");
    QVERIFY(!translation.isEmpty());
    QCOMPARE(translation.trimmed(), translation);
    QCOMPARE(placeholders(translation), placeholders(text));
    QCOMPARE(signsOf(translation), signsOf(text));
    if (text.endsWith('.') || text.endsWith('!'))
        QCOMPARE(translation.right(1), text.right(1));
    // In French a space that doesn't break stands before these; in German none does.
    const auto before = language == "fr" ? QRegularExpression("[^\\x{A0}][;:!?]")
                                         : QRegularExpression("[\\s\\x{A0}][;:!?]");
    QVERIFY2(!translation.contains(before), qPrintable(translation));
    QTranslator translator;
    QVERIFY(translator.load(catalogue(language)));
    QCOMPARE(lookUp(translator, context, text), translation);
}

void tst_Catalogues::told_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("german");
    QTest::addColumn<QString>("french");
    const auto row = [](const char *context, const char *text, const char *german,
                        const char *french) {
        QTest::newRow(text) << context << text << QString::fromUtf8(german)
                            << QString::fromUtf8(french);
    };
    row("ActionLog", "Action log", "Aktionsprotokoll", "Journal d'actions");
    row("ActionLog", "Logon & Logoff", "Anmeldung & Abmeldung",
        "Connexion & d\xc3\xa9"
        "connexion");
    row("ActionLog", "PTZ post", "Post-PTZ", "PTZ \xc3\xa0 posteriori");
    row("ActionLog", "Upload Assistant", "Update-Assistent",
        "Assistant de t\xc3\xa9l\xc3\xa9"
        "chargement");
    row("ActionLog", "Could not open file '%1'",
        "Die Datei '%1' konnte nicht ge\xc3\xb6"
        "ffnet werden",
        "Impossible d'ouvrir le fichier '%1'");
    row("vo::ActionLog", "ActionLog", "Aktionsprotokoll", "JournalDActions");
}

void tst_Catalogues::told()
{
    QFETCH(QString, context);
    QFETCH(QString, text);
    QTranslator german;
    QVERIFY(german.load(catalogue("de")));
    QTEST(lookUp(german, context, text), "german");
    QTranslator french;
    QVERIFY(french.load(catalogue("fr")));
    QTEST(lookUp(french, context, text), "french");
}

void tst_Catalogues::namesStayApart_data()
{
    addLanguages();
}

// Two categories, actions, formats or states of one name could not be told apart in a list.
void tst_Catalogues::namesStayApart()
{
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(translator.load(catalogue(language)));
    QStringList formats;
    for (int format = 0; format <= vo::ExportActionLog::FormatUnknown; ++format)
        formats.append(vo::ExportActionLog::formatsData(format).name);
    QStringList states;
    for (int state = 0; state < vo::ExportActionLog::StateNone; ++state)
        states.append(vo::ExportActionLog::stateData(state).name);
    const auto distinct = [&translator](const char *context, const QStringList &names) {
        QSet<QString> found;
        for (const QString &name : names)
            found.insert(lookUp(translator, context, name));
        return found.contains(QString()) ? -1 : found.size();
    };
    QCOMPARE(distinct("ActionLog", vo::LogCategory::categoryNames()), 37);
    QCOMPARE(distinct("ActionLog", vo::logEntryFactory()->entryNames()), 8);
    QCOMPARE(distinct("ExportActionLog", formats), 11);
    QCOMPARE(distinct("ExportActionLog", states), 4);
}

void tst_Catalogues::textsInTheCode_data()
{
    addLanguages();
}

// Both ways: a text of the code that the catalogue lacks, and a message that the code no longer
// has.
void tst_Catalogues::textsInTheCode()
{
    QFETCH(QString, language);
    const QTemporaryDir folder;
    const QString path = folder.filePath("found.ts");
    QProcess lupdate;
    lupdate.start(LUPDATE, {"-silent", "-recursive", PROJECT_FOLDER "/src",
                            PROJECT_FOLDER "/platform", "-ts", path});
    QVERIFY(lupdate.waitForFinished());
    QCOMPARE(lupdate.exitStatus(), QProcess::NormalExit);
    QCOMPARE(lupdate.exitCode(), 0);
    const test::TsFile found(path);
    QCOMPARE(found.error, QString());
    // What an application says of the log, not the library.
    QSet<QString> inTheCode{"ActionLog: Could not logon user '%1' (error code '%2').\n"
                            "Please check your settings in 'Tools > Options > Logging'!",
                            "vo::ActionLog: ActionLog"};
    for (const test::Message &message : found.messages) {
        for (const QString &context : contextsOf(message.context))
            inTheCode.insert(context + ": " + message.source);
    }
    QSet<QString> inTheCatalogue;
    for (const test::Message &message : source(language).messages)
        inTheCatalogue.insert(message.context + ": " + message.source);
    QCOMPARE((inTheCode - inTheCatalogue).values().join('\n'), QString());
    QCOMPARE((inTheCatalogue - inTheCode).values().join('\n'), QString());
}

void tst_Catalogues::texts_data()
{
    addLanguages();
}

// What the library gives in English without a catalogue, it gives in the language with it: the
// names of categories, of actions and of entries, through the interface.
void tst_Catalogues::texts()
{
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(translator.load(catalogue(language)));
    const auto translated = [&translator](const QStringList &english) {
        QStringList texts;
        for (const QString &text : english)
            texts.append(text == "%1" ? text : lookUp(translator, "ActionLog", text));
        return texts;
    };
    const auto ofEntries = [] {
        QStringList texts;
        for (const char *id : {"ALog", "ExpW", "ExpS", "ExpA", "ExpE", "ExpD", "ExpR", "XmlP"}) {
            const QScopedPointer<vo::LogEntry> entry(vo::logEntryFactory()->create(QString(id)));
            texts << entry->action() << entry->descriptionText() << entry->category().name();
        }
        return texts;
    };
    const auto sorted = [](QStringList texts) {
        texts.sort();
        return texts;
    };
    const QStringList categories = translated(vo::LogCategory::categoryNames());
    const QStringList actions = translated(vo::logEntryFactory()->entryNames());
    const QStringList entries = translated(ofEntries());
    for (const QStringList &texts : {categories, actions, entries})
        QVERIFY(!texts.contains(QString()));

    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(vo::LogCategory::categoryNames(), sorted(categories));
    QCOMPARE(vo::logEntryFactory()->entryNames(), sorted(actions));
    QCOMPARE(ofEntries(), entries);
}

QTEST_GUILESS_MAIN(tst_Catalogues)
#include "tst_Catalogues.moc"
