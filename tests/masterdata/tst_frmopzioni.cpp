// The options screen driven by its controls on both back ends.
#include "core/optionstore.h"
#include "core/serversettings.h"
#include "data/session.h"
#include "masterdata/frmopzioni.h"
#include "masterdata/logoazienda.h"
#include "support/screendriver.h"

#include <QSettings>
#include <QtTest>

using testdb::ScriptedDialogs;
using Screen = testdb::Screen<frmOpzioni>;

namespace {

const QString kSalvate = QStringLiteral("Le impostazioni correnti sono state salvate.");

QString storedOption(const QString& nome)
{
    return testdb::value("SELECT VALORE FROM Opzioni WHERE NOME = ¤" + nome + "¤").toString();
}

// "#Table:CODE" is the key of that row (NUMERO for the counterparties).
QString resolve(const QString& expected)
{
    if (!expected.startsWith('#') || !expected.contains(':'))
        return expected;
    const QString table = expected.mid(1).section(':', 0, 0), code = expected.section(':', 1);
    return QString::number(testdb::rid(table, table == "Anagrafiche" ? "NUMERO = " + code : testdb::code(code)));
}

// A picture of `size`, all red, in `dir`.
QString redPicture(const QTemporaryDir& dir, QSize size)
{
    const QString file = dir.filePath("marchio.png");
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image.save(file) ? file : QString();
}

// Presses OK and answers the notice of the save.
void pressOk(Screen& s)
{
    ScriptedDialogs script;
    script.expectMessage(kSalvate, vb::OK);
    testdb::click(s.screen, "cmdOk");
}

} // namespace

// Every test starts with two customers (7, 9) and a supplier (8), customer 7
// the counter-sales one; every option, the machine settings and the logo go
// back as they were when it ends.
class TestFrmOpzioni : public testdb::BackendTest
{
    Q_OBJECT

    QTemporaryDir m_reports;
    QList<QPair<QString, QString>> m_options;

    // How many options differ from the start.
    int changed() const
    {
        int n = 0;
        for (const auto& [nome, valore] : m_options)
            n += storedOption(nome) != valore;
        return n;
    }

private Q_SLOTS:
    void initTestCase()
    {
        BackendTest::initTestCase();
        for (const char* file : {"ElencoSpeciale.rpt", "Fattura.rpt", "Listino.RPT", "leggimi.txt"})
            QVERIFY(QFile(m_reports.filePath(file)).open(QIODevice::WriteOnly));
    }
    void init()
    {
        BackendTest::init();
        gSession().strReportPath = m_reports.path();
        for (const QString party :
             {"7, ¤Bottega Rossi s.n.c.¤, ¤C¤", "8, ¤Ingrosso Bianchi S.p.A.¤, ¤F¤", "9, ¤Cartoleria Verdi¤, ¤C¤"})
            if (testdb::count("Anagrafiche", "NUMERO = " + party.left(1)) == 0)
                testdb::run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (" + party + ")");
        setOpzione("ClientePredefinito", resolve("#Anagrafiche:7"));
        m_options.clear();
        for (const QVariantList& row : testdb::rows("SELECT NOME, VALORE FROM Opzioni"))
            m_options.append({row.value(0).toString(), row.value(1).toString()});
        loadOptionGlobals();
    }
    void cleanup()
    {
        for (const auto& [nome, valore] : m_options)
            if (storedOption(nome) != valore)
                setOpzione(nome, valore);
        machineSettings().remove("Opzioni");
        machineSettings().remove("Options");
        QFile::remove(logoazienda::percorso(m_reports.path()));
        loadOptionGlobals();
        BackendTest::cleanup();
    }

    // The screen opens on its first field and shows the globals: codes with
    // their descriptions, the numerator and report chosen, the report
    // folder's templates whatever the case of ".rpt".
    void loadShowsStoredValues()
    {
        Screen s;
        QCOMPARE(QApplication::focusWidget(), s.get("txtAnnoCorrente"));
        QCOMPARE(s.shown("txtAnnoCorrente"), QString::number(QDate::currentDate().year()));
        for (const QString pair :
             {"txtDecimalAfter=2", "txtContoClienti=01001001", "lblContoClienti=Clienti Italia", "txtCliente=7",
              "lblCliente=Bottega Rossi s.n.c.", "lblIva=IVA 22%", "lblPagamento=Rimessa diretta",
              "lblDocConversione=Fattura differita", "txtMarcaPredefinita=", "txtVenditoreChar=%",
              "txtMesiPrezzoMedio=12", "optAvvisaSottoScorta=1", "optDistintaBase_0=1", "cmbNumeratore=Elenco speciale",
              "cmbReport=ElencoSpeciale.rpt"})
            QCOMPARE(pair.section('=', 0, 0) + '=' + s.shown(pair.section('=', 0, 0)), pair);
        QCOMPARE(s.get<QComboBox>("cmbReport")->count(), 3);
    }

