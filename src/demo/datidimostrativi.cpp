#include "demo/datidimostrativi.h"

#include "common/ean13.h"
#include "common/italiantext.h"
#include "core/optionstore.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqlliteral.h"
#include "demo/codici.h"
#include "demo/dittademo.h"
#include "demo/nomi.h"
#include "documents/documento.h"
#include "documents/editordocumento.h"
#include "documents/salvadocumento.h"
#include "documents/spedizione.h"
#include "masterdata/anagrafica.h"
#include "masterdata/rangeeditor.h"

#include <QDateTime>
#include <QHash>
#include <QRandomGenerator>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

constexpr quint32 kSeme = 20240917;
constexpr int kFornitori = 8;

QString tag(const char* procedure) { return QStringLiteral("DatiDimostrativi.") + QLatin1String(procedure); }
cAdoSqlServer& db() { return gAdoSqlServer(); }

QString testo(const QString& valore) { return valore.isEmpty() ? QStringLiteral("Null") : sqlText(valore); }
QString chiave(int rid) { return rid > 0 ? QString::number(rid) : QStringLiteral("Null"); }
QString importo(double valore) { return Currency::fromDouble(valore).toPlainString(); }
QString u(const char* testo) { return QString::fromUtf8(testo); }

// An amount to the cent, as a price list shows it.
double centesimi(double valore) { return std::round(valore * 100.0) / 100.0; }

// One row of a table; its new key, 0 after a failure already told.
int inserisci(const QString& tabella, const QList<std::pair<const char*, QString>>& campi)
{
    QStringList colonne, valori;
    for (const auto& [colonna, valore] : campi) {
        colonne << QLatin1String(colonna);
        valori << valore;
    }
    return std::max(0,
                    db().getIDByInsert(sqlInsert(tabella, colonne, valori), tag("inserisci"), QStringLiteral("RID"),
                                       tabella));
}

// A count; -1 when the read failed.
int conta(const QString& sql)
{
    const QVariant v = db().getValueBySQL(sql, tag("conta"));
    return v.isValid() ? v.toInt() : -1;
}

int ridDaCodice(const char* tabella, const char* codice)
{
    return db()
        .getValueBySQL(QStringLiteral("SELECT RID FROM ") + QLatin1String(tabella) + QStringLiteral(" WHERE CODICE = ")
                           + sqlText(QString::fromLatin1(codice)),
                       tag("ridDaCodice"))
        .toInt();
}

// The days the firm works on: weekdays that are not national holidays.
bool lavorativo(const QDate& d)
{
    static const QSet<int> festivi{101, 106, 425, 501, 602, 815, 1101, 1208, 1225, 1226};
    return d.dayOfWeek() <= 5 && !festivi.contains(d.month() * 100 + d.day());
}

// The document types of the starter set, in the order a day's documents
// are written: goods come in before they go out.
enum Tipo {
    CF,
    TM,
    OC,
    DDT,
    FV,
    FD,
    NC,
    NumeroTipi
};
const char* const kCodiciTipo[NumeroTipi] = {"CF", "TM", "OC", "DDT", "FV", "FD", "NC"};
// Shares of the documents, percent.
const int kQuote[NumeroTipi] = {12, 5, 10, 18, 38, 10, 7};

// The lots of each product and warehouse as the stock rows hold them, in
// the order the rows were made: what a sale will take from, known before
// the row is entered.
class Scorte
{
public:
    // The stock of the lot that a sale takes from: the first one with stock.
    double disponibile(int prodotto, int magazzino) const
    {
        for (const Lotto& l : m_lotti.value(chiave(prodotto, magazzino)))
            if (l.quantita > 0)
                return l.quantita;
        return 0;
    }
    double totale(int prodotto, int magazzino) const
    {
        double t = 0;
        for (const Lotto& l : m_lotti.value(chiave(prodotto, magazzino)))
            t += l.quantita;
        return t;
    }
    // The quantity of the lot's row, made empty when it isn't there yet.
    double& quantita(int prodotto, int magazzino, Currency taglio)
    {
        QList<Lotto>& lotti = m_lotti[chiave(prodotto, magazzino)];
        for (Lotto& l : lotti)
            if (l.taglio == taglio)
                return l.quantita;
        lotti.append({taglio, 0});
        return lotti.last().quantita;
    }
    // The lot a row without one takes from: the first with stock, else the first.
    Currency piuVecchio(int prodotto, int magazzino) const
    {
        const QList<Lotto> lotti = m_lotti.value(chiave(prodotto, magazzino));
        for (const Lotto& l : lotti)
            if (l.quantita > 0)
                return l.taglio;
        return lotti.isEmpty() ? Currency::fromUnits(-1) : lotti.first().taglio;
    }

private:
    struct Lotto
    {
        Currency taglio;
        double quantita;
    };
    static quint64 chiave(int prodotto, int magazzino)
    {
        return (quint64(quint32(magazzino)) << 32) | quint32(prodotto);
    }
    QHash<quint64, QList<Lotto>> m_lotti;
};

struct Controparte
{
    int rid = 0;
    QString numero, nome;
    enum Genere {
        Societa,
        Ditta,
        Privato
    } genere = Societa;
};

struct Articolo
{
    int rid = 0;
    QString codice, descrizione;
    int fornitore = -1;
    int qMin = 1, qMax = 1;
    double listino = 0, peso = 0, scorta = 0;
    int iva = 0, um = 0;
    double valoreIva = 0;
    bool kit = false;
    QList<std::pair<int, int>> componenti; // article, quantity per kit
};

struct Riga
{
    int articolo;
    int quantita;
};

// A delivery note not invoiced yet.
struct DdtAperto
{
    int numero;
    QDate data;
    QList<Riga> righe;
};

struct Documento
{
    Tipo tipo = FV;
    QDate data;
    int cliente = -1, fornitore = -1;
    int magazzinoDest = 0;
    QList<Riga> righe;
    QString riferimenti, numeroOriginale;
    QDate dataOriginale;
};

class Generatore
{
public:
    Generatore(int documenti, const ProgressoDemo& progresso)
        : m_documenti(documenti)
        , m_progresso(progresso)
        , m_totale(documenti + 5)
    { }

    bool esegui()
    {
        return riferimenti() && passo(u("Tabelle di base")) && tabelle() && passo(u("Clienti e fornitori"))
            && anagrafiche() && passo(u("Prodotti")) && prodotti() && passo(u("Distinte base")) && distinte()
            && passo(u("Range di sconto")) && range() && documenti();
    }

    QString errore;

private:
    bool fallito(const QString& messaggio)
    {
        if (errore.isEmpty())
            errore = messaggio;
        return false;
    }

    bool passo(const QString& cosa)
    {
        return !m_progresso || m_progresso(m_fatto++, m_totale, cosa)
            || fallito(u("Generazione dei dati dimostrativi interrotta."));
    }

