#include "screens/framework/crecordscreen.h"

#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"
#include "screens/framework/cfieldleave.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/frmricerca.h"
#include "screens/framework/waitcursor.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

struct Command
{
    const char* caption;
    const char* icon;
    Qt::Key key;
};

const Command kCommands[] = {
    {"Nuovo [F2]", "document-new", Qt::Key_F2},
    {"Salva [F5]", "document-save", Qt::Key_F5},
    {"Elimina [F7]", "edit-delete", Qt::Key_F7},
    {"Aggiorna [F11]", "view-refresh", Qt::Key_F11},
};

} // namespace

cRecordScreen::cRecordScreen(const QString& typeName, const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_typeName(typeName)
    , m_title(title)
{
    setObjectName(typeName);
    setWindowTitle(title);
    m_keys = new cKeyFunction(this);
    connect(m_keys, &cKeyFunction::evtFunctionKeyPressed, this, &cRecordScreen::onFunctionKey);

    m_fraMain = new QWidget(this);
    m_fraMain->setObjectName(QStringLiteral("fraMain"));
    m_lblRID = new QLabel(this);
    m_lblRID->setObjectName(QStringLiteral("lblRID"));
    m_lblRID->setVisible(false);

    auto* commands = new QHBoxLayout;
    for (int i = 0; i < int(std::size(kCommands)); ++i) {
        auto* button = new QPushButton(QIcon::fromTheme(QString::fromLatin1(kCommands[i].icon)),
                                       QString::fromLatin1(kCommands[i].caption), this);
        button->setObjectName(QStringLiteral("cmdCommand_") + QString::number(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] {
            // A field that refused to be left kept the cursor: no command.
            if (!m_leave->takeRefused())
                cmdCommand_Click(i);
        });
        commands->addWidget(button);
        m_cmdCommand.append(button);
        auto* shortcut =
            new QShortcut(QKeySequence(kCommands[i].key), this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, i] { pressCommand(i); });
    }
    commands->addStretch(1);
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, &cRecordScreen::closeScreen);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_fraMain, 1);
    layout->addLayout(commands);

    // Leaving the code field loads its record; the other fields have their
    // screen's rules.
    m_leave = new cFieldLeave(this, [this](QWidget* old) {
        if (m_code && old == m_code->TextBoxRef()) {
            onCodeFieldLeft();
            return true;
        }
        return old->objectName().isEmpty() || fieldLeft(old->objectName());
    });
}

cRecordScreen::~cRecordScreen() = default;

QString cRecordScreen::tag(const QString& procedure) const { return m_typeName + QLatin1Char('.') + procedure; }

void cRecordScreen::setCodeField(cTextBox* code)
{
    m_code = code;
    code->setCaseState(1);
    code->setCKeyRef(m_keys);
    connect(code, &cTextBox::destroyed, this, [this] { m_code = nullptr; });
}

// Leaving the code field for another field of this screen loads the record
// of the code typed, if any. A code that is the one of the record shown
// loads nothing, so nothing typed is lost.
void cRecordScreen::onCodeFieldLeft()
{
    const QString code = m_code->TextBoxRef()->text().trimmed();
    m_code->TextBoxRef()->setText(code);
    if (!code.isEmpty() && !(currentRid() > 0 && code == m_shownCode))
        codeLeft(code);
}

void cRecordScreen::setDescriptionField(cTextBox* description)
{
    m_description = description;
    description->setCKeyRef(m_keys);
}

void cRecordScreen::codeLeft(const QString& code) { showData(0, code); }

void cRecordScreen::setCommandCaption(int index, const QString& caption) { m_cmdCommand.at(index)->setText(caption); }

QString cRecordScreen::codeText() const { return m_code ? m_code->TextBoxRef()->text() : QString(); }

int cRecordScreen::currentRid() const { return m_lblRID->text().toInt(); }

void cRecordScreen::setTitle(const QString& title)
{
    m_title = title;
    setWindowTitle(title);
}

void cRecordScreen::codeShown() { m_shownCode = codeText().trimmed(); }

void cRecordScreen::setRid(int rid) { m_lblRID->setText(rid > 0 ? QString::number(rid) : QString()); }

void cRecordScreen::startMe(bool keepCase, bool startNew, int rid)
{
    if (m_description)
        m_description->setCaseState(keepCase ? 0 : 1);
    setWindowTitle(m_title);
    if (startNew)
        newRecord();
    else
        showData(rid, QString());
}

void cRecordScreen::showData(int rid, const QString& codice)
{
    if (rid < 1 && codice.isEmpty())
        return;
    QString sql = selectStatement();
    sql += QStringLiteral(" WHERE ")
        + (rid >= 1 ? QStringLiteral("RID = ") + QString::number(rid) : codeCondition(codice.trimmed()));
    const fields::Field* code = m_fields.codeField();
    sql += QStringLiteral(" ORDER BY ") + (code ? code->column : QStringLiteral("CODICE")) + QLatin1Char(' ');
    WaitCursor wait;
    const cReader rs(sql, tag(QStringLiteral("showData ")));
    if (!rs || rs->eof())
        return;
    clearFields();
    fillFields(*rs);
    setRid(int(rs->integer(QStringLiteral("RID"))));
    codeShown();
}

QString cRecordScreen::codeCondition(const QString& code) const
{
    const fields::Field* field = m_fields.codeField();
    if (!field)
        return QStringLiteral("CODICE = ") + sqlText(code);
    return field->column + QStringLiteral(" = ")
        + (field->kind == fields::Kind::Number ? QString::number(code.toLongLong()) : sqlText(code));
}

bool cRecordScreen::newRecord()
{
    clearFields();
    setRid(0);
    m_shownCode.clear();
    setWindowTitle(m_title);
    if (m_code)
        m_code->TextBoxRef()->setFocus();
    return true;
}

