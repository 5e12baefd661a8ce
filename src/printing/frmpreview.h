#pragma once
// The print preview: the laid-out pages of one report, page by page at a
// zoom, and the commands on them (cmdAction_0..8): first, previous, next and
// last page, "Imposta Stampante", "Esporta in CSV - Formato Testo",
// "Stampa", "Chiudi Anteprima" and "Esporta in PDF" (kept but off: the PDF
// file comes from the printer "PDF"). Printing and the CSV run the report
// again with the values the preview was opened with (Anteprima), the copies
// of txtNumCopie and the printer of the preview: the one chosen with
// "Imposta Stampante" until the window closes, else the application's.
//
// The pages come from a layout that runs on a worker thread: until they
// arrive the caption reads "Creazione anteprima in corso..." and the
// commands are off; the window keeps drawing and may be closed.

#include "printing/reportpages.h"

#include <QString>
#include <QWidget>

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollArea;
class QTimer;
class cReport;

// What a preview was opened with, for printing it again.
struct Anteprima
{
    QString percorso; // the template's full path
    QString selezione;
    QString titolo;
    QString formule;
    bool selezioneInSubreport = false;
    QString testo;
    QString connessione;
};

class frmPreview : public QWidget
{
    Q_OBJECT

public:
    enum Comando {
        PrimaPagina = 0,
        PaginaPrecedente,
        PaginaSuccessiva,
        UltimaPagina,
        ImpostaStampante,
        EsportaCsv,
        Stampa,
        Chiudi,
        EsportaPdf,
        NumeroComandi
    };

    explicit frmPreview(QWidget* parent = nullptr);
    ~frmPreview() override;

    // Takes the prepared report and lays it out on a worker thread; the
    // pages show when it is done. `stampante` is the device of the preview.
    void avvia(const Anteprima& anteprima, const std::shared_ptr<cReport>& report, const QString& stampante);
    // Shows pages already laid out (also what avvia() does when the layout ends).
    void mostraPagine(const report::RenderedReport& pagine);

    void cmdAction_Click(int index);

    // The state, for the callers and the tests.
    bool inLavorazione() const { return m_inLayout || m_inStampa; }
    int paginaCorrente() const { return m_pagina + 1; }
    int numeroPagine() const { return m_pagine.pageCount(); }
    QString stampante() const { return m_stampante; }
    bool stampanteScelta() const { return m_sceltaUtente; }
    const report::RenderedReport& pagine() const { return m_pagine; }
    // The zoom in use, in percent of the real size.
    double zoom() const { return m_zoom; }

    QSize sizeHint() const override;

Q_SIGNALS:
    // The pages are shown (also an empty report).
    void pronta();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void vaiPagina(int pagina);
    void aggiornaPagine();
    void aggiornaComandi();
    void disegnaPagina();
    void zoomDaCombo();
    void passoZoom(int verso);
    void modoZoom(bool attivo);
    void numeroCopieLasciato();
    int numeroCopie() const;
    void imposta();
    void esporta();
    void stampa();
    // Prints or exports with the remembered values; the commands wait meanwhile.
    void esegui(int destinazione, const QString& file);
    void chiudi();
    double zoomLarghezzaPagina() const;
    QString fileProposto(const QString& estensione) const;

    Anteprima m_anteprima;
    QString m_stampante;
    bool m_sceltaUtente = false;
    report::RenderedReport m_pagine;
    int m_pagina = 0;
    double m_zoom = 100;
    bool m_larghezzaPagina = false;
    bool m_inLayout = false;
    bool m_inStampa = false;

    QPushButton* m_cmdAction[NumeroComandi] = {};
    QLabel* m_lblPages;
    QComboBox* m_cmbZoom;
    QCheckBox* m_chkZoom;
    QLineEdit* m_txtNumCopie;
    QLabel* m_lblPrinter;
    QScrollArea* m_pctPreview;
    QLabel* m_imgPagina;
    QTimer* m_ridisegno;
};
