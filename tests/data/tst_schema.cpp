// The table definitions, their DDL and the model's seed rows, checked without
// a database: what a wrong entry would break only when a model is built or a
// document is saved.

#include "modelseed.h"
#include "schema.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <iterator>

using namespace schema;

namespace {

const SeedTable* seedOf(const QString& table)
{
    for (const SeedTable& s : seedData())
        if (s.table.compare(table, Qt::CaseInsensitive) == 0)
            return &s;
    return nullptr;
}

int seedIndex(const QString& table)
{
    const QList<SeedTable>& seed = seedData();
    for (int i = 0; i < seed.size(); ++i)
        if (seed.at(i).table.compare(table, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

int columnOf(const SeedTable& s, const QString& column)
{
    for (int i = 0; i < s.columns.size(); ++i)
        if (s.columns.at(i).compare(column, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

const Column* findColumn(const Table& t, const QString& name)
{
    for (const Column& c : t.columns)
        if (c.name.compare(name, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

// Key values of a seeded table (by its key column, RID or ID).
QSet<int> seededKeys(const QString& table)
{
    QSet<int> keys;
    const Table* t = findTable(table);
    const SeedTable* s = seedOf(table);
    if (!t || !t->hasKey() || !s)
        return keys;
    const int k = columnOf(*s, t->columns.first().name);
    if (k < 0)
        return keys;
    for (const QVariantList& row : s->rows)
        keys.insert(row.value(k).toInt());
    return keys;
}

QVariant seedValue(const QString& table, int rid, const QString& column)
{
    const SeedTable* s = seedOf(table);
    if (!s)
        return {};
    const int k = columnOf(*s, QStringLiteral("RID"));
    const int c = columnOf(*s, column);
    for (const QVariantList& row : s->rows)
        if (row.value(k).toInt() == rid)
            return row.value(c);
    return {};
}

QString option(const QString& nome)
{
    const SeedTable* s = seedOf(QStringLiteral("Opzioni"));
    if (!s)
        return {};
    for (const QVariantList& row : s->rows)
        if (row.value(0).toString() == nome)
            return row.value(1).toString();
    return {};
}

bool isIntegral(const QVariant& v)
{
    const int id = v.typeId();
    return id == QMetaType::Int || id == QMetaType::LongLong || id == QMetaType::UInt
           || id == QMetaType::ULongLong;
}

} // namespace

class TstSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableDefinition_data();
    void tableDefinition();
    void indexesCoverLookups();
    void ddl_data();
    void ddl();
    void rowFitsMariaDb();
    void seedTable_data();
    void seedTable();
    void options_data();
    void options();
    void chartOfAccounts();
    void paymentTerms();
    void documentTypes();
};

void TstSchema::tableDefinition_data()
{
    QTest::addColumn<QString>("table");
    for (const Table& t : tables())
        QTest::newRow(qPrintable(t.name)) << t.name;
}

void TstSchema::tableDefinition()
{
    QFETCH(QString, table);
    const Table* t = findTable(table);
    QVERIFY(t);
    QCOMPARE(findTable(table.toLower()), t);
    QVERIFY(!t->columns.isEmpty());

    int position = -1;
    for (int i = 0; i < tables().size(); ++i)
        if (&tables().at(i) == t)
            position = i;

    QSet<QString> names;
    for (int i = 0; i < t->columns.size(); ++i) {
        const Column& c = t->columns.at(i);
        QVERIFY2(!names.contains(c.name.toUpper()), qPrintable(c.name));
        names.insert(c.name.toUpper());

        if (c.kind == ColKind::Key)
            QVERIFY2(i == 0, qPrintable(c.name + QStringLiteral(": a key comes first")));
        if (c.name.compare(QLatin1String("RID"), Qt::CaseInsensitive) == 0)
            QVERIFY2(i == 0 && c.kind == ColKind::Key, "RID is the first column and the key");
        QCOMPARE(c.length > 0, c.kind == ColKind::Text);
        if (!c.refTable.isEmpty()) {
            QCOMPARE(c.kind, ColKind::Ref);
            const Table* target = findTable(c.refTable);
            QVERIFY2(target, qPrintable(c.name + QStringLiteral(" -> ") + c.refTable));
            QVERIFY2(target->hasKey(), qPrintable(c.refTable));
            // Referenced tables come first, so that rows can be loaded in this order.
            int targetPosition = -1;
            for (int j = 0; j < tables().size(); ++j)
                if (&tables().at(j) == target)
                    targetPosition = j;
            QVERIFY2(targetPosition <= position, qPrintable(c.name + QStringLiteral(" -> ") + c.refTable));
        }
    }
    QCOMPARE(t->hasKey(), t->columns.first().kind == ColKind::Key);
}

void TstSchema::indexesCoverLookups()
{
    for (const Table& t : tables()) {
        auto led = [&t](const QString& column) {
            for (const Index& ix : t.indexes)
                if (ix.columns.value(0).compare(column, Qt::CaseInsensitive) == 0)
                    return true;
            return false;
        };
        for (const Index& ix : t.indexes)
            for (const QString& c : ix.columns)
                QVERIFY2(findColumn(t, c), qPrintable(t.name + QLatin1Char('.') + c));
        for (const Column& c : t.columns)
            if (c.kind == ColKind::Ref || c.name.compare(QLatin1String("CODICE"), Qt::CaseInsensitive) == 0)
                QVERIFY2(led(c.name), qPrintable(t.name + QLatin1Char('.') + c.name));
    }

    // Unique only where the program relies on it.
    QStringList unique;
    for (const Table& t : tables())
        for (const Index& ix : t.indexes)
            if (ix.unique)
                unique << t.name + QLatin1Char('.') + ix.columns.join(QLatin1Char(','));
    QCOMPARE(unique, (QStringList{QStringLiteral("Opzioni.NOME"), QStringLiteral("DettagliProdotto.FK_PRODOTTO,FK_MAGAZZINO,TAGLIO"),
                                  QStringLiteral("Contatori.FK_NUMERATORE,ANNO"), QStringLiteral("PrimaNota.ANNO,PROGRESSIVO"),
                                  QStringLiteral("ContatoriPrimaNota.ANNO")}));
}

void TstSchema::ddl_data()
{
    QTest::addColumn<int>("tipoServer");
    QTest::addColumn<QString>("quote");
    QTest::addColumn<QString>("amountType");
    QTest::newRow("SQL Server") << 0 << QStringLiteral("[") << QStringLiteral("DECIMAL(19,4)");
    QTest::newRow("SQLite") << 1 << QStringLiteral("\"") << QStringLiteral("REAL");
    QTest::newRow("MariaDB") << 2 << QStringLiteral("`") << QStringLiteral("DECIMAL(19,4)");
}

void TstSchema::ddl()
{
    QFETCH(int, tipoServer);
    QFETCH(QString, quote);
    QFETCH(QString, amountType);

    const QStringList statements = createStatements(tipoServer);
    const QString foreignQuotes = QStringLiteral("[`\"").remove(quote);

    QMap<QString, int> created;
    QSet<QString> objectNames;
    int references = 0;
    const QRegularExpression createTable(QStringLiteral("^CREATE TABLE .(\\w+). \\("));
    const QRegularExpression namedObject(
        QStringLiteral("^(?:CREATE (?:UNIQUE )?INDEX|ALTER TABLE \\S+ ADD CONSTRAINT) .(\\w+)."));
    for (const QString& sql : statements) {
        QVERIFY(!sql.trimmed().isEmpty());
        QVERIFY2(!sql.contains(QLatin1Char(';')), qPrintable(sql));
        for (QChar q : foreignQuotes)
            QVERIFY2(!sql.contains(q), qPrintable(sql));
        references += sql.count(QStringLiteral(" REFERENCES "));
        if (const auto m = createTable.match(sql); m.hasMatch())
            ++created[m.captured(1).toUpper()];
        if (const auto m = namedObject.match(sql); m.hasMatch()) {
            const QString name = m.captured(1);
            QVERIFY2(name.size() <= 64, qPrintable(name));
            QVERIFY2(!objectNames.contains(name.toUpper()), qPrintable(name));
            objectNames.insert(name.toUpper());
        }
    }

    int expectedReferences = 0;
    for (const Table& t : tables()) {
        QCOMPARE(created.value(t.name.toUpper()), 1);
        for (const Column& c : t.columns)
            expectedReferences += c.refTable.isEmpty() ? 0 : 1;
    }
    QCOMPARE(created.size(), tables().size());
    QCOMPARE(references, expectedReferences);
    QCOMPARE(sqlType(Column{QStringLiteral("X"), ColKind::Amount, 0, {}}, tipoServer), amountType);

    // Tables first, then indexes, then (servers) constraints.
    int stage = 0;
    for (const QString& sql : statements) {
        const int s = sql.startsWith(QLatin1String("CREATE TABLE")) ? 0
                      : sql.startsWith(QLatin1String("CREATE")) ? 1 : 2;
        QVERIFY2(s >= stage, qPrintable(sql));
        stage = s;
    }
}

// MariaDB refuses a table whose VARCHARs may exceed 65,535 bytes (utf8mb4:
// four bytes a character plus the length).
void TstSchema::rowFitsMariaDb()
{
    for (const Table& t : tables()) {
        int bytes = 0;
        for (const Column& c : t.columns)
            bytes += c.kind == ColKind::Text ? 4 * c.length + 2 : 12;
        QVERIFY2(bytes < 65535, qPrintable(t.name));
    }
}

void TstSchema::seedTable_data()
{
    QTest::addColumn<int>("position");
    for (int i = 0; i < seedData().size(); ++i)
        QTest::newRow(qPrintable(seedData().at(i).table)) << i;
}

void TstSchema::seedTable()
{
    QFETCH(int, position);
    const SeedTable& s = seedData().at(position);
    const Table* t = findTable(s.table);
    QVERIFY2(t, qPrintable(s.table));
    QVERIFY(!s.rows.isEmpty());

    QList<const Column*> columns;
    QSet<QString> seen;
    for (const QString& name : s.columns) {
        const Column* c = findColumn(*t, name);
        QVERIFY2(c, qPrintable(s.table + QLatin1Char('.') + name));
        QVERIFY2(!seen.contains(name.toUpper()), qPrintable(name));
        seen.insert(name.toUpper());
        columns << c;
    }
    if (t->hasKey())
        QVERIFY2(columnOf(s, t->columns.first().name) >= 0, "keys are given explicitly");

    QSet<int> keys;
    for (const QVariantList& row : s.rows) {
        QCOMPARE(row.size(), s.columns.size());
        for (int i = 0; i < row.size(); ++i) {
            const Column& c = *columns.at(i);
            const QVariant& v = row.at(i);
            const QString where = s.table + QLatin1Char('.') + c.name + QStringLiteral(" = ") + v.toString();
            if (v.isNull()) {
                QVERIFY2(c.kind != ColKind::Key, qPrintable(where));
                continue;
            }
            switch (c.kind) {
            case ColKind::Key:
                QVERIFY2(isIntegral(v) && v.toInt() > 0, qPrintable(where));
                QVERIFY2(!keys.contains(v.toInt()), qPrintable(where));
                keys.insert(v.toInt());
                break;
            case ColKind::Ref:
                QVERIFY2(isIntegral(v) && v.toInt() > 0, qPrintable(where));
                if (!c.refTable.isEmpty()) {
                    QVERIFY2(seedIndex(c.refTable) >= 0 && seedIndex(c.refTable) <= position,
                             qPrintable(where + QStringLiteral(": ") + c.refTable + QStringLiteral(" is seeded first")));
                    QVERIFY2(seededKeys(c.refTable).contains(v.toInt()), qPrintable(where));
                }
                break;
            case ColKind::Flag:
                QVERIFY2(isIntegral(v) && v.toInt() >= -1 && v.toInt() <= 1, qPrintable(where));
                break;
            case ColKind::Int:
                QVERIFY2(isIntegral(v), qPrintable(where));
                break;
            case ColKind::Text:
                QVERIFY2(v.typeId() == QMetaType::QString, qPrintable(where));
                QVERIFY2(v.toString().size() <= c.length, qPrintable(where));
                break;
            case ColKind::Memo:
                QVERIFY2(v.typeId() == QMetaType::QString, qPrintable(where));
                break;
            case ColKind::Amount:
            case ColKind::Quantity:
            case ColKind::Percent:
            case ColKind::Number:
                QVERIFY2(v.typeId() == QMetaType::Double, qPrintable(where));
                break;
            case ColKind::Date:
                QVERIFY2(v.typeId() == QMetaType::QDate, qPrintable(where));
                break;
            case ColKind::DateTime:
                QVERIFY2(v.typeId() == QMetaType::QDateTime, qPrintable(where));
                break;
            }
        }
    }
    QCOMPARE(seedIndex(s.table), position);   // one entry per table
}

void TstSchema::options_data()
{
    QTest::addColumn<QString>("nome");
    QTest::addColumn<QString>("keyOf");   // table of a key option, empty otherwise
    const char* const options[][2] = {
        {"Amministratore", ""}, {"TipoStampaDistinta", ""}, {"IvaPredRigaLibera", "Iva"},
        {"CatPrezziNetti", "CategorieSconti"}, {"ClientePredefinito", "Anagrafiche"},
        {"TipoDocVb", "TipoDocumenti"}, {"CausalePagVb", "Causali"}, {"AnnoCorrente", ""},
        {"ContoClienti", "PianoConti"}, {"ContoFornitori", "PianoConti"}, {"DecimaliDopo", ""},
        {"VenditoreChar", ""}, {"DistintaBase", ""}, {"RigaLibera", ""},
        {"GruppoPredefinito", "Gruppi"}, {"GruppoProdInteg", "Gruppi"}, {"GruppoProdCL", "Gruppi"},
        {"Marca", "Marche"}, {"Fornitore", "Anagrafiche"}, {"TipoDocProd", "TipoDocumenti"},
        {"DocConversione", "TipoDocumenti"}, {"DocConversioneDDT", "TipoDocumenti"},
        {"PagamentoVB", "Pagamenti"}, {"PrezzoMedio", ""}, {"MesiPrezzoMedio", ""},
        {"BloccoPN", ""}, {"DescPN", ""}, {"FidoAllaData", ""}, {"NoShowCptEstratto", ""},
        {"MostraTotaleRigaMov", ""}, {"UsaPrezziIva", ""}, {"PiePagina", ""},
        {"RidIvaProdotti", "Iva"}, {"RidUMProdotti", "UnitaMisura"}, {"RidMarcaProdotti", "Marche"},
        {"RidCollezioneProdotti", "Collezioni"}, {"ReportElencoSpeciale", ""},
        {"NumeratoreElencoSpeciale", "Numeratori"}, {"SottoScorta", ""}, {"BloccaSottoScorta", ""},
        {"AvvisaSottoScorta", ""}, {"VenditeGiorniDiversi", ""}, {"BloccaVenditeGiorniDiversi", ""},
        {"AvvisaVenditeGiorniDiversi", ""}, {"LockVBEdit", ""}, {"LockVBPrezzo", ""},
        {"VenditoriObbligatori", ""}, {"VenditoriBlocco", ""}, {"PagatoAltriClienti", ""},
        {"PrezzoListino", ""},
    };
    for (const auto& o : options)
        QTest::newRow(o[0]) << QString::fromLatin1(o[0]) << QString::fromLatin1(o[1]);

    // Nothing else is seeded, and nothing twice.
    const SeedTable* s = seedOf(QStringLiteral("Opzioni"));
    QVERIFY(s);
    QCOMPARE(s->rows.size(), int(std::size(options)));
}

void TstSchema::options()
{
    QFETCH(QString, nome);
    QFETCH(QString, keyOf);
    const SeedTable* s = seedOf(QStringLiteral("Opzioni"));
    QVERIFY(s);
    int found = 0;
    for (const QVariantList& row : s->rows)
        found += row.value(0).toString() == nome ? 1 : 0;
    QCOMPARE(found, 1);

    const QString value = option(nome);
    if (!keyOf.isEmpty()) {
        bool numeric = false;
        const int key = value.toInt(&numeric);
        QVERIFY2(numeric, qPrintable(value));
        QVERIFY2(key == 0 || seededKeys(keyOf).contains(key), qPrintable(keyOf + QLatin1Char(' ') + value));
    }
}

// Settings that several engines read together.
void TstSchema::chartOfAccounts()
{
    const SeedTable* s = seedOf(QStringLiteral("PianoConti"));
    QVERIFY(s);
    const int codice = columnOf(*s, QStringLiteral("CODICE"));
    QSet<QString> codes;
    for (const QVariantList& row : s->rows)
        codes.insert(row.at(codice).toString());
    for (const QString& code : std::as_const(codes)) {
        QVERIFY2(code.size() == 2 || code.size() == 5 || code.size() == 8, qPrintable(code));
        if (code.size() > 2)
            QVERIFY2(codes.contains(code.left(2)), qPrintable(code));
        if (code.size() > 5)
            QVERIFY2(codes.contains(code.left(5)), qPrintable(code));
    }

    // The control accounts are sub-accounts, and the invoice and purchase
    // causals post on them (the withholding rule compares with the options).
    const int clienti = option(QStringLiteral("ContoClienti")).toInt();
    const int fornitori = option(QStringLiteral("ContoFornitori")).toInt();
    QCOMPARE(seedValue(QStringLiteral("PianoConti"), clienti, QStringLiteral("CODICE")).toString().size(), 8);
    QCOMPARE(seedValue(QStringLiteral("PianoConti"), fornitori, QStringLiteral("CODICE")).toString().size(), 8);
    QSet<int> posted;
    const SeedTable* causali = seedOf(QStringLiteral("Causali"));
    QVERIFY(causali);
    for (const QVariantList& row : causali->rows)
        for (const char* c : {"FK_CONTODARE1", "FK_ContoAvere1"})
            posted.insert(row.value(columnOf(*causali, QString::fromLatin1(c))).toInt());
    QVERIFY(posted.contains(clienti));
    QVERIFY(posted.contains(fornitori));
}

// The term check of the payment screen: instalments as many as NRATE, and
// their percentages plus the down payment make exactly 100.
void TstSchema::paymentTerms()
{
    const SeedTable* pagamenti = seedOf(QStringLiteral("Pagamenti"));
    const SeedTable* rate = seedOf(QStringLiteral("DettagliPagamenti"));
    QVERIFY(pagamenti && rate);
    for (const QVariantList& p : pagamenti->rows) {
        const int rid = p.at(columnOf(*pagamenti, QStringLiteral("RID"))).toInt();
        int count = 0;
        qint64 cents = qRound64(p.at(columnOf(*pagamenti, QStringLiteral("ACCONTO"))).toDouble() * 100);
        for (const QVariantList& r : rate->rows)
            if (r.at(columnOf(*rate, QStringLiteral("FK_PAGAMENTO"))).toInt() == rid) {
                ++count;
                cents += qRound64(r.at(columnOf(*rate, QStringLiteral("PERCENTUALE"))).toDouble() * 100);
            }
        QCOMPARE(count, p.at(columnOf(*pagamenti, QStringLiteral("NRATE"))).toInt());
        QCOMPARE(cents, qint64(10000));
    }
}

void TstSchema::documentTypes()
{
    const SeedTable* tipi = seedOf(QStringLiteral("TipoDocumenti"));
    const SeedTable* causali = seedOf(QStringLiteral("Causali"));
    const SeedTable* report = seedOf(QStringLiteral("FunzionalitaReport"));
    const SeedTable* contatori = seedOf(QStringLiteral("Contatori"));
    QVERIFY(tipi && causali && report && contatori);

    QSet<QString> documentReports;
    for (const QVariantList& r : report->rows)
        if (r.at(columnOf(*report, QStringLiteral("Funzionalita"))).toInt() == 1)
            documentReports.insert(r.at(columnOf(*report, QStringLiteral("REPORT"))).toString());
    QSet<int> countedThisYear;
    for (const QVariantList& c : contatori->rows)
        if (c.at(columnOf(*contatori, QStringLiteral("ANNO"))).toString() == option(QStringLiteral("AnnoCorrente")))
            countedThisYear.insert(c.at(columnOf(*contatori, QStringLiteral("FK_NUMERATORE"))).toInt());

    for (const QVariantList& td : tipi->rows) {
        const QString codice = td.at(columnOf(*tipi, QStringLiteral("CODICE"))).toString();
        QVERIFY2(documentReports.contains(td.at(columnOf(*tipi, QStringLiteral("REPORT"))).toString()),
                 qPrintable(codice));
        QVERIFY2(countedThisYear.contains(td.at(columnOf(*tipi, QStringLiteral("NCONTATORE"))).toInt()),
                 qPrintable(codice));
    }

    auto value = [causali](const QVariantList& row, const char* column) {
        return row.value(columnOf(*causali, QString::fromLatin1(column)));
    };
    for (const QVariantList& c : causali->rows) {
        const QString codice = value(c, "CODICE").toString();
        for (const char* b : {"Operazione", "GENERAPN", "GENERASCAD", "SCADENZENEGATIVE", "TAGLIO"})
            QVERIFY2(value(c, b).toInt() == -1 || value(c, b).toInt() == 0, qPrintable(codice + QLatin1Char(' ') + QLatin1String(b)));
        if (value(c, "GENERASCAD").toInt() == 0)
            QCOMPARE(value(c, "SCADENZENEGATIVE").toInt(), 0);
        for (const auto& [kind, warehouse] : {std::pair{"ORIGINE", "FK_MagazzinoOrig"},
                                              std::pair{"DESTINAZIONE", "FK_MagazzinoDest"}}) {
            const int k = value(c, kind).toInt();
            QVERIFY2(k >= 0 && k <= 3, qPrintable(codice));
            if (k != 3)
                QVERIFY2(value(c, warehouse).isNull(), qPrintable(codice + QLatin1Char(' ') + QLatin1String(warehouse)));
        }
    }

    // The free-row character is the one that statements write literally, and
    // the kit character differs from it.
    QCOMPARE(option(QStringLiteral("RigaLibera")), QStringLiteral("/"));
    QCOMPARE(option(QStringLiteral("DistintaBase")).size(), 1);
    QVERIFY(option(QStringLiteral("DistintaBase")) != option(QStringLiteral("RigaLibera")));
    QCOMPARE(option(QStringLiteral("Amministratore")), defaultPassword());
    QVERIFY(defaultPassword().size() >= 8);   // what the password change demands
}

QTEST_GUILESS_MAIN(TstSchema)
#include "tst_schema.moc"
