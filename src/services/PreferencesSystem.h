#pragma once

#include "Appearance.h"
#include "CoordinateFormat.h"
#include "DistanceFormat.h"
#include "FixWait.h"
#include "MapSource.h"
#include "VeltorFormat.h"

#include <QLatin1StringView>
#include <QLocale>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

class QJSEngine;
class QQmlEngine;
class NotificationCenter;
class UserDefaults;

// Posted, with the PreferencesSystem as object, after each write of the matching setting.
inline constexpr QLatin1StringView PreferencesSystemVeltorFormatDidChangeNotification{
    "PreferencesSystemVeltorFormatDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemCoordinateFormatDidChangeNotification{
    "PreferencesSystemCoordinateFormatDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemDistanceFormatDidChangeNotification{
    "PreferencesSystemDistanceFormatDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemShowGridDidChangeNotification{
    "PreferencesSystemShowGridDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemGridPositionDidChangeNotification{
    "PreferencesSystemGridPositionDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemCrossingAlertDidChangeNotification{
    "PreferencesSystemCrossingAlertDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemGpsSourceDidChangeNotification{
    "PreferencesSystemGpsSourceDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemStationGridDidChangeNotification{
    "PreferencesSystemStationGridDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemFixWaitDidChangeNotification{
    "PreferencesSystemFixWaitDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemAppearanceDidChangeNotification{
    "PreferencesSystemAppearanceDidChangeNotification"};
inline constexpr QLatin1StringView PreferencesSystemMapSourceDidChangeNotification{
    "PreferencesSystemMapSourceDidChangeNotification"};

// The user settings. Every read goes to the store, so a value is current even if the store
// was written elsewhere; every write stores, synchronises and posts its notification, even when
// the value does not change, and emits the property's signal with it, so QML binds to a
// setting as C++ observes it. Only the grid flag and spoken crossings have registered defaults:
// nothing is written until the user changes a setting.
class PreferencesSystem : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(VeltorFormats::VeltorFormat veltorFormat READ veltorFormat WRITE setVeltorFormat
                   NOTIFY veltorFormatChanged)
    Q_PROPERTY(CoordinateFormats::CoordinateFormat coordinateFormat READ coordinateFormat WRITE
                   setCoordinateFormat NOTIFY coordinateFormatChanged)
    Q_PROPERTY(DistanceFormats::DistanceFormat distanceFormat READ distanceFormat WRITE
                   setDistanceFormat NOTIFY distanceFormatChanged)
    Q_PROPERTY(bool showGrid READ showGrid WRITE setShowGrid NOTIFY showGridChanged)
    Q_PROPERTY(bool showGridPosition READ showGridPosition WRITE setShowGridPosition NOTIFY
                   showGridPositionChanged)
    // The locator characters at which crossings are announced: 0 (off), 4 or 6.
    Q_PROPERTY(int crossingAlertCharacters READ crossingAlertCharacters WRITE
                   setCrossingAlertCharacters NOTIFY crossingAlertChanged)
    Q_PROPERTY(bool speakCrossings READ speakCrossings WRITE setSpeakCrossings NOTIFY
                   speakCrossingsChanged)
    Q_PROPERTY(QString gpsSource READ gpsSource WRITE setGpsSource NOTIFY gpsSourceChanged)
    Q_PROPERTY(FixWaits::FixWait fixWait READ fixWait WRITE setFixWait NOTIFY fixWaitChanged)
    Q_PROPERTY(bool sendGridToWsjtx READ sendGridToWsjtx WRITE setSendGridToWsjtx NOTIFY
                   sendGridToWsjtxChanged)
    Q_PROPERTY(
        QString wsjtxAddress READ wsjtxAddress WRITE setWsjtxAddress NOTIFY wsjtxAddressChanged)
    Q_PROPERTY(bool sendGridToJs8Call READ sendGridToJs8Call WRITE setSendGridToJs8Call NOTIFY
                   sendGridToJs8CallChanged)
    Q_PROPERTY(QString js8CallAddress READ js8CallAddress WRITE setJs8CallAddress NOTIFY
                   js8CallAddressChanged)
    Q_PROPERTY(Appearances::Appearance appearance READ appearance WRITE setAppearance NOTIFY
                   appearanceChanged)
    Q_PROPERTY(MapSource mapSource READ mapSource WRITE setMapSource NOTIFY mapSourceChanged)

