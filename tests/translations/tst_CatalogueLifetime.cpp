#include <QtTest>

// The catalogues come and go with the library, without a call from its client.
class tst_CatalogueLifetime : public QObject
{
    Q_OBJECT

private slots:
    void loadAndUnload();
};

void tst_CatalogueLifetime::loadAndUnload()
{
    const auto catalogues = [] { return QDir(":/Translations").entryList(); };
    const QStringList none;
    const QStringList both{"Vokit_de.qm", "Vokit_fr.qm"};
    QLibrary library(VOKIT_LIBRARY);
    QCOMPARE(catalogues(), none);
    QVERIFY2(library.load(), qPrintable(library.errorString()));
    QCOMPARE(catalogues(), both);
    QVERIFY2(library.unload(), qPrintable(library.errorString()));
    QCOMPARE(catalogues(), none);
}

QTEST_GUILESS_MAIN(tst_CatalogueLifetime)
#include "tst_CatalogueLifetime.moc"
