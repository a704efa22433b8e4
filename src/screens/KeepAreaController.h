#pragma once

#include "MapView.h"
#include "TileAreaDownloader.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;

// Keeps an area of the online map for the field: the visible area or a radius around the point,
// the zoom levels chosen with the tiles and megabytes that takes shown first, and the service's
// own limits said plainly. Then a progress bar and Cancel; a download cut short, by Cancel or by
// closing the app, can be resumed later. The finished file becomes the map's source, with the
// basemap around it.
class KeepAreaController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MapView *map READ map WRITE setMap NOTIFY changed)
    Q_PROPERTY(QString nearAreaTitle READ nearAreaTitle CONSTANT)
    Q_PROPERTY(QString wideAreaTitle READ wideAreaTitle CONSTANT)
    Q_PROPERTY(int area READ area WRITE setArea NOTIFY changed)
    Q_PROPERTY(QString zoomText READ zoomText NOTIFY changed)
    Q_PROPERTY(QString planText READ planText NOTIFY changed)
    Q_PROPERTY(QString policyText READ policyText NOTIFY changed)
    Q_PROPERTY(bool canStart READ canStart NOTIFY changed)
    Q_PROPERTY(bool running READ running NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    Q_PROPERTY(QString progressText READ progressText NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool canResume READ canResume NOTIFY changed)

public:
    enum Area
    {
        VisibleArea,
        NearArea, // nearRadiusKm around the point
        WideArea  // wideRadiusKm around the point
    };
    Q_ENUM(Area)
    static constexpr double nearRadiusKm = 5.0;
    static constexpr double wideRadiusKm = 25.0;
    // Where an unfinished download is remembered, to resume it after a restart.
    static constexpr QLatin1StringView unfinishedKey{"KeepAreaUnfinishedPreference"};

    // Over the app's shared systems, keeping areas in the app's data folder.
    explicit KeepAreaController(QObject *parent = nullptr);
    KeepAreaController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                       const QString &folder, std::unique_ptr<TileAreaDownloader> downloader,
                       QObject *parent = nullptr);
    ~KeepAreaController() override;

    MapView *map() const { return m_map; }
    void setMap(MapView *map);

    static QString nearAreaTitle();
    static QString wideAreaTitle();
    // What a screen reader says for the buttons that move the first or the last level.
    Q_INVOKABLE static QString stepLabel(bool first, int delta);
    static QString fromTitle();
    static QString toTitle();

    int area() const { return m_area; }
    void setArea(int area);
    int minZoomLevel() const { return m_minZoom; }
    int maxZoomLevel() const { return m_maxZoom; }
    QString zoomText() const;
    QString planText() const;
    QString policyText() const;
    bool canStart() const;
    bool running() const { return m_downloader->isRunning(); }
    double progress() const;
    QString progressText() const;
    QString message() const { return m_message; }
    bool canResume() const;
    // What the current choices would fetch; for tests.
    TileAreaDownloader::Job job() const;

    // Moves the first or the last zoom level by one, keeping first ≤ last within the service's.
    Q_INVOKABLE void stepMinZoom(int delta);
    Q_INVOKABLE void stepMaxZoom(int delta);
    Q_INVOKABLE void start();
    Q_INVOKABLE void resume();
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void close() { emit dismissRequested(); }

signals:
    void changed();
    void dismissRequested();

private:
    TileAreaDownloader::Policy policy() const;
    void finished(bool ok, const QString &message);
    void begin(const QString &path, const TileAreaDownloader::Job &job);

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    const QString m_folder;
    std::unique_ptr<TileAreaDownloader> m_downloader;
    QPointer<MapView> m_map;
    int m_area = VisibleArea;
    int m_minZoom = 10;
    int m_maxZoom = 14;
    QString m_message;
};
