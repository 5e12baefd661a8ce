// The look-ups of the code fields on both back ends: found by code or by
// key, the box for an unknown code, the conditions of the customer,
// supplier and journal-causal look-ups, and the product look-up with its
// chooser.
#include "data/cadosqlserver.h"
#include "lookups/lookups.h"
#include "common/msgbox.h"
#include "data/recordset.h"
#include "support/testdb.h"

#include <QtTest>

using testdb::ScriptedMsgBox;

namespace {

int ridOf(const QString& table, const QString& where)
{
    return testdb::number(QStringLiteral("SELECT RID FROM ") + table + QStringLiteral(" WHERE ") + where);
}

void noChooser()
{
    setElementChooser([](const QString&, const Recordset&, bool, bool) -> QStringList {
        QTest::qFail("no chooser expected", __FILE__, __LINE__);
        return {};
    });
}

// The database of the back end with two counterparties and three products,
// one of whose extra code is the code of another.
bool open(const QString& backend)
{
    if (!testdb::shared(backend).isValid())
        return false;
    if (ridOf(QStringLiteral("Anagrafiche"), QStringLiteral("NUMERO = 901")) > 0)
        return true;
    testdb::run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, FK_PAGAMENTO) VALUES (901, ¤Rossi Srl¤, ¤C¤, 2), "
                               "(902, ¤Bianchi Spa¤, ¤F¤, NULL)"));
    testdb::run(QStringLiteral("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤)"));
    const int marca = ridOf(QStringLiteral("Marche"), QStringLiteral("CODICE = ¤ACME¤"));
    const QString head = QStringLiteral(
        "INSERT INTO Prodotti (CODICE, DESCRIZIONE, BARCODE, EXTRACODICE, FK_Iva, FK_UNITAMISURA, FK_MARCA, GIACENZA, "
        "ELENCOSPECIALE) VALUES (");
    testdb::run(head + QStringLiteral("¤VITE8¤, ¤Vite 8 mm¤, ¤8001234567890¤, ¤V-8¤, 2, 1, %1, 40, -1), "
                                      "(¤DADO8¤, ¤Dado 8 mm¤, NULL, ¤VITE8X¤, 1, 1, NULL, 15, 0), "
                                      "(¤VITE8X¤, ¤Vite 8 mm inox¤, NULL, NULL, 1, 1, NULL, 3, 0)").arg(marca));
    testdb::run(QStringLiteral("INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, QUANTITA) VALUES (%1, 1, 12.5)")
                    .arg(ridOf(QStringLiteral("Prodotti"), QStringLiteral("CODICE = ¤VITE8¤"))));
    return true;
}

using Lookup = bool (*)(QString&, QString&, int&);

} // namespace

Q_DECLARE_METATYPE(Lookup)