QString cRecordScreen::faultsMessage(const QStringList& faults)
{
    return QStringLiteral("Attenzione:\n") + faults.join(QLatin1Char('\n'));
}

bool cRecordScreen::controllaInserimento()
{
    const QStringList found = faults();
    if (found.isEmpty())
        return false;
    msgBox(faultsMessage(found), vb::Exclamation);
    return true;
}

bool cRecordScreen::saveRecord()
{
    if (controllaInserimento())
        return false;
    WaitCursor wait;
    int rid = currentRid();
    {
        // The row and what belongs to it are written together or not at all;
        // a new key is shown only once it is committed.
        cTransaction transaction(tag(QStringLiteral("saveRecord")));
        if (!transaction)
            return false;
        rid = writeRecord(rid);
        if (rid <= 0 || !saveDetails(rid) || !transaction.commit())
            return false;
    }
    setRid(rid);
    codeShown();
    setWindowTitle(m_title + QStringLiteral(" - ") + codeText());
    return true;
}

int cRecordScreen::writeRecord(int rid)
{
    if (rid <= 0)
        return gAdoSqlServer().getIDByInsert(insertStatement(), tag(QStringLiteral("saveRecord")),
                                             QStringLiteral("RID"), tableName());
    return gAdoSqlServer().executeSQL(updateStatement(rid), tag(QStringLiteral("saveRecord"))) ? rid : -1;
}

bool cRecordScreen::deleteRecord()
{
    const int rid = currentRid();
    if (rid <= 0)
        return false;
    if (rid == 1 && protectsFirstRow()) {
        msgBox(QStringLiteral("Impossibile eliminare questo record"), vb::Critical);
        return false;
    }
    if (msgBox(deleteQuestion(), vb::YesNo | vb::Question | vb::DefaultButton2) != vb::Yes)
        return false;
    return removeRecord(rid);
}

QString cRecordScreen::deleteQuestion() const
{
    return QStringLiteral("Eliminare il record ") + codeText() + QStringLiteral("?");
}

bool cRecordScreen::removeRecord(int rid)
{
    WaitCursor wait;
    if (!gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM ") + tableName() + QStringLiteral(" WHERE RID = ")
                                        + QString::number(rid),
                                    tag(QStringLiteral("deleteRecord"))))
        return false;
    newRecord();
    return true;
}

QWidget* cRecordScreen::withBrowseButton(QWidget* field, int index)
{
    auto* row = new QWidget(field->parentWidget());
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    field->setParent(row);
    layout->addWidget(field);
    auto* button = new QToolButton(row);
    button->setObjectName(QStringLiteral("cmdSfoglia_") + QString::number(index));
    button->setIcon(QIcon::fromTheme(QStringLiteral("edit-find")));
    button->setToolTip(QStringLiteral("Cerca [F3]"));
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QToolButton::clicked, this, [this, index] { cmdSfoglia_Click(index); });
    if (cLookupField* lookup = m_lookups.value(index))
        lookup->setButton(button);
    layout->addWidget(button);
    layout->addStretch(1);
    return row;
}

void cRecordScreen::refreshRecord() { showData(currentRid(), QString()); }

void cRecordScreen::cmdCommand_Click(int index)
{
    switch (index) {
    case 0: newRecord(); break;
    case 1: saveRecord(); break;
    case 2: deleteRecord(); break;
    case 3: refreshRecord(); break;
    default: break;
    }
}

void cRecordScreen::pressCommand(int index)
{
    // As a click: the field being left formats itself first.
    QPushButton* button = m_cmdCommand.at(index);
    m_leave->clearRefused();
    button->setFocus(Qt::ShortcutFocusReason);
    if (!m_leave->takeRefused())
        button->click();
}

void cRecordScreen::cmdSfoglia_Click(int index)
{
    if (index > 0) {
        if (cLookupField* lookup = m_lookups.value(index))
            lookup->browse();
        return;
    }
    const int rid = frmRicerca::cerca(searchStatement(), QStringLiteral("Ricerca - ") + m_title);
    if (rid > 0)
        showData(rid, QString());
}

cLookupField* cRecordScreen::addLookup(int index, QLineEdit* field, QLabel* label,
                                       std::function<bool(QString&, QString&, int&)> validate, const QString& searchSql)
{
    auto* input = new cTextBox(field, typedinput::Testo, this);
    input->setCaseState(1);
    input->setCKeyRef(m_keys);
    auto* lookup = new cLookupField(field, label, std::move(validate), searchSql, this);
    m_lookups.insert(index, lookup);
    return lookup;
}

void cRecordScreen::onFunctionKey(const QString& controlName, int keyCode, int)
{
    // F3 browses, F4 creates the row of a look-up field.
    if (keyCode == vbKey::F3 && m_code && controlName == m_code->TextBoxRef()->objectName()) {
        cmdSfoglia_Click(0);
        return;
    }
    for (auto it = m_lookups.cbegin(); it != m_lookups.cend(); ++it) {
        if (it.value()->field()->objectName() != controlName)
            continue;
        if (keyCode == vbKey::F3)
            cmdSfoglia_Click(it.key());
        else if (keyCode == vbKey::F4)
            it.value()->openEditor();
    }
}

void cRecordScreen::closeScreen()
{
    if (auto* window = qobject_cast<QMdiSubWindow*>(parentWidget()))
        window->close();
    else
        close();
}

void cRecordScreen::closeEvent(QCloseEvent* event)
{
    if (!m_unloadRaised && !m_lblRID->text().isEmpty()) {
        m_unloadRaised = true;
        Q_EMIT evtUnloadWithRecord(m_lblRID->text().toInt());
    }
    event->accept();
}
