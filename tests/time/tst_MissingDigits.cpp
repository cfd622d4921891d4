#include <Vokit/CText2Image>

#include <QtTest>

// Built from the class alone, without the library and its bitmap.
class tst_MissingDigits : public QObject
{
    Q_OBJECT

private slots:
    void copiesNothing();
};

void tst_MissingDigits::copiesNothing()
{
    QVERIFY(!QFile::exists(QStringLiteral(":/Text2Image/digits.bmp")));
    vo::CText2Image glyphs;
    QByteArray image(glyphs.sizeOfCharImage(), 'x');
    auto *const bytes = reinterpret_cast<unsigned char *>(image.data());
    for (const char character : QByteArray("0123456789:.- "))
        glyphs.digit2Image(bytes, character);
    glyphs.symbol2Image(bytes, vo::CText2Image::eHourglass);
    QCOMPARE(image, QByteArray(960, 'x'));
    glyphs.freeCharImage_RGB(glyphs.allocCharImage_RGB());
}

QTEST_APPLESS_MAIN(tst_MissingDigits)
#include "tst_MissingDigits.moc"
