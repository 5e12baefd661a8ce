// The print database of the documents, on both back ends: three documents (two saved as the document screen saves
// them, with a free row and kits; one written directly, with rows of two progressives) copied with their looked-up
// texts, rows, kits by the print option, due dates and logo; a filter that finds nothing or fails, a second print,
// the empty file of the labels, the file one folder up, a file that can't be made.
#include "common/apphome.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "data/session.h"
#include "documents/documento.h"
#include "documents/editordocumento.h"
#include "documents/salvadocumento.h"
#include "printing/stampadb.h"
#include "support/testdb.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QtTest>

#include <optional>

using testdb::run;

namespace {

constexpr int kCliente = 9501, kVite = 9501, kDado = 9502, kKit = 9503, kIva22 = 9501, kIva10 = 9502, kPezzi = 9501;

int chiave(const char* tabella, const char* codice)
{
    return testdb::rid(QString::fromLatin1(tabella), testdb::code(QString::fromLatin1(codice)));
}

// A row confirmed in the editor as row entry leaves it; a kit brings its components from its bill of material.
void riga(EditorDocumento& e, int prodotto, const char* codice, const char* testo, const char* quantita,
          const char* listino, int iva = kIva22)
{
    e.pulisciRiga();
    const bool libera = QByteArray(codice).startsWith('/');
    std::tie(e.dati.prodotto, e.dati.codice, e.dati.descrizione, e.dati.iva, e.dati.codIva) =
        std::tuple(prodotto, codice, testo, iva, iva == kIva22 ? "S22" : "S10");
    std::tie(e.dati.um, e.dati.codUM) = libera ? std::tuple(0, "") : std::tuple(kPezzi, "PZ5");
    std::tie(e.riga.prezzoListino, e.riga.quantita, e.riga.aliquota) =
        std::tuple(listino, quantita, iva == kIva22 ? "22" : "10");
    QVERIFY(e.confermaRiga() >= 0);
}

// A deferred invoice to the customer (no stock moves; a journal entry and its due dates), saved.
int salva(int giorno, const QString& riferimenti, int banca, const char* pagamento,
          const std::function<void(EditorDocumento&)>& righe, DatiSpedizione spedizione = {})
{
    DocumentoDaSalvare d;
    d.testata.tipo = {chiave("TipoDocumenti", "FD"), QStringLiteral("FD"), QString()};
    getInfoDocumento(d.testata.tipo.rid, d.info);
    std::tie(d.testata.anno, d.testata.data, d.testata.riferimenti) =
        std::tuple(2026, QDate(2026, 3, giorno), riferimenti);
    d.testata.destinazione.rid = kCliente;
    d.testata.pagamento.rid = chiave("Pagamenti", pagamento);
    d.testata.banca.rid = banca;
    d.testata.spedizione = spedizione;
    EditorDocumento e(2, QStringLiteral("*"));
    righe(e);
    e.calcolaTotali();
    d.totali = e.totali();
    return salvaDocumento(d, e.griglia(), true) ? d.testata.rid : 0;
}

// Once per database: the customer, two banks (with and without branch), units, VAT rates, a brand, a vendor, the
// products and the kit *KIT9 (two screws at 10, a nut at 4), and the three documents:
//  A: screws, a free row, two kits, a nut; bank with branch, two due dates, shipping details;
//  B: nuts and a kit at the end; bank without branch, one due date;
//  C: an order written directly, rows of progressives 1 and 2, the payment entry of A.
void prepara()
{
    if (testdb::count("Movimenti", "RIFERIMENTI = ¤Documento A¤") > 0)
        return;
    // The printed title differs from the type's name.
    run("UPDATE TipoDocumenti SET DESCSTAMPA = ¤Fattura accompagnatoria¤ WHERE CODICE = ¤FD¤");
    run("INSERT INTO Iva (RID, CODICE, DESCRIZIONE, VALORE) VALUES (9501, ¤S22¤, ¤Aliquota 22%¤, 22), "
        "(9502, ¤S10¤, ¤Aliquota 10%¤, 10)");
    run("INSERT INTO UnitaMisura (RID, CODICE, DESCRIZIONE) VALUES (9501, ¤PZ5¤, ¤Pezzi sfusi¤)");
    run("INSERT INTO Marche (RID, CODICE, DESCRIZIONE) VALUES (9501, ¤ACM¤, ¤Acme¤)");
    run("INSERT INTO Venditori (RID, CODICE, DESCRIZIONE) VALUES (9501, ¤VEN1¤, ¤Mario Bianchi¤)");
    run("INSERT INTO Banche (RID, CODICE, DESCRIZIONE, AGENZIA, ABI, CAB) VALUES (9501, ¤BPV¤, ¤Banca Veneta¤, "
        "¤Verona 3¤, ¤05034¤, ¤11701¤), (9502, ¤BCC¤, ¤Credito Cooperativo¤, NULL, ¤08000¤, ¤11000¤)");
    run("INSERT INTO Anagrafiche (RID, NUMERO, TIPO, DENOMINAZIONE, INDIRIZZO, CIVICO, CAP, CITTA, PROVINCIA, PIVA, "
        "CFISCALE, TELUFFICIO) VALUES (9501, 9501, ¤C¤, ¤Ferramenta Rossi¤, ¤Via Roma¤, ¤12¤, ¤37100¤, ¤Verona¤, "
        "¤VR¤, ¤01234567890¤, ¤RSSMRA80A01L781X¤, ¤045 123456¤)");
    run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, FK_Iva, FK_UNITAMISURA, FK_MARCA, NUMREGISTRAZIONE, "
        "ELENCOSPECIALE, DISTINTABASE) VALUES (9501, ¤VITE¤, ¤Vite¤, 9501, 9501, 9501, ¤REG-7¤, -1, 0), "
        "(9502, ¤DADO¤, ¤Dado¤, 9502, 9501, NULL, NULL, 0, 0), (9503, ¤*KIT9¤, ¤Kit viti¤, 9501, 9501, NULL, NULL, "
        "0, -1)");
    run("INSERT INTO DistintaBase (RID, CODICE, DESCRIZIONE) VALUES (9501, ¤*KIT9¤, ¤Kit viti¤)");
    run("INSERT INTO DistintaBaseDettagli (RID, FK_DISTINTABASE, FK_PRODOTTO, CODPRODOTTO, DESCPRODOTTO, QUANTITA, "
        "PREZZO, FK_Iva, VALOREIVA, POS, FK_UM) VALUES (9501, 9501, 9501, ¤VITE¤, ¤Vite del kit¤, 2, 10, 9501, 22, 1, "
        "9501), (9502, 9501, 9502, ¤DADO¤, ¤Dado del kit¤, 1, 4, 9502, 10, 2, 9501)");

