#include "lookups/lookups.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

namespace {

const QString kModule = QStringLiteral("bOrvantis");

ElementChooser& chooser()
{
    static ElementChooser current;
    return current;
}

// One member of the family: its table, the columns read and the condition
// that every row found must meet.
struct Lookup
{
    const char* procedure;
    const char* table;
    const char* codeColumn = "CODICE";
    const char* descriptionColumn = "DESCRIZIONE";
    const char* extraColumns = ""; // ", VALORE"
    const char* condition = "";    // "TIPO = ¤C¤"
};

using Extras = std::function<void(const Recordset&)>;

QString latin(const char* text) { return QString::fromUtf8(text); }

// The condition on the code; empty when the code cannot match any row (a
// number column and a code that is not a number).
QString codeCondition(const Lookup& l, const QString& code)
{
    const QString column = latin(l.codeColumn);
    if (column == QLatin1String("NUMERO")) {
        bool ok = false;
        const qlonglong number = code.trimmed().toLongLong(&ok);
        return ok ? column + QStringLiteral(" = ") + QString::number(number) : QString();
    }
    if (latin(l.table) == QLatin1String("Prodotti"))
        return QStringLiteral("(CODICE = ") + sqlText(code) + QStringLiteral(" OR BARCODE = ") + sqlText(code)
            + QStringLiteral(" OR EXTRACODICE = ") + sqlText(code) + QLatin1Char(')');
    return column + QStringLiteral(" = ") + sqlText(code);
}

void showNotFound(const QString& code)
{
    msgBox(QStringLiteral("Codice: ") + code + QStringLiteral(" inesistente!"), vb::Exclamation);
}

bool lookup(const Lookup& l, QString& codice, QString& descrizione, int& rid, const Extras& extras = {})
{
    QString where;
    if (!codice.isEmpty())
        where = codeCondition(l, codice);
    else if (rid > 0)
        where = QStringLiteral("RID = ") + QString::number(rid);
    else
        return false; // nothing to look for: no statement, no box

    bool found = false;
    if (!where.isEmpty()) {
        QString sql = QStringLiteral("SELECT RID, ") + latin(l.codeColumn) + QStringLiteral(", ")
            + latin(l.descriptionColumn) + latin(l.extraColumns) + QStringLiteral(" FROM ") + latin(l.table)
            + QStringLiteral(" WHERE ") + where;
        if (*l.condition)
            sql += QStringLiteral(" AND ") + latin(l.condition);
        const cReader rs(sql, kModule + QLatin1Char('.') + latin(l.procedure));
        if (rs && !rs->eof()) {
            codice = rs->value(latin(l.codeColumn)).toString();
            descrizione = rs->text(latin(l.descriptionColumn));
            rid = int(rs->integer(QStringLiteral("RID")));
            found = true;
            if (extras)
                extras(*rs);
        }
    }
    if (rid < 1) {
        showNotFound(codice);
        codice.clear();
    }
    return found;
}

const Lookup kAnagrafe{"validaAnagrafe", "Anagrafiche", "NUMERO", "DENOMINAZIONE"};
const Lookup kAnagrafePagamento{"validaAnagrafePagamento", "Anagrafiche", "NUMERO", "DENOMINAZIONE", ", FK_Pagamento"};
const Lookup kCliente{"validaCliente", "Anagrafiche", "NUMERO", "DENOMINAZIONE", "", "TIPO = \u00A4C\u00A4"};
const Lookup kFornitore{"validaFornitore", "Anagrafiche", "NUMERO", "DENOMINAZIONE", "", "TIPO = \u00A4F\u00A4"};
const Lookup kIva{"validaIva", "Iva", "CODICE", "DESCRIZIONE", ", VALORE"};
const Lookup kCausaleScadenze{"validaCausaleScadenze",          "Causali",      "CODICE", "DESCRIZIONE",
                              ", GeneraScad, ScadenzeNegative", "GENERAPN <> 0"};

bool simple(const char* procedure, const char* table, QString& codice, QString& descrizione, int& rid)
{
    return lookup(Lookup{procedure, table}, codice, descrizione, rid);
}

} // namespace