    // OK writes the table, the globals and the settings, and nothing else.
    void okSavesEverywhere_data()
    {
        for (const char* c : {"control", "input", "option", "expected"}) // option: a table row or "Section/Key"
            QTest::addColumn<QString>(c);
        const auto row = [](const char* name, const char* control, const QString& input, const char* option,
                            const QString& expected) { QTest::newRow(name) << control << input << option << expected; };
        const QString footer = "L'IVA è esposta ai sensi dell'art. 21 ¤ \"5%\"";
        row("year", "txtAnnoCorrente", "2031", "AnnoCorrente", "2031");
        row("decimals", "txtDecimalAfter", "3", "DecimaliDopo", "3");
        row("account", "txtContoFornitori", "01003001", "ContoFornitori", "#PianoConti:01003001");
        row("customer", "txtCliente", "9", "ClientePredefinito", "#Anagrafiche:9");
        row("supplier", "txtFornitore", "8", "Fornitore", "#Anagrafiche:8");
        row("code emptied", "txtIva", "", "RidIvaProdotti", "0");
        row("footer", "txtPiePagina", footer, "PiePagina", footer);
        row("empty agent prefix", "txtVenditoreChar", "", "VenditoreChar", "%");
        row("flag", "chkPrezzoMedio", "", "PrezzoMedio", "1");
        row("option pair on", "optBloccaSottoScorta", "", "BloccaSottoScorta", "1");
        row("option pair off", "optBloccaSottoScorta", "", "AvvisaSottoScorta", "0");
        row("kit print", "optDistintaBase_2", "", "TipoStampaDistinta", "2");
        row("numerator", "cmbNumeratore", "Fatture e note di credito", "NumeratoreElencoSpeciale", "#Numeratori:FAT");
        row("report", "cmbReport", "Listino.RPT", "ReportElencoSpeciale", "Listino.RPT");
        row("reader", "txtLaserChar", "#", "Opzioni/LaserChar", "#");
        row("bold", "chkUsaGrassetto", "", "Options/UsaGrassetto", "1");
    }
    void okSavesEverywhere()
    {
        QFETCH(QString, control);
        QFETCH(QString, input);
        QFETCH(QString, option);
        QFETCH(QString, expected);
        expected = resolve(expected);
        QVERIFY(!expected.isEmpty());
        Screen s;
        s.set(control, input);
        pressOk(s);
        QCOMPARE(s.screen.result(), int(QDialog::Accepted));
        QCOMPARE(optionText(gOptions(), option.section('/', -1)), expected);
        if (option.contains('/'))
            QCOMPARE(machineSettings().value(option).toString(), expected);
        else
            QCOMPARE(storedOption(option), expected);
        QVERIFY2(changed() <= 2, qPrintable(QString::number(changed())));
    }

