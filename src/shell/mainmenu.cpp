#include "shell/mainmenu.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace {

MenuNode item(const char* name, const char* caption, const char* icon = "", const char* screen = "",
              const QVariant& argument = QVariant())
{
    return {QString::fromUtf8(name),
            QString::fromUtf8(caption),
            QString::fromUtf8(icon),
            QString::fromUtf8(screen),
            argument,
            {}};
}

MenuNode separator(const char* name = "") { return item(name, "-"); }

MenuNode submenu(const char* name, const char* caption, const char* icon, QList<MenuNode> children)
{
    MenuNode node = item(name, caption, icon);
    node.children = std::move(children);
    return node;
}

// The items of "Altre Tabelle": each opens the table editor on its own table.
QList<MenuNode> altreTabelle()
{
    const char* captions[] = {"&Colori",
                              "Co&nfezioni",
                              "&Formato Carta",
                              "Fo&rmato Finestra",
                              "&Gruppi Merceologici",
                              "Ca&tegorie Merceologiche",
                              "&Magazzini",
                              "&Spedizioni",
                              "Ma&rche",
                              "Ce&ntri di costo",
                              "&Unità di misure",
                              "&Aspetto esteriore beni",
                              "Cau&sali di trasporto"};
    QList<MenuNode> nodes;
    for (int i = 0; i < int(std::size(captions)); ++i) {
        const QString name = QStringLiteral("mnuTab_") + QString::number(i);
        nodes.append({name, QString::fromUtf8(captions[i]), QString(), QStringLiteral("frmSimpleForm"), name, {}});
    }
    return nodes;
}