    template <typename T> const T& scegli(std::span<const T> lista)
    {
        return lista[m_random.bounded(int(lista.size()))];
    }
    QString scegliTesto(std::span<const char* const> lista) { return u(scegli(lista)); }
    int tra(int minimo, int massimo) { return minimo + m_random.bounded(massimo - minimo + 1); }
    double tra(double minimo, double massimo) { return minimo + m_random.generateDouble() * (massimo - minimo); }
    bool caso(int percento) { return m_random.bounded(100) < percento; }
    // Towns near the firm more often than those far away.
    const demo::Comune& comune()
    {
        const int n = int(demo::comuni().size());
        return demo::comuni()[std::min(m_random.bounded(n), m_random.bounded(n))];
    }

    // --- what the new firm already holds
    bool riferimenti()
    {
        m_sede = ridDaCodice("Magazzini", "SEDE");
        m_gruppo = ridDaCodice("Gruppi", "GEN");
        m_fasciaStandard = ridDaCodice("FasceClienti", "STD");
        m_aspetto = ridDaCodice("AspettoEsteriore", "CAR");
        m_causaleVendita = ridDaCodice("CausaliTrasporto", "VEN");
        m_causaleTrasferimento = ridDaCodice("CausaliTrasporto", "TRA");
        m_mittente = ridDaCodice("Spedizioni", "MIT");
        m_vettore = ridDaCodice("Spedizioni", "VET");
        for (const char* codice : {"RD", "30DF", "30FM", "3060FM"})
            m_pagamenti[u(codice)] = ridDaCodice("Pagamenti", codice);
        for (const char* codice : {"PZ", "CF", "MT", "KG", "LT"})
            m_um[u(codice)] = ridDaCodice("UnitaMisura", codice);
        {
            const cReader rs(QStringLiteral("SELECT RID, CODICE, VALORE FROM Iva"), tag("riferimenti"));
            for (; rs && !rs->eof(); rs->moveNext())
                m_iva[rs->text(QStringLiteral("CODICE"))] = {int(rs->integer(QStringLiteral("RID"))),
                                                             rs->number(QStringLiteral("VALORE"))};
        }
        QStringList mancanti;
        for (int t = 0; t < NumeroTipi; ++t) {
            m_tipi[t].codice = u(kCodiciTipo[t]);
            m_tipi[t].rid = ridDaCodice("TipoDocumenti", kCodiciTipo[t]);
            if (m_tipi[t].rid < 1 || !getInfoDocumento(m_tipi[t].rid, m_tipi[t].info))
                mancanti << u("il tipo documento ") + m_tipi[t].codice;
            m_tipi[t].descrizione =
                db().getValueBySQL(QStringLiteral("SELECT DESCRIZIONE FROM TipoDocumenti WHERE RID = ")
                                       + QString::number(m_tipi[t].rid),
                                   tag("riferimenti"))
                    .toString();
        }
        if (m_sede < 1)
            mancanti << u("il magazzino SEDE");
        if (m_pagamenti.value(u("RD")) < 1)
            mancanti << u("il pagamento RD");
        if (m_um.value(u("PZ")) < 1)
            mancanti << u("l'unità di misura PZ");
        for (const auto& m : demo::modelli())
            if (!m_iva.contains(u(m.iva)) || m_um.value(u(m.um)) < 1) {
                mancanti << u("l'aliquota IVA ") + u(m.iva) + u(" o l'unità di misura ") + u(m.um);
                break;
            }
        return mancanti.isEmpty()
            || fallito(u("Mancano dati iniziali della ditta: ") + mancanti.join(QStringLiteral(", ")) + u("."));
    }

    // --- categories, brands, discount categories, bands, the shop
    bool tabelle()
    {
        cTransaction transazione(tag("tabelle"));
        if (!transazione)
            return false;
        for (const demo::Categoria& c : demo::categorie()) {
            const int rid = inserisci(QStringLiteral("CategorieMerceologiche"),
                                      {{"CODICE", testo(u(c.codice))}, {"DESCRIZIONE", testo(u(c.descrizione))}});
            if (rid < 1)
                return false;
            m_categorie[u(c.codice)] = rid;
        }
        // Premium brands, standard brands and the economy line have their own discounts.
        const std::pair<const char*, const char*> sconti[] = {{"A", "Marchi di fascia alta"},
                                                              {"B", "Marchi standard"},
                                                              {"C", "Linea economica"}};
        for (const auto& [codice, descrizione] : sconti) {
            const int rid = inserisci(QStringLiteral("CategorieSconti"),
                                      {{"CODICE", testo(u(codice))}, {"DESCRIZIONE", testo(u(descrizione))}});
            if (rid < 1)
                return false;
            m_categorieSconto << rid;
        }
        for (const demo::Marca& m : demo::marche()) {
            const int categoria = m.fattorePrezzo > 1.1 ? 0 : m.fattorePrezzo < 0.9 ? 2 : 1;
            const int rid = inserisci(QStringLiteral("Marche"),
                                      {{"CODICE", testo(u(m.codice))},
                                       {"DESCRIZIONE", testo(u(m.nome))},
                                       {"FK_CATSCOACQ", chiave(m_categorieSconto.at(categoria))},
                                       {"FK_CATSCOVEN", chiave(m_categorieSconto.at(categoria))}});
            if (rid < 1)
                return false;
            m_marche << std::pair{rid, m_categorieSconto.at(categoria)};
        }
        m_fasciaRivenditori =
            inserisci(QStringLiteral("FasceClienti"),
                      {{"CODICE", testo(u("RIV"))}, {"DESCRIZIONE", testo(u("Rivenditori e installatori"))}});
        m_negozio = inserisci(QStringLiteral("Magazzini"),
                              {{"CODICE", testo(u("NEG"))}, {"DESCRIZIONE", testo(u("Negozio - vendita al banco"))}});
        return m_fasciaRivenditori > 0 && m_negozio > 0 && transazione.commit();
    }

    // --- customers and suppliers
    QString telefono(const demo::Comune& c)
    {
        const QString prefisso = u(c.prefisso);
        QString numero;
        for (int i = int(prefisso.size()); i < 10; ++i)
            numero += QChar(u'0' + (i == int(prefisso.size()) ? tra(2, 9) : tra(0, 9)));
        return prefisso + QLatin1Char(' ') + numero;
    }
    QString cellulare()
    {
        static const char* const kPrefissi[] = {"333", "335", "338", "339", "347", "349", "320", "328", "366"};
        const QString prefisso = scegliTesto(kPrefissi);
        return prefisso + QLatin1Char(' ') + QString::number(tra(1000000, 9999999));
    }
    static QString slug(const QString& testo)
    {
        QString s;
        for (const QChar c : testo.normalized(QString::NormalizationForm_D).toLower())
            if ((c >= QLatin1Char('a') && c <= QLatin1Char('z')) || c == QLatin1Char(' '))
                s += c;
        return s.simplified().section(QLatin1Char(' '), 0, 1).remove(QLatin1Char(' '));
    }

