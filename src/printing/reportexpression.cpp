#include "printing/reportexpression.h"

#include "common/italiantext.h"

#include <QDate>
#include <QDateTime>
#include <QLocale>

#include <cmath>

namespace report {
namespace {

// Italian digits: thousands dot, decimal comma, no comma without decimals.
QString italiano(double number, int decimals)
{
    QString text = formattaImporto(number, decimals);
    if (decimals <= 0 && text.endsWith(QLatin1Char(',')))
        text.chop(1);
    return text;
}

struct Token
{
    enum class Kind {
        End,
        Number,
        Text,
        Field,
        Formula,
        Name,
        Op,
        Comma,
        Open,
        Close
    };
    Kind kind = Kind::End;
    QString text;
    int position = 0;
};

class Tokenizer
{
public:
    explicit Tokenizer(const QString& text)
        : m_text(text)
    { }

    bool tokenize(std::vector<Token>& out, QString* error)
    {
        const QString& s = m_text;
        int i = 0;
        while (i < s.size()) {
            const QChar c = s.at(i);
            if (c.isSpace()) {
                ++i;
                continue;
            }
            Token t;
            t.position = i;
            if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < s.size() && s.at(i + 1).isDigit())) {
                int j = i;
                while (j < s.size() && (s.at(j).isDigit() || s.at(j) == QLatin1Char('.')))
                    ++j;
                t.kind = Token::Kind::Number;
                t.text = s.mid(i, j - i);
                i = j;
            } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
                // A quote inside is written twice.
                QString value;
                int j = i + 1;
                bool closed = false;
                while (j < s.size()) {
                    if (s.at(j) == c) {
                        if (j + 1 < s.size() && s.at(j + 1) == c) {
                            value += c;
                            j += 2;
                            continue;
                        }
                        closed = true;
                        ++j;
                        break;
                    }
                    value += s.at(j++);
                }
                if (!closed)
                    return fail(error, QStringLiteral("testo non chiuso"), i);
                t.kind = Token::Kind::Text;
                t.text = value;
                i = j;
            } else if (c == QLatin1Char('{')) {
                const int end = s.indexOf(QLatin1Char('}'), i);
                if (end < 0)
                    return fail(error, QStringLiteral("campo non chiuso"), i);
                const QString inside = s.mid(i + 1, end - i - 1).trimmed();
                if (inside.startsWith(QLatin1Char('@'))) {
                    t.kind = Token::Kind::Formula;
                    t.text = inside.mid(1).trimmed().toLower();
                } else {
                    // Kept as written: table names are case-sensitive on some servers.
                    t.kind = Token::Kind::Field;
                    t.text = inside;
                    if (!t.text.contains(QLatin1Char('.')))
                        return fail(error, QStringLiteral("campo senza tabella"), i);
                }
                i = end + 1;
            } else if (c.isLetter() || c == QLatin1Char('_')) {
                int j = i;
                while (j < s.size() && (s.at(j).isLetterOrNumber() || s.at(j) == QLatin1Char('_')))
                    ++j;
                t.kind = Token::Kind::Name;
                t.text = s.mid(i, j - i);
                i = j;
            } else if (c == QLatin1Char('(')) {
                t.kind = Token::Kind::Open;
                ++i;
            } else if (c == QLatin1Char(')')) {
                t.kind = Token::Kind::Close;
                ++i;
            } else if (c == QLatin1Char(',')) {
                t.kind = Token::Kind::Comma;
                ++i;
            } else {
                static const QStringList ops{QStringLiteral("<>"), QStringLiteral("<="), QStringLiteral(">="),
                                             QStringLiteral("<"),  QStringLiteral(">"),  QStringLiteral("="),
                                             QStringLiteral("+"),  QStringLiteral("-"),  QStringLiteral("*"),
                                             QStringLiteral("/"),  QStringLiteral("&")};
                bool found = false;
                for (const QString& op : ops) {
                    if (s.mid(i, op.size()) == op) {
                        t.kind = Token::Kind::Op;
                        t.text = op;
                        i += int(op.size());
                        found = true;
                        break;
                    }
                }
                if (!found)
                    return fail(error, QStringLiteral("carattere non previsto «") + c + QStringLiteral("»"), i);
            }
            out.push_back(t);
        }
        Token end;
        end.position = int(s.size());
        out.push_back(end);
        return true;
    }

