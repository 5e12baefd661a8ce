#pragma once
// The expressions of the report templates: formula fields, printed fields,
// the conditions that hide a section or an object, group values.
//
//   literals      12  3.5  'text'  "text"  True  False
//   fields        {Table.Field}      formulas  {@NAME}
//   operators     + - * /   & (joins as text)   = <> < > <= >=   And Or Not
//                 "+" joins when one side is text, as the formula lists write
//                 'line one' + CHR(13) + 'line two'
//   functions     Sum Count Min Max Avg (over the rows of the group, or of the
//                 report outside groups), Round Abs IIf IsNull ToText ToNumber
//                 Trim Upper Lower Left Right Mid Len Replace Chr Pad Date Year
//                 Month Day Today PageNumber TotalPages PrintDate PrintTime
//                 RecordNumber
//
// Text is formatted the Italian way: decimal comma, thousands dot,
// DD/MM/YYYY.

#include <QSet>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

namespace report {

struct ExpressionNode
{
    enum class Kind {
        Literal,
        Field,
        Formula,
        Unary,
        Binary,
        Call
    };
    Kind kind = Kind::Literal;
    QVariant value; // literal; a field's reference as written
    QString name;   // field key "table.field" (lower case), formula, function, operator
    std::vector<std::unique_ptr<ExpressionNode>> children;
};

using Expression = std::shared_ptr<const ExpressionNode>;

// Parses; on a fault gives nullptr and the fault in `error`.
Expression parseExpression(const QString& text, QString* error);

// The fields ("Table.Field" as written) and the formula names (lower case)
// an expression reads.
void collectReferences(const ExpressionNode& node, QSet<QString>& fields, QSet<QString>& formulas);

// What an expression sees while it is evaluated.
class EvaluationContext
{
public:
    virtual ~EvaluationContext() = default;
    virtual QVariant field(const QString& key) const = 0;
    virtual QVariant formula(const QString& name) const = 0;
    // Sum, Count, Min, Max, Avg of `argument` over the rows in scope.
    virtual QVariant aggregate(const QString& function, const ExpressionNode* argument) const = 0;
    // PageNumber, TotalPages, PrintDate, PrintTime, RecordNumber.
    virtual QVariant special(const QString& name) const = 0;
};

QVariant evaluate(const ExpressionNode& node, const EvaluationContext& context);

// Helpers shared with the layout.
bool isNumber(const QVariant& value);
double toNumber(const QVariant& value);
bool toBool(const QVariant& value);
// A value as the reports print it when no format is given.
QString toText(const QVariant& value);
// A value in one of the formats of the templates: money, qty, int, date,
// text, num:N, pad:N; `blankZero` prints a zero as nothing.
QString formatValue(const QVariant& value, const QString& format, bool blankZero);
// A date from a date, date-time or ISO text value; invalid otherwise.
QDate dateOf(const QVariant& value);

} // namespace report