QList<MenuNode> buildTree()
{
    return {
        submenu("mnuFile", "&File", "", {item("mnuEsci", "&Esci", "Esci")}),
        submenu("mnuTabelle", "&Tabelle", "",
                {item("mnuAnagrafica", "&Anagrafica Clienti/Fornitori", "Anagrafica", "frmAnagrafica"),
                 item("mnuProdotti", "P&rodotti", "Prodotti", "frmProdotto"),
                 item("mnuDistintaBase", "&Distinata Base", "DistintaBase", "frmDistintaBase"),
                 item("mnuMovimenti", "&Movimenti", "Movimenti", "frmMovimento", 0),
                 item("mnuOrdini", "&Ordini", "Ordini", "frmOrdini"),
                 item("mnuPagamenti", "&Pagamenti", "Pagamenti", "frmPagamenti"),
                 item("mnuBanche", "&Banche", "Banche", "frmBanche"),
                 item("mnuVenditori", "&Venditori", "Venditori", "frmVenditore"),
                 separator("mnuSeptab1"),
                 item("mnuTipiDocumenti", "&Tipi di Documento", "Tipodoc", "frmTipoDocumento"),
                 item("mnuIva", "Aliquote &Iva", "IVA", "frmIva"),
                 item("mnuFasceClienti", "&Fasce Clienti", "Generic", "frmSimpleForm",
                      QStringLiteral("mnuFasceClienti")),
                 item("mnuCatSconti", "Categorie &Sconti", "Catsco", "frmCategoriaSconti"),
                 item("mnuScontiImmediati", "Sco&nti Immediati", "ScoImm", "frmScontiImmediati"),
                 item("mnuCollezioni", "Colle&zioni", "Generic", "frmSimpleForm", QStringLiteral("mnuCollezioni")),
                 separator("mnuSeparetor"),
                 item("mnuListini", "&Listini", "Listino", "frmListini"),
                 item("mnuNumeratori", "Numeratori", "Numeratori", "frmNumeratori"),
                 item("mnuRubrica", "&Rubrica", "Rubrica", "frmRubrica"),
                 submenu("mnuAltreTab", "A&ltre Tabelle", "Altre", altreTabelle())}),
        submenu("mnuContabilita", "&Contabilità", "",
                {item("mnuPNota", "Prima &Nota", "PrimaNota", "frmPrimaNota"),
                 item("mnuPianoConti", "&Piano dei Conti", "PianoConti", "frmPianoConti"),
                 item("mnuCausali", "&Causali Contabili", "Causali", "frmCausali")}),
        submenu("mnuDocumenti", "&Documenti", "Movimenti",
                {item("mnudocumento_0", "&Creazione guidata Documenti", "Wizard", "frmDocumentiWizard"),
                 item("mnudocumento_1", "&Seleziona Documento esistente...", "Anteprima", "frmSelezionaDocumento"),
                 separator("mnudocumento_2"), item("mnudocumento_3", "(Nessun Documento)")}),
        submenu("mnuEstratti", "&Estratti Conto", "Estratto",
                {item("mnuEstrattoClienti", "&Cliente", "EstrattoC", "frmEstrattoConto", QStringLiteral("C")),
                 item("mnuEstrattoFornitore", "&Fornitore", "EstrattoF", "frmEstrattoConto", QStringLiteral("F")),
                 separator(),
                 item("mnuEstrattoGenerico", "&Generico", "Estratto", "frmEstrattoConto", QStringLiteral("G")),
                 item("mnuEstrattoTotale", "&Saldi Contropartite", "estrattoTotale", "frmEstrattoTotale")}),
        submenu("mnuRiepiloghi", "&Riepiloghi", "",
                {item("mnuRiepilogoScadenze", "&Scadenze", "Scadenze", "frmRiepilogoScadenze"),
                 item("mnuRiepilogoMovimenti", "&Movimenti", "Anteprima", "frmRiepilogoMovimenti"),
                 item("mnuGiacenze", "&Giacenze dettagliate", "Giacenze", "frmGiacenzaSemplificata"),
                 item("mnuStoricoProdotto", "&Storico Prodotto", "Anteprima", "frmStoricoProdotto"),
                 item("mnuCategoriaValoreMagazzino", "&Categorie Valore Magazzino", "Anteprima",
                      "frmCategoriaValoreMagazzino"),
                 submenu("mnuStampe", "&Anagrafiche", "Altre",
                         {item("mnuStampaClienti", "&Clienti", "", "stampaClienti"),
                          item("mnuStampaFornitori", "&Fornitori", "", "stampaFornitori"),
                          item("mnuStampaProdotti", "&Prodotti", "", "stampaProdotti")}),
                 separator(),
                 submenu("mnuEsportaAnagrafiche", "&Esporta", "",
                         {item("mnuEsportaClienti", "&Clienti", "", "esportaClienti"),
                          item("mnuEsportaFornitori", "&Fornitori", "", "esportaFornitori")}),
                 item("mnuSellOut", "Sell &Out", "SellOut", "frmSellOut")}),
        submenu("mnuStrumenti", "&Strumenti", "",
                {item("mnuOpzioni", "Opzioni Generali", "Opzioni", "frmOpzioni"),
                 item("optServer", "Opzioni Server", "Opzioniserver", "frmOptionServer"), separator(),
                 item("mnuDocWizard", "&Creazione guidata Movimenti/Documenti", "Wizard", "frmDocumentiWizard"),
                 item("mnuStampaBarCode", "&Stampa Codici a Barre", "BarCode", "frmStampaBarCode"),
                 item("mnuVariazionePrezziProdotti", "&Variazione Prezzi Prodotti", "", "frmVariazionePrezzi"),
                 item("mnuImportaListini", "&Importa Prezzi Prodotti", "", "frmImportaListini"),
                 item("mnuImportaProdotti", "I&mporta Anagrafica Prodotti", "Prodotti", "frmImportazioneProdotti"),
                 item("mnuRicalcoloGiacenze", "&Ricalcolo giacenze", "Ricalcolo", "frmRicalcoloGiacenze"),
                 item("mnuDatiDimostrativi", "Dati di&mostrativi", "Wizard", "frmDatiDimostrativi"),
                 submenu("mnuDiagnostica", "&Avanzate", "Altre",
                         {item("mnuComputerList", "&Connessioni di rete attive", "", "frmComputerList"), separator(),
                          item("mnuDBCompact", "Compatta &DataBase", "", "compattaDataBase"),
                          item("mnuDBBackup", "&Esegui il Backup del DataBase", "", "backupDataBase"),
                          item("mnuRpristinaBackup", "&Ripristina Backup", "", "ripristinaBackup"),
                          item("mnuUpdateDB", "&Aggiorna il DataBase", "", "aggiornaDataBase"),
                          item("mnuQuery", "&Query", "", "frmQuery"),
                          submenu("mnuPatch", "&Patch", "",
                                  {item("mnuPatch1_9_21", "Bug #1.9.21 (correzione prima nota)", "", "patch1_9_21"),
                                   item("mnuRipristinaCampiDB", "Bug #1.2.9 (ricalcolo movimenti)", "",
                                        "ripristinaCampiDB")}),
                          separator(),
                          item("mnuGeneraBarCode", "&Genera BarCode", "", "frmGeneraBarCodeIntoProdotti")}),
                 separator("mnuSep"), item("mnuCambiaPW", "Cambia &Password", "Password", "frmCambiaPW")}),
        submenu("mnuWindow", "&Finestre", "", {}),
        submenu("mnuGuida", "&Guida", "",
                {item("mnuHelpIndex", "Indice della &Guida", "", "help", QStringLiteral("indice")),
                 item("mnuSommario", "&Sommario", "", "help", QStringLiteral("sommario")),
                 item("mnuTrovaArgomento", "&Trova argomento", "", "help", QStringLiteral("argomenti")), separator(),
                 item("mnuInfo", "Informazioni su...", "Informazioni", "frmInformazioni"),
                 item("mnuCheckUpgrade", "&Verifica aggiornamenti", "", "checkUpgrade")}),
    };
}

