#pragma once
// Databases for tests: a SQLite file in a temporary folder, or a fresh
// database on the throwaway MariaDB server named by ORVANTIS_TEST_MYSQL.

#include "common/errorlog.h"
#include "data/driver.h"
#include "support/columns.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>

#include <memory>

class QTestData;

// Columns of one type fetched at once: FETCH_EACH(QString, code, message)
// stands for QFETCH(QString, code); QFETCH(QString, message).
// clang-format off
#define ORV_F1(T, a) QFETCH(T, a)
#define ORV_F2(T, a, ...) QFETCH(T, a); ORV_F1(T, __VA_ARGS__)
#define ORV_F3(T, a, ...) QFETCH(T, a); ORV_F2(T, __VA_ARGS__)
#define ORV_F4(T, a, ...) QFETCH(T, a); ORV_F3(T, __VA_ARGS__)
#define ORV_F5(T, a, ...) QFETCH(T, a); ORV_F4(T, __VA_ARGS__)
#define ORV_F6(T, a, ...) QFETCH(T, a); ORV_F5(T, __VA_ARGS__)
#define ORV_FN(_1, _2, _3, _4, _5, _6, N, ...) N
#define FETCH_EACH(T, ...) ORV_FN(__VA_ARGS__, ORV_F6, ORV_F5, ORV_F4, ORV_F3, ORV_F2, ORV_F1, )(T, __VA_ARGS__)
// clang-format on

namespace testdb {

// "sqlite" always; "mariadb" when ORVANTIS_TEST_MYSQL is set. With
// ORVANTIS_REQUIRE_MYSQL=1 a missing server is a failure, not a skip.
QStringList backends();

// A column "backend" and one row per back end named `prefix`+backend.
void addBackendColumn();
void addBackendRows(const QString& prefix = QString());

// Points the program folder and the settings at fresh temporary folders.
void isolateProgramFolder();

// A database with the whole schema (and the seed when asked), made current:
// gSession().strConnessione and gAdoSqlServer().TipoServer point at it.
class TestDatabase
{
public:
    explicit TestDatabase(const QString& backend, bool seed = true);
    ~TestDatabase();

    bool isValid() const { return m_valid; }
    int tipoServer() const { return m_tipoServer; }
    QString connectionString() const { return m_connectionString; }
    QString backend() const { return m_backend; }
    void activate() const;

private:
    QString m_backend;
    int m_tipoServer = 1;
    QString m_connectionString;
    QString m_serverDatabase; // MariaDB database name, dropped at the end
    std::unique_ptr<QTemporaryDir> m_dir;
    bool m_valid = false;
};

// One database per back end for a whole test class, made on first use.
TestDatabase& shared(const QString& backend, bool seed = true);
void dropShared();

// Records error reports instead of showing them, while alive.
// Another workstation: a connection of its own with a transaction open.
// While it lives, this process's new connections give up a lock wait after a
// second, so a test sees "busy" at once. Rolled back unless committed.
class OtherWorkstation
{
public:
    OtherWorkstation();
    ~OtherWorkstation();
    OtherWorkstation(const OtherWorkstation&) = delete;
    OtherWorkstation& operator=(const OtherWorkstation&) = delete;

    bool isValid() const { return m_open; }
    // A statement in the back end's own SQL.
    bool execute(const QString& sql);
    bool commit();

private:
    PhysicalConnectionPtr m_connection;
    bool m_open = false;
};

class ErrorRecorder
{
public:
    ErrorRecorder();
    ~ErrorRecorder();
    QList<ErrorReport> reports;

private:
    ErrorReportHandler m_previous;
};

// Answers message boxes from a script; an unexpected box fails the test, and
// so does one of the script not shown by the end.
class ScriptedMsgBox
{
public:
    ScriptedMsgBox();
    ~ScriptedMsgBox();
    // Expects a box whose text contains `fragment`; answers `answer`.
    void expect(const QString& fragment, int answer = 1); // vb::OK
    QStringList shown;
    bool allAnswered() const { return m_script.isEmpty(); }

private:
    QList<QPair<QString, int>> m_script;
};

// Statements on the current test database, in the system's mark-up: run() fails the test
// when the statement fails; value() is the first column of the first row; rows() every row.
void run(const QString& sql);
QVariant value(const QString& sql);
QString text(const QString& sql); // value() as text
int number(const QString& sql);
QList<QVariantList> rows(const QString& sql);

// A data row "name (backend)" that streams the back end first:
//   for (const QString& b : testdb::backends()) testdb::row(b, "lots") << 1;
QTestData& row(const QString& backend, const QString& name);

// The rows of a table (those that meet `where`), the key of the row that
// meets `where` (0 for none), every row of some tables deleted.
int count(const QString& table, const QString& where = QString());
int rid(const QString& table, const QString& where);
void empty(const QStringList& tables);
// The condition on a row's code, "CODICE = ¤code¤".
QString code(const QString& code);

// What a database holds for a text: a lone UTF-16 surrogate becomes U+FFFD.
QString asStored(const QString& text);

// A test class whose tests all run on each back end (its global rows), each on the shared
// database of its row, giving back every connection it took. A class that needs more at
// one of these steps declares the slot and calls the one here first.
class BackendTest : public QObject
{
    Q_OBJECT

public:
    explicit BackendTest(bool seed = true)
        : m_seed(seed)
    { }
    static QString backend(); // of the running test

protected Q_SLOTS:
    void initTestCase_data();
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

private:
    bool m_seed;
};

// A plain statement on the server named by ORVANTIS_TEST_MYSQL, outside
// cAdoSqlServer (creating and dropping databases).
bool serverAdmin(const QString& sql);
QString mysqlBaseConnectionString();

} // namespace testdb
