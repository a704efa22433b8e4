#pragma once

#include <QByteArrayView>
#include <QFile>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>

// The pieces the map's own data files (the basemap, the water, the places) are read with: their
// headers' fixed-size words and a reader of their varint-coded payloads.

inline std::uint32_t littleEndian32(const char *bytes)
{
    const auto *b = reinterpret_cast<const unsigned char *>(bytes);
    return std::uint32_t(b[0]) | std::uint32_t(b[1]) << 8 | std::uint32_t(b[2]) << 16 |
           std::uint32_t(b[3]) << 24;
}

inline std::uint32_t bigEndian32(const char *bytes)
{
    const auto *b = reinterpret_cast<const unsigned char *>(bytes);
    return std::uint32_t(b[0]) << 24 | std::uint32_t(b[1]) << 16 | std::uint32_t(b[2]) << 8 |
           std::uint32_t(b[3]);
}

// Reads a payload front to back; once anything is out of range every later read fails too.
class BinaryReader
{
public:
    BinaryReader(const char *begin, const char *end) : m_p(begin), m_end(end) {}

    bool ok() const { return m_ok; }
    bool atEnd() const { return m_p == m_end; }
    std::size_t remaining() const { return std::size_t(m_end - m_p); }

    // The next n bytes, or null when fewer are left.
    const char *take(std::size_t n)
    {
        if (!m_ok || remaining() < n) {
            m_ok = false;
            return nullptr;
        }
        const char *at = m_p;
        m_p += n;
        return at;
    }

    std::uint32_t byte()
    {
        const char *at = take(1);
        return at ? std::uint32_t(static_cast<unsigned char>(*at)) : 0;
    }

    // An unsigned LEB128 number of at most 32 bits.
    std::uint32_t varint()
    {
        std::uint32_t value = 0;
        for (int shift = 0; shift < 35; shift += 7) {
            const char *at = take(1);
            if (!at)
                return 0;
            const auto b = std::uint32_t(static_cast<unsigned char>(*at));
            if (shift == 28 && b > 0x0f)
                break;
            value |= (b & 0x7f) << shift;
            if (!(b & 0x80))
                return value;
        }
        m_ok = false;
        return 0;
    }

    std::int64_t zigzag()
    {
        const std::uint32_t v = varint();
        return (v & 1) ? -std::int64_t(v >> 1) - 1 : std::int64_t(v >> 1);
    }

private:
    const char *m_p;
    const char *m_end;
    bool m_ok = true;
};

// A data file through T::fromBytes: an embedded one read in place rather than copied, a disk file
// read, not mapped, so one cut short meanwhile cannot fault. Null when it cannot be opened.
template <typename T> std::shared_ptr<const T> loadBinaryFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    if (path.startsWith(QLatin1Char(':'))) {
        const qint64 size = file.size();
        if (const uchar *data = size > 0 ? file.map(0, size) : nullptr)
            return T::fromBytes(QByteArrayView(data, qsizetype(size)));
    }
    return T::fromBytes(file.readAll());
}
