#include "masterdata/rangeeditor.h"

#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

namespace {

QString tag(TipoRange tipo, const char* procedure)
{
    return (tipo == TipoRange::Sconti ? QStringLiteral("frmRangeSconti.") : QStringLiteral("frmRangePrezzi."))
        + QLatin1String(procedure);
}

QString chiaveCondition(const QString& column, int chiave)
{
    return QStringLiteral("H.") + column
        + (chiave > 0 ? QStringLiteral(" = ") + QString::number(chiave) : QStringLiteral(" Is Null"));
}

QString intero(const QString& shown) { return QString::number(qRound64(getValoreNumerico(shown))); }

} // namespace

RangeEditor::RangeEditor(TipoRange tipo)
    : m_tipo(tipo)
{ }

RangeEditor::Tabelle RangeEditor::tabelle(Lato lato) const
{
    const bool sconti = m_tipo == TipoRange::Sconti;
    const QStringList colonne = sconti
        ? QStringList{QStringLiteral("Sconto1"), QStringLiteral("Sconto2"), QStringLiteral("Sconto3")}
        : QStringList{QStringLiteral("Prezzo")};
    const QString chiave = sconti ? QStringLiteral("FK_Marca") : QStringLiteral("FK_Prodotto");
    if (lato == Acquisti)
        return {sconti ? QStringLiteral("CatScAcquisto") : QStringLiteral("CatScProdAcquisto"),
                sconti ? QStringLiteral("CatScAcquistoSconti") : QStringLiteral("CatScAcquistoProd"),
                sconti ? QStringLiteral("FK_CatScAcquisto") : QStringLiteral("FK_CatScProdAcquisto"),
                QStringLiteral("FK_Fornitore"),
                chiave,
                QStringLiteral("Anagrafiche"),
                QStringLiteral("Numero"),
                QStringLiteral("Denominazione"),
                colonne};
    return {sconti ? QStringLiteral("CatScVendita") : QStringLiteral("CatScProdVendita"),
            sconti ? QStringLiteral("CatScVenditeSconti") : QStringLiteral("CatScVenditaProd"),
            sconti ? QStringLiteral("FK_CatScVendite") : QStringLiteral("FK_CatScVenditeProd"),
            QStringLiteral("FK_Fascia"),
            chiave,
            QStringLiteral("FasceClienti"),
            QStringLiteral("Codice"),
            QStringLiteral("Descrizione"),
            colonne};
}

QList<RangeRiga> RangeEditor::righeIniziali(int valori)
{
    QList<RangeRiga> righe;
    const QStringList zero(valori, formattaImporto(Currency(), 2));
    for (const auto& [da, a] : {std::pair{"1", "10"}, std::pair{"11", "100"}, std::pair{"101", "1000"}})
        righe.append({QString::fromLatin1(da), QString::fromLatin1(a), zero});
    return righe;
}

bool RangeEditor::carica(int categoria, int chiave)
{
    for (Lato lato : {Acquisti, Vendite}) {
        m_gruppi[lato].clear();
        m_rimossi[lato].clear();
    }
    return caricaLato(Acquisti, categoria, chiave) && caricaLato(Vendite, categoria, chiave);
}

bool RangeEditor::caricaLato(Lato lato, int categoria, int chiave)
{
    const Tabelle t = tabelle(lato);
    QString sql = QStringLiteral("SELECT H.RID, H.") + t.fkParte + QStringLiteral(", P.") + t.numero
        + QStringLiteral(", P.") + t.nome + QStringLiteral(", R.RangeMin, R.RangeMax");
    for (const QString& c : t.colonne)
        sql += QStringLiteral(", R.") + c;
    sql += QStringLiteral(" FROM (") + t.testa + QStringLiteral(" H INNER JOIN ") + t.righe + QStringLiteral(" R ON R.")
        + t.fkTesta + QStringLiteral(" = H.RID) LEFT JOIN ") + t.parti + QStringLiteral(" P ON H.") + t.fkParte
        + QStringLiteral(" = P.RID WHERE ") + chiaveCondition(t.chiave, chiave)
        + QStringLiteral(" AND H.FK_Categoria = ") + QString::number(categoria)
        + QStringLiteral(" ORDER BY H.RID, R.RangeMin");
    const cReader rs(sql, tag(m_tipo, "showData"));
    if (!rs)
        return false;
    for (; !rs->eof(); rs->moveNext()) {
        const int testa = rs->value(0).toInt();
        if (m_gruppi[lato].isEmpty() || m_gruppi[lato].last().testa != testa) {
            RangeGruppo gruppo;
            gruppo.testa = testa;
            gruppo.id = rs->value(1).toInt();
            gruppo.numero = rs->value(2).toString();
            gruppo.nome = rs->value(3).toString();
            m_gruppi[lato].append(gruppo);
        }
        RangeRiga riga{formattaIntero(rs->value(4)).remove(QLatin1Char('.')),
                       formattaIntero(rs->value(5)).remove(QLatin1Char('.')),
                       {}};
        for (int c = 0; c < t.colonne.size(); ++c)
            riga.valori << formattaImporto(rs->value(6 + c), 2);
        m_gruppi[lato].last().righe.append(riga);
    }
    return true;
}

QString RangeEditor::aggiungiGruppo(Lato lato, int id, const QString& numero, const QString& nome)
{
    for (const RangeGruppo& g : std::as_const(m_gruppi[lato]))
        if (g.id == id)
            return QStringLiteral("L'elemento selezionato [") + numero + QStringLiteral(" - ") + nome
                + QStringLiteral("] è gia presente nella griglia.");
    RangeGruppo gruppo;
    gruppo.id = id;
    gruppo.numero = numero;
    gruppo.nome = nome;
    gruppo.righe = righeIniziali(valori());
    m_gruppi[lato].append(gruppo);
    return QString();
}

