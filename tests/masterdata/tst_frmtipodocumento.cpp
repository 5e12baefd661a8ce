// The document types screen on both back ends: insert then update, every
// flag written and read back, the checks with the withholding rules, the
// printer of this workstation, the causal look-up and the notice that has
// the document menu rebuilt.
#include "cadosqlserver.h"
#include "documentmenu.h"
#include "frmricerca.h"
#include "frmtipodocumento.h"
#include "msgbox.h"
#include "optionstore.h"
#include "scripteddialogs.h"
#include "screenregistry.h"
#include "serversettings.h"
#include "testdb.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

QVariant value(const QString& sql)
{
    return gAdoSqlServer().getValueBySQL(sql, QStringLiteral("test"));
}

QString column(const QString& name, const QString& code)
{
    return value(QStringLiteral("SELECT ") + name + QStringLiteral(" FROM TipoDocumenti WHERE CODICE = ¤") + code
                 + QStringLiteral("¤"))
        .toString();
}

void removeType(const QString& code)
{
    QVERIFY(gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM TipoDocumenti WHERE CODICE = ¤") + code + QStringLiteral("¤"),
                                       QStringLiteral("test")));
}

const QStringList kFlags{"Accompagnatorio", "MostraVB",     "NonStampareVB", "StampaElencoSpeciale", "ModificaPrezzoAcquisto",
                         "UsaPrezziIva",    "FlexCounter",  "HideMenu",      "HideRicerca"};

struct Screen
{
    frmTipoDocumento screen;
    int notices = 0;
    QObject receiver;
    Screen()
    {
        screens::onDocumentTypesChanged(&receiver, [this] { ++notices; });
        screen.startMe(true, true, 0);
        screen.show();
        QApplication::setActiveWindow(&screen);
    }
    template<class T> T* get(const QString& name) { return screen.findChild<T*>(name); }
    QString text(const char* name) { return get<QLineEdit>(QString::fromLatin1(name))->text(); }
    QString rid() { return get<QLabel>(QStringLiteral("lblRID"))->text(); }
    void type(const char* name, const QString& text) { testdb::typeInto(screen, QString::fromLatin1(name), text); }
    // Types in a field and leaves it, as the user does.
    void enter(const char* name, const QString& text)
    {
        QLineEdit* edit = get<QLineEdit>(QString::fromLatin1(name));
        edit->setFocus();
        type(name, text);
        get<QLineEdit>(QStringLiteral("txtDescStampa"))->setFocus();
        if (edit->hasFocus())   // leaving the print description itself
            get<QLineEdit>(QStringLiteral("txtDescrizione"))->setFocus();
    }
    void choose(const char* combo, const QString& text)
    {
        QComboBox* box = get<QComboBox>(QString::fromLatin1(combo));
        box->setCurrentIndex(box->findText(text));
        QVERIFY(box->currentIndex() >= 0);
    }
    void check(const QString& name, bool on) { get<QCheckBox>(name)->setChecked(on); }
    // A complete new type.
    void fill(const QString& code)
    {
        screen.newRecord();
        type("txtCodice", code);
        type("txtDescrizione", QStringLiteral("Prova ") + code);
        type("txtDescStampa", QStringLiteral("Documento di prova"));
        enter("txtCausale", QStringLiteral("fv"));
        choose("cmbNumeratore", QStringLiteral("Ordini clienti"));
    }
};

} // namespace

