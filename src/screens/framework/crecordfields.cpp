// The declared fields of a record screen: their controls, what they show
// and what they hold.

#include "data/recordset.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/crecordscreen.h"
#include "screens/framework/fieldlimits.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

using fields::Field;
using fields::Kind;

namespace {

constexpr int kCodeWidth = 120;
constexpr int kNumberWidth = 120;
constexpr int kKeyWidth = 110;
constexpr int kDescriptionMinWidth = 200;
// Texts up to this length get a field of their own width.
constexpr int kShortTextLength = 16;

int inputKind(const Field& f)
{
    if (f.kind == Kind::Date)
        return typedinput::Data;
    if (f.kind != Kind::Number)
        return typedinput::Testo;
    if (f.has(fields::WholeNumber))
        return f.has(fields::ZeroWhenEmpty) ? typedinput::InteroZero : typedinput::Intero;
    return f.has(fields::ZeroWhenEmpty) ? typedinput::DecimaleZero : typedinput::Decimale;
}

// The description label beside a key field: txtCausale gives lblCausale.
QString labelName(const QString& control) { return QStringLiteral("lbl") + control.mid(3); }

} // namespace

cRecordScreen::Bound cRecordScreen::bind(const Field& f, int& keyIndex)
{
    Bound b;
    QWidget* parent = fraMain();
    switch (f.kind) {
    case Kind::Flag: {
        auto* box = new QCheckBox(f.caption, parent);
        box->setObjectName(f.control);
        (new cCheckBox(box, this))->setCKeyRef(m_keys);
        b.control = b.row = box;
        break;
    }
    case Kind::Choice: {
        b.row = new QWidget(parent);
        auto* row = new QHBoxLayout(b.row);
        row->setContentsMargins(0, 0, 0, 0);
        b.group = new QButtonGroup(b.row);
        for (int i = 0; i < f.choices.size(); ++i) {
            auto* option = new QRadioButton(f.choices.at(i), b.row);
            option->setObjectName(f.control + QLatin1Char('_') + QString::number(i));
            b.group->addButton(option, i);
            row->addWidget(option);
            (new cOptionButton(option, this))->setCKeyRef(m_keys);
        }
        row->addStretch(1);
        b.control = b.group->button(0);
        break;
    }
    case Kind::Combo: {
        auto* combo = new QComboBox(parent);
        combo->setObjectName(f.control);
        (new cComboBox(combo, this))->setCKeyRef(m_keys);
        b.control = b.row = combo;
        break;
    }
    case Kind::Key: {
        auto* edit = new QLineEdit(parent);
        edit->setObjectName(f.control);
        auto* label = new QLabel(parent);
        label->setObjectName(labelName(f.control));
        label->setMinimumWidth(kDescriptionMinWidth);
        label->setFrameShape(QFrame::StyledPanel);
        label->setFrameShadow(QFrame::Sunken);
        const int index = keyIndex++;
        b.lookup = addLookup(index, edit, label, f.lookup->validate, lookupSearch(*f.lookup));
        keepReadable(edit, kKeyWidth); // with the font of its input
        limitToColumn(edit, QString::fromLatin1(f.lookup->table), QString::fromLatin1(f.lookup->codeColumn));
        b.row = new QWidget(parent);
        auto* row = new QHBoxLayout(b.row);
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(withBrowseButton(edit, index));
        row->addWidget(label, 1);
        if (*f.lookup->editor)
            b.lookup->setEditor(QString::fromLatin1(f.lookup->editor),
                                *f.lookup->editorArgument ? QVariant(QString::fromLatin1(f.lookup->editorArgument))
                                                          : QVariant());
        b.control = edit;
        break;
    }
    default: {
        auto* edit = new QLineEdit(parent);
        edit->setObjectName(f.control);
        b.input = new cTextBox(edit, inputKind(f), this);
        if (f.kind == Kind::Number) {
            b.input->setDecimalPrecision(f.decimals);
            keepReadable(edit, kNumberWidth);
        }
        limitToColumn(edit, m_fields.table(), f.column);
        b.control = b.row = edit;
        if (f.isCode()) {
            keepReadable(edit, kCodeWidth);
            setCodeField(b.input);
            b.row = withBrowseButton(edit, 0);
        } else if (f.column.compare(QLatin1String("DESCRIZIONE"), Qt::CaseInsensitive) == 0) {
            setDescriptionField(b.input);
            keepReadable(edit);
        } else {
            b.input->setCKeyRef(m_keys);
            // A short text (a bank's ABI, a province) is as wide as it can be long.
            if (f.kind == Kind::Text && f.length > 0 && f.length <= kShortTextLength)
                keepReadable(edit, readableWidth(edit, f.length + 2));
            else
                keepReadable(edit);
        }
        break;
    }
    }
    return b;
}