private:
    static bool fail(QString* error, const QString& what, int position)
    {
        if (error)
            *error = what + QStringLiteral(" alla posizione ") + QString::number(position + 1);
        return false;
    }
    const QString& m_text;
};

using Node = ExpressionNode;
using NodePtr = std::unique_ptr<Node>;

class Parser
{
public:
    Parser(std::vector<Token> tokens, QString* error)
        : m_tokens(std::move(tokens))
        , m_error(error)
    { }

    NodePtr parse()
    {
        NodePtr node = parseOr();
        if (node && peek().kind != Token::Kind::End)
            return fail(QStringLiteral("testo in più"));
        return node;
    }

private:
    const Token& peek() const { return m_tokens[m_pos]; }
    const Token& next() { return m_tokens[m_pos++]; }
    bool isWord(const char* word) const
    {
        return peek().kind == Token::Kind::Name && peek().text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    }
    bool isOp(const char* op) const { return peek().kind == Token::Kind::Op && peek().text == QLatin1String(op); }

    NodePtr fail(const QString& what)
    {
        if (m_error && m_error->isEmpty())
            *m_error = what + QStringLiteral(" alla posizione ") + QString::number(peek().position + 1);
        return nullptr;
    }

    static NodePtr binary(const QString& op, NodePtr left, NodePtr right)
    {
        auto node = std::make_unique<Node>();
        node->kind = Node::Kind::Binary;
        node->name = op;
        node->children.push_back(std::move(left));
        node->children.push_back(std::move(right));
        return node;
    }

    NodePtr parseOr()
    {
        NodePtr left = parseAnd();
        while (left && isWord("or")) {
            next();
            NodePtr right = parseAnd();
            if (!right)
                return nullptr;
            left = binary(QStringLiteral("or"), std::move(left), std::move(right));
        }
        return left;
    }

    NodePtr parseAnd()
    {
        NodePtr left = parseNot();
        while (left && isWord("and")) {
            next();
            NodePtr right = parseNot();
            if (!right)
                return nullptr;
            left = binary(QStringLiteral("and"), std::move(left), std::move(right));
        }
        return left;
    }

    NodePtr parseNot()
    {
        if (isWord("not")) {
            next();
            NodePtr operand = parseNot();
            if (!operand)
                return nullptr;
            auto node = std::make_unique<Node>();
            node->kind = Node::Kind::Unary;
            node->name = QStringLiteral("not");
            node->children.push_back(std::move(operand));
            return node;
        }
        return parseComparison();
    }

    NodePtr parseComparison()
    {
        NodePtr left = parseConcat();
        while (left && peek().kind == Token::Kind::Op
               && (isOp("=") || isOp("<>") || isOp("<") || isOp(">") || isOp("<=") || isOp(">="))) {
            const QString op = next().text;
            NodePtr right = parseConcat();
            if (!right)
                return nullptr;
            left = binary(op, std::move(left), std::move(right));
        }
        return left;
    }

    NodePtr parseConcat()
    {
        NodePtr left = parseAdditive();
        while (left && isOp("&")) {
            next();
            NodePtr right = parseAdditive();
            if (!right)
                return nullptr;
            left = binary(QStringLiteral("&"), std::move(left), std::move(right));
        }
        return left;
    }

