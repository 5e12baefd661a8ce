// Barcodes on both back ends: the bulk generation of EAN13CODE (all or nothing), the search and the print list of
// the label screen, the list handed over by a document, the label rows of the print database, and the two screens.
#include "common/apphome.h"
#include "common/ean13.h"
#include "common/msgbox.h"
#include "data/session.h"
#include "printing/codiciabarre.h"
#include "printing/frmgenerabarcode.h"
#include "printing/frmpreview.h"
#include "printing/frmstampabarcode.h"
#include "printing/stampadb.h"
#include "support/screendriver.h"

#include <QDir>
#include <QFile>
#include <QProgressBar>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

using testdb::run;

Q_DECLARE_METATYPE(FiltriEtichette)

namespace {

const QString kFatto = "Generazione dei Codici a Barre avvenuta correttamente.";
const QString kErrore = "Attenzione si è verificato un errore durante la generazione dei Codici a Barre!\n"
                        "L'operazione sarà annullata";
const QString kNessuno = "Nessun prodotto tovato per i criteri selezonati!";
// 40 letters and a character beyond the basic plane: with "XY-LUNGO-" in front it ends at the 50th character.
const QString kLunga = "Z" + QString(39, 'a') + QString::fromUtf8("\U0001F600") + "bbbb";
const QString kMarcaLunga = "Marca dal nome molto lungo, che supera i cinquanta caratteri";

// Brands, a collection, a category and a group, and four products: two of ACME in the summer collection and
// category UT, one with long texts, one without barcode, brand or price. Made once per database.
void prepara()
{
    if (testdb::count("Prodotti", "RID = 9301") > 0)
        return;
    run("INSERT INTO Marche (RID, CODICE, DESCRIZIONE) VALUES (9301, ¤ACME¤, ¤Acme Utensili¤), (9302, ¤LUNGA¤, ¤"
        + kMarcaLunga + "¤), (9303, ¤VUOTA¤, ¤Marca senza prodotti¤)");
    run("INSERT INTO Collezioni (RID, CODICE, DESCRIZIONE) VALUES (9301, ¤EST¤, ¤Estate¤)");
    run("INSERT INTO CategorieMerceologiche (RID, CODICE, DESCRIZIONE) VALUES (9301, ¤UT¤, ¤Utensili¤)");
    run("INSERT INTO Gruppi (RID, CODICE, DESCRIZIONE) VALUES (9301, ¤MINU¤, ¤Minuteria¤)");
    run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, BARCODE, FK_MARCA, FK_COLLEZIONE, FK_CATEGORIA, FK_GRUPPO, "
        "PLISTINO) VALUES (9301, ¤BC-VITE¤, ¤Vite¤, ¤8001234567890¤, 9301, 9301, 9301, NULL, 1.5), "
        "(9302, ¤BC-DADO¤, ¤Dado¤, ¤0012345678905¤, 9301, NULL, 9301, 9301, 0.25), "
        "(9303, ¤XY-LUNGO¤, ¤"
        + kLunga
        + "¤, ¤4006381333931¤, 9302, NULL, NULL, 9301, 12), "
          "(9304, ¤BC-RONDELLA¤, ¤Rondella¤, NULL, NULL, NULL, NULL, NULL, NULL)");
}

ProdottoEtichetta prodotto(int rid, const QString& codice = QString())
{
    ProdottoEtichetta p;
    p.rid = rid;
    p.codice = codice.isEmpty() ? "P" + QString::number(rid) : codice;
    return p;
}

// "rid:labels" of each product of the list, in order.
QString contenuto(const ElencoEtichette& elenco)
{
    QStringList parti;
    for (const ProdottoEtichetta& p : elenco.prodotti())
        parti << QString::number(p.rid) + ':' + QString::number(p.quantita);
    return parti.join(' ');
}

// A print database with its BARCODE table, holding a row of an earlier print.
QString stampaDB(const QTemporaryDir& dir)
{
    const QString file = dir.filePath("printdb.db");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "tst_stampa");
        db.setDatabaseName(file);
        QSqlQuery q(db);
        if (!db.open()
            || !q.exec("CREATE TABLE BARCODE (PROG INTEGER, EAN13CODE TEXT(50), TESTO1 TEXT(50), "
                       "TESTO2 TEXT(50), PREZZO REAL)")
            || !q.exec("INSERT INTO BARCODE VALUES (1, 'vecchia', 'vecchia', 'vecchia', 0)"))
            qWarning("print database not made");
    }
    QSqlDatabase::removeDatabase("tst_stampa");
    return file;
}