    struct Persona
    {
        QString nome, cognome, codiceFiscale;
        bool donna = false;
        QDate nascita;
    };
    Persona persona()
    {
        Persona p;
        p.donna = caso(40);
        p.nome = scegliTesto(p.donna ? demo::nomiFemminili() : demo::nomiMaschili());
        p.cognome = scegliTesto(demo::cognomi());
        // One draw after the other, so that every compiler gives the same people.
        const int anno = tra(1950, 2000), mese = tra(1, 12), giorno = tra(1, 28);
        p.nascita = QDate(anno, mese, giorno);
        do
            p.codiceFiscale = demo::codiceFiscale(p.cognome, p.nome, p.nascita, p.donna, u(comune().catastale));
        while (m_codici.contains(p.codiceFiscale) && (p.nascita = p.nascita.addDays(1)).isValid());
        m_codici.insert(p.codiceFiscale);
        return p;
    }
    QString partitaIva(const demo::Comune& c)
    {
        QString piva;
        do
            piva = demo::partitaIva(m_random, u(c.ufficioIva));
        while (m_codici.contains(piva));
        m_codici.insert(piva);
        return piva;
    }

    // A name no other card has.
    QString nomeUnico(const std::function<QString()>& crea)
    {
        QString nome = crea();
        for (int prova = 0; m_nomi.contains(nome) && prova < 50; ++prova)
            nome = crea();
        if (m_nomi.contains(nome))
            nome += QStringLiteral(" (%1)").arg(m_nomi.size());
        m_nomi.insert(nome);
        return nome;
    }

    bool scheda(bool cliente, Controparte::Genere genere, Controparte& c)
    {
        const demo::Comune& sede = comune();
        const bool impresa = genere != Controparte::Privato;
        const Persona titolare = persona();
        QString nome, cf, piva, email, referente;
        if (!cliente) {
            nome = nomeUnico([&]() -> QString {
                const QString cognome = scegliTesto(demo::cognomi()), attivita = scegliTesto(demo::attivitaFornitori());
                return cognome + QLatin1Char(' ') + attivita + (caso(50) ? u(" S.p.A.") : u(" S.r.l."));
            });
        } else if (genere == Controparte::Societa) {
            nome = nomeUnico([&]() -> QString {
                const QString cognome = scegliTesto(demo::cognomi()), attivita = scegliTesto(demo::attivitaClienti()),
                              socio = scegliTesto(demo::cognomi());
                switch (m_random.bounded(5)) {
                case 0: return cognome + QLatin1Char(' ') + attivita + u(" S.r.l.");
                case 1: return attivita + QLatin1Char(' ') + cognome + u(" & C. S.n.c.");
                case 2: return cognome + u(" e ") + socio + u(" S.n.c.");
                case 3: return attivita + QLatin1Char(' ') + u(sede.nome) + u(" S.r.l.");
                default: return u("Edil ") + cognome + u(" S.a.s.");
                }
            });
        } else if (genere == Controparte::Ditta) {
            nome = nomeUnico([&]() -> QString {
                return scegliTesto(demo::attivitaClienti()) + u(" di ") + titolare.nome + QLatin1Char(' ')
                    + titolare.cognome;
            });
        } else {
            nome = nomeUnico([&]() -> QString { return titolare.cognome + QLatin1Char(' ') + titolare.nome; });
        }
        if (impresa)
            piva = partitaIva(sede);
        // A company's tax code is its VAT number; a person's is the personal one.
        cf = genere == Controparte::Societa || !cliente ? piva : titolare.codiceFiscale;
        if (genere == Controparte::Privato || genere == Controparte::Ditta)
            email = slug(titolare.nome) + QLatin1Char('.') + slug(titolare.cognome) + u("@esempio.it");
        else
            email = (cliente ? u("amministrazione@") : u("ordini@")) + slug(nome) + u(".it");
        if (genere == Controparte::Societa || !cliente) {
            const Persona r = persona();
            referente = r.nome + QLatin1Char(' ') + r.cognome;
            m_codici.remove(r.codiceFiscale);
        }
        const char* pagamento = "RD";
        if (!cliente)
            pagamento = caso(50) ? "3060FM" : caso(50) ? "30FM" : "30DF";
        else if (genere == Controparte::Societa)
            pagamento = caso(35) ? "3060FM" : caso(40) ? "30FM" : caso(50) ? "30DF" : "RD";
        else if (genere == Controparte::Ditta)
            pagamento = caso(50) ? "30FM" : "RD";
        const bool rivenditore = cliente && impresa && caso(50);
        const int numero = getProgressivo();
        if (numero < 1)
            return false;
        QList<std::pair<const char*, QString>> campi{
            {"NUMERO", QString::number(numero)},
            {"TIPO", testo(cliente ? u("C") : u("F"))},
            {"DENOMINAZIONE", testo(nome)},
            {"INDIRIZZO", testo(scegliTesto(impresa ? demo::vieIndustriali() : demo::vie()))},
            {"CIVICO", testo(QString::number(tra(1, 120)))},
            {"CAP", testo(u(sede.cap))},
            {"CITTA", testo(u(sede.nome))},
            {"PROVINCIA", testo(u(sede.provincia))},
            {"CFISCALE", testo(cf)},
            {"PIVA", testo(piva)},
            {"TELUFFICIO", testo(impresa ? telefono(sede) : QString())},
            {"FAX", testo(impresa && caso(30) ? telefono(sede) : QString())},
            {"CELL", testo(!impresa || caso(40) ? cellulare() : QString())},
            {"EMAIL", testo(email)},
            {"REFERENTE", testo(referente)},
            {"DATANASCITA", impresa && genere == Controparte::Societa ? u("Null") : db().getSQLDate(titolare.nascita)},
            {"FK_PAGAMENTO", chiave(m_pagamenti.value(u(pagamento)))},
            {"FK_FASCIACLIENTE", chiave(cliente ? (rivenditore ? m_fasciaRivenditori : m_fasciaStandard) : 0)},
            {"LISTINO", rivenditore ? u("2") : u("1")},
            {"SCONTO", cliente && impresa && caso(15) ? u("3") : u("0")},
            {"CTRLFIDO", u("0")},
            {"FIDO", u("0")},
            {"SEGNALA", u("0")}};
        // Some firms take the goods at a building site of theirs.
        if (cliente && genere == Controparte::Societa && caso(25)) {
            const demo::Comune& cantiere = comune();
            campi << std::pair{"INDIRIZZODEST", testo(u("Cantiere ") + scegliTesto(demo::vie()))}
                  << std::pair{"CIVICODEST", testo(QString::number(tra(1, 80)))}
                  << std::pair{"CAPDEST", testo(u(cantiere.cap))} << std::pair{"CITTADEST", testo(u(cantiere.nome))}
                  << std::pair{"PROVINCIADEST", testo(u(cantiere.provincia))};
        }
        c.rid = inserisci(QStringLiteral("Anagrafiche"), campi);
        c.numero = QStringLiteral("%1").arg(numero, 4, 10, QLatin1Char('0'));
        c.nome = nome;
        c.genere = genere;
        return c.rid > 0;
    }

