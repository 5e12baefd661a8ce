#include "printing/frmpreview.h"

#include "core/dialogservice.h"
#include "printing/creport.h"
#include "printing/frmsceltastampante.h"
#include "screens/framework/chiusura.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStandardPaths>
#include <QStyle>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

const QString kInCorso = QStringLiteral("Creazione anteprima in corso...");
const QString kLarghezzaPagina = QStringLiteral("Larghezza pagina");
const QString kStampante = QStringLiteral("STAMPANTE: ");
constexpr int kZoom[] = {25, 50, 75, 100, 125, 150, 200, 300};
constexpr int kZoomIniziale = 3; // "100"
constexpr int kMargine = 12;     // around the page, in pixels

struct Pulsante
{
    const char* testo;
    const char* icona;
    const char* alternativo; // when the icon theme has no such icon
    const char* suggerimento;
};

const Pulsante kPulsanti[frmPreview::NumeroComandi] = {
    {nullptr, "go-first", "|<", "Prima pagina (Home)"},
    {nullptr, "go-previous", "<", "Pagina precedente (PgSu)"},
    {nullptr, "go-next", ">", "Pagina successiva (PgGiù)"},
    {nullptr, "go-last", ">|", "Ultima pagina (Fine)"},
    {"Imposta Stampante", "printer", nullptr, nullptr},
    {"Esporta in CSV - Formato Testo", "x-office-spreadsheet", nullptr, nullptr},
    {"Stampa", "document-print", nullptr, nullptr},
    {"Chiudi Anteprima", "window-close", nullptr, "Chiudi Anteprima (Esc)"},
    {"Esporta in PDF", "x-office-document", nullptr, "Scegliere la stampante «PDF» con Imposta Stampante"},
};

QCursor cursoreZoom()
{
    const QIcon icona = QIcon::fromTheme(QStringLiteral("zoom-in"), QIcon::fromTheme(QStringLiteral("edit-find")));
    if (icona.isNull())
        return QCursor(Qt::CrossCursor);
    return QCursor(icona.pixmap(24, 24));
}

QString conEstensione(const QString& file, const QString& estensione)
{
    return QFileInfo(file).suffix().isEmpty() ? file + QLatin1Char('.') + estensione : file;
}

} // namespace

