// node bench/peers.mjs FILE...: for each stylesheet prints one JSON line with
// the throughput of the parsers a user would otherwise reach for, measured
// like the C++ benchmark: the best of repeated runs lasting at least a fixed
// time, after a warm-up.
import { readFileSync } from 'node:fs';
import { basename } from 'node:path';
import { createRequire } from 'node:module';

const require = createRequire(new URL('./peers/', import.meta.url));
const postcss = require('postcss');
const csstree = require('css-tree');
const lightningcss = require('lightningcss');

const minimumNanoseconds = 400_000_000n;

// A parser that rejects the input gets no figure (null).
function bestSeconds(work) {
    try {
        work();
    } catch {
        return null;
    }
    for (let i = 0; i < 2; ++i) work();
    let best = Infinity;
    let total = 0n;
    let runs = 0;
    while (runs < 3 || total < minimumNanoseconds) {
        const start = process.hrtime.bigint();
        work();
        const elapsed = process.hrtime.bigint() - start;
        best = Math.min(best, Number(elapsed));
        total += elapsed;
        ++runs;
    }
    return best / 1e9;
}

for (const path of process.argv.slice(2)) {
    const bytes = readFileSync(path);
    const text = bytes.toString('utf8');
    const rate = (seconds) => (seconds === null ? null : bytes.length / 1e6 / seconds);
    const line = {
        file: basename(path),
        postcssMBps: rate(bestSeconds(() => postcss.parse(text))),
        csstreeMBps: rate(bestSeconds(() => csstree.parse(text))),
        lightningcssMBps: rate(bestSeconds(() => lightningcss.transform({
            filename: basename(path),
            code: bytes,
            minify: false,
            errorRecovery: true,
        }))),
    };
    console.log(JSON.stringify(line));
}
