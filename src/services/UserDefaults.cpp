#include "UserDefaults.h"

#include "DoubleValue.h"
#include "NumberVariant.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>

#include <cmath>

namespace {

QString &standardFileName()
{
    static QString fileName;
    return fileName;
}

bool &standardCreated()
{
    static bool created = false;
    return created;
}

// A number written as text fills the whole text ("47.62", " -1e3"), and is finite.
std::optional<double> numberFromText(const QString &text)
{
    const QByteArray ascii = text.trimmed().toLatin1();
    const std::string_view view(ascii.constData(), std::size_t(ascii.size()));
    if (view.empty() || numericPrefixLength(view) != view.size())
        return std::nullopt;
    const double value = doubleValue(view);
    return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

std::optional<double> numberFromValue(const QVariant &value)
{
    if (holdsNumber(value)) {
        const double number = value.toDouble();
        return std::isfinite(number) ? std::optional<double>(number) : std::nullopt;
    }
    if (value.metaType().id() == QMetaType::QString)
        return numberFromText(value.toString());
    return std::nullopt;
}

// Whether every line of an INI text is one that QSettings reads in full, and each key it holds is
// among those QSettings found: an unclosed quote or section header makes it skip the rest.
bool readsBackWhole(const QByteArray &bytes, const QStringList &keys)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    if (utf8.hasError())
        return false;
    static const QRegularExpression plainKey(QStringLiteral("^[A-Za-z0-9_.-]+$"));
    QString section;
    for (const QString &raw : text.split(u'\n')) {
        const QString line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            if (!line.endsWith(u']'))
                return false;
            section = line.mid(1, line.size() - 2);
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0)
            return false;
        const QString key = line.left(equals).trimmed();
        // Keys in QSettings' own escaped form, or none, are left to it.
        if (!plainKey.match(key).hasMatch())
            continue;
        const QString path = section.isEmpty() || section == u"General"
                                 ? key
                                 : section + u'/' + key;
        if (!keys.contains(path))
            return false;
    }
    return true;
}

} // namespace

UserDefaults::UserDefaults(QObject *parent)
    : QObject(parent),
      m_settings(std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                             QCoreApplication::organizationName().isEmpty()
                                                 ? QStringLiteral("Veltor")
                                                 : QCoreApplication::organizationName(),
                                             QStringLiteral("Veltor")))
{
    checkReadsBackWhole();
}

UserDefaults::UserDefaults(const QString &fileName, QObject *parent)
    : QObject(parent), m_settings(std::make_unique<QSettings>(fileName, QSettings::IniFormat))
{
    checkReadsBackWhole();
}

void UserDefaults::checkReadsBackWhole()
{
    QFile file(m_settings->fileName());
    if (!file.exists() || !file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.readAll();
    file.close();
    if (m_settings->status() != QSettings::FormatError &&
        readsBackWhole(bytes, m_settings->allKeys()))
        return;
    // The next write would make the loss final: keep what was there first.
    const QString aside = m_settings->fileName() + QStringLiteral(".bad");
    QFile::remove(aside);
    QFile copy(aside);
    const bool kept = copy.open(QIODevice::WriteOnly) && copy.write(bytes) == bytes.size();
    copy.close();
    m_readProblem =
        kept ?
             //: Shown once when the settings file has a part that cannot be read; %1 the file,
             //: %2 the copy
             //% "Part of the settings file %1 could not be read, and those settings are back to their defaults. The file as it was is kept as %2."
             qtTrId("settings.error.unreadable").arg(m_settings->fileName(), aside)
             :
             //: Shown once when the settings file has a part that cannot be read and no copy
             //: of it could be made; %1 the file
             //% "Part of the settings file %1 could not be read, and those settings are back to their defaults."
             qtTrId("settings.error.unreadable-not-kept").arg(m_settings->fileName());
}

UserDefaults::~UserDefaults() = default;

bool UserDefaults::setStandardFileName(const QString &fileName)
{
    if (standardCreated())
        return false;
    standardFileName() = fileName;
    return true;
}

UserDefaults &UserDefaults::standardUserDefaults()
{
    // Created on first use and kept for the whole run, like every shared system.
    static UserDefaults *const instance = [] {
        standardCreated() = true;
        return standardFileName().isEmpty() ? new UserDefaults
                                            : new UserDefaults(standardFileName());
    }();
    return *instance;
}

void UserDefaults::registerDefaults(const QVariantMap &defaults)
{
    for (auto it = defaults.cbegin(); it != defaults.cend(); ++it)
        m_registeredDefaults.insert(it.key(), it.value());
}

QVariant UserDefaults::value(const QString &key) const
{
    const QVariant stored = m_settings->value(key);
    return stored.isValid() ? stored : m_registeredDefaults.value(key);
}

std::optional<QString> UserDefaults::stringForKey(const QString &key) const
{
    const QVariant v = value(key);
    if (v.metaType().id() == QMetaType::QString)
        return v.toString();
    if (holdsNumber(v))
        return v.toString();
    return std::nullopt;
}

bool UserDefaults::boolForKey(const QString &key) const
{
    const QVariant v = value(key);
    if (v.metaType().id() == QMetaType::Bool)
        return v.toBool();
    if (holdsNumber(v))
        return v.toDouble() != 0.0;
    if (v.metaType().id() == QMetaType::QString) {
        const QString text = v.toString().trimmed();
        if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 ||
            text.compare(QLatin1String("yes"), Qt::CaseInsensitive) == 0)
            return true;
        const auto number = numberFromText(text);
        return number && *number != 0.0;
    }
    return false;
}

double UserDefaults::doubleForKey(const QString &key) const
{
    if (const auto stored = numberFromValue(m_settings->value(key)))
        return *stored;
    return numberFromValue(m_registeredDefaults.value(key)).value_or(0.0);
}

void UserDefaults::setObject(const QVariant &value, const QString &key)
{
    m_settings->setValue(key, value);
}

void UserDefaults::setBool(bool value, const QString &key)
{
    m_settings->setValue(key, value);
}

void UserDefaults::setDouble(double value, const QString &key)
{
    m_settings->setValue(key, value);
}

void UserDefaults::removeObject(const QString &key)
{
    m_settings->remove(key);
}

bool UserDefaults::synchronize()
{
    m_settings->sync();
    const QSettings::Status status = m_settings->status();
    // A file that could not be parsed is replaced by the next good write; only a failed write
    // means that changes may be lost.
    if (status == QSettings::AccessError) {
        if (m_lastStatus != QSettings::AccessError)
            //: Shown when the settings file cannot be written (read-only or full disk)
            //% "Settings cannot be saved to %1. Changes last until Veltor closes."
            emit storeFailed(qtTrId("settings.error.not-saved").arg(m_settings->fileName()));
        m_lastStatus = status;
        return false;
    }
    m_lastStatus = status;
    return true;
}

QString UserDefaults::fileName() const
{
    return m_settings->fileName();
}
