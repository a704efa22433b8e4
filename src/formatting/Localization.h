#pragma once

#include <QLocale>
#include <QTranslator>

// Installs the app's translation tables on the running application for as long as it lives.
// English is the fallback for a locale without its own table.
class Localization
{
public:
    explicit Localization(const QLocale &locale = QLocale());
    ~Localization();
    Localization(const Localization &) = delete;
    Localization &operator=(const Localization &) = delete;

    bool isLoaded() const { return m_installed; }

private:
    QTranslator m_translator;
    bool m_installed = false;
};
