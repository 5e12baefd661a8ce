#include "documents/righekit.h"

#include "common/errorlog.h"
#include "common/italiantext.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"
#include "documents/grigliadocumento.h"
#include "pricing/prezzi.h"

namespace {

const QString kModulo = QStringLiteral("frmMovimento");

QString segna(int stato) { return QString::number(stato); }

} // namespace

QList<ComponenteKit> getComponentiKit(const QString& codice, const DocumentoPrezzi& prezzi, const QString& tag)
{
    QList<ComponenteKit> componenti;
    {
        const cReader rs(
            QStringLiteral(
                "SELECT DBD.FK_PRODOTTO, DBD.CODPRODOTTO, DBD.DESCPRODOTTO, DBD.QUANTITA, DBD.PREZZO AS "
                "PREZZOLISTINO, DBD.FK_IVA, DBD.VALOREIVA, I.CODICE AS CODIVA, I.DESCRIZIONE AS DESCIVA, "
                "DBD.FK_UM, UM.CODICE AS CODUM FROM ((DistintaBaseDettagli DBD INNER JOIN DistintaBase DB ON "
                "DBD.FK_DISTINTABASE = DB.RID) INNER JOIN Iva I ON DBD.FK_IVA = I.RID) LEFT JOIN "
                "UnitaMisura UM ON DBD.FK_UM = UM.RID WHERE DB.CODICE = ")
                + sqlText(codice) + QStringLiteral(" ORDER BY DBD.POS"),
            tag);
        for (; rs && !rs->eof(); rs->moveNext()) {
            ComponenteKit c;
            c.prodotto = int(rs->integer(QStringLiteral("FK_PRODOTTO")));
            c.codice = rs->text(QStringLiteral("CODPRODOTTO"));
            c.descrizione = rs->text(QStringLiteral("DESCPRODOTTO"));
            c.quantita = toSingle(rs->number(QStringLiteral("QUANTITA")));
            c.prezzo = rs->amount(QStringLiteral("PREZZOLISTINO"));
            c.iva = int(rs->integer(QStringLiteral("FK_IVA")));
            c.valoreIva = toSingle(rs->number(QStringLiteral("VALOREIVA")));
            c.codIva = rs->text(QStringLiteral("CODIVA"));
            c.descIva = rs->text(QStringLiteral("DESCIVA"));
            c.um = int(rs->integer(QStringLiteral("FK_UM")));
            c.codUM = rs->text(QStringLiteral("CODUM"));
            componenti << c;
        }
    }
    // A component without a price of its own is priced as a row of it would be.
    for (ComponenteKit& c : componenti)
        if (c.prezzo <= Currency())
            c.prezzo = getValoreCurrency(getPrezzo(c.prodotto, prezzi));
    return componenti;
}

Currency getPrezzoTotaleDistinta(const QString& codice, const DocumentoPrezzi& prezzi)
{
    Currency totale;
    for (const ComponenteKit& c :
         getComponentiKit(codice, prezzi, kModulo + QStringLiteral(".getPrezzoTotaleDistinta")))
        totale += Currency::fromDouble(c.prezzo.toDouble() * static_cast<double>(c.quantita));
    return totale;
}

TotaliFigli getTotaliFigli(int ridPadre)
{
    TotaliFigli t;
    const cReader rs(QStringLiteral("SELECT QUANTITA, PREZZO, PREZZONETTO, VALOREIVA FROM DettagliMovimento WHERE "
                                    "IK_DETTAGLIOMOVIMENTO = ")
                         + QString::number(ridPadre),
                     kModulo + QStringLiteral(".getTotaliFigli"));
    for (; rs && !rs->eof(); rs->moveNext()) {
        const Currency quantita = getValoreCurrency(rs->value(QStringLiteral("QUANTITA")));
        const Currency netto = CyMul(rs->amount(QStringLiteral("PREZZONETTO")), quantita);
        const double aliquota = static_cast<double>(getValoreSingle(rs->value(QStringLiteral("VALOREIVA"))));
        t.prezzo += CyMul(rs->amount(QStringLiteral("PREZZO")), quantita);
        t.netto += netto;
        t.ivato += Currency::fromDouble(netto.toDouble() * (1.0 + aliquota / 100.0));
    }
    return t;
}

