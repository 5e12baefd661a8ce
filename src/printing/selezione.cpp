#include "printing/selezione.h"

#include "data/session.h"
#include "data/sqlliteral.h"

#include <QDate>

namespace {

// A small recursive-descent translator: it reads the formula and writes
// the SQL as it goes, so an unknown construct fails where it stands.
class Translator
{
public:
    Translator(const QString& text, int tipoServer)
        : m_text(text)
        , m_tipoServer(tipoServer)
    { }

    SelezioneSql run()
    {
        SelezioneSql result;
        skipBlanks();
        if (atEnd())
            return result;
        result.sql = orExpression();
        skipBlanks();
        if (m_error.isEmpty() && !atEnd())
            fail(QStringLiteral("testo non previsto"));
        if (!m_error.isEmpty()) {
            result.sql.clear();
            result.ok = false;
            result.errore = m_error + QStringLiteral(" alla posizione ") + QString::number(m_pos + 1)
                + QStringLiteral(" di «") + m_text + QStringLiteral("»");
        }
        return result;
    }

private:
    bool atEnd() const { return m_pos >= m_text.size(); }
    QChar peek() const { return atEnd() ? QChar() : m_text.at(m_pos); }
    void skipBlanks()
    {
        while (!atEnd() && m_text.at(m_pos).isSpace())
            ++m_pos;
    }
    void fail(const QString& what)
    {
        if (m_error.isEmpty())
            m_error = what;
    }
    bool word(const char* w)
    {
        skipBlanks();
        const QLatin1String l(w);
        if (m_text.mid(m_pos, l.size()).compare(l, Qt::CaseInsensitive) != 0)
            return false;
        const int after = m_pos + int(l.size());
        if (after < m_text.size() && (m_text.at(after).isLetterOrNumber() || m_text.at(after) == QLatin1Char('_')))
            return false;
        m_pos = after;
        return true;
    }

    QString orExpression()
    {
        QString sql = andExpression();
        while (m_error.isEmpty() && word("or"))
            sql += QStringLiteral(" OR ") + andExpression();
        return sql;
    }

    QString andExpression()
    {
        QString sql = notExpression();
        while (m_error.isEmpty() && word("and"))
            sql += QStringLiteral(" AND ") + notExpression();
        return sql;
    }

    QString notExpression()
    {
        if (word("not"))
            return QStringLiteral("NOT ") + notExpression();
        skipBlanks();
        if (peek() == QLatin1Char('(')) {
            ++m_pos;
            const QString inner = orExpression();
            skipBlanks();
            if (peek() != QLatin1Char(')')) {
                fail(QStringLiteral("manca «)»"));
                return QString();
            }
            ++m_pos;
            return QLatin1Char('(') + inner + QLatin1Char(')');
        }
        return comparison();
    }

    QString field()
    {
        skipBlanks();
        if (peek() != QLatin1Char('{')) {
            fail(QStringLiteral("campo atteso"));
            return QString();
        }
        const int end = m_text.indexOf(QLatin1Char('}'), m_pos);
        if (end < 0) {
            fail(QStringLiteral("campo non chiuso"));
            return QString();
        }
        const QString name = m_text.mid(m_pos + 1, end - m_pos - 1).trimmed();
        const int dot = name.indexOf(QLatin1Char('.'));
        if (dot <= 0 || dot == name.size() - 1 || name.startsWith(QLatin1Char('@'))) {
            fail(QStringLiteral("campo non valido"));
            return QString();
        }
        for (const QChar c : name)
            if (!c.isLetterOrNumber() && c != QLatin1Char('_') && c != QLatin1Char('.')) {
                fail(QStringLiteral("campo non valido"));
                return QString();
            }
        m_pos = end + 1;
        return name;
    }

    // Date(y,m,d) → the back end's date.
    QDate date()
    {
        if (!word("date")) {
            fail(QStringLiteral("data attesa"));
            return QDate();
        }
        skipBlanks();
        if (peek() != QLatin1Char('(')) {
            fail(QStringLiteral("manca «(»"));
            return QDate();
        }
        ++m_pos;
        const int end = m_text.indexOf(QLatin1Char(')'), m_pos);
        if (end < 0) {
            fail(QStringLiteral("manca «)»"));
            return QDate();
        }
        const QStringList parts = m_text.mid(m_pos, end - m_pos).split(QLatin1Char(','));
        m_pos = end + 1;
        QList<int> n;
        for (const QString& p : parts) {
            bool ok = false;
            n << p.trimmed().toInt(&ok);
            if (!ok)
                n.clear();
            if (n.isEmpty())
                break;
        }
        const QDate d = n.size() == 3 ? QDate(n[0], n[1], n[2]) : QDate();
        if (!d.isValid())
            fail(QStringLiteral("data non valida"));
        return d;
    }

