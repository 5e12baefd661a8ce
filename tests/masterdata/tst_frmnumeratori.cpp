// The numerators screen on both back ends: adding, deleting one in use,
// writing a counter by hand and the list of the current year.
#include "cadosqlserver.h"
#include "frmnumeratori.h"
#include "msgbox.h"
#include "optionstore.h"
#include "scripteddialogs.h"
#include "testdb.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest>

using testdb::ScriptedDialogs;

namespace {

QVariant value(const QString& sql)
{
    return gAdoSqlServer().getValueBySQL(sql, QStringLiteral("test"));
}

void run(const QString& sql)
{
    QVERIFY(gAdoSqlServer().executeSQL(sql, QStringLiteral("test")));
}

int ridOf(const QString& descrizione)
{
    return value(QStringLiteral("SELECT RID FROM Numeratori WHERE DESCRIZIONE = ¤") + descrizione + QStringLiteral("¤")).toInt();
}

struct Screen
{
    frmNumeratori screen;
    Screen()
    {
        screen.show();
        QApplication::setActiveWindow(&screen);
    }
    QTreeWidget* list() { return screen.findChild<QTreeWidget*>(QStringLiteral("lswNumeratori")); }
    QLineEdit* edit(const char* name) { return screen.findChild<QLineEdit*>(QString::fromLatin1(name)); }
    QPushButton* command(int i) { return screen.findChild<QPushButton*>(QStringLiteral("cmdCommand_") + QString::number(i)); }
    // The number the list shows for a description; -1 when missing.
    int shown(const QString& descrizione)
    {
        const QList<QTreeWidgetItem*> items = list()->findItems(descrizione, Qt::MatchExactly, 0);
        return items.isEmpty() ? -1 : items.first()->text(1).toInt();
    }
    void select(const QString& descrizione)
    {
        const QList<QTreeWidgetItem*> items = list()->findItems(descrizione, Qt::MatchExactly, 0);
        QVERIFY(!items.isEmpty());
        list()->setCurrentItem(items.first());
        QCOMPARE(screen.findChild<QLabel*>(QStringLiteral("lblDescrizione"))->text(), descrizione);
    }
};

} // namespace

