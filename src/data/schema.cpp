// The tables of the main database, one definition for the three back ends.
//
// Kinds follow the use that the screens and engines make of each column:
// money is Amount, quantities, weights and stock figures are Quantity, rates
// and discounts are Percent, check boxes and causal booleans (-1/0) are Flag.
// Text lengths are generous: codes 30, names and descriptions 255, addresses
// 150, phones 30; notes, the document footer and the privacy notice are Memo.
//
// Foreign keys. A reference gets a constraint only when its column always
// names one table and no path of the program deletes the referenced row
// first or writes the reference before the row exists. The references left
// without a constraint carry a comment saying why; each still has its index.
// No constraint cascades: a refused delete comes back to the screen as the
// back end's integrity refusal.

#include "data/schema.h"

#include "data/sqldialect.h"

#include <QHash>
#include <QSet>

namespace schema {

namespace {

Column key(const char* name) { return {QString::fromLatin1(name), ColKind::Key, 0, {}}; }
Column ref(const char* name, const char* table = nullptr)
{
    return {QString::fromLatin1(name), ColKind::Ref, 0, table ? QString::fromLatin1(table) : QString()};
}
Column text(const char* name, int length) { return {QString::fromLatin1(name), ColKind::Text, length, {}}; }
Column memo(const char* name) { return {QString::fromLatin1(name), ColKind::Memo, 0, {}}; }
Column amount(const char* name) { return {QString::fromLatin1(name), ColKind::Amount, 0, {}}; }
Column quantity(const char* name) { return {QString::fromLatin1(name), ColKind::Quantity, 0, {}}; }
Column percent(const char* name) { return {QString::fromLatin1(name), ColKind::Percent, 0, {}}; }
Column number(const char* name) { return {QString::fromLatin1(name), ColKind::Number, 0, {}}; }
Column flag(const char* name) { return {QString::fromLatin1(name), ColKind::Flag, 0, {}}; }
Column whole(const char* name) { return {QString::fromLatin1(name), ColKind::Int, 0, {}}; }
Column date(const char* name) { return {QString::fromLatin1(name), ColKind::Date, 0, {}}; }
Column dateTime(const char* name) { return {QString::fromLatin1(name), ColKind::DateTime, 0, {}}; }

// Usual lengths.
constexpr int kCodice = 30;
constexpr int kDescrizione = 255;
constexpr int kIndirizzo = 150;
constexpr int kCitta = 100;
constexpr int kCivico = 15;
constexpr int kCap = 10;
constexpr int kProvincia = 10;
constexpr int kTelefono = 30;
constexpr int kEmail = 150;

Index index(std::initializer_list<const char*> columns, bool unique = false)
{
    Index ix;
    for (const char* c : columns)
        ix.columns << QString::fromLatin1(c);
    ix.unique = unique;
    return ix;
}

Table codeTable(const char* name)
{
    return {QString::fromLatin1(name), {key("RID"), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione)}, {}};
}

// Index names: IX_ (UX_ when unique), the table, the columns.
QString indexName(const QString& table, const Index& ix)
{
    return (ix.unique ? QStringLiteral("UX_") : QStringLiteral("IX_")) + table + QLatin1Char('_')
        + ix.columns.join(QLatin1Char('_'));
}

// Adds the indexes that every table gets: CODICE, and each reference not
// already leading one of the table's own indexes.
void completeIndexes(Table& t)
{
    auto leads = [&t](const QString& column) {
        for (const Index& ix : t.indexes)
            if (!ix.columns.isEmpty() && ix.columns.first().compare(column, Qt::CaseInsensitive) == 0)
                return true;
        return false;
    };
    for (const Column& c : t.columns) {
        const bool wanted = c.kind == ColKind::Ref || c.name.compare(QLatin1String("CODICE"), Qt::CaseInsensitive) == 0;
        if (wanted && !leads(c.name)) {
            Index ix;
            ix.columns << c.name;
            t.indexes << ix;
        }
    }
    for (Index& ix : t.indexes)
        if (ix.name.isEmpty())
            ix.name = indexName(t.name, ix);
}

QList<Table> buildTables()
{
    QList<Table> list;

    // Code tables: RID, CODICE, DESCRIZIONE; row 1 of each belongs to the system.
    for (const char* name :
         {"AspettoEsteriore", "CategorieMerceologiche", "CausaliTrasporto", "CentriCosto", "Collezioni", "Colori",
          "Confezioni", "FasceClienti", "FormatoCarta", "FormatoFinestra", "Gruppi", "Spedizioni", "UnitaMisura"})
        list << codeTable(name);

    // One row: the version of the schema that built the database.
    list << Table{QStringLiteral("SchemaVersion"), {whole("VERSIONE")}, {}};

    list << Table{QStringLiteral("Opzioni"),
                  {text("NOME", 50), memo("VALORE")}, // VALORE holds the document footer
                  {index({"NOME"}, true)}};

    list << Table{QStringLiteral("Informativa"), {memo("INFORMATIVA")}, {}};

    list << Table{QStringLiteral("FunzionalitaReport"),
                  {key("RID"), whole("Funzionalita"), text("REPORT", kDescrizione)},
                  {index({"Funzionalita"})}};

    list << Table{QStringLiteral("ElencoTabelle"),
                  {key("ID"), text("NOME", 100), text("RifForm", 100)},
                  {index({"RifForm"})}};

    list << Table{QStringLiteral("GRUPPOUTENTI"), {key("RID"), flag("AMMINISTRATORE")}, {}};

    list << Table{QStringLiteral("GRUPPOPERMESSI"),
                  {flag("ELIMINA"), ref("FK_GRUPPOUTENTI", "GRUPPOUTENTI"),
                   ref("FK_TABELLE", "ElencoTabelle"), // ElencoTabelle's key is ID
                   flag("SCRIVI"), flag("STAMPA"), flag("VISUALIZZA")},
                  {}};

    list << Table{QStringLiteral("Iva"),
                  {key("RID"), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione), percent("VALORE")},
                  {}};

