#pragma once
// Scoped database work: a read that gives its connection back when it goes
// out of scope, and a transaction that is rolled back unless committed. No
// caller pairs a read with disconnect() or a begin with a rollback by hand.
//
//   cReader rs(sql, tag(...));
//   if (!rs) return;                // failed, and told
//   while (!rs->eof()) { ...; rs->moveNext(); }
//
//   cTransaction t(tag(...));
//   if (!t || !writeAll()) return false;   // rolled back here
//   return t.commit();

#include "data/recordset.h"

#include <QString>

class cReader
{
public:
    cReader(const QString& sql, const QString& tag);
    ~cReader();
    cReader(const cReader&) = delete;
    cReader& operator=(const cReader&) = delete;

    // False when the statement failed (the data layer has told why).
    explicit operator bool() const { return m_rs != nullptr; }
    Recordset* operator->() const { return m_rs.get(); }
    Recordset& operator*() const { return *m_rs; }

    // The first field of the first row; invalid when there is no row or the
    // read failed, a null QVariant for a database Null.
    QVariant firstValue() const;

private:
    RecordsetPtr m_rs;
    bool m_connected = false;
};

// Whether the database can be reached now: a connection opened and given
// back. Silent: a failure is not reported.
bool connectionCheck(bool silent);

class cTransaction
{
public:
    explicit cTransaction(const QString& tag);
    ~cTransaction();
    cTransaction(const cTransaction&) = delete;
    cTransaction& operator=(const cTransaction&) = delete;

    // False when the transaction could not begin (told already).
    explicit operator bool() const { return m_open; }
    // True when everything is written; a failed commit is rolled back.
    bool commit();
    void rollback();

private:
    QString m_tag;
    bool m_open = false;
};