    bool anagrafiche()
    {
        cTransaction transazione(tag("anagrafiche"));
        if (!transazione)
            return false;
        const int clienti = std::clamp(m_documenti / 8, 25, 200);
        for (int i = 0; i < clienti; ++i) {
            const int r = m_random.bounded(100);
            Controparte c;
            if (!scheda(true, r < 45 ? Controparte::Societa : r < 75 ? Controparte::Ditta : Controparte::Privato, c))
                return false;
            m_clienti << c;
            // Firms buy more often than households.
            for (int peso = c.genere == Controparte::Societa ? 3
                     : c.genere == Controparte::Ditta        ? 2
                                                             : 1;
                 peso > 0; --peso) {
                m_sceltaClienti << i;
                if (c.genere != Controparte::Privato)
                    m_sceltaImprese << i;
            }
        }
        for (int i = 0; i < kFornitori; ++i) {
            Controparte f;
            if (!scheda(false, Controparte::Societa, f))
                return false;
            m_fornitori << f;
        }
        return transazione.commit();
    }

    // --- products
    // Each category has its own aisle.
    static int scaffale(const char* categoria)
    {
        const auto lista = demo::categorie();
        for (int i = 0; i < int(lista.size()); ++i)
            if (qstrcmp(lista[i].codice, categoria) == 0)
                return i;
        return 0;
    }

    bool prodotti()
    {
        cTransaction transazione(tag("prodotti"));
        if (!transazione)
            return false;
        const auto marche = demo::marche();
        QHash<QString, int> numeri;           // the last number of each category's codes
        QList<int> seriali(marche.size(), 0); // the last barcode of each brand
        const QString modifica = db().getSQLDateTime(QDateTime(QDate(m_anno, 1, 2), QTime(8, 0)));
        for (const demo::Modello& m : demo::modelli()) {
            QList<int> produttori;
            for (int b = 0; b < int(marche.size()); ++b)
                if (u(marche[b].categorie).split(QLatin1Char(' ')).contains(u(m.categoria)))
                    produttori << b;
            // The first maker always; a second one for about half the lines.
            if (produttori.size() > 1 && !caso(45))
                produttori = produttori.mid(0, 1);
            else
                produttori = produttori.mid(0, 2);
            const QStringList varianti = u(m.varianti).split(QLatin1Char('|'), Qt::SkipEmptyParts);
            for (const int b : std::as_const(produttori)) {
                for (int v = 0; v < std::max<int>(1, int(varianti.size())); ++v) {
                    Articolo a;
                    a.codice =
                        u(m.categoria) + QStringLiteral("%1").arg(++numeri[u(m.categoria)], 4, 10, QLatin1Char('0'));
                    a.descrizione =
                        u(m.descrizione) + (varianti.isEmpty() ? QString() : QLatin1Char(' ') + varianti.at(v));
                    a.fornitore = b % kFornitori;
                    a.qMin = m.qMin;
                    a.qMax = m.qMax;
                    a.peso = m.peso;
                    a.scorta = std::ceil(m.qMax * 2.5);
                    a.iva = m_iva.value(u(m.iva)).first;
                    a.valoreIva = m_iva.value(u(m.iva)).second;
                    a.um = m_um.value(u(m.um));
                    const double costo = std::max(0.05,
                                                  centesimi(m.costo * std::pow(1.0 + m.passo, v)
                                                            * marche[b].fattorePrezzo * tra(0.92, 1.08)));
                    const double ricarico = tra(0.40, 0.85);
                    a.listino = centesimi(costo * (1.0 + ricarico));
                    const QString barcode = demo::ean13(
                        u(marche[b].prefissoEan) + QStringLiteral("%1").arg(++seriali[b], 5, 10, QLatin1Char('0')));
                    a.rid = inserisci(QStringLiteral("Prodotti"),
                                      {{"CODICE", testo(a.codice)},
                                       {"BARCODE", testo(barcode)},
                                       {"EAN13CODE", testo(EncodeEAN13(barcode))},
                                       {"DESCRIZIONE", testo(a.descrizione)},
                                       {"FK_CATEGORIA", chiave(m_categorie.value(u(m.categoria)))},
                                       {"FK_MARCA", chiave(m_marche.at(b).first)},
                                       {"FK_GRUPPO", chiave(m_gruppo)},
                                       {"FK_CATSCOACQ", chiave(m_marche.at(b).second)},
                                       {"FK_CATSCOVEN", chiave(m_marche.at(b).second)},
                                       {"FK_Iva", chiave(a.iva)},
                                       {"FK_UNITAMISURA", chiave(a.um)},
                                       {"PREZZOACQUISTO", importo(costo)},
                                       {"LISTINO1", importo(a.listino)},
                                       {"LISTINO2", importo(centesimi(costo * (1.0 + ricarico * 0.6)))},
                                       {"LISTINO3", u("0")},
                                       {"LISTINO4", u("0")},
                                       {"PLISTINO", importo(centesimi(a.listino * (1.0 + a.valoreIva / 100.0)))},
                                       {"DATALISTINO", modifica},
                                       {"DATAULTIMAMODIFICA", modifica},
                                       {"SCONTO", u("0")},
                                       {"SCORTAMINIMA", QString::number(a.scorta)},
                                       {"PESO", QString::number(m.peso)},
                                       {"COLLI", m.peso >= 1.0 ? u("1") : u("0")},
                                       {"GIACENZA", u("0")},
                                       {"SETGIACENZA", u("1")},
                                       {"DISTINTABASE", u("0")},
                                       {"DISABILITATO", u("0")},
                                       {"ELENCOSPECIALE", u("0")},
                                       {"BLOCCAPREZZO", u("0")},
                                       {"UBICAZIONE",
                                        testo(QStringLiteral("Scaffale %1%2")
                                                  .arg(QChar(u'A' + scaffale(m.categoria)))
                                                  .arg(tra(1, 12)))}});
                    if (a.rid < 1)
                        return false;
                    const QString linea = u(m.descrizione) + QLatin1Char('#') + QString::number(v);
                    if (!m_linee.contains(linea))
                        m_linee.insert(linea, int(m_articoli.size()));
                    m_perRid.insert(a.rid, int(m_articoli.size()));
                    m_articoli << a;
                }
            }
        }
        return transazione.commit();
    }

