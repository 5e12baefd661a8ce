#include "screens/framework/fieldlimits.h"

#include "data/schema.h"

#include <QFontMetrics>
#include <QLineEdit>

namespace {

// Drops the halves of characters that an edit left in the field: a line
// edit at its limit takes as many code units of a paste as still fit, and
// may keep the first half of an emoji. A first half just before the cursor
// of a field that is not full stays: its other half may be the next key.
void dropHalfCharacters(QLineEdit* field)
{
    const QString text = field->text();
    const int cursor = field->cursorPosition();
    const bool full = text.size() >= field->maxLength();
    QString whole;
    whole.reserve(text.size());
    int newCursor = cursor;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const bool pair = c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (pair) {
            whole += c;
            whole += text.at(++i);
        } else if (!c.isSurrogate() || (c.isHighSurrogate() && i + 1 == cursor && !full)) {
            whole += c;
        } else if (i < cursor) {
            --newCursor;
        }
    }
    if (whole.size() == text.size())
        return;
    field->setText(whole);
    field->setCursorPosition(newCursor);
}

} // namespace

int columnLength(const QString& table, const QString& column)
{
    const schema::Table* t = schema::findTable(table);
    if (!t)
        return 0;
    for (const schema::Column& c : t->columns)
        if (c.name.compare(column, Qt::CaseInsensitive) == 0)
            return c.kind == schema::ColKind::Text ? c.length : 0;
    return 0;
}

int limitToColumn(QLineEdit* field, const QString& table, const QString& column)
{
    const int length = columnLength(table, column);
    if (!field || length <= 0)
        return 0;
    field->setMaxLength(length);
    // Once per field, however often its table changes (the generic editor).
    if (!field->property("orvColumnLimit").toBool()) {
        field->setProperty("orvColumnLimit", true);
        QObject::connect(field, &QLineEdit::textEdited, field, [field] { dropHalfCharacters(field); });
    }
    return length;
}

int readableWidth(const QLineEdit* field, int characters)
{
    // The frame and margins of a line edit around its text.
    constexpr int kFieldMargins = 12;
    // Upper-case letters are the widest of a code.
    const QFontMetrics metrics = field->fontMetrics();
    return qMax(metrics.averageCharWidth(), metrics.horizontalAdvance(QLatin1Char('X'))) * characters + kFieldMargins;
}

void keepReadable(QLineEdit* field, int maximum)
{
    // Codes, keys and numbers ("01003001", "1.234,56") never narrow below this.
    constexpr int kShortFieldCharacters = 8;
    const int minimum = readableWidth(field, kShortFieldCharacters);
    if (maximum > 0)
        field->setMaximumWidth(qMax(maximum, minimum));
    field->setMinimumWidth(minimum);
}
