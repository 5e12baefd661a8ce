// Every shipped template, printed from a demo firm on each back end: it
// reads its data without faults, nothing runs off the page or out of its
// box, and the invoice holds what the document holds, to the cent.
// With ORVANTIS_REPORT_PDF_DIR set, the pages are also written there as PDF
// for a person to look at.

#include "common/apphome.h"
#include "common/italiantext.h"
#include "core/optionstore.h"
#include "data/session.h"
#include "demo/datidimostrativi.h"
#include "masterdata/anagrafica.h"
#include "masterdata/distintabase.h"
#include "printing/cartellareport.h"
#include "printing/codiciabarre.h"
#include "printing/creport.h"
#include "printing/stampadb.h"
#include "support/testdb.h"

#include <QFontMetricsF>
#include <QImage>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using namespace testdb;

namespace {

// Items inside the page, and texts that fit their box: a line of text wider
// than its box would print over its neighbour or be cut by the printer.
QStringList fuoriPosto(const report::RenderedReport& pages)
{
    QStringList faults;
    QImage device(8, 8, QImage::Format_ARGB32_Premultiplied);
    device.setDotsPerMeterX(int(1200 / 0.0254));
    device.setDotsPerMeterY(int(1200 / 0.0254));
    const QRectF pagina(0, 0, pages.pageSize.width(), pages.pageSize.height());
    for (int p = 0; p < pages.pageCount(); ++p) {
        for (const report::PageItem& item : pages.pages.at(p).items) {
            const QRectF r = item.rect.normalized();
            if (r.left() < -0.01 || r.top() < -0.01 || r.right() > pagina.right() + 0.01
                || r.bottom() > pagina.bottom() + 0.01)
                faults << QStringLiteral("pagina %1: fuori dal foglio «%2»").arg(p + 1).arg(item.text);
            if (item.kind != report::PageItem::Kind::Text || item.wrap || item.text.isEmpty())
                continue;
            QFont font(item.fontFamily);
            font.setPointSizeF(item.fontSize);
            font.setBold(item.bold);
            font.setHintingPreference(QFont::PreferNoHinting);
            const QFontMetricsF metrics(font, &device);
            for (const QString& line : item.text.split(QLatin1Char('\n'))) {
                const double mm = metrics.horizontalAdvance(line) * 25.4 / 1200;
                if (mm > r.width() + 0.2)
                    faults << QStringLiteral("pagina %1: «%2» largo %3 mm in %4 mm")
                                  .arg(p + 1)
                                  .arg(line)
                                  .arg(mm, 0, 'f', 1)
                                  .arg(r.width(), 0, 'f', 1);
            }
        }
    }
    return faults;
}

} // namespace

class TestModelli : public BackendTest
{
    Q_OBJECT

    report::RenderedReport stampa(const QString& modello, const QString& selezione, const QString& connessione,
                                  const QString& formule = QString())
    {
        cReport r;
        r.setReportFileName(QDir(gSession().strReportPath).filePath(modello));
        r.setSelectionFormula(selezione);
        r.setConnect(connessione);
        r.setFormulaList(formule);
        report::RenderedReport pages;
        if (!r.run(&pages))
            QTest::qFail(qPrintable(modello + QStringLiteral(": ") + r.error()), __FILE__, __LINE__);
        const QString cartella = qEnvironmentVariable("ORVANTIS_REPORT_PDF_DIR");
        if (!cartella.isEmpty()) {
            QDir().mkpath(cartella);
            QString nome = QFileInfo(modello).completeBaseName();
            if (!connessione.isEmpty())
                nome += QLatin1Char('-') + selezione.section(QLatin1Char('='), 1).section(QLatin1Char(' '), 0, 0);
            report::writePdf(pages, QDir(cartella).filePath(nome + QLatin1Char('-') + backend() + ".pdf"));
        }
        return pages;
    }

private Q_SLOTS:
    void initTestCase() { BackendTest::initTestCase(); }

