#pragma once
// The quantity ranges of a discount category, without widgets: per supplier
// on the purchase side and per customer band on the sales side, either
// three discounts a range (for one brand, or all brands) or a net price a
// range (for one product). Each supplier or band is a group of rows; the
// ranges of a group must follow each other with no gap and no overlap.

#include <QList>
#include <QString>
#include <QStringList>

enum class TipoRange {
    Sconti,
    Prezzi
};
enum Lato {
    Acquisti = 0,
    Vendite = 1
};

struct RangeRiga
{
    QString da, a;      // "Da Q.ta", "A Q.ta" as shown
    QStringList valori; // three discounts, or one price
};

struct RangeGruppo
{
    int testa = -1; // the head's RID, -1 until saved
    int id = -1;    // the supplier's or band's RID
    QString numero; // the supplier's number or the band's code
    QString nome;
    QList<RangeRiga> righe;
};

class RangeEditor
{
public:
    explicit RangeEditor(TipoRange tipo);

    TipoRange tipo() const { return m_tipo; }
    int valori() const { return m_tipo == TipoRange::Sconti ? 3 : 1; }
    QList<RangeGruppo>& gruppi(Lato lato) { return m_gruppi[lato]; }
    const QList<RangeGruppo>& gruppi(Lato lato) const { return m_gruppi[lato]; }

    // The groups of a category for a brand or product (0: the heads with
    // none), both sides; false when a read failed.
    bool carica(int categoria, int chiave);

    // A supplier or band as a new group with the three default ranges; the
    // message when it is a group already, empty when added.
    QString aggiungiGruppo(Lato lato, int id, const QString& numero, const QString& nome);
    // The group goes; its head is deleted at the next save.
    void rimuoviGruppo(Lato lato, int gruppo);
    // A row after the group's last; the "Attenzione:" lines when the last
    // row is not complete, empty when added.
    QStringList aggiungiRiga(Lato lato, int gruppo);

    // "00" when the group is right; the first character is 1 for a group
    // without supplier or band, the second for a range that does not start
    // one after the previous one ends.
    static QString checkRowIntegrity(const RangeGruppo& gruppo);

    // The message that stops a save (a category missing, ranges wrong),
    // empty when none does.
    QString controlla(int categoria) const;
    // Everything written in one transaction, after controlla passed; the
    // new heads keep their keys. False on a failure already told.
    bool salva(int categoria, int chiave);

    // The ranges of a new group.
    static QList<RangeRiga> righeIniziali(int valori);

private:
    struct Tabelle
    {
        QString testa, righe, fkTesta, fkParte, chiave, parti, numero, nome;
        QStringList colonne; // the value columns of a row
    };
    Tabelle tabelle(Lato lato) const;
    bool caricaLato(Lato lato, int categoria, int chiave);
    bool salvaLato(Lato lato, int categoria, int chiave);

    TipoRange m_tipo;
    QList<RangeGruppo> m_gruppi[2];
    QList<int> m_rimossi[2];
};
