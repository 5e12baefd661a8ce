#include "screens/framework/cinputs.h"

#include "core/optionstore.h"
#include "screens/framework/ckeyfunction.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRadioButton>
#include <QTimer>

// --- cInputBase --------------------------------------------------------------

QColor cInputBase::restColour() { return Qt::white; }

QColor cInputBase::focusColour(bool locked)
{
    // &HC0FFFF (blue-green-red): light yellow; &HC0C0C0 grey for a locked field.
    return locked ? QColor(0xC0, 0xC0, 0xC0) : QColor(0xFF, 0xFF, 0xC0);
}

void cInputBase::attach(QWidget* control)
{
    control->installEventFilter(this);
    paint(control, restColour());
    if (gOptions().usaGrassetto) {
        QFont font = control->font();
        font.setBold(true);
        control->setFont(font);
    }
}

void cInputBase::paint(QWidget* control, const QColor& colour)
{
    // A disabled field keeps the application's disabled ground.
    QPalette palette = control->palette();
    palette.setColor(QPalette::Active, QPalette::Base, colour);
    palette.setColor(QPalette::Inactive, QPalette::Base, colour);
    control->setPalette(palette);
}

void cInputBase::sendTab(QWidget* control, bool backwards)
{
    // A synthetic key: focus moves once the current handler has returned.
    QCoreApplication::postEvent(control,
                                new QKeyEvent(QEvent::KeyPress, backwards ? Qt::Key_Backtab : Qt::Key_Tab,
                                              backwards ? Qt::ShiftModifier : Qt::NoModifier));
}

void cInputBase::passFunctionKey(QWidget* control, QKeyEvent* event)
{
    if (m_keys)
        m_keys->setFunctionKey(control->objectName(), cKeyFunction::keyCodeOf(*event), cKeyFunction::shiftOf(*event));
}

bool cInputBase::handleKeyDown(QWidget* control, QKeyEvent* event, bool arrowsMove)
{
    if (arrowsMove && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        sendTab(control, event->key() == Qt::Key_Up);
        return true;
    }
    passFunctionKey(control, event);
    return event->key() >= Qt::Key_F3 && event->key() <= Qt::Key_F7 && m_keys;
}

// --- cTextBox ----------------------------------------------------------------

cTextBox::cTextBox(QLineEdit* control, int typeFormat, QObject* parent)
    : cInputBase(parent)
{
    setTextBoxRef(control);
    setTypeFormat(typeFormat);
}

void cTextBox::setTextBoxRef(QLineEdit* control)
{
    m_control = control;
    if (control) {
        attach(control);
        applyKind();
    }
}

void cTextBox::setTypeFormat(int kind)
{
    m_typeFormat = kind;
    applyKind();
}

void cTextBox::setDateFormat(const QString& format)
{
    m_dateFormat = format;
    applyKind();
}

void cTextBox::applyKind()
{
    if (!m_control)
        return;
    const int length = typedinput::maxLength(m_typeFormat, m_dateFormat);
    if (length > 0)
        m_control->setMaxLength(length);
    if (typedinput::alignsRight(m_typeFormat))
        m_control->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void cTextBox::contentValidate()
{
    if (!m_control)
        return;
    const typedinput::Validation result =
        typedinput::contentValidate(m_typeFormat, m_control->text(), m_decimalPrecision, m_separatoreMigliaia,
                                    m_dateFormat);
    if (result.text != m_control->text())
        m_control->setText(result.text);
    if (result.raiseEvent)
        Q_EMIT evtContentValidate();
}

bool cTextBox::keyPress(QKeyEvent* event)
{
    if (handleKeyDown(m_control, event, !m_noTabSend))
        return true;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (m_isCodice)
            Q_EMIT evtCodiceKeyRetunr();
        else if (m_actionKeyReturn)
            Q_EMIT evtActionKeyRetunr();
        else if (!m_noTabSend)
            sendTab(m_control);
        return true;
    }
    const QString text = event->text();
    if (text.isEmpty() || (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        return false;
    const QChar typed = text.at(0);
    if (typed.category() == QChar::Other_Control)
        return false; // backspace, tab and the like keep their meaning
    const bool selectionCoversAll = m_control->hasSelectedText() && m_control->selectedText() == m_control->text();
    const QChar accepted =
        typedinput::filterKeyPress(m_typeFormat, m_caseState, m_control->text(), selectionCoversAll, typed);
    if (accepted.isNull())
        return true;
    if (accepted != typed) {
        m_control->insert(QString(accepted));
        return true;
    }
    return false;
}

bool cTextBox::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_control)
        return false;
    switch (event->type()) {
    case QEvent::KeyPress: return keyPress(static_cast<QKeyEvent*>(event));
    case QEvent::FocusIn:
        paint(m_control, focusColour(m_control->isReadOnly()));
        if (!m_noStartSelection)
            QTimer::singleShot(0, m_control, [control = m_control] {
                if (control)
                    control->selectAll();
            });
        break;
    case QEvent::FocusOut:
        contentValidate();
        paint(m_control, restColour());
        break;
    default: break;
    }
    return false;
}

// --- cComboBox ---------------------------------------------------------------

cComboBox::cComboBox(QComboBox* control, QObject* parent)
    : cInputBase(parent)
{
    setComboBoxRef(control);
}

void cComboBox::setComboBoxRef(QComboBox* control)
{
    m_control = control;
    if (control)
        attach(control);
}

bool cComboBox::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_control)
        return false;
    switch (event->type()) {
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(event);
        // The arrows belong to the list; only Enter moves on.
        if (handleKeyDown(m_control, key, false))
            return true;
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && !m_noTabSend) {
            sendTab(m_control);
            return true;
        }
        break;
    }
    case QEvent::FocusIn: paint(m_control, focusColour(false)); break;
    case QEvent::FocusOut: paint(m_control, restColour()); break;
    default: break;
    }
    return false;
}

// --- check boxes and option buttons -----------------------------------------

cButtonInput::cButtonInput(QAbstractButton* control, QObject* parent)
    : cInputBase(parent)
{
    setButtonRef(control);
}

void cButtonInput::setButtonRef(QAbstractButton* control)
{
    m_control = control;
    if (control)
        attach(control);
}

bool cButtonInput::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_control || event->type() != QEvent::KeyPress)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (handleKeyDown(m_control, key, true))
        return true;
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        sendTab(m_control);
        return true;
    }
    return false;
}

cCheckBox::cCheckBox(QCheckBox* control, QObject* parent)
    : cButtonInput(control, parent)
{ }

void cCheckBox::setCheckBoxRef(QCheckBox* control) { setButtonRef(control); }

QCheckBox* cCheckBox::CheckBoxRef() const { return qobject_cast<QCheckBox*>(buttonRef()); }

cOptionButton::cOptionButton(QRadioButton* control, QObject* parent)
    : cButtonInput(control, parent)
{ }

void cOptionButton::setOptionButtonRef(QRadioButton* control) { setButtonRef(control); }

QRadioButton* cOptionButton::OptionButtonRef() const { return qobject_cast<QRadioButton*>(buttonRef()); }
