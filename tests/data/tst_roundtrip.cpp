// No value is ever altered: random texts written between the delimiter come
// back byte for byte, as values and as look-up keys, on every back end; a
// text cut to its column keeps whole characters and fits; a filter of the
// search dialog finds exactly the rows that hold it, whatever it holds.
#include "data/cadosqlserver.h"
#include "common/italiantext.h"
#include "data/recordset.h"
#include "screens/services/ricercasql.h"
#include "data/schema.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QRandomGenerator>
#include <QSet>
#include <QtTest>

namespace {

const QString kTag = QStringLiteral("tst_roundtrip");

QString half(char16_t unit)
{
    return QString(QChar(unit));
}

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
    // Halves of characters: what a cut in the middle of an emoji leaves.
    half(0xD83D), half(0xDE00), half(0xDE00) + half(0xD83D), half(0xDBFF) + QStringLiteral("'"),
};

// What the database holds for a value: every half character (a lone UTF-16
// surrogate) is U+FFFD, the replacement character. QString::toUcs4 makes
// the same choice on its own, so it serves as the reference.
QString stored(const QString& value)
{
    const QList<uint> ucs4 = value.toUcs4();
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(ucs4.constData()), ucs4.size());
}

qsizetype characters(const QString& text)
{
    return text.toUcs4().size();
}

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

// A text of at least `length` + 3 characters, rich in characters beyond the
// basic plane, so that cuts often fall on one of them.
QString longText(QRandomGenerator& rng, int length)
{
    QString s;
    while (characters(s) < length + 3) {
        if (rng.bounded(3) == 0)
            s += randomText(rng);
        else
            s += QString::fromUtf8(rng.bounded(2) ? "😀" : "𝄞a");
    }
    return s;
}

// --- the search filters ------------------------------------------------------

// Pieces of the rows and filters of the filter test. Both back ends compare
// them the same way, ASCII letters without regard to case and the rest as
// they are: no accented letters (MariaDB's collation takes "è" for "e") and
// no characters beyond the basic plane (it takes them all for one another).
const QStringList kFilterPieces = {
    QStringLiteral("a"), QStringLiteral("B"), QStringLiteral("ab"), QStringLiteral("%"), QStringLiteral("_"),
    QStringLiteral("["), QStringLiteral("]"), QStringLiteral("!"), QStringLiteral("\\"), QStringLiteral("'"),
    QStringLiteral("\""), QStringLiteral("¤"), QStringLiteral("‡"), QStringLiteral("¿"), QStringLiteral("•"),
    QStringLiteral("•A•"), QStringLiteral("•/A•"), QStringLiteral("`"), QStringLiteral(" "), QStringLiteral("€"),
    QStringLiteral("x%"), QStringLiteral(" OR 1=1"), QStringLiteral("--"), QStringLiteral("#01/02/2024#"),
    QStringLiteral("&"), QStringLiteral("("), QStringLiteral(")"), QStringLiteral(","), QStringLiteral("^"),
    QStringLiteral(" UNION "), QStringLiteral("ESCAPE"), QStringLiteral("*"),
};

QString filterText(QRandomGenerator& rng, int maxPieces)
{
    QString s;
    const int pieces = int(rng.bounded(1, maxPieces + 1));
    for (int i = 0; i < pieces; ++i)
        s += kFilterPieces.at(int(rng.bounded(qsizetype(kFilterPieces.size()))));
    return s;
}

QString foldAscii(const QString& text)
{
    QString folded = text;
    for (QChar& c : folded)
        if (c.unicode() < 0x80)
            c = c.toLower();
    return folded;
}

// The rows a filter must give: starts with it, or holds it anywhere.
QSet<QString> expectedRows(const QHash<QString, QString>& rows, const QString& filter, bool contains)
{
    const QString f = foldAscii(stored(filter));
    QSet<QString> codes;
    for (auto it = rows.cbegin(); it != rows.cend(); ++it) {
        const QString value = foldAscii(it.value());
        if (contains ? value.contains(f) : value.startsWith(f))
            codes.insert(it.key());
    }
    return codes;
}

// The statement of the search dialog for a filter typed on the description,
// as frmRicerca builds it, and the codes of the rows it gives.
QSet<QString> searchRows(const QString& statement, const QString& filter, bool contains, bool& ok)
{
    const QString prepared = ricerca::prepareStatement(statement, false);
    const QString condition = ricerca::likeCondition(ricerca::nomeCampo(prepared, 2), filter, contains);
    const QString sql = ricerca::withMaxRows(ricerca::addCondition(prepared, condition), QStringLiteral("100000"),
                                             gAdoSqlServer().TipoServer());
    QSet<QString> codes;
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(sql, kTag);
    for (ok = bool(rs); rs && !rs->eof(); rs->moveNext())
        codes.insert(rs->text(QStringLiteral("CODICE")));
    gAdoSqlServer().disconnect();
    return codes;
}

QString describe(const QSet<QString>& codes)
{
    QStringList list(codes.cbegin(), codes.cend());
    list.sort();
    return list.join(QLatin1Char(' '));
}

