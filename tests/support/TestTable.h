#pragma once

#include <QFile>
#include <QList>
#include <QStringList>

#include <gtest/gtest.h>

// The rows of a tab-separated table in tests/data: one case per line, fields split at tabs,
// blank lines and lines starting with '#' skipped. A missing or empty table fails the test, so a
// lost data file can never pass as "no cases".
inline QList<QStringList> testTable(const char *name)
{
    QList<QStringList> rows;
    QFile file(QStringLiteral(VELTOR_TEST_DATA_DIR "/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        ADD_FAILURE() << "cannot read the test table " << name;
        return rows;
    }
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (!line.trimmed().isEmpty() && !line.startsWith('#'))
            rows.append(QString::fromUtf8(line).split(u'\t'));
    }
    if (rows.isEmpty())
        ADD_FAILURE() << "the test table " << name << " has no rows";
    return rows;
}
