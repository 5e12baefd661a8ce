// The table definitions and the model's seed rows, checked without a
// database: what a wrong entry would break only when a model is built or a
// document is saved. (The DDL runs in every test that builds a database.)
#include "data/modelseed.h"
#include "data/schema.h"
#include "data/sqldialect.h"

#include <QSet>
#include <QtTest>

using namespace schema;

namespace {

// The seed rows of a table, each by its columns' names in capitals.
QList<QVariantMap> seed(const QString& table)
{
    QList<QVariantMap> rows;
    for (const SeedTable& t : seedData()) {
        if (t.table.compare(table, Qt::CaseInsensitive) != 0)
            continue;
        for (const QVariantList& row : t.rows) {
            QVariantMap m;
            for (int i = 0; i < t.columns.size(); ++i)
                m.insert(t.columns.at(i).toUpper(), row.value(i));
            rows << m;
        }
    }
    return rows;
}

// The values of a seed column, as text.
QStringList column(const QString& table, const QString& name)
{
    QStringList values;
    for (const QVariantMap& row : seed(table))
        values << row.value(name.toUpper()).toString();
    return values;
}

QString option(const QString& nome)
{
    const QStringList nomi = column("Opzioni", "NOME");
    return column("Opzioni", "VALORE").value(nomi.indexOf(nome));
}

bool isIntegral(const QVariant& v)
{
    const int id = v.typeId();
    return id == QMetaType::Int || id == QMetaType::LongLong || id == QMetaType::UInt || id == QMetaType::ULongLong;
}

} // namespace

class TstSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The key is RID and first; a text has a length; a reference names a keyed
    // table defined before it; look-up and reference columns lead an index.
    void tableDefinition_data()
    {
        QTest::addColumn<int>("position");
        for (int i = 0; i < tables().size(); ++i)
            QTest::newRow(qPrintable(tables().at(i).name)) << i;
    }
    void tableDefinition()
    {
        QFETCH(int, position);
        const Table& t = tables().at(position);
        QCOMPARE(findTable(t.name.toLower()), &t);
        QVERIFY(!t.columns.isEmpty());
        const auto indexed = [&t](const QString& column) {
            for (const Index& ix : t.indexes)
                if (ix.columns.value(0).compare(column, Qt::CaseInsensitive) == 0)
                    return true;
            return false;
        };
        for (int i = 0; i < t.columns.size(); ++i) {
            const Column& c = t.columns.at(i);
            if (c.kind == ColKind::Key || c.name.compare("RID", Qt::CaseInsensitive) == 0)
                QVERIFY2(i == 0 && c.kind == ColKind::Key, qPrintable(c.name));
            QCOMPARE(c.length > 0, c.kind == ColKind::Text);
            if (c.kind == ColKind::Ref || c.name.compare("CODICE", Qt::CaseInsensitive) == 0)
                QVERIFY2(indexed(c.name), qPrintable(c.name + " leads no index"));
            if (!c.refTable.isEmpty()) {
                QCOMPARE(c.kind, ColKind::Ref);
                const Table* target = findTable(c.refTable);
                QVERIFY2(target && target->hasKey() && target <= &t, qPrintable(c.name + " -> " + c.refTable));
            }
        }
    }

    // Every seed value has the type its column's kind is read as; keys are given.
    void seedTable_data()
    {
        QTest::addColumn<int>("position");
        for (int i = 0; i < seedData().size(); ++i)
            QTest::newRow(qPrintable(seedData().at(i).table)) << i;
    }
    void seedTable()
    {
        QFETCH(int, position);
        const SeedTable& s = seedData().at(position);
        const Table* t = findTable(s.table);
        QVERIFY2(t && !s.rows.isEmpty(), qPrintable(s.table));
        if (t->hasKey())
            QVERIFY2(s.columns.contains(t->columns.first().name, Qt::CaseInsensitive), "keys are given explicitly");
        for (const QVariantList& row : s.rows) {
            for (int i = 0; i < row.size(); ++i) {
                const Column* c = nullptr;
                for (const Column& column : t->columns)
                    c = column.name.compare(s.columns.value(i), Qt::CaseInsensitive) == 0 ? &column : c;
                QVERIFY2(c, qPrintable(s.table + '.' + s.columns.value(i)));
                const QVariant& v = row.at(i);
                bool fits = false;
                switch (c->kind) {
                case ColKind::Key:
                case ColKind::Ref: fits = isIntegral(v) && v.toInt() > 0; break;
                case ColKind::Flag: fits = isIntegral(v) && v.toInt() >= -1 && v.toInt() <= 1; break;
                case ColKind::Int: fits = isIntegral(v); break;
                case ColKind::Text:
                case ColKind::Memo: fits = v.typeId() == QMetaType::QString; break;
                case ColKind::Amount:
                case ColKind::Quantity:
                case ColKind::Percent:
                case ColKind::Number: fits = v.typeId() == QMetaType::Double; break;
                case ColKind::Date: fits = v.typeId() == QMetaType::QDate; break;
                case ColKind::DateTime: fits = v.typeId() == QMetaType::QDateTime; break;
                }
                // A Null fits any column but the key.
                QVERIFY2(fits || (v.isNull() && c->kind != ColKind::Key),
                         qPrintable(s.table + '.' + c->name + " = " + v.toString()));
            }
        }
    }

    // Every option the program reads is seeded once; an option that names a
    // row ("=Table") names a seeded one, or none (0).
    void options()
    {
        const QStringList options =
            QString(
                "Amministratore TipoStampaDistinta IvaPredRigaLibera=Iva CatPrezziNetti=CategorieSconti "
                "ClientePredefinito=Anagrafiche TipoDocVb=TipoDocumenti CausalePagVb=Causali AnnoCorrente "
                "ContoClienti=PianoConti ContoFornitori=PianoConti DecimaliDopo VenditoreChar DistintaBase "
                "RigaLibera GruppoPredefinito=Gruppi GruppoProdInteg=Gruppi GruppoProdCL=Gruppi Marca=Marche "
                "Fornitore=Anagrafiche TipoDocProd=TipoDocumenti DocConversione=TipoDocumenti "
                "DocConversioneDDT=TipoDocumenti PagamentoVB=Pagamenti PrezzoMedio MesiPrezzoMedio BloccoPN "
                "DescPN FidoAllaData NoShowCptEstratto MostraTotaleRigaMov UsaPrezziIva PiePagina RidIvaProdotti=Iva "
                "RidUMProdotti=UnitaMisura RidMarcaProdotti=Marche RidCollezioneProdotti=Collezioni "
                "ReportElencoSpeciale NumeratoreElencoSpeciale=Numeratori SottoScorta BloccaSottoScorta "
                "AvvisaSottoScorta VenditeGiorniDiversi BloccaVenditeGiorniDiversi AvvisaVenditeGiorniDiversi "
                "LockVBEdit LockVBPrezzo VenditoriObbligatori VenditoriBlocco PagatoAltriClienti PrezzoListino")
                .split(' ');
        const QStringList seeded = column("Opzioni", "NOME");
        QCOMPARE(seeded.size(), options.size());
        for (const QString& o : options) {
            const QString nome = o.section('=', 0, 0), keyOf = o.section('=', 1);
            QVERIFY2(seeded.count(nome) == 1, qPrintable(nome));
            bool numeric = false;
            const int key = option(nome).toInt(&numeric);
            if (!keyOf.isEmpty())
                QVERIFY2(numeric && (key == 0 || column(keyOf, "RID").contains(QString::number(key))),
                         qPrintable(nome + ' ' + option(nome)));
        }
        // The free-row character is the one statements write; the kit one differs.
        QCOMPARE(option("RigaLibera"), "/");
        QCOMPARE(option("DistintaBase").size(), 1);
        QVERIFY(option("DistintaBase") != option("RigaLibera"));
        QVERIFY(defaultPassword().size() >= 8); // what the password change demands
    }

    // SQL Server's DDL, which no test runs here: every table, identities, foreign keys.
    void sqlServerDdl()
    {
        const QStringList ddl = createStatements(TipoServer::SqlServer);
        for (const Table& t : tables())
            QVERIFY2(ddl.filter("CREATE TABLE [" + t.name + ']').size() == 1, qPrintable(t.name));
        QVERIFY(ddl.filter("IDENTITY(1,1)").size() > 10);
        QVERIFY(ddl.filter("FOREIGN KEY").size() > 10);
    }

    // The chart is a tree of 2, 5 and 8 characters; the control accounts are
    // sub-accounts the invoice and purchase causals post on.
    void chartOfAccounts()
    {
        const QStringList codes = column("PianoConti", "CODICE"), rids = column("PianoConti", "RID");
        for (const QString& code : codes) {
            QVERIFY2(code.size() == 2 || code.size() == 5 || code.size() == 8, qPrintable(code));
            QVERIFY2(codes.contains(code.left(2)) && codes.contains(code.left(qMin(code.size(), 5))), qPrintable(code));
        }
        const QStringList posted = column("Causali", "FK_CONTODARE1") + column("Causali", "FK_ContoAvere1");
        for (const char* o : {"ContoClienti", "ContoFornitori"}) {
            QCOMPARE(codes.value(rids.indexOf(option(o))).size(), 8);
            QVERIFY2(posted.contains(option(o)), o);
        }
    }

    // Instalments as many as NRATE; their shares plus the down payment make 100.
    void paymentTerms()
    {
        for (const QVariantMap& p : seed("Pagamenti")) {
            int count = 0;
            qint64 cents = qRound64(p.value("ACCONTO").toDouble() * 100);
            for (const QVariantMap& r : seed("DettagliPagamenti"))
                if (r.value("FK_PAGAMENTO").toInt() == p.value("RID").toInt()) {
                    ++count;
                    cents += qRound64(r.value("PERCENTUALE").toDouble() * 100);
                }
            QCOMPARE(count, p.value("NRATE").toInt());
            QCOMPARE(cents, qint64(10000));
        }
    }

    // A document type has a document report and a numerator counting this year;
    // causal flags are -1 or 0, a warehouse only for a movement of kind 3.
    void documentTypes()
    {
        QSet<QString> documentReports, countedThisYear;
        for (const QVariantMap& r : seed("FunzionalitaReport"))
            if (r.value("FUNZIONALITA").toInt() == 1)
                documentReports.insert(r.value("REPORT").toString());
        for (const QVariantMap& c : seed("Contatori"))
            if (c.value("ANNO").toString() == option("AnnoCorrente"))
                countedThisYear.insert(c.value("FK_NUMERATORE").toString());
        for (const QVariantMap& td : seed("TipoDocumenti")) {
            const QByteArray codice = td.value("CODICE").toString().toUtf8();
            QVERIFY2(documentReports.contains(td.value("REPORT").toString()), codice);
            QVERIFY2(countedThisYear.contains(td.value("NCONTATORE").toString()), codice);
        }
        for (const QVariantMap& c : seed("Causali")) {
            const QString codice = c.value("CODICE").toString();
            for (const char* b : {"OPERAZIONE", "GENERAPN", "GENERASCAD", "SCADENZENEGATIVE", "TAGLIO"})
                QVERIFY2(c.value(b).toInt() == -1 || c.value(b).toInt() == 0, qPrintable(codice + ' ' + b));
            if (c.value("GENERASCAD").toInt() == 0)
                QCOMPARE(c.value("SCADENZENEGATIVE").toInt(), 0);
            for (const auto& [kind, warehouse] :
                 {std::pair{"ORIGINE", "FK_MAGAZZINOORIG"}, {"DESTINAZIONE", "FK_MAGAZZINODEST"}}) {
                QVERIFY2(c.value(kind).toInt() >= 0 && c.value(kind).toInt() <= 3, qPrintable(codice));
                if (c.value(kind).toInt() != 3)
                    QVERIFY2(c.value(warehouse).isNull(), qPrintable(codice + ' ' + warehouse));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TstSchema)
#include "tst_schema.moc"