    // --- kits: the head, its rows, and the product that sells it
    bool distinte()
    {
        // Without the kit character no code can name a kit.
        if (gOptions().distintaBase.isEmpty())
            return true;
        cTransaction transazione(tag("distinte"));
        if (!transazione)
            return false;
        int numero = 0;
        for (const demo::Kit& k : demo::kit()) {
            Articolo a;
            a.kit = true;
            a.codice = gOptions().distintaBase + u(k.codice);
            a.descrizione = u(k.descrizione);
            a.qMin = 1;
            a.qMax = 2;
            a.um = m_um.value(u("PZ"));
            const QString barcode = demo::ean13(QStringLiteral("20000000%1").arg(++numero, 4, 10, QLatin1Char('0')));
            const int categoria = m_categorie.value(u(k.categoria));
            const int testa = inserisci(QStringLiteral("DistintaBase"),
                                        {{"CODICE", testo(a.codice)},
                                         {"BARCODE", testo(barcode)},
                                         {"DESCRIZIONE", testo(a.descrizione)},
                                         {"FK_CATEGORIA", chiave(categoria)},
                                         {"FK_GRUPPO", chiave(m_gruppo)},
                                         {"FK_UM", chiave(a.um)}});
            if (testa < 1)
                return false;
            int pos = 0, colli = 0;
            for (const demo::ComponenteKit& c : k.componenti) {
                if (!c.modello)
                    break;
                const int indice = m_linee.value(u(c.modello) + QLatin1Char('#') + QString::number(c.variante), -1);
                if (indice < 0)
                    return fallito(u("Componente del kit sconosciuto: ") + u(c.modello));
                const Articolo& p = m_articoli.at(indice);
                // A kit costs a little less than its parts one by one.
                if (!inserisci(QStringLiteral("DistintaBaseDettagli"),
                               {{"FK_DISTINTABASE", chiave(testa)},
                                {"FK_PRODOTTO", chiave(p.rid)},
                                {"CODPRODOTTO", testo(p.codice)},
                                {"DESCPRODOTTO", testo(p.descrizione)},
                                {"QUANTITA", QString::number(c.quantita)},
                                {"PREZZO", importo(centesimi(p.listino * 0.95))},
                                {"FK_Iva", chiave(p.iva)},
                                {"VALOREIVA", QString::number(p.valoreIva)},
                                {"FK_UM", chiave(p.um)},
                                {"POS", QString::number(++pos)}}))
                    return false;
                a.componenti << std::pair{indice, c.quantita};
                a.peso += p.peso * c.quantita;
                if (p.valoreIva > a.valoreIva || a.iva == 0) {
                    a.iva = p.iva;
                    a.valoreIva = p.valoreIva;
                }
                colli += p.peso >= 1.0 ? c.quantita : 0;
            }
            a.rid = inserisci(QStringLiteral("Prodotti"),
                              {{"CODICE", testo(a.codice)},
                               {"BARCODE", testo(barcode)},
                               {"EAN13CODE", testo(EncodeEAN13(barcode))},
                               {"DESCRIZIONE", testo(a.descrizione)},
                               {"FK_CATEGORIA", chiave(categoria)},
                               {"FK_GRUPPO", chiave(m_gruppo)},
                               {"FK_UNITAMISURA", chiave(a.um)},
                               {"FK_IVA", chiave(a.iva)},
                               {"DISTINTABASE", u("1")},
                               {"COLLI", QString::number(colli)},
                               {"PESO", QString::number(a.peso)}});
            if (a.rid < 1)
                return false;
            m_perRid.insert(a.rid, int(m_articoli.size()));
            m_kit << int(m_articoli.size());
            m_articoli << a;
        }
        return transazione.commit();
    }

    // --- discount ranges of each brand: two customer bands, its supplier
    bool range()
    {
        const auto valori = [](std::initializer_list<int> sconti) {
            QStringList testi;
            for (int s : sconti)
                testi << formattaImporto(Currency::fromUnits(s), 2);
            return testi;
        };
        for (int b = 0; b < int(m_marche.size()); ++b) {
            const auto [marca, categoria] = m_marche.at(b);
            const Controparte& fornitore = m_fornitori.at(b % kFornitori);
            RangeEditor editor(TipoRange::Sconti);
            if (!editor.carica(categoria, marca)
                || !editor.aggiungiGruppo(Vendite, m_fasciaStandard, QStringLiteral("STD"), u("Standard")).isEmpty()
                || !editor.aggiungiGruppo(Vendite, m_fasciaRivenditori, QStringLiteral("RIV"), u("Rivenditori"))
                        .isEmpty()
                || !editor.aggiungiGruppo(Acquisti, fornitore.rid, fornitore.numero, fornitore.nome).isEmpty())
                return fallito(u("Impossibile preparare i range di sconto."));
            const QList<QStringList> standard{valori({0, 0, 0}), valori({3, 0, 0}), valori({5, 0, 0})};
            const QList<QStringList> rivenditori{valori({10, 0, 0}), valori({10, 5, 0}), valori({15, 5, 0})};
            const QList<QStringList> acquisti{valori({0, 0, 0}), valori({2, 0, 0}), valori({4, 0, 0})};
            for (int r = 0; r < 3; ++r) {
                editor.gruppi(Vendite)[0].righe[r].valori = standard.at(r);
                editor.gruppi(Vendite)[1].righe[r].valori = rivenditori.at(r);
                editor.gruppi(Acquisti)[0].righe[r].valori = acquisti.at(r);
            }
            if (const QString messaggio = editor.controlla(categoria); !messaggio.isEmpty())
                return fallito(messaggio);
            if (!editor.salva(categoria, marca))
                return false;
        }
        return true;
    }

    // --- documents
    struct Pianificato
    {
        int giorno;
        Tipo tipo;
    };

    QList<Pianificato> calendario()
    {
        QList<QDate> tutti;
        const QDate oggi = QDate::currentDate();
        for (QDate d(m_anno, 1, 1); d.year() == m_anno; d = d.addDays(1))
            if (lavorativo(d))
                tutti << d;
        // Up to today, unless the year has just begun.
        QList<QDate> passati;
        for (const QDate& d : std::as_const(tutti))
            if (d <= oggi)
                passati << d;
        m_giorni = passati.size() >= 20 ? passati : tutti;

        int quante[NumeroTipi];
        int assegnati = 0;
        for (int t = 0; t < NumeroTipi; ++t)
            assegnati += quante[t] = 1 + (m_documenti - kMinimoDocumentiDemo) * kQuote[t] / 100;
        quante[FV] += m_documenti - assegnati;
        QList<Pianificato> piano;
        const int giorni = int(m_giorni.size());
        for (int t = 0; t < NumeroTipi; ++t)
            for (int i = 0; i < quante[t]; ++i)
                // The first loads stock the shelves in the first days of the year.
                piano << Pianificato{t == CF && i < kFornitori ? i / 4 : m_random.bounded(giorni), Tipo(t)};
        std::stable_sort(piano.begin(), piano.end(), [](const Pianificato& a, const Pianificato& b) {
            return a.giorno != b.giorno ? a.giorno < b.giorno : a.tipo < b.tipo;
        });
        return piano;
    }

