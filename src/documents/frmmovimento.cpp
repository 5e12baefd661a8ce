#include "documents/frmmovimento.h"

#include "accounting/fido.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "core/screenregistry.h"
#include "core/serversettings.h"
#include "documents/frmdettagliospedizione.h"
#include "documents/grigliamovimento.h"
#include "documents/intestazionemovimento.h"
#include "documents/rigamovimento.h"
#include "documents/salvadocumento.h"
#include "documents/spedizione.h"
#include "documents/totalimovimento.h"
#include "printing/printscreens.h"
#include "screens/framework/cfieldleave.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/crecordscreen.h"
#include "screens/framework/waitcursor.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

namespace {

const QString kChkLike = QStringLiteral("Options/ChkLike_Movimento");
const QString kNoAnteprima = QStringLiteral("Options/NoAnteprima");

// The commands of the screen, by index, and the screen a command opens that
// this release does not have yet.
struct Comando
{
    const char* didascalia;
    const char* schermata;
};
const Comando kComandi[] = {{"Nuovo [F2]", nullptr},
                            {"Salva [F5]", nullptr},
                            {"Elimina [F7]", nullptr},
                            {"Aggiorna [F11]", nullptr},
                            {"Spedizione", nullptr},
                            {"Stampa [F12]", nullptr},
                            {"Prima Nota", "frmPrimaNota"},
                            {"Genera P.N.", "frmPrimaNota"},
                            {"Barcode", "frmStampaBarCode"},
                            {"Genera Movimento", "frmGeneraMovimento"},
                            {"Giacenze", "frmGiacenzaSemplificata"},
                            {"Elenco Speciale", nullptr}};
constexpr int kSpedizione = 4;
constexpr int kStampa = 5;
constexpr int kBarCode = 8;
constexpr int kElencoSpeciale = 11;

// The copied row outlives the document it came from.
QString& rigaCopiata()
{
    static QString testo;
    return testo;
}

} // namespace

