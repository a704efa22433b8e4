// The container every data file of the map shares (see resources/basemap/README.md): a 24-byte
// header (8-byte magic, format version, flags, payload size, stored size, all little-endian) and
// the payload as it is. Stored rather than compressed: the app then reads it where it lies in the
// binary, and start-up does not wait for it to be inflated (zlib saved only a quarter of its size).

import { writeFileSync } from 'node:fs';

// Returns the file's size in bytes.
export function writeDataFile(path, magic, formatVersion, payload) {
    const header = Buffer.alloc(24);
    header.write(magic, 0, 'latin1');
    header.writeUInt32LE(formatVersion, 8);
    header.writeUInt32LE(0, 12); // flags: none, the payload is stored as it is
    header.writeUInt32LE(payload.length, 16);
    header.writeUInt32LE(payload.length, 20);
    writeFileSync(path, Buffer.concat([header, payload]));
    return header.length + payload.length;
}
