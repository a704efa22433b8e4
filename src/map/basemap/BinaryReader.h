#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>

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
        // Most numbers are a byte or two: with five bytes left, each one needs no bounds check.
        if (m_ok && remaining() >= 5) {
            const auto *b = reinterpret_cast<const unsigned char *>(m_p);
            std::uint32_t value = b[0] & 0x7fu;
            int length = 1;
            while (b[length - 1] & 0x80) {
                if (length == 5) {
                    m_ok = false;
                    return 0;
                }
                value |= std::uint32_t(b[length] & 0x7f) << (7 * length);
                ++length;
            }
            if (length == 5 && b[4] > 0x0f) {
                m_ok = false;
                return 0;
            }
            m_p += length;
            return value;
        }
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

    // Steps over n varints without decoding them.
    void skipVarints(std::uint64_t n)
    {
        while (n > 0 && m_ok && m_p < m_end)
            n -= (static_cast<unsigned char>(*m_p++) & 0x80) ? 0 : 1;
        if (n > 0)
            m_ok = false;
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

// The container every map data file shares: a 24-byte header (8-byte magic, format version,
// flags, payload size, stored size; little-endian) and the payload, stored as it is or, with flag
// bit 0, as qCompress writes it. A stored payload is read where it lies.
class DataFilePayload
{
public:
    static constexpr int headerSize = 24;

    // Nullopt unless the magic, version and sizes agree and a compressed payload inflates to its
    // stated size; largestPayload keeps a lying header from reserving gigabytes.
    static std::optional<DataFilePayload> open(QByteArrayView file, const char *magic,
                                               std::uint32_t version, std::uint32_t largestPayload)
    {
        if (file.size() < headerSize || std::memcmp(file.data(), magic, 8) != 0)
            return std::nullopt;
        const char *header = file.data();
        const std::uint32_t flags = littleEndian32(header + 12);
        const std::uint32_t payloadSize = littleEndian32(header + 16);
        const std::uint32_t storedSize = littleEndian32(header + 20);
        const QByteArrayView stored = file.sliced(headerSize);
        if (littleEndian32(header + 8) != version || flags > compressedFlag || payloadSize == 0 ||
            payloadSize > largestPayload || qsizetype(storedSize) != stored.size())
            return std::nullopt;
        DataFilePayload payload;
        if (flags != compressedFlag) {
            if (storedSize != payloadSize)
                return std::nullopt;
            payload.m_stored = stored;
            return payload;
        }
        // qCompress's own size prefix must agree with the header before qUncompress trusts it.
        if (stored.size() < 4 || bigEndian32(stored.data()) != payloadSize)
            return std::nullopt;
        payload.m_inflated =
            qUncompress(reinterpret_cast<const uchar *>(stored.data()), stored.size());
        if (payload.m_inflated.size() != qsizetype(payloadSize))
            return std::nullopt;
        return payload;
    }

    QByteArrayView bytes() const
    {
        return m_inflated.isNull() ? m_stored : QByteArrayView(m_inflated);
    }

private:
    static constexpr std::uint32_t compressedFlag = 1;

    DataFilePayload() = default;

    QByteArrayView m_stored;
    QByteArray m_inflated;
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