    // Chart of accounts: the code is the hierarchy (2, 5, 8 characters).
    list << Table{QStringLiteral("PianoConti"),
                  {key("RID"), text("CODICE", 20), text("DESCRIZIONE", kDescrizione)},
                  {}};

    list << Table{QStringLiteral("Magazzini"),
                  {key("RID"), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione)},
                  {}};

    list << Table{QStringLiteral("Banche"),
                  {key("RID"), text("ABI", 10), text("AGENZIA", 100), text("CAB", 10), text("CAP", kCap),
                   text("CIN", 5), text("CITTA", kCitta), text("CIVICO", kCivico), text("CODICE", kCodice),
                   text("DESCRIZIONE", kDescrizione), text("FAX", kTelefono), text("INDIRIZZO", kIndirizzo),
                   text("PROVINCIA", kProvincia), text("TELEFONO", kTelefono)},
                  {}};

    list << Table{QStringLiteral("Venditori"),
                  {key("RID"), text("CODICE", kCodice), text("CODICEEXTRA", kCodice),
                   text("DESCRIZIONE", kDescrizione)},
                  {index({"CODICEEXTRA"})}};

    list << Table{QStringLiteral("Pagamenti"),
                  {key("RID"), percent("ACCONTO"), flag("BANCAAPPOGGIO"), text("CODICE", kCodice),
                   text("DESCRIZIONE", kDescrizione), flag("FINEMESE"), memo("NOTE"), whole("NRATE"),
                   flag("RIMESSADIRETTA"), amount("SCONTOPAG"), amount("SPESEINCASSO")},
                  {}};

    // Instalments; their order is the order of RID.
    list << Table{QStringLiteral("DettagliPagamenti"),
                  {key("RID"), ref("FK_PAGAMENTO", "Pagamenti"), whole("NGIORNI"), percent("PERCENTUALE")},
                  {}};

    // Customers ('C') and suppliers ('F'); NUMERO is one sequence for both,
    // so it is unique across the two kinds.
    list << Table{QStringLiteral("Anagrafiche"),
                  {key("RID"),
                   text("CAP", kCap),
                   text("CAPDEST", kCap),
                   text("CELL", kTelefono),
                   text("CFISCALE", 20),
                   text("CITTA", kCitta),
                   text("CITTADEST", kCitta),
                   text("CIVICO", kCivico),
                   text("CIVICODEST", kCivico),
                   text("CODICE", kCodice),
                   text("CODICEEXTRA", kCodice),
                   flag("CTRLFIDO"),
                   date("DATANASCITA"),
                   text("DATIAUTORIZZAZIONE", kDescrizione),
                   text("DENOMINAZIONE", kDescrizione),
                   text("DOCUMENTORICONOSCIMENTO", kDescrizione),
                   text("EMAIL", kEmail),
                   text("FAX", kTelefono),
                   amount("FIDO"),
                   ref("FK_BANCA", "Banche"),
                   ref("FK_FASCIACLIENTE", "FasceClienti"),
                   ref("FK_PAGAMENTO", "Pagamenti"),
                   text("IBAN", 40),
                   text("INDIRIZZO", kIndirizzo),
                   text("INDIRIZZODEST", kIndirizzo),
                   memo("INFORMATIVA"),
                   percent("IVA"),   // only read: a VAT rate of the counterparty's own
                   whole("LISTINO"), // which of LISTINO1..LISTINO4 applies
                   whole("NUMERO"),
                   text("PIVA", 20),
                   text("PROVINCIA", kProvincia),
                   text("PROVINCIADEST", kProvincia),
                   text("REFERENTE", 100),
                   percent("SCONTO"),
                   flag("SEGNALA"),
                   text("TELABITAZIONE", kTelefono),
                   text("TELUFFICIO", kTelefono),
                   text("TELUFFICIO3", kTelefono),
                   text("TIPO", 10)},
                  {index({"TIPO", "NUMERO"}), index({"NUMERO"}, true), index({"CFISCALE"}), index({"PIVA"})}};

    list << Table{QStringLiteral("Rubrica"),
                  {key("RID"), text("CAP", kCap), text("CELL", kTelefono), text("CITTA", kCitta),
                   text("CIVICO", kCivico), text("DENOMINAZIONE", kDescrizione), text("EMAIL", kEmail),
                   text("FAX", kTelefono), text("INDIRIZZO", kIndirizzo), whole("NUMERO"),
                   text("PROVINCIA", kProvincia), text("TELEFONO", kTelefono)},
                  {index({"NUMERO"}, true)}};

    list << Table{QStringLiteral("CategorieSconti"),
                  {key("RID"), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione)},
                  {}};

    list << Table{QStringLiteral("Marche"),
                  {key("RID"), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione),
                   ref("FK_CATSCOACQ", "CategorieSconti"), ref("FK_CATSCOVEN", "CategorieSconti")},
                  {}};

    list << Table{QStringLiteral("ScontiImmediati"),
                  {key("RID"), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione), percent("VALORE")},
                  {}};

    // Products. The identity checked by the card is code plus brand, and only
    // on a new card, so CODICE is not unique in the database.
    list << Table{QStringLiteral("Prodotti"),
                  {key("RID"), text("BARCODE", kCodice), flag("BLOCCAPREZZO"), text("CODICE", kCodice),
                   quantity("COLLI"), dateTime("DATALISTINO"), dateTime("DATAULTIMAMODIFICA"), date("DATAULTIMOCARICO"),
                   date("DATAULTIMOSCARICO"), text("DESCRIZIONE", kDescrizione), flag("DISABILITATO"),
                   flag("DISTINTABASE"), text("EAN13CODE", 50), // the font-mapped form of BARCODE
                   flag("ELENCOSPECIALE"), flag("ESISTE"), text("EXTRACODICE", kCodice),
                   ref("FK_CATEGORIA", "CategorieMerceologiche"), ref("FK_CATSCOACQ", "CategorieSconti"),
                   ref("FK_CATSCOVEN", "CategorieSconti"), ref("FK_COLLEZIONE", "Collezioni"),
                   ref("FK_GRUPPO", "Gruppi"), ref("FK_Iva", "Iva"), ref("FK_MARCA", "Marche"),
                   // Print-shop order that produced the product: that module keeps
                   // its own rows and is switched off, so no constraint.
                   ref("FK_ORDINE"), ref("FK_SOSTITUITO", "Prodotti"), ref("FK_ULTIMOFORNITORE", "Anagrafiche"),
                   ref("FK_UNITAMISURA", "UnitaMisura"), quantity("GIACENZA"), amount("LISTINO"), amount("LISTINO1"),
                   amount("LISTINO2"), amount("LISTINO3"), amount("LISTINO4"), text("NUMREGISTRAZIONE", kCodice),
                   quantity("PESO"), amount("PLISTINO"), amount("PREZZOACQUISTO"), amount("PREZZOULTIMOCARICO"),
                   amount("PREZZOULTIMOSCARICO"), flag("PrintFlagRiepilogo"), percent("SCONTO"),
                   quantity("SCORTAMINIMA"), flag("SETGIACENZA"), text("UBICAZIONE", 50)},
                  {index({"CODICE"}), index({"BARCODE"}), index({"EAN13CODE"}), index({"EXTRACODICE"}),
                   index({"DESCRIZIONE"})}};

    // Alternatives: the product card deletes neither side of a pair when a
    // product goes, and a pair may stand in either direction, so a constraint
    // here would make a product undeletable from its own card.
    list << Table{QStringLiteral("ProdottiAlternativi"), {ref("FK_PRODOTTO1"), ref("FK_PRODOTTO2")}, {}};

    // Stock rows: one per product, warehouse and cost lot, also when two
    // workstations post the first load of a lot at the same moment.
    list << Table{QStringLiteral("DettagliProdotto"),
                  {key("RID"), ref("FK_MAGAZZINO", "Magazzini"), ref("FK_PRODOTTO", "Prodotti"), quantity("QUANTITA"),
                   amount("TAGLIO"), quantity("TOTQ")},
                  {index({"FK_PRODOTTO", "FK_MAGAZZINO", "TAGLIO"}, true)}};

    list << Table{QStringLiteral("Listini"),
                  {ref("FK_Anagrafe", "Anagrafiche"), ref("FK_PRODOTTO", "Prodotti"), amount("PREZZO")},
                  {index({"FK_Anagrafe", "FK_PRODOTTO"})}};

    // Discount and net-price ranges: heads and their rows.
    list << Table{QStringLiteral("CatScVendita"),
                  {key("RID"), ref("FK_CATEGORIA", "CategorieSconti"), ref("FK_Fascia", "FasceClienti"),
                   ref("FK_MARCA", "Marche")},
                  {}};
    list << Table{QStringLiteral("CatScVenditeSconti"),
                  {ref("FK_CatScVendite", "CatScVendita"), quantity("RangeMax"), quantity("RangeMin"),
                   percent("Sconto1"), percent("SCONTO2"), percent("SCONTO3")},
                  {}};
    list << Table{QStringLiteral("CatScAcquisto"),
                  {key("RID"), ref("FK_CATEGORIA", "CategorieSconti"), ref("FK_Fornitore", "Anagrafiche"),
                   ref("FK_MARCA", "Marche")},
                  {}};
    list << Table{QStringLiteral("CatScAcquistoSconti"),
                  {ref("FK_CatScAcquisto", "CatScAcquisto"), quantity("RangeMax"), quantity("RangeMin"),
                   percent("Sconto1"), percent("SCONTO2"), percent("SCONTO3")},
                  {}};
    list << Table{QStringLiteral("CatScProdVendita"),
                  {key("RID"), ref("FK_CATEGORIA", "CategorieSconti"), ref("FK_Fascia", "FasceClienti"),
                   ref("FK_PRODOTTO", "Prodotti")},
                  {}};
    list << Table{QStringLiteral("CatScVenditaProd"),
                  {ref("FK_CatScVenditeProd", "CatScProdVendita"), amount("PREZZO"), quantity("RangeMax"),
                   quantity("RangeMin")},
                  {}};
    list << Table{QStringLiteral("CatScProdAcquisto"),
                  {key("RID"), ref("FK_CATEGORIA", "CategorieSconti"), ref("FK_Fornitore", "Anagrafiche"),
                   ref("FK_PRODOTTO", "Prodotti")},
                  {}};
    list << Table{QStringLiteral("CatScAcquistoProd"),
                  {ref("FK_CatScProdAcquisto", "CatScProdAcquisto"), amount("PREZZO"), quantity("RangeMax"),
                   quantity("RangeMin")},
                  {}};

    // Bills of material.
    list << Table{QStringLiteral("DistintaBase"),
                  {key("RID"), text("BARCODE", kCodice), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione),
                   text("EXTRACOD", kCodice), ref("FK_CATEGORIA", "CategorieMerceologiche"), ref("FK_GRUPPO", "Gruppi"),
                   ref("FK_UM", "UnitaMisura")},
                  {index({"CODICE"}, true)}}; // one bill of material per kit code
    list << Table{QStringLiteral("DistintaBaseDettagli"),
                  {key("RID"), text("CODPRODOTTO", kCodice), text("DESCPRODOTTO", kDescrizione),
                   ref("FK_DISTINTABASE", "DistintaBase"), ref("FK_Iva", "Iva"), ref("FK_PRODOTTO", "Prodotti"),
                   ref("FK_UM", "UnitaMisura"), whole("POS"), amount("PREZZO"), quantity("QUANTITA"),
                   percent("VALOREIVA")}, // the VAT percentage, not a key
                  {}};

    // Numerators: the screen gives RID itself (highest + 1).
    {
        Table t{QStringLiteral("Numeratori"),
                {key("RID"), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione)},
                {}};
        t.programKey = true;
        list << t;
    }

    // Yearly counters, one row per numerator and year (the unique index
    // lets a server hand out numbers under the row's lock). FK_NUMERATORE has no constraint: the special-list
    // numbering passes the key of its option as it stands, and a document
    // save must not fail because that option is unset.
    list << Table{QStringLiteral("Contatori"),
                  {key("RID"), whole("ANNO"), text("DESCRIZIONE", kDescrizione), ref("FK_NUMERATORE"), memo("NOTE"),
                   whole("NUMERO")},
                  {index({"FK_NUMERATORE", "ANNO"}, true)}};

    // Causals. ORIGINE and DESTINAZIONE are kinds (0 none, 1 customer,
    // 2 supplier, 3 warehouse), not keys; the booleans are written -1/0.
    list << Table{QStringLiteral("Causali"),
                  {key("RID"), text("CODICE", kCodice), text("DESCRIZIONE", kDescrizione), whole("DESTINAZIONE"),
                   ref("FK_ContoAvere1", "PianoConti"), ref("FK_CONTOAVERE2", "PianoConti"),
                   ref("FK_CONTODARE1", "PianoConti"), ref("FK_CONTODARE2", "PianoConti"),
                   ref("FK_MagazzinoDest", "Magazzini"), ref("FK_MagazzinoOrig", "Magazzini"), flag("GENERAPN"),
                   flag("GENERASCAD"), flag("MOSTRAVB"), flag("Operazione"), whole("ORIGINE"), flag("SCADENZENEGATIVE"),
                   flag("TAGLIO")},
                  {}};

    list << Table{QStringLiteral("TipoDocumenti"),
                  {key("RID"),
                   flag("ACCOMPAGNATORIO"),
                   text("CODICE", kCodice),
                   text("DESCRIZIONE", kDescrizione),
                   text("DESCSTAMPA", kDescrizione),
                   ref("FK_CAUSALE", "Causali"),
                   flag("FLEXCOUNTER"),
                   flag("HIDEMENU"),
                   flag("HIDERICERCA"),
                   flag("MODIFICAPREZZOACQUISTO"),
                   flag("MOSTRAVB"),
                   ref("NCONTATORE", "Numeratori"),
                   flag("NONSTAMPAREVB"),
                   percent("RDA1"),
                   percent("RDA2"),
                   text("REPORT", kDescrizione),
                   flag("STAMPAELENCOSPECIALE"),
                   text("TD_", 50),
                   flag("USAPREZZIIVA"),
                   flag("USARDA")},
                  {}};

    list << Table{QStringLiteral("SellOutConfig"),
                  {ref("FK_TIPODOCUMENTO", "TipoDocumenti"), text("TD_", 50), text("TIPO", 10)},
                  {}};

    // Journal. RifMovimento has no constraint: deleting a document removes
    // the document first and the entries that name it afterwards. ANNO is
    // the year whose sequence gave PROGRESSIVO: the year of DATA when the
    // entry was made, kept when a later change moves the date to another
    // year, as the number is kept.
    list << Table{QStringLiteral("PrimaNota"),
                  {key("RID"), text("CodicePartita", kCodice), date("DATA"), date("DataValuta"),
                   text("DESCRIZIONE", kDescrizione), ref("FK_Anagrafe", "Anagrafiche"), ref("FK_CAUSALE", "Causali"),
                   ref("FK_CentroCosto", "CentriCosto"), ref("FK_PAGAMENTO", "Pagamenti"), amount("Importo"),
                   text("NumDocumento", 50), whole("PROGRESSIVO"), whole("ANNO"), text("RIFERIMENTI", kDescrizione),
                   ref("RifMovimento")},
                  {index({"ANNO", "PROGRESSIVO"}, true), index({"DATA"}), index({"DataValuta"})}};

    // One row a year of journal numbers, for its lock: a server workstation
    // that numbers an entry holds it until its transaction ends.
    list << Table{QStringLiteral("AnniPrimaNota"), {key("RID"), whole("ANNO")}, {index({"ANNO"}, true)}};

    list << Table{QStringLiteral("PrimaNotaDettagli"),
                  {key("RID"), amount("Avere"), amount("DARE"), ref("FK_Conto", "PianoConti"),
                   ref("FK_PrimaNota", "PrimaNota")},
                  {}};

    // Document headers. FK_ORIGINE and FK_DESTINAZIONE hold a warehouse or
    // nothing as the causal says, and FK_MOVIMENTO and FK_LOGO are not written
    // by this program: no constraint on them. FK_CONTROPARTITA is always a
    // counterparty (or Null), so it is checked.
    list << Table{QStringLiteral("Movimenti"),
                  {key("RID"),
                   text("ABI", 10),
                   whole("ANNO"),
                   text("AUTELENCOSPECIALE", kDescrizione),
                   text("CAB", 10),
                   text("CAP", kCap),
                   text("CAPCONS", kCap),
                   text("CELL", kTelefono),
                   text("CFISCALE", 20),
                   text("CITTA", kCitta),
                   text("CITTACONS", kCitta),
                   text("CIVICO", kCivico),
                   text("CIVICOCONS", kCivico),
                   text("CODASPETTO", kCodice),
                   text("CODBANCA", kCodice),
                   text("CODCONTROPARTITA", kCodice),
                   text("CODDESTINAZIONE", kCodice),
                   text("CODDOCUMENTO", kCodice),
                   text("CODMAGAZZINOORIGINE", kCodice),
                   text("CODORIGINE", kCodice),
                   text("CODPAGAMENTO", kCodice),
                   text("CODPARTITA", kCodice),
                   text("CODSPEDIZIONE", kCodice),
                   text("CODTIPODOCUMENTO", kCodice),
                   text("CODTRASPORTO", kCodice),
                   whole("COLLICONS"),
                   date("DATA"),
                   date("DATACONS"),
                   date("DATAORIGINALE"),
                   date("DATASTAMPA"),
                   text("DENOMINAZIONE", kDescrizione),
                   text("DESCASPETTO", kDescrizione),
                   text("DESCBANCA", kDescrizione),
                   text("DESCCONTROPARTITA", kDescrizione),
                   text("DESCDESTINAZIONE", kDescrizione),
                   text("DESCDOCUMENTO", kDescrizione),
                   text("DESCMAGAZZINOORIGINE", kDescrizione),
                   text("DESCORIGINE", kDescrizione),
                   text("DESCPAGAMENTO", kDescrizione),
                   text("DESCSPEDIZIONE", kDescrizione),
                   text("DESCTIPODOCUMENTO", kDescrizione),
                   text("DESCTRASPORTO", kDescrizione),
                   text("DESTELENCOSPECIALE", kDescrizione),
                   text("DOCUMELENCOSPECIALE", kDescrizione),
                   text("FAX", kTelefono),
                   text("FAXCONS", kTelefono),
                   ref("FK_ASPETTOCONS", "AspettoEsteriore"),
                   ref("FK_BANCA", "Banche"),
                   ref("FK_CAUSALETRASPORTO", "CausaliTrasporto"),
                   ref("FK_CONTROPARTITA", "Anagrafiche"),
                   ref("FK_DESTINAZIONE"),
                   ref("FK_LOGO"),
                   ref("FK_MOVIMENTO"),
                   ref("FK_ORIGINE"),
                   ref("FK_PAGAMENTO", "Pagamenti"),
                   ref("FK_PNPagamento", "PrimaNota"),
                   ref("FK_PrimaNota", "PrimaNota"),
                   ref("FK_SPEDIZIONE", "Spedizioni"),
                   ref("FK_TIPODOCUMENTO", "TipoDocumenti"),
                   whole("IDPNPagamento"),
                   text("INDIRIZZO", kIndirizzo),
                   whole("NUMEROCONTROPARTITA"),
                   text("NUMEROORIGINALE", 50),
                   text("ORACONS", 20), // a time as text
                   quantity("PESOCONS"),
                   memo("PiePagina"),
                   text("PIVA", 20),
                   whole("PROGELENCOSPECIALE"), // a progressive number, not a key
                   whole("PROGRESSIVO"),
                   text("PROVINCIA", kProvincia),
                   text("PROVINCIACONS", kProvincia),
                   percent("RDA1"),
                   percent("RDA2"),
                   text("RIFERIMENTI", kDescrizione),
                   text("TELEFONOCONS", kTelefono),
                   text("TELUFFICIO", kTelefono),
                   amount("TOTDOCUMENTO"),
                   amount("TOTIMPONIBILE"),
                   amount("TOTIMPOSTA"),
                   amount("TOTRDA"),
                   flag("USAPREZZIIVA"),
                   text("VIACONS", kIndirizzo)},
                  {index({"FK_TIPODOCUMENTO", "ANNO", "PROGRESSIVO"}), index({"ANNO"}), index({"DATA"}),
                   index({"CODPARTITA"})}};

    // Document rows. IK_DETTAGLIOMOVIMENTO points at the kit parent row of the
    // same document; rows are deleted and rewritten in grid order, so it has
    // no constraint. CODIVA holds the code of the VAT rate, which is text.
    list << Table{QStringLiteral("DettagliMovimento"),
                  {key("RID"),
                   text("CODIVA", kCodice),
                   text("CODPRODOTTO", kCodice),
                   text("DESCPRODOTTO", kDescrizione),
                   whole("EXTRAPROG"),
                   ref("FK_Iva", "Iva"),
                   ref("FK_MOVIMENTO", "Movimenti"),
                   ref("FK_PRODOTTO", "Prodotti"),
                   ref("FK_UM", "UnitaMisura"),
                   ref("FK_VENDITORE", "Venditori"),
                   ref("IK_DETTAGLIOMOVIMENTO"),
                   amount("IVA"), // VAT per unit
                   dateTime("ORA"),
                   whole("POS"),
                   amount("PREZZO"),
                   amount("PREZZOLISTINO"),
                   amount("PREZZONETTO"),
                   quantity("QUANTITA"),
                   percent("SCONTO"),
                   percent("SCONTO2"),
                   percent("SCONTO3"),
                   amount("SCONTONETTO"),
                   amount("TAGLIO"),
                   amount("TOTALEIVA"),
                   amount("TOTALERIGA"),
                   amount("TotPrezzoNetto"),
                   percent("VALOREIVA")},
                  {}};

    // Generated documents. Deleting a document removes the rows where it is
    // the destination and keeps those where it is the source, so only the
    // destination is checked.
    list << Table{QStringLiteral("DocGenerati"), {ref("FK_MOVDESTINAZIONE", "Movimenti"), ref("FK_MOVORIGINE")}, {}};

    // Due dates hang on the journal entry. FK_MOVIMENTO is not written by this
    // program, and the counter-sales client's rows must not stop the delete of
    // a document: no constraint.
    list << Table{QStringLiteral("Scadenze"),
                  {key("RID"), date("DATA"), ref("FK_MOVIMENTO"), ref("FK_PrimaNota", "PrimaNota"), amount("Importo")},
                  {index({"DATA"})}};

    // Print-shop orders: the module is switched off and its screens keep their
    // own rules, so its references carry indexes only.
    list << Table{QStringLiteral("Ordini"),
                  {key("RID"),
                   number("CONTOLAVORAZIONE"),
                   date("DATA"),
                   text("DESCRIZIONE", kDescrizione),
                   text("DESCSTAMPAESTERNA", kDescrizione),
                   text("DESCSTAMPAINTERNA", kDescrizione),
                   ref("FK_COLORE1"),
                   ref("FK_COLORE2"),
                   ref("FK_COLORE3"),
                   ref("FK_COLORE4"),
                   ref("FK_CONFEZIONE"),
                   ref("FK_DITTA"),
                   ref("FK_FINESTRA"),
                   ref("FK_FINESTRA2"),
                   ref("FK_FINESTRA3"),
                   ref("FK_FormatoCarta"),
                   ref("FK_STAMPAINTERNA"),
                   ref("FK_TIPOCARTA"),
                   number("FUSTELLA"),
                   number("GRMQ"),
                   whole("NUMERO"),
                   quantity("QUANTITA"),
                   number("RESA"),
                   number("STAMPAESTERNA")},
                  {index({"NUMERO"})}};

    // Statement rows per workstation, for printing.
    list << Table{QStringLiteral("TMP_ESTRATTO"),
                  {text("Causale", kDescrizione), text("CentroCosto", kDescrizione), text("CodCausale", kCodice),
                   text("CodicePartita", kCodice), text("COMPUTER", 64), text("Conto", kDescrizione),
                   text("Contropartita", kDescrizione), date("DATA"), date("DataValuta"),
                   text("DESCRIZIONE", kDescrizione), amount("Importo"), whole("NumContropartita"), whole("Prog"),
                   text("Riferimento", kDescrizione)},
                  {index({"COMPUTER"})}};

    list << Table{QStringLiteral("SellOut"),
                  {text("CATEGORIA", kDescrizione), text("GRUPPO", kDescrizione), amount("IMPACQ"), amount("IMPVEN"),
                   text("MARCA", kDescrizione), quantity("QTAACQ"), quantity("QTARES"), quantity("QTAVEN"),
                   percent("SELLOUT"), whole("TIPORIGA")},
                  {}};

    for (Table& t : list)
        completeIndexes(t);
    return list;
}

