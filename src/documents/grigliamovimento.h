#pragma once
// The rows of the document on the screen: a view over the grid that the
// document editor holds. It shows what the editor decided (hidden rows,
// kit icons); picking a row or typing over one of its amounts is passed to
// the screen.

#include <QAbstractTableModel>
#include <QTableView>

class GrigliaDocumento;

class ModelloGriglia : public QAbstractTableModel
{
    Q_OBJECT

public:
    ModelloGriglia(const GrigliaDocumento& griglia, const QString& carattereDistinta, QObject* parent);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The grid changed: read again.
    void aggiorna();
    const GrigliaDocumento& griglia() const { return m_griglia; }

private:
    const GrigliaDocumento& m_griglia;
    QString m_carattereDistinta;
};

class GrigliaMovimento : public QTableView
{
    Q_OBJECT

public:
    GrigliaMovimento(const GrigliaDocumento& griglia, const QString& carattereDistinta, QWidget* parent = nullptr);

    // The grid changed: rows read again, hidden rows hidden, `corrente`
    // selected (-1 none).
    void aggiorna(int corrente);
    int rigaCorrente() const;
    // Another row made current, the rows as they are.
    void seleziona(int riga);
    ModelloGriglia* modello() const { return m_modello; }

    // The columns typed over in the grid: quantity, list price, net price
    // and VAT.
    static bool colonnaModificabile(int colonna);

Q_SIGNALS:
    // A row picked with the mouse (the column clicked) or by arrows (-1).
    void rigaScelta(int riga, int colonna);
    // A key typed on an amount of a row: the row goes to the editor and the
    // text into the field of that column.
    void cellaDigitata(int riga, int colonna, const QString& testo);
    // Enter in the grid: back to the product code.
    void invio();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    ModelloGriglia* m_modello;
    bool m_daTastiera = false;
};