    bool documenti()
    {
        int carichi = 0;
        for (const Pianificato& p : calendario()) {
            Documento d;
            d.tipo = p.tipo;
            d.data = m_giorni.at(p.giorno);
            if (!passo(m_tipi[p.tipo].descrizione))
                return false;
            switch (p.tipo) {
            case CF: carico(d, carichi++); break;
            case TM: trasferimento(d); break;
            case OC: ordine(d); break;
            case DDT:
            case FV: vendita(d); break;
            case FD: fatturaDifferita(d); break;
            case NC: notaCredito(d); break;
            default: break;
            }
            if (d.righe.isEmpty())
                return fallito(u("Nessun prodotto disponibile per il documento ") + m_tipi[p.tipo].codice + u(" del ")
                               + formatDate(d.data) + QLatin1Char('.'));
            int numero = 0;
            if (!scrivi(d, numero))
                return false;
            if (d.tipo == DDT)
                m_ddtAperti[d.cliente] << DdtAperto{numero, d.data, d.righe};
            if (d.tipo == FV) {
                m_fatture[d.cliente] = {numero, d.data};
                for (const Riga& r : std::as_const(d.righe))
                    if (!m_articoli.at(r.articolo).kit)
                        m_venduti[d.cliente] << r.articolo;
            }
        }
        return !m_progresso || m_progresso(m_totale, m_totale, u("Completato"));
    }

    int cliente(bool soloImprese)
    {
        const QList<int>& lista = soloImprese ? m_sceltaImprese : m_sceltaClienti;
        return lista.at(m_random.bounded(int(lista.size())));
    }

    int articoloCasuale() { return m_random.bounded(int(m_articoli.size())); }
    int quantitaTipica(const Articolo& a) { return tra(a.qMin, a.qMax); }

    // Rows of goods that leave the warehouse SEDE: only what its lots hold,
    // every product once, the components of a kit included.
    QList<Riga> righeDaMagazzino(int quante, bool kit, int divisore)
    {
        QList<Riga> righe;
        QSet<int> usati;
        for (int prova = 0; prova < quante * 30 && righe.size() < quante; ++prova) {
            if (kit && !m_kit.isEmpty() && caso(6)) {
                const int k = m_kit.at(m_random.bounded(int(m_kit.size())));
                const int q = tra(1, 2);
                bool possibile = !usati.contains(k);
                for (const auto& [c, perKit] : m_articoli.at(k).componenti)
                    possibile = possibile && !usati.contains(c)
                        && m_scorte.disponibile(m_articoli.at(c).rid, m_sede) >= perKit * q;
                if (possibile) {
                    righe << Riga{k, q};
                    usati << k;
                    for (const auto& [c, perKit] : m_articoli.at(k).componenti)
                        usati << c;
                }
                continue;
            }
            const int a = articoloCasuale();
            const Articolo& p = m_articoli.at(a);
            if (p.kit || usati.contains(a))
                continue;
            const int disponibile = int(m_scorte.disponibile(p.rid, m_sede)) / divisore;
            if (disponibile < 1)
                continue;
            righe << Riga{a, std::min(quantitaTipica(p), disponibile)};
            usati << a;
        }
        return righe;
    }

    void vendita(Documento& d)
    {
        d.cliente = cliente(d.tipo == DDT);
        const int poche = tra(1, 3), altre = tra(0, 3);
        d.righe = righeDaMagazzino(poche + altre, true, 1);
        if (caso(30) && m_clienti.at(d.cliente).genere != Controparte::Privato)
            d.riferimenti = u("Vs. ordine n. ") + QString::number(tra(10, 999)) + u(" del ")
                + formatDate(d.data.addDays(-tra(1, 10)));
    }

    void trasferimento(Documento& d)
    {
        d.magazzinoDest = m_negozio;
        // A part of what the warehouse holds; all of it when little is left.
        const int righe = tra(2, 6);
        d.righe = righeDaMagazzino(righe, false, 3);
        if (d.righe.isEmpty())
            d.righe = righeDaMagazzino(righe, false, 1);
        d.riferimenti = u("Rifornimento negozio");
    }

    void ordine(Documento& d)
    {
        d.cliente = cliente(true);
        QSet<int> usati;
        for (int i = tra(2, 8); i > 0; --i) {
            const int a =
                caso(8) && !m_kit.isEmpty() ? m_kit.at(m_random.bounded(int(m_kit.size()))) : articoloCasuale();
            if (!usati.contains(a)) {
                usati << a;
                const int quantita = quantitaTipica(m_articoli.at(a));
                d.righe << Riga{a, quantita * tra(1, 3)};
            }
        }
        d.riferimenti = u("Ordine del cliente n. ") + QString::number(tra(10, 999));
    }

    // The delivery notes of a customer gathered in one invoice, the
    // customer with the oldest notes first.
    void fatturaDifferita(Documento& d)
    {
        int scelto = -1;
        for (auto it = m_ddtAperti.cbegin(); it != m_ddtAperti.cend(); ++it)
            if (!it.value().isEmpty()
                && (scelto < 0 || it.value().first().numero < m_ddtAperti.value(scelto).first().numero))
                scelto = it.key();
        if (scelto < 0) {
            d.cliente = cliente(true);
            QSet<int> usati;
            for (int i = tra(1, 4); i > 0; --i)
                if (const int a = articoloCasuale(); !usati.contains(a)) {
                    usati << a;
                    d.righe << Riga{a, quantitaTipica(m_articoli.at(a))};
                }
            return;
        }
        d.cliente = scelto;
        QMap<int, int> quantita;
        QStringList note;
        for (const DdtAperto& ddt : m_ddtAperti.take(scelto)) {
            note << u("n. ") + QString::number(ddt.numero) + u(" del ") + formatDate(ddt.data);
            for (const Riga& r : ddt.righe)
                quantita[r.articolo] += r.quantita;
        }
        for (auto it = quantita.cbegin(); it != quantita.cend(); ++it)
            d.righe << Riga{it.key(), it.value()};
        d.riferimenti = QString(u("Rif. DDT ") + note.join(QStringLiteral(", "))).left(250);
    }

    // Goods sent back by a customer who bought them.
    void notaCredito(Documento& d)
    {
        QList<int> conAcquisti = m_venduti.keys();
        d.cliente = conAcquisti.isEmpty() ? cliente(true) : conAcquisti.at(m_random.bounded(int(conAcquisti.size())));
        const QList<int> venduti = m_venduti.value(d.cliente);
        const int a = venduti.isEmpty() ? articoloCasuale() : venduti.at(m_random.bounded(int(venduti.size())));
        d.righe << Riga{a, std::min(tra(1, 2), m_articoli.at(a).qMax)};
        if (m_fatture.contains(d.cliente))
            d.riferimenti = u("Reso merce rif. fattura n. ") + QString::number(m_fatture.value(d.cliente).first)
                + u(" del ") + formatDate(m_fatture.value(d.cliente).second);
        else
            d.riferimenti = u("Abbuono per merce non conforme");
    }

