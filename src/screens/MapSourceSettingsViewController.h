#pragma once

#include "FormatPickerViewController.h"
#include "MapSource.h"
#include "MbtilesCheck.h"

#include <QtQml/qqmlregistration.h>

#include <memory>

// Where the map comes from: the offline basemap, OpenStreetMap, OpenTopoMap, an MBTiles file or
// a custom tile server. The file and the server need a path or a URL template first: tapping
// their row without one asks for it, and the choice is written once the field holds one that
// works.
class MapSourceSettingsViewController : public FormatPickerViewController
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString mbtilesPath READ mbtilesPath NOTIFY fieldsChanged)
    Q_PROPERTY(QString mbtilesError READ mbtilesError NOTIFY fieldsChanged)
    // While a file is checked before it is kept: says so.
    Q_PROPERTY(QString mbtilesNote READ mbtilesNote NOTIFY fieldsChanged)
    Q_PROPERTY(QString customTemplate READ customTemplate NOTIFY fieldsChanged)
    Q_PROPERTY(QString customTemplateError READ customTemplateError NOTIFY fieldsChanged)
    Q_PROPERTY(QString customAttribution READ customAttribution NOTIFY fieldsChanged)
    Q_PROPERTY(QString note READ note NOTIFY fieldsChanged)

public:
    // Over the app's shared preferences.
    explicit MapSourceSettingsViewController(QObject *parent = nullptr);
    explicit MapSourceSettingsViewController(PreferencesSystem &preferences,
                                             QObject *parent = nullptr);

    QString mbtilesPath() const { return m_source.path; }
    QString mbtilesError() const { return m_mbtilesError; }
    QString mbtilesNote() const;
    QString customTemplate() const { return m_source.urlTemplate; }
    QString customTemplateError() const { return m_templateError; }
    QString customAttribution() const { return m_source.attribution; }
    // What the chosen source is and asks for: where it works, its credit, its usage rules.
    QString note() const;

    // Each writes the field and chooses its source when the value works; says why not otherwise.
    Q_INVOKABLE void setMbtilesPath(const QString &path);
    Q_INVOKABLE void setCustomTemplate(const QString &urlTemplate);
    Q_INVOKABLE void setCustomAttribution(const QString &attribution);

signals:
    void fieldsChanged();
    // A path given has been checked, and kept or refused.
    void mbtilesChecked();

private:
    void fill(int row, FormatChoice &choice) const override;
    void write(int row) override;
    void store(const MapSource &source);

    MapSource m_source;
    QString m_mbtilesError;
    // The file being checked; a newer path lets an older check go.
    QString m_checkingPath;
    std::unique_ptr<MbtilesCheck> m_check;
    QString m_templateError;
};