    NodePtr parseAdditive()
    {
        NodePtr left = parseMultiplicative();
        while (left && (isOp("+") || isOp("-"))) {
            const QString op = next().text;
            NodePtr right = parseMultiplicative();
            if (!right)
                return nullptr;
            left = binary(op, std::move(left), std::move(right));
        }
        return left;
    }

    NodePtr parseMultiplicative()
    {
        NodePtr left = parseUnary();
        while (left && (isOp("*") || isOp("/"))) {
            const QString op = next().text;
            NodePtr right = parseUnary();
            if (!right)
                return nullptr;
            left = binary(op, std::move(left), std::move(right));
        }
        return left;
    }

    NodePtr parseUnary()
    {
        if (isOp("-")) {
            next();
            NodePtr operand = parseUnary();
            if (!operand)
                return nullptr;
            auto node = std::make_unique<Node>();
            node->kind = Node::Kind::Unary;
            node->name = QStringLiteral("-");
            node->children.push_back(std::move(operand));
            return node;
        }
        return parsePrimary();
    }

    NodePtr parsePrimary()
    {
        const Token& t = peek();
        auto node = std::make_unique<Node>();
        switch (t.kind) {
        case Token::Kind::Number:
            node->value = t.text.toDouble();
            next();
            return node;
        case Token::Kind::Text:
            node->value = t.text;
            next();
            return node;
        case Token::Kind::Field:
            node->kind = Node::Kind::Field;
            node->name = t.text.toLower();
            node->value = t.text;
            next();
            return node;
        case Token::Kind::Formula:
            node->kind = Node::Kind::Formula;
            node->name = t.text;
            next();
            return node;
        case Token::Kind::Open: {
            next();
            NodePtr inner = parseOr();
            if (!inner)
                return nullptr;
            if (peek().kind != Token::Kind::Close)
                return fail(QStringLiteral("manca «)»"));
            next();
            return inner;
        }
        case Token::Kind::Name: {
            const QString word = t.text.toLower();
            next();
            if (word == QLatin1String("true") || word == QLatin1String("false")) {
                node->value = word == QLatin1String("true");
                return node;
            }
            node->kind = Node::Kind::Call;
            node->name = word;
            if (peek().kind == Token::Kind::Open) {
                next();
                if (peek().kind != Token::Kind::Close) {
                    for (;;) {
                        NodePtr argument = parseOr();
                        if (!argument)
                            return nullptr;
                        node->children.push_back(std::move(argument));
                        if (peek().kind == Token::Kind::Comma) {
                            next();
                            continue;
                        }
                        break;
                    }
                }
                if (peek().kind != Token::Kind::Close)
                    return fail(QStringLiteral("manca «)»"));
                next();
            }
            if (!knownFunction(word, int(node->children.size())))
                return fail(QStringLiteral("funzione sconosciuta «") + t.text + QStringLiteral("»"));
            return node;
        }
        default: return fail(QStringLiteral("valore atteso"));
        }
    }

    static bool knownFunction(const QString& name, int arguments)
    {
        struct Arity
        {
            const char* name;
            int min;
            int max;
        };
        static const Arity functions[] = {
            {"sum", 1, 1},         {"count", 0, 1},      {"min", 1, 1},        {"max", 1, 1},       {"avg", 1, 1},
            {"round", 1, 2},       {"abs", 1, 1},        {"iif", 3, 3},        {"isnull", 1, 1},    {"totext", 1, 2},
            {"tonumber", 1, 1},    {"trim", 1, 1},       {"upper", 1, 1},      {"lower", 1, 1},     {"left", 2, 2},
            {"right", 2, 2},       {"mid", 2, 3},        {"len", 1, 1},        {"replace", 3, 3},   {"chr", 1, 1},
            {"pad", 2, 2},         {"date", 3, 3},       {"year", 1, 1},       {"month", 1, 1},     {"day", 1, 1},
            {"today", 0, 0},       {"pagenumber", 0, 0}, {"totalpages", 0, 0}, {"printdate", 0, 0}, {"printtime", 0, 0},
            {"recordnumber", 0, 0}};
        for (const Arity& f : functions)
            if (name == QLatin1String(f.name))
                return arguments >= f.min && arguments <= f.max;
        return false;
    }