    DatiSpedizione s;
    std::tie(s.via, s.civico, s.citta, s.data, s.ora, s.peso, s.colli) =
        std::tuple("Via Verdi", "5", "Padova", QDate(2026, 3, 11), "10:30", Single(12.5f), qint16(3));
    std::tie(s.aspetto, s.causaleTrasporto, s.spedizione) =
        std::tuple(chiave("AspettoEsteriore", "CAR"), chiave("CausaliTrasporto", "VEN"), chiave("Spedizioni", "VET"));
    const int a = salva(
        10, "Documento A", 9501, "3060FM",
        [](EditorDocumento& e) {
            riga(e, kVite, "VITE", "Vite", "3", "12,5");
            riga(e, 2, "/L", "Trasporto", "1", "10");
            riga(e, kKit, "*KIT9", "Kit viti", "2", "0");
            riga(e, kKit, "*KIT9", "Kit viti", "1", "0");
            riga(e, kDado, "DADO", "Dado", "1", "4", kIva10);
        },
        s);
    QVERIFY(a > 0);
    run(QStringLiteral("UPDATE DettagliMovimento SET FK_VENDITORE = 9501 WHERE FK_MOVIMENTO = %1 AND POS = 1").arg(a));
    QVERIFY(salva(12, "Documento B", 9502, "RD",
                  [](EditorDocumento& e) {
                      riga(e, kDado, "DADO", "Dado", "2", "4", kIva10);
                      riga(e, kKit, "*KIT9", "Kit viti", "1", "0");
                  })
            > 0);

