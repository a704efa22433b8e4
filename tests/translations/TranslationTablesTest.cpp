#include "Localization.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

struct Message
{
    QString source, translation, type;
};

// The messages of one table by id.
QMap<QString, Message> readTable(const QString &language)
{
    QFile file(QStringLiteral(VELTOR_TRANSLATIONS_DIR "/veltor_%1.ts").arg(language));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << language.toStdString();
    QMap<QString, Message> table;
    QXmlStreamReader xml(&file);
    QString id;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == u"message") {
            id = xml.attributes().value(QStringLiteral("id")).toString();
        } else if (xml.name() == u"source") {
            table[id].source = xml.readElementText();
        } else if (xml.name() == u"translation") {
            table[id].type = xml.attributes().value(QStringLiteral("type")).toString();
            // Counted texts keep one form per plural in child elements.
            table[id].translation = xml.readElementText(QXmlStreamReader::IncludeChildElements);
        }
    }
    EXPECT_FALSE(xml.hasError()) << language.toStdString() << ": "
                                 << xml.errorString().toStdString();
    return table;
}

QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("%(\\d|n|'?l{0,2}d|\\.\\d+f|%)"));
    QStringList found;
    for (const auto &match : pattern.globalMatch(text))
        found.append(match.captured());
    found.sort();
    // Each plural form of a counted text carries the same placeholders once.
    found.removeDuplicates();
    return found;
}

const QStringList languages{QStringLiteral("en"), QStringLiteral("de"), QStringLiteral("fr"),
                            QStringLiteral("es"), QStringLiteral("it"), QStringLiteral("ja")};

TEST(TranslationTablesTest, EveryTableIsBuiltInAndTranslatesEveryTextWithItsPlaceholders)
{
    const QMap<QString, Message> english = readTable(QStringLiteral("en"));
    ASSERT_GT(english.size(), 30);
    for (const QString &language : languages) {
        const QMap<QString, Message> table = readTable(language);
        EXPECT_EQ(table.keys(), english.keys()) << language.toStdString();
        for (auto it = table.cbegin(); it != table.cend(); ++it) {
            const std::string where = language.toStdString() + " " + it.key().toStdString();
            EXPECT_TRUE(it->type.isEmpty()) << where << " is " << it->type.toStdString();
            EXPECT_FALSE(it->translation.trimmed().isEmpty()) << where;
            EXPECT_EQ(placeholders(it->translation), placeholders(it->source)) << where;
        }
        const Localization localization{QLocale(language)};
        ASSERT_TRUE(localization.isLoaded()) << language.toStdString();
        EXPECT_EQ(qtTrId("general.done"), table[QStringLiteral("general.done")].translation)
            << language.toStdString();
    }
}

// Every text the code and the screens ask for by id is in the tables, so none shows its bare id
// because nobody ran lupdate after adding it.
TEST(TranslationTablesTest, EveryIdTheCodeAsksForIsInTheTables)
{
    const QMap<QString, Message> english = readTable(QStringLiteral("en"));
    static const QRegularExpression call(
        QStringLiteral("\\b(?:qsTrId|qtTrId|QT_TRID_NOOP|QT_TRID_N_NOOP)\\(\\s*\"([^\"]+)\""));
    int asked = 0;
    for (const char *folder : {"src", "qml"}) {
        QDirIterator files(
            QStringLiteral(VELTOR_SOURCE_DIR "/") + QLatin1String(folder),
            {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.qml")}, QDir::Files,
            QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
            const QString code = QString::fromUtf8(file.readAll());
            for (const auto &match : call.globalMatch(code)) {
                ++asked;
                EXPECT_TRUE(english.contains(match.captured(1)))
                    << match.captured(1).toStdString() << " in " << file.fileName().toStdString();
            }
        }
    }
    EXPECT_GT(asked, 200);
}

} // namespace
