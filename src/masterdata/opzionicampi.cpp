#include "masterdata/opzionicampi.h"

#include <QDir>

namespace opzioni {

namespace {

Campo semplice(const char* opzione, const char* controllo, Controllo tipo, Frame frame, const char* etichetta,
               int lunghezza = 0)
{
    Campo c;
    c.column = QString::fromLatin1(opzione);
    c.control = QString::fromLatin1(controllo);
    c.caption = QString::fromUtf8(etichetta);
    c.tipo = tipo;
    c.frame = frame;
    c.length = lunghezza;
    return c;
}

// The browse buttons are numbered in the order of the option table.
Campo chiave(const char* opzione, const char* controllo, Frame frame, const char* etichetta, const LookupTable& tabella,
             int sfoglia)
{
    Campo c = semplice(opzione, controllo, Controllo::Chiave, frame, etichetta);
    c.kind = fields::Kind::Key;
    c.lookup = &tabella;
    c.sfoglia = sfoglia;
    return c;
}

Campo flag(const char* opzione, const char* controllo, Frame frame, const char* etichetta)
{
    Campo c = semplice(opzione, controllo, Controllo::Flag, frame, etichetta);
    c.kind = fields::Kind::Flag;
    return c;
}

Campo nelPannello(Campo c, const char* contenitore)
{
    c.contenitore = QString::fromLatin1(contenitore);
    return c;
}

Campo diMacchina(Campo c)
{
    c.macchina = true;
    return c;
}

QList<Campo> costruisci()
{
    using C = Controllo;
    return {
        // Opzioni Generali
        semplice("AnnoCorrente", "txtAnnoCorrente", C::Anno, Generali, "Anno corrente:", 4),
        semplice("DecimaliDopo", "txtDecimalAfter", C::Intero, Generali, "Decimali dopo la virgola:", 1),
        chiave("CatPrezziNetti", "txtCatPrezziNetti", Generali, "Categoria prezzi netti:", lookup::categorieSconti, 1),
        diMacchina(flag("UsaGrassetto", "chkUsaGrassetto", Generali, "Usa il grassetto negli elenchi")),

        // Opzioni Contabili
        chiave("ContoClienti", "txtContoClienti", Conti, "Conto clienti:", lookup::pianoConti, 5),
        chiave("ContoFornitori", "txtContoFornitori", Conti, "Conto fornitori:", lookup::pianoConti, 6),
        flag("BloccoPN", "chkBloccoPN", Conti, "Non bloccare la prima nota generata dai documenti"),
        flag("DescPN", "chkDescPN", Conti, "In prima nota usa il documento d'origine del movimento"),
        flag("FidoAllaData", "chkFido", Conti, "Calcola il fido alla data di sistema"),
        flag("NoShowCptEstratto", "chkNoShowCptEstratto", Conti, "Estratto conto senza ricerca della contropartita"),

        // Prodotti
        chiave("RidIvaProdotti", "txtIva", Prodotti, "Aliquota Iva:", lookup::iva, 16),
        chiave("RidUMProdotti", "txtUnitaMisura", Prodotti, "Unità di misura:", lookup::unitaMisura, 17),
        chiave("RidMarcaProdotti", "txtMarcaPredefinita", Prodotti, "Marca:", lookup::marche, 18),
        chiave("RidCollezioneProdotti", "txtCollezionePredefinita", Prodotti, "Collezione:", lookup::collezioni, 19),
        flag("PrezzoMedio", "chkPrezzoMedio", Prodotti, "Valorizza il magazzino a prezzo medio"),
        nelPannello(semplice("MesiPrezzoMedio", "txtMesiPrezzoMedio", C::Intero, Prodotti, "Mesi:", 3),
                    "pctPrezzoMedio"),
        flag("SottoScorta", "chkSottoScorta", Prodotti, "Controlla i prodotti sotto scorta"),
        nelPannello(semplice("BloccaSottoScorta", "optBloccaSottoScorta", C::Opzione, Prodotti, "Blocca"),
                    "pctSottoScorta"),
        nelPannello(semplice("AvvisaSottoScorta", "optAvvisaSottoScorta", C::Opzione, Prodotti, "Avvisa"),
                    "pctSottoScorta"),
        flag("PrezzoListino", "chkPrezzoListino", Prodotti, "Non chiedere se cambiare il prezzo di listino"),
        diMacchina(flag("IgnoraVerificaCodiceProdotto", "chkIgnoraVerificaCodiceProdotto", Prodotti,
                        "Ignora la verifica del codice prodotto")),

        // Vendita al Banco
        chiave("ClientePredefinito", "txtCliente", VenditaBanco, "Cliente:", lookup::clienti, 2),
        chiave("TipoDocVb", "txtDocumentoVB", VenditaBanco, "Documento:", lookup::tipoDocumenti, 3),
        chiave("CausalePagVb", "txtCausalePagVB", VenditaBanco, "Causale pagamento:", lookup::causali, 4),
        chiave("PagamentoVB", "txtPagamento", VenditaBanco, "Pagamento:", lookup::pagamenti, 15),
        semplice("VenditoreChar", "txtVenditoreChar", C::Testo, VenditaBanco, "Prefisso tessera venditore:", 5),
        diMacchina(semplice("ClienteChar", "txtClienteChar", C::Testo, VenditaBanco, "Prefisso tessera cliente:", 5)),
        diMacchina(semplice("LaserChar", "txtLaserChar", C::Testo, VenditaBanco, "Intestazione lettore CCD:", 5)),
        diMacchina(flag("MostraClienteVB", "chkMostraCVB", VenditaBanco, "Usa questo cliente quando è omesso")),
        flag("LockVBEdit", "chkLockVBEdit", VenditaBanco, "Blocca modifica ed eliminazione delle vendite"),
        flag("LockVBPrezzo", "chkBloccoPrezzo", VenditaBanco, "Blocca prezzo e sconti del cliente"),
        flag("PagatoAltriClienti", "chkPagatoAltriClienti", VenditaBanco, "Imposta pagato per gli altri clienti"),
        flag("VenditoriObbligatori", "chkVenditoriObbligatori", VenditaBanco, "Venditore obbligatorio"),
        flag("VenditoriBlocco", "chkVenditoriBlocco", VenditaBanco, "Blocca a fine vendita"),
        flag("VenditeGiorniDiversi", "chkVenditeGiorniDiversi", VenditaBanco, "Controlla le vendite in giorni diversi"),
        nelPannello(semplice("BloccaVenditeGiorniDiversi", "optBloccaVenditeGiorniDiversi", C::Opzione, VenditaBanco,
                             "Blocca"),
                    "pctVenditeGiorniDiversi"),
        nelPannello(semplice("AvvisaVenditeGiorniDiversi", "optAvvisaVenditeGiorniDiversi", C::Opzione, VenditaBanco,
                             "Avvisa"),
                    "pctVenditeGiorniDiversi"),

        // Impostazioni Documenti
        semplice("TipoStampaDistinta", "optDistintaBase", C::OpzioniIndice, DistintaBase, "Stampa della distinta base"),
        semplice("DistintaBase", "txtDistintaBase", C::Testo, DistintaBase, "Carattere della distinta base:", 1),
        semplice("RigaLibera", "txtRigaLibera", C::Testo, DistintaBase, "Carattere della riga libera:", 1),
        chiave("IvaPredRigaLibera", "txtIvaRigaLibera", DistintaBase, "Iva della riga libera:", lookup::iva, 0),
        chiave("DocConversione", "txtDocConversione", DistintaBase, "Conversione in fattura:", lookup::tipoDocumenti,
               13),
        chiave("DocConversioneDDT", "txtDocConversioneDDT", DistintaBase, "Conversione in DDT:", lookup::tipoDocumenti,
               14),
        flag("MostraTotaleRigaMov", "chkMostraTotRiga", DistintaBase, "Mostra il totale di riga nei documenti"),
        flag("UsaPrezziIva", "chkPrezziIva", DistintaBase, "Prezzi Iva compresa"),
        semplice("PiePagina", "txtPiePagina", C::TestoMultiriga, DistintaBase, "Piè di pagina:"),

        // Elenco Speciale
        semplice("ReportElencoSpeciale", "cmbReport", C::ComboReport, ElencoSpeciale, "Report:"),
        semplice("NumeratoreElencoSpeciale", "cmbNumeratore", C::ComboNumeratore, ElencoSpeciale, "Numeratore:"),

        // Conversione Ordini - Prodotti
        chiave("GruppoPredefinito", "txtGruppoPredef", Promozioni, "Gruppo predefinito:", lookup::gruppi, 7),
        chiave("GruppoProdInteg", "txtGruppoProdInteg", Promozioni, "Gruppo produzione integrativa:", lookup::gruppi,
               8),
        chiave("GruppoProdCL", "txtGruppoProdCL", Promozioni, "Gruppo produzione conto lavoro:", lookup::gruppi, 9),
        chiave("Marca", "txtMarca", Promozioni, "Marca:", lookup::marche, 10),
        chiave("Fornitore", "txtFornitore", Promozioni, "Fornitore:", lookup::fornitori, 11),
        chiave("TipoDocProd", "txtTipoDocProd", Promozioni, "Documento di produzione:", lookup::tipoDocumenti, 12),
    };
}

} // namespace

QString Campo::etichettaDescrizione() const { return QStringLiteral("lbl") + control.mid(3); }

const QList<Campo>& campi()
{
    static const QList<Campo> list = costruisci();
    return list;
}

const Campo* campo(const QString& controllo)
{
    for (const Campo& c : campi())
        if (controllo == c.control)
            return &c;
    return nullptr;
}

QStringList captionsDistintaBase()
{
    return {QStringLiteral("completa"), QStringLiteral("come unico prodotto"), QStringLiteral("come composizione")};
}

const QList<Dipendenza>& dipendenze()
{
    static const QList<Dipendenza> list = {
        {"chkPrezzoMedio", "pctPrezzoMedio", true},
        {"chkSottoScorta", "pctSottoScorta", true},
        {"chkVenditeGiorniDiversi", "pctVenditeGiorniDiversi", true},
        {"chkVenditoriObbligatori", "chkVenditoriBlocco", false},
    };
    return list;
}

bool valida(const Campo& c, QString& codice, QString& descrizione, int& rid)
{
    if (!c.lookup)
        return false;
    return c.lookup->validate(codice, descrizione, rid);
}

QString captionFrame(Frame frame)
{
    switch (frame) {
    case Generali: return QStringLiteral("Opzioni Generali");
    case Conti: return QStringLiteral("Opzioni Contabili");
    case Prodotti: return QStringLiteral("Prodotti");
    case VenditaBanco: return QStringLiteral("Vendita al Banco");
    case DistintaBase: return QStringLiteral("Impostazioni Documenti");
    case Logo: return QStringLiteral("Logo azienda");
    case ElencoSpeciale: return QStringLiteral("Elenco Speciale");
    case Promozioni: return QStringLiteral("Conversione Ordini - Prodotti");
    }
    return QString();
}

QString nomeFrame(Frame frame)
{
    static const char* const nomi[] = {"fraGenerali",     "fraConti", "fraProdotti",       "fraVenditaBanco",
                                       "fraDistintaBase", "fraLogo",  "fraElencoSpeciale", "fraPromozioni"};
    return QLatin1String(nomi[frame]);
}

QString primoCampo(Frame frame)
{
    switch (frame) {
    case Generali: return QStringLiteral("txtAnnoCorrente");
    case Conti: return QStringLiteral("txtContoClienti");
    case VenditaBanco: return QStringLiteral("txtCliente");
    case Promozioni: return QStringLiteral("txtGruppoProdInteg");
    default: return QString();
    }
}

QStringList fileReport(const QString& cartella)
{
    if (cartella.isEmpty())
        return {};
    return QDir(cartella).entryList({QStringLiteral("*.rpt")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
}

} // namespace opzioni