// The rows of BARCODE, each "PROG|EAN13CODE|TESTO1|TESTO2|PREZZO".
QStringList righeBarcode(const QString& file)
{
    QStringList righe;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "tst_lettura");
        db.setDatabaseName(file);
        QSqlQuery q(db);
        if (db.open() && q.exec("SELECT PROG, EAN13CODE, TESTO1, TESTO2, PREZZO FROM BARCODE ORDER BY PROG"))
            while (q.next())
                righe << QStringList{q.value(0).toString(), q.value(1).toString(), q.value(2).toString(),
                                     q.value(3).toString(), q.value(4).isNull() ? "Null" : q.value(4).toString()}
                             .join('|');
    }
    QSqlDatabase::removeDatabase("tst_lettura");
    return righe;
}

// BarCode.rpt in the report folder: the one shipped with the program, or a small one of the test's own that prints
// the same table when the program ships none.
void modelloEtichette()
{
    const QString cartella = QDir(programFolder()).filePath("AccessReports");
    QDir().mkpath(cartella);
    gSession().strReportPath = cartella + '/';
    const QString percorso = QDir(cartella).filePath("BarCode.rpt");
    QFile::remove(percorso);
    if (QFile::exists(":/reports/BarCode.rpt")) {
        QVERIFY(QFile::copy(":/reports/BarCode.rpt", percorso));
        QFile::setPermissions(percorso, QFile::permissions(percorso) | QFileDevice::WriteOwner);
        return;
    }
    QFile file(percorso);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"(report title="Etichette"
data from="BARCODE" order="{BARCODE.PROG}"
section detail height=30
  field 0 0 80 5 "{BARCODE.TESTO1}"
  barcode 0 6 50 15 "{BARCODE.EAN13CODE}"
  field 0 22 60 5 "{BARCODE.TESTO2}"
  field 60 22 20 5 "{BARCODE.PREZZO}" format=money
)");
}

// A trigger that makes the update of one product fail, on each back end.
void guastaProdotto(int rid)
{
    if (testdb::BackendTest::backend() == "sqlite")
        run(QString("CREATE TRIGGER tst_guasto BEFORE UPDATE ON Prodotti WHEN NEW.RID = %1 "
                    "BEGIN SELECT RAISE(ABORT, ¤guasto¤); END")
                .arg(rid));
    else
        run(QString("CREATE TRIGGER tst_guasto BEFORE UPDATE ON Prodotti FOR EACH ROW BEGIN IF NEW.RID = %1 THEN "
                    "SIGNAL SQLSTATE ¤45000¤ SET MESSAGE_TEXT = ¤guasto¤; END IF; END")
                .arg(rid));
}

} // namespace