    // The browse button searches the option's table; the row chosen fills
    // code and description. An unknown code is told, then emptied with its
    // description, and saved as none.
    void keyFields_data()
    {
        for (const char* c : {"control", "button", "code", "description", "unknown", "option"})
            QTest::addColumn<QString>(c);
        const auto row = [](const char* name, const char* control, const char* button, const char* code,
                            const char* description, const char* unknown, const char* option) {
            QTest::newRow(name) << control << button << code << description << unknown << option;
        };
        row("customer", "txtCliente", "cmdSfoglia_2", "9", "Cartoleria Verdi", "999", "ClientePredefinito");
        row("a supplier is no customer", "txtCliente", "", "", "", "8", "ClientePredefinito");
        row("vat", "txtIva", "", "", "", "ZZ", "RidIvaProdotti");
        row("account", "txtContoClienti", "", "", "", "99999999", "ContoClienti");
        row("payment", "txtPagamento", "", "", "", "NOPAG", "PagamentoVB");
        row("browse account", "txtContoFornitori", "cmdSfoglia_6", "01003001", "Cassa", "", "");
        row("browse unit", "txtUnitaMisura", "cmdSfoglia_17", "KG", "Chilogrammi", "", "");
    }
    void keyFields()
    {
        QFETCH(QString, control);
        QFETCH(QString, button);
        QFETCH(QString, code);
        QFETCH(QString, description);
        QFETCH(QString, unknown);
        QFETCH(QString, option);
        Screen s;
        const QString label = "lbl" + control.mid(3);
        ScriptedDialogs script;
        if (!button.isEmpty()) {
            script.expectDialog("frmRicerca", testdb::searchFor(code)); // the filter is the whole code
            s.set(button, {});
            QCOMPARE(s.shown(control), code);
            QCOMPARE(s.shown(label), description);
        }
        if (unknown.isEmpty())
            return;
        QVERIFY(!s.shown(label).isEmpty());
        s.reveal(control);
        s.set(control, unknown);
        script.expectMessage("Codice: " + unknown + " inesistente!", vb::OK);
        QTest::keyClick(s.get(control), Qt::Key_Return); // Enter moves on, which looks the code up
        QCoreApplication::processEvents();
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown(control) + s.shown(label), QString());
        pressOk(s);
        QCOMPARE(storedOption(option), QStringLiteral("0"));
    }

    // A check box shows its panel, or enables the control it governs.
    void checkBoxGovernsItsControls_data()
    {
        QTest::addColumn<QString>("check");
        QTest::addColumn<QString>("dependent");
        QTest::addColumn<bool>("shows");
        QTest::newRow("chkPrezzoMedio") << "chkPrezzoMedio"
                                        << "txtMesiPrezzoMedio" << true;
        QTest::newRow("chkSottoScorta") << "chkSottoScorta"
                                        << "optBloccaSottoScorta" << true;
        QTest::newRow("chkVenditeGiorniDiversi") << "chkVenditeGiorniDiversi"
                                                 << "optAvvisaVenditeGiorniDiversi" << true;
        QTest::newRow("chkVenditoriObbligatori") << "chkVenditoriObbligatori"
                                                 << "chkVenditoriBlocco" << false;
    }
    void checkBoxGovernsItsControls()
    {
        QFETCH(QString, check);
        QFETCH(QString, dependent);
        QFETCH(bool, shows);
        Screen s;
        QWidget* target = s.get(dependent);
        s.reveal(dependent);
        const auto active = [&] { return shows ? target->isVisible() : target->isEnabled(); };
        QVERIFY(!active()); // the model starts with every one of them off
        for (bool on : {true, false}) {
            s.key(check, Qt::Key_Space);
            QCOMPARE(active(), on);
        }
    }

    // Annulla closes and nothing changes: table, globals, settings, logo.
    void annullaSavesNothing()
    {
        const OptionGlobals before = gOptions();
        QTemporaryDir pictures;
        const QString picture = redPicture(pictures, QSize(60, 30));
        QVERIFY(!picture.isEmpty());
        {
            Screen s;
            s.set("txtAnnoCorrente", "1999");
            s.set("txtPiePagina", "altro");
            s.set("chkBloccoPN", "");
            s.set("txtLaserChar", "@");
            ScriptedDialogs script;
            script.expectFile(picture);
            s.set("cmdLogoStretch", {});
            testdb::click(s.screen, "cmdAnnulla");
            QCOMPARE(s.screen.result(), int(QDialog::Rejected));
        }
        QCOMPARE(changed(), 0);
        for (const QString& nome : firmOptionNames())
            QCOMPARE(optionText(gOptions(), nome), optionText(before, nome));
        QVERIFY(!machineSettings().contains("Opzioni/LaserChar"));
        QVERIFY(!QFile::exists(logoazienda::percorso(m_reports.path())));
    }

    // A chosen picture is fitted into the 4 x 9 cm box, proportions kept,
    // and written as Logo.bmp only when OK is pressed; the next opening shows
    // it. A file that is no picture is told and writes nothing.
    void logoIsScaledAndWritten_data()
    {
        QTest::addColumn<QSize>("picture"); // empty: a text file
        QTest::addColumn<QPoint>("white");  // a point of the margin left around the picture
        QTest::newRow("wide") << QSize(400, 100) << QPoint(530, 10);
        QTest::newRow("tall") << QSize(100, 400) << QPoint(10, 236);
        QTest::newRow("small, same shape") << QSize(90, 40) << QPoint(-1, -1);
        QTest::newRow("unreadable") << QSize() << QPoint();
    }
    void logoIsScaledAndWritten()
    {
        QFETCH(QSize, picture);
        QFETCH(QPoint, white);
        QTemporaryDir pictures;
        const QString file = picture.isEmpty() ? m_reports.filePath("leggimi.txt") : redPicture(pictures, picture);
        QVERIFY(!file.isEmpty());
        const QString logo = logoazienda::percorso(m_reports.path());
        {
            Screen s;
            ScriptedDialogs script;
            script.expectFile(file);
            if (picture.isEmpty())
                script.expectMessage("Impossibile leggere l'immagine ", vb::OK);
            s.set("cmdLogoStretch", {});
            QCOMPARE(s.get<QLabel>("pctImmagine")->pixmap().isNull(), picture.isEmpty());
            QVERIFY(!QFile::exists(logo));
            pressOk(s);
        }
        QCOMPARE(QFile::exists(logo), !picture.isEmpty());
        if (picture.isEmpty())
            return;
        const QImage written(logo);
        QCOMPARE(written.size(), QSize(1063, 472));
        QCOMPARE(written.dotsPerMeterX(), 11811); // 300 dpi: the box prints at 9 x 4 cm
        QCOMPARE(written.pixelColor(531, 236), QColor(Qt::red));
        // The margin is white; a picture of the box's shape fills it to the edges.
        QCOMPARE(written.pixelColor(white.x() >= 0 ? white : QPoint(2, 2)),
                 QColor(white.x() >= 0 ? Qt::white : Qt::red));
        Screen again;
        QVERIFY(!again.get<QLabel>("pctImmagine")->pixmap().isNull());
    }
};

QTEST_MAIN(TestFrmOpzioni)
#include "tst_frmopzioni.moc"
