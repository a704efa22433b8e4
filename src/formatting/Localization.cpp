#include "Localization.h"

#include <QCoreApplication>

Localization::Localization(const QLocale &locale)
{
    const bool loaded =
        m_translator.load(locale, QStringLiteral("veltor"), QStringLiteral("_"),
                          QStringLiteral(":/i18n")) ||
        m_translator.load(QStringLiteral("veltor_en"), QStringLiteral(":/i18n"));
    if (loaded)
        m_installed = QCoreApplication::installTranslator(&m_translator);
}

Localization::~Localization()
{
    if (m_installed)
        QCoreApplication::removeTranslator(&m_translator);
}
