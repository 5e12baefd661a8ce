// The rows of a new database: every option, and a starter set with which a
// new firm can issue its first invoice at once.
//
// Starter documents (type code, causal, numerator, template):
//   FV  Fattura di vendita       warehouse SEDE -> customer, stock, journal, due dates  Fattura.rpt
//   FD  Fattura differita        customer, journal and due dates, no stock (from DDT)  Fattura.rpt
//   NC  Nota di credito          customer, journal, negative due dates, no stock       Fattura.rpt
//   DDT Documento di trasporto   warehouse SEDE -> customer, stock                     DDT.rpt
//   OC  Ordine cliente           customer, nothing posted                              Ordine.rpt
//   CF  Carico da fornitore      supplier -> warehouse SEDE, stock by cost lot,
//                                journal, negative due dates, purchase prices kept     Documento.rpt
//   TM  Trasferimento            warehouse -> warehouse, stock                         DDT.rpt
// FV, FD and NC share the numerator of invoices; DDT and TM share that of
// delivery notes. Two journal-only causals (collection from a customer,
// payment to a supplier) serve the journal screen.
//
// Report templates named here and shipped with the program:
//   function 1 (document types): Fattura.rpt, DDT.rpt, Ordine.rpt, Documento.rpt
//   function 2 (product summary): RiepilogoProdotti.rpt
//   function 3 (account statement): EstrattoConto.rpt
//   function 4 (sell-out): SellOutSintetico.rpt, SellOutEsteso.rpt
//   function 5 (special list): ElencoSpeciale.rpt
//
// Row kinds by the first character of a product code: "/" a free row (the
// character is also written literally in statements), "*" a kit head. The
// pseudo-products "/D" (description rows written by the conversion wizard)
// and "/L" (free rows typed in documents) are part of the model.

#include "data/modelseed.h"

#include "data/schema.h"

#include <QDate>

namespace schema {

namespace {

QVariant t(const char* s) { return QString::fromUtf8(s); }
const QVariant null;

// Keys of the starter rows that other rows and options refer to.
enum IvaRid {
    IvaOrdinaria = 1,
    Iva10,
    Iva5,
    Iva4,
    IvaEsente
};
enum UmRid {
    UmPezzi = 1
};
enum MagazzinoRid {
    MagazzinoSede = 1
};
enum ContoRid {
    MastroAttivita = 1,
    GruppoCreditiClienti,
    ContoClientiItalia,
    GruppoCreditiTributari,
    ContoIvaCredito,
    ContoRitenuteSubite,
    GruppoLiquidita,
    ContoCassa,
    ContoBanca,
    MastroPassivita,
    GruppoDebitiFornitori,
    ContoFornitoriItalia,
    GruppoDebitiTributari,
    ContoIvaDebito,
    MastroCosti,
    GruppoAcquisti,
    ContoMerciAcquisti,
    MastroRicavi,
    GruppoVendite,
    ContoMerciVendite,
    ContoResiVendite
};
enum PagamentoRid {
    PagRimessaDiretta = 1,
    Pag30DataFattura,
    Pag30FineMese,
    Pag3060FineMese
};
enum NumeratoreRid {
    NumFatture = 1,
    NumDdt,
    NumOrdini,
    NumCarichi,
    NumElencoSpeciale
};
enum CausaleRid {
    CauFattura = 1,
    CauFatturaDifferita,
    CauNotaCredito,
    CauDdt,
    CauOrdine,
    CauCarico,
    CauTrasferimento,
    CauIncasso,
    CauPagamento
};
enum TipoDocRid {
    TdFattura = 1,
    TdFatturaDifferita,
    TdNotaCredito,
    TdDdt,
    TdOrdine,
    TdCarico,
    TdTrasferimento
};

QString rid(int value) { return QString::number(value); }

SeedTable table(const char* name, const char* columns, QList<QVariantList> rows)
{
    return {QString::fromLatin1(name), QString::fromLatin1(columns).split(QLatin1Char(','), Qt::SkipEmptyParts),
            std::move(rows)};
}

SeedTable codeTable(const char* name, std::initializer_list<std::pair<const char*, const char*>> rows)
{
    SeedTable s = table(name, "RID,CODICE,DESCRIZIONE", {});
    int n = 0;
    for (const auto& [codice, descrizione] : rows)
        s.rows << QVariantList{++n, t(codice), t(descrizione)};
    return s;
}

// The privacy notice, rich text with the placeholders that the counterparty
// card replaces before printing. Accented vowels are written as escapes.
const char* informativa()
{
    return R"RTF({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fswiss Arial;}}\f0\fs20
{\b\fs24 INFORMATIVA SUL TRATTAMENTO DEI DATI PERSONALI}\par
(art. 13 del Regolamento UE 2016/679)\par
\par
Spett.le @NOMINATIVO\par
@INDIRIZZO @CIVICO - @CAP @CITTA (@PROV)\par
P.IVA @PI\par
\par
La informiamo che i Suoi dati personali sono trattati per l'esecuzione dei rapporti contrattuali e commerciali in essere, per l'adempimento degli obblighi di legge, contabili e fiscali, e per la gestione amministrativa dei rapporti con clienti e fornitori.\par
Il trattamento avviene con strumenti cartacei ed elettronici, nel rispetto delle misure di sicurezza previste. I dati non sono diffusi; possono essere comunicati a chi li tratta per conto del titolare (consulenti contabili e fiscali, istituti di credito, vettori) e alle autorit\'e0 competenti quando la legge lo richiede.\par
I dati sono conservati per il tempo previsto dalle norme civilistiche e fiscali. Lei pu\'f2 esercitare in ogni momento i diritti di cui agli artt. 15-22 del Regolamento (accesso, rettifica, cancellazione, limitazione, opposizione, portabilit\'e0) rivolgendosi al titolare del trattamento.\par
\par
Data: @DATA\par
\par
Firma per presa visione ______________________________\par
})RTF";
}