class TestCodiciABarre : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        prepara();
    }

    // Every product gets the font text of its barcode (a product without one that of an empty code), and the
    // screen hears of each product once, in order, against the count.
    void generazione()
    {
        run("UPDATE Prodotti SET EAN13CODE = ¤prima¤");
        QList<int> visti;
        int totale = -1;
        QString ultimo;
        testdb::ScriptedMsgBox box;
        box.expect(kFatto);
        QVERIFY(generaBarCode([&](int n, int t, const QString& descrizione) {
            visti << n;
            totale = t;
            ultimo = descrizione;
        }));
        const QList<QVariantList> prodotti = testdb::rows("SELECT BARCODE, EAN13CODE FROM Prodotti ORDER BY RID");
        QCOMPARE(totale, prodotti.size());
        QCOMPARE(visti.size(), prodotti.size());
        QCOMPARE(visti.last(), totale);
        QCOMPARE(ultimo, QStringLiteral("Rondella"));
        for (const QVariantList& p : prodotti)
            QCOMPARE(p.at(1).toString(), EncodeEAN13(p.at(0).toString()));
        QCOMPARE(testdb::text("SELECT EAN13CODE FROM Prodotti WHERE RID = 9302"), QStringLiteral("0ABCDEF*ghijaf+"));
    }

    // A product whose update fails undoes the products written before it; the box comes after the rollback.
    void generazioneAnnullata()
    {
        run("UPDATE Prodotti SET EAN13CODE = ¤prima¤");
        guastaProdotto(9303);
        const auto togli = qScopeGuard([] { run("DROP TRIGGER tst_guasto"); });
        testdb::ErrorRecorder errori;
        testdb::ScriptedMsgBox box;
        box.expect(kErrore);
        QVERIFY(!generaBarCode());
        QVERIFY(box.allAnswered());
        QCOMPARE(errori.reports.size(), 1);
        QCOMPARE(testdb::count("Prodotti", "EAN13CODE <> ¤prima¤"), 0);
    }

    // The search by each filter, in the order of the descriptions. A beginning of code finds by the code alone,
    // and its "_" or "%" stand for themselves.
    void ricerca_data()
    {
        testdb::columns<FiltriEtichette, QString>("filtri", "trovati");
        const auto parte = [](const char* codice) { return FiltriEtichette{.codice = codice, .parteCodice = true}; };
        QTest::newRow("product") << FiltriEtichette{.prodotto = 9302} << "BC-DADO";
        QTest::newRow("beginning of code") << parte("BC-") << "BC-DADO BC-RONDELLA BC-VITE";
        QTest::newRow("underscore is no wildcard") << parte("BC_") << "";
        QTest::newRow("percent is no wildcard") << parte("%VITE") << "";
        QTest::newRow("brand") << FiltriEtichette{.marca = 9301} << "BC-DADO BC-VITE";
        QTest::newRow("category") << FiltriEtichette{.categoria = 9301} << "BC-DADO BC-VITE";
        QTest::newRow("group") << FiltriEtichette{.gruppo = 9301} << "BC-DADO XY-LUNGO";
        QTest::newRow("collection") << FiltriEtichette{.collezione = 9301} << "BC-VITE";
        QTest::newRow("brand and beginning of code")
            << FiltriEtichette{.codice = "BC-V", .parteCodice = true, .marca = 9301} << "BC-VITE";
        QTest::newRow("brand without products") << FiltriEtichette{.marca = 9303} << "";
    }

    void ricerca()
    {
        QFETCH(FiltriEtichette, filtri);
        QFETCH(QString, trovati);
        const FiltriEtichette& f = filtri;
        const std::optional<QList<ProdottoEtichetta>> risultato = cercaProdottiEtichette(f);
        QVERIFY(risultato);
        QStringList codici;
        for (const ProdottoEtichetta& p : *risultato)
            codici << p.codice;
        QCOMPARE(codici.join(' '), trovati);
        if (!risultato->isEmpty() && risultato->first().rid == 9302)
            QCOMPARE(risultato->first().marca, QStringLiteral("Acme Utensili"));
    }

    // The print list: a product added again gets one label more, "all" adds one to each product found, a
    // product taken out goes whole; the text counts labels and products.
    void elenco_data()
    {
        testdb::columns<QString, QString, QString>("passi", "contenuto", "testo");
        QTest::newRow("empty") << ""
                               << ""
                               << "0 Etichette per 0 Prodotti selezionati";
        QTest::newRow("added twice") << "+1 +2 +1"
                                     << "1:2 2:1"
                                     << "3 Etichette per 2 Prodotti selezionati";
        QTest::newRow("all, then all again") << "* *"
                                             << "1:2 2:2 3:2"
                                             << "6 Etichette per 3 Prodotti selezionati";
        QTest::newRow("one, then all") << "+3 *"
                                       << "3:2 1:1 2:1"
                                       << "4 Etichette per 3 Prodotti selezionati";
        QTest::newRow("taken out whole") << "+1 +1 +2 -1"
                                         << "2:1"
                                         << "1 Etichette per 1 Prodotti selezionati";
        QTest::newRow("taken out, added again") << "* -2 +2 +1"
                                                << "1:2 3:1 2:1"
                                                << "4 Etichette per 3 Prodotti selezionati";
        QTest::newRow("taking out a missing one") << "+1 -9"
                                                  << "1:1"
                                                  << "1 Etichette per 1 Prodotti selezionati";
    }

    void elenco()
    {
        FETCH_EACH(QString, passi, contenuto, testo);
        const QList<ProdottoEtichetta> trovati{prodotto(1), prodotto(2), prodotto(3)};
        ElencoEtichette e;
        for (const QString& passo : passi.split(' ', Qt::SkipEmptyParts)) {
            if (passo == "*")
                e.aggiungiTutti(trovati);
            else if (passo.startsWith('+'))
                e.aggiungi(prodotto(passo.mid(1).toInt()));
            else
                QCOMPARE(e.rimuovi(passo.mid(1).toInt()), passo != "-9");
        }
        QCOMPARE(::contenuto(e), contenuto);
        QCOMPARE(e.testoEtichette(), testo);
        for (int i = 0; i < e.numeroProdotti(); ++i)
            QCOMPARE(e.indice(e.prodotti().at(i).rid), i);
    }

    // The list of a document's rows: key, tab and labels, each line ended by "\r".
    void lista_data()
    {
        testdb::columns<QString, QString>("lista", "righe");
        QTest::newRow("two lines") << "12\t3\r13\t1\r"
                                   << "12:3 13:1";
        QTest::newRow("key of a list item") << "P_12\t2\r"
                                            << "12:2";
        QTest::newRow("quantity with decimals") << "12\t2,00\r"
                                                << "12:2";
        QTest::newRow("fraction: one more") << "12\t2,5\r"
                                            << "12:3";
        QTest::newRow("no labels, a return") << "12\t0\r13\t-2\r14\t1\r"
                                             << "14:1";
        QTest::newRow("key alone") << "12\r"
                                   << "12:1";
        QTest::newRow("not a key, not a number") << "abc\t2\r12\tx\r0\t1\r"
                                                 << "";
        QTest::newRow("last line open, line feeds") << "12\t1\r\n13\t2"
                                                    << "12:1 13:2";
        QTest::newRow("same product twice") << "12\t1\r12\t4\r"
                                            << "12:1 12:4";
    }

    void lista()
    {
        FETCH_EACH(QString, lista, righe);
        QStringList letti;
        for (const RigaLista& r : leggiLista(lista))
            letti << QString::number(r.rid) + ':' + QString::number(r.etichette);
        QCOMPARE(letti.join(' '), righe);
    }

    // The products of the list read from the database: a product twice adds up, one that is gone is left out.
    void getListaDalDatabase()
    {
        ElencoEtichette e;
        e.aggiungi(prodotto(9304), 1);
        QVERIFY(getLista("9301\t2\r9302\t1\r999999\t5\r9301\t1\r9304\t2\r", e));
        QCOMPARE(contenuto(e), QStringLiteral("9304:3 9301:3 9302:1"));
        const ProdottoEtichetta& vite = e.prodotti().at(1);
        QCOMPARE(QStringList({vite.codice, vite.descrizione, vite.marca}),
                 QStringList({"BC-VITE", "Vite", "Acme Utensili"}));
    }

    // One row a label, numbered across the list; the texts cut to 50 characters (a character beyond the basic
    // plane kept whole); a product without barcode or price gives Nulls. In the print database made for the print,
    // and in one that still holds the rows of an earlier print, which go.
    void righeStampa_data()
    {
        testdb::columns<bool>("nuova");
        QTest::newRow("print database made for the print") << true;
        QTest::newRow("earlier rows") << false;
    }

    void righeStampa()
    {
        QFETCH(bool, nuova);
        run("UPDATE Prodotti SET EAN13CODE = ¤E-9301¤ WHERE RID = 9301");
        run("UPDATE Prodotti SET EAN13CODE = ¤E-9303¤ WHERE RID = 9303");
        run("UPDATE Prodotti SET EAN13CODE = NULL WHERE RID = 9304");
        ElencoEtichette e;
        QVERIFY(getLista("9301\t2\r9303\t1\r9304\t3\r", e));
        QTemporaryDir dir;
        if (nuova)
            QVERIFY(creaStampaDBVuoto());
        const QString file = nuova ? percorsoStampaDB() : stampaDB(dir);
        QList<QPair<int, int>> avanzamento;
        const auto segui = [&](int n, int t) { avanzamento.append({n, t}); };
        QVERIFY(fillBorcodesToPrint(e, segui, nuova ? QString() : file));
        const QString lunga = "XY-LUNGO-" + kLunga.left(42);
        QCOMPARE(lunga.size(), 51); // 50 characters, one of them two UTF-16 units
        const QStringList attese{"1|E-9301|BC-VITE-Vite|Acme Utensili|1.5",
                                 "2|E-9301|BC-VITE-Vite|Acme Utensili|1.5",
                                 "3|E-9303|" + lunga + "|" + kMarcaLunga.left(50) + "|12",
                                 "4||BC-RONDELLA-Rondella||Null",
                                 "5||BC-RONDELLA-Rondella||Null",
                                 "6||BC-RONDELLA-Rondella||Null"};
        QCOMPARE(righeBarcode(file), attese);
        QCOMPARE(avanzamento, (QList<QPair<int, int>>{{1, 3}, {2, 3}, {3, 3}}));
    }

    // A product of the list that is gone stops the print and leaves the table as it was; a print database that is
    // not there is said, and not made.
    void stampaInterrotta()
    {
        QTemporaryDir dir;
        const QString file = stampaDB(dir);
        ElencoEtichette e;
        e.aggiungi(prodotto(9301, "BC-VITE"), 2);
        e.aggiungi(prodotto(999999), 1);
        {
            testdb::ErrorRecorder errori;
            QVERIFY(!fillBorcodesToPrint(e, {}, file));
            QCOMPARE(errori.reports.size(), 1);
            QVERIFY(errori.reports.first().information.contains("999999"));
        }
        QCOMPARE(righeBarcode(file), QStringList{"1|vecchia|vecchia|vecchia|0"});
        const QString manca = dir.filePath("manca.db");
        testdb::ScriptedMsgBox box;
        box.expect(erroreStampaDB());
        QVERIFY(!fillBorcodesToPrint(e, {}, manca));
        QVERIFY(!QFileInfo::exists(manca));
    }

    // The bulk screen asks first: No changes nothing; Yes runs with the product at hand and the bar in view.
    void schermoGenerazione()
    {
        run("UPDATE Prodotti SET EAN13CODE = ¤prima¤");
        testdb::Screen<frmGeneraBarCodeIntoProdotti> s;
        testdb::ScriptedMsgBox box;
        box.expect("Eseguire la generazione dei Codici a Barre per i prodotti presenti?", vb::No);
        s.set("cmdOK", QString());
        QCOMPARE(testdb::count("Prodotti", "EAN13CODE = ¤prima¤"), testdb::count("Prodotti"));
        box.expect("Eseguire la generazione dei Codici a Barre per i prodotti presenti?", vb::Yes);
        box.expect(kFatto);
        s.set("cmdOK", QString());
        QVERIFY(box.allAnswered());
        const int totale = testdb::count("Prodotti");
        QCOMPARE(s.shown("lblInfo"), QString("Generazione Codice a Barre %1 di %1\nProdotto: Rondella").arg(totale));
        QCOMPARE(s.get<QProgressBar>("pgbMain")->value(), 100);
        QCOMPARE(testdb::count("Prodotti", "EAN13CODE = ¤prima¤"), 0);
    }

    // The label screen: a search that finds nothing says so; one that finds shows the count; the products chosen
    // go to the print list with their labels, and the list handed over at the start is there already.
    void schermoEtichette()
    {
        testdb::Screen<frmStampaBarCode> s(QStringLiteral("9302\t2\r"));
        QCOMPARE(s.shown("lblTickets"), QStringLiteral("2 Etichette per 1 Prodotti selezionati"));
        s.lookUp("txtMarca", "VUOTA", "txtCategoria");
        {
            testdb::ScriptedMsgBox box;
            box.expect(kNessuno);
            s.set("cmdEseguiRicerca", QString());
        }
        auto* disponibili = s.get<QTreeWidget>("lswElencoDisponibile");
        QCOMPARE(disponibili->topLevelItemCount(), 0);
        s.set("cmdNuovaRicerca", QString());
        QCOMPARE(s.shown("txtMarca"), QString());
        s.tick("chkLike", true);
        s.lookUp("txtProdotto", "BC-", "txtMarca");
        s.set("cmdEseguiRicerca", QString());
        QCOMPARE(s.shown("lblInfo"), QStringLiteral("3 Prodotti trovati."));
        QCOMPARE(testdb::listColumn(disponibili, 0), QStringList({"BC-DADO", "BC-RONDELLA", "BC-VITE"}));
        s.set("cmdAddAll", QString());
        disponibili->setCurrentItem(disponibili->topLevelItem(2));
        s.set("cmdAdd", QString());
        auto* stampa = s.get<QTreeWidget>("lswElencoStampa");
        QCOMPARE(testdb::listColumn(stampa, 0), QStringList({"3", "1", "2"}));
        QCOMPARE(testdb::listColumn(stampa, 1), QStringList({"BC-DADO", "BC-RONDELLA", "BC-VITE"}));
        QCOMPARE(s.shown("lblTickets"), QStringLiteral("6 Etichette per 3 Prodotti selezionati"));
        stampa->setCurrentItem(stampa->topLevelItem(0));
        s.set("cmdRem", QString());
        QCOMPARE(testdb::listColumn(stampa, 1), QStringList({"BC-RONDELLA", "BC-VITE"}));
        QCOMPARE(s.shown("lblTickets"), QStringLiteral("3 Etichette per 2 Prodotti selezionati"));
    }

    // "Stampa": the labels of the list in the preview of BarCode.rpt, one a label; an empty list prints nothing.
    void stampaDalloSchermo()
    {
        for (const int rid : {9301, 9302})
            run(QString("UPDATE Prodotti SET EAN13CODE = ¤%1¤ WHERE RID = %2")
                    .arg(EncodeEAN13(testdb::text(QString("SELECT BARCODE FROM Prodotti WHERE RID = %1").arg(rid))))
                    .arg(rid));
        modelloEtichette();
        testdb::ErrorRecorder errori;
        {
            testdb::Screen<frmStampaBarCode> vuoto;
            testdb::ScriptedMsgBox box;
            box.expect("Nessun elemento da stampare");
            vuoto.set("cmdStampa", QString());
        }
        testdb::Screen<frmStampaBarCode> s(QStringLiteral("9301\t2\r9302\t1\r"));
        s.set("cmdStampa", QString());
        frmPreview* anteprima = nullptr;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* p = qobject_cast<frmPreview*>(w); p && p->isVisible())
                anteprima = p;
        QVERIFY(anteprima);
        const auto chiudi = qScopeGuard([anteprima] { anteprima->close(); });
        QTRY_VERIFY_WITH_TIMEOUT(!anteprima->inLavorazione(), 20000);
        QVERIFY(errori.reports.isEmpty());
        QCOMPARE(anteprima->windowTitle(), QStringLiteral("Stampa Codici a Barre"));
        QCOMPARE(anteprima->pagine().csvRows.size(), 3);
        const QString pagine = report::pagesText(anteprima->pagine());
        QCOMPARE(pagine.count("BC-VITE-Vite"), 2);
        QCOMPARE(pagine.count("BC-DADO-Dado"), 1);
    }

    // At their smallest, in the usual font or a larger one, both screens show every field whole and at least eight
    // characters wide, and the lists keep some rows.
    void piuPiccoli_data()
    {
        testdb::columns<int>("punti"); // 0: the usual font
        QTest::newRow("usual font") << 0;
        QTest::newRow("large font") << 12;
    }

    void piuPiccoli()
    {
        QFETCH(int, punti);
        const auto ripristina = qScopeGuard([solito = QApplication::font()] { QApplication::setFont(solito); });
        QFont font = QApplication::font();
        if (punti > 0)
            font.setPointSize(punti);
        QApplication::setFont(font);
        testdb::Screen<frmStampaBarCode> etichette;
        testdb::Screen<frmGeneraBarCodeIntoProdotti> generazione;
        for (QWidget* w : {static_cast<QWidget*>(&etichette.screen), static_cast<QWidget*>(&generazione.screen)}) {
            w->resize(1, 1);
            QCoreApplication::processEvents();
            for (QWidget* c : w->findChildren<QWidget*>()) {
                if (!c->isVisibleTo(w) || c->objectName().isEmpty() || c->objectName().startsWith("qt_"))
                    continue;
                const QRect mostrato(c->mapTo(w, QPoint(0, 0)), c->size());
                QVERIFY2(w->rect().contains(mostrato), qPrintable(c->objectName()));
                if (auto* campo = qobject_cast<QLineEdit*>(c))
                    QVERIFY2(campo->width() >= 8 * campo->fontMetrics().averageCharWidth(),
                             qPrintable(campo->objectName()));
                if (auto* lista = qobject_cast<QTreeWidget*>(c))
                    QVERIFY2(lista->viewport()->height() >= 3 * lista->fontMetrics().height(),
                             qPrintable(lista->objectName()));
            }
        }
    }
};

QTEST_MAIN(TestCodiciABarre)
#include "tst_codiciabarre.moc"
