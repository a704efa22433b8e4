#include "KeepAreaController.h"

#include "ApplicationStateSystem.h"
#include "MapSource.h"
#include "MapView.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"
#include "VeltorFormatter.h"

#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>

namespace {

// The download limits of the service a saved job came from: a preset's own, else a custom
// server's.
MapSource::DownloadLimits limitsFor(const QString &urlTemplate)
{
    for (const MapSource::Kind kind :
         {MapSource::Kind::OpenStreetMap, MapSource::Kind::OpenTopoMap}) {
        const MapSource preset{kind, {}, {}, {}};
        if (preset.tileTemplate() == urlTemplate)
            return *preset.downloadLimits();
    }
    return *MapSource{MapSource::Kind::Custom, {}, urlTemplate, {}}.downloadLimits();
}

QString areasFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/areas");
}

} // namespace

KeepAreaController::KeepAreaController(QObject *parent)
    : KeepAreaController(ApplicationStateSystem::sharedSystem(), PreferencesSystem::sharedSystem(),
                         areasFolder(), std::make_unique<TileAreaDownloader>(), parent)
{
}

KeepAreaController::KeepAreaController(ApplicationStateSystem &state,
                                       PreferencesSystem &preferences, const QString &folder,
                                       std::unique_ptr<TileAreaDownloader> downloader,
                                       QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences), m_folder(folder),
      m_downloader(std::move(downloader))
{
    connect(m_downloader.get(), &TileAreaDownloader::progress, this, &KeepAreaController::changed);
    connect(m_downloader.get(), &TileAreaDownloader::finished, this, &KeepAreaController::finished);
    if (const auto limits = m_preferences.mapSource().downloadLimits())
        m_maxZoom = std::min(m_maxZoom, limits->maxZoomLevel);
}

KeepAreaController::~KeepAreaController()
{
    // What arrived stays in the file, and the download can be resumed next time.
    m_downloader->disconnect(this);
    m_downloader->cancel();
}

void KeepAreaController::setMap(MapView *map)
{
    if (map == m_map)
        return;
    m_map = map;
    if (m_map) {
        // From what the map shows now to three levels closer, as far as the service allows.
        const int limit = policy().maxZoomLevel > 0 ? policy().maxZoomLevel : mapMaxZoomLevel;
        m_minZoom = std::clamp(int(std::floor(m_map->zoomLevel())), mapMinZoomLevel, limit);
        m_maxZoom = std::min(m_minZoom + 3, limit);
    }
    emit changed();
}

QString KeepAreaController::nearAreaTitle()
{
    //: Keep the map within this many kilometres of the point
    //% "%L1 km Around the Point"
    return qtTrId("keep-area.radius").arg(nearRadiusKm);
}

QString KeepAreaController::wideAreaTitle()
{
    return qtTrId("keep-area.radius").arg(wideRadiusKm);
}

QString KeepAreaController::stepLabel(bool first, int delta)
{
    if (delta < 0) {
        //: Spoken: the button that lowers the first or the last zoom level by one
        //% "%1, one level lower"
        return qtTrId("keep-area.step-down").arg(first ? fromTitle() : toTitle());
    }
    //: Spoken: the button that raises the first or the last zoom level by one
    //% "%1, one level higher"
    return qtTrId("keep-area.step-up").arg(first ? fromTitle() : toTitle());
}

QString KeepAreaController::fromTitle()
{
    //: The first zoom level kept
    //% "First level"
    return qtTrId("keep-area.from");
}

QString KeepAreaController::toTitle()
{
    //: The last zoom level kept
    //% "Last level"
    return qtTrId("keep-area.to");
}

void KeepAreaController::setArea(int area)
{
    if (area == m_area || area < VisibleArea || area > WideArea)
        return;
    m_area = area;
    emit changed();
}

QString KeepAreaController::zoomText() const
{
    //: The zoom levels kept, first and last (0 is the whole world, 16 shows streets)
    //% "Zoom levels %1 to %2"
    return qtTrId("keep-area.zoom").arg(m_minZoom).arg(m_maxZoom);
}

TileAreaDownloader::Policy KeepAreaController::policy() const
{
    TileAreaDownloader::Policy result;
    if (const auto limits = m_preferences.mapSource().downloadLimits()) {
        result.maxZoomLevel = limits->maxZoomLevel;
        result.maxTiles = limits->maxTiles;
    }
    return result;
}

TileAreaDownloader::Job KeepAreaController::job() const
{
    const MapSource source = m_preferences.mapSource();
    TileAreaDownloader::Job job;
    job.urlTemplate = source.tileTemplate();
    job.attribution = source.credit();
    job.minZoomLevel = m_minZoom;
    job.maxZoomLevel = m_maxZoom;
    const Coordinate point = m_state.coordinate();
    if (m_area == VisibleArea && m_map)
        job.area = m_map->visibleMapRect();
    else
        job.area =
            TileAreaDownloader::areaAround(point, m_area == WideArea ? wideRadiusKm : nearRadiusKm);
    VeltorFormatter formatter;
    formatter.setFormat(VeltorFormat::SixCharacters);
    //: Name of a kept area, after the locator of the point it was kept around
    //% "Area at %1"
    job.name = qtTrId("keep-area.name").arg(formatter.stringFromCoordinate(point));
    return job;
}