frmPreview::frmPreview(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("frmPreview"));
    setWindowTitle(kInCorso);

    for (int i = 0; i < NumeroComandi; ++i) {
        const Pulsante& p = kPulsanti[i];
        auto* pulsante = new QPushButton(this);
        pulsante->setObjectName(QStringLiteral("cmdAction_") + QString::number(i));
        pulsante->setAutoDefault(false);
        const QIcon icona = QIcon::fromTheme(QString::fromLatin1(p.icona));
        pulsante->setIcon(icona);
        if (p.testo)
            pulsante->setText(QString::fromUtf8(p.testo));
        else if (icona.isNull())
            pulsante->setText(QString::fromLatin1(p.alternativo));
        if (p.suggerimento)
            pulsante->setToolTip(QString::fromUtf8(p.suggerimento));
        if (i <= UltimaPagina)
            pulsante->setFocusPolicy(Qt::TabFocus);
        connect(pulsante, &QPushButton::clicked, this, [this, i] { cmdAction_Click(i); });
        m_cmdAction[i] = pulsante;
    }
    // The PDF comes from the printer "PDF": this command stays for those who look for it.
    m_cmdAction[EsportaPdf]->setEnabled(false);

    m_lblPages = new QLabel(this);
    m_lblPages->setObjectName(QStringLiteral("lblPages"));
    m_lblPages->setAlignment(Qt::AlignCenter);
    m_lblPages->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Pag. 9999 di 9999")) + 8);

    auto* lblZoom = new QLabel(QStringLiteral("&Zoom %:"), this);
    m_cmbZoom = new QComboBox(this);
    m_cmbZoom->setObjectName(QStringLiteral("CmbZoom"));
    for (int z : kZoom)
        m_cmbZoom->addItem(QString::number(z));
    m_cmbZoom->addItem(kLarghezzaPagina);
    m_cmbZoom->setCurrentIndex(kZoomIniziale);
    lblZoom->setBuddy(m_cmbZoom);
    connect(m_cmbZoom, &QComboBox::currentIndexChanged, this, &frmPreview::zoomDaCombo);

    m_chkZoom = new QCheckBox(QStringLiteral("Zoom col mouse"), this);
    m_chkZoom->setObjectName(QStringLiteral("chkZoom"));
    m_chkZoom->setToolTip(QStringLiteral("Clic sinistro sulla pagina: ingrandisce; clic destro: riduce"));
    connect(m_chkZoom, &QCheckBox::toggled, this, &frmPreview::modoZoom);

    auto* lblCopie = new QLabel(QStringLiteral("C&opie:"), this);
    m_txtNumCopie = new QLineEdit(QStringLiteral("1"), this);
    m_txtNumCopie->setObjectName(QStringLiteral("txtNumCopie"));
    m_txtNumCopie->setValidator(new QIntValidator(0, 999, m_txtNumCopie));
    m_txtNumCopie->setAlignment(Qt::AlignRight);
    m_txtNumCopie->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("99999")) + 12);
    m_txtNumCopie->installEventFilter(this);
    lblCopie->setBuddy(m_txtNumCopie);

    m_lblPrinter = new QLabel(kStampante, this);
    m_lblPrinter->setObjectName(QStringLiteral("lblPrinter"));
    m_lblPrinter->setTextInteractionFlags(Qt::TextSelectableByMouse);

    m_pctPreview = new QScrollArea(this);
    m_pctPreview->setObjectName(QStringLiteral("pctPreview"));
    m_pctPreview->setAlignment(Qt::AlignCenter);
    m_pctPreview->setBackgroundRole(QPalette::Dark);
    m_pctPreview->setFocusPolicy(Qt::StrongFocus);
    m_pctPreview->setMinimumSize(360, 280);
    m_imgPagina = new QLabel;
    m_imgPagina->setObjectName(QStringLiteral("imgPagina"));
    m_imgPagina->setAlignment(Qt::AlignCenter);
    m_imgPagina->setMargin(kMargine);
    m_imgPagina->setText(kInCorso);
    m_imgPagina->setBackgroundRole(QPalette::Dark);
    m_pctPreview->setWidget(m_imgPagina);
    m_imgPagina->adjustSize();
    m_pctPreview->viewport()->installEventFilter(this);
    m_imgPagina->installEventFilter(this);

    // The page follows the window when it fits the page's width.
    m_ridisegno = new QTimer(this);
    m_ridisegno->setSingleShot(true);
    m_ridisegno->setInterval(60);
    connect(m_ridisegno, &QTimer::timeout, this, [this] {
        if (m_larghezzaPagina)
            zoomDaCombo();
    });

    auto* pagine = new QHBoxLayout;
    pagine->setSpacing(2);
    pagine->addWidget(m_cmdAction[PrimaPagina]);
    pagine->addWidget(m_cmdAction[PaginaPrecedente]);
    pagine->addWidget(m_lblPages);
    pagine->addWidget(m_cmdAction[PaginaSuccessiva]);
    pagine->addWidget(m_cmdAction[UltimaPagina]);

    auto* riga1 = new QHBoxLayout;
    riga1->addLayout(pagine);
    riga1->addSpacing(16);
    riga1->addWidget(lblZoom);
    riga1->addWidget(m_cmbZoom);
    riga1->addWidget(m_chkZoom);
    riga1->addStretch(1);
    riga1->addWidget(lblCopie);
    riga1->addWidget(m_txtNumCopie);
    riga1->addWidget(m_cmdAction[Stampa]);

    auto* riga2 = new QHBoxLayout;
    riga2->addWidget(m_lblPrinter, 1);
    riga2->addWidget(m_cmdAction[ImpostaStampante]);
    riga2->addSpacing(16);
    riga2->addWidget(m_cmdAction[EsportaCsv]);
    riga2->addWidget(m_cmdAction[EsportaPdf]);
    riga2->addSpacing(16);
    riga2->addWidget(m_cmdAction[Chiudi]);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(riga1);
    layout->addLayout(riga2);
    layout->addWidget(m_pctPreview, 1);

    // The keys move the pages through their buttons, so that they do
    // nothing while the buttons are off.
    const auto tasto = [this](QKeySequence sequenza, int comando) {
        auto* s = new QShortcut(sequenza, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(s, &QShortcut::activated, this, [this, comando] {
            if (m_cmdAction[comando]->isEnabled())
                cmdAction_Click(comando);
        });
    };
    tasto(QKeySequence(Qt::Key_Home), PrimaPagina);
    tasto(QKeySequence(Qt::Key_PageUp), PaginaPrecedente);
    tasto(QKeySequence(Qt::Key_PageDown), PaginaSuccessiva);
    tasto(QKeySequence(Qt::Key_End), UltimaPagina);
    tasto(QKeySequence(Qt::Key_Escape), Chiudi);

    m_inLayout = true;
    aggiornaPagine();
    aggiornaComandi();
    setFocusProxy(m_pctPreview);
}

