// Printing a stored document on both back ends: print database, template beside it, selection, title and printer
// of the type; the special list; the search by type, year and number; the PDF of the command line; the print date
// written once; the document screen's print commands and its barcode list.
#include "common/apphome.h"
#include "core/optionstore.h"
#include "core/screenregistry.h"
#include "core/serversettings.h"
#include "data/session.h"
#include "documents/frmmovimento.h"
#include "masterdata/frmpianoconti.h"
#include "masterdata/frmrubrica.h"
#include "printing/cartellareport.h"
#include "printing/frmpreview.h"
#include "printing/printscreens.h"
#include "printing/reportpages.h"
#include "printing/stampadb.h"
#include "printing/stampadocumento.h"
#include "support/screendriver.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

using testdb::run;

namespace {

constexpr int kFattura = 9401;
const QString kDitta = QStringLiteral("Armeria Tiro Sicuro S.r.l.");
const QString kCliente = QStringLiteral("Poligono Valle d'Aosta");
const QStringList kRighe = {QStringLiteral("Vite a legno 4x40"), QStringLiteral("Cartucce calibro 12"),
                            QStringLiteral("Trasporto a domicilio")};

int tipo(const char* codice) { return testdb::rid("TipoDocumenti", testdb::code(QString::fromLatin1(codice))); }

// An invoice to a customer with a screw, a box of cartridges of the special list and a free row ("/" code):
// 1.011,95 and 22% VAT, 1.234,58 (so by row as by rate). Made once per database.
void preparaFattura()
{
    if (testdb::count("Movimenti", "RID = 9401") > 0)
        return;
    run("INSERT INTO Anagrafiche (RID, NUMERO, TIPO, DENOMINAZIONE, CITTA) VALUES (9401, 9401, ¤C¤, "
        "¤Poligono Valle d'Aosta¤, ¤Aosta¤)");
    run("INSERT INTO Prodotti (RID, CODICE, DESCRIZIONE, SETGIACENZA, GIACENZA, FK_Iva, ELENCOSPECIALE) VALUES "
        "(9401, ¤VITE¤, ¤Vite¤, 0, 0, 1, 0), (9402, ¤CART12¤, ¤Cartucce¤, 0, 0, 1, -1), "
        "(9403, ¤/¤, ¤Riga libera¤, 0, 0, 1, 0)");
    run(QStringLiteral("INSERT INTO Movimenti (RID, PROGRESSIVO, ANNO, DATA, FK_TIPODOCUMENTO, FK_CONTROPARTITA, "
                       "FK_DESTINAZIONE, RDA1, RDA2, USAPREZZIIVA, PROGELENCOSPECIALE) VALUES (9401, 41, 2026, "
                       "¤2026-03-02¤, %1, 9401, 9401, 0, 0, 0, 3)")
            .arg(tipo("FV")));
    const QString colonne = QStringLiteral(
        "INSERT INTO DettagliMovimento (RID, FK_MOVIMENTO, POS, FK_PRODOTTO, CODPRODOTTO, DESCPRODOTTO, QUANTITA, "
        "PREZZO, SCONTO, SCONTO2, SCONTO3, SCONTONETTO, PREZZONETTO, TotPrezzoNetto, IVA, TOTALEIVA, TOTALERIGA, "
        "VALOREIVA, FK_Iva, TAGLIO, IK_DETTAGLIOMOVIMENTO) VALUES ");
    // FK_Iva 1: the seed's 22%.
    run(colonne
        + "(9401, 9401, 1, 9401, ¤VITE¤, ¤Vite a legno 4x40¤, 4, 2.5, 10, 0, 0, 0.25, 2.25, 9, 0.495, 1.98, 10.98, "
          "22, 1, 0, NULL)");
    run(colonne
        + "(9402, 9401, 2, 9402, ¤CART12¤, ¤Cartucce calibro 12¤, 100, 9.918, 0, 0, 0, 0, 9.918, 991.80, 2.182, "
          "218.20, 1210.00, 22, 1, 0, NULL)");
    run(colonne
        + "(9403, 9401, 3, 9403, ¤/¤, ¤Trasporto a domicilio¤, 1, 11.15, 0, 0, 0, 0, 11.15, 11.15, 2.45, 2.45, "
          "13.60, 22, 1, 0, NULL)");
}

QString cartellaReport() { return QDir(programFolder()).filePath(QStringLiteral("AccessReports")); }

// A template in the report folder: the one shipped with the program, or a small one of the test's own with the
// same data when the program ships none of that name.
void modello(const QString& nome, const QString& proprio)
{
    QDir().mkpath(cartellaReport());
    const QString percorso = QDir(cartellaReport()).filePath(nome);
    QFile::remove(percorso);
    const QString spedito = QStringLiteral(":/reports/") + nome;
    if (QFile::exists(spedito)) {
        QVERIFY(QFile::copy(spedito, percorso));
        QFile::setPermissions(percorso, QFile::permissions(percorso) | QFileDevice::WriteOwner);
        return;
    }
    QFile file(percorso);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(proprio.toUtf8());
}

// A document as it prints: the firm (the footer of the documents), the customer, each row and the total.
const char* kModelloDocumento = R"(report title="Documento"
data from="Movimenti INNER JOIN DettagliMovimento ON DettagliMovimento.FK_MOVIMENTO = Movimenti.RID" order="{DettagliMovimento.POS}"
formula TOTALE = Sum({DettagliMovimento.TotaleRiga})
section pageheader height=24
  field 10 2 180 8 "{Movimenti.PiePagina}"
  field 10 12 180 8 "{Movimenti.DESCCONTROPARTITA}"
section detail height=6
  field 10 0 120 6 "{DettagliMovimento.DescProdotto}"
  field 150 0 40 6 "{DettagliMovimento.TotaleRiga}" format=money align=right
section reportfooter height=10
  text 10 2 60 6 "Totale documento"
  field 150 2 40 6 "{@TOTALE}" format=money align=right
)";

