// The container every data file of the map shares (see resources/basemap/README.md): a 24-byte
// header (8-byte magic, format version, flags, payload size, stored size, all little-endian) and
// the payload in qCompress layout: its size as 4 big-endian bytes, then a zlib stream.

import { writeFileSync } from 'node:fs';
import { deflateSync } from 'node:zlib';

// Returns the file's size in bytes.
export function writeDataFile(path, magic, formatVersion, payload) {
    const compressed = deflateSync(payload, { level: 9, memLevel: 9 });
    const stored = Buffer.alloc(4 + compressed.length);
    stored.writeUInt32BE(payload.length, 0);
    compressed.copy(stored, 4);

    const header = Buffer.alloc(24);
    header.write(magic, 0, 'latin1');
    header.writeUInt32LE(formatVersion, 8);
    header.writeUInt32LE(1, 12); // flags: bit 0, the payload is zlib compressed
    header.writeUInt32LE(payload.length, 16);
    header.writeUInt32LE(stored.length, 20);
    writeFileSync(path, Buffer.concat([header, stored]));
    return header.length + stored.length;
}