frmPreview::~frmPreview() = default;

QSize frmPreview::sizeHint() const { return QSize(940, 720); }

void frmPreview::avvia(const Anteprima& anteprima, const std::shared_ptr<cReport>& report, const QString& stampante)
{
    m_anteprima = anteprima;
    m_stampante = stampante;
    m_lblPrinter->setText(kStampante + m_stampante);
    setWindowTitle(kInCorso);
    m_imgPagina->setPixmap(QPixmap());
    m_imgPagina->setText(kInCorso);
    m_imgPagina->adjustSize();
    m_inLayout = true;
    aggiornaComandi();

    // The layout reads no database: it runs aside while the window draws.
    // The thread owns the report and the pages until it ends; a window
    // closed meanwhile only drops them.
    struct Lavoro
    {
        std::shared_ptr<cReport> report;
        report::RenderedReport pagine;
    };
    auto lavoro = std::make_shared<Lavoro>();
    lavoro->report = report;
    QThread* thread = QThread::create([lavoro] { lavoro->pagine = lavoro->report->layout(); });
    thread->setObjectName(QStringLiteral("layoutAnteprima"));
    connect(thread, &QThread::finished, this, [this, lavoro] {
        lavoro->report.reset();
        mostraPagine(lavoro->pagine);
    });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    // The program does not end under a layout still running.
    connect(qApp, &QCoreApplication::aboutToQuit, thread, [thread] { thread->wait(); });
    thread->start();
}

void frmPreview::mostraPagine(const report::RenderedReport& pagine)
{
    m_pagine = pagine;
    m_pagina = 0;
    m_inLayout = false;
    QString titolo = m_anteprima.titolo;
    if (titolo.isEmpty())
        titolo = m_pagine.title;
    if (titolo.isEmpty())
        titolo = QStringLiteral("Anteprima di stampa");
    setWindowTitle(titolo);
    if (m_larghezzaPagina)
        m_zoom = zoomLarghezzaPagina();
    disegnaPagina();
    aggiornaPagine();
    aggiornaComandi();
    Q_EMIT pronta();
}

void frmPreview::cmdAction_Click(int index)
{
    switch (index) {
    case PrimaPagina: vaiPagina(0); break;
    case PaginaPrecedente: vaiPagina(m_pagina - 1); break;
    case PaginaSuccessiva: vaiPagina(m_pagina + 1); break;
    case UltimaPagina: vaiPagina(numeroPagine() - 1); break;
    case ImpostaStampante: imposta(); break;
    case EsportaCsv: esporta(); break;
    case Stampa: stampa(); break;
    case Chiudi: chiudi(); break;
    case EsportaPdf: break; // the PDF is a printer of Imposta Stampante
    default: break;
    }
}