    std::vector<Token> m_tokens;
    size_t m_pos = 0;
    QString* m_error;
};

QVariant call(const Node& node, const EvaluationContext& context)
{
    const QString& f = node.name;
    auto arg = [&](int i) { return evaluate(*node.children[size_t(i)], context); };
    const int n = int(node.children.size());
    if (f == QLatin1String("sum") || f == QLatin1String("count") || f == QLatin1String("min")
        || f == QLatin1String("max") || f == QLatin1String("avg"))
        return context.aggregate(f, n > 0 ? node.children[0].get() : nullptr);
    if (f == QLatin1String("pagenumber") || f == QLatin1String("totalpages") || f == QLatin1String("printdate")
        || f == QLatin1String("printtime") || f == QLatin1String("recordnumber"))
        return context.special(f);
    if (f == QLatin1String("iif"))
        return toBool(arg(0)) ? arg(1) : arg(2);
    if (f == QLatin1String("isnull")) {
        const QVariant v = arg(0);
        return v.isNull() || (v.typeId() == QMetaType::QString && v.toString().isEmpty());
    }
    if (f == QLatin1String("round")) {
        const double factor = std::pow(10.0, n > 1 ? toNumber(arg(1)) : 0.0);
        const double v = toNumber(arg(0)) * factor;
        // Half away from zero, on the value as printed.
        return std::round(v + (v >= 0 ? 1e-9 : -1e-9)) / factor;
    }
    if (f == QLatin1String("abs"))
        return std::fabs(toNumber(arg(0)));
    if (f == QLatin1String("totext")) {
        const QVariant v = arg(0);
        // Dates often come as ISO text from the file databases.
        if (n == 1 && v.typeId() == QMetaType::QString && v.toString().size() >= 10
            && v.toString().at(4) == QLatin1Char('-') && dateOf(v).isValid())
            return dateOf(v).toString(QStringLiteral("dd/MM/yyyy"));
        return n > 1 ? formatValue(v, QStringLiteral("num:") + QString::number(int(toNumber(arg(1)))), false)
                     : toText(v);
    }
    if (f == QLatin1String("tonumber"))
        return toNumber(arg(0));
    if (f == QLatin1String("trim"))
        return toText(arg(0)).trimmed();
    if (f == QLatin1String("upper"))
        return toText(arg(0)).toUpper();
    if (f == QLatin1String("lower"))
        return toText(arg(0)).toLower();
    if (f == QLatin1String("left"))
        return toText(arg(0)).left(qMax(0, int(toNumber(arg(1)))));
    if (f == QLatin1String("right"))
        return toText(arg(0)).right(qMax(0, int(toNumber(arg(1)))));
    if (f == QLatin1String("mid")) {
        const int start = qMax(1, int(toNumber(arg(1))));
        return n > 2 ? toText(arg(0)).mid(start - 1, qMax(0, int(toNumber(arg(2))))) : toText(arg(0)).mid(start - 1);
    }
    if (f == QLatin1String("len"))
        return double(toText(arg(0)).size());
    if (f == QLatin1String("replace"))
        return toText(arg(0)).replace(toText(arg(1)), toText(arg(2)));
    if (f == QLatin1String("chr")) {
        // The formula lists break lines with CHR(13).
        const int code = int(toNumber(arg(0)));
        return code == 13 ? QStringLiteral("\n") : code == 10 ? QString() : QString(QChar(code));
    }
    if (f == QLatin1String("pad")) {
        const QVariant v = arg(0);
        const QString text = isNumber(v) ? QString::number(qint64(std::llround(toNumber(v)))) : toText(v);
        return text.rightJustified(int(toNumber(arg(1))), QLatin1Char('0'));
    }
    if (f == QLatin1String("date"))
        return QDate(int(toNumber(arg(0))), int(toNumber(arg(1))), int(toNumber(arg(2))));
    if (f == QLatin1String("year"))
        return double(dateOf(arg(0)).year());
    if (f == QLatin1String("month"))
        return double(dateOf(arg(0)).month());
    if (f == QLatin1String("day"))
        return double(dateOf(arg(0)).day());
    if (f == QLatin1String("today"))
        return QDate::currentDate();
    return QVariant();
}