    void init()
    {
        BackendTest::init();
        loadOptionGlobals();
        if (gSession().strReportPath.isEmpty())
            gSession().strReportPath = programFile(QStringLiteral("AccessReports"));
        QVERIFY(installaModelliReport(gSession().strReportPath) >= 0);
        if (count(QStringLiteral("Movimenti")) == 0) {
            // The demo firm brings its letterhead and footer too.
            QString errore;
            QVERIFY2(generaDatiDimostrativi(40, nullptr, &errore), qPrintable(errore));
            run(QStringLiteral("INSERT INTO Rubrica (RID, NUMERO, DENOMINAZIONE, INDIRIZZO, CIVICO, CAP, CITTA, "
                               "PROVINCIA, TELEFONO, CELL, EMAIL) VALUES (1, 1, ¤Studio Rossi & Associati¤, ¤Via "
                               "Mazzini¤, ¤12¤, ¤40121¤, ¤Bologna¤, ¤BO¤, ¤051 123456¤, ¤333 1234567¤, "
                               "¤info@studiorossi.it¤)"));
            run(QStringLiteral("INSERT INTO Rubrica (RID, NUMERO, DENOMINAZIONE, TELEFONO) VALUES (2, 2, "
                               "¤Autofficina Neri¤, ¤051 654321¤)"));
        }
        QVERIFY(QFile::exists(QDir(gSession().strReportPath).filePath(QStringLiteral("Logo.bmp"))));
    }

    // Each list of the live database: rows read, every page tidy.
    void elenchi_data()
    {
        QTest::addColumn<QString>("modello");
        QTest::addColumn<QString>("tabella");
        QTest::addColumn<QString>("dove");
        QTest::newRow("customers") << "RiepilogoClienti.rpt"
                                   << "Anagrafiche"
                                   << "TIPO = ¤C¤";
        QTest::newRow("suppliers") << "RiepilogoFornitori.rpt"
                                   << "Anagrafiche"
                                   << "TIPO = ¤F¤";
        QTest::newRow("products") << "RiepilogoProdotti.rpt"
                                  << "Prodotti"
                                  << "";
        QTest::newRow("accounts") << "PianoConti.rpt"
                                  << "PianoConti"
                                  << "";
        QTest::newRow("address book") << "Rubrica.rpt"
                                      << "Rubrica"
                                      << "";
    }