void frmPreview::vaiPagina(int pagina)
{
    if (numeroPagine() == 0)
        return;
    pagina = std::clamp(pagina, 0, numeroPagine() - 1);
    if (pagina == m_pagina)
        return;
    m_pagina = pagina;
    disegnaPagina();
    aggiornaPagine();
    aggiornaComandi();
    m_pctPreview->verticalScrollBar()->setValue(0);
}

void frmPreview::aggiornaPagine()
{
    if (m_inLayout)
        m_lblPages->clear();
    else
        m_lblPages->setText(QStringLiteral("Pag. ") + QString::number(numeroPagine() ? m_pagina + 1 : 0)
                            + QStringLiteral(" di ") + QString::number(numeroPagine()));
}

void frmPreview::aggiornaComandi()
{
    const bool libero = !m_inLayout && !m_inStampa;
    const bool indietro = libero && m_pagina > 0;
    const bool avanti = libero && m_pagina < numeroPagine() - 1;
    m_cmdAction[PrimaPagina]->setEnabled(indietro);
    m_cmdAction[PaginaPrecedente]->setEnabled(indietro);
    m_cmdAction[PaginaSuccessiva]->setEnabled(avanti);
    m_cmdAction[UltimaPagina]->setEnabled(avanti);
    m_cmdAction[ImpostaStampante]->setEnabled(libero);
    m_cmdAction[EsportaCsv]->setEnabled(libero);
    m_cmdAction[Stampa]->setEnabled(libero);
    // A layout under way may be left; a print may not.
    m_cmdAction[Chiudi]->setEnabled(!m_inStampa);
    m_cmdAction[EsportaPdf]->setEnabled(false);
}

void frmPreview::disegnaPagina()
{
    if (m_inLayout)
        return;
    if (numeroPagine() == 0) {
        m_imgPagina->setPixmap(QPixmap());
        m_imgPagina->setText(QStringLiteral("Nessuna pagina da mostrare."));
        m_imgPagina->adjustSize();
        return;
    }
    const double rapporto = m_pctPreview->devicePixelRatioF();
    const double dpi = m_pctPreview->logicalDpiX() * m_zoom / 100.0;
    QImage immagine = report::pageImage(m_pagine, m_pagina, dpi * rapporto);
    immagine.setDevicePixelRatio(rapporto);
    m_imgPagina->setPixmap(QPixmap::fromImage(immagine));
    m_imgPagina->adjustSize();
}

double frmPreview::zoomLarghezzaPagina() const
{
    QSizeF foglio = m_pagine.pageSize;
    if (m_pagine.landscape && foglio.width() < foglio.height())
        foglio.transpose();
    if (foglio.width() <= 0)
        return 100;
    // The room inside the area, with the vertical bar that a page taller than wide brings.
    const int barra = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_pctPreview);
    const int spazio = m_pctPreview->width() - 2 * m_pctPreview->frameWidth() - barra - 2 * kMargine - 2;
    const double pixelFoglio = foglio.width() / 25.4 * m_pctPreview->logicalDpiX();
    return std::clamp(100.0 * spazio / pixelFoglio, 10.0, 400.0);
}

void frmPreview::zoomDaCombo()
{
    const QString voce = m_cmbZoom->currentText();
    m_larghezzaPagina = voce == kLarghezzaPagina;
    m_zoom = m_larghezzaPagina ? zoomLarghezzaPagina() : voce.toDouble();
    if (m_zoom <= 0)
        m_zoom = 100;
    disegnaPagina();
}

void frmPreview::passoZoom(int verso)
{
    const int numeriche = int(std::size(kZoom));
    const int attuale = m_cmbZoom->currentIndex();
    int prossima = -1;
    if (attuale >= 0 && attuale < numeriche) {
        prossima = std::clamp(attuale + verso, 0, numeriche - 1);
    } else {
        // From the page's width to the nearest entry on that side, if any.
        for (int i = 0; i < numeriche; ++i) {
            if (verso > 0 && kZoom[i] > m_zoom + 0.5) {
                prossima = i;
                break;
            }
            if (verso < 0 && kZoom[i] < m_zoom - 0.5)
                prossima = i;
        }
    }
    if (prossima >= 0)
        m_cmbZoom->setCurrentIndex(prossima);
}