void modelliDocumento()
{
    modello(QStringLiteral("Fattura.rpt"), QString::fromUtf8(kModelloDocumento));
    modello(QStringLiteral("ElencoSpeciale.rpt"), QString::fromUtf8(kModelloDocumento));
}

QDate dataStampa(int rid)
{
    return testdb::value(QStringLiteral("SELECT DATASTAMPA FROM Movimenti WHERE RID = %1").arg(rid)).toDate();
}

// What the print database holds: one value a statement.
QVariant stampaDb(const QString& sql)
{
    QVariant valore;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("tst_stampe_printdb"));
        db.setDatabaseName(percorsoStampaDB());
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(sql) && q.next())
                valore = q.value(0);
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("tst_stampe_printdb"));
    return valore;
}

// The previews open now, their pages laid out.
QList<frmPreview*> anteprime()
{
    QList<frmPreview*> aperte;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* p = qobject_cast<frmPreview*>(w); p && p->isVisible())
            aperte << p;
    for (frmPreview* p : aperte)
        [&] { QTRY_VERIFY_WITH_TIMEOUT(!p->inLavorazione(), 20000); }();
    return aperte;
}

void chiudiAnteprime()
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (qobject_cast<frmPreview*>(w))
            w->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString simplified(QString text) { return text.replace(QChar::Nbsp, QLatin1Char(' ')).simplified(); }

// The text of a PDF file, blanks made single.
QString testoPdf(const QString& file)
{
    QProcess testo;
    testo.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), file, QStringLiteral("-")});
    testo.waitForFinished(30000);
    return simplified(QString::fromUtf8(testo.readAllStandardOutput()));
}

// Every text of `presenti` is in `testo`, none of `assenti`.
void contiene(const QString& testo, const QStringList& presenti, const QStringList& assenti = {})
{
    for (const QString& t : presenti)
        QVERIFY2(testo.contains(t), qPrintable(t + QStringLiteral(" non in: ") + testo));
    for (const QString& t : assenti)
        QVERIFY2(!testo.contains(t), qPrintable(t + QStringLiteral(" in: ") + testo));
}

} // namespace