bool aggiornaQTFigli(GrigliaDocumento& g, int rigaPadre, Single quantita, int decimali)
{
    const Single vecchia = getValoreSingle(g.cella(rigaPadre, colonna::Quantita));
    if (vecchia == 0) {
        // The components' share of a kit of quantity 0 can't be told.
        Err().raise(11, kModulo, QStringLiteral("Divisione per zero"));
        notifyError(kModulo, QStringLiteral("aggiornaQTFigli"), g.cella(rigaPadre, colonna::Codice));
        return false;
    }
    Currency netto, ivato;
    for (int i = rigaPadre + 1; i < g.righe() && g.figlio(i); ++i) {
        const Single quota = toSingle(static_cast<double>(getValoreSingle(g.cella(i, colonna::Quantita)))
                                      / static_cast<double>(vecchia));
        const Single nuova = mulSingle(quota, quantita);
        g.setCella(i, colonna::Quantita, formattaImporto(nuova, 2));
        const double n = getValoreCurrency(g.cella(i, colonna::PrezzoNetto)).toDouble();
        const double a = 1.0 + static_cast<double>(getValoreSingle(g.cella(i, colonna::Iva))) / 100.0;
        g.setCella(i, colonna::Importo, formattaImporto(n * a * static_cast<double>(nuova), decimali));
        if (g.stato(i) != gestione::Nuova)
            g.setCella(i, colonna::Gestione, segna(gestione::Modificata));
        netto += Currency::fromDouble(n * static_cast<double>(nuova));
        ivato += Currency::fromDouble(n * static_cast<double>(nuova) * a);
    }
    g.setCella(rigaPadre, colonna::PrezzoNetto, formattaImporto(netto, 4));
    g.setCella(rigaPadre, colonna::Importo, formattaImporto(ivato, 4));
    return true;
}

void aggiornaScontiFigli(GrigliaDocumento& g, int rigaPadre, Single s1, Single s2, Single s3)
{
    const QString t1 = plainTextIt(s1), t2 = plainTextIt(s2), t3 = plainTextIt(s3);
    for (int i = rigaPadre + 1; i < g.righe() && g.figlio(i); ++i) {
        g.setCella(i, colonna::Sc1, t1);
        g.setCella(i, colonna::Sc2, t2);
        g.setCella(i, colonna::Sc3, t3);
        g.setCella(i, colonna::Sconti, t1 + QLatin1Char('+') + t2 + QLatin1Char('+') + t3);
    }
}

void aggiornaStatisticheFigli(GrigliaDocumento& g, int rigaPadre, int decimali)
{
    for (int i = rigaPadre + 1; i < g.righe() && g.figlio(i); ++i) {
        const double q = static_cast<double>(getValoreSingle(g.cella(i, colonna::Quantita)));
        g.setCella(i, colonna::Imponibile,
                   formattaImporto(getValoreCurrency(g.cella(i, colonna::PrezzoNetto)).toDouble() * q, decimali));
        g.setCella(i, colonna::TotIvaProd,
                   formattaImporto(static_cast<double>(getValoreSingle(g.cella(i, colonna::IvaProd))) * q, decimali));
    }
}

void delFigli(GrigliaDocumento& g, int rigaPadre)
{
    for (int i = rigaPadre + 1; i < g.righe() && g.figlio(i); ++i) {
        g.setCella(i, colonna::Gestione, segna(gestione::Eliminata));
        g.setCella(i, colonna::Icona, QString());
        g.setVisibile(i, false);
    }
}