void cRecordScreen::setFields(fields::FieldList list, int firstKeyIndex)
{
    m_fields = std::move(list);
    m_bound.clear();
    int keyIndex = firstKeyIndex;
    for (const Field& f : m_fields.fields())
        m_bound << bind(f, keyIndex);
}

void cRecordScreen::setFieldsTable(const QString& table)
{
    m_fields.setTable(table);
    for (int i = 0; i < m_fields.size(); ++i)
        if (auto* edit = qobject_cast<QLineEdit*>(m_bound.at(i).control); edit && !m_bound.at(i).lookup)
            limitToColumn(edit, table, m_fields.at(i).column);
}

QWidget* cRecordScreen::control(const QString& name) const
{
    const int i = m_fields.indexOf(name);
    return i < 0 ? nullptr : m_bound.at(i).control;
}

QLineEdit* cRecordScreen::lineEdit(const QString& name) const { return static_cast<QLineEdit*>(control(name)); }

QString cRecordScreen::text(const QString& name) const { return lineEdit(name)->text(); }

bool cRecordScreen::isChecked(const QString& name) const { return static_cast<QCheckBox*>(control(name))->isChecked(); }

QWidget* cRecordScreen::fieldRow(const QString& name) const
{
    const int i = m_fields.indexOf(name);
    return i < 0 ? nullptr : m_bound.at(i).row;
}

cLookupField* cRecordScreen::lookupOf(const QString& name) const
{
    const int i = m_fields.indexOf(name);
    return i < 0 ? nullptr : m_bound.at(i).lookup;
}

QFormLayout* cRecordScreen::layoutFields()
{
    auto* form = new QFormLayout(fraMain());
    for (int i = 0; i < m_fields.size(); ++i) {
        const Field& f = m_fields.at(i);
        form->addRow(f.kind == Kind::Flag ? QString() : f.label(), m_bound.at(i).row);
    }
    return form;
}

QWidget* cRecordScreen::fieldGroup(const QString& title, const QStringList& controls)
{
    QWidget* box = title.isEmpty() ? new QWidget(fraMain()) : new QGroupBox(title, fraMain());
    auto* form = new QFormLayout(box);
    for (const QString& name : controls) {
        const Field& f = m_fields.at(m_fields.indexOf(name));
        form->addRow(f.kind == Kind::Flag ? QString() : f.label(), fieldRow(name));
    }
    return box;
}

QStringList cRecordScreen::shownValues() const
{
    QStringList values;
    values.reserve(m_fields.size());
    for (int i = 0; i < m_fields.size(); ++i) {
        const Field& f = m_fields.at(i);
        const Bound& b = m_bound.at(i);
        switch (f.kind) {
        case Kind::Flag:
            values << (static_cast<QCheckBox*>(b.control)->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
            break;
        case Kind::Choice: values << QString::number(qMax(0, b.group->checkedId())); break;
        case Kind::Key: values << (b.lookup->rid() > 0 ? QString::number(b.lookup->rid()) : QString()); break;
        case Kind::Combo: {
            const auto* combo = static_cast<QComboBox*>(b.control);
            if (combo->currentIndex() < 0)
                values << QString();
            else
                values << (!f.has(fields::ComboText)                                 ? combo->currentData().toString()
                               : combo->currentData().typeId() == QMetaType::QString ? combo->currentData().toString()
                                                                                     : combo->currentText());
            break;
        }
        default: values << static_cast<QLineEdit*>(b.control)->text(); break;
        }
    }
    return values;
}

void cRecordScreen::showValues(const QStringList& values)
{
    for (int i = 0; i < m_fields.size(); ++i) {
        const Field& f = m_fields.at(i);
        const Bound& b = m_bound.at(i);
        const QString& v = values.at(i);
        switch (f.kind) {
        case Kind::Flag: static_cast<QCheckBox*>(b.control)->setChecked(v == QLatin1String("1")); break;
        case Kind::Choice:
            if (QAbstractButton* option = b.group->button(v.toInt()))
                option->setChecked(true);
            break;
        case Kind::Key: b.lookup->setRid(v.toInt()); break;
        case Kind::Combo: {
            auto* combo = static_cast<QComboBox*>(b.control);
            // A combo of texts finds the item by its text, or by the text it
            // stands for ("C" for "Cliente").
            int index = -1;
            if (f.has(fields::ComboText))
                index = combo->findData(v) >= 0 ? combo->findData(v) : combo->findText(v);
            else if (!v.isEmpty())
                index = combo->findData(v.toInt());
            combo->setCurrentIndex(index);
            break;
        }
        default: static_cast<QLineEdit*>(b.control)->setText(v); break;
        }
    }
}

void cRecordScreen::clearFields() { showValues(m_fields.emptyValues()); }

void cRecordScreen::fillFields(const Recordset& rs) { showValues(m_fields.shownValues(rs)); }

QStringList cRecordScreen::faults() const { return m_fields.missing(shownValues()); }

QString cRecordScreen::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM ") + tableName()
        + QStringLiteral(" ORDER BY DESCRIZIONE ");
}
