#include "TargetSystem.h"

#include "UserDefaults.h"

#include <QStringList>

TargetSystem::TargetSystem(UserDefaults &defaults, QObject *parent)
    : QObject(parent), m_defaults(defaults)
{
    const auto stored = m_defaults.stringForKey(targetKey);
    const QStringList parts = stored ? stored->split(u',') : QStringList();
    if (parts.size() == 2) {
        bool latitudeOk = false;
        bool longitudeOk = false;
        const Coordinate target{parts[0].toDouble(&latitudeOk), parts[1].toDouble(&longitudeOk)};
        if (latitudeOk && longitudeOk && isValid(target))
            m_target = target;
    }
}

TargetSystem &TargetSystem::sharedSystem()
{
    static TargetSystem *const instance = new TargetSystem(UserDefaults::standardUserDefaults());
    return *instance;
}

void TargetSystem::setTarget(std::optional<Coordinate> target)
{
    m_target = target && isValid(*target) ? target : std::nullopt;
    if (m_target) {
        // Seventeen digits: the point reads back exactly.
        m_defaults.setObject(QStringLiteral("%1,%2")
                                 .arg(m_target->latitude, 0, 'g', 17)
                                 .arg(m_target->longitude, 0, 'g', 17),
                             targetKey);
    } else {
        m_defaults.removeObject(targetKey);
    }
    m_defaults.synchronize();
    emit targetChanged();
}
