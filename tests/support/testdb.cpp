#include "support/testdb.h"

#include "common/apphome.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/driver.h"
#include "data/modeldatabase.h"
#include "data/recordset.h"
#include "data/session.h"
#include "data/sqldialect.h"

#include <QCoreApplication>
#include <QMap>
#include <QSqlQuery>
#include <QTest>

namespace testdb {

QStringList backends()
{
    QStringList list{QStringLiteral("sqlite")};
    if (!qEnvironmentVariable("ORVANTIS_TEST_MYSQL").isEmpty())
        list.append(QStringLiteral("mariadb"));
    else if (qEnvironmentVariable("ORVANTIS_REQUIRE_MYSQL") == QLatin1String("1"))
        qFatal("ORVANTIS_REQUIRE_MYSQL is set but ORVANTIS_TEST_MYSQL names no server");
    return list;
}

void addBackendColumn() { QTest::addColumn<QString>("backend"); }

void addBackendRows(const QString& prefix)
{
    for (const QString& b : backends())
        QTest::newRow(qPrintable(prefix + b)) << b;
}

void isolateProgramFolder()
{
    static QTemporaryDir home;
    static QTemporaryDir config;
    qputenv("ORVANTIS_HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    setProgramFolder(home.path());
}

QString mysqlBaseConnectionString() { return qEnvironmentVariable("ORVANTIS_TEST_MYSQL"); }

bool serverAdmin(const QString& sql)
{
    DbError error;
    PhysicalConnectionPtr c = driver::acquire(TipoServer::MySql, mysqlBaseConnectionString(), 10, error);
    const bool ok = c && c->execute(sql, nullptr, error);
    if (!ok)
        qWarning("MariaDB: %s", qPrintable(error.description));
    if (c)
        driver::release(c);
    return ok;
}

TestDatabase::TestDatabase(const QString& backend, bool seed)
    : m_backend(backend)
{
    QString message;
    if (backend == QLatin1String("sqlite")) {
        m_tipoServer = TipoServer::FileDb;
        m_dir = std::make_unique<QTemporaryDir>();
        const QString path = m_dir->filePath(QStringLiteral("Orvantis.db"));
        m_connectionString = fileDbConnectionString(path);
        QFile file(path); // empty, for the tables alone
        m_valid = seed
            ? model::buildModelFile(path, &message)
            : file.open(QIODevice::WriteOnly) && model::createTables(m_tipoServer, m_connectionString, &message);
    } else {
        static int counter = 0;
        m_tipoServer = TipoServer::MySql;
        m_serverDatabase = QStringLiteral("orv_t%1_%2").arg(QCoreApplication::applicationPid()).arg(++counter);
        serverAdmin(QStringLiteral("DROP DATABASE IF EXISTS ") + m_serverDatabase);
        m_connectionString = mysqlBaseConnectionString() + QStringLiteral(";Database=") + m_serverDatabase;
        m_valid = seed
            ? model::initServerDatabase(m_tipoServer, m_connectionString, &message)
            : serverAdmin("CREATE DATABASE " + m_serverDatabase + " CHARACTER SET utf8mb4 COLLATE utf8mb4_unicode_ci")
                && model::createTables(m_tipoServer, m_connectionString, &message);
    }
    if (!m_valid)
        qWarning("test database (%s): %s", qPrintable(backend), qPrintable(message));
    activate();
}

TestDatabase::~TestDatabase()
{
    driver::closeIdle();
    if (!m_serverDatabase.isEmpty())
        serverAdmin(QStringLiteral("DROP DATABASE IF EXISTS ") + m_serverDatabase);
    driver::closeIdle();
}

void TestDatabase::activate() const
{
    gAdoSqlServer().setTipoServer(m_tipoServer);
    gSession().tipoServer = m_tipoServer;
    gSession().strConnessione = m_connectionString;
}

namespace {
QMap<QString, std::shared_ptr<TestDatabase>>& sharedDatabases()
{
    static QMap<QString, std::shared_ptr<TestDatabase>> map;
    return map;
}
} // namespace

TestDatabase& shared(const QString& backend, bool seed)
{
    const QString key = backend + (seed ? QStringLiteral("+seed") : QString());
    auto& map = sharedDatabases();
    if (!map.contains(key))
        map.insert(key, std::make_shared<TestDatabase>(backend, seed));
    map.value(key)->activate();
    return *map.value(key);
}

void dropShared() { sharedDatabases().clear(); }

ErrorRecorder::ErrorRecorder()
{
    m_previous = gError().setHandler([this](const ErrorReport& r) {
        reports.append(r);
        return 1;
    });
}

ErrorRecorder::~ErrorRecorder() { gError().setHandler(m_previous); }

ScriptedMsgBox::ScriptedMsgBox()
{
    setMsgBoxHandler([this](const QString& prompt, int style, const QString&) {
        shown.append(prompt);
        if (m_script.isEmpty()) {
            QTest::qFail(qPrintable(QStringLiteral("unexpected message box: ") + prompt), __FILE__, __LINE__);
            return defaultAnswer(style);
        }
        const auto [fragment, answer] = m_script.takeFirst();
        if (!prompt.contains(fragment))
            QTest::qFail(qPrintable(QStringLiteral("expected a box with \"") + fragment + QStringLiteral("\", got: ")
                                    + prompt),
                         __FILE__, __LINE__);
        return answer;
    });
}

ScriptedMsgBox::~ScriptedMsgBox()
{
    setMsgBoxHandler({});
    if (!m_script.isEmpty())
        QTest::qFail(qPrintable("box not shown: " + m_script.first().first), __FILE__, __LINE__);
}

void ScriptedMsgBox::expect(const QString& fragment, int answer) { m_script.append({fragment, answer}); }
void run(const QString& sql) { QVERIFY2(gAdoSqlServer().executeSQL(sql, QStringLiteral("test")), qPrintable(sql)); }
QVariant value(const QString& sql) { return gAdoSqlServer().getValueBySQL(sql, QStringLiteral("test")); }
int number(const QString& sql) { return value(sql).toInt(); }
QString text(const QString& sql) { return value(sql).toString(); }

QList<QVariantList> rows(const QString& sql)
{
    QList<QVariantList> list;
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(sql, QStringLiteral("test"));
    for (; rs && !rs->eof(); rs->moveNext()) {
        QVariantList row;
        for (int i = 0; i < rs->fieldCount(); ++i)
            row << rs->value(i);
        list << row;
    }
    gAdoSqlServer().disconnect();
    return list;
}

QTestData& row(const QString& backend, const QString& name)
{
    return QTest::newRow(qPrintable(name + QStringLiteral(" (") + backend + QLatin1Char(')'))) << backend;
}

int count(const QString& table, const QString& where)
{
    return number("SELECT COUNT(*) FROM " + table + (where.isEmpty() ? QString() : " WHERE " + where));
}

int rid(const QString& table, const QString& where) { return number("SELECT RID FROM " + table + " WHERE " + where); }

void empty(const QStringList& tables)
{
    for (const QString& table : tables)
        run(QStringLiteral("DELETE FROM ") + table);
}

QString code(const QString& code) { return QStringLiteral("CODICE = ¤") + code + QStringLiteral("¤"); }

QString asStored(const QString& text)
{
    const QList<uint> ucs4 = text.toUcs4();
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(ucs4.constData()), ucs4.size());
}

QString BackendTest::backend()
{
    QFETCH_GLOBAL(QString, backend);
    return backend;
}

void BackendTest::initTestCase_data()
{
    addBackendColumn();
    addBackendRows();
}

void BackendTest::initTestCase() { isolateProgramFolder(); }
void BackendTest::cleanupTestCase() { dropShared(); }
void BackendTest::init() { QVERIFY(shared(backend(), m_seed).isValid()); }

void BackendTest::cleanup()
{
    cAdoSqlServer& db = gAdoSqlServer();
    const int open = db.getConnectionCount();
    if (db.inTransaction())
        db.rollbackTrasaction(QStringLiteral("test"));
    db.closeAll();
    QCOMPARE(open, 0);
}

} // namespace testdb

namespace testdb {

OtherWorkstation::OtherWorkstation()
{
    driver::setBusyTimeout(1);
    driver::closeIdle();
    DbError error;
    m_connection = driver::acquire(gAdoSqlServer().TipoServer(), gSession().strConnessione, 10, error);
    m_open = m_connection && m_connection->begin(error);
}

OtherWorkstation::~OtherWorkstation()
{
    DbError error;
    if (m_open)
        m_connection->rollback(error);
    if (m_connection)
        driver::release(m_connection);
    driver::setBusyTimeout(15);
    driver::closeIdle();
}

bool OtherWorkstation::execute(const QString& sql)
{
    DbError error;
    return m_open && m_connection->execute(sql, nullptr, error);
}

bool OtherWorkstation::commit()
{
    DbError error;
    const bool done = m_open && m_connection->commit(error);
    m_open = false;
    return done;
}

} // namespace testdb
