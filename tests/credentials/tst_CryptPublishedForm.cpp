#include "credentials/Passwords.h"

#include <QtTest>

using vogen::Crypt;

/// crypt(salt, password) as a library built with VOKIT_PUBLISHED_CRYPT has it.
class tst_CryptPublishedForm : public QObject
{
    Q_OBJECT

private slots:
    void cryptWithSalt_data();
    void cryptWithSalt();
    void sameAsTheBitLine();
    void cryptWithoutSalt();
    void intToFourBytesLeavesTheArray();
};

void tst_CryptPublishedForm::cryptWithSalt_data()
{
    QTest::addColumn<QString>("salt");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("value");
    const auto hash = [](const QByteArray &password, const QByteArray &salt) {
        return QString::fromLatin1(test::hashOf(password, salt));
    };
    QTest::newRow("a published example")
        << QString("rl") << QString("rasmuslerdorf") << QString("rl.3StKT.4T8M");
    QTest::newRow("a short password is filled with zeros")
        << QString("CC") << QString("U*U***U") << QString("CCX.K.MFy4Ois");
    QTest::newRow("an empty one") << QString("SD") << QString("") << QString("SDbsugeBiC58A");
    QTest::newRow("a character outside Latin-1 is a zero, and ends nothing")
        << QString("ab") << QString("a%1b").arg(QChar(0x20ac))
        << hash("a\x80"
                "b",
                "ab");
    QTest::newRow("a zero character ends nothing") << QString("ab") << QString("a%1b").arg(QChar(0))
                                                   << hash("a\x80"
                                                           "b",
                                                           "ab");

    QTest::newRow("an empty salt") << QString("") << QString("secret") << QString();
    QTest::newRow("a salt of one character") << QString("a") << QString("secret") << QString("a");
    QTest::newRow("salt characters from 58 to 64 as the bit line has them")
        << QString(":@") << QString("secret") << hash("secret", ":@");
    QTest::newRow("salt characters below the alphabet exchange nothing")
        << QString("!-") << QString("secret") << "!-" + hash("secret", "..").mid(2);
    QTest::newRow("nor do those behind it")
        << QString("~~") << QString("secret") << "~~" + hash("secret", "..").mid(2);
    QTest::newRow("nor do those above 127")
        << QString(2, QChar(0xe9)) << QString("secret")
        << QString(2, QChar(0xe9)) + hash("secret", "..").mid(2);
}

void tst_CryptPublishedForm::cryptWithSalt()
{
    QFETCH(QString, salt);
    QFETCH(QString, password);
    QTEST(Crypt::crypt(salt, password), "value");
}

void tst_CryptPublishedForm::sameAsTheBitLine()
{
    constexpr quint32 seed = 20261123;
    test::RandomPasswords random(seed);
    for (int i = 0; i < 10000; ++i) {
        const QByteArray password = random.password();
        const QByteArray salt = random.salt();
        QVERIFY2(Crypt::crypt(QString::fromLatin1(salt), QString::fromLatin1(password)) ==
                     QString::fromLatin1(test::hashOf(password, salt)),
                 qPrintable(QString("seed %1, hash %2").arg(seed).arg(i)));
    }
    qInfo("10000 hashes from seed %u", seed);
}

void tst_CryptPublishedForm::cryptWithoutSalt()
{
    const QByteArray value = Crypt::crypt("secret").toLatin1();
    QCOMPARE(value, test::hashOf("secret", value));
    QCOMPARE(Crypt::crypt("secret").toLatin1(), value);
}

void tst_CryptPublishedForm::intToFourBytesLeavesTheArray()
{
    QByteArray bytes(9, 'x');
    Crypt::IntToFourBytes(0x01020304, bytes, 0);
    QCOMPARE(bytes, QByteArray(9, 'x'));
}

QTEST_APPLESS_MAIN(tst_CryptPublishedForm)

#include "tst_CryptPublishedForm.moc"