// Every test runs on each back end (the global rows): a fresh start on the
// shared database, `tables` emptied.
void emptied(const QStringList& tables)
{
    QFETCH_GLOBAL(QString, backend);
    QVERIFY(testdb::shared(backend, false).isValid());
    for (const QString& t : tables)
        testdb::run(QStringLiteral("DELETE FROM ") + t);
}

// Both halves of a UNION, each held to the test's own rows.
const QString kSearch = QStringLiteral(
    "SELECT RID, CODICE, DESCRIZIONE FROM Colori WHERE CODICE LIKE ¤FZ%¤ UNION "
    "SELECT RID, CODICE, DESCRIZIONE FROM Marche WHERE CODICE LIKE ¤FZ%¤ ORDER BY CODICE");

} // namespace

class TestRoundTrip : public QObject
{
    Q_OBJECT

    cAdoSqlServer& db() { return gAdoSqlServer(); }

private Q_SLOTS:
    void initTestCase_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    // Every connection went back; after a failure the rest starts clean.
    void cleanup()
    {
        const int open = db().getConnectionCount();
        db().closeAll();
        QCOMPARE(open, 0);
    }

    void fuzz()
    {
        emptied({QStringLiteral("Opzioni")});
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261122);
        constexpr int kCount = 3000;
        // First, half characters just before the closing apostrophe: it is not
        // taken for their other half, so what follows stays what it was.
        QStringList values{QStringLiteral("Caff") + half(0xD83D), half(0xDE00) + QStringLiteral("x"),
                           half(0xDE00) + half(0xD83D), QStringLiteral("x") + half(0xDBFF)};
        QVERIFY(db().beginTrasaction(kTag));
        for (int i = 0; i < kCount; ++i) {
            if (i >= values.size())
                values.append(randomText(rng));
            testdb::run(sqlInsert(QStringLiteral("Opzioni"), {QStringLiteral("NOME"), QStringLiteral("VALORE")},
                                  {sqlText(QString::number(i)), sqlText(values.at(i))}));
        }
        QVERIFY(db().commitTrasaction(kTag));