ElementChooser setElementChooser(ElementChooser next)
{
    ElementChooser previous = std::move(chooser());
    chooser() = std::move(next);
    return previous;
}

// clang-format off
bool validaAnagrafe(QString& c, QString& d, int& r) { return lookup(kAnagrafe, c, d, r); }
bool validaCliente(QString& c, QString& d, int& r) { return lookup(kCliente, c, d, r); }
bool validaFornitore(QString& c, QString& d, int& r) { return lookup(kFornitore, c, d, r); }
bool validaCategoria(QString& c, QString& d, int& r) { return simple("validaCategoria", "CategorieMerceologiche", c, d, r); }
bool validaCategoriaSconto(QString& c, QString& d, int& r) { return simple("validaCategoriaSconto", "CategorieSconti", c, d, r); }
bool validaFasciaCliente(QString& c, QString& d, int& r) { return simple("validaFasciaCliente", "FasceClienti", c, d, r); }
bool validaMarca(QString& c, QString& d, int& r) { return simple("validaMarca", "Marche", c, d, r); }
bool validaCollezione(QString& c, QString& d, int& r) { return simple("validaCollezione", "Collezioni", c, d, r); }
bool validaPagamento(QString& c, QString& d, int& r) { return simple("validaPagamento", "Pagamenti", c, d, r); }
bool validaBanca(QString& c, QString& d, int& r) { return simple("validaBanca", "Banche", c, d, r); }
bool validaFormatoCarta(QString& c, QString& d, int& r) { return simple("validaFormatoCarta", "FormatoCarta", c, d, r); }
bool validaColore(QString& c, QString& d, int& r) { return simple("validaColore", "Colori", c, d, r); }
bool validaGruppo(QString& c, QString& d, int& r) { return simple("validaGruppo", "Gruppi", c, d, r); }
bool validaVenditore(QString& c, QString& d, int& r) { return simple("validaVenditore", "Venditori", c, d, r); }
bool validaUnitaMisura(QString& c, QString& d, int& r) { return simple("validaUnitaMisura", "UnitaMisura", c, d, r); }
bool validaFinestra(QString& c, QString& d, int& r) { return simple("validaFinestra", "FormatoFinestra", c, d, r); }
bool validaConfezione(QString& c, QString& d, int& r) { return simple("validaConfezione", "Confezioni", c, d, r); }
bool validaCausale(QString& c, QString& d, int& r) { return simple("validaCausale", "Causali", c, d, r); }
bool validaCentroCosto(QString& c, QString& d, int& r) { return simple("validaCentroCosto", "CentriCosto", c, d, r); }
bool validaConto(QString& c, QString& d, int& r) { return simple("validaConto", "PianoConti", c, d, r); }
bool validaProdotto(QString& c, QString& d, int& r) { return simple("validaProdotto", "Prodotti", c, d, r); }
bool validaMagazzino(QString& c, QString& d, int& r) { return simple("validaMagazzino", "Magazzini", c, d, r); }
bool validaSpedizione(QString& c, QString& d, int& r) { return simple("validaSpedizione", "Spedizioni", c, d, r); }
bool validaDocumento(QString& c, QString& d, int& r) { return simple("validaDocumento", "TipoDocumenti", c, d, r); }
bool validaAspetto(QString& c, QString& d, int& r) { return simple("validaAspetto", "AspettoEsteriore", c, d, r); }
bool validaCausaleTrasporto(QString& c, QString& d, int& r) { return simple("validaCausaleTrasporto", "CausaliTrasporto", c, d, r); }
// clang-format on

bool validaAnagrafePagamento(QString& codice, QString& descrizione, int& rid, int& fkPagamento)
{
    return lookup(kAnagrafePagamento, codice, descrizione, rid,
                  [&](const Recordset& rs) { fkPagamento = int(rs.integer(QStringLiteral("FK_Pagamento"))); });
}

bool validaIva(QString& codice, QString& descrizione, int& rid, Single& valore)
{
    return lookup(kIva, codice, descrizione, rid,
                  [&](const Recordset& rs) { valore = toSingle(rs.number(QStringLiteral("VALORE"))); });
}