class TestStampe : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        preparaFattura();
        gOptions() = OptionGlobals();
        std::tie(gOptions().decimaliDopo, gOptions().distintaBase, gOptions().rigaLibera) = std::tuple(2, "*", "/");
        gOptions().piePagina = kDitta + QStringLiteral(" - Via Roma 1, Aosta - P.IVA 01234567897");
        gOptions().reportElencoSpeciale = QStringLiteral("ElencoSpeciale.rpt");
        gSession().strReportPath = cartellaReport() + QLatin1Char('/');
        gSession().defaultPrinter.clear();
        machineSettings().remove(QStringLiteral("StampantiDocumenti"));
        run("UPDATE Movimenti SET DATASTAMPA = NULL WHERE RID = 9401");
        modelliDocumento();
    }
    void cleanup()
    {
        chiudiAnteprime();
        BackendTest::cleanup();
    }

    // The print database filled with the stored document, the template copied over an older read-only copy in the
    // program folder, selection, title and the printer of the type on this workstation.
    void prepara_data()
    {
        testdb::columns<bool, QString, QString, QString>("elenco", "report", "selezione", "titolo");
        QTest::newRow("documento") << false << "Fattura.rpt"
                                   << "{Movimenti.RID}=9401"
                                   << "Stampa Fattura di vendita FV";
        QTest::newRow("elenco speciale") << true << "ElencoSpeciale.rpt"
                                         << "{Movimenti.RID}=9401 And {DettagliMovimento.ElencoSpeciale}=True"
                                         << "Stampa Elenco Speciale - Fattura di vendita";
    }

    void prepara()
    {
        QFETCH(bool, elenco);
        FETCH_EACH(QString, report, selezione, titolo);
        machineSettings().setValue(QStringLiteral("StampantiDocumenti/FV"), QStringLiteral("Ufficio"));
        const QString copia = QDir(programFolder()).filePath(report);
        QFile vecchia(copia);
        QVERIFY(vecchia.open(QIODevice::WriteOnly | QIODevice::Truncate));
        vecchia.write("# una copia di prima\n");
        vecchia.close();
        QFile::setPermissions(copia, QFileDevice::ReadOwner);
        QFile::remove(percorsoStampaDB());

        testdb::ScriptedMsgBox box;
        testdb::ErrorRecorder errori;
        StampaDocumento s;
        QVERIFY(elenco ? preparaStampaElencoSpeciale(kFattura, s) : preparaStampaDocumento(kFattura, s));
        QVERIFY(errori.reports.isEmpty());
        QCOMPARE(QStringList({s.report, s.selezione, s.titolo, s.stampante, s.connessione}),
                 QStringList({report, selezione, titolo, QStringLiteral("Ufficio"), connessioneStampaDB()}));
        QCOMPARE(QFileInfo(s.percorso), QFileInfo(copia));
        QFile originale(QDir(cartellaReport()).filePath(report)), copiato(copia);
        QVERIFY(originale.open(QIODevice::ReadOnly) && copiato.open(QIODevice::ReadOnly));
        QCOMPARE(copiato.readAll(), originale.readAll());
        QVERIFY(QFileInfo(copia).isWritable());
        QCOMPARE(stampaDb(QStringLiteral("SELECT DESCCONTROPARTITA FROM Movimenti")).toString(), kCliente);
        QCOMPARE(stampaDb(QStringLiteral("SELECT COUNT(*) FROM DettagliMovimento WHERE FK_MOVIMENTO = 9401")).toInt(),
                 3);
        QVERIFY(!dataStampa(kFattura).isValid()); // preparing is not printing
    }

    // Nothing to print: an unsaved document silently, a missing template (of the type or of the special list)
    // after an error report; no copy, no preview, no print date.
    void nonPreparato_data()
    {
        testdb::columns<int, bool, QString, int>("rid", "elenco", "manca", "errori");
        QTest::newRow("non salvato") << 0 << false << "" << 0;
        QTest::newRow("modello mancante") << kFattura << false << "Fattura.rpt" << 1;
        QTest::newRow("elenco senza modello") << kFattura << true << "opzione" << 1;
    }

    void nonPreparato()
    {
        QFETCH(int, rid);
        QFETCH(bool, elenco);
        QFETCH(QString, manca);
        QFETCH(int, errori);
        if (manca == QLatin1String("opzione"))
            gOptions().reportElencoSpeciale.clear();
        else if (!manca.isEmpty())
            QFile::remove(QDir(cartellaReport()).filePath(manca));
        QFile::remove(QDir(programFolder()).filePath(QStringLiteral("Fattura.rpt")));
        testdb::ScriptedMsgBox box;
        testdb::ErrorRecorder registro;
        StampaDocumento s;
        QVERIFY(!(elenco ? preparaStampaElencoSpeciale(rid, s) : preparaStampaDocumento(rid, s)));
        QCOMPARE(registro.reports.size(), errori);
        QVERIFY(!QFile::exists(QDir(programFolder()).filePath(QStringLiteral("Fattura.rpt"))));
        QCOMPARE(elenco ? stampaElencoSpecialeDaSchermata(rid, false) : stampaDocumentoDaSchermata(rid, false),
                 QDate());
        QVERIFY(anteprime().isEmpty());
        QVERIFY(!dataStampa(kFattura).isValid());
    }

    void cercaDocumento_data()
    {
        testdb::columns<QString, int, int, int>("tipo", "anno", "numero", "rid");
        QTest::newRow("trovato") << "FV" << 2026 << 41 << kFattura;
        QTest::newRow("altro anno") << "FV" << 2025 << 41 << 0;
        QTest::newRow("altro tipo") << "FD" << 2026 << 41 << 0;
        QTest::newRow("tipo inesistente") << "X'Y" << 2026 << 41 << 0;
    }

    void cercaDocumento()
    {
        QFETCH(QString, tipo);
        FETCH_EACH(int, anno, numero, rid);
        QCOMPARE(::cercaDocumento(tipo, anno, numero), rid);
    }

    // The PDF holds the firm, the customer, every row and the total to the cent; the first print writes the date,
    // a later one keeps it. A file that cannot be written, or a document that is gone, says why and marks nothing.
    void documentoInPdf_data()
    {
        testdb::columns<int, QString, QString, QDate>("rid", "file", "stampato", "atteso");
        QTest::newRow("mai stampato") << kFattura << "fattura.pdf"
                                      << "NULL" << QDate();
        QTest::newRow("già stampato") << kFattura << "fattura.pdf"
                                      << "¤2026-03-03¤" << QDate(2026, 3, 3);
        QTest::newRow("cartella inesistente") << kFattura << "manca/fattura.pdf"
                                              << "NULL" << QDate();
        QTest::newRow("documento inesistente") << 999999 << "fattura.pdf"
                                               << "NULL" << QDate();
    }

    void documentoInPdf()
    {
        QFETCH(int, rid);
        FETCH_EACH(QString, file, stampato);
        QFETCH(QDate, atteso);
        const bool scrive = rid == kFattura && !file.contains(QLatin1Char('/'));
        run(QStringLiteral("UPDATE Movimenti SET DATASTAMPA = ") + stampato + QStringLiteral(" WHERE RID = 9401"));
        const QString pdf = QDir(programFolder()).filePath(file);
        QFile::remove(pdf);
        testdb::ErrorRecorder errori;
        QString errore;
        QCOMPARE(::documentoInPdf(rid, pdf, &errore), scrive);
        QCOMPARE(errore.isEmpty(), scrive);
        QCOMPARE(dataStampa(kFattura).isValid(), scrive || atteso.isValid());
        if (!scrive)
            return;
        QVERIFY(errori.reports.isEmpty());
        contiene(testoPdf(pdf), QStringList{kDitta, kCliente} + kRighe + QStringList{QStringLiteral("1.234,58")});
        if (atteso.isValid())
            QCOMPARE(dataStampa(kFattura), atteso);
    }

    // The document screen: F12 opens the preview of a stored document and nothing for a new one; without the
    // preview the document goes at once to the printer of its type, here the PDF printer, which asks for its file
    // (none chosen: nothing printed); the special list prints its own rows only. A print shows the print date.
    void stampaDaSchermata_data()
    {
        testdb::columns<int, bool>("rid", "anteprima");
        testdb::columns<QString>({"comando", "file"});
        testdb::columns<QStringList>({"stampate", "escluse"});
        QTest::newRow("anteprima") << kFattura << true << "F12"
                                   << "" << kRighe << QStringList();
        QTest::newRow("documento nuovo") << 0 << true << "F12"
                                         << "" << QStringList() << QStringList();
        QTest::newRow("senza anteprima") << kFattura << false << "cmdCommand_5"
                                         << "documento.pdf" << kRighe << QStringList();
        QTest::newRow("elenco speciale") << kFattura << false << "cmdCommand_11"
                                         << "elenco" << kRighe.mid(1, 1) << QStringList{kRighe.at(0), kRighe.at(2)};
        QTest::newRow("file non scelto") << kFattura << false << "cmdCommand_5"
                                         << "" << QStringList() << QStringList();
    }

    void stampaDaSchermata()
    {
        QFETCH(int, rid);
        QFETCH(bool, anteprima);
        FETCH_EACH(QString, comando, file);
        FETCH_EACH(QStringList, stampate, escluse);
        const bool stampa = !stampate.isEmpty();
        machineSettings().setValue(QStringLiteral("StampantiDocumenti/FV"), QStringLiteral("PDF"));
        const QString pdf = file.isEmpty() ? QString() : QDir(programFolder()).filePath(file);
        const QString scritto = pdf.endsWith(QLatin1String(".pdf")) ? pdf : pdf + QStringLiteral(".pdf");
        QFile::remove(scritto);
        testdb::ScriptedDialogs dialoghi;
        if (!anteprima)
            dialoghi.expectFile(pdf);
        testdb::ErrorRecorder errori;
        testdb::Screen<frmMovimento> s(rid, rid > 0 ? 0 : tipo("FV"));
        s.get<QCheckBox>("chkAnteprima")->setChecked(!anteprima); // "Non mostrare Anteprima"
        if (comando == QLatin1String("F12"))
            QTest::keyClick(&s.screen, Qt::Key_F12);
        else
            s.set(comando, QString());
        const QList<frmPreview*> aperte = anteprime();
        QVERIFY(dialoghi.allAnswered());
        QVERIFY(errori.reports.isEmpty());
        QCOMPARE(aperte.size(), anteprima && stampa ? 1 : 0);
        QCOMPARE(dataStampa(kFattura).isValid(), stampa);
        QCOMPARE(s.get("lblStampato")->isVisibleTo(&s.screen), stampa);
        if (!stampa)
            return;
        QVERIFY(s.shown("lblStampato").startsWith(QStringLiteral("Documento stampato il ")));
        if (anteprima) {
            QCOMPARE(aperte.first()->windowTitle(), QStringLiteral("Stampa Fattura di vendita FV"));
            contiene(simplified(report::pagesText(aperte.first()->pagine())), QStringList{kCliente} + stampate);
        } else {
            contiene(testoPdf(scritto), stampate, escluse);
        }
    }

    // The barcode command hands the label screen one line a row, product key, tab and quantity, without the
    // free row.
    void barcode()
    {
        static QVariant ricevuto;
        screens::registerScreen(QStringLiteral("frmStampaBarCode"),
                                {screens::Kind::Child,
                                 [](QWidget*, const QVariant& argomento) -> QWidget* {
                                     ricevuto = argomento;
                                     return nullptr;
                                 },
                                 true});
        testdb::Screen<frmMovimento> s(kFattura, 0);
        s.set(QStringLiteral("cmdCommand_8"), QString());
        QCOMPARE(ricevuto.toString(), QStringLiteral("9401\t4,00\r9402\t100,00\r"));
    }

    // The whole-list prints: the buttons of the chart of accounts and of the
    // address book, and the lists of the menu, each in a preview of its own
    // title with the shipped template's pages.
    void elenchi_data()
    {
        testdb::columns<QString, QString>("origine", "titolo");
        QTest::newRow("chart of accounts") << "frmPianoConti"
                                           << "Stampa Piano dei Conti";
        QTest::newRow("address book") << "frmRubrica"
                                      << "Stampa Rubrica";
        QTest::newRow("customers") << "stampaClienti"
                                   << "Stampa Elenco Contatti";
        QTest::newRow("suppliers") << "stampaFornitori"
                                   << "Stampa Elenco Fornitori";
        QTest::newRow("products") << "stampaProdotti"
                                  << "Stampa Elenco Prodotti";
    }

    void elenchi()
    {
        FETCH_EACH(QString, origine, titolo);
        QVERIFY(installaModelliReport(gSession().strReportPath) >= 0);
        registerPrintScreens();
        testdb::ErrorRecorder errori;
        if (origine.startsWith(QLatin1String("frm"))) {
            std::unique_ptr<QWidget> schermata(origine == QLatin1String("frmRubrica")
                                                   ? static_cast<QWidget*>(new frmRubrica)
                                                   : static_cast<QWidget*>(new frmPianoConti));
            schermata->show();
            QTest::mouseClick(schermata->findChild<QPushButton*>(QStringLiteral("cmdCommand_4")), Qt::LeftButton);
        } else {
            const screens::ScreenEntry* voce = screens::findScreen(origine);
            QVERIFY(voce);
            QCOMPARE(voce->create(nullptr, QVariant()), nullptr);
        }
        const QList<frmPreview*> aperte = anteprime();
        QVERIFY2(errori.reports.isEmpty(), qPrintable(errori.reports.value(0).information));
        QCOMPARE(aperte.size(), 1);
        QCOMPARE(aperte.first()->windowTitle(), titolo);
        QVERIFY(aperte.first()->numeroPagine() >= 1);
    }
};

QTEST_MAIN(TestStampe)
#include "tst_stampe.moc"