QList<SeedTable> buildSeed()
{
    const int anno = QDate::currentDate().year();
    QList<SeedTable> list;

    list << table("SchemaVersion", "VERSIONE", {{schemaVersion()}});

    // Code tables: row 1 is the system's own.
    list << codeTable("AspettoEsteriore",
                      {{"VIS", "A vista"},
                       {"CAR", "Cartoni"},
                       {"SCA", "Scatole"},
                       {"PAC", "Pacchi"},
                       {"BAN", "Bancali"},
                       {"SFU", "Sfuso"}});
    list << codeTable("CategorieMerceologiche", {{"GEN", "Generica"}});
    list << codeTable("CausaliTrasporto",
                      {{"VEN", "Vendita"},
                       {"RES", "Reso"},
                       {"CVI", "Conto visione"},
                       {"CLA", "Conto lavorazione"},
                       {"OMA", "Omaggio"},
                       {"TRA", "Trasferimento tra sedi"}});
    list << codeTable("CentriCosto", {{"GEN", "Generale"}});
    list << codeTable("Collezioni", {{"GEN", "Generica"}});
    list << codeTable("Colori", {{"GEN", "Non specificato"}});
    list << codeTable("Confezioni", {{"GEN", "Non specificata"}});
    list << codeTable("FasceClienti", {{"STD", "Standard"}});
    list << codeTable("FormatoCarta",
                      {{"A4", "A4 (210 x 297 mm)"}, {"A3", "A3 (297 x 420 mm)"}, {"A5", "A5 (148 x 210 mm)"}});
    list << codeTable("FormatoFinestra",
                      {{"NO", "Senza finestra"}, {"DX", "Finestra a destra"}, {"SX", "Finestra a sinistra"}});
    list << codeTable("Gruppi", {{"GEN", "Generico"}});
    list << codeTable("Spedizioni", {{"MIT", "Mittente"}, {"DES", "Destinatario"}, {"VET", "Vettore"}});
    list << codeTable("UnitaMisura",
                      {{"PZ", "Pezzi"},
                       {"NR", "Numero"},
                       {"KG", "Chilogrammi"},
                       {"LT", "Litri"},
                       {"MT", "Metri"},
                       {"MQ", "Metri quadrati"},
                       {"CF", "Confezioni"},
                       {"CT", "Cartoni"},
                       {"ORE", "Ore"}});

    list << table("GRUPPOUTENTI", "RID,AMMINISTRATORE", {{1, 1}});

    list << table("Iva", "RID,CODICE,DESCRIZIONE,VALORE",
                  {{IvaOrdinaria, t("22"), t("IVA 22%"), 22.0},
                   {Iva10, t("10"), t("IVA 10%"), 10.0},
                   {Iva5, t("5"), t("IVA 5%"), 5.0},
                   {Iva4, t("4"), t("IVA 4%"), 4.0},
                   {IvaEsente, t("E10"), t("Esente art. 10 D.P.R. 633/72"), 0.0}});

    // Chart of accounts: mastro (2), conto (5), sottoconto (8).
    list << table("PianoConti", "RID,CODICE,DESCRIZIONE",
                  {{MastroAttivita, t("01"), t("ATTIVITÀ")},
                   {GruppoCreditiClienti, t("01001"), t("CREDITI VERSO CLIENTI")},
                   {ContoClientiItalia, t("01001001"), t("Clienti Italia")},
                   {GruppoCreditiTributari, t("01002"), t("CREDITI TRIBUTARI")},
                   {ContoIvaCredito, t("01002001"), t("IVA ns/credito (su acquisti)")},
                   {ContoRitenuteSubite, t("01002002"), t("Erario c/ritenute subite")},
                   {GruppoLiquidita, t("01003"), t("DISPONIBILITÀ LIQUIDE")},
                   {ContoCassa, t("01003001"), t("Cassa")},
                   {ContoBanca, t("01003002"), t("Banca c/c")},
                   {MastroPassivita, t("02"), t("PASSIVITÀ")},
                   {GruppoDebitiFornitori, t("02001"), t("DEBITI VERSO FORNITORI")},
                   {ContoFornitoriItalia, t("02001001"), t("Fornitori Italia")},
                   {GruppoDebitiTributari, t("02002"), t("DEBITI TRIBUTARI")},
                   {ContoIvaDebito, t("02002001"), t("IVA ns/debito (su vendite)")},
                   {MastroCosti, t("03"), t("COSTI")},
                   {GruppoAcquisti, t("03001"), t("ACQUISTI")},
                   {ContoMerciAcquisti, t("03001001"), t("Merci c/acquisti")},
                   {MastroRicavi, t("04"), t("RICAVI")},
                   {GruppoVendite, t("04001"), t("VENDITE")},
                   {ContoMerciVendite, t("04001001"), t("Merci c/vendite")},
                   {ContoResiVendite, t("04001002"), t("Resi e abbuoni su vendite")}});

    list << table("Magazzini", "RID,CODICE,DESCRIZIONE", {{MagazzinoSede, t("SEDE"), t("Magazzino Sede")}});

    list << table("Pagamenti",
                  "RID,CODICE,DESCRIZIONE,ACCONTO,RIMESSADIRETTA,BANCAAPPOGGIO,FINEMESE,NRATE,"
                  "SCONTOPAG,SPESEINCASSO,NOTE",
                  {{PagRimessaDiretta, t("RD"), t("Rimessa diretta"), 0.0, 1, 0, 0, 1, 0.0, 0.0, t("")},
                   {Pag30DataFattura, t("30DF"), t("30 gg data fattura"), 0.0, 0, 0, 0, 1, 0.0, 0.0, t("")},
                   {Pag30FineMese, t("30FM"), t("30 gg data fattura fine mese"), 0.0, 0, 0, 1, 1, 0.0, 0.0, t("")},
                   {Pag3060FineMese, t("3060FM"), t("30/60 gg data fattura fine mese"), 0.0, 0, 0, 1, 2, 0.0, 0.0,
                    t("")}});

    list << table("DettagliPagamenti", "RID,FK_PAGAMENTO,NGIORNI,PERCENTUALE",
                  {{1, PagRimessaDiretta, 0, 100.0},
                   {2, Pag30DataFattura, 30, 100.0},
                   {3, Pag30FineMese, 30, 100.0},
                   {4, Pag3060FineMese, 30, 50.0},
                   {5, Pag3060FineMese, 60, 50.0}});

    // Free-row pseudo-products: no stock, no unit.
    list << table(
        "Prodotti",
        "RID,CODICE,DESCRIZIONE,FK_Iva,FK_UNITAMISURA,FK_CATEGORIA,FK_GRUPPO,GIACENZA,"
        "SETGIACENZA,DISTINTABASE,DISABILITATO,ELENCOSPECIALE,BLOCCAPREZZO,PREZZOACQUISTO,"
        "LISTINO1,LISTINO2,LISTINO3,LISTINO4,PLISTINO,SCONTO",
        {{1,   t("/D"), t("RIGA DESCRITTIVA"), IvaOrdinaria, null, 1, 1, 0.0, 0, 0, 0, 0, 0, 0.0, 0.0, 0.0, 0.0, 0.0,
          0.0, 0.0},
         {2,   t("/L"), t("RIGA LIBERA"), IvaOrdinaria, null, 1, 1, 0.0, 0, 0, 0, 0, 0, 0.0, 0.0, 0.0, 0.0, 0.0,
          0.0, 0.0}});

    list << table("Numeratori", "RID,CODICE,DESCRIZIONE",
                  {{NumFatture, t("FAT"), t("Fatture e note di credito")},
                   {NumDdt, t("DDT"), t("Documenti di trasporto")},
                   {NumOrdini, t("ORD"), t("Ordini clienti")},
                   {NumCarichi, t("CAR"), t("Carichi da fornitore")},
                   {NumElencoSpeciale, t("ELS"), t("Elenco speciale")}});

    {
        SeedTable contatori = table("Contatori", "RID,FK_NUMERATORE,ANNO,NUMERO,DESCRIZIONE,NOTE", {});
        const SeedTable& numeratori = list.last();
        for (const QVariantList& n : numeratori.rows)
            contatori.rows << QVariantList{n.at(0), n.at(0), anno, 0, n.at(2), t("n/d")};
        list << contatori;
    }

    // Causals. Booleans -1/0 except MOSTRAVB (0/1); kinds 0 none, 1 customer,
    // 2 supplier, 3 warehouse.
    list << table("Causali",
                  "RID,CODICE,DESCRIZIONE,Operazione,ORIGINE,DESTINAZIONE,FK_MagazzinoOrig,"
                  "FK_MagazzinoDest,GENERAPN,GENERASCAD,SCADENZENEGATIVE,TAGLIO,MOSTRAVB,"
                  "FK_CONTODARE1,FK_CONTODARE2,FK_ContoAvere1,FK_CONTOAVERE2",
                  {{CauFattura, t("FV"), t("Fattura di vendita"), -1, 3, 1, MagazzinoSede, null, -1, -1, 0, 0, 0,
                    ContoClientiItalia, null, ContoMerciVendite, ContoIvaDebito},
                   {CauFatturaDifferita, t("FD"), t("Fattura differita"), 0, 0, 1, null, null, -1, -1, 0, 0, 0,
                    ContoClientiItalia, null, ContoMerciVendite, ContoIvaDebito},
                   {CauNotaCredito, t("NC"), t("Nota di credito a cliente"), 0, 0, 1, null, null, -1, -1, -1, 0, 0,
                    ContoResiVendite, ContoIvaDebito, ContoClientiItalia, null},
                   {CauDdt, t("DDT"), t("Vendita con documento di trasporto"), -1, 3, 1, MagazzinoSede, null, 0, 0, 0,
                    0, 0, null, null, null, null},
                   {CauOrdine, t("OC"), t("Ordine da cliente"), 0, 0, 1, null, null, 0, 0, 0, 0, 0, null, null, null,
                    null},
                   {CauCarico, t("CF"), t("Carico da fornitore"), -1, 2, 3, null, MagazzinoSede, -1, -1, -1, -1, 0,
                    ContoMerciAcquisti, ContoIvaCredito, ContoFornitoriItalia, null},
                   {CauTrasferimento, t("TM"), t("Trasferimento tra magazzini"), -1, 3, 3, MagazzinoSede, null, 0, 0, 0,
                    0, 0, null, null, null, null},
                   {CauIncasso, t("INC"), t("Incasso da cliente"), 0, 0, 0, null, null, -1, 0, 0, 0, 0, ContoCassa,
                    null, ContoClientiItalia, null},
                   {CauPagamento, t("PAG"), t("Pagamento a fornitore"), 0, 0, 0, null, null, -1, 0, 0, 0, 0,
                    ContoFornitoriItalia, null, ContoBanca, null}});

    list << table("TipoDocumenti",
                  "RID,CODICE,DESCRIZIONE,DESCSTAMPA,FK_CAUSALE,NCONTATORE,REPORT,ACCOMPAGNATORIO,"
                  "MOSTRAVB,NONSTAMPAREVB,STAMPAELENCOSPECIALE,MODIFICAPREZZOACQUISTO,USAPREZZIIVA,"
                  "FLEXCOUNTER,HIDEMENU,HIDERICERCA,USARDA,RDA1,RDA2",
                  {{TdFattura, t("FV"), t("Fattura di vendita"), t("Fattura"), CauFattura, NumFatture, t("Fattura.rpt"),
                    1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.0, 0.0},
                   {TdFatturaDifferita, t("FD"), t("Fattura differita"), t("Fattura differita"), CauFatturaDifferita,
                    NumFatture, t("Fattura.rpt"), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.0, 0.0},
                   {TdNotaCredito, t("NC"), t("Nota di credito"), t("Nota di credito"), CauNotaCredito, NumFatture,
                    t("Fattura.rpt"), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.0, 0.0},
                   {TdDdt, t("DDT"), t("Documento di trasporto"), t("Documento di trasporto"), CauDdt, NumDdt,
                    t("DDT.rpt"), 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.0, 0.0},
                   {TdOrdine, t("OC"), t("Ordine cliente"), t("Conferma d'ordine"), CauOrdine, NumOrdini,
                    t("Ordine.rpt"), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.0, 0.0},
                   {TdCarico, t("CF"), t("Carico da fornitore"), t("Carico merce da fornitore"), CauCarico, NumCarichi,
                    t("Documento.rpt"), 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0.0, 0.0},
                   {TdTrasferimento, t("TM"), t("Trasferimento tra magazzini"),
                    t("Documento di trasporto - Trasferimento"), CauTrasferimento, NumDdt, t("DDT.rpt"), 1, 0, 0, 0, 0,
                    0, 0, 0, 0, 0, 0.0, 0.0}});

    list << table("FunzionalitaReport", "RID,Funzionalita,REPORT",
                  {{1, 1, t("Fattura.rpt")},
                   {2, 1, t("DDT.rpt")},
                   {3, 1, t("Ordine.rpt")},
                   {4, 1, t("Documento.rpt")},
                   {5, 2, t("RiepilogoProdotti.rpt")},
                   {6, 3, t("EstrattoConto.rpt")},
                   {7, 4, t("SellOutSintetico.rpt")},
                   {8, 4, t("SellOutEsteso.rpt")},
                   {9, 5, t("ElencoSpeciale.rpt")}});

    list << table("Informativa", "INFORMATIVA", {{t(informativa())}});

    // Every option, in the order of the options screen. Keys are RIDs as
    // text, "0" for none; flags "0"/"1".
    const QList<std::pair<const char*, QString>> opzioni = {
        {"Amministratore", defaultPassword()},
        {"TipoStampaDistinta", QStringLiteral("0")},
        {"IvaPredRigaLibera", rid(IvaOrdinaria)},
        {"CatPrezziNetti", QStringLiteral("0")},
        {"ClientePredefinito", QStringLiteral("0")},
        {"TipoDocVb", QStringLiteral("0")},
        {"CausalePagVb", rid(CauIncasso)},
        {"AnnoCorrente", QString::number(anno)},
        {"ContoClienti", rid(ContoClientiItalia)},
        {"ContoFornitori", rid(ContoFornitoriItalia)},
        {"DecimaliDopo", QStringLiteral("2")},
        {"VenditoreChar", QStringLiteral("%")},
        {"DistintaBase", QStringLiteral("*")},
        {"RigaLibera", QStringLiteral("/")},
        {"GruppoPredefinito", QStringLiteral("1")},
        {"GruppoProdInteg", QStringLiteral("0")},
        {"GruppoProdCL", QStringLiteral("0")},
        {"Marca", QStringLiteral("0")},
        {"Fornitore", QStringLiteral("0")},
        {"TipoDocProd", QStringLiteral("0")},
        {"DocConversione", rid(TdFatturaDifferita)},
        {"DocConversioneDDT", rid(TdDdt)},
        {"PagamentoVB", rid(PagRimessaDiretta)},
        {"PrezzoMedio", QStringLiteral("0")},
        {"MesiPrezzoMedio", QStringLiteral("12")},
        {"BloccoPN", QStringLiteral("0")},
        {"DescPN", QStringLiteral("1")},
        {"FidoAllaData", QStringLiteral("0")},
        {"NoShowCptEstratto", QStringLiteral("0")},
        {"MostraTotaleRigaMov", QStringLiteral("1")},
        {"UsaPrezziIva", QStringLiteral("0")},
        {"PiePagina",
         QString::fromUtf8("Contributo ambientale CONAI assolto ove dovuto. "
                           "I dati personali sono trattati ai sensi del "
                           "Regolamento UE 2016/679.")},
        {"RidIvaProdotti", rid(IvaOrdinaria)},
        {"RidUMProdotti", rid(UmPezzi)},
        {"RidMarcaProdotti", QStringLiteral("0")},
        {"RidCollezioneProdotti", QStringLiteral("0")},
        {"ReportElencoSpeciale", QStringLiteral("ElencoSpeciale.rpt")},
        {"NumeratoreElencoSpeciale", rid(NumElencoSpeciale)},
        {"SottoScorta", QStringLiteral("0")},
        {"BloccaSottoScorta", QStringLiteral("0")},
        {"AvvisaSottoScorta", QStringLiteral("1")},
        {"VenditeGiorniDiversi", QStringLiteral("0")},
        {"BloccaVenditeGiorniDiversi", QStringLiteral("0")},
        {"AvvisaVenditeGiorniDiversi", QStringLiteral("1")},
        {"LockVBEdit", QStringLiteral("0")},
        {"LockVBPrezzo", QStringLiteral("0")},
        {"VenditoriObbligatori", QStringLiteral("0")},
        {"VenditoriBlocco", QStringLiteral("0")},
        {"PagatoAltriClienti", QStringLiteral("0")},
        {"PrezzoListino", QStringLiteral("0")},
    };
    SeedTable opz = table("Opzioni", "NOME,VALORE", {});
    for (const auto& [nome, valore] : opzioni)
        opz.rows << QVariantList{QString::fromLatin1(nome), valore};
    list << opz;

    return list;
}

} // namespace

const QList<SeedTable>& seedData()
{
    static const QList<SeedTable> list = buildSeed();
    return list;
}

QString defaultPassword() { return QStringLiteral("orvantis"); }

} // namespace schema
