// The print preview on both back ends: a list of banks of several pages laid out aside and shown page by page, the
// zoom, the copies, the printer chosen for this window only and printed to a PDF file, the CSV export, the template
// read from the program folder for a print with its own data, the failures logged with the report's values; and
// the printer choice.
#include "common/apphome.h"
#include "data/session.h"
#include "printing/anteprima.h"
#include "printing/creport.h"
#include "printing/frmpreview.h"
#include "printing/frmsceltastampante.h"
#include "screens/framework/appearance.h"
#include "support/scripteddialogs.h"
#include "support/testdb.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPrinterInfo>
#include <QProcess>
#include <QPushButton>
#include <QScrollArea>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kRoma = QStringLiteral("{Banche.PROVINCIA}='RM'");
const QString kFormule = QStringLiteral("INFO = 'Banche della provincia di Roma'");

// A list of banks: a heading with the formula INFO on every page, one row a bank.
QString modello(const QString& intestazione)
{
    return QStringLiteral("report title=\"Elenco Banche\"\ndata from=\"Banche\" order=\"{Banche.CODICE}\"\n"
                          "formula INFO = 'senza filtro'\nsection pageheader height=16\n"
                          "  text 0 0 120 7 \"Elenco Banche - %1\" size=12 bold\n  field 0 8 120 6 \"{@INFO}\"\n"
                          "  special 140 0 46 6 pagenofm align=right\nsection detail height=6\n"
                          "  field 0 0 30 6 \"{Banche.CODICE}\"\n  field 32 0 100 6 \"{Banche.DESCRIZIONE}\"\n"
                          "  field 134 0 40 6 \"{Banche.CITTA}\"\n")
        .arg(intestazione);
}

bool scrivi(const QString& path, const QString& text)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(text.toUtf8()) > 0;
}

QString leggi(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

// The open preview, closed at the end of the test.
struct Finestra
{
    QPointer<frmPreview> w;
    ~Finestra() { delete w; }
    frmPreview* operator->() const { return w; }
    template <class T = QWidget> T* get(const char* name) const { return w->findChild<T*>(QString::fromLatin1(name)); }
    QString testo(const char* name) const
    {
        auto* label = get<QLabel>(name);
        return label ? label->text() : get<QLineEdit>(name)->text();
    }
    bool attiva(int i) const
    {
        return get<QPushButton>(qPrintable(QStringLiteral("cmdAction_%1").arg(i)))->isEnabled();
    }
    void clic(int i) const { testdb::click(*w, QStringLiteral("cmdAction_%1").arg(i)); }
    // The page's picture, in screen pixels.
    int larghezza() const { return get<QLabel>("imgPagina")->pixmap().deviceIndependentSize().toSize().width(); }
    // Opens the banks of Rome (or, with a connection, every bank there) and waits for the pages.
    bool apri(const QString& connessione = QString(), const QString& stampante = QString())
    {
        w = qobject_cast<frmPreview*>(mostraAnteprima("Banche.rpt", connessione.isEmpty() ? kRoma : QString(),
                                                      "Stampa Elenco Banche", kFormule, false, QString(), connessione,
                                                      stampante));
        if (w)
            testdb::showActive(*w);
        return w && QTest::qWaitFor([this] { return !w->inLavorazione(); }, 30000);
    }
};

// Picks a printer in the printer choice (the system's printers, the default marked, and "PDF"); an empty name
// cancels it.
testdb::ScriptedDialogs::Driver scegli(const QString& stampante)
{
    return [stampante](QDialog& d) {
        auto* elenco = d.findChild<QTreeWidget*>(QStringLiteral("lswStampanti"));
        QCOMPARE(testdb::listColumn(elenco, 0), QPrinterInfo::availablePrinterNames() << stampantePdf());
        for (int i = 0; i < elenco->topLevelItemCount(); ++i)
            QCOMPARE(elenco->topLevelItem(i)->text(2).isEmpty(),
                     elenco->topLevelItem(i)->text(0) != QPrinterInfo::defaultPrinterName());
        const auto trovate = elenco->findItems(stampante, Qt::MatchExactly, 0);
        if (!trovate.isEmpty())
            elenco->setCurrentItem(trovate.first());
        testdb::click(d, stampante.isEmpty() ? QStringLiteral("cmdAnnulla") : QStringLiteral("cmdOK"));
    };
}

} // namespace