    void elenchi()
    {
        FETCH_EACH(QString, modello, tabella, dove);
        const report::RenderedReport pages = stampa(modello, QString(), QString());
        QVERIFY(pages.pageCount() >= 1);
        QCOMPARE(pages.csvRows.size(), count(tabella, dove));
        const QStringList faults = fuoriPosto(pages);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.mid(0, 8).join(QLatin1Char('\n'))));
    }

    // The counterparty sheet and the privacy notice of one customer.
    void scheda()
    {
        const int rid = testdb::rid(QStringLiteral("Anagrafiche"), QStringLiteral("TIPO = ¤C¤"));
        const QString nome = text(QStringLiteral("SELECT DENOMINAZIONE FROM Anagrafiche WHERE RID = %1").arg(rid));
        const QString selezione = QStringLiteral("{Anagrafiche.RID}=%1").arg(rid);
        const report::RenderedReport s = stampa(QStringLiteral("SchedaAnagrafica.rpt"), selezione, QString());
        QCOMPARE(s.pageCount(), 1);
        QVERIFY(report::pagesText(s).contains(nome));
        QVERIFY2(fuoriPosto(s).isEmpty(), qPrintable(fuoriPosto(s).join(QLatin1Char('\n'))));
        const DatiInformativa dati{nome,
                                   QStringLiteral("Via Roma"),
                                   QStringLiteral("1"),
                                   QStringLiteral("40100"),
                                   QStringLiteral("Bologna"),
                                   QStringLiteral("BO"),
                                   QStringLiteral("01234567890")};
        QVERIFY(salvaInformativa(rid, preparaRichText(testoInformativa(), dati, QDate(2026, 3, 10))));
        const report::RenderedReport i = stampa(QStringLiteral("Informativa.rpt"), selezione, QString());
        const QString testo = report::pagesText(i);
        QVERIFY2(testo.contains(QStringLiteral("<b>INFORMATIVA SUL TRATTAMENTO DEI DATI PERSONALI</b>")),
                 qPrintable(testo.left(300)));
        QVERIFY(testo.contains(QStringLiteral("Spett.le ") + nome.toHtmlEscaped()));
        QVERIFY(testo.contains(QStringLiteral("Data: 10/03/2026")));
        QVERIFY(!testo.contains(QStringLiteral("fonttbl")));
    }

    // A kit's bill of material: every component, and the totals the kit's screen shows.
    void distintaBase()
    {
        const int kit = number(QStringLiteral("SELECT MAX(FK_DISTINTABASE) FROM DistintaBaseDettagli"));
        QVERIFY(kit > 0);
        const report::RenderedReport pages =
            stampa(QStringLiteral("DistintaBase.rpt"), QStringLiteral("{DistintaBase.RID}=%1").arg(kit), QString());
        const QString testo = report::pagesText(pages);
        for (const QVariantList& r :
             rows(QStringLiteral("SELECT DESCPRODOTTO FROM DistintaBaseDettagli WHERE FK_DISTINTABASE = %1").arg(kit)))
            QVERIFY2(testo.contains(r.at(0).toString()), qPrintable(r.at(0).toString()));
        const TotaliDistinta totali = calcolaTotali(leggiRigheDistinta(kit, 2));
        for (const auto& [voce, importo] : {std::pair{"Imponibile", totali.imponibile}, std::pair{"IVA", totali.iva},
                                            std::pair{"Totale kit", totali.totale}})
            QVERIFY2(testo.contains(QLatin1String(voce) + QLatin1Char('\n') + formattaImporto(importo, 2)),
                     qPrintable(testo));
        QVERIFY(fuoriPosto(pages).isEmpty());
    }

    // One document of each type through its own template and print database.
    void documenti()
    {
        const QList<QVariantList> tipi =
            rows(QStringLiteral("SELECT TD.CODICE, TD.REPORT, MAX(M.RID) FROM Movimenti M INNER JOIN TipoDocumenti TD "
                                "ON TD.RID = M.FK_TIPODOCUMENTO GROUP BY TD.CODICE, TD.REPORT"));
        QVERIFY(tipi.size() >= 7);
        for (const QVariantList& tipo : tipi) {
            const int rid = tipo.at(2).toInt();
            bool sopra = false;
            long extra = 0;
            QVERIFY(creaStampaDB(QStringLiteral("M.RID = %1").arg(rid), sopra, extra));
            const report::RenderedReport pages =
                stampa(tipo.at(1).toString(), QStringLiteral("{Movimenti.RID}=%1").arg(rid), connessioneStampaDB());
            QVERIFY2(pages.pageCount() >= 1, qPrintable(tipo.at(0).toString()));
            const QString testo = report::pagesText(pages);
            const QList<QVariantList> righe =
                rows(QStringLiteral("SELECT DESCPRODOTTO FROM DettagliMovimento WHERE FK_MOVIMENTO = %1 AND "
                                    "(IK_DETTAGLIOMOVIMENTO IS NULL OR IK_DETTAGLIOMOVIMENTO = 0)")
                         .arg(rid));
            for (const QVariantList& r : righe)
                QVERIFY2(testo.contains(r.at(0).toString().left(30)),
                         qPrintable(tipo.at(0).toString() + QStringLiteral(": ") + r.at(0).toString()));
            const QStringList faults = fuoriPosto(pages);
            QVERIFY2(faults.isEmpty(),
                     qPrintable(tipo.at(1).toString() + QLatin1Char('\n') + faults.mid(0, 8).join(QLatin1Char('\n'))));
        }
    }

    // The invoice, as a PDF reader sees it, holds the firm's footer, the
    // customer, every row, the VAT summary by rate and the total, to the
    // cent, as the document stores them.
    void fattura()
    {
        const QString pdftotext = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
        if (pdftotext.isEmpty())
            QSKIP("pdftotext is not installed");
        const int rid = number(QStringLiteral("SELECT MAX(M.RID) FROM Movimenti M INNER JOIN TipoDocumenti TD ON "
                                              "TD.RID = M.FK_TIPODOCUMENTO WHERE TD.CODICE = ¤FV¤"));
        QVERIFY(rid > 0);
        bool sopra = false;
        long extra = 0;
        QVERIFY(creaStampaDB(QStringLiteral("M.RID = %1").arg(rid), sopra, extra));
        const report::RenderedReport pages =
            stampa(QStringLiteral("Fattura.rpt"), QStringLiteral("{Movimenti.RID}=%1").arg(rid), connessioneStampaDB());
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("fattura.pdf"));
        QVERIFY(report::writePdf(pages, pdf));
        QProcess p;
        p.start(pdftotext, {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        QVERIFY(p.waitForFinished(30000));
        const QString testo = QString::fromUtf8(p.readAllStandardOutput());
        const QStringList linee = testo.split(QLatin1Char('\n'));
        // A line that holds these texts, left to right.
        const auto linea = [&](const QStringList& parti) {
            for (const QString& l : linee) {
                qsizetype da = 0;
                bool tutte = true;
                for (const QString& parte : parti) {
                    da = l.indexOf(parte, da);
                    if (da < 0) {
                        tutte = false;
                        break;
                    }
                    da += parte.size();
                }
                if (tutte)
                    return true;
            }
            return false;
        };
        const QVariantList m = rows(QStringLiteral("SELECT DESCCONTROPARTITA, TOTDOCUMENTO, TOTIMPONIBILE, TOTIMPOSTA "
                                                   "FROM Movimenti WHERE RID = %1")
                                        .arg(rid))
                                   .first();
        QVERIFY2(testo.contains(m.at(0).toString()), qPrintable(testo));
        QVERIFY(testo.contains(QStringLiteral("FATTURA")));
        QVERIFY2(linea({QStringLiteral("TOTALE DOCUMENTO"),
                        QStringLiteral("€ ") + formattaImporto(m.at(1).toDouble(), 2)}),
                 qPrintable(testo));
        QVERIFY(linea({QStringLiteral("Totale imponibile"), formattaImporto(m.at(2).toDouble(), 2)}));
        QVERIFY(linea({QStringLiteral("Totale IVA"), formattaImporto(m.at(3).toDouble(), 2)}));
        const QString piede = text(QStringLiteral("SELECT VALORE FROM Opzioni WHERE NOME = ¤PiePagina¤"));
        QVERIFY(!piede.isEmpty());
        QVERIFY(testo.simplified().contains(piede.left(40).simplified()));
        // Each row: code, description, quantity and amount on its line.
        for (const QVariantList& r : rows(QStringLiteral("SELECT CODPRODOTTO, DESCPRODOTTO, QUANTITA, TotPrezzoNetto "
                                                         "FROM DettagliMovimento WHERE FK_MOVIMENTO = %1")
                                              .arg(rid))) {
            QStringList parti{r.at(0).toString(), r.at(1).toString().left(25),
                              QString::number(qRound(r.at(2).toDouble()))};
            if (r.at(3).toDouble() != 0)
                parti << formattaImporto(r.at(3).toDouble(), 2);
            QVERIFY2(linea(parti), qPrintable(parti.join(QLatin1String(" | "))));
        }
        // One line a rate: code, description, taxable, tax; the tax of a rate
        // worked as the document's totals work it, from the taxable amounts.
        const QList<QVariantList> aliquote =
            rows(QStringLiteral("SELECT CODIVA, SUM(ROUND(TotPrezzoNetto, 2)), "
                                "SUM(ROUND(ROUND(TotPrezzoNetto, 2) * VALOREIVA / 100, 4)) FROM DettagliMovimento "
                                "WHERE FK_MOVIMENTO = %1 AND CODIVA <> ¤¤ GROUP BY CODIVA")
                     .arg(rid));
        QVERIFY(!aliquote.isEmpty());
        for (const QVariantList& a : aliquote)
            QVERIFY2(linea({a.at(0).toString(), QStringLiteral("IVA"), formattaImporto(a.at(1).toDouble(), 2),
                            formattaImporto(a.at(2).toDouble(), 2)}),
                     qPrintable(a.at(0).toString()));
    }

    // The special list of a delivery note holds only the rows of the list,
    // with their registration numbers, and the recipient's papers; the
    // invoice with a withholding shows it and the net to pay.
    void elencoSpecialeERitenuta()
    {
        const int ddt = number(QStringLiteral("SELECT MAX(M.RID) FROM Movimenti M INNER JOIN TipoDocumenti TD ON "
                                              "TD.RID = M.FK_TIPODOCUMENTO WHERE TD.CODICE = ¤DDT¤"));
        bool sopra = false;
        long extra = 0;
        QVERIFY(creaStampaDB(QStringLiteral("M.RID = %1").arg(ddt), sopra, extra));
        QStringList inElenco, fuori;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("elenco"));
            db.setDatabaseName(percorsoStampaDB());
            QVERIFY(db.open());
            QSqlQuery q(db);
            QVERIFY(q.exec(QStringLiteral("SELECT RID, DescProdotto FROM DettagliMovimento ORDER BY POS, RID")));
            for (int i = 0; q.next(); ++i)
                (i < 2 ? inElenco : fuori) << q.value(1).toString();
            QVERIFY(!fuori.isEmpty());
            QVERIFY(q.exec(QStringLiteral("UPDATE DettagliMovimento SET ElencoSpeciale = 1, NumRegistrazione = "
                                          "'REG-' || RID WHERE RID IN (SELECT RID FROM DettagliMovimento ORDER BY "
                                          "POS, RID LIMIT 2)")));
            QVERIFY(q.exec(QStringLiteral("UPDATE Movimenti SET ProgElencoSpeciale = 7, DestElencoSpeciale = "
                                          "'Cantiere di via Trieste', DocumElencoSpeciale = 'C.I. AX1234567', "
                                          "AutElencoSpeciale = 'Licenza n. 12/2026'")));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("elenco"));
        const report::RenderedReport elenco =
            stampa(QStringLiteral("ElencoSpeciale.rpt"),
                   QStringLiteral("{Movimenti.RID}=%1 And {DettagliMovimento.ElencoSpeciale}=True").arg(ddt),
                   connessioneStampaDB());
        const QString testo = report::pagesText(elenco);
        for (const QString& riga : inElenco)
            QVERIFY2(testo.contains(riga), qPrintable(riga));
        for (const QString& riga : fuori)
            QVERIFY2(!testo.contains(riga + QLatin1Char('\n')), qPrintable(riga));
        for (const QString& atteso :
             {QStringLiteral("N. 7/"), QStringLiteral("REG-"), QStringLiteral("Cantiere di via Trieste"),
              QStringLiteral("C.I. AX1234567"), QStringLiteral("Licenza n. 12/2026")})
            QVERIFY2(testo.contains(atteso), qPrintable(atteso));
        QVERIFY(fuoriPosto(elenco).isEmpty());

        const int fattura = number(QStringLiteral("SELECT MAX(M.RID) FROM Movimenti M INNER JOIN TipoDocumenti TD ON "
                                                  "TD.RID = M.FK_TIPODOCUMENTO WHERE TD.CODICE = ¤FV¤"));
        QVERIFY(creaStampaDB(QStringLiteral("M.RID = %1").arg(fattura), sopra, extra));
        const QVariantList m =
            rows(QStringLiteral("SELECT TOTIMPONIBILE, TOTDOCUMENTO FROM Movimenti WHERE RID = %1").arg(fattura))
                .first();
        const double ritenuta = qRound(m.at(0).toDouble() * 20) / 100.0;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("ritenuta"));
            db.setDatabaseName(percorsoStampaDB());
            QVERIFY(db.open());
            QSqlQuery q(db);
            QVERIFY(q.exec(QStringLiteral("UPDATE Movimenti SET RDA1 = 20, RDA2 = 100, TOTRDA = %1").arg(ritenuta)));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("ritenuta"));
        const QString conRitenuta =
            report::pagesText(stampa(QStringLiteral("Fattura.rpt"), QStringLiteral("{Movimenti.RID}=%1").arg(fattura),
                                     connessioneStampaDB()));
        QVERIFY(conRitenuta.contains(QStringLiteral("Ritenuta d'acconto 20,00%\n-") + formattaImporto(ritenuta, 2)));
        QVERIFY2(conRitenuta.contains(QStringLiteral("Netto a pagare\n")
                                      + formattaImporto(m.at(1).toDouble() - ritenuta, 2)),
                 qPrintable(conRitenuta.right(400)));
    }

    // Labels of the firm's products, as the label screen fills them: three a
    // row, eight rows a page, the bars drawn, the price.
    void etichette()
    {
        const std::optional<QList<ProdottoEtichetta>> prodotti = cercaProdottiEtichette(FiltriEtichette());
        QVERIFY(prodotti && prodotti->size() >= 9);
        ElencoEtichette elenco;
        for (int i = 0; i < 9; ++i)
            elenco.aggiungi(prodotti->at(i), i < 3 ? 5 : 2); // 27 labels
        QVERIFY(creaStampaDBVuoto());
        QVERIFY(fillBorcodesToPrint(elenco));
        const report::RenderedReport pages = stampa(QStringLiteral("BarCode.rpt"), QString(), connessioneStampaDB());
        QCOMPARE(pages.pageCount(), 2);
        int codici = 0;
        for (const report::PageItem& item : pages.pages.first().items)
            if (item.kind == report::PageItem::Kind::Bars) {
                ++codici;
                QVERIFY(item.bars.size() > 20);
            }
        QCOMPARE(codici, 24);
        const QString testo = report::pagesText(pages);
        QVERIFY(testo.contains(prodotti->first().codice));
        QVERIFY(testo.contains(QStringLiteral("€ ")));
        const QStringList faults = fuoriPosto(pages);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.mid(0, 8).join(QLatin1Char('\n'))));
    }
};

QTEST_MAIN(TestModelli)
#include "tst_modelli.moc"
