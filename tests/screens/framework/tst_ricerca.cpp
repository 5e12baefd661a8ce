// The search dialogs: the statement work as text, then the dialogs on both back ends.
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "screens/framework/frmricerca.h"
#include "screens/framework/frmselectelement.h"
#include "screens/framework/listhelpers.h"
#include "screens/services/ricercasql.h"
#include "support/screendriver.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QSet>
#include <QSettings>
#include <QTreeWidget>
#include <QtTest>

namespace {

const QString kUnion = "SELECT RID, CODICE, DESCRIZIONE FROM Colori UNION SELECT RID, CODICE, DESCRIZIONE "
                       "FROM Marche ORDER BY CODICE";
// Both halves of a UNION, each held to the rows of the filter cases.
const QString kFiltered = "SELECT RID, CODICE, DESCRIZIONE FROM Colori WHERE CODICE LIKE ¤FZ%¤ UNION "
                          "SELECT RID, CODICE, DESCRIZIONE FROM Marche WHERE CODICE LIKE ¤FZ%¤ ORDER BY CODICE";

struct Dialog : testdb::Screen<frmRicerca>
{
    using Screen::Screen;
    QTreeWidget* list() { return get<QTreeWidget>("lswMain"); }
    QStringList codes() { return testdb::listColumn(list(), 1); }
    QSet<QString> found()
    {
        const QStringList shown = codes();
        return QSet<QString>(shown.cbegin(), shown.cend());
    }
    void like(bool on) { get<QCheckBox>("chkLike")->setChecked(on); }
};

// Pieces of the descriptions and filters of the filter cases, that both back
// ends compare alike (ASCII letters without regard to case): no accented
// letters and no characters beyond the basic plane, which MariaDB folds.
const QStringList kPieces = {
    "a", "B", "ab", "%",   "_",    "[",       "]",      "!", "\\", "'",       "\"", "¤",
    "‡", "¿", "•",  "•A•", "•/A•", "`",       " ",      "€", "x%", " OR 1=1", "--", "#01/02/2024#",
    "&", "(", ")",  ",",   "^",    " UNION ", "ESCAPE", "*",
};

QString pieces(QRandomGenerator& rng, int most)
{
    QString s;
    for (int i = int(rng.bounded(1, most + 1)); i > 0; --i)
        s += kPieces.at(int(rng.bounded(qsizetype(kPieces.size()))));
    return s;
}

QString foldAscii(QString text)
{
    for (QChar& c : text)
        if (c.unicode() < 0x80)
            c = c.toLower();
    return text;
}

QString sorted(const QSet<QString>& codes)
{
    QStringList list(codes.cbegin(), codes.cend());
    list.sort();
    return list.join(' ');
}

} // namespace

