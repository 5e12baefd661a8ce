// The control characters of tax codes, VAT numbers and EAN-13 barcodes on
// real codes, and the barcode font text.

#include "common/codicefiscale.h"
#include "common/ean13.h"

#include <QTest>

class TestCodici : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codiceFiscale_data();
    void codiceFiscale();
    void partitaIva_data();
    void partitaIva();
    void ean13_data();
    void ean13();
};

void TestCodici::codiceFiscale_data()
{
    QTest::addColumn<QString>("codice");
    QTest::addColumn<bool>("valido");
    QTest::newRow("right letter") << "RSSMRA85T10A562S" << true;
    QTest::newRow("another person") << "BNCGVN70A01H501H" << true;
    QTest::newRow("wrong letter") << "RSSMRA85T10A562T" << false;
    QTest::newRow("lower case") << "rssmra85t10a562s" << true;
    QTest::newRow("mixed case") << "RssMra85T10a562s" << true;
    QTest::newRow("15 characters") << "RSSMRA85T10A562" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("judged on the first 16") << "RSSMRA85T10A562SXYZ" << true;
    QTest::newRow("longer, wrong letter") << "RSSMRA85T10A562TS" << false;
    // Omocodia: letters in the digits' places, with their own control letter.
    QTest::newRow("omocodia") << "RSSMRAURTMLARSNL" << true;
    QTest::newRow("omocodia, letter of the plain form") << "RSSMRAURTMLARSNS" << false;
    // A digit where a letter belongs is summed by the digit tables.
    QTest::newRow("digit in a letter's place") << "RSSMR185T10A562T" << true;
    // A blank adds nothing and shifts the sum by one.
    QTest::newRow("blank inside") << "RSS RA85T10A562F" << true;
}

void TestCodici::codiceFiscale()
{
    QFETCH(QString, codice);
    QFETCH(bool, valido);
    QCOMPARE(checkCodiceFiscale(codice), valido);
}

void TestCodici::partitaIva_data()
{
    QTest::addColumn<QString>("numero");
    QTest::addColumn<bool>("valido");
    QTest::newRow("right digit 7") << "00743110157" << true;
    QTest::newRow("right digit 9") << "02112130949" << true;
    QTest::newRow("right digit 1") << "12345678911" << true;
    QTest::newRow("wrong digit") << "00743110158" << false;
    QTest::newRow("transposed") << "07043110157" << false;
    // The right control digit is 0, yet the number is judged wrong.
    QTest::newRow("control digit 0") << "01234560090" << false;
    QTest::newRow("control digit 0, other") << "02112130030" << false;
    QTest::newRow("all zeros") << "00000000000" << false;
    QTest::newRow("empty") << "" << false;
    // Ten digits: the control digit reads as 0.
    QTest::newRow("short") << "0074311015" << false;
    // Letters count 0: "A" in place of a 0 leaves the number right.
    QTest::newRow("letter as zero") << "A0743110157" << true;
}

void TestCodici::partitaIva()
{
    QFETCH(QString, numero);
    QFETCH(bool, valido);
    QCOMPARE(checkPartitaIva(numero), valido);
}

void TestCodici::ean13_data()
{
    QTest::addColumn<QString>("codice");
    QTest::addColumn<int>("cifra");
    QTest::addColumn<QString>("font");
    QTest::newRow("4006381333931") << "4006381333931" << 1 << "4AKGDSL*dddjdb+";
    QTest::newRow("9780201379624") << "9780201379624" << 4 << "9HSKCKB*dhjgce+";
    QTest::newRow("8001505005707") << "8001505005707" << 7 << "8AKBPKF*aafhah+";
    // A weighted sum that is a multiple of ten gives 0, not 10.
    QTest::newRow("check 0") << "0000000000000" << 0 << "0AAAAAA*aaaaaa+";
    QTest::newRow("first digit 0: set A throughout") << "0123456789012" << 2 << "0BCDEFG*hijabc+";
    QTest::newRow("12 digits") << "400638133393" << 1 << "";
    QTest::newRow("11 digits") << "40063813339" << -1 << "";
    QTest::newRow("empty") << "" << -1 << "";
}

void TestCodici::ean13()
{
    QFETCH(QString, codice);
    QFETCH(int, cifra);
    QFETCH(QString, font);
    QCOMPARE(int(getEAN13ChekDigit(codice)), cifra);
    if (!font.isEmpty())
        QCOMPARE(EncodeEAN13(codice), font);
}

QTEST_APPLESS_MAIN(TestCodici)
#include "tst_codici.moc"