    // The first loads stock each supplier's whole range; later ones bring
    // back what has gone below its minimum, from the supplier with most of it.
    void carico(Documento& d, int indice)
    {
        QList<QList<int>> sottoScorta(kFornitori);
        for (int a = 0; a < int(m_articoli.size()); ++a) {
            const Articolo& p = m_articoli.at(a);
            if (!p.kit && m_scorte.totale(p.rid, m_sede) < p.scorta)
                sottoScorta[p.fornitore] << a;
        }
        int fornitore = indice;
        if (indice >= kFornitori) {
            fornitore = 0;
            for (int f = 1; f < kFornitori; ++f)
                if (sottoScorta.at(f).size() > sottoScorta.at(fornitore).size())
                    fornitore = f;
        }
        d.fornitore = fornitore;
        QList<int> scelti = sottoScorta.at(fornitore);
        while (scelti.size() > (indice < kFornitori ? 80 : 40))
            scelti.removeAt(m_random.bounded(int(scelti.size())));
        for (int prova = 0; scelti.size() < 3 && prova < 200; ++prova) {
            const int a = articoloCasuale();
            if (!m_articoli.at(a).kit && m_articoli.at(a).fornitore == fornitore && !scelti.contains(a))
                scelti << a;
        }
        std::sort(scelti.begin(), scelti.end());
        for (const int a : std::as_const(scelti)) {
            const Articolo& p = m_articoli.at(a);
            const double manca = p.scorta * 3 - std::max(0.0, m_scorte.totale(p.rid, m_sede));
            // Whole boxes of five.
            d.righe << Riga{a, std::max(5, int(std::ceil(manca / 5.0)) * 5)};
        }
        int& numero = m_numeriFornitori[fornitore];
        numero = numero == 0 ? tra(100, 900) : numero + tra(1, 40);
        d.numeroOriginale = QString::number(numero);
        d.dataOriginale = std::max(QDate(m_anno, 1, 1), d.data.addDays(-tra(0, 3)));
        d.riferimenti = u("Fattura fornitore n. ") + d.numeroOriginale + u(" del ") + formatDate(d.dataOriginale);
    }

    // A row as the user enters it: the code, the quantity, confirm.
    bool riga(EditorDocumento& e, const Articolo& a, int quantita)
    {
        e.pulisciRiga();
        if (e.prodottoLasciato(a.codice, false).tipo != EsitoProdotto::Compilato)
            return false;
        e.riga.quantita = formattaImporto(Currency::fromUnits(quantita), e.decimali());
        e.quantitaLasciata();
        return e.confermaRiga() >= 0;
    }

    bool scrivi(const Documento& doc, int& numero)
    {
        const TipoDocumento& tipo = m_tipi[doc.tipo];
        DocumentoDaSalvare d;
        d.info = tipo.info;
        TestataDocumento& t = d.testata;
        t.tipo = {tipo.rid, tipo.codice, tipo.descrizione};
        t.anno = doc.data.year();
        t.data = doc.data;
        t.numeroOriginale = doc.numeroOriginale;
        t.dataOriginale = doc.dataOriginale;
        t.riferimenti = doc.riferimenti;
        const int controparte = doc.cliente >= 0 ? m_clienti.at(doc.cliente).rid
            : doc.fornitore >= 0                 ? m_fornitori.at(doc.fornitore).rid
                                                 : 0;
        const auto parte = [&](int genere, int magazzino) {
            return genere == lato::Magazzino                           ? (magazzino > 0 ? magazzino : m_sede)
                : genere == lato::Cliente || genere == lato::Fornitore ? controparte
                                                                       : 0;
        };
        t.origine.rid = parte(d.info.origine, d.info.magazzinoOrig);
        t.destinazione.rid =
            parte(d.info.destinazione, doc.magazzinoDest > 0 ? doc.magazzinoDest : d.info.magazzinoDest);

        EditorDocumento e(gOptions().decimaliDopo, gOptions().distintaBase);
        e.taglioEffettivo = d.info.taglio && !gOptions().prezzoMedio;
        e.prezzi.tipoOrigine = d.info.origine;
        e.prezzi.tipoDestinazione = d.info.destinazione;
        e.prezzi.origine = t.origine.rid;
        e.prezzi.destinazione = t.destinazione.rid;
        InfoContropartita info;
        if (controparte > 0 && getInfoContropartita(controparte, info)) {
            t.pagamento = info.pagamento;
            t.banca = info.banca;
            e.prezzi.scontoControparte = info.sconto;
        }
        if (t.pagamento.rid < 1)
            t.pagamento.rid = m_pagamenti.value(u("RD"));
        for (const Riga& r : doc.righe)
            if (!riga(e, m_articoli.at(r.articolo), r.quantita))
                return fallito(u("Prodotto non trovato: ") + m_articoli.at(r.articolo).codice);
        if (d.info.accompagnatorio) {
            DatiSpedizione& s = t.spedizione;
            getInfoConsegnaCliente(controparte, s);
            s.data = doc.data;
            s.ora = QStringLiteral("%1:%2")
                        .arg(tra(8, 17), 2, 10, QLatin1Char('0'))
                        .arg(tra(0, 3) * 15, 2, 10, QLatin1Char('0'));
            s.aspetto = m_aspetto;
            s.causaleTrasporto = doc.tipo == TM ? m_causaleTrasferimento : m_causaleVendita;
            s.spedizione = caso(70) ? m_mittente : m_vettore;
            getNewPesoColli(e.griglia(), s.colli, s.peso);
            s.colli = std::max<qint16>(1, s.colli);
        }
        e.calcolaTotali();
        d.totali = e.totali();
        const QStringList mancanze = controllaInserimento(d, e.griglia());
        if (!mancanze.isEmpty())
            return fallito(u("Documento ") + tipo.codice + u(" incompleto:\n") + mancanze.join(QLatin1Char('\n')));
        if (!salvaDocumento(d, e.griglia(), true))
            return fallito(u("Impossibile salvare il documento ") + tipo.codice + u(" del ") + formatDate(doc.data)
                           + u(": vedere il registro degli errori."));
        numero = t.progressivo;
        if (d.info.operazione)
            muoviScorte(d, e.griglia());
        return true;
    }

    // The picture of the lots follows the rows as the save posted them.
    void muoviScorte(const DocumentoDaSalvare& d, const GrigliaDocumento& g)
    {
        const int origine = d.info.origine == lato::Magazzino ? d.testata.origine.rid : 0;
        const int destinazione = d.info.destinazione == lato::Magazzino ? d.testata.destinazione.rid : 0;
        const bool taglioDaPrezzo = d.info.taglio && !gOptions().prezzoMedio;
        for (int r = 0; r < g.righe(); ++r) {
            const int indice = m_perRid.value(g.cella(r, colonna::IdProdotto).toInt(), -1);
            if (indice < 0 || m_articoli.at(indice).kit)
                continue;
            const int prodotto = m_articoli.at(indice).rid;
            const double quantita = static_cast<double>(getValoreSingle(g.cella(r, colonna::Quantita)));
            Currency taglio = getValoreCurrency(g.cella(r, colonna::Taglio));
            if (taglioDaPrezzo) {
                // The lot the row was entered with is made too, empty, when
                // the net price differs from it.
                const Currency netto = getValoreCurrency(g.cella(r, colonna::NettoEsteso));
                if (destinazione > 0 && taglio > Currency() && taglio != netto)
                    m_scorte.quantita(prodotto, destinazione, taglio);
                taglio = netto;
            } else if (origine > 0) {
                taglio = m_scorte.piuVecchio(prodotto, origine);
            }
            if (origine > 0)
                m_scorte.quantita(prodotto, origine, taglio) -= quantita;
            if (destinazione > 0)
                m_scorte.quantita(prodotto, destinazione, taglio) += quantita;
        }
    }