QString quoted(const QString& name, int tipoServer)
{
    switch (tipoServer) {
    case TipoServer::SqlServer: return QLatin1Char('[') + name + QLatin1Char(']');
    case TipoServer::MySql: return QLatin1Char('`') + name + QLatin1Char('`');
    default: return QLatin1Char('"') + name + QLatin1Char('"');
    }
}

QString quotedList(const QStringList& names, int tipoServer)
{
    QStringList out;
    for (const QString& n : names)
        out << quoted(n, tipoServer);
    return out.join(QStringLiteral(", "));
}

QString keyColumnOf(const QString& table)
{
    const Table* t = findTable(table);
    return t && t->hasKey() ? t->columns.first().name : QStringLiteral("RID");
}

QString constraintName(const Table& t, const Column& c)
{
    return QStringLiteral("fk_") + t.name + QLatin1Char('_') + c.name;
}

QString columnDefinition(const Table& t, const Column& c, int tipoServer)
{
    QString def = quoted(c.name, tipoServer) + QLatin1Char(' ');
    if (c.kind == ColKind::Key) {
        switch (tipoServer) {
        case TipoServer::SqlServer:
            def += t.programKey ? QStringLiteral("INT NOT NULL PRIMARY KEY")
                                : QStringLiteral("INT IDENTITY(1,1) NOT NULL PRIMARY KEY");
            break;
        case TipoServer::MySql: def += QStringLiteral("INT NOT NULL AUTO_INCREMENT PRIMARY KEY"); break;
        default: def += QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT"); break;
        }
        return def;
    }
    def += sqlType(c, tipoServer);
    if (tipoServer == TipoServer::FileDb && c.kind == ColKind::Ref && !c.refTable.isEmpty())
        def += QStringLiteral(" REFERENCES ") + quoted(c.refTable, 1) + QLatin1Char('(')
            + quoted(keyColumnOf(c.refTable), 1) + QLatin1Char(')');
    return def;
}

} // namespace

