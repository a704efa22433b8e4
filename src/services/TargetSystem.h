#pragma once

#include "Coordinate.h"

#include <QObject>

#include <optional>

class UserDefaults;

// The point the user aims at (a contest station, a summit, a beacon), kept across launches until
// cleared. A stored value that does not read back as a point on the globe means no target.
class TargetSystem : public QObject
{
    Q_OBJECT

public:
    const QString targetKey = QStringLiteral("TargetPoint");

    explicit TargetSystem(UserDefaults &defaults, QObject *parent = nullptr);
    static TargetSystem &sharedSystem();

    std::optional<Coordinate> target() const { return m_target; }
    void setTarget(std::optional<Coordinate> target);

signals:
    void targetChanged();

private:
    UserDefaults &m_defaults;
    std::optional<Coordinate> m_target;
};
