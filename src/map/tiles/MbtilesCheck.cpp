#include "MbtilesCheck.h"

#include <QMetaObject>

MbtilesCheck::MbtilesCheck(const QString &path, QObject *parent) : QObject(parent), m_path(path)
{
    m_thread = std::thread([this, path] {
        MbtilesFile::Check check;
        if (const std::unique_ptr<MbtilesFile> file = MbtilesFile::open(path, &check.error))
            check.metadata = file->metadata();
        const std::lock_guard lock(m_mutex);
        m_handed = std::move(check);
        // By name, under the lock: the queued call carries nothing across threads, and this
        // last use of the object is ordered before the destructor's join.
        QMetaObject::invokeMethod(this, "takeResult", Qt::QueuedConnection);
    });
}

MbtilesCheck::~MbtilesCheck()
{
    m_thread.join();
}

void MbtilesCheck::takeResult()
{
    {
        const std::lock_guard lock(m_mutex);
        m_result = std::move(m_handed);
    }
    emit finished();
}