int compare(const QVariant& a, const QVariant& b)
{
    if (isNumber(a) && isNumber(b)) {
        const double x = toNumber(a);
        const double y = toNumber(b);
        return x < y ? -1 : x > y ? 1 : 0;
    }
    const QDate da = dateOf(a);
    const QDate db = dateOf(b);
    if (da.isValid() && db.isValid() && (a.typeId() == QMetaType::QDate || b.typeId() == QMetaType::QDate))
        return da < db ? -1 : da > db ? 1 : 0;
    return toText(a).compare(toText(b), Qt::CaseSensitive);
}

bool isTextual(const QVariant& v) { return v.typeId() == QMetaType::QString && !isNumber(v); }

} // namespace

Expression parseExpression(const QString& text, QString* error)
{
    std::vector<Token> tokens;
    QString fault;
    Tokenizer tokenizer(text);
    if (!tokenizer.tokenize(tokens, &fault)) {
        if (error)
            *error = fault;
        return nullptr;
    }
    Parser parser(std::move(tokens), &fault);
    NodePtr node = parser.parse();
    if (!node) {
        if (error)
            *error = fault;
        return nullptr;
    }
    return Expression(node.release());
}

void collectReferences(const ExpressionNode& node, QSet<QString>& fields, QSet<QString>& formulas)
{
    if (node.kind == ExpressionNode::Kind::Field)
        fields.insert(node.value.toString());
    else if (node.kind == ExpressionNode::Kind::Formula)
        formulas.insert(node.name);
    for (const auto& child : node.children)
        collectReferences(*child, fields, formulas);
}

QVariant evaluate(const ExpressionNode& node, const EvaluationContext& context)
{
    switch (node.kind) {
    case ExpressionNode::Kind::Literal: return node.value;
    case ExpressionNode::Kind::Field: return context.field(node.name);
    case ExpressionNode::Kind::Formula: return context.formula(node.name);
    case ExpressionNode::Kind::Call: return call(node, context);
    case ExpressionNode::Kind::Unary: {
        const QVariant v = evaluate(*node.children[0], context);
        if (node.name == QLatin1String("not"))
            return !toBool(v);
        return -toNumber(v);
    }
    case ExpressionNode::Kind::Binary: break;
    }
    const QString& op = node.name;
    if (op == QLatin1String("and"))
        return toBool(evaluate(*node.children[0], context)) && toBool(evaluate(*node.children[1], context));
    if (op == QLatin1String("or"))
        return toBool(evaluate(*node.children[0], context)) || toBool(evaluate(*node.children[1], context));
    const QVariant a = evaluate(*node.children[0], context);
    const QVariant b = evaluate(*node.children[1], context);
    if (op == QLatin1String("&"))
        return QString(toText(a) + toText(b));
    if (op == QLatin1String("+")) {
        if (isTextual(a) || isTextual(b) || (a.isNull() && isTextual(b)) || (b.isNull() && isTextual(a)))
            return QString(toText(a) + toText(b));
        return toNumber(a) + toNumber(b);
    }
    if (op == QLatin1String("-"))
        return toNumber(a) - toNumber(b);
    if (op == QLatin1String("*"))
        return toNumber(a) * toNumber(b);
    if (op == QLatin1String("/")) {
        const double d = toNumber(b);
        return d == 0 ? 0.0 : toNumber(a) / d;
    }
    const int c = compare(a, b);
    if (op == QLatin1String("="))
        return c == 0;
    if (op == QLatin1String("<>"))
        return c != 0;
    if (op == QLatin1String("<"))
        return c < 0;
    if (op == QLatin1String(">"))
        return c > 0;
    if (op == QLatin1String("<="))
        return c <= 0;
    return c >= 0;
}

