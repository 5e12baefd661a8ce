#include "screens/services/ricercasql.h"

#include "data/cadosqlserver.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"

#include <QRegularExpression>
#include <QStringList>

namespace ricerca {

namespace {

const QString kBlank = QStringLiteral("SELECT\u00A4\u00A4 AS BLANK, ");

// Marks the positions of a statement that lie at its top level: outside
// text values (between the delimiter) and outside parentheses.
QList<bool> topLevel(const QString& sql)
{
    QList<bool> top(sql.size(), false);
    int depth = 0;
    bool quoted = false;
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const QChar c = sql.at(i);
        if (c == QChar(0x00A4))
            quoted = !quoted;
        else if (!quoted && c == QLatin1Char('('))
            ++depth;
        else if (!quoted && c == QLatin1Char(')'))
            --depth;
        top[i] = !quoted && depth == 0 && c != QChar(0x00A4);
    }
    return top;
}

// A statement's parts and the UNION joints between them. Only a UNION of
// the statement itself splits it: one inside a value (a filter typed by the
// user) or inside a sub-select stays where it is.
struct Parts
{
    QStringList parts;
    QStringList joints;

    explicit Parts(const QString& sql)
    {
        static const QRegularExpression union_(QStringLiteral("\\s+UNION(\\s+ALL)?\\s+"),
                                               QRegularExpression::CaseInsensitiveOption);
        const QList<bool> top = topLevel(sql);
        qsizetype from = 0;
        for (auto it = union_.globalMatch(sql); it.hasNext();) {
            const QRegularExpressionMatch m = it.next();
            if (!top.at(m.capturedStart()))
                continue;
            parts << sql.mid(from, m.capturedStart() - from);
            joints << m.captured(0);
            from = m.capturedEnd();
        }
        parts << sql.mid(from);
    }

    QString joined() const
    {
        QString sql = parts.first();
        for (qsizetype i = 1; i < parts.size(); ++i)
            sql += joints.at(i - 1) + parts.at(i);
        return sql;
    }
};

// Where the head SELECT of a part starts (parts begin with it), -1 when the
// part does not.
qsizetype headSelect(const QString& part)
{
    qsizetype p = 0;
    while (p < part.size() && part.at(p).isSpace())
        ++p;
    return part.mid(p, 6).compare(QLatin1String("SELECT"), Qt::CaseInsensitive) == 0 ? p : -1;
}

// The first top-level position of a clause keyword in a part, -1 when missing.
qsizetype clausePosition(const QString& part, const QString& keyword)
{
    int depth = 0;
    bool quoted = false;
    for (qsizetype i = 0; i < part.size(); ++i) {
        const QChar c = part.at(i);
        if (c == QChar(0x00A4))
            quoted = !quoted;
        else if (quoted)
            continue;
        else if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')'))
            --depth;
        else if (depth == 0 && part.mid(i, keyword.size()).compare(keyword, Qt::CaseInsensitive) == 0
                 && (i == 0 || part.at(i - 1).isSpace()))
            return i;
    }
    return -1;
}

QString addToPart(const QString& part, const QString& condition)
{
    qsizetype end = part.size();
    for (const char* keyword : {"ORDER BY", "GROUP BY"}) {
        const qsizetype p = clausePosition(part, QString::fromLatin1(keyword));
        if (p >= 0 && p < end)
            end = p;
    }
    const bool hasWhere = clausePosition(part.left(end), QStringLiteral("WHERE")) >= 0;
    QString head = part.left(end);
    while (head.endsWith(QLatin1Char(' ')))
        head.chop(1);
    head += hasWhere ? QStringLiteral(" AND ") : QStringLiteral(" WHERE ");
    head += condition.trimmed();
    return end < part.size() ? head + QLatin1Char(' ') + part.mid(end) : head;
}

} // namespace

QString prepareStatement(const QString& sql, bool startEmpty)
{
    QString prepared = sql;
    if (!sql.contains(QLatin1String("DISTINCT"), Qt::CaseInsensitive)) {
        Parts parts(sql);
        for (QString& part : parts.parts) {
            const qsizetype p = headSelect(part);
            if (p >= 0)
                part.replace(p, part.mid(p + 6, 1) == QLatin1String(" ") ? 7 : 6, kBlank);
        }
        prepared = parts.joined();
    }
    if (startEmpty)
        prepared = addCondition(prepared, QStringLiteral("RID = -1"));
    return prepared;
}

QString likeCondition(const QString& field, const QString& text, bool contains)
{
    return QLatin1Char(' ') + field + QStringLiteral(" LIKE ")
        + sqlLikePattern(text, contains ? LikeMatch::Contains : LikeMatch::StartsWith) + QLatin1Char(' ');
}

QString addCondition(const QString& statement, const QString& condition)
{
    Parts parts(statement);
    for (QString& part : parts.parts)
        part = addToPart(part, condition);
    return parts.joined();
}

QString withMaxRows(const QString& statement, const QString& maxRows, int tipoServer)
{
    bool ok = false;
    const int max = maxRows.trimmed().toInt(&ok);
    const QString top = QStringLiteral("TOP ") + QString::number(ok && max > 0 ? max : 500) + QLatin1Char(' ');
    static const QRegularExpression distinct(QStringLiteral("^DISTINCT\\s+"),
                                             QRegularExpression::CaseInsensitiveOption);
    Parts parts(statement);
    for (qsizetype i = 0; i < parts.parts.size(); ++i) {
        if (i > 0 && tipoServer != TipoServer::SqlServer)
            break;
        QString& part = parts.parts[i];
        const qsizetype p = headSelect(part);
        if (p < 0)
            continue;
        qsizetype at = p + 6;
        while (at < part.size() && part.at(at) == QLatin1Char(' '))
            ++at;
        // SQL Server wants DISTINCT before TOP; the other rewrites take either.
        if (tipoServer == TipoServer::SqlServer) {
            const QRegularExpressionMatch m = distinct.match(QStringView(part).mid(at));
            if (m.hasMatch())
                at += m.capturedLength();
        }
        part.insert(at, top);
        if (at == p + 6)
            part.insert(p + 6, QLatin1Char(' '));
    }
    return parts.joined();
}

QString nomeCampo(const QString& statement, int column)
{
    QString sql = statement.toUpper();
    sql.remove(kBlank);
    static const QRegularExpression head(QStringLiteral("^\\s*SELECT\\s+(DISTINCT\\s+)?(TOP\\s+\\d+\\s+)?"));
    sql.remove(head);
    const qsizetype from = clausePosition(sql, QStringLiteral("FROM "));
    if (from >= 0)
        sql.truncate(from);
    const QStringList columns = sql.split(QLatin1Char(','));
    if (column < 0 || column >= columns.size())
        return QString();
    QString name = gAdoSqlServer().getPartSQLByTipoServer(columns.at(column).trimmed());
    const qsizetype as = name.indexOf(QLatin1String(" AS "));
    if (as >= 0)
        name.truncate(as);
    name = getPartSQLWithoutSP(name).replace(QChar(0x00BF), QStringLiteral("AS"));
    return name.trimmed();
}

} // namespace ricerca
