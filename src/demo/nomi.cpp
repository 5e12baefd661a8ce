#include "demo/nomi.h"

namespace demo {

namespace {

// Most customers of a firm in the north are near it: the northern towns
// come first and are listed more.
const Comune kComuni[] = {
    {"Milano", "20121", "MI", "F205", "015", "02"},        {"Monza", "20900", "MB", "F704", "108", "039"},
    {"Bergamo", "24121", "BG", "A794", "016", "035"},      {"Brescia", "25121", "BS", "B157", "017", "030"},
    {"Como", "22100", "CO", "C933", "013", "031"},         {"Varese", "21100", "VA", "L682", "012", "0332"},
    {"Lecco", "23900", "LC", "E507", "097", "0341"},       {"Lodi", "26900", "LO", "E648", "098", "0371"},
    {"Pavia", "27100", "PV", "G388", "018", "0382"},       {"Cremona", "26100", "CR", "D150", "019", "0372"},
    {"Mantova", "46100", "MN", "E897", "020", "0376"},     {"Piacenza", "29121", "PC", "G535", "033", "0523"},
    {"Parma", "43121", "PR", "G337", "034", "0521"},       {"Reggio Emilia", "42121", "RE", "H223", "035", "0522"},
    {"Modena", "41121", "MO", "F257", "036", "059"},       {"Bologna", "40121", "BO", "A944", "037", "051"},
    {"Ferrara", "44121", "FE", "D548", "038", "0532"},     {"Ravenna", "48121", "RA", "H199", "039", "0544"},
    {"Rimini", "47921", "RN", "H294", "099", "0541"},      {"Verona", "37121", "VR", "L781", "023", "045"},
    {"Vicenza", "36100", "VI", "L840", "024", "0444"},     {"Padova", "35121", "PD", "G224", "028", "049"},
    {"Treviso", "31100", "TV", "L407", "026", "0422"},     {"Venezia", "30121", "VE", "L736", "027", "041"},
    {"Trento", "38121", "TN", "L378", "022", "0461"},      {"Bolzano", "39100", "BZ", "A952", "021", "0471"},
    {"Udine", "33100", "UD", "L483", "030", "0432"},       {"Trieste", "34121", "TS", "L424", "032", "040"},
    {"Torino", "10121", "TO", "L219", "001", "011"},       {"Novara", "28100", "NO", "F952", "003", "0321"},
    {"Alessandria", "15121", "AL", "A182", "006", "0131"}, {"Asti", "14100", "AT", "A479", "005", "0141"},
    {"Cuneo", "12100", "CN", "D205", "004", "0171"},       {"Genova", "16121", "GE", "D969", "010", "010"},
    {"Savona", "17100", "SV", "I480", "009", "019"},       {"La Spezia", "19121", "SP", "E463", "011", "0187"},
    {"Firenze", "50121", "FI", "D612", "048", "055"},      {"Prato", "59100", "PO", "G999", "100", "0574"},
    {"Pisa", "56121", "PI", "G702", "050", "050"},         {"Lucca", "55100", "LU", "E715", "046", "0583"},
    {"Ancona", "60121", "AN", "A271", "042", "071"},       {"Perugia", "06121", "PG", "G478", "054", "075"},
    {"Roma", "00185", "RM", "H501", "058", "06"},          {"Pescara", "65121", "PE", "G482", "068", "085"},
    {"Napoli", "80133", "NA", "F839", "063", "081"},       {"Bari", "70121", "BA", "A662", "072", "080"},
};

const char* const kCognomi[] = {
    "Rossi",      "Russo",     "Ferrari",   "Esposito",   "Bianchi",    "Romano",    "Colombo",    "Ricci",
    "Marino",     "Greco",     "Bruno",     "Gallo",      "Conti",      "De Luca",   "Mancini",    "Costa",
    "Giordano",   "Rizzo",     "Lombardi",  "Moretti",    "Barbieri",   "Fontana",   "Santoro",    "Mariani",
    "Rinaldi",    "Caruso",    "Ferrara",   "Galli",      "Martini",    "Leone",     "Longo",      "Gentile",
    "Martinelli", "Vitale",    "Lombardo",  "Serra",      "Coppola",    "De Santis", "D'Angelo",   "Marchetti",
    "Parisi",     "Villa",     "Conte",     "Ferraro",    "Ferri",      "Fabbri",    "Bianco",     "Marini",
    "Grasso",     "Valentini", "Messina",   "Sala",       "De Angelis", "Gatti",     "Pellegrini", "Palumbo",
    "Sanna",      "Farina",    "Rizzi",     "Monti",      "Cattaneo",   "Morelli",   "Amato",      "Silvestri",
    "Mazza",      "Testa",     "Grassi",    "Pellegrino", "Carbone",    "Giuliani",  "Benedetti",  "Barone",
    "Rossetti",   "Caputo",    "Montanari", "Guerra",     "Palmieri",   "Bernardi",  "Martino",    "Fiore",
    "Ferretti",   "Bellini",   "Basile",    "Riva",       "Donati",     "Piras",     "Vitali",     "Battaglia",
    "Sartori",    "Neri",      "Orlando",   "Zanetti",    "Brambilla",  "Colonna",   "Bassi",      "Pagani",
    "Tosi",       "Bertolini", "Fumagalli",
};

const char* const kNomiMaschili[] = {
    "Marco",   "Giuseppe", "Giovanni", "Antonio",  "Luca",    "Andrea",  "Francesco", "Alessandro", "Paolo",
    "Stefano", "Roberto",  "Davide",   "Matteo",   "Simone",  "Massimo", "Fabio",     "Claudio",    "Mario",
    "Luigi",   "Alberto",  "Daniele",  "Riccardo", "Lorenzo", "Gianni",  "Sergio",    "Emanuele",   "Federico",
    "Enrico",  "Piero",    "Michele",  "Nicola",   "Carlo",   "Filippo", "Giorgio",   "Angelo",     "Bruno",
};

const char* const kNomiFemminili[] = {
    "Maria",    "Anna",     "Giulia",   "Francesca",  "Laura",   "Sara",     "Chiara",   "Elena", "Valentina",
    "Paola",    "Silvia",   "Federica", "Alessandra", "Roberta", "Monica",   "Cristina", "Elisa", "Martina",
    "Barbara",  "Simona",   "Giovanna", "Daniela",    "Luisa",   "Lucia",    "Marta",    "Alice", "Ilaria",
    "Stefania", "Patrizia", "Claudia",  "Teresa",     "Serena",  "Beatrice", "Rita",     "Carla", "Emanuela",
};

const char* const kVie[] = {
    "Via Roma",
    "Via Giuseppe Garibaldi",
    "Corso Italia",
    "Via Giuseppe Mazzini",
    "Via Dante Alighieri",
    "Viale della Repubblica",
    "Via Giuseppe Verdi",
    "Piazza della Libertà",
    "Via Giacomo Matteotti",
    "Via XX Settembre",
    "Via Camillo Cavour",
    "Via Guglielmo Marconi",
    "Via Leonardo da Vinci",
    "Via Antonio Gramsci",
    "Via Alessandro Manzoni",
    "Via San Francesco",
    "Via dei Mille",
    "Via Nazionale",
    "Viale Europa",
    "Via Vittorio Veneto",
    "Via IV Novembre",
    "Via Trieste",
    "Via Trento",
    "Corso Vittorio Emanuele II",
    "Via Papa Giovanni XXIII",
    "Via Galileo Galilei",
    "Via Cesare Battisti",
    "Via Aldo Moro",
};

const char* const kVieIndustriali[] = {
    "Via dell'Industria",  "Via dell'Artigianato", "Via del Lavoro",       "Via dell'Innovazione",
    "Via delle Industrie", "Via Enrico Fermi",     "Via Alessandro Volta", "Via dei Mestieri",
    "Via del Commercio",   "Via Antonio Meucci",   "Strada Provinciale",   "Via dell'Economia",
};

const char* const kAttivitaClienti[] = {
    "Costruzioni",  "Impianti Elettrici", "Idraulica",        "Termoidraulica", "Edilizia",
    "Serramenti",   "Ristrutturazioni",   "Manutenzioni",     "Impianti",       "Carpenteria",
    "Falegnameria", "Giardini",           "Verniciature",     "Arredamenti",    "Tinteggiature",
    "Ferramenta",   "Coperture",          "Elettroforniture", "Global Service", "Restauri",
};

const char* const kAttivitaFornitori[] = {
    "Forniture Industriali", "Distribuzione",  "Commerciale",      "Utensileria", "Componenti",
    "Materiale Elettrico",   "Termoidraulica", "Colori e Vernici", "Forniture",   "Import Export",
};

const Categoria kCategorie[] = {
    {"FER", "Ferramenta e fissaggio"}, {"UTE", "Utensili manuali"}, {"ELU", "Elettroutensili e accessori"},
    {"ELE", "Materiale elettrico"},    {"ILL", "Illuminazione"},    {"IDR", "Idraulica"},
    {"VER", "Vernici e accessori"},    {"GIA", "Giardinaggio"},     {"RIS", "Riscaldamento"},
    {"ANT", "Antinfortunistica"},
};

const Marca kMarche[] = {
    {"FRX", "Ferrox", "FER UTE", 1.00, "8012345"},   {"UTL", "Utensilia", "UTE ELU", 1.15, "8023456"},
    {"VLT", "Voltaris", "ELE ILL", 1.05, "8034567"}, {"LUM", "Lumenia", "ILL", 1.20, "8045678"},
    {"IDT", "Idrotec", "IDR", 1.00, "8056789"},      {"CLR", "Colorama", "VER", 1.00, "8067890"},
    {"VDB", "Verdeblu", "GIA", 1.00, "8078901"},     {"FMV", "Fiammaviva", "RIS", 1.00, "8089012"},
    {"SEC", "Securo", "ANT", 1.00, "8090123"},       {"BRK", "Brikò", "FER ELE IDR VER GIA", 0.80, "8001234"},
};

const Modello kModelli[] = {
    {"FER", "Vite truciolare testa svasata",
     "3x16 (conf. 200 pz)|3,5x30 (conf. 200 pz)|4x40 (conf. 100 pz)|5x50 (conf. 100 pz)|6x80 (conf. 50 pz)", "CF", 2.40,
     0.25, 1, 10, "22", 0.3},
    {"FER", "Tassello in nylon con vite", "6 mm (conf. 50 pz)|8 mm (conf. 50 pz)|10 mm (conf. 25 pz)", "CF", 3.10, 0.20,
     1, 8, "22", 0.3},
    {"FER", "Bullone testa esagonale zincato", "M6x40|M8x50|M10x60|M12x80", "PZ", 0.18, 0.35, 10, 100, "22", 0.05},
    {"FER", "Dado esagonale zincato", "M6 (conf. 100 pz)|M8 (conf. 100 pz)|M10 (conf. 50 pz)|M12 (conf. 50 pz)", "CF",
     1.90, 0.25, 1, 6, "22", 0.4},
    {"FER", "Rondella piana zincata", "6 mm (conf. 100 pz)|8 mm (conf. 100 pz)|10 mm (conf. 100 pz)", "CF", 1.20, 0.25,
     1, 6, "22", 0.2},
    {"FER", "Chiodi a testa piana", "2x30 (1 kg)|2,5x50 (1 kg)|3x70 (1 kg)", "CF", 2.60, 0.10, 1, 5, "22", 1.0},
    {"FER", "Cerniera in acciaio", "60 mm|80 mm|100 mm", "PZ", 1.35, 0.30, 2, 12, "22", 0.1},
    {"FER", "Lucchetto in ottone", "30 mm|40 mm|50 mm", "PZ", 3.20, 0.35, 1, 5, "22", 0.2},
    {"FER", "Catena zincata", "4 mm|6 mm|8 mm", "MT", 1.10, 0.50, 2, 20, "22", 0.4},
    {"FER", "Silicone acetico trasparente 280 ml", "", "PZ", 2.10, 0.00, 2, 12, "22", 0.3},
    {"FER", "Schiuma poliuretanica 750 ml", "", "PZ", 4.20, 0.00, 1, 6, "22", 0.8},
    {"UTE", "Martello da carpentiere", "300 g|500 g|800 g", "PZ", 6.50, 0.25, 1, 3, "22", 0.6},
    {"UTE", "Cacciavite a taglio", "3x75|5x100|6x150", "PZ", 1.80, 0.20, 1, 5, "22", 0.1},
    {"UTE", "Cacciavite a croce", "PH0|PH1|PH2|PH3", "PZ", 1.90, 0.15, 1, 5, "22", 0.1},
    {"UTE", "Chiave combinata", "8 mm|10 mm|13 mm|17 mm|19 mm", "PZ", 2.70, 0.15, 1, 4, "22", 0.2},
    {"UTE", "Pinza universale", "160 mm|180 mm|200 mm", "PZ", 5.40, 0.15, 1, 3, "22", 0.3},
    {"UTE", "Metro avvolgibile", "3 m|5 m|8 m", "PZ", 2.90, 0.35, 1, 4, "22", 0.2},
    {"UTE", "Livella in alluminio", "40 cm|60 cm|100 cm", "PZ", 6.80, 0.30, 1, 3, "22", 0.5},
    {"UTE", "Seghetto per metalli 300 mm", "", "PZ", 7.30, 0.00, 1, 3, "22", 0.6},
    {"UTE", "Serie chiavi a brugola 9 pz", "", "PZ", 5.90, 0.00, 1, 3, "22", 0.3},
    {"UTE", "Cutter con lama a spezzare", "18 mm|25 mm", "PZ", 1.60, 0.30, 1, 6, "22", 0.1},
    {"ELU", "Trapano avvitatore a batteria 18 V", "1 batteria|2 batterie", "PZ", 62.00, 0.30, 1, 2, "22", 1.8},
    {"ELU", "Smerigliatrice angolare", "115 mm 750 W|125 mm 900 W|230 mm 2000 W", "PZ", 34.00, 0.45, 1, 2, "22", 2.5},
    {"ELU", "Trapano a percussione 800 W", "", "PZ", 48.00, 0.00, 1, 2, "22", 2.2},
    {"ELU", "Seghetto alternativo 650 W", "", "PZ", 41.00, 0.00, 1, 2, "22", 2.0},
    {"ELU", "Levigatrice orbitale 240 W", "", "PZ", 36.50, 0.00, 1, 2, "22", 1.6},
    {"ELU", "Set punte per metallo HSS", "13 pz|19 pz|25 pz", "PZ", 7.90, 0.40, 1, 4, "22", 0.4},
    {"ELU", "Disco da taglio per metallo", "115 mm|125 mm|230 mm", "PZ", 0.95, 0.40, 5, 25, "22", 0.1},
    {"ELE", "Cavo unipolare FS17", "1,5 mmq|2,5 mmq|4 mmq|6 mmq", "MT", 0.16, 0.45, 25, 200, "22", 0.03},
    {"ELE", "Presa schuko 16 A", "bianca|nera|grigia", "PZ", 2.35, 0.05, 2, 20, "22", 0.1},
    {"ELE", "Interruttore unipolare 10 A", "bianco|nero|grigio", "PZ", 1.95, 0.05, 2, 20, "22", 0.1},
    {"ELE", "Scatola di derivazione IP55", "100x100|150x110|190x140", "PZ", 1.45, 0.40, 2, 20, "22", 0.2},
    {"ELE", "Nastro isolante PVC 19 mm", "nero|bianco|rosso|blu", "PZ", 0.55, 0.00, 5, 30, "22", 0.05},
    {"ELE", "Multipresa con interruttore", "4 posti|6 posti", "PZ", 5.20, 0.30, 1, 6, "22", 0.4},
    {"ELE", "Prolunga avvolgicavo", "10 m|25 m|50 m", "PZ", 14.50, 0.55, 1, 3, "22", 1.5},
    {"ELE", "Interruttore magnetotermico", "1P+N 10 A|1P+N 16 A|2P 25 A", "PZ", 6.90, 0.20, 1, 10, "22", 0.2},
    {"ELE", "Tubo corrugato", "16 mm|20 mm|25 mm", "MT", 0.22, 0.30, 25, 100, "22", 0.05},
    {"ILL", "Lampadina LED E27", "6 W|9 W|12 W|15 W", "PZ", 1.40, 0.25, 2, 20, "22", 0.1},
    {"ILL", "Lampadina LED E14", "4 W|6 W", "PZ", 1.30, 0.20, 2, 20, "22", 0.1},
    {"ILL", "Faretto LED GU10", "5 W|7 W", "PZ", 1.70, 0.20, 2, 20, "22", 0.1},
    {"ILL", "Proiettore LED da esterno", "20 W|30 W|50 W|100 W", "PZ", 9.80, 0.40, 1, 6, "22", 0.8},
    {"ILL", "Plafoniera LED stagna", "60 cm|120 cm|150 cm", "PZ", 12.50, 0.35, 1, 10, "22", 1.2},
    {"ILL", "Torcia LED ricaricabile", "", "PZ", 8.40, 0.00, 1, 4, "22", 0.3},
    {"IDR", "Raccordo a T in ottone", "1/2\"|3/4\"|1\"", "PZ", 1.85, 0.45, 2, 20, "22", 0.1},
    {"IDR", "Valvola a sfera", "1/2\"|3/4\"|1\"|1 1/4\"", "PZ", 4.30, 0.40, 1, 10, "22", 0.3},
    {"IDR", "Tubo multistrato", "16x2|20x2|26x3", "MT", 0.95, 0.50, 10, 100, "22", 0.15},
    {"IDR", "Rubinetto portagomma", "1/2\"|3/4\"", "PZ", 3.60, 0.30, 1, 6, "22", 0.2},
    {"IDR", "Miscelatore monocomando per lavabo", "", "PZ", 29.00, 0.00, 1, 3, "22", 1.3},
    {"IDR", "Sifone per lavello", "1 via|2 vie", "PZ", 3.90, 0.35, 1, 5, "22", 0.3},
    {"IDR", "Flessibile inox per rubinetteria", "30 cm|50 cm", "PZ", 2.20, 0.20, 2, 10, "22", 0.1},
    {"IDR", "Nastro in PTFE", "12 mm|19 mm", "PZ", 0.45, 0.30, 5, 30, "22", 0.02},
    {"VER", "Idropittura traspirante bianca", "4 l|14 l", "PZ", 11.50, 1.60, 1, 6, "22", 6.0},
    {"VER", "Smalto all'acqua", "bianco 0,75 l|nero 0,75 l|bianco 2,5 l", "PZ", 8.90, 0.10, 1, 4, "22", 1.0},
    {"VER", "Impregnante per legno", "noce 0,75 l|teak 0,75 l|incolore 2,5 l", "PZ", 7.80, 0.10, 1, 4, "22", 1.0},
    {"VER", "Pennello piatto", "30 mm|50 mm|70 mm", "PZ", 1.10, 0.35, 1, 6, "22", 0.1},
    {"VER", "Rullo per pareti", "18 cm|23 cm", "PZ", 3.40, 0.25, 1, 4, "22", 0.3},
    {"VER", "Nastro di carta per mascheratura", "25 mm|38 mm|50 mm", "PZ", 0.85, 0.30, 2, 12, "22", 0.1},
    {"VER", "Stucco in pasta", "500 g|1 kg", "PZ", 2.60, 0.60, 1, 5, "22", 0.8},
    {"VER", "Diluente sintetico", "1 l|5 l", "PZ", 2.80, 2.80, 1, 4, "22", 2.0},
    {"GIA", "Forbici da potatura", "bypass|a incudine", "PZ", 7.50, 0.10, 1, 3, "22", 0.3},
    {"GIA", "Tubo da giardino", "15 m|25 m|50 m", "PZ", 9.80, 0.55, 1, 3, "22", 2.0},
    {"GIA", "Lancia a pistola multigetto", "", "PZ", 4.90, 0.00, 1, 4, "22", 0.3},
    {"GIA", "Rastrello", "12 denti|16 denti", "PZ", 4.20, 0.20, 1, 3, "22", 0.8},
    {"GIA", "Terriccio universale", "20 l|50 l|80 l", "PZ", 2.40, 1.10, 1, 10, "22", 10.0},
    {"GIA", "Concime granulare", "1 kg|5 kg", "PZ", 3.10, 2.50, 1, 6, "10", 2.0},
    {"GIA", "Vaso in plastica", "20 cm|30 cm|40 cm", "PZ", 1.30, 0.70, 2, 12, "22", 0.4},
    {"RIS", "Legna da ardere di faggio sacco 15 kg", "", "PZ", 4.30, 0.00, 5, 40, "10", 15.0},
    {"RIS", "Pellet di abete sacco 15 kg", "", "PZ", 4.90, 0.00, 5, 70, "22", 15.0},
    {"RIS", "Accendifuoco ecologico conf. 48 pz", "", "PZ", 1.60, 0.00, 2, 12, "22", 0.4},
    {"ANT", "Guanti da lavoro in nitrile", "M|L|XL", "PZ", 1.05, 0.00, 6, 48, "22", 0.1},
    {"ANT", "Occhiali protettivi", "", "PZ", 2.30, 0.00, 1, 10, "22", 0.1},
    {"ANT", "Scarpe antinfortunistiche S3", "40|41|42|43|44|45", "PZ", 27.00, 0.00, 1, 3, "22", 1.4},
    {"ANT", "Mascherina FFP2 conf. 20 pz", "", "CF", 5.60, 0.00, 1, 6, "22", 0.2},
    {"ANT", "Cuffia antirumore", "", "PZ", 6.70, 0.00, 1, 3, "22", 0.3},
    {"ANT", "Casco da cantiere", "bianco|giallo", "PZ", 4.80, 0.00, 1, 5, "22", 0.4},
};

const Kit kKit[] = {
    {"KIT001",
     "Kit impianto elettrico base",
     "ELE",
     {{"Cavo unipolare FS17", 0, 50},
      {"Cavo unipolare FS17", 1, 25},
      {"Scatola di derivazione IP55", 0, 4},
      {"Presa schuko 16 A", 0, 6},
      {"Interruttore unipolare 10 A", 0, 4},
      {"Nastro isolante PVC 19 mm", 0, 2}}},
    {"KIT002",
     "Kit tinteggiatura stanza",
     "VER",
     {{"Idropittura traspirante bianca", 1, 1},
      {"Rullo per pareti", 1, 1},
      {"Pennello piatto", 1, 1},
      {"Nastro di carta per mascheratura", 1, 2},
      {"Stucco in pasta", 1, 1}}},
    {"KIT003",
     "Kit irrigazione orto",
     "GIA",
     {{"Tubo da giardino", 1, 1}, {"Lancia a pistola multigetto", 0, 1}, {"Rubinetto portagomma", 0, 1}}},
    {"KIT004",
     "Kit sicurezza cantiere",
     "ANT",
     {{"Guanti da lavoro in nitrile", 1, 2},
      {"Occhiali protettivi", 0, 1},
      {"Casco da cantiere", 1, 1},
      {"Cuffia antirumore", 0, 1},
      {"Mascherina FFP2 conf. 20 pz", 0, 1}}},
    {"KIT005",
     "Kit illuminazione LED casa",
     "ILL",
     {{"Lampadina LED E27", 1, 6}, {"Lampadina LED E14", 1, 4}, {"Faretto LED GU10", 0, 4}}},
    {"KIT006",
     "Kit allacciamento lavabo",
     "IDR",
     {{"Miscelatore monocomando per lavabo", 0, 1},
      {"Sifone per lavello", 0, 1},
      {"Flessibile inox per rubinetteria", 0, 2},
      {"Nastro in PTFE", 0, 1}}},
};

} // namespace

std::span<const Comune> comuni() { return kComuni; }
std::span<const char* const> cognomi() { return kCognomi; }
std::span<const char* const> nomiMaschili() { return kNomiMaschili; }
std::span<const char* const> nomiFemminili() { return kNomiFemminili; }
std::span<const char* const> vie() { return kVie; }
std::span<const char* const> vieIndustriali() { return kVieIndustriali; }
std::span<const char* const> attivitaClienti() { return kAttivitaClienti; }
std::span<const char* const> attivitaFornitori() { return kAttivitaFornitori; }
std::span<const Categoria> categorie() { return kCategorie; }
std::span<const Marca> marche() { return kMarche; }
std::span<const Modello> modelli() { return kModelli; }
std::span<const Kit> kit() { return kKit; }

} // namespace demo
