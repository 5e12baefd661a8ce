#include "frmpianoconti.h"

#include "cadosqlserver.h"
#include "cinputs.h"
#include "frmricercaconto.h"
#include "msgbox.h"
#include "recordset.h"
#include "sqlliteral.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

frmPianoConti::frmPianoConti(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmPianoConti"), QStringLiteral("Piano dei Conti"), parent)
{
    m_txtCodice = new QLineEdit(fraMain());
    m_txtCodice->setObjectName(QStringLiteral("txtCodice"));
    m_txtCodice->setMaximumWidth(120);
    m_txtCodice->setMaxLength(8);
    m_txtDescrizione = new QLineEdit(fraMain());
    m_txtDescrizione->setObjectName(QStringLiteral("txtDescrizione"));
    m_lblMastro = new QLabel(fraMain());
    m_lblMastro->setObjectName(QStringLiteral("lblMastro"));
    m_lblConto = new QLabel(fraMain());
    m_lblConto->setObjectName(QStringLiteral("lblConto"));

    auto* form = new QFormLayout(fraMain());
    form->addRow(QStringLiteral("Mastro:"), m_lblMastro);
    form->addRow(QStringLiteral("Conto:"), m_lblConto);
    form->addRow(QStringLiteral("Codice:"), withBrowseButton(m_txtCodice, 0));
    form->addRow(QStringLiteral("Descrizione:"), m_txtDescrizione);
    setCodeField(new cTextBox(m_txtCodice, typedinput::Testo, this));
    setDescriptionField(new cTextBox(m_txtDescrizione, typedinput::Testo, this));
    // The fourth command refreshes like everywhere else, under this caption.
    setCommandCaption(3, QStringLiteral("Elimina [F11]"));
    resize(520, 200);
}

// The description of the account with this code; invalid when there is none.
QVariant frmPianoConti::descriptionOf(const QString& code) const
{
    return gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT DESCRIZIONE FROM PianoConti WHERE CODICE = ") + sqlText(code),
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
    const QVariant found = gAdoSqlServer().getValueBySQL(
        QStringLiteral("SELECT RID FROM PianoConti WHERE CODICE = ") + sqlText(code), objectName() + QStringLiteral(".checkCodice"));
    if (found.isValid() && found.toInt() != currentRid())
        showData(found.toInt(), QString());
}

void frmPianoConti::codeLeft(const QString& code)
{
    const auto backToCode = [this] { QTimer::singleShot(0, m_txtCodice, [this] { m_txtCodice->setFocus(); }); };
    if (code.size() == 8 || code.size() == 5 || code.size() == 2) {
        if (currentRid() <= 0)
            checkCodice(code);
        if (!setInformation(code) && code.size() > 2) {
            msgBox(QStringLiteral("Attenzione! Il codice inserito non è valido: \nMastro e/o Conto non trovati."),
                   vb::Exclamation);
            backToCode();
        }
        return;
    }
    msgBox(QStringLiteral("Formato Codice Errato!\nMASTRO  = 2 Caratteri\nCONTO = 3 Caratteri\nSOTTOCONTO = 3 Caratteri"),
           vb::Exclamation);
    backToCode();
}

void frmPianoConti::cmdSfoglia_Click(int index)
{
    if (index != 0)
        return cRecordScreen::cmdSfoglia_Click(index);
    const int rid = frmRicercaConto::scegli();
    if (rid > 0)
        showData(rid, QString());
}

QString frmPianoConti::selectStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM PianoConti");
}

void frmPianoConti::clearFields()
{
    m_txtCodice->clear();
    m_txtDescrizione->clear();
    m_lblMastro->clear();
    m_lblConto->clear();
}

void frmPianoConti::fillFields(const Recordset& rs)
{
    m_txtCodice->setText(rs.text(QStringLiteral("CODICE")));
    m_txtDescrizione->setText(rs.text(QStringLiteral("DESCRIZIONE")));
    setInformation(m_txtCodice->text());
}

QStringList frmPianoConti::faults() const
{
    QStringList found;
    if (m_txtCodice->text().trimmed().isEmpty())
        found << QStringLiteral(" - Campo [Codice] Obbligatorio.");
    if (m_txtDescrizione->text().trimmed().isEmpty())
        found << QStringLiteral(" - Campo [Descrizione] Obbligatorio.");
    return found;
}

QString frmPianoConti::insertStatement() const
{
    return QStringLiteral("INSERT INTO PianoConti (CODICE, DESCRIZIONE) VALUES (") + sqlText(m_txtCodice->text())
        + QStringLiteral(", ") + sqlText(m_txtDescrizione->text()) + QLatin1Char(')');
}

QString frmPianoConti::updateStatement(int rid) const
{
    return QStringLiteral("UPDATE PianoConti SET CODICE = ") + sqlText(m_txtCodice->text()) + QStringLiteral(", DESCRIZIONE = ")
        + sqlText(m_txtDescrizione->text()) + QStringLiteral(" WHERE RID = ") + QString::number(rid);
}

QString frmPianoConti::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM PianoConti ORDER BY CODICE");
}