// Image keys to freedesktop icon names, the first one the theme has wins.
const QHash<QString, QStringList>& iconNames()
{
    static const QHash<QString, QStringList> names{
        {QStringLiteral("Esci"), {QStringLiteral("system-log-out"), QStringLiteral("application-exit")}},
        {QStringLiteral("Anagrafica"), {QStringLiteral("system-users")}},
        {QStringLiteral("Prodotti"), {QStringLiteral("package-x-generic")}},
        {QStringLiteral("Banche"), {QStringLiteral("x-office-spreadsheet")}},
        {QStringLiteral("Venditori"), {QStringLiteral("contact-new")}},
        {QStringLiteral("Movimenti"), {QStringLiteral("x-office-document")}},
        {QStringLiteral("Ordini"), {QStringLiteral("document-new")}},
        {QStringLiteral("Tipodoc"), {QStringLiteral("document-properties")}},
        {QStringLiteral("Generic"), {QStringLiteral("text-x-generic")}},
        {QStringLiteral("Catsco"), {QStringLiteral("x-office-presentation")}},
        {QStringLiteral("ScoImm"), {QStringLiteral("x-office-drawing")}},
        {QStringLiteral("IVA"), {QStringLiteral("accessories-calculator")}},
        {QStringLiteral("Pagamenti"), {QStringLiteral("x-office-calendar")}},
        {QStringLiteral("DistintaBase"), {QStringLiteral("format-indent-more")}},
        {QStringLiteral("Numeratori"), {QStringLiteral("format-justify-left")}},
        {QStringLiteral("Listino"), {QStringLiteral("x-office-spreadsheet-template")}},
        {QStringLiteral("Rubrica"), {QStringLiteral("x-office-address-book")}},
        {QStringLiteral("Altre"), {QStringLiteral("folder")}},
        {QStringLiteral("PrimaNota"), {QStringLiteral("accessories-text-editor")}},
        {QStringLiteral("PianoConti"), {QStringLiteral("text-x-generic-template")}},
        {QStringLiteral("Causali"), {QStringLiteral("preferences-system")}},
        {QStringLiteral("Wizard"), {QStringLiteral("system-installer"), QStringLiteral("system-software-install")}},
        {QStringLiteral("Anteprima"), {QStringLiteral("document-print-preview")}},
        {QStringLiteral("Estratto"), {QStringLiteral("x-office-spreadsheet")}},
        // A customer's statement is sent, a supplier's is answered: pictures
        // of their own, apart from those of the registry and the address book.
        {QStringLiteral("EstrattoC"), {QStringLiteral("mail-send"), QStringLiteral("mail-forward")}},
        {QStringLiteral("EstrattoF"), {QStringLiteral("mail-reply-sender")}},
        {QStringLiteral("estrattoTotale"), {QStringLiteral("x-office-presentation")}},
        {QStringLiteral("Scadenze"), {QStringLiteral("office-calendar"), QStringLiteral("x-office-calendar")}},
        {QStringLiteral("Giacenze"), {QStringLiteral("system-file-manager")}},
        {QStringLiteral("SellOut"), {QStringLiteral("x-office-presentation")}},
        {QStringLiteral("Opzioni"), {QStringLiteral("preferences-system")}},
        {QStringLiteral("Opzioniserver"), {QStringLiteral("network-server")}},
        {QStringLiteral("Password"), {QStringLiteral("system-lock-screen")}},
        {QStringLiteral("BarCode"), {QStringLiteral("document-print")}},
        {QStringLiteral("Ricalcolo"), {QStringLiteral("view-refresh")}},
        {QStringLiteral("Informazioni"), {QStringLiteral("help-browser")}},
        {QStringLiteral("VenditaBanco"), {QStringLiteral("applications-office")}},
    };
    return names;
}

} // namespace

