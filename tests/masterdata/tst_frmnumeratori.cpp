// The numerators screen on both back ends: adding, deleting one in use,
// writing a counter by hand and the list of the current year.
#include "core/optionstore.h"
#include "masterdata/frmnumeratori.h"
#include "support/screendriver.h"

#include <QTreeWidget>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

int ridOf(const QString& descrizione) { return testdb::rid("Numeratori", "DESCRIZIONE = ¤" + descrizione + "¤"); }

struct Screen : testdb::Screen<frmNumeratori>
{
    QTreeWidget* list() { return get<QTreeWidget>("lswNumeratori"); }
    // Which of add, delete and write are offered, as "101".
    QString offered()
    {
        QString enabled;
        for (int command = 0; command < 3; ++command)
            enabled += get("cmdCommand_" + QString::number(command))->isEnabled() ? '1' : '0';
        return enabled;
    }
    QTreeWidgetItem* item(const QString& text) { return list()->findItems(text, Qt::MatchExactly, 0).value(0); }
    // The number the list shows for a description; -1 when missing.
    int number(const QString& descrizione) { return item(descrizione) ? item(descrizione)->text(1).toInt() : -1; }
    void select(const QString& descrizione)
    {
        QVERIFY(item(descrizione));
        list()->setCurrentItem(item(descrizione));
        QCOMPARE(shown("lblDescrizione"), descrizione);
    }
};

} // namespace