void RangeEditor::rimuoviGruppo(Lato lato, int gruppo)
{
    if (gruppo < 0 || gruppo >= m_gruppi[lato].size())
        return;
    if (m_gruppi[lato].at(gruppo).testa > 0)
        m_rimossi[lato].append(m_gruppi[lato].at(gruppo).testa);
    m_gruppi[lato].removeAt(gruppo);
}

QStringList RangeEditor::aggiungiRiga(Lato lato, int gruppo)
{
    RangeGruppo& g = m_gruppi[lato][gruppo];
    QStringList mancanti;
    if (!g.righe.isEmpty()) {
        if (g.righe.last().da.trimmed().isEmpty())
            mancanti << QStringLiteral(" - il campo [Range min.] è obbligatorio.");
        if (g.righe.last().a.trimmed().isEmpty())
            mancanti << QStringLiteral(" - il campo [Range max.] è obbligatorio.");
    }
    if (!mancanti.isEmpty())
        return mancanti;
    const QString da =
        g.righe.isEmpty() ? QStringLiteral("1") : intero(QString::number(getValoreNumerico(g.righe.last().a) + 1));
    g.righe.append({da, QString(), QStringList(valori(), formattaImporto(Currency(), 2))});
    return {};
}

QString RangeEditor::checkRowIntegrity(const RangeGruppo& gruppo)
{
    for (int i = 0; i < gruppo.righe.size(); ++i) {
        if (gruppo.id <= 0)
            return QStringLiteral("10");
        if (i > 0
            && qRound64(getValoreNumerico(gruppo.righe.at(i).da))
                != qRound64(getValoreNumerico(gruppo.righe.at(i - 1).a)) + 1)
            return QStringLiteral("01");
    }
    return QStringLiteral("00");
}

QString RangeEditor::controlla(int categoria) const
{
    if (categoria <= 0)
        return QStringLiteral("Attenzione:\n - Campo [Catgoria Sconto] Obbligatorio.");
    for (Lato lato : {Acquisti, Vendite})
        for (const RangeGruppo& g : m_gruppi[lato])
            if (checkRowIntegrity(g).right(1) != QLatin1String("0"))
                return QStringLiteral("Attenzione! Impossibile salvare la configurazione corrente.\r")
                    + (lato == Acquisti ? QStringLiteral("Controllare i Range per il fornitore: ")
                                        : QStringLiteral("Controllare i Range per la Fascia: "))
                    + g.nome;
    return QString();
}

bool RangeEditor::salva(int categoria, int chiave)
{
    // The new heads' keys are kept only once everything is committed.
    const QList<RangeGruppo> prima[2] = {m_gruppi[Acquisti], m_gruppi[Vendite]};
    cTransaction transaction(tag(m_tipo, "saveRecord"));
    if (transaction && salvaLato(Acquisti, categoria, chiave) && salvaLato(Vendite, categoria, chiave)
        && transaction.commit()) {
        m_rimossi[Acquisti].clear();
        m_rimossi[Vendite].clear();
        return true;
    }
    m_gruppi[Acquisti] = prima[Acquisti];
    m_gruppi[Vendite] = prima[Vendite];
    return false;
}

bool RangeEditor::salvaLato(Lato lato, int categoria, int chiave)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const Tabelle t = tabelle(lato);
    const QString procedure = tag(m_tipo, "saveRecord");
    if (!m_rimossi[lato].isEmpty()) {
        QStringList keys;
        for (int testa : std::as_const(m_rimossi[lato]))
            keys << QString::number(testa);
        const QString in = QStringLiteral(" IN (") + keys.join(QStringLiteral(", ")) + QLatin1Char(')');
        if (!db.executeSQL(QStringLiteral("DELETE FROM ") + t.righe + QStringLiteral(" WHERE ") + t.fkTesta + in,
                           procedure)
            || !db.executeSQL(QStringLiteral("DELETE FROM ") + t.testa + QStringLiteral(" WHERE RID") + in, procedure))
            return false;
    }
    for (RangeGruppo& g : m_gruppi[lato]) {
        if (g.testa > 0) {
            if (!db.executeSQL(QStringLiteral("DELETE FROM ") + t.righe + QStringLiteral(" WHERE ") + t.fkTesta
                                   + QStringLiteral(" = ") + QString::number(g.testa),
                               procedure))
                return false;
        } else {
            g.testa = db.getIDByInsert(QStringLiteral("INSERT INTO ") + t.testa + QStringLiteral(" (FK_Categoria, ")
                                           + t.fkParte + QStringLiteral(", ") + t.chiave + QStringLiteral(") VALUES (")
                                           + QString::number(categoria) + QStringLiteral(", ") + QString::number(g.id)
                                           + QStringLiteral(", ") + getIDOrNullStr(chiave) + QLatin1Char(')'),
                                       procedure, QStringLiteral("RID"), t.testa);
            if (g.testa <= 0)
                return false;
        }
        for (const RangeRiga& r : std::as_const(g.righe)) {
            QStringList values{QString::number(g.testa), intero(r.da), intero(r.a)};
            for (const QString& v : r.valori)
                values << getSqlNumberOrZero(v);
            if (!db.executeSQL(QStringLiteral("INSERT INTO ") + t.righe + QStringLiteral(" (") + t.fkTesta
                                   + QStringLiteral(", RangeMin, RangeMax, ") + t.colonne.join(QStringLiteral(", "))
                                   + QStringLiteral(") VALUES (") + values.join(QStringLiteral(", "))
                                   + QLatin1Char(')'),
                               procedure))
                return false;
        }
    }
    return true;
}