bool validaCausaleScadenze(QString& codice, QString& descrizione, int& rid, bool& generaScad, bool& scadenzeNegative)
{
    return lookup(kCausaleScadenze, codice, descrizione, rid, [&](const Recordset& rs) {
        generaScad = rs.flag(QStringLiteral("GeneraScad"));
        scadenzeNegative = rs.flag(QStringLiteral("ScadenzeNegative"));
    });
}

bool validaNumeratore(QString& descrizione, int& rid)
{
    // Numerators are looked up by key alone; the description stands in for the code.
    QString codice;
    const Lookup numeratore{"validaNumeratore", "Numeratori", "DESCRIZIONE", "DESCRIZIONE"};
    return lookup(numeratore, codice, descrizione, rid);
}

double getGiacenzaProdotto(int fkProdotto, int fkMagazzino)
{
    const QVariant quantita =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT QUANTITA FROM DettagliProdotto WHERE FK_PRODOTTO = ")
                                          + QString::number(fkProdotto) + QStringLiteral(" AND FK_MAGAZZINO = ")
                                          + QString::number(fkMagazzino),
                                      kModule + QStringLiteral(".getGiacenzaProdotto"));
    return quantita.isValid() ? getValoreNumerico(quantita) : 0.0;
}

namespace {

const QString kProdottoEstesoSql = QStringLiteral(
    "SELECT P.RID, P.CODICE, P.DESCRIZIONE AS DESCPRODOTTO, I.CODICE AS CODIVA, P.GIACENZA, I.VALORE AS VALOREIVA, "
    "P.FK_UNITAMISURA, UM.CODICE AS CODUM, M.CODICE AS CODMARCA, P.ELENCOSPECIALE "
    "FROM ((Prodotti P LEFT JOIN Iva I ON P.FK_Iva = I.RID) LEFT JOIN UnitaMisura UM ON P.FK_UNITAMISURA = UM.RID) "
    "LEFT JOIN Marche M ON P.FK_MARCA = M.RID WHERE ");
const QString kProdottoColumns = QStringLiteral(
    "Marca\u00A4800\u00A4CODMARCA|Codice\u00A41800\u00A4CODICE|Descrizione\u00A44500\u00A4DESCPRODOTTO|");

QString prodottoCondition(const QString& code, int rid, const RicercaProdotto& ricerca)
{
    QString where;
    if (!code.isEmpty()) {
        where = ricerca.like ? QStringLiteral(" (P.CODICE LIKE ") + sqlLikePattern(code, LikeMatch::StartsWith)
                             : QStringLiteral(" (P.CODICE = ") + sqlText(code);
        where += QStringLiteral(" OR P.BARCODE = ") + sqlText(code) + QStringLiteral(" OR P.EXTRACODICE = ")
            + sqlText(code) + QLatin1Char(')');
    } else {
        where = QStringLiteral("P.RID = ") + QString::number(rid);
    }
    if (!ricerca.filtro.isEmpty())
        where += QStringLiteral(" AND (") + ricerca.filtro + QLatin1Char(')');
    return where;
}

void fillProdotto(ProdottoEsteso& p, const Recordset& rs, int magazzino)
{
    p.codice = rs.text(QStringLiteral("CODICE"));
    p.descrizione = rs.text(QStringLiteral("DESCPRODOTTO"));
    p.rid = int(rs.integer(QStringLiteral("RID")));
    p.valoreIva = toSingle(rs.number(QStringLiteral("VALOREIVA")));
    p.codIva = rs.text(QStringLiteral("CODIVA"));
    p.fkUnitaMisura = int(rs.integer(QStringLiteral("FK_UNITAMISURA")));
    p.codUnitaMisura = rs.text(QStringLiteral("CODUM"));
    p.codMarca = rs.text(QStringLiteral("CODMARCA"));
    p.giacenza = magazzino > 0 ? getGiacenzaProdotto(p.rid, magazzino) : rs.number(QStringLiteral("GIACENZA"));
    p.elencoSpeciale = getChekByBool(rs.value(QStringLiteral("ELENCOSPECIALE")));
}

} // namespace

QString colonneProdotto() { return kProdottoColumns; }