class TestRicerca : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // The rows of the dialog's cases, once a database.
    void init()
    {
        BackendTest::init();
        if (testdb::count("Marche", "CODICE = ¤ZZROVER¤") == 0) {
            testdb::run("INSERT INTO Colori (CODICE, DESCRIZIONE) VALUES (¤ZZROSSO¤, ¤Rosso fuoco¤), "
                        "(¤ZZROSA¤, ¤Rosa antico¤), (¤ZZBLU¤, ¤Blu notte¤)");
            testdb::run("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ZZROVER¤, ¤Rover¤)");
        }
    }

    void statements_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const char* step, const char* given, const char* expected) {
            QTest::newRow(name) << QString(step) << QString(given) << QString(expected);
        };
        row("distinct stays", "prepare", "SELECT DISTINCT RID, A FROM X", "SELECT DISTINCT RID, A FROM X");
        row("start empty after where", "empty", "SELECT RID FROM T WHERE A = 1",
            "SELECT¤¤ AS BLANK, RID FROM T WHERE A = 1 AND RID = -1");
        row("filter beside a sub-select", "filter", "SELECT RID FROM (SELECT RID FROM X WHERE K = 1) Q",
            "SELECT RID FROM (SELECT RID FROM X WHERE K = 1) Q WHERE C LIKE ¤AB%¤");
        row("blank beside a union in a sub-select", "prepare",
            "SELECT RID, A FROM (SELECT RID, A FROM X UNION SELECT RID, A FROM Y) Q",
            "SELECT¤¤ AS BLANK, RID, A FROM (SELECT RID, A FROM X UNION SELECT RID, A FROM Y) Q");
        row("limit, SQL Server, union inside a value", "max0",
            "SELECT RID FROM X WHERE A LIKE ¤a\tUNION\tSELECT B%¤ UNION SELECT RID FROM Y",
            "SELECT TOP 7 RID FROM X WHERE A LIKE ¤a\tUNION\tSELECT B%¤ UNION SELECT TOP 7 RID FROM Y");
        row("limit, SQL Server", "max0", "SELECT RID FROM X UNION SELECT DISTINCT RID FROM Y",
            "SELECT TOP 7 RID FROM X UNION SELECT DISTINCT TOP 7 RID FROM Y");
        row("column by position", "name2", "SELECT¤¤ AS BLANK, RID, P.CODICE, P.DESCRIZIONE AS DESCPRODOTTO FROM P",
            "P.DESCRIZIONE");
        row("protected commas", "name1", "SELECT RID, IIf(A = 1‡ B‡ C) AS X, D FROM P", "IIF(A = 1, B, C)");
        row("back end block", "name1", "SELECT RID, •A•Left(N‡ 2)•/A••M•LEFT(N‡ 2)•/M• AS L FROM P", "LEFT(N, 2)");
    }
    void statements()
    {
        QFETCH(QString, step);
        QFETCH(QString, given);
        QFETCH(QString, expected);
        gAdoSqlServer().setTipoServer(TipoServer::FileDb);
        QString result;
        if (step == "prepare" || step == "empty")
            result = ricerca::prepareStatement(given, step == "empty");
        else if (step == "filter")
            result = ricerca::addCondition(given, ricerca::likeCondition("C", "AB", false));
        else if (step.startsWith("max"))
            result = ricerca::withMaxRows(given, "7", step.mid(3).toInt());
        else
            result = ricerca::nomeCampo(given, step.mid(4).toInt());
        QCOMPARE(result, expected);
    }

    // A UNION search filters both halves, stops at "Max. Righe", searches
    // anywhere with chkLike and by the column whose header was clicked; the
    // choice of chkLike is kept for the next time.
    void filterAndLimit()
    {
        Dialog d(kUnion, 0, false, false, 1, QString(), QString("ChkLike_Prova"), false);
        QCOMPARE(d.shown("txtMax"), QStringLiteral("500"));
        QCOMPARE(d.list()->headerItem()->text(1), QStringLiteral("CODICE"));
        QVERIFY(d.list()->isColumnHidden(0));
        QVERIFY(d.list()->topLevelItemCount() >= 5);
        d.type("txtFiltro", "zzro");
        QCOMPARE(d.codes(), (QStringList{"ZZROSA", "ZZROSSO", "ZZROVER"}));
        d.get<QLineEdit>("txtMax")->setText("2");
        d.type("txtFiltro", "ZZRO");
        QCOMPARE(d.list()->topLevelItemCount(), 2);
        d.get<QLineEdit>("txtMax")->setText("500");
        d.like(true);
        d.type("txtFiltro", "OSS");
        QCOMPARE(d.codes(), QStringList{"ZZROSSO"});

        // The description becomes the search column; a second click inverts.
        d.like(false);
        d.type("txtFiltro", "");
        QHeaderView* header = d.list()->header();
        const QPoint description(header->sectionViewportPosition(2) + 5, 5);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, description);
        d.type("txtFiltro", "Ros");
        QCOMPARE(d.codes(), (QStringList{"ZZROSA", "ZZROSSO"}));
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, description);
        QCOMPARE(d.codes(), (QStringList{"ZZROSSO", "ZZROSA"}));

        d.like(true);
        d.screen.reject();
        QCOMPARE(machineSettings().value("Options/ChkLike_Prova").toInt(), 1);
        QVERIFY(machineSettings().value("Options/FrmRicerca_Widht").toInt() > 0);
        Dialog again(kUnion, 0, false, false, 1, QString(), QString("ChkLike_Prova"), false);
        QVERIFY(again.get<QCheckBox>("chkLike")->isChecked());
    }

    // The filter is text to look for, never part of the statement: whatever
    // it holds, the dialog shows exactly the rows whose description starts
    // with it (or holds it, chkLike), in both halves of a UNION, and reports nothing.
    void filters()
    {
        testdb::run("DELETE FROM Colori WHERE CODICE LIKE ¤FZ%¤");
        testdb::run("DELETE FROM Marche WHERE CODICE LIKE ¤FZ%¤");
        testdb::ErrorRecorder errors;
        QRandomGenerator rng(20261124);
        QHash<QString, QString> rows; // code, description
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        for (int i = 0; i < 160; ++i) {
            const QString code = QString("FZ%1").arg(i, 3, 10, QLatin1Char('0'));
            rows.insert(code, pieces(rng, 6));
            testdb::run(QString("INSERT INTO %1 (CODICE, DESCRIZIONE) VALUES (%2, %3)")
                            .arg(i % 2 ? "Marche" : "Colori", sqlText(code), sqlText(rows.value(code))));
        }
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));

        // Typed key by key (one filter a "|"); then pasted: halves of
        // characters, a tab, random pieces, and pieces of the rows, which
        // find at least their row.
        const QStringList typed =
            QString("¤|x¤ OR 1=1 OR DESCRIZIONE LIKE ¤|' OR '1'='1|%|_|[a-z]|[!a]%|\\|\\%|!|!%|•A•|"
                    "•/A•x•M•|‡¿|SELECT TOP 1 |a UNION SELECT 1, ¤FZ000¤, ¤x¤|)) OR ((1=1|ESCAPE ¤!¤")
                .split('|');
        QStringList pasted{"a" + QString(QChar(0xD83D)), QString(QChar(0xDE00)),
                           "a\tUNION\tSELECT RID, CODICE, DESCRIZIONE FROM Colori"};
        for (int i = 0; i < 60; ++i) {
            pasted << pieces(rng, 3);
            const QString value = rows.value(QString("FZ%1").arg(int(rng.bounded(160)), 3, 10, QLatin1Char('0')));
            pasted << value.mid(int(rng.bounded(qsizetype(value.size()))), int(rng.bounded(1, 6)));
        }
        Dialog d(kFiltered, 0, false, false, 2);
        auto* field = d.get<QLineEdit>("txtFiltro");
        int found = 0;
        for (const QString& filter : typed + pasted) {
            for (const bool contains : {false, true}) {
                d.like(contains);
                if (typed.contains(filter)) {
                    testdb::typeKeys(field, filter);
                    QCOMPARE(field->text(), filter);
                } else {
                    field->setText(filter);
                }
                QSet<QString> expected;
                const QString f = foldAscii(testdb::asStored(filter));
                for (auto it = rows.cbegin(); it != rows.cend(); ++it)
                    if (contains ? foldAscii(it.value()).contains(f) : foldAscii(it.value()).startsWith(f))
                        expected.insert(it.key());
                found += int(expected.size());
                if (const QSet<QString> got = d.found(); got != expected)
                    QFAIL(qPrintable(QString("filter [%1]%2: got %3, expected %4")
                                         .arg(filter, contains ? " (contiene)" : "", sorted(got), sorted(expected))));
            }
        }
        QVERIFY(found > 0);

        // A filter that holds characters beyond the basic plane finds its
        // row, one that holds half of one breaks nothing, and neither finds a
        // row without them (MariaDB's collation takes all those characters
        // for one another, so a stricter oracle would test the collation).
        const QString emoji = QString::fromUtf8("Rosso 😀 ¤ fuoco 👍🏽");
        testdb::run("INSERT INTO Colori (CODICE, DESCRIZIONE) VALUES (¤FZE¤, " + sqlText(emoji)
                    + "), (¤FZN¤, ¤Verde¤)");
        for (const QString& filter : {emoji.left(7), emoji.left(8), emoji.mid(6, 4), emoji.mid(9)}) {
            for (const bool contains : {false, true}) {
                d.like(contains);
                field->setText(filter);
                QVERIFY(!d.found().contains("FZN"));
                // Half a character is searched as U+FFFD: only MariaDB's
                // collation takes it for the emoji.
                if (testdb::asStored(filter) == filter && (contains || emoji.startsWith(filter)))
                    QVERIFY2(d.found().contains("FZE"), qPrintable(filter));
            }
        }
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).information));
    }

    // Cancel, the close box, Escape, a choice, Enter in the filter, "&Nuovo".
    void choice_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("expected"); // "rid" for the row ZZBLU
        for (const QString row : {"cancel:cmdCancel:0", "close box:close:0", "escape:escape:0", "ok:cmdOK:rid",
                                  "enter:enter:rid", "new:cmdNuovo:-1"})
            QTest::newRow(qPrintable(row.section(':', 0, 0))) << row.section(':', 1, 1) << row.section(':', 2);
    }
    void choice()
    {
        QFETCH(QString, how);
        QFETCH(QString, expected);
        testdb::ScriptedDialogs script;
        script.expectDialog("frmRicerca", [&](QDialog& dialog) {
            auto* filtro = dialog.findChild<QLineEdit*>("txtFiltro");
            QTest::keyClicks(filtro, "ZZB");
            if (how == "close")
                dialog.close();
            else if (how == "escape" || how == "enter")
                QTest::keyClick(filtro, how == "enter" ? Qt::Key_Return : Qt::Key_Escape);
            else
                testdb::click(dialog, how);
        });
        const int rid = frmRicerca::cerca(kUnion, "Colori e marche", 1, true, true);
        QCOMPARE(rid, expected == "rid" ? testdb::rid("Colori", "CODICE = ¤ZZBLU¤") : expected.toInt());
    }

    // Starting empty shows the headers and no row until a filter is typed.
    void startEmpty()
    {
        Dialog d(QString("SELECT RID, CODICE, DESCRIZIONE FROM Colori ORDER BY CODICE"), 0, true);
        QCOMPARE(d.list()->topLevelItemCount(), 0);
        QCOMPARE(d.list()->headerItem()->text(2), QStringLiteral("DESCRIZIONE"));
        d.type("txtFiltro", "ZZ");
        QCOMPARE(d.codes(), (QStringList{"ZZBLU", "ZZROSA", "ZZROSSO"}));
        d.type("txtFiltro", "");
        QCOMPARE(d.list()->topLevelItemCount(), 0);
    }

    // The chooser gives back the keys of the rows picked, in list order.
    void selectElement()
    {
        RecordsetPtr rs = gAdoSqlServer().getNewRecordset(
            "SELECT RID, CODICE, DESCRIZIONE FROM Colori WHERE CODICE LIKE ¤ZZ%¤ ORDER BY CODICE", "test");
        QVERIFY(rs);
        gAdoSqlServer().disconnect();
        frmSelectElement dialog;
        dialog.startMe("Codice¤1800¤CODICE|Descrizione¤4500¤DESCRIZIONE|", *rs, true, false);
        auto* list = dialog.findChild<QTreeWidget*>("lswElenco");
        QCOMPARE(list->headerItem()->text(1), QStringLiteral("Codice"));
        QCOMPARE(list->columnWidth(2), 300);
        QCOMPARE(testdb::listColumn(list, 1), (QStringList{"ZZBLU", "ZZROSA", "ZZROSSO"}));
        list->topLevelItem(2)->setSelected(true);
        list->topLevelItem(0)->setSelected(true);
        testdb::click(dialog, "cmdOK");
        const auto key = [](const char* code) -> QString {
            return "E_" + QString::number(testdb::rid("Colori", "CODICE = ¤" + QString(code) + "¤"));
        };
        QCOMPARE(dialog.selectedKeys(), (QStringList{key("ZZBLU"), key("ZZROSSO")}));
    }

    // A combo filled from key and text, an entry chosen by its key.
    void comboByKey()
    {
        QComboBox combo;
        QVERIFY(fillComboBox("SELECT RID, DESCRIZIONE FROM Numeratori ORDER BY DESCRIZIONE", &combo));
        QCOMPARE(combo.count(), 5);
        QCOMPARE(combo.itemText(0), QStringLiteral("Carichi da fornitore"));
        setListindexByItemData(&combo, 2);
        QCOMPARE(combo.currentText(), QStringLiteral("Documenti di trasporto"));
        setListindexByItemData(&combo, 99);
        QCOMPARE(combo.currentIndex(), -1);
    }

    // Numbers sort as numbers, dates as dates, text without regard to case.
    void listSort()
    {
        QList<QVariantList> rows{{10, "b", QDate(2026, 3, 1)},
                                 {9, "A", QDate(2025, 12, 31)},
                                 {100, "c", QDate(2026, 1, 15)}};
        const auto column = [&rows](int c) {
            QVariantList values;
            for (const QVariantList& row : rows)
                values << row.at(c);
            return values;
        };
        orderVbaList(rows, 0);
        QCOMPARE(column(0), (QVariantList{9, 10, 100}));
        orderVbaList(rows, 1, true);
        QCOMPARE(column(1), (QVariantList{"c", "b", "A"}));
        orderVbaList(rows, 2);
        QCOMPARE(column(0), (QVariantList{9, 100, 10}));
    }
};

QTEST_MAIN(TestRicerca)
#include "tst_ricerca.moc"
