// No value is ever altered: random texts written between the delimiter come
// back byte for byte, as values and as look-up keys, on every back end; a
// text cut to its column keeps whole characters and fits. (What a search
// filter finds, whatever it holds, tst_ricerca shows through the dialog.)
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/schema.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

QString half(char16_t unit) { return QString(QChar(unit)); }

// Pieces that the rewriting or the drivers could take for their own.
const QStringList kTraps = {
    "'",
    "''",
    "¤",
    "‡",
    "¿",
    "•",
    "•A•",
    "•/A•",
    "•M•",
    "•/M•",
    "•S•",
    "•/S•",
    "`",
    "\\",
    "\\'",
    "\n",
    "\r\n",
    "\t",
    "\"",
    "#",
    "#01/02/2024#",
    "&",
    "SELECT TOP 5 ",
    "FORMAT(",
    "@01",
    ";",
    "--",
    "/*",
    "%",
    "_",
    "(",
    ")",
    ",",
    " ",
    "àèéìòù",
    "€",
    "ß",
    "😀",
    "👍🏽",
    QString::fromUtf16(u"\uE000"),
    QString::fromUtf16(u"\uE101"),
    QString::fromUtf16(u"\uF8FF"),
    "?",
    ":name",
    // Halves of characters: what a cut in the middle of an emoji leaves.
    half(0xD83D),
    half(0xDE00),
    half(0xDE00) + half(0xD83D),
    half(0xDBFF) + "'",
};

qsizetype characters(const QString& text) { return text.toUcs4().size(); }

QString randomText(QRandomGenerator& rng)
{
    QString s;
    for (int pieces = int(rng.bounded(1, 12)); pieces > 0; --pieces) {
        switch (rng.bounded(4)) {
        case 0: s += kTraps.at(int(rng.bounded(qsizetype(kTraps.size())))); break;
        case 1: // printable ASCII
            for (int n = int(rng.bounded(1, 6)); n > 0; --n)
                s += QChar(char16_t(rng.bounded(0x20, 0x7F)));
            break;
        case 2: { // any character of the basic plane but NUL and surrogates
            char16_t c = 0;
            do
                c = char16_t(rng.bounded(1, 0x10000));
            while (QChar::isSurrogate(c) || c == 0xFFFE || c == 0xFFFF);
            s += QChar(c);
            break;
        }
        default: { // beyond the basic plane
            const char32_t c = char32_t(rng.bounded(0x10000, 0x10FFFF));
            s += QString::fromUcs4(&c, 1);
        }
        }
    }
    return s;
}

// A text of at least `length` + 3 characters, rich in characters beyond the
// basic plane, so that cuts often fall on one of them.
QString longText(QRandomGenerator& rng, int length)
{
    QString s;
    while (characters(s) < length + 3)
        s += rng.bounded(3) == 0 ? randomText(rng) : QString::fromUtf8(rng.bounded(2) ? "😀" : "𝄞a");
    return s;
}

} // namespace

class TestRoundTrip : public testdb::BackendTest
{
    Q_OBJECT

public:
    TestRoundTrip()
        : BackendTest(false)
    { }

private Q_SLOTS:
    void fuzz()
    {
        testdb::empty({"Opzioni"});
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261122);
        constexpr int kCount = 3000;
        // First, half characters just before the closing apostrophe: it is not
        // taken for their other half, so what follows stays what it was.
        QStringList values{"Caff" + half(0xD83D), half(0xDE00) + "x", half(0xDE00) + half(0xD83D), "x" + half(0xDBFF)};
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        for (int i = 0; i < kCount; ++i) {
            if (i >= values.size())
                values.append(randomText(rng));
            testdb::run(sqlInsert("Opzioni", {"NOME", "VALORE"}, {sqlText(QString::number(i)), sqlText(values.at(i))}));
        }
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));

        const QList<QVariantList> back = testdb::rows("SELECT NOME, VALORE FROM Opzioni");
        QCOMPARE(back.size(), kCount);
        for (const QVariantList& row : back) {
            const int i = row.at(0).toInt();
            if (row.at(1).toString() != testdb::asStored(values.at(i)))
                QFAIL(qPrintable(QString("value %1 altered: [%2] came back as [%3]")
                                     .arg(i)
                                     .arg(values.at(i), row.at(1).toString())));
        }
        // The same values as look-up keys find their own row, and only it.
        for (int i = 0; i < 300; ++i)
            QVERIFY2(testdb::value("SELECT NOME FROM Opzioni WHERE VALORE = " + sqlText(values.at(i))
                                   + " AND NOME = " + sqlText(QString::number(i)))
                             .toString()
                         == QString::number(i),
                     qPrintable(values.at(i)));
        QVERIFY(errors.reports.isEmpty());
    }

    // Texts cut to their columns with leftChars: a character beyond the basic
    // plane at the cut is kept whole or left out, every server takes the
    // result (MariaDB counts characters, not UTF-16 units), and it comes back
    // as it was cut.
    void cutTexts()
    {
        testdb::empty({"Banche"});
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261123);
        QList<schema::Column> columns; // the text columns but the code
        QStringList names{"CODICE"};
        for (const schema::Column& c : schema::findTable("Banche")->columns)
            if (c.kind == schema::ColKind::Text && c.name != names.first()) {
                columns << c;
                names << c.name;
            }
        QVERIFY(columns.size() >= 5);
        constexpr int kRows = 300;
        QList<QStringList> cuts;
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        for (int i = 0; i < kRows; ++i) {
            QStringList values, literals{sqlText(QString("CUT%1").arg(i))};
            for (const schema::Column& c : columns) {
                // Every fourth row puts an emoji exactly across the cut.
                const QString text =
                    i % 4 == 0 ? QString(c.length - 1, 'a') + QString::fromUtf8("😀b") : longText(rng, c.length);
                const QString cut = leftChars(text, c.length);
                QVERIFY(text.startsWith(cut));
                QCOMPARE(characters(cut), qsizetype(c.length));
                values << cut;
                literals << sqlText(cut);
            }
            cuts << values;
            testdb::run(sqlInsert("Banche", names, literals));
        }
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).information));

        const QList<QVariantList> back = testdb::rows("SELECT " + names.join(", ") + " FROM Banche");
        QCOMPARE(back.size(), kRows);
        for (const QVariantList& row : back) {
            const int i = row.at(0).toString().mid(3).toInt();
            for (qsizetype c = 0; c < columns.size(); ++c)
                if (row.at(c + 1).toString() != testdb::asStored(cuts.at(i).at(c)))
                    QFAIL(qPrintable(QString("row %1, %2: [%3] came back as [%4]")
                                         .arg(i)
                                         .arg(names.at(c + 1), cuts.at(i).at(c), row.at(c + 1).toString())));
        }
    }
};

QTEST_GUILESS_MAIN(TestRoundTrip)
#include "tst_roundtrip.moc"