    const int pnA = testdb::number(QStringLiteral("SELECT FK_PrimaNota FROM Movimenti WHERE RID = %1").arg(a));
    run(QStringLiteral("INSERT INTO Movimenti (RID, PROGRESSIVO, ANNO, DATA, FK_TIPODOCUMENTO, RIFERIMENTI, "
                       "FK_PNPagamento, PROGELENCOSPECIALE) VALUES (9503, 7, 2026, ¤2026-03-14¤, %1, ¤Documento C¤, "
                       "%2, 0)")
            .arg(chiave("TipoDocumenti", "OC"))
            .arg(pnA));
    run("INSERT INTO DettagliMovimento (FK_MOVIMENTO, POS, FK_PRODOTTO, CODPRODOTTO, DESCPRODOTTO, EXTRAPROG) VALUES "
        "(9503, 1, 9501, ¤VITE¤, ¤Vite¤, 1), (9503, 2, 9502, ¤DADO¤, ¤Dado¤, 2), (9503, 3, 9502, ¤DADO¤, ¤Sfuso¤, 2)");
}

int documento(const QString& nome)
{
    return testdb::rid("Movimenti", QStringLiteral("RIFERIMENTI = ¤Documento %1¤").arg(nome));
}

// The filter of the documents named ("AB" for A and B).
QString filtro(const QString& nomi)
{
    QStringList chiavi;
    for (const QChar n : nomi)
        chiavi << QString::number(documento(n));
    return QStringLiteral("M.RID IN (") + chiavi.join(QStringLiteral(", ")) + QLatin1Char(')');
}

bool stampa(const QString& filtro, long extraProg = 0)
{
    bool sopra = false;
    return creaStampaDB(filtro, sopra, extraProg);
}

// The rows of a statement on the print file, each its fields joined by "|" (Null as "NULL", numbers as stored).
QStringList leggi(const QString& sql, const QString& percorso = percorsoStampaDB())
{
    static int n = 0;
    const QString nome = QStringLiteral("tst-printdb-") + QString::number(++n);
    QStringList righe;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), nome);
        db.setDatabaseName(percorso);
        QSqlQuery q(db);
        if (!db.open() || !q.exec(sql))
            righe << QStringLiteral("ERROR ") + q.lastError().text() + db.lastError().text();
        while (q.next()) {
            QStringList campi;
            for (int i = 0; i < q.record().count(); ++i) {
                const QVariant v = q.value(i);
                campi << (v.isNull()                            ? QStringLiteral("NULL")
                              : v.typeId() == QMetaType::Double ? QString::number(v.toDouble(), 'g', 15)
                                                                : v.toString());
            }
            righe << campi.join(QLatin1Char('|'));
        }
    }
    QSqlDatabase::removeDatabase(nome);
    return righe;
}

int conta(const char* tabella) { return leggi(QStringLiteral("SELECT COUNT(*) FROM ") + tabella).value(0).toInt(); }

// Everything the print file holds, table by table, in the order written.
QStringList contenuto()
{
    QStringList tutto;
    for (const char* t : {"Movimenti", "DettagliMovimento", "Scadenze", "Logo", "BARCODE"})
        tutto << leggi(QStringLiteral("SELECT '%1', * FROM %1 ORDER BY rowid").arg(t));
    return tutto;
}

} // namespace

class TestStampaDB : public testdb::BackendTest
{
    Q_OBJECT

