// The table definitions and the model's seed rows, checked without a
// database: what a wrong entry would break only when a model is built or a
// document is saved. (That every back end's DDL runs is shown by the
// databases the other tests build.)

#include "data/modelseed.h"
#include "data/schema.h"
#include "data/sqldialect.h"

#include <QSet>
#include <QtTest>

using namespace schema;

namespace {

int seedIndex(const QString& table)
{
    for (int i = 0; i < seedData().size(); ++i)
        if (seedData().at(i).table.compare(table, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

const SeedTable* seedOf(const QString& table)
{
    const int i = seedIndex(table);
    return i < 0 ? nullptr : &seedData().at(i);
}

int columnOf(const SeedTable& s, const QString& column)
{
    for (int i = 0; i < s.columns.size(); ++i)
        if (s.columns.at(i).compare(column, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

// One value of a seed row, by column name.
QVariant cell(const SeedTable& s, const QVariantList& row, const QString& column)
{
    return row.value(columnOf(s, column));
}

const Column* findColumn(const Table& t, const QString& name)
{
    for (const Column& c : t.columns)
        if (c.name.compare(name, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

int tablePosition(const Table* t)
{
    for (int i = 0; i < tables().size(); ++i)
        if (&tables().at(i) == t)
            return i;
    return -1;
}

// Key values of a seeded table (by its key column, RID or ID).
QSet<int> seededKeys(const QString& table)
{
    QSet<int> keys;
    const Table* t = findTable(table);
    const SeedTable* s = seedOf(table);
    if (t && t->hasKey() && s)
        for (const QVariantList& row : s->rows)
            keys.insert(cell(*s, row, t->columns.first().name).toInt());
    return keys;
}

QString option(const QString& nome)
{
    for (const QVariantList& row : seedOf(QStringLiteral("Opzioni"))->rows)
        if (row.value(0).toString() == nome)
            return row.value(1).toString();
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
    void tableDefinition_data()
    {
        QTest::addColumn<QString>("table");
        for (const Table& t : tables())
            QTest::newRow(qPrintable(t.name)) << t.name;
    }

    void tableDefinition()
    {
        QFETCH(QString, table);
        const Table* t = findTable(table);
        QVERIFY(t);
        QCOMPARE(findTable(table.toLower()), t);
        QVERIFY(!t->columns.isEmpty());
        for (int i = 0; i < t->columns.size(); ++i) {
            const Column& c = t->columns.at(i);
            if (c.kind == ColKind::Key || c.name.compare(QLatin1String("RID"), Qt::CaseInsensitive) == 0)
                QVERIFY2(i == 0 && c.kind == ColKind::Key, qPrintable(c.name + QStringLiteral(": the key is RID and comes first")));
            QCOMPARE(c.length > 0, c.kind == ColKind::Text);
            if (!c.refTable.isEmpty()) {
                QCOMPARE(c.kind, ColKind::Ref);
                const Table* target = findTable(c.refTable);
                QVERIFY2(target && target->hasKey(), qPrintable(c.name + QStringLiteral(" -> ") + c.refTable));
                // Referenced tables come first, so that rows can be loaded in this order.
                QVERIFY2(tablePosition(target) <= tablePosition(t), qPrintable(c.name + QStringLiteral(" -> ") + c.refTable));
            }
        }
    }

    void indexesCoverLookups()
    {
        QStringList unique;
        for (const Table& t : tables()) {
            auto led = [&t](const QString& column) {
                for (const Index& ix : t.indexes)
                    if (ix.columns.value(0).compare(column, Qt::CaseInsensitive) == 0)
                        return true;
                return false;
            };
            for (const Column& c : t.columns)
                if (c.kind == ColKind::Ref || c.name.compare(QLatin1String("CODICE"), Qt::CaseInsensitive) == 0)
                    QVERIFY2(led(c.name), qPrintable(t.name + QLatin1Char('.') + c.name));
            for (const Index& ix : t.indexes)
                if (ix.unique)
                    unique << t.name + QLatin1Char('.') + ix.columns.join(QLatin1Char(','));
        }
        // Unique only where the program relies on it.
        QCOMPARE(unique, (QStringList{QStringLiteral("Opzioni.NOME"), QStringLiteral("DettagliProdotto.FK_PRODOTTO,FK_MAGAZZINO,TAGLIO"),
                                      QStringLiteral("Contatori.FK_NUMERATORE,ANNO"), QStringLiteral("PrimaNota.ANNO,PROGRESSIVO"),
                                      QStringLiteral("AnniPrimaNota.ANNO")}));
    }

    // Amounts are read as exact to the fourth decimal on the servers; SQLite
    // has no decimal type.
    void amountColumns()
    {
        const Column amount{QStringLiteral("X"), ColKind::Amount, 0, {}};
        QCOMPARE(sqlType(amount, TipoServer::SqlServer), QStringLiteral("DECIMAL(19,4)"));
        QCOMPARE(sqlType(amount, TipoServer::FileDb), QStringLiteral("REAL"));
        QCOMPARE(sqlType(amount, TipoServer::MySql), QStringLiteral("DECIMAL(19,4)"));
    }

    void seedTable_data()
    {
        QTest::addColumn<int>("position");
        for (int i = 0; i < seedData().size(); ++i)
            QTest::newRow(qPrintable(seedData().at(i).table)) << i;
    }

    // Every seed value has the type its column's kind is read as, and keys
    // are given. (What the back ends refuse when the seed is loaded, a missing
    // table, column or referenced row, a text too long or a key twice, the
    // seeded databases of tst_modeldatabase show.)
    void seedTable()
    {
        QFETCH(int, position);
        const SeedTable& s = seedData().at(position);
        const Table* t = findTable(s.table);
        QVERIFY2(t && !s.rows.isEmpty(), qPrintable(s.table));
        if (t->hasKey())
            QVERIFY2(columnOf(s, t->columns.first().name) >= 0, "keys are given explicitly");
        for (const QVariantList& row : s.rows) {
            for (int i = 0; i < row.size(); ++i) {
                const Column* c = findColumn(*t, s.columns.value(i));
                QVERIFY2(c, qPrintable(s.table + QLatin1Char('.') + s.columns.value(i)));
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
                         qPrintable(s.table + QLatin1Char('.') + c->name + QStringLiteral(" = ") + v.toString()));
            }
        }
    }

    // Every option the program reads is seeded once, nothing else; an option
    // that names a row ("=Table") names a seeded one, or none (0).
    void options()
    {
        const QStringList options = QStringLiteral(
            "Amministratore TipoStampaDistinta IvaPredRigaLibera=Iva CatPrezziNetti=CategorieSconti "
            "ClientePredefinito=Anagrafiche TipoDocVb=TipoDocumenti CausalePagVb=Causali AnnoCorrente "
            "ContoClienti=PianoConti ContoFornitori=PianoConti DecimaliDopo VenditoreChar DistintaBase RigaLibera "
            "GruppoPredefinito=Gruppi GruppoProdInteg=Gruppi GruppoProdCL=Gruppi Marca=Marche Fornitore=Anagrafiche "
            "TipoDocProd=TipoDocumenti DocConversione=TipoDocumenti DocConversioneDDT=TipoDocumenti PagamentoVB=Pagamenti "
            "PrezzoMedio MesiPrezzoMedio BloccoPN DescPN FidoAllaData NoShowCptEstratto MostraTotaleRigaMov UsaPrezziIva "
            "PiePagina RidIvaProdotti=Iva RidUMProdotti=UnitaMisura RidMarcaProdotti=Marche RidCollezioneProdotti=Collezioni "
            "ReportElencoSpeciale NumeratoreElencoSpeciale=Numeratori SottoScorta BloccaSottoScorta AvvisaSottoScorta "
            "VenditeGiorniDiversi BloccaVenditeGiorniDiversi AvvisaVenditeGiorniDiversi LockVBEdit LockVBPrezzo "
            "VenditoriObbligatori VenditoriBlocco PagatoAltriClienti PrezzoListino").split(QLatin1Char(' '));
        const SeedTable* s = seedOf(QStringLiteral("Opzioni"));
        QVERIFY(s);
        QCOMPARE(s->rows.size(), options.size());
        for (const QString& o : options) {
            const QString nome = o.section(QLatin1Char('='), 0, 0), keyOf = o.section(QLatin1Char('='), 1);
            int found = 0;
            for (const QVariantList& row : s->rows)
                found += row.value(0).toString() == nome ? 1 : 0;
            QVERIFY2(found == 1, qPrintable(nome));
            if (!keyOf.isEmpty()) {
                bool numeric = false;
                const int key = option(nome).toInt(&numeric);
                QVERIFY2(numeric && (key == 0 || seededKeys(keyOf).contains(key)), qPrintable(nome + QLatin1Char(' ') + option(nome)));
            }
        }
    }

    // Settings that several engines read together.
    void chartOfAccounts()
    {
        const SeedTable* s = seedOf(QStringLiteral("PianoConti"));
        const SeedTable* causali = seedOf(QStringLiteral("Causali"));
        QVERIFY(s && causali);
        QHash<int, QString> codeOf;
        QSet<QString> codes;
        for (const QVariantList& row : s->rows) {
            const QString code = cell(*s, row, QStringLiteral("CODICE")).toString();
            codeOf.insert(cell(*s, row, QStringLiteral("RID")).toInt(), code);
            codes.insert(code);
        }
        for (const QString& code : std::as_const(codes)) {
            QVERIFY2(code.size() == 2 || code.size() == 5 || code.size() == 8, qPrintable(code));
            QVERIFY2(codes.contains(code.left(2)) && codes.contains(code.left(qMin(code.size(), 5))), qPrintable(code));
        }

        // The control accounts are sub-accounts, and the invoice and purchase
        // causals post on them (the withholding rule compares with the options).
        QSet<int> posted;
        for (const QVariantList& row : causali->rows)
            for (const char* c : {"FK_CONTODARE1", "FK_ContoAvere1"})
                posted.insert(cell(*causali, row, QString::fromLatin1(c)).toInt());
        for (const char* o : {"ContoClienti", "ContoFornitori"}) {
            const int account = option(QString::fromLatin1(o)).toInt();
            QCOMPARE(codeOf.value(account).size(), 8);
            QVERIFY2(posted.contains(account), o);
        }
    }

    // The term check of the payment screen: instalments as many as NRATE, and
    // their percentages plus the down payment make exactly 100.
    void paymentTerms()
    {
        const SeedTable* pagamenti = seedOf(QStringLiteral("Pagamenti"));
        const SeedTable* rate = seedOf(QStringLiteral("DettagliPagamenti"));
        QVERIFY(pagamenti && rate);
        for (const QVariantList& p : pagamenti->rows) {
            int count = 0;
            qint64 cents = qRound64(cell(*pagamenti, p, QStringLiteral("ACCONTO")).toDouble() * 100);
            for (const QVariantList& r : rate->rows)
                if (cell(*rate, r, QStringLiteral("FK_PAGAMENTO")).toInt() == cell(*pagamenti, p, QStringLiteral("RID")).toInt()) {
                    ++count;
                    cents += qRound64(cell(*rate, r, QStringLiteral("PERCENTUALE")).toDouble() * 100);
                }
            QCOMPARE(count, cell(*pagamenti, p, QStringLiteral("NRATE")).toInt());
            QCOMPARE(cents, qint64(10000));
        }
    }

    void documentTypes()
    {
        const SeedTable* tipi = seedOf(QStringLiteral("TipoDocumenti"));
        const SeedTable* causali = seedOf(QStringLiteral("Causali"));
        const SeedTable* report = seedOf(QStringLiteral("FunzionalitaReport"));
        const SeedTable* contatori = seedOf(QStringLiteral("Contatori"));
        QVERIFY(tipi && causali && report && contatori);

        QSet<QString> documentReports;
        for (const QVariantList& r : report->rows)
            if (cell(*report, r, QStringLiteral("Funzionalita")).toInt() == 1)
                documentReports.insert(cell(*report, r, QStringLiteral("REPORT")).toString());
        QSet<int> countedThisYear;
        for (const QVariantList& c : contatori->rows)
            if (cell(*contatori, c, QStringLiteral("ANNO")).toString() == option(QStringLiteral("AnnoCorrente")))
                countedThisYear.insert(cell(*contatori, c, QStringLiteral("FK_NUMERATORE")).toInt());
        for (const QVariantList& td : tipi->rows) {
            const QString codice = cell(*tipi, td, QStringLiteral("CODICE")).toString();
            QVERIFY2(documentReports.contains(cell(*tipi, td, QStringLiteral("REPORT")).toString()), qPrintable(codice));
            QVERIFY2(countedThisYear.contains(cell(*tipi, td, QStringLiteral("NCONTATORE")).toInt()), qPrintable(codice));
        }

        for (const QVariantList& c : causali->rows) {
            auto value = [&](const char* column) { return cell(*causali, c, QString::fromLatin1(column)); };
            const QString codice = value("CODICE").toString();
            for (const char* b : {"Operazione", "GENERAPN", "GENERASCAD", "SCADENZENEGATIVE", "TAGLIO"})
                QVERIFY2(value(b).toInt() == -1 || value(b).toInt() == 0, qPrintable(codice + QLatin1Char(' ') + QLatin1String(b)));
            if (value("GENERASCAD").toInt() == 0)
                QCOMPARE(value("SCADENZENEGATIVE").toInt(), 0);
            for (const auto& [kind, warehouse] : {std::pair{"ORIGINE", "FK_MagazzinoOrig"}, std::pair{"DESTINAZIONE", "FK_MagazzinoDest"}}) {
                const int k = value(kind).toInt();
                QVERIFY2(k >= 0 && k <= 3, qPrintable(codice));
                if (k != 3)
                    QVERIFY2(value(warehouse).isNull(), qPrintable(codice + QLatin1Char(' ') + QLatin1String(warehouse)));
            }
        }

        // The free-row character is the one that statements write literally, and
        // the kit character differs from it.
        QCOMPARE(option(QStringLiteral("RigaLibera")), QStringLiteral("/"));
        QCOMPARE(option(QStringLiteral("DistintaBase")).size(), 1);
        QVERIFY(option(QStringLiteral("DistintaBase")) != option(QStringLiteral("RigaLibera")));
        QVERIFY(defaultPassword().size() >= 8);   // what the password change demands
    }
};

QTEST_GUILESS_MAIN(TstSchema)
#include "tst_schema.moc"