class TestFrmNumeratori : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void addNewNumeratore_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answer");  // to the question; 0 when none is asked
        QTest::addColumn<QString>("box"); // the refusal; empty when none
        const QString blank = "Attenzione!! bisogna digitare una descrizione per il nuovo Numeratore che si vuole "
                              "inserire.";
        QTest::newRow("blank") << "   " << 0 << blank;
        QTest::newRow("present") << "Ordini clienti " << 0 << "Il Numeratore [Ordini clienti] è gia' presente!";
        QTest::newRow("other case is another name") << "ORDINI CLIENTI" << int(vb::Yes) << "";
        QTest::newRow("answered no") << "Bolle interne" << int(vb::No) << "";
    }
    void addNewNumeratore()
    {
        QFETCH(QString, typed);
        QFETCH(int, answer);
        QFETCH(QString, box);
        const int highest = testdb::number("SELECT MAX(RID) FROM Numeratori");
        const int before = testdb::count("Numeratori");
        const QString name = typed.trimmed();
        Screen s;
        ScriptedDialogs script;
        s.type("txtDescrizione", typed);
        QCOMPARE(s.offered(), QStringLiteral("100")); // typing a name offers the add only
        if (!box.isEmpty())
            script.expectMessage(box, vb::OK);
        if (answer)
            script.expectMessage("Aggiungere il Numeratore [" + name + "] all'elenco?", answer);
        testdb::click(s.screen, "cmdCommand_0");
        QCOMPARE(testdb::count("Numeratori"), before + (answer == vb::Yes ? 1 : 0));
        if (answer != vb::Yes)
            return;
        // By key: MariaDB compares names without regard to case.
        const QString rid = QString::number(highest + 1);
        QCOMPARE(testdb::value("SELECT DESCRIZIONE FROM Numeratori WHERE RID = " + rid).toString(), name);
        QCOMPARE(s.number(name), 0);
        QCOMPARE(s.shown("txtDescrizione"), QString());
        QCOMPARE(testdb::count("Contatori",
                               "NUMERO = 0 AND FK_NUMERATORE = " + rid + " AND ANNO = ¤" + s.screen.anno() + "¤"),
                 1);
        testdb::run("DELETE FROM Contatori WHERE FK_NUMERATORE = " + rid);
        testdb::run("DELETE FROM Numeratori WHERE RID = " + rid);
    }

    // A numerator in use names every type that holds it and stays; one that
    // is free goes with all its counters.
    void delNumeratore()
    {
        const QString fatture = "Fatture e note di credito", libero = "Da eliminare";
        Screen s;
        ScriptedDialogs script;
        s.select(fatture);
        script.expectMessage("Eliminare il Numeratore [" + fatture + "] all'elenco?", vb::Yes);
        script.expectMessage("Impossibile eliminare il numeratore selezionato [" + fatture
                                 + "].\nEsistono relazioni con il documento [",
                             vb::OK);
        testdb::click(s.screen, "cmdCommand_1");
        for (const char* tipo : {"Fattura di vendita", "Fattura differita", "Nota di credito"})
            QVERIFY2(script.shown.last().contains(QString::fromUtf8(tipo)), qPrintable(script.shown.last()));
        QCOMPARE(script.shown.last().count(" - "), 2);
        QVERIFY(ridOf(fatture) > 0);

        s.type("txtDescrizione", libero);
        script.expectMessage("Aggiungere il Numeratore [Da eliminare] all'elenco?", vb::Yes);
        testdb::click(s.screen, "cmdCommand_0");
        const QString rid = QString::number(ridOf(libero));
        testdb::run("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (" + rid + ", 1999, 7)");
        s.select(libero);
        script.expectMessage("Eliminare il Numeratore [Da eliminare] all'elenco?", vb::No);
        testdb::click(s.screen, "cmdCommand_1");
        QCOMPARE(QString::number(ridOf(libero)), rid);
        script.expectMessage("Eliminare il Numeratore [Da eliminare] all'elenco?", vb::Yes);
        testdb::click(s.screen, "cmdCommand_1");
        QCOMPARE(ridOf(libero), 0);
        QCOMPARE(testdb::count("Contatori", "FK_NUMERATORE = " + rid), 0);
        QCOMPARE(s.number(libero), -1);
        QCOMPARE(s.list()->currentItem(), s.list()->topLevelItem(0));
    }

    // The number typed becomes the counter of the year shown, whether the
    // counter row exists or not; the selection stays on the numerator.
    void setCounterByHand_data()
    {
        QTest::addColumn<bool>("withRow");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("stored");
        QTest::newRow("update") << true << "42" << 42;
        QTest::newRow("insert") << false << "1250" << 1250;
        QTest::newRow("empty is zero") << true << "" << 0;
    }
    void setCounterByHand()
    {
        QFETCH(bool, withRow);
        QFETCH(QString, typed);
        QFETCH(int, stored);
        const QString ddt = "Documenti di trasporto", anno = getOpzione("AnnoCorrente");
        const QString rid = QString::number(ridOf(ddt));
        const QString ofYear = "FK_NUMERATORE = " + rid + " AND ANNO = ¤" + anno + "¤";
        testdb::run("DELETE FROM Contatori WHERE " + ofYear);
        if (withRow)
            testdb::run("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (" + rid + ", " + anno + ", 9)");
        Screen s;
        s.select(ddt);
        QCOMPARE(s.shown("txtNumero"), withRow ? QStringLiteral("9") : QStringLiteral("0"));
        s.type("txtNumero", typed);
        testdb::click(s.screen, "cmdCommand_2");
        QCOMPARE(testdb::count("Contatori", ofYear), 1);
        QCOMPARE(testdb::number("SELECT NUMERO FROM Contatori WHERE " + ofYear), stored);
        QCOMPARE(s.number(ddt), stored);
        QCOMPARE(s.list()->currentItem()->text(0), ddt);
    }

    // Only the counters of the option's year show; none for the year is 0.
    void listOfTheCurrentYear()
    {
        const QString anno = getOpzione("AnnoCorrente");
        const QString ordini = QString::number(ridOf("Ordini clienti"));
        const QString carichi = QString::number(ridOf("Carichi da fornitore"));
        testdb::run("UPDATE Contatori SET NUMERO = 31 WHERE FK_NUMERATORE = " + ordini + " AND ANNO = " + anno);
        testdb::run("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (" + ordini + ", "
                    + QString::number(anno.toInt() - 1) + ", 500)");
        testdb::run("DELETE FROM Contatori WHERE FK_NUMERATORE = " + carichi + " AND ANNO = " + anno);
        Screen s;
        QCOMPARE(s.shown("lblAnno"), anno);
        QCOMPARE(s.list()->topLevelItemCount(), testdb::count("Numeratori"));
        QCOMPARE(s.number("Ordini clienti"), 31);
        QCOMPARE(s.number("Carichi da fornitore"), 0);
        // Loading selects the first item, by description: delete and write offered.
        QCOMPARE(s.list()->currentItem()->text(0), QStringLiteral("Carichi da fornitore"));
        QCOMPARE(s.offered(), QStringLiteral("011"));
    }
};

QTEST_MAIN(TestFrmNumeratori)
#include "tst_frmnumeratori.moc"