void frmPreview::modoZoom(bool attivo)
{
    if (attivo)
        m_pctPreview->viewport()->setCursor(cursoreZoom());
    else
        m_pctPreview->viewport()->unsetCursor();
}

bool frmPreview::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_txtNumCopie && event->type() == QEvent::FocusOut) {
        numeroCopieLasciato();
    } else if (watched == m_pctPreview->viewport() || watched == m_imgPagina) {
        if (event->type() == QEvent::MouseButtonPress && m_chkZoom->isChecked()) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::LeftButton)
                passoZoom(+1);
            else if (mouse->button() == Qt::RightButton)
                passoZoom(-1);
            return true;
        }
        if (event->type() == QEvent::Resize && watched == m_pctPreview->viewport() && m_larghezzaPagina)
            m_ridisegno->start();
    }
    return QWidget::eventFilter(watched, event);
}

void frmPreview::numeroCopieLasciato()
{
    if (m_txtNumCopie->text().trimmed().toInt() == 0)
        m_txtNumCopie->setText(QStringLiteral("1"));
}

int frmPreview::numeroCopie() const { return std::clamp(m_txtNumCopie->text().trimmed().toInt(), 1, 999); }

void frmPreview::imposta()
{
    const QString scelta = scegliStampante(this, m_stampante);
    if (scelta.isEmpty())
        return;
    m_stampante = scelta;
    m_sceltaUtente = true;
    m_lblPrinter->setText(kStampante + m_stampante);
}

QString frmPreview::fileProposto(const QString& estensione) const
{
    QString cartella = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (cartella.isEmpty())
        cartella = QDir::homePath();
    QString nome = QFileInfo(m_anteprima.percorso).completeBaseName();
    if (nome.isEmpty())
        nome = QStringLiteral("Stampa");
    return QDir(cartella).filePath(nome + QLatin1Char('.') + estensione);
}

void frmPreview::esporta()
{
    const QString file =
        dialogs::getSaveFileName(this, QStringLiteral("Esporta in CSV - Formato Testo"),
                                 fileProposto(QStringLiteral("csv")), QStringLiteral("File CSV (*.csv)"));
    if (!file.isEmpty())
        esegui(cReport::File, conEstensione(file, QStringLiteral("csv")));
}

void frmPreview::stampa()
{
    numeroCopieLasciato();
    QString file;
    if (m_stampante == stampantePdf()) {
        file = dialogs::getSaveFileName(this, QStringLiteral("Stampa in PDF"), fileProposto(QStringLiteral("pdf")),
                                        QStringLiteral("File PDF (*.pdf)"));
        if (file.isEmpty())
            return;
        file = conEstensione(file, QStringLiteral("pdf"));
    }
    esegui(cReport::Stampante, file);
}

void frmPreview::esegui(int destinazione, const QString& file)
{
    QPointer<frmPreview> guardia(this);
    m_inStampa = true;
    aggiornaComandi();
    stampaReport(destinazione, m_anteprima.percorso, m_anteprima.selezione, m_anteprima.formule,
                 m_anteprima.selezioneInSubreport, m_anteprima.testo, m_anteprima.connessione, m_stampante,
                 portaStampante(m_stampante), qint16(numeroCopie()), 0, 0, file, &m_pagine);
    if (!guardia)
        return;
    m_inStampa = false;
    aggiornaComandi();
}

void frmPreview::chiudi() { chiudiSchermata(this); }

void frmPreview::closeEvent(QCloseEvent* event)
{
    // A print under way runs with this window's values: it stays until the end.
    if (m_inStampa)
        event->ignore();
    else
        QWidget::closeEvent(event);
}
