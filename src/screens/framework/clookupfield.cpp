#include "screens/framework/clookupfield.h"

#include "common/msgbox.h"
#include "core/screenregistry.h"
#include "screens/framework/crecordscreen.h"
#include "screens/framework/frmricerca.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

cLookupField::cLookupField(QLineEdit* field, QLabel* label, Validator validate, const QString& searchSql,
                           QObject* parent)
    : QObject(parent)
    , m_field(field)
    , m_label(label)
    , m_validate(std::move(validate))
    , m_searchSql(searchSql)
{
    connect(field, &QLineEdit::editingFinished, this, &cLookupField::validate);
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

void cLookupField::setTable(Validator validate, const QString& searchSql, const QString& searchTitle)
{
    m_validate = std::move(validate);
    m_searchSql = searchSql;
    m_searchTitle = searchTitle;
    clear();
}

void cLookupField::setRid(int rid)
{
    clear();
    if (rid < 1)
        return;
    // A key whose row no longer exists shows nothing and counts as none.
    QString code, description;
    int found = rid;
    if (m_validate(code, description, found) && found > 0) {
        m_rid = found;
        show(code, description);
    }
}

void cLookupField::setRecord(int rid, const QString& code, const QString& description)
{
    m_rid = rid > 0 ? rid : 0;
    show(m_rid > 0 ? code : QString(), m_rid > 0 ? description : QString());
}

void cLookupField::validate()
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
    const int chosen = frmRicerca::cerca(m_searchSql, m_searchTitle);
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
    for (QAbstractButton* button : {m_button.data(), m_newButton.data()})
        if (button)
            button->setEnabled(enabled);
}

void cLookupField::setEditor(const QString& screen, const QVariant& argument)
{
    m_editor = screen;
    m_editorArgument = argument;
    auto* row = m_button ? qobject_cast<QBoxLayout*>(m_button->parentWidget()->layout()) : nullptr;
    if (!row || m_newButton)
        return;
    auto* button = new QToolButton(m_button->parentWidget());
    button->setObjectName(QStringLiteral("cmdNuovo") + m_field->objectName().mid(3));
    button->setIcon(QIcon::fromTheme(QStringLiteral("document-new")));
    button->setToolTip(QStringLiteral("Nuovo [F4]"));
    button->setFocusPolicy(Qt::NoFocus);
    row->insertWidget(row->indexOf(m_button) + 1, button);
    connect(button, &QToolButton::clicked, this, &cLookupField::openEditor);
    m_newButton = button;
}

// A screen opened once for the whole program comes forward as it is when it
// is already open, perhaps with a record half typed in it. A blank new record
// is simply taken; anything else is emptied only when the user says so:
// answered No, the window stays in front with its work, not tied to this field.
void cLookupField::openEditor()
{
    if (m_editor.isEmpty() || !m_field->isEnabled())
        return;
    QList<QPointer<cRecordScreen>> open;
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* screen = qobject_cast<cRecordScreen*>(widget); screen && screen->objectName() == m_editor)
            open.append(screen);
    auto* screen = qobject_cast<cRecordScreen*>(screens::openScreen(m_editor, m_editorArgument));
    if (!screen)
        return;
    if (open.contains(screen) && !isBlank(*screen)
        && msgBox(QStringLiteral("La finestra ") + screen->title()
                      + QStringLiteral(" è già aperta: abbandonare le modifiche e creare un nuovo record?"),
                  vb::YesNo | vb::Question | vb::DefaultButton2)
            != vb::Yes)
        return;
    screen->newRecord();
    connect(screen, &cRecordScreen::evtUnloadWithRecord, this, &cLookupField::takeBack, Qt::UniqueConnection);
}

bool cLookupField::isBlank(const cRecordScreen& screen)
{
    return screen.currentRid() <= 0 && screen.shownValues() == screen.fieldList().emptyValues();
}

void cLookupField::takeBack(int rid)
{
    const int before = m_rid;
    setRid(rid);
    if (m_rid != before)
        Q_EMIT changed(m_rid);
}

void cLookupField::setButton(QAbstractButton* button) { m_button = button; }