    enum class ValueKind {
        Plain,
        Flag,
        Invalid
    };
    struct Value
    {
        ValueKind kind = ValueKind::Invalid;
        QString sql;
        bool flag = false;
    };

    Value value()
    {
        skipBlanks();
        Value v;
        const QChar c = peek();
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            QString text;
            ++m_pos;
            bool closed = false;
            while (!atEnd()) {
                if (m_text.at(m_pos) == c) {
                    if (m_pos + 1 < m_text.size() && m_text.at(m_pos + 1) == c) {
                        text += c;
                        m_pos += 2;
                        continue;
                    }
                    closed = true;
                    ++m_pos;
                    break;
                }
                text += m_text.at(m_pos++);
            }
            if (!closed) {
                fail(QStringLiteral("testo non chiuso"));
                return v;
            }
            v.kind = ValueKind::Plain;
            v.sql = sqlText(text);
            return v;
        }
        if (c == QLatin1Char('{')) {
            v.sql = field();
            v.kind = v.sql.isEmpty() ? ValueKind::Invalid : ValueKind::Plain;
            return v;
        }
        if (c.isDigit() || c == QLatin1Char('-') || c == QLatin1Char('.')) {
            int end = m_pos + 1;
            while (end < m_text.size() && (m_text.at(end).isDigit() || m_text.at(end) == QLatin1Char('.')))
                ++end;
            const QString number = m_text.mid(m_pos, end - m_pos);
            bool ok = false;
            number.toDouble(&ok);
            if (!ok) {
                fail(QStringLiteral("numero non valido"));
                return v;
            }
            m_pos = end;
            v.kind = ValueKind::Plain;
            v.sql = number;
            return v;
        }
        if (word("true") || word("false")) {
            v.kind = ValueKind::Flag;
            v.flag = m_text.at(m_pos - 4).toLower() == QLatin1Char('t');
            return v;
        }
        const int save = m_pos;
        skipBlanks();
        if (m_text.mid(m_pos, 4).compare(QLatin1String("date"), Qt::CaseInsensitive) == 0) {
            const QDate d = date();
            if (!d.isValid())
                return v;
            v.kind = ValueKind::Plain;
            v.sql = sqlDateFor(d, m_tipoServer);
            return v;
        }
        m_pos = save;
        fail(QStringLiteral("valore atteso"));
        return v;
    }

    QString comparison()
    {
        const QString left = field();
        if (left.isEmpty())
            return QString();
        if (word("in")) {
            const QDate from = date();
            if (!word("to")) {
                fail(QStringLiteral("manca «TO»"));
                return QString();
            }
            const QDate to = date();
            if (!from.isValid() || !to.isValid())
                return QString();
            // Up to the end of the last day, also for values with a time.
            return QLatin1Char('(') + left + QStringLiteral(" >= ") + sqlDateFor(from, m_tipoServer)
                + QStringLiteral(" AND ") + left + QStringLiteral(" < ") + sqlDateFor(to.addDays(1), m_tipoServer)
                + QLatin1Char(')');
        }
        skipBlanks();
        static const QStringList ops{QStringLiteral("<>"), QStringLiteral("<="), QStringLiteral(">="),
                                     QStringLiteral("="),  QStringLiteral("<"),  QStringLiteral(">")};
        QString op;
        for (const QString& candidate : ops)
            if (m_text.mid(m_pos, candidate.size()) == candidate) {
                op = candidate;
                break;
            }
        if (op.isEmpty()) {
            fail(QStringLiteral("confronto atteso"));
            return QString();
        }
        m_pos += int(op.size());
        const Value right = value();
        if (right.kind == ValueKind::Invalid)
            return QString();
        if (right.kind == ValueKind::Flag) {
            // Flags are stored as 0 and 1, or -1 in older tables: true is not zero.
            if (op != QLatin1String("=") && op != QLatin1String("<>")) {
                fail(QStringLiteral("confronto non valido con un valore vero/falso"));
                return QString();
            }
            const bool wantTrue = (op == QLatin1String("=")) == right.flag;
            return left + (wantTrue ? QStringLiteral(" <> 0") : QStringLiteral(" = 0"));
        }
        return left + QLatin1Char(' ') + op + QLatin1Char(' ') + right.sql;
    }

    const QString& m_text;
    int m_tipoServer;
    int m_pos = 0;
    QString m_error;
};

} // namespace

SelezioneSql selezioneInSql(const QString& formula, int tipoServer) { return Translator(formula, tipoServer).run(); }

QList<std::pair<QString, QString>> splitFormule(const QString& formule)
{
    QList<std::pair<QString, QString>> list;
    for (const QString& item : formule.split(gSession().sqlSeparator)) {
        const int eq = item.indexOf(QLatin1Char('='));
        if (eq <= 0)
            continue;
        const QString name = item.left(eq).trimmed();
        if (!name.isEmpty())
            list << std::pair{name, item.mid(eq + 1).trimmed()};
    }
    return list;
}
