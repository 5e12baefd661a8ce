#include "documents/spedizione.h"

#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/serversettings.h"
#include "data/scoped.h"
#include "documents/grigliadocumento.h"

#include <QSettings>

#include <cmath>
#include <limits>

namespace {

// The shipment data belong to the document screen: its statements carry its name.
QString tag(const char* procedure) { return QStringLiteral("frmMovimento.") + QLatin1String(procedure); }

const QString kDestElencoSpeciale = QStringLiteral("Options/sDestElencoSpeciale");

constexpr double kMinColli = std::numeric_limits<qint16>::min();
constexpr double kMaxColli = std::numeric_limits<qint16>::max();

// A number of a product's card, 0 when Null or when there is no such card.
double valoreProdotto(const char* colonna, int rid, const char* procedura)
{
    if (rid <= 0)
        return 0;
    const cReader rs(QStringLiteral("SELECT ") + QLatin1String(colonna) + QStringLiteral(" FROM Prodotti WHERE RID = ")
                         + QString::number(rid),
                     tag(procedura));
    if (!rs || rs->eof())
        return 0;
    return rs->number(QLatin1String(colonna));
}

// The parcels of a card made whole as a 16-bit variable takes them: ties to even.
double colliProdotto(int rid) { return std::nearbyint(valoreProdotto("COLLI", rid, "getColliProd")); }

// The weight and the parcels as a field shows them, from what it holds.
QString pesoDaTesto(const QString& text) { return testoPeso(toSingle(getValoreNumerico(text))); }

QString colliDaTesto(const QString& text)
{
    const double colli = std::nearbyint(getValoreNumerico(text));
    return colli >= 1 ? formattaIntero(colli) : QString();
}

} // namespace

Single getPesoProd(int rid) { return toSingle(valoreProdotto("PESO", rid, "getPesoProd")); }

qint16 getColliProd(int rid)
{
    const double colli = colliProdotto(rid);
    if (colli < kMinColli || colli > kMaxColli) {
        notifyError(QStringLiteral("frmMovimento"), QStringLiteral("getColliProd"),
                    QStringLiteral("Overflow: COLLI = ") + plainTextIt(colli) + QStringLiteral(", RID = ")
                        + QString::number(rid));
        return 0;
    }
    return qint16(colli);
}

bool getNewPesoColli(const GrigliaDocumento& griglia, qint16& colli, Single& peso)
{
    Single pesoTotale = 0;
    qint16 colliTotali = 0;
    for (int i = 0; i < griglia.righe(); ++i) {
        if (griglia.stato(i) == gestione::Eliminata || !griglia.cella(i, colonna::IdDistintaBase).isEmpty())
            continue;
        const int prodotto = int(getValoreNumerico(griglia.cella(i, colonna::IdProdotto)));
        const Single quantita = getValoreSingle(griglia.cella(i, colonna::Quantita));
        pesoTotale += mulSingle(getPesoProd(prodotto), quantita);
        // The card's parcels go through the running total unchecked, so that
        // a card with too many of them shows in the box below.
        const Single somma = Single(colliTotali) + mulSingle(Single(colliProdotto(prodotto)), quantita);
        const double intero = std::nearbyint(double(somma));
        if (!(intero >= kMinColli && intero <= kMaxColli)) {
            msgBox(QStringLiteral("Impossibile impostare il numero dei colli a ") + QString::number(intero, 'f', 0)
                       + QStringLiteral("\nVerificare [Colli] nella schede anagrafiche dei prodotti presenti nel "
                                        "movimento"),
                   vb::Critical);
            return false;
        }
        colliTotali = qint16(intero);
    }
    colli = colliTotali;
    peso = pesoTotale;
    return true;
}

bool getInfoConsegnaCliente(int ridAnagrafica, DatiSpedizione& dati)
{
    if (dati.destElencoSpeciale.isEmpty())
        dati.destElencoSpeciale = destElencoSpecialeSalvata();
    if (ridAnagrafica <= 0)
        return false;
    const cReader rs(QStringLiteral("SELECT RID, INDIRIZZODEST, CIVICODEST, CAPDEST, CITTADEST, PROVINCIADEST, "
                                    "TELUFFICIO, FAX, DatiAutorizzazione, DocumentoRiconoscimento FROM Anagrafiche "
                                    "WHERE RID = ")
                         + QString::number(ridAnagrafica),
                     tag("getInfoConsegnaCliente"));
    if (!rs || rs->eof())
        return false;
    const bool senzaIndirizzo = dati.via.isEmpty() && dati.civico.isEmpty() && dati.citta.isEmpty()
        && dati.provincia.isEmpty() && dati.cap.isEmpty() && dati.telefono.isEmpty() && dati.fax.isEmpty();
    if (senzaIndirizzo) {
        dati.via = rs->text(QStringLiteral("INDIRIZZODEST"));
        dati.civico = rs->text(QStringLiteral("CIVICODEST"));
        dati.citta = rs->text(QStringLiteral("CITTADEST"));
        dati.provincia = rs->text(QStringLiteral("PROVINCIADEST"));
        dati.cap = rs->text(QStringLiteral("CAPDEST"));
        dati.telefono = rs->text(QStringLiteral("TELUFFICIO"));
        dati.fax = rs->text(QStringLiteral("FAX"));
    }
    if (dati.autElencoSpeciale.isEmpty())
        dati.autElencoSpeciale = rs->text(QStringLiteral("DatiAutorizzazione"));
    if (dati.documElencoSpeciale.isEmpty())
        dati.documElencoSpeciale = rs->text(QStringLiteral("DocumentoRiconoscimento"));
    return true;
}

QString destElencoSpecialeSalvata() { return machineSettings().value(kDestElencoSpeciale).toString(); }

void salvaDestElencoSpeciale(const QString& destinazione)
{
    machineSettings().setValue(kDestElencoSpeciale, destinazione);
}

QString testoPeso(Single peso) { return peso > 0 ? formattaImporto(peso, 2) : QString(); }

QString testoColli(qint16 colli) { return colli >= 1 ? formattaIntero(int(colli)) : QString(); }

AggiornamentoPesoColli aggiornaPesoColli(const QString& pesoMostrato, const QString& colliMostrati, Single nuovoPeso,
                                         qint16 nuoviColli)
{
    AggiornamentoPesoColli esito;
    const QString peso = testoPeso(nuovoPeso), colli = testoColli(nuoviColli);
    if (pesoDaTesto(pesoMostrato) == peso && colliDaTesto(colliMostrati) == colli) {
        msgBox(QStringLiteral("Peso e Colli sono già aggornati!"), vb::Information);
        return esito;
    }
    if (msgBox(QStringLiteral("Aggiornare il Peso e i Colli con i nuovi valori?\n- Peso = ")
                   + formattaImporto(nuovoPeso, 2) + QStringLiteral("\n- Colli = ") + formattaIntero(int(nuoviColli)),
               vb::YesNo | vb::Question)
        != vb::Yes)
        return esito;
    esito.aggiorna = true;
    esito.peso = peso;
    esito.colli = colli;
    return esito;
}
