// No value is ever altered: random texts written between the delimiter come
// back byte for byte, as values and as look-up keys, on every back end.
#include "cadosqlserver.h"
#include "sqlliteral.h"
#include "testdb.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

// Pieces that the rewriting or the drivers could take for their own.
const QStringList kTraps = {
    QStringLiteral("'"), QStringLiteral("''"), QStringLiteral("¤"), QStringLiteral("‡"), QStringLiteral("¿"),
    QStringLiteral("•"), QStringLiteral("•A•"), QStringLiteral("•/A•"), QStringLiteral("•M•"), QStringLiteral("•/M•"),
    QStringLiteral("•S•"), QStringLiteral("•/S•"), QStringLiteral("`"), QStringLiteral("\\"), QStringLiteral("\\'"),
    QStringLiteral("\n"), QStringLiteral("\r\n"), QStringLiteral("\t"), QStringLiteral("\""), QStringLiteral("#"),
    QStringLiteral("#01/02/2024#"), QStringLiteral("&"), QStringLiteral("SELECT TOP 5 "), QStringLiteral("FORMAT("),
    QStringLiteral("@01"), QStringLiteral(";"), QStringLiteral("--"), QStringLiteral("/*"), QStringLiteral("%"),
    QStringLiteral("_"), QStringLiteral("("), QStringLiteral(")"), QStringLiteral(","), QStringLiteral(" "),
    QStringLiteral("àèéìòù"), QStringLiteral("€"), QStringLiteral("ß"), QString::fromUtf8("😀"), QString::fromUtf8("👍🏽"),
    QString::fromUtf16(u"\uE000"), QString::fromUtf16(u"\uE101"), QString::fromUtf16(u"\uF8FF"), QStringLiteral("?"),
    QStringLiteral(":name"),
};

QString randomText(QRandomGenerator& rng)
{
    QString s;
    const int pieces = int(rng.bounded(1, 12));
    for (int i = 0; i < pieces; ++i) {
        switch (rng.bounded(4)) {
        case 0:
            s += kTraps.at(int(rng.bounded(qsizetype(kTraps.size()))));
            break;
        case 1: {   // printable ASCII
            const int n = int(rng.bounded(1, 6));
            for (int k = 0; k < n; ++k)
                s += QChar(char16_t(rng.bounded(0x20, 0x7F)));
            break;
        }
        case 2: {   // any character of the basic plane but NUL and surrogates
            char16_t c = 0;
            do
                c = char16_t(rng.bounded(1, 0x10000));
            while (QChar::isSurrogate(c) || c == 0xFFFE || c == 0xFFFF);
            s += QChar(c);
            break;
        }
        default: {  // beyond the basic plane
            const char32_t c = char32_t(rng.bounded(0x10000, 0x10FFFF));
            s += QString::fromUcs4(&c, 1);
            break;
        }
        }
    }
    return s;
}

} // namespace

class TestRoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }

    void fuzz_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void fuzz()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend, false).isValid());
        cAdoSqlServer& db = gAdoSqlServer();
        const QString tag = QStringLiteral("tst_roundtrip.fuzz");
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261122);
        constexpr int kCount = 3000;

        QStringList values;
        QVERIFY(db.beginTrasaction(tag));
        for (int i = 0; i < kCount; ++i) {
            const QString value = randomText(rng);
            values.append(value);
            QVERIFY2(db.executeSQL(QStringLiteral("INSERT INTO Opzioni (NOME, VALORE) VALUES (") + sqlText(QString::number(i))
                                       + QStringLiteral(", ") + sqlText(value) + QLatin1Char(')'),
                                   tag),
                     qPrintable(QString::number(i)));
        }
        QVERIFY(db.commitTrasaction(tag));

        RecordsetPtr rs = db.getNewRecordset(QStringLiteral("SELECT NOME, VALORE FROM Opzioni"), tag);
        QVERIFY(rs);
        int checked = 0;
        for (; !rs->eof(); rs->moveNext()) {
            const int i = rs->text(QStringLiteral("NOME")).toInt();
            const QString back = rs->text(QStringLiteral("VALORE"));
            if (back.toUtf8() != values.at(i).toUtf8())
                QFAIL(qPrintable(QStringLiteral("value %1 altered: [%2] came back as [%3]").arg(i).arg(values.at(i), back)));
            ++checked;
        }
        rs->close();
        db.disconnect();
        QCOMPARE(checked, kCount);

        // The same values as look-up keys find their own row.
        for (int i = 0; i < 300; ++i) {
            const QVariant name = db.getValueBySQL(QStringLiteral("SELECT NOME FROM Opzioni WHERE NOME = ") + sqlText(QString::number(i))
                                                       + QStringLiteral(" AND VALORE = ") + sqlText(values.at(i)),
                                                   tag);
            QVERIFY2(name.toString() == QString::number(i), qPrintable(values.at(i)));
        }
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(db.getConnectionCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestRoundTrip)
#include "tst_roundtrip.moc"