public:
    const QString veltorFormatKey = QStringLiteral("VeltorFormatPreference");
    const QString coordinateFormatKey = QStringLiteral("CoordinateFormatPreference");
    const QString distanceFormatKey = QStringLiteral("DistanceFormatPreference");
    const QString showGridKey = QStringLiteral("ShowGridPreference");
    const QString appearanceKey = QStringLiteral("AppearancePreference");
    const QString gridPositionKey = QStringLiteral("GridPositionPreference");
    const QString crossingAlertKey = QStringLiteral("CrossingAlertPreference");
    const QString speakCrossingsKey = QStringLiteral("SpeakCrossingsPreference");
    const QString gpsSourceKey = QStringLiteral("GpsSourcePreference");
    const QString fixWaitKey = QStringLiteral("FixWaitPreference");
    const QString wsjtxKey = QStringLiteral("WsjtxPreference");
    const QString wsjtxAddressKey = QStringLiteral("WsjtxAddressPreference");
    const QString js8CallKey = QStringLiteral("Js8CallPreference");
    const QString js8CallAddressKey = QStringLiteral("Js8CallAddressPreference");

    // Where WSJT-X sends its datagrams unless told otherwise, and where JS8Call's TCP API listens.
    static constexpr QLatin1StringView defaultWsjtxAddress{"127.0.0.1:2237"};
    static constexpr QLatin1StringView defaultJs8CallAddress{"127.0.0.1:2442"};

    PreferencesSystem(UserDefaults &defaults, NotificationCenter &notificationCenter,
                      const QLocale &locale = QLocale());

    static PreferencesSystem &sharedSystem();
    // The shared system as QML's singleton; the engine never owns it.
    static PreferencesSystem *create(QQmlEngine *, QJSEngine *);

    VeltorFormat veltorFormat() const;
    void setVeltorFormat(VeltorFormat format);
    CoordinateFormat coordinateFormat() const;
    void setCoordinateFormat(CoordinateFormat format);
    DistanceFormat distanceFormat() const;
    void setDistanceFormat(DistanceFormat format);
    bool showGrid() const;
    void setShowGrid(bool show);
    // The strip that tells how far the cell's edges are; off until the user turns it on.
    bool showGridPosition() const;
    void setShowGridPosition(bool show);
    // The precision at which entering another cell is announced: none (off) until the user
    // chooses 4 or 6 characters.
    std::optional<VeltorFormat> crossingAlert() const;
    void setCrossingAlert(std::optional<VeltorFormat> precision);
    int crossingAlertCharacters() const;
    void setCrossingAlertCharacters(int characters);
    // Whether a crossing is also spoken; on until the user turns it off.
    bool speakCrossings() const;
    void setSpeakCrossings(bool speak);
    // The GPS source (as GpsSource reads it: "gpsd", "gpsd://HOST:PORT", a device...) when the
    // command line names none; empty for the platform's positioning service.
    QString gpsSource() const;
    void setGpsSource(const QString &source);
    // How long tracking waits for a fix; a quarter of an hour until the user chooses.
    FixWait fixWait() const;
    void setFixWait(FixWait wait);
    // Sending the live grid to WSJT-X and to JS8Call: off until the user turns it on.
    bool sendGridToWsjtx() const;
    void setSendGridToWsjtx(bool send);
    // HOST:PORT, the UDP port or multicast group WSJT-X instances send their heartbeats to.
    QString wsjtxAddress() const;
    void setWsjtxAddress(const QString &address);
    bool sendGridToJs8Call() const;
    void setSendGridToJs8Call(bool send);
    // HOST:PORT of JS8Call's TCP API.
    QString js8CallAddress() const;
    void setJs8CallAddress(const QString &address);
    // Day until the user chooses; the command line may ask for another for one run, which
    // stands until the user chooses.
    Appearance appearance() const;
    void setAppearance(Appearance appearance);
    void holdAppearanceForThisRun(Appearance appearance);
    // Where the map's tiles come from (see MapSource).
    MapSource mapSource() const;
    void setMapSource(const MapSource &source);

    UserDefaults &defaults() const { return m_defaults; }
    NotificationCenter &notificationCenter() const { return m_notificationCenter; }

signals:
    void veltorFormatChanged();
    void coordinateFormatChanged();
    void distanceFormatChanged();
    void showGridChanged();
    void showGridPositionChanged();
    void crossingAlertChanged();
    void speakCrossingsChanged();
    void gpsSourceChanged();
    void fixWaitChanged();
    void sendGridToWsjtxChanged();
    void wsjtxAddressChanged();
    void sendGridToJs8CallChanged();
    void js8CallAddressChanged();
    void appearanceChanged();
    void mapSourceChanged();

private:
    using Signal = void (PreferencesSystem::*)();
    // Synchronises the store, posts the notification and emits the signal of one write.
    void announce(QLatin1StringView notification, Signal changed);
    void writeString(QStringView raw, const QString &key, QLatin1StringView notification,
                     Signal changed);
    void writeBool(bool value, const QString &key, QLatin1StringView notification, Signal changed);

    UserDefaults &m_defaults;
    NotificationCenter &m_notificationCenter;
    QLocale m_locale;
    std::optional<Appearance> m_appearanceForThisRun;
};