class TestAnteprima : public testdb::BackendTest
{
    Q_OBJECT

    QTemporaryDir m_report;
    QTemporaryDir m_uscita;

private Q_SLOTS:
    void initTestCase()
    {
        BackendTest::initTestCase();
        applyAppearance();
        // The icon theme as the program sets it: the offscreen platform knows no icon folders.
        QIcon::setThemeSearchPaths(
            QIcon::themeSearchPaths()
            + QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, "icons", QStandardPaths::LocateDirectory));
        QIcon::setThemeName(QStringLiteral("Tango"));
        registerPreviewScreens();
        QVERIFY(scrivi(m_report.filePath("Banche.rpt"), modello("cartella dei report")));
    }

    // 120 banks in Rome, 15 in Milan.
    void init()
    {
        BackendTest::init();
        gSession().strReportPath = m_report.path() + QLatin1Char('/');
        gSession().defaultPrinter = QStringLiteral("Laser Ufficio");
        if (testdb::count("Banche", "PROVINCIA = ¤MI¤") > 0)
            return;
        QStringList righe;
        for (int i = 1; i <= 135; ++i)
            righe << QStringLiteral("(%1, ¤B%2¤, ¤Banca di prova %2¤, ¤%3¤, ¤%4¤)")
                         .arg(9000 + i)
                         .arg(i, 3, 10, QLatin1Char('0'))
                         .arg(i <= 120 ? "Roma" : "Milano", i <= 120 ? "RM" : "MI");
        testdb::run("INSERT INTO Banche (RID, CODICE, DESCRIZIONE, CITTA, PROVINCIA) VALUES " + righe.join(", "));
    }

    // The window opens before its pages, with the commands off; then the pages of the selected banks come, with
    // the caller's formula on each.
    void pagine()
    {
        Finestra f;
        f.w = qobject_cast<frmPreview*>(mostraAnteprima("Banche.rpt", kRoma, "Stampa Elenco Banche", kFormule));
        QVERIFY(f.w);
        QCOMPARE(f->windowTitle(), QStringLiteral("Creazione anteprima in corso..."));
        for (int c = frmPreview::PrimaPagina; c <= frmPreview::EsportaPdf; ++c)
            QCOMPARE(f.attiva(c), c == frmPreview::Chiudi);
        QTRY_VERIFY_WITH_TIMEOUT(!f->inLavorazione(), 30000);

        QCOMPARE(f->windowTitle(), QStringLiteral("Stampa Elenco Banche"));
        const int n = f->numeroPagine();
        QVERIFY2(n >= 3, qPrintable(QString::number(n)));
        QCOMPARE(f.testo("lblPages"), QStringLiteral("Pag. 1 di %1").arg(n));
        QCOMPARE(QStringList(
                     {f.testo("txtNumCopie"), f.get<QComboBox>("CmbZoom")->currentText(), f.testo("lblPrinter")}),
                 QStringList({"1", "100", "STAMPANTE: Laser Ufficio"}));
        const QString testo = report::pagesText(f->pagine());
        QCOMPARE(testo.count(QStringLiteral("Banche della provincia di Roma")), n);
        QVERIFY(testo.contains("Banca di prova 001") && testo.contains("Banca di prova 120"));
        QVERIFY(!testo.contains(QStringLiteral("Milano")));
        // The PDF is a printer: its own command stays off and says where it is.
        QVERIFY(!f.attiva(frmPreview::EsportaPdf) && f.attiva(frmPreview::Stampa));
        QCOMPARE(f.get<QPushButton>("cmdAction_8")->toolTip(),
                 QStringLiteral("Scegliere la stampante «PDF» con Imposta Stampante"));
        f.clic(frmPreview::Chiudi);
        QTRY_VERIFY(f.w.isNull());
    }

    // Page buttons and keys; a negative page counts from the last; buttons that lead nowhere are off.
    void navigazione_data()
    {
        testdb::columns<QStringList, int>("passi", "pagina");
        QTest::newRow("next") << QStringList{"2"} << 2;
        QTest::newRow("last") << QStringList{"3"} << -1;
        QTest::newRow("last, previous") << QStringList{"3", "1"} << -2;
        QTest::newRow("next, next, first") << QStringList{"2", "2", "0"} << 1;
        QTest::newRow("keys") << QStringList{"PgDn", "PgDn", "PgUp"} << 2;
        QTest::newRow("End, Home") << QStringList{"End", "Home"} << 1;
        QTest::newRow("End, PgDn stays") << QStringList{"End", "PgDn"} << -1;
        QTest::newRow("PgUp on the first") << QStringList{"PgUp"} << 1;
    }

    void navigazione()
    {
        QFETCH(QStringList, passi);
        QFETCH(int, pagina);
        Finestra f;
        QVERIFY(f.apri());
        const QHash<QString, Qt::Key> tasti{{"PgDn", Qt::Key_PageDown},
                                            {"PgUp", Qt::Key_PageUp},
                                            {"Home", Qt::Key_Home},
                                            {"End", Qt::Key_End}};
        auto* area = f.get("pctPreview");
        for (const QString& passo : passi) {
            area->setFocus();
            tasti.contains(passo) ? QTest::keyClick(area, tasti.value(passo)) : f.clic(passo.toInt());
        }
        const int n = f->numeroPagine();
        const int attesa = pagina > 0 ? pagina : n + 1 + pagina;
        QCOMPARE(f.testo("lblPages"), QStringLiteral("Pag. %1 di %2").arg(attesa).arg(n));
        QCOMPARE(f->paginaCorrente(), attesa);
        QCOMPARE(QList<bool>({f.attiva(0), f.attiva(1), f.attiva(2), f.attiva(3)}),
                 QList<bool>({attesa > 1, attesa > 1, attesa < n, attesa < n}));
    }

    // The zoom by the list and by clicks on the page in zoom mode, stopping at both ends; the picture follows.
    void zoom_data()
    {
        testdb::columns<QStringList, QString>("passi", "zoom");
        QTest::newRow("entry") << QStringList{"=200"} << "200";
        QTest::newRow("click without zoom mode") << QStringList{"left"} << "100";
        QTest::newRow("left click") << QStringList{"on", "left"} << "125";
        QTest::newRow("right clicks to the smallest") << QStringList{"on", "right", "right", "right", "right"} << "25";
        QTest::newRow("left clicks to the largest") << (QStringList{"on"} << QStringList(8, "left")) << "300";
        QTest::newRow("back and forth") << QStringList{"on", "left", "left", "right"} << "125";
        QTest::newRow("mode off again") << QStringList{"on", "left", "off", "left"} << "125";
        QTest::newRow("from the page width") << QStringList{"=Larghezza pagina", "on", "left", "right"} << "*";
    }

    void zoom()
    {
        QFETCH(QStringList, passi);
        QFETCH(QString, zoom);
        Finestra f;
        QVERIFY(f.apri());
        const int a100 = f.larghezza();
        auto* area = f.get<QScrollArea>("pctPreview");
        auto* combo = f.get<QComboBox>("CmbZoom");
        for (const QString& passo : passi) {
            if (passo.startsWith('='))
                combo->setCurrentText(passo.mid(1));
            else if (passo == "on" || passo == "off")
                f.get<QCheckBox>("chkZoom")->setChecked(passo == "on");
            else
                QTest::mouseClick(area->viewport(), passo == "left" ? Qt::LeftButton : Qt::RightButton, {}, {4, 4});
        }
        if (zoom == "*") {
            // One click up and one down from the page's width land on the entry just below the fit.
            const int voce = combo->currentIndex();
            combo->setCurrentText(QStringLiteral("Larghezza pagina"));
            QVERIFY2(qAbs(area->viewport()->width() - f.larghezza()) <= 60,
                     qPrintable(QStringLiteral("%1 in %2").arg(f.larghezza()).arg(area->viewport()->width())));
            QVERIFY2(combo->itemText(voce).toDouble() < f->zoom() && combo->itemText(voce + 1).toDouble() >= f->zoom(),
                     qPrintable(combo->itemText(voce) + " " + QString::number(f->zoom())));
            return;
        }
        QCOMPARE(combo->currentText(), zoom);
        QVERIFY2(qAbs(f.larghezza() - a100 * zoom.toDouble() / 100) <= 2,
                 qPrintable(QStringLiteral("%1 at 100, %2 at %3").arg(a100).arg(f.larghezza()).arg(zoom)));
    }

    // Copies left empty or zero read 1.
    void copie_data()
    {
        testdb::columns<QString, QString>("scritto", "mostrato");
        QTest::newRow("empty") << ""
                               << "1";
        QTest::newRow("zero") << "0"
                              << "1";
        QTest::newRow("zeros") << "000"
                               << "1";
        QTest::newRow("three") << "3"
                               << "3";
        QTest::newRow("letters refused") << "ab"
                                         << "1";
    }

    void copie()
    {
        FETCH_EACH(QString, scritto, mostrato);
        Finestra f;
        QVERIFY(f.apri());
        testdb::enter(*f.w, "txtNumCopie", scritto);
        QCOMPARE(f.testo("txtNumCopie"), mostrato);
    }

    // The printer chosen in the window prints its pages (a PDF file here), stays when the choice is cancelled,
    // and goes with the window: the next preview has the application's printer again.
    void stampanteScelta()
    {
        const QString pdf = m_uscita.filePath(QStringLiteral("banche.pdf"));
        {
            Finestra f;
            QVERIFY(f.apri());
            testdb::ScriptedDialogs d;
            d.expectDialog("frmSceltaStampante", scegli(stampantePdf()));
            d.expectDialog("frmSceltaStampante", scegli(QString()));
            f.clic(frmPreview::ImpostaStampante);
            f.clic(frmPreview::ImpostaStampante);
            QCOMPARE(f.testo("lblPrinter"), QStringLiteral("STAMPANTE: PDF"));

            d.expectFile(pdf);
            testdb::enter(*f.w, "txtNumCopie", "2");
            f.clic(frmPreview::Stampa);
            QVERIFY(d.allAnswered());
            QProcess testo;
            testo.start("pdftotext", {"-layout", pdf, "-"});
            QVERIFY(testo.waitForFinished(30000));
            const QString stampato = QString::fromUtf8(testo.readAllStandardOutput());
            QVERIFY2(stampato.contains("Banche della provincia di Roma") && stampato.contains("Banca di prova 120"),
                     qPrintable(stampato.left(400)));
            QVERIFY(!stampato.contains(QStringLiteral("Milano")));
            QVERIFY(!f->inLavorazione() && f.attiva(frmPreview::Stampa));
            // The file choice given up prints nothing.
            QFile::remove(pdf);
            d.expectFile(QString());
            f.clic(frmPreview::Stampa);
            QVERIFY(!QFile::exists(pdf));
        }
        QCOMPARE(gSession().defaultPrinter, QStringLiteral("Laser Ufficio"));
        // A system without printers prints to PDF.
        QCOMPARE(risolviStampante("Predefinita") == stampantePdf(), QPrinterInfo::availablePrinterNames().isEmpty());
        Finestra g;
        QVERIFY(g.apri());
        QCOMPARE(g.testo("lblPrinter"), QStringLiteral("STAMPANTE: Laser Ufficio"));
    }

    // The caller's printer becomes the application's when the system knows it.
    void stampanteChiamante_data()
    {
        testdb::columns<QString, QString>("stampante", "applicazione");
        QTest::newRow("none") << ""
                              << "Laser Ufficio";
        QTest::newRow("default") << "Predefinita"
                                 << "Laser Ufficio";
        QTest::newRow("pdf") << "PDF"
                             << "PDF";
        QTest::newRow("unknown") << "Stampante inesistente"
                                 << "Laser Ufficio";
    }

    void stampanteChiamante()
    {
        FETCH_EACH(QString, stampante, applicazione);
        Finestra f;
        QVERIFY(f.apri(QString(), stampante));
        QCOMPARE(f.testo("lblPrinter"), "STAMPANTE: " + applicazione);
        QCOMPARE(gSession().defaultPrinter, applicazione);
    }

    // The CSV holds the printed rows; a file choice given up writes nothing.
    void esportaCsv()
    {
        const QString csv = m_uscita.filePath(QStringLiteral("banche-%1.csv").arg(backend()));
        Finestra f;
        QVERIFY(f.apri());
        testdb::ScriptedDialogs d;
        d.expectFile(QString());
        f.clic(frmPreview::EsportaCsv);
        QVERIFY(!QFile::exists(csv));
        d.expectFile(csv);
        f.clic(frmPreview::EsportaCsv);
        const QStringList righe = leggi(csv).split(QRegularExpression("\r?\n"), Qt::SkipEmptyParts);
        QCOMPARE(righe.size(), 121); // and the heading
        QVERIFY2(righe.value(1).contains(QStringLiteral("B001;Banca di prova 001;Roma")), qPrintable(righe.value(1)));
        QVERIFY(righe.last().contains(QStringLiteral("Banca di prova 120")));
        QVERIFY(righe.filter(QStringLiteral("Milano")).isEmpty());
    }

    // A print without a printer or a port is refused before anything is written.
    void perifericaNonSelezionata_data()
    {
        testdb::columns<QString, QString>("stampante", "porta");
        QTest::newRow("no printer") << ""
                                    << "CUPS";
        QTest::newRow("no port") << "PDF"
                                 << "";
    }

    void perifericaNonSelezionata()
    {
        FETCH_EACH(QString, stampante, porta);
        const QString pdf = m_uscita.filePath(QStringLiteral("rifiutato.pdf"));
        testdb::ScriptedDialogs d;
        d.expectMessage("Periferica di stampa non selezionata!");
        QVERIFY(!stampaReport(1, m_report.filePath("Banche.rpt"), kRoma, kFormule, false, QString(), QString(),
                              stampante, porta, 1, 0, 0, pdf));
        QVERIFY(!QFile::exists(pdf));
    }

    // With its own data the template is the copy in the program folder, when there is one; otherwise, and for
    // the live database always, the report folder's.
    void cartellaModello_data()
    {
        testdb::columns<bool, bool, QString>("connessione", "copia", "intestazione");
        QTest::newRow("own data, copy") << true << true << "copia del programma";
        QTest::newRow("own data, no copy") << true << false << "cartella dei report";
        QTest::newRow("live data, copy") << false << true << "cartella dei report";
    }

    void cartellaModello()
    {
        QFETCH(bool, connessione);
        QFETCH(bool, copia);
        QFETCH(QString, intestazione);
        // A small database of its own, as the document prints have.
        const QString file = m_uscita.filePath(QStringLiteral("propri.db"));
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("propri"));
            db.setDatabaseName(file);
            QVERIFY(db.open());
            QSqlQuery q(db);
            q.exec(QStringLiteral("DROP TABLE IF EXISTS Banche"));
            QVERIFY(q.exec("CREATE TABLE Banche (CODICE TEXT, DESCRIZIONE TEXT, CITTA TEXT, PROVINCIA TEXT)"));
            QVERIFY(q.exec("INSERT INTO Banche VALUES ('P1', 'Banca propria', 'Lodi', 'LO')"));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("propri"));
        const QString programma = QDir(programFolder()).filePath(QStringLiteral("Banche.rpt"));
        QVERIFY(!copia || scrivi(programma, modello("copia del programma")));

        Finestra f;
        const bool aperta = f.apri(connessione ? "DSN=" + file : QString());
        QFile::remove(programma);
        QVERIFY(aperta);
        const QString testo = report::pagesText(f->pagine());
        QVERIFY2(testo.contains("Elenco Banche - " + intestazione), qPrintable(testo.left(300)));
        QCOMPARE(testo.contains(QStringLiteral("Banca propria")), connessione);
    }

    // "Stampa" prints the pages shown, even when their print database has
    // been written over since by the print of another document.
    void stampaQuelloCheMostra()
    {
        const QString file = m_uscita.filePath(QStringLiteral("stampa.db"));
        const auto banca = [&file](const char* descrizione) {
            {
                QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("stampa"));
                db.setDatabaseName(file);
                QVERIFY(db.open());
                QSqlQuery q(db);
                q.exec(QStringLiteral("DROP TABLE IF EXISTS Banche"));
                QVERIFY(q.exec("CREATE TABLE Banche (CODICE TEXT, DESCRIZIONE TEXT, CITTA TEXT, PROVINCIA TEXT)"));
                QVERIFY(q.exec(QStringLiteral("INSERT INTO Banche VALUES ('P1', '%1', 'Lodi', 'LO')")
                                   .arg(QString::fromLatin1(descrizione))));
            }
            QSqlDatabase::removeDatabase(QStringLiteral("stampa"));
        };
        banca("Banca del primo documento");
        Finestra f;
        QVERIFY(f.apri("DSN=" + file, stampantePdf()));
        banca("Banca del secondo documento");
        const QString pdf = m_uscita.filePath(QStringLiteral("primo.pdf"));
        testdb::ScriptedDialogs d;
        d.expectFile(pdf);
        f.clic(frmPreview::Stampa);
        QVERIFY(d.allAnswered());
        QProcess testo;
        testo.start("pdftotext", {pdf, "-"});
        QVERIFY(testo.waitForFinished(30000));
        const QString stampato = QString::fromUtf8(testo.readAllStandardOutput());
        QVERIFY2(stampato.contains("Banca del primo documento"), qPrintable(stampato.left(300)));
        QVERIFY(!stampato.contains("secondo"));
    }

    // A template that cannot be read opens no window: the failure is logged with the report's values.
    void errore_data()
    {
        testdb::columns<QString, QString>("report", "contenuto");
        QTest::newRow("missing") << "Mancante.rpt"
                                 << "";
        QTest::newRow("broken") << "Rotto.rpt"
                                << "report title=\"x\"\nsection nessuna height=abc\n  qualcosa 1 2\n";
    }

    void errore()
    {
        FETCH_EACH(QString, report, contenuto);
        QVERIFY(contenuto.isEmpty() || scrivi(m_report.filePath(report), contenuto));
        const int finestre = QApplication::topLevelWidgets().size();
        testdb::ErrorRecorder errori;
        QVERIFY(!mostraAnteprima(report, kRoma, "Titolo", kFormule));
        QCOMPARE(errori.reports.size(), 1);
        const QString valori = "ReportFileName=" + m_report.filePath(report) + "\r\nSelFormula=" + kRoma
            + "\r\nFormule=" + kFormule + "\r\n";
        QCOMPARE(errori.reports.first().information, valori);
        QVERIFY(!errori.reports.first().description.isEmpty());
        QVERIFY(leggi(programFile(QStringLiteral("Err.log"))).contains(valori));
        QCOMPARE(QApplication::topLevelWidgets().size(), finestre);
    }

    // The window at its smallest cuts no control; pictures of it are kept to look at.
    void aspetto()
    {
        Finestra f;
        QVERIFY(f.apri());
        f.clic(frmPreview::PaginaSuccessiva);
        const QDir cartella(QDir::temp().filePath(QStringLiteral("orvantis-screens")));
        QVERIFY(cartella.mkpath("."));
        QVERIFY(f->grab().save(cartella.filePath("frmPreview-" + backend() + ".png")));
        f->resize(f->minimumSizeHint());
        QTest::qWait(50);
        QVERIFY(f->grab().save(cartella.filePath("frmPreview-min-" + backend() + ".png")));
        for (QWidget* c : f->findChildren<QWidget*>()) {
            if (!c->isVisible() || c->parentWidget() != f.w)
                continue;
            QVERIFY2(f->rect().contains(c->geometry()), qPrintable(c->objectName()));
            if (qobject_cast<QPushButton*>(c) || qobject_cast<QLabel*>(c) || qobject_cast<QCheckBox*>(c)
                || qobject_cast<QComboBox*>(c))
                QVERIFY2(c->width() >= c->minimumSizeHint().width(), qPrintable(c->objectName()));
        }
    }
};

QTEST_MAIN(TestAnteprima)
#include "tst_anteprima.moc"
