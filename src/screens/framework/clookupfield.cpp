#include "clookupfield.h"

#include "frmricerca.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>

cLookupField::cLookupField(QLineEdit* field, QLabel* label, Validator validate, const QString& searchSql, QObject* parent)
    : QObject(parent)
    , m_field(field)
    , m_label(label)
    , m_validate(std::move(validate))
    , m_searchSql(searchSql)
{
    connect(field, &QLineEdit::editingFinished, this, &cLookupField::validateTyped);
}

void cLookupField::show(const QString& code, const QString& description)
{
    m_shownCode = code;
    m_field->setText(code);
    m_label->setText(description);
}

void cLookupField::clear()
{
    m_rid = 0;
    show(QString(), QString());
}

void cLookupField::setRid(int rid)
{
    clear();
    if (rid < 1)
        return;
    QString code, description;
    int found = rid;
    if (m_validate(code, description, found)) {
        m_rid = found;
        show(code, description);
    }
}

void cLookupField::validateTyped()
{
    const QString typed = m_field->text().trimmed();
    if (typed == m_shownCode)
        return;
    const int before = m_rid;
    m_rid = 0;
    QString code = typed, description;
    if (!typed.isEmpty() && m_validate(code, description, m_rid))
        show(code, description);
    else
        clear();
    if (m_rid != before)
        Q_EMIT changed(m_rid);
}

void cLookupField::browse()
{
    if (!m_field->isEnabled())
        return;
    const int chosen = frmRicerca::cerca(m_searchSql);
    if (chosen <= 0)
        return;
    const int before = m_rid;
    setRid(chosen);
    m_field->setFocus();
    if (m_rid != before)
        Q_EMIT changed(m_rid);
}

void cLookupField::setEnabled(bool enabled)
{
    m_field->setEnabled(enabled);
    m_label->setEnabled(enabled);
    if (m_button)
        m_button->setEnabled(enabled);
}

void cLookupField::setButton(QAbstractButton* button)
{
    m_button = button;
}
