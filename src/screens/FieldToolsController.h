#pragma once

#include "FixAgeController.h"
#include "GridPositionController.h"
#include "TargetController.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The field panel under the read-outs: the receiver's word on its fix, where the point lies in
// its cell and the way to the target, and the one line they fold to where the map needs room.
class ApplicationStateSystem;
class LocationTrackingSystem;
class PreferencesSystem;
class StationGridSender;
class TargetSystem;

class FieldToolsController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(GridPositionController *position READ position CONSTANT)
    Q_PROPERTY(TargetController *target READ target CONSTANT)
    Q_PROPERTY(FixAgeController *fix READ fix CONSTANT)
    // Whether an instrument is on: grid position asked for, or a target set.
    Q_PROPERTY(bool hasInstruments READ hasInstruments NOTIFY summaryChanged)
    // The folded line: the nearest edge and the way to the target.
    Q_PROPERTY(QString summaryText READ summaryText NOTIFY summaryChanged)
    Q_PROPERTY(
        QString summaryAccessibilityLabel READ summaryAccessibilityLabel NOTIFY summaryChanged)
    // Why the grid cannot reach the station's programs, said where the GPS state is.
    Q_PROPERTY(QString stationProblem READ stationProblem NOTIFY stationProblemChanged)

public:
    // Over the app's shared systems.
    explicit FieldToolsController(QObject *parent = nullptr);
    FieldToolsController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                         LocationTrackingSystem &tracking, TargetSystem &targets,
                         const StationGridSender &feed, QObject *parent = nullptr);

    GridPositionController *position() { return &m_position; }
    TargetController *target() { return &m_target; }
    FixAgeController *fix() { return &m_fix; }
    bool hasInstruments() const { return m_position.shown() || m_target.shown(); }
    QString summaryText() const;
    QString summaryAccessibilityLabel() const;
    QString stationProblem() const;

signals:
    void summaryChanged();
    void stationProblemChanged();

private:
    GridPositionController m_position;
    TargetController m_target;
    FixAgeController m_fix;
    const StationGridSender &m_feed;
};