frmMovimento::frmMovimento(QWidget* parent)
    : QWidget(parent)
    , m_editor(gOptions().decimaliDopo, gOptions().distintaBase)
    , m_keys(new cKeyFunction(this))
{
    setObjectName(QStringLiteral("frmMovimento"));
    setWindowTitle(QStringLiteral("Movimenti"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_intestazione = new IntestazioneMovimento(m_keys, this);
    m_riga = new RigaMovimento(m_editor, m_keys, this);
    m_griglia = new GrigliaMovimento(m_editor.griglia(), gOptions().distintaBase, this);
    m_totali = new TotaliMovimento(this);
    // Ticked, a print goes straight to the printer of the document type.
    m_anteprima = new QCheckBox(QStringLiteral("Non mostrare Anteprima"), this);
    m_anteprima->setObjectName(QStringLiteral("chkAnteprima"));
    m_anteprima->setChecked(machineSettings().value(kNoAnteprima, false).toBool());
    m_riga->like()->setChecked(machineSettings().value(kChkLike, false).toBool());

    // Two rows of commands: the document's life, then what it leads to.
    auto* comandi = new QGridLayout;
    comandi->setHorizontalSpacing(4);
    comandi->setVerticalSpacing(2);
    for (int i = 0; i < int(std::size(kComandi)); ++i) {
        auto* button = new QPushButton(QString::fromUtf8(kComandi[i].didascalia), this);
        button->setObjectName(QStringLiteral("cmdCommand_%1").arg(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] {
            if (!m_leave->takeRefused())
                cmdCommand_Click(i);
        });
        comandi->addWidget(button, i / 6, i % 6);
        m_comandi << button;
    }
    comandi->setColumnStretch(6, 1);
    comandi->addWidget(m_anteprima, 0, 7);

    auto* fraRighe = new QGroupBox(QStringLiteral("Righe"), this);
    auto* righe = new QVBoxLayout(fraRighe);
    righe->addWidget(m_riga);
    righe->addWidget(m_griglia, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_intestazione);
    layout->addWidget(fraRighe, 1);
    layout->addWidget(m_totali);
    layout->addLayout(comandi);

    const auto tasto = [this](QKeySequence sequenza, auto azione) {
        auto* shortcut = new QShortcut(sequenza, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, azione);
        return shortcut;
    };
    // A key presses its button as a click would: the field being left is
    // validated first, and a refusal keeps the command from running.
    const auto premi = [this](QPushButton* button) {
        m_leave->clearRefused();
        button->setFocus(Qt::ShortcutFocusReason);
        if (!m_leave->takeRefused())
            button->click();
    };
    tasto(Qt::Key_F2, [=, this] { premi(m_comandi.at(0)); });
    tasto(Qt::Key_F5, [=, this] { premi(m_comandi.at(1)); });
    tasto(Qt::Key_F7, [=, this] { premi(m_comandi.at(2)); });
    tasto(Qt::Key_F11, [=, this] { premi(m_comandi.at(3)); });
    tasto(Qt::Key_F12, [=, this] { premi(m_comandi.at(kStampa)); });
    tasto(Qt::Key_F6, [=, this] { premi(m_riga->azione(0)); });
    tasto(Qt::Key_F8, [=, this] { premi(m_riga->azione(1)); });
    tasto(Qt::Key_F9, [=, this] { premi(m_riga->azione(2)); });
    tasto(Qt::Key_F4, [this] { m_riga->like()->toggle(); });
    tasto(Qt::Key_Escape, [this] { close(); });
    // Up and Down walk the rows from any field; in the grid they are the grid's own.
    QShortcut* su = tasto(Qt::Key_Up, [this] { spostaRiga(-1); });
    QShortcut* giu = tasto(Qt::Key_Down, [this] { spostaRiga(1); });
    connect(qApp, &QApplication::focusChanged, this, [=, this](QWidget*, QWidget* now) {
        su->setEnabled(now != m_griglia);
        giu->setEnabled(now != m_griglia);
    });

    m_leave = new cFieldLeave(this, [this](QWidget* old) { return campoLasciato(old); });
    connect(m_keys, &cKeyFunction::evtFunctionKeyPressed, this,
            [this](const QString& nome, int tasto, int) { funzione(nome, tasto); });
    connect(m_intestazione, &IntestazioneMovimento::tipoCambiato, this, &frmMovimento::tipoCambiato);
    connect(m_intestazione, &IntestazioneMovimento::latoCambiato, this, &frmMovimento::latoCambiato);
    connect(m_intestazione, &IntestazioneMovimento::modificato, this, &frmMovimento::segna);
    connect(m_riga, &RigaMovimento::modificato, this, &frmMovimento::segna);
    connect(m_riga, &RigaMovimento::azionePremuta, this, &frmMovimento::cmdAction_Click);
    connect(m_riga, &RigaMovimento::righeCambiate, this, [this] { aggiornaRighe(m_editor.corrente); });
    connect(m_griglia, &GrigliaMovimento::rigaScelta, this, &frmMovimento::rigaScelta);
    connect(m_griglia, &GrigliaMovimento::cellaDigitata, this, &frmMovimento::cellaDigitata);
    connect(m_griglia, &GrigliaMovimento::invio, this, [this] { m_riga->campoProdotto()->setFocus(); });
    m_riga->setControlloIntestazione([this] {
        const QString mancanti = m_intestazione->campiMancanti();
        if (mancanti.isEmpty())
            return true;
        msgBox(mancanti, vb::Exclamation);
        return false;
    });
    pulisci();
}

void frmMovimento::startMe(int rid, int tipoDocumento, bool nuovoSubito)
{
    m_modificato = false;
    if (rid > 0)
        showData(rid);
    else
        newRecord();
    if (nuovoSubito)
        newRecord();
    if (tipoDocumento > 0) {
        m_tipoFisso = tipoDocumento;
        m_intestazione->caricaTipo(tipoDocumento);
        m_intestazione->dopoTipo();
    }
}

bool frmMovimento::chiediSalvataggio()
{
    if (!m_modificato)
        return true;
    switch (msgBox(QStringLiteral("Salvare le modifiche al Documento corrente?"), vb::YesNoCancel | vb::Question)) {
    case vb::Yes: return saveRecord();
    case vb::No: return true;
    default: return false;
    }
}

void frmMovimento::pulisci()
{
    m_testata = TestataDocumento();
    m_spedizione = DatiSpedizione();
    m_intestazione->pulisci();
    m_editor.griglia().clear();
    m_editor.pulisciRiga();
    m_editor.corrente = -1;
    m_riga->mostraTotaleRiga(gOptions().mostraTotaleRigaMov);
    m_riga->mostra();
    tipoCambiato();
    for (int i : {kSpedizione, 2, 6, 7, kElencoSpeciale})
        m_comandi.at(i)->setEnabled(false);
    setWindowTitle(QStringLiteral("Movimenti"));
}

bool frmMovimento::showData(int rid, int progressivo)
{
    if (!chiediSalvataggio())
        return false;
    TestataDocumento t;
    WaitCursor attesa;
    if (!leggiTestata(rid, progressivo, m_intestazione->anno(), m_intestazione->tipoRid(), t)) {
        pulisci();
        m_modificato = false;
        return false;
    }
    pulisci();
    m_testata = t;
    m_spedizione = t.spedizione;
    m_intestazione->mostra(t);
    m_editor.prezziIvaInclusa = t.usaPrezziIva;
    leggiRighe(t.rid, m_editor.griglia(), m_editor.decimali(), gOptions().distintaBase);
    tipoCambiato();
    aggiornaRighe(-1);
    m_comandi.at(2)->setEnabled(true);
    m_comandi.at(6)->setEnabled(t.primaNota > 0);
    m_comandi.at(7)->setEnabled(true);
    m_comandi.at(kElencoSpeciale)->setEnabled(t.progElencoSpeciale > 0);
    setWindowTitle(t.denominazione.isEmpty() ? QStringLiteral("Movimenti")
                                             : QStringLiteral("Movimenti: ") + t.denominazione);
    m_intestazione->campoProgressivo()->setFocus();
    m_modificato = false;
    return true;
}

bool frmMovimento::newRecord()
{
    if (!chiediSalvataggio())
        return false;
    pulisci();
    m_modificato = false;
    if (m_tipoFisso > 0) {
        m_intestazione->caricaTipo(m_tipoFisso);
        m_intestazione->dopoTipo();
    } else {
        m_intestazione->campoProgressivo()->setFocus();
        m_intestazione->campoProgressivo()->selectAll();
    }
    return true;
}

bool frmMovimento::saveRecord()
{
    DocumentoDaSalvare d;
    d.testata = m_intestazione->testata();
    d.testata.rid = m_testata.rid;
    d.testata.primaNota = m_testata.primaNota;
    d.testata.pnPagamento = m_testata.pnPagamento;
    d.testata.progElencoSpeciale = m_testata.progElencoSpeciale;
    d.testata.dataStampa = m_testata.dataStampa;
    d.testata.spedizione = m_spedizione;
    d.info = m_intestazione->info();
    d.stampaElencoSpeciale = m_intestazione->tipo().stampaElencoSpeciale;
    m_editor.calcolaTotali();
    d.totali = m_editor.totali();
    // Everything that asks comes before the transaction.
    if (d.info.destinazione == lato::Cliente && d.testata.destinazione.rid > 0) {
        const QString domanda =
            domandaFuoriFido(d.testata.destinazione.rid, getValoreCurrency(d.totali.importo), gOptions().contoClienti,
                             gOptions().fidoAllaData, QDate::currentDate());
        if (!domanda.isEmpty() && msgBox(domanda, vb::YesNo | vb::Exclamation | vb::DefaultButton2) != vb::Yes)
            return false;
    }
    const QStringList faults = controllaInserimento(d, m_editor.griglia());
    if (!faults.isEmpty()) {
        msgBox(cRecordScreen::faultsMessage(faults), vb::Exclamation);
        return false;
    }
    if (!controllaDataStampa())
        return false;
    const bool aggiornaPrimaNota = !chiedeAggiornamentoPrimaNota(d)
        || msgBox(domandaAggiornamentoPrimaNota(), vb::YesNo | vb::Question) == vb::Yes;
    bool salvato = false;
    {
        WaitCursor attesa;
        salvato = salvaDocumento(d, m_editor.griglia(), aggiornaPrimaNota);
    }
    if (!salvato) {
        aggiornaRighe(m_griglia->rigaCorrente());
        return false;
    }
    m_testata = d.testata;
    m_modificato = false;
    return true;
}

bool frmMovimento::deleteRecord()
{
    if (m_testata.rid <= 0)
        return newRecord();
    if (msgBox(domandaEliminazione(m_testata.tipo.descrizione, m_testata.progressivo),
               vb::YesNo | vb::Information | vb::DefaultButton2)
        != vb::Yes)
        return false;
    {
        WaitCursor attesa;
        if (!eliminaDocumento(m_testata, m_intestazione->info()))
            return false;
    }
    m_modificato = false;
    return newRecord();
}

void frmMovimento::refreshRecord()
{
    if (m_testata.rid > 0)
        showData(m_testata.rid);
}

bool frmMovimento::controllaDataStampa()
{
    // Printed meanwhile on another workstation counts as printed.
    if (m_testata.rid > 0 && !m_testata.dataStampa.isValid())
        m_testata.dataStampa = leggiDataStampa(m_testata.rid);
    const QString domanda = domandaDataStampa(m_testata.dataStampa);
    return domanda.isEmpty() || msgBox(domanda, vb::YesNo | vb::Exclamation) == vb::Yes;
}

void frmMovimento::cmdCommand_Click(int indice)
{
    switch (indice) {
    case 0: newRecord(); return;
    case 1:
        if (saveRecord())
            refreshRecord();
        return;
    case 2: deleteRecord(); return;
    case 3: refreshRecord(); return;
    case kSpedizione: showDettagliSpedizione(); return;
    case kStampa:
    case kElencoSpeciale: {
        // The stored document prints; a new one has nothing to print yet.
        if (m_testata.rid <= 0)
            return;
        const bool nonMostrareAnteprima = m_anteprima->isChecked();
        const QDate stampato = indice == kStampa ? stampaDocumentoDaSchermata(m_testata.rid, nonMostrareAnteprima)
                                                 : stampaElencoSpecialeDaSchermata(m_testata.rid, nonMostrareAnteprima);
        if (stampato.isValid()) {
            m_testata.dataStampa = stampato;
            m_intestazione->mostraDataStampa(stampato);
        }
        return;
    }
    case kBarCode:
        screens::openOrTell(QString::fromLatin1(kComandi[indice].schermata), generaBarCode(),
                            m_comandi.at(indice)->text());
        return;
    default:
        screens::openOrTell(QString::fromLatin1(kComandi[indice].schermata), QVariant(), m_comandi.at(indice)->text());
    }
}

void frmMovimento::cmdAction_Click(int indice)
{
    const int corrente = m_editor.posizione >= 0 ? m_editor.posizione : m_griglia->rigaCorrente();
    switch (indice) {
    case 0: {
        m_riga->raccogli();
        WaitCursor attesa;
        const int scritta = m_editor.confermaRiga();
        if (scritta >= 0) {
            segna();
            aggiornaRighe(scritta);
        }
        break;
    }
    case 1: m_editor.pulisciRiga(); break;
    case 2: {
        if (corrente < 0 || corrente >= m_editor.griglia().righe())
            break;
        const QString testo = m_editor.griglia().cella(corrente, colonna::Descrizione);
        if (msgBox(QStringLiteral("Eliminare il dettaglio [") + testo + QStringLiteral("]?"),
                   vb::YesNo | vb::Exclamation)
            != vb::Yes)
            return;
        m_editor.eliminaRiga(corrente);
        segna();
        aggiornaRighe(-1);
        break;
    }
    case 3:
        if (m_editor.dati.prodotto > 0)
            screens::openScreen(QStringLiteral("frmProdotto"), m_editor.dati.prodotto);
        return;
    case 4:
        if (corrente >= 0) {
            const QString copiata = m_editor.griglia().copiaRiga(corrente);
            if (!copiata.isEmpty())
                rigaCopiata() = copiata;
        }
        return;
    case 5: {
        const QStringList celle = GrigliaDocumento::celleCopiate(rigaCopiata());
        if (celle.size() < colonna::Numero) {
            msgBox(QStringLiteral("Impossibile incollare. Nessuna Riga copiata."), vb::Information);
            return;
        }
        if (msgBox(QStringLiteral("Incollare il prodotto ") + celle.at(colonna::Codice)
                       + QStringLiteral(" con quantità ") + celle.at(colonna::Quantita) + QLatin1Char('?'),
                   vb::YesNo | vb::Question)
            != vb::Yes)
            return;
        m_editor.incollaRiga(rigaCopiata());
        segna();
        aggiornaRighe(m_editor.corrente);
        break;
    }
    default: return;
    }
    m_riga->mostra();
    m_riga->campoProdotto()->setFocus();
}

void frmMovimento::tipoCambiato()
{
    const InfoDocumento& info = m_intestazione->info();
    m_riga->mostraPrezzi(!info.trasferimento());
    m_riga->abilitaPrezzoIvaInclusa(m_intestazione->prezziIvaInclusa());
    m_riga->setModificaPrezzoAcquisto(m_intestazione->tipo().modificaPrezzoAcquisto);
    m_comandi.at(kSpedizione)->setEnabled(info.accompagnatorio);
    m_editor.prezziIvaInclusa = m_intestazione->prezziIvaInclusa();
    m_editor.rdaPerc = m_intestazione->rdaPerc();
    m_editor.rdaPercSu = m_intestazione->rdaPercSu();
    m_editor.taglioEffettivo = info.taglio && !gOptions().prezzoMedio;
    latoCambiato();
}

void frmMovimento::latoCambiato()
{
    const InfoDocumento& info = m_intestazione->info();
    DocumentoPrezzi& p = m_editor.prezzi;
    p.tipoOrigine = info.origine;
    p.tipoDestinazione = info.destinazione;
    p.origine = m_intestazione->origine();
    p.destinazione = m_intestazione->destinazione();
    p.scontoControparte = m_intestazione->scontoControparte();
    m_editor.calcolaTotali();
    m_totali->mostra(m_editor.totali(), m_editor.rdaPerc, m_editor.rdaPercSu);
}

bool frmMovimento::campoLasciato(QWidget* campo)
{
    if (campo == m_intestazione->campoProgressivo()) {
        const int numero = m_intestazione->progressivo();
        if (numero > 0 && numero != m_testata.progressivo)
            showData(0, numero);
        return true;
    }
    if (!m_intestazione->campoLasciato(campo))
        return false;
    if (!m_riga->campoLasciato(campo))
        return false;
    // A value typed over the grid is written at once.
    if (campo == std::exchange(m_daGriglia, nullptr))
        cmdAction_Click(0);
    return true;
}

void frmMovimento::funzione(const QString& nomeCampo, int tasto)
{
    if (tasto == vbKey::F3 && !m_intestazione->sfoglia(nomeCampo))
        m_riga->sfoglia(nomeCampo);
}

void frmMovimento::rigaScelta(int riga, int colonnaCliccata)
{
    WaitCursor attesa;
    GrigliaDocumento& g = m_editor.griglia();
    if (colonnaCliccata == colonna::Icona && g.padreKit(riga, gOptions().distintaBase)) {
        g.apriChiudiFigli(riga);
        m_editor.pulisciRiga();
        aggiornaRighe(riga);
    } else if (m_editor.getRowFromGrid(riga)) {
        m_editor.leggiGiacenza();
        m_totali->mostra(m_editor.totali(), m_editor.rdaPerc, m_editor.rdaPercSu);
    }
    m_riga->mostra();
}

void frmMovimento::cellaDigitata(int riga, int colonnaCella, const QString& testo)
{
    if (!m_editor.getRowFromGrid(riga))
        return;
    m_riga->mostra();
    QLineEdit* campo = m_riga->campoDiColonna(colonnaCella);
    if (!campo || !campo->isEnabled() || !campo->isVisible())
        return;
    m_daGriglia = campo;
    campo->setFocus();
    campo->setText(testo);
}

void frmMovimento::aggiornaRighe(int corrente)
{
    m_griglia->aggiorna(corrente);
    m_totali->mostra(m_editor.totali(), m_editor.rdaPerc, m_editor.rdaPercSu);
}

void frmMovimento::spostaRiga(int passo)
{
    const GrigliaDocumento& g = m_editor.griglia();
    int r = m_griglia->rigaCorrente();
    do
        r += passo;
    while (r >= 0 && r < g.righe() && !g.visibile(r));
    if (r < 0 || r >= g.righe())
        return;
    m_griglia->seleziona(r);
    rigaScelta(r, -1);
}

QString frmMovimento::generaBarCode() const
{
    // One line a row: the product's key, a tab and the quantity, ended by a
    // carriage return; free rows ("/" codes) have no label.
    const GrigliaDocumento& g = m_editor.griglia();
    QString lista;
    for (int r = 0; r < g.righe(); ++r) {
        if (g.stato(r) == gestione::Eliminata || g.cella(r, colonna::Codice).startsWith(QLatin1Char('/')))
            continue;
        lista +=
            g.cella(r, colonna::IdProdotto) + QLatin1Char('\t') + g.cella(r, colonna::Quantita) + QLatin1Char('\r');
    }
    return lista;
}

void frmMovimento::showDettagliSpedizione()
{
    qint16 colli = 0;
    Single peso = 0;
    if (!getNewPesoColli(m_editor.griglia(), colli, peso))
        return;
    DatiSpedizione dati = m_spedizione;
    getInfoConsegnaCliente(m_intestazione->destinazione(), dati);
    if (!frmDettaglioSpedizione::mostra(dati, peso, colli, this))
        return;
    m_spedizione = dati;
    segna();
}

void frmMovimento::closeEvent(QCloseEvent* event)
{
    if (!chiediSalvataggio()) {
        event->ignore();
        return;
    }
    machineSettings().setValue(kChkLike, m_riga->like()->isChecked());
    machineSettings().setValue(kNoAnteprima, m_anteprima->isChecked());
    event->accept();
}
