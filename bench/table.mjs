// node bench/table.mjs OMBREL.jsonl PEERS.jsonl: joins the two benchmarks'
// lines by file name and prints the comparison table.
import { readFileSync } from 'node:fs';

const read = (path) => readFileSync(path, 'utf8').trim().split('\n').map((l) => JSON.parse(l));
const peers = new Map(read(process.argv[3]).map((p) => [p.file, p]));

const columns = ['file', 'KB', 'rulesets', 'parse MB/s', 'read+decode+parse', 'generate MB/s',
    'postcss', 'css-tree', 'lightningcss', 'parse / fastest peer', 'parse / byte scan'];
const rows = [];
for (const o of read(process.argv[2])) {
    const p = peers.get(o.file);
    const rates = [p.postcssMBps, p.csstreeMBps, p.lightningcssMBps];
    const fastest = Math.max(...rates.filter((r) => r !== null));
    const peer = (r) => (r === null ? 'rejects' : r.toFixed(1));
    rows.push([o.file, (o.bytes / 1024).toFixed(0), String(o.rulesets), o.parseMBps.toFixed(0),
        o.readDecodeParseMBps.toFixed(0), o.generateMBps.toFixed(0), peer(p.postcssMBps),
        peer(p.csstreeMBps), peer(p.lightningcssMBps), `${(o.parseMBps / fastest).toFixed(1)}x`,
        `${(o.parseMBps / o.scanMBps).toFixed(3)}`]);
}
const widths = columns.map((c, i) => Math.max(c.length, ...rows.map((r) => r[i].length)));
const line = (cells) => cells.map((c, i) => (i === 0 ? c.padEnd(widths[i]) : c.padStart(widths[i]))).join('  ');
console.log(line(columns));
for (const row of rows)
    console.log(line(row));
console.log(`
MB/s of input bytes, the best of repeated runs lasting at least 0.4 s in all, after a warm-up.
parse: Ombrel's parser on text already decoded, with the previous result still alive, as in the
  code tab. read+decode+parse: from the file, with new buffers for its bytes and text on each
  run; where the system is slow to hand out fresh memory, that can cost more than the parse.
generate: Ombrel's generator, counted in input bytes too. Byte scan: a plain loop counting "{"
  over the file's bytes. "rejects": the peer throws on that input.`);