class TestFrmNumeratori : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { QCOMPARE(gAdoSqlServer().getConnectionCount(), 0); }

    void addNewNumeratore_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answer");       // to the question; 0 when none is asked
        QTest::addColumn<QString>("box");      // the refusal; empty when none
        QTest::addColumn<bool>("added");
        for (const QString& b : testdb::backends()) {
            const QByteArray p = b.toLatin1() + ' ';
            QTest::newRow(QByteArray(p + "blank").constData()) << b << QStringLiteral("   ") << 0
                                       << QStringLiteral("Attenzione!! bisogna digitare una descrizione per il nuovo "
                                                         "Numeratore che si vuole inserire.")
                                       << false;
            QTest::newRow(QByteArray(p + "present").constData()) << b << QStringLiteral("Ordini clienti ") << 0
                                         << QStringLiteral("Il Numeratore [Ordini clienti] è gia' presente!") << false;
            QTest::newRow(QByteArray(p + "other case is another name").constData()) << b << QStringLiteral("ORDINI CLIENTI") << int(vb::Yes)
                                                            << QString() << true;
            QTest::newRow(QByteArray(p + "answered no").constData()) << b << QStringLiteral("Bolle interne") << int(vb::No) << QString() << false;
            QTest::newRow(QByteArray(p + "added").constData()) << b << QStringLiteral("Ricevute dell'anno") << int(vb::Yes) << QString() << true;
        }
    }
    void addNewNumeratore()
    {
        QFETCH(QString, backend);
        QFETCH(QString, typed);
        QFETCH(int, answer);
        QFETCH(QString, box);
        QFETCH(bool, added);
        QVERIFY(testdb::shared(backend).isValid());
        const int highest = value(QStringLiteral("SELECT MAX(RID) FROM Numeratori")).toInt();
        const int before = value(QStringLiteral("SELECT COUNT(*) FROM Numeratori")).toInt();
        Screen s;
        ScriptedDialogs script;
        testdb::typeInto(s.screen, QStringLiteral("txtDescrizione"), typed);
        QVERIFY(s.command(0)->isEnabled());   // typing a name offers the add only
        QVERIFY(!s.command(1)->isEnabled());
        QVERIFY(!s.command(2)->isEnabled());
        const QString name = typed.trimmed();
        if (!box.isEmpty())
            script.expectMessage(box, vb::OK);
        if (answer)
            script.expectMessage(QStringLiteral("Aggiungere il Numeratore [") + name + QStringLiteral("] all'elenco?"), answer);
        testdb::click(s.screen, QStringLiteral("cmdCommand_0"));
        QVERIFY(script.allAnswered());

        QCOMPARE(value(QStringLiteral("SELECT COUNT(*) FROM Numeratori")).toInt(), before + (added ? 1 : 0));
        if (!added)
            return;
        // By key: MariaDB compares names without regard to case.
        const int rid = highest + 1;
        QCOMPARE(value(QStringLiteral("SELECT DESCRIZIONE FROM Numeratori WHERE RID = ") + QString::number(rid)).toString(), name);
        QCOMPARE(s.shown(name), 0);
        QCOMPARE(s.edit("txtDescrizione")->text(), QString());
        QCOMPARE(value(QStringLiteral("SELECT NUMERO FROM Contatori WHERE FK_NUMERATORE = ") + QString::number(rid)
                       + QStringLiteral(" AND ANNO = ¤") + s.screen.anno() + QStringLiteral("¤"))
                     .toInt(),
                 0);
        run(QStringLiteral("DELETE FROM Contatori WHERE FK_NUMERATORE = ") + QString::number(rid));
        run(QStringLiteral("DELETE FROM Numeratori WHERE RID = ") + QString::number(rid));
    }

    // A numerator in use names every type that holds it and stays; one that
    // is free goes with all its counters.
    void delNumeratore_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void delNumeratore()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        const QString fatture = QStringLiteral("Fatture e note di credito");
        Screen s;
        ScriptedDialogs script;
        s.select(fatture);
        script.expectMessage(QStringLiteral("Eliminare il Numeratore [") + fatture + QStringLiteral("] all'elenco?"), vb::Yes);
        script.expectMessage(QStringLiteral("Impossibile eliminare il numeratore selezionato [") + fatture
                                 + QStringLiteral("].\nEsistono relazioni con il documento ["),
                             vb::OK);
        testdb::click(s.screen, QStringLiteral("cmdCommand_1"));
        QVERIFY(script.allAnswered());
        for (const char* tipo : {"Fattura di vendita", "Fattura differita", "Nota di credito"})
            QVERIFY2(script.shown.last().contains(QString::fromUtf8(tipo)), qPrintable(script.shown.last()));
        QCOMPARE(script.shown.last().count(QStringLiteral(" - ")), 2);
        QVERIFY(ridOf(fatture) > 0);

        const QString libero = QStringLiteral("Da eliminare");
        testdb::typeInto(s.screen, QStringLiteral("txtDescrizione"), libero);
        script.expectMessage(QStringLiteral("Aggiungere il Numeratore"), vb::Yes);
        testdb::click(s.screen, QStringLiteral("cmdCommand_0"));
        const int rid = ridOf(libero);
        run(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (") + QString::number(rid)
            + QStringLiteral(", 1999, 7)"));
        s.select(libero);
        script.expectMessage(QStringLiteral("Eliminare il Numeratore [Da eliminare] all'elenco?"), vb::No);
        testdb::click(s.screen, QStringLiteral("cmdCommand_1"));
        QCOMPARE(ridOf(libero), rid);
        script.expectMessage(QStringLiteral("Eliminare il Numeratore [Da eliminare] all'elenco?"), vb::Yes);
        testdb::click(s.screen, QStringLiteral("cmdCommand_1"));
        QVERIFY(script.allAnswered());
        QCOMPARE(ridOf(libero), 0);
        QCOMPARE(value(QStringLiteral("SELECT COUNT(*) FROM Contatori WHERE FK_NUMERATORE = ") + QString::number(rid)).toInt(), 0);
        QCOMPARE(s.shown(libero), -1);
        QCOMPARE(s.list()->currentItem(), s.list()->topLevelItem(0));
    }

    // The number typed becomes the counter of the year shown, whether the
    // counter row exists or not; the selection stays on the numerator.
    void setCounterByHand_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<bool>("withRow");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("stored");
        for (const QString& b : testdb::backends()) {
            const QByteArray p = b.toLatin1() + ' ';
            QTest::newRow(QByteArray(p + "update").constData()) << b << true << QStringLiteral("42") << 42;
            QTest::newRow(QByteArray(p + "insert").constData()) << b << false << QStringLiteral("1250") << 1250;
            QTest::newRow(QByteArray(p + "empty is zero").constData()) << b << true << QString() << 0;
        }
    }
    void setCounterByHand()
    {
        QFETCH(QString, backend);
        QFETCH(bool, withRow);
        QFETCH(QString, typed);
        QFETCH(int, stored);
        QVERIFY(testdb::shared(backend).isValid());
        const QString ddt = QStringLiteral("Documenti di trasporto");
        const QString rid = QString::number(ridOf(ddt));
        const QString anno = getOpzione(QStringLiteral("AnnoCorrente"));
        const QString ofYear = QStringLiteral(" WHERE FK_NUMERATORE = ") + rid + QStringLiteral(" AND ANNO = ¤") + anno + QStringLiteral("¤");
        run(QStringLiteral("DELETE FROM Contatori") + ofYear);
        if (withRow)
            run(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (") + rid + QStringLiteral(", ") + anno
                + QStringLiteral(", 9)"));
        Screen s;
        s.select(ddt);
        QCOMPARE(s.edit("txtNumero")->text(), withRow ? QStringLiteral("9") : QStringLiteral("0"));
        testdb::typeInto(s.screen, QStringLiteral("txtNumero"), typed);
        testdb::click(s.screen, QStringLiteral("cmdCommand_2"));
        QCOMPARE(value(QStringLiteral("SELECT COUNT(*) FROM Contatori") + ofYear).toInt(), 1);
        QCOMPARE(value(QStringLiteral("SELECT NUMERO FROM Contatori") + ofYear).toInt(), stored);
        QCOMPARE(s.shown(ddt), stored);
        QCOMPARE(s.list()->currentItem()->text(0), ddt);
    }

    // Only the counters of the option's year show; none for the year is 0.
    void listOfTheCurrentYear_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void listOfTheCurrentYear()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        const QString anno = getOpzione(QStringLiteral("AnnoCorrente"));
        const QString ordini = QString::number(ridOf(QStringLiteral("Ordini clienti")));
        const QString carichi = QString::number(ridOf(QStringLiteral("Carichi da fornitore")));
        run(QStringLiteral("UPDATE Contatori SET NUMERO = 31 WHERE FK_NUMERATORE = ") + ordini + QStringLiteral(" AND ANNO = ") + anno);
        run(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO) VALUES (") + ordini + QStringLiteral(", ")
            + QString::number(anno.toInt() - 1) + QStringLiteral(", 500)"));
        run(QStringLiteral("DELETE FROM Contatori WHERE FK_NUMERATORE = ") + carichi + QStringLiteral(" AND ANNO = ") + anno);
        Screen s;
        QCOMPARE(s.screen.findChild<QLabel*>(QStringLiteral("lblAnno"))->text(), anno);
        QCOMPARE(s.list()->topLevelItemCount(), value(QStringLiteral("SELECT COUNT(*) FROM Numeratori")).toInt());
        QCOMPARE(s.shown(QStringLiteral("Ordini clienti")), 31);
        QCOMPARE(s.shown(QStringLiteral("Carichi da fornitore")), 0);
        // Loading selects the first item, by description.
        QCOMPARE(s.list()->currentItem()->text(0), QStringLiteral("Carichi da fornitore"));
        QVERIFY(!s.command(0)->isEnabled());
        QVERIFY(s.command(1)->isEnabled());
    }
};

QTEST_MAIN(TestFrmNumeratori)
#include "tst_frmnumeratori.moc"
