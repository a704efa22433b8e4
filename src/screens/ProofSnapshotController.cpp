#include "ProofSnapshotController.h"

#include "ApplicationStateSystem.h"
#include "CellPosition.h"
#include "CoordinateFormatter.h"
#include "LocationTrackingSystem.h"
#include "PreferencesSystem.h"
#include "VeltorFormatter.h"

#include <QDir>
#include <QSaveFile>
#include <QStandardPaths>

#include <chrono>
#include <cmath>

namespace {

QString degreesIn(CoordinateFormat format, Coordinate c)
{
    CoordinateFormatter formatter;
    formatter.setFormat(format);
    return formatter.stringFromCoordinate(c);
}

} // namespace

ProofSnapshotController::ProofSnapshotController(QObject *parent)
    : ProofSnapshotController(
          ApplicationStateSystem::sharedSystem(), PreferencesSystem::sharedSystem(),
          &LocationTrackingSystem::sharedSystem().locationManager(),
          QDir(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation))
              .filePath(QStringLiteral("Veltor")),
          [] { return QDateTime::currentDateTimeUtc(); }, parent)
{
}

ProofSnapshotController::ProofSnapshotController(ApplicationStateSystem &state,
                                                 PreferencesSystem &preferences,
                                                 LocationManager *receiver, QString folder,
                                                 Clock clock, QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences), m_receiver(receiver),
      m_folder(std::move(folder)), m_clock(std::move(clock))
{
    using namespace std::chrono_literals;
    m_messageTimer.setSingleShot(true);
    m_messageTimer.setInterval(6s);
    connect(&m_messageTimer, &QTimer::timeout, this, [this] { say(QString()); });
}

void ProofSnapshotController::setWindow(QQuickWindow *window)
{
    if (m_window == window)
        return;
    m_window = window;
    emit windowChanged();
}


void ProofSnapshotController::say(const QString &message)
{
    m_message = message;
    emit messageChanged();
    if (!message.isEmpty())
        m_messageTimer.start();
}

QString ProofSnapshotController::report(const QDateTime &utc) const
{
    const Coordinate point = m_state.coordinate();
    QString text;
    // The record stays in English, like a log entry: it is evidence, read by whoever checks it.
    text += QStringLiteral("Veltor position record\n");
    text += QStringLiteral("Time (UTC): %1\n").arg(utc.toString(Qt::ISODate));
    text += QStringLiteral("Latitude, longitude: %1\n").arg(degreesIn(CoordinateFormat::DegreesMinutesSeconds, point));
    text += QStringLiteral("                     %1\n").arg(degreesIn(CoordinateFormat::DegreesDecimalMinutes, point));
    text += QStringLiteral("                     %1\n").arg(degreesIn(CoordinateFormat::DecimalDegrees, point));
    text += QStringLiteral("Decimal degrees: %1, %2\n")
                .arg(point.latitude, 0, 'f', 7)
                .arg(point.longitude, 0, 'f', 7);
    QStringList locators;
    for (const VeltorFormat format : {VeltorFormat::TwoCharacters, VeltorFormat::FourCharacters,
                                      VeltorFormat::SixCharacters, VeltorFormat::EightCharacters}) {
        VeltorFormatter formatter;
        formatter.setFormat(format);
        locators.append(formatter.stringFromCoordinate(point));
    }
    text += QStringLiteral("Locator: %1\n").arg(locators.join(QStringLiteral(", ")));
    const std::optional<double> accuracy = m_state.coordinateAccuracy();
    if (m_state.coordinateIsLiveTracked()) {
        text += accuracy && std::isfinite(*accuracy) && *accuracy >= 0
                    ? QStringLiteral("Source: live GPS fix, accuracy %1 m\n").arg(*accuracy, 0, 'f', 1)
                    : QStringLiteral("Source: live GPS fix, accuracy not reported\n");
        const ReceiverStatus receiver = m_receiver ? m_receiver->receiverStatus() : ReceiverStatus();
        static const char *const modes[] = {"not reported", "no fix", "fix", "2D", "3D"};
        text += QStringLiteral("Fix: %1; satellites used: %2; in view: %3\n")
                    .arg(QLatin1String(modes[receiver.fixMode]),
                         receiver.satellitesUsed >= 0 ? QString::number(receiver.satellitesUsed)
                                                      : QStringLiteral("not reported"),
                         receiver.satellitesInView >= 0 ? QString::number(receiver.satellitesInView)
                                                        : QStringLiteral("not reported"));
    } else {
        text += QStringLiteral("Source: a chosen point, not a live fix\n");
    }
    const CellPosition cell = CellPosition::of(point, m_preferences.veltorFormat());
    text += QStringLiteral("Position in %1: north edge %2 m, south edge %3 m, east edge %4 m, "
                           "west edge %5 m\n")
                .arg(cell.locator)
                .arg(cell.edge(CellPosition::North).metres, 0, 'f', 1)
                .arg(cell.edge(CellPosition::South).metres, 0, 'f', 1)
                .arg(cell.edge(CellPosition::East).metres, 0, 'f', 1)
                .arg(cell.edge(CellPosition::West).metres, 0, 'f', 1);
    text += QStringLiteral("Nearest corner: %1 m at %2°, where %3 meet\n")
                .arg(cell.cornerMetres, 0, 'f', 1)
                .arg(cell.cornerBearing, 0, 'f', 1)
                .arg(cell.cornerLocators.join(QStringLiteral(", ")));
    return text;
}

bool ProofSnapshotController::save()
{
    const QDateTime utc = m_clock().toUTC();
    const QString stem = QStringLiteral("veltor-") + utc.toString(QStringLiteral("yyyyMMdd-HHmmss")) +
                         QStringLiteral("Z");
    const QDir folder(m_folder);
    bool ok = QDir().mkpath(m_folder);
    if (ok && m_window) {
        const QImage picture = m_window->grabWindow();
        ok = !picture.isNull() && picture.save(folder.filePath(stem + QStringLiteral(".png")));
    }
    if (ok) {
        QSaveFile file(folder.filePath(stem + QStringLiteral(".txt")));
        ok = file.open(QIODevice::WriteOnly | QIODevice::Text) &&
             file.write(report(utc).toUtf8()) >= 0 && file.commit();
    }
    if (ok) {
        //: After saving a proof of position: the folder and the file name without extension
        //% "Proof saved in %1 as %2"
        say(qtTrId("proof.saved").arg(QDir::toNativeSeparators(m_folder), stem));
    } else {
        //: When a proof of position cannot be written; the folder
        //% "Cannot save the proof in %1"
        say(qtTrId("proof.failed").arg(QDir::toNativeSeparators(m_folder)));
    }
    return ok;
}
