#include "data/sqldialect.h"

namespace {

const QString kDelimiter = QStringLiteral("\u00A4");     // ¤
const QString kComma = QStringLiteral("\u2021");         // ‡
const QString kAs = QStringLiteral("\u00BF");            // ¿

struct BlockMarks
{
    QString open;
    QString close;
};

BlockMarks marks(QChar kind)
{
    return {QStringLiteral("\u2022") + kind + QStringLiteral("\u2022"),
            QStringLiteral("\u2022/") + kind + QStringLiteral("\u2022")};
}

// Upper case letter by letter, so that positions found in the copy are
// positions in the original (a full case mapping could lengthen "ß").
QString upperSameLength(const QString& s)
{
    QString up = s;
    for (QChar& c : up)
        c = c.toUpper();
    return up;
}

// Deletes every occurrence of `find` from `s`; an empty `find` leaves `s` as it is.
QString removeAll(QString s, const QString& find)
{
    if (!find.isEmpty())
        s.remove(find, Qt::CaseSensitive);
    return s;
}

// The first block of a kind, from its opening mark to the end of the first
// closing mark, is deleted together with every identical copy of it. Without
// both marks nothing happens; a second, different block of the same kind stays.
bool removeBlock(QString& s, QChar kind)
{
    const BlockMarks m = marks(kind);
    const QString up = upperSameLength(s);
    const qsizetype p = up.indexOf(m.open);
    const qsizetype c = up.indexOf(m.close);
    if (p < 0 || c < 0)
        return true;
    const qsizetype length = c + m.close.size() - p;
    if (length < 0)
        return false;   // closing mark long before the opening one
    s = removeAll(s, s.mid(p, length));
    return true;
}

// Deletes the marks of a kind and keeps what they enclose.
void stripBlock(QString& s, QChar kind)
{
    const BlockMarks m = marks(kind);
    s.remove(m.open, Qt::CaseSensitive);
    s.remove(m.close, Qt::CaseSensitive);
}

// "SELECT TOP n rest" becomes "SELECT rest LIMIT n" (first occurrence only;
// the keyword is renamed only when written in capitals).
bool moveTopToLimit(QString& s)
{
    const qsizetype p = s.indexOf(QLatin1String("SELECT TOP "), 0, Qt::CaseInsensitive);
    if (p < 0)
        return true;
    const qsizetype b = p + 6;                 // the blank after SELECT
    const qsizetype q = s.indexOf(QLatin1Char(' '), b + 5);   // the blank after the number
    if (q < 0)
        return false;
    QString clause = s.mid(b + 1, q - b - 1);
    clause.replace(QStringLiteral("TOP"), QStringLiteral("LIMIT"), Qt::CaseSensitive);
    s = s.left(b + 1) + s.mid(q + 1) + QLatin1Char(' ') + clause;
    return true;
}

// The old MySQL treatment of FORMAT(x, mask): the mask argument and the
// function name go, leaving the first letter of the name in front of x.
bool dropFormat(QString& s)
{
    const qsizetype p = s.indexOf(QLatin1String("FORMAT("), 0, Qt::CaseInsensitive);
    if (p < 0)
        return true;
    const qsizetype c = s.indexOf(QLatin1Char(','), p + 5);
    const qsizetype r = s.indexOf(QLatin1Char(')'), p + 5);
    if (c < 0 || r < 0 || r - c + 1 < 0)
        return false;
    const QString argument = s.mid(c, r - c + 1);
    s = s.left(c) + removeAll(s.mid(c), argument);
    const QString name = s.mid(p, 7);
    s = s.left(p + 1) + removeAll(s.mid(p), name);
    return true;
}

bool selectBlocks(QString& s, int tipoServer)
{
    if (!s.contains(QChar(0x2022)))
        return true;   // no block marks at all: the common case
    bool ok = true;
    switch (tipoServer) {
    case TipoServer::FileDb:
        ok = removeBlock(s, QLatin1Char('M')) && removeBlock(s, QLatin1Char('S'));
        stripBlock(s, QLatin1Char('A'));
        break;
    case TipoServer::SqlServer:
        ok = removeBlock(s, QLatin1Char('M')) && removeBlock(s, QLatin1Char('A'));
        stripBlock(s, QLatin1Char('S'));
        break;
    case TipoServer::MySql:
        ok = removeBlock(s, QLatin1Char('A')) && removeBlock(s, QLatin1Char('S'));
        stripBlock(s, QLatin1Char('M'));
        break;
    default:
        break;
    }
    return ok;
}

} // namespace

DialectResult rewriteStatement(const QString& sql, int tipoServer)
{
    QString s = sql;
    if (s.contains(kDelimiter)) {
        s.replace(QLatin1Char('\''), QStringLiteral("''"));
        s.replace(kDelimiter, QStringLiteral("'"));
    }
    bool ok = selectBlocks(s, tipoServer);
    if (ok && tipoServer == TipoServer::SqlServer)
        s.replace(QLatin1Char('`'), QLatin1Char('"'));
    if (ok && tipoServer == TipoServer::MySql)
        ok = moveTopToLimit(s) && dropFormat(s);
    if (!ok)
        return {QString(), false};
    s.replace(kComma, QStringLiteral(","));
    s.replace(kAs, QStringLiteral("AS"));
    return {s, true};
}

DialectResult rewriteFragment(const QString& sql, int tipoServer)
{
    QString s = sql;
    bool ok = selectBlocks(s, tipoServer);
    if (ok && tipoServer == TipoServer::MySql)
        ok = dropFormat(s);
    if (!ok)
        return {QString(), false};
    return {s, true};
}

QString getPartSQLWithoutSP(const QString& sql)
{
    QString s = sql;
    return s.replace(kComma, QStringLiteral(","));
}
