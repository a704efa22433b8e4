#include "SwitchableLocationManager.h"

SwitchableLocationManager::SwitchableLocationManager(Factory factory, const QString &source,
                                                     QObject *parent)
    : LocationManager(parent), m_factory(std::move(factory)), m_source(source)
{
    adopt(m_factory(m_source));
}

SwitchableLocationManager::~SwitchableLocationManager() = default;

void SwitchableLocationManager::adopt(std::unique_ptr<LocationManager> manager)
{
    m_current = std::move(manager);
    LocationManager *current = m_current.get();
    current->setDesiredAccuracy(desiredAccuracy());
    connect(current, &LocationManager::authorizationStatusChanged, this,
            &LocationManager::authorizationStatusChanged);
    connect(current, &LocationManager::locationsUpdated, this, &LocationManager::locationsUpdated);
    connect(current, &LocationManager::failed, this, [this](const QString &description) {
        m_updating = false;
        emit failed(description);
    });
    connect(current, &LocationManager::receiverStatusChanged, this,
            [this, current] { setReceiverStatus(current->receiverStatus()); });
    setReceiverStatus(current->receiverStatus());
}

void SwitchableLocationManager::setSource(const QString &source)
{
    if (source == m_source)
        return;
    m_source = source;
    if (m_updating)
        m_current->stopUpdatingLocation();
    // The old manager's queued signals die with it: none of them reaches the new run.
    adopt(m_factory(m_source));
    if (!m_updating)
        return;
    // GPS sources need no permission; one that cannot be used fails through the usual path,
    // and tracking ends with its reason.
    m_current->startUpdatingLocation();
}

void SwitchableLocationManager::startUpdatingLocation()
{
    m_updating = true;
    m_current->setDesiredAccuracy(desiredAccuracy());
    m_current->startUpdatingLocation();
}

void SwitchableLocationManager::stopUpdatingLocation()
{
    m_updating = false;
    m_current->stopUpdatingLocation();
}