        const QList<QVariantList> back = testdb::rows(QStringLiteral("SELECT NOME, VALORE FROM Opzioni"));
        QCOMPARE(back.size(), kCount);
        for (const QVariantList& row : back) {
            const int i = row.at(0).toInt();
            if (row.at(1).toString() != stored(values.at(i)))
                QFAIL(qPrintable(QStringLiteral("value %1 altered: [%2] came back as [%3]").arg(i).arg(values.at(i), row.at(1).toString())));
        }
        // The same values as look-up keys find their own row, and only it.
        for (int i = 0; i < 300; ++i)
            QVERIFY2(testdb::value(QStringLiteral("SELECT NOME FROM Opzioni WHERE VALORE = ") + sqlText(values.at(i))
                                   + QStringLiteral(" AND NOME = ") + sqlText(QString::number(i)))
                             .toString() == QString::number(i),
                     qPrintable(values.at(i)));
        QVERIFY(errors.reports.isEmpty());
    }

    // Texts cut to their columns with leftChars: a character beyond the basic
    // plane at the cut is kept whole or left out, every server takes the
    // result (MariaDB counts characters, not UTF-16 units), and it comes back
    // as it was cut.
    void cutTexts()
    {
        emptied({QStringLiteral("Banche")});
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261123);
        QList<schema::Column> columns;   // the text columns but the code
        QStringList names{QStringLiteral("CODICE")};
        for (const schema::Column& c : schema::findTable(QStringLiteral("Banche"))->columns)
            if (c.kind == schema::ColKind::Text && c.name != names.first()) {
                columns << c;
                names << c.name;
            }
        QVERIFY(columns.size() >= 5);
        constexpr int kRows = 300;

        QList<QStringList> cuts;
        QVERIFY(db().beginTrasaction(kTag));
        for (int i = 0; i < kRows; ++i) {
            QStringList values, literals{sqlText(QStringLiteral("CUT%1").arg(i))};
            for (const schema::Column& c : columns) {
                // Every fourth row puts an emoji exactly across the cut.
                const QString text = i % 4 == 0 ? QString(c.length - 1, QLatin1Char('a')) + QString::fromUtf8("😀b")
                                                : longText(rng, c.length);
                const QString cut = leftChars(text, c.length);
                QVERIFY(text.startsWith(cut));
                QCOMPARE(characters(cut), qsizetype(c.length));
                values << cut;
                literals << sqlText(cut);
            }
            cuts << values;
            testdb::run(sqlInsert(QStringLiteral("Banche"), names, literals));
        }
        QVERIFY(db().commitTrasaction(kTag));
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).information));

        const QList<QVariantList> back = testdb::rows(QStringLiteral("SELECT ") + names.join(QStringLiteral(", ")) + QStringLiteral(" FROM Banche"));
        QCOMPARE(back.size(), kRows);
        for (const QVariantList& row : back) {
            const int i = row.at(0).toString().mid(3).toInt();
            for (qsizetype c = 0; c < columns.size(); ++c)
                if (row.at(c + 1).toString() != stored(cuts.at(i).at(c)))
                    QFAIL(qPrintable(QStringLiteral("row %1, %2: [%3] came back as [%4]")
                                         .arg(i).arg(names.at(c + 1), cuts.at(i).at(c), row.at(c + 1).toString())));
        }
    }

    // The search dialog's filter, as the user may type it: it finds exactly
    // the rows whose description starts with it (or holds it, "Contiene"),
    // in both halves of a UNION, never more; the delimiter, quotes, mark-up
    // characters, "%", "_", "[" and "\" are text like any other.
    void searchFilters()
    {
        emptied({QStringLiteral("Colori"), QStringLiteral("Marche")});
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261124);
        QHash<QString, QString> rows;   // code, description
        QVERIFY(db().beginTrasaction(kTag));
        for (int i = 0; i < 160; ++i) {
            const QString code = QStringLiteral("FZ%1").arg(i, 3, 10, QLatin1Char('0'));
            rows.insert(code, filterText(rng, 6));
            testdb::run(sqlInsert(i % 2 ? QStringLiteral("Marche") : QStringLiteral("Colori"),
                                  {QStringLiteral("CODICE"), QStringLiteral("DESCRIZIONE")}, {sqlText(code), sqlText(rows.value(code))}));
        }
        QVERIFY(db().commitTrasaction(kTag));

        QStringList filters{
            QStringLiteral("¤"), QStringLiteral("x¤ OR 1=1 OR DESCRIZIONE LIKE ¤"), QStringLiteral("' OR '1'='1"),
            QStringLiteral("%"), QStringLiteral("_"), QStringLiteral("[a-z]"), QStringLiteral("[!a]%"), QStringLiteral("\\"),
            QStringLiteral("\\%"), QStringLiteral("!"), QStringLiteral("!%"), QStringLiteral("a") + half(0xD83D), half(0xDE00),
            QStringLiteral("•A•"), QStringLiteral("•/A•x•M•"), QStringLiteral("‡¿"), QStringLiteral("SELECT TOP 1 "),
            QStringLiteral("a UNION SELECT 1, ¤FZ000¤, ¤x¤"), QStringLiteral("a\tUNION\tSELECT RID, CODICE, DESCRIZIONE FROM Colori"),
            QStringLiteral(")) OR ((1=1"), QStringLiteral("ESCAPE ¤!¤"),
        };
        for (int i = 0; i < 60; ++i)
            filters << filterText(rng, 3);
        // Pieces of the rows themselves, which must find at least their row.
        for (int i = 0; i < 60; ++i) {
            const QString value = rows.value(QStringLiteral("FZ%1").arg(int(rng.bounded(160)), 3, 10, QLatin1Char('0')));
            filters << value.mid(int(rng.bounded(qsizetype(value.size()))), int(rng.bounded(1, 6)));
        }

        int found = 0;
        for (const QString& filter : std::as_const(filters)) {
            for (const bool contains : {false, true}) {
                bool ok = false;
                const QSet<QString> got = searchRows(kSearch, filter, contains, ok);
                QVERIFY2(ok, qPrintable(filter));
                const QSet<QString> expected = expectedRows(rows, filter, contains);
                found += int(got.size());
                if (got != expected)
                    QFAIL(qPrintable(QStringLiteral("filter [%1]%2: got %3, expected %4")
                                         .arg(filter, contains ? QStringLiteral(" (contiene)") : QString(), describe(got), describe(expected))));
            }
        }
        QVERIFY(found > 0);
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).information));
    }

    // A filter that holds characters beyond the basic plane finds its row,
    // one that holds half of one breaks nothing, and neither finds a row
    // without them (MariaDB's collation takes all those characters for one
    // another, so a stricter oracle would test the collation).
    void searchFilterEmoji()
    {
        emptied({QStringLiteral("Colori"), QStringLiteral("Marche")});
        testdb::ErrorRecorder errors;
        const QString emoji = QString::fromUtf8("Rosso 😀 ¤ fuoco 👍🏽");
        testdb::run(QStringLiteral("INSERT INTO Colori (CODICE, DESCRIZIONE) VALUES (¤FZE¤, ") + sqlText(emoji) + QLatin1Char(')'));
        testdb::run(QStringLiteral("INSERT INTO Colori (CODICE, DESCRIZIONE) VALUES (¤FZN¤, ¤Verde¤)"));
        for (const QString& filter : {emoji.left(7), emoji.left(8), emoji.mid(6, 4), emoji.mid(9)}) {
            for (const bool contains : {false, true}) {
                bool ok = false;
                const QSet<QString> got = searchRows(kSearch, filter, contains, ok);
                QVERIFY(ok);
                QCOMPARE(got.contains(QStringLiteral("FZN")), false);
                // Half a character is searched as U+FFFD: only MariaDB's
                // collation takes it for the emoji.
                if (stored(filter) == filter && (contains || emoji.startsWith(filter)))
                    QVERIFY2(got.contains(QStringLiteral("FZE")), qPrintable(filter));
            }
        }
        QVERIFY(errors.reports.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestRoundTrip)
#include "tst_roundtrip.moc"