const QList<MenuNode>& mainMenuTree()
{
    static const QList<MenuNode> tree = buildTree();
    return tree;
}

QIcon menuIcon(const QString& key)
{
    const QStringList names = iconNames().value(key);
    for (const QString& name : names) {
        const QIcon icon = QIcon::fromTheme(name);
        if (!icon.isNull())
            return icon;
    }
    return QIcon();
}

QStringList menuIconKeys()
{
    QStringList keys = iconNames().keys();
    keys.sort();
    return keys;
}

void MainMenu::build(QMenuBar* bar)
{
    for (const MenuNode& top : mainMenuTree()) {
        QMenu* menu = bar->addMenu(top.caption);
        menu->setObjectName(top.name);
        menu->menuAction()->setObjectName(top.name);
        m_menus.insert(top.name, menu);
        m_nodes.insert(top.name, &top);
        addNodes(menu, top.children);
    }
    m_popGrid = new QMenu(QStringLiteral("Pop Grid"), bar);
    m_popGrid->setObjectName(QStringLiteral("mnuPopGrid"));
    addItem(m_popGrid, QStringLiteral("mnuGridDelRow"), QStringLiteral("Riga Pop"));
    addItem(m_popGrid, QStringLiteral("mnuGridTmp"), QStringLiteral("Riga Pop2"));
}

void MainMenu::addNodes(QMenu* parent, const QList<MenuNode>& nodes)
{
    for (const MenuNode& node : nodes) {
        m_nodes.insert(node.name, &node);
        if (node.caption == QLatin1String("-")) {
            QAction* sep = parent->addSeparator();
            if (!node.name.isEmpty()) {
                sep->setObjectName(node.name);
                m_actions.insert(node.name, sep);
            }
        } else if (!node.children.isEmpty()) {
            QMenu* menu = parent->addMenu(menuIcon(node.icon), node.caption);
            menu->setObjectName(node.name);
            menu->menuAction()->setObjectName(node.name);
            m_menus.insert(node.name, menu);
            addNodes(menu, node.children);
        } else {
            QAction* action = addItem(parent, node.name, node.caption);
            action->setIcon(menuIcon(node.icon));
        }
    }
}

QAction* MainMenu::addItem(QMenu* menu, const QString& name, const QString& caption)
{
    QAction* action = menu->addAction(caption);
    action->setObjectName(name);
    action->setIconVisibleInMenu(true);
    m_actions.insert(name, action);
    return action;
}

void MainMenu::removeItem(const QString& name)
{
    if (QAction* action = m_actions.take(name))
        delete action;
    m_nodes.remove(name);
}