bool isNumber(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long: return true;
    case QMetaType::QString: {
        // The servers give decimals as text ("12.50").
        bool ok = false;
        const QString text = value.toString();
        if (text.isEmpty())
            return false;
        text.toDouble(&ok);
        return ok;
    }
    default: return false;
    }
}

double toNumber(const QVariant& value)
{
    if (value.isNull())
        return 0;
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? 1 : 0;
    if (value.typeId() == QMetaType::QString) {
        bool ok = false;
        const double d = value.toString().toDouble(&ok);
        if (ok)
            return d;
        return QLocale(QLocale::Italian).toDouble(value.toString(), &ok);
    }
    return value.toDouble();
}

bool toBool(const QVariant& value)
{
    if (value.isNull())
        return false;
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (isNumber(value))
        return toNumber(value) != 0;
    const QString text = value.toString().trimmed().toLower();
    return !text.isEmpty() && text != QLatin1String("false") && text != QLatin1String("0");
}

QDate dateOf(const QVariant& value)
{
    if (value.typeId() == QMetaType::QDate)
        return value.toDate();
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().date();
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString().trimmed();
        QDate d = QDate::fromString(text.left(10), Qt::ISODate);
        if (!d.isValid())
            d = QDate::fromString(text.left(10), QStringLiteral("dd/MM/yyyy"));
        return d;
    }
    return QDate();
}

QString toText(const QVariant& value)
{
    if (value.isNull())
        return QString();
    switch (value.typeId()) {
    case QMetaType::QDate: return value.toDate().toString(QStringLiteral("dd/MM/yyyy"));
    case QMetaType::QDateTime: return value.toDateTime().toString(QStringLiteral("dd/MM/yyyy HH:mm"));
    case QMetaType::Bool: return value.toBool() ? QStringLiteral("Sì") : QStringLiteral("No");
    case QMetaType::Double:
    case QMetaType::Float: {
        const double d = value.toDouble();
        if (d == std::trunc(d) && std::fabs(d) < 1e15)
            return QString::number(qint64(d));
        return italiano(d, 2);
    }
    default: return value.toString();
    }
}

QString formatValue(const QVariant& value, const QString& format, bool blankZero)
{
    if (format.isEmpty() || format == QLatin1String("text"))
        return blankZero && isNumber(value) && toNumber(value) == 0 ? QString() : toText(value);
    if (format == QLatin1String("date")) {
        const QDate d = dateOf(value);
        return d.isValid() ? d.toString(QStringLiteral("dd/MM/yyyy")) : toText(value);
    }
    if (value.isNull() || (value.typeId() == QMetaType::QString && value.toString().isEmpty()))
        return QString();
    const double number = toNumber(value);
    if (blankZero && std::fabs(number) < 0.00005)
        return QString();
    if (format == QLatin1String("money"))
        return italiano(number, 2);
    if (format == QLatin1String("qty")) {
        // Whole quantities with no decimals; others with the decimals they have, at most three.
        if (number == std::trunc(number))
            return italiano(number, 0);
        return italiano(number, std::fabs(number * 100 - std::round(number * 100)) < 1e-6 ? 2 : 3);
    }
    if (format == QLatin1String("int"))
        return italiano(number, 0);
    if (format.startsWith(QLatin1String("num:")))
        return italiano(number, format.mid(4).toInt());
    if (format.startsWith(QLatin1String("pad:")))
        return QString::number(qint64(std::llround(number))).rightJustified(format.mid(4).toInt(), QLatin1Char('0'));
    return toText(value);
}

} // namespace report
