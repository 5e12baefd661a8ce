// The options screen driven by its controls on both back ends: what it
// shows, what OK writes to the table, the globals and the settings, what
// Annulla leaves alone, the look-ups of the key fields and the logo.
#include "cadosqlserver.h"
#include "frmopzioni.h"
#include "logoazienda.h"
#include "msgbox.h"
#include "optionstore.h"
#include "scripteddialogs.h"
#include "serversettings.h"
#include "session.h"
#include "testdb.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSettings>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

const QString kSalvate = QStringLiteral("Le impostazioni correnti sono state salvate.");

QVariant sqlValue(const QString& sql)
{
    return gAdoSqlServer().getValueBySQL(sql, QStringLiteral("test"));
}

QString storedOption(const QString& nome)
{
    return sqlValue(QStringLiteral("SELECT VALORE FROM Opzioni WHERE NOME = ¤") + nome + QStringLiteral("¤")).toString();
}

// "#Table:CODE" is the key of that row (NUMERO for the counterparties).
QString resolve(const QString& expected)
{
    if (!expected.startsWith(QLatin1Char('#')) || !expected.contains(QLatin1Char(':')))
        return expected;
    const QString table = expected.mid(1).section(QLatin1Char(':'), 0, 0);
    const QString code = expected.section(QLatin1Char(':'), 1);
    const QString where = table == QLatin1String("Anagrafiche") ? QString(QStringLiteral("NUMERO = ") + code)
                                                                 : QStringLiteral("CODICE = ¤") + code + QStringLiteral("¤");
    return sqlValue(QStringLiteral("SELECT RID FROM ") + table + QStringLiteral(" WHERE ") + where).toString();
}

void addCounterparty(int numero, const QString& nome, const QString& tipo)
{
    if (sqlValue(QStringLiteral("SELECT COUNT(*) FROM Anagrafiche WHERE NUMERO = ") + QString::number(numero)).toInt() == 0)
        gAdoSqlServer().executeSQL(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (")
                                       + QString::number(numero) + QStringLiteral(", ¤") + nome + QStringLiteral("¤, ¤") + tipo
                                       + QStringLiteral("¤)"),
                                   QStringLiteral("test"));
}

// The database of the back end with two customers (7, 9) and a supplier (8);
// customer 7 is the counter-sales customer. Every option, the machine
// settings and the logo go back as they were when the test ends.
class Fixture
{
public:
    explicit Fixture(const QString& backend, const QString& reports)
        : m_reports(reports)
    {
        m_valid = testdb::shared(backend).isValid();
        if (!m_valid)
            return;
        gSession().strReportPath = reports;
        addCounterparty(7, QStringLiteral("Bottega Rossi s.n.c."), QStringLiteral("C"));
        addCounterparty(8, QStringLiteral("Ingrosso Bianchi S.p.A."), QStringLiteral("F"));
        addCounterparty(9, QStringLiteral("Cartoleria Verdi"), QStringLiteral("C"));
        setOpzione(QStringLiteral("ClientePredefinito"), resolve(QStringLiteral("#Anagrafiche:7")));
        RecordsetPtr rs = gAdoSqlServer().getNewRecordset(QStringLiteral("SELECT NOME, VALORE FROM Opzioni"), QStringLiteral("test"));
        for (; rs && !rs->eof(); rs->moveNext())
            m_rows.append({rs->text(QStringLiteral("NOME")), rs->text(QStringLiteral("VALORE"))});
        if (rs)
            rs->close();
        gAdoSqlServer().disconnect();
        loadOptionGlobals();
    }
    ~Fixture()
    {
        for (const auto& [nome, valore] : m_rows)
            if (storedOption(nome) != valore)
                setOpzione(nome, valore);
        machineSettings().remove(QStringLiteral("Opzioni"));
        machineSettings().remove(QStringLiteral("Options"));
        QFile::remove(logoazienda::percorso(m_reports));
        loadOptionGlobals();
    }
    bool isValid() const { return m_valid; }
    QList<QPair<QString, QString>> rows() const
    {
        QList<QPair<QString, QString>> now;
        for (const auto& row : m_rows)
            now.append({row.first, storedOption(row.first)});
        return now;
    }
    const QList<QPair<QString, QString>>& before() const { return m_rows; }

private:
    QString m_reports;
    bool m_valid = false;
    QList<QPair<QString, QString>> m_rows;
};

struct Screen
{
    frmOpzioni screen;
    Screen()
    {
        screen.show();
        QApplication::setActiveWindow(&screen);
        QVERIFY(QTest::qWaitForWindowActive(&screen));
    }
    template<typename T = QWidget>
    T* get(const QString& name)
    {
        T* widget = screen.findChild<T*>(name);
        if (!widget)
            qWarning("no control %s", qPrintable(name));
        return widget;
    }
    // What a control shows: its text, its chosen entry, or "1"/"0".
    QString shown(const QString& name)
    {
        QWidget* w = get(name);
        if (auto* line = qobject_cast<QLineEdit*>(w))
            return line->text();
        if (auto* label = qobject_cast<QLabel*>(w))
            return label->text();
        if (auto* combo = qobject_cast<QComboBox*>(w))
            return combo->currentText();
        if (auto* plain = qobject_cast<QPlainTextEdit*>(w))
            return plain->toPlainText();
        if (auto* button = qobject_cast<QAbstractButton*>(w))
            return button->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
        return QString();
    }
    // Types into a field, clicks a button, or picks a combo's entry by its text.
    void enter(const QString& name, const QString& value)
    {
        QWidget* w = get(name);
        if (auto* button = qobject_cast<QAbstractButton*>(w)) {
            button->click();
        } else if (auto* combo = qobject_cast<QComboBox*>(w)) {
            combo->setCurrentIndex(combo->findText(value));
        } else if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) {
            plain->setFocus();
            plain->selectAll();
            plain->insertPlainText(value);   // as pasted: the test keyboard is ASCII only
        } else {
            w->setFocus();
            testdb::typeInto(screen, name, value);
        }
    }
    // Enter in a text field moves on, which looks the code up.
    void leave(const QString& name)
    {
        QTest::keyClick(get(name), Qt::Key_Return);
        QCoreApplication::processEvents();
    }
};

