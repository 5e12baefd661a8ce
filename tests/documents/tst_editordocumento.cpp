// Row entry without a window: rows written, merged, inserted, deleted and
// brought back, with the state the save reads, and the totals that follow.
#include "documents/editordocumento.h"

#include <QTest>

namespace {

// The editor holding a product at a list price, as row entry fills it.
void prodotto(EditorDocumento& e, int key, const QString& codice, const QString& listino, const QString& quantita,
              const QString& sconto1 = QStringLiteral("0"))
{
    e.pulisciRiga();
    e.dati.prodotto = key;
    e.dati.codice = codice;
    e.dati.descrizione = QStringLiteral("Articolo ") + codice;
    e.dati.iva = 1;
    e.riga.aliquota = QStringLiteral("22");
    e.riga.prezzoListino = listino;
    e.riga.quantita = quantita;
    e.riga.sconto1 = sconto1;
}

// The states of the rows, as one text: "0 2 1".
QString statiRighe(const EditorDocumento& e)
{
    QStringList list;
    for (int i = 0; i < e.griglia().righe(); ++i)
        list << QString::number(e.griglia().stato(i));
    return list.join(QLatin1Char(' '));
}

// Three rows as read with a stored document.
void caricato(EditorDocumento& e)
{
    for (int i = 1; i <= 3; ++i) {
        prodotto(e, i, QStringLiteral("P%1").arg(i), QStringLiteral("10"), QStringLiteral("1"));
        const int r = e.confermaRiga();
        e.griglia().setCella(r, colonna::Rid, QString::number(100 + i));
        e.griglia().setCella(r, colonna::Gestione, QStringLiteral("0"));
    }
    e.corrente = -1;
}

} // namespace

