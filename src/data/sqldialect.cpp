#include "data/sqldialect.h"

namespace {

constexpr char16_t kDelimiter = 0x00A4; // ¤
constexpr char16_t kComma = 0x2021;     // ‡
constexpr char16_t kAs = 0x00BF;        // ¿
constexpr char16_t kBullet = 0x2022;    // •

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

// The first mark "•K•" (or "•/K•" when closing) whose letter is the kind in
// either case; -1 when there is none.
qsizetype findMark(const QString& s, QChar kind, bool closing)
{
    const qsizetype length = closing ? 4 : 3;
    for (qsizetype p = s.indexOf(QChar(kBullet)); p >= 0 && p + length <= s.size();
         p = s.indexOf(QChar(kBullet), p + 1)) {
        qsizetype k = p + 1;
        if (closing && s.at(k++) != QLatin1Char('/'))
            continue;
        if (s.at(k).toUpper() == kind && s.at(k + 1) == QChar(kBullet))
            return p;
    }
    return -1;
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
    const qsizetype p = findMark(s, kind, false);
    const qsizetype c = p < 0 ? -1 : findMark(s, kind, true);
    if (p < 0 || c < 0)
        return true;
    const qsizetype length = c + 4 - p;
    if (length < 0)
        return false; // closing mark long before the opening one
    s = removeAll(s, s.mid(p, length));
    return true;
}

// Deletes the marks of a kind and keeps what they enclose.
void stripBlock(QString& s, QChar kind)
{
    if (!s.contains(QChar(kBullet)))
        return;
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
    const qsizetype b = p + 6;                              // the blank after SELECT
    const qsizetype q = s.indexOf(QLatin1Char(' '), b + 5); // the blank after the number
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
    if (!s.contains(QChar(kBullet)))
        return true; // no block marks at all: the common case
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
    default: break;
    }
    return ok;
}

// What the steps of the rewriting will find in a text: most statements need
// none of them, or only those that put characters for characters, which one
// pass does. Each mark is looked for with the library's vectorised search.
struct Marks
{
    bool delimiter = false; // ¤
    bool blocks = false;    // •
    bool comma = false;     // ‡
    bool as = false;        // ¿
    bool backtick = false;
    bool top = false;    // "top" in any case, for MySQL's TOP
    bool format = false; // "t(" in any case, for MySQL's FORMAT(
};

char16_t asciiLower(QChar c)
{
    return c.unicode() | 0x20; // the same for the two cases of a letter only
}

// `follows` in any case right before each `at` character.
bool anyPreceded(QStringView s, QChar at, QLatin1StringView follows)
{
    for (qsizetype i = s.indexOf(at, follows.size()); i >= 0; i = s.indexOf(at, i + 1)) {
        qsizetype k = 0;
        while (k < follows.size() && asciiLower(s[i - follows.size() + k]) == follows[k].unicode())
            ++k;
        if (k == follows.size())
            return true;
    }
    return false;
}

Marks scan(QStringView s, int tipoServer)
{
    Marks m;
    m.delimiter = s.contains(QChar(kDelimiter));
    m.blocks = s.contains(QChar(kBullet));
    m.comma = s.contains(QChar(kComma));
    m.as = s.contains(QChar(kAs));
    m.backtick = s.contains(QLatin1Char('`'));
    if (tipoServer == TipoServer::MySql) {
        m.top = anyPreceded(s, QLatin1Char('p'), QLatin1StringView("to"))
            || anyPreceded(s, QLatin1Char('P'), QLatin1StringView("to"));
        m.format = anyPreceded(s, QLatin1Char('('), QLatin1StringView("t"));
    }
    return m;
}

// The steps that put characters for characters, in one pass over the text.
enum Substitution {
    Delimiters = 1, // "'" doubled and "¤" to "'"
    Commas = 2,     // "‡" to ","
    As = 4,         // "¿" to "AS"
    Backticks = 8,  // "`" to '"'
};

QString substitute(const QString& sql, int which)
{
    QString out;
    out.reserve(sql.size() + 16);
    const QStringView text(sql);
    qsizetype written = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        QLatin1StringView with;
        switch (text[i].unicode()) {
        case u'\'':
            if (!(which & Delimiters))
                continue;
            with = QLatin1StringView("''");
            break;
        case kDelimiter:
            if (!(which & Delimiters))
                continue;
            with = QLatin1StringView("'");
            break;
        case kComma:
            if (!(which & Commas))
                continue;
            with = QLatin1StringView(",");
            break;
        case kAs:
            if (!(which & As))
                continue;
            with = QLatin1StringView("AS");
            break;
        case u'`':
            if (!(which & Backticks))
                continue;
            with = QLatin1StringView("\"");
            break;
        default: continue;
        }
        out += text.mid(written, i - written);
        out += with;
        written = i + 1;
    }
    if (written == 0)
        return sql;
    out += text.mid(written);
    return out;
}

} // namespace

DialectResult rewriteStatement(const QString& sql, int tipoServer)
{
    const Marks m = scan(sql, tipoServer);
    const int finalSteps = (m.comma ? Commas : 0) | (m.as ? As : 0);
    const int backticks = m.backtick && tipoServer == TipoServer::SqlServer ? Backticks : 0;
    // Without blocks, TOP or FORMAT( every step puts characters for
    // characters, and they touch different characters: one pass does them all.
    if (!m.blocks && !(tipoServer == TipoServer::MySql && (m.top || m.format))) {
        const int which = (m.delimiter ? Delimiters : 0) | backticks | finalSteps;
        return {which ? substitute(sql, which) : sql, true};
    }
    // Otherwise one step after the other, as each one sees what the
    // previous one left.
    QString s = m.delimiter ? substitute(sql, Delimiters) : sql;
    bool ok = selectBlocks(s, tipoServer);
    if (ok && backticks)
        s.replace(QLatin1Char('`'), QLatin1Char('"'));
    if (ok && tipoServer == TipoServer::MySql)
        ok = moveTopToLimit(s) && dropFormat(s);
    if (!ok)
        return {QString(), false};
    return {finalSteps ? substitute(s, finalSteps) : s, true};
}

DialectResult rewriteFragment(const QString& sql, int tipoServer)
{
    const Marks m = scan(sql, tipoServer);
    if (!m.blocks && !(tipoServer == TipoServer::MySql && m.format))
        return {sql, true};
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
    return s.replace(QChar(kComma), QLatin1Char(','));
}