class TestFrmTipoDocumento : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { QCOMPARE(gAdoSqlServer().getConnectionCount(), 0); }

    // The first save inserts, the second updates; each tells the menu.
    void saveTwice_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void saveTwice()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        QCOMPARE(s.get<QComboBox>(QStringLiteral("cmbReport"))->currentText(), QStringLiteral("Fattura.rpt"));
        QCOMPARE(s.get<QComboBox>(QStringLiteral("cmbStampante"))->currentText(), QStringLiteral("Predefinita"));
        s.fill(QStringLiteral("t1"));
        QCOMPARE(s.text("txtCausale"), QStringLiteral("FV"));
        QCOMPARE(s.get<QLabel>(QStringLiteral("lblCausale"))->text(), QStringLiteral("Fattura di vendita"));
        s.choose("cmbReport", QStringLiteral("Ordine.rpt"));
        QVERIFY(s.screen.saveRecord());
        const QString first = s.rid();
        QVERIFY(first.toInt() > 0);
        QCOMPARE(s.notices, 1);
        QCOMPARE(s.screen.windowTitle(), QStringLiteral("Tipi di Documento - T1"));

        s.type("txtDescrizione", QStringLiteral("Seconda descrizione"));
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(s.rid(), first);
        QCOMPARE(s.notices, 2);
        QCOMPARE(value(QStringLiteral("SELECT COUNT(*) FROM TipoDocumenti WHERE CODICE = ¤T1¤")).toInt(), 1);
        QCOMPARE(column(QStringLiteral("DESCRIZIONE"), QStringLiteral("T1")), QStringLiteral("Seconda descrizione"));
        QCOMPARE(column(QStringLiteral("REPORT"), QStringLiteral("T1")), QStringLiteral("Ordine.rpt"));
        QCOMPARE(column(QStringLiteral("FK_CAUSALE"), QStringLiteral("T1")),
                 value(QStringLiteral("SELECT RID FROM Causali WHERE CODICE = ¤FV¤")).toString());

        // The code of an existing type loads it, causal and numerator included.
        s.screen.newRecord();
        s.enter("txtCodice", QStringLiteral("t1"));
        QCOMPARE(s.rid(), first);
        QCOMPARE(s.get<QComboBox>(QStringLiteral("cmbNumeratore"))->currentText(), QStringLiteral("Ordini clienti"));
        QCOMPARE(s.get<QLabel>(QStringLiteral("lblCausale"))->text(), QStringLiteral("Fattura di vendita"));
        removeType(QStringLiteral("T1"));
    }

    // Each flag alone is written 1, the others 0, shows again after a
    // refresh, and the menu leaves out the types hidden from it.
    void everyFlag_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("flag");
        for (const QString& b : testdb::backends())
            for (const QString& f : kFlags)
                QTest::newRow(qPrintable(b + QLatin1Char(' ') + f)) << b << f;
    }
    void everyFlag()
    {
        QFETCH(QString, backend);
        QFETCH(QString, flag);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        s.fill(QStringLiteral("FLAG"));
        for (const QString& f : kFlags)
            s.check(QStringLiteral("chk") + f, f == flag);
        QVERIFY(s.screen.saveRecord());
        for (const QString& f : kFlags)
            QCOMPARE(column(f.toUpper(), QStringLiteral("FLAG")).toInt(), f == flag ? 1 : 0);

        s.screen.newRecord();
        s.screen.showData(0, QStringLiteral("FLAG"));
        for (const QString& f : kFlags)
            QCOMPARE(s.get<QCheckBox>(QStringLiteral("chk") + f)->isChecked(), f == flag);
        bool inMenu = false;
        for (const DocumentMenuEntry& entry : documentMenuEntries())
            inMenu = inMenu || entry.rid == s.rid().toInt();
        QCOMPARE(inMenu, flag != QLatin1String("HideMenu"));
        removeType(QStringLiteral("FLAG"));
    }

    // All faults at once; the withholding needs both rates while ticked, and
    // unticking it brings them back to zero.
    void faults_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<bool>("complete");
        QTest::addColumn<bool>("rda");
        QTest::addColumn<QString>("rda1");
        QTest::addColumn<QString>("rda2");
        QTest::addColumn<QString>("faults");   // empty: saved
        const QString rate1 = QStringLiteral(" - Campo [R.D.A. % (1)] Obbligatorio.");
        const QString rate2 = QStringLiteral(" - Campo [R.D.A. % (2)] Obbligatorio.");
        for (const QString& b : testdb::backends()) {
            const QByteArray p = b.toLatin1() + ' ';
            QTest::newRow(QByteArray(p + "empty").constData())
                << b << false << false << QString() << QString()
                << QStringLiteral(" - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio.\n"
                                  " - Campo [Descrizione Stampa] Obbligatorio.\n - Campo [Causale] Obbligatorio.\n"
                                  " - Campo [Contatore] Obbligatorio.");
            QTest::newRow(QByteArray(p + "rda with no rates").constData()) << b << true << true << QStringLiteral("0")
                                                                           << QStringLiteral("0,00") << rate1 + '\n' + rate2;
            QTest::newRow(QByteArray(p + "rda with no share").constData())
                << b << true << true << QStringLiteral("20") << QString() << rate2;
            QTest::newRow(QByteArray(p + "rda with both").constData())
                << b << true << true << QStringLiteral("20") << QStringLiteral("50") << QString();
            QTest::newRow(QByteArray(p + "rda unticked").constData())
                << b << true << false << QStringLiteral("20") << QStringLiteral("50") << QString();
        }
    }
    void faults()
    {
        QFETCH(QString, backend);
        QFETCH(bool, complete);
        QFETCH(bool, rda);
        QFETCH(QString, rda1);
        QFETCH(QString, rda2);
        QFETCH(QString, faults);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        if (complete)
            s.fill(QStringLiteral("RDA"));
        s.check(QStringLiteral("chkRDA"), true);
        s.type("txtRDA1", rda1);
        s.type("txtRDA2", rda2);
        s.check(QStringLiteral("chkRDA"), rda);
        QCOMPARE(s.get<QLineEdit>(QStringLiteral("txtRDA1"))->isEnabled(), rda);
        ScriptedDialogs script;
        if (!faults.isEmpty())
            script.expectMessage(QStringLiteral("Attenzione:\n") + faults, vb::OK);
        QCOMPARE(s.screen.saveRecord(), faults.isEmpty());
        QVERIFY(script.allAnswered());
        QCOMPARE(s.notices, faults.isEmpty() ? 1 : 0);
        if (!faults.isEmpty()) {
            QVERIFY(s.rid().isEmpty());
            return;
        }
        QCOMPARE(column(QStringLiteral("USARDA"), QStringLiteral("RDA")).toInt(), rda ? 1 : 0);
        QCOMPARE(column(QStringLiteral("RDA1"), QStringLiteral("RDA")).toDouble(), rda ? 20.0 : 0.0);
        QCOMPARE(column(QStringLiteral("RDA2"), QStringLiteral("RDA")).toDouble(), rda ? 50.0 : 0.0);
        s.screen.refreshRecord();
        QCOMPARE(s.text("txtRDA1"), rda ? QStringLiteral("20,00") : QStringLiteral("0,00"));
        removeType(QStringLiteral("RDA"));
    }

    // The printer is kept per workstation under the type's code; choosing
    // "Predefinita" stores the empty text; a stored printer shows even when
    // it is not installed here.
    void printerOfThisWorkstation_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void printerOfThisWorkstation()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        auto stored = [](const QString& code) { return machineSettings().value(QStringLiteral("StampantiDocumenti/") + code); };
        machineSettings().setValue(QStringLiteral("StampantiDocumenti/PRN"), QStringLiteral("Laser_Ufficio"));
        machineSettings().setValue(QStringLiteral("StampantiDocumenti/ALTRO"), QStringLiteral("Aghi_Magazzino"));
        Screen s;
        s.fill(QStringLiteral("PRN"));
        QCOMPARE(s.get<QComboBox>(QStringLiteral("cmbStampante"))->currentIndex(), 0);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored(QStringLiteral("PRN")).toString(), QString());
        QVERIFY(stored(QStringLiteral("PRN")).isValid());

        machineSettings().setValue(QStringLiteral("StampantiDocumenti/PRN"), QStringLiteral("Laser_Ufficio"));
        s.screen.refreshRecord();
        QCOMPARE(s.get<QComboBox>(QStringLiteral("cmbStampante"))->currentText(), QStringLiteral("Laser_Ufficio"));
        s.type("txtDescrizione", QStringLiteral("Con la sua stampante"));
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored(QStringLiteral("PRN")).toString(), QStringLiteral("Laser_Ufficio"));

        s.choose("cmbStampante", QStringLiteral("Predefinita"));
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored(QStringLiteral("PRN")).toString(), QString());
        QCOMPARE(stored(QStringLiteral("ALTRO")).toString(), QStringLiteral("Aghi_Magazzino"));
        s.screen.refreshRecord();
        QCOMPARE(s.get<QComboBox>(QStringLiteral("cmbStampante"))->currentText(), QStringLiteral("Predefinita"));
        removeType(QStringLiteral("PRN"));
    }

    // Delete asks with No preselected; the menu hears of it only when done.
    void deleteTellsTheMenu_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void deleteTellsTheMenu()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        s.fill(QStringLiteral("DEL"));
        QVERIFY(s.screen.saveRecord());
        s.notices = 0;
        ScriptedDialogs script;
        script.expectMessage(QStringLiteral("Eliminare il record DEL?"), vb::No);
        QVERIFY(!s.screen.deleteRecord());
        QCOMPARE(s.notices, 0);
        script.expectMessage(QStringLiteral("Eliminare il record DEL?"), vb::Yes);
        QVERIFY(s.screen.deleteRecord());
        QCOMPARE(s.notices, 1);
        QCOMPARE(value(QStringLiteral("SELECT COUNT(*) FROM TipoDocumenti WHERE CODICE = ¤DEL¤")).toInt(), 0);
        QVERIFY(s.rid().isEmpty());
        QVERIFY(script.allAnswered());
    }

    // An unknown causal is refused and emptied; the browse buttons pick a
    // causal and a numerator.
    void lookups_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void lookups()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        ScriptedDialogs script;
        script.expectMessage(QStringLiteral("Codice: ZZZ inesistente!"), vb::OK);
        s.enter("txtCausale", QStringLiteral("zzz"));
        QCOMPARE(s.text("txtCausale"), QString());
        QCOMPARE(s.get<QLabel>(QStringLiteral("lblCausale"))->text(), QString());

        auto pick = [](const QString& filter) {
            return [filter](QDialog& dialog) {
                auto* filtro = dialog.findChild<QLineEdit*>(QStringLiteral("txtFiltro"));
                QTest::keyClicks(filtro, filter);
                QTest::keyClick(filtro, Qt::Key_Return);
            };
        };
        script.expectDialog(QStringLiteral("frmRicerca"), pick(QStringLiteral("CF")));
        testdb::click(s.screen, QStringLiteral("cmdSfoglia_1"));
        QCOMPARE(s.text("txtCausale"), QStringLiteral("CF"));
        QCOMPARE(s.get<QLabel>(QStringLiteral("lblCausale"))->text(), QStringLiteral("Carico da fornitore"));
        script.expectDialog(QStringLiteral("frmRicerca"), pick(QStringLiteral("Documenti")));
        testdb::click(s.screen, QStringLiteral("cmdSfoglia_2"));
        QCOMPARE(s.get<QComboBox>(QStringLiteral("cmbNumeratore"))->currentText(), QStringLiteral("Documenti di trasporto"));
        QVERIFY(script.allAnswered());
    }
};

QTEST_MAIN(TestFrmTipoDocumento)
#include "tst_frmtipodocumento.moc"
