// The table definitions and the model's seed rows, checked without a
// database: what a wrong entry would break only when a model is built or a
// document is saved. (That every back end's DDL runs, and refuses a missing
// table, column or referenced row, a text too long or a key twice, the
// databases the other tests build show; which meanings are unique,
// tst_connections.)
#include "data/modelseed.h"
#include "data/schema.h"

#include <QSet>
#include <QtTest>

using namespace schema;

namespace {

// A seed table read by column name.
struct Seed
{
    const SeedTable* s = nullptr;
    explicit Seed(const QString& table)
    {
        for (const SeedTable& t : seedData())
            if (t.table.compare(table, Qt::CaseInsensitive) == 0)
                s = &t;
    }
    const QList<QVariantList>& rows() const
    {
        static const QList<QVariantList> none;
        return s ? s->rows : none;
    }
    QVariant cell(const QVariantList& row, const QString& column) const
    {
        for (int i = 0; i < s->columns.size(); ++i)
            if (s->columns.at(i).compare(column, Qt::CaseInsensitive) == 0)
                return row.value(i);
        return {};
    }
    // The values of a column, as text.
    QStringList column(const QString& name) const
    {
        QStringList values;
        for (const QVariantList& row : rows())
            values << cell(row, name).toString();
        return values;
    }
};

QString option(const QString& nome)
{
    const Seed opzioni("Opzioni");
    for (const QVariantList& row : opzioni.rows())
        if (opzioni.cell(row, "NOME").toString() == nome)
            return opzioni.cell(row, "VALORE").toString();
    return {};
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
    // The key is RID and comes first; a text has a length; a reference
    // names a keyed table defined before it, so that rows load in this
    // order; the columns that look-ups and references use lead an index.
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

    // Every seed value has the type its column's kind is read as, and keys
    // are given.
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
                "ContoClienti=PianoConti ContoFornitori=PianoConti DecimaliDopo VenditoreChar DistintaBase RigaLibera "
                "GruppoPredefinito=Gruppi GruppoProdInteg=Gruppi GruppoProdCL=Gruppi Marca=Marche "
                "Fornitore=Anagrafiche "
                "TipoDocProd=TipoDocumenti DocConversione=TipoDocumenti DocConversioneDDT=TipoDocumenti "
                "PagamentoVB=Pagamenti PrezzoMedio MesiPrezzoMedio BloccoPN DescPN FidoAllaData NoShowCptEstratto "
                "MostraTotaleRigaMov UsaPrezziIva PiePagina RidIvaProdotti=Iva RidUMProdotti=UnitaMisura "
                "RidMarcaProdotti=Marche RidCollezioneProdotti=Collezioni ReportElencoSpeciale "
                "NumeratoreElencoSpeciale=Numeratori SottoScorta BloccaSottoScorta AvvisaSottoScorta "
                "VenditeGiorniDiversi "
                "BloccaVenditeGiorniDiversi AvvisaVenditeGiorniDiversi LockVBEdit LockVBPrezzo VenditoriObbligatori "
                "VenditoriBlocco PagatoAltriClienti PrezzoListino")
                .split(' ');
        const QStringList seeded = Seed("Opzioni").column("NOME");
        QCOMPARE(seeded.size(), options.size());
        for (const QString& o : options) {
            const QString nome = o.section('=', 0, 0), keyOf = o.section('=', 1);
            QVERIFY2(seeded.count(nome) == 1, qPrintable(nome));
            bool numeric = false;
            const int key = option(nome).toInt(&numeric);
            if (!keyOf.isEmpty())
                QVERIFY2(numeric
                             && (key == 0
                                 || Seed(keyOf)
                                        .column(findTable(keyOf)->columns.first().name)
                                        .contains(QString::number(key))),
                         qPrintable(nome + ' ' + option(nome)));
        }
        // The free-row character is the one that statements write literally,
        // and the kit character differs from it.
        QCOMPARE(option("RigaLibera"), QStringLiteral("/"));
        QCOMPARE(option("DistintaBase").size(), 1);
        QVERIFY(option("DistintaBase") != option("RigaLibera"));
        QVERIFY(defaultPassword().size() >= 8); // what the password change demands
    }

    // Codes of the chart make a tree of 2, 5 and 8 characters; the control
    // accounts are sub-accounts, and the invoice and purchase causals post
    // on them (the withholding rule compares with the options).
    void chartOfAccounts()
    {
        const Seed conti("PianoConti"), causali("Causali");
        const QStringList codes = conti.column("CODICE"), rids = conti.column("RID");
        for (const QString& code : codes) {
            QVERIFY2(code.size() == 2 || code.size() == 5 || code.size() == 8, qPrintable(code));
            QVERIFY2(codes.contains(code.left(2)) && codes.contains(code.left(qMin(code.size(), 5))), qPrintable(code));
        }
        const QStringList posted = causali.column("FK_CONTODARE1") + causali.column("FK_ContoAvere1");
        for (const char* o : {"ContoClienti", "ContoFornitori"}) {
            QCOMPARE(codes.value(rids.indexOf(option(o))).size(), 8);
            QVERIFY2(posted.contains(option(o)), o);
        }
    }

    // The term check of the payment screen: instalments as many as NRATE, and
    // their percentages plus the down payment make exactly 100.
    void paymentTerms()
    {
        const Seed pagamenti("Pagamenti"), rate("DettagliPagamenti");
        for (const QVariantList& p : pagamenti.rows()) {
            int count = 0;
            qint64 cents = qRound64(pagamenti.cell(p, "ACCONTO").toDouble() * 100);
            for (const QVariantList& r : rate.rows())
                if (rate.cell(r, "FK_PAGAMENTO").toInt() == pagamenti.cell(p, "RID").toInt()) {
                    ++count;
                    cents += qRound64(rate.cell(r, "PERCENTUALE").toDouble() * 100);
                }
            QCOMPARE(count, pagamenti.cell(p, "NRATE").toInt());
            QCOMPARE(cents, qint64(10000));
        }
    }

    // A document type prints with a document report and counts on a
    // numerator of the current year; the causals' flags are -1 or 0, and a
    // warehouse is named only for a movement of kind 3.
    void documentTypes()
    {
        const Seed tipi("TipoDocumenti"), causali("Causali"), report("FunzionalitaReport"), contatori("Contatori");
        QSet<QString> documentReports, countedThisYear;
        for (const QVariantList& r : report.rows())
            if (report.cell(r, "Funzionalita").toInt() == 1)
                documentReports.insert(report.cell(r, "REPORT").toString());
        for (const QVariantList& c : contatori.rows())
            if (contatori.cell(c, "ANNO").toString() == option("AnnoCorrente"))
                countedThisYear.insert(contatori.cell(c, "FK_NUMERATORE").toString());
        for (const QVariantList& td : tipi.rows()) {
            const QByteArray codice = tipi.cell(td, "CODICE").toString().toUtf8();
            QVERIFY2(documentReports.contains(tipi.cell(td, "REPORT").toString()), codice);
            QVERIFY2(countedThisYear.contains(tipi.cell(td, "NCONTATORE").toString()), codice);
        }
        for (const QVariantList& c : causali.rows()) {
            const auto value = [&](const char* column) { return causali.cell(c, column); };
            const QString codice = value("CODICE").toString();
            for (const char* b : {"Operazione", "GENERAPN", "GENERASCAD", "SCADENZENEGATIVE", "TAGLIO"})
                QVERIFY2(value(b).toInt() == -1 || value(b).toInt() == 0, qPrintable(codice + ' ' + b));
            if (value("GENERASCAD").toInt() == 0)
                QCOMPARE(value("SCADENZENEGATIVE").toInt(), 0);
            for (const auto& [kind, warehouse] :
                 {std::pair{"ORIGINE", "FK_MagazzinoOrig"}, std::pair{"DESTINAZIONE", "FK_MagazzinoDest"}}) {
                QVERIFY2(value(kind).toInt() >= 0 && value(kind).toInt() <= 3, qPrintable(codice));
                if (value(kind).toInt() != 3)
                    QVERIFY2(value(warehouse).isNull(), qPrintable(codice + ' ' + warehouse));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TstSchema)
#include "tst_schema.moc"