namespace {

QString prodottiSql(const QString& code, int rid, const RicercaProdotto& ricerca)
{
    return kProdottoEstesoSql + prodottoCondition(code, rid, ricerca);
}

const QString kTagProdottoEsteso = kModule + QStringLiteral(".validaProdottoEsteso");

} // namespace

bool validaProdottoEsteso(ProdottoEsteso& p, const RicercaProdotto& ricerca)
{
    p.creaNuovo = false;
    if (p.codice.isEmpty() && p.rid < 1)
        return false;
    bool found = false;
    int chosenRid = 0;
    {
        const cReader rs(prodottiSql(p.codice, p.rid, ricerca), kTagProdottoEsteso);
        if (rs && rs->recordCount() > 1) {
            const QStringList chosen =
                chooser() ? chooser()(kProdottoColumns, *rs, ricerca.multiSelect, false) : QStringList();
            QStringList keys;
            for (const QString& key : chosen)
                if (key.startsWith(QLatin1String("E_")))
                    keys << key.mid(2);
            if (!keys.isEmpty()) {
                if (ricerca.multiSelect)
                    p.elencoRid = keys.join(QLatin1Char(',')) + QLatin1Char(',');
                chosenRid = keys.first().toInt();
            }
        } else if (rs && !rs->eof()) {
            fillProdotto(p, *rs, ricerca.magazzino);
            found = true;
        }
    }
    if (chosenRid > 0) {
        const cReader rs(prodottiSql(QString(), chosenRid, ricerca), kTagProdottoEsteso);
        if (rs && !rs->eof()) {
            fillProdotto(p, *rs, ricerca.magazzino);
            found = true;
        }
    }
    if (found)
        return true;
    const QString box = QStringLiteral("Codice: ") + p.codice + QStringLiteral(" inesistente!");
    if (ricerca.chiediNuovo && !p.codice.isEmpty()) {
        p.creaNuovo = msgBox(box + QStringLiteral("\nCreare un nuovo Prodotto?"), vb::YesNo | vb::Question) == vb::Yes;
    } else {
        msgBox(box, vb::Exclamation);
    }
    if (!p.creaNuovo)
        p.codice.clear();
    return false;
}

bool validaDocumentoEsteso(DocumentoEsteso& d)
{
    QString sql =
        QStringLiteral("SELECT RID, CODICE, DESCRIZIONE, USARDA, RDA1, RDA2, USAPREZZIIVA, STAMPAELENCOSPECIALE, "
                       "MODIFICAPREZZOACQUISTO FROM TipoDocumenti WHERE ");
    if (!d.codice.isEmpty())
        sql += QStringLiteral("CODICE = ") + sqlText(d.codice);
    else if (d.rid > 0)
        sql += QStringLiteral("RID = ") + QString::number(d.rid);
    else
        return false;
    {
        const cReader rs(sql, kModule + QStringLiteral(".validaDocumentoEsteso"));
        if (rs && !rs->eof()) {
            d.codice = rs->text(QStringLiteral("CODICE"));
            d.descrizione = rs->text(QStringLiteral("DESCRIZIONE"));
            d.rid = int(rs->integer(QStringLiteral("RID")));
            d.usaRda = getChekByBool(rs->value(QStringLiteral("USARDA"))) != 0;
            const auto rate = [&](const char* name) {
                const QVariant v = rs->value(QString::fromLatin1(name));
                return v.isNull() ? QStringLiteral("0") : plainTextIt(v.toDouble());
            };
            d.rda1 = rate("RDA1");
            d.rda2 = rate("RDA2");
            d.usaPrezziIva = getChekByBool(rs->value(QStringLiteral("USAPREZZIIVA"))) != 0;
            d.stampaElencoSpeciale = getChekByBool(rs->value(QStringLiteral("STAMPAELENCOSPECIALE"))) != 0;
            d.modificaPrezzoAcquisto = getChekByBool(rs->value(QStringLiteral("MODIFICAPREZZOACQUISTO"))) != 0;
        }
    }
    if (d.rid < 1) {
        showNotFound(d.codice);
        d.codice.clear();
        return false;
    }
    return true;
}
