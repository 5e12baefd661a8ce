// The look-ups of the code fields on both back ends: found by code or by
// key, the box for an unknown code, the conditions of the customer,
// supplier and journal-causal look-ups, and the product look-up with its
// chooser.
#include "cadosqlserver.h"
#include "lookups.h"
#include "msgbox.h"
#include "recordset.h"
#include "testdb.h"

#include <QtTest>

using testdb::ScriptedMsgBox;

namespace {

void run(const QString& sql)
{
    QVERIFY2(gAdoSqlServer().executeSQL(sql, QStringLiteral("test")), qPrintable(sql));
}

int ridOf(const QString& table, const QString& where)
{
    return gAdoSqlServer()
        .getValueBySQL(QStringLiteral("SELECT RID FROM ") + table + QStringLiteral(" WHERE ") + where, QStringLiteral("test"))
        .toInt();
}

// Two counterparties and three products, one of whose extra code is the
// code of another.
void addRows()
{
    if (ridOf(QStringLiteral("Anagrafiche"), QStringLiteral("NUMERO = 901")) > 0)
        return;
    run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, FK_PAGAMENTO) VALUES (901, ¤Rossi Srl¤, ¤C¤, 2)"));
    run(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (902, ¤Bianchi Spa¤, ¤F¤)"));
    run(QStringLiteral("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ACME¤, ¤Acme¤)"));
    const int marca = ridOf(QStringLiteral("Marche"), QStringLiteral("CODICE = ¤ACME¤"));
    const QString head = QStringLiteral(
        "INSERT INTO Prodotti (CODICE, DESCRIZIONE, BARCODE, EXTRACODICE, FK_Iva, FK_UNITAMISURA, FK_MARCA, GIACENZA, "
        "ELENCOSPECIALE) VALUES (");
    run(head + QStringLiteral("¤VITE8¤, ¤Vite 8 mm¤, ¤8001234567890¤, ¤V-8¤, 2, 1, ") + QString::number(marca)
        + QStringLiteral(", 40, -1)"));
    run(head + QStringLiteral("¤DADO8¤, ¤Dado 8 mm¤, NULL, ¤VITE8X¤, 1, 1, NULL, 15, 0)"));
    run(head + QStringLiteral("¤VITE8X¤, ¤Vite 8 mm inox¤, NULL, NULL, 1, 1, NULL, 3, 0)"));
    const int vite = ridOf(QStringLiteral("Prodotti"), QStringLiteral("CODICE = ¤VITE8¤"));
    run(QStringLiteral("INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, QUANTITA) VALUES (") + QString::number(vite)
        + QStringLiteral(", 1, 12.5)"));
}

using Lookup = bool (*)(QString&, QString&, int&);

} // namespace

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
        QTest::addColumn<QString>("which");
        QTest::addColumn<QString>("codice");
        QTest::addColumn<int>("rid");
        QTest::addColumn<QString>("expectedCode");
        QTest::addColumn<QString>("expectedDescription");
        for (const QString& b : testdb::backends()) {
            const auto row = [&](const char* name) -> QTestData& { return QTest::newRow(qPrintable(b + QLatin1Char(' ') + QLatin1String(name))) << b; };
            row("unit by code") << "validaUnitaMisura" << "KG" << 0 << "KG" << "Chilogrammi";
            row("unit by key") << "validaUnitaMisura" << "" << 1 << "PZ" << "Pezzi";
            row("unknown unit") << "validaUnitaMisura" << "XX" << 0 << "" << "";
            row("customer") << "validaCliente" << "901" << 0 << "901" << "Rossi Srl";
            row("customer refuses a supplier") << "validaCliente" << "902" << 0 << "" << "";
            row("supplier") << "validaFornitore" << "902" << 0 << "902" << "Bianchi Spa";
            row("any counterparty") << "validaAnagrafe" << "902" << 0 << "902" << "Bianchi Spa";
            row("counterparty number not a number") << "validaAnagrafe" << "abc" << 0 << "" << "";
            row("product by bar code") << "validaProdotto" << "8001234567890" << 0 << "VITE8" << "Vite 8 mm";
            row("product by extra code") << "validaProdotto" << "V-8" << 0 << "VITE8" << "Vite 8 mm";
            row("account") << "validaConto" << "01003001" << 0 << "01003001" << "Cassa";
            row("document type") << "validaDocumento" << "DDT" << 0 << "DDT" << "Documento di trasporto";
        }
    }
    void family()
    {
        QFETCH(QString, backend);
        QFETCH(QString, which);
        QFETCH(QString, codice);
        QFETCH(int, rid);
        QFETCH(QString, expectedCode);
        QFETCH(QString, expectedDescription);
        QVERIFY(testdb::shared(backend).isValid());
        addRows();
        static const QHash<QString, Lookup> lookups{
            {QStringLiteral("validaUnitaMisura"), &validaUnitaMisura}, {QStringLiteral("validaCliente"), &validaCliente},
            {QStringLiteral("validaFornitore"), &validaFornitore},     {QStringLiteral("validaAnagrafe"), &validaAnagrafe},
            {QStringLiteral("validaProdotto"), &validaProdotto},       {QStringLiteral("validaConto"), &validaConto},
            {QStringLiteral("validaDocumento"), &validaDocumento},
        };
        ScriptedMsgBox boxes;
        const bool missing = expectedCode.isEmpty();
        if (missing)
            boxes.expect(QStringLiteral("Codice: ") + codice + QStringLiteral(" inesistente!"), vb::OK);
        QString descrizione = QStringLiteral("as before");
        QCOMPARE(lookups.value(which)(codice, descrizione, rid), !missing);
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
        QVERIFY(testdb::shared(backend).isValid());
        addRows();
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
        QVERIFY(testdb::shared(backend).isValid());
        addRows();
        setElementChooser([](const QString&, const Recordset&, bool, bool) -> QStringList {
            QTest::qFail("no chooser expected", __FILE__, __LINE__);
            return {};
        });
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
        QTest::addColumn<int>("chosen");   // how many rows the chooser picks
        QTest::addColumn<QString>("expectedCode");
        for (const QString& b : testdb::backends()) {
            QTest::newRow(qPrintable(b + QStringLiteral(" one"))) << b << false << 1 << "DADO8";
            QTest::newRow(qPrintable(b + QStringLiteral(" both"))) << b << true << 2 << "DADO8";
            QTest::newRow(qPrintable(b + QStringLiteral(" none"))) << b << false << 0 << "";
        }
    }
    void prodottoChooser()
    {
        QFETCH(QString, backend);
        QFETCH(bool, multi);
        QFETCH(int, chosen);
        QFETCH(QString, expectedCode);
        QVERIFY(testdb::shared(backend).isValid());
        addRows();
        QString columnsSeen;
        int rowsSeen = 0;
        QStringList keys;
        bool multiSeen = !multi;
        setElementChooser([&](const QString& columns, const Recordset& rs, bool multiSelect, bool) -> QStringList {
            columnsSeen = columns;
            rowsSeen = rs.recordCount();
            Recordset rows = rs;
            for (rows.moveFirst(); !rows.eof(); rows.moveNext())
                if (rows.text(QStringLiteral("CODICE")) == QLatin1String("DADO8"))
                    keys.prepend(QStringLiteral("E_") + rows.value(QStringLiteral("RID")).toString());
                else
                    keys.append(QStringLiteral("E_") + rows.value(QStringLiteral("RID")).toString());
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
        QCOMPARE(p.codice, expectedCode);
        if (multi) {
            QString expected;
            for (const QString& key : keys)
                expected += key.mid(2) + QLatin1Char(',');
            QCOMPARE(p.elencoRid, expected);
        }
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // A code typed as a beginning finds the codes that start with it; "%"
    // and "_" in it are characters of the code, not wildcards.
    void prodottoLike_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expectedCode");   // empty: not found
        for (const QString& b : testdb::backends()) {
            QTest::newRow(qPrintable(b + QStringLiteral(" beginning"))) << b << "DAD" << "DADO8";
            QTest::newRow(qPrintable(b + QStringLiteral(" whole code"))) << b << "DADO8" << "DADO8";
            QTest::newRow(qPrintable(b + QStringLiteral(" underscore"))) << b << "DAD_8" << "";
            QTest::newRow(qPrintable(b + QStringLiteral(" percent"))) << b << "%8X" << "";
            QTest::newRow(qPrintable(b + QStringLiteral(" delimiter"))) << b << "VITE¤" << "";
        }
    }
    void prodottoLike()
    {
        QFETCH(QString, backend);
        QFETCH(QString, typed);
        QFETCH(QString, expectedCode);
        QVERIFY(testdb::shared(backend).isValid());
        addRows();
        testdb::ErrorRecorder errors;
        setElementChooser([](const QString&, const Recordset&, bool, bool) -> QStringList {
            QTest::qFail("no chooser expected", __FILE__, __LINE__);
            return {};
        });
        ScriptedMsgBox boxes;
        if (expectedCode.isEmpty())
            boxes.expect(QStringLiteral("Codice: ") + typed + QStringLiteral(" inesistente!"), vb::OK);
        ProdottoEsteso p;
        p.codice = typed;
        RicercaProdotto ricerca;
        ricerca.like = true;
        QCOMPARE(validaProdottoEsteso(p, ricerca), !expectedCode.isEmpty());
        QCOMPARE(p.codice, expectedCode);
        QVERIFY(boxes.allAnswered());
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // Not found: with the question, Yes asks for a new product and keeps the code.
    void prodottoNuovo_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void prodottoNuovo()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        ScriptedMsgBox boxes;
        boxes.expect(QStringLiteral("Codice: NUOVO1 inesistente!\nCreare un nuovo Prodotto?"), vb::Yes);
        boxes.expect(QStringLiteral("Codice: NUOVO2 inesistente!\nCreare un nuovo Prodotto?"), vb::No);
        RicercaProdotto ask;
        ask.chiediNuovo = true;
        ProdottoEsteso p;
        p.codice = QStringLiteral("NUOVO1");
        QVERIFY(!validaProdottoEsteso(p, ask));
        QVERIFY(p.creaNuovo);
        QCOMPARE(p.codice, QStringLiteral("NUOVO1"));
        p.codice = QStringLiteral("NUOVO2");
        QVERIFY(!validaProdottoEsteso(p, ask));
        QVERIFY(!p.creaNuovo);
        QVERIFY(p.codice.isEmpty());
        QVERIFY(boxes.allAnswered());
    }
};

QTEST_GUILESS_MAIN(TestLookups)
#include "tst_lookups.moc"
