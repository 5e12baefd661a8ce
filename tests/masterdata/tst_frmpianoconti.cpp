// The chart of accounts on both back ends: the shapes of a code and the
// parents each level needs, an existing code opening its account, and the
// tree that accounts are picked from.
#include "cadosqlserver.h"
#include "frmpianoconti.h"
#include "frmricercaconto.h"
#include "msgbox.h"
#include "scripteddialogs.h"
#include "testdb.h"

#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

const QString kNotFound = QStringLiteral("Attenzione! Il codice inserito non è valido: \nMastro e/o Conto non trovati.");
const QString kFormat =
    QStringLiteral("Formato Codice Errato!\nMASTRO  = 2 Caratteri\nCONTO = 3 Caratteri\nSOTTOCONTO = 3 Caratteri");

struct Screen
{
    frmPianoConti screen;
    Screen()
    {
        screen.startMe(true, true, 0);
        testdb::showActive(screen);
    }
    QString text(const char* name) const
    {
        if (auto* label = screen.findChild<QLabel*>(QString::fromLatin1(name)))
            return label->text();
        return screen.findChild<QLineEdit*>(QString::fromLatin1(name))->text();
    }
};

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
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("message");   // empty: accepted
        QTest::addColumn<QString>("mastro");
        QTest::addColumn<QString>("conto");
        QTest::addColumn<QString>("description");   // of an existing account, opened
        for (const QString& b : testdb::backends()) {
            const auto row = [&](const char* name) -> QTestData& {
                return QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(name))) << b;
            };
            row("three characters") << "010" << kFormat << "" << "" << "";
            row("conto without mastro") << "99001" << kNotFound << "" << "" << "";
            row("new conto of a mastro") << "01009" << "" << "ATTIVITÀ" << "" << "";
            row("sottoconto without conto") << "01009001" << kNotFound << "ATTIVITÀ" << "" << "";
            row("new sottoconto") << "01003009" << "" << "ATTIVITÀ" << "DISPONIBILITÀ LIQUIDE" << "";
            row("new mastro") << "09" << "" << "" << "" << "";
            row("existing code opens it") << "01003001" << "" << "ATTIVITÀ" << "DISPONIBILITÀ LIQUIDE" << "Cassa";
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
        Screen s;
        ScriptedDialogs script;
        if (!message.isEmpty())
            script.expectMessage(message, vb::OK);
        testdb::enter(s.screen, QStringLiteral("txtCodice"), code);
        auto* field = s.screen.findChild<QLineEdit*>(QStringLiteral("txtCodice"));
        QVERIFY(script.allAnswered());
        QCOMPARE(s.text("lblMastro"), mastro);
        QCOMPARE(s.text("lblConto"), conto);
        QCOMPARE(s.text("txtDescrizione"), description);
        QCOMPARE(s.text("lblRID").isEmpty(), description.isEmpty());
        if (!message.isEmpty())
            QTRY_VERIFY(field->hasFocus());   // the wrong code keeps the cursor
    }

    // Mastri under the root, conti under their mastro, sottoconti under
    // their conto; OK on an account gives its key, the root gives nothing.
    void tree_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
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
        const int expected = gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ¤01003001¤"),
                                                           QStringLiteral("test")).toInt();
        QCOMPARE(dialog.rid(), expected);
    }
};

QTEST_MAIN(TestFrmPianoConti)
#include "tst_frmpianoconti.moc"