    struct TipoDocumento
    {
        int rid = 0;
        QString codice, descrizione;
        InfoDocumento info;
    };

    const int m_documenti;
    const ProgressoDemo& m_progresso;
    const int m_totale;
    int m_fatto = 0;
    const int m_anno = QDate::currentDate().year();
    QRandomGenerator m_random{kSeme};

    int m_sede = 0, m_negozio = 0, m_gruppo = 0, m_fasciaStandard = 0, m_fasciaRivenditori = 0;
    int m_aspetto = 0, m_causaleVendita = 0, m_causaleTrasferimento = 0, m_mittente = 0, m_vettore = 0;
    QHash<QString, int> m_pagamenti, m_um, m_categorie;
    QHash<QString, std::pair<int, double>> m_iva; // code -> key, percent
    TipoDocumento m_tipi[NumeroTipi];
    QList<int> m_categorieSconto;
    QList<std::pair<int, int>> m_marche; // key, discount category

    QSet<QString> m_codici, m_nomi;
    QList<Controparte> m_clienti, m_fornitori;
    QList<int> m_sceltaClienti, m_sceltaImprese; // indexes, repeated by how often each buys
    QList<Articolo> m_articoli;
    QList<int> m_kit;
    QHash<int, int> m_perRid;    // product key -> article
    QHash<QString, int> m_linee; // line and size -> its first article

    QList<QDate> m_giorni;
    Scorte m_scorte;
    QMap<int, QList<DdtAperto>> m_ddtAperti;
    QMap<int, QList<int>> m_venduti;
    QHash<int, std::pair<int, QDate>> m_fatture; // the last invoice of each customer
    QHash<int, int> m_numeriFornitori;
};

void riempiRiepilogo(RiepilogoDemo& r)
{
    r.clienti = conta(QStringLiteral("SELECT COUNT(*) FROM Anagrafiche WHERE TIPO = ") + sqlText(QStringLiteral("C")));
    r.fornitori =
        conta(QStringLiteral("SELECT COUNT(*) FROM Anagrafiche WHERE TIPO = ") + sqlText(QStringLiteral("F")));
    r.prodotti = conta(QStringLiteral("SELECT COUNT(*) FROM Prodotti WHERE DISTINTABASE = 0 AND SETGIACENZA <> 0"));
    r.kit = conta(QStringLiteral("SELECT COUNT(*) FROM DistintaBase"));
    r.range = conta(QStringLiteral("SELECT COUNT(*) FROM CatScVendita"))
        + conta(QStringLiteral("SELECT COUNT(*) FROM CatScAcquisto"));
    r.documenti = conta(QStringLiteral("SELECT COUNT(*) FROM Movimenti"));
    r.righe = conta(QStringLiteral("SELECT COUNT(*) FROM DettagliMovimento"));
    r.primaNota = conta(QStringLiteral("SELECT COUNT(*) FROM PrimaNota"));
    r.scadenze = conta(QStringLiteral("SELECT COUNT(*) FROM Scadenze"));
    r.perTipo.clear();
    const cReader rs(QStringLiteral("SELECT T.CODICE, COUNT(*) AS N FROM Movimenti M INNER JOIN TipoDocumenti T ON "
                                    "M.FK_TIPODOCUMENTO = T.RID GROUP BY T.CODICE"),
                     tag("riepilogo"));
    for (; rs && !rs->eof(); rs->moveNext())
        r.perTipo.insert(rs->text(QStringLiteral("CODICE")), int(rs->integer(QStringLiteral("N"))));
}

} // namespace

QString dittaNonVuota()
{
    const QString libera = gOptions().rigaLibera.isEmpty() ? QStringLiteral("/") : gOptions().rigaLibera.left(1);
    const int documenti = conta(QStringLiteral("SELECT COUNT(*) FROM Movimenti"));
    const int anagrafiche = conta(QStringLiteral("SELECT COUNT(*) FROM Anagrafiche"));
    const int prodotti = conta(QStringLiteral("SELECT COUNT(*) FROM Prodotti WHERE NOT (CODICE LIKE ")
                               + sqlLikePattern(libera, LikeMatch::StartsWith) + QLatin1Char(')'));
    if (documenti < 0 || anagrafiche < 0 || prodotti < 0)
        return u("Impossibile verificare il contenuto della ditta.");
    QStringList presenti;
    if (documenti > 0)
        presenti << QString::number(documenti) + u(" documenti");
    if (anagrafiche > 0)
        presenti << QString::number(anagrafiche) + u(" clienti o fornitori");
    if (prodotti > 0)
        presenti << QString::number(prodotti) + u(" prodotti");
    if (presenti.isEmpty())
        return QString();
    return u("I dati dimostrativi si caricano solo in una ditta vuota.\nQuesta ditta contiene già ")
        + presenti.join(u(", ")) + QLatin1Char('.');
}

bool generaDatiDimostrativi(int documenti, const ProgressoDemo& progresso, QString* errore, RiepilogoDemo* riepilogo)
{
    QString messaggio;
    bool fatto = false;
    if (documenti < kMinimoDocumentiDemo) {
        messaggio = u("Il numero di documenti deve essere almeno %1.").arg(kMinimoDocumentiDemo);
    } else if (messaggio = dittaNonVuota(); messaggio.isEmpty()) {
        Generatore generatore(documenti, progresso);
        fatto = generatore.esegui();
        // The documents print with the firm's letterhead and details.
        if (fatto && !impostaDittaDimostrativa(gSession().strReportPath))
            messaggio = u("Impossibile scrivere il logo della ditta in ") + gSession().strReportPath;
        if (!fatto)
            messaggio = generatore.errore.isEmpty()
                ? u("La generazione dei dati dimostrativi non è riuscita: vedere il registro degli errori.")
                : generatore.errore;
    }
    if (riepilogo)
        riempiRiepilogo(*riepilogo);
    if (errore)
        *errore = messaggio;
    return fatto;
}

QString testoRiepilogo(const RiepilogoDemo& r)
{
    QStringList tipi;
    for (auto it = r.perTipo.cbegin(); it != r.perTipo.cend(); ++it)
        tipi << it.key() + QLatin1Char(' ') + QString::number(it.value());
    return u("Clienti: %1, fornitori: %2\nProdotti: %3, distinte base: %4, range di sconto: %5\n"
             "Documenti: %6 (%7), righe: %8\nScritture di prima nota: %9, scadenze: %10")
        .arg(r.clienti)
        .arg(r.fornitori)
        .arg(r.prodotti)
        .arg(r.kit)
        .arg(r.range)
        .arg(r.documenti)
        .arg(tipi.join(u(", ")))
        .arg(r.righe)
        .arg(r.primaNota)
        .arg(r.scadenze);
}
