// The search dialogs and the look-ups on both back ends; the typed input fields.
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "lookups/lookups.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/frmricerca.h"
#include "screens/framework/frmselectelement.h"
#include "screens/framework/listhelpers.h"
#include "screens/services/ricercasql.h"
#include "screens/services/typedinput.h"
#include "support/localerows.h"
#include "support/screendriver.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QSet>
#include <QSettings>
#include <QtTest>

using testdb::ScriptedMsgBox;
using namespace typedinput;

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
        const QStringList c = codes();
        return {c.cbegin(), c.cend()};
    }

    void like(bool on) { get<QCheckBox>("chkLike")->setChecked(on); }
};

// Pieces that both back ends compare alike: ASCII letters regardless of case.
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

void noChooser()
{
    setElementChooser([](const QString&, const Recordset&, bool, bool) -> QStringList {
        QTest::qFail("no chooser expected", __FILE__, __LINE__);
        return {};
    });
}

QString unknown(const QString& code) { return "Codice: " + code + " inesistente!"; }

using Lookup = bool (*)(QString&, QString&, int&);

} // namespace

Q_DECLARE_METATYPE(Lookup)

class TestFramework : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // Once a database: colours, brands, two counterparties, three products (one extra code a code).
    void init()
    {
        BackendTest::init();
        if (testdb::count("Marche", "CODICE = ¤ZZROVER¤") > 0)
            return;
        testdb::run("INSERT INTO Colori (CODICE, DESCRIZIONE) VALUES (¤ZZROSSO¤, ¤Rosso fuoco¤), "
                    "(¤ZZROSA¤, ¤Rosa antico¤), (¤ZZBLU¤, ¤Blu notte¤)");
        testdb::run("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ZZROVER¤, ¤Rover¤)");
        testdb::run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, FK_PAGAMENTO) "
                    "VALUES (901, ¤Rossi Srl¤, ¤C¤, 2), (902, ¤Bianchi Spa¤, ¤F¤, NULL)");
        testdb::run("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤)");
        testdb::run(QString("INSERT INTO Prodotti (CODICE, DESCRIZIONE, BARCODE, EXTRACODICE, FK_Iva, FK_UNITAMISURA, "
                            "FK_MARCA, GIACENZA, ELENCOSPECIALE) VALUES "
                            "(¤VITE8¤, ¤Vite 8 mm¤, ¤8001234567890¤, ¤V-8¤, 2, 1, %1, 40, -1), "
                            "(¤DADO8¤, ¤Dado 8 mm¤, NULL, ¤VITE8X¤, 1, 1, NULL, 15, 0), "
                            "(¤VITE8X¤, ¤Vite 8 mm inox¤, NULL, NULL, 1, 1, NULL, 3, 0)")
                        .arg(testdb::rid("Marche", "CODICE = ¤ACME¤")));
        testdb::run(QString("INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, QUANTITA) VALUES (%1, 1, 12.5)")
                        .arg(testdb::rid("Prodotti", "CODICE = ¤VITE8¤")));
    }

    void cleanup()
    {
        setElementChooser({});
        BackendTest::cleanup();
    }

    void statements_data()
    {
        testdb::columns<QString>({"step", "given", "expected"});
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
        FETCH_EACH(QString, step, given, expected);
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

    // A UNION filtered in both halves, "Max. Righe", chkLike (kept), the column clicked.
    void filterAndLimit()
    {
        Dialog d(kUnion, 0, false, false, 1, QString(), QString("ChkLike_Prova"), false);
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

    // The filter is text, never statement: exactly the rows starting with it (or holding it).
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
        // Typed key by key; pasted: halves of characters, a tab, random pieces, pieces of rows.
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
                QVERIFY2(d.found() == expected, qPrintable(filter + (contains ? " (contiene)" : "")));
            }
        }
        QVERIFY(found > 0);
        // Beyond the basic plane: the row found, half a character harmless (MariaDB folds them).
        const QString emoji = QString::fromUtf8("Rosso 😀 ¤ fuoco 👍🏽");
        testdb::run("INSERT INTO Colori (CODICE, DESCRIZIONE) VALUES (¤FZE¤, " + sqlText(emoji)
                    + "), (¤FZN¤, ¤Verde¤)");
        for (const QString& filter : {emoji.left(7), emoji.left(8), emoji.mid(6, 4), emoji.mid(9)}) {
            for (const bool contains : {false, true}) {
                d.like(contains);
                field->setText(filter);
                QVERIFY(!d.found().contains("FZN"));
                // Half a character is searched as U+FFFD.
                if (testdb::asStored(filter) == filter && (contains || emoji.startsWith(filter)))
                    QVERIFY2(d.found().contains("FZE"), qPrintable(filter));
            }
        }
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).information));
    }

    // Cancel, the close box, Escape, a choice, Enter in the filter, "&Nuovo".
    void choice_data()
    {
        testdb::columns<QString>({"how", "expected"}); // expected "rid": the row ZZBLU
        for (const QString row : {"cancel:cmdCancel:0", "close box:close:0", "escape:escape:0", "ok:cmdOK:rid",
                                  "enter:enter:rid", "new:cmdNuovo:-1"})
            QTest::newRow(qPrintable(row.section(':', 0, 0))) << row.section(':', 1, 1) << row.section(':', 2);
    }

    void choice()
    {
        FETCH_EACH(QString, how, expected);
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
        const auto key = [](const char* c) -> QString {
            return "E_" + QString::number(testdb::rid("Colori", testdb::code(c)));
        };
        QCOMPARE(dialog.selectedKeys(), (QStringList{key("ZZBLU"), key("ZZROSSO")}));
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

    // Found by code or key; not found: the box names the code, the description stays.
    void family_data()
    {
        QTest::addColumn<Lookup>("lookup");
        QTest::addColumn<QString>("codice");
        QTest::addColumn<int>("rid");
        testdb::columns<QString>({"expectedCode", "expectedDescription"}); // no code: not found
        const auto row = [](const char* name, Lookup lookup, const char* codice, int rid, const char* code,
                            const char* description) {
            QTest::newRow(name) << lookup << codice << rid << code << description;
        };
        row("unit by code", &validaUnitaMisura, "KG", 0, "KG", "Chilogrammi");
        row("unit by key", &validaUnitaMisura, "", 1, "PZ", "Pezzi");
        row("unknown unit", &validaUnitaMisura, "XX", 0, "", "");
        row("customer", &validaCliente, "901", 0, "901", "Rossi Srl");
        row("customer refuses a supplier", &validaCliente, "902", 0, "", "");
        row("supplier", &validaFornitore, "902", 0, "902", "Bianchi Spa");
        row("any counterparty", &validaAnagrafe, "902", 0, "902", "Bianchi Spa");
        row("counterparty number not a number", &validaAnagrafe, "abc", 0, "", "");
        row("product by bar code", &validaProdotto, "8001234567890", 0, "VITE8", "Vite 8 mm");
        row("product by extra code", &validaProdotto, "V-8", 0, "VITE8", "Vite 8 mm");
        row("account", &validaConto, "01003001", 0, "01003001", "Cassa");
        row("document type", &validaDocumento, "DDT", 0, "DDT", "Documento di trasporto");
    }

    void family()
    {
        QFETCH(Lookup, lookup);
        FETCH_EACH(QString, codice, expectedCode, expectedDescription);
        QFETCH(int, rid);
        ScriptedMsgBox boxes;
        const bool missing = expectedCode.isEmpty();
        if (missing)
            boxes.expect(unknown(codice));
        QString descrizione = "as before";
        QCOMPARE(lookup(codice, descrizione, rid), !missing);
        QCOMPARE(codice, expectedCode);
        QCOMPARE(descrizione, missing ? QStringLiteral("as before") : expectedDescription);
        QCOMPARE(rid > 0, !missing);
    }

    // The members with extra outputs.
    void extras()
    {
        QString codice = "10", descrizione;
        int rid = 0, pagamento = 0, numeratore = 2;
        Single valore = 0;
        bool genera = false, negative = false;
        QVERIFY(validaIva(codice, descrizione, rid, valore));
        QCOMPARE(valore, Single(10));
        codice = "901";
        rid = 0;
        QVERIFY(validaAnagrafePagamento(codice, descrizione, rid, pagamento));
        QCOMPARE(pagamento, 2);
        codice = "NC";
        rid = 0;
        QVERIFY(validaCausaleScadenze(codice, descrizione, rid, genera, negative));
        QVERIFY(genera && negative);
        ScriptedMsgBox boxes;
        boxes.expect(unknown("DDT"));
        codice = "DDT"; // a causal that writes no journal entry is not found
        rid = 0;
        QVERIFY(!validaCausaleScadenze(codice, descrizione, rid, genera, negative));
        QVERIFY(codice.isEmpty());
        QVERIFY(validaNumeratore(descrizione, numeratore));
        QCOMPARE(descrizione, QStringLiteral("Documenti di trasporto"));
        DocumentoEsteso documento;
        documento.codice = "CF";
        QVERIFY(validaDocumentoEsteso(documento));
        QVERIFY(documento.modificaPrezzoAcquisto && !documento.usaRda);
        QCOMPARE(documento.rda1, QStringLiteral("0"));
    }

    // One row fills the product; the stock of a warehouse comes from its row.
    void prodottoEsteso()
    {
        noChooser();
        ProdottoEsteso p;
        p.codice = "8001234567890";
        QVERIFY(validaProdottoEsteso(p, {}));
        QCOMPARE(QStringList({p.codice, p.descrizione, p.codIva, p.codUnitaMisura, p.codMarca}),
                 QStringList({"VITE8", "Vite 8 mm", "10", "PZ", "ACME"}));
        QCOMPARE(p.valoreIva, Single(10));
        QCOMPARE(p.giacenza, 40.0);
        QCOMPARE(p.elencoSpeciale, qint16(1));
        ProdottoEsteso inWarehouse;
        inWarehouse.rid = p.rid;
        RicercaProdotto sede;
        for (const auto& [magazzino, giacenza] : {std::pair(1, 12.5), std::pair(99, 0.0)}) {
            sede.magazzino = magazzino;
            QVERIFY(validaProdottoEsteso(inWarehouse, sede));
            QCOMPARE(inWarehouse.giacenza, giacenza);
        }
    }

    // A code that is also another's extra code: the chooser decides, or gives all keys.
    void prodottoChooser_data()
    {
        QTest::addColumn<bool>("multi");
        QTest::addColumn<int>("chosen"); // how many rows the chooser picks, DADO8 first
        QTest::newRow("one") << false << 1;
        QTest::newRow("both") << true << 2;
        QTest::newRow("none") << false << 0;
    }

    void prodottoChooser()
    {
        QFETCH(bool, multi);
        QFETCH(int, chosen);
        int rowsSeen = 0;
        QStringList keys;
        bool multiSeen = !multi;
        setElementChooser([&](const QString&, const Recordset& rs, bool multiSelect, bool) -> QStringList {
            rowsSeen = rs.recordCount();
            Recordset rows = rs;
            for (rows.moveFirst(); !rows.eof(); rows.moveNext())
                keys.insert(rows.text("CODICE") == "DADO8" ? 0 : keys.size(), "E_" + rows.value("RID").toString());
            multiSeen = multiSelect;
            return keys.mid(0, chosen);
        });
        ScriptedMsgBox boxes;
        if (chosen == 0)
            boxes.expect(unknown("VITE8X"));
        ProdottoEsteso p;
        p.codice = "VITE8X";
        RicercaProdotto ricerca;
        ricerca.multiSelect = multi;
        QCOMPARE(validaProdottoEsteso(p, ricerca), chosen > 0);
        QCOMPARE(rowsSeen, 2);
        QCOMPARE(multiSeen, multi);
        QCOMPARE(p.codice, chosen ? QStringLiteral("DADO8") : QString());
        if (multi)
            QCOMPARE(p.elencoRid, keys.at(0).mid(2) + ',' + keys.at(1).mid(2) + ',');
    }

    // A beginning finds its codes ("%", "_" no wildcards); not found, Yes asks for a new product.
    void prodottoCerca_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answer");           // to "Creare un nuovo Prodotto?"; 0: a search by beginning
        QTest::addColumn<QString>("expectedCode"); // empty: not found
        QTest::newRow("beginning") << "DAD" << 0 << "DADO8";
        QTest::newRow("whole code") << "DADO8" << 0 << "DADO8";
        QTest::newRow("underscore") << "DAD_8" << 0 << "";
        QTest::newRow("percent") << "%8X" << 0 << "";
        QTest::newRow("delimiter") << "VITE¤" << 0 << "";
        QTest::newRow("new product") << "NUOVO1" << int(vb::Yes) << "NUOVO1";
        QTest::newRow("no new product") << "NUOVO2" << int(vb::No) << "";
    }

    void prodottoCerca()
    {
        FETCH_EACH(QString, typed, expectedCode);
        QFETCH(int, answer);
        testdb::ErrorRecorder errors;
        noChooser();
        ScriptedMsgBox boxes;
        const bool found = answer == 0 && !expectedCode.isEmpty();
        if (!found)
            boxes.expect(unknown(typed) + (answer ? "\nCreare un nuovo Prodotto?" : ""), answer ? answer : int(vb::OK));
        ProdottoEsteso p;
        p.codice = typed;
        p.creaNuovo = answer == vb::No; // a No clears what an earlier Yes left
        RicercaProdotto ricerca;
        ricerca.like = answer == 0;
        ricerca.chiediNuovo = answer != 0;
        QCOMPARE(validaProdottoEsteso(p, ricerca), found);
        QCOMPARE(p.codice, expectedCode);
        if (answer)
            QCOMPARE(p.creaNuovo, answer == vb::Yes);
        QVERIFY(errors.reports.isEmpty());
    }

    // What each kind of typed field accepts, under either locale.
    void keyPress_data()
    {
        QTest::addColumn<QString>("locale");
        testdb::columns<int>({"kind", "caseState"});
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("allSelected");
        testdb::columns<QString>({"typed", "result"}); // no result: refused
        const auto row = [](const char* name, Kind kind, const char* text, const char* typed, const char* result,
                            int caseState = 0, bool allSelected = false) {
            addRows(name, int(kind), caseState, QString(text), allSelected, QString(typed), QString(result));
        };
        row("dot becomes comma", Decimale, "12", ".", ",");
        row("second comma refused", Decimale, "1,5", ",", "");
        row("second comma as dot refused", Decimale, "1,5", ".", "");
        row("minus in empty field", Decimale, "", "-", "-");
        row("minus after text refused", Intero, "12", "-", "");
        row("minus over a full selection", InteroZero, "12", "-", "-", 0, true);
        row("minus in free text", Testo, "ab", "-", "-");
        row("letter in whole number", Intero, "", "a", "");
        row("dot in time", Ora, "08", ".", ".");
        row("colon in time refused", Ora, "08", ":", "");
        row("slash in date", Data, "01", "/", "/");
        row("plus in date refused", Data, "01", "+", "");
        row("plus in date expression", EspressioneData, "", "+", "+");
        row("upper case", Testo, "", "à", "À", 1);
        row("lower case", Testo, "", "Q", "q", 2);
        row("backspace always", Intero, "1", "\b", "\b");
    }

    void keyPress()
    {
        LOCALE_SCOPE;
        FETCH_EACH(int, kind, caseState);
        FETCH_EACH(QString, text, typed, result);
        QFETCH(bool, allSelected);
        const QChar accepted = filterKeyPress(kind, caseState, text, allSelected, typed.at(0));
        QCOMPARE(accepted.isNull() ? QString() : QString(accepted), result);
    }

    // What a field holds when it is left, and whether it raises its event.
    void contentValidate_data()
    {
        QTest::addColumn<QString>("locale");
        testdb::columns<int>({"kind", "precision"});
        QTest::addColumn<bool>("thousands");
        testdb::columns<QString>({"text", "result"});
        QTest::addColumn<bool>("event");
        const auto row = [](const char* name, Kind kind, const char* text, const char* result, bool event,
                            int precision = 2, bool thousands = true) {
            addRows(name, int(kind), precision, thousands, QString(text), QString(result), event);
        };
        row("decimal", Decimale, "1234,5", "1.234,50", true);
        row("decimal without thousands", Decimale, "-1234567,1239", "-1234567,124", true, 3, false);
        row("decimal as typed", Decimale, "1234,5", "1234,5", false, -1);
        row("decimal empty stays", Decimale, "", "", true);
        row("decimal empty becomes 0", DecimaleZero, "  ", "0,00", true);
        row("lone minus stays", Decimale, "-", "-", true);
        row("whole number", Intero, "1234567", "1.234.567", false);
        row("whole number empty becomes 0", InteroZero, "", "0", false);
        row("whole number left as typed", InteroNonFormattato, "1234", "1234", false);
        row("date six digits", Data, "010508", "01/05/2008", true);
        row("date eight digits", Data, "01052008", "01/05/2008", true);
        row("date 31 February empties", Data, "31/02/2008", "", true);
        row("short date only tested", Data, "1/5/08", "1/5/08", true);
        row("short wrong date empties", Data, "1/13/08", "", true);
        row("leap day", Data, "29022024", "29/02/2024", true);
        row("date empty", Data, "", "", true);
        row("time four digits", Ora, "0830", "08:30:00", false);
        row("time six digits", Ora, "173005", "17:30:05", false);
        row("time with dots", Ora, "8.5", "08:05:00", false);
        row("time 25 hours empties", Ora, "2500", "", false);
        row("free text untouched", Testo, " a,b ", " a,b ", false);
    }

    void contentValidate()
    {
        LOCALE_SCOPE;
        FETCH_EACH(int, kind, precision);
        FETCH_EACH(bool, thousands, event);
        FETCH_EACH(QString, text, result);
        const Validation v = typedinput::contentValidate(kind, text, precision, thousands, "DD/MM/YYYY");
        QCOMPARE(v.text, result);
        QCOMPARE(v.raiseEvent, event);
    }

    // The wrappers on real widgets: typing, Enter, arrows, leaving, F-keys.
    void textBoxOnAForm()
    {
        QWidget form;
        auto* layout = new QVBoxLayout(&form);
        const auto add = [layout](auto* w, const char* name) {
            w->setObjectName(QLatin1String(name));
            layout->addWidget(w);
            return w;
        };
        auto* txtImporto = add(new QLineEdit(&form), "txtImporto");
        auto* txtData = add(new QLineEdit(&form), "txtData");
        auto* txtCodice = add(new QLineEdit(&form), "txtCodice");
        auto* cmbTipo = add(new QComboBox(&form), "cmbTipo");
        cmbTipo->addItems({QStringLiteral("A"), QStringLiteral("B")});
        auto* chkAttivo = add(new QCheckBox(&form), "chkAttivo");
        cKeyFunction keys;
        cTextBox importo(txtImporto, Decimale);
        cTextBox data(txtData, Data);
        cTextBox codice(txtCodice, Testo);
        codice.setIsCodice(true);
        codice.setCaseState(1);
        cComboBox tipo(cmbTipo);
        cCheckBox attivo(chkAttivo);
        for (cInputBase* input : std::initializer_list<cInputBase*>{&importo, &data, &codice, &tipo, &attivo})
            input->setCKeyRef(&keys);
        QSignalSpy functionKeys(&keys, &cKeyFunction::evtFunctionKeyPressed);
        QSignalSpy validated(&importo, &cTextBox::evtContentValidate);
        QSignalSpy codeEntered(&codice, &cTextBox::evtCodiceKeyRetunr);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QCOMPARE(txtImporto->alignment() & Qt::AlignRight, Qt::AlignRight);
        QCOMPARE(txtData->maxLength(), 10);
        txtImporto->setFocus();
        QCOMPARE(txtImporto->palette().color(QPalette::Base), cInputBase::focusColour(false));
        QTest::keyClicks(txtImporto, QStringLiteral("-1x234.5.6"));
        QCOMPARE(txtImporto->text(), QStringLiteral("-1234,56"));
        QTest::keyClick(txtImporto, Qt::Key_F5);
        QTest::keyClick(txtImporto, Qt::Key_F9); // not one of F3 to F7
        QCOMPARE(functionKeys, (QList<QVariantList>{{"txtImporto", 116, 0}}));
        // Enter moves on; leaving formats and repaints.
        QTest::keyClick(txtImporto, Qt::Key_Return);
        QTRY_VERIFY(txtData->hasFocus());
        QCOMPARE(txtImporto->text(), QStringLiteral("-1.234,56"));
        QCOMPARE(validated.size(), 1);
        QCOMPARE(txtImporto->palette().color(QPalette::Base), cInputBase::restColour());
        QTest::keyClicks(txtData, QStringLiteral("010508"));
        QTest::keyClick(txtData, Qt::Key_Down);
        QTRY_VERIFY(txtCodice->hasFocus());
        QCOMPARE(txtData->text(), QStringLiteral("01/05/2008"));
        // A code field answers Enter with its event and stays.
        QTest::keyClicks(txtCodice, QStringLiteral("ab1"));
        QCOMPARE(txtCodice->text(), QStringLiteral("AB1"));
        QTest::keyClick(txtCodice, Qt::Key_Return);
        QCOMPARE(codeEntered.size(), 1);
        QCoreApplication::processEvents();
        QVERIFY(txtCodice->hasFocus());
        QTest::keyClick(txtCodice, Qt::Key_Up);
        QTRY_VERIFY(txtData->hasFocus());
        QTest::keyClick(txtData, Qt::Key_Down);
        QTRY_VERIFY(txtCodice->hasFocus());
        QTest::keyClick(txtCodice, Qt::Key_Tab);
        QTRY_VERIFY(cmbTipo->hasFocus());
        // The combo keeps its arrows for the list and moves on Enter.
        QTest::keyClick(cmbTipo, Qt::Key_Down);
        QCOMPARE(cmbTipo->currentIndex(), 1);
        QVERIFY(cmbTipo->hasFocus());
        QTest::keyClick(cmbTipo, Qt::Key_Return);
        QTRY_VERIFY(chkAttivo->hasFocus());
        QTest::keyClick(chkAttivo, Qt::Key_F3);
        QCOMPARE(functionKeys.last(), (QVariantList{"chkAttivo", 114, 0}));
    }

    // A locked field takes the focus, selected, and keeps it.
    void lockedFieldAndNoTabSend()
    {
        QWidget form;
        auto* layout = new QVBoxLayout(&form);
        auto* txtA = new QLineEdit(QStringLiteral("abc"), &form);
        layout->addWidget(txtA);
        layout->addWidget(new QLineEdit(&form));
        txtA->setReadOnly(true);
        cTextBox a(txtA, Testo);
        a.setNoTabSend(true);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        txtA->setFocus();
        QCOMPARE(txtA->palette().color(QPalette::Base), cInputBase::focusColour(true));
        QTRY_COMPARE(txtA->selectedText(), QStringLiteral("abc"));
        QTest::keyClick(txtA, Qt::Key_Return);
        QTest::keyClick(txtA, Qt::Key_Down);
        QCoreApplication::processEvents();
        QVERIFY(txtA->hasFocus());
    }
};

QTEST_MAIN(TestFramework)
#include "tst_framework.moc"
