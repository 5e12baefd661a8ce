#include "data/scoped.h"

#include "data/cadosqlserver.h"

cReader::cReader(const QString& sql, const QString& tag)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const int before = db.getConnectionCount();
    m_rs = db.getNewRecordset(sql, tag);
    // Outside a transaction the read pushed a connection of its own, which
    // stays counted even when the statement failed.
    m_connected = !db.inTransaction() && db.getConnectionCount() > before;
}

cReader::~cReader()
{
    if (m_rs)
        m_rs->close();
    if (m_connected)
        gAdoSqlServer().disconnect();
}

QVariant cReader::firstValue() const
{
    if (!m_rs || m_rs->eof() || m_rs->fieldCount() == 0)
        return QVariant();
    return m_rs->value(0);
}

bool connectionCheck(bool silent)
{
    cAdoSqlServer& db = gAdoSqlServer();
    if (!db.Connect(QStringLiteral("N/D"), 60, 0, silent))
        return false;
    db.disconnect();
    return true;
}

cTransaction::cTransaction(const QString& tag)
    : m_tag(tag)
    , m_open(gAdoSqlServer().beginTrasaction(tag))
{ }

cTransaction::~cTransaction() { rollback(); }

bool cTransaction::commit()
{
    if (!m_open)
        return false;
    if (gAdoSqlServer().commitTrasaction(m_tag)) {
        m_open = false;
        return true;
    }
    rollback();
    return false;
}

void cTransaction::rollback()
{
    if (!m_open)
        return;
    m_open = false;
    gAdoSqlServer().rollbackTrasaction(m_tag);
}
