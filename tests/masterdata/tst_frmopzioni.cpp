// The options screen driven by its controls on both back ends: what it
// shows, what OK writes to the table, the globals and the settings, what
// Annulla leaves alone, the look-ups of the key fields and the logo.
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/session.h"
#include "masterdata/frmopzioni.h"
#include "masterdata/logoazienda.h"
#include "support/screendriver.h"
#include "support/testdb.h"

#include <QCheckBox>
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
    if (!expected.startsWith(QLatin1Char('#')) || !expected.contains(QLatin1Char(':')))
        return expected;
    const QString table = expected.mid(1).section(QLatin1Char(':'), 0, 0);
    const QString code = expected.section(QLatin1Char(':'), 1);
    return testdb::value("SELECT RID FROM " + table + " WHERE "
                         + (table == QLatin1String("Anagrafiche") ? QString("NUMERO = " + code)
                                                                  : QString("CODICE = ¤" + code + "¤")))
        .toString();
}

// The database of the back end with two customers (7, 9) and a supplier (8);
// customer 7 is the counter-sales customer. Every option, the machine
// settings and the logo go back as they were when the test ends.
class Fixture
{
public:
    Fixture(const QString& backend, const QString& reports)
        : m_reports(reports)
    {
        m_valid = testdb::shared(backend).isValid();
        if (!m_valid)
            return;
        gSession().strReportPath = reports;
        for (const char* party :
             {"7, ¤Bottega Rossi s.n.c.¤, ¤C¤", "8, ¤Ingrosso Bianchi S.p.A.¤, ¤F¤", "9, ¤Cartoleria Verdi¤, ¤C¤"})
            if (testdb::number("SELECT COUNT(*) FROM Anagrafiche WHERE NUMERO = " + QString::fromUtf8(party).left(1))
                == 0)
                testdb::run("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (" + QString::fromUtf8(party)
                            + ")");
        setOpzione("ClientePredefinito", resolve("#Anagrafiche:7"));
        for (const QVariantList& row : testdb::rows("SELECT NOME, VALORE FROM Opzioni"))
            m_rows.append({row.value(0).toString(), row.value(1).toString()});
        loadOptionGlobals();
    }
    ~Fixture()
    {
        for (const auto& [nome, valore] : m_rows)
            if (storedOption(nome) != valore)
                setOpzione(nome, valore);
        machineSettings().remove("Opzioni");
        machineSettings().remove("Options");
        QFile::remove(logoazienda::percorso(m_reports));
        loadOptionGlobals();
    }
    bool isValid() const { return m_valid; }
    // How many options differ from the start.
    int changed() const
    {
        int n = 0;
        for (const auto& [nome, valore] : m_rows)
            n += storedOption(nome) != valore;
        return n;
    }

private:
    QString m_reports;
    bool m_valid = false;
    QList<QPair<QString, QString>> m_rows;
};

// A picture of `size`, all red, in `dir`.
QString redPicture(const QTemporaryDir& dir, QSize size)
{
    const QString file = dir.filePath("marchio.png");
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image.save(file) ? file : QString();
}

} // namespace

class TestFrmOpzioni : public QObject
{
    Q_OBJECT

