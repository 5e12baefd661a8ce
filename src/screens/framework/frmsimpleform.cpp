#include "frmsimpleform.h"

#include "cinputs.h"
#include "msgbox.h"
#include "recordset.h"
#include "sqlliteral.h"

#include <QFormLayout>
#include <QHash>
#include <QLineEdit>

namespace {

// The code tables of the menu: item, table, caption, record name.
const struct
{
    const char* item;
    SimpleFormUse use;
} kUses[] = {
    {"mnuTab_0", {"Colori", "Colori", "Colore"}},
    {"mnuTab_1", {"Confezioni", "Confezioni", "Confezione"}},
    {"mnuTab_2", {"FormatoCarta", "Formato Carta", "Formato Carta"}},
    {"mnuTab_3", {"FormatoFinestra", "Formato Finestra", "Formato Finestra"}},
    {"mnuTab_4", {"Gruppi", "Gruppi Merceologici", "Gruppi"}},
    {"mnuTab_5", {"CategorieMerceologiche", "Categorie Merceologiche", "Categorie"}},
    {"mnuTab_6", {"Magazzini", "Magazzino", "Magazzino"}},
    {"mnuTab_7", {"Spedizioni", "Spedizioni", "Spedizioni"}},
    {"mnuTab_8", {"Marche", "Marca", "Marca"}},
    {"mnuTab_9", {"CentriCosto", "Centri di Costo", "CentriCosto"}},
    {"mnuTab_10", {"UnitaMisura", "Unità di Misure", "UnitaMisura"}},
    {"mnuTab_11", {"AspettoEsteriore", "Aspetto esteriore dei beni", "AspettoEsteriore"}},
    {"mnuTab_12", {"CausaliTrasporto", "Causali di trasporto", "CausaliTrasporto"}},
    {"mnuCollezioni", {"Collezioni", "Collezioni", "Collezioni"}},
    {"mnuFasceClienti", {"FasceClienti", "Fasce Clienti", "FasceClienti"}},
};

} // namespace

SimpleFormUse simpleFormUse(const QString& menuItem)
{
    for (const auto& entry : kUses)
        if (menuItem == QLatin1String(entry.item))
            return entry.use;
    return {};
}

frmSimpleForm::frmSimpleForm(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmSimpleForm"), QString(), parent)
{
    m_txtCodice = new QLineEdit(fraMain());
    m_txtCodice->setObjectName(QStringLiteral("txtCodice"));
    m_txtCodice->setMaximumWidth(140);
    m_txtDescrizione = new QLineEdit(fraMain());
    m_txtDescrizione->setObjectName(QStringLiteral("txtDescrizione"));

    auto* form = new QFormLayout(fraMain());
    form->addRow(QStringLiteral("Codice:"), withBrowseButton(m_txtCodice, 0));
    form->addRow(QStringLiteral("Descrizione:"), m_txtDescrizione);
    setCodeField(new cTextBox(m_txtCodice, typedinput::Testo, this));
    setDescriptionField(new cTextBox(m_txtDescrizione, typedinput::Testo, this));
    resize(480, 150);
}

void frmSimpleForm::startMe(const QString& nome, const QString& titolo, const QString& tabella, bool modale, bool nuovo,
                            int rid)
{
    m_nome = nome;
    m_tabella = tabella;
    m_modale = modale;
    setTitle(titolo);
    setTypeName(nome + QStringLiteral("(frmSimpleForm)"));
    cRecordScreen::startMe(true, nuovo, rid);
}

QString frmSimpleForm::selectStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM ") + m_tabella;
}

void frmSimpleForm::clearFields()
{
    m_txtCodice->clear();
    m_txtDescrizione->clear();
}

void frmSimpleForm::fillFields(const Recordset& rs)
{
    m_txtCodice->setText(rs.text(QStringLiteral("CODICE")));
    m_txtDescrizione->setText(rs.text(QStringLiteral("DESCRIZIONE")));
}

QStringList frmSimpleForm::faults() const
{
    QStringList found;
    if (m_txtCodice->text().trimmed().isEmpty())
        found << QStringLiteral(" - Campo [Codice] Obbligatorio.");
    if (m_txtDescrizione->text().trimmed().isEmpty())
        found << QStringLiteral(" - Campo [Descrizione] Obbligatorio.");
    return found;
}

QString frmSimpleForm::insertStatement() const
{
    return QStringLiteral("INSERT INTO ") + m_tabella + QStringLiteral(" (CODICE, DESCRIZIONE) VALUES (")
        + sqlText(m_txtCodice->text()) + QStringLiteral(", ") + sqlText(m_txtDescrizione->text()) + QLatin1Char(')');
}

QString frmSimpleForm::updateStatement(int rid) const
{
    return QStringLiteral("UPDATE ") + m_tabella + QStringLiteral(" SET CODICE = ") + sqlText(m_txtCodice->text())
        + QStringLiteral(", DESCRIZIONE = ") + sqlText(m_txtDescrizione->text()) + QStringLiteral(" WHERE RID = ")
        + QString::number(rid);
}

QString frmSimpleForm::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, Descrizione FROM ") + m_tabella + QStringLiteral(" ORDER BY DESCRIZIONE");
}

bool frmSimpleForm::deleteRecord()
{
    const int rid = currentRid();
    if (rid <= 0)
        return false;
    // The first goods category is held back when the editor works on it as "Categoria".
    if (m_nome == QLatin1String("Categoria") && rid == 1) {
        msgBox(QStringLiteral("Impossibile eliminare questo record"), vb::Critical);
        return false;
    }
    if (msgBox(QStringLiteral("Eliminare il record ") + codeText() + QStringLiteral("?"), vb::Information | vb::YesNo)
        != vb::Yes)
        return false;
    return removeRecord(rid);
}