QString KeepAreaController::planText() const
{
    if (!m_preferences.mapSource().isOnline())
        return {};
    const TileAreaDownloader::Plan plan = TileAreaDownloader::plan(job(), policy());
    const QLocale locale;
    //: What a download would take: tiles, and megabytes with one decimal
    //% "%1 tiles, about %2 MB"
    return qtTrId("keep-area.plan")
        .arg(locale.toString(plan.totalTiles),
             locale.toString(std::max(0.1, double(plan.estimatedBytes) / 1e6), 'f', 1));
}

QString KeepAreaController::policyText() const
{
    const MapSource source = m_preferences.mapSource();
    if (!source.isOnline()) {
        //: On the keep-area screen when the map is not drawn from the network
        //% "Choose OpenStreetMap, OpenTopoMap or your own tile server under Settings › Map source "
        //% "to keep an area of it. The offline basemap and map files need no download."
        return qtTrId("keep-area.needs-online");
    }
    const TileAreaDownloader::Plan plan = TileAreaDownloader::plan(job(), policy());
    if (!plan.allowed())
        return plan.refusal;
    if (source.kind == MapSource::Kind::Custom)
        return {};
    const auto limits = source.downloadLimits();
    //: The service's own rule for downloads; %1 its name, %2 a zoom level, %3 a tile count
    //% "%1 allows keeping only small areas: zoom levels up to %2 and %3 tiles at a time."
    return qtTrId("keep-area.policy")
        .arg(MapSource::name(source.kind))
        .arg(limits->maxZoomLevel)
        .arg(QLocale().toString(limits->maxTiles));
}

bool KeepAreaController::canStart() const
{
    if (running() || !m_preferences.mapSource().isOnline())
        return false;
    const TileAreaDownloader::Plan plan = TileAreaDownloader::plan(job(), policy());
    return plan.allowed() && plan.totalTiles > 0;
}

double KeepAreaController::progress() const
{
    const qint64 total = m_downloader->totalCount();
    return total > 0
               ? double(m_downloader->doneCount() + m_downloader->failedCount()) / double(total)
               : 0.0;
}

QString KeepAreaController::progressText() const
{
    if (m_downloader->totalCount() == 0)
        return {};
    const QLocale locale;
    //: Download progress: tiles kept so far of all of them
    //% "%1 of %2 tiles"
    QString text = qtTrId("keep-area.progress")
                       .arg(locale.toString(m_downloader->doneCount()),
                            locale.toString(m_downloader->totalCount()));
    if (m_downloader->failedCount() > 0) {
        //: Added to the progress: tiles the server did not give
        //% "%1 · %2 failed"
        text = qtTrId("keep-area.progress-failed")
                   .arg(text, locale.toString(m_downloader->failedCount()));
    }
    return text;
}

bool KeepAreaController::canResume() const
{
    return !running() && !m_preferences.defaults()
                              .stringForKey(QString(unfinishedKey))
                              .value_or(QString())
                              .isEmpty();
}

void KeepAreaController::stepMinZoom(int delta)
{
    m_minZoom = std::clamp(m_minZoom + delta, mapMinZoomLevel, m_maxZoom);
    emit changed();
}

void KeepAreaController::stepMaxZoom(int delta)
{
    const int limit = policy().maxZoomLevel > 0 ? policy().maxZoomLevel : mapMaxZoomLevel;
    m_maxZoom = std::clamp(m_maxZoom + delta, m_minZoom, limit);
    emit changed();
}

void KeepAreaController::begin(const QString &path, const TileAreaDownloader::Job &job)
{
    const MapSource::DownloadLimits limits = limitsFor(job.urlTemplate);
    TileAreaDownloader::Policy policy;
    policy.maxZoomLevel = limits.maxZoomLevel;
    policy.maxTiles = limits.maxTiles;
    m_message.clear();
    if (!m_downloader->start(path, job, policy)) {
        m_message = m_downloader->errorString();
    } else {
        m_preferences.defaults().setObject(path, QString(unfinishedKey));
        m_preferences.defaults().synchronize();
    }
    emit changed();
}

void KeepAreaController::start()
{
    if (!canStart())
        return;
    QDir().mkpath(m_folder);
    const QString name =
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    begin(m_folder + QStringLiteral("/area-") + name + QStringLiteral(".mbtiles"), job());
}

void KeepAreaController::resume()
{
    if (!canResume())
        return;
    const QString path =
        m_preferences.defaults().stringForKey(QString(unfinishedKey)).value_or(QString());
    QString error;
    if (const auto saved = TileAreaDownloader::savedJob(path, &error)) {
        begin(path, *saved);
        return;
    }
    // Nothing left to resume: say why once, and forget it.
    m_preferences.defaults().setObject(QString(), QString(unfinishedKey));
    m_preferences.defaults().synchronize();
    m_message = error;
    emit changed();
}

void KeepAreaController::cancel()
{
    m_downloader->cancel();
}

void KeepAreaController::finished(bool ok, const QString &message)
{
    m_message = message;
    if (ok) {
        m_preferences.defaults().setObject(QString(), QString(unfinishedKey));
        MapSource source = m_preferences.mapSource();
        source.kind = MapSource::Kind::Mbtiles;
        source.path = m_downloader->outputPath();
        m_preferences.setMapSource(source);
        //: After a finished download, which the map then shows
        //% "%1 The map now shows the kept area, with the basemap around it; Settings › Map source "
        //% "goes back to the online map."
        m_message = qtTrId("keep-area.done").arg(message);
    }
    emit changed();
}