class TestLookups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup()
    {
        setElementChooser({});
        gAdoSqlServer().closeAll();
    }

    // By code, by key, and the codes that must not be found.
    void family_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<Lookup>("lookup");
        QTest::addColumn<QString>("codice");
        QTest::addColumn<int>("rid");
        QTest::addColumn<QString>("expectedCode");
        QTest::addColumn<QString>("expectedDescription");
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "unit by code") << Lookup(&validaUnitaMisura) << "KG" << 0 << "KG" << "Chilogrammi";
            testdb::row(b, "unit by key") << Lookup(&validaUnitaMisura) << "" << 1 << "PZ" << "Pezzi";
            testdb::row(b, "unknown unit") << Lookup(&validaUnitaMisura) << "XX" << 0 << "" << "";
            testdb::row(b, "customer") << Lookup(&validaCliente) << "901" << 0 << "901" << "Rossi Srl";
            testdb::row(b, "customer refuses a supplier") << Lookup(&validaCliente) << "902" << 0 << "" << "";
            testdb::row(b, "supplier") << Lookup(&validaFornitore) << "902" << 0 << "902" << "Bianchi Spa";
            testdb::row(b, "any counterparty") << Lookup(&validaAnagrafe) << "902" << 0 << "902" << "Bianchi Spa";
            testdb::row(b, "counterparty number not a number") << Lookup(&validaAnagrafe) << "abc" << 0 << "" << "";
            testdb::row(b, "product by bar code") << Lookup(&validaProdotto) << "8001234567890" << 0 << "VITE8" << "Vite 8 mm";
            testdb::row(b, "product by extra code") << Lookup(&validaProdotto) << "V-8" << 0 << "VITE8" << "Vite 8 mm";
            testdb::row(b, "account") << Lookup(&validaConto) << "01003001" << 0 << "01003001" << "Cassa";
            testdb::row(b, "document type") << Lookup(&validaDocumento) << "DDT" << 0 << "DDT" << "Documento di trasporto";
        }
    }
    void family()
    {
        QFETCH(QString, backend);
        QFETCH(Lookup, lookup);
        QFETCH(QString, codice);
        QFETCH(int, rid);
        QFETCH(QString, expectedCode);
        QFETCH(QString, expectedDescription);
        QVERIFY(open(backend));
        ScriptedMsgBox boxes;
        const bool missing = expectedCode.isEmpty();
        if (missing)
            boxes.expect(QStringLiteral("Codice: ") + codice + QStringLiteral(" inesistente!"), vb::OK);
        QString descrizione = QStringLiteral("as before");
        QCOMPARE(lookup(codice, descrizione, rid), !missing);
        QCOMPARE(codice, expectedCode);
        QCOMPARE(descrizione, missing ? QStringLiteral("as before") : expectedDescription);
        QCOMPARE(rid > 0, !missing);
        QVERIFY(boxes.allAnswered());
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // The members with extra outputs.
    void extras_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void extras()
    {
        QFETCH(QString, backend);
        QVERIFY(open(backend));
        QString codice = QStringLiteral("10"), descrizione;
        int rid = 0;
        Single valore = 0;
        QVERIFY(validaIva(codice, descrizione, rid, valore));
        QCOMPARE(valore, Single(10));

        codice = QStringLiteral("901");
        rid = 0;
        int pagamento = 0;
        QVERIFY(validaAnagrafePagamento(codice, descrizione, rid, pagamento));
        QCOMPARE(pagamento, 2);

        // A causal that writes no journal entry is not found.
        bool genera = false, negative = false;
        codice = QStringLiteral("NC");
        rid = 0;
        QVERIFY(validaCausaleScadenze(codice, descrizione, rid, genera, negative));
        QVERIFY(genera && negative);
        ScriptedMsgBox boxes;
        boxes.expect(QStringLiteral("Codice: DDT inesistente!"), vb::OK);
        codice = QStringLiteral("DDT");
        rid = 0;
        QVERIFY(!validaCausaleScadenze(codice, descrizione, rid, genera, negative));
        QVERIFY(codice.isEmpty());

        int numeratore = 2;
        QVERIFY(validaNumeratore(descrizione, numeratore));
        QCOMPARE(descrizione, QStringLiteral("Documenti di trasporto"));

        DocumentoEsteso documento;
        documento.codice = QStringLiteral("CF");
        QVERIFY(validaDocumentoEsteso(documento));
        QVERIFY(documento.modificaPrezzoAcquisto && !documento.usaRda);
        QCOMPARE(documento.rda1, QStringLiteral("0"));
        QVERIFY(boxes.allAnswered());
    }

    // One row fills the product; the stock of a warehouse comes from its row.
    void prodottoEsteso_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void prodottoEsteso()
    {
        QFETCH(QString, backend);
        QVERIFY(open(backend));
        noChooser();
        ProdottoEsteso p;
        p.codice = QStringLiteral("8001234567890");
        QVERIFY(validaProdottoEsteso(p, {}));
        QCOMPARE(p.codice, QStringLiteral("VITE8"));
        QCOMPARE(p.descrizione, QStringLiteral("Vite 8 mm"));
        QCOMPARE(p.valoreIva, Single(10));
        QCOMPARE(p.codIva, QStringLiteral("10"));
        QCOMPARE(p.codUnitaMisura, QStringLiteral("PZ"));
        QCOMPARE(p.codMarca, QStringLiteral("ACME"));
        QCOMPARE(p.giacenza, 40.0);
        QCOMPARE(p.elencoSpeciale, qint16(1));

        ProdottoEsteso inWarehouse;
        inWarehouse.rid = p.rid;
        RicercaProdotto sede;
        sede.magazzino = 1;
        QVERIFY(validaProdottoEsteso(inWarehouse, sede));
        QCOMPARE(inWarehouse.giacenza, 12.5);
        sede.magazzino = 99;
        QVERIFY(validaProdottoEsteso(inWarehouse, sede));
        QCOMPARE(inWarehouse.giacenza, 0.0);
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // A code that is also another product's extra code gives two rows: the
    // chooser decides, and with multiple choice all keys come back.
    void prodottoChooser_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<bool>("multi");
        QTest::addColumn<int>("chosen");   // how many rows the chooser picks, DADO8 first
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "one") << false << 1;
            testdb::row(b, "both") << true << 2;
            testdb::row(b, "none") << false << 0;
        }
    }
    void prodottoChooser()
    {
        QFETCH(QString, backend);
        QFETCH(bool, multi);
        QFETCH(int, chosen);
        QVERIFY(open(backend));
        QString columnsSeen;
        int rowsSeen = 0;
        QStringList keys;
        bool multiSeen = !multi;
        setElementChooser([&](const QString& columns, const Recordset& rs, bool multiSelect, bool) -> QStringList {
            columnsSeen = columns;
            rowsSeen = rs.recordCount();
            Recordset rows = rs;
            for (rows.moveFirst(); !rows.eof(); rows.moveNext())
                keys.insert(rows.text(QStringLiteral("CODICE")) == QLatin1String("DADO8") ? 0 : keys.size(),
                            QStringLiteral("E_") + rows.value(QStringLiteral("RID")).toString());
            multiSeen = multiSelect;
            return keys.mid(0, chosen);
        });
        ScriptedMsgBox boxes;
        if (chosen == 0)
            boxes.expect(QStringLiteral("Codice: VITE8X inesistente!"), vb::OK);
        ProdottoEsteso p;
        p.codice = QStringLiteral("VITE8X");
        RicercaProdotto ricerca;
        ricerca.multiSelect = multi;
        QCOMPARE(validaProdottoEsteso(p, ricerca), chosen > 0);
        QCOMPARE(rowsSeen, 2);
        QCOMPARE(multiSeen, multi);
        QVERIFY(columnsSeen.startsWith(QStringLiteral("Marca¤800¤CODMARCA|")));
        QCOMPARE(p.codice, chosen ? QStringLiteral("DADO8") : QString());
        if (multi) {
            QString expected;
            for (const QString& key : keys)
                expected += key.mid(2) + QLatin1Char(',');
            QCOMPARE(p.elencoRid, expected);
        }
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // A code typed as a beginning finds the codes that start with it; "%"
    // and "_" in it are characters of the code, not wildcards. Not found,
    // with the question: Yes asks for a new product and keeps the code.
    void prodottoCerca_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answer");             // to "Creare un nuovo Prodotto?", 0: not asked (search by beginning)
        QTest::addColumn<QString>("expectedCode");   // empty: not found
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "beginning") << "DAD" << 0 << "DADO8";
            testdb::row(b, "whole code") << "DADO8" << 0 << "DADO8";
            testdb::row(b, "underscore") << "DAD_8" << 0 << "";
            testdb::row(b, "percent") << "%8X" << 0 << "";
            testdb::row(b, "delimiter") << "VITE¤" << 0 << "";
            testdb::row(b, "new product") << "NUOVO1" << int(vb::Yes) << "NUOVO1";
            testdb::row(b, "no new product") << "NUOVO2" << int(vb::No) << "";
        }
    }
    void prodottoCerca()
    {
        QFETCH(QString, backend);
        QFETCH(QString, typed);
        QFETCH(int, answer);
        QFETCH(QString, expectedCode);
        QVERIFY(open(backend));
        testdb::ErrorRecorder errors;
        noChooser();
        ScriptedMsgBox boxes;
        const bool found = answer == 0 && !expectedCode.isEmpty();
        if (!found)
            boxes.expect(QStringLiteral("Codice: ") + typed + QStringLiteral(" inesistente!")
                             + (answer ? QStringLiteral("\nCreare un nuovo Prodotto?") : QString()),
                         answer ? answer : int(vb::OK));
        ProdottoEsteso p;
        p.codice = typed;
        p.creaNuovo = answer == vb::No;   // a No clears what an earlier Yes left
        RicercaProdotto ricerca;
        ricerca.like = answer == 0;
        ricerca.chiediNuovo = answer != 0;
        QCOMPARE(validaProdottoEsteso(p, ricerca), found);
        QCOMPARE(p.codice, expectedCode);
        if (answer)
            QCOMPARE(p.creaNuovo, answer == vb::Yes);
        QVERIFY(boxes.allAnswered());
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestLookups)
#include "tst_lookups.moc"