    QTemporaryDir m_reports;

private Q_SLOTS:
    void initTestCase()
    {
        testdb::isolateProgramFolder();
        for (const char* file : {"ElencoSpeciale.rpt", "Fattura.rpt", "Listino.RPT", "leggimi.txt"}) {
            QFile f(m_reports.filePath(QLatin1String(file)));
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
    }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { QCOMPARE(gAdoSqlServer().getConnectionCount(), 0); }

    // The screen shows the globals: codes with their descriptions, the
    // numerator and report chosen, the report folder's templates.
    void loadShowsStoredValues_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void loadShowsStoredValues()
    {
        QFETCH(QString, backend);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        Screen s;
        const QList<std::pair<const char*, QString>> expected{{"txtAnnoCorrente",
                                                               QString::number(QDate::currentDate().year())},
                                                              {"txtDecimalAfter", "2"},
                                                              {"txtContoClienti", "01001001"},
                                                              {"lblContoClienti", "Clienti Italia"},
                                                              {"txtCliente", "7"},
                                                              {"lblCliente", "Bottega Rossi s.n.c."},
                                                              {"lblIva", "IVA 22%"},
                                                              {"lblPagamento", "Rimessa diretta"},
                                                              {"lblDocConversione", "Fattura differita"},
                                                              {"txtMarcaPredefinita", ""},
                                                              {"txtVenditoreChar", "%"},
                                                              {"txtMesiPrezzoMedio", "12"},
                                                              {"optAvvisaSottoScorta", "1"},
                                                              {"optDistintaBase_0", "1"},
                                                              {"cmbNumeratore", "Elenco speciale"},
                                                              {"cmbReport", "ElencoSpeciale.rpt"}};
        for (const auto& [control, text] : expected)
            QVERIFY2(s.shown(control) == text, qPrintable(QString::fromLatin1(control) + ": " + s.shown(control)));
        QCOMPARE(s.get<QComboBox>("cmbReport")->count(), 3); // the templates, whatever the case of ".rpt"
    }

    // The dialog opens ready for typing in the first field of its first tab.
    void opensOnTheFirstField()
    {
        Fixture db("sqlite", m_reports.path());
        QVERIFY(db.isValid());
        Screen s;
        QCOMPARE(QApplication::focusWidget(), s.get("txtAnnoCorrente"));
    }

    // OK writes the table, the globals and the settings.
    void okSavesEverywhere_data()
    {
        testdb::addBackendColumn();
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("option"); // a table row, or "Section/Key" of the settings
        QTest::addColumn<QString>("expected");
        const QString footer = QStringLiteral("L'IVA è esposta ai sensi dell'art. 21 ¤ \"5%\"");
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "year") << "txtAnnoCorrente"
                                   << "2031"
                                   << "AnnoCorrente"
                                   << "2031";
            testdb::row(b, "decimals") << "txtDecimalAfter"
                                       << "3"
                                       << "DecimaliDopo"
                                       << "3";
            testdb::row(b, "account") << "txtContoFornitori"
                                      << "01003001"
                                      << "ContoFornitori"
                                      << "#PianoConti:01003001";
            testdb::row(b, "customer") << "txtCliente"
                                       << "9"
                                       << "ClientePredefinito"
                                       << "#Anagrafiche:9";
            testdb::row(b, "supplier") << "txtFornitore"
                                       << "8"
                                       << "Fornitore"
                                       << "#Anagrafiche:8";
            testdb::row(b, "code emptied") << "txtIva"
                                           << ""
                                           << "RidIvaProdotti"
                                           << "0";
            testdb::row(b, "footer") << "txtPiePagina" << footer << "PiePagina" << footer;
            testdb::row(b, "empty agent prefix") << "txtVenditoreChar"
                                                 << ""
                                                 << "VenditoreChar"
                                                 << "%";
            testdb::row(b, "flag") << "chkPrezzoMedio"
                                   << ""
                                   << "PrezzoMedio"
                                   << "1";
            testdb::row(b, "option pair on") << "optBloccaSottoScorta"
                                             << ""
                                             << "BloccaSottoScorta"
                                             << "1";
            testdb::row(b, "option pair off") << "optBloccaSottoScorta"
                                              << ""
                                              << "AvvisaSottoScorta"
                                              << "0";
            testdb::row(b, "kit print") << "optDistintaBase_2"
                                        << ""
                                        << "TipoStampaDistinta"
                                        << "2";
            testdb::row(b, "numerator") << "cmbNumeratore"
                                        << "Fatture e note di credito"
                                        << "NumeratoreElencoSpeciale"
                                        << "#Numeratori:FAT";
            testdb::row(b, "report") << "cmbReport"
                                     << "Listino.RPT"
                                     << "ReportElencoSpeciale"
                                     << "Listino.RPT";
            testdb::row(b, "reader") << "txtLaserChar"
                                     << "#"
                                     << "Opzioni/LaserChar"
                                     << "#";
            testdb::row(b, "bold") << "chkUsaGrassetto"
                                   << ""
                                   << "Options/UsaGrassetto"
                                   << "1";
        }
    }
    void okSavesEverywhere()
    {
        QFETCH(QString, backend);
        QFETCH(QString, control);
        QFETCH(QString, input);
        QFETCH(QString, option);
        QFETCH(QString, expected);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        expected = resolve(expected);
        QVERIFY(!expected.isEmpty());
        Screen s;
        s.set(control, input);
        ScriptedDialogs script;
        script.expectMessage(kSalvate, vb::OK);
        testdb::click(s.screen, "cmdOk");
        QVERIFY(script.allAnswered());
        QCOMPARE(s.screen.result(), int(QDialog::Accepted));

        QCOMPARE(optionText(gOptions(), option.section(QLatin1Char('/'), -1)), expected);
        if (option.contains(QLatin1Char('/')))
            QCOMPARE(machineSettings().value(option).toString(), expected);
        else
            QCOMPARE(storedOption(option), expected);
        QVERIFY2(db.changed() <= 2, qPrintable(QString::number(db.changed()))); // only what was changed
    }

    // The browse button searches the option's table; the row chosen fills
    // code and description. An unknown code is told, then emptied with its
    // description, and saved as none.
    void keyFields_data()
    {
        testdb::addBackendColumn();
        for (const char* c : {"control", "button", "code", "description", "unknown", "option"})
            QTest::addColumn<QString>(c);
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "customer") << "txtCliente"
                                       << "cmdSfoglia_2"
                                       << "9"
                                       << "Cartoleria Verdi"
                                       << "999"
                                       << "ClientePredefinito";
            testdb::row(b, "a supplier is no customer") << "txtCliente"
                                                        << ""
                                                        << ""
                                                        << ""
                                                        << "8"
                                                        << "ClientePredefinito";
            testdb::row(b, "vat") << "txtIva"
                                  << ""
                                  << ""
                                  << ""
                                  << "ZZ"
                                  << "RidIvaProdotti";
            testdb::row(b, "account") << "txtContoClienti"
                                      << ""
                                      << ""
                                      << ""
                                      << "99999999"
                                      << "ContoClienti";
            testdb::row(b, "payment") << "txtPagamento"
                                      << ""
                                      << ""
                                      << ""
                                      << "NOPAG"
                                      << "PagamentoVB";
            testdb::row(b, "browse account") << "txtContoFornitori"
                                             << "cmdSfoglia_6"
                                             << "01003001"
                                             << "Cassa"
                                             << ""
                                             << "";
            testdb::row(b, "browse unit") << "txtUnitaMisura"
                                          << "cmdSfoglia_17"
                                          << "KG"
                                          << "Chilogrammi"
                                          << ""
                                          << "";
        }
    }
    void keyFields()
    {
        QFETCH(QString, backend);
        QFETCH(QString, control);
        QFETCH(QString, button);
        QFETCH(QString, code);
        QFETCH(QString, description);
        QFETCH(QString, unknown);
        QFETCH(QString, option);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        Screen s;
        const QString label = "lbl" + control.mid(3);
        ScriptedDialogs script;
        if (!button.isEmpty()) {
            script.expectDialog("frmRicerca", testdb::searchFor(code)); // the filter is the whole code
            s.get<QAbstractButton>(button)->click();
            QVERIFY(script.allAnswered());
            QCOMPARE(s.shown(control), code);
            QCOMPARE(s.shown(label), description);
        }
        if (unknown.isEmpty())
            return;
        QVERIFY(!s.shown(label).isEmpty());
        s.get<QTabWidget>("tbsMain")->setCurrentWidget(s.get(control)->parentWidget()->parentWidget());
        s.set(control, unknown);
        script.expectMessage("Codice: " + unknown + " inesistente!", vb::OK);
        QTest::keyClick(s.get(control), Qt::Key_Return); // Enter moves on, which looks the code up
        QCoreApplication::processEvents();
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown(control), QString());
        QCOMPARE(s.shown(label), QString());

        script.expectMessage(kSalvate, vb::OK);
        testdb::click(s.screen, "cmdOk");
        QVERIFY(script.allAnswered());
        QCOMPARE(storedOption(option), QStringLiteral("0"));
    }

    // A check box shows its panel, or enables the control it governs.
    void checkBoxGovernsItsControls_data()
    {
        testdb::addBackendColumn();
        QTest::addColumn<QString>("check");
        QTest::addColumn<QString>("dependent");
        QTest::addColumn<bool>("shows");
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "chkPrezzoMedio") << "chkPrezzoMedio"
                                             << "txtMesiPrezzoMedio" << true;
            testdb::row(b, "chkSottoScorta") << "chkSottoScorta"
                                             << "optBloccaSottoScorta" << true;
            testdb::row(b, "chkVenditeGiorniDiversi") << "chkVenditeGiorniDiversi"
                                                      << "optAvvisaVenditeGiorniDiversi" << true;
            testdb::row(b, "chkVenditoriObbligatori") << "chkVenditoriObbligatori"
                                                      << "chkVenditoriBlocco" << false;
        }
    }
    void checkBoxGovernsItsControls()
    {
        QFETCH(QString, backend);
        QFETCH(QString, check);
        QFETCH(QString, dependent);
        QFETCH(bool, shows);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        Screen s;
        QWidget* target = s.get(dependent);
        auto* tabs = s.get<QTabWidget>("tbsMain");
        for (int i = 0; i < tabs->count(); ++i)
            if (tabs->widget(i)->isAncestorOf(target))
                tabs->setCurrentIndex(i);
        const auto active = [&] { return shows ? target->isVisible() : target->isEnabled(); };
        QVERIFY(!active()); // the model starts with every one of them off
        for (bool on : {true, false}) {
            s.key(check, Qt::Key_Space);
            QCOMPARE(active(), on);
        }
    }

    // Annulla closes and nothing changes: table, globals, settings, logo.
    void annullaSavesNothing_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void annullaSavesNothing()
    {
        QFETCH(QString, backend);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
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
            s.get<QAbstractButton>("cmdLogoStretch")->click();
            testdb::click(s.screen, "cmdAnnulla");
            QVERIFY(script.allAnswered());
            QCOMPARE(s.screen.result(), int(QDialog::Rejected));
        }
        QCOMPARE(db.changed(), 0);
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
        testdb::addBackendColumn();
        QTest::addColumn<QSize>("picture"); // empty: a text file
        QTest::addColumn<QPoint>("white");  // a point of the margin left around the picture
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "wide") << QSize(400, 100) << QPoint(530, 10);
            testdb::row(b, "tall") << QSize(100, 400) << QPoint(10, 236);
            testdb::row(b, "small, same shape") << QSize(90, 40) << QPoint(-1, -1);
            testdb::row(b, "unreadable") << QSize() << QPoint();
        }
    }
    void logoIsScaledAndWritten()
    {
        QFETCH(QString, backend);
        QFETCH(QSize, picture);
        QFETCH(QPoint, white);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
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
            s.get<QAbstractButton>("cmdLogoStretch")->click();
            QCOMPARE(s.get<QLabel>("pctImmagine")->pixmap().isNull(), picture.isEmpty());
            QVERIFY(!QFile::exists(logo));
            script.expectMessage(kSalvate, vb::OK);
            testdb::click(s.screen, "cmdOk");
            QVERIFY(script.allAnswered());
        }
        QCOMPARE(QFile::exists(logo), !picture.isEmpty());
        if (picture.isEmpty())
            return;
        const QImage written(logo);
        QCOMPARE(written.size(), QSize(1063, 472));
        QCOMPARE(written.dotsPerMeterX(), 11811); // 300 dpi: the box prints at 9 x 4 cm
        QCOMPARE(written.pixelColor(531, 236), QColor(Qt::red));
        if (white.x() >= 0)
            QCOMPARE(written.pixelColor(white), QColor(Qt::white));
        else
            QCOMPARE(written.pixelColor(2, 2), QColor(Qt::red)); // same shape: filled to the edges

        Screen again;
        QVERIFY(!again.get<QLabel>("pctImmagine")->pixmap().isNull());
    }
};

QTEST_MAIN(TestFrmOpzioni)
#include "tst_frmopzioni.moc"
