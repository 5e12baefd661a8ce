// The causal screen on both back ends: how its flags, kinds, warehouses and
// accounts reach the table, and the fields that depend on its choices.
#include "cadosqlserver.h"
#include "frmcausali.h"
#include "frmsimpleform.h"
#include "masterdatascreens.h"
#include "msgbox.h"
#include "scripteddialogs.h"
#include "testdb.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

struct Screen
{
    frmCausali screen;
    Screen()
    {
        screen.startMe(true, true, 0);
        testdb::showActive(screen);
    }
    template <typename T = QWidget>
    T* get(const char* name) { return screen.findChild<T*>(QString::fromLatin1(name)); }
    void tick(const char* name, bool on) { get<QAbstractButton>(name)->setChecked(on); }
    void enter(const char* name, const QString& text) { testdb::enter(screen, QString::fromLatin1(name), text); }
};

QVariantList stored(const QString& code)
{
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(
        QStringLiteral("SELECT Operazione, ORIGINE, DESTINAZIONE, FK_MagazzinoOrig, FK_MagazzinoDest, GENERAPN, GENERASCAD, "
                       "SCADENZENEGATIVE, TAGLIO, MOSTRAVB, FK_CONTODARE1, FK_ContoAvere1 FROM Causali WHERE CODICE = ¤")
            + code + QStringLiteral("¤"),
        QStringLiteral("test"));
    QVariantList row;
    if (rs && !rs->eof())
        for (int i = 0; i < rs->fieldCount(); ++i)
            row << (rs->value(i).isNull() ? QVariant() : QVariant(rs->value(i).toInt()));
    gAdoSqlServer().disconnect();
    return row;
}

} // namespace

class TestFrmCausali : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        testdb::isolateProgramFolder();
        registerMasterdataScreens();
    }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    // Flags -1/0 and MOSTRAVB 0/1; negative due dates only with due dates;
    // a warehouse only on a warehouse side.
    void writing_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<bool>("generaScad");
        QTest::addColumn<int>("origine");
        QTest::addColumn<QVariantList>("expected");
        const QVariant null;
        for (const QString& b : testdb::backends()) {
            QTest::newRow(qPrintable(b + QStringLiteral(" due dates, warehouse side")))
                << b << true << 3 << QVariantList{-1, 3, 1, 1, null, -1, -1, -1, 0, 1, 3, 20};
            QTest::newRow(qPrintable(b + QStringLiteral(" no due dates, customer side")))
                << b << false << 1 << QVariantList{-1, 1, 1, null, null, -1, 0, 0, 0, 1, 3, 20};
        }
    }
    void writing()
    {
        QFETCH(QString, backend);
        QFETCH(bool, generaScad);
        QFETCH(int, origine);
        QFETCH(QVariantList, expected);
        QVERIFY(testdb::shared(backend).isValid());
        gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM Causali WHERE CODICE = ¤ZC¤"), QStringLiteral("test"));
        Screen s;
        s.enter("txtCodice", QStringLiteral("zc"));
        s.enter("txtDescrizione", QStringLiteral("Causale di prova"));
        s.tick("chkOperazione", true);
        s.tick("chkMostraVB", true);
        s.tick("optOrigine_3", true);
        s.enter("txtMagazzinoOrig", QStringLiteral("sede"));
        QCOMPARE(s.get<QLabel>("lblMagazzinoOrig")->text(), QStringLiteral("Magazzino Sede"));
        s.tick("optDestinazione_1", true);
        QVERIFY(!s.get("txtMagazzinoDest")->isEnabled());
        s.tick(QByteArray("optOrigine_" + QByteArray::number(origine)).constData(), true);

        QVERIFY(!s.get("txtDare1")->isEnabled());
        s.tick("chkGeneraPN", true);
        QVERIFY(s.get("txtDare1")->isEnabled());
        s.enter("txtDare1", QStringLiteral("01001001"));
        QCOMPARE(s.get<QLabel>("lblDare1")->text(), QStringLiteral("Clienti Italia"));
        s.enter("txtAvere1", QStringLiteral("04001001"));
        // Negative due dates ticked first, then due dates taken away again.
        s.tick("chkGeneraScad", true);
        s.tick("chkScadenzeNegative", true);
        s.tick("chkGeneraScad", generaScad);
        QVERIFY(s.screen.saveRecord());
        QCOMPARE(stored(QStringLiteral("ZC")), expected);

        // Shown again as stored.
        s.screen.newRecord();
        QVERIFY(!s.get<QCheckBox>("chkGeneraPN")->isChecked());
        s.enter("txtCodice", QStringLiteral("ZC"));
        QVERIFY(s.get<QRadioButton>(QByteArray("optOrigine_" + QByteArray::number(origine)).constData())->isChecked());
        QCOMPARE(s.get<QLineEdit>("txtAvere1")->text(), QStringLiteral("04001001"));
        QCOMPARE(s.get<QCheckBox>("chkScadenzeNegative")->isChecked(), generaScad);
    }

    // An unknown account shows the box and empties field and label.
    void unknownAccount_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void unknownAccount()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        s.tick("chkGeneraPN", true);
        s.enter("txtDare2", QStringLiteral("01003001"));
        QCOMPARE(s.get<QLabel>("lblDare2")->text(), QStringLiteral("Cassa"));
        ScriptedDialogs script;
        script.expectMessage(QStringLiteral("Codice: 77777777 inesistente!"), vb::OK);
        s.enter("txtDare2", QStringLiteral("77777777"));
        QVERIFY(s.get<QLineEdit>("txtDare2")->text().isEmpty());
        QVERIFY(s.get<QLabel>("lblDare2")->text().isEmpty());
        QVERIFY(script.allAnswered());
    }

    // The button beside a warehouse opens the warehouses on a new record;
    // the warehouse saved there comes back into the field on closing.
    void createWhileTyping_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void createWhileTyping()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        Screen s;
        s.tick("optDestinazione_3", true);
        testdb::click(s.screen, QStringLiteral("cmdNuovoMagazzinoDest"));
        frmSimpleForm* editor = nullptr;
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* form = qobject_cast<frmSimpleForm*>(window); form && form->isVisible())
                editor = form;
        QVERIFY(editor);
        QCOMPARE(editor->tabella(), QStringLiteral("Magazzini"));
        testdb::typeInto(*editor, QStringLiteral("txtCodice"), QStringLiteral("NEG2"));
        testdb::typeInto(*editor, QStringLiteral("txtDescrizione"), QStringLiteral("Negozio due"));
        QVERIFY(editor->saveRecord());
        editor->close();
        QCOMPARE(s.get<QLineEdit>("txtMagazzinoDest")->text(), QStringLiteral("NEG2"));
        QCOMPARE(s.get<QLabel>("lblMagazzinoDest")->text(), QStringLiteral("Negozio due"));
    }
};

QTEST_MAIN(TestFrmCausali)
#include "tst_frmcausali.moc"