bool Table::hasKey() const { return !columns.isEmpty() && columns.first().kind == ColKind::Key; }

int schemaVersion() { return 2; }

QString versionTable() { return QStringLiteral("SchemaVersion"); }

QString versionColumn() { return QStringLiteral("VERSIONE"); }

const QList<Table>& tables()
{
    static const QList<Table> list = buildTables();
    return list;
}

const Table* findTable(const QString& name)
{
    for (const Table& t : tables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return &t;
    return nullptr;
}

QString sqlType(const Column& c, int tipoServer)
{
    switch (tipoServer) {
    case TipoServer::SqlServer: // SQL Server
        switch (c.kind) {
        case ColKind::Key:
        case ColKind::Ref:
        case ColKind::Int: return QStringLiteral("INT");
        case ColKind::Text: return QStringLiteral("NVARCHAR(%1)").arg(c.length);
        case ColKind::Memo: return QStringLiteral("NVARCHAR(MAX)");
        case ColKind::Amount:
        case ColKind::Quantity:
        case ColKind::Percent: return QStringLiteral("DECIMAL(19,4)");
        case ColKind::Number: return QStringLiteral("FLOAT");
        case ColKind::Flag: return QStringLiteral("SMALLINT");
        case ColKind::Date:
        case ColKind::DateTime: return QStringLiteral("DATETIME");
        }
        break;
    case TipoServer::MySql: // MariaDB / MySQL
        switch (c.kind) {
        case ColKind::Key:
        case ColKind::Ref:
        case ColKind::Int: return QStringLiteral("INT");
        case ColKind::Text: return QStringLiteral("VARCHAR(%1)").arg(c.length);
        case ColKind::Memo: return QStringLiteral("MEDIUMTEXT");
        case ColKind::Amount:
        case ColKind::Quantity:
        case ColKind::Percent: return QStringLiteral("DECIMAL(19,4)");
        case ColKind::Number: return QStringLiteral("DOUBLE");
        case ColKind::Flag: return QStringLiteral("SMALLINT");
        case ColKind::Date: return QStringLiteral("DATE");
        case ColKind::DateTime: return QStringLiteral("DATETIME");
        }
        break;
    default: // SQLite: dates are ISO text
        switch (c.kind) {
        case ColKind::Key:
        case ColKind::Ref:
        case ColKind::Int:
        case ColKind::Flag: return QStringLiteral("INTEGER");
        case ColKind::Text:
        case ColKind::Memo:
        case ColKind::Date:
        case ColKind::DateTime: return QStringLiteral("TEXT");
        case ColKind::Amount:
        case ColKind::Quantity:
        case ColKind::Percent:
        case ColKind::Number: return QStringLiteral("REAL");
        }
        break;
    }
    return QString();
}

QStringList createStatements(int tipoServer)
{
    QStringList out;
    for (const Table& t : tables()) {
        QStringList defs;
        for (const Column& c : t.columns)
            defs << columnDefinition(t, c, tipoServer);
        QString sql = QStringLiteral("CREATE TABLE ") + quoted(t.name, tipoServer) + QStringLiteral(" (")
            + defs.join(QStringLiteral(", ")) + QLatin1Char(')');
        if (tipoServer == TipoServer::MySql)
            sql += QStringLiteral(" ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_unicode_ci");
        out << sql;
    }
    for (const Table& t : tables())
        for (const Index& ix : t.indexes) {
            QString sql = (ix.unique ? QStringLiteral("CREATE UNIQUE INDEX ") : QStringLiteral("CREATE INDEX "))
                + quoted(ix.name, tipoServer) + QStringLiteral(" ON ") + quoted(t.name, tipoServer)
                + QStringLiteral(" (") + quotedList(ix.columns, tipoServer) + QLatin1Char(')');
            // Rows with a Null in the key never collide, as on the other back
            // ends; SQL Server would count Null as one more value.
            if (ix.unique && tipoServer == TipoServer::SqlServer) {
                QStringList present;
                for (const QString& column : ix.columns)
                    present << quoted(column, tipoServer) + QStringLiteral(" IS NOT NULL");
                sql += QStringLiteral(" WHERE ") + present.join(QStringLiteral(" AND "));
            }
            out << sql;
        }
    if (tipoServer == TipoServer::FileDb)
        return out; // SQLite: the references are part of CREATE TABLE
    for (const Table& t : tables())
        for (const Column& c : t.columns)
            if (c.kind == ColKind::Ref && !c.refTable.isEmpty())
                out << QStringLiteral("ALTER TABLE ") + quoted(t.name, tipoServer) + QStringLiteral(" ADD CONSTRAINT ")
                        + quoted(constraintName(t, c), tipoServer) + QStringLiteral(" FOREIGN KEY (")
                        + quoted(c.name, tipoServer) + QStringLiteral(") REFERENCES ") + quoted(c.refTable, tipoServer)
                        + QStringLiteral(" (") + quoted(keyColumnOf(c.refTable), tipoServer) + QLatin1Char(')');
    return out;
}

} // namespace schema
