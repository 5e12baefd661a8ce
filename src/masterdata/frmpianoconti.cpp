#include "masterdata/frmpianoconti.h"

#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/sqlliteral.h"
#include "masterdata/frmricercaconto.h"
#include "printing/anteprima.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

frmPianoConti::frmPianoConti(QWidget* parent)
    : cTableScreen(QStringLiteral("frmPianoConti"), QStringLiteral("Piano dei Conti"),
                   {QStringLiteral("PianoConti"),
                    {fields::field("CODICE", "txtCodice", "Codice", fields::Required | fields::Trimmed),
                     fields::field("DESCRIZIONE", "txtDescrizione", "Descrizione",
                                   fields::Required | fields::Trimmed)}},
                   parent)
{
    // The code is the account's place in the tree (mastro 2, conto 5,
    // sottoconto 8 characters), a rule of its own, stricter than its column.
    codeEdit()->setMaxLength(8);
    m_lblMastro = new QLabel(fraMain());
    m_lblMastro->setObjectName(QStringLiteral("lblMastro"));
    m_lblConto = new QLabel(fraMain());
    m_lblConto->setObjectName(QStringLiteral("lblConto"));
    auto* form = static_cast<QFormLayout*>(fraMain()->layout());
    form->insertRow(0, QStringLiteral("Mastro:"), m_lblMastro);
    form->insertRow(1, QStringLiteral("Conto:"), m_lblConto);
    // The fourth command refreshes like everywhere else, under this caption.
    setCommandCaption(3, QStringLiteral("Elimina [F11]"));
    // The print of the whole chart, after the four commands of the pattern.
    auto* stampa =
        pulsanteStampaElenco(fraMain(), QStringLiteral("PianoConti.rpt"), QStringLiteral("Stampa Piano dei Conti"));
    auto* comandi = new QHBoxLayout;
    comandi->addStretch(1);
    comandi->addWidget(stampa);
    form->addRow(QString(), comandi);
    resize(520, 230);
}

// The description of the account with this code; invalid when there is none.
QVariant frmPianoConti::descriptionOf(const QString& code) const
{
    return gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT DESCRIZIONE FROM PianoConti WHERE CODICE = ")
                                             + sqlText(code),
                                         objectName() + QStringLiteral(".setInformation"));
}

bool frmPianoConti::setInformation(const QString& code)
{
    m_lblMastro->clear();
    m_lblConto->clear();
    if (code.size() < 2)
        return false;
    const QVariant mastro = descriptionOf(code.left(2));
    if (!mastro.isValid())
        return code.size() == 2;
    m_lblMastro->setText(mastro.toString());
    if (code.size() < 5)
        return true;
    const QVariant conto = descriptionOf(code.left(5));
    if (conto.isValid())
        m_lblConto->setText(conto.toString());
    // A conto needs its mastro only; a sottoconto needs its conto too.
    return code.size() == 5 || conto.isValid();
}

void frmPianoConti::checkCodice(const QString& code)
{
    const QVariant found =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ") + sqlText(code),
                                      objectName() + QStringLiteral(".checkCodice"));
    if (found.isValid() && found.toInt() != currentRid())
        showData(found.toInt(), QString());
}

QLineEdit* frmPianoConti::codeEdit() const { return lineEdit(QStringLiteral("txtCodice")); }

bool frmPianoConti::codeAccepted(const QString& code)
{
    if (code.size() == 8 || code.size() == 5 || code.size() == 2) {
        if (setInformation(code) || code.size() == 2)
            return true;
        msgBox(QStringLiteral("Attenzione! Il codice inserito non è valido: \nMastro e/o Conto non trovati."),
               vb::Exclamation);
        return false;
    }
    msgBox(QStringLiteral(
               "Formato Codice Errato!\nMASTRO  = 2 Caratteri\nCONTO = 3 Caratteri\nSOTTOCONTO = 3 Caratteri"),
           vb::Exclamation);
    return false;
}

void frmPianoConti::codeLeft(const QString& code)
{
    const bool shape = code.size() == 8 || code.size() == 5 || code.size() == 2;
    if (shape && currentRid() <= 0)
        checkCodice(code);
    if (!codeAccepted(codeText().trimmed()))
        QTimer::singleShot(0, codeEdit(), [this] { codeEdit()->setFocus(); });
}

// A code without its mastro or conto, or of the wrong shape, is never saved.
bool frmPianoConti::saveRecord()
{
    const QString code = codeText().trimmed();
    if (!code.isEmpty() && !codeAccepted(code)) {
        codeEdit()->setFocus();
        return false;
    }
    return cTableScreen::saveRecord();
}

void frmPianoConti::cmdSfoglia_Click(int index)
{
    if (index != 0)
        return cRecordScreen::cmdSfoglia_Click(index);
    const int rid = frmRicercaConto::scegli();
    if (rid > 0)
        showData(rid, QString());
}

void frmPianoConti::clearFields()
{
    cRecordScreen::clearFields();
    m_lblMastro->clear();
    m_lblConto->clear();
}

void frmPianoConti::fillFields(const Recordset& rs)
{
    cRecordScreen::fillFields(rs);
    setInformation(codeText());
}
