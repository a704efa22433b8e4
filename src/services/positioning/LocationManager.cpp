#include "LocationManager.h"

LocationManager::LocationManager(QObject *parent) : QObject(parent)
{
    // Queued connections and QML look the fix types up by name.
    qRegisterMetaType<Location>("Location");
    qRegisterMetaType<QList<Location>>("QList<Location>");
}

void LocationManager::setReceiverStatus(const ReceiverStatus &status)
{
    if (status == m_receiverStatus)
        return;
    m_receiverStatus = status;
    emit receiverStatusChanged();
}