    std::optional<testdb::ErrorRecorder> m_errori;
    QTemporaryDir m_report;

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        gOptions() = OptionGlobals();
        std::tie(gOptions().decimaliDopo, gOptions().distintaBase, gOptions().rigaLibera) = std::tuple(2, "*", "/");
        gOptions().piePagina = QStringLiteral("Grazie per la preferenza");
        gSession().strReportPath = m_report.path() + QLatin1Char('/');
        prepara();
        m_errori.emplace();
    }

    void cleanup()
    {
        const QList<ErrorReport> errori = m_errori->reports;
        m_errori.reset();
        QVERIFY2(errori.isEmpty(), qPrintable(errori.value(0).procedure + " " + errori.value(0).information));
        for (const QString& nome : QSqlDatabase::connectionNames()) // the print file's connection is given back
            QVERIFY2(!nome.startsWith(QLatin1String("orvantis-printdb")), qPrintable(nome));
        BackendTest::cleanup();
    }

    // What a document's header (M) and first row (R) print, A, B and C in one file: the type's printed title, the
    // counterparty, payment, bank with and without branch, shipping, footer, payment entry; brand, vendor and the
    // product's data on the row.
    void valori_data()
    {
        testdb::columns<QString>({"doc", "dove", "espressione", "atteso"});
        const auto row = [](const char* doc, const char* dove, const char* espressione, const char* atteso) {
            QTest::newRow(espressione) << QString(doc) << QString(dove) << QString(espressione) << QString(atteso);
        };
        row("A", "M", "CODTIPODOCUMENTO || '/' || DESCTIPODOCUMENTO", "FD/Fattura accompagnatoria");
        row("C", "M", "PROGRESSIVO || '/' || ANNO || '/' || typeof(ANNO) || '/' || DATA", "7/2026/text/2026-03-14");
        row("A", "M", "CODCONTROPARTITA || '/' || DESCCONTROPARTITA || '/' || PIVA || '/' || CFISCALE",
            "9501/Ferramenta Rossi/01234567890/RSSMRA80A01L781X");
        row("B", "M", "INDIRIZZO || ' ' || CIVICO || ', ' || CAP || ' ' || CITTA || ' (' || PROVINCIA || ')'",
            "Via Roma 12, 37100 Verona (VR)");
        row("A", "M", "CODPAGAMENTO || '/' || DESCPAGAMENTO", "3060FM/30/60 gg data fattura fine mese");
        row("A", "M", "CODBANCA || '/' || DESCBANCA", "BPV/Banca Veneta Ag. Verona 3 ABI:05034 CAB:11701");
        row("B", "M", "CODBANCA || '/' || DESCBANCA", "BCC/Credito Cooperativo");
        row("C", "M", "'[' || CODBANCA || DESCBANCA || DESCCONTROPARTITA || DESCPAGAMENTO || ']'", "[]");
        row("A", "M",
            "VIACONS || ' ' || CIVICOCONS || ' ' || CITTACONS || '/' || DATACONS || ' ' || ORACONS || '/' || PESOCONS "
            "|| '/' || COLLICONS",
            "Via Verdi 5 Padova/2026-03-11 10:30/12.5/3");
        row("A", "M", "CODSPEDIZIONE || '/' || DESCASPETTO || '/' || DESCTRASPORTO", "VET/Cartoni/Vendita");
        row("B", "M", "PiePagina || '/' || FK_LOGO || '/' || IDPNPagamento || '/' || USAPREZZIIVA",
            "Grazie per la preferenza/1/0/0");
        row("C", "M", "(IDPNPagamento > 0) || '/' || ifnull(ProgElencoSpeciale, 'NULL')", "1/NULL");
        row("A", "R",
            "CODMARCA || '/' || CODVENDITORE || '/' || DESCVENDITORE || '/' || NumRegistrazione || '/' || "
            "ElencoSpeciale || '/' || (datetime(DATAORA) = DATAORA)",
            "ACM/VEN1/Mario Bianchi/REG-7/-1/1");
    }

    void valori()
    {
        FETCH_EACH(QString, doc, dove, espressione, atteso);
        QVERIFY(stampa(filtro("ABC")));
        QCOMPARE(conta("Movimenti"), 3);
        const QString da = dove == "M" ? "Movimenti WHERE RID = %1"
                                       : "DettagliMovimento WHERE FK_MOVIMENTO = %1 ORDER BY rowid LIMIT 1";
        QCOMPARE(leggi("SELECT " + espressione + " FROM " + da.arg(documento(doc))), QStringList{atteso});
    }

    // The rows with unit and VAT, the free row with neither unit nor brand; kits by the print option: every row
    // with the kit's own VAT blank, or the kit as one line with its components' sums and the last one's VAT,
    // components hidden, also for a kit after a kit and a kit at the end of the data.
    void righe_data()
    {
        testdb::columns<QString, int, QStringList>("doc", "tipoStampa", "attese");
        const QString vite = "VITE|Vite|3|PZ5|Pezzi sfusi|12.5|12.5|2.75|37.5|8.25|45.75|S22|Aliquota 22%|22";
        const QString libera = "/L|Trasporto|1|||10|10|2.2|10|2.2|12.2|S22|Aliquota 22%|22";
        const QString dado = "DADO|Dado|%1|PZ5|Pezzi sfusi|4|4|0.4|%2|%3|%4|S10|Aliquota 10%|10";
        const QString kitZero = "*KIT9|Kit viti|%1|PZ5|Pezzi sfusi|0|0|0|0|0|0|||0";
        const QString viteKit = "VITE|Vite del kit|%1|PZ5|Pezzi sfusi|10|10|2.2|%2|%3|%4|S22|Aliquota 22%|22";
        const QString dadoKit = "DADO|Dado del kit|%1|PZ5|Pezzi sfusi|4|4|0.4|%2|%3|%4|S10|Aliquota 10%|10";
        const QString kit = "*KIT9|Kit viti|%1|PZ5|Pezzi sfusi|14|14|2.6|%2|%3|%4|S10|Aliquota 10%|10";
        const QStringList aTutte{vite,
                                 libera,
                                 kitZero.arg(2),
                                 viteKit.arg(4).arg(40).arg(8.8).arg(48.8),
                                 dadoKit.arg(2).arg(8).arg(0.8).arg(8.8),
                                 kitZero.arg(1),
                                 viteKit.arg(2).arg(20).arg(4.4).arg(24.4),
                                 dadoKit.arg(1).arg(4).arg(0.4).arg(4.4),
                                 dado.arg(1).arg(4).arg(0.4).arg(4.4)};
        QTest::newRow("A, every row") << "A" << 0 << aTutte;
        QTest::newRow("A, kits as one line")
            << "A" << 1
            << QStringList{vite, libera, kit.arg(2).arg(48).arg(9.6).arg(57.6), kit.arg(1).arg(24).arg(4.8).arg(28.8),
                           dado.arg(1).arg(4).arg(0.4).arg(4.4)};
        QTest::newRow("B, every row") << "B" << 0
                                      << QStringList{dado.arg(2).arg(8).arg(0.8).arg(8.8)} + aTutte.mid(5, 3);
        for (int tipo : {1, 2})
            QTest::addRow("B, kit at the end as one line, %d", tipo)
                << "B" << tipo
                << QStringList{dado.arg(2).arg(8).arg(0.8).arg(8.8), kit.arg(1).arg(24).arg(4.8).arg(28.8)};
    }

    void righe()
    {
        QFETCH(QString, doc);
        QFETCH(int, tipoStampa);
        QFETCH(QStringList, attese);
        gOptions().tipoStampaDistinta = tipoStampa;
        QVERIFY(stampa(filtro(doc)));
        QCOMPARE(leggi("SELECT CodProdotto, DescProdotto, QUANTITA, CODUM, DESCUM, Prezzo, PrezzoNetto, IVA, "
                       "TotPrezzoNetto, TotaleIVA, TotaleRiga, CodIva, DESCIVA, VALOREIVA FROM DettagliMovimento "
                       "ORDER BY rowid"),
                 attese);
        QCOMPARE(leggi("SELECT DISTINCT FK_MOVIMENTO FROM DettagliMovimento"),
                 QStringList{QString::number(documento(doc))});
    }

    // The due dates of the document's journal entry as stored, adding up to the document: two, one, none (no entry).
    void scadenze_data()
    {
        testdb::columns<QString, int>("doc", "quante");
        QTest::newRow("two") << "A" << 2;
        QTest::newRow("one") << "B" << 1;
        QTest::newRow("no journal entry") << "C" << 0;
    }

    void scadenze()
    {
        FETCH_EACH(QString, doc);
        QFETCH(int, quante);
        const int rid = documento(doc);
        QVERIFY(stampa(filtro(doc)));
        QStringList attese;
        for (const QVariantList& r :
             testdb::rows(QStringLiteral("SELECT S.RID, S.DATA, S.Importo FROM Movimenti M INNER "
                                         "JOIN Scadenze S ON S.FK_PrimaNota = M.FK_PrimaNota "
                                         "WHERE M.RID = %1 ORDER BY S.DATA")
                              .arg(rid)))
            attese << QStringLiteral("%1|%2|%3|%4")
                          .arg(r.at(0).toInt())
                          .arg(rid)
                          .arg(toDate(r.at(1)).toString(Qt::ISODate), QString::number(r.at(2).toDouble(), 'g', 15));
        QCOMPARE(attese.size(), quante);
        QCOMPARE(leggi("SELECT RID, FK_MOVIMENTO, DATA, IMPORTO FROM Scadenze ORDER BY rowid"), attese);
        if (quante > 0)
            QCOMPARE(leggi("SELECT ROUND(SUM(IMPORTO), 2) FROM Scadenze"),
                     QStringList{
                         testdb::text(QStringLiteral("SELECT TOTDOCUMENTO FROM Movimenti WHERE RID = %1").arg(rid))});
    }

    // Only the rows of the progressive asked; the header stays.
    void extraProg_data()
    {
        testdb::columns<int, QStringList>("extra", "righe");
        QTest::newRow("all") << 0 << QStringList{"VITE|Vite", "DADO|Dado", "DADO|Sfuso"};
        QTest::newRow("first") << 1 << QStringList{"VITE|Vite"};
        QTest::newRow("second") << 2 << QStringList{"DADO|Dado", "DADO|Sfuso"};
        QTest::newRow("none of them") << 3 << QStringList{};
    }

    void extraProg()
    {
        QFETCH(int, extra);
        QFETCH(QStringList, righe);
        QVERIFY(stampa(filtro("C"), extra));
        QCOMPARE(leggi("SELECT CodProdotto || '|' || DescProdotto FROM DettagliMovimento ORDER BY rowid"), righe);
        QCOMPARE(conta("Movimenti"), 1);
    }

    // After a full print: a filter that finds nothing gives a valid file with the logo row alone; one that fails is
    // told by the data layer and leaves the tables empty.
    void senzaDocumenti_data()
    {
        testdb::columns<QString, bool>("condizione", "riuscita");
        QTest::newRow("nothing found") << "M.RID = -1" << true;
        QTest::newRow("bad filter") << "M.NONESISTE = 1" << false;
    }

    void senzaDocumenti()
    {
        QFETCH(QString, condizione);
        QFETCH(bool, riuscita);
        QVERIFY(stampa(filtro("AB")));
        {
            testdb::ErrorRecorder errori;
            QCOMPARE(stampa(condizione), riuscita);
            QCOMPARE(errori.reports.isEmpty(), riuscita);
        }
        for (const char* t : {"Movimenti", "DettagliMovimento", "Scadenze", "BARCODE"})
            QCOMPARE(conta(t), 0);
        QCOMPARE(conta("Logo"), riuscita ? 1 : 0);
    }

    // The file is made anew for each print: the same document twice gives the same file, whatever came between.
    void dueStampe()
    {
        QVERIFY(stampa(filtro("A")));
        const QStringList prima = contenuto();
        QVERIFY(stampa(filtro("BC")));
        QVERIFY(contenuto() != prima);
        QVERIFY(stampa(filtro("A")));
        QCOMPARE(contenuto(), prima);
    }

    // The logo: the bytes of Logo.bmp of the report folder, or Null; in the empty file of the labels too, whose
    // BARCODE rows go in by position.
    void logo_data()
    {
        testdb::columns<bool, bool>("presente", "vuoto");
        QTest::newRow("document, logo") << true << false;
        QTest::newRow("document, no logo") << false << false;
        QTest::newRow("labels, logo") << true << true;
        QTest::newRow("labels, no logo") << false << true;
    }

    void logo()
    {
        FETCH_EACH(bool, presente, vuoto);
        QFile file(QDir(m_report.path()).filePath(QStringLiteral("Logo.bmp")));
        const QByteArray immagine("BM\x00\x01\xff\x7f-logo", 11);
        QVERIFY(presente ? file.open(QIODevice::WriteOnly) && file.write(immagine) == 11 : !file.exists());
        file.close();
        QVERIFY(vuoto ? creaStampaDBVuoto() : stampa(filtro("A")));
        file.remove();
        QCOMPARE(leggi("SELECT RID, CASE WHEN LOGO IS NULL THEN 'NULL' ELSE hex(LOGO) END FROM Logo"),
                 QStringList{QStringLiteral("1|") + (presente ? QString(immagine.toHex().toUpper()) : "NULL")});
        QCOMPARE(conta("Movimenti"), vuoto ? 0 : 1);
        leggi("INSERT INTO BARCODE VALUES (1, '8Ab*aaa+', 'VITE-ACM', 'Vite', 2.5)");
        QCOMPARE(leggi("SELECT PROG, EAN13CODE, TESTO1, TESTO2, PREZZO FROM BARCODE"),
                 QStringList{"1|8Ab*aaa+|VITE-ACM|Vite|2.5"});
    }

    // With `sopra` the file lies one folder above the program folder ("DSN=" and its path for the templates); a
    // file that can't be made (a folder in its place) is told, and nothing prints.
    void cartella_data()
    {
        testdb::columns<bool>({"sopra", "bloccato", "vuoto"});
        QTest::newRow("below") << false << false << false;
        QTest::newRow("one folder up") << true << false << false;
        QTest::newRow("can't be made") << false << true << false;
        QTest::newRow("labels, can't be made") << true << true << true;
    }

    void cartella()
    {
        FETCH_EACH(bool, sopra, bloccato, vuoto);
        const QString programma = programFolder();
        QTemporaryDir radice;
        setProgramFolder(radice.filePath(QStringLiteral("prg")));
        const QString percorso = radice.filePath(sopra ? "printdb.db" : "prg/printdb.db");
        const QString connessione = connessioneStampaDB(sopra), altro = percorsoStampaDB(!sopra);
        if (bloccato)
            QVERIFY(QDir().mkpath(percorso + "/x"));
        bool fatto = false;
        {
            testdb::ScriptedMsgBox box;
            if (bloccato)
                box.expect("Si è verificato un errore durante la creazione del Documento di Stampa. [Rif: Creazione "
                           "TEMP_DB].\rImpossibile continuare");
            long extra = 0;
            fatto = vuoto ? creaStampaDBVuoto(sopra) : creaStampaDB(filtro("B"), sopra, extra);
        }
        setProgramFolder(programma);
        QCOMPARE(fatto, !bloccato);
        QCOMPARE(connessione, "DSN=" + percorso);
        QVERIFY(!QFile::exists(altro));
        if (!bloccato)
            QCOMPARE(leggi("SELECT DESCBANCA FROM Movimenti", percorso), QStringList{"Credito Cooperativo"});
    }
};

QTEST_MAIN(TestStampaDB)
#include "tst_stampadb.moc"