void addRows(const std::function<void(const QString& backend)>& rows)
{
    for (const QString& backend : testdb::backends())
        rows(backend);
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
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("expected");
        addRows([](const QString& b) {
            const auto row = [&](const char* tag, const char* control, const QString& expected) {
                QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(tag))) << b << QString::fromLatin1(control) << expected;
            };
            row("year", "txtAnnoCorrente", QString::number(QDate::currentDate().year()));
            row("decimals", "txtDecimalAfter", QStringLiteral("2"));
            row("account", "txtContoClienti", QStringLiteral("01001001"));
            row("account label", "lblContoClienti", QStringLiteral("Clienti Italia"));
            row("customer", "txtCliente", QStringLiteral("7"));
            row("customer label", "lblCliente", QStringLiteral("Bottega Rossi s.n.c."));
            row("vat label", "lblIva", QStringLiteral("IVA 22%"));
            row("payment label", "lblPagamento", QStringLiteral("Rimessa diretta"));
            row("document label", "lblDocConversione", QStringLiteral("Fattura differita"));
            row("no brand", "txtMarcaPredefinita", QString());
            row("agent prefix", "txtVenditoreChar", QStringLiteral("%"));
            row("months", "txtMesiPrezzoMedio", QStringLiteral("12"));
            row("warn below stock", "optAvvisaSottoScorta", QStringLiteral("1"));
            row("kit print", "optDistintaBase_0", QStringLiteral("1"));
            row("numerator", "cmbNumeratore", QStringLiteral("Elenco speciale"));
            row("report", "cmbReport", QStringLiteral("ElencoSpeciale.rpt"));
        });
    }
    void loadShowsStoredValues()
    {
        QFETCH(QString, backend);
        QFETCH(QString, control);
        QFETCH(QString, expected);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        Screen s;
        QCOMPARE(s.shown(control), expected);
        auto* reports = s.get<QComboBox>(QStringLiteral("cmbReport"));
        QCOMPARE(reports->count(), 3);   // the templates, whatever the case of ".rpt"
    }

    // OK writes the table, the globals and the settings.
    void okSavesEverywhere_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("option");     // a table row, or "Section/Key" of the settings
        QTest::addColumn<QString>("expected");
        addRows([](const QString& b) {
            const auto row = [&](const char* tag, const char* control, const QString& input, const char* option, const QString& expected) {
                QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(tag)))
                    << b << QString::fromLatin1(control) << input << QString::fromLatin1(option) << expected;
            };
            row("year", "txtAnnoCorrente", QStringLiteral("2031"), "AnnoCorrente", QStringLiteral("2031"));
            row("decimals", "txtDecimalAfter", QStringLiteral("3"), "DecimaliDopo", QStringLiteral("3"));
            row("account", "txtContoFornitori", QStringLiteral("01003001"), "ContoFornitori", QStringLiteral("#PianoConti:01003001"));
            row("customer", "txtCliente", QStringLiteral("9"), "ClientePredefinito", QStringLiteral("#Anagrafiche:9"));
            row("supplier", "txtFornitore", QStringLiteral("8"), "Fornitore", QStringLiteral("#Anagrafiche:8"));
            row("code emptied", "txtIva", QString(), "RidIvaProdotti", QStringLiteral("0"));
            row("footer", "txtPiePagina", QStringLiteral("L'IVA è esposta ai sensi dell'art. 21 ¤ \"5%\""), "PiePagina",
                QStringLiteral("L'IVA è esposta ai sensi dell'art. 21 ¤ \"5%\""));
            row("empty agent prefix", "txtVenditoreChar", QString(), "VenditoreChar", QStringLiteral("%"));
            row("flag", "chkPrezzoMedio", QString(), "PrezzoMedio", QStringLiteral("1"));
            row("option pair on", "optBloccaSottoScorta", QString(), "BloccaSottoScorta", QStringLiteral("1"));
            row("option pair off", "optBloccaSottoScorta", QString(), "AvvisaSottoScorta", QStringLiteral("0"));
            row("kit print", "optDistintaBase_2", QString(), "TipoStampaDistinta", QStringLiteral("2"));
            row("numerator", "cmbNumeratore", QStringLiteral("Fatture e note di credito"), "NumeratoreElencoSpeciale",
                QStringLiteral("#Numeratori:FAT"));
            row("report", "cmbReport", QStringLiteral("Listino.RPT"), "ReportElencoSpeciale", QStringLiteral("Listino.RPT"));
            row("reader", "txtLaserChar", QStringLiteral("#"), "Opzioni/LaserChar", QStringLiteral("#"));
            row("bold", "chkUsaGrassetto", QString(), "Options/UsaGrassetto", QStringLiteral("1"));
        });
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
        s.enter(control, input);
        ScriptedDialogs script;
        script.expectMessage(kSalvate, vb::OK);
        testdb::click(s.screen, QStringLiteral("cmdOk"));
        QVERIFY(script.allAnswered());
        QCOMPARE(s.screen.result(), int(QDialog::Accepted));

        const bool setting = option.contains(QLatin1Char('/'));
        const QString key = option.section(QLatin1Char('/'), -1);
        QCOMPARE(optionText(gOptions(), key), expected);
        if (setting)
            QCOMPARE(machineSettings().value(option).toString(), expected);
        else
            QCOMPARE(storedOption(option), expected);
        // Only what was changed differs from before.
        const auto now = db.rows();
        int changed = 0;
        for (int i = 0; i < now.size(); ++i)
            changed += now.at(i) != db.before().at(i);
        QVERIFY2(changed <= 2, qPrintable(QString::number(changed)));
    }

    // An unknown code is told, then emptied with its description, and saved as none.
    void unknownCodeIsEmptied_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("option");
        addRows([](const QString& b) {
            const auto row = [&](const char* tag, const char* control, const char* code, const char* option) {
                QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(tag)))
                    << b << QString::fromLatin1(control) << QString::fromLatin1(code) << QString::fromLatin1(option);
            };
            row("no such customer", "txtCliente", "999", "ClientePredefinito");
            row("a supplier is no customer", "txtCliente", "8", "ClientePredefinito");
            row("vat", "txtIva", "ZZ", "RidIvaProdotti");
            row("account", "txtContoClienti", "99999999", "ContoClienti");
            row("payment", "txtPagamento", "NOPAG", "PagamentoVB");
        });
    }
    void unknownCodeIsEmptied()
    {
        QFETCH(QString, backend);
        QFETCH(QString, control);
        QFETCH(QString, code);
        QFETCH(QString, option);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        Screen s;
        const QString label = QStringLiteral("lbl") + control.mid(3);
        QVERIFY(!s.shown(label).isEmpty());
        s.get<QTabWidget>(QStringLiteral("tbsMain"))->setCurrentWidget(s.get(control)->parentWidget()->parentWidget());
        s.enter(control, code);
        ScriptedDialogs script;
        script.expectMessage(QStringLiteral("Codice: ") + code + QStringLiteral(" inesistente!"), vb::OK);
        s.leave(control);
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown(control), QString());
        QCOMPARE(s.shown(label), QString());

        script.expectMessage(kSalvate, vb::OK);
        testdb::click(s.screen, QStringLiteral("cmdOk"));
        QVERIFY(script.allAnswered());
        QCOMPARE(storedOption(option), QStringLiteral("0"));
    }

    // The browse button searches the option's table; the row chosen fills
    // code and description.
    void browseFillsTheField_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("description");
        addRows([](const QString& b) {
            const auto row = [&](const char* tag, const char* button, const char* filter, const char* control, const QString& code,
                                 const QString& description) {
                QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(tag)))
                    << b << QString::fromLatin1(button) << QString::fromLatin1(filter) << QString::fromLatin1(control) << code << description;
            };
            row("customer", "cmdSfoglia_2", "9", "txtCliente", QStringLiteral("9"), QStringLiteral("Cartoleria Verdi"));
            row("account", "cmdSfoglia_6", "01003001", "txtContoFornitori", QStringLiteral("01003001"), QStringLiteral("Cassa"));
            row("unit", "cmdSfoglia_17", "KG", "txtUnitaMisura", QStringLiteral("KG"), QStringLiteral("Chilogrammi"));
        });
    }
    void browseFillsTheField()
    {
        QFETCH(QString, backend);
        QFETCH(QString, button);
        QFETCH(QString, filter);
        QFETCH(QString, control);
        QFETCH(QString, code);
        QFETCH(QString, description);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        Screen s;
        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmRicerca"), [&](QDialog& dialog) {
            auto* txtFiltro = dialog.findChild<QLineEdit*>(QStringLiteral("txtFiltro"));
            QTest::keyClicks(txtFiltro, filter);
            QTest::keyClick(txtFiltro, Qt::Key_Return);
        });
        s.get<QAbstractButton>(button)->click();
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown(control), code);
        QCOMPARE(s.shown(QStringLiteral("lbl") + control.mid(3)), description);
    }

    // A check box shows its panel, or enables the control it governs.
    void checkBoxGovernsItsControls_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("check");
        QTest::addColumn<QString>("dependent");
        QTest::addColumn<bool>("shows");
        addRows([](const QString& b) {
            const auto row = [&](const char* check, const char* dependent, bool shows) {
                QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(check)))
                    << b << QString::fromLatin1(check) << QString::fromLatin1(dependent) << shows;
            };
            row("chkPrezzoMedio", "txtMesiPrezzoMedio", true);
            row("chkSottoScorta", "optBloccaSottoScorta", true);
            row("chkVenditeGiorniDiversi", "optAvvisaVenditeGiorniDiversi", true);
            row("chkVenditoriObbligatori", "chkVenditoriBlocco", false);
        });
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
        auto* tabs = s.get<QTabWidget>(QStringLiteral("tbsMain"));
        for (int i = 0; i < tabs->count(); ++i)
            if (tabs->widget(i)->isAncestorOf(target))
                tabs->setCurrentIndex(i);
        const auto active = [&] { return shows ? target->isVisible() : target->isEnabled(); };
        QVERIFY(!active());   // the model starts with every one of them off
        auto* box = s.get<QCheckBox>(check);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Space);
        QVERIFY(active());
        QTest::keyClick(box, Qt::Key_Space);
        QVERIFY(!active());
    }

    // Annulla closes and nothing changes: table, globals, settings, logo.
    void annullaSavesNothing_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void annullaSavesNothing()
    {
        QFETCH(QString, backend);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        const OptionGlobals before = gOptions();
        QTemporaryDir pictures;
        const QString picture = pictures.filePath(QStringLiteral("logo.png"));
        QImage image(60, 30, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(picture));
        {
            Screen s;
            s.enter(QStringLiteral("txtAnnoCorrente"), QStringLiteral("1999"));
            s.enter(QStringLiteral("txtPiePagina"), QStringLiteral("altro"));
            s.enter(QStringLiteral("chkBloccoPN"), QString());
            s.enter(QStringLiteral("txtLaserChar"), QStringLiteral("@"));
            ScriptedDialogs script;
            script.expectFile(picture);
            s.get<QAbstractButton>(QStringLiteral("cmdLogoStretch"))->click();
            testdb::click(s.screen, QStringLiteral("cmdAnnulla"));
            QVERIFY(script.allAnswered());
            QCOMPARE(s.screen.result(), int(QDialog::Rejected));
        }
        QCOMPARE(db.rows(), db.before());
        for (const QString& nome : firmOptionNames())
            QCOMPARE(optionText(gOptions(), nome), optionText(before, nome));
        QVERIFY(!machineSettings().contains(QStringLiteral("Opzioni/LaserChar")));
        QVERIFY(!QFile::exists(logoazienda::percorso(m_reports.path())));
    }

    // A chosen picture is fitted into the 4 x 9 cm box, proportions kept,
    // and written as Logo.bmp only when OK is pressed; the next opening shows it.
    void logoIsScaledAndWritten_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QPoint>("white");      // a point of the margin left around the picture
        addRows([](const QString& b) {
            QTest::newRow(qPrintable(b + QStringLiteral(" wide"))) << b << QSize(400, 100) << QPoint(530, 10);
            QTest::newRow(qPrintable(b + QStringLiteral(" tall"))) << b << QSize(100, 400) << QPoint(10, 236);
            QTest::newRow(qPrintable(b + QStringLiteral(" small, same shape"))) << b << QSize(90, 40) << QPoint(-1, -1);
        });
    }
    void logoIsScaledAndWritten()
    {
        QFETCH(QString, backend);
        QFETCH(QSize, picture);
        QFETCH(QPoint, white);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        QTemporaryDir pictures;
        const QString file = pictures.filePath(QStringLiteral("marchio.png"));
        QImage image(picture, QImage::Format_ARGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(file));
        const QString logo = logoazienda::percorso(m_reports.path());
        {
            Screen s;
            ScriptedDialogs script;
            script.expectFile(file);
            s.get<QAbstractButton>(QStringLiteral("cmdLogoStretch"))->click();
            QVERIFY(!s.get<QLabel>(QStringLiteral("pctImmagine"))->pixmap().isNull());
            QVERIFY(!QFile::exists(logo));
            script.expectMessage(kSalvate, vb::OK);
            testdb::click(s.screen, QStringLiteral("cmdOk"));
            QVERIFY(script.allAnswered());
        }
        const QImage written(logo);
        QCOMPARE(written.size(), QSize(1063, 472));
        QCOMPARE(written.dotsPerMeterX(), 11811);   // 300 dpi: the box prints at 9 x 4 cm
        QCOMPARE(written.pixelColor(531, 236), QColor(Qt::red));
        if (white.x() >= 0)
            QCOMPARE(written.pixelColor(white), QColor(Qt::white));
        else
            QCOMPARE(written.pixelColor(2, 2), QColor(Qt::red));   // same shape: filled to the edges

        Screen again;
        QVERIFY(!again.get<QLabel>(QStringLiteral("pctImmagine"))->pixmap().isNull());
    }

    void unreadablePictureIsTold_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void unreadablePictureIsTold()
    {
        QFETCH(QString, backend);
        Fixture db(backend, m_reports.path());
        QVERIFY(db.isValid());
        Screen s;
        ScriptedDialogs script;
        script.expectFile(m_reports.filePath(QStringLiteral("leggimi.txt")));
        script.expectMessage(QStringLiteral("Impossibile leggere l'immagine "), vb::OK);
        s.get<QAbstractButton>(QStringLiteral("cmdLogoStretch"))->click();
        script.expectMessage(kSalvate, vb::OK);
        testdb::click(s.screen, QStringLiteral("cmdOk"));
        QVERIFY(script.allAnswered());
        QVERIFY(!QFile::exists(logoazienda::percorso(m_reports.path())));
    }
};

QTEST_MAIN(TestFrmOpzioni)
#include "tst_frmopzioni.moc"
