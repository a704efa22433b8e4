#pragma once

#include <QObject>
#include <QSettings>
#include <QString>
#include <QVariantMap>

#include <memory>
#include <optional>

// The key-value store behind settings and the last point. Values written here are kept in
// memory at once; synchronize() writes them to the file and reports a store that cannot be
// written without losing what is in memory. Registered defaults live in memory only. A file that
// does not read back whole (a typo hides every key after it) is copied aside as FILE.bad before
// anything can be written over it, and readProblem() says so.
class UserDefaults : public QObject
{
    Q_OBJECT

public:
    // The platform's usual place for the app's settings.
    explicit UserDefaults(QObject *parent = nullptr);
    // A settings file of the caller's choice (tests, --settings).
    explicit UserDefaults(const QString &fileName, QObject *parent = nullptr);
    ~UserDefaults() override;

    // The store shared by the whole app; its file can be chosen once, before first use.
    static UserDefaults &standardUserDefaults();
    static bool setStandardFileName(const QString &fileName);

    void registerDefaults(const QVariantMap &defaults);

    // Text for a stored string or number; none for anything else.
    std::optional<QString> stringForKey(const QString &key) const;
    // True for a stored true, "true"/"yes"/"1" or a non-zero number; false otherwise.
    bool boolForKey(const QString &key) const;
    // A stored finite number; a registered default or 0 when the stored value is not one.
    double doubleForKey(const QString &key) const;

    void setObject(const QVariant &value, const QString &key);
    void setBool(bool value, const QString &key);
    void setDouble(double value, const QString &key);
    void removeObject(const QString &key);

    // Writes pending changes to the file. On failure the values stay in memory and
    // storeFailed() says why.
    bool synchronize();

    QString fileName() const;

    // What was wrong with the file when it was read, in the user's language; none if nothing.
    std::optional<QString> readProblem() const { return m_readProblem; }

signals:
    void storeFailed(const QString &message);

private:
    QVariant value(const QString &key) const;
    void checkReadsBackWhole();

    std::unique_ptr<QSettings> m_settings;
    QVariantMap m_registeredDefaults;
    QSettings::Status m_lastStatus = QSettings::NoError;
    std::optional<QString> m_readProblem;
};
