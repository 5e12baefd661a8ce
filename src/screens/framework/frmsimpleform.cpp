#include "screens/framework/frmsimpleform.h"

#include "common/msgbox.h"

#include <QHash>

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
    : cTableScreen(QStringLiteral("frmSimpleForm"), QString(),
                   {QString(),
                    {fields::field("CODICE", "txtCodice", "Codice", fields::Required | fields::Trimmed),
                     fields::field("DESCRIZIONE", "txtDescrizione", "Descrizione",
                                   fields::Required | fields::Trimmed)}},
                   parent)
{
    resize(480, 150);
}

void frmSimpleForm::startMe(const QString& nome, const QString& titolo, const QString& tabella, bool modale, bool nuovo,
                            int rid)
{
    m_nome = nome;
    m_tabella = tabella;
    setFieldsTable(tabella);
    m_modale = modale;
    setTitle(titolo);
    setTypeName(nome + QStringLiteral("(frmSimpleForm)"));
    cRecordScreen::startMe(true, nuovo, rid);
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