class TestEditorDocumento : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Inserting after the current row or deleting a row marks the unchanged
    // rows below it changed; a deleted row stays, hidden, out of the totals;
    // a stored row confirmed again is changed.
    void stati_data()
    {
        QTest::addColumn<QString>("azione");
        QTest::addColumn<QString>("attesi");
        QTest::addColumn<QString>("imponibile");
        QTest::newRow("append") << "append"
                                << "0 0 0 1"
                                << "40,00";
        QTest::newRow("insert after the first") << "insert"
                                                << "0 1 2 2"
                                                << "40,00";
        QTest::newRow("delete the second") << "delete"
                                           << "0 3 2"
                                           << "20,00";
        QTest::newRow("delete the last") << "deleteLast"
                                         << "0 0 3"
                                         << "20,00";
        QTest::newRow("bring back and confirm") << "confirm"
                                                << "0 2 0"
                                                << "30,00";
    }
    void stati()
    {
        QFETCH(QString, azione);
        QFETCH(QString, attesi);
        QFETCH(QString, imponibile);
        EditorDocumento e;
        caricato(e);
        if (azione == "append" || azione == "insert") {
            e.corrente = azione == "insert" ? 0 : -1;
            prodotto(e, 9, "NUOVO", "10", "1");
            QCOMPARE(e.confermaRiga(), azione == "insert" ? 1 : 3);
        } else if (azione.startsWith("delete")) {
            e.eliminaRiga(azione == "delete" ? 1 : 2);
            QVERIFY(!e.griglia().visibile(azione == "delete" ? 1 : 2));
        } else {
            QVERIFY(e.getRowFromGrid(1));
            QCOMPARE(e.confermaRiga(), 1);
        }
        QCOMPARE(statiRighe(e), attesi);
        QCOMPARE(e.totali().imponibile, imponibile);
    }

    // Adding to the previous row: an equal row takes the quantity and its
    // amounts follow; other discounts, a "/" code or the box off make a row
    // of their own.
    void aggiungiPrecedente_data()
    {
        QTest::addColumn<QString>("codice");
        QTest::addColumn<QString>("sconto");
        QTest::addColumn<bool>("spunta");
        QTest::addColumn<int>("righe");
        QTest::addColumn<QString>("quantita"); // of the first row
        QTest::addColumn<QString>("imponibile");
        QTest::newRow("merged") << "VITE"
                                << "10" << true << 1 << "5,00"
                                << "45,00";
        QTest::newRow("other discount") << "VITE"
                                        << "5" << true << 2 << "2,00"
                                        << "46,50";
        QTest::newRow("box off") << "VITE"
                                 << "10" << false << 2 << "2,00"
                                 << "45,00";
        QTest::newRow("free row") << "/NOTA"
                                  << "10" << true << 2 << "2,00"
                                  << "45,00";
    }
    void aggiungiPrecedente()
    {
        QFETCH(QString, codice);
        QFETCH(QString, sconto);
        QFETCH(bool, spunta);
        QFETCH(int, righe);
        QFETCH(QString, quantita);
        QFETCH(QString, imponibile);
        EditorDocumento e;
        prodotto(e, 7, codice, "10", "2", "10");
        e.confermaRiga();
        prodotto(e, 7, codice, "10", "3", sconto);
        e.aggiungiPrecedente = spunta;
        e.confermaRiga();
        QCOMPARE(e.griglia().righe(), righe);
        QCOMPARE(e.griglia().cella(0, colonna::Quantita), quantita);
        QCOMPARE(e.totali().imponibile, imponibile);
        if (righe == 1) {
            QCOMPARE(e.griglia().cella(0, colonna::Imponibile), QStringLiteral("45,00"));
            QCOMPARE(e.griglia().cella(0, colonna::Importo), QStringLiteral("54,90"));
        }
    }

    // A row brought back shows what was confirmed; a deleted row can't be.
    void rigaRiportata()
    {
        EditorDocumento e;
        prodotto(e, 3, "DADO", "100", "2,5", "10");
        e.riga.sconto2 = "5";
        e.riga.sconto3 = "2";
        e.confermaRiga();
        QVERIFY(e.getRowFromGrid(0));
        QCOMPARE((QStringList{e.riga.prezzoListino, e.riga.prezzoNetto, e.riga.prezzoIvaInclusa,
                              e.riga.totRigaImponibile, e.riga.sconto1, e.riga.quantita}),
                 (QStringList{"100,00", "83,79", "102,22", "209,48", "10", "2,50"}));
        QCOMPARE(e.posizione, 0);
        e.eliminaRiga(0);
        QVERIFY(!e.getRowFromGrid(0));
        QCOMPARE(e.totali().righe, QStringLiteral("0"));
    }

    // A kit parent is left out of the totals; its children count.
    void distinta()
    {
        EditorDocumento e(2, "*");
        prodotto(e, 1, "*KIT", "0", "1");
        e.confermaRiga();
        prodotto(e, 2, "VITE", "10", "4");
        e.dati.padre = "*0";
        e.confermaRiga();
        QCOMPARE(e.totali().righe, QStringLiteral("1"));
        QCOMPARE(e.totali().imponibile, QStringLiteral("40,00"));
        QVERIFY(!e.griglia().visibile(1)); // children hidden until opened
        QVERIFY(e.griglia().copiaRiga(1).isEmpty());
    }

    // A copied row comes back as a new row with the same amounts.
    void copiaIncolla()
    {
        EditorDocumento e;
        QVERIFY(!e.incollaRiga(QString()));
        prodotto(e, 5, "BULLONE", "3,50", "10");
        e.confermaRiga();
        e.griglia().setCella(0, colonna::Rid, "55");
        QVERIFY(e.incollaRiga(e.griglia().copiaRiga(0)));
        QCOMPARE(e.griglia().righe(), 2);
        QCOMPARE(e.griglia().stato(1), 1);
        QVERIFY(e.griglia().cella(1, colonna::Rid).isEmpty());
        QCOMPARE(e.griglia().cella(1, colonna::Imponibile), e.griglia().cella(0, colonna::Imponibile));
        QCOMPARE(e.totali().imponibile, QStringLiteral("70,00"));
    }
};

QTEST_APPLESS_MAIN(TestEditorDocumento)
#include "tst_editordocumento.moc"
