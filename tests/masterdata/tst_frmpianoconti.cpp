// The chart of accounts on both back ends: the shapes of a code and the
// parents each level needs, an existing code opening its account, and the
// tree that accounts are picked from.
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "masterdata/frmpianoconti.h"
#include "masterdata/frmricercaconto.h"
#include "support/screendriver.h"
#include "support/testdb.h"

#include <QTreeWidget>
#include <QtTest>

namespace {

const QString kNotFound =
    QStringLiteral("Attenzione! Il codice inserito non è valido: \nMastro e/o Conto non trovati.");
const QString kFormat =
    QStringLiteral("Formato Codice Errato!\nMASTRO  = 2 Caratteri\nCONTO = 3 Caratteri\nSOTTOCONTO = 3 Caratteri");

} // namespace

class TestFrmPianoConti : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    void codeShapes_data()
    {
        testdb::addBackendColumn();
        for (const char* c : {"code", "message", "mastro", "conto", "description"})
            QTest::addColumn<QString>(c); // no message: accepted; a description: an existing account opened
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "three characters") << "010" << kFormat << ""
                                               << ""
                                               << "";
            testdb::row(b, "conto without mastro") << "99001" << kNotFound << ""
                                                   << ""
                                                   << "";
            testdb::row(b, "new conto of a mastro") << "01009"
                                                    << ""
                                                    << "ATTIVITÀ"
                                                    << ""
                                                    << "";
            testdb::row(b, "sottoconto without conto") << "01009001" << kNotFound << "ATTIVITÀ"
                                                       << ""
                                                       << "";
            testdb::row(b, "new sottoconto") << "01003009"
                                             << ""
                                             << "ATTIVITÀ"
                                             << "DISPONIBILITÀ LIQUIDE"
                                             << "";
            testdb::row(b, "new mastro") << "09"
                                         << ""
                                         << ""
                                         << ""
                                         << "";
            testdb::row(b, "existing code opens it") << "01003001"
                                                     << ""
                                                     << "ATTIVITÀ"
                                                     << "DISPONIBILITÀ LIQUIDE"
                                                     << "Cassa";
        }
    }
    void codeShapes()
    {
        QFETCH(QString, backend);
        QFETCH(QString, code);
        QFETCH(QString, message);
        QFETCH(QString, mastro);
        QFETCH(QString, conto);
        QFETCH(QString, description);
        QVERIFY(testdb::shared(backend).isValid());
        testdb::Screen<frmPianoConti> s(true, true, 0);
        testdb::ScriptedDialogs script;
        if (!message.isEmpty())
            script.expectMessage(message, vb::OK);
        s.enter("txtCodice", code);
        QVERIFY(script.allAnswered());
        QCOMPARE(s.shown("lblMastro"), mastro);
        QCOMPARE(s.shown("lblConto"), conto);
        QCOMPARE(s.shown("txtDescrizione"), description);
        QCOMPARE(s.rid().isEmpty(), description.isEmpty());
        if (!message.isEmpty())
            QTRY_VERIFY(s.get("txtCodice")->hasFocus()); // the wrong code keeps the cursor
    }

    // Mastri under the root, conti under their mastro, sottoconti under
    // their conto; OK on an account gives its key, the root gives nothing.
    void tree_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void tree()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        frmRicercaConto dialog;
        QVERIFY(dialog.getData());
        auto* tree = dialog.findChild<QTreeWidget*>(QStringLiteral("TreeConti"));
        QTreeWidgetItem* root = tree->topLevelItem(0);
        QCOMPARE(root->text(0), QStringLiteral("Piano dei Conti"));
        QCOMPARE(root->childCount(), 4);
        QTreeWidgetItem* attivita = root->child(0);
        QCOMPARE(attivita->data(0, Qt::UserRole).toString(), QStringLiteral("MAS_01"));
        QTreeWidgetItem* liquidita = attivita->child(2);
        QCOMPARE(liquidita->text(0), QStringLiteral("01003 DISPONIBILITÀ LIQUIDE"));
        QTreeWidgetItem* cassa = liquidita->child(0);
        QCOMPARE(cassa->data(0, Qt::UserRole).toString(), QStringLiteral("SOT_01003001"));

        tree->setCurrentItem(root);
        testdb::click(dialog, QStringLiteral("cmdOk"));
        QCOMPARE(dialog.rid(), 0);
        tree->setCurrentItem(cassa);
        testdb::click(dialog, QStringLiteral("cmdOk"));
        QCOMPARE(dialog.rid(), testdb::number("SELECT RID FROM PianoConti WHERE CODICE = ¤01003001¤"));
    }
};

QTEST_MAIN(TestFrmPianoConti)
#include "tst_frmpianoconti.moc"
