#include "shell/frmcambiapw.h"

#include "common/msgbox.h"
#include "core/dialogservice.h"
#include "core/optionstore.h"
#include "core/passwordchange.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
QLineEdit* passwordField(const QString& name, QWidget* parent)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setEchoMode(QLineEdit::Password);
    edit->setMinimumWidth(220);
    return edit;
}
} // namespace

frmCambiaPW::frmCambiaPW(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmCambiaPW"));
    setWindowTitle(QStringLiteral("Cambia password"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    m_txtOld = passwordField(QStringLiteral("txtOld"), this);
    m_txtNewPw = passwordField(QStringLiteral("txtNewPw"), this);
    m_txtNewPw2 = passwordField(QStringLiteral("txtNewPw2"), this);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Password attuale:"), m_txtOld);
    form->addRow(QStringLiteral("Nuova password:"), m_txtNewPw);
    form->addRow(QStringLiteral("Ripetere la nuova password:"), m_txtNewPw2);

    auto* cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setAutoDefault(false);
    auto* cmdAnnulla = new QPushButton(QStringLiteral("Annulla"), this);
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    cmdAnnulla->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdAnnulla);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    connect(cmdOk, &QPushButton::clicked, this, &frmCambiaPW::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    // Enter in the first fields moves on; in the last it confirms.
    connect(m_txtOld, &QLineEdit::returnPressed, m_txtNewPw, qOverload<>(&QWidget::setFocus));
    connect(m_txtNewPw, &QLineEdit::returnPressed, m_txtNewPw2, qOverload<>(&QWidget::setFocus));
    connect(m_txtNewPw2, &QLineEdit::returnPressed, this, &frmCambiaPW::cmdOk_Click);
    m_txtOld->setFocus();
}

void frmCambiaPW::startMe(QWidget* owner)
{
    frmCambiaPW dialog(owner ? owner : dialogs::ownerWindow());
    dialogs::exec(dialog);
}

void frmCambiaPW::cmdOk_Click()
{
    const PasswordCheck check = checkPasswordChange(getOpzione(QStringLiteral("Amministratore")), m_txtOld->text(),
                                                    m_txtNewPw->text(), m_txtNewPw2->text());
    if (check.fault != PasswordCheck::None) {
        msgBox(check.message, vb::Critical);
        (check.fault == PasswordCheck::WrongOld ? m_txtOld : m_txtNewPw)->setFocus();
        return;
    }
    setOpzione(QStringLiteral("Amministratore"), check.newPassword);
    msgBox(QStringLiteral("Password modicifata!"), vb::Information);
    accept();
}
