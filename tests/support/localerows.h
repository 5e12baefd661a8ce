#pragma once
// Data rows that run once under an English and once under an Italian process
// locale, with the same expected result: numbers and dates never depend on
// the machine's locale.

#include <QLocale>
#include <QString>
#include <QtTest>

#include <clocale>

namespace localerows {

const char* const Locales[] = {"en_US", "it_IT"};

class ProcessLocale
{
public:
    explicit ProcessLocale(const QString& name)
    {
        const bool italian = name == QLatin1String("it_IT");
        QLocale::setDefault(italian ? QLocale(QLocale::Italian, QLocale::Italy)
                                    : QLocale(QLocale::English, QLocale::UnitedStates));
        // The C locales may not be installed; the Qt default alone then.
        static const char* const italianNames[] = {"it_IT.UTF-8", "it_IT.utf8", "it_IT", nullptr};
        static const char* const englishNames[] = {"en_US.UTF-8", "en_US.utf8", "C", nullptr};
        for (const char* const* c = italian ? italianNames : englishNames; *c && !std::setlocale(LC_ALL, *c); ++c) { }
    }

    ~ProcessLocale()
    {
        QLocale::setDefault(QLocale::c());
        std::setlocale(LC_ALL, "C");
    }
};

template <typename... Values> void addRows(const char* name, const Values&... values)
{
    for (const char* locale : Locales) {
        QTestData& row = QTest::addRow("%s [%s]", name, locale);
        row << QString::fromLatin1(locale);
        (row << ... << values);
    }
}

#define LOCALE_SCOPE                                                                                                   \
    QFETCH(QString, locale);                                                                                           \
    const ProcessLocale scope(locale)

} // namespace localerows

using localerows::addRows;
using localerows::ProcessLocale;
