#pragma once
// The wrappers that give every input field of a screen the system's common
// behaviour: allowed characters per data kind, Enter and arrows moving
// between fields, the colour of the field with focus, formatting on leaving
// and the function keys passed to the screen's cKeyFunction.

#include "screens/framework/ckeyfunction.h"
#include "screens/services/typedinput.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QObject>
#include <QPointer>

class QCheckBox;
class QKeyEvent;
class QRadioButton;
class QWidget;

// The common part: the wrapped control, the key object, focus colours.
class cInputBase : public QObject
{
    Q_OBJECT

public:
    explicit cInputBase(QObject* parent = nullptr)
        : QObject(parent)
    { }

    void setCKeyRef(cKeyFunction* keyFunction) { m_keys = keyFunction; }

    // Background colours: white at rest, light yellow with focus, grey with
    // focus on a locked field.
    static QColor restColour();
    static QColor focusColour(bool locked);

protected:
    void attach(QWidget* control);
    void paint(QWidget* control, const QColor& colour);
    // Arrows as tab and shift-tab (unless noTabSend), then the function keys.
    bool handleKeyDown(QWidget* control, QKeyEvent* event, bool arrowsMove);
    void passFunctionKey(QWidget* control, QKeyEvent* event);
    static void sendTab(QWidget* control, bool backwards = false);

    QPointer<cKeyFunction> m_keys;
};

class cTextBox : public cInputBase
{
    Q_OBJECT

public:
    explicit cTextBox(QObject* parent = nullptr)
        : cInputBase(parent)
    { }
    cTextBox(QLineEdit* control, int typeFormat, QObject* parent = nullptr);

    void setTextBoxRef(QLineEdit* control);
    QLineEdit* TextBoxRef() const { return m_control; }

    int TypeFormat() const { return m_typeFormat; }
    void setTypeFormat(int kind);
    bool IsCodice() const { return m_isCodice; }
    void setIsCodice(bool value) { m_isCodice = value; }
    bool NoTabSend() const { return m_noTabSend; }
    void setNoTabSend(bool value) { m_noTabSend = value; }
    bool NoStartSelection() const { return m_noStartSelection; }
    void setNoStartSelection(bool value) { m_noStartSelection = value; }
    QString DateFormat() const { return m_dateFormat; }
    void setDateFormat(const QString& format);
    int DecimalPrecision() const { return m_decimalPrecision; }
    void setDecimalPrecision(int value) { m_decimalPrecision = value; }
    bool SeparatoreMigliaia() const { return m_separatoreMigliaia; }
    void setSeparatoreMigliaia(bool value) { m_separatoreMigliaia = value; }
    int CaseState() const { return m_caseState; }
    void setCaseState(int value) { m_caseState = value; }
    bool ActionKeyReturn() const { return m_actionKeyReturn; }
    void setActionKeyReturn(bool value) { m_actionKeyReturn = value; }

    // The formatting of the field; a screen may force it after setting a value.
    void contentValidate();

Q_SIGNALS:
    void evtCodiceKeyRetunr();
    void evtActionKeyRetunr();
    void evtContentValidate();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool keyPress(QKeyEvent* event);
    void applyKind();

    QPointer<QLineEdit> m_control;
    int m_typeFormat = typedinput::Testo;
    bool m_isCodice = false;
    bool m_noTabSend = false;
    bool m_noStartSelection = false;
    QString m_dateFormat = QStringLiteral("DD/MM/YYYY");
    int m_decimalPrecision = 2;
    bool m_separatoreMigliaia = true;
    int m_caseState = 0;
    bool m_actionKeyReturn = false;
};

class cComboBox : public cInputBase
{
    Q_OBJECT

public:
    explicit cComboBox(QComboBox* control = nullptr, QObject* parent = nullptr);
    void setComboBoxRef(QComboBox* control);
    QComboBox* ComboBoxRef() const { return m_control; }
    bool NoTabSend() const { return m_noTabSend; }
    void setNoTabSend(bool value) { m_noTabSend = value; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QComboBox> m_control;
    bool m_noTabSend = false;
};

// Check boxes and option buttons: arrows and Enter move on, function keys pass.
class cButtonInput : public cInputBase
{
    Q_OBJECT

public:
    explicit cButtonInput(QAbstractButton* control = nullptr, QObject* parent = nullptr);
    void setButtonRef(QAbstractButton* control);
    QAbstractButton* buttonRef() const { return m_control; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QAbstractButton> m_control;
};

class cCheckBox : public cButtonInput
{
    Q_OBJECT

public:
    explicit cCheckBox(QCheckBox* control = nullptr, QObject* parent = nullptr);
    void setCheckBoxRef(QCheckBox* control);
    QCheckBox* CheckBoxRef() const;
};

class cOptionButton : public cButtonInput
{
    Q_OBJECT

public:
    explicit cOptionButton(QRadioButton* control = nullptr, QObject* parent = nullptr);
    void setOptionButtonRef(QRadioButton* control);
    QRadioButton* OptionButtonRef() const;
};
