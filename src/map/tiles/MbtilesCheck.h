#pragma once

#include "MbtilesFile.h"

#include <QObject>
#include <QString>

#include <mutex>
#include <thread>

// The check of a map file before it is used or kept: the file is opened for reading (within its
// time limit) on a thread of its own, so that the GUI never waits on a hostile file, and closed
// again. finished() comes on the GUI thread. Destroying a check waits for its thread, at most
// the time limit.
class MbtilesCheck : public QObject
{
    Q_OBJECT

public:
    explicit MbtilesCheck(const QString &path, QObject *parent = nullptr);
    ~MbtilesCheck() override;

    const QString &path() const { return m_path; }
    // The file's metadata, or why it cannot be used; complete once finished() has come.
    const MbtilesFile::Check &result() const { return m_result; }

signals:
    void finished();

private:
    Q_INVOKABLE void takeResult();

    const QString m_path;
    MbtilesFile::Check m_result;
    // The worker's result, until the GUI thread takes it.
    std::mutex m_mutex;
    MbtilesFile::Check m_handed;
    std::thread m_thread;
};
