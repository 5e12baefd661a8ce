#include "lookups/lookuptable.h"

#include "lookups/lookups.h"

QString lookupSearch(const LookupTable& t)
{
    QString sql = QStringLiteral("SELECT RID, ") + QLatin1String(t.codeColumn) + QStringLiteral(", ")
        + QLatin1String(t.descriptionColumn) + QStringLiteral(" FROM ") + QLatin1String(t.table);
    if (*t.condition)
        sql += QStringLiteral(" WHERE ") + QString::fromUtf8(t.condition);
    return sql + QStringLiteral(" ORDER BY ") + QLatin1String(t.order) + QLatin1Char(' ');
}

namespace {

bool validaIvaSenzaValore(QString& codice, QString& descrizione, int& rid)
{
    Single valore = 0;
    return validaIva(codice, descrizione, rid, valore);
}

} // namespace

namespace lookup {

const LookupTable iva{"Iva", "CODICE", "DESCRIZIONE", "", "DESCRIZIONE", validaIvaSenzaValore, "frmIva"};
const LookupTable categorieSconti{"CategorieSconti", "CODICE", "DESCRIZIONE", "", "DESCRIZIONE", validaCategoriaSconto};
const LookupTable clienti{"Anagrafiche",          "NUMERO",        "DENOMINAZIONE",
                          "TIPO = \u00A4C\u00A4", "DENOMINAZIONE", validaCliente};
const LookupTable fornitori{"Anagrafiche",          "NUMERO",        "DENOMINAZIONE",
                            "TIPO = \u00A4F\u00A4", "DENOMINAZIONE", validaFornitore};
const LookupTable tipoDocumenti{"TipoDocumenti", "CODICE",        "DESCRIZIONE",     "",
                                "DESCRIZIONE",   validaDocumento, "frmTipoDocumento"};
const LookupTable causali{"Causali", "CODICE", "DESCRIZIONE", "", "DESCRIZIONE", validaCausale, "frmCausali"};
const LookupTable pianoConti{"PianoConti", "CODICE", "DESCRIZIONE", "", "CODICE", validaConto, "frmPianoConti"};
const LookupTable gruppi{"Gruppi",      "CODICE",     "DESCRIZIONE",   "",
                         "DESCRIZIONE", validaGruppo, "frmSimpleForm", "mnuTab_4"};
const LookupTable marche{"Marche",      "CODICE",    "DESCRIZIONE",   "",
                         "DESCRIZIONE", validaMarca, "frmSimpleForm", "mnuTab_8"};
const LookupTable pagamenti{"Pagamenti", "CODICE", "DESCRIZIONE", "", "DESCRIZIONE", validaPagamento, "frmPagamenti"};
const LookupTable unitaMisura{"UnitaMisura", "CODICE",          "DESCRIZIONE",   "",
                              "DESCRIZIONE", validaUnitaMisura, "frmSimpleForm", "mnuTab_10"};
const LookupTable collezioni{"Collezioni",  "CODICE",         "DESCRIZIONE",   "",
                             "DESCRIZIONE", validaCollezione, "frmSimpleForm", "mnuCollezioni"};
const LookupTable magazzini{"Magazzini",   "CODICE",        "DESCRIZIONE",   "",
                            "DESCRIZIONE", validaMagazzino, "frmSimpleForm", "mnuTab_6"};
const LookupTable categorie{"CategorieMerceologiche", "CODICE",        "DESCRIZIONE", "", "DESCRIZIONE",
                            validaCategoria,          "frmSimpleForm", "mnuTab_5"};
const LookupTable prodotti{"Prodotti", "CODICE", "DESCRIZIONE", "", "DESCRIZIONE", validaProdotto, "frmProdotto"};
const LookupTable banche{"Banche", "CODICE", "DESCRIZIONE", "", "DESCRIZIONE", validaBanca, "frmBanche"};
const LookupTable fasceClienti{"FasceClienti",      "CODICE",        "DESCRIZIONE",    "", "DESCRIZIONE",
                               validaFasciaCliente, "frmSimpleForm", "mnuFasceClienti"};

} // namespace lookup
