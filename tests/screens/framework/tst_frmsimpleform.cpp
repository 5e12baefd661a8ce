// The generic table editor on every code table of the menu, on both back
// ends, and the rule that holds back the first goods category.
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "screens/framework/frmsimpleform.h"
#include "support/scripteddialogs.h"
#include "support/testdb.h"

#include <QLabel>
#include <QLineEdit>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

int count(const QString& table, const QString& code)
{
    return testdb::number(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE CODICE = ¤%2¤").arg(table, code));
}

QString rid(QWidget& screen) { return screen.findChild<QLabel*>(QStringLiteral("lblRID"))->text(); }

} // namespace

class TestFrmSimpleForm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    // Every menu use: its table and caption, insert then update, browse
    // back, delete.
    void everyTable_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("title");
        const QList<QStringList> uses{{"mnuCollezioni", "Collezioni", "Collezioni"},
                                      {"mnuFasceClienti", "FasceClienti", "Fasce Clienti"},
                                      {"mnuTab_0", "Colori", "Colori"},
                                      {"mnuTab_1", "Confezioni", "Confezioni"},
                                      {"mnuTab_2", "FormatoCarta", "Formato Carta"},
                                      {"mnuTab_3", "FormatoFinestra", "Formato Finestra"},
                                      {"mnuTab_4", "Gruppi", "Gruppi Merceologici"},
                                      {"mnuTab_5", "CategorieMerceologiche", "Categorie Merceologiche"},
                                      {"mnuTab_6", "Magazzini", "Magazzino"},
                                      {"mnuTab_7", "Spedizioni", "Spedizioni"},
                                      {"mnuTab_8", "Marche", "Marca"},
                                      {"mnuTab_9", "CentriCosto", "Centri di Costo"},
                                      {"mnuTab_10", "UnitaMisura", "Unità di Misure"},
                                      {"mnuTab_11", "AspettoEsteriore", "Aspetto esteriore dei beni"},
                                      {"mnuTab_12", "CausaliTrasporto", "Causali di trasporto"}};
        for (const QString& b : testdb::backends())
            for (const QStringList& use : uses)
                testdb::row(b, use.at(0)) << use.at(0) << use.at(1) << use.at(2);
    }
    void everyTable()
    {
        QFETCH(QString, backend);
        QFETCH(QString, item);
        QFETCH(QString, table);
        QFETCH(QString, title);
        QVERIFY(testdb::shared(backend).isValid());
        const SimpleFormUse use = simpleFormUse(item);
        QCOMPARE(use.tabella, table);
        frmSimpleForm screen;
        screen.startMe(use.nome, use.titolo, use.tabella, false, true, 0);
        QCOMPARE(screen.windowTitle(), title);
        testdb::typeInto(screen, QStringLiteral("txtCodice"), QStringLiteral("zq1"));
        testdb::typeInto(screen, QStringLiteral("txtDescrizione"), QStringLiteral("Prova l'editor"));
        QVERIFY(screen.saveRecord());
        const QString first = rid(screen);
        QVERIFY(first.toInt() > 0);
        testdb::typeInto(screen, QStringLiteral("txtDescrizione"), QStringLiteral("Cambiata"));
        QVERIFY(screen.saveRecord());
        QCOMPARE(rid(screen), first);
        QCOMPARE(count(table, QStringLiteral("ZQ1")), 1);

        ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmRicerca"), [](QDialog& dialog) {
            auto* filtro = dialog.findChild<QLineEdit*>(QStringLiteral("txtFiltro"));
            QTest::keyClicks(filtro, QStringLiteral("zq1"));
            QTest::keyClick(filtro, Qt::Key_Return);
        });
        screen.newRecord();
        screen.cmdSfoglia_Click(0);
        QCOMPARE(rid(screen), first);
        QCOMPARE(screen.findChild<QLineEdit*>(QStringLiteral("txtDescrizione"))->text(), QStringLiteral("Cambiata"));

        script.expectMessage(QStringLiteral("Eliminare il record ZQ1?"), vb::Yes);
        QVERIFY(screen.deleteRecord());
        QCOMPARE(count(table, QStringLiteral("ZQ1")), 0);
        QVERIFY(script.allAnswered());
    }

    // The first category is refused without a question only under the name
    // "Categoria"; from the menu's "Categorie" the question comes, and the
    // database refuses the delete because products use the category.
    void firstCategory_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void firstCategory()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        ScriptedDialogs script;
        frmSimpleForm categoria;
        categoria.startMe(QStringLiteral("Categoria"), QStringLiteral("Categoria Merceologica"),
                          QStringLiteral("CategorieMerceologiche"), true, false, 1);
        script.expectMessage(QStringLiteral("Impossibile eliminare questo record"), vb::OK);
        QVERIFY(!categoria.deleteRecord());

        frmSimpleForm categorie;
        const SimpleFormUse menu = simpleFormUse(QStringLiteral("mnuTab_5"));
        categorie.startMe(menu.nome, menu.titolo, menu.tabella, false, false, 1);
        script.expectMessage(QStringLiteral("Eliminare il record GEN?"), vb::Yes);
        script.expectMessage(QStringLiteral("integrità dei dati"), vb::OK);
        QVERIFY(!categorie.deleteRecord());
        QCOMPARE(rid(categorie), QStringLiteral("1"));
        QCOMPARE(count(QStringLiteral("CategorieMerceologiche"), QStringLiteral("GEN")), 1);
        QVERIFY(script.allAnswered());
    }

    void faults()
    {
        QVERIFY(testdb::shared(QStringLiteral("sqlite")).isValid());
        frmSimpleForm screen;
        screen.startMe(QStringLiteral("Colore"), QStringLiteral("Colori"), QStringLiteral("Colori"), false, true, 0);
        ScriptedDialogs script;
        script.expectMessage(QStringLiteral(
                                 "Attenzione:\n - Campo [Codice] Obbligatorio.\n - Campo [Descrizione] Obbligatorio."),
                             vb::OK);
        QVERIFY(!screen.saveRecord());
    }
};

QTEST_MAIN(TestFrmSimpleForm)
#include "tst_frmsimpleform.moc"
